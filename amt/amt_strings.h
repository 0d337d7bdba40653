// The conditional strategy's texts, exactly as the trader sees them: caption, remark, the
// start checks' boxes, the direction-dependent condition labels and the window's captions.
// Kept in one place so they can be read against each other character by character.
#pragma once

namespace amt_text {

// The tool's name: the orders' remark, the caller name of the confirmation, the journal.
inline constexpr const char* kToolName = "条件通";
inline constexpr const char* kCaptionCodes = "条件通[E:%d,X:%d]";
inline constexpr const char* kCaptionTemplate = "条件通 - ";  // then the template name
inline constexpr const char* kInfo = "提示";
inline constexpr const char* kConfirm = "确认";

inline constexpr const char* kAskClose = "关闭窗体将会终止条件通的运行，您确认要退出？";
inline constexpr const char* kPositionEdited = "您手工修改了持仓的头寸，将按您输入的参数设置！";

// Start checks, in the order they are made.
inline constexpr const char* kNoAccount = "请先登录交易帐户！";
inline constexpr const char* kLotsBelowOne = "单笔数量和最大仓位必须大于等于1，请重新设置数量！";
inline constexpr const char* kMaxNotMultiple = "最大仓位必须是单笔数量的整数倍，请重新设置数量！";
inline constexpr const char* kRestNotMultiple =
    "准备开仓的数量(最大仓位-多头仓位)必须是单笔数量的整数倍，请重新设置数量！";
inline constexpr const char* kPositionAboveMax = "当前头寸不能大于最大仓位，请重新设置！";
inline constexpr const char* kDelayBelowOne = "委托间隔时间必须大于等于1秒，请重新设置间隔时间！";
inline constexpr const char* kStartPassed =
    "您设置启动时间已过，马上启动请点[是]，退出操作请点[否]！";
// Entry condition already met, by label: 追买, 吊买, 追卖, 吊卖.
inline constexpr const char* kEntryMetChaseBuy =
    "您设定的追买开仓触发价格小于等于现价，启动后将会马上执行追买操作，您要继续执行吗？";
inline constexpr const char* kEntryMetDipBuy =
    "您设定的吊买开仓触发价格大于等于现价，启动后将会马上执行吊买操作，您要继续执行吗？";
inline constexpr const char* kEntryMetChaseSell =
    "您设定的追卖开仓触发价格大于等于现价，启动后将会马上执行追卖操作，您要继续执行吗？";
inline constexpr const char* kEntryMetDipSell =
    "您设定的吊卖开仓触发价格小于等于现价，启动后将会马上执行吊卖操作，您要继续执行吗？";
inline constexpr const char* kRangeChaseBuy =
    "追买时设定的开仓区间限定值必须大于追买触发价格，请重新设置开仓区间限定值！";
inline constexpr const char* kRangeDipBuy =
    "吊买时设定的开仓区间限定值必须小于吊买触发价格，请重新设置开仓区间限定值！";
inline constexpr const char* kRangeChaseSell =
    "追卖时设定的开仓区间限定值必须小于追卖触发价格，请重新设置开仓区间限定值！";
inline constexpr const char* kRangeDipSell =
    "吊卖时设定的开仓区间限定值必须大于吊卖触发价格，请重新设置开仓区间限定值！";
inline constexpr const char* kEntryVolBelowOne = "开仓盘口量限定值必须大于等于1，请重新设置！";
inline constexpr const char* kEntryKeyEmpty = "开仓条件%d的关键字不能为空，请重新设置！";
inline constexpr const char* kEntryCompareKeyEmpty = "开仓条件%d的比较关键字不能为空，请重新设置！";
inline constexpr const char* kStopLossBelowOne = "止损平仓点数必须大于等于1，请重新设置！";
inline constexpr const char* kTakeProfitBelowOne = "止赢平仓点数必须大于等于1，请重新设置！";
inline constexpr const char* kTrailStartBelowZero = "跟踪止损的启动点数必须大于等于0，请重新设置！";
inline constexpr const char* kTrailPointsBelowOne =
    "固定点数跟踪止损平仓的点数必须大于等于1，请重新设置！";
inline constexpr const char* kExitTimePassed = "您设置定时平仓时间已过，请重新设置";
inline constexpr const char* kTrailPercentBelowOne =
    "百分比跟踪止损平仓的百分比值必须大于等于1%，请重新设置！";
inline constexpr const char* kTrailPercentAbove100 =
    "百分比跟踪止损平仓的百分比值不能大于100%，请重新设置！";
inline constexpr const char* kExitMetChaseBuy =
    "您设定的追买平仓触发价格小于等于现价，启动后将会马上执行追买操作，您要继续执行吗？";
inline constexpr const char* kExitMetDipBuy =
    "您设定的吊买平仓触发价格大于等于现价，启动后将会马上执行吊买操作，您要继续执行吗？";
inline constexpr const char* kExitMetChaseSell =
    "您设定的追卖平仓触发价格大于等于现价，启动后将会马上执行追卖操作，您要继续执行吗？";
inline constexpr const char* kExitMetDipSell =
    "您设定的吊卖平仓触发价格小于等于现价，启动后将会马上执行吊卖操作，您要继续执行吗？";
inline constexpr const char* kExitVolBelowOne = "平仓盘口量限定值必须大于等于1，请重新设置！";
inline constexpr const char* kExitKeyEmpty = "平仓条件%d的关键字不能为空，请重新设置！";
inline constexpr const char* kExitCompareKeyEmpty = "平仓条件%d的比较关键字不能为空，请重新设置！";

// The price conditions' labels, by the side that trades.
inline constexpr const char* kEntryChaseBuy = "时追买建仓";
inline constexpr const char* kEntryDipBuy = "时吊买建仓";
inline constexpr const char* kEntryDipSell = "时吊卖建仓";
inline constexpr const char* kEntryChaseSell = "时追卖建仓";
inline constexpr const char* kExitChaseBuy = "时追买平仓";
inline constexpr const char* kExitDipBuy = "时吊买平仓";
inline constexpr const char* kExitDipSell = "时吊卖平仓";
inline constexpr const char* kExitChaseSell = "时追卖平仓";

// Trailing stop kinds, in the order of nTrailingStopType.
inline constexpr const char* kTrailTicks = "跳跟踪止损";
inline constexpr const char* kTrailPercent = "%跟踪止损";

// Run state labels.
inline constexpr const char* kCumulative = "累计:%d";

// Reasons in the audit journal.
inline constexpr const char* kReasonEntry = "开仓条件成立";
inline constexpr const char* kReasonExitPrice = "平仓价格条件成立";
inline constexpr const char* kReasonExitTime = "定时平仓";
inline constexpr const char* kReasonStopLoss = "止损";
inline constexpr const char* kReasonTakeProfit = "止赢";
inline constexpr const char* kReasonTrailing = "跟踪止损";
inline constexpr const char* kReasonExitFormula = "平仓公式条件成立";

// The window's controls.
inline constexpr const char* kLabelAccount = "帐户";
inline constexpr const char* kLabelExchange = "交易所";
inline constexpr const char* kLabelSymbol = "商品";
inline constexpr const char* kLong = "做多";
inline constexpr const char* kShort = "做空";
inline constexpr const char* kHedgeBox = "套保";
inline constexpr const char* kLabelStartTime = "启动时间";
inline constexpr const char* kLabelDelay = "委托间隔(秒)";
inline constexpr const char* kLabelEveryLots = "单笔数量";
inline constexpr const char* kLabelMaxLots = "最大仓位";
inline constexpr const char* kLabelOffset = "委托价偏移(点)";
inline constexpr const char* kEntryGroup = "开仓条件";
inline constexpr const char* kExitGroup = "平仓条件";
inline constexpr const char* kWhenLast = "当最新价";
inline constexpr const char* kAtLeast = "大于等于";
inline constexpr const char* kAtMost = "小于等于";
inline constexpr const char* kRangeLimit = "开仓区间限定";
inline constexpr const char* kEntryVol = "开仓盘口量不少于";
inline constexpr const char* kExitVol = "平仓盘口量不少于";
inline constexpr const char* kLots = "手";
inline constexpr const char* kPoints = "点";
inline constexpr const char* kAnd = "条件同时满足(AND)";
inline constexpr const char* kOr = "任一条件满足(OR)";
inline constexpr const char* kCondition = "条件%d";
inline constexpr const char* kCompareKey = "比较关键字";
inline constexpr const char* kOrValue = "或数值";
inline constexpr const char* kFilterTypes[] = {">", ">=", "<", "<=", "=", "!="};
inline constexpr const char* kBasePrice = "止损基准价";
inline constexpr const char* kBaseFirst = "首次开仓价";
inline constexpr const char* kBaseAverage = "开仓均价";
inline constexpr const char* kStopLoss = "止损";
inline constexpr const char* kTakeProfit = "止赢";
inline constexpr const char* kTrailing = "跟踪止损";
inline constexpr const char* kTrailStart = "启动点数";
inline constexpr const char* kExitAtTime = "定时平仓";
inline constexpr const char* kLabelPosition = "持仓";
inline constexpr const char* kLabelAverage = "均价:";
inline constexpr const char* kLabelFirst = "首次开仓价:";
inline constexpr const char* kLabelHighest = "最高价:";
inline constexpr const char* kLabelLowest = "最低价:";
inline constexpr const char* kTemplate = "模板";
inline constexpr const char* kStart = "启动";
inline constexpr const char* kStop = "停止";
inline constexpr const char* kResume = "恢复开仓";
inline constexpr const char* kCloseButton = "关闭";
inline constexpr const char* kRunning = "运行中";
inline constexpr const char* kStopped = "已停止";
inline constexpr const char* kSuspended = "运行中(开仓已暂停)";
inline constexpr const char* kQuoteLine = "最新 %s   买 %s(%s)   卖 %s(%s)   涨停 %s   跌停 %s";
inline constexpr const char* kNoValue = "-";

}  // namespace amt_text
