// The grid spread robot's own texts: caption, labels, messages and the filter's states.
// Kept in one place so they can be read against each other character by character. The leg
// status texts and failure messages shared by every robot are in robot_strings.h.
#pragma once

namespace grid_text {

inline constexpr const char* kToolName = "价差格";
inline constexpr const char* kCaptionFormat = "价差格[公式:%dA-%dB]";
inline constexpr const char* kSection = "GridsSpread";

// Labels of the window.
inline constexpr const char* kAccountA = "户A:";
inline constexpr const char* kAccountB = "户B:";
inline constexpr const char* kSymbolA = "商品A";
inline constexpr const char* kSymbolB = "商品B";
inline constexpr const char* kEveryLots = "每次量";
inline constexpr const char* kMaxLots = "最大仓";
inline constexpr const char* kGridLots = "每格量";
inline constexpr const char* kFirstGrid = "起点值";
inline constexpr const char* kGridInterval = "间距值";
inline constexpr const char* kWinGrid = "盈利值";
inline constexpr const char* kMonitorEdge = "边界值";
inline constexpr const char* kMonitorThreshold = "撤单阈";
inline constexpr const char* kFixupOffset = "补偏移";
inline constexpr const char* kFilter = "过滤器";
inline constexpr const char* kPosition = "头寸";
inline constexpr const char* kUpdate = "更新";
inline constexpr const char* kClosedCount = "平仓:%d";
inline constexpr const char* kDetails = "查看详情";
inline constexpr const char* kStart = "启动";
inline constexpr const char* kPause = "暂停";
inline constexpr const char* kBuySpread = "买价差";
inline constexpr const char* kSellSpread = "卖价差";
inline constexpr const char* kTemplate = "模板";
inline constexpr const char* kOpenPair = "开仓状态:";
inline constexpr const char* kClosePair = "平仓状态:";
inline constexpr const char* kFilterState = "过滤状态:";
inline constexpr const char* kAccountFormat = "%s(%s)";

// The filter's states.
inline constexpr const char* kRising = "涨";
inline constexpr const char* kFalling = "跌";
inline constexpr const char* kFlat = "平";

// Messages.
inline constexpr const char* kPrompt = "提示";
inline constexpr const char* kConfirm = "确认";
inline constexpr const char* kNotLoggedOn = "请先登录交易帐户！";
inline constexpr const char* kBadLots = "单笔数量和最大仓位必须大于等于1，请重新设置数量！";
inline constexpr const char* kBadMonitor = "监控边界和撤单阈值必须大于等于1，请重新设置数量！";
inline constexpr const char* kNoSymbols = "请先选择商品A和商品B！";
inline constexpr const char* kCannotPause = "正处于中间状态，不能暂停，请稍候重试！";
inline constexpr const char* kManualPosition = "您手工修改了持仓的头寸，将按您输入的参数设置！";
inline constexpr const char* kAskClose = "关闭窗体将会终止价差格的运行，您确认要退出？";

// The manager dialog's columns.
inline constexpr const char* kManagerColumns =
    "名称,120;商品A,60;比例A,48;商品B,60;比例B,48;方向,48;起点值,60;间距值,60;盈利值,60;";

// Reasons written to the audit journal.
inline constexpr const char* kReasonOpenB = "开仓第%d格挂单B";
inline constexpr const char* kReasonCloseB = "平仓第%d格挂单B";
inline constexpr const char* kReasonOpenA = "开仓B成交，对价下A";
inline constexpr const char* kReasonCloseA = "平仓B成交，对价下A";

}  // namespace grid_text
