// Trading hours in the simulated exchange: orders rest outside the sessions and match when
// trading resumes, the random walk pauses, an expired contract never ticks.
#include <gtest/gtest.h>

#include "sim_test_util.h"

using namespace simtest;

namespace {

struct Clock {
    int h, m, s;
};

std::string status(Rig& r, const std::string& id) {
    tagBrokerOrder o;
    if (r.ex.GetOrder(o, "880001", "9999", id) != 1) return "none";
    return std::to_string(o.nStatus) + " " + fmt(o.dFilledVolume);
}

// A buy at the ask, sent at `at`: it fills at once inside a session; outside it rests and
// fills on the first quote once trading resumes at `resume`.
TEST(SimSession, OrdersMatchOnlyInsideTheSessions) {
    const struct {
        const char* name;
        tagSymbol symbol;
        Clock at;
        bool fillsNow;
        Clock resume;
    } cases[] = {
        {"commodity morning", kRB, {10, 0, 0}, true, {}},
        {"commodity mid-morning break", kRB, {10, 20, 0}, false, {10, 30, 0}},
        {"commodity break's last ms", kRB, {10, 29, 59}, false, {10, 30, 0}},
        {"commodity lunch", kRB, {13, 0, 0}, false, {13, 30, 0}},
        {"commodity after the close", kRB, {15, 0, 0}, false, {}},
        {"commodity call auction", kRB, {8, 57, 0}, false, {9, 0, 0}},
        {"financial has no break", kIF, {10, 20, 0}, true, {}},
        {"financial lunch", kIF, {12, 0, 0}, false, {13, 0, 0}},
        {"financial afternoon", kIF, {15, 14, 59}, true, {}},
        {"financial after the close", kIF, {15, 15, 0}, false, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Rig r;
        const double bid = c.symbol.wExchangeID == 3 ? 5230.0 : 4400.0;
        const double tick = c.symbol.wExchangeID == 3 ? 0.2 : 1.0;
        r.clock.setNowMs(localMs(c.at.h, c.at.m, c.at.s));
        ASSERT_TRUE(r.ex.applyQuote(quote(c.symbol, bid, 5, bid + tick, 5, bid)));
        auto o = order(c.symbol, kDirBuy, kOpen, 1, bid + tick);
        ASSERT_EQ(r.ex.SendOrder(o), 1);  // accepted at any hour
        EXPECT_EQ(status(r, o.strOrderID), c.fillsNow ? "3 1" : "1 0");
        if (c.fillsNow) continue;

        // Another quote while still outside: it still rests.
        ASSERT_TRUE(r.ex.applyQuote(quote(c.symbol, bid, 5, bid + tick, 5, bid)));
        EXPECT_EQ(status(r, o.strOrderID), "1 0");
        if (c.resume.h == 0) continue;  // closed for the day
        r.clock.setNowMs(localMs(c.resume.h, c.resume.m, c.resume.s));
        ASSERT_TRUE(r.ex.applyQuote(quote(c.symbol, bid, 5, bid + tick, 5, bid)));
        EXPECT_EQ(status(r, o.strOrderID), "3 1");
    }
}

// A server trigger whose price is crossed at lunch waits for the afternoon.
TEST(SimSession, ServerTriggersWaitForTheSession) {
    Rig r;
    r.clock.setNowMs(localMs(12, 0, 0));
    auto t = trigger(kTriggerBuyChase, kDirBuy, 5231.0, 0);
    ASSERT_EQ(r.ex.SendTriggerOrder(t), 1);
    r.ex.applyQuote(quote(kIF, 5231.0, 5, 5231.2, 5, 5231.0));
    EXPECT_EQ(r.triggerOf(t.strOrderID).nStatus, kSimTriggerWaiting);
    r.clock.setNowMs(localMs(13, 0, 1));
    r.ex.applyQuote(quote(kIF, 5231.0, 5, 5231.2, 5, 5231.0));
    EXPECT_EQ(r.triggerOf(t.strOrderID).nStatus, kSimTriggerReleased);
}

// The walk pauses where the exchange does and resumes with the next session; an order resting
// through the break fills on the walk's first quote after it.
TEST(SimSession, RandomWalkPausesOutsideTheSessions) {
    ManualClock clock(localMs(10, 14, 0));
    SimExchange ex(clock);
    RecordingSink desk;
    ex.setDeskSink(&desk);
    IModuleFutureTrader::ITickEx rb0, q;

    clock.setNowMs(localMs(10, 16, 0));  // commodity break; the financial exchange trades
    ex.GetMarketQuote(kRB, rb0);
    auto buy = order(kRB, kDirBuy, kOpen, 1, rb0.dUpperLimit);
    ASSERT_EQ(ex.SendOrder(buy), 1);
    for (int i = 0; i < 200; ++i) {
        clock.advanceMs(SimExchange::kQuoteIntervalMs);
        ex.step();
    }
    ex.deliverPending();
    EXPECT_TRUE(desk.with("1000 rb2105").empty());
    EXPECT_EQ(desk.with("1000 IF2101").size(), 200u);
    ex.GetMarketQuote(kRB, q);
    EXPECT_EQ(q.dVolume, rb0.dVolume);
    tagBrokerOrder back;
    ex.GetOrder(back, "880001", "9999", buy.strOrderID);
    EXPECT_EQ(back.nStatus, kOrderQueued);

    clock.setNowMs(localMs(10, 30, 0));
    ex.step();
    ex.deliverPending();
    EXPECT_EQ(desk.with("1000 rb2105").size(), 1u);
    ex.GetOrder(back, "880001", "9999", buy.strOrderID);
    EXPECT_EQ(back.nStatus, kOrderFilled);

    desk.lines.clear();
    for (Clock idle : {Clock{12, 0, 0}, Clock{15, 30, 0}, Clock{20, 0, 0}}) {
        clock.setNowMs(localMs(idle.h, idle.m, idle.s));
        ex.step();
    }
    ex.deliverPending();
    EXPECT_TRUE(desk.with("1000 ").empty());
}

TEST(SimSession, ExpiredContractNeverTicksAndRefusesOrders) {
    Rig r;
    const tagSymbol expired{3, "IF2012"};
    SimContract c;
    ASSERT_TRUE(r.ex.contract(expired, c));
    EXPECT_TRUE(c.expired);
    RecordingSink desk;
    r.ex.setDeskSink(&desk);
    r.ex.setRandomWalk(true);
    IModuleFutureTrader::ITickEx before, after;
    r.ex.GetMarketQuote(expired, before);
    EXPECT_DOUBLE_EQ(before.dLast, 5045.0);  // its final settlement
    EXPECT_FALSE(isPricePresent(before.dBid));
    EXPECT_FALSE(isPricePresent(before.dAsk));
    for (int i = 0; i < 50; ++i) {
        r.clock.advanceMs(SimExchange::kQuoteIntervalMs);
        r.ex.step();
    }
    r.ex.deliverPending();
    EXPECT_TRUE(desk.with("1000 IF2012").empty());
    r.ex.GetMarketQuote(expired, after);
    EXPECT_EQ(after.dLast, before.dLast);
    EXPECT_EQ(after.tQuoteTime, before.tQuoteTime);

    auto o = order(expired, kDirBuy, kOpen, 1, 5045.0);
    EXPECT_EQ(r.ex.SendOrder(o), 0);
    EXPECT_EQ(o.strStatusMsg, simtext::kNotTradable);
    EXPECT_FALSE(r.ex.loadTicks(expired, {{20210104, 36'000'000, 5045.0}}));
}

}  // namespace
