// Who records what: the manager records what it sends on a tool's behalf, once, and leaves
// alone what a tool records itself; a fired local trigger, through the real trigger core,
// lands in the SQLite journal with its reason in words and numbers.
#include "journal/sqlite_order_journal.h"
#include "support/recording_journal.h"
#include "trigger/trigger_fixture.h"

using namespace trigtest;

namespace {

tagBrokerOrder order(double volume) {
    tagBrokerOrder o = brokerOrder("880001", "IF2101", kDirBuy, volume, 5228.2);
    o.nExchangeID = 3;
    return o;
}

class ManagerJournalTest : public TriggerTest {
protected:
    ManagerJournalTest() { manager.setJournal(&journal); }
    ~ManagerJournalTest() override { manager.setJournal(nullptr); }
    RecordingJournal journal;
};

TEST_F(ManagerJournalTest, RecordsWhatItSendsForATool) {
    tagAlgoSetting algo;
    algo.nBaseLine = 10;
    const struct {
        const char* name;
        bool confirm, accept, algoOn;
        double volume;
        JournalRecorder recorder;
        std::vector<std::string> reasons;
    } cases[] = {
        {"direct", false, true, false, 1, JournalRecorder::Manager, {"直接发出"}},
        {"confirmed", true, true, false, 1, JournalRecorder::Manager, {"经下单确认后发出"}},
        {"cancelled", true, false, false, 1, JournalRecorder::Manager, {}},
        {"toAlgo", false, true, true, 20, JournalRecorder::Manager, {"交给算法执行"}},
        {"confirmedToAlgo", true, true, true, 20, JournalRecorder::Manager, {"经下单确认后交给算法执行"}},
        {"toolRecordsItself", false, true, false, 1, JournalRecorder::Caller, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        journal.entries.clear();
        ui.acceptConfirm = c.accept;
        manager.setAlgoTrading(c.algoOn);
        tagBrokerOrder o = order(c.volume);
        const int r = manager.submitOrder(o, c.confirm, "舵手", &algo, c.recorder);
        std::vector<std::string> reasons;
        for (const auto& e : journal.entries) {
            reasons.push_back(e.reason);
            EXPECT_EQ(e.tool, "舵手");
            EXPECT_EQ(e.tag, "舵手");  // the empty remark became the caller's name
            EXPECT_EQ(e.timeMs, clock.nowMs());
            EXPECT_EQ(e.result, r);
            EXPECT_EQ(e.order.dVolume, c.volume);
        }
        EXPECT_EQ(reasons, c.reasons);
    }

    // A batch: one entry per order, under the caller's name; the change of an order names
    // itself; a refused order is recorded with the host's answer.
    journal.entries.clear();
    manager.setAlgoTrading(false);
    std::vector<tagBrokerOrder> batch{order(1), order(2)};
    manager.submitBatch(batch, false, "多帐户批量下单", nullptr);
    host.sendOrderResult = 0;
    tagBrokerOrder replacement = order(3);
    replacement.strRemark = "h|65537|te|9";
    manager.sendOrder(replacement, nullptr, {"改单"});
    ASSERT_EQ(journal.entries.size(), 3u);
    EXPECT_EQ(journal.entries[1].tool, "多帐户批量下单");
    EXPECT_EQ(journal.entries[1].order.dVolume, 2);
    EXPECT_EQ(journal.entries[2].tool, "改单");
    EXPECT_EQ(journal.entries[2].tag, "h|65537|te|9");
    EXPECT_EQ(journal.entries[2].result, 0);
}

class FiredTriggerTest : public TriggerTest {
protected:
    FiredTriggerTest() {
        journal = SqliteOrderJournal::open(root / "journal.db", nullptr);
        manager.setJournal(journal.get());
    }
    ~FiredTriggerTest() override { manager.setJournal(nullptr); }
    std::unique_ptr<SqliteOrderJournal> journal;
};

TEST_F(FiredTriggerTest, IsRecordedOnceWithTheCrossingInWordsAndNumbers) {
    const struct {
        const char* name;
        int hh, mm, type;
        double triggerPrice, price, last, preOpen;
        const char* reason;
    } cases[] = {
        {"limitBuyChaseBeforeOpen", 9, 12, kTriggerBuyChase, 5228, 5229.2, 0, 5228.6,
         "追买：集合竞价价5228.6涨到或涨破触发价5228.0"},
        {"marketBuyDip", 10, 0, kTriggerBuyDip, 5228, 0, 5227.8, 0,
         "吊买：最新价5227.8跌到或跌破触发价5228.0，市价按对手价5228.4发出"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        at(c.hh, c.mm, 0);
        const std::size_t before = centre->size();
        ASSERT_TRUE(centre->addTrigger(trigger(3, "IF2101", kDirBuy, c.type, c.triggerPrice, c.price, 2)));
        IModuleFutureTrader::ITickEx q = TickBuilder(3, "IF2101").bid(5228.2, 3).ask(5228.4, 4).last(c.last);
        q.dPreOpenPrice1 = c.preOpen;
        quote(q);
        centre->step();
        ASSERT_EQ(centre->record(before).trigger.nStatus, kOrderFilled);

        const auto rows = journal->query({}, 10);
        ASSERT_EQ(rows.size(), before + 1);  // the manager did not record it a second time
        const JournalEntry& e = rows[0].entry;
        EXPECT_EQ(e.timeMs, clock.nowMs());
        EXPECT_EQ(e.tool, "本地触发");
        EXPECT_EQ(e.window, "本地触发单中心");
        EXPECT_EQ(e.tag, "本地触发单");
        EXPECT_EQ(e.result, 1);
        EXPECT_EQ(e.reason, c.reason);
        EXPECT_EQ(e.order.strOrderID, host.sent.back().strOrderID);
        EXPECT_EQ(e.order.dVolume, 2);
        ASSERT_EQ(e.figures.size(), 4u);
        const double watched = c.last > 0 ? c.last : c.preOpen;
        const std::pair<const char*, double> figures[] = {
            {"观察价", watched}, {"触发价", 5228}, {"买一价", 5228.2}, {"卖一价", 5228.4}};
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(e.figures[i].name, figures[i].first);
            EXPECT_EQ(e.figures[i].value, figures[i].second);
        }
    }
}

}  // namespace
