// The desk's own Chinese texts, in one place so they can be reviewed side by side.
#pragma once

namespace shell_text {

// Window and panes.
inline constexpr const char* kAppTitle = "Helmsman 模拟交易台";
inline constexpr const char* kQuoteBoard = "行情报价";
inline constexpr const char* kAccounts = "交易帐户";
inline constexpr const char* kWorking = "挂单";
inline constexpr const char* kAllOrders = "全部委托";
inline constexpr const char* kFills = "成交";
inline constexpr const char* kPositions = "持仓";
inline constexpr const char* kTriggers = "条件单";

// Quote board columns.
inline constexpr const char* kColCode = "代码";
inline constexpr const char* kColName = "名称";
inline constexpr const char* kColExchange = "交易所";
inline constexpr const char* kColLast = "最新价";
inline constexpr const char* kColChange = "涨跌";
inline constexpr const char* kColChangePct = "涨跌幅";
inline constexpr const char* kColBid = "买价";
inline constexpr const char* kColBidVol = "买量";
inline constexpr const char* kColAsk = "卖价";
inline constexpr const char* kColAskVol = "卖量";
inline constexpr const char* kColVolume = "成交量";
inline constexpr const char* kColOpenInterest = "持仓量";
inline constexpr const char* kColUpper = "涨停";
inline constexpr const char* kColLower = "跌停";
inline constexpr const char* kColPreSettle = "昨结算";
inline constexpr const char* kColTime = "时间";

// Record columns.
inline constexpr const char* kColAccount = "帐户";
inline constexpr const char* kColAccountName = "名称";
inline constexpr const char* kColState = "状态";
inline constexpr const char* kColBalance = "权益";
inline constexpr const char* kColAvailable = "可用资金";
inline constexpr const char* kColMargin = "保证金";
inline constexpr const char* kColFrozen = "冻结资金";
inline constexpr const char* kColRiskRatio = "风险度";
inline constexpr const char* kColCloseProfit = "平仓盈亏";
inline constexpr const char* kColPositionProfit = "持仓盈亏";
inline constexpr const char* kColCommission = "手续费";
inline constexpr const char* kColOrderId = "委托号";
inline constexpr const char* kColSymbol = "商品";
inline constexpr const char* kColDirection = "买卖";
inline constexpr const char* kColOpenClose = "开平";
inline constexpr const char* kColPrice = "价格";
inline constexpr const char* kColVolumeLots = "数量";
inline constexpr const char* kColFilled = "已成交";
inline constexpr const char* kColStatus = "状态";
inline constexpr const char* kColStatusMsg = "说明";
inline constexpr const char* kColRemark = "备注";
inline constexpr const char* kColOrderTime = "委托时间";
inline constexpr const char* kColContractNo = "合同号";
inline constexpr const char* kColBargainNo = "成交号";
inline constexpr const char* kColFillTime = "成交时间";
inline constexpr const char* kColLong = "多头";
inline constexpr const char* kColLongToday = "今多";
inline constexpr const char* kColLongAvg = "多头均价";
inline constexpr const char* kColShort = "空头";
inline constexpr const char* kColShortToday = "今空";
inline constexpr const char* kColShortAvg = "空头均价";
inline constexpr const char* kColTriggerType = "触发类型";
inline constexpr const char* kColTriggerPrice = "触发价";
inline constexpr const char* kColOrderPrice = "委托价";
inline constexpr const char* kColExpiry = "有效期";
inline constexpr const char* kMarketPrice = "市价";

// Account states and buttons.
inline constexpr const char* kLoggedOn = "已登录";
inline constexpr const char* kLoggedOff = "未登录";
inline constexpr const char* kLogon = "登录";
inline constexpr const char* kLogoff = "登出";
inline constexpr const char* kCancel = "撤单";
inline constexpr const char* kCancelAllWorking = "全撤";
inline constexpr const char* kModifyOrder = "改单";
inline constexpr const char* kDeleteTrigger = "删除条件单";

// Monitor actions: questions, context menu and export.
inline constexpr const char* kConfirm = "确认";
inline constexpr const char* kYes = "是";
inline constexpr const char* kNo = "否";
inline constexpr const char* kAskCancelOne = "确定撤销委托 %1（%2 %3 %4 %5手）吗？";
inline constexpr const char* kAskCancelMany = "确定撤销选中的 %1 笔委托吗？";
inline constexpr const char* kAskCancelAll = "确定撤销全部 %1 笔挂单吗？";
inline constexpr const char* kNothingToCancel = "没有可撤的挂单。";
inline constexpr const char* kPickWorkingOrder = "请先选择要撤销的挂单。";
inline constexpr const char* kPickOrderToModify = "请先选择要修改的挂单。";
inline constexpr const char* kMenuCancel = "撤单";
inline constexpr const char* kMenuCopy = "复制";
inline constexpr const char* kMenuOpenTicket = "下单：%1";
inline constexpr const char* kMenuExport = "导出CSV...";
inline constexpr const char* kExportTitle = "导出列表";
inline constexpr const char* kExportFilter = "CSV文件 (*.csv)";
inline constexpr const char* kExportFailed = "无法写入文件：\n%1";

// Menus.
inline constexpr const char* kMenuFile = "系统(&S)";
inline constexpr const char* kMenuTrade = "交易(&T)";
inline constexpr const char* kMenuTools = "工具(&L)";
inline constexpr const char* kMenuView = "视图(&V)";
inline constexpr const char* kActLogonAll = "全部登录";
inline constexpr const char* kActLogoffAll = "全部登出";
inline constexpr const char* kActOptions = "选项(&O)...";
inline constexpr const char* kActQuit = "退出(&X)";
inline constexpr const char* kToolbar = "工具栏";
inline constexpr const char* kOptionsTitle = "选项";
inline constexpr const char* kOk = "确定";
inline constexpr const char* kCancelButton = "取消";
inline constexpr const char* kOptionsUnavailable = "当前插件没有提供选项页。";
inline constexpr const char* kNotAvailableTip = "（本版本未提供）";
inline constexpr const char* kPickInstrumentFirst = "请先在行情报价中选择一个商品。";
inline constexpr const char* kPickPositionFirst = "请先在持仓中选择一行。";
inline constexpr const char* kPrompt = "提示";

// Tool menu entries, by the export that opens them.
inline constexpr const char* kToolOpenHelmsman = "舵手下单";
inline constexpr const char* kToolOpenBatchTrader = "多帐户批量下单";
inline constexpr const char* kToolShowConfirmOrder = "对价买入1手（确认）";
inline constexpr const char* kToolShowMultiConfirm = "全部帐户对价买入1手（批量确认）";
inline constexpr const char* kToolShowMultiConfirmSame = "全部帐户对价买入1手（同向确认）";
inline constexpr const char* kToolOpenFastExit = "快速平仓";
inline constexpr const char* kToolOpenStopTrigger = "平仓触发单";
inline constexpr const char* kToolOpenSpreadTrader = "自动价差";
inline constexpr const char* kToolOpenManualSpread = "手动价差下单";
inline constexpr const char* kToolOpenLocalTrigger = "本地触发单中心";
inline constexpr const char* kToolOpenRobotLauncher = "策略机器人";
inline constexpr const char* kToolOpenOrderJournal = "委托日志";
inline constexpr const char* kToolDeleteTriggerOrders = "多帐户撤触发单";
inline constexpr const char* kToolOpenAMTOrder = "条件策略";
inline constexpr const char* kToolFilledOrderStatistics = "成交统计";
inline constexpr const char* kToolOpenFastExitAll = "一键全平";
inline constexpr const char* kToolOpenFastDeleteAll = "一键全撤";
inline constexpr const char* kToolOpenAlgoSet = "算法交易设置";
inline constexpr const char* kToolOpenAlgoCentre = "算法交易中心";

// Status bar.
inline constexpr const char* kStatusMarketTime = "市场时间 %1";
inline constexpr const char* kStatusFeedRandom = "模拟行情";
inline constexpr const char* kStatusFeedReplay = "回放 %1";
inline constexpr const char* kStatusAccounts = "已登录帐户 %1";
// The session state of the commodity exchanges and of the financial futures exchange.
inline constexpr const char* kStatusSessions = "商品期货 %1  金融期货 %2";
inline constexpr const char* kStatusAddin = "插件 %1";
// Orders the exchange turned down: time, account, code, then the exchange's reason.
inline constexpr const char* kNoticeRejected = "%1 帐户%2 %3 委托被拒绝";
inline constexpr const char* kNoticeCancelled = "%1 帐户%2 %3 委托被交易所撤销";
inline constexpr const char* kNoticeExpired = "%1 帐户%2 %3 委托已失效";
inline constexpr const char* kNoticeReason = "：%1";

// The desk's own settings file.
inline constexpr const char* kLayoutNotRead = "无法读取交易台设置文件 %1，已使用默认布局。";
inline constexpr const char* kLayoutNotSaved = "无法写入交易台设置文件 %1，窗口布局未保存。";

// Loading the add-in.
inline constexpr const char* kLoadFailedTitle = "无法加载插件";
inline constexpr const char* kLoadFailed = "无法加载 Helmsman 插件库：\n%1";
inline constexpr const char* kMissingExport = "插件库缺少导出函数 %1";

// Command line.
inline constexpr const char* kBadArgumentsTitle = "命令行参数错误";

}  // namespace shell_text
