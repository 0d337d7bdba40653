// The manual spread's arithmetic against hand-computed values: spread prices and their row
// texts for two and three legs, the history's cap and range, and each leg's order price.
#include "spread/manual_spread_calc.h"

#include <gtest/gtest.h>

#include <vector>

#include "spread/manual_spread_fixture.h"

namespace {

using IModuleFutureTrader::ITickEx;
using mstest::tick;

ITickEx legQuote(double bid, double bidVol, double ask, double askVol, double last) {
    return TickBuilder(0, "x").bid(bid, bidVol).ask(ask, askVol).last(last);
}

const ITickEx kA = legQuote(100, 5, 101, 3, 100.5);
const ITickEx kB = legQuote(90, 4, 91, 7, 90);
const ITickEx kC = legQuote(50, 2, 51, 9, 50.5);

TEST(ManualSpreadCalc, SpreadPricesAndRows) {
    const ITickEx bNoAsk = legQuote(90, 4, 0, 0, 90);
    const ITickEx aNoLast = legQuote(100, 5, 101, 3, 0);
    const ITickEx cNoBid = legQuote(0, 0, 51, 9, 50.5);
    struct Case {
        const char* name;
        std::vector<const ITickEx*> legs;
        std::array<double, 3> units;
        SpreadPrices want;
        const char* rows[3];  // ask, bid, last
    };
    // clang-format off
    const Case cases[] = {
        {"two legs", {&kA, &kB}, {1, 1, 1},
         {11, 3, 9, 5, 10.5, 100.5 / 90}, {"11/3", "9/5", "10.5/1.12"}},
        {"two legs, multipliers", {&kA, &kB}, {2, 0.5, 1},
         {157, 3, 154.5, 5, 156, 201.0 / 45}, {"157/3", "154.5/5", "156/4.47"}},
        {"B without ask: the bid line is 0", {&kA, &bNoAsk}, {1, 1, 1},
         {11, 3, 0, 0, 10.5, 100.5 / 90}, {"11/3", "0/0", "10.5/1.12"}},
        {"A without last", {&aNoLast, &kB}, {1, 1, 1},
         {11, 3, 9, 5, -1, -1}, {"11/3", "9/5", "-1"}},
        {"three legs: no ratio", {&kA, &kB, &kC}, {1, 1, 1},
         {-39, 2, -42, 5, -40, 0}, {"-39/2", "-42/5", "-40"}},
        {"three legs, C without bid", {&kA, &kB, &cNoBid}, {1, 1, 2},
         {0, 0, -93, 5, -90.5, 0}, {"0/0", "-93/5", "-90.5"}},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const SpreadPrices p = computeSpreadPrices(c.legs, c.units);
        EXPECT_DOUBLE_EQ(p.ask, c.want.ask);
        EXPECT_DOUBLE_EQ(p.askVol, c.want.askVol);
        EXPECT_DOUBLE_EQ(p.bid, c.want.bid);
        EXPECT_DOUBLE_EQ(p.bidVol, c.want.bidVol);
        EXPECT_DOUBLE_EQ(p.last, c.want.last);
        EXPECT_DOUBLE_EQ(p.ratio, c.want.ratio);
        EXPECT_EQ(spreadRowText(p, SpreadRow::Ask), c.rows[0]);
        EXPECT_EQ(spreadRowText(p, SpreadRow::Bid), c.rows[1]);
        EXPECT_EQ(spreadRowText(p, SpreadRow::Last), c.rows[2]);
    }
}

TEST(ManualSpreadCalc, HistoryKeepsTheLastHundredAndWidensTheRangeByFive) {
    CSpreadHistory h;
    EXPECT_EQ(h.range(), (std::pair<double, double>{0, 0}));
    for (int i = 0; i < 130; ++i) h.add({static_cast<double>(i), i + 2.0});
    ASSERT_EQ(h.size(), CSpreadHistory::kMaxPoints);
    EXPECT_EQ(h.at(0).bid, 30);  // the 30 oldest went
    EXPECT_EQ(h.at(99).ask, 131);
    EXPECT_EQ(h.range(), (std::pair<double, double>{25, 136}));
}

TEST(ManualSpreadCalc, LegOrderPrices) {
    using B = SpreadLimitBound;
    struct Case {
        const char* name;
        int direction;
        ITickEx q;
        int offset;
        SpreadLegStep step;
        B bound;
        double want;
    };
    const SpreadLegStep tick02{1, 0.2f}, tick1{1, 1};
    // clang-format off
    const Case cases[] = {
        {"buy: ask plus offset", kDirBuy, tick(3, "IF", 3001, 3001.4), 2, tick02, B::Own, 3001.8},
        {"sell: bid minus offset", kDirSell, tick(3, "IF", 3001.2, 3002), 2, tick02, B::Own, 3000.8},
        {"buy off the grid rounds up", kDirBuy, tick(3, "IF", 3001, 3001.3), 0, tick02, B::Own, 3001.4},
        {"sell off the grid rounds down", kDirSell, tick(3, "IF", 3001.3, 3002), 0, tick02, B::Own, 3001.2},
        {"buy above the upper limit", kDirBuy, tick(0, "rb", 4600, 4601, 0, 4180, 4603), 5, tick1, B::Own, 4603},
        {"sell below the lower limit", kDirSell, tick(0, "rb", 4182, 4183, 0, 4180, 4620), 5, tick1, B::Own, 4180},
        {"other side: buy not capped", kDirBuy, tick(0, "rb", 4600, 4601, 0, 4180, 4603), 5, tick1, B::Opposite, 4606},
        {"other side: buy raised to lower", kDirBuy, tick(0, "rb", 4100, 4101, 0, 4180, 4620), 0, tick1, B::Opposite, 4180},
        {"other side: sell lowered to upper", kDirSell, tick(0, "rb", 4650, 4651, 0, 4180, 4620), 0, tick1, B::Opposite, 4620},
        {"step unknown: one unit", kDirBuy, tick(0, "x", 99, 100.5), 1, SpreadLegStep{}, B::Own, 102},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_DOUBLE_EQ(spreadLegOrderPrice(c.direction, c.q, c.offset, c.step, c.bound), c.want);
    }
}

TEST(ManualSpreadCalc, CaptionShowsTemplateAndQuoteTimes) {
    EXPECT_EQ(manualSpreadCaption("", false, 0, false, 0), "价差下单:A[],B[]");
    EXPECT_EQ(manualSpreadCaption("螺纹跨期", true, mstest::localMs(10, 0, 1) + 500, true,
                                  mstest::localMs(9, 59, 58)),
              "螺纹跨期@价差下单:A[10:00:01],B[09:59:58]");
}

}  // namespace
