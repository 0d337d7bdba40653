// Texts of the local trigger engine and its centre, in one place.
#pragma once

namespace trigger_text {

inline constexpr const char* kCaption = "本地触发单中心";
inline constexpr int kDialogId = 25013;
// The remark of every order a local trigger sends.
inline constexpr const char* kComment = "本地触发单";
// Formatted with the code when the host knows no contract; the centre keeps it to itself.
inline constexpr const char* kNoContract = "找不到%s的合约信息，不能进行本地触发单操作!";

// The journal entry of a fired trigger: "吊买：最新价3921.4跌到或跌破触发价3922", and for a
// market order "，市价按对手价3922.2发出" after it.
inline constexpr const char* kJournalTool = "本地触发";
inline constexpr const char* kJournalLastPrice = "最新价";
inline constexpr const char* kJournalPreOpenPrice = "集合竞价价";
inline constexpr const char* kJournalFellTo = "跌到或跌破";
inline constexpr const char* kJournalRoseTo = "涨到或涨破";
inline constexpr const char* kJournalTriggerPrice = "触发价";
inline constexpr const char* kJournalAtMarket = "，市价按对手价";
inline constexpr const char* kJournalSent = "发出";
inline constexpr const char* kJournalFigWatched = "观察价";
inline constexpr const char* kJournalFigTrigger = "触发价";
inline constexpr const char* kJournalFigBid = "买一价";
inline constexpr const char* kJournalFigAsk = "卖一价";

// Status texts of an evaluation, by result code.
inline constexpr const char* kBadDirection = "买卖类型出错";      // -7
inline constexpr const char* kBadTriggerType = "触发类型出错";    // -6
inline constexpr const char* kNoLastPrice = "无最新价格";         // -5
inline constexpr const char* kNoQuote = "无有效行情数据";         // -4
inline constexpr const char* kNotTrading = "非交易时间段";        // -3
inline constexpr const char* kExpired = "触发单已经过期";         // -2
inline constexpr const char* kNotStarted = "触发单启动时间未到";  // -1
inline constexpr const char* kNormal = "正常";                    // 0, 1 and anything else

// The list.
inline constexpr const char* kColumns =
    "帐户,80;商品,50;数量,50;状态,60;触发类型,50;触发价,50;执行价,50;触发时间,60;状态信息,80;";
inline constexpr const char* kColExpiry = "过期时间,60;";
inline constexpr const char* kColEntryFlag = "开平标志,60;";
inline constexpr const char* kColHedge = "投机保值,60;";
inline constexpr const char* kColComment = "注释,60;";
inline constexpr const char* kMarketPrice = "市价";
inline constexpr const char* kNoTime = "-";

// Commands.
inline constexpr const char* kConfirm = "确认";
inline constexpr const char* kAskCancel = "您确定要撤销当前选中的本地触发单？";
inline constexpr const char* kInfo = "提示";
inline constexpr const char* kCancelSelected = "撤销选中";
inline constexpr const char* kCancelAll = "全部撤销";
inline constexpr const char* kExport = "导出列表";
inline constexpr const char* kShowLabel = "显示：";
inline constexpr const char* kShowAll = "全部";
inline constexpr const char* kShowWaiting = "等待触发";
inline constexpr const char* kShowCancelled = "已撤单";
inline constexpr const char* kShowFired = "已触发";
inline constexpr const char* kOptExpiry = "过期时间";
inline constexpr const char* kOptEntryFlag = "开平标志";
inline constexpr const char* kOptHedge = "投机保值";
inline constexpr const char* kOptComment = "注释";

// Export.
inline constexpr const char* kSaveTitle = "保存列表内容为...";
inline constexpr const char* kSaveDefaultName = "本地触发单";
inline constexpr const char* kSaveDefaultExt = "csv";
inline constexpr const char* kSaveFilter = "CSV文件,全部(*.csv)|*.csv||";
// A file that cannot be opened for appending: the list stays as it is.
inline constexpr const char* kCannotExport = "无法写入文件 %s，列表内容没有导出。";

// Display options in Profile.ini.
inline constexpr const char* kSection = "LocalTrigger";
inline constexpr const char* kKeyShowType = "nShowType";
inline constexpr const char* kKeyShowExpiredTime = "bShowExpiredTime";
inline constexpr const char* kKeyShowEntryFlag = "bShowEntryFlag";
inline constexpr const char* kKeyShowSpeculate = "bShowSpeculate";
inline constexpr const char* kKeyShowComment = "bShowComment";

}  // namespace trigger_text
