// The grid spread robot through a whole session on the simulated exchange, by the real event
// flow (host events -> manager -> robot), while the exchange refuses orders and drops and
// repeats its notifications. Whatever happens, a pair never has two B orders out, and when
// the session ends the robot's entries are exactly the position the exchange holds for it.
#include <gtest/gtest.h>

#include "app/helmsman_manage.h"
#include "robots/grids_spread.h"
#include "sim/sim_test_util.h"
#include "support/manager_sink.h"
#include "support/recording_journal.h"
#include "support/scripted.h"

namespace {

using simtest::kIF;

const tagSymbol kIH{3, "IH2101"};

struct GridSession : testing::Test {
    GridSession() {
        SimOptions options;
        options.yesterdayPositions = false;
        sim = std::make_unique<SimExchange>(clock, options);
        sim->setEventSink(&sink);
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.setJournal(&journal);
        manager.init(1, sim.get(), "/nonexistent-helmsman-grid-session", "demo", 0);
        grid = std::make_unique<CGridsSpread>(manager);
        manager.registerWindow(grid->handle());
    }
    ~GridSession() override {
        grid.reset();
        manager.setClock(nullptr);
        manager.setPrompter(nullptr);
        manager.setJournal(nullptr);
    }

    GridsSpreadSettings settings() const {
        GridsSpreadSettings s;
        s.wExchangeID1 = s.wExchangeID2 = 3;
        s.szSymbolCode1 = kIF.strCode;
        s.szSymbolCode2 = kIH.strCode;
        s.bLong = 1;
        s.nMaxLots = 3;
        s.dFirstGrid = spreadNow();
        s.dGridInterval = 0.6;
        s.dWinGrid = 0.4;
        s.nMonitorEdge = 10;
        s.nMonitorThreshold = 1;
        s.nFixupOffset = 2;
        s.nFilterLength = 20;
        s.nFilterOffset = 4;
        s.strAccountID1 = "880001";
        s.strAccountID2 = "880002";
        s.strBrokerID1 = s.strBrokerID2 = "9999";
        return s;
    }
    double spreadNow() const {
        IModuleFutureTrader::ITickEx a, b;
        sim->GetMarketQuote(kIF, a);
        sim->GetMarketQuote(kIH, b);
        return a.dLast - b.dLast;
    }
    // Net position of an account in a contract: long minus short.
    double net(const std::string& account, const tagSymbol& s) {
        tagOpenedPosition p;
        if (sim->GetPosition(p, account, "9999", s) != 1) return 0;
        return p.dLong - p.dShort;
    }
    // The robot's working B orders of one kind ("teb" or "txb").
    int workingB(const char* leg) {
        std::vector<tagBrokerOrder> orders;
        sim->GetOpenOrders(orders, "880002", "9999", kIH);
        int n = 0;
        for (const tagBrokerOrder& o : orders)
            if (o.strRemark.find(leg) != std::string::npos) ++n;
        return n;
    }
    bool idle() const { return grid->openPair().state() == 0 && grid->closePair().state() == 0; }
    // One market round and the robot's timer.
    void round() {
        clock.advanceMs(CGridsSpread::kTimerMs);
        sim->step();
        sim->deliverPending();
        grid->timerPass();
        sim->deliverPending();
    }

    ManualClock clock{simtest::localMs(9, 30, 0)};
    std::unique_ptr<SimExchange> sim;
    ScriptedPrompter prompter;
    RecordingJournal journal;
    CHelmsmanManage manager;
    ManagerSink sink{manager};
    std::unique_ptr<CGridsSpread> grid;
};

TEST_F(GridSession, EntriesMatchTheExchangesPositionAfterASessionWithFaults) {
    sim->step();
    sim->deliverPending();
    ASSERT_TRUE(grid->setSettings(settings()));
    ASSERT_TRUE(grid->start());

    int maxEntries = 0;
    for (int i = 1; i <= 2 * 3600 * 2; ++i) {  // two hours of rounds, up to the lunch break
        // Faults: a refused B now and then (only when nothing is out, so it hits a B), and
        // runs of lost and repeated notifications.
        if (i % 37 == 0 && idle() && workingB("|t") == 0) sim->rejectNextOrders(1);
        if (i % 53 == 0) sim->dropNextNotifications(3);
        if (i % 71 == 0) sim->duplicateNextNotifications(5);
        round();
        ASSERT_LE(workingB("|teb|"), 1) << "round " << i;
        ASSERT_LE(workingB("|txb|"), 1) << "round " << i;
        ASSERT_TRUE(prompter.boxes.empty()) << prompter.lastText();
        maxEntries = std::max(maxEntries, static_cast<int>(grid->entries().size()));
    }

    // The trader pauses (a pair between states asks to wait) and the last orders settle.
    int tries = 0;
    while (!grid->pause() && ++tries < 100) round();
    ASSERT_FALSE(grid->running());
    prompter.boxes.clear();
    for (int i = 0; i < 40; ++i) round();
    ASSERT_TRUE(idle());

    const double entries = static_cast<double>(grid->entries().size());
    EXPECT_EQ(net("880001", kIF), entries * grid->sizes().a);   // A bought
    EXPECT_EQ(net("880002", kIH), -entries * grid->sizes().b);  // B sold
    std::vector<tagBrokerOrder> open;
    sim->GetOpenOrders(open, "880001", "9999", kIF);
    EXPECT_TRUE(open.empty());

    // The session did trade: entries opened up to the limit and closed again, under faults.
    EXPECT_GE(grid->closedCount(), 10);
    EXPECT_EQ(maxEntries, 3);
    EXPECT_GE(sim->stats().ordersRejected, 5u);
    EXPECT_GE(sim->stats().eventsDropped, 20u);
    EXPECT_EQ(journal.entries.size(), sim->stats().ordersSent);
}

}  // namespace
