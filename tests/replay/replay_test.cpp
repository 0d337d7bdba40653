// The replay runner end to end: a short hand-made day whose result is worked out by hand, the
// journal of what fired, malformed lines, refused settings, and byte-identical outputs.
#include <gtest/gtest.h>

#include <cstdlib>

#include "host/gbk_codec.h"
#include "replay/recording_journal.h"
#include "replay/replay_output.h"
#include "replay/replay_runner.h"
#include "support/temp_dir.h"
#include "support/data_dir.h"

namespace {

constexpr const char* kHeader =
    "date,time,last,bid,bid_vol,ask,ask_vol,volume,turnover,open_interest,open,high,low,"
    "upper_limit,lower_limit,pre_close,pre_settle,settle\n";

std::string tick(const char* time, double last, double bid, double ask) {
    char buf[200];
    std::snprintf(buf, sizeof buf, "20210104,%s,%.1f,%.1f,5,%.1f,5,0,0,0,0,0,0,0,0,0,0,0\n", time,
                  last, bid, ask);
    return buf;
}

// Ticks one second apart from 10:00:00: the centre's 600 ms timer first sees a tick at
// 00.600 (10:00:00's), then at 01.200 (10:00:01's) and at 03.000, the same moment as a tick.
const std::string kDay = std::string(kHeader) + tick("10:00:00.000", 5000.0, 4999.8, 5000.0) +
                         tick("10:00:01.000", 4990.0, 4989.8, 4990.0) +
                         tick("10:00:02.000", 4980.0, 4979.8, 4980.0) +
                         tick("10:00:03.000", 5010.0, 5009.8, 5010.2) +
                         tick("10:00:04.000", 5020.0, 5019.8, 5020.2);

// Buy one at market when the last is at or below 4990; sell it back at or above 5010.
const std::string kTwoTriggers =
    "[LocalTrigger]\r\nTrigger1=IF2101,买,吊买,4990,0,1\r\nTrigger2=IF2101,卖,吊卖,5010,0,1,平仓\r\n";

struct Replayed {
    replay::RecordingJournal journal;
    replay::ReplayResult result;
    std::string error;
    bool prepared = false;
};

void replayFiles(Replayed& run, const TempDir& dir, std::vector<std::string> files,
                 const std::string& settingsUtf8) {
    writeFileBytes(dir / "settings.ini", gbk::fromUtf8(settingsUtf8));
    replay::ReplayOptions o;
    o.tickFiles = std::move(files);
    o.tool = "LocalTrigger";
    o.settingsFile = (dir / "settings.ini").string();
    replay::ReplayRunner runner(o, &run.journal);
    run.prepared = runner.prepare(run.error);
    if (run.prepared) run.result = runner.run();
}

void replayText(Replayed& run, const TempDir& dir, const std::string& ticks,
                const std::string& settingsUtf8) {
    writeFileBytes(dir / "IF2101_20210104.csv", ticks);
    replayFiles(run, dir, {(dir / "IF2101_20210104.csv").string()}, settingsUtf8);
}

std::filesystem::path dataDir() { return testdata::dataDir(); }

}  // namespace

TEST(Replay, ResultOfAShortDayIsTheOneWorkedOutByHand) {
    TempDir dir("replay");
    Replayed run;
    replayText(run, dir, kDay, kTwoTriggers);
    ASSERT_TRUE(run.prepared) << run.error;
    const auto& r = run.result;
    ASSERT_EQ(r.fills.size(), 2u);
    // At market: the buy takes the ask of the quote that fired it, the sell the bid.
    EXPECT_DOUBLE_EQ(r.fills[0].dPrice, 4990.0);
    EXPECT_DOUBLE_EQ(r.fills[1].dPrice, 5009.8);
    EXPECT_EQ(r.orders.size(), 2u);
    EXPECT_EQ(r.roundTrips, 1u);
    EXPECT_DOUBLE_EQ(r.maxPosition, 1);
    // (5009.8 - 4990.0) x 300; commission 0.000023 of the traded value, both fills.
    EXPECT_NEAR(r.grossPnl, 5940.0, 1e-6);
    EXPECT_NEAR(r.commission, 0.000023 * 300 * (4990.0 + 5009.8), 1e-6);
    EXPECT_NEAR(r.netPnl, 5940.0 - 0.000023 * 300 * (4990.0 + 5009.8), 1e-6);
    // The low of the way: held at 4980 after paying the buy's commission.
    EXPECT_NEAR(r.maxDrawdown, 10 * 300 + 0.000023 * 300 * 4990.0, 1e-6);
    EXPECT_NE(replay::summaryText(r, {}).find("净盈亏: 5871.00\n"), std::string::npos);
}

