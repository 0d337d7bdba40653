// The spread exit information: spreads per side, profit by direction, the "(R)" marks and
// the totals rows, against hand-computed values.
#include "spread/spread_exit.h"

#include <gtest/gtest.h>

#include "host/number_text.h"

namespace {

using Row = std::vector<std::string>;
using Open = CSpreadExitInfo::OpenEntry;
using Closed = CSpreadExitInfo::ClosedEntry;

CSpreadExitInfo twoLegs(int direction = 0, int wA = 1, int wB = 1) {
    CSpreadExitInfo info(CSpreadExitInfo::Kind::TwoLegs);
    info.setLeg(0, "%.1f", wA);
    info.setLeg(1, "%.2f", wB);
    info.setDirection(direction);
    return info;
}

CSpreadExitInfo fourLegs(int direction = 0) {
    CSpreadExitInfo info(CSpreadExitInfo::Kind::FourLegs);
    for (int leg = 0; leg < 4; ++leg) info.setLeg(leg, "%.0f", 1);
    info.setDirection(direction);
    return info;
}

TEST(SpreadExit, TwoLegOpenListWithMarksMissingPricesAndTotals) {
    CSpreadExitInfo info = twoLegs(0, 2, 3);
    info.addOpen({{3500, 2330}, {false, true}});    // 7000 - 6990 = 10
    info.addOpen({{3501.5, 0}, {true, false}});     // B missing: no spread, mark still shown
    info.addOpen({{3502, 2331.25}, {true, true}});  // 7004 - 6993.75 = 10.25
    const SpreadExitList list = info.openList();
    EXPECT_EQ(list.layout, "开仓A,70;开仓B,52;价差,48;");
    ASSERT_EQ(list.rows.size(), 3u);
    EXPECT_EQ(list.rows[0], (Row{"3500.0", "2330.00(R)", "10.0"}));
    EXPECT_EQ(list.rows[1], (Row{"3501.5(R)", "0.00", "N/A"}));
    EXPECT_EQ(list.rows[2], (Row{"3502.0(R)", "2331.25(R)", "10.2"}));
    // Two rows with a spread, four marks shown; the average leaves out the row without one.
    EXPECT_EQ(list.totals, (Row{"合计=>", "次数:2(4)", "平均:10.1"}));
}

TEST(SpreadExit, NoTotalsRowWithoutAComputedValue) {
    CSpreadExitInfo info = twoLegs();
    EXPECT_TRUE(info.openList().totals.empty());
    EXPECT_TRUE(info.closedList().totals.empty());
    info.addOpen({{0, 2330}, {true, false}});
    info.addClosed({{3500, 2330}, {}, {3510, -1}, {}});  // exit side incomplete
    EXPECT_EQ(info.openList().rows.size(), 1u);
    EXPECT_TRUE(info.openList().totals.empty());
    const SpreadExitList closed = info.closedList();
    ASSERT_EQ(closed.rows.size(), 1u);
    EXPECT_EQ(closed.rows[0][2], "1170.0");
    EXPECT_EQ(closed.rows[0][5], "N/A");
    EXPECT_EQ(closed.rows[0][6], "N/A");
    EXPECT_TRUE(closed.totals.empty());
}

TEST(SpreadExit, ProfitSignFollowsTheDirection) {
    struct Case {
        int direction;
        double open, exit;  // spreads, with leg B fixed at 100
        const char* profit;
    } const cases[] = {
        {1, 10.0, 12.5, "2.5"},   // widened, direction 1 gains
        {0, 10.0, 12.5, "-2.5"},  // the same round trip loses with direction 0
        {0, 12.5, 10.0, "2.5"},   // narrowed, direction 0 gains
        {1, 12.5, 10.0, "-2.5"},
        {1, 10.0, 10.0, "0.0"},
        {0, -4.0, -6.0, "2.0"},  // spreads below zero
    };
    for (const Case& c : cases) {
        CSpreadExitInfo info = twoLegs(c.direction);
        info.addClosed({{100 + c.open, 100}, {}, {100 + c.exit, 100}, {}});
        const SpreadExitList list = info.closedList();
        SCOPED_TRACE(testing::Message() << c.direction << " " << c.open << "->" << c.exit);
        EXPECT_EQ(list.rows.at(0).back(), c.profit);
        EXPECT_EQ(list.totals.at(4), c.profit);  // the total of one round trip
    }
}

TEST(SpreadExit, TwoLegClosedListAndItsTotals) {
    CSpreadExitInfo info = twoLegs(1);
    info.addClosed({{3510, 3500}, {true, false}, {3521, 3508.5}, {false, true}});  // 10 -> 12.5
    info.addClosed({{3512, 3500}, {}, {3510, 3500}, {}});                       // 12 -> 10
    info.addClosed({{3512, 3500}, {false, true}, {0, 3500}, {}});               // no profit
    info.addClosed({{3505, 3500}, {}, {3515, 3501}, {true, true}});            // 5 -> 14
    const SpreadExitList list = info.closedList();
    EXPECT_EQ(list.layout, "开仓A,70;开仓B,52;开价差,48;平仓A,66;平仓B,52;平价差,48;盈利,48;");
    ASSERT_EQ(list.rows.size(), 4u);
    EXPECT_EQ(list.rows[0], (Row{"3510.0(R)", "3500.00", "10.0", "3521.0", "3508.50(R)", "12.5",
                                 "2.5"}));
    EXPECT_EQ(list.rows[1], (Row{"3512.0", "3500.00", "12.0", "3510.0", "3500.00", "10.0", "-2.0"}));
    EXPECT_EQ(list.rows[2], (Row{"3512.0", "3500.00(R)", "12.0", "0.0", "3500.00", "N/A", "N/A"}));
    // Profits 2.5 - 2 + 9 = 9.5 over three round trips; five marks in the whole list.
    EXPECT_EQ(list.totals, (Row{"合计=>", "次数:", "3(5)", "总盈利:", "9.5", "", "3.2"}));
}

TEST(SpreadExit, FourLegsAddLegDAndSubtractBAndC) {
    CSpreadExitInfo info = fourLegs(1);
    // 4000 - 3900 - 3950 + 3860 = 10
    info.addOpen({{4000, 3900, 3950, 3860}, {false, false, true, false}});
    info.addOpen({{4000, 3900, 3950, 3880}, {}});  // D 20 higher: 30
    info.addOpen({{4000, 3900, 0, 3860}, {}});     // C missing
    const SpreadExitList open = info.openList();
    EXPECT_EQ(open.layout, "开仓A,70;开仓B,52;开仓C,52;开仓D,66;价差,48;");
    EXPECT_EQ(open.rows[0], (Row{"4000", "3900", "3950(R)", "3860", "10.0"}));
    EXPECT_EQ(open.rows[1].back(), "30.0");
    EXPECT_EQ(open.rows[2].back(), "N/A");
    EXPECT_EQ(open.totals, (Row{"合计=>", "次数:", "2(1)", "平均:", "20.0"}));

    info.addClosed({{4000, 3900, 3950, 3860}, {true}, {4010, 3900, 3950, 3870}, {false, true}});
    const SpreadExitList closed = info.closedList();
    EXPECT_EQ(closed.layout,
              "开仓A,70;开仓B,52;开仓C,52;开仓D,66;开价差,48;平仓A,66;平仓B,52;平仓C,52;平仓D,66;"
              "平价差,48;盈利,48;");
    // 10 -> 4010 - 3900 - 3950 + 3870 = 30: a profit of 20 with direction 1.
    EXPECT_EQ(closed.rows[0], (Row{"4000(R)", "3900", "3950", "3860", "10.0", "4010", "3900(R)",
                                   "3950", "3870", "30.0", "20.0"}));
    EXPECT_EQ(closed.totals, (Row{"合计=>", "次数:", "1(2)", "总盈利:", "20.0", "", "", "", "", "",
                                  "20.0"}));
}

TEST(SpreadExit, PriceFormatsThatCannotBeUsedPrintThePricePlainly) {
    struct Case {
        const char* format;
        double price;
        const char* text;
    } const cases[] = {
        {"%.2f", 3500.5, "3500.50"},
        {"价%.1f%%", 2.25, "价2.2%"},  // text around the conversion is kept
        {"", 3500.5, "3500.5"},
        {"%d", 3500.5, "3500.5"},       // not a floating-point conversion
        {"%.1f%.1f", 3500.5, "3500.5"},  // two conversions
        {"%*.1f", 3500.5, "3500.5"},
        {"%Lf", 3500.5, "3500.5"},
        {"%100f", 3500.5, "3500.5"},     // width beyond two digits
        {"%", 3500.5, "3500.5"},
    };
    for (const Case& c : cases) {
        CSpreadExitInfo info;
        info.setLeg(0, c.format, 1);
        EXPECT_EQ(info.formatPrice(0, c.price), c.text) << c.format;
    }
    CSpreadExitInfo info;
    info.setLeg(0, "%99.0f", 1);
    // A price the format would write out at great length falls back as well.
    EXPECT_EQ(info.formatPrice(0, 1e300), number_text::format(1e300));
}

TEST(SpreadExit, NegativeZeroShowsAsZero) {
    CSpreadExitInfo info = twoLegs(1);
    // 0.3 - 0.1 - 0.2 is a hair below zero; it must not show as "-0.0".
    info.addOpen({{100.3, 100.1}, {}});
    info.addClosed({{100.2, 100}, {}, {100.3, 100.1}, {}});
    EXPECT_EQ(info.closedList().rows[0].back(), "0.0");
}

}  // namespace
