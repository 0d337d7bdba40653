#include "app/column_layout.h"

#include <gtest/gtest.h>

namespace {

using Columns = std::vector<ColumnDef>;

TEST(ColumnDef, ParsesEntriesWithOrWithoutTrailingSeparator) {
    struct Case {
        const char* detail;
        Columns expected;
    } cases[] = {
        {"帐号,120;商品,80;数量,60", {{"帐号", 120}, {"商品", 80}, {"数量", 60}}},
        {"", {}},
        {";;  ;", {}},
        {" 帐号 , 120 ;; 商品,80 ;", {{"帐号", 120}, {"商品", 80}}},
        {"a,b,50", {{"a,b", 50}}},                  // the width follows the last comma
        {"价格,80px", {{"价格", 80}}},              // leading integer of the width
        {"价格", {{"价格", kDefaultColumnWidth}}},  // no width
        {"价格,", {{"价格", kDefaultColumnWidth}}},
        {"价格,abc", {{"价格", kDefaultColumnWidth}}},
        {"价格,0", {{"价格", kDefaultColumnWidth}}},
        {"价格,-5", {{"价格", kDefaultColumnWidth}}},
        {",40", {{"", 40}}},  // a column without a heading is kept
    };
    for (const auto& c : cases) EXPECT_EQ(parseColumnLayout(c.detail), c.expected) << c.detail;
}

TEST(ColumnDef, FormatIsTheInverse) {
    const Columns columns = {{"帐号", 120}, {"商品", 80}, {"", 40}, {"a,b", 7}};
    EXPECT_EQ(formatColumnLayout(columns), "帐号,120;商品,80;,40;a,b,7;");
    EXPECT_EQ(parseColumnLayout(formatColumnLayout(columns)), columns);
    // A ';' in a title cannot split the column on the way back.
    EXPECT_EQ(parseColumnLayout(formatColumnLayout({{"x;y", 30}})), (Columns{{"x y", 30}}));
    EXPECT_EQ(formatColumnLayout({}), "");
}

}  // namespace
