// The grid spread's pricing against prices worked out by hand: where B rests to open and to
// close, how A is hit, when a resting B may stay, the order sizes and the price filter.
#include "robots/grids_spread_decision.h"

#include <gtest/gtest.h>

#include "host/records.h"

namespace {

const GridTick kTick = gridTick(1, 0.2f);
constexpr auto Buy = kDirBuy;
constexpr auto Sell = kDirSell;
using B = GridBlock;

GridQuote q(double bid, double ask, double upper = 0, double lower = 0) {
    GridQuote r;
    r.bid = bid;
    r.ask = ask;
    r.upper = upper;
    r.lower = lower;
    return r;
}

struct OpenCase {
    const char* what;
    int bLong, entries, gridLots, maxLots, lots1, lots2, edge;
    GridQuote a, b;
    GridTrend trend;
    GridBlock block;
    int direction;
    double price;
};

// Interval 10 between levels from a first level of 0; ticks of 0.2 on both legs.
const OpenCase kOpening[] = {
    {"sell: first entry at level 0", 0, 0, 2, 5, 1, 1, 10, q(4000, 4000.2), q(3999.8, 4000.2),
     GridTrend::Flat, B::None, Buy, 4000.0},
    {"sell: second entry, same level", 0, 1, 2, 5, 1, 1, 10, q(4000, 4000.2), q(3999.8, 4000.2),
     GridTrend::Flat, B::None, Buy, 4000.0},
    {"sell: third entry one interval up", 0, 2, 2, 5, 1, 1, 100, q(4000, 4000.2), q(3999.8, 4000.2),
     GridTrend::Flat, B::None, Buy, 3990.0},
    {"sell: too far below the bid", 0, 2, 2, 5, 1, 1, 10, q(4000, 4000.2), q(3999.8, 4000.2),
     GridTrend::Flat, B::Edge, Buy, 3990.0},
    {"nMaxLots reached", 0, 3, 2, 3, 1, 1, 10, q(4000, 4000.2), q(3999.8, 4000.2), GridTrend::Flat,
     B::Full, 0, 0},
    {"sell 2:3 rounds B up", 0, 0, 1, 5, 2, 3, 10, q(4000, 4000.2), q(2666.4, 2667.0),
     GridTrend::Flat, B::None, Buy, 2666.8},
    {"buy 2:3 rounds B down", 1, 0, 1, 5, 2, 3, 10, q(3999.8, 4000), q(2666.4, 2667.0),
     GridTrend::Flat, B::None, Sell, 2666.6},
    {"buy: second level one interval down", 1, 1, 1, 5, 1, 1, 100, q(3999.8, 4000),
     q(4009.8, 4010.2), GridTrend::Flat, B::None, Sell, 4010.0},
    {"sell: pulled back to B's ask", 0, 0, 1, 5, 1, 1, 10, q(4000, 4000.2), q(3999.0, 3999.4),
     GridTrend::Flat, B::None, Buy, 3999.4},
    {"buy: pulled back to B's bid", 1, 0, 1, 5, 1, 1, 10, q(3999.8, 4000), q(4000.6, 4001.0),
     GridTrend::Flat, B::None, Sell, 4000.6},
    {"sell: clamped to B's upper limit", 0, 0, 1, 5, 1, 1, 10, q(4000, 4000.2),
     q(3998.8, 0, 3999.0, 3600), GridTrend::Flat, B::None, Buy, 3999.0},
    {"sell: below B's lower limit", 0, 0, 1, 5, 1, 1, 100, q(4000, 4000.2),
     q(4001.2, 4001.4, 4400, 4001.0), GridTrend::Flat, B::Limit, Buy, 4000.0},
    {"buy: clamped to B's lower limit", 1, 0, 1, 5, 1, 1, 10, q(3999.8, 4000),
     q(0, 4000.6, 4400, 4000.4), GridTrend::Flat, B::None, Sell, 4000.4},
    {"buy: above B's upper limit", 1, 0, 1, 5, 1, 1, 10, q(3999.8, 4000), q(3998.8, 0, 3999.0),
     GridTrend::Flat, B::Limit, Sell, 4000.0},
    {"sell: filter falling", 0, 0, 1, 5, 1, 1, 10, q(4000, 4000.2), q(3999.8, 4000.2),
     GridTrend::Falling, B::Filter, Buy, 4000.0},
    {"buy: filter rising", 1, 0, 1, 5, 1, 1, 10, q(3999.8, 4000), q(3999.8, 4000.2),
     GridTrend::Rising, B::Filter, Sell, 4000.0},
    {"sell: A has no bid", 0, 0, 1, 5, 1, 1, 10, q(0, 4000.2), q(3999.8, 4000.2), GridTrend::Flat,
     B::NoReference, Buy, 0},
    {"B has no quote", 0, 0, 1, 5, 1, 1, 10, q(4000, 4000.2), q(0, 0), GridTrend::Flat, B::NoQuoteB,
     0, 0},
};

TEST(GridDecision, OpeningPlans) {
    for (const OpenCase& c : kOpening) {
        GridsSpreadSettings s;
        s.bLong = c.bLong;
        s.nGridLots = c.gridLots;
        s.nMaxLots = c.maxLots;
        s.nSpreadLots1 = c.lots1;
        s.nSpreadLots2 = c.lots2;
        s.nMonitorEdge = c.edge;
        s.dGridInterval = 10;
        const GridPlan p = planOpening(s, c.entries, c.a, c.b, kTick, c.trend);
        EXPECT_EQ(p.block, c.block) << c.what;
        EXPECT_EQ(p.direction, c.direction) << c.what;
        EXPECT_NEAR(p.price, c.price, 1e-9) << c.what;
    }
}

struct CloseCase {
    const char* what;
    int bLong, entries, gridLots;
    GridEntryPrices newest;
    GridQuote a, b;
    GridTrend trend;
    GridBlock block;
    int direction;
    double price, target;
};

// Profit step 5, interval 10, first level 0.
// clang-format off
const CloseCase kClosing[] = {
    {"bought: from the level", 1, 1, 1, {4000, 4000}, q(4010, 4010.2), q(4004.8, 4005.2),
     GridTrend::Flat, B::None, Buy, 4005.0, 5},
    {"bought: from a realised spread better than the level", 1, 1, 1, {4003, 4000},
     q(4010, 4010.2), q(4007.8, 4008.4), GridTrend::Flat, B::None, Buy, 4008.0, 2},
    {"bought: A's fill unknown, from the level", 1, 1, 1, {4003, 0}, q(4010, 4010.2),
     q(4004.8, 4005.2), GridTrend::Flat, B::None, Buy, 4005.0, 5},
    {"sold: from a realised spread above the level", 0, 2, 2, {4000, 4012}, q(4010, 4010.2),
     q(4003.0, 4003.4), GridTrend::Flat, B::None, Sell, 4003.2, 7},
    {"sold: third entry closes from level 1", 0, 3, 2, {0, 0}, q(4010, 4010.2),
     q(4005.0, 4005.4), GridTrend::Flat, B::None, Sell, 4005.2, 5},
    {"sold: filter rising", 0, 1, 1, {0, 0}, q(4010, 4010.2), q(4015.0, 4015.4),
     GridTrend::Rising, B::Filter, Sell, 4015.2, -5},
    {"nothing to close", 1, 0, 1, {0, 0}, q(4010, 4010.2), q(4004.8, 4005.2), GridTrend::Flat,
     B::NoEntry, 0, 0, 0},
};
// clang-format on

TEST(GridDecision, ClosingPlans) {
    for (const CloseCase& c : kClosing) {
        GridsSpreadSettings s;
        s.bLong = c.bLong;
        s.nGridLots = c.gridLots;
        s.nMaxLots = 1;  // closing continues at the limit
        s.dGridInterval = 10;
        s.dWinGrid = 5;
        s.nMonitorEdge = 10;
        const GridPlan p = planClosing(s, c.entries, c.newest, c.a, c.b, kTick, c.trend);
        EXPECT_EQ(p.block, c.block) << c.what;
        EXPECT_EQ(p.direction, c.direction) << c.what;
        EXPECT_NEAR(p.price, c.price, 1e-9) << c.what;
        EXPECT_NEAR(p.target, c.target, 1e-9) << c.what;
    }
}

TEST(GridDecision, HittingLegA) {
    struct Case {
        int direction;
        GridQuote a;
        int fixup;
        double price;
    } cases[] = {
        {Sell, q(4000.0, 4000.2), 2, 3999.6},
        {Buy, q(4000.0, 4000.2), 2, 4000.6},
        {Buy, q(4000.0, 4000.2, 4000.4, 3600), 2, 4000.4},   // kept at the upper limit
        {Sell, q(4000.0, 4000.2, 4400, 3999.8), 2, 3999.8},  // and at the lower
        {Sell, q(0, 4000.2), 0, 0},                          // no bid to hit
    };
    for (const Case& c : cases)
        EXPECT_NEAR(hitPriceA(c.direction, c.a, kTick, c.fixup), c.price, 1e-9) << c.price;
}

TEST(GridDecision, RestingOrderStaysWithinTheThreshold) {
    GridPlan plan;
    plan.price = 4000.0;
    struct Case {
        GridBlock block;
        double resting;
        int threshold;
        bool keep;
    } cases[] = {
        {B::None, 4000.0, 1, true},   {B::None, 4000.2, 1, false},  {B::None, 4000.2, 2, true},
        {B::None, 3999.6, 2, false},  {B::Filter, 4000.0, 1, true}, {B::Edge, 4000.0, 1, false},
        {B::Limit, 4000.0, 5, false},
    };
    for (const Case& c : cases) {
        plan.block = c.block;
        EXPECT_EQ(keepResting(plan, c.resting, kTick, c.threshold), c.keep)
            << c.resting << " " << c.threshold;
    }
}

TEST(GridDecision, SizesFromTheMultipliers) {
    GridsSpreadSettings s;
    s.nSpreadLots1 = 1;
    s.nSpreadLots2 = 2;
    s.nEveryLots = 3;
    struct Case {
        double ma, mb, a, b;
    } cases[] = {{300, 100, 3, 18}, {10, 15, 3, 6}, {10, 10, 3, 6}, {5, 16, 9, 6}};
    for (const Case& c : cases) {
        const GridSizes z = gridSizes(s, c.ma, c.mb);
        EXPECT_EQ(z.a, c.a) << c.ma << "/" << c.mb;
        EXPECT_EQ(z.b, c.b) << c.ma << "/" << c.mb;
    }
}

TEST(GridFilter, FollowsTheHandComputedVwap) {
    CGridFilter f;
    f.reset(3, 0.4);
    struct Step {
        double cumulative, last;
        GridTrend state;
        double vwap;
    } steps[] = {
        {100, 10.0, GridTrend::Flat, 0},             // the baseline only
        {110, 10.0, GridTrend::Flat, 10.0},          // 10@10
        {130, 11.0, GridTrend::Flat, 320.0 / 30},    // + 20@11
        {160, 12.0, GridTrend::Rising, 680.0 / 60},  // + 30@12: 12 > 11.33 + 0.4
        {160, 12.0, GridTrend::Flat, 580.0 / 50},    // 10@10 drops out; 12 is not > 12.0
        {150, 10.0, GridTrend::Falling, 12.0},       // volume fell: 0@10; 10 <= 12 - 0.4
    };
    for (const Step& s : steps) {
        EXPECT_EQ(f.feed(s.cumulative, s.last), s.state) << s.cumulative << " " << s.last;
        EXPECT_NEAR(f.vwap(), s.vwap, 1e-9) << s.cumulative << " " << s.last;
    }
}

}  // namespace
