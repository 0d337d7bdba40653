// The grid spread robot on a hand-written host: its orders and tags through one whole
// cycle, the audit journal, the start refusals, pausing in every state, the trader's
// position figure, the close question and the settings' two stores.
#include "robots/grids_spread.h"

#include <gtest/gtest.h>

#include <memory>
#include <regex>

#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "spread/template_store.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/recording_journal.h"
#include "support/scripted.h"

namespace {

IModuleFutureTrader::ITickEx tick(const char* code, double bid, double ask, double volume,
                                  std::int64_t time) {
    IModuleFutureTrader::ITickEx t = TickBuilder(3, code).bid(bid, 5).ask(ask, 5).last(bid);
    t.dVolume = volume;
    t.tQuoteTime = time;
    return t;
}

// A buys the spread (sells B resting, buys A) at levels 0, -10, -20; closes 5 better.
GridsSpreadSettings baseSettings() {
    GridsSpreadSettings s;
    s.wExchangeID1 = s.wExchangeID2 = 3;
    s.szSymbolCode1 = "A1";
    s.szSymbolCode2 = "B1";
    s.nMaxLots = 3;
    s.dGridInterval = 10;
    s.dWinGrid = 5;
    s.nFixupOffset = 1;
    s.nFilterLength = 10;
    s.strAccountID1 = "880001";
    s.strAccountID2 = "880002";
    s.strBrokerID1 = s.strBrokerID2 = "9999";
    return s;
}

struct GridRig : testing::Test {
    GridRig() {
        host.accounts = {FakeHost::account("880001", "9999", "一"),
                         FakeHost::account("880002", "9999", "二")};
        host.details["A1"] = contractDetail(0.2f, 1, 300);
        host.details["B1"] = contractDetail(0.2f, 1, 300);
        host.quotes["A1"] = tick("A1", 3999.8, 4000.0, 100, 1);
        host.quotes["B1"] = tick("B1", 3999.8, 4000.2, 100, 1);
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.setJournal(&journal);
        manager.init(1, &host, "/nonexistent-helmsman-grid", "demo", 0);
        grid = std::make_unique<CGridsSpread>(manager);
        grid->setSettings(baseSettings());
    }
    void quote(const char* code, double bid, double ask) {
        ++time;
        const auto t = tick(code, bid, ask, 100 + time, time);
        grid->onQuote(t);
    }
    // The host reports order i (in sending order) at `status`, filled at `price` if given.
    void report(std::size_t i, int status, double price = 0) {
        tagBrokerOrder r = host.sent.at(i);
        r.nStatus = status;
        if (price > 0) {
            r.dFilledVolume = r.dVolume;
            r.dAvgPrice = price;
        }
        grid->onOrder(kEventOrderChanged, &r);
    }
    int openState() const { return grid->openPair().state(); }
    // Drives the opening pair to `state` from a started robot.
    void driveTo(int state) {
        ASSERT_TRUE(grid->start());
        if (state == 0) {
            report(0, kOrderRejected);  // back to idle, and waiting before it tries again
            ASSERT_EQ(openState(), 0);
            return;
        }
        if (state == 1) return;
        report(0, kOrderQueued);
        if (state == 2) return;
        if (state == 3 || state == 4) {
            quote("A1", 3999.6, 0);  // no ask: the resting B is pulled
            ASSERT_EQ(openState(), 3);
            if (state == 4) report(0, kOrderFilled, 4000.0);  // the fill beat the cancel
            return;
        }
        report(0, kOrderFilled, 4000.0);
        ASSERT_EQ(openState(), 5);
        if (state == 99) report(1, kOrderRejected);
    }

