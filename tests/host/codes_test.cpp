#include <gtest/gtest.h>

#include "host/codes.h"

TEST(Codes, OrderStatusTexts) {
    const std::pair<int, const char*> cases[] = {
        {0, "等待触发"}, {1, "已报"},     {2, "部分成交"},  {3, "全部成交"}, {4, "已撤单"},
        {5, "已废除"},   {6, "部成部撤"}, {7, "撤单中..."}, {8, "过期"},     {11, "发送中..."},
        {9, "未知"},     {10, "未知"},    {-1, "未知"},     {99, "未知"},
    };
    for (auto [code, text] : cases) EXPECT_EQ(codes::orderStatusText(code), text) << code;
}

TEST(Codes, FlagTexts) {
    EXPECT_EQ(codes::openCloseText(0), "开仓");
    EXPECT_EQ(codes::openCloseText(1), "平仓");
    EXPECT_EQ(codes::openCloseText(2), "平今仓");
    EXPECT_EQ(codes::openCloseText(3), "-");
    EXPECT_EQ(codes::triggerTypeText(0), "吊买");
    EXPECT_EQ(codes::triggerTypeText(1), "吊卖");
    EXPECT_EQ(codes::triggerTypeText(2), "追买");
    EXPECT_EQ(codes::triggerTypeText(3), "追卖");
    EXPECT_EQ(codes::triggerTypeText(4), "-");
    EXPECT_EQ(codes::hedgeText(1), "保值");
    EXPECT_EQ(codes::hedgeText(0), "投机");
    EXPECT_EQ(codes::hedgeText(2), "投机");
    EXPECT_EQ(codes::directionText(1), "买入");
    EXPECT_EQ(codes::directionText(2), "卖出");
}
