// OrderModifyDialog: the window of COrderModify (dialog 25014), opened for one working order.
// It shows the order, the position and the quote, writes the new price and volume into the
// core and starts the change; the status line follows the change to its end. While a cancel
// is under way it re-reads the old order twice a second, in case its notice is lost.
//
// Owns its core; deletes itself when closed. UI thread only.
#pragma once

#include <QDialog>
#include <memory>

#include "order/order_modify.h"

class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QTimer;

class OrderModifyDialog : public QDialog {
public:
    OrderModifyDialog(CHelmsmanManage& manage, const tagBrokerOrder& working,
                      QWidget* parent = nullptr);

    COrderModify& core() { return *m_core; }
    COrderModify::Result submit();

private:
    void showState();

    std::unique_ptr<COrderModify> m_core;
    QLabel* m_position = nullptr;
    QLabel* m_sides = nullptr;
    QLabel* m_quote = nullptr;
    QDoubleSpinBox* m_price = nullptr;
    QSpinBox* m_volume = nullptr;
    QPushButton* m_modify = nullptr;
    QLabel* m_status = nullptr;
    QTimer* m_timer = nullptr;
};

// HelmsmanModifyOrder: a new window on `order`, shown centred over the host.
int openOrderModify(const tagBrokerOrder* order);