    FakeHost host;
    ManualClock clock{1609725600000};
    ScriptedPrompter prompter;
    RecordingJournal journal;
    CHelmsmanManage manager;
    std::unique_ptr<CGridsSpread> grid;
    int time = 1;
};

TEST_F(GridRig, OneEntryOpensWithItsTagsAndClosesFiveBetter) {
    EXPECT_EQ(grid->caption(), "价差格[公式:1A-1B]");
    ASSERT_TRUE(grid->start());
    ASSERT_EQ(host.sent.size(), 1u);
    const tagBrokerOrder b = host.sent[0];
    EXPECT_EQ(b.strAccountID, "880002");
    EXPECT_EQ(b.nDirection, kDirSell);
    EXPECT_EQ(b.dPrice, 4000.0);
    EXPECT_EQ(b.nOpenClose, kOpen);
    const std::string h = std::to_string(grid->handle());
    EXPECT_TRUE(std::regex_match(b.strRemark, std::regex("\\$\\|h\\|" + h + "\\|teb\\|\\d+")));
    report(0, kOrderQueued);
    EXPECT_EQ(grid->pairStatus(true), "商品B挂单委托已报(4000.0/0.2)");

    report(0, kOrderFilled, 4000.0);  // A is hit at once: its ask and one tick
    ASSERT_EQ(host.sent.size(), 2u);
    const tagBrokerOrder a = host.sent[1];
    EXPECT_EQ(a.strAccountID, "880001");
    EXPECT_EQ(a.nDirection, kDirBuy);
    EXPECT_NEAR(a.dPrice, 4000.2, 1e-9);
    EXPECT_TRUE(std::regex_match(a.strRemark, std::regex("h\\|" + h + "\\|tea\\|\\d+")));

    ASSERT_EQ(journal.entries.size(), 2u);
    EXPECT_EQ(journal.entries[0].tool, "价差格");
    EXPECT_EQ(journal.entries[0].tag, b.strRemark);
    EXPECT_EQ(journal.entries[0].reason, "开仓第1格挂单B");
    EXPECT_EQ(journal.figure(0, "level"), 0);
    EXPECT_EQ(journal.figure(0, "referenceA"), 4000.0);
    EXPECT_EQ(journal.entries[1].reason, "开仓B成交，对价下A");
    EXPECT_NEAR(journal.figure(1, "spread"), 0.2, 1e-9);

    report(1, kOrderQueued);  // acknowledged, not yet filled: booked with A unknown
    ASSERT_EQ(grid->entries().size(), 1u);
    EXPECT_EQ(grid->entries()[0].bFill, 4000.0);
    EXPECT_EQ(grid->entries()[0].aFill, 0);
    EXPECT_EQ(openState(), 0);
    quote("A1", 4005.0, 4005.2);      // the exit is there, but A has nothing to close yet
    EXPECT_EQ(host.sent.size(), 2u);  // and the next level is too far away
    report(1, kOrderFilled, 4000.2);  // the late fill completes the entry; closing follows:
    EXPECT_NEAR(grid->entries()[0].aFill, 4000.2, 1e-9);
    ASSERT_EQ(host.sent.size(), 3u);  // buy B at 4005.0 - 5
    EXPECT_EQ(host.sent[2].nDirection, kDirBuy);
    EXPECT_EQ(host.sent[2].dPrice, 4000.0);
    EXPECT_EQ(host.sent[2].nOpenClose, kClose);
    EXPECT_NE(host.sent[2].strRemark.find("|txb|"), std::string::npos);
    report(2, kOrderFilled, 4000.0);
    report(3, kOrderFilled, 4004.8);
    EXPECT_EQ(host.sent[3].nDirection, kDirSell);
    EXPECT_TRUE(grid->entries().empty());
    EXPECT_EQ(grid->closedCount(), 1);
    EXPECT_TRUE(prompter.boxes.empty());
}

TEST_F(GridRig, RestingBFollowsTheMarketOnlyBeyondTheThreshold) {
    ASSERT_TRUE(grid->start());
    report(0, kOrderQueued);
    grid->timerPass();
    quote("A1", 3999.8, 4000.0);  // same price: kept
    EXPECT_TRUE(host.callsStartingWith("DeleteOrder").empty());
    quote("A1", 4000.0, 4000.2);  // one tick: pulled, then placed anew once cancelled
    EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), 1u);
    report(0, kOrderCancelled);
    ASSERT_EQ(host.sent.size(), 2u);
    EXPECT_NEAR(host.sent[1].dPrice, 4000.2, 1e-9);
    EXPECT_NE(host.sent[1].strRemark, host.sent[0].strRemark);
}

