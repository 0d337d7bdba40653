// The texts of the order confirmations and the fill notice, in one place so that they can be
// held against the description character by character. Format strings are printf formats
// (UTF-8); everything a trader reads in these windows comes from here.
#pragma once

namespace confirm_text {

// ---- Single confirmation (CConfirmDialog) ----------------------------------------------
inline constexpr const char* kTitle = "委托确认[%s]";
inline constexpr const char* kPlainAccount = "普通单,帐户:%s";
inline constexpr const char* kTriggerAccount = "触发单,帐户:%s";
inline constexpr const char* kOpenLine = "开仓%s%s合约%.f张,价格:";
inline constexpr const char* kCloseLine = "平仓%s%s合约%.f张,价格:";
inline constexpr const char* kTriggerPrice = ",触发价:";
inline constexpr const char* kStopLoss = "止损价:";
inline constexpr const char* kStopLossNone = "止损价:无";
inline constexpr const char* kTakeProfit = "获利价:";
inline constexpr const char* kTakeProfitNone = "获利价:无";
// A trigger order whose execution price is 0 executes at the market; showing "0" there would
// read as a price of zero.
inline constexpr const char* kMarketPrice = "市价";

// ---- Batch confirmation of plain orders (CMultiConfirm) --------------------------------
inline constexpr const char* kBatchTitle = "委托确认[%s] - 双击可修改价格数量";
inline constexpr const char* kBatchColumns = "帐户,80;商品信息,108;委托价格,60;委托数量,60;";
inline constexpr const char* kAccountCell = "%s(%s)";
inline constexpr const char* kVolumeCell = "%.f";

// ---- Batch confirmation of trigger orders (CMultiTriggerConfirm) -----------------------
inline constexpr const char* kTriggerBatchTitle = "触发单确认[%s]";
inline constexpr const char* kTriggerBatchColumns =
    "帐户,80;商品信息,108;触发价格,60;执行价格,60;委托数量,60;止损价,60;获利价,60;";
// Stop-loss or take-profit cell of a trigger order without one.
inline constexpr const char* kNoneCell = "无";
// Trigger orders the host refused while the batch was being sent (count, list of symbols).
inline constexpr const char* kTriggerSendFailed = "%d笔触发单发送失败：%s";

// ---- In-place edits of the batch confirmation (our own limits) -------------------------
inline constexpr const char* kEditCaption = "提示";
inline constexpr const char* kEditTip = "双击修改";
inline constexpr const char* kEditNotNumber = "输入错误，请输入数字！";
inline constexpr const char* kEditPriceNotPositive = "输入错误，委托价格必须大于0！";
inline constexpr const char* kEditPriceOutsideLimits =
    "输入错误，委托价格必须在涨跌停价%s至%s之间！";
inline constexpr const char* kEditVolumeNotWhole = "输入错误，委托数量必须是大于0的整数！";
inline constexpr const char* kEditVolumeTooLarge = "输入错误，委托数量不能超过%.f张！";

// ---- Like-orders confirmation (dialog 25048) -------------------------------------------
inline constexpr const char* kSameSummaryLike = "%s%s%s,共%d笔,合计%.f张";
inline constexpr const char* kSameSummaryMixed = "共%d笔,合计%.f张";

// ---- Buttons -------------------------------------------------------------------------
inline constexpr const char* kOk = "确认";
inline constexpr const char* kCancel = "取消";

// ---- Fill notice (CBargainDialog, dialog 25006) ----------------------------------------
inline constexpr const char* kFillOpenBuy = "[%s]开仓买入成交";
inline constexpr const char* kFillCloseBuy = "[%s]平仓买入成交";
inline constexpr const char* kFillOpenSell = "[%s]开仓卖出成交";
inline constexpr const char* kFillCloseSell = "[%s]平仓卖出成交";
inline constexpr const char* kFillBuyBody = "买入%s合约%.f张[合同号:%s],成交价格:";
inline constexpr const char* kFillSellBody = "卖出%s合约%.f张[合同号:%s],成交价格:";
inline constexpr const char* kFillWindowTitle = "成交提示";
inline constexpr const char* kFillTimeColumn = "成交时间";
inline constexpr const char* kFillTitleColumn = "成交";
inline constexpr const char* kFillBodyColumn = "明细";
inline constexpr const char* kFillClose = "关闭";

// ---- Algorithmic execution (not available in this build) -------------------------------
inline constexpr const char* kAlgoCaption = "提示";
inline constexpr const char* kAlgoUnavailable =
    "算法交易功能暂不可用，%d笔达到算法起始数量的委托未发送！\n"
    "请取消算法交易选项后重新下单。";

}  // namespace confirm_text
