#include <gtest/gtest.h>

#include "host/price.h"

namespace {

struct RoundCase {
    double in;
    std::int32_t minMove;
    float unit;
    double buy;
    double sell;
};

// Hand-computed: buys go up to the grid, sells down; a price already on the grid stays.
const RoundCase kRoundCases[] = {
    {3001.3, 1, 0.2f, 3001.4, 3001.2},    // the classic IF case
    {3001.4, 1, 0.2f, 3001.4, 3001.4},    // already on the grid (0.2 is not exact in binary)
    {3001.2, 1, 0.2f, 3001.2, 3001.2},
    {4998.6, 1, 0.2f, 4998.6, 4998.6},
    {2345.0, 1, 1.0f, 2345.0, 2345.0},
    {2345.5, 1, 1.0f, 2346.0, 2345.0},
    {2345.01, 1, 1.0f, 2346.0, 2345.0},
    {3500.0, 1, 5.0f, 3500.0, 3500.0},    // a 5-point grid
    {3501.0, 1, 5.0f, 3505.0, 3500.0},
    {3504.99, 1, 5.0f, 3505.0, 3500.0},
    {100.125, 1, 0.005f, 100.125, 100.125},  // bond futures' half-tick
    {100.127, 1, 0.005f, 100.13, 100.125},
    {15.3, 2, 0.1f, 15.4, 15.2},           // two minimum moves per point
    {0.5, 1, 0.2f, 0.6, 0.4},
};

TEST(PriceRounding, BuysRoundUpSellsRoundDown) {
    for (const auto& c : kRoundCases) {
        SCOPED_TRACE(testing::Message() << c.in << " step " << c.minMove << "x" << c.unit);
        EXPECT_DOUBLE_EQ(price::roundBuy(c.in, c.minMove, c.unit), c.buy);
        EXPECT_DOUBLE_EQ(price::roundSell(c.in, c.minMove, c.unit), c.sell);
        EXPECT_DOUBLE_EQ(price::roundForDirection(c.in, kDirBuy, c.minMove, c.unit), c.buy);
        EXPECT_DOUBLE_EQ(price::roundForDirection(c.in, kDirSell, c.minMove, c.unit), c.sell);
    }
}

TEST(PriceRounding, UnknownStepLeavesPriceAlone) {
    EXPECT_DOUBLE_EQ(price::roundBuy(3001.37, 0, 0.2f), 3001.37);
    EXPECT_DOUBLE_EQ(price::roundSell(3001.37, 1, 0.0f), 3001.37);
}

TEST(PriceRounding, StepUnitsAndPointValue) {
    EXPECT_EQ(price::stepUnits(1, 0.2f), 2000);
    EXPECT_EQ(price::stepUnits(1, 0.005f), 50);
    EXPECT_EQ(price::stepUnits(10, 1.0f), 100000);
    EXPECT_NEAR(price::pointValue(2, 0.1f), 0.2, 1e-7);
}

TEST(PriceClamp, OnlyWithAValidBand) {
    struct {
        double p, lower, upper, out;
    } cases[] = {
        {6000, 4694.6, 5737.8, 5737.8},  // above the upper limit
        {4000, 4694.6, 5737.8, 4694.6},  // below the lower limit
        {5000, 4694.6, 5737.8, 5000},    // inside
        {6000, 0, 5737.8, 6000},         // lower absent: no clamp
        {6000, 4694.6, 0, 6000},         // upper absent
        {6000, 5737.8, 4694.6, 6000},    // inverted band: no clamp
        {6000, 5000, 5000, 6000},        // empty band
    };
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(price::clampToLimits(c.p, c.lower, c.upper), c.out)
            << c.p << " in [" << c.lower << "," << c.upper << "]";
}

TEST(PriceDecimals, FollowTheGrid) {
    EXPECT_EQ(price::decimals(1, 0.2f), 1);
    EXPECT_EQ(price::decimals(1, 1.0f), 0);
    EXPECT_EQ(price::decimals(1, 0.005f), 3);
    EXPECT_EQ(price::decimals(1, 0.01f), 2);
    EXPECT_EQ(price::decimals(1, 5.0f), 0);
}

}  // namespace

namespace {

// Every price already on the grid must come back unchanged in both directions, however
// its decimal lands in binary.
TEST(PriceRounding, OnGridPricesStayPut) {
    struct Grid {
        std::int32_t minMove;
        float unit;
        std::int64_t fromUnits, toUnits;  // in ten-thousandths
    } grids[] = {{1, 0.2f, 40000000, 60000000}, {1, 0.005f, 950000, 1050000},
                 {1, 1.0f, 20000000, 30000000}, {1, 0.5f, 9000000, 11000000}};
    for (const auto& g : grids) {
        const std::int64_t s = price::stepUnits(g.minMove, g.unit);
        int bad = 0;
        for (std::int64_t u = g.fromUnits; u <= g.toUnits && bad < 5; u += s) {
            const double p = static_cast<double>(u) / 10000.0;
            if (price::roundBuy(p, g.minMove, g.unit) != p ||
                price::roundSell(p, g.minMove, g.unit) != p) {
                ADD_FAILURE() << "moved " << p << " on step " << g.unit;
                ++bad;
            }
        }
    }
}

}  // namespace

TEST(PricePoint, OnTheGridUnlessFinerThanIt) {
    EXPECT_DOUBLE_EQ(price::pointOnGrid(1, 0.2f), 0.2);  // not 0.2000000030
    EXPECT_DOUBLE_EQ(price::pointOnGrid(2, 0.5f), 1.0);
    EXPECT_NEAR(price::pointOnGrid(1, 0.00001f), 0.00001, 1e-9);  // finer: the plain product
}
