// Recorded data on the simulated exchange: calendar time of trading-day rows, the night
// session of the products that have one, and a ZCE day of two instruments merged in time.
#include <gtest/gtest.h>

#include <cstdlib>

#include "host/gbk_codec.h"
#include "replay/recording_journal.h"
#include "replay/replay_runner.h"
#include "sim/sim_exchange.h"
#include "sim/sim_recorded.h"
#include "support/temp_dir.h"
#include "support/data_dir.h"

namespace {

std::int64_t localMs(int y, int mo, int d, int h, int mi, int s) {
    std::tm tm{};
    tm.tm_year = y - 1900, tm.tm_mon = mo - 1, tm.tm_mday = d;
    tm.tm_hour = h, tm.tm_min = mi, tm.tm_sec = s, tm.tm_isdst = -1;
    return fromLocalTm(tm) * 1000;
}

sim::TickRecord row(std::int32_t date, int h, int m, int s, double last = 0, double bid = 0,
                    double ask = 0) {
    sim::TickRecord r;
    r.date = date;
    r.timeMs = ((h * 60 + m) * 60 + s) * 1000;
    r.last = last, r.bid = bid, r.ask = ask, r.bidVol = r.askVol = bid > 0 ? 10 : 0;
    return r;
}

}  // namespace

TEST(RecordedData, RowsTakeTheirCalendarTimeFromTheTradingDay) {
    struct Case {
        sim::TickRecord r;
        const char* at;
    } const cases[] = {
        {row(20180201, 20, 59, 0), "2018-01-31 20:59:00"},  // night of a Thursday: Wednesday
        {row(20180201, 9, 0, 0), "2018-02-01 09:00:00"},
        {row(20210104, 21, 0, 0), "2021-01-01 21:00:00"},   // a Monday's night: the Friday
        {row(20210104, 1, 30, 0), "2021-01-02 01:30:00"},   // past that Friday's midnight
        {row(20210104, 15, 0, 0), "2021-01-04 15:00:00"},
    };
    for (const auto& c : cases) {
        const auto at = sim::tradingDayTimes({c.r});
        EXPECT_EQ(formatDateTime(at[0] / 1000), c.at);
    }
}

TEST(RecordedData, NightProductsMatchInTheEveningOthersRest) {
    struct Case {
        const char* code;
        double price;
        double filled;  // lots filled at once at 21:00:10
    } const cases[] = {{"MA805", 2787, 1}, {"SR105", 5193, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.code);
        ManualClock clock(localMs(2018, 1, 31, 21, 0, 10));
        SimOptions so;
        so.randomWalk = false;
        SimExchange ex(clock, so);
        tagSymbol sym;
        ASSERT_TRUE(ex.learnContract(c.code, sym));
        std::vector<sim::TickRecord> ticks{row(20180201, 21, 0, 5, c.price - 1, c.price - 1, c.price)};
        ASSERT_TRUE(ex.loadTicksAt(sym, ticks, sim::tradingDayTimes(ticks)));
        ex.step();
        tagBrokerOrder o;
        o.strAccountID = "880001";
        o.nExchangeID = sym.wExchangeID;
        o.strCode = sym.strCode;
        o.nDirection = kDirBuy;
        o.dVolume = 1;
        o.dPrice = c.price;
        ASSERT_EQ(ex.SendOrder(o), 1);
        std::vector<tagBargainOrder> fills;
        ex.GetAllBargains(fills);
        EXPECT_EQ(fills.size(), static_cast<std::size_t>(c.filled));
    }
}

TEST(RecordedData, TwoInstrumentsOfOneZceDayPlayNightFirst) {
    const std::filesystem::path data = testdata::dataDir();
    const auto ma = data / "ticks" / "MA805_20180201.csv", sr = data / "ticks" / "SR805_20180201.csv";
    ASSERT_TRUE(std::filesystem::exists(ma)) << testdata::missing(ma);
    ASSERT_TRUE(std::filesystem::exists(sr)) << testdata::missing(sr);
    TempDir dir("replay");
    // The night's low (2771) is reached again in the day; local triggers watch day periods only.
    writeFileBytes(dir / "s.ini", gbk::fromUtf8("[LocalTrigger]\nTrigger1=MA805,买,吊买,2771,0,1\n"));
    replay::RecordingJournal journal;
    replay::ReplayRunner runner({{ma.string(), sr.string()}, "LocalTrigger", (dir / "s.ini").string()},
                                &journal);
    std::string error;
    ASSERT_TRUE(runner.prepare(error)) << error;
    const auto r = runner.run();
    EXPECT_EQ(r.symbols.size(), 2u);
    EXPECT_EQ(r.ticks + r.skippedLines, 38866u + 21401u);
    EXPECT_EQ(formatDateTime(r.firstMs / 1000), "2018-01-31 20:59:00");
    EXPECT_EQ(formatDateTime(r.lastMs / 1000).substr(0, 10), "2018-02-01");
    ASSERT_EQ(journal.entries().size(), 1u);
    EXPECT_GE(journal.entries()[0].timeMs, localMs(2018, 2, 1, 9, 0, 4));
}
