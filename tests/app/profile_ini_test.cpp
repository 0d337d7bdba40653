#include "app/profile_ini.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <set>

#ifndef _WIN32
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

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

// Names match case-insensitively with blanks trimmed and the first key wins; one pair of
// matching quotes is stripped (blanks inside kept), unmatched ones stay; an empty value is
// empty, not the default; a repeated section and comment lines are never consulted.
TEST_F(ProfileIniTest, ReadsFollowThePlatformRules) {
    put("; leading comment\r\n[Main]\r\n  Name =  Alice  \r\nquoted=\"  hi  \"\r\nsingle='x'\r\n"
        "mixed=\"abc'\r\nEmpty=\r\nname=second\r\nInt=2.5\r\nQ='5'\r\n#hash=1\r\n"
        ";semi=1\r\njust text\r\n=orphan\r\n[ main ]\r\nOnlyInSecond=1\r\n[Other]\r\nName=Bob\r\n");
    const CProfileIni ini(m_file);
    ASSERT_EQ(ini.loadResult(), CProfileIni::LoadResult::Loaded);
    const std::tuple<const char*, const char*, const char*> strings[] = {
        {"MAIN", "NAME", "Alice"},    {"Main", "quoted", "  hi  "}, {"Main", "single", "x"},
        {"Main", "mixed", "\"abc'"},  {"Main", "Empty", ""},        {"Main", "OnlyInSecond", "def"},
        {"Main", "hash", "def"},      {"Main", "#hash", "def"},     {"Main", ";semi", "def"},
        {"Main", "just text", "def"}, {"Other", "name", "Bob"},     {"Missing", "Name", "def"},
        {" main ", "name", "Alice"},
    };
    for (auto [section, key, want] : strings)
        EXPECT_EQ(ini.getString(section, key, "def"), want) << section << "/" << key;
    const std::pair<const char*, std::int32_t> ints[] = {
        {"Int", 2}, {"Q", 5}, {"Empty", 9}, {"absent", 9}, {"Name", 0}};
    for (auto [key, want] : ints) EXPECT_EQ(ini.getInt("main", key, 9), want) << key;
    EXPECT_EQ(ini.getInt("nowhere", "Int", -4), -4);
}

TEST(ParseLeadingInt, EdgesAndSaturation) {
    for (const char* text : {"", "-", "+", "x1", "- 1"})
        EXPECT_EQ(parseLeadingInt(text), std::nullopt) << text;
    const std::pair<const char*, std::int32_t> cases[] = {
        {" \t7\t", 7}, {"007", 7}, {"+3", 3}, {"-7x", -7}, {"12abc", 12}};
    for (auto [text, want] : cases) EXPECT_EQ(parseLeadingInt(text), want) << text;
    for (const char* text : {"2147483647", "2147483648", "123456789012345678901234567890"})
        EXPECT_EQ(parseLeadingInt(text), INT32_MAX) << text;
    for (const char* text : {"-2147483648", "-2147483649"})
        EXPECT_EQ(parseLeadingInt(text), INT32_MIN) << text;
}

