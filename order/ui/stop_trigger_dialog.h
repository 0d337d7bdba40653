// StopTriggerDialog: the window of CStopTrigger (dialog 25045), one new window per call of
// OpenStopTrigger. It shows the position side and the quote, writes its controls into the
// core and sends through it; the quote and the position are read again twice a second.
//
// Owns its core; deletes itself when closed. UI thread only.
#pragma once

#include <QDialog>

#include "order/stop_trigger.h"

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QTimer;

class StopTriggerDialog : public QDialog {
public:
    StopTriggerDialog(CHelmsmanManage& manage, const tagOpenedPosition& position, int side,
                      const std::string& code, QWidget* parent = nullptr);

    CStopTrigger& core() { return m_core; }
    // Writes the controls into the core and sends; the status line tells the outcome.
    CStopTrigger::SendResult send();

private:
    void showQuote();
    void toCore();

    CStopTrigger m_core;
    QLabel* m_side = nullptr;
    QLabel* m_symbol = nullptr;
    QLabel* m_quote = nullptr;
    QLabel* m_quoteTime = nullptr;
    QLabel* m_type = nullptr;
    QDoubleSpinBox* m_trigger = nullptr;
    QDoubleSpinBox* m_price = nullptr;
    QSpinBox* m_volume = nullptr;
    QComboBox* m_openClose = nullptr;
    QCheckBox* m_hasExpiry = nullptr;
    QDateTimeEdit* m_expiry = nullptr;
    QCheckBox* m_local = nullptr;
    QPushButton* m_send = nullptr;
    QLabel* m_status = nullptr;
    QTimer* m_timer = nullptr;
};

// OpenStopTrigger: a new window on `position`, shown centred over the host.
int openStopTrigger(const tagOpenedPosition* position, int side, const char* code);
