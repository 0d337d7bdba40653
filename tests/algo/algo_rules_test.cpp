// The slice rules as tables of hand-computed cases: randomisation, size, ranges, price and
// interval, and the session time the total-time pacing counts.
#include "algo_fixture.h"

using namespace algotest;

namespace {

tagAlgoSetting fixed(int lots, int randomPct = 0) {
    tagAlgoSetting s;
    s.nLotSingle = lots;
    s.nLotRandom = randomPct;
    return s;
}

tagAlgoSetting ratio(int pct) {
    tagAlgoSetting s;
    s.nLotType = 1;
    s.nLotRatio = pct;
    return s;
}

tagAlgoSetting ranges(int stop, int outStop, int limit, int outLimit) {
    tagAlgoSetting s = fixed(3);
    s.nStopRange = stop;
    s.nOutStopRange = outStop;
    s.nLimitRange = limit;
    s.nOutLimitRange = outLimit;
    return s;
}

}  // namespace

TEST(AlgoRules, RandomisationIsAFunctionOfTheTickAlone) {
    // The classic generator: srand(1); rand() gives 41.
    EXPECT_EQ(algoRand(1), 41);
    EXPECT_EQ(algoRand(1000), 3304);
    struct Case {
        std::int64_t v, pct;
        std::uint64_t tick;
        std::int64_t expected;
    } cases[] = {
        {10, 0, 1000, 10},       // no randomisation
        {1, 50, 1000, 1},        // margin 0: the value itself
        {10, 50, 1, 5},          // d = 5: 5 + 41*10/32767
        {10, 50, 12345, 7},      // 5 + 7584*10/32767
        {5000, 20, 1000, 4201},  // d = 1000: 4000 + 3304*2000/32767
        {10, 100, 12345, 4},     // d = 10: 0 + 7584*20/32767
    };
    for (const auto& c : cases)
        EXPECT_EQ(randomise(c.v, c.pct, c.tick), c.expected) << c.v << " " << c.pct << " " << c.tick;
    for (std::uint64_t t = 0; t < 5000; t += 7) {
        const auto v = randomise(20, 50, t);
        EXPECT_TRUE(v >= 10 && v <= 30) << t;
    }
}

TEST(AlgoRules, SliceSize) {
    struct Case {
        const char* what;
        tagAlgoSetting s;
        int direction, total, filled, pacing;
        double last;
        int expected;
    } cases[] = {
        {"fixed", fixed(3), kDirBuy, 10, 0, kPaceNormal, 100, 3},
        {"randomised at tick 1000", fixed(10, 50), kDirBuy, 20, 0, kPaceNormal, 100, 6},
        {"ratio of the ask volume", ratio(50), kDirBuy, 10, 0, kPaceNormal, 100, 3},
        {"ratio of the bid volume", ratio(50), kDirSell, 10, 0, kPaceNormal, 100, 4},
        {"urgent doubles", fixed(3), kDirBuy, 10, 0, kPaceUrgent, 100, 6},
        {"urgent cut to the rest", fixed(3), kDirBuy, 10, 7, kPaceUrgent, 100, 3},
        {"accelerated keeps the size", fixed(3), kDirBuy, 10, 0, kPaceFast, 100, 3},
        {"immediate: the whole rest", fixed(3), kDirBuy, 10, 4, kPaceImmediate, 100, 6},
        {"nothing left", fixed(3), kDirBuy, 10, 10, kPaceUrgent, 100, 0},
        {"stop crossed, out 0", ranges(5, 0, 0, 0), kDirBuy, 10, 0, kPaceNormal, 105, 0},
        {"stop crossed, out 1", ranges(5, 1, 0, 0), kDirBuy, 10, 0, kPaceNormal, 105, 3},
        {"immediate ignores ranges", ranges(5, 0, 0, 0), kDirBuy, 10, 0, kPaceImmediate, 105, 10},
    };
    // Ask 7 lots, bid 9 lots.
    for (const auto& c : cases) {
        CAlgoOrder o = order(c.s, c.direction, c.total, c.filled, c.pacing);
        EXPECT_EQ(o.sliceSize(quote(99, 9, 101, 7, c.last), 1000), c.expected) << c.what;
    }
    CAlgoOrder o = order(ratio(50));
    EXPECT_EQ(o.sliceSize(quote(99, 9, 101, 0, 100), 1000), 0) << "empty opposite book";
    EXPECT_EQ(o.planSlice(quote(99, 9, 101, 0, 100), 0, 1000).volume, 0);
}

