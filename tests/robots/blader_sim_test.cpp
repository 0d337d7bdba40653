// A whole session of the ladder robot on the simulated exchange, through the manager's real
// event flow, on virtual time: whatever the host does to its notifications, the robot's
// count of entries ends equal to the position the exchange holds.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include "app/helmsman_manage.h"
#include "robots/blader.h"
#include "sim/sim_test_util.h"
#include "support/manager_sink.h"
#include "support/scripted.h"

namespace {

using simtest::kIF;

struct Session : testing::Test {
    ManualClock clock{simtest::localMs(10, 0, 0)};
    SimExchange sim{clock, simtest::quietOptions()};
    ScriptedPrompter prompter;
    CHelmsmanManage manager;
    ManagerSink sink{manager};
    std::unique_ptr<CBlader> robot;

    Session() {
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.init(1, &sim, "/nonexistent-helmsman-blader", "demo", 0);
        sim.setEventSink(&sink);
        sim.applyQuote(simtest::quote(kIF, 5229.8, 10, 5230.2, 10, 5230.0));
        sim.deliverPending();
        robot = std::make_unique<CBlader>(manager);
        manager.registerWindow(robot->handle());
        robot->setAccount({"880001", "9999", "模拟账户一", 1});
    }
    // One 500 ms round: the market trades at `last`, its events arrive, the timer passes.
    void round(double last) {
        last = std::round(last * 5) / 5;  // on the 0.2 tick
        clock.advanceMs(500);
        sim.applyQuote(simtest::quote(kIF, last - 0.2, 10, last + 0.2, 10, last));
        sim.deliverPending();
        robot->timerStep();
        sim.deliverPending();
    }
    double exchangeLong() {
        tagOpenedPosition p;
        sim.GetPosition(p, "880001", "9999", kIF);
        return p.dLong - p.dShort;
    }
    int legFailures() const {
        int n = 0;
        for (const auto& b : prompter.boxes) n += b.text.find("新状态") != std::string::npos;
        return n;
    }
};

TEST_F(Session, BookEqualsTheExchangesPositionThroughRejectsLostDuplicatedAndLateEvents) {
    tagBladerSetting s;
    s.wExchangeID = kIF.wExchangeID;
    s.szSymbolCode = kIF.strCode;
    s.nMaxPos = 3;
    s.nTimeExit = 0;
    ASSERT_TRUE(robot->setSetting(s));
    ASSERT_TRUE(robot->start());
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> noise(-0.6, 0.6);
    double last = 5230.0;
    for (int i = 0; i < 400; ++i) {
        switch (i) {
            case 20:
                sim.rejectNextOrders(2);
                break;
            case 60:
                sim.dropNextNotifications(6);
                break;
            case 100:
                sim.duplicateNextNotifications(10);
                break;
            case 140:
                sim.setNotificationDelay(3);
                break;
            case 180:
                sim.setNotificationDelay(0);
                break;
            case 240:
                // Paused with orders resting: they are let go of, fills that beat the
                // cancel are still booked.
                while (!robot->pause()) round(last);
                break;
            case 260:
                ASSERT_TRUE(robot->start());
                break;
            default:
                break;
        }
        last = 5230.0 + 4.0 * std::sin(i / 9.0) + noise(rng);
        round(last);
    }
    while (!robot->pause()) round(last);
    for (int i = 0; i < 12; ++i) round(last);  // late cancels and look-ups settle

    EXPECT_GE(robot->closed(), 10);  // the session did trade
    EXPECT_EQ(robot->opened() - robot->closed(), robot->held());
    EXPECT_EQ(robot->held(), exchangeLong());
    EXPECT_EQ(legFailures(), 0);
    std::vector<tagBrokerOrder> working;
    sim.GetOpenOrders(working, "880001", "9999", kIF);
    EXPECT_TRUE(working.empty());
}

}  // namespace
