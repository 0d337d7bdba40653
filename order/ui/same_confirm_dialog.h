// SameConfirmDialog (dialog 25048): the modeless confirmation of a batch of like orders —
// the same contract, direction and open/close for several accounts. A summary line on top
// says in one glance what the whole batch does ("开仓买入IF2406,共3笔,合计6张"), the list
// below shows each account's order (prices and volumes editable in place, like the modal
// batch confirmation), then 确认/取消.
//
// Unlike the modal confirmations this one sends itself: the call that opened it has long
// returned, so accepting hands the (edited) batch to the manager's batch submission, once,
// and closes the window. Cancelling or closing sends nothing.
//
// Top-level window owned by Qt (WA_DeleteOnClose); UI thread only.
#pragma once

#include <QDialog>

#include "order/multi_confirm.h"

class BatchOrderTable;
class CHelmsmanManage;
class QLabel;
class QPushButton;

class SameConfirmDialog : public QDialog {
    Q_OBJECT
public:
    static constexpr int kDialogId = 25048;

    SameConfirmDialog(std::vector<tagBrokerOrder> orders, const std::string& caller,
                      CHelmsmanManage& manager, QWidget* parent = nullptr);

    const CMultiConfirm& core() const { return m_core; }
    BatchOrderTable* table() const { return m_table; }
    QLabel* summary() const { return m_summary; }
    QPushButton* okButton() const { return m_ok; }
    QPushButton* cancelButton() const { return m_cancel; }

    void accept() override;

private:
    CMultiConfirm m_core;
    CHelmsmanManage& m_manager;
    BatchOrderTable* m_table;
    QLabel* m_summary;
    QPushButton* m_ok;
    QPushButton* m_cancel;
};
