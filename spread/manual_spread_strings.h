// Texts of the manual spread window, exactly as the trader sees them.
#pragma once

namespace manual_spread_text {

// The tool's name: the window's title, the batch confirmation's caller and the remark of
// every order it sends.
inline constexpr const char* kName = "价差下单";
// Caption after each update: "<template>@" (or nothing), then the times of legs A and B.
inline constexpr const char* kCaption = "%s价差下单:A[%s],B[%s]";

// Switches and buttons.
inline constexpr const char* kButterfly = "按下启动碟式套利";
inline constexpr const char* kChange = "按下启动跨月换仓";
inline constexpr const char* kExit = "平仓";
inline constexpr const char* kConfirmOrder = "下单需要进行确认";
inline constexpr const char* kFirstLotsConfirm = "第一次需数量确认";
inline constexpr const char* kShowChart = "打开/关闭图表";
inline constexpr const char* kHedge = "按下设置为保值";
inline constexpr const char* kTemplateButton = "打开参数设置菜单";
inline constexpr const char* kBuySpread = "买入价差";
inline constexpr const char* kSellSpread = "卖出价差";

// Labels of the window's fields.
inline constexpr const char* kLegA = "商品A";
inline constexpr const char* kLegB = "商品B";
inline constexpr const char* kLegC = "商品C";
inline constexpr const char* kExchange = "交易所";
inline constexpr const char* kSymbol = "商品";
inline constexpr const char* kUnit = "价格乘数";
inline constexpr const char* kLots = "每份手数";
inline constexpr const char* kEveryLots = "每次份数";
inline constexpr const char* kOffset = "下单偏移";
inline constexpr const char* kOffsetUnit = "跳";
inline constexpr const char* kAccounts = "交易帐户";

// The three price rows.
inline constexpr const char* kRowAsk = "卖盘价/量";
inline constexpr const char* kRowBid = "买盘价/量";
inline constexpr const char* kRowLast = "最新价/比值";
inline constexpr const char* kPriceVolume = "%s/%.f";
inline constexpr const char* kLastRatio = "%s/%.2f";

// Chart series and point tips.
inline constexpr const char* kSeriesBid = "SpreadBid";
inline constexpr const char* kSeriesAsk = "SpreadAsk";
inline constexpr const char* kTipBid = "买盘:%g";
inline constexpr const char* kTipAsk = "卖盘:%g";

// Refusals before sending (caption "提示").
inline constexpr const char* kInfo = "提示";
inline constexpr const char* kNoAccount = "请选择至少一个交易帐户！";
inline constexpr const char* kBadEveryLots = "交易数量必须大于等于1，请重新设置数量！";
inline constexpr const char* kNoQuote3 = "商品A、商品B或商品C中存在无效的行情，请重新设置商品！";
inline constexpr const char* kNoQuote2 = "商品A或商品B中存在无效的行情，请重新设置商品！";

// The quantity question before the first order (caption "交易数量").
inline constexpr const char* kLotsCaption = "交易数量";
inline constexpr const char* kAskLots3 =
    "商品A、商品B和商品C的单笔交易数量为[%d:%d:%d]，这是您预期的数量吗？";
inline constexpr const char* kAskLots2 =
    "商品A和商品B的单笔交易数量为[%d:%d]，这是您预期的数量吗？";

// Journal reasons.
inline constexpr const char* kReasonBuy = "买入价差";
inline constexpr const char* kReasonSell = "卖出价差";

}  // namespace manual_spread_text
