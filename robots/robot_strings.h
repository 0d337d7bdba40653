// The robots' own texts: leg status texts, leg failure messages and the launcher's lines.
// Kept in one place so they can be read against each other character by character.
#pragma once

namespace robot_text {

// Leg states of a single-leg robot.
inline constexpr const char* kInitial = "初始状态";
inline constexpr const char* kOpenSending = "开仓委托中...";
inline constexpr const char* kOpenBuyQueued = "买入开仓委托已报(%.f/%.f)";
inline constexpr const char* kOpenSellQueued = "卖出开仓委托已报(%.f/%.f)";
inline constexpr const char* kOpenCancelling = "开仓委托撤单中...";
inline constexpr const char* kOpenFilled = "开仓成交";
inline constexpr const char* kCloseSending = "平仓委托中...";
inline constexpr const char* kCloseSellQueued = "卖出平仓委托已报(%.f/%.f)";
inline constexpr const char* kCloseBuyQueued = "买入平仓委托已报(%.f/%.f)";
inline constexpr const char* kCloseCancelling = "平仓委托撤单中...";
inline constexpr const char* kCloseFilled = "平仓成交";
inline constexpr const char* kErrorOrTimeUp = "出错或时间到";
inline constexpr const char* kUnknownState = "出错，请手工很处理";
// Without a quote on the order's own side the single-leg texts show the down-limit bracket
// on both sides.
inline constexpr const char* kOpenBuyQueuedNoQuote = "买入开仓委托已报(已跌停)";
inline constexpr const char* kOpenSellQueuedNoQuote = "卖出开仓委托已报(已跌停)";
inline constexpr const char* kCloseSellQueuedNoQuote = "卖出平仓委托已报(已跌停)";
inline constexpr const char* kCloseBuyQueuedNoQuote = "买入平仓委托已报(已跌停)";

// The scalper words the same stages as resting orders.
inline constexpr const char* kRestOpenSending = "开仓挂单委托中...";
inline constexpr const char* kRestOpenCancelling = "开仓挂单撤单中...";
inline constexpr const char* kRestOpenFilled = "开仓挂单成交";
inline constexpr const char* kRestCloseSending = "平仓挂单委托中...";
inline constexpr const char* kRestCloseCancelling = "平仓挂单撤单中...";
inline constexpr const char* kRestCloseFilled = "平仓挂单成交";
inline constexpr const char* kRestCloseSellQueuedNoAsk = "卖出平仓委托已报(已涨停)";

// Leg states of a two-leg grid robot. The numbers are pre-formatted with the instrument's
// price format.
inline constexpr const char* kGridBSending = "商品B挂单委托中...";
inline constexpr const char* kGridBQueued = "商品B挂单委托已报(%s/%s)";
inline constexpr const char* kGridBQueuedUpLimit = "商品B挂单委托已报(已涨停)";
inline constexpr const char* kGridBQueuedDownLimit = "商品B挂单委托已报(已跌停)";
inline constexpr const char* kGridBCancelling = "商品B挂单撤单中...";
inline constexpr const char* kGridBFilled = "商品B挂单成交";
inline constexpr const char* kGridASending = "商品A委托中...";
inline constexpr const char* kGridAQueued = "商品A委托已报";
// The single grid's queued texts, pre-formatted like the two-leg grid's.
inline constexpr const char* kOpenBuyQueuedFmt = "买入开仓委托已报(%s/%s)";
inline constexpr const char* kOpenSellQueuedFmt = "卖出开仓委托已报(%s/%s)";
inline constexpr const char* kCloseSellQueuedFmt = "卖出平仓委托已报(%s/%s)";
inline constexpr const char* kCloseBuyQueuedFmt = "买入平仓委托已报(%s/%s)";

// Failure messages of the single-leg machines; the number is the host's order status.
inline constexpr const char* kOpenSendFailed = "开仓委托发送后续状态出错，新状态=%d";
inline constexpr const char* kCloseSendFailed = "平仓委托发送后续状态出错，新状态=%d";
inline constexpr const char* kExternalCancel = "外部撤单或过期！,新状态=%d";
inline constexpr const char* kCancelFailed = "撤单处理失败，请手动处理,新状态=%d";

// Failure messages of the two-leg grid machines, opening pair and closing pair.
inline constexpr const char* kGridOpenSendFailed = "开仓委托发送后续状态出错，新状态=%d";
inline constexpr const char* kGridOpenExternalCancel = "开仓外部撤单或委托过期，新状态=%d";
inline constexpr const char* kGridOpenCancelFailed = "开仓撤单处理失败，请手动处理,新状态=%d";
inline constexpr const char* kGridCloseSendFailed = "平仓委托发送后续状态出错，新状态=%d";
inline constexpr const char* kGridCloseExternalCancel = "平仓外部撤单或委托过期，新状态=%d";
inline constexpr const char* kGridCloseCancelFailed = "平仓撤单处理失败，请手动处理,新状态=%d";
inline constexpr const char* kGridOpenARejected = "开仓商品A委托失败，请手动处理，补齐头寸！";
inline constexpr const char* kGridCloseARejected = "商品A平仓委托失败，请手动处理，补齐头寸！";
inline constexpr const char* kGridOpenAFailed = "开仓商品A委托发送后续状态出错，新状态=%d";
inline constexpr const char* kGridCloseAFailed = "商品A平仓委托发送后续状态出错，新状态=%d";

inline constexpr const char* kPrompt = "提示";

// The robot launcher.
inline constexpr const char* kLauncherTitle = "策略机器人";
inline constexpr const char* kLauncherOpen = "打开";
inline constexpr const char* kLauncherNotYet = "（尚未提供）";
inline constexpr const char* kLauncherColumnName = "机器人";
inline constexpr const char* kLauncherColumnWhat = "说明";
inline constexpr const char* kGridSpreadName = "价差格";
inline constexpr const char* kGridSpreadLine =
    "A、B两商品按比例组成价差，逐格挂单B，B成交即对价下A，价差回归后平仓。";
inline constexpr const char* kBladerName = "顺势锤";
inline constexpr const char* kBladerLine =
    "单一商品从市价起按网格间距逐笔开仓，每笔到固定盈利点即平仓。";

}  // namespace robot_text
