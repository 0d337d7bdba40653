// Event delivery of SimExchange: queued, in order, never re-entrant; subscriptions per
// window handle; the desk sink; fault injection; calls from a second thread.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "sim_test_util.h"

using namespace simtest;
using Lines = std::vector<std::string>;

namespace {

// An exchange with an IF2101 quote already delivered.
struct SimEvents : ::testing::Test, Rig {
    void SetUp() override {
        ex.applyQuote(quote(kIF, 5230.0, 10, 5230.2, 10, 5230.0));
        ex.deliverPending();
        sink.lines.clear();
    }
    std::string sendBuy(double price) {
        auto o = order(kIF, kDirBuy, kOpen, 1, price);
        ex.SendOrder(o);
        return o.strOrderID;
    }
};

// Sends an order from inside its handler the first time it sees an order event.
class ReentrantSink : public RecordingSink {
public:
    SimExchange* ex = nullptr;
    bool sent = false;
    std::size_t linesAtSend = 0;

protected:
    void afterData(std::uint32_t code, std::uintptr_t) override {
        if (code != kEventOrderChanged || sent) return;
        sent = true;
        auto o = order(kIF, kDirBuy, kOpen, 1, 5230.2);
        o.strRemark = "inner";
        ex->SendOrder(o);
        EXPECT_EQ(ex->deliverPending(), 0u);  // nested delivery is refused
        linesAtSend = lines.size();
    }
};

TEST(SimEventsReentry, EventsWaitForDeliverAndAHandlersOrderComesInTheNextCall) {
    ManualClock clock(localMs(10, 0, 0));
    SimExchange ex(clock, quietOptions());
    ReentrantSink sink;
    sink.ex = &ex;
    ex.setEventSink(&sink);
    ex.applyQuote(quote(kIF, 5230.0, 10, 5230.2, 10, 5230.0));
    auto o = order(kIF, kDirBuy, kOpen, 1, 5230.2);
    ASSERT_EQ(ex.SendOrder(o), 1);
    EXPECT_TRUE(sink.lines.empty());  // nothing inside the facade call
    EXPECT_EQ(ex.pendingEventCount(), 4u);
    EXPECT_EQ(ex.deliverPending(), 4u);  // only the first order's events
    EXPECT_EQ(sink.linesAtSend, 1u);
    EXPECT_EQ(sink.lines, (Lines{"2 1 11 0", "2 1 1 0", "2 1 3 1", "4 1 1@5230.2"}));
    sink.lines.clear();
    EXPECT_EQ(ex.deliverPending(), 4u);
    EXPECT_EQ(sink.maxDepth, 1);
    EXPECT_EQ(sink.lines, (Lines{"2 2 11 0", "2 2 1 0", "2 2 3 1", "4 2 1@5230.2"}));
    EXPECT_EQ(sink.orders.back().strRemark, "inner");
    EXPECT_EQ(ex.deliverPending(), 0u);
}

TEST_F(SimEvents, SubscriptionsPerHandle) {
    tagSubscribeBlock block{1, &kIF};
    auto sub = [&](std::uint32_t hWnd, std::uint8_t on) {
        return ex.QueryInterface(kQuerySubscribeQuote, hWnd, on, &block);
    };
    auto quoteRound = [&](double last) {
        ex.applyQuote(quote(kIF, 5230.2, 10, 5230.4, 10, last));
        ex.deliverPending();
        Lines out = sink.lines;
        sink.lines.clear();
        return out;
    };
    EXPECT_EQ(sub(7, 1), 1);
    EXPECT_EQ(sub(7, 1), 1);  // twice = once
    EXPECT_EQ(sub(9, 1), 1);
    EXPECT_TRUE(ex.isSubscribed(7, kIF));
    EXPECT_EQ(ex.subscriptionCount(), 2u);
    ex.applyQuote(quote(kRB, 4400, 10, 4401, 10, 4400));  // nobody subscribed
    EXPECT_EQ(quoteRound(5230.4),
              (Lines{"1000 IF2101 5230.4", "W 7 2070 1000 IF2101", "W 9 2070 1000 IF2101"}));
    EXPECT_EQ(sub(7, 0), 1);
    EXPECT_EQ(sub(7, 0), 1);   // absent: harmless
    EXPECT_EQ(sub(12, 0), 1);
    EXPECT_EQ(quoteRound(5230.2), (Lines{"1000 IF2101 5230.2", "W 9 2070 1000 IF2101"}));
    EXPECT_EQ(sub(9, 0), 1);
    EXPECT_TRUE(quoteRound(5230.2).empty());
    tagSymbol bad{3, "ZZ"};
    tagSubscribeBlock badBlock{1, &bad};
    EXPECT_EQ(ex.QueryInterface(kQuerySubscribeQuote, 7, 1, &badBlock), 0);
    EXPECT_EQ(ex.QueryInterface(kQuerySubscribeQuote, 7, 1, nullptr), 0);
    EXPECT_EQ(ex.QueryInterface(42, 7, 1, &block), 0);
}

TEST_F(SimEvents, DeskSinkSeesEverything) {
    RecordingSink desk;
    ex.setDeskSink(&desk);
    ex.applyQuote(quote(kRB, 4400, 10, 4401, 10, 4400));
    sendBuy(5230.2);
    auto t = trigger(kTriggerBuyDip, kDirBuy, 5000, 0);
    ex.SendTriggerOrder(t);
    ex.logoff("880002");
    ex.deliverPending();
    EXPECT_EQ(desk.lines, (Lines{"1000 rb2105 4400", "2 1 11 0", "2 1 1 0", "2 1 3 1",
                                 "4 1 1@5230.2", "T T1 0", "L 0 880002"}));
    // The add-in hears trigger changes too, but quotes only of what it subscribed.
    EXPECT_EQ(sink.lines,
              (Lines{"2 1 11 0", "2 1 1 0", "2 1 3 1", "4 1 1@5230.2", "T T1 0", "L 0 880002"}));
}

TEST_F(SimEvents, StepQueuesAQuoteForEveryContractForTheDesk) {
    RecordingSink desk;
    ex.setDeskSink(&desk);
    ex.setRandomWalk(true);
    ex.step();
    ex.deliverPending();
    // Every contract but the expired one ticks.
    EXPECT_EQ(desk.with("1000 ").size(), ex.allSymbols().size() - 1);
    EXPECT_TRUE(desk.with("1000 IF2012").empty());
    EXPECT_TRUE(sink.lines.empty());  // nothing subscribed
}

TEST_F(SimEvents, LogonLogoffAndForcedLogoff) {
    std::vector<tagAccoutInfo> accts;
    ex.GetAvailableAccounts(accts);
    ASSERT_EQ(accts.size(), 2u);
    EXPECT_EQ(accts[0].strAccountID, "880001");
    EXPECT_EQ(accts[0].strAccountName, "模拟账户一");
    ex.forceLogoff();
    ex.GetAvailableAccounts(accts);
    EXPECT_TRUE(accts.empty());
    auto o = order(kIF, kDirBuy, kOpen, 1, 5230.2);
    EXPECT_EQ(ex.SendOrder(o), 0);
    EXPECT_EQ(o.strStatusMsg, simtext::kNotLoggedOn);
    EXPECT_EQ(ex.logon("880001", "wrong"), 0);
    EXPECT_EQ(ex.logon("880001", "888888"), 1);
    EXPECT_EQ(ex.logon("nobody"), 0);
    ex.GetAvailableAccounts(accts);
    ASSERT_EQ(accts.size(), 1u);
    ex.deliverPending();
    EXPECT_EQ(sink.lines, (Lines{"L 2 880001", "L 2 880002", "L 1 880001"}));
}

// ---- Fault injection ----------------------------------------------------------------------

TEST_F(SimEvents, RejectNextOrders) {
    ex.rejectNextOrders(2, "风控拒单");
    for (int i = 0; i < 3; ++i) {
        auto o = order(kIF, kDirBuy, kOpen, 1, 5229.0);
        EXPECT_EQ(ex.SendOrder(o), i < 2 ? 0 : 1);
        EXPECT_EQ(o.strStatusMsg, i < 2 ? "风控拒单" : "");
    }
}

TEST_F(SimEvents, DropAndDuplicateNextNotifications) {
    ex.dropNextNotifications(2);
    const std::string id = sendBuy(5229.0);
    ex.deliverPending();
    EXPECT_TRUE(sink.lines.empty());
    EXPECT_EQ(ex.stats().eventsDropped, 2u);
    ex.duplicateNextNotifications(1);
    ex.DeleteOrder("880001", "9999", id);
    EXPECT_EQ(ex.deliverPending(), 3u);
    EXPECT_EQ(sink.lines, (Lines{"2 1 7 0", "2 1 7 0", "2 1 4 0"}));
}

TEST_F(SimEvents, DelayByDeliverCallsSparesQuotes) {
    ex.setNotificationDelay(2);
    tagSubscribeBlock block{1, &kIF};
    ex.QueryInterface(kQuerySubscribeQuote, 7, 1, &block);
    sendBuy(5229.0);
    ex.applyQuote(quote(kIF, 5230.2, 10, 5230.4, 10, 5230.4));
    EXPECT_EQ(ex.deliverPending(), 1u);
    EXPECT_TRUE(sink.with("2 ").empty());
    EXPECT_EQ(ex.deliverPending(), 0u);
    EXPECT_EQ(ex.deliverPending(), 2u);
    EXPECT_EQ(sink.with("2 "), (Lines{"2 1 11 0", "2 1 1 0"}));
}

TEST_F(SimEvents, DelayByClockTime) {
    ex.setNotificationDelay(0, 1000);
    const std::string id = sendBuy(5229.0);
    EXPECT_EQ(ex.deliverPending(), 0u);
    clock.advanceMs(999);
    EXPECT_EQ(ex.deliverPending(), 0u);
    clock.advanceMs(1);
    EXPECT_EQ(ex.deliverPending(), 2u);
    ex.setNotificationDelay(0, 0);
    ex.DeleteOrder("880001", "9999", id);
    EXPECT_EQ(ex.deliverPending(), 2u);
}

TEST_F(SimEvents, NoSinkQueuesNothing) {
    ex.setEventSink(nullptr);
    sendBuy(5230.2);
    EXPECT_EQ(ex.pendingEventCount(), 0u);
}

// The algo worker calls the facade while the UI thread steps quotes and delivers events.
TEST(SimThreads, FacadeFromAWorkerThread) {
    ManualClock clock(localMs(10, 0, 0));
    SimOptions opt;
    opt.seed = 7;
    SimExchange ex(clock, opt);
    RecordingSink sink;
    ex.setEventSink(&sink);
    tagSubscribeBlock block{1, &kIF};
    ex.QueryInterface(kQuerySubscribeQuote, 7, 1, &block);
    std::atomic<bool> done{false};
    std::thread worker([&] {
        for (int i = 0; i < 300; ++i) {
            IModuleFutureTrader::ITickEx q;
            ex.GetMarketQuote(kIF, q);
            auto o = order(kIF, i % 2 ? kDirBuy : kDirSell, kOpen, 1, i % 2 ? q.dBid : q.dAsk);
            ex.SendOrder(o);
            if (i % 3 == 0) ex.DeleteOrder("880001", "9999", o.strOrderID);
            std::vector<tagBrokerOrder> open;
            ex.GetOpenOrders(open, "880001", "9999", kIF);
        }
        done = true;
    });
    while (!done) {
        ex.step();
        ex.deliverPending();
    }
    worker.join();
    ex.deliverPending();
    std::vector<tagBrokerOrder> all;
    ex.GetAllOrders(all);
    EXPECT_EQ(all.size(), 300u);
    EXPECT_EQ(sink.maxDepth, 1);
    EXPECT_GE(sink.with("2 ").size(), 600u);
}

}  // namespace
