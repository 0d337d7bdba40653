// The batch confirmation windows.
//
// BatchOrderTable: the list of a CMultiConfirm — its columns, one row per order, buys in
// red and sells in green. Double-clicking a row edits its price in place (double-clicking
// the volume cell edits the volume); each typed value goes to the core, which applies or
// refuses it; a refusal is told through the manager's prompter and the cell shows the order
// as it still is.
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
#include <QTableWidget>
#include <memory>

#include "order/multi_confirm.h"

class CHelmsmanManage;
class QPushButton;

class BatchOrderTable : public QTableWidget {
    Q_OBJECT
public:
    BatchOrderTable(CMultiConfirm& core, CHelmsmanManage& manager, QWidget* parent = nullptr);

    // Redraws every row from the core.
    void refresh();
    // Starts editing the price (or, for the volume column, the volume) of a row.
    void editRow(int row, int column);

signals:
    // After an accepted edit.
    void edited();

private:
    void onItemChanged(QTableWidgetItem* item);
    void fillRow(int row);

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
    QTableWidget* table() const { return m_table; }
    QPushButton* okButton() const { return m_ok; }

    void accept() override;

private:
    std::unique_ptr<CMultiTriggerConfirm> m_core;
    CHelmsmanManage& m_manager;
    QTableWidget* m_table;
    QPushButton* m_ok;
    QPushButton* m_cancel;
};

namespace confirm_ui {
// Applies a column layout ("title,width;...") to a table; widths are dialog units.
void applyColumns(QTableWidget* table, const char* detail);
// A table cell that the user reads but does not edit.
QTableWidgetItem* readOnlyItem(const std::string& text);
// Width that shows every column of `table` without a horizontal scroll bar.
int tableWidth(const QTableWidget* table);
}  // namespace confirm_ui
