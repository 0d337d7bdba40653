// The auto spread robot on the simulated exchange, by the real event flow (host events ->
// manager -> robot): rounds leg by leg, parts made up to whole units, chased and refused
// following orders, and a session with faults after which the robot's position is exactly
// what the exchange holds for it.
#include <gtest/gtest.h>

#include "app/helmsman_manage.h"
#include "robots/auto_spread.h"
#include "robots/auto_spread_strings.h"
#include "sim/sim_test_util.h"
#include "support/manager_sink.h"
#include "support/recording_journal.h"
#include "support/scripted.h"

namespace {

using simtest::kIF;
namespace t = auto_spread_text;

const tagSymbol kIH{3, "IH2101"};

// A box is modal: its event loop may deliver host events before it returns.
struct ModalPrompter : ScriptedPrompter {
    std::function<void()> whileShown;  // runs once, inside the next box
    void inform(const std::string& caption, const std::string& text, PromptIcon icon) override {
        ScriptedPrompter::inform(caption, text, icon);
        if (auto f = std::exchange(whileShown, nullptr)) f();
    }
    bool ask(const std::string& caption, const std::string& text, PromptIcon icon) override {
        if (auto f = std::exchange(whileShown, nullptr)) f();
        return ScriptedPrompter::ask(caption, text, icon);
    }
};

struct AutoSpreadSession : testing::Test {
    AutoSpreadSession() {
        SimOptions options = simtest::quietOptions();
        options.yesterdayPositions = false;
        sim = std::make_unique<SimExchange>(clock, options);
        sim->setEventSink(&sink);
        for (const char* account : {"880001", "880002"}) sim->setAccountFunds(account, 1e7);
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.setJournal(&journal);
        manager.init(1, sim.get(), "/nonexistent-helmsman-auto-spread", "demo", 0);
        robot = std::make_unique<CAutoSpread>(manager);
        manager.registerWindow(robot->handle());
        market(5216.0, 5216.2, 3645.0, 3645.2);  // spread bid 1570.8, ask 1571.2
    }
    ~AutoSpreadSession() override {
        robot.reset();
        manager.setClock(nullptr);
        manager.setPrompter(nullptr);
        manager.setJournal(nullptr);
    }

    // Long entry at 1571.2 or below, long exit at 1580 or above.
    static tagAutoSpreadTemplate settings() {
        tagAutoSpreadTemplate s;
        s.accounts[0].strAccountID = "880001";
        s.accounts[1].strAccountID = "880002";
        s.accounts[0].strBrokerID = s.accounts[1].strBrokerID = "9999";
        s.legs[0] = {3, kIF.strCode};
        s.legs[1] = {3, kIH.strCode};
        s.bLongEntry = s.bLongExit = 1;
        s.dLongEntryPrice = 1571.2;
        s.dLongExitPrice = 1580;
        s.nEveryLots = 1;
        s.nMaxLots = 2;
        s.nStayMilliSeconds = 1000;
        return s;
    }
    void market(double bidA, double askA, double bidB, double askB, double volA = 50,
                double volB = 50) {
        sim->applyQuote(simtest::quote(kIF, bidA, volA, askA, volA, (bidA + askA) / 2));
        sim->applyQuote(simtest::quote(kIH, bidB, volB, askB, volB, (bidB + askB) / 2));
        sim->deliverPending();
        sim->deliverPending();
    }
    // Half a second: the exchange's events and the robot's timer.
    void tick(int n = 1) {
        for (int i = 0; i < n; ++i) {
            clock.advanceMs(CAutoSpread::kTimerMs);
            sim->deliverPending();
            robot->timerPass();
            sim->deliverPending();
        }
    }
    double net(const std::string& account, const tagSymbol& s) {
        tagOpenedPosition p;
        if (sim->GetPosition(p, account, "9999", s) != 1) return 0;
        return p.dLong - p.dShort;
    }
    // The trader cancels B's order in the host. The robot is told "cancelling", which it does
    // not expect, and "cancelled" arrives while that message's box is up.
    void cancelBInTheHost() {
        const std::string id = robot->leg(1).orderId();
        sim->DeleteOrder("880002", "9999", id);
        prompter.whileShown = [this, id] {
            tagBrokerOrder cancelled;
            ASSERT_EQ(sim->GetOrder(cancelled, "880002", "9999", id), 1);
            robot->onMessage(kMsgDataChange, kEventOrderChanged,
                             reinterpret_cast<std::uintptr_t>(&cancelled));
        };
        sim->deliverPending();
    }
    int working(const std::string& account, const tagSymbol& s) {
        std::vector<tagBrokerOrder> orders;
        sim->GetOpenOrders(orders, account, "9999", s);
        return static_cast<int>(orders.size());
    }

