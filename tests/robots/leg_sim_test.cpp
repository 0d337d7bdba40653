// Legs driven by the simulated exchange through the real event flow, with its faults:
// rejects, dropped, duplicated and late notifications. Whatever the host does, a leg sends
// once per decision and never stays stuck without saying so.
#include <gtest/gtest.h>

#include "robots/leg.h"
#include "robots/order_tag.h"
#include "sim/sim_test_util.h"
#include "support/scripted.h"

namespace {

using simtest::kIF;
using simtest::quote;

// A robot window reduced to what the legs need: a handle for its tags and the matching rule.
struct MiniRobot {
    MiniRobot(WndHandle h, IPrompter& p, ManualClock& c)
        : tags(h, c), open(LegMachine::SingleOpen, p, c), close(LegMachine::SingleClose, p, c) {}
    COrderTagSource tags;
    CLeg open;
    CLeg close;
    int onEvent(std::uint32_t code, std::uintptr_t data) {
        CLeg* legs[] = {&open, &close};
        return routeOrderNotification(false, code, reinterpret_cast<const tagBrokerOrder*>(data),
                                      legs);
    }
};

struct Sink final : ISimEventSink {
    std::vector<MiniRobot*> robots;
    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        if (eventKind(code) != kEventOrderChanged) return;
        for (MiniRobot* r : robots) r->onEvent(code, data);
    }
    void onLogonStateChange(std::uint32_t, std::uintptr_t) override {}
    void onWindowMessage(std::uint32_t, std::uint32_t, std::uintptr_t, std::uintptr_t) override {}
};

struct SimRig : testing::Test {
    SimRig() : clock(simtest::localMs(10, 0, 0)), sim(clock, simtest::quietOptions()) {
        sim.setEventSink(&sink);
        sim.applyQuote(quote(kIF, 5231.0, 5, 5231.2, 5, 5231.0));
        sim.deliverPending();
        sink.robots = {&robot, &other};
    }
    OrderSubmit submit() {
        return [this](tagBrokerOrder& o) { return sim.SendOrder(o); };
    }
    bool buy(CLeg& leg, double price, const std::string& account = "880001") {
        tagBrokerOrder o = simtest::order(kIF, kDirBuy, kOpen, 1, price, account);
        return leg.send(o, robot.tags.make("te", TagPrefix::Dollar), submit());
    }
    void deliver(int times = 3) {
        for (int i = 0; i < times; ++i) {
            clock.advanceMs(20);
            sim.deliverPending();
        }
    }
    std::uint64_t sent() const { return sim.stats().ordersSent; }

    ManualClock clock;
    ScriptedPrompter prompter;
    SimExchange sim;
    Sink sink;
    MiniRobot robot{0x10001, prompter, clock};
    MiniRobot other{0x10002, prompter, clock};
};

TEST_F(SimRig, RestingOrderIsQueuedThenCancelledBackToIdle) {
    ASSERT_TRUE(buy(robot.open, 5230.0));
    EXPECT_EQ(robot.open.state(), 1);
    EXPECT_FALSE(buy(robot.open, 5230.0));  // one decision, one order
    deliver();
    EXPECT_EQ(robot.open.state(), 2);
    EXPECT_EQ(robot.open.statusText(5231.0, 5231.2), "买入开仓委托已报(5230/-1)");
    ASSERT_TRUE(robot.open.cancel(sim));
    deliver();
    EXPECT_EQ(robot.open.state(), 0);
    EXPECT_EQ(sent(), 1u);
    EXPECT_TRUE(prompter.boxes.empty());
}

TEST_F(SimRig, InjectedRejectFreesTheLegAtOnceAndItsLateEventsChangeNothing) {
    sim.rejectNextOrders(1);
    ASSERT_TRUE(buy(robot.open, 5231.2));
    EXPECT_EQ(robot.open.state(), 0);
    deliver();  // 11 then 5 arrive for the refused tag
    EXPECT_EQ(robot.open.state(), 0);
    ASSERT_TRUE(buy(robot.open, 5231.2));  // the next decision sends again
    deliver();
    EXPECT_EQ(robot.open.state(), 4);
    EXPECT_EQ(sent(), 2u);
    EXPECT_TRUE(prompter.boxes.empty());

    // Refused before booking (not logged on): no event will ever come, the leg is free.
    ASSERT_TRUE(robot.open.finishCycle());
    sim.logoff("880001");
    deliver();
    ASSERT_TRUE(buy(robot.open, 5231.2));
    EXPECT_EQ(robot.open.state(), 0);
    EXPECT_EQ(sim.pendingEventCount(), 0u);
}

