// The ladder robot's core against a scripted host: the ladder's arithmetic as tables, then
// its decisions and leg transitions one notification at a time.
#include "robots/blader.h"

#include <gtest/gtest.h>

#include <memory>

#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "robots/order_tag.h"
#include "spread/template_store.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/recording_journal.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

namespace {

TEST(BladerLadder, PricesEntriesAndClosesOnTheTick) {
    struct Row {
        bool isLong;
        int grid, win, minMove;
        float unit;
        double base;
        int k;  // entry k opens; with k + 1 held, the newest (entry k) closes
        double open, close;
    };
    const Row rows[] = {
        {true, 5, 5, 1, 0.2f, 5000.0, 0, 5000.0, 5001.0},
        {true, 5, 5, 1, 0.2f, 5000.0, 1, 4999.0, 5000.0},
        {false, 5, 5, 1, 0.2f, 5000.0, 1, 5001.0, 5000.0},
        // Off the tick: buying prices round up, selling prices down.
        {true, 5, 5, 1, 0.2f, 5000.1, 1, 4999.2, 5000.0},
        {false, 5, 5, 1, 0.2f, 5000.1, 1, 5001.0, 5000.2},
        {true, 3, 7, 1, 1.0f, 3700.0, 2, 3694.0, 3701.0},
        {false, 2, 1, 2, 0.5f, 100.5, 1, 102.0, 102.0},  // a point of two half units
    };
    for (const Row& r : rows) {
        const blader::Ladder l{r.isLong, r.grid, r.win, r.minMove, r.unit};
        EXPECT_DOUBLE_EQ(l.openPrice(r.base, r.k), r.open) << r.base << " k=" << r.k;
        EXPECT_DOUBLE_EQ(l.closePrice(r.base, r.k + 1), r.close) << r.base << " k=" << r.k;
    }
}

TEST(BladerLadder, GuardBandIsTwentyTicksFromEitherLimit) {
    const blader::Ladder l{true, 5, 5, 1, 0.2f};
    struct Row {
        double last, lower, upper;
        bool near;
    };
    const Row rows[] = {
        {5496.0, 4500, 5500, false}, {5496.2, 4500, 5500, true}, {4504.2, 4500, 5500, false},
        {4504.0, 4500, 5500, true},  {5000.0, 0, 0, true},  // no limits known: no entry
    };
    for (const Row& r : rows) EXPECT_EQ(l.nearLimit(r.last, r.upper, r.lower), r.near) << r.last;
}

const tagSymbol kIF{3, "IF2101"};

struct Rig : testing::Test {
    FakeHost host;
    ManualClock clock{1'600'000'000'000};
    ScriptedPrompter prompter;
    RecordingJournal journal;
    CHelmsmanManage manager;
    std::unique_ptr<CBlader> robot;

