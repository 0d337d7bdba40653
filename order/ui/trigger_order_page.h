// TriggerOrderPage: the ticket's "触发单交易" tab, the Qt face of one CTriggerOrder. It binds
// volume, trigger and execution price, type list, expiry, open/close and hedge flags, the
// stop-loss and take-profit controls and the local and algorithm check boxes to the core,
// and shows the core's line about the last trigger it sent. No trading rule lives here.
//
// Owned by the ticket window (a child widget); the core lives as long as the page. UI thread.
#pragma once

#include <QWidget>
#include <memory>

#include "order/trigger_order.h"

class CMasterDialog;
class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

class TriggerOrderPage final : public QWidget {
    Q_OBJECT
public:
    TriggerOrderPage(CMasterDialog& master, QWidget* parent);
    ~TriggerOrderPage() override;

    CTriggerOrder& core() { return *m_core; }
    // The ticket's core changed (TicketChange bits).
    void onCoreChanged(unsigned what);
    // Sends from the page's current values (the buy and sell buttons).
    CTriggerOrder::SendResult send(std::int32_t direction);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void pull();  // core -> widgets
    void push();  // widgets -> core
    void refreshStatus();

    CMasterDialog& m_master;
    std::unique_ptr<CTriggerOrder> m_core;
    bool m_refreshing = false;

    QLineEdit* m_volume = nullptr;
    QComboBox* m_openClose = nullptr;
    QDoubleSpinBox* m_trigger = nullptr;
    QComboBox* m_hedge = nullptr;
    QDoubleSpinBox* m_exec = nullptr;
    QComboBox* m_type = nullptr;
    QCheckBox* m_useExpiry = nullptr;
    QDateTimeEdit* m_expiry = nullptr;
    QCheckBox* m_stopLoss = nullptr;
    QDoubleSpinBox* m_stopPrice = nullptr;
    QPushButton* m_stopAuto = nullptr;
    QSpinBox* m_stopPoints = nullptr;
    QCheckBox* m_takeProfit = nullptr;
    QDoubleSpinBox* m_profitPrice = nullptr;
    QPushButton* m_profitAuto = nullptr;
    QSpinBox* m_profitPoints = nullptr;
    QCheckBox* m_local = nullptr;
    QCheckBox* m_algo = nullptr;
    QPushButton* m_buy = nullptr;
    QPushButton* m_sell = nullptr;
    QLabel* m_status = nullptr;
};
