// The sortable report list: numeric sorting by a heading click, row data that travels with
// its row, and the user's column layout restored by the next list of the same name.
#include "host/ui/sort_list_ctrl.h"

#include <gtest/gtest.h>

#include <QHeaderView>

#include "support/qt_app.h"
#include "support/temp_dir.h"

namespace {

constexpr const char* kColumns = "帐户,80;数量,40;价格,60";

void fill(CSortListCtrl& list) {
    const std::vector<std::vector<std::string>> rows = {
        {"880001(模拟账户一)", "9", "3001.4"}, {"880002", "10", "市价"}, {"880003", "2.5", "99"}};
    for (std::size_t i = 0; i < rows.size(); ++i) list.SetItemData(list.AddItem(rows[i]), i + 1);
}

std::vector<std::uint64_t> rowData(const CSortListCtrl& list) {
    std::vector<std::uint64_t> out;
    for (int r = 0; r < list.rowCount(); ++r) out.push_back(list.GetItemData(r));
    return out;
}

TEST(SortListCtrl, HeadingClicksSortNumbersAsNumbers) {
    testApp();
    CSortListCtrl list;
    list.SetHeadings(kColumns);
    ASSERT_EQ(list.columnCount(), 3);
    EXPECT_EQ(list.horizontalHeaderItem(1)->text(), QString::fromUtf8("数量"));
    fill(list);
    const struct {
        int column;
        std::vector<std::uint64_t> rows;
    } clicks[] = {
        {1, {3, 1, 2}},  // 2.5, 9, 10
        {1, {2, 1, 3}},  // the same heading again: descending
        {0, {1, 2, 3}},  // another heading: ascending again, as text
        {2, {3, 1, 2}},  // 99, 3001.4, then the text "市价"
    };
    for (const auto& c : clicks) {
        emit list.horizontalHeader()->sectionClicked(c.column);
        EXPECT_EQ(rowData(list), c.rows) << "column " << c.column;
    }
    EXPECT_EQ(list.FindItemData(2), 2);
    list.DeleteItem(0);
    EXPECT_EQ(rowData(list), (std::vector<std::uint64_t>{1, 2}));
}

TEST(SortListCtrl, RestoresTheLayoutTheUserLeft) {
    testApp();
    TempDir dir("helmsman_sort_list");
    {
        CSortListCtrl list;
        list.SetHeadings(kColumns);
        fill(list);
        EXPECT_FALSE(list.LoadColumnInfo(dir.string(), "Fills"));  // nothing saved yet
        list.setColumnWidth(0, 211);
        list.horizontalHeader()->moveSection(2, 0);
        list.SortByColumn(1, false);
    }  // closed: the layout is saved

    CSortListCtrl again;
    again.SetHeadings(kColumns);
    fill(again);
    ASSERT_TRUE(again.LoadColumnInfo(dir.string(), "Fills"));
    EXPECT_EQ(again.columnWidth(0), 211);
    EXPECT_EQ(again.horizontalHeader()->logicalIndex(0), 2);
    EXPECT_EQ(again.sortColumn(), 1);
    EXPECT_FALSE(again.sortAscending());
    EXPECT_EQ(rowData(again), (std::vector<std::uint64_t>{2, 1, 3}));

    // Another list, or the same name with other headings, finds nothing to restore.
    CSortListCtrl other;
    other.SetHeadings("帐户,80;数量,40");
    EXPECT_FALSE(other.LoadColumnInfo(dir.string(), "Fills"));
    EXPECT_FALSE(again.LoadColumnInfo(dir.string(), "Trades"));
}

}  // namespace
