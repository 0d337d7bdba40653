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
inline constexpr const char* kRunPaused = "已暂停";
inline constexpr const char* kRunRunning = "运行中";
inline constexpr const char* kRunCancelled = "已撤销";
inline constexpr const char* kRunDeleted = "已删除";

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

// The tag every slice carries in its remark: order number and slice number.
inline constexpr const char* kSliceTagPrefix = "算法|";
inline constexpr const char* kSliceTag = "算法|%d|%d";

// The tool's name in the audit journal.
inline constexpr const char* kToolName = "算法交易";
inline constexpr const char* kJournalReason = "算法单第%d笔：剩余%d手，节奏%s";

}  // namespace algo_text