    Rig() {
        host.accounts = {FakeHost::account("880001", "9999", "one")};
        host.details["IF2101"] = contractDetail(0.2f, 1, 300);
        host.quotes["IF2101"] = tick(5000.0, 4999.8, 5000.2);
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.setJournal(&journal);
        manager.init(1, &host, "/nonexistent-helmsman-blader", "demo", 0);
        robot = std::make_unique<CBlader>(manager);
        robot->setSetting(setting(true));
    }
    static tagBladerSetting setting(bool isLong, int timeExit = 300) {
        tagBladerSetting s;
        s.wExchangeID = 3;
        s.szSymbolCode = "IF2101";
        s.bLong = isLong;
        s.nTimeExit = timeExit;
        return s;
    }
    static IModuleFutureTrader::ITickEx tick(double last, double bid, double ask) {
        return TickBuilder(3, "IF2101").last(last).bid(bid, 5).ask(ask, 5).limits(4500, 5500);
    }
    void quote(double last, double bid, double ask) {
        IModuleFutureTrader::ITickEx q = tick(last, bid, ask);
        q.tQuoteTime = clock.nowMs();
        robot->onQuote(q);
    }
    // The host tells the robot that order i (in sending order) is now `status`.
    int notify(std::size_t i, int status) {
        tagBrokerOrder o = host.sent.at(i);
        o.nStatus = status;
        for (auto& known : host.orders)
            if (known.strOrderID == o.strOrderID) known.nStatus = status;
        return robot->onOrder(&o);
    }
    int deletes() const {
        int n = 0;
        for (const auto& c : host.calls) n += c.starts_with("DeleteOrder");
        return n;
    }
    void startRunning() {
        ASSERT_TRUE(robot->start());
        ASSERT_EQ(host.sent.size(), 1u);
    }
};

struct Sent {
    int direction, openClose;
    double price;
};
void expectSent(const FakeHost& host, std::size_t from, std::initializer_list<Sent> want) {
    ASSERT_EQ(host.sent.size(), from + want.size());
    std::size_t i = from;
    for (const Sent& w : want) {
        const tagBrokerOrder& o = host.sent[i++];
        EXPECT_EQ(o.nDirection, w.direction) << "order " << i - 1;
        EXPECT_EQ(o.nOpenClose, w.openClose) << "order " << i - 1;
        EXPECT_DOUBLE_EQ(o.dPrice, w.price) << "order " << i - 1;
        EXPECT_EQ(o.dVolume, 1);
    }
}

TEST_F(Rig, LongLadderOfTwoFollowsItsFillsAndRepricesTheRestingClose) {
    startRunning();
    expectSent(host, 0, {{kDirBuy, kOpen, 5000.0}});  // at the last price, not the ask
    EXPECT_EQ(robot->openLeg().state(), 1);
    EXPECT_EQ(parseOrderTag(host.sent[0].strRemark)->prefix, TagPrefix::Blader);

    notify(0, kOrderQueued);
    EXPECT_EQ(robot->openStatus(), "买入开仓委托已报(5000/0)");
    notify(0, kOrderFilled);
    EXPECT_EQ(robot->held(), 1);
    EXPECT_EQ(robot->openLeg().state(), 1);  // the next rung is already on its way
    // The close of entry 1 at +5 ticks, and entry 2 five ticks under the base.
    expectSent(host, 1, {{kDirSell, kClose, 5001.0}, {kDirBuy, kOpen, 4999.0}});
    EXPECT_EQ(parseOrderTag(host.sent[1].strRemark)->leg, "tx");
    EXPECT_EQ(parseOrderTag(host.sent[2].strRemark)->prefix, TagPrefix::Dollar);

    notify(1, kOrderQueued);
    notify(2, kOrderQueued);
    notify(2, kOrderFilled);  // entry 2: the resting close no longer closes the newest
    EXPECT_EQ(robot->held(), 2);
    EXPECT_EQ(robot->closeLeg().state(), 7);
    EXPECT_EQ(deletes(), 1);
    EXPECT_EQ(host.sent.size(), 3u);  // no third entry
    notify(1, kOrderCancelled);
    expectSent(host, 3, {{kDirSell, kClose, 5000.0}});

    notify(3, kOrderFilled);  // entry 2 closed: entry 1's close and entry 2 again
    EXPECT_EQ(robot->held(), 1);
    expectSent(host, 4, {{kDirSell, kClose, 5001.0}, {kDirBuy, kOpen, 4999.0}});
    EXPECT_EQ(robot->totals(), "合计:2(1)");
    EXPECT_TRUE(prompter.boxes.empty());
}

TEST_F(Rig, ShortLadderMirrorsTheLongOne) {
    robot->setSetting(setting(false));
    startRunning();
    notify(0, kOrderFilled);
    expectSent(host, 0,
               {{kDirSell, kOpen, 5000.0}, {kDirBuy, kClose, 4999.0}, {kDirSell, kOpen, 5001.0}});
}

TEST_F(Rig, ClosesAsTodaysPositionWhereTheAccountHoldsOne) {
    tagOpenedPosition p;
    p.strAccountID = "880001";
    p.strBrokerID = "9999";
    p.strCode = "IF2101";
    p.dLong = p.dLongToday = 1;
    host.positions = {p};
    startRunning();
    notify(0, kOrderFilled);
    EXPECT_EQ(host.sent.at(1).nOpenClose, kCloseToday);
}

TEST_F(Rig, NearALimitNoEntryOpensWhileClosingGoesOn) {
    host.quotes["IF2101"] = tick(5496.2, 5496.0, 5496.4);
    robot = std::make_unique<CBlader>(manager);
    robot->setSetting(setting(true));
    ASSERT_TRUE(robot->start());
    EXPECT_TRUE(host.sent.empty());

    robot->setPosition(1);  // the trader says one entry is held
    EXPECT_EQ(prompter.lastText(), "您手工修改了持仓的头寸，将按您输入的参数设置！");
    EXPECT_DOUBLE_EQ(robot->basePrice(), 5496.2);
    expectSent(host, 0, {{kDirSell, kClose, 5497.2}});
    quote(5496.0, 5495.8, 5496.2);  // back outside the band
    expectSent(host, 1, {{kDirBuy, kOpen, 5495.2}});
}

TEST_F(Rig, TimeUpClosesAtTheQuoteFollowsItAndStops) {
    startRunning();
    notify(0, kOrderFilled);
    notify(1, kOrderQueued);  // close resting at 5001.0
    notify(2, kOrderQueued);  // entry 2 resting at 4999.0
    clock.advanceMs(12'300);
    EXPECT_EQ(robot->caption(), "顺势锤[时间:12(秒)]");

    clock.advanceMs(300'000);
    robot->timerStep();
    EXPECT_TRUE(robot->timeUp());
    EXPECT_EQ(deletes(), 2);  // both resting orders go
    notify(2, kOrderCancelled);
    notify(1, kOrderCancelled);
    expectSent(host, 3, {{kDirSell, kClose, 4997.8}});  // 10 ticks under the bid, no entry
    notify(3, kOrderQueued);
    quote(4998.0, 4997.8, 4998.2);  // still reaches the bid
    EXPECT_EQ(robot->closeLeg().state(), 6);
    quote(4996.0, 4995.8, 4996.2);  // the bid has run past it
    EXPECT_EQ(robot->closeLeg().state(), 7);
    notify(3, kOrderCancelled);
    expectSent(host, 4, {{kDirSell, kClose, 4993.8}});
    notify(4, kOrderFilled);

    EXPECT_EQ(robot->held(), 0);
    EXPECT_FALSE(robot->running());
    EXPECT_EQ(robot->openStatus(), "出错或时间到");
    EXPECT_EQ(robot->closeStatus(), "出错或时间到");
    EXPECT_EQ(robot->caption(), "顺势锤[时间:N/A]");
    ASSERT_TRUE(robot->start());  // a fresh ladder
    EXPECT_EQ(robot->openLeg().state(), 1);
    EXPECT_EQ(journal.entries[3].reason, "持仓时间到，第1笔按对价平仓");
}

TEST_F(Rig, RefusedOrdersWaitLongerAndLongerBeforeTheNextTry) {
    host.sendOrderResult = 0;
    ASSERT_TRUE(robot->start());
    ASSERT_EQ(robot->openLeg().state(), 0);
    struct Row {
        int advanceMs;
        std::size_t sentSoFar;
    };
    const Row rows[] = {{999, 1}, {1, 2}, {1999, 2}, {1, 3}, {3999, 3}, {1, 4}};
    for (const Row& r : rows) {
        clock.advanceMs(r.advanceMs);
        robot->timerStep();
        EXPECT_EQ(host.sent.size(), r.sentSoFar) << "after " << r.advanceMs;
    }
    host.sendOrderResult = 1;  // taken: the waiting is over
    clock.advanceMs(8000);
    robot->timerStep();
    notify(4, kOrderQueued);
    notify(4, kOrderCancelled);
    robot->timerStep();
    EXPECT_EQ(host.sent.size(), 6u);
}

TEST_F(Rig, PauseWaitsForTheExchangeThenLetsGoButStillBooksALateFill) {
    startRunning();
    EXPECT_FALSE(robot->pause());
    EXPECT_EQ(prompter.lastText(), "委托状态正在变化，请稍后再暂停！");
    EXPECT_TRUE(robot->running());

    notify(0, kOrderQueued);
    ASSERT_TRUE(robot->pause());
    EXPECT_FALSE(robot->running());
    EXPECT_EQ(robot->openLeg().state(), 0);
    EXPECT_TRUE(robot->openLeg().tag().empty());
    EXPECT_EQ(deletes(), 1);

    EXPECT_EQ(notify(0, kOrderFilled), 1);  // the fill beat the cancel
    notify(0, kOrderFilled);                // and is heard twice
    EXPECT_EQ(robot->held(), 1);
    EXPECT_EQ(host.sent.size(), 1u);  // paused: nothing sent
}

TEST_F(Rig, StartNeedsALoggedOnAccountAndAKnownInstrument) {
    host.accounts.clear();
    EXPECT_FALSE(robot->start());
    EXPECT_EQ(prompter.lastText(), "请先登录交易帐户！");
    host.accounts = {FakeHost::account("880001", "9999", "one")};
    tagBladerSetting s = setting(true);
    s.szSymbolCode = "XX9999";
    robot->setSetting(s);
    EXPECT_FALSE(robot->start());
    EXPECT_EQ(prompter.lastText(), "请先选择有效的交易商品！");
    EXPECT_TRUE(host.sent.empty());
}

TEST_F(Rig, EveryOrderIsJournalledWithItsRung) {
    startRunning();
    notify(0, kOrderFilled);
    ASSERT_EQ(journal.entries.size(), 3u);
    const JournalEntry& e = journal.entries[2];
    EXPECT_EQ(e.tool, "顺势锤");
    EXPECT_EQ(e.reason, "开仓第2笔");
    EXPECT_EQ(e.tag, host.sent[2].strRemark);
    EXPECT_EQ(e.order.strOrderID, host.sent[2].strOrderID);
    EXPECT_EQ(e.result, 1);
    EXPECT_DOUBLE_EQ(journal.figure(2, "entry"), 2);
    EXPECT_DOUBLE_EQ(journal.figure(2, "base"), 5000.0);
    EXPECT_DOUBLE_EQ(journal.figure(2, "grid"), 1.0);
    EXPECT_DOUBLE_EQ(journal.figure(2, "target"), 4999.0);
    EXPECT_EQ(journal.entries[1].reason, "第1笔止盈平仓");
}

TEST(BladerSetting, TemplateFileAndDefaultTemplateKeepEveryField) {
    TempDir dir;
    tagBladerSetting s;
    s.strName = "螺纹";
    s.wExchangeID = 0;
    s.szSymbolCode = "rb2105";
    s.bLong = 0;
    s.nMaxPos = 4;
    s.nGridInterval = 3;
    s.nWinPoint = 7;
    s.nTimeExit = 0;
    CTemplateStore<tagBladerSetting> store(dir.string(), template_files::kBlader);
    store.save({s});
    const std::string bytes = readFileBytes(dir / "blader.dat");
    // Magic, count, name (GBK), exchange, code, five int32.
    EXPECT_EQ(bytes.substr(0, 9), std::string("\x08QXBT_1.0", 9));
    EXPECT_EQ(bytes.size(), 9u + 4 + 1 + 4 + 2 + 1 + 6 + 5 * 4);
    EXPECT_EQ(store.load(), std::vector<tagBladerSetting>{s});

    CProfileIni ini(dir / "Profile.ini");
    EXPECT_EQ(loadBladerDefault(ini), tagBladerSetting{});
    writeBladerDefault(ini, s);
    ini.save();
    tagBladerSetting back = loadBladerDefault(CProfileIni(dir / "Profile.ini"));
    EXPECT_TRUE(back.strName.empty());
    back.strName = s.strName;
    EXPECT_EQ(back, s);
}

}  // namespace
