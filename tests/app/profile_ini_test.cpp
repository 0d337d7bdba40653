#include "app/profile_ini.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

class ProfileIniTest : public ::testing::Test {
protected:
    void put(const std::string& bytes) const { writeFileBytes(m_file, bytes); }
    std::string disk() const { return readFileBytes(m_file); }
    // Writes through a loaded object and saves, then returns the bytes on disk.
    std::string writeAndSave(const std::string& section, const std::string& key,
                             const std::string& value) const {
        CProfileIni ini(m_file);
        EXPECT_TRUE(ini.writeString(section, key, value));
        EXPECT_TRUE(ini.save());
        return disk();
    }

    TempDir m_dir{"helmsman_profile"};
    fs::path m_file = m_dir / "Profile.ini";
};

const char* const kReadFile =
    "; leading comment\r\n"
    "[Main]\r\n"
    "  Name =  Alice  \r\n"
    "quoted=\"  hi  \"\r\n"
    "single='x'\r\n"
    "mixed=\"abc'\r\n"
    "Empty=\r\n"
    "name=second\r\n"
    "Int1=2.5\r\n"
    "Int2=12abc\r\n"
    "Int3=abc\r\n"
    "Int4=-7x\r\n"
    "Int5=+3\r\n"
    "Int6=\t42\t\r\n"
    "Big=99999999999\r\n"
    "Neg=-99999999999\r\n"
    "Q='5'\r\n"
    "#hash=1\r\n"
    ";semi=1\r\n"
    "just text\r\n"
    "=orphan\r\n"
    "[ main ]\r\n"
    "OnlyInSecond=1\r\n"
    "[Other]\r\n"
    "Name=Bob\r\n";

