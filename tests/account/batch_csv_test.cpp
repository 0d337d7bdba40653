// The batch trader's files as traders leave them: missing, empty, hand-edited (BOM, CRLF,
// quotes, GBK) or partly malformed. What can be read loads, the rest is named and kept, and a
// save never leaves a file with less than it held.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "account/account_strings.h"
#include "account/batch_csv.h"
#include "host/gbk_codec.h"
#include "support/temp_dir.h"

namespace {

using namespace batch_csv;

std::string readAll(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeAll(const std::filesystem::path& p, const std::string& bytes) {
    std::ofstream(p, std::ios::binary) << bytes;
}

TEST(BatchCsv, ReadsWhatTradersWrite) {
    struct Case {
        const char* name;
        std::string bytes;
        std::vector<MultipleRow> rows;
        int skipped;
    } cases[] = {
        {"empty", "", {}, 0},
        {"heading only", "帐户,经纪商,倍数\r\n", {}, 0},
        {"BOM, CRLF, blanks", "\xEF\xBB\xBF帐户,经纪商,倍数\r\n 880001 , 9999 , 2 \r\n\r\n", {{"880001", "9999", 2}}, 0},
        {"no broker column", "880001,1.5\n", {{"880001", "", 1.5}}, 0},
        {"quotes with a comma and a quote", "\"a,\"\"b\",9999,3\n", {{"a,\"b", "9999", 3}}, 0},
        {"GBK heading and name", gbk::fromUtf8("帐户,经纪商,倍数\n张三,9999,1\n"), {{"张三", "9999", 1}}, 0},
        {"no trailing newline", "880001,9999,4", {{"880001", "9999", 4}}, 0},
        {"bad number, bad count, open quote, no account",
         "880001,9999,x\n1,2,3,4\n\"880002,9999,1\n,9999,1\n880003,9999,1\n", {{"880003", "9999", 1}}, 4},
        {"negative multiple", "880001,9999,-1\n", {}, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MultipleTable t = parseMultiple(c.bytes);
        EXPECT_EQ(t.rows, c.rows);
        EXPECT_EQ(t.skipped, c.skipped);
        EXPECT_EQ(t.kept.size(), static_cast<std::size_t>(c.skipped));
    }
    const CustomVolTable v = parseCustomVol("方案,帐户,经纪商,数量\n大单,880001,9999,10\n大单,880002,,5\n小单,880001,9999,1.5\n");
    EXPECT_EQ(v.rows, (std::vector<CustomVolRow>{{"大单", "880001", "9999", 10}, {"大单", "880002", "", 5}}));
    EXPECT_EQ(v.skipped, 1);  // volumes are whole lots
}

TEST(BatchCsv, SaveKeepsUnreadLinesAndRefusesUnreadableFiles) {
    TempDir dir("helmsman_batch_csv");
    const auto path = dir / "Multiple.csv";
    writeAll(path, "880001,9999,2\r\n880002,9999,abc\r\n");
    MultipleTable t = loadMultiple(path);
    ASSERT_EQ(t.rows.size(), 1u);
    EXPECT_EQ(loadMessage("Multiple.csv", t),
              "Multiple.csv有1行无法识别，已跳过（第2行：数值无效）。保存时原样保留这些行。");
    t.rows[0].multiple = 3;
    ASSERT_TRUE(saveMultiple(path, t));
    const std::string saved = gbk::toUtf8(readAll(path));
    EXPECT_EQ(saved, "帐户,经纪商,倍数\r\n880001,9999,3\r\n880002,9999,abc\r\n");
    EXPECT_EQ(loadMultiple(path).kept, t.kept);

    // Missing: loads empty and may be created.
    const MultipleTable missing = loadMultiple(dir / "none.csv");
    EXPECT_TRUE(missing.readable);
    EXPECT_TRUE(missing.rows.empty());
    EXPECT_EQ(loadMessage("none.csv", missing), "");

    // A folder in the file's place cannot be read, and is never written over.
    std::filesystem::create_directory(dir / "CustomVol.csv");
    const CustomVolTable unreadable = loadCustomVol(dir / "CustomVol.csv");
    EXPECT_FALSE(unreadable.readable);
    EXPECT_EQ(loadMessage("CustomVol.csv", unreadable), "无法读取CustomVol.csv，本次不会覆盖该文件。");
    EXPECT_FALSE(saveCustomVol(dir / "CustomVol.csv", unreadable));
    EXPECT_TRUE(std::filesystem::is_directory(dir / "CustomVol.csv"));
}

}  // namespace
