// The spread exit dialog, offscreen: titles and lists per kind, the totals row kept last
// through sorting, and (with HELMSMAN_SCREENSHOT_DIR set) the documentation screenshots of
// both windows with a realistic day of round trips.
#include "spread/ui/spread_exit_dialog.h"

#include <QHeaderView>

#include "host/ui/sort_list_ctrl.h"
#include "support/qt_app.h"
#include "support/temp_dir.h"

namespace {

using Open = CSpreadExitInfo::OpenEntry;
using Closed = CSpreadExitInfo::ClosedEntry;

// A rebar calendar spread (near minus far month) sold at a wide spread, bought back narrower.
CSpreadExitInfo calendarSpread() {
    CSpreadExitInfo info(CSpreadExitInfo::Kind::TwoLegs);
    info.setLeg(0, "%.0f", 1);
    info.setLeg(1, "%.0f", 1);
    info.setDirection(0);
    info.addOpen({{4452, 4396}, {}});
    info.addOpen({{4455, 4397}, {false, true}});
    info.addOpen({{4458, 0}, {}});  // leg B not filled yet
    info.addClosed({{4448, 4391}, {}, {4441, 4390}, {}});
    info.addClosed({{4450, 4392}, {}, {4444, 4392}, {false, true}});
    info.addClosed({{4446, 4392}, {true, false}, {4449, 4392}, {}});
    info.addClosed({{4451, 4393}, {}, {4441, 4391}, {}});
    return info;
}

// A butterfly over three months: near - 2 x middle + far, the middle month as legs B and C.
CSpreadExitInfo butterfly() {
    CSpreadExitInfo info(CSpreadExitInfo::Kind::FourLegs);
    for (int leg = 0; leg < 4; ++leg) info.setLeg(leg, "%.0f", 1);
    info.setDirection(1);
    info.addOpen({{4352, 4331, 4331, 4318}, {}});
    info.addOpen({{4350, 4330, 4331, 4317}, {false, false, true, false}});
    info.addClosed({{4349, 4332, 4332, 4320}, {}, {4356, 4330, 4330, 4319}, {}});
    info.addClosed({{4351, 4331, 4331, 4316}, {}, {4350, 4332, 4333, 4318}, {false, true}});
    info.addClosed({{4354, 4329, 4329, 4310}, {}, {4358, 4327, 4328, 4313}, {}});
    return info;
}

std::string cell(CSortListCtrl* list, int row, int column) {
    return list->item(row, column)->text().toStdString();
}

TEST(SpreadExitDialog, ShowsBothListsWithTheirTotalsAndKeepsTheTotalsLast) {
    testApp();
    TempDir dir;
    SpreadExitDialog dialog(calendarSpread(), dir.string());
    EXPECT_EQ(dialog.windowTitle(), QString::fromUtf8("价差平仓信息"));
    CSortListCtrl* open = dialog.openList();
    CSortListCtrl* closed = dialog.closedList();
    ASSERT_EQ(open->columnCount(), 3);
    ASSERT_EQ(closed->columnCount(), 7);
    ASSERT_EQ(open->rowCount(), 4);
    EXPECT_EQ(cell(open, 3, 0), "合计=>");
    EXPECT_EQ(cell(open, 2, 2), "N/A");
    ASSERT_EQ(closed->rowCount(), 5);
    EXPECT_EQ(cell(closed, 4, 3), "总盈利:");

    // Sorting by profit, either way, reorders the round trips under a totals row that stays.
    for (int click = 0; click < 2; ++click) {
        closed->horizontalHeader()->sectionClicked(6);
        EXPECT_EQ(closed->GetItemData(4), SpreadExitDialog::kTotalsRow);
        EXPECT_EQ(cell(closed, 4, 0), "合计=>");
    }
    EXPECT_FALSE(closed->sortAscending());
    EXPECT_EQ(cell(closed, 0, 6), "8.0");
    EXPECT_EQ(cell(closed, 3, 6), "-3.0");
}

TEST(SpreadExitDialog, FourLegWindowAndScreenshots) {
    testApp();
    SpreadExitDialog butterflyDialog(butterfly(), "");
    EXPECT_EQ(butterflyDialog.windowTitle(), QString::fromUtf8("鸢翼平仓信息"));
    EXPECT_EQ(butterflyDialog.closedList()->columnCount(), 11);

    SpreadExitDialog spreadDialog(calendarSpread(), "");
    spreadDialog.show();
    butterflyDialog.show();
    saveScreenshot(&spreadDialog, "spread_exit.png");
    saveScreenshot(&butterflyDialog, "butterfly_exit.png");
}

}  // namespace