TEST_F(ProfileIniTest, StringReadsFollowThePlatformRules) {
    put(kReadFile);
    const CProfileIni ini(m_file);
    ASSERT_EQ(ini.loadResult(), CProfileIni::LoadResult::Loaded);
    struct Case {
        const char* section;
        const char* key;
        const char* expected;
    } cases[] = {
        {"MAIN", "NAME", "Alice"},     // case-insensitive, blanks trimmed, first key wins
        {"Main", "quoted", "  hi  "},  // quotes stripped, blanks inside them kept
        {"Main", "single", "x"},
        {"Main", "mixed", "\"abc'"},  // unmatched quotes stay
        {"Main", "Empty", ""},        // present but empty: empty, not the default
        {"Main", "absent", "def"},
        {"Main", "OnlyInSecond", "def"},  // a repeated section is
                                          // never consulted
        {"Main", "hash", "def"},          // comment lines are not keys
        {"Main", "#hash", "def"},
        {"Main", "just text", "def"},
        {"Other", "name", "Bob"},
        {"Missing", "Name", "def"},
        {" main ", "name", "Alice"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ini.getString(c.section, c.key, "def"), c.expected) << c.section << "/" << c.key;
}

TEST_F(ProfileIniTest, IntegerReadsTakeTheLeadingInteger) {
    put(kReadFile);
    const CProfileIni ini(m_file);
    struct Case {
        const char* key;
        std::int32_t expected;
    } cases[] = {
        {"Int1", 2}, {"Int2", 12}, {"Int3", 0},        {"Int4", -7},
        {"Int5", 3}, {"Int6", 42}, {"Big", INT32_MAX}, {"Neg", INT32_MIN},
        {"Q", 5},    {"Empty", 9}, {"absent", 9},      {"Name", 0},
    };
    for (const auto& c : cases) EXPECT_EQ(ini.getInt("main", c.key, 9), c.expected) << c.key;
    EXPECT_EQ(ini.getInt("nowhere", "Int1", -4), -4);
}

TEST(ParseLeadingInt, EdgesAndSaturation) {
    struct Case {
        const char* text;
        std::optional<std::int32_t> expected;
    } cases[] = {
        {"", std::nullopt},
        {"-", std::nullopt},
        {"+", std::nullopt},
        {"x1", std::nullopt},
        {"- 1", std::nullopt},
        {"  7", 7},
        {"007", 7},
        {"2147483647", INT32_MAX},
        {"2147483648", INT32_MAX},
        {"-2147483648", INT32_MIN},
        {"-2147483649", INT32_MIN},
        {"123456789012345678901234567890", INT32_MAX},
    };
    for (const auto& c : cases) EXPECT_EQ(parseLeadingInt(c.text), c.expected) << c.text;
}

TEST_F(ProfileIniTest, StringReadsAreCutToTheBufferSizeOnCharacterBoundaries) {
    put("[S]\r\nv=abcdef\r\nzh=\xD6\xD0\xCE\xC4\xD7\xD6\r\nlong="  // zh: 中文字 in GBK
        + std::string(300, 'x') + "\r\n");
    const CProfileIni ini(m_file);
    struct Case {
        const char* key;
        std::size_t size;
        std::string expected;
    } cases[] = {
        {"v", 4, "abc"},
        {"v", 7, "abcdef"},
        {"v", 1, ""},
        {"v", 0, ""},
        {"zh", 5, "中"},  // 4 bytes allowed: the second character does not fit whole
        {"zh", 7, "中文"},
        {"zh", 3, ""},
        {"long", kProfileStringSize, std::string(259, 'x')},
        {"absent", 3, "de"},  // the default is cut the same way
    };
    for (const auto& c : cases)
        EXPECT_EQ(ini.getString("S", c.key, "default", c.size), c.expected) << c.key << c.size;
}

TEST_F(ProfileIniTest, WriteReplacesInPlaceKeepingEverythingElse) {
    put("; top\r\n"
        "[Main]\r\n"
        "# about KeY\r\n"
        "  KeY =  old value\r\n"
        "\r\n"
        "other=1\r\n"
        "key=duplicate\r\n"
        "[Next]\r\n"
        "key=untouched\r\n");
    EXPECT_EQ(writeAndSave("main", "KEY", "new"),
              "; top\r\n"
              "[Main]\r\n"
              "# about KeY\r\n"
              "  KeY =  new\r\n"
              "\r\n"
              "other=1\r\n"
              "key=duplicate\r\n"
              "[Next]\r\n"
              "key=untouched\r\n");
    EXPECT_EQ(profileGetString(m_file, "Main", "key"), "new");
}

TEST_F(ProfileIniTest, NewKeysAndSectionsGoAtTheEnd) {
    struct Case {
        const char* name;
        std::string before;
        const char* section;
        std::string after;
    } cases[] = {
        {"after the last key, before trailing blanks and comments",
         "[A]\r\nx=1\r\n; between\r\ny=2\r\n\r\n; about B\r\n[B]\r\ny=2\r\n", "a",
         "[A]\r\nx=1\r\n; between\r\ny=2\r\nk=v\r\n\r\n; about B\r\n[B]\r\ny=2\r\n"},
        {"a section without keys grows after its last non-blank line",
         "[A]\r\n; note\r\n\r\n[B]\r\n", "A", "[A]\r\n; note\r\nk=v\r\n\r\n[B]\r\n"},
        {"the last section", "[B]\r\ny=2\r\n[A]\r\nx=1\r\n", "A",
         "[B]\r\ny=2\r\n[A]\r\nx=1\r\nk=v\r\n"},
        {"new section at the end of the file", "[B]\r\ny=2\r\n\r\n", "A",
         "[B]\r\ny=2\r\n\r\n[A]\r\nk=v\r\n"},
        {"LF files stay LF", "[B]\ny=2\n", "A", "[B]\ny=2\n[A]\nk=v\n"},
        {"no final line end: the last line gets one", "[A]\nx=1", "A", "[A]\nx=1\nk=v\n"},
        {"no final line end, new section", "[B]\ny=2", "A", "[B]\ny=2\n[A]\nk=v\n"},
        {"empty file gets CRLF", "", "A", "[A]\r\nk=v\r\n"},
        {"the first of repeated sections", "[A]\r\nx=1\r\n[a]\r\nk=old\r\n", "A",
         "[A]\r\nx=1\r\nk=v\r\n[a]\r\nk=old\r\n"},
    };
    for (const auto& c : cases) {
        put(c.before);
        EXPECT_EQ(writeAndSave(c.section, "k", "v"), c.after) << c.name;
    }
}

TEST_F(ProfileIniTest, WrittenTextCannotCreateLinesOrSections) {
    put("[A]\r\nx=1\r\n");
    CProfileIni ini(m_file);
    EXPECT_TRUE(ini.writeString("A", "k", "a\r\n[evil]\r\nx=2"));
    EXPECT_TRUE(ini.writeString("A", "k2\n[evil2]", "v"));
    EXPECT_TRUE(ini.writeString("A", "nul", std::string("a\0b", 3)));
    ASSERT_TRUE(ini.save());

    const CProfileIni back(m_file);
    EXPECT_EQ(back.sectionNames(), std::vector<std::string>{"A"});
    EXPECT_EQ(back.getString("A", "k"), "a  [evil]  x=2");
    EXPECT_EQ(back.getInt("A", "x", 0), 1);
    EXPECT_EQ(back.getString("A", "k2 [evil2]"), "v");
    EXPECT_EQ(back.getString("A", "nul"), "a b");
    EXPECT_EQ(disk(), "[A]\r\nx=1\r\nk=a  [evil]  x=2\r\nk2 [evil2]=v\r\nnul=a b\r\n");
}

TEST_F(ProfileIniTest, RefusedNamesChangeNothing) {
    const std::string before = "[A]\r\nx=1\r\n";
    put(before);
    struct Case {
        const char* section;
        const char* key;
    } cases[] = {
        {"A", "a=b"}, {"A", "[x"},  {"A", ""}, {"A", "  "},    {"A", ";c"},
        {"A", "#c"},  {"a]b", "k"}, {"", "k"}, {" \r\n", "k"},
    };
    CProfileIni ini(m_file);
    for (const auto& c : cases)
        EXPECT_FALSE(ini.writeString(c.section, c.key, "v")) << c.section << "/" << c.key;
    EXPECT_EQ(ini.bytes(), before);
    EXPECT_FALSE(profileWriteString(m_file, "A", "a=b", "v"));
    EXPECT_EQ(disk(), before);
}

TEST_F(ProfileIniTest, GarbageBytesLoadWhatTheyCanAndSurviveASave) {
    std::mt19937 rng(7);
    std::string garbage;
    for (int i = 0; i < 4096; ++i) garbage += static_cast<char>(rng() & 0xFF);
    garbage += '\0';
    garbage += "\xFF\xFE[\x81]\r\n";
    put(garbage + "\n[S]\r\nk=5\r\n");

    CProfileIni ini(m_file);
    EXPECT_EQ(ini.getInt("S", "k", 0), 5);
    EXPECT_TRUE(ini.writeString("S", "k", "6"));
    ASSERT_TRUE(ini.save());
    const std::string after = disk();
    EXPECT_EQ(after.substr(0, garbage.size()), garbage);  // undecodable bytes kept exactly
    EXPECT_EQ(profileGetInt(m_file, "S", "k", 0), 6);
}

TEST_F(ProfileIniTest, VeryLongLinesAndNulBytes) {
    const std::string longValue(1 << 20, 'x');
    put("[S]\r\nlong=" + longValue + "\r\nn" + std::string(1, '\0') + "ul=1\r\nk=7\r\n");
    CProfileIni ini(m_file);
    EXPECT_EQ(ini.getInt("S", "k", 0), 7);
    EXPECT_EQ(ini.getString("S", "long"), std::string(259, 'x'));
    EXPECT_EQ(ini.getString("S", "long", "", longValue.size() + 1), longValue);
    EXPECT_TRUE(ini.writeString("S", "k", "8"));
    ASSERT_TRUE(ini.save());
    EXPECT_EQ(profileGetString(m_file, "S", "long", "", longValue.size() + 1), longValue);
    EXPECT_EQ(profileGetInt(m_file, "S", "k", 0), 8);
}

TEST_F(ProfileIniTest, MissingFilesAndDirectories) {
    const fs::path missing = m_dir / "no" / "such" / "dir" / "Profile.ini";
    CProfileIni ini(missing);
    EXPECT_EQ(ini.loadResult(), CProfileIni::LoadResult::Missing);
    EXPECT_EQ(ini.getInt("S", "k", 3), 3);
    EXPECT_EQ(ini.getString("S", "k", "d"), "d");
    EXPECT_FALSE(ini.hasSection("S"));

    // Writing creates the file and its directories, and the result reads back.
    EXPECT_TRUE(profileWriteString(missing, "S", "k", "42"));
    EXPECT_EQ(profileGetInt(missing, "S", "k", 0), 42);

    // A directory where the file should be: nothing read, nothing written, nothing lost.
    const fs::path dir = m_dir / "adir";
    fs::create_directories(dir / "inside");
    CProfileIni d(dir);
    EXPECT_EQ(d.loadResult(), CProfileIni::LoadResult::Unreadable);
    EXPECT_EQ(d.getInt("S", "k", 3), 3);
    EXPECT_FALSE(profileWriteString(dir, "S", "k", "1"));
    EXPECT_TRUE(fs::is_directory(dir / "inside"));
    EXPECT_FALSE(fs::exists(m_dir / "adir.new"));
}

TEST_F(ProfileIniTest, GbkOnDiskUtf8InMemory) {
    EXPECT_TRUE(profileWriteString(m_file, "Helmsman", "strAccountName", "模拟账户"));
    EXPECT_TRUE(profileWriteString(m_file, "中", "键", "中文"));
    EXPECT_EQ(disk(),
              "[Helmsman]\r\nstrAccountName=\xC4\xA3\xC4\xE2\xD5\xCB\xBB\xA7\r\n"
              "[\xD6\xD0]\r\n\xBC\xFC=\xD6\xD0\xCE\xC4\r\n");
    EXPECT_EQ(profileGetString(m_file, "Helmsman", "strAccountName"), "模拟账户");
    EXPECT_EQ(profileGetString(m_file, "中", "键"), "中文");

    // 乚 is 0x81 0x5D in GBK: its second byte looks like ']' and must not end the name.
    put("[\x81\x5D\xD6\xD0]\r\nk=1\r\n");
    EXPECT_EQ(profileGetInt(m_file, "乚中", "k", 0), 1);
}

TEST_F(ProfileIniTest, ByteOrderMarkAndCaseOfNonAsciiNames) {
    put("\xEF\xBB\xBF[A]\r\nk=1\r\n[\xD6\xD0X]\r\nk=2\r\n");
    const CProfileIni ini(m_file);
    EXPECT_EQ(ini.getInt("a", "K", 0), 1);
    EXPECT_EQ(ini.getInt("中x", "k", 0), 2);  // ASCII folds, the Chinese bytes match exactly
    EXPECT_EQ(ini.getInt("文x", "k", 0), 0);
}

TEST_F(ProfileIniTest, ListingAndRemoving) {
    put("[A]\r\nx=1\r\n; c\r\nY=2\r\nx=3\r\n[B]\r\nz=1\r\n[a]\r\nw=1\r\n");
    CProfileIni ini(m_file);
    EXPECT_EQ(ini.sectionNames(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(ini.keys("a"), (std::vector<std::string>{"x", "Y"}));
    EXPECT_TRUE(ini.removeKey("A", "y"));
    EXPECT_FALSE(ini.removeKey("A", "y"));
    EXPECT_EQ(ini.bytes(), "[A]\r\nx=1\r\n; c\r\nx=3\r\n[B]\r\nz=1\r\n[a]\r\nw=1\r\n");
    EXPECT_TRUE(ini.removeSection("b"));
    EXPECT_FALSE(ini.removeSection("nope"));
    EXPECT_EQ(ini.bytes(), "[A]\r\nx=1\r\n; c\r\nx=3\r\n[a]\r\nw=1\r\n");
}

}  // namespace
