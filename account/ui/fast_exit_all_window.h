// FastExitAllWindow: the window of CFastExitAll (dialog 25033, "一键全平"), a new one per call
// of OpenFastExitAll: the accounts as check boxes, every position side with its own check box
// in a sortable list, the offset, and one button that closes the checked sides in one batch.
// Prices follow the quotes once a second.
//
// Owns its core; deletes itself when closed. UI thread only.
#pragma once

#include <QDialog>

#include "account/fast_exit_all.h"

class CSortListCtrl;
class QLabel;
class QSpinBox;
namespace account_ui {
class AccountBoxes;
}

class FastExitAllWindow : public QDialog {
public:
    explicit FastExitAllWindow(CHelmsmanManage& manage, QWidget* parent = nullptr);
    CFastExitAll& core() { return m_core; }
    CFastExitAll::Result closeAll();

private:
    void fillList();
    void updatePrices();

    CFastExitAll m_core;
    account_ui::AccountBoxes* m_accounts = nullptr;
    CSortListCtrl* m_list = nullptr;
    QSpinBox* m_offset = nullptr;
    QLabel* m_summary = nullptr;
    bool m_filling = false;
};

int openFastExitAll();