TEST(AlgoRules, StopAndLimitRanges) {
    struct Case {
        tagAlgoSetting s;
        int direction;
        double last;
        bool blocked, fast;
    } cases[] = {
        // Base 100, tick 1. Buy: stop above, limit below.
        {ranges(5, 0, 0, 0), kDirBuy, 104, false, false},
        {ranges(5, 0, 0, 0), kDirBuy, 105, true, false},
        {ranges(5, 1, 0, 0), kDirBuy, 110, false, true},
        {ranges(0, 0, 3, 0), kDirBuy, 98, false, false},
        {ranges(0, 0, 3, 0), kDirBuy, 97, true, false},
        {ranges(0, 0, 3, 1), kDirBuy, 90, false, true},
        // Sell: mirrored.
        {ranges(5, 0, 0, 0), kDirSell, 105, false, false},
        {ranges(5, 0, 0, 0), kDirSell, 95, true, false},
        {ranges(0, 0, 3, 1), kDirSell, 103, false, true},
        {ranges(0, 0, 3, 1), kDirSell, 97, false, false},
        // Ranges of 0 never cross; no last price says nothing.
        {ranges(0, 0, 0, 0), kDirBuy, 200, false, false},
        {ranges(5, 0, 3, 0), kDirBuy, 0, false, false},
    };
    for (const auto& c : cases) {
        const AlgoRangeState r = order(c.s, c.direction).ranges(c.last);
        EXPECT_EQ(r.blocked, c.blocked) << c.direction << " " << c.last;
        EXPECT_EQ(r.fast, c.fast) << c.direction << " " << c.last;
    }
}

TEST(AlgoRules, SlicePrice) {
    struct Case {
        int direction, pacing, priceType;
        IModuleFutureTrader::ITickEx q;
        double expected;
    } cases[] = {
        {kDirBuy, kPaceNormal, 0, quote(99, 5, 101, 5, 100), 101},
        {kDirBuy, kPaceNormal, 2, quote(99, 5, 101, 5, 100), 103},
        {kDirBuy, kPaceNormal, -3, quote(99, 5, 101, 5, 100), 98},
        {kDirBuy, kPaceNormal, 15, quote(99, 5, 101, 5, 100), 111},  // offset at most 10
        {kDirBuy, kPaceFast, -3, quote(99, 5, 101, 5, 100), 103},
        {kDirBuy, kPaceUrgent, 0, quote(99, 5, 101, 5, 100), 105},
        {kDirBuy, kPaceImmediate, 0, quote(99, 5, 101, 5, 100), 107},
        {kDirSell, kPaceNormal, 0, quote(99, 5, 101, 5, 100), 99},
        {kDirSell, kPaceFast, 0, quote(99, 5, 101, 5, 100), 97},
        {kDirSell, kPaceNormal, -2, quote(99, 5, 101, 5, 100), 101},
        {kDirBuy, kPaceUrgent, 0, quote(99, 5, 0, 0, 100), 100},  // no ask: the last price
        {kDirBuy, kPaceImmediate, 0, TickBuilder(7, "XX").ask(101, 5).limits(90, 104), 104},
        {kDirSell, kPaceImmediate, 0, TickBuilder(7, "XX").bid(92, 5).limits(90, 104), 90},
        {kDirBuy, kPaceNormal, 0, IModuleFutureTrader::ITickEx{}, 0},  // no price at all
    };
    for (const auto& c : cases) {
        tagAlgoSetting s;
        s.nPriceType = c.priceType;
        EXPECT_DOUBLE_EQ(order(s, c.direction, 10, 0, c.pacing).slicePrice(c.q), c.expected)
            << c.direction << " " << c.pacing << " " << c.priceType;
    }
    // On a 0.2 tick the offset lands on the grid.
    tagAlgoSetting s;
    s.nPriceType = 2;
    tagBrokerOrder p = brokerOrder("880001", "IF2101", kDirBuy, 10, 0);
    CAlgoOrder o(1, p, s, contractDetail(0.2f, 1, 300));
    EXPECT_DOUBLE_EQ(o.slicePrice(TickBuilder(3, "IF2101").ask(5228.2, 3)), 5228.6);
}

