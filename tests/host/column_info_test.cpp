#include "host/column_info.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "host/gbk_codec.h"
#include "support/temp_dir.h"

namespace {

const std::vector<std::string> kTitles = {"帐户", "商品信息", "委托价格", "委托数量"};

ColumnInfo layout() {
    ColumnInfo info;
    info.titles = kTitles;
    info.widths = {120, 162, 90, 90};
    info.order = {0, 2, 1, 3};
    info.sortColumn = 2;
    info.ascending = false;
    return info;
}

std::string fileBytes(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(ColumnInfo, RoundTripsPerListInGbk) {
    TempDir dir("helmsman_column_info");
    ColumnInfo other = layout();
    other.sortColumn = -1;  // unsorted: the direction means nothing
    other.ascending = true;
    ASSERT_TRUE(saveColumnInfo(dir.string(), "MultiConfirm", layout()));
    ASSERT_TRUE(saveColumnInfo(dir.string(), "SameConfirm", other));
    EXPECT_EQ(loadColumnInfo(dir.string(), "MultiConfirm", kTitles), layout());
    EXPECT_EQ(loadColumnInfo(dir.string(), "SameConfirm", kTitles), other);
    EXPECT_EQ(loadColumnInfo(dir.string(), "FillNotice", kTitles), std::nullopt);
    // Headings written in GBK, as every file of the module.
    const std::string bytes = fileBytes(dir / kColumnInfoFile);
    EXPECT_EQ(bytes.find("帐户"), std::string::npos);
    EXPECT_NE(bytes.find("\xd5\xca\xbb\xa7"), std::string::npos);
}

// Hand-edited or stale entries are dropped one by one; a layout for other headings is none.
TEST(ColumnInfo, LoadsForgivingly) {
    const std::string header = "[L]\r\nColumns=帐户|商品信息|委托价格|委托数量\r\n";
    struct {
        const char* name;
        std::string body;
        std::optional<ColumnInfo> expected;
    } cases[] = {
        {"all fine", header + "Widths=120,162,90,90\r\nOrder=0,2,1,3\r\nSort=2,0\r\n", layout()},
        {"other headings", "[L]\r\nColumns=帐户|商品\r\nWidths=1,2\r\n", std::nullopt},
        {"no section", "[X]\r\n", std::nullopt},
        {"broken entries", header + "Widths=120,abc,90,90\r\nOrder=0,1,1,3\r\nSort=9,1\r\n",
         ColumnInfo{kTitles, {}, {}, -1, true}},
        {"width too small", header + "Widths=120,0,90,90\r\nOrder=3,2,1,0\r\n",
         ColumnInfo{kTitles, {}, {3, 2, 1, 0}, -1, true}},
        {"too few", header + "Widths=120,90\r\nOrder=0,1\r\nSort=1,1\r\n",
         ColumnInfo{kTitles, {}, {}, 1, true}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TempDir dir("helmsman_column_info");
        std::ofstream(dir / kColumnInfoFile, std::ios::binary) << gbk::fromUtf8(c.body);
        EXPECT_EQ(loadColumnInfo(dir.string(), "L", kTitles), c.expected);
    }
}

}  // namespace
