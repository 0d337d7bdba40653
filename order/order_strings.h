// The order ticket's texts: captions, labels, formats and messages, exactly as the user sees
// them. Kept in one place so every character can be checked against the ticket's
// description; nothing else in order/master_dialog, order/normal_order, order/hotkeys or
// their windows spells a Chinese text of its own.
#pragma once

namespace order_text {

// ---- Frame ---------------------------------------------------------------------------------
inline constexpr int kTicketDialogId = 25001;
inline constexpr const char* kTicketCaption = "舵手";
// The caller name handed to the submission (written into empty remarks).
inline constexpr const char* kCallerName = "舵手";

inline constexpr const char* kTabImmediate = "即时执行";
inline constexpr const char* kTabTrigger = "触发单交易";
inline constexpr const char* kTabModifyTrigger = "修改或删除触发单";

// Button menu entries; each is also the tool tip of its button.
inline constexpr const char* kMenuChart = "打开/关闭图表";
inline constexpr const char* kMenuAutoStopLoss = "打开/关闭止损价格自动填写";
inline constexpr const char* kMenuAutoTakeProfit = "打开/关闭获利价格自动填写";
inline constexpr const char* kMenuHotkeys = "我的键盘";

// Position and openable quantity.
inline constexpr const char* kPositionFormat = "持仓:%.f(%.f/%.f)";  // total, long, short
inline constexpr const char* kPositionNone = "持仓:0";
inline constexpr const char* kOpenableFormat = "可开:%d";
inline constexpr const char* kOpenableUnknown = "可开:N/A";
// What can be closed, beside the position: long side yesterday/today, short side likewise.
inline constexpr const char* kClosableFormat = "可平 多:昨%.f 今%.f  空:昨%.f 今%.f";
inline constexpr const char* kClosableTip =
    "可平仓数量（已扣除未成交的平仓委托）\n多头：昨仓%.f张，今仓%.f张（卖出平仓）\n"
    "空头：昨仓%.f张，今仓%.f张（买入平仓）";
inline constexpr const char* kClosableTipYesterdayOnly =
    "\n该交易所“平仓”只平昨仓，平今日的仓位请选择“平今仓”";

// ---- Status line: what became of the last order the ticket sent ---------------------------
// Status, direction and open/close, code, volume, price.
inline constexpr const char* kStatusFormat = "%s：%s%s %s %s张 价格:%s";
// Appended, on a line of its own, when the host gives a reason.
inline constexpr const char* kStatusReason = "\n原因：%s";
inline constexpr const char* kStatusSent = "已发送";
inline constexpr const char* kStatusNotSent = "未发送";
inline constexpr const char* kStatusNotTaken = "交易服务未接受委托";

// ---- Message boxes -------------------------------------------------------------------------
inline constexpr const char* kCaptionPrompt = "提示";
// The invalid-quote message alone carries this caption, with its trailing blank.
inline constexpr const char* kCaptionPromptBlank = "提示 ";

inline constexpr const char* kMsgSymbolNotTradableChoose = "当前商品不能进行交易，请重新选择商品！";
inline constexpr const char* kMsgLogin = "请先登录交易帐户！";
inline constexpr const char* kMsgChooseSymbol = "请先选择要进行交易的商品！";
inline constexpr const char* kMsgSymbolNotTradable = "当前商品不能进行交易！";
inline constexpr const char* kMsgVolumeNotPositive = "输入错误，交易数量必须大于0！";
inline constexpr const char* kMsgQuoteInvalid = "买卖价无效，请手工输入价格！";
inline constexpr const char* kMsgBuyStopLoss = "输入错误，买入时止损价必须小于委托价！";
inline constexpr const char* kMsgBuyTakeProfit = "输入错误，买入时获利价必须大于委托价！";
inline constexpr const char* kMsgSellStopLoss = "输入错误，卖出时止损价必须大于委托价！";
inline constexpr const char* kMsgSellTakeProfit = "输入错误，卖出时获利价必须小于委托价！";
// A keyboard order at the typed price outside the day's limit band: the price box is set to
// the limit and nothing is sent, so the trader sees the new price before pressing again.
inline constexpr const char* kMsgPriceLimitAdjusted =
    "输入的委托价格不在涨跌停范围内，已自动修改为涨跌停价！";

// Texts of this ticket's own choices (not in the host's vocabulary).
// A typed price of 0 (or an empty price box) is refused rather than clamped to a limit.
inline constexpr const char* kMsgPriceNotPositive = "输入错误，委托价格必须大于0！";
// Splitting by the single-order cap would produce more orders than kMaxSplitOrders.
inline constexpr const char* kMsgTooManySplitOrders =
    "委托数量%.f按单笔上限%.f手需拆分为%d笔，超过%d笔，请减少数量！";
// Lots are whole numbers: a fraction would be rounded by the confirmation and refused by the
// exchange.
inline constexpr const char* kMsgVolumeNotWhole = "输入错误，交易数量必须为整数！";
// The price box is empty (or holds no number): its last value is never sent in its place.
inline constexpr const char* kMsgPriceEmpty = "请输入委托价格！";
// The account shown logged off: %s is the account ("%s(%s)").
inline constexpr const char* kMsgAccountLoggedOff = "交易帐户%s已退出登录，请重新选择交易帐户！";
// The ticket showed no account and one is logged on now: it is shown first, not used unseen.
inline constexpr const char* kMsgAccountNowShown = "交易帐户已更新为%s，请确认后重新下单！";
// Closing more than can be closed: volume, closable, yesterday's, today's.
inline constexpr const char* kMsgCloseExceeds =
    "输入错误，平仓数量%.f张超过可平数量%.f张（昨仓%.f张，今仓%.f张）！";
// 平今 beyond today's position: volume, today's closable.
inline constexpr const char* kMsgCloseTodayExceeds =
    "输入错误，平今仓数量%.f张超过可平今仓数量%.f张！";
// 平仓 on an exchange where it closes yesterday's position only, which is not enough while
// today's is: volume, yesterday's closable, today's closable.
inline constexpr const char* kMsgCloseYesterdayOnly =
    "该交易所“平仓”只平昨仓：委托%.f张，可平昨仓%.f张。平今日的仓位请选择“平今仓”（可平今仓%.f张）！";

// ---- Immediate page -------------------------------------------------------------------------
inline constexpr const char* kLabelVolume = "数量";
inline constexpr const char* kLabelPrice = "价格";
inline constexpr const char* kCheckBidAsk = "叫买/卖价";
inline constexpr const char* kCheckOffset = "超价点数";
inline constexpr const char* kLabelOpenClose = "开平";
inline constexpr const char* kLabelHedge = "投保";
inline constexpr const char* kCheckStopLoss = "止损价";
inline constexpr const char* kCheckTakeProfit = "获利价";
inline constexpr const char* kButtonAuto = "自动";
inline constexpr const char* kLabelPoints = "点";
inline constexpr const char* kCheckAlgo = "算法交易";
inline constexpr const char* kButtonAlgoSettings = "算法设置...";
inline constexpr const char* kButtonBuy = "买入";
inline constexpr const char* kButtonSell = "卖出";

// Short labels of the tool buttons whose tool tips are the menu entries above.
inline constexpr const char* kToolChart = "图表";
inline constexpr const char* kToolAutoStopLoss = "自动止损";
inline constexpr const char* kToolAutoTakeProfit = "自动获利";
inline constexpr const char* kToolHotkeys = "键盘";
inline constexpr const char* kToolMenu = "菜单";

// ---- Frame labels ----------------------------------------------------------------------------
inline constexpr const char* kLabelAccount = "帐户";
inline constexpr const char* kLabelExchange = "交易所";
inline constexpr const char* kLabelSymbol = "商品";
inline constexpr const char* kLabelLast = "最新";
inline constexpr const char* kLabelBid = "叫买";
inline constexpr const char* kLabelAsk = "叫卖";
inline constexpr const char* kLabelUpper = "涨停";
inline constexpr const char* kLabelLower = "跌停";
inline constexpr const char* kNoValue = "-";

// ---- 我的键盘 ----------------------------------------------------------------------------------
inline constexpr const char* kHotkeyCaption = "我的键盘";
inline constexpr const char* kHotkeyEnable = "启用键盘下单";
inline constexpr const char* kHotkeyConfirm = "键盘下单前确认";
inline constexpr const char* kHotkeyBuyAtTouch = "对手价买入";
inline constexpr const char* kHotkeySellAtTouch = "对手价卖出";
inline constexpr const char* kHotkeyBuyAtPrice = "委托价买入";
inline constexpr const char* kHotkeySellAtPrice = "委托价卖出";
inline constexpr const char* kHotkeyHint =
    "对手价：买入按叫卖价、卖出按叫买价；委托价：按价格框中的价格。数量、开平、止损和获利取自即时执"
    "行页面。";
inline constexpr const char* kMsgHotkeyDuplicate = "快捷键“%s”被重复设置，请修改！";
inline constexpr const char* kButtonOk = "确定";
inline constexpr const char* kButtonCancel = "取消";
inline constexpr const char* kButtonClear = "清除";

// ---- Trigger page ("触发单交易") ----------------------------------------------------------------
inline constexpr const char* kCaptionConfirm = "确认";
inline constexpr const char* kMsgNoReferencePrice =
    "当前商品现价为0并且昨结算价为0，不能进行触发单交易！";
inline constexpr const char* kMsgTypeMismatch =
    "您选择的触发单类型和根据价格自动计算出的类型不匹配，还要继续发送委托单吗？";
inline constexpr const char* kMsgNextDayExpiry =
    "如果您想要使用隔日有效的触发单，请先了解隔日触发单\r\n可能存在的跳空风险，并愿意接受由此产生的风险"
    "损失！\r\n\r\n您是否还要继续使用隔日触发单?选择[是]继续，选择[否]\r\n会自动将时间设置为仅当日有效!";
// Captioned "提示 " (with its trailing blank).
inline constexpr const char* kMsgTriggerPriceInvalid = "触发价无效，请重新输入价格！";
// Opening order without an execution price: stop-loss against take-profit.
inline constexpr const char* kMsgBuyStopBelowProfit = "输入错误，买入时止损价必须小于获利价！";
inline constexpr const char* kMsgSellStopAboveProfit = "输入错误，卖出时止损价必须大于获利价！";
inline constexpr const char* kMsgLocalTriggerNoStops = "输入错误，本地触发单不支持止损获利价设置！";
inline constexpr const char* kMsgLocalTriggerAsk =
    "本地触发单最长时效为当日有效，只在本程序运行时有效，\r\n关闭程序时会自动删除，您确定要发送本地触"
    "发单吗？";
// The local trigger centre knows no contract for the code (%s).
inline constexpr const char* kMsgLocalNoContract = "找不到%s的合约信息，不能进行本地触发单操作!";
// The type list: automatic, then the 吊 and the 追 type of the order's direction.
inline constexpr const char* kTriggerTypeAuto = "自动";
inline constexpr const char* kTriggerTypeDip = "吊买/吊卖";
inline constexpr const char* kTriggerTypeChase = "追买/追卖";
inline constexpr const char* kLabelTriggerPrice = "触发价";
inline constexpr const char* kLabelExecPrice = "委托价";
inline constexpr const char* kExecAtMarket = "市价";  // an execution price of 0
inline constexpr const char* kLabelTriggerType = "类型";
inline constexpr const char* kLabelExpiry = "有效期至";
inline constexpr const char* kCheckLocalTrigger = "本地触发单";
inline constexpr const char* kCheckAlgoTrigger = "触发后算法交易";
// The page's own line about the last trigger it sent (type, direction, open/close, code,
// volume, trigger price).
inline constexpr const char* kTriggerSentFormat = "触发单已发送：%s %s%s %s %s张 触发价:%s";
inline constexpr const char* kTriggerNotSentFormat = "交易服务未接受触发单：%s %s%s %s %s张 触发价:%s";
inline constexpr const char* kLocalTriggerAdded = "本地触发单已加入本地触发单中心：%s %s%s %s %s张 触发价:%s";

// ---- Modify page ("修改或删除触发单") -----------------------------------------------------------
inline constexpr const char* kTitleTriggerOrder = "舵手 - [触发单#%s]";
inline constexpr const char* kTitleStopProfitOrder = "舵手 - [止损获利单#%s]";
inline constexpr const char* kStopProfitLine = "止损获利%s%s合约%.f张,";
inline constexpr const char* kUnknownOperation = "未知操作";
inline constexpr const char* kMsgModifiedTrigger = "成功修改当前触发单！";
inline constexpr const char* kMsgModifiedStopProfit = "成功修改当前止损获利单！";
inline constexpr const char* kMsgModifyTriggerFailed = "修改触发单出错,请检查输入参数是否有效！";
inline constexpr const char* kMsgModifyStopProfitFailed = "修改止损获利单出错，请检查输入参数是否有效！";
inline constexpr const char* kMsgDeletedTrigger = "成功删除当前触发单！";
inline constexpr const char* kMsgDeletedStopProfit = "成功删除当前止损获利单！";
inline constexpr const char* kMsgDeleteTriggerFailed = "删除触发单出错，请检查输入参数是否有效！";
inline constexpr const char* kMsgDeleteStopProfitFailed = "删除止损获利单出错，请检查输入参数是否有效！";
// Nothing chosen in the list when modify or delete is pressed.
inline constexpr const char* kMsgChooseTrigger = "请先在列表中选择要修改或删除的触发单！";
inline constexpr const char* kTriggerListColumns =
    "编号,40;商品,56;买卖,36;开平,36;数量,36;触发类型,56;触发价,56;委托价,56;止损价,56;获利价,56;过期时间,130;";
inline constexpr const char* kButtonModifyTrigger = "修改";
inline constexpr const char* kButtonDelete = "删除";
inline constexpr const char* kButtonRefresh = "刷新";

// ---- 平仓触发单 (close-position trigger) ------------------------------------------------------
inline constexpr int kStopTriggerDialogId = 25045;
inline constexpr const char* kStopTriggerCaption = "平仓触发单";
inline constexpr const char* kSideLong = "多头持仓";
inline constexpr const char* kSideShort = "空头持仓";
// Instrument name, code, exchange name.
inline constexpr const char* kStopTriggerSymbolFormat = "%s[%s@%s]";
// Display formats of the expiry box and of the quote time.
inline constexpr const char* kExpiryDisplayFormat = "yyyy-MM-dd HH:mm";
inline constexpr const char* kQuoteTimeFormat = "HH:mm:ss";
inline constexpr const char* kMsgStopTriggerQuoteInvalid =
    "当前商品行情无效或现价为0，不能进行触发单交易！";
// Texts of this window's own choices.
// Closing more than the side holds: volume, position.
inline constexpr const char* kMsgStopTriggerExceeds =
    "输入错误，平仓数量%.f张超过当前持仓数量%.f张！";
inline constexpr const char* kMsgLocalTriggerUnavailable = "本地触发单中心无法接收该触发单！";
inline constexpr const char* kLabelPosition = "持仓";
inline constexpr const char* kLabelQuoteTime = "行情时间";
inline constexpr const char* kButtonSendTrigger = "发送平仓触发单";
inline constexpr const char* kButtonClose = "关闭";
inline constexpr const char* kOpenCloseClose = "平仓";
inline constexpr const char* kOpenCloseToday = "平今";
inline constexpr const char* kStopTriggerSent = "已发送：%s %s张 触发价:%s";
inline constexpr const char* kStopTriggerLocalSent = "已交本地触发单中心：%s %s张 触发价:%s";
inline constexpr const char* kStopTriggerFailed = "发送失败：%s";

// ---- 改单 (changing a working order) ---------------------------------------------------------
inline constexpr int kOrderModifyDialogId = 25014;
inline constexpr const char* kOrderModifyCaption = "改单";
// Total, long, short.
inline constexpr const char* kModifyPositionFormat = "%.f(%.f/%.f)";
// Each side with today's part of it.
inline constexpr const char* kModifySidesFormat = "%s(%.f)/%s(%.f)";
inline constexpr const char* kModifyLongToday = "今多";
inline constexpr const char* kModifyShortToday = "今空";
inline constexpr const char* kMsgModifyToBid =
    "输入的委托价格数量不在涨跌停范围内，已自动修改为当前叫买价！";
inline constexpr const char* kMsgModifyToAsk =
    "输入的委托价格数量不在涨跌停范围内，已自动修改为当前叫卖价！";
inline constexpr const char* kMsgCloseLongAbove =
    "输入的平多仓数量大于当前买持仓，已自动修改为当前买持仓量！";
inline constexpr const char* kMsgCloseLongNotPositive =
    "输入的平多仓数量小于等于0，已自动修改为当前买持仓量！";
inline constexpr const char* kMsgCloseShortAbove =
    "输入的平空仓数量大于当前卖持仓，已自动修改为当前卖持仓量！";
inline constexpr const char* kMsgCloseShortNotPositive =
    "输入的平空仓数量小于等于0，已自动修改为当前卖持仓量！";
// Texts of this window's own choices.
inline constexpr const char* kMsgModifyUnchanged = "委托价格和数量都没有改变！";
inline constexpr const char* kMsgModifyNotWorking = "该委托已不在队列中，不能改单！";
inline constexpr const char* kMsgModifyNoPosition = "当前没有可平的持仓，不能改单！";
inline constexpr const char* kLabelOrder = "原委托";
inline constexpr const char* kLabelSides = "今仓";
inline constexpr const char* kLabelNewPrice = "新价格";
inline constexpr const char* kLabelNewVolume = "新数量";
inline constexpr const char* kButtonModify = "改单";
// Identifier, action (开仓买入…), code, volume, price, filled.
inline constexpr const char* kOrderSummaryFormat = "#%s %s %s %s张 价格:%s 已成交:%s";
inline constexpr const char* kModifyCancelling = "正在撤销原委托…";
inline constexpr const char* kModifyCancelFailed = "撤单失败，原委托仍在队列中，未发出新委托。";
inline constexpr const char* kModifyFilled = "原委托已全部成交，未发出新委托。";
inline constexpr const char* kModifyGone = "原委托已撤销，成交已满新数量，未发出新委托。";
inline constexpr const char* kModifySent = "已改单：原委托已撤销，新委托 %s张 价格:%s";
inline constexpr const char* kModifySendFailed = "原委托已撤销，新委托发送失败：%s";

}  // namespace order_text
