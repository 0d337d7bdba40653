// The tools' adapters under the replay runner, each on a few hand-made ticks of two 郑商所
// instruments of 2018-02-01 at 10:00.
#include <gtest/gtest.h>

#include <span>

#include "host/gbk_codec.h"
#include "replay/recording_journal.h"
#include "replay/replay_output.h"
#include "replay/replay_runner.h"
#include "support/temp_dir.h"

namespace {

struct Quote {
    const char* time;
    double last, bid, ask;
};

std::string tickFile(std::initializer_list<Quote> quotes) {
    std::string out =
        "date,time,last,bid,bid_vol,ask,ask_vol,volume,turnover,open_interest,open,high,low,"
        "upper_limit,lower_limit,pre_close,pre_settle,settle\n";
    for (const Quote& q : quotes) {
        char row[200];
        std::snprintf(row, sizeof row, "20180201,%s,%.0f,%.0f,5,%.0f,5,0,0,0,0,0,0,0,0,0,0,0\n",
                      q.time, q.last, q.bid, q.ask);
        out += row;
    }
    return out;
}

struct Replayed {
    replay::RecordingJournal journal;
    replay::ReplayResult result;
    std::string error;
    bool prepared = false;
};

// Replays MA805 and SR805 ticks with one tool and its settings (written as GBK).
void replayDay(Replayed& run, const std::string& tool, const std::string& ma, const std::string& sr,
               const std::string& settingsUtf8) {
    TempDir dir("replay-tools");
    writeFileBytes(dir / "MA805_20180201.csv", ma);
    writeFileBytes(dir / "SR805_20180201.csv", sr);
    writeFileBytes(dir / "settings.ini", gbk::fromUtf8(settingsUtf8));
    replay::ReplayOptions o;
    o.tickFiles = {(dir / "MA805_20180201.csv").string(), (dir / "SR805_20180201.csv").string()};
    o.tool = tool;
    o.settingsFile = (dir / "settings.ini").string();
    replay::ReplayRunner runner(o, &run.journal);
    run.prepared = runner.prepare(run.error);
    if (run.prepared) run.result = runner.run();
}

// Methanol does not move: bid 2786, ask 2787. Sugar rises to 5807, drops through 5801 and
// comes back to 5807.
const std::string kMethanol = tickFile({{"10:00:00.000", 2786, 2786, 2787},
                                        {"10:00:01.000", 2786, 2786, 2787},
                                        {"10:00:02.000", 2786, 2786, 2787},
                                        {"10:00:03.000", 2786, 2786, 2787}});
const std::string kSugar = tickFile({{"10:00:00.000", 5806, 5806, 5807},
                                     {"10:00:01.000", 5807, 5807, 5808},
                                     {"10:00:02.000", 5800, 5800, 5801},
                                     {"10:00:03.000", 5807, 5807, 5808}});

// Buys the spread MA805 - SR805 at -3020 (one entry at most) and closes it 5 higher.
std::string gridSettings(const std::string& extra = "nMaxLots=1\r\n") {
    return "[GridsSpread]\r\nszSymbolCode1=MA805\r\nszSymbolCode2=SR805\r\nbLong=1\r\n"
           "dFirstGrid=-3020\r\ndGridInterval=10\r\ndWinGrid=5\r\n"
           "nFixupOffset=0\r\n" +
           extra;
}

// Signed lots per code from the account's fills.
std::map<std::string, double> netOf(const std::vector<tagBargainOrder>& fills) {
    std::map<std::string, double> net;
    for (const auto& f : fills) net[f.strCode] += f.nDirection == kDirBuy ? f.dVolume : -f.dVolume;
    return net;
}

// One fill as a test expects it.
struct Fill {
    const char* code;
    int direction;
    double price;
};

void expectFills(const std::vector<tagBargainOrder>& fills, std::span<const Fill> want) {
    ASSERT_EQ(fills.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(fills[i].strCode, want[i].code);
        EXPECT_EQ(fills[i].nDirection, want[i].direction);
        EXPECT_DOUBLE_EQ(fills[i].dPrice, want[i].price);
    }
}

}  // namespace

