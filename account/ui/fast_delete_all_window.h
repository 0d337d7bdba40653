// The windows of the two cancelling tools, new ones per call:
//  - FastDeleteAllWindow (dialog 25040, "一键全撤"): the accounts, filters by instrument and
//    side, the working orders in a sortable list, one button that cancels every listed
//    order, and the result line of each order;
//  - DeleteTriggerWindow (dialog 25023, "多帐户撤触发单"): the accounts, the waiting server
//    trigger orders with check boxes, a check-all box, one button that deletes the checked
//    ones, and the result line of each.
// Both read the lists again once a second.
//
// Each owns its core; deletes itself when closed. UI thread only.
#pragma once

#include <QDialog>

#include "account/fast_delete_all.h"

class CSortListCtrl;
class QComboBox;
class QLabel;
class QPlainTextEdit;
namespace account_ui {
class AccountBoxes;
}

class FastDeleteAllWindow : public QDialog {
public:
    explicit FastDeleteAllWindow(CHelmsmanManage& manage, QWidget* parent = nullptr);
    CFastDeleteAll& core() { return m_core; }
    int cancelAll();

private:
    void reload();
    void fillCodes();
    void fillList();

    CFastDeleteAll m_core;
    account_ui::AccountBoxes* m_accounts = nullptr;
    QComboBox* m_code = nullptr;
    QComboBox* m_side = nullptr;
    CSortListCtrl* m_list = nullptr;
    QPlainTextEdit* m_results = nullptr;
    QLabel* m_summary = nullptr;
};

class DeleteTriggerWindow : public QDialog {
public:
    DeleteTriggerWindow(CHelmsmanManage& manage, const tagAccoutInfo* preselect, QWidget* parent = nullptr);
    CDeleteTriggerOrders& core() { return m_core; }
    int deleteChecked();

private:
    void fillList();

    CDeleteTriggerOrders m_core;
    account_ui::AccountBoxes* m_accounts = nullptr;
    CSortListCtrl* m_list = nullptr;
    QPlainTextEdit* m_results = nullptr;
    QLabel* m_summary = nullptr;
    bool m_filling = false;
};

int openFastDeleteAll();
// `block` (may be null) names the account checked at first.
int openDeleteTriggerOrders(const tagAccoutInfo* block);