TEST_F(GridRig, AHostThatRefusesIsAskedLessAndLessOften) {
    host.sendOrderResult = 0;
    ASSERT_TRUE(grid->start());
    // Milliseconds since the start, and the orders sent by then: waits of 1 s, 2 s, 4 s.
    const std::pair<int, std::size_t> steps[] = {{999, 1},  {1000, 2}, {2999, 2},
                                                 {3000, 3}, {6999, 3}, {7000, 4}};
    int at = 0;
    for (const auto& [ms, sent] : steps) {
        clock.advanceMs(ms - at);
        at = ms;
        grid->timerPass();
        EXPECT_EQ(host.sent.size(), sent) << ms;
    }
    EXPECT_EQ(openState(), 0);
}

TEST_F(GridRig, StartRefusesWithItsReason) {
    struct Case {
        const char* what;
        void (*change)(GridsSpreadSettings&);
        const char* message;
    } cases[] = {
        {"account B not logged on", [](GridsSpreadSettings& s) { s.strAccountID2 = "770001"; },
         "请先登录交易帐户！"},
        {"every lots", [](GridsSpreadSettings& s) { s.nEveryLots = 0; },
         "单笔数量和最大仓位必须大于等于1，请重新设置数量！"},
        {"edge", [](GridsSpreadSettings& s) { s.nMonitorEdge = 0; },
         "监控边界和撤单阈值必须大于等于1，请重新设置数量！"},
    };
    for (const Case& c : cases) {
        GridsSpreadSettings s = baseSettings();
        c.change(s);
        ASSERT_TRUE(grid->setSettings(s));
        EXPECT_FALSE(grid->start()) << c.what;
        EXPECT_EQ(prompter.lastText(), c.message) << c.what;
        EXPECT_FALSE(grid->running()) << c.what;
    }
    EXPECT_TRUE(host.sent.empty());
}

TEST_F(GridRig, PauseInEveryState) {
    struct Case {
        int state;
        bool paused;
        int after;  // the opening pair's state after the request
    } cases[] = {{0, true, 0},  {1, false, 1}, {2, true, 3},  {3, false, 3},
                 {4, false, 4}, {5, true, 5},  {99, true, 99}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.state);
        host.sent.clear();
        host.calls.clear();
        grid = std::make_unique<CGridsSpread>(manager);
        grid->setSettings(baseSettings());
        driveTo(c.state);
        ASSERT_EQ(openState(), c.state);
        prompter.boxes.clear();
        host.calls.clear();
        EXPECT_EQ(grid->pause(), c.paused);
        EXPECT_EQ(grid->running(), !c.paused);
        EXPECT_EQ(openState(), c.after);
        EXPECT_EQ(prompter.lastText(), c.paused ? "" : "正处于中间状态，不能暂停，请稍候重试！");
        // Only the resting B is cancelled; a cancel that loses the race still books the fill.
        EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), c.state == 2 ? 1u : 0u);
    }
}

TEST_F(GridRig, APartlyFilledBIsLeftToFillAndHoldsThePause) {
    grid->setSettings([] {
        GridsSpreadSettings s = baseSettings();
        s.nEveryLots = 2;
        return s;
    }());
    driveTo(2);
    tagBrokerOrder part = host.sent[0];
    part.nStatus = kOrderPartFilled;
    part.dFilledVolume = 1;
    grid->onOrder(kEventOrderChanged, &part);
    quote("A1", 4000.0, 4000.4);  // two ticks away: a whole order would be pulled
    EXPECT_TRUE(host.callsStartingWith("DeleteOrder").empty());
    EXPECT_FALSE(grid->pause());
    report(0, kOrderFilled, 4000.0);
    EXPECT_EQ(openState(), 5);
    EXPECT_EQ(host.sent[1].dVolume, 2);
}