// Worked out from the rows: B (SR805) rests a sell at 2787 + 3020 = 5807 against the ask of A,
// fills on 10:00:01's bid of 5807, and A is bought at its ask 2787. The close rests a buy of B
// at A's bid 2786 + 3015 = 5801, traded through by 10:00:02's last of 5800; A is sold at 2786.
// The grid then opens again the same way on 10:00:03. Round trip: SR +6 x 10, MA -1 x 10 = 50;
// the open entry is marked at the lasts: SR 5807 - 5807 = 0, MA 2786 - 2787 = -10 x 1 → 40.
// Commission per lot: MA 2.00, SR 3.00, three fills each = 15.
TEST(ReplayTools, GridTradesTheLevelsWorkedOutByHand) {
    Replayed run;
    replayDay(run, "GridsSpread", kMethanol, kSugar, gridSettings());
    ASSERT_TRUE(run.prepared) << run.error;
    const auto& r = run.result;
    const Fill want[] = {{"SR805", kDirSell, 5807}, {"MA805", kDirBuy, 2787},
                      {"SR805", kDirBuy, 5801},  {"MA805", kDirSell, 2786},
                      {"SR805", kDirSell, 5807}, {"MA805", kDirBuy, 2787}};
    expectFills(r.fills, want);
    EXPECT_EQ(r.orders.size(), 7u);  // the closing B of the second entry still rests at 5801
    EXPECT_EQ(r.roundTrips, 2u);     // each leg back to flat once
    EXPECT_NEAR(r.grossPnl, 40, 1e-6);
    EXPECT_NEAR(r.commission, 15, 1e-6);
    EXPECT_NEAR(r.netPnl, 25, 1e-6);
    // From the peak of 40 after the round trip down to 25 with the new entry marked.
    EXPECT_NEAR(r.maxDrawdown, 15, 1e-6);

    // The robot's one open entry is the account's position, leg by leg.
    const auto held = netOf(r.fills);
    EXPECT_EQ(r.holdings.positions, held);
    EXPECT_EQ(held, (std::map<std::string, double>{{"MA805", 1}, {"SR805", -1}}));
    ASSERT_EQ(r.holdings.lines.size(), 1u);
    EXPECT_NE(replay::summaryText(r, {}).find("工具持有: 第1格 MA805 2787 SR805 5807\n"),
              std::string::npos);

    // Every order is in the journal with its reason; the first is the resting B.
    ASSERT_EQ(run.journal.entries().size(), 7u);
    const JournalEntry& first = run.journal.entries()[0];
    EXPECT_EQ(first.order.strCode, "SR805");
    EXPECT_DOUBLE_EQ(first.order.dPrice, 5807);
    EXPECT_NE(first.tag.find("teb"), std::string::npos);
    EXPECT_FALSE(first.reason.empty());
}

