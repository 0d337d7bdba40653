#include "spread/template_store.h"

#include <gtest/gtest.h>

#include <cstring>

#include "spread/spread_templates.h"
#include "support/temp_dir.h"

namespace {

using Manual = tagManualSpreadTemplate;

std::string bytes(std::initializer_list<int> b) {
    std::string s;
    for (int c : b) s.push_back(static_cast<char>(c));
    return s;
}

Manual manual(const std::string& name, bool butterfly = false) {
    Manual t;
    t.strName = name;
    t.legs = {{{1, "IF2406"}, {1, "IF2409"}, {2, "IC2406"}}};
    t.dSpreadUnit = {1.5, -1, 0.25};
    t.nSpreadLots = {1, 2, 3};
    t.nEveryLots = 4;
    t.nOrderOffset = -2;
    t.bButterfly = butterfly;
    t.bChange = 1;
    t.bConfirmOrder = 1;
    return t;
}

// Every tool's file name and magic; the header is the magic's length byte, the magic and the
// count.
TEST(TemplateStore, EveryFileWritesItsMagic) {
    namespace f = template_files;
    const struct {
        TemplateFile layout;
        const char* fileName;
        const char* magic;
    } table[] = {
        {f::kManualSpread, "ManualSpread.dat", "QXMS_1.2"},
        {f::kAutoSpread, "AutoSpread.dat", "QXSO_1.3"},
        {f::kSpreadVip, "SpreadVIP.dat", "QXSV_1.0"},
        {f::kSniper, "snipper.dat", "QXSPV_1.0"},
        {f::kGridsSpread, "GridsSpread.dat", "QXGS_1.1"},
        {f::kInterlinkGrids, "InterlinkGrids.dat", "QXGS_1.1"},
        {f::kSingleGrid, "singlegrid.dat", "QXSG_1.1"},
        {f::kScalper, "Scalper.dat", "QXST_1.0"},
        {f::kBlader, "blader.dat", "QXBT_1.0"},
        {f::kAmtOrder, "AMTOrder.dat", "QXAMT_1.0"},
        {f::kAlgoSet, "algoset.dat", "QXAT_1.0"},
        {f::kRiskCalc, "RiskCalc.dat", "QXRC_1.0"},
    };
    EXPECT_STREQ(f::kInterlinkGridsMagic, "QXIG_1.0");
    TempDir dir;
    for (const auto& row : table) {
        CTemplateStore<Manual> store(dir / "", row.layout);
        EXPECT_EQ(store.path().filename(), row.fileName);
        ASSERT_TRUE(store.save({}));
        const std::size_t n = std::strlen(row.magic);
        EXPECT_EQ(readFileBytes(store.path()),
                  std::string(1, static_cast<char>(n)) + row.magic + bytes({0, 0, 0, 0}))
            << row.fileName;
    }
}

// The interlinked grids read the grid spread's files and the reverse; no other pair matches.
TEST(TemplateStore, SharedGridMagicPassesTheCheck) {
    TempDir dir;
    CTemplateStore<Manual> grids(dir / "", template_files::kGridsSpread);
    ASSERT_TRUE(grids.save({manual("a")}));
    std::filesystem::copy_file(grids.path(), dir / "InterlinkGrids.dat");
    std::filesystem::copy_file(grids.path(), dir / "singlegrid.dat");
    EXPECT_EQ(CTemplateStore<Manual>(dir / "", template_files::kInterlinkGrids).load().size(), 1u);
    EXPECT_TRUE(CTemplateStore<Manual>(dir / "", template_files::kSingleGrid).load().empty());
}

// A hand-laid manual spread record: every field in file order.
TEST(TemplateStore, ManualSpreadRecordLayout) {
    Manual t = manual("ab");
    t.bShowChart = 1;  // not in the file
    CArchiveWriter out;
    writeTemplate(out, t);
    std::string expected = bytes({2, 'a', 'b'});
    for (const auto& [ex, code] : {std::pair{1, "IF2406"}, {1, "IF2409"}, {2, "IC2406"}})
        expected += bytes({ex, 0, 6}) + code;
    for (double d : {1.5, -1.0, 0.25}) {
        char raw[8];
        std::memcpy(raw, &d, 8);  // little-endian machine
        expected.append(raw, 8);
    }
    for (int v : {1, 2, 3, 4, -2, 0, 1, 0, 1, 0}) {
        const auto u = static_cast<std::uint32_t>(v);
        expected += bytes({int(u & 0xFF), int(u >> 8 & 0xFF), int(u >> 16 & 0xFF), int(u >> 24)});
    }
    EXPECT_EQ(out.bytes(), expected);
}

TEST(TemplateStore, RoundTripIsByteForByte) {
    TempDir dir;
    CTemplateStore<Manual> ms(dir / "", template_files::kManualSpread);
    ASSERT_TRUE(ms.save({manual("价差一", true), manual("B")}));
    const std::string first = readFileBytes(ms.path());
    TemplateLoadInfo info;
    const auto list = ms.load(&info);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].strName, "价差一");
    EXPECT_TRUE(info.exact);
    ASSERT_TRUE(ms.save(list));
    EXPECT_EQ(readFileBytes(ms.path()), first);

    tagAutoSpreadTemplate a;
    a.strName = "舟";
    a.accounts[1] = {"880001", "9999", "模拟", "880001(模拟)", 2};
    a.legs[0] = {3, "rb2410"};
    a.nGridLots = 7;
    a.dShortExitPrice = 12.5;
    a.nUnstayedOffset = 3;
    CTemplateStore<tagAutoSpreadTemplate> as(dir / "", template_files::kAutoSpread);
    ASSERT_TRUE(as.save({a, a}));
    const std::string autoFile = readFileBytes(as.path());
    const auto autos = as.load(&info);
    ASSERT_EQ(autos.size(), 2u);
    EXPECT_EQ(autos[1].accounts[1].strAccountText, "880001(模拟)");
    ASSERT_TRUE(as.save(autos));
    EXPECT_EQ(readFileBytes(as.path()), autoFile);
}

