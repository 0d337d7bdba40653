// TriggerModifyPage: the ticket's "修改或删除触发单" tab, the Qt face of one
// CTriggerModifyOrder: the account's waiting trigger and stop/profit orders in a sortable
// list, the chosen order's description under its title ("舵手 - [触发单#T1]"), its editable
// values, and the modify, delete and refresh buttons. The list is redrawn whenever the core
// says it changed (the host's notices reach the core through its own window handle) and,
// while the page is shown, read again every 3 s, since an expiry comes with no notice.
//
// Owned by the ticket window (a child widget); UI thread.
#pragma once

#include <QWidget>
#include <memory>
#include <string>

#include "order/trigger_modify_order.h"

class CMasterDialog;
class CSortListCtrl;
class QCheckBox;
class QDateTimeEdit;
class QDoubleSpinBox;
class QGroupBox;
class QLabel;
class QPushButton;

class TriggerModifyPage final : public QWidget {
    Q_OBJECT
public:
    TriggerModifyPage(CMasterDialog& master, QWidget* parent);
    ~TriggerModifyPage() override;

    CTriggerModifyOrder& core() { return *m_core; }
    void onCoreChanged(unsigned what);

private:
    void redraw();
    void push();

    CMasterDialog& m_master;
    std::unique_ptr<CTriggerModifyOrder> m_core;
    bool m_refreshing = false;

    static constexpr int kRefreshMs = 3000;
    std::string m_shownId;  // the order whose values the edit boxes hold

    CSortListCtrl* m_list = nullptr;
    QGroupBox* m_box = nullptr;
    QLabel* m_summary = nullptr;
    QDoubleSpinBox* m_volume = nullptr;
    QDoubleSpinBox* m_trigger = nullptr;
    QDoubleSpinBox* m_exec = nullptr;
    QDoubleSpinBox* m_stop = nullptr;
    QDoubleSpinBox* m_profit = nullptr;
    QCheckBox* m_useExpiry = nullptr;
    QDateTimeEdit* m_expiry = nullptr;
    QPushButton* m_modify = nullptr;
    QPushButton* m_delete = nullptr;
    QPushButton* m_refresh = nullptr;
};
