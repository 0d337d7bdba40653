// The ladder robot's own texts: caption, totals, questions and messages, the window's labels
// and the journal's reasons. Kept in one place so they can be read against each other
// character by character. The leg status texts and leg failure messages are the robots'
// shared ones (robot_strings.h).
#pragma once

namespace blader_text {

inline constexpr const char* kToolName = "顺势锤";
inline constexpr const char* kCaption = "顺势锤[时间:%d(秒)]";
inline constexpr const char* kCaptionIdle = "顺势锤[时间:N/A]";
inline constexpr const char* kTotals = "合计:%d(%d)";

inline constexpr const char* kPrompt = "提示";
inline constexpr const char* kConfirm = "确认";
inline constexpr const char* kLogonFirst = "请先登录交易帐户！";
inline constexpr const char* kPositionTyped = "您手工修改了持仓的头寸，将按您输入的参数设置！";
inline constexpr const char* kAskClose = "关闭窗体将会终止顺势锤的运行，您确认要退出？";
// Our own: a start without an instrument the host knows, and a pause while an order is on
// its way to or from the exchange (its outcome must be heard before the robot lets go).
inline constexpr const char* kChooseSymbol = "请先选择有效的交易商品！";
inline constexpr const char* kPauseBusy = "委托状态正在变化，请稍后再暂停！";

// The window.
inline constexpr const char* kSettingsGroup = "参数";
inline constexpr const char* kRunningGroup = "运行";
inline constexpr const char* kAccount = "帐户";
inline constexpr const char* kSymbol = "商品";
inline constexpr const char* kSide = "方向";
inline constexpr const char* kLong = "做多";
inline constexpr const char* kShort = "做空";
inline constexpr const char* kMaxPos = "最多笔数";
inline constexpr const char* kGridInterval = "网格间距";
inline constexpr const char* kWinPoint = "止盈点数";
inline constexpr const char* kTimeExit = "持仓时限";
inline constexpr const char* kTicks = "跳";
inline constexpr const char* kSeconds = "秒";
inline constexpr const char* kPosition = "持仓笔数";
inline constexpr const char* kBase = "基准价";
inline constexpr const char* kQuote = "行情";
inline constexpr const char* kQuoteLine = "最新 %s  买 %s  卖 %s";
inline constexpr const char* kOpenLeg = "开仓";
inline constexpr const char* kCloseLeg = "平仓";
inline constexpr const char* kStart = "启动";
inline constexpr const char* kPause = "暂停";
inline constexpr const char* kTemplates = "模板";
inline constexpr const char* kRunning = "运行中";
inline constexpr const char* kPaused = "已暂停";
inline constexpr const char* kNone = "-";
inline constexpr const char* kTemplateManager = "顺势锤模板管理器";
inline constexpr const char* kTemplateColumns =
    "名称,120;商品,60;方向,40;最多笔数,60;网格间距,60;止盈点数,60;持仓时限,60;";

// The journal's reasons.
inline constexpr const char* kReasonEntry = "开仓第%d笔";
inline constexpr const char* kReasonTarget = "第%d笔止盈平仓";
inline constexpr const char* kReasonTimeUp = "持仓时间到，第%d笔按对价平仓";

}  // namespace blader_text