TEST(Replay, JournalHoldsEachFiredTriggerWithItsCrossing) {
    TempDir dir("replay");
    Replayed run;
    replayText(run, dir, kDay, kTwoTriggers);
    ASSERT_TRUE(run.prepared) << run.error;
    const auto& entries = run.journal.entries();
    ASSERT_EQ(entries.size(), 2u);
    struct Expect {
        const char* time;  // the timer pass that fired it
        int direction;
        double price, watched, trigger;
    } const want[] = {{"10:00:01.200", kDirBuy, 4990.0, 4990.0, 4990.0},
                      {"10:00:03.000", kDirSell, 5009.8, 5010.0, 5010.0}};
    const std::string csv = replay::journalCsv(run.result, entries);
    for (std::size_t i = 0; i < 2; ++i) {
        SCOPED_TRACE(i);
        const JournalEntry& e = entries[i];
        EXPECT_FALSE(e.tool.empty());
        EXPECT_FALSE(e.reason.empty());
        EXPECT_EQ(e.result, 1);
        EXPECT_EQ(e.order.strCode, "IF2101");
        EXPECT_EQ(e.order.nDirection, want[i].direction);
        EXPECT_DOUBLE_EQ(e.order.dPrice, want[i].price);
        EXPECT_FALSE(e.order.strOrderID.empty());
        EXPECT_NE(csv.find(std::string("2021-01-04 ") + want[i].time), std::string::npos);
        // The numbers behind it: the watched price and the trigger price it crossed.
        auto hasFigure = [&](double v) {
            for (const auto& f : e.figures)
                if (f.value == v) return true;
            return false;
        };
        EXPECT_TRUE(hasFigure(want[i].watched));
        EXPECT_TRUE(hasFigure(want[i].trigger));
    }
}

TEST(Replay, MalformedLinesAreSkippedAndCounted) {
    TempDir dir("replay");
    Replayed run;
    const std::string ticks = kDay + "20210104,10:00:05.000,5020.0,oops\n" +
                              "20210231,10:00:06.000,5020.0,5019.8,5,5020.2,5,0,0,0,0,0,0,0,0,0,0,0\n" +
                              tick("10:00:07.000", 5021.0, 5020.8, 5021.2);
    replayText(run, dir, ticks, kTwoTriggers);
    ASSERT_TRUE(run.prepared) << run.error;
    EXPECT_EQ(run.result.ticks, 6u);
    EXPECT_EQ(run.result.skippedLines, 2u);
    ASSERT_EQ(run.result.fileNotes.size(), 1u);
    EXPECT_NE(run.result.fileNotes[0].find("2 lines skipped"), std::string::npos);
    EXPECT_EQ(run.result.fills.size(), 2u);  // the good lines still trade
}

TEST(Replay, RefusesWhatItCannotRun) {
    struct Case {
        const char* what;
        std::string ticks;
        std::string settings;
        const char* error;  // a part of the reason given
    } const cases[] = {
        {"no usable tick", std::string(kHeader) + "x\n", kTwoTriggers, "no usable tick"},
        {"no trigger line", kDay, "[LocalTrigger]\r\nnShowType=1\r\n", "no Trigger1"},
        {"instrument not replayed", kDay, "[LocalTrigger]\r\nTrigger1=rb2105,买,吊买,4000,0,1\r\n",
         "Trigger1: instrument rb2105 is not replayed"},
        {"direction", kDay, "[LocalTrigger]\r\nTrigger1=IF2101,多,吊买,4990,0,1\r\n",
         "bad direction"},
        {"type", kDay, "[LocalTrigger]\r\nTrigger1=IF2101,买,4,4990,0,1\r\n", "bad trigger type"},
        {"volume", kDay, "[LocalTrigger]\r\nTrigger1=IF2101,买,吊买,4990,0,0\r\n", "bad volume"},
        {"expiry", kDay, "[LocalTrigger]\r\nTrigger1=IF2101,买,吊买,4990,0,1,开仓,25:00:00\r\n",
         "bad expiry"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        TempDir dir("replay");
        Replayed run;
        replayText(run, dir, c.ticks, c.settings);
        EXPECT_FALSE(run.prepared);
        EXPECT_NE(run.error.find(c.error), std::string::npos) << run.error;
    }
}

TEST(Replay, SameInputsGiveTheSameBytes) {
    const auto file = dataDir() / "ticks" / "IF2101_20210104.csv";
    ASSERT_TRUE(std::filesystem::exists(file)) << testdata::missing(file);
    const std::string settings =
        "[LocalTrigger]\r\nTrigger1=IF2101,买,吊买,5200,0,1\r\nTrigger2=IF2101,卖,吊卖,5290,0,1,平仓\r\n";
    std::string outputs[2];
    for (auto& out : outputs) {
        TempDir dir("replay");
        Replayed run;
        replayFiles(run, dir, {file.string()}, settings);
        ASSERT_TRUE(run.prepared) << run.error;
        ASSERT_EQ(run.result.fills.size(), 2u);
        std::string error;
        ASSERT_TRUE(replay::writeOutputs(dir / "out", run.result, run.journal.entries(), "t", error));
        out = replay::summaryText(run.result, {});
        for (const char* name : {"orders.csv", "fills.csv", "journal.csv", "chart.svg"})
            out += readFileBytes(dir / "out" / name);
    }
    EXPECT_EQ(outputs[0], outputs[1]);
}
