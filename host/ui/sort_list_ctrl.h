// CSortListCtrl: the sortable report list every list of the module is built on.
//
//   list->SetHeadings("帐户,80;商品信息,108;委托价格,60;委托数量,60;");
//   list->AddItem({"880001(模拟账户一)", "IF2406 开仓买入", "3001.4", "2"});
//   list->LoadColumnInfo(manager.userDir(), "MultiConfirm");
//
// Headings come from a column layout text (parseColumnLayout; widths in dialog
// units). Clicking a heading sorts by that column, ascending first, a second click
// descending; cells that both read as numbers compare as numbers ("9" before "10"), others
// as text. Rows carry a 64-bit value (SetItemData) that stays with the row through sorting,
// so a list shows its model in any order and still finds the model's entry for a row.
//
// After LoadColumnInfo the list remembers what the user does with its columns — widths,
// order (headings can be dragged) and sort — in the user directory (host/column_info.h) and
// restores it the next time a list of that name is shown. It writes only when the layout
// changed, when it is hidden or destroyed.
//
// Owned by its parent widget; UI thread only.
#pragma once

#include <QTableWidget>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/column_info.h"

// A cell of a CSortListCtrl: compares numerically when both texts are numbers.
class CSortListItem : public QTableWidgetItem {
public:
    explicit CSortListItem(const QString& text);
    bool operator<(const QTableWidgetItem& other) const override;
    QTableWidgetItem* clone() const override;
};

class CSortListCtrl : public QTableWidget {
    Q_OBJECT
public:
    explicit CSortListCtrl(QWidget* parent = nullptr);
    ~CSortListCtrl() override;

    // Replaces the columns (and clears the rows) with those of a column layout text
    // ("title,width;...").
    void SetHeadings(std::string_view layout);
    // Restores the layout saved for `listName` (when one fits these headings) and keeps the
    // user's later changes there. Call after SetHeadings and after any width fitting of the
    // list's own. True when a saved layout was applied.
    bool LoadColumnInfo(const std::string& userDir, const std::string& listName);
    // Writes the layout now if it changed since it was loaded or last saved.
    void SaveColumnInfo();

    // Appends a row of read-only cells; returns its index.
    int AddItem(const std::vector<std::string>& texts);
    // Sets a cell's text, creating a read-only cell when there is none.
    void SetItemText(int row, int column, const std::string& text);
    void SetItemData(int row, std::uint64_t data);
    std::uint64_t GetItemData(int row) const;  // 0 for a row without data
    // The row that carries `data`, or -1.
    int FindItemData(std::uint64_t data) const;
    void DeleteItem(int row);
    void DeleteAllItems();

    // Sorts by a column (-1: back to no sort indicator, rows stay where they are).
    void SortByColumn(int column, bool ascending);
    int sortColumn() const { return m_sortColumn; }
    bool sortAscending() const { return m_ascending; }

    // The layout as it is now.
    ColumnInfo columnInfo() const;

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void onHeaderClicked(int column);
    void applyColumnInfo(const ColumnInfo& info);
    QTableWidgetItem* cellAt(int row, int column);

    std::vector<std::string> m_titles;
    int m_sortColumn = -1;
    bool m_ascending = true;
    std::string m_userDir;
    std::string m_listName;
    std::optional<ColumnInfo> m_stored;  // the layout as last loaded or saved
};
