// The batch confirmation windows.
//
// BatchOrderTable: the list of a CMultiConfirm — its columns, one row per order, buys in
// red and sells in green. Double-clicking a row edits its price in place (double-clicking
// the volume cell edits the volume); each typed value goes to the core, which applies or
// refuses it; a refusal is told through the manager's prompter and the cell shows the order
// as it still is. A sortable list: each row carries its order's index, so edits find their
// order in any sort, and the user's column layout is kept under the list's name.
//
// MultiConfirmDialog: the modal batch confirmation (title "委托确认[caller] - 双击可修改价格
// 数量"). It sends nothing: after exec() == Accepted the caller takes core().orders(), edits
// included, and sends them.
//
// MultiTriggerConfirmDialog: the modal confirmation of a batch of trigger orders; accepting
// sends each with SendTriggerOrder in list order and reports any the host refused.
//
// All are owned by their caller (modal) or by Qt (WA_DeleteOnClose); UI thread only.
#pragma once

#include <QDialog>
#include <memory>

#include "host/ui/sort_list_ctrl.h"
#include "order/multi_confirm.h"

class CHelmsmanManage;
class QPushButton;

class BatchOrderTable : public CSortListCtrl {
    Q_OBJECT
public:
    // `listName` keys the saved column layout.
    BatchOrderTable(CMultiConfirm& core, CHelmsmanManage& manager, const char* listName,
                    QWidget* parent = nullptr);

    // Redraws every row from the core.
    void refresh();
    // Starts editing the price (or, for the volume column, the volume) of a row.
    void editRow(int row, int column);

signals:
    // After an accepted edit.
    void edited();

private:
    void onItemChanged(QTableWidgetItem* item);
    // Shows the order behind a row as it now is.
    void fillRow(int row);
    std::size_t orderOf(int row) const { return static_cast<std::size_t>(GetItemData(row)); }

    CMultiConfirm& m_core;
    CHelmsmanManage& m_manager;
    bool m_filling = false;
};

class MultiConfirmDialog : public QDialog {
    Q_OBJECT
public:
    MultiConfirmDialog(CMultiConfirm& core, CHelmsmanManage& manager, QWidget* parent = nullptr);

    BatchOrderTable* table() const { return m_table; }
    QPushButton* okButton() const { return m_ok; }
    QPushButton* cancelButton() const { return m_cancel; }

private:
    BatchOrderTable* m_table;
    QPushButton* m_ok;
    QPushButton* m_cancel;
};

class MultiTriggerConfirmDialog : public QDialog {
    Q_OBJECT
public:
    MultiTriggerConfirmDialog(std::unique_ptr<CMultiTriggerConfirm> core, CHelmsmanManage& manager,
                              QWidget* parent = nullptr);

    const CMultiTriggerConfirm& core() const { return *m_core; }
    CSortListCtrl* table() const { return m_table; }
    QPushButton* okButton() const { return m_ok; }

    void accept() override;

private:
    std::unique_ptr<CMultiTriggerConfirm> m_core;
    CHelmsmanManage& m_manager;
    CSortListCtrl* m_table;
    QPushButton* m_ok;
    QPushButton* m_cancel;
};

// Names under which the lists keep their column layouts.
namespace confirm_lists {
inline constexpr const char* kBatch = "MultiConfirm";
inline constexpr const char* kTriggerBatch = "MultiTriggerConfirm";
inline constexpr const char* kLikeOrders = "SameConfirm";
inline constexpr const char* kFills = "FillNotice";
}  // namespace confirm_lists

namespace confirm_ui {
// The look the confirmation lists share: row height, no alternating colours.
void setupList(CSortListCtrl* list);
// Makes every column at least as wide as its heading and its widest cell.
void fitColumns(QTableWidget* table);
// Width that shows every column of `table` without a horizontal scroll bar.
int tableWidth(const QTableWidget* table);
}  // namespace confirm_ui