TEST_F(GridRig, PausedRobotStillHitsAForAFillThatBeatTheCancel) {
    driveTo(2);
    ASSERT_TRUE(grid->pause());
    report(0, kOrderFilled, 4000.0);
    EXPECT_EQ(openState(), 5);
    report(1, kOrderFilled, 4000.2);
    EXPECT_EQ(grid->entries().size(), 1u);
    EXPECT_EQ(host.sent.size(), 2u);  // and nothing new while paused
}

TEST_F(GridRig, RejectedAParksThePairUntilTheTraderSetsThePosition) {
    driveTo(99);
    EXPECT_EQ(prompter.lastText(), "开仓商品A委托失败，请手动处理，补齐头寸！");
    EXPECT_EQ(grid->pairStatus(true), "出错，请手工很处理");
    quote("A1", 3999.6, 3999.8);
    EXPECT_EQ(host.sent.size(), 2u);

    EXPECT_TRUE(grid->overridePosition(2));
    EXPECT_EQ(prompter.lastText(), "您手工修改了持仓的头寸，将按您输入的参数设置！");
    EXPECT_EQ(grid->entries().size(), 2u);
    EXPECT_EQ(openState(), 0);
    EXPECT_TRUE(grid->overridePosition(1));
    EXPECT_EQ(grid->entries().size(), 1u);
    EXPECT_FALSE(grid->overridePosition(-1));
}

TEST_F(GridRig, ClosingWhileRunningAsksAndPullsTheRestingB) {
    driveTo(2);
    prompter.answers = {false, true};
    EXPECT_FALSE(grid->requestClose());
    EXPECT_EQ(prompter.lastText(), "关闭窗体将会终止价差格的运行，您确认要退出？");
    EXPECT_TRUE(grid->running());
    EXPECT_TRUE(grid->requestClose());
    EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), 1u);
    tagBrokerOrder r = host.sent[0];
    EXPECT_EQ(grid->onOrder(kEventOrderChanged, &r), -1);
}

TEST_F(GridRig, AQuoteDeliveredTwiceFeedsTheFilterOnce) {
    ASSERT_TRUE(grid->start());
    const auto first = tick("A1", 3999.8, 4000.0, 120, 50);
    const auto second = tick("A1", 3999.8, 4000.0, 130, 51);
    manager.registerWindow(grid->handle());
    for (const auto* t : {&first, &second, &second})
        manager.dataChange(kEventQuote, reinterpret_cast<std::uintptr_t>(t));
    EXPECT_EQ(grid->filter().size(), 1u);
}

TEST(GridSettings, ProfileSectionAndTemplateKeepEveryField) {
    GridsSpreadSettings s = baseSettings();
    s.bLong = 0;
    s.dFirstGrid = -12.5;
    s.dGridInterval = 0.1;
    s.nFilterOffset = -3;
    CProfileIni ini;
    writeGridsSpreadSettings(ini, s);
    EXPECT_EQ(ini.getString("GridsSpread", "dGridInterval"), "0.1");
    EXPECT_EQ(readGridsSpreadSettings(ini), s);
    EXPECT_EQ(readGridsSpreadSettings(CProfileIni()), GridsSpreadSettings{});

    s.strName = "日内";
    const std::string bytes = composeTemplateFile(std::vector{s}, "QXGS_1.1");
    TemplateLoadInfo info;
    const auto list = parseTemplateFile<GridsSpreadSettings>(bytes, "QXGS_1.1", &info);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_TRUE(info.exact);
    GridsSpreadSettings current = baseSettings();
    current.strAccountID1 = "mine";
    applyGridsTemplate(current, list[0]);
    EXPECT_EQ(current.strAccountID1, "mine");  // accounts are not part of a template
    EXPECT_EQ(current.dFirstGrid, -12.5);
    EXPECT_EQ(current.strName, "日内");
    // Name, two instruments, six int32, three float64, five int32.
    EXPECT_EQ(bytes.size(), 9u + 4 + (1 + 4) + (2 + 3) + (2 + 3) + 6 * 4 + 3 * 8 + 5 * 4);
}

}  // namespace
