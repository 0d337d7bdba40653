// The algo engine's texts: engine states, pacing names, run conditions, the failure texts of
// the notification machine, the centre's columns and the settings dialog's labels.
#pragma once

namespace algo_text {

// Engine states (CAlgoOrder::state()).
inline constexpr const char* kStateNormal = "正常";
inline constexpr const char* kStateSending = "发送中";
inline constexpr const char* kStateQueued = "委托已报";
inline constexpr const char* kStateCancelling = "撤单中";
inline constexpr const char* kStatePartFilled = "部分成交";
inline constexpr const char* kStateError = "状态出错";
inline constexpr const char* kFinished = "已完成";

// Pacing 0..3.
inline constexpr const char* kPacing[] = {"常速", "加速", "紧急", "立即"};

// Run conditions, as the centre shows them beside the state.
inline constexpr const char* kRunTextPaused = "已暂停";
inline constexpr const char* kRunTextRunning = "运行中";
inline constexpr const char* kRunTextCancelled = "已撤销";
inline constexpr const char* kRunTextDeleted = "已删除";

// Failures of the notification machine; %d is the host's new order status.
inline constexpr const char* kErrAfterSend = "算法单委托发送后续状态出错，新状态=%d";
inline constexpr const char* kErrQueued = "算法单外部撤单或过期！,新状态=%d";
inline constexpr const char* kErrCancel = "算法单撤单处理失败，请手动处理,新状态=%d";
inline constexpr const char* kErrPartFilled = "算法单部分成交单后续状态处理失败，请手动处理,新状态=%d";

// What the engine says in an order's last message.
inline constexpr const char* kMsgSliceSent = "第%d笔已发送：%d手 @ %s";
inline constexpr const char* kMsgSliceRefused = "第%d笔被拒绝：%s";
inline constexpr const char* kMsgSliceDone = "第%d笔结束：成交%d手";
inline constexpr const char* kMsgCancelSent = "第%d笔撤单已发送";
inline constexpr const char* kMsgNoQuote = "没有行情，等待中";
inline constexpr const char* kMsgBlocked = "价格超出止损/限价范围，暂停分笔";
inline constexpr const char* kMsgRestored = "已恢复，分笔已向主机核对";
inline constexpr const char* kMsgLookupFailed = "等待主机核对第%d笔";
inline constexpr const char* kMsgCreated = "已创建";
inline constexpr const char* kMsgCannotSave = "无法保存算法单文件，暂不发送：";

// The tag every slice carries in its remark: order number and slice number.
inline constexpr const char* kSliceTagPrefix = "算法|";
inline constexpr const char* kSliceTag = "算法|%d|%d";

// The tool's name in the audit journal.
inline constexpr const char* kToolName = "算法交易";
inline constexpr const char* kJournalReason = "算法单第%d笔：剩余%d手，节奏%s";

// ---- The centre (the single algorithmic execution centre) -------------------------------
inline constexpr const char* kCentreCaption = "算法交易中心";
inline constexpr const char* kCentreColumns =
    "编号,28;帐户,52;商品,48;买卖,28;开平,32;总量,34;成交,34;进度,34;节奏,30;状态,46;运行,40;"
    "当前分笔,64;最后消息,180;";
inline constexpr const char* kCentreListName = "AlgoCentre";
inline constexpr const char* kBtnNew = "新建算法单";
inline constexpr const char* kBtnStart = "启动";
inline constexpr const char* kBtnPause = "暂停";
inline constexpr const char* kBtnCancel = "撤销";
inline constexpr const char* kBtnDelete = "删除";
inline constexpr const char* kBtnReset = "重置";
inline constexpr const char* kBtnPacing = "节奏";
inline constexpr const char* kBtnDefaults = "默认设置...";
inline constexpr const char* kSliceOut = "第%d笔 %d/%d手";
inline constexpr const char* kCaptionConfirm = "确认";
inline constexpr const char* kCaptionInfo = "提示";
inline constexpr const char* kAskCancel = "撤销选中的%d个算法单？正在报单的分笔将被撤单。";
inline constexpr const char* kAskDelete = "删除选中的%d个算法单？正在报单的分笔将被撤单。";
inline constexpr const char* kNothingSelected = "请先选择算法单！";
inline constexpr const char* kNotTaken = "%d个委托无法转为算法单（合约未知或数量不足1手）。";
inline constexpr const char* kSummary = "共%d个算法单，运行中%d个";

// ---- The new algo order form ----------------------------------------------------------
inline constexpr const char* kFormCaption = "新建算法单";
inline constexpr const char* kFormAccount = "帐户:";
inline constexpr const char* kFormSymbol = "合约:";
inline constexpr const char* kFormSide = "买卖:";
inline constexpr const char* kFormOpenClose = "开平:";
inline constexpr const char* kFormVolume = "总量:";
inline constexpr const char* kFormStartNow = "立即启动";
inline constexpr const char* kFormSettings = "算法设置...";
inline constexpr const char* kBuy = "买入";
inline constexpr const char* kSell = "卖出";
inline constexpr const char* kUnknownSymbol = "找不到合约%s！";
inline constexpr const char* kNotLoggedOn = "请先登录交易帐户！";

// ---- The settings dialog (25050) ------------------------------------------------------
inline constexpr int kSettingDialogId = 25050;
inline constexpr const char* kSetCaption = "算法交易设置";
inline constexpr const char* kSetGroupLots = "数量";
inline constexpr const char* kSetBaseLine = "启动底线数量";
inline constexpr const char* kSetAutoKP = "自动开平";
inline constexpr const char* kSetLotFixed = "固定数量";
inline constexpr const char* kSetLotRandom = "随机%";
inline constexpr const char* kSetLotRatio = "盘口参与比例";
inline constexpr const char* kSetGroupPrice = "价格";
inline constexpr const char* kSetPriceType = "对手价偏移(跳)";
inline constexpr const char* kSetGroupTime = "时间";
inline constexpr const char* kSetTimeFixed = "固定间隔(秒)";
inline constexpr const char* kSetTimeRandom = "随机%";
inline constexpr const char* kSetTimeTotal = "总时间(秒)";
inline constexpr const char* kSetTimeSession = "只计交易时段";
inline constexpr const char* kSetGroupRange = "范围";
inline constexpr const char* kSetStopRange = "止损范围(跳)";
inline constexpr const char* kSetLimitRange = "限价范围(跳)";
inline constexpr const char* kSetOutStop = "超出后停止分笔";
inline constexpr const char* kSetOutFast = "超出后最快分笔";
inline constexpr const char* kSetTemplates = "模板";
inline constexpr const char* kOk = "确定(&O)";
inline constexpr const char* kCancel = "取消(&C)";

// The template manager of algoset.dat.
inline constexpr const char* kTemplateCaption = "算法交易模板管理器";
inline constexpr const char* kTemplateColumns = "名称,120;数量,100;价格,80;时间,100;";
inline constexpr const char* kTemplateListName = "AlgoSetTemplates";
inline constexpr const char* kRowLotFixed = "固定%d手";
inline constexpr const char* kRowLotRatio = "盘口%d%%";
inline constexpr const char* kRowPrice = "偏移%d跳";
inline constexpr const char* kRowTimeFixed = "间隔%d秒";
inline constexpr const char* kRowTimeTotal = "总时%d秒";

}  // namespace algo_text