TEST_F(SimRig, DuplicatedNotificationsBookOneFill) {
    sim.duplicateNextNotifications(20);
    ASSERT_TRUE(buy(robot.open, 5231.2));
    deliver();
    EXPECT_EQ(robot.open.state(), 4);
    EXPECT_EQ(robot.open.price(), 5231.2);
    EXPECT_TRUE(robot.open.finishCycle());
    deliver();
    EXPECT_EQ(robot.open.state(), 0);
    EXPECT_EQ(sent(), 1u);
    EXPECT_TRUE(prompter.boxes.empty());
}

TEST_F(SimRig, DroppedNotificationsAreFoundByLookingTheOrderUp) {
    sim.dropNextNotifications(20);
    ASSERT_TRUE(buy(robot.open, 5230.0));
    deliver();
    EXPECT_EQ(robot.open.state(), 1);  // heard nothing
    EXPECT_FALSE(robot.open.overdue(3000));
    clock.advanceMs(3000);
    ASSERT_TRUE(robot.open.overdue(3000));
    robot.open.reconcile(sim);
    EXPECT_EQ(robot.open.state(), 2);
    // Filled while every notification is lost: the next look-up books it.
    sim.applyQuote(quote(kIF, 5229.0, 5, 5229.2, 5, 5229.0));
    deliver();
    EXPECT_EQ(robot.open.state(), 2);
    clock.advanceMs(3000);
    robot.open.reconcile(sim);
    EXPECT_EQ(robot.open.state(), 4);
    EXPECT_FALSE(robot.open.overdue(0));  // a final state waits on nothing
    EXPECT_EQ(sent(), 1u);
}

TEST_F(SimRig, LateFillWhileCancellingBooksTheFill) {
    ASSERT_TRUE(buy(robot.open, 5230.0));
    deliver();
    ASSERT_EQ(robot.open.state(), 2);
    sim.setNotificationDelay(2);
    sim.applyQuote(quote(kIF, 5229.0, 5, 5229.2, 5, 5229.0));  // trades through the order
    ASSERT_TRUE(robot.open.cancel(sim));                       // too late: already filled
    EXPECT_EQ(robot.open.state(), 3);
    deliver(4);
    EXPECT_EQ(robot.open.state(), 4);
    EXPECT_TRUE(prompter.boxes.empty());
}

TEST_F(SimRig, CancelledFromOutsideParksTheLegWithItsStatus) {
    ASSERT_TRUE(buy(robot.open, 5230.0));
    deliver();
    sim.DeleteOrder("880001", "9999", robot.open.orderId());  // the user, from the desk
    deliver();
    EXPECT_EQ(robot.open.state(), 99);
    EXPECT_EQ(prompter.lastText(), "外部撤单或过期！,新状态=7");
    EXPECT_FALSE(buy(robot.open, 5230.0));
    EXPECT_EQ(sent(), 1u);
}

TEST_F(SimRig, TwoRobotsNeverTakeEachOthersOrdersNorOldTags) {
    tagBrokerOrder o = simtest::order(kIF, kDirBuy, kOpen, 1, 5230.0, "880002");
    ASSERT_TRUE(other.open.send(o, other.tags.make("te", TagPrefix::Dollar), submit()));
    sim.setNotificationDelay(5);
    ASSERT_TRUE(buy(robot.open, 5231.2));  // fills at once; its events come late
    const std::string first = robot.open.tag();
    clock.advanceMs(3000);
    robot.open.reconcile(sim);
    ASSERT_EQ(robot.open.state(), 4);
    ASSERT_TRUE(robot.open.finishCycle());
    sim.setNotificationDelay(0);
    ASSERT_TRUE(buy(robot.open, 5230.0));
    EXPECT_NE(robot.open.tag(), first);
    deliver(8);  // the first order's late events no longer match
    EXPECT_EQ(robot.open.state(), 2);
    EXPECT_EQ(other.open.state(), 2);
    sim.applyQuote(quote(kIF, 5229.0, 5, 5229.2, 5, 5229.0));  // fills both robots' orders
    deliver();
    EXPECT_EQ(robot.open.state(), 4);
    EXPECT_EQ(other.open.state(), 4);
    EXPECT_EQ(other.close.state(), 0);
    EXPECT_EQ(sent(), 3u);
    EXPECT_TRUE(prompter.boxes.empty());
}

}  // namespace