TEST(ReplayTools, GridRefusesWhatItCannotRun) {
    struct Case {
        const char* what;
        std::string settings;
        const char* error;  // a part of the reason given
    } const cases[] = {
        {"leg not replayed", "[GridsSpread]\r\nszSymbolCode1=MA805\r\nszSymbolCode2=TA805\r\n",
         "szSymbolCode2: instrument TA805 is not replayed"},
        {"refused by the robot", gridSettings("nMaxLots=0\r\n"), "单笔数量和最大仓位必须大于等于1"},
        {"unknown account", gridSettings("nMaxLots=1\r\nstrAccountID2=123\r\n"), "does not start"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Replayed run;
        replayDay(run, "GridsSpread", kMethanol, kSugar, c.settings);
        EXPECT_FALSE(run.prepared);
        EXPECT_NE(run.error.find(c.error), std::string::npos) << run.error;
    }
}

// The auto spread on the same rows: the spread MA805 - SR805 is bought when its ask (A's ask
// less B's bid) is at -3020 or under, and sold back when its bid (A's bid less B's ask)
// reaches -3015. 10:00:01: ask 2787 - 5807 = -3020, A bought at 2787, then B sold at 5807;
// 10:00:02: bid 2786 - 5801 = -3015, A sold at 2786, B bought at 5801; 10:00:03 enters
// again. The same fills as the grid's above, so the same figures: gross 40, net 25.
TEST(ReplayTools, AutoSpreadTradesTheLinesLegByLeg) {
    Replayed run;
    replayDay(run, "SpreadOrder", kMethanol, kSugar,
              "[SpreadOrder]\r\nszSymbolCode1=MA805\r\nszSymbolCode2=SR805\r\n"
              "bLongEntry=1\r\ndLongEntryPrice=-3020\r\nbLongExit=1\r\ndLongExitPrice=-3015\r\n"
              "nMaxLots=1\r\n");
    ASSERT_TRUE(run.prepared) << run.error;
    const auto& r = run.result;
    const Fill want[] = {{"MA805", kDirBuy, 2787},  {"SR805", kDirSell, 5807},
                      {"MA805", kDirSell, 2786}, {"SR805", kDirBuy, 5801},
                      {"MA805", kDirBuy, 2787},  {"SR805", kDirSell, 5807}};
    expectFills(r.fills, want);
    EXPECT_NEAR(r.grossPnl, 40, 1e-6);
    EXPECT_NEAR(r.netPnl, 25, 1e-6);
    EXPECT_EQ(r.holdings.positions, netOf(r.fills));
    ASSERT_EQ(run.journal.entries().size(), 6u);
    EXPECT_EQ(run.journal.entries()[0].reason, "多头开仓1份：商品A");
    EXPECT_EQ(run.journal.entries()[3].reason, "多头平仓1份：补齐商品B");
}

// One instrument's tool on methanol at 2786 / 2787 that dips to 2785 / 2786 and rises to
// 2790 / 2791 at 10:00:02: it buys one lot and sells it into the rise, and holds by its books
// what the exchange holds for the account.
TEST(ReplayTools, SingleInstrumentToolsTradeTheRise) {
    const std::string rising = tickFile({{"10:00:00.000", 2786, 2786, 2787},
                                         {"10:00:01.000", 2785, 2785, 2786},
                                         {"10:00:02.000", 2790, 2790, 2791},
                                         {"10:00:03.000", 2790, 2790, 2791}});
    struct Case {
        const char* tool;
        std::string settings;
        double buy, sell;    // the fills
        const char* remark;  // a part of the closing order's remark
    } const cases[] = {
        // Enters while the last is at or under 2786 at the ask; takes 2 points of profit over
        // the entry (2789) at the bid once the last reaches it.
        {"AMTORDER",
         "[AMTORDER]\r\nszSymbolCode=MA805\r\nbEntryPriceCon=1\r\nnEntryPriceCon=1\r\n"
         "dEntryPrice=2786\r\nbTakeProfit=1\r\nnTakeProfitPoint=2\r\n",
         2787, 2790, "条件通"},
        // The first rung rests at the last price 2786, traded through by the dip; its close
        // rests 2 ticks higher (2788), traded through by the rise.
        {"Blader", "[Blader]\r\nszSymbolCode=MA805\r\nnMaxPos=1\r\nnWinPoint=2\r\nnTimeExit=0\r\n",
         2786, 2788, "|tx|"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.tool);
        Replayed run;
        replayDay(run, c.tool, rising, kSugar, c.settings);
        ASSERT_TRUE(run.prepared) << run.error;
        const auto& fills = run.result.fills;
        ASSERT_EQ(fills.size(), 2u);
        EXPECT_EQ(fills[0].nDirection, kDirBuy);
        EXPECT_DOUBLE_EQ(fills[0].dPrice, c.buy);
        EXPECT_EQ(fills[1].nDirection, kDirSell);
        EXPECT_DOUBLE_EQ(fills[1].dPrice, c.sell);
        EXPECT_NE(fills[1].strRemark.find(c.remark), std::string::npos) << fills[1].strRemark;
        EXPECT_EQ(run.result.holdings.positions.at("MA805"), 0);
        EXPECT_EQ(run.journal.entries().size(), run.result.orders.size());
    }
}