TEST(AlgoRules, Interval) {
    const std::int64_t now = localMs(10, 0);
    struct Case {
        const char* what;
        int timeType, interval, radom, total, session, pacing;
        std::int64_t startMs;
        int filled, size;
        double last;
        std::int64_t expected;
    } cases[] = {
        {"fixed", 0, 5, 0, 60, 0, kPaceNormal, now, 0, 1, 100, 5000},
        {"fixed, randomised", 0, 5, 20, 60, 0, kPaceNormal, now, 0, 1, 100, 4201},
        {"total time at the start", 1, 5, 0, 60, 0, kPaceNormal, now, 0, 1, 100, 6000},
        {"total time half spent", 1, 5, 0, 60, 0, kPaceNormal, now - 30000, 0, 2, 100, 6000},
        {"total time, rest smaller", 1, 5, 0, 60, 0, kPaceNormal, now - 30000, 5, 1, 100, 6000},
        {"total time floor", 1, 5, 0, 2, 0, kPaceNormal, now, 0, 1, 100, 500},
        {"total time over", 1, 5, 0, 60, 0, kPaceNormal, now - 90000, 0, 1, 100, 500},
        {"accelerated", 0, 5, 0, 60, 0, kPaceFast, now, 0, 1, 100, 500},
        {"immediate", 1, 5, 0, 60, 0, kPaceImmediate, now, 0, 10, 100, 500},
        {"range crossed, keep slicing", 0, 5, 0, 60, 0, kPaceNormal, now, 0, 1, 96, 500},
    };
    for (const auto& c : cases) {
        tagAlgoSetting s;
        s.nTimeType = c.timeType;
        s.nTimeInterval = c.interval;
        s.nTimeRadom = c.radom;
        s.nTimeTotal = c.total;
        s.nTimeSession = c.session;
        s.nLimitRange = 3;
        s.nOutLimitRange = 1;
        CAlgoOrder o = order(s, kDirBuy, 10, c.filled, c.pacing);
        o.m_tStartMs = c.startMs;
        EXPECT_EQ(o.sliceInterval(quote(99, 5, 101, 5, c.last), c.size, now, 1000), c.expected)
            << c.what;
    }
}

TEST(AlgoRules, SessionTimeCountsOnlyTradingHours) {
    const std::int64_t day = 24LL * 3600 * 1000;
    struct Case {
        int exchange;
        std::int64_t from, to, expected;
    } cases[] = {
        {3, localMs(11, 29), localMs(13, 0, 30), 90000},          // lunch 11:30-13:00
        {0, localMs(10, 10), localMs(10, 40), 15 * 60000},        // break 10:15-10:30
        {0, localMs(15, 0), localMs(20, 0), 0},                   // after the close
        {7, localMs(10, 0), localMs(10, 1), 60000},               // no table: all day
        {3, localMs(14, 0), localMs(9, 30) + day, 90 * 60000},    // over the night
        {3, localMs(10, 0), localMs(9, 0), 0},                    // backwards
    };
    for (const auto& c : cases)
        EXPECT_EQ(sessionMsBetween(c.exchange, c.from, c.to), c.expected) << c.exchange;

    // Total time counted in session time: 90 s of 300 s spent over lunch, 7 lots left.
    tagAlgoSetting s;
    s.nTimeType = 1;
    s.nTimeTotal = 300;
    s.nTimeSession = 1;
    tagBrokerOrder p = brokerOrder("880001", "IF2101", kDirBuy, 10, 0);
    p.nExchangeID = 3;
    CAlgoOrder o(1, p, s, contractDetail(0.2f, 1, 300));
    o.m_dDoneFilled = 3;
    o.m_tStartMs = localMs(11, 29);
    EXPECT_EQ(o.sliceInterval(TickBuilder(3, "IF2101").ask(5000, 5), 1, localMs(13, 0, 30), 1),
              30000);
    o.m_setting.nTimeSession = 0;  // wall time: the total is long spent
    EXPECT_EQ(o.sliceInterval(TickBuilder(3, "IF2101").ask(5000, 5), 1, localMs(13, 0, 30), 1),
              500);
}
