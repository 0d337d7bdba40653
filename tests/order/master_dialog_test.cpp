// The ticket frame: account and symbol choice, subscription switching, quote and position
// texts, pre-fill, symbol link, and what a closing ticket writes into the settings.
#include "order/master_dialog.h"

#include "app/exports.h"
#include "app/settings.h"
#include "order/order_strings.h"
#include "ticket_fixture.h"

namespace {

class MasterDialogTest : public TicketTest {
protected:
    std::vector<std::string> subscriptionCalls() const {
        std::vector<std::string> out;
        for (const auto& c : host.calls)
            if (c.rfind("Subscribe", 0) == 0 || c.rfind("Unsubscribe", 0) == 0) out.push_back(c);
        return out;
    }
    std::intptr_t link(std::uintptr_t wParam, const tagSymbol* s) {
        return manage.sendMessage(ticket->handle(), kMsgSymbolLink, wParam,
                                  reinterpret_cast<std::uintptr_t>(s));
    }
};

TEST_F(MasterDialogTest, SubscriptionMovesWithTheSymbolAndIsNeverDoubled) {
    openTicket();
    EXPECT_TRUE(subscriptionCalls().empty());  // no symbol, nothing sent
    EXPECT_FALSE(ticket->selectSymbol(tagSymbol{1, ""}));
    ticket->selectSymbol({1, "ag2412"});
    ticket->selectSymbol({1, "ag2412"});  // the same again: nothing
    ticket->selectSymbol({1, "rb2410"});
    ticket->close();
    ticket->close();
    ticket.reset();  // destroying a closed ticket sends nothing more
    const std::string hw = std::to_string(host.subscriptions.at(0).hWnd);
    EXPECT_EQ(
        subscriptionCalls(),
        (std::vector<std::string>{"Subscribe " + hw + " ag2412", "Unsubscribe " + hw + " ag2412",
                                  "Subscribe " + hw + " rb2410", "Unsubscribe " + hw + " rb2410"}));
    ASSERT_EQ(host.subscriptions.size(), 4u);
    EXPECT_EQ(host.subscriptions[0].symbol, (tagSymbol{1, "ag2412"}));
}

TEST_F(MasterDialogTest, DestroyedWithoutCloseUnsubscribesAndWritesNothing) {
    openOn("ag2412");
    const HelmsmanSettings before = manage.settings();
    ticket->normalOrder().controls().useBidAsk = !before.bUseBidAskPrice;
    const WndHandle hw = ticket->handle();
    ticket.reset();
    EXPECT_EQ(subscriptionCalls().back(), "Unsubscribe " + std::to_string(hw) + " ag2412");
    EXPECT_EQ(manage.settings(), before);
    EXPECT_EQ(manage.target(hw), nullptr);
}

TEST_F(MasterDialogTest, UntradableOrUnknownSymbolRefusedAndTheOldOneKept) {
    host.details["rb2410"].bTradable = false;
    for (const char* code : {"rb2410", "zz999"}) {  // untradable; no contract at all
        ticket.reset();
        prompter.boxes.clear();
        host.calls.clear();
        openOn("ag2412");
        EXPECT_FALSE(ticket->selectSymbol({1, code}));
        ASSERT_EQ(prompter.boxes.size(), 1u);
        EXPECT_EQ(prompter.boxes[0].caption, "提示");
        EXPECT_EQ(prompter.boxes[0].text, "当前商品不能进行交易，请重新选择商品！");
        EXPECT_EQ(ticket->symbol(), (tagSymbol{1, "ag2412"}));
        EXPECT_TRUE(ticket->subscribed());
        EXPECT_EQ(subscriptionCalls().size(), 1u);
    }
}

TEST_F(MasterDialogTest, CodeIsCutToEightBytes) {
    host.details["abcdefgh"] = contractDetail(1.0f, 1, 10, 0.1);
    openOn("abcdefghij");
    EXPECT_EQ(ticket->symbol().strCode, "abcdefgh");
}

TEST_F(MasterDialogTest, SymbolLinkReturns) {
    host.details["cu2409"] = contractDetail(10.0f, 1, 5, 0.1, false);
    openOn("ag2412");
    const tagSymbol same{1, "ag2412"}, otherExchange{2, "ag2412"}, other{1, "rb2410"}, empty{1, ""},
        untradable{1, "cu2409"};
    struct {
        std::uintptr_t w;
        const tagSymbol* s;
        std::intptr_t expect;
        const char* now;
    } cases[] = {
        {1, &same, 0, "ag2412"},   {0, &other, 0, "ag2412"},         {2, &other, 0, "ag2412"},
        {1, nullptr, 0, "ag2412"}, {1, &empty, 0, "ag2412"},         {1, &untradable, 0, "ag2412"},
        {1, &other, 1, "rb2410"},  {1, &otherExchange, 1, "ag2412"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(link(c.w, c.s), c.expect) << c.now;
        EXPECT_EQ(ticket->symbol().strCode, c.now);
    }
    EXPECT_EQ(ticket->symbol().wExchangeID, 2);
    EXPECT_EQ(ticket->exchangeId(), 2);
}

TEST_F(MasterDialogTest, QuoteNoticeReadsTheSnapshotNeverThePointer) {
    openOn("ag2412");
    int notified = 0;
    ticket->setListener([&](unsigned what) { notified += (what & kTicketQuote) ? 1 : 0; });
    // A registered ticket hears every window's notices, and their data need not be a quote.
    tagBrokerOrder notAQuote;
    const auto notice = [&] {
        return manage.sendMessage(ticket->handle(), kMsgDataChange, kEventQuote,
                                  reinterpret_cast<std::uintptr_t>(&notAQuote));
    };
    host.quotes["rb2410"] = quote("rb2410", 1, 2, 3);
    EXPECT_EQ(notice(), 1);
    EXPECT_EQ(notified, 0);
    EXPECT_FALSE(ticket->quoteValid());
    EXPECT_STREQ(ticket->quoteTexts().last.data(), "-");

    host.quotes["ag2412"] = quote("ag2412", 3001.0, 3001.4, 3001.2, 2950, 3050.2);
    EXPECT_EQ(notice(), 1);
    EXPECT_EQ(notice(), 1);  // the same snapshot heard twice redraws once
    EXPECT_EQ(notified, 1);
    const TicketQuoteTexts& q = ticket->quoteTexts();
    EXPECT_STREQ(q.last.data(), "3001.2");  // one decimal on a 0.2 tick
    EXPECT_STREQ(q.bid.data(), "3001.0");
    EXPECT_STREQ(q.bidVol.data(), "3");
    EXPECT_STREQ(q.ask.data(), "3001.4");
    EXPECT_STREQ(q.askVol.data(), "4");
    EXPECT_STREQ(q.lower.data(), "2950.0");
    EXPECT_STREQ(q.upper.data(), "3050.2");
}

// ---- Accounts follow logon changes; one that logged off is not replaced --------------------

TEST_F(MasterDialogTest, LogonChangesReachTheAccountBox) {
    const auto a1 = FakeHost::account("A1", "B1", "张三");
    const auto a2 = FakeHost::account("A2", "B2", "李四");
    struct {
        const char* name;
        std::vector<tagAccoutInfo> atOpen;
        int choose;  // -1: leave the ticket's own choice
        std::vector<tagAccoutInfo> after;
        const char* shown;  // nullptr: no account shown
        const char* loggedOff;
    } cases[] = {
        {"none at open, then a logon", {}, -1, {a1, a2}, "A1", nullptr},
        {"the chosen one logs off", {a1, a2}, 1, {a1}, nullptr, "A2"},
        {"another one logs off", {a1, a2}, 1, {a2}, "A2", nullptr},
        {"all log off", {a1, a2}, 0, {}, nullptr, "A1"},
    };
    unsigned heard = 0;
    for (const auto& c : cases) {
        host.accounts = c.atOpen;
        openOn("ag2412");
        if (c.choose >= 0) ticket->selectAccount(c.choose);
        heard = 0;
        ticket->setListener([&](unsigned what) { heard |= what; });
        host.accounts = c.after;
        manage.logonStateChange(1, 0);  // through the manager: the ticket is registered
        EXPECT_TRUE(heard & kTicketAccounts) << c.name;
        const tagAccoutInfo* shown = ticket->account();
        EXPECT_EQ(shown ? shown->strAccountID.c_str() : "", std::string(c.shown ? c.shown : ""))
            << c.name;
        EXPECT_EQ(ticket->accountLoggedOff(), c.loggedOff != nullptr) << c.name;
        EXPECT_EQ(ticket->statusIsError(), c.loggedOff != nullptr) << c.name;  // says so
        if (c.loggedOff) {
            EXPECT_EQ(ticket->loggedOffAccount().strAccountID, c.loggedOff);
        }
    }
    // The account that logged off is shown again when it is back.
    host.accounts = {a2, a1};
    manage.logonStateChange(1, 0);
    EXPECT_EQ(ticket->account()->strAccountID, "A1");
    EXPECT_FALSE(ticket->accountLoggedOff());
}

// ---- Symbols: links to many tickets, typed codes -------------------------------------------

TEST_F(MasterDialogTest, RefusedLinkIsAnnouncedOnceForAllTickets) {
    auto untradable = contractDetail(1.0f, 1, 10, 0.1);
    untradable.bTradable = false;
    host.details["cu2409"] = untradable;
    std::vector<std::unique_ptr<CMasterDialog>> tickets;
    for (int i = 0; i < 5; ++i) {
        tickets.push_back(std::make_unique<CMasterDialog>(manage));
        tickets.back()->open(nullptr);
    }
    const auto linkAll = [&](tagSymbol s) {
        int switched = 0;
        for (WndHandle h : manage.handlesOf(order_text::kTicketDialogId))
            switched += static_cast<int>(
                manage.sendMessage(h, kMsgSymbolLink, 1, reinterpret_cast<std::uintptr_t>(&s)));
        return switched;
    };
    EXPECT_EQ(linkAll({1, "cu2409"}), 0);
    EXPECT_EQ(prompter.boxes.size(), 1u);
    EXPECT_EQ(prompter.lastText(), "当前商品不能进行交易，请重新选择商品！");
    EXPECT_EQ(linkAll({1, "rb2410"}), 5);
    EXPECT_EQ(linkAll({1, "cu2409"}), 0);  // a new link to it: said again, once
    EXPECT_EQ(prompter.boxes.size(), 2u);
}

TEST_F(MasterDialogTest, TypedCodeIsFoundOnAnyExchange) {
    openOn("ag2412");
    EXPECT_TRUE(ticket->selectCode("M2501"));  // another exchange, other case
    EXPECT_EQ(ticket->symbol(), (tagSymbol{2, "m2501"}));
    EXPECT_EQ(ticket->exchangeId(), 2);
    EXPECT_EQ(ticket->exchangeSymbols().size(), 1u);
    EXPECT_FALSE(ticket->selectCode("zz999"));
    EXPECT_EQ(prompter.lastText(), "当前商品不能进行交易，请重新选择商品！");
    EXPECT_EQ(ticket->symbol(), (tagSymbol{2, "m2501"}));
}

TEST_F(MasterDialogTest, SnapshotMakesTheQuoteValidAndSeedsThePriceBox) {
    host.quotes["ag2412"] = quote("ag2412", 3001.0, 3001.4, 3001.2);
    openOn("ag2412");
    EXPECT_TRUE(ticket->quoteValid());
    EXPECT_EQ(ticket->normalOrder().controls().price, 3001.2);
    EXPECT_STREQ(ticket->quoteTexts().bid.data(), "3001.0");
}

TEST_F(MasterDialogTest, PositionTexts) {
    struct {
        bool has;
        double total, lng, sht;
        int readResult;
        const char* expect;
    } cases[] = {
        {false, 0, 0, 0, 1, "持仓:0"},
        {true, 0, 0, 0, 1, "持仓:0"},
        {true, 5, 3, 2, 1, "持仓:5(3/2)"},
        {true, 5, 3, 2, 0, "持仓:0"},  // the read failed
    };
    for (const auto& c : cases) {
        host.positions.clear();
        host.positionResult = c.readResult;
        if (c.has) host.positions.push_back({"A1", "B1", 1, "ag2412", c.total, c.lng, c.sht});
        openOn("ag2412");
        EXPECT_EQ(ticket->positionText(), c.expect);
    }
}

TEST_F(MasterDialogTest, OpenableQuantity) {
    struct {
        double available;
        bool fundsReadable;
        double multiplier, margin, last;
        const char* expect;
        double bid = 0, ask = 0;  // with no last price the ask is used, then the bid
    } cases[] = {
        // 100000 / (3000 × 10 × 0.1) = 33.3
        {100000, true, 10, 0.1, 3000, "可开:33"},
        {3000, true, 10, 0.1, 3000, "可开:1"},
        {2999.99, true, 10, 0.1, 3000, "可开:0"},
        {-50, true, 10, 0.1, 3000, "可开:0"},
        {100000, false, 10, 0.1, 3000, "可开:N/A"},
        {100000, true, 0, 0.1, 3000, "可开:N/A"},
        {100000, true, 10, 0.000001, 3000, "可开:N/A"},
        {100000, true, 10, 0.1, 0, "可开:N/A"},
        {100000, true, 10, 0.1, 0, "可开:20", 2500, 5000},
        {100000, true, 10, 0.1, 0, "可开:40", 2500},
    };
    for (const auto& c : cases) {
        host.summaries.clear();
        host.quotes.clear();
        if (c.fundsReadable)
            host.summaries["A1"] = tagAccountSummary{"A1", "B1", 0, 0, c.available};
        host.details["ag2412"] = contractDetail(0.2f, 1, c.multiplier, c.margin);
        openOn("ag2412");
        EXPECT_EQ(ticket->openableText(), "可开:N/A");  // no price yet
        deliverQuote(quote("ag2412", c.bid, c.ask, c.last));
        EXPECT_EQ(ticket->openableText(), c.expect) << c.available << " " << c.last;
    }
}

TEST_F(MasterDialogTest, ClosableLessWhatWorkingClosesHold) {
    // Long 5 (2 of them today), short 3 (all today), on exchange 0 and on exchange 1.
    host.details["au2406"] = contractDetail(0.02f, 1, 1000, 0.1);
    const auto working = [](const char* code, int dir, int oc, double vol, double filled) {
        tagBrokerOrder o;
        o.strAccountID = "A1";
        o.strBrokerID = "B1";
        o.strCode = code;
        o.nDirection = dir;
        o.nOpenClose = oc;
        o.dVolume = vol;
        o.dFilledVolume = filled;
        o.nStatus = kOrderQueued;
        return o;
    };
    struct {
        const char* name;
        std::uint16_t ex;
        std::vector<std::tuple<int, int, double, double>> orders;  // dir, o/c, volume, filled
        TicketClosable expect;
        const char* text;
    } cases[] = {
        {"nothing working", 1, {}, {3, 2, 0, 3}, "可平 多:昨3 今2  空:昨0 今3"},
        {"平仓 takes yesterday's first", 1, {{kDirSell, kClose, 4, 0}}, {0, 1, 0, 3}, nullptr},
        {"filled part no longer held", 1, {{kDirSell, kClose, 4, 3}}, {2, 2, 0, 3}, nullptr},
        {"平今 takes today's", 1, {{kDirBuy, kCloseToday, 2, 0}}, {3, 2, 0, 1}, nullptr},
        {"opening orders hold nothing", 1, {{kDirSell, kOpen, 9, 0}}, {3, 2, 0, 3}, nullptr},
        {"exchange 0: 平仓 yesterday's only", 0, {{kDirSell, kClose, 4, 0}}, {0, 2, 0, 3}, nullptr},
    };
    for (const auto& c : cases) {
        const std::string code = c.ex == 0 ? "au2406" : "ag2412";
        host.positions = {{"A1", "B1", c.ex, code, 8, 5, 3, 2, 3}};
        host.orders.clear();
        for (const auto& [dir, oc, vol, filled] : c.orders)
            host.orders.push_back(working(code.c_str(), dir, oc, vol, filled));
        openOn(code, c.ex);
        const TicketClosable& got = ticket->closable();
        EXPECT_EQ(got.longYesterday, c.expect.longYesterday) << c.name;
        EXPECT_EQ(got.longToday, c.expect.longToday) << c.name;
        EXPECT_EQ(got.shortYesterday, c.expect.shortYesterday) << c.name;
        EXPECT_EQ(got.shortToday, c.expect.shortToday) << c.name;
        if (c.text) {
            EXPECT_EQ(ticket->closableText(), c.text);
        }
        EXPECT_EQ(ticket->closesYesterdayOnly(), c.ex == 0) << c.name;
    }
}

TEST_F(MasterDialogTest, NoAccountMeansNoOpenable) {
    host.accounts.clear();
    openOn("ag2412");
    deliverQuote(quote("ag2412", 1, 2, 3000));
    EXPECT_EQ(ticket->account(), nullptr);
    EXPECT_EQ(ticket->openableText(), "可开:N/A");
    EXPECT_EQ(ticket->positionText(), "持仓:0");
}

TEST_F(MasterDialogTest, DefaultAccountFromTheSettings) {
    settings([](HelmsmanSettings& s) {
        s.bUserDefaultAcct = 1;
        s.strAccountID = "A2";
        s.strBrokerID = "B2";
    });
    openTicket();
    ASSERT_NE(ticket->account(), nullptr);
    EXPECT_EQ(ticket->account()->strAccountID, "A2");
    EXPECT_EQ(CMasterDialog::accountText(*ticket->account()), "A2(李四)");

    settings([](HelmsmanSettings& s) { s.bUserDefaultAcct = 0; });
    openTicket();
    EXPECT_EQ(ticket->account()->strAccountID, "A1");
}

TEST_F(MasterDialogTest, InitialVolume) {
    struct {
        int saveVolume;
        double last, def;
        const char* expect;
    } cases[] = {
        {1, 7, 3, "7"},
        {0, 7, 3, "3"},
        {0, 7, 0, "1"},
        {1, 0, 3, "1"},
    };
    for (const auto& c : cases) {
        settings([&](HelmsmanSettings& s) {
            s.bSaveVolume = c.saveVolume;
            s.dLastVolume = c.last;
            s.dDefaultVolume = c.def;
        });
        openTicket();
        EXPECT_EQ(ticket->normalOrder().controls().volumeText, c.expect);
    }
}

TEST_F(MasterDialogTest, OpensOnTheSavedSymbolOnlyWhenAsked) {
    settings([](HelmsmanSettings& s) {
        s.bLoadLastSymbol = 0;
        s.wExchangeID = 1;
        s.szSymbolCode = "rb2410";
        s.bShowChartWnd = 1;
    });
    openTicket();
    EXPECT_TRUE(ticket->symbol().empty());
    EXPECT_FALSE(ticket->subscribed());
    EXPECT_TRUE(ticket->chartShown());
    EXPECT_EQ(ticket->exchangeId(), 1);  // the first exchange's list is shown

    settings([](HelmsmanSettings& s) { s.bLoadLastSymbol = 1; });
    openTicket();
    EXPECT_EQ(ticket->symbol(), (tagSymbol{1, "rb2410"}));
    EXPECT_TRUE(ticket->subscribed());
    EXPECT_EQ(ticket->exchangeSymbols().size(), 2u);

    // An opener's block that names no symbol leaves the saved one in force; one that names
    // a symbol wins.
    tagHelmsmanPrefill block;
    block.dPrice = 3000;
    openTicket(&block);
    EXPECT_EQ(ticket->symbol(), (tagSymbol{1, "rb2410"}));
    block.symbol = {2, "m2501"};
    openTicket(&block);
    EXPECT_EQ(ticket->symbol(), (tagSymbol{2, "m2501"}));
}

TEST_F(MasterDialogTest, Prefill) {
    tagHelmsmanPrefill block;
    block.account = FakeHost::account("A2", "", "");
    block.symbol = {2, "m2501"};
    block.dPrice = 3120;
    block.dStopLoss = 3100;
    block.dTakeProfit = 3150;
    block.dVolume = 4;
    settings([](HelmsmanSettings& s) {
        s.bUseBidAskPrice = 1;
        s.bAutoFillStopLoss = 1;
    });
    openTicket(&block);
    EXPECT_EQ(ticket->account()->strAccountID, "A2");
    EXPECT_EQ(ticket->symbol(), (tagSymbol{2, "m2501"}));
    EXPECT_EQ(ticket->exchangeId(), 2);
    const auto& c = ticket->normalOrder().controls();
    EXPECT_EQ(c.price, 3120);
    EXPECT_FALSE(c.useBidAsk);  // the given price is the one used
    EXPECT_TRUE(c.stopLoss);
    EXPECT_FALSE(c.stopLossAuto);
    EXPECT_EQ(c.stopLossPrice, 3100);
    EXPECT_TRUE(c.takeProfit);
    EXPECT_EQ(c.takeProfitPrice, 3150);
    EXPECT_EQ(c.volumeText, "4");

    tagHelmsmanPrefill unknownAccount;
    unknownAccount.account = FakeHost::account("ZZ", "", "");
    openTicket(&unknownAccount);
    EXPECT_EQ(ticket->account()->strAccountID, "A1");
    EXPECT_TRUE(ticket->symbol().empty());
}

TEST_F(MasterDialogTest, ClosingWritesTheTicketsState) {
    settings([](HelmsmanSettings& s) {
        s.bLoadLastSymbol = 1;
        s.bSaveVolume = 1;
        s.dDefaultVolume = 2;
        s.bShowChartWnd = 1;
    });
    openOn("rb2410");
    auto& c = ticket->normalOrder().controls();
    c.volumeText = "6";
    c.useBidAsk = true;
    c.useOffset = true;
    c.offsetPoints = 3.7;
    c.algo = true;
    c.stopLossAuto = true;
    c.stopLossPoints = 15;
    c.takeProfitAuto = true;
    c.takeProfitPoints = 30;
    ticket->setUseLocalTrigger(true);
    ticket->setUseAlgoTrigger(true);
    ticket->setChartShown(false);  // hiding the chart in one ticket is not a preference
    HelmsmanSettings expected = manage.settings();
    ticket->close();

    expected.wExchangeID = 1;
    expected.szSymbolCode = "rb2410";
    expected.dLastVolume = 6;
    expected.bUseBidAskPrice = 1;
    expected.bUserBidAskOffset = 1;
    expected.nOffsetPoint = 3;
    expected.bUseAlgoTrading = 1;
    expected.bUseLocalTrigger = 1;
    expected.bUseAlgoTradingTrigger = 1;
    expected.bAutoFillStopLoss = 1;
    expected.nAFStopLossPoint = 15;
    expected.bAutoFillTakeProfit = 1;
    expected.nAFTakeProfitPoint = 30;
    EXPECT_EQ(manage.settings(), expected);

    openTicket();  // starts from what the last one left
    EXPECT_TRUE(ticket->normalOrder().controls().stopLoss);
    EXPECT_EQ(ticket->normalOrder().controls().offsetPoints, 3);
}

TEST_F(MasterDialogTest, ClosingLeavesSymbolAndVolumeWhenNotKept) {
    settings([](HelmsmanSettings& s) {
        s.bLoadLastSymbol = 0;
        s.wExchangeID = 2;
        s.szSymbolCode = "m2501";
        s.bSaveVolume = 0;
        s.dLastVolume = 9;
    });
    openOn("rb2410");
    ticket->normalOrder().controls().volumeText = "6";
    ticket->close();
    EXPECT_EQ(manage.settings().szSymbolCode, "m2501");
    EXPECT_EQ(manage.settings().wExchangeID, 2);
    EXPECT_EQ(manage.settings().dLastVolume, 9);
}

TEST_F(MasterDialogTest, AutoFillMenuChecksTheBox) {
    openOn("ag2412");
    auto& page = ticket->normalOrder();
    ASSERT_FALSE(page.controls().stopLoss);
    page.toggleAutoStopLoss();
    EXPECT_TRUE(page.controls().stopLossAuto);
    EXPECT_TRUE(page.controls().stopLoss);
    page.toggleAutoStopLoss();
    EXPECT_FALSE(page.controls().stopLossAuto);
    page.toggleAutoTakeProfit();
    EXPECT_TRUE(page.controls().takeProfit && page.controls().takeProfitAuto);
}

}  // namespace
