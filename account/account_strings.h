// The exit and account tools' texts, in one place so each can be held against what the trader
// is meant to read, character by character. UTF-8.
#pragma once

namespace account_text {

// ---- Shared ------------------------------------------------------------------------------
inline constexpr const char* kCaptionPrompt = "提示";
inline constexpr const char* kCaptionPromptBlank = "提示 ";
inline constexpr const char* kCaptionConfirm = "确认";
inline constexpr const char* kMsgLogin = "请先登录交易帐户！";
inline constexpr const char* kAllAccounts = "全部帐户";
inline constexpr const char* kAllSymbols = "全部商品";
inline constexpr const char* kSideAll = "全部买卖";
inline constexpr const char* kBuy = "买";
inline constexpr const char* kSell = "卖";
inline constexpr const char* kLong = "多";
inline constexpr const char* kShort = "空";
inline constexpr const char* kNoValue = "-";
// "880001(模拟账户一)": identifier and name, as the ticket names an account.
inline constexpr const char* kAccountFormat = "%s(%s)";

// ---- Fast exit -----------------------------------------------------------------------------
inline constexpr const char* kFastExitCaption = "快速平仓";
inline constexpr const char* kFastExitSection = "FastExit";
inline constexpr const char* kMsgNoTouchPrice = "买卖价无效，请手工输入价格！";
inline constexpr const char* kMsgOutOfLimits =
    "输入的委托价格不在涨跌停范围内，已自动修改为涨跌停价！";
inline constexpr const char* kMsgLongVolumeCut =
    "输入的平多仓数量大于当前买持仓，已自动修改为当前买持仓量！";
inline constexpr const char* kMsgShortVolumeCut =
    "输入的平空仓数量大于当前卖持仓，已自动修改为当前卖持仓量！";
// Working closing orders already hold part of the side: the lots still free.
inline constexpr const char* kMsgHeldByWorking =
    "已有平仓委托占用部分持仓，可平数量为%.f张，已自动修改为可平数量！";
inline constexpr const char* kMsgVolumeNotPositive = "输入错误，交易数量必须大于0！";
inline constexpr const char* kMsgNoLong = "当前没有可平的买持仓！";
inline constexpr const char* kMsgNoShort = "当前没有可平的卖持仓！";
inline constexpr const char* kButtonCloseLong = "平多仓(卖出)";
inline constexpr const char* kButtonCloseShort = "平空仓(买入)";
inline constexpr const char* kLabelAccount = "帐户:";
inline constexpr const char* kLabelSymbol = "商品:";
inline constexpr const char* kLabelVolume = "数量:";
inline constexpr const char* kLabelPrice = "价格:";
inline constexpr const char* kCheckBidAsk = "使用叫买/卖价";
inline constexpr const char* kCheckOffset = "加减价位";
inline constexpr const char* kLabelOffsetUnit = "点";
inline constexpr const char* kCheckAlgo = "算法交易";
// Quote and position line: bid, ask, long (yesterday/today), short (yesterday/today).
inline constexpr const char* kLabelBid = "买价";
inline constexpr const char* kLabelAsk = "卖价";
inline constexpr const char* kLabelUpper = "涨停";
inline constexpr const char* kLabelLower = "跌停";
inline constexpr const char* kPositionFormat = "买持仓:%.f(昨%.f/今%.f)  卖持仓:%.f(昨%.f/今%.f)";
inline constexpr const char* kStatusSent = "%s %s%s %s张@%s 已发送";
inline constexpr const char* kStatusTodayMark = "(平今)";
inline constexpr const char* kStatusRefused = "%s %s 委托被拒绝：%s";
inline constexpr const char* kStatusToAlgo = "%s %s张 已交算法交易";
inline constexpr const char* kStatusCancelled = "已取消，未发送委托";
// Why an order left, for the audit journal.
inline constexpr const char* kReasonCloseLong = "平多仓";
inline constexpr const char* kReasonCloseShort = "平空仓";
inline constexpr const char* kReasonTouch = "按叫买/卖价";
inline constexpr const char* kReasonTouchOffset = "按叫买/卖价加减%d点";
inline constexpr const char* kReasonOppositeTouch = "本方价无效，按对方价";
inline constexpr const char* kReasonManual = "按手工价格";
inline constexpr const char* kReasonClamped = "，已改为涨跌停价";

// ---- Exit-all --------------------------------------------------------------------------------
inline constexpr const char* kFastExitAllCaption = "一键全平";
inline constexpr const char* kFastExitAllSection = "FastExitAll";
inline constexpr const char* kFastExitAllColumns =
    "帐户,120;商品,80;方向,40;持仓,50;昨仓,50;今仓,50;可平,50;平仓价,80;";
inline constexpr const char* kButtonExitAll = "全部平仓";
inline constexpr const char* kButtonRefresh = "刷新";
inline constexpr const char* kLabelOffset = "对价加减:";
inline constexpr const char* kMsgNothingToClose = "没有选中可平的持仓！";
// Rows left out for want of a price: how many, then the first ones.
inline constexpr const char* kMsgRowsWithoutPrice = "以下持仓买卖价无效，未平仓：\n%s";
inline constexpr const char* kExitAllSummary = "共%d笔持仓，选中%d笔，合计%.f张";
inline constexpr const char* kExitAllSent = "已发送%d笔平仓委托";
inline constexpr const char* kExitAllCancelled = "已取消，未发送委托";
inline constexpr const char* kReasonExitAll = "一键全平：按叫买/卖价加减%d点";

// ---- Cancel-all ------------------------------------------------------------------------------
inline constexpr const char* kFastDeleteAllCaption = "一键全撤";
inline constexpr const char* kFastDeleteAllColumns =
    "帐户,120;商品,70;买卖,36;开平,48;委托价,70;委托量,50;成交量,50;状态,70;合同号,60;";
inline constexpr const char* kButtonDeleteAll = "全部撤单";
inline constexpr const char* kMsgNothingToCancel = "没有可撤的委托！";
inline constexpr const char* kAskDeleteAll = "确认撤销列表中的%d笔委托？";
// One result line per order: contract number, account, code, side, open/close, volume, price.
inline constexpr const char* kResultCancelSent = "合同号%s %s %s %s%s %s张@%s：撤单请求已发送";
inline constexpr const char* kResultCancelFailed = "合同号%s %s %s %s%s %s张@%s：撤单失败";
inline constexpr const char* kDeleteAllSummary = "共%d笔委托，撤单请求已发送%d笔，失败%d笔";
inline constexpr const char* kReasonCancel = "一键全撤";

// ---- Multi-account trigger cancel ------------------------------------------------------------
inline constexpr const char* kDeleteTriggerCaption = "多帐户撤触发单";
inline constexpr const char* kDeleteTriggerColumns =
    "帐户,120;商品,70;类型,48;买卖,36;开平,48;触发价,70;委托价,70;数量,50;编号,60;";
inline constexpr const char* kButtonDeleteChecked = "删除选中";
inline constexpr const char* kCheckAll = "全选";
inline constexpr const char* kMsgNothingChecked = "请先选中要删除的触发单！";
inline constexpr const char* kAskDeleteTriggers = "确认删除选中的%d笔触发单？";
inline constexpr const char* kResultTriggerDeleted = "编号%s %s %s %s%s %s张 触发价%s：已删除";
inline constexpr const char* kResultTriggerFailed = "编号%s %s %s %s%s %s张 触发价%s：删除失败";
inline constexpr const char* kDeleteTriggerSummary = "删除%d笔，成功%d笔，失败%d笔";
inline constexpr const char* kMarketPrice = "市价";

// ---- Filled-order statistics -----------------------------------------------------------------
inline constexpr const char* kStatisticsCaption = "成交统计";
inline constexpr const char* kStatisticsColumns =
    "帐户,110;商品,60;买入手数,50;买入均价,70;卖出手数,50;卖出均价,70;成交额,90;手续费,60;平仓盈亏,70;";
inline constexpr const char* kAccountTotal = "帐户合计";
inline constexpr const char* kGrandTotal = "总计";
inline constexpr const char* kButtonExportCsv = "导出CSV";
inline constexpr const char* kChartTitle = "各商品成交额（万元）";
inline constexpr const char* kMsgExported = "已导出到%s";
inline constexpr const char* kMsgExportFailed = "无法写入文件%s！";

// ---- Batch trader ----------------------------------------------------------------------------
inline constexpr const char* kBatchCaption = "多帐户批量下单";
inline constexpr const char* kBatchCaller = "批量下单";
inline constexpr const char* kMultipleFile = "Multiple.csv";
inline constexpr const char* kCustomVolFile = "CustomVol.csv";
inline constexpr const char* kBatchColumns = "选,30;帐户,120;倍数/数量,70;委托数量,60;";
inline constexpr const char* kModeMultiple = "按倍数";
inline constexpr const char* kModeCustom = "按数量方案";
inline constexpr const char* kButtonBuy = "买入";
inline constexpr const char* kButtonSell = "卖出";
inline constexpr const char* kButtonSaveCsv = "保存";
inline constexpr const char* kCheckTouch = "对价";
inline constexpr const char* kOpenCloseOpen = "开仓";
inline constexpr const char* kOpenCloseClose = "平仓";
inline constexpr const char* kOpenCloseToday = "平今仓";
inline constexpr const char* kLabelBaseVolume = "基础数量:";
inline constexpr const char* kLabelSet = "方案:";
inline constexpr const char* kMsgNoSymbol = "请先选择商品！";
inline constexpr const char* kMsgNoBatchAccount = "没有选中的帐户或各帐户委托数量都为0！";
inline constexpr const char* kMsgBatchPrice = "委托价格无效，请重新输入价格！";
inline constexpr const char* kBatchSent = "已发送%d个帐户的委托";
inline constexpr const char* kReasonBatch = "多帐户批量下单：%s";
// CSV headings, as written.
inline constexpr const char* kMultipleHeader = "帐户,经纪商,倍数";
inline constexpr const char* kCustomVolHeader = "方案,帐户,经纪商,数量";
// Loading: the file, how many lines were taken and which were not.
inline constexpr const char* kMsgCsvUnreadable = "无法读取%s，本次不会覆盖该文件。";
inline constexpr const char* kMsgCsvSkipped = "%s有%d行无法识别，已跳过（第%d行：%s）。保存时原样保留这些行。";
inline constexpr const char* kCsvBadFieldCount = "列数不对";
inline constexpr const char* kCsvBadNumber = "数值无效";
inline constexpr const char* kCsvNoAccount = "帐户为空";
inline constexpr const char* kCsvBadQuote = "引号不配对";
inline constexpr const char* kMsgCsvNotSaved = "%s未保存：%s";

}  // namespace account_text
