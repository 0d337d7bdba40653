#include "host/price.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <limits>
#include <tuple>

#include "host/number_text.h"

namespace {

// Hand-computed: buys go up to the grid, sells down; a price already on the grid stays.
TEST(PriceRounding, BuysRoundUpSellsRoundDown) {
    struct {
        double in;
        std::int32_t minMove;
        float unit;
        double buy, sell;
    } cases[] = {
        {3001.3, 1, 0.2f, 3001.4, 3001.2},
        {3001.4, 1, 0.2f, 3001.4, 3001.4},   // on the grid (0.2 is not exact in binary)
        {2345.01, 1, 1.0f, 2346.0, 2345.0},  // just past a tick: up, not to the nearest
        {3500.0, 1, 5.0f, 3500.0, 3500.0},   // a 5-point grid
        {3504.99, 1, 5.0f, 3505.0, 3500.0},
        {100.127, 1, 0.005f, 100.13, 100.125},  // bond futures' half-tick
        {15.3, 2, 0.1f, 15.4, 15.2},            // two minimum moves per point
        {0.5, 1, 0.2f, 0.6, 0.4},
        {3001.37, 0, 0.2f, 3001.37, 3001.37},  // unknown step: unchanged
        {3001.37, 1, 0.0f, 3001.37, 3001.37},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.in << " step " << c.minMove << "x" << c.unit);
        EXPECT_DOUBLE_EQ(price::roundForDirection(c.in, kDirBuy, c.minMove, c.unit), c.buy);
        EXPECT_DOUBLE_EQ(price::roundForDirection(c.in, kDirSell, c.minMove, c.unit), c.sell);
    }
}

// Ticks and prices from the far ends: an unknown step or an out-of-range price comes back
// unchanged (nothing else would be a price), never undefined behaviour.
TEST(PriceRounding, UnusableInputsComeBackUnchanged) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const float fnan = std::numeric_limits<float>::quiet_NaN();
    const float finf = std::numeric_limits<float>::infinity();
    struct {
        double in;
        std::int32_t minMove;
        float unit;
    } cases[] = {
        {3001.3, 1, fnan},  {3001.3, 1, finf},  {3001.3, 1, 3e38f},    {3001.3, 1, 1e10f},
        {3001.3, -1, 0.2f}, {3001.3, 1, -0.2f}, {3001.3, 1, 0.00001f},  // below 1/10000
        {3e33, 1, 0.2f},    {-3e33, 1, 0.2f},   {1e9 + 1, 1, 0.2f},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.in << " step " << c.minMove << "x" << c.unit);
        EXPECT_EQ(price::roundBuy(c.in, c.minMove, c.unit), c.in);
        EXPECT_EQ(price::roundSell(c.in, c.minMove, c.unit), c.in);
    }
    EXPECT_TRUE(std::isnan(price::roundBuy(nan, 1, 0.2f)));
    EXPECT_EQ(price::pointValue(1, fnan), 0);
    EXPECT_EQ(price::pointOnGrid(1, finf), 0);
    EXPECT_EQ(price::decimals(1, fnan), 2);
}

// A price on the grid never moves, up to the largest price a box allows, where a whole
// ten-thousandth is only a few bits of the double; negative prices (spreads) round alike.
TEST(PriceRounding, OnGridPricesStayPutOverTheWholeRange) {
    struct {
        double in;
        float unit;
        double buy, sell;
    } cases[] = {
        {110000000.2, 0.2f, 110000000.2, 110000000.2},
        {110000000.3, 0.2f, 110000000.4, 110000000.2},
        {999999999.9999, 0.0001f, 999999999.9999, 999999999.9999},
        {999999999.5, 1.0f, 1e9, 999999999.0},
        {1e9, 5.0f, 1e9, 1e9},
        {-1e9, 0.2f, -1e9, -1e9},
        {-3.3, 0.2f, -3.2, -3.4},
        {-3.4, 0.2f, -3.4, -3.4},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << std::setprecision(17) << c.in << " step " << c.unit);
        EXPECT_EQ(price::roundBuy(c.in, 1, c.unit), c.buy);
        EXPECT_EQ(price::roundSell(c.in, 1, c.unit), c.sell);
    }
    // Sweeps over grid prices, however their decimals land in binary: everyday magnitudes
    // and the largest, fine and coarse steps alike.
    const std::tuple<float, double> sweeps[] = {
        {0.2f, 4000.0},         {0.005f, 95.0}, {1.0f, 2000.0}, {0.5f, 900.0}, {0.0001f, 1e8},
        {0.0001f, 999990000.0}, {0.2f, 1.1e8},  {0.2f, 5e8},    {0.005f, 7e8}};
    for (auto [unit, from] : sweeps) {
        const std::int64_t step = price::stepUnits(1, unit);
        const auto first = static_cast<std::int64_t>(from * 10000) / step * step;
        int bad = 0;
        for (std::int64_t k = 0; k < 20000 && bad < 5; ++k) {
            const double p = static_cast<double>(first + k * step) / 10000.0;
            if (price::roundBuy(p, 1, unit) != p || price::roundSell(p, 1, unit) != p) {
                ADD_FAILURE() << std::setprecision(17) << "moved " << p << " on step " << unit;
                ++bad;
            }
        }
    }
}

TEST(PriceRounding, PointsAndDecimals) {
    EXPECT_NEAR(price::pointValue(2, 0.1f), 0.2, 1e-7);
    EXPECT_DOUBLE_EQ(price::pointOnGrid(1, 0.2f), 0.2);  // not 0.2000000030
    EXPECT_DOUBLE_EQ(price::pointOnGrid(2, 0.5f), 1.0);
    EXPECT_NEAR(price::pointOnGrid(1, 0.00001f), 0.00001, 1e-9);  // finer: the plain product
    const std::pair<float, int> decimals[] = {{0.2f, 1}, {5.0f, 0}, {0.005f, 3}, {0.01f, 2}};
    for (auto [unit, d] : decimals) EXPECT_EQ(price::decimals(1, unit), d) << unit;
}

TEST(PriceClamp, OnlyWithAValidBand) {
    struct {
        double p, lower, upper, out;
    } cases[] = {
        {6000, 4694.6, 5737.8, 5737.8}, {4000, 4694.6, 5737.8, 4694.6},
        {5000, 4694.6, 5737.8, 5000},   {6000, 0, 5737.8, 6000},       // a limit absent: no clamp
        {6000, 4694.6, 0, 6000},        {6000, 5737.8, 4694.6, 6000},  // inverted band
        {6000, 5000, 5000, 6000},                                      // empty band
    };
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(price::clampToLimits(c.p, c.lower, c.upper), c.out)
            << c.p << " in [" << c.lower << "," << c.upper << "]";
}

}  // namespace
