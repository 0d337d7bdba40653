// The auto spread robot's own texts: caption, labels, messages and status lines, kept in one
// place so they can be read against each other character by character.
#pragma once

namespace auto_spread_text {

inline constexpr const char* kToolName = "价差舟";
inline constexpr const char* kCaptionTwoLegs = "价差舟[公式:%dA-%dB]";
inline constexpr const char* kCaptionThreeLegs = "价差舟[公式:%dA-%dB-%dC]";
inline constexpr const char* kPrompt = "提示";
inline constexpr const char* kConfirm = "确认";

// The four lines.
inline constexpr const char* kLongEntry = "多头开仓";
inline constexpr const char* kLongExit = "多头平仓";
inline constexpr const char* kShortEntry = "空头开仓";
inline constexpr const char* kShortExit = "空头平仓";

// Refusals of a start.
inline constexpr const char* kNotLoggedOn = "请先登录交易帐户！";
inline constexpr const char* kNoSymbols = "请选择商品A和商品B！";
inline constexpr const char* kNoSymbolC = "蝶式价差请选择商品C！";
inline constexpr const char* kBadUnits = "价差系数必须大于0，请重新设置！";
inline constexpr const char* kBadLegLots = "每腿手数必须大于等于1，请重新设置数量！";
inline constexpr const char* kBadLots = "单笔数量和最大仓位必须大于等于1，请重新设置数量！";
inline constexpr const char* kNoLine = "请至少勾选一个开仓或平仓条件！";
inline constexpr const char* kBadLongLines = "多头开仓价差必须低于多头平仓价差，请重新设置！";
inline constexpr const char* kBadShortLines = "空头开仓价差必须高于空头平仓价差，请重新设置！";
inline constexpr const char* kBadStep = "分批间隔和分批数量必须大于等于1，请重新设置！";
inline constexpr const char* kBadStay = "挂单等待时间必须大于等于100毫秒，请重新设置！";
inline constexpr const char* kBadDelay = "下单间隔不能小于0秒，请重新设置！";
inline constexpr const char* kUnknownSymbol = "商品合约不存在，请重新选择商品！";
inline constexpr const char* kRollTwoLegs = "换月模式只能用于两腿价差，请取消蝶式！";

// Messages while running.
inline constexpr const char* kBusy = "价差舟运行中或有委托未完成，不能修改设置，请先暂停！";
inline constexpr const char* kAskClose = "价差舟正在运行或有委托未完成，确定要关闭吗？";
inline constexpr const char* kHedgeRefused =
    "商品%s补单连续%d次被拒绝，价差舟已暂停。请检查帐户后重新启动，或手动补齐头寸！";
inline constexpr const char* kOrderWorking = "价差舟有委托未完成，请等委托结束后再修改持仓！";
inline constexpr const char* kManualPosition = "手工修改持仓后，请确认各腿的实际头寸与之相符！";

// Status line.
inline constexpr const char* kStatusStopped = "未启动";
inline constexpr const char* kStatusPaused = "已暂停";
inline constexpr const char* kStatusWatching = "监控价差中";
inline constexpr const char* kStatusDelay = "下单间隔中";
inline constexpr const char* kStatusFirstLeg = "%s%d份：商品A委托中";
inline constexpr const char* kStatusHedging = "%s%d份：补齐商品%s中";
inline constexpr const char* kStatusParked = "出错，请手工处理";

// Journal reasons.
inline constexpr const char* kReasonFirst = "%s%d份：商品A";
inline constexpr const char* kReasonHedge = "%s%d份：补齐商品%s";

}  // namespace auto_spread_text
