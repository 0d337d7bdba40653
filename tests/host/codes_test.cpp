#include "host/codes.h"

#include <gtest/gtest.h>

// The status codes are not contiguous (9 and 10 unused, 11 "sending"), where a slip in the
// mapping would hide; the flag rows are texts no window test reads, and the fallbacks.
TEST(Codes, TextsTheTraderReads) {
    const std::pair<int, const char*> statuses[] = {
        {0, "等待触发"}, {1, "已报"},     {2, "部分成交"},  {3, "全部成交"}, {4, "已撤单"},
        {5, "已废除"},   {6, "部成部撤"}, {7, "撤单中..."}, {8, "过期"},     {11, "发送中..."},
        {9, "未知"},     {10, "未知"},    {-1, "未知"},
    };
    for (auto [code, text] : statuses) EXPECT_EQ(codes::orderStatusText(code), text) << code;
    const std::pair<std::string_view, const char*> flags[] = {
        {codes::triggerTypeText(0), "吊买"}, {codes::triggerTypeText(1), "吊卖"},
        {codes::triggerTypeText(2), "追买"}, {codes::triggerTypeText(4), "-"},
        {codes::hedgeText(1), "保值"},       {codes::hedgeText(2), "投机"},
        {codes::openCloseText(3), "-"},      {codes::directionText(0), "-"},
    };
    for (auto [got, want] : flags) EXPECT_EQ(got, want);
}