// What files carried over from the Windows platform rely on.
TEST_F(ProfileIniTest, WindowsProfileFidelity) {
    put("[Ints]\r\nwrap0=4294967296\r\nwrap1=4294967297\r\nwrapNeg=-4294967297\r\n"
        "big=2147483648\r\nhex=0x1F\r\nhexUpper=0X7fffffff\r\nhexAll=0xFFFFFFFF\r\n"
        "hexNeg=-0x10\r\nhexNone=0xg\r\n"
        "[Broken\r\nafterBroken=7\r\n=no name\r\n"
        "[CR]\rcr1=1\rcr2=2\r\r\nlf=3\n" +
        std::string("[Nul]\nv=ab\0cd\n", 14));
    const CProfileIni ini(m_file);
    const std::tuple<const char*, const char*, std::int32_t> ints[] = {
        {"Ints", "wrap0", 0},
        {"Ints", "wrap1", 1},
        {"Ints", "wrapNeg", -1},
        {"Ints", "big", INT32_MIN},
        {"Ints", "hex", 31},
        {"Ints", "hexUpper", INT32_MAX},
        {"Ints", "hexAll", -1},
        {"Ints", "hexNeg", -16},
        {"Ints", "hexNone", 0},
        {"Ints", "afterBroken", 7},
        {"Broken", "afterBroken", 99},
        {"CR", "cr1", 1},
        {"CR", "cr2", 2},
        {"CR", "lf", 3},
    };
    for (auto [section, key, want] : ints)
        EXPECT_EQ(ini.getInt(section, key, 99), want) << section << "/" << key;
    EXPECT_EQ(ini.sectionNames(), (std::vector<std::string>{"Ints", "CR", "Nul"}));
    EXPECT_EQ(ini.getString("Ints", ""), "no name");
    EXPECT_EQ(ini.getString("Nul", "v"), "ab");
    const std::pair<const char*, const char*> defaults[] = {
        {"  plain  ", "plain"}, {" \"  quoted \" ", "  quoted "}, {"'x'", "x"}, {"\"a'", "\"a'"}};
    for (auto [def, want] : defaults) EXPECT_EQ(ini.getString("Ints", "absent", def), want) << def;
    // Re-saving keeps every byte, lone CRs included.
    CProfileIni again(m_file);
    again.writeString("CR", "cr2", "2");
    ASSERT_TRUE(again.save());
    EXPECT_NE(disk().find("[CR]\rcr1=1\rcr2=2\r\r\nlf=3\n"), std::string::npos);
}

TEST_F(ProfileIniTest, StringReadsAreCutToTheBufferSizeInGbkBytes) {
    std::string hundred;  // 100 Chinese characters: 200 bytes in GBK, 300 in UTF-8
    for (int i = 0; i < 100; ++i) hundred += "\xD6\xD0";
    put("[S]\r\nv=abcdef\r\nzh=\xD6\xD0\xCE\xC4\xD7\xD6\r\nlong=" +  // zh: 中文字 in GBK
        std::string(300, 'x') + "\r\nhundred=" + hundred + "\r\nmixed=a\xD6\xD0\r\n");
    const CProfileIni ini(m_file);
    std::string hundredUtf8;
    for (int i = 0; i < 100; ++i) hundredUtf8 += "中";
    const std::tuple<const char*, std::size_t, std::string> cases[] = {
        {"v", 4, "abc"},
        {"v", 7, "abcdef"},
        {"v", 0, ""},
        {"zh", 4, "中"},  // 3 bytes allowed: the second character does not fit whole
        {"zh", 5, "中文"},
        {"zh", 7, "中文字"},
        {"mixed", 3, "a"},
        {"long", kProfileStringSize, std::string(259, 'x')},
        {"hundred", kProfileStringSize, hundredUtf8},
        {"hundred", 200, hundredUtf8.substr(0, 99 * 3)},
        {"absent", 3, "de"},  // the default is cut the same way
    };
    for (const auto& [key, size, want] : cases)
        EXPECT_EQ(ini.getString("S", key, "default", size), want) << key << size;
}

TEST_F(ProfileIniTest, WriteReplacesInPlaceKeepingEverythingElse) {
    const std::string rest = "\r\nother=1\r\nkey=duplicate\r\n[Next]\r\nkey=untouched\r\n";
    put("; top\r\n[Main]\r\n# about KeY\r\n  KeY =  old value\r\n" + rest);
    EXPECT_EQ(writeAndSave("main", "KEY", "new"),
              "; top\r\n[Main]\r\n# about KeY\r\n  KeY =  new\r\n" + rest);
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
    EXPECT_EQ(disk(), "[A]\r\nx=1\r\nk=a  [evil]  x=2\r\nk2 [evil2]=v\r\nnul=a b\r\n");
    const CProfileIni back(m_file);
    EXPECT_EQ(back.sectionNames(), std::vector<std::string>{"A"});
    EXPECT_EQ(back.getString("A", "k2 [evil2]"), "v");
}