    ManualClock clock{simtest::localMs(10, 0, 0)};
    std::unique_ptr<SimExchange> sim;
    ModalPrompter prompter;
    RecordingJournal journal;
    CHelmsmanManage manager;
    ManagerSink sink{manager};
    std::unique_ptr<CAutoSpread> robot;
};

TEST_F(AutoSpreadSession, EntersLegByLegAndExitsAtTheLine) {
    tagAutoSpreadTemplate s = settings();
    s.nSpreadLots = {1, 2, 1};
    s.nOrderDelaySeconds = 5;
    ASSERT_TRUE(robot->setSettings(s));
    ASSERT_TRUE(robot->start()) << prompter.lastText();
    tick(2);
    ASSERT_EQ(robot->position(), 1) << robot->statusText();
    EXPECT_EQ(net("880001", kIF), 1);
    EXPECT_EQ(net("880002", kIH), -2);
    ASSERT_EQ(robot->rounds().size(), 1u);
    // Bought A at its ask, sold B at its bid: 5216.2 - 3645.0.
    EXPECT_DOUBLE_EQ(robot->rounds()[0].spread, 1571.2);
    ASSERT_EQ(journal.entries.size(), 2u);
    EXPECT_EQ(journal.entries[0].reason, "多头开仓1份：商品A");
    EXPECT_EQ(journal.entries[1].reason, "多头开仓1份：补齐商品B");
    EXPECT_EQ(journal.entries[1].order.dVolume, 2);

    // The spread holds at the line: the second unit follows once the delay is over, then
    // the maximum stops it.
    EXPECT_EQ(robot->statusText(), "下单间隔中");
    tick(8);
    EXPECT_EQ(robot->position(), 1);
    tick(12);
    EXPECT_EQ(robot->position(), 2);
    EXPECT_EQ(journal.entries.size(), 4u);
    EXPECT_EQ(robot->statusText(), "监控价差中");

    // The spread widens past the exit line: both units leave, one round each.
    market(5226.0, 5226.2, 3645.8, 3646.0);  // bid 5226.0 - 3646.0 = 1580.0
    tick(16);
    EXPECT_EQ(robot->position(), 0);
    EXPECT_EQ(net("880001", kIF), 0);
    EXPECT_EQ(net("880002", kIH), 0);
    EXPECT_EQ(robot->rounds().back().action, SpreadAction::LongExit);
    EXPECT_NEAR(robot->realised(), 2 * (1580.0 - 1571.2), 1e-9);
    EXPECT_TRUE(prompter.boxes.empty()) << prompter.lastText();
}

TEST_F(AutoSpreadSession, APartFillIsMadeUpToWholeUnitsBeforeTheOtherLegs) {
    tagAutoSpreadTemplate s = settings();
    s.nSpreadLots = {2, 3, 1};
    s.nEveryLots = s.nMaxLots = 2;  // A wants 4 lots
    robot->setSettings(s);
    market(5216.0, 5216.2, 3645.0, 3645.2, /*volA=*/3);
    ASSERT_TRUE(robot->start());
    sim->deliverPending();
    // A took 3 of 4 lots and rests for the fourth; B waits for A to end.
    EXPECT_EQ(net("880001", kIF), 3);
    EXPECT_EQ(working("880002", kIH), 0);
    tick(3);  // A's wait runs out: withdrawn, 3 lots = 2 units, A makes up the fourth lot
    market(5216.0, 5216.2, 3645.0, 3645.2);
    tick(3);
    EXPECT_EQ(net("880001", kIF), 4);
    EXPECT_EQ(net("880002", kIH), -6);
    EXPECT_EQ(robot->position(), 2);
    ASSERT_EQ(robot->rounds().size(), 1u);
    EXPECT_EQ(robot->rounds()[0].units, 2);
}

TEST_F(AutoSpreadSession, AWithdrawnBeforeItFillsEndsTheRoundWithNothing) {
    tagAutoSpreadTemplate s = settings();
    s.nOrderOffset = -2;  // A rests two ticks inside the touch
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    sim->deliverPending();
    EXPECT_EQ(working("880001", kIF), 1);
    // The spread leaves the line: A goes at once, before its wait is over.
    market(5217.0, 5217.2, 3645.0, 3645.2);
    tick();
    EXPECT_EQ(working("880001", kIF), 0);
    EXPECT_FALSE(robot->roundOpen());
    EXPECT_EQ(working("880002", kIH), 0);
    EXPECT_EQ(robot->position(), 0);
}

TEST_F(AutoSpreadSession, AFollowingOrderIsChasedUntilItFills) {
    tagAutoSpreadTemplate s = settings();
    s.nSpreadLots = {1, 3, 1};
    robot->setSettings(s);
    market(5216.0, 5216.2, 3645.0, 3645.2, 50, /*volB=*/1);
    ASSERT_TRUE(robot->start());
    tick();
    // B sold 1 of 3 at its bid; the rest rests there while the market falls away.
    EXPECT_EQ(net("880002", kIH), -1);
    market(5216.0, 5216.2, 3644.0, 3644.2, 50, 50);
    EXPECT_EQ(net("880002", kIH), -1);
    tick(3);  // the wait runs out: cancelled, sent again at the new bid, filled
    EXPECT_EQ(net("880002", kIH), -3);
    EXPECT_EQ(robot->position(), 1);
    EXPECT_DOUBLE_EQ(robot->rounds()[0].fill[1], (3645.0 + 2 * 3644.0) / 3);
}

TEST_F(AutoSpreadSession, OnlyAIsConfirmedAndADeclinedConfirmationPauses) {
    ScriptedUi ui;
    manager.setUi(&ui);
    tagAutoSpreadTemplate s = settings();
    s.bConfirmOrder = 1;
    s.nMaxLots = 1;
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    tick(2);
    EXPECT_EQ(robot->position(), 1);
    ASSERT_EQ(ui.confirmed.size(), 1u);  // the following leg is never held up by a question
    EXPECT_EQ(ui.confirmed[0].strCode, kIF.strCode);

    robot->overridePosition(0);
    ui.acceptConfirm = false;
    tick();  // the next pass wants a new unit: the trader says no
    EXPECT_EQ(ui.confirmed.size(), 2u);
    EXPECT_FALSE(robot->running());
    EXPECT_FALSE(robot->roundOpen());
    EXPECT_EQ(journal.entries.size(), 2u);  // nothing sent, nothing recorded
    EXPECT_EQ(robot->statusText(), "已暂停");
    manager.setUi(nullptr);
}

// The trader takes three seconds over the confirmation: A's wait runs from when it leaves.
TEST_F(AutoSpreadSession, AConfirmedSlowlyStillRestsItsWholeWait) {
    struct SlowTrader : ScriptedUi {
        ManualClock* clock = nullptr;
        bool confirmOrder(const tagBrokerOrder& o, const std::string& caller,
                          const tagAlgoSetting* algo) override {
            clock->advanceMs(3000);
            return ScriptedUi::confirmOrder(o, caller, algo);
        }
    } ui;
    ui.clock = &clock;
    manager.setUi(&ui);
    tagAutoSpreadTemplate s = settings();
    s.bConfirmOrder = 1;
    s.nOrderOffset = -2;  // A rests
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    tick();  // queued half a second after the confirmation: resting
    EXPECT_EQ(robot->leg(0).state(), 2);
    const std::string first = robot->leg(0).orderId();
    tick(2);  // its second is up: withdrawn, and the next round asks again
    EXPECT_NE(robot->leg(0).orderId(), first);
    EXPECT_EQ(ui.confirmed.size(), 2u);
    manager.setUi(nullptr);
}

TEST_F(AutoSpreadSession, ClosingWithdrawsAnAWhoseNoticeHasNotArrived) {
    tagAutoSpreadTemplate s = settings();
    s.nOrderOffset = -2;
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    ASSERT_EQ(working("880001", kIF), 1);
    prompter.answers.push_back(true);
    ASSERT_TRUE(robot->requestClose());
    tick(2);
    EXPECT_EQ(working("880001", kIF), 0);
}

// A parks on a status it did not expect; the trader withdraws it by hand, pauses and starts
// again. What it filled before is completed; a round it filled nothing for is over.
struct AutoSpreadParkedA : AutoSpreadSession {
    void parkAAndRestart() {
        tagBrokerOrder expired = journal.entries.at(0).order;
        expired.nStatus = kOrderExpired;
        robot->onMessage(kMsgDataChange, kEventOrderChanged,
                         reinterpret_cast<std::uintptr_t>(&expired));
        ASSERT_EQ(robot->leg(0).state(), kLegParked);
        sim->DeleteOrder("880001", "9999", robot->leg(0).orderId());
        sim->deliverPending();
        robot->pause();
        ASSERT_TRUE(robot->start());
    }
};

TEST_F(AutoSpreadParkedA, NothingFilledEndsTheRound) {
    tagAutoSpreadTemplate s = settings();
    s.nOrderOffset = -2;
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    sim->deliverPending();
    parkAAndRestart();
    tick();
    EXPECT_EQ(journal.entries.size(), 2u) << robot->statusText();  // the next round's A
    EXPECT_EQ(working("880001", kIF), 1);
}

TEST_F(AutoSpreadParkedA, APartIsCompleted) {
    tagAutoSpreadTemplate s = settings();
    s.nSpreadLots = {2, 1, 1};
    s.nMaxLots = 1;
    robot->setSettings(s);
    market(5216.0, 5216.2, 3645.0, 3645.2, /*volA=*/1);
    ASSERT_TRUE(robot->start());
    sim->deliverPending();
    ASSERT_EQ(net("880001", kIF), 1);
    parkAAndRestart();
    market(5216.0, 5216.2, 3645.0, 3645.2);
    tick(3);
    EXPECT_EQ(net("880001", kIF), 2);
    EXPECT_EQ(net("880002", kIH), -1);
    EXPECT_EQ(robot->position(), 1) << robot->statusText();
}

// B cancelled in the host is sent again once, and the robot follows that order.
TEST_F(AutoSpreadSession, ACancelArrivingWhileAnUnexpectedStatusIsShownSendsBOnce) {
    tagAutoSpreadTemplate s = settings();
    s.nMaxLots = 1;
    s.nUnstayedOffset = -2;  // B rests
    s.nStayMilliSeconds = 60000;
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    tick();
    ASSERT_EQ(robot->leg(1).state(), 2);
    cancelBInTheHost();
    EXPECT_EQ(prompter.boxes.size(), 1u);
    EXPECT_EQ(journal.entries.size(), 3u);
    EXPECT_EQ(working("880002", kIH), 1);
    EXPECT_NE(robot->leg(1).state(), kLegParked);
    market(5216.0, 5216.2, 3645.4, 3645.6);  // the bid comes up to B's price
    tick();
    EXPECT_EQ(net("880002", kIH), -1);
    EXPECT_EQ(robot->position(), 1) << robot->statusText();
}

// The same with B part filled before the cancel: the late "cancelling" carries that part,
// which is not the new order's.
TEST_F(AutoSpreadSession, AStatusOfAnEarlierOrderFillsNothingOfTheNext) {
    tagAutoSpreadTemplate s = settings();
    s.nSpreadLots = {1, 3, 1};
    s.nMaxLots = 1;
    s.nStayMilliSeconds = 2000;
    robot->setSettings(s);
    market(5216.0, 5216.2, 3645.0, 3645.2, 50, /*volB=*/2);
    ASSERT_TRUE(robot->start());
    tick();
    ASSERT_EQ(net("880002", kIH), -2);  // the third lot rests
    market(5216.0, 5216.2, 3644.8, 3645.0, 50, /*volB=*/0);
    cancelBInTheHost();
    tick(5);  // the lot sent again finds no buyer, rests its wait and is chased
    EXPECT_TRUE(robot->roundOpen());
    market(5216.0, 5216.2, 3644.8, 3645.0);
    tick(6);
    EXPECT_EQ(net("880002", kIH), -3);
    EXPECT_EQ(robot->position(), 1) << robot->statusText();
}

// The warning of a position edit is modal: a round the running robot starts meanwhile is
// completed like any other.
TEST_F(AutoSpreadSession, ARoundStartedDuringAPositionEditIsCompleted) {
    tagAutoSpreadTemplate s = settings();
    s.nOrderDelaySeconds = 5;
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    tick(2);
    ASSERT_EQ(robot->position(), 1);
    prompter.whileShown = [&] {
        clock.advanceMs(5000);  // the delay is over while the box is up
        robot->timerPass();
    };
    ASSERT_TRUE(robot->overridePosition(1));
    tick(4);
    EXPECT_EQ(net("880001", kIF), 2);
    EXPECT_EQ(net("880002", kIH), -2);
    EXPECT_EQ(robot->position(), 2) << robot->statusText();
}

// While the trader is asked whether to close, the spread meets the line: no round starts
// that the answer would leave with one leg.
TEST_F(AutoSpreadSession, NoRoundStartsWhileClosingIsAsked) {
    robot->setSettings(settings());
    market(5217.0, 5217.2, 3645.0, 3645.2);  // ask 1572.2: above the line
    ASSERT_TRUE(robot->start());
    prompter.whileShown = [&] { market(5216.0, 5216.2, 3645.0, 3645.2); };
    prompter.answers.push_back(true);
    ASSERT_TRUE(robot->requestClose());
    tick(2);
    EXPECT_EQ(net("880001", kIF), 0);
    EXPECT_TRUE(journal.entries.empty());
}

// B's bids vanish while it rests two ticks above them: what is left waits for a bid rather
// than going out at a price made from none.
TEST_F(AutoSpreadSession, AFollowingOrderWaitsForItsSideOfTheBook) {
    tagAutoSpreadTemplate s = settings();
    s.nMaxLots = 1;
    s.nUnstayedOffset = -2;
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    tick();
    ASSERT_EQ(working("880002", kIH), 1);
    sim->applyQuote(simtest::quote(kIH, 0, 0, 3645.6, 50, 3645.0));
    tick(4);  // chased: withdrawn, and not sent again
    EXPECT_EQ(journal.entries.size(), 2u) << journal.entries.back().order.dPrice;
    market(5216.0, 5216.2, 3645.0, 3645.2);
    tick();
    ASSERT_EQ(journal.entries.size(), 3u);
    EXPECT_DOUBLE_EQ(journal.entries[2].order.dPrice, 3645.4);
}

// B's account drops out just as B is chased: the cancel goes nowhere. Once the account is
// back the cancel is asked again and B goes out again at the new bid.
TEST_F(AutoSpreadSession, AChaseWhoseCancelWasLostIsTakenUpAgain) {
    tagAutoSpreadTemplate s = settings();
    s.nMaxLots = 1;
    s.nUnstayedOffset = -2;  // B rests at 3645.4
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    tick();
    ASSERT_EQ(robot->leg(1).state(), 2);
    sim->logoff("880002");
    tick(2);  // the wait is up: the chase's cancel is refused
    sim->logon("880002");
    market(5216.0, 5216.2, 3644.0, 3644.2);
    tick(6);
    EXPECT_EQ(working("880002", kIH), 1);
    EXPECT_DOUBLE_EQ(journal.entries.back().order.dPrice, 3644.4) << robot->legStatus(1);
}

TEST_F(AutoSpreadSession, RefusedFollowingOrdersBackOffThenPauseTheRobot) {
    tagAutoSpreadTemplate s = settings();
    s.nMaxLots = 1;
    robot->setSettings(s);
    ASSERT_TRUE(robot->start());
    sim->rejectNextOrders(5);  // A is already out: B meets the refusals
    for (int i = 0; i < 40 && prompter.boxes.empty(); ++i) tick();
    ASSERT_EQ(prompter.boxes.size(), 1u);
    EXPECT_EQ(prompter.lastText(),
              "商品B补单连续5次被拒绝，价差舟已暂停。请检查帐户后重新启动，或手动补齐头寸！");
    EXPECT_FALSE(robot->running());
    EXPECT_TRUE(robot->roundOpen());
    // 1 + 2 + 4 + 8 s between the five tries: nothing else was sent.
    EXPECT_EQ(journal.entries.size(), 6u);
    EXPECT_GE(clock.nowMs() - simtest::localMs(10, 0, 0), 15000);
    tick(4);
    EXPECT_EQ(journal.entries.size(), 6u);
    // The trader starts again: the round is completed.
    ASSERT_TRUE(robot->start());
    tick(2);
    EXPECT_EQ(net("880002", kIH), -1);
    EXPECT_EQ(robot->position(), 1);
}

TEST_F(AutoSpreadSession, PositionMatchesTheExchangeAfterASessionWithFaults) {
    sim->setRandomWalk(true);
    tagAutoSpreadTemplate s = settings();
    s.nSpreadLots = {1, 2, 1};
    s.nMaxLots = 3;
    s.bShortEntry = s.bShortExit = 1;
    s.nUnstayedOffset = 1;
    // Every five minutes the trader pauses, lets the open round finish and centres the
    // lines on the spread again, so the random walk keeps crossing them both ways.
    auto centre = [&] {
        robot->pause();
        for (int i = 0; i < 60 && robot->roundOpen(); ++i) {
            sim->step();
            tick();
        }
        ASSERT_FALSE(robot->roundOpen()) << robot->statusText();
        const double mid = (robot->prices().bid + robot->prices().ask) / 2;
        s.dLongEntryPrice = mid - 0.4;
        s.dLongExitPrice = mid + 0.4;
        s.dShortEntryPrice = mid + 0.8;
        s.dShortExitPrice = mid;
        ASSERT_TRUE(robot->setSettings(s));
    };
    centre();
    for (int i = 1; i <= 3600; ++i) {  // half an hour
        if (i % 600 == 1) {
            centre();
            ASSERT_TRUE(robot->start());
        }
        if (i % 41 == 0) sim->rejectNextOrders(1);
        if (i % 53 == 0) sim->dropNextNotifications(2);
        if (i % 71 == 0) sim->duplicateNextNotifications(3);
        sim->step();
        tick();
        ASSERT_LE(working("880001", kIF), 1) << i;
        ASSERT_LE(working("880002", kIH), 1) << i;
    }
    centre();
    EXPECT_GT(robot->rounds().size(), 10u);
    EXPECT_TRUE(prompter.boxes.empty()) << prompter.lastText();
    EXPECT_EQ(net("880001", kIF), robot->position());
    EXPECT_EQ(net("880002", kIH), -2 * robot->position());
}

}  // namespace
