// The auto spread window's own labels: column heads, field names, buttons and the round
// table, in one place so they can be read against each other character by character. The
// robot's messages and status lines are its own (robots/auto_spread_strings.h).
#pragma once

namespace auto_spread_label {

// Leg rows.
inline constexpr const char* kLegA = "商品A";
inline constexpr const char* kLegB = "商品B";
inline constexpr const char* kLegC = "商品C";
inline constexpr const char* kAccount = "交易帐户";
inline constexpr const char* kExchange = "交易所";
inline constexpr const char* kSymbol = "商品";
inline constexpr const char* kUnit = "价格乘数";
inline constexpr const char* kLots = "每份手数";
inline constexpr const char* kBid = "买价";
inline constexpr const char* kAsk = "卖价";
inline constexpr const char* kLegState = "委托状态";
inline constexpr const char* kAccountFormat = "%s(%s)";
inline constexpr const char* kButterfly = "蝶式";
inline constexpr const char* kChange = "换月";

// The live spread.
inline constexpr const char* kSpreadBox = "价差";

// The four lines and how each compares.
inline constexpr const char* kLinesBox = "触发条件";
inline constexpr const char* kAtMost = "价差≤";
inline constexpr const char* kAtLeast = "价差≥";

// Sizes and timing.
inline constexpr const char* kOrderBox = "下单设置";
inline constexpr const char* kEveryLots = "单笔数量";
inline constexpr const char* kMaxLots = "最大仓位";
inline constexpr const char* kOrderOffset = "下单偏移";
inline constexpr const char* kUnstayedOffset = "补单偏移";
inline constexpr const char* kStay = "挂单等待(毫秒)";
inline constexpr const char* kDelay = "下单间隔(秒)";
inline constexpr const char* kStepTrade = "分批开仓";
inline constexpr const char* kStepExit = "分批平仓";
inline constexpr const char* kGridOffset = "分批间隔(跳)";
inline constexpr const char* kGridLots = "每批数量";
inline constexpr const char* kConfirmOrder = "下单确认";

// State.
inline constexpr const char* kStateBox = "运行状态";
inline constexpr const char* kPosition = "持仓(份)";
inline constexpr const char* kUpdate = "更新";
inline constexpr const char* kAverage = "持仓均价差";
inline constexpr const char* kRealised = "平仓盈亏(点)";
inline constexpr const char* kStatus = "状态";
inline constexpr const char* kRoundHeads[] = {"时间",    "动作",    "份数", "A成交价",
                                              "B成交价", "C成交价", "价差"};

// Buttons.
inline constexpr const char* kTemplate = "模板";
inline constexpr const char* kStart = "启动";
inline constexpr const char* kPause = "暂停";

}  // namespace auto_spread_label