// A value a read would trim or unquote is written in quotes, so it comes back as written.
TEST_F(ProfileIniTest, WrittenValuesReadBackExactly) {
    const std::pair<std::string, std::string> cases[] = {
        {"  hi  ", "\"  hi  \""},
        {"\"q\"", "\"\"q\"\""},
        {"'x'", "\"'x'\""},
        {" ", "\" \""},
        {"\"a'", "\"a'"},
        {"a \"b\" c", "a \"b\" c"},
        {"", ""},
        {"中文 ", "\"\xD6\xD0\xCE\xC4 \""},
    };
    for (const auto& [value, onDisk] : cases) {
        put("[S]\r\n");
        EXPECT_EQ(writeAndSave("S", "k", value), "[S]\r\nk=" + onDisk + "\r\n") << value;
        EXPECT_EQ(profileGetString(m_file, "S", "k"), value);
    }
}

TEST_F(ProfileIniTest, RefusedNamesChangeNothing) {
    const std::string before = "[A]\r\nx=1\r\n";
    put(before);
    const std::pair<const char*, const char*> cases[] = {
        {"A", "a=b"}, {"A", "[x"},  {"A", ""}, {"A", "  "},    {"A", ";c"},
        {"A", "#c"},  {"a]b", "k"}, {"", "k"}, {" \r\n", "k"},
    };
    CProfileIni ini(m_file);
    for (auto [section, key] : cases)
        EXPECT_FALSE(ini.writeString(section, key, "v")) << section << "/" << key;
    EXPECT_EQ(ini.bytes(), before);
    EXPECT_FALSE(profileWriteString(m_file, "A", "a=b", "v"));
    EXPECT_EQ(disk(), before);
}

// Undecodable bytes, NUL bytes and a 1 MB line: what can be read is, and a save keeps the
// rest byte for byte.
TEST_F(ProfileIniTest, GarbageAndHugeLinesLoadWhatTheyCanAndSurviveASave) {
    std::mt19937 rng(7);
    std::string garbage;
    for (int i = 0; i < 4096; ++i) garbage += static_cast<char>(rng() & 0xFF);
    garbage += std::string(1, '\0') + "\xFF\xFE[\x81]\r\n";
    const std::string longValue(1 << 20, 'x');
    put(garbage + "\n[S]\r\nlong=" + longValue + "\r\nn" + std::string(1, '\0') +
        "ul=1\r\nk=5\r\n");

    CProfileIni ini(m_file);
    EXPECT_EQ(ini.getInt("S", "k", 0), 5);
    EXPECT_EQ(ini.getString("S", "long", "", longValue.size() + 1), longValue);
    EXPECT_TRUE(ini.writeString("S", "k", "6"));
    ASSERT_TRUE(ini.save());
    EXPECT_EQ(disk().substr(0, garbage.size()), garbage);
    EXPECT_EQ(profileGetInt(m_file, "S", "k", 0), 6);
    EXPECT_EQ(profileGetString(m_file, "S", "long", "", longValue.size() + 1), longValue);
}

TEST_F(ProfileIniTest, MissingFilesAndDirectories) {
    const fs::path missing = m_dir / "no" / "such" / "dir" / "Profile.ini";
    CProfileIni ini(missing);
    EXPECT_EQ(ini.loadResult(), CProfileIni::LoadResult::Missing);
    EXPECT_EQ(ini.getString("S", "k", "d"), "d");
    // Writing creates the file and its directories.
    EXPECT_TRUE(profileWriteString(missing, "S", "k", "42"));
    EXPECT_EQ(profileGetInt(missing, "S", "k", 0), 42);

    // A directory where the file should be: nothing read, nothing written, nothing lost.
    const fs::path dir = m_dir / "adir";
    fs::create_directories(dir / "inside");
    CProfileIni d(dir);
    EXPECT_EQ(d.loadResult(), CProfileIni::LoadResult::Unreadable);
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
    EXPECT_EQ(profileGetString(m_file, "中", "键"), "中文");

    // 乚 is 0x81 0x5D in GBK: its second byte looks like ']' and must not end the name. A
    // byte-order mark is skipped; ASCII folds case, the Chinese bytes match exactly.
    put("\xEF\xBB\xBF[A]\r\nk=1\r\n[\x81\x5D\xD6\xD0]\r\nk=2\r\n[\xD6\xD0X]\r\nk=3\r\n");
    const CProfileIni ini(m_file);
    EXPECT_EQ(ini.getInt("a", "K", 0), 1);
    EXPECT_EQ(ini.getInt("乚中", "k", 0), 2);
    EXPECT_EQ(ini.getInt("中x", "k", 0), 3);
    EXPECT_EQ(ini.getInt("文x", "k", 0), 0);
}

