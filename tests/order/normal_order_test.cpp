// The immediate page's sending steps, against hand-computed prices. ag2412 has a 0.2 tick, so
// an offset or stop of N points is N × 0.2.
#include "order/normal_order.h"

#include "ticket_fixture.h"

namespace {

using Result = CNormalOrder::SendResult;

class NormalOrderTest : public TicketTest {
protected:
    CNormalOrder& page() { return ticket->normalOrder(); }
    CNormalOrder::Controls& controls() { return page().controls(); }
    void noConfirm() {
        settings([](HelmsmanSettings& s) { s.bShowNormalOrderConfirm = 0; });
    }

    // One box with the caption and text, and nothing sent.
    void expectRefused(Result r, const std::string& caption, const std::string& text) {
        EXPECT_EQ(r, Result::Refused);
        ASSERT_EQ(prompter.boxes.size(), 1u) << text;
        EXPECT_EQ(prompter.boxes[0].caption, caption);
        EXPECT_EQ(prompter.boxes[0].text, text);
        EXPECT_TRUE(host.sent.empty());
        EXPECT_TRUE(ui.confirmed.empty());
    }
};

// ---- Price from the quote or the box, offset, limit clamp, tick rounding -------------------

struct PriceCase {
    const char* name;
    int direction;
    bool useBidAsk, useOffset;
    double offsetPoints, bid, ask, box, lower, upper;
    double expected;  // 0: refused as an invalid quote
};

class PriceTable : public NormalOrderTest, public ::testing::WithParamInterface<PriceCase> {};

TEST_P(PriceTable, PricesAsHandComputed) {
    const PriceCase& pc = GetParam();
    openOn("ag2412");
    deliverQuote(quote("ag2412", pc.bid, pc.ask, 3001.0, pc.lower, pc.upper));
    controls().useBidAsk = pc.useBidAsk;
    controls().useOffset = pc.useOffset;
    controls().offsetPoints = pc.offsetPoints;
    controls().price = pc.box;

    const Result r = page().send(pc.direction);
    if (pc.expected == 0) return expectRefused(r, "提示 ", "买卖价无效，请手工输入价格！");
    ASSERT_EQ(r, Result::Sent) << prompter.lastText();
    ASSERT_EQ(host.sent.size(), 1u);
    EXPECT_NEAR(host.sent[0].dPrice, pc.expected, 1e-9);
}

constexpr double kEps = 0.000001;  // not a price

const PriceCase kPriceCases[] = {
    // name, dir, bid/ask box, offset box, points, bid, ask, price box, lower, upper, expected
    {"AskAtEpsilonBid", kDirBuy, true, false, 0, 3001.0, kEps, 0, 0, 0, 3001.0},
    {"AskAboveEpsilon", kDirBuy, true, false, 0, 3001.0, 1.1e-6, 0, 0, 0, 0.2},
    {"BuyNoQuoteSide", kDirBuy, true, false, 0, kEps, 0, 0, 0, 0, 0},
    {"BuyOffsetAdded", kDirBuy, true, true, 3, 3001.0, 3001.4, 0, 0, 0, 3002.0},
    {"OffsetBoxOff", kDirBuy, true, false, 3, 3001.0, 3001.4, 0, 0, 0, 3001.4},
    {"PointsTruncated", kDirBuy, true, true, 2.9, 3001.0, 3001.4, 0, 0, 0, 3001.8},
    {"BidFallbackBare", kDirBuy, true, true, 3, 3001.0, 0, 0, 0, 0, 3001.0},
    {"SellBidMinusOff", kDirSell, true, true, 2, 3001.0, 3001.4, 0, 0, 0, 3000.6},
    {"BidAtEpsilonAsk", kDirSell, true, true, 2, kEps, 3001.4, 0, 0, 0, 3001.4},
    {"SellNoQuoteSide", kDirSell, true, false, 0, 0, 0, 0, 0, 0, 0},
    {"BoxSellRoundsDn", kDirSell, false, false, 0, 3001.0, 3001.4, 3001.3, 0, 0, 3001.2},
    {"BoxIgnoresQuote", kDirBuy, false, true, 5, 3001.0, 3001.4, 2999.0, 0, 0, 2999.0},
    {"QuoteOffClamped", kDirBuy, true, true, 10, 3049.0, 3049.6, 0, 2950, 3050, 3050},
    {"ClampThenRound", kDirBuy, false, false, 0, 0, 0, 3100, 2950, 3050.1, 3050.2},
};
INSTANTIATE_TEST_SUITE_P(Prices, PriceTable, ::testing::ValuesIn(kPriceCases),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- Stop-loss and take-profit ------------------------------------------------------------

struct StopCase {
    const char* name;
    int direction, openClose;
    bool stop, stopAuto;
    double stopPrice;
    int stopPoints;
    bool profit, profitAuto;
    double profitPrice;
    int profitPoints;
    double expectStop, expectProfit;
    const char* refusal;  // nullptr: sent
};

class StopTable : public NormalOrderTest, public ::testing::WithParamInterface<StopCase> {};

TEST_P(StopTable, StopsAsHandComputed) {
    const StopCase& sc = GetParam();
    // One lot on each side to close: the short from yesterday, the long from today.
    host.positions = {{"A1", "B1", 1, "ag2412", 2, 1, 1, 1, 0}};
    openOn("ag2412");
    auto& c = controls();
    c.price = 3000.0;
    c.openClose = sc.openClose;
    c.stopLoss = sc.stop;
    c.stopLossAuto = sc.stopAuto;
    c.stopLossPrice = sc.stopPrice;
    c.stopLossPoints = sc.stopPoints;
    c.takeProfit = sc.profit;
    c.takeProfitAuto = sc.profitAuto;
    c.takeProfitPrice = sc.profitPrice;
    c.takeProfitPoints = sc.profitPoints;

    const Result r = page().send(sc.direction);
    if (sc.refusal) return expectRefused(r, "提示", sc.refusal);
    ASSERT_EQ(r, Result::Sent) << prompter.lastText();
    ASSERT_EQ(host.sent.size(), 1u);
    EXPECT_NEAR(host.sent[0].dStopLoss, sc.expectStop, 1e-9);  // on the tick, no float noise
    EXPECT_NEAR(host.sent[0].dTakeProfit, sc.expectProfit, 1e-9);
    EXPECT_EQ(host.sent[0].nOpenClose, sc.openClose);
}

const StopCase kStopCases[] = {
    // name, dir, o/c, stop box, auto, price, points, profit box, auto, price, points,
    // expected stop, expected profit, refusal
    {"BuyAuto", kDirBuy, kOpen, true, true, 0, 10, true, true, 0, 15, 2998.0, 3003.0, nullptr},
    {"SellAuto", kDirSell, kOpen, true, true, 0, 10, true, true, 0, 15, 3002.0, 2997.0, nullptr},
    {"BuyManual", kDirBuy, kOpen, true, false, 2990, 10, true, false, 3010, 10, 2990, 3010,
     nullptr},
    {"AutoNoBox", kDirBuy, kOpen, false, true, 0, 10, false, true, 0, 10, 0, 0, nullptr},
    {"Closing", kDirBuy, kClose, true, false, 3005, 10, true, false, 2995, 10, 0, 0, nullptr},
    {"CloseToday", kDirSell, kCloseToday, true, true, 0, 10, true, true, 0, 10, 0, 0, nullptr},
    {"BuyStopAt", kDirBuy, kOpen, true, false, 3000, 10, false, false, 0, 10, 0, 0,
     "输入错误，买入时止损价必须小于委托价！"},
    {"BuyProfitAt", kDirBuy, kOpen, false, false, 0, 10, true, false, 3000, 10, 0, 0,
     "输入错误，买入时获利价必须大于委托价！"},
    {"SellStopAt", kDirSell, kOpen, true, false, 3000, 10, false, false, 0, 10, 0, 0,
     "输入错误，卖出时止损价必须大于委托价！"},
    {"SellProfitAt", kDirSell, kOpen, false, false, 0, 10, true, false, 3000, 10, 0, 0,
     "输入错误，卖出时获利价必须小于委托价！"},
};
INSTANTIATE_TEST_SUITE_P(Stops, StopTable, ::testing::ValuesIn(kStopCases),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- Refusals before the price ------------------------------------------------------------

TEST_F(NormalOrderTest, RefusalsBeforeThePrice) {
    const auto accounts = host.accounts;
    const auto agDetail = host.details["ag2412"];
    struct {
        const char* text;
        bool account, symbol;
        std::function<void()> arrange;  // after opening, with 3000 in the price box
    } cases[] = {
        {"请先登录交易帐户！", false, true, [] {}},
        {"请先选择要进行交易的商品！", true, false, [] {}},
        {"当前商品不能进行交易！", true, true, [&] { host.details["ag2412"].bTradable = false; }},
        {"当前商品不能进行交易！", true, true, [&] { host.details.erase("ag2412"); }},
        {"输入错误，交易数量必须大于0！", true, true, [&] { controls().volumeText = "0"; }},
        {"输入错误，交易数量必须大于0！", true, true, [&] { controls().volumeText = "-2"; }},
        {"输入错误，交易数量必须大于0！", true, true, [&] { controls().volumeText = "abc"; }},
        {"输入错误，交易数量必须为整数！", true, true, [&] { controls().volumeText = "1.5"; }},
        // An emptied box is refused, never sent at the value it held before.
        {"请输入委托价格！", true, true, [&] { controls().priceEntered = false; }},
        // An empty box is refused, not clamped up to the lower limit.
        {"输入错误，委托价格必须大于0！", true, true,
         [&] {
             deliverQuote(quote("ag2412", 3001, 3002, 3001, 2950, 3050));
             controls().price = 0;
         }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        host.accounts = c.account ? accounts : std::vector<tagAccoutInfo>{};
        host.details["ag2412"] = agDetail;
        prompter.boxes.clear();
        c.symbol ? openOn("ag2412") : openTicket();
        controls().price = 3000;
        c.arrange();
        expectRefused(page().send(kDirBuy), "提示", c.text);
    }
}

// ---- The account the order goes to is the one shown ----------------------------------------

TEST_F(NormalOrderTest, AnAccountIsUsedOnlyOnceShown) {
    noConfirm();
    const auto accounts = host.accounts;
    host.accounts.clear();
    openOn("ag2412");
    controls().price = 3000;
    unsigned heard = 0;
    ticket->setListener([&](unsigned what) { heard |= what; });

    // Logged on, and the notice has not arrived yet: the box is filled in, nothing sent.
    host.accounts = accounts;
    expectRefused(page().send(kDirBuy), "提示", "交易帐户已更新为A1(张三)，请确认后重新下单！");
    EXPECT_TRUE(heard & kTicketAccounts);
    EXPECT_EQ(ticket->account()->strAccountID, "A1");
    EXPECT_EQ(page().send(kDirBuy), Result::Sent);
    EXPECT_EQ(host.sent.at(0).strAccountID, "A1");

    // The account shown logs off while another stays: refused by name, never swapped.
    ticket->selectAccount(1);
    host.accounts = {accounts[0]};
    host.sent.clear();
    prompter.boxes.clear();
    expectRefused(page().send(kDirBuy), "提示", "交易帐户A2(李四)已退出登录，请重新选择交易帐户！");
    EXPECT_EQ(ticket->account(), nullptr);
    ticket->selectAccount(0);
    EXPECT_EQ(page().send(kDirBuy), Result::Sent);
    EXPECT_EQ(host.sent.at(0).strAccountID, "A1");
}

// ---- Closing no more than can be closed ---------------------------------------------------

TEST_F(NormalOrderTest, ClosingBeyondWhatCanBeClosedIsRefused) {
    noConfirm();
    host.details["au2406"] = contractDetail(0.02f, 1, 1000, 0.1);
    // Long 5 of which 2 today; short 1 from yesterday.
    const auto position = [](std::uint16_t ex, const char* code) {
        return tagOpenedPosition{"A1", "B1", ex, code, 6, 5, 1, 2, 0};
    };
    struct {
        const char* name;
        std::uint16_t ex;
        int direction, openClose;
        const char* volume;
        const char* refusal;  // nullptr: sent
    } cases[] = {
        {"close all", 1, kDirSell, kClose, "5", nullptr},
        {"close one too many", 1, kDirSell, kClose, "6",
         "输入错误，平仓数量6张超过可平数量5张（昨仓3张，今仓2张）！"},
        {"close today", 1, kDirSell, kCloseToday, "2", nullptr},
        {"close today beyond today's", 1, kDirSell, kCloseToday, "3",
         "输入错误，平今仓数量3张超过可平今仓数量2张！"},
        {"buy closes the short side", 1, kDirBuy, kClose, "2",
         "输入错误，平仓数量2张超过可平数量1张（昨仓1张，今仓0张）！"},
        {"exchange 0: yesterday's", 0, kDirSell, kClose, "3", nullptr},
        {"exchange 0: today's would be needed", 0, kDirSell, kClose, "4",
         "该交易所“平仓”只平昨仓：委托4张，可平昨仓3张。平今日的仓位请选择“平今仓”（可平今仓2张）！"},
        {"exchange 0: nothing today", 0, kDirBuy, kClose, "2",
         "输入错误，平仓数量2张超过可平数量1张（昨仓1张，今仓0张）！"},
        {"opening is not limited", 1, kDirSell, kOpen, "50", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const char* code = c.ex == 0 ? "au2406" : "ag2412";
        host.positions = {position(c.ex, code)};
        host.orders.clear();
        host.sent.clear();
        prompter.boxes.clear();
        openOn(code, c.ex);
        controls().price = 400;
        controls().openClose = c.openClose;
        controls().volumeText = c.volume;
        const Result r = page().send(c.direction);
        if (c.refusal) {
            expectRefused(r, "提示", c.refusal);
            continue;
        }
        EXPECT_EQ(r, Result::Sent) << prompter.lastText();
        // What was just sent is held now: the same close again is refused.
        if (c.openClose != kOpen) {
            EXPECT_EQ(page().send(c.direction), Result::Refused);
            EXPECT_EQ(host.sent.size(), 1u);
        }
    }
}

TEST_F(NormalOrderTest, VolumeIsALeadingDecimalNumber) {
    EXPECT_EQ(CNormalOrder::parseVolume("2.5"), 2.5);
    EXPECT_EQ(CNormalOrder::parseVolume(" 3手"), 3.0);
    EXPECT_EQ(CNormalOrder::parseVolume("x3"), 0.0);
    EXPECT_EQ(CNormalOrder::formatNumber(2.5), "2.5");
}

// ---- What became of the order: the ticket's status line ------------------------------------

TEST_F(NormalOrderTest, RefusalsAreExplainedOnTheStatusLine) {
    noConfirm();
    openOn("ag2412");
    controls().price = 3000;
    controls().volumeText = "2";
    ASSERT_EQ(page().send(kDirBuy), Result::Sent);
    EXPECT_EQ(ticket->statusText(), "已报：买入开仓 ag2412 2张 价格:3000");
    EXPECT_FALSE(ticket->statusIsError());

    // The exchange refuses it later: the host's order record says why.
    tagBrokerOrder changed = host.sent.at(0);
    changed.nStatus = kOrderRejected;
    changed.strStatusMsg = "资金不足";
    tagBrokerOrder someoneElses = changed;
    someoneElses.strOrderID = "other";
    someoneElses.strStatusMsg = "别的委托";
    manage.dataChange(kEventOrderChanged, reinterpret_cast<std::uintptr_t>(&changed));
    manage.dataChange(kEventOrderChanged, reinterpret_cast<std::uintptr_t>(&someoneElses));
    EXPECT_EQ(ticket->statusText(), "已废除：买入开仓 ag2412 2张 价格:3000\n原因：资金不足");
    EXPECT_TRUE(ticket->statusIsError());
    EXPECT_TRUE(prompter.boxes.empty());  // no box per rejection

    // The host does not take it at all.
    host.sendOrderResult = 0;
    host.sentReason = "未登录交易帐户";
    EXPECT_EQ(page().send(kDirSell), Result::Failed);
    EXPECT_EQ(ticket->statusText(), "未发送：卖出开仓 ag2412 2张 价格:3000\n原因：未登录交易帐户");
    EXPECT_TRUE(prompter.boxes.empty());
}

// ---- The order handed over, and the submission --------------------------------------------

TEST_F(NormalOrderTest, OrderFieldsAndSubmission) {
    openOn("ag2412");
    ticket->selectAccount(1);
    controls().price = 3000.1;
    controls().volumeText = "3";
    controls().hedge = kHedge;
    clock.setNowMs(kNowMs + 5500);

    ASSERT_EQ(page().send(kDirSell), Result::Sent);
    ASSERT_EQ(host.sent.size(), 1u);
    const tagBrokerOrder& o = host.sent[0];
    EXPECT_EQ(o.strAccountID, "A2");
    EXPECT_EQ(o.strBrokerID, "B2");
    EXPECT_EQ(o.strAccountState, "李四");
    EXPECT_EQ(o.nExchangeID, 1);
    EXPECT_EQ(o.strSymbolText, "ag2412");
    EXPECT_EQ(o.strCode, "ag2412");
    EXPECT_EQ(o.nPriceType, 0);
    EXPECT_EQ(o.nDirection, kDirSell);
    EXPECT_EQ(o.dVolume, 3.0);
    EXPECT_NEAR(o.dPrice, 3000.0, 1e-9);
    EXPECT_EQ(o.nOpenClose, kOpen);
    EXPECT_EQ(o.nHedge, kHedge);
    EXPECT_EQ(o.tCreateTime, (kNowMs + 5500) / 1000);
    EXPECT_EQ(o.strRemark, "舵手");
    // Confirmed by default, under the ticket's caller name.
    EXPECT_EQ(ui.log, std::vector<std::string>{"confirmOrder 舵手"});
    EXPECT_TRUE(prompter.boxes.empty());
}

TEST_F(NormalOrderTest, ConfirmationFlagAndCancel) {
    noConfirm();
    openOn("ag2412");
    controls().price = 3000;
    EXPECT_EQ(page().send(kDirBuy), Result::Sent);
    EXPECT_TRUE(ui.log.empty());

    settings([](HelmsmanSettings& s) { s.bShowNormalOrderConfirm = 1; });
    ui.acceptConfirm = false;
    EXPECT_EQ(page().send(kDirBuy), Result::Cancelled);
    EXPECT_EQ(host.sent.size(), 1u);
    EXPECT_TRUE(prompter.boxes.empty());
}

TEST_F(NormalOrderTest, AlgoBoxPassesTheTicketsBlockAndIsTheSwitch) {
    noConfirm();
    openOn("ag2412");
    ticket->algoSetting().nBaseLine = 10;
    controls().price = 3000;
    controls().volumeText = "10";
    page().send(kDirBuy);  // box off: no block, straight to the host
    EXPECT_EQ(manage.settings().bUseAlgoTrading, 0);
    controls().algo = true;
    page().send(kDirBuy);
    EXPECT_EQ(manage.settings().bUseAlgoTrading, 1);  // the box switched it on
    EXPECT_EQ(host.sent.size(), 1u);
    ASSERT_EQ(ui.toAlgo.size(), 1u);
    EXPECT_EQ(ui.toAlgo[0].dVolume, 10.0);

    // No algo centre: it explains itself; the ticket adds no send-failure box.
    ui.algoCentreAvailable = false;
    EXPECT_EQ(page().send(kDirBuy), Result::Failed);
    EXPECT_EQ(host.sent.size(), 1u);
    EXPECT_TRUE(prompter.boxes.empty());
}

// ---- Single-order cap ---------------------------------------------------------------------

TEST_F(NormalOrderTest, CapSplitsIntoOrdersOfAtMostTheCap) {
    struct {
        int useCap;
        double cap;
        const char* volume;
        std::vector<double> parts;  // empty: refused
    } cases[] = {
        {0, 10, "25", {25}},     {1, 10, "10", {10}}, {1, 10, "25", {10, 10, 5}},
        {1, 10, "20", {10, 10}}, {1, 0, "25", {25}},  {1, 10, "1000", {}},
    };
    for (const auto& cc : cases) {
        SCOPED_TRACE(std::to_string(cc.useCap) + " " + cc.volume);
        host.sent.clear();
        ui.log.clear();
        settings([&](HelmsmanSettings& s) {
            s.bUseSingleLimit = cc.useCap;
            s.dMaxSingleLimitVol = cc.cap;
        });
        openOn("ag2412");
        controls().price = 3000;
        controls().volumeText = cc.volume;
        const Result r = page().send(kDirBuy);
        if (cc.parts.empty()) {
            EXPECT_EQ(r, Result::Refused);
            EXPECT_TRUE(host.sent.empty());
            EXPECT_EQ(prompter.lastText(),
                      "委托数量1000按单笔上限10手需拆分为100笔，超过50笔，请减少数量！");
            continue;
        }
        ASSERT_EQ(r, Result::Sent);
        ASSERT_EQ(host.sent.size(), cc.parts.size());
        for (std::size_t i = 0; i < cc.parts.size(); ++i) {
            EXPECT_EQ(host.sent[i].dVolume, cc.parts[i]);
            EXPECT_NEAR(host.sent[i].dPrice, 3000.0, 1e-9);
            EXPECT_EQ(host.sent[i].strRemark, "舵手");
        }
        EXPECT_EQ(ui.log,
                  std::vector<std::string>{cc.parts.size() > 1 ? "confirmBatch 舵手 " +
                                                                     std::to_string(cc.parts.size())
                                                               : "confirmOrder 舵手"});
    }
}

// ---- Keyboard orders ----------------------------------------------------------------------

TEST_F(NormalOrderTest, HotkeysUseTheQuoteTheBandAndTheirOwnConfirmation) {
    settings([](HelmsmanSettings& s) { s.bShowHotkeyOrderConfirm = 0; });
    openOn("ag2412");
    deliverQuote(quote("ag2412", 3001.0, 3001.4, 3001.2));
    controls().useBidAsk = false;  // the touch ignores the box
    controls().price = 2000;

    EXPECT_EQ(page().sendHotkey(HotkeyAction::BuyAtTouch), Result::Sent);
    EXPECT_EQ(page().sendHotkey(HotkeyAction::SellAtTouch), Result::Sent);
    ASSERT_EQ(host.sent.size(), 2u);
    EXPECT_NEAR(host.sent[0].dPrice, 3001.4, 1e-9);
    EXPECT_EQ(host.sent[0].nDirection, kDirBuy);
    EXPECT_NEAR(host.sent[1].dPrice, 3001.0, 1e-9);
    EXPECT_EQ(host.sent[1].nDirection, kDirSell);
    EXPECT_TRUE(ui.log.empty());  // the normal confirmation flag is on, the hotkey one off

    settings([](HelmsmanSettings& s) { s.bShowHotkeyOrderConfirm = 1; });
    page().sendHotkey(HotkeyAction::SellAtPrice);
    EXPECT_EQ(ui.log, std::vector<std::string>{"confirmOrder 舵手"});
    EXPECT_NEAR(host.sent.at(2).dPrice, 2000.0, 1e-9);

    // At the price, outside the band: the box is corrected and nothing is sent.
    settings([](HelmsmanSettings& s) { s.bShowHotkeyOrderConfirm = 0; });
    deliverQuote(quote("ag2412", 3001.0, 3001.4, 3001.2, 2950, 3050));
    controls().useBidAsk = true;  // at the price ignores the bid/ask box
    controls().price = 3100;
    host.sent.clear();
    ui.confirmed.clear();
    expectRefused(page().sendHotkey(HotkeyAction::BuyAtPrice), "提示",
                  "输入的委托价格不在涨跌停范围内，已自动修改为涨跌停价！");
    EXPECT_EQ(controls().price, 3050);
    EXPECT_EQ(page().sendHotkey(HotkeyAction::BuyAtPrice), Result::Sent);
    EXPECT_NEAR(host.sent.at(0).dPrice, 3050, 1e-9);
}

TEST_F(NormalOrderTest, HotkeyDuplicatesIgnoreCaseAndEmptyKeys) {
    HotkeySettings s;
    EXPECT_EQ(duplicateHotkey(s), "");
    s.key(HotkeyAction::SellAtPrice) = "f2";
    EXPECT_EQ(duplicateHotkey(s), "F2");
    s.key(HotkeyAction::SellAtPrice) = "";
    s.key(HotkeyAction::BuyAtPrice) = "";
    EXPECT_EQ(duplicateHotkey(s), "");
}

TEST_F(NormalOrderTest, HotkeysRoundTripThroughProfileIni) {
    const auto ini = manage.profilePath();
    EXPECT_EQ(loadHotkeys(ini), HotkeySettings{});  // no file: defaults, switched off
    HotkeySettings s;
    s.bEnabled = 1;
    s.key(HotkeyAction::BuyAtTouch) = "Ctrl+B";
    s.key(HotkeyAction::SellAtPrice) = "";
    ASSERT_TRUE(saveHotkeys(ini, s));
    EXPECT_EQ(loadHotkeys(ini), s);
    EXPECT_EQ(loadSettings(ini), manage.settings());  // the module's own section untouched
}

}  // namespace