// Bad files give what can be read, never a message or a write.
TEST(TemplateStore, DamagedFilesLoadWhatTheyCan) {
    TempDir dir;
    CTemplateStore<Manual> ms(dir / "", template_files::kManualSpread);
    ASSERT_TRUE(ms.save({manual("A"), manual("B"), manual("C")}));
    const std::string good = readFileBytes(ms.path());
    const std::string header = std::string("\x08QXMS_1.2", 9);
    const std::size_t recordSize = (good.size() - 13) / 3;

    std::string wrongCount = good;
    wrongCount[9] = 5;
    std::string hugeCount = good;
    hugeCount.replace(9, 4, bytes({0xFF, 0xFF, 0xFF, 0x7F}));
    std::string namePastEnd = header + bytes({1, 0, 0, 0, 0xFE, 'x'});
    std::string lowerMagic = good;
    lowerMagic.replace(1, 8, "qxms_1.2");

    const struct {
        const char* what;
        std::string file;
        std::size_t loaded;
    } cases[] = {
        {"count 0", header + bytes({0, 0, 0, 0}), 0},
        {"count 0 and a stray byte", header + bytes({0, 0, 0, 0, 0}), 0},
        {"lower-case magic", lowerMagic, 3},
        {"foreign magic", std::string("\x08QXSO_1.3", 9) + good.substr(9), 0},
        {"magic only", header, 0},
        {"empty file", "", 0},
        {"cut inside the third record", good.substr(0, 13 + 2 * recordSize + 7), 2},
        {"cut inside the count", good.substr(0, 11), 0},
        {"count beyond the records", wrongCount, 3},
        {"huge count", hugeCount, 3},
        {"negative count", header + bytes({0xFF, 0xFF, 0xFF, 0xFF}) + good.substr(13), 0},
        {"name past the end", namePastEnd, 0},
        {"invalid GBK in a name", header + bytes({1, 0, 0, 0}) + bytes({1, 0x81}) + good.substr(15),
         1},
    };
    for (const auto& c : cases) {
        writeFileBytes(ms.path(), c.file);
        EXPECT_EQ(ms.load().size(), c.loaded) << c.what;
        EXPECT_EQ(readFileBytes(ms.path()), c.file) << c.what;
    }

    // A folder of the file's name counts as no file.
    std::filesystem::remove(ms.path());
    std::filesystem::create_directory(ms.path());
    EXPECT_TRUE(ms.load().empty());
}

TEST(TemplateStore, LongCodesAreCutToTheFixedField) {
    TempDir dir;
    CTemplateStore<Manual> ms(dir / "", template_files::kManualSpread);
    Manual t = manual("A");
    t.legs[0].szSymbolCode = std::string(40, 'X');
    ASSERT_TRUE(ms.save({t}));
    TemplateLoadInfo info;
    const auto list = ms.load(&info);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].legs[0].szSymbolCode, std::string(31, 'X'));
    EXPECT_FALSE(info.exact);
}

}  // namespace