TEST_F(ProfileIniTest, ListingAndRemoving) {
    put("[A]\r\nx=1\r\n; c\r\nY=2\r\nx=3\r\n[B]\r\nz=1\r\n[a]\r\nw=1\r\n");
    CProfileIni ini(m_file);
    EXPECT_EQ(ini.sectionNames(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(ini.keys("a"), (std::vector<std::string>{"x", "Y"}));
    EXPECT_TRUE(ini.removeKey("A", "y"));
    EXPECT_FALSE(ini.removeKey("A", "y"));
    EXPECT_TRUE(ini.removeSection("b"));
    EXPECT_FALSE(ini.removeSection("nope"));
    EXPECT_EQ(ini.bytes(), "[A]\r\nx=1\r\n; c\r\nx=3\r\n[a]\r\nw=1\r\n");
}

// ---- Saving safely ---------------------------------------------------------------------------

// Two objects loaded before either saves: each save applies its own writes to what the other
// left, so neither loses the other's keys.
TEST_F(ProfileIniTest, SaveReappliesWritesToTheCurrentFile) {
    put("[S]\r\nkeep=1\r\n");
    CProfileIni first(m_file), second(m_file);
    first.writeString("S", "a", "1");
    second.writeString("S", "b", "2");
    second.removeKey("S", "keep");
    ASSERT_TRUE(first.save());
    ASSERT_TRUE(second.save());
    EXPECT_EQ(disk(), "[S]\r\na=1\r\nb=2\r\n");
    EXPECT_EQ(second.getString("S", "a"), "1");  // a saved object holds what it wrote
}

TEST_F(ProfileIniTest, LeftoverTemporariesNeverBlockASave) {
    put("[S]\r\nk=1\r\n");
    const fs::path leftoverFile = m_dir / "Profile.ini.~1-2-3.tmp";
    writeFileBytes(leftoverFile, "half");
    for (const char* name : {"Profile.ini.new", "Profile.ini.~4-5-6.tmp"})
        fs::create_directories(m_dir / name / "inside");
    EXPECT_TRUE(profileWriteString(m_file, "S", "k", "2"));
    EXPECT_EQ(profileGetInt(m_file, "S", "k", 0), 2);
    EXPECT_FALSE(fs::exists(leftoverFile));
}

#ifndef _WIN32

TEST_F(ProfileIniTest, ReadOnlyFilesAndFoldersAreNotReplaced) {
    const std::string before = "[S]\r\nk=1\r\n";
    put(before);
    fs::permissions(m_file, fs::perms::owner_read | fs::perms::group_read);
    CProfileIni ini(m_file);
    ini.writeString("S", "k", "2");
    const FileWriteResult result = ini.save();
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.message(), "无法保存设置文件 " + m_file.string() +
                                    "：文件是只读的。本次修改只在舵手关闭前有效。");
    EXPECT_EQ(disk(), before);
    EXPECT_EQ(fs::status(m_file).permissions(), fs::perms::owner_read | fs::perms::group_read);
    EXPECT_EQ(ini.getString("S", "k"), "2");  // memory keeps the change

    // A writable file keeps its exact mode across a save.
    fs::permissions(m_file, fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_TRUE(ini.save());
    EXPECT_EQ(fs::status(m_file).permissions(), fs::perms::owner_read | fs::perms::owner_write);

    const fs::path folder = m_dir / "folder.ini";
    fs::create_directories(folder);
    const FileWriteResult refused = CProfileIni(folder).saveAs(folder);
    EXPECT_FALSE(refused.ok);
    EXPECT_EQ(refused.reason, "同名的文件夹或其他对象已存在");
}

TEST_F(ProfileIniTest, ASymlinkIsWrittenThrough) {
    const fs::path real = m_dir / "real" / "Profile.ini";
    writeFileBytes(real, "[S]\r\nk=1\r\n");
    fs::create_symlink(fs::path("real") / "Profile.ini", m_file);
    EXPECT_TRUE(profileWriteString(m_file, "S", "k", "2"));
    EXPECT_TRUE(fs::is_symlink(m_file));
    EXPECT_EQ(readFileBytes(real), "[S]\r\nk=2\r\n");
}

// The concurrency tests save hundreds of times; on a memory file system the flushes to disk
// cost nothing, and what they test (the lock and the rename) is the same.
class ConcurrentSaveTest : public ::testing::Test {
protected:
    ConcurrentSaveTest() {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
    }
    ~ConcurrentSaveTest() override { fs::remove_all(m_folder); }

    // Runs `body` in a child process that ends with it.
    template <typename Body>
    static pid_t spawn(Body body) {
        const pid_t pid = fork();
        if (pid == 0) {
            body();
            _exit(0);
        }
        return pid;
    }

    fs::path m_folder =
        (fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) /
        ("helmsman_save_" + std::to_string(getpid()));
    fs::path m_file = m_folder / "Profile.ini";
};

// Two processes save their own keys through the real path while this one reads: every key
// arrives and no read ever sees the file empty or cut short.
TEST_F(ConcurrentSaveTest, TwoWritersLoseNothing) {
    constexpr int kSaves = 300;
    writeFileBytes(m_file, "[Base]\r\nkeep=1\r\n");
    std::vector<pid_t> writers;
    for (int w = 0; w < 2; ++w)
        writers.push_back(spawn([&, w] {
            for (int i = 0; i < kSaves; ++i)
                if (!profileWriteString(m_file, "W" + std::to_string(w), "k" + std::to_string(i),
                                        std::to_string(i)))
                    _exit(1);
        }));
    int reads = 0, badReads = 0;
    for (std::size_t done = 0; done < writers.size();) {
        const std::string bytes = readFileBytes(m_file);
        ++reads;
        if (bytes.rfind("[Base]\r\nkeep=1\r\n", 0) != 0 || bytes.back() != '\n') ++badReads;
        done = 0;
        for (pid_t& pid : writers) {
            int status = 0;
            if (pid > 0 && waitpid(pid, &status, WNOHANG) == pid) {
                EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
                pid = -1;
            }
            done += pid < 0;
        }
    }
    EXPECT_EQ(badReads, 0) << "of " << reads;
    const CProfileIni result(m_file);
    int lost = 0;
    for (int w = 0; w < 2; ++w)
        for (int i = 0; i < kSaves; ++i)
            lost += result.getInt("W" + std::to_string(w), "k" + std::to_string(i), -1) != i;
    EXPECT_EQ(lost, 0);
}

// A writer killed at any moment leaves one of the two contents it alternates between, whole,
// and what it leaves behind is cleaned up by the next save.
TEST_F(ConcurrentSaveTest, AKilledWriterLeavesOneWholeFile) {
    const std::string a(100000, 'a'), b(150000, 'b');
    const std::string fileA = "[S]\r\nv=" + a + "\r\n", fileB = "[S]\r\nv=" + b + "\r\n";
    writeFileBytes(m_file, fileA);
    std::mt19937 rng(11);
    for (int round = 0; round < 25; ++round) {
        const pid_t pid = spawn([&] {
            for (CProfileIni ini(m_file);;) {
                ini.writeString("S", "v", ini.getString("S", "v", "", 1 << 20) == a ? b : a);
                ini.save();
            }
        });
        usleep(std::uniform_int_distribution<useconds_t>(0, 4000)(rng));
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
        const std::string bytes = readFileBytes(m_file);
        ASSERT_TRUE(bytes == fileA || bytes == fileB) << "round " << round << ": " << bytes.size();
    }
    ASSERT_TRUE(profileWriteString(m_file, "S", "v", "done"));
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(m_folder))
        names.insert(entry.path().filename().string());
    EXPECT_EQ(names, (std::set<std::string>{"Profile.ini", "Profile.ini.lock"}));
}

#endif

}  // namespace
