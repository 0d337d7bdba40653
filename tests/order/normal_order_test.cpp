// The immediate page's sending steps, against hand-computed prices. The contract ag2412 has a
// tick (one point) of 0.2, so an offset or stop of N points is N × 0.2.
#include "order/normal_order.h"

#include <cmath>

#include "order/order_strings.h"
#include "ticket_fixture.h"

namespace {

using Result = CNormalOrder::SendResult;
namespace tx = order_text;

class NormalOrderTest : public TicketTest {
protected:
    CNormalOrder& page() { return ticket->normalOrder(); }
    CNormalOrder::Controls& controls() { return page().controls(); }

    // Asserts one box with the caption and text, and nothing sent.
    void expectRefused(Result r, const std::string& caption, const std::string& text) {
        EXPECT_EQ(r, Result::Refused);
        ASSERT_EQ(prompter.boxes.size(), 1u) << text;
        EXPECT_EQ(prompter.boxes[0].caption, caption);
        EXPECT_EQ(prompter.boxes[0].text, text);
        EXPECT_TRUE(host.sent.empty());
        EXPECT_TRUE(ui.confirmed.empty());
    }
};

// ---- Step 6-8: price from the quote or the box, offset, limit clamp, tick rounding --------

struct PriceCase {
    const char* name;
    int direction;
    bool useBidAsk;
    bool useOffset;
    double offsetPoints;
    double bid, ask;
    double manual;        // price box
    double lower, upper;  // day's limits
    double expected;      // 0: refused with the invalid-quote message
};

class PriceTable : public NormalOrderTest, public ::testing::WithParamInterface<PriceCase> {};

TEST_P(PriceTable, PricesAsHandComputed) {
    const PriceCase& pc = GetParam();
    openOn("ag2412");
    deliverQuote(quote("ag2412", pc.bid, pc.ask, 3001.0, pc.lower, pc.upper));
    controls().useBidAsk = pc.useBidAsk;
    controls().useOffset = pc.useOffset;
    controls().offsetPoints = pc.offsetPoints;
    controls().price = pc.manual;

    const Result r = page().send(pc.direction);
    if (pc.expected == 0) {
        expectRefused(r, "提示 ", "买卖价无效，请手工输入价格！");
        return;
    }
    ASSERT_EQ(r, Result::Sent) << prompter.lastText();
    ASSERT_EQ(host.sent.size(), 1u);
    EXPECT_NEAR(host.sent[0].dPrice, pc.expected, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Steps6to8, PriceTable,
    ::testing::Values(
        // name, dir, bid/ask box, offset box, points, bid, ask, box, lower, upper, expected
        PriceCase{"BuyTakesAsk", kDirBuy, true, false, 0, 3001.0, 3001.4, 0, 0, 0, 3001.4},
        PriceCase{"BuyAskAtEpsilonTakesBid", kDirBuy, true, false, 0, 3001.0, 0.000001, 0, 0, 0,
                  3001.0},
        PriceCase{"BuyAskJustAboveEpsilonIsAPrice", kDirBuy, true, false, 0, 3001.0, 0.0000011, 0,
                  0, 0, 0.2},
        PriceCase{"BuyNoQuoteSide", kDirBuy, true, false, 0, 0.000001, 0, 0, 0, 0, 0},
        PriceCase{"BuyOffsetAdded", kDirBuy, true, true, 3, 3001.0, 3001.4, 0, 0, 0, 3002.0},
        PriceCase{"BuyOffsetBoxOffIgnoresPoints", kDirBuy, true, false, 3, 3001.0, 3001.4, 0, 0, 0,
                  3001.4},
        PriceCase{"OffsetPointsTruncated", kDirBuy, true, true, 2.9, 3001.0, 3001.4, 0, 0, 0,
                  3001.8},
        PriceCase{"BuyFallbackToBidHasNoOffset", kDirBuy, true, true, 3, 3001.0, 0, 0, 0, 0,
                  3001.0},
        PriceCase{"SellTakesBidMinusOffset", kDirSell, true, true, 2, 3001.0, 3001.4, 0, 0, 0,
                  3000.6},
        PriceCase{"SellBidAtEpsilonTakesAsk", kDirSell, true, true, 2, 0.000001, 3001.4, 0, 0, 0,
                  3001.4},
        PriceCase{"SellNoQuoteSide", kDirSell, true, false, 0, 0, 0, 0, 0, 0, 0},
        PriceCase{"BoxBuyRoundsUp", kDirBuy, false, false, 0, 3001.0, 3001.4, 3001.3, 0, 0, 3001.4},
        PriceCase{"BoxSellRoundsDown", kDirSell, false, false, 0, 3001.0, 3001.4, 3001.3, 0, 0,
                  3001.2},
        PriceCase{"OnTheTickStays", kDirBuy, false, false, 0, 0, 0, 3001.2, 0, 0, 3001.2},
        PriceCase{"BoxIgnoresQuoteAndOffset", kDirBuy, false, true, 5, 3001.0, 3001.4, 2999.0, 0, 0,
                  2999.0},
        PriceCase{"ClampToUpper", kDirBuy, false, false, 0, 0, 0, 3100, 2950, 3050, 3050},
        PriceCase{"ClampToLower", kDirSell, false, false, 0, 0, 0, 2900, 2950, 3050, 2950},
        PriceCase{"QuotePlusOffsetClamped", kDirBuy, true, true, 10, 3049.0, 3049.6, 0, 2950, 3050,
                  3050},
        PriceCase{"NoClampWhenBandInverted", kDirBuy, false, false, 0, 0, 0, 3100, 3050, 2950,
                  3100},
        PriceCase{"NoClampWithoutLower", kDirSell, false, false, 0, 0, 0, 10, 0, 3050, 10},
        PriceCase{"ClampedThenRounded", kDirBuy, false, false, 0, 0, 0, 3100, 2950, 3050.1,
                  3050.2}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(NormalOrderTest, NoQuoteYetIsAnInvalidQuote) {
    openOn("rb2410");  // no snapshot, no quote delivered
    controls().useBidAsk = true;
    expectRefused(page().send(kDirBuy), "提示 ", "买卖价无效，请手工输入价格！");
}

// ---- Steps 10-12: stop-loss and take-profit ---------------------------------------------

struct StopCase {
    const char* name;
    int direction;
    int openClose;
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
    if (sc.refusal) {
        expectRefused(r, "提示", sc.refusal);
        return;
    }
    ASSERT_EQ(r, Result::Sent) << prompter.lastText();
    ASSERT_EQ(host.sent.size(), 1u);
    EXPECT_NEAR(host.sent[0].dStopLoss, sc.expectStop, 1e-9);  // on the tick, no float noise
    EXPECT_NEAR(host.sent[0].dTakeProfit, sc.expectProfit, 1e-9);
    EXPECT_EQ(host.sent[0].nOpenClose, sc.openClose);
}

INSTANTIATE_TEST_SUITE_P(
    Steps10to12, StopTable,
    ::testing::Values(
        // name, dir, o/c, stop, auto, price, pts, profit, auto, price, pts, =stop, =profit, refusal
        StopCase{"NoneChecked", kDirBuy, kOpen, false, false, 0, 20, false, false, 0, 20, 0, 0,
                 nullptr},
        StopCase{"BuyAuto", kDirBuy, kOpen, true, true, 0, 10, true, true, 0, 15, 2998.0, 3003.0,
                 nullptr},
        StopCase{"SellAuto", kDirSell, kOpen, true, true, 0, 10, true, true, 0, 15, 3002.0, 2997.0,
                 nullptr},
        StopCase{"BuyManual", kDirBuy, kOpen, true, false, 2990, 10, true, false, 3010, 10, 2990,
                 3010, nullptr},
        StopCase{"SellManual", kDirSell, kOpen, true, false, 3010, 10, true, false, 2990, 10, 3010,
                 2990, nullptr},
        StopCase{"AutoButtonWithoutBoxIsNothing", kDirBuy, kOpen, false, true, 0, 10, false, true,
                 0, 10, 0, 0, nullptr},
        StopCase{"ClosingIgnoresStopBox", kDirBuy, kClose, true, false, 3005, 10, true, false, 2995,
                 10, 0, 0, nullptr},
        StopCase{"CloseTodayIgnoresStopBox", kDirSell, kCloseToday, true, true, 0, 10, true, true,
                 0, 10, 0, 0, nullptr},
        StopCase{"BuyStopAtPrice", kDirBuy, kOpen, true, false, 3000, 10, false, false, 0, 10, 0, 0,
                 "输入错误，买入时止损价必须小于委托价！"},
        StopCase{"BuyAutoStopZeroPoints", kDirBuy, kOpen, true, true, 0, 0, false, false, 0, 10, 0,
                 0, "输入错误，买入时止损价必须小于委托价！"},
        StopCase{"BuyProfitAtPrice", kDirBuy, kOpen, false, false, 0, 10, true, false, 3000, 10, 0,
                 0, "输入错误，买入时获利价必须大于委托价！"},
        StopCase{"SellStopBelow", kDirSell, kOpen, true, false, 2999, 10, false, false, 0, 10, 0, 0,
                 "输入错误，卖出时止损价必须大于委托价！"},
        StopCase{"SellStopEmptyBox", kDirSell, kOpen, true, false, 0, 10, false, false, 0, 10, 0, 0,
                 "输入错误，卖出时止损价必须大于委托价！"},
        StopCase{"SellProfitAbove", kDirSell, kOpen, false, false, 0, 10, true, false, 3001, 10, 0,
                 0, "输入错误，卖出时获利价必须小于委托价！"}),
    [](const auto& info) { return std::string(info.param.name); });

// ---- Refusals before the price -----------------------------------------------------------

TEST_F(NormalOrderTest, NoAccountRefused) {
    host.accounts.clear();
    openOn("ag2412");
    controls().price = 3000;
    expectRefused(page().send(kDirBuy), "提示", "请先登录交易帐户！");
}

TEST_F(NormalOrderTest, LogonAfterOpeningIsSeenAtSend) {
    const auto accounts = host.accounts;
    host.accounts.clear();
    openOn("ag2412");
    host.accounts = accounts;
    controls().price = 3000;
    EXPECT_EQ(page().send(kDirBuy), Result::Sent);
    EXPECT_EQ(host.sent.at(0).strAccountID, "A1");
}

TEST_F(NormalOrderTest, NoSymbolRefused) {
    openTicket();
    controls().price = 3000;
    expectRefused(page().send(kDirSell), "提示", "请先选择要进行交易的商品！");
}

TEST_F(NormalOrderTest, SymbolTheHostStoppedTradingRefused) {
    openOn("ag2412");
    controls().price = 3000;
    host.details["ag2412"].bTradable = false;
    expectRefused(page().send(kDirBuy), "提示", "当前商品不能进行交易！");
}

TEST_F(NormalOrderTest, SymbolWithoutContractRefused) {
    openOn("ag2412");
    controls().price = 3000;
    host.details.erase("ag2412");
    expectRefused(page().send(kDirBuy), "提示", "当前商品不能进行交易！");
}

TEST_F(NormalOrderTest, VolumeNotAboveZeroRefused) {
    for (const char* text : {"0", "", "abc", "-2", "  0.0"}) {
        prompter.boxes.clear();
        openOn("ag2412");
        controls().price = 3000;
        controls().volumeText = text;
        expectRefused(page().send(kDirBuy), "提示", "输入错误，交易数量必须大于0！");
    }
}

TEST_F(NormalOrderTest, EmptyPriceBoxRefusedNotClampedToALimit) {
    openOn("ag2412");
    deliverQuote(quote("ag2412", 3001, 3002, 3001, 2950, 3050));
    controls().price = 0;
    expectRefused(page().send(kDirBuy), "提示", "输入错误，委托价格必须大于0！");
}

TEST_F(NormalOrderTest, VolumeIsALeadingDecimalNumber) {
    EXPECT_EQ(CNormalOrder::parseVolume("2.5"), 2.5);
    EXPECT_EQ(CNormalOrder::parseVolume(" 3手"), 3.0);
    EXPECT_EQ(CNormalOrder::parseVolume("x3"), 0.0);
    EXPECT_EQ(CNormalOrder::formatNumber(2.0), "2");
    EXPECT_EQ(CNormalOrder::formatNumber(2.5), "2.5");
    EXPECT_EQ(CNormalOrder::formatNumber(3001.2), "3001.2");
}

// ---- The order handed over, and the submission ------------------------------------------

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
    // Confirmed (bShowNormalOrderConfirm defaults to 1) under the ticket's caller name.
    EXPECT_EQ(ui.log, std::vector<std::string>{"confirmOrder 舵手"});
    EXPECT_TRUE(prompter.boxes.empty());
}

TEST_F(NormalOrderTest, ConfirmationFlagAndCancel) {
    settings([](HelmsmanSettings& s) { s.bShowNormalOrderConfirm = 0; });
    openOn("ag2412");
    controls().price = 3000;
    EXPECT_EQ(page().send(kDirBuy), Result::Sent);
    EXPECT_TRUE(ui.log.empty());
    EXPECT_EQ(host.sent.size(), 1u);

    settings([](HelmsmanSettings& s) { s.bShowNormalOrderConfirm = 1; });
    ui.acceptConfirm = false;
    EXPECT_EQ(page().send(kDirBuy), Result::Cancelled);
    EXPECT_EQ(host.sent.size(), 1u);
}

TEST_F(NormalOrderTest, HostRefusalIsAnnounced) {
    settings([](HelmsmanSettings& s) { s.bShowNormalOrderConfirm = 0; });
    host.sendOrderResult = 0;
    openOn("ag2412");
    controls().price = 3000;
    EXPECT_EQ(page().send(kDirBuy), Result::Failed);
    EXPECT_EQ(prompter.lastText(), "委托发送失败，请查看委托状态！");
}

TEST_F(NormalOrderTest, AlgoBoxPassesTheTicketsBlock) {
    settings([](HelmsmanSettings& s) { s.bShowNormalOrderConfirm = 0; });
    openOn("ag2412");
    ticket->algoSetting().nBaseLine = 10;
    controls().price = 3000;

    controls().volumeText = "10";
    controls().algo = false;
    page().send(kDirBuy);  // no block: straight to the host whatever the size
    controls().algo = true;
    page().send(kDirBuy);  // at the threshold: algo centre
    controls().volumeText = "9";
    page().send(kDirBuy);  // below it: the host
    EXPECT_EQ(host.sent.size(), 2u);
    ASSERT_EQ(ui.toAlgo.size(), 1u);
    EXPECT_EQ(ui.toAlgo[0].dVolume, 10.0);
}

TEST_F(NormalOrderTest, NoAlgoCentreMeansOneExplanationNotASendFailure) {
    settings([](HelmsmanSettings& s) { s.bShowNormalOrderConfirm = 0; });
    openOn("ag2412");
    ticket->algoSetting().nBaseLine = 10;
    ui.algoCentreAvailable = false;  // the centre says why itself
    controls().price = 3000;
    controls().volumeText = "10";
    controls().algo = true;
    const size_t boxesBefore = prompter.boxes.size();
    EXPECT_EQ(page().send(kDirBuy), Result::Failed);
    EXPECT_TRUE(host.sent.empty());
    EXPECT_EQ(prompter.boxes.size(), boxesBefore);
}

// ---- Single-order cap --------------------------------------------------------------------

struct CapCase {
    const char* name;
    int useCap;
    double cap;
    const char* volume;
    std::vector<double> parts;  // empty: refused
};

class CapTable : public NormalOrderTest, public ::testing::WithParamInterface<CapCase> {};

TEST_P(CapTable, SplitsIntoOrdersOfAtMostTheCap) {
    const CapCase& cc = GetParam();
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
        return;
    }
    ASSERT_EQ(r, Result::Sent);
    ASSERT_EQ(host.sent.size(), cc.parts.size());
    for (std::size_t i = 0; i < cc.parts.size(); ++i) {
        EXPECT_EQ(host.sent[i].dVolume, cc.parts[i]);
        EXPECT_NEAR(host.sent[i].dPrice, 3000.0, 1e-9);
        EXPECT_EQ(host.sent[i].strRemark, "舵手");
    }
    const std::string expectLog = cc.parts.size() > 1
                                      ? "confirmBatch 舵手 " + std::to_string(cc.parts.size())
                                      : "confirmOrder 舵手";
    EXPECT_EQ(ui.log, std::vector<std::string>{expectLog});
}

INSTANTIATE_TEST_SUITE_P(Cap, CapTable,
                         ::testing::Values(CapCase{"Off", 0, 10, "25", {25}},
                                           CapCase{"AtCap", 1, 10, "10", {10}},
                                           CapCase{"Split", 1, 10, "25", {10, 10, 5}},
                                           CapCase{"EvenSplit", 1, 10, "20", {10, 10}},
                                           CapCase{"ZeroCapIsNoCap", 1, 0, "25", {25}},
                                           CapCase{"TooManyParts", 1, 10, "1000", {}}),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- Keyboard orders ---------------------------------------------------------------------

TEST_F(NormalOrderTest, HotkeyAtTouchUsesTheQuoteAndItsOwnConfirmation) {
    settings([](HelmsmanSettings& s) {
        s.bShowNormalOrderConfirm = 1;
        s.bShowHotkeyOrderConfirm = 0;
    });
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
    EXPECT_TRUE(ui.log.empty());  // not confirmed: the hotkey flag is off

    settings([](HelmsmanSettings& s) { s.bShowHotkeyOrderConfirm = 1; });
    page().sendHotkey(HotkeyAction::SellAtPrice);
    EXPECT_EQ(ui.log, std::vector<std::string>{"confirmOrder 舵手"});
    EXPECT_NEAR(host.sent.at(2).dPrice, 2000.0, 1e-9);
}

TEST_F(NormalOrderTest, HotkeyAtPriceOutsideTheBandCorrectsTheBoxAndSendsNothing) {
    settings([](HelmsmanSettings& s) { s.bShowHotkeyOrderConfirm = 0; });
    openOn("ag2412");
    deliverQuote(quote("ag2412", 3001.0, 3001.4, 3001.2, 2950, 3050));
    controls().useBidAsk = true;  // at the price ignores the box
    controls().price = 3100;

    expectRefused(page().sendHotkey(HotkeyAction::BuyAtPrice), "提示",
                  "输入的委托价格不在涨跌停范围内，已自动修改为涨跌停价！");
    EXPECT_EQ(controls().price, 3050);
    EXPECT_EQ(page().sendHotkey(HotkeyAction::BuyAtPrice), Result::Sent);
    EXPECT_NEAR(host.sent.at(0).dPrice, 3050, 1e-9);
}

TEST_F(NormalOrderTest, HotkeyDuplicatesAndDirections) {
    HotkeySettings s;
    EXPECT_EQ(duplicateHotkey(s), "");
    s.key(HotkeyAction::SellAtPrice) = "f2";
    EXPECT_EQ(duplicateHotkey(s), "F2");
    s.key(HotkeyAction::SellAtPrice) = "";
    s.key(HotkeyAction::BuyAtPrice) = "";
    EXPECT_EQ(duplicateHotkey(s), "");  // several actions without a key are fine
    EXPECT_EQ(hotkeyDirection(HotkeyAction::SellAtTouch), kDirSell);
    EXPECT_EQ(hotkeyDirection(HotkeyAction::BuyAtPrice), kDirBuy);
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
    // The module's own section is untouched by the key settings.
    EXPECT_EQ(loadSettings(ini), manage.settings());
}

}  // namespace
