// FastExitWindow: the window of CFastExit (dialog 25019, "快速平仓"), a new one per call of
// OpenFastExit. Account and instrument boxes, the touch and the limits, the position by day,
// the volume and price boxes with the pricing options, and one button per side. Quote and
// position are read again twice a second; options are saved as they change.
//
// Owns its core; deletes itself when closed. UI thread only.
#pragma once

#include <QDialog>

#include "account/fast_exit.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QSpinBox;

class FastExitWindow : public QDialog {
public:
    FastExitWindow(CHelmsmanManage& manage, const tagOpenedPosition* position, const std::string& code,
                   QWidget* parent = nullptr);
    CFastExit& core() { return m_core; }
    CFastExit::Result closeSide(std::int32_t direction);

private:
    void fillAccounts();
    void fillSymbols();
    void setPriceStep();
    void showState();
    void toCore();

    CFastExit m_core;
    QComboBox* m_account = nullptr;
    QComboBox* m_symbol = nullptr;
    QLabel* m_quote = nullptr;
    QLabel* m_position = nullptr;
    QDoubleSpinBox* m_volume = nullptr;
    QDoubleSpinBox* m_price = nullptr;
    QCheckBox* m_useTouch = nullptr;
    QCheckBox* m_useOffset = nullptr;
    QSpinBox* m_offset = nullptr;
    QCheckBox* m_algo = nullptr;
    QPushButton* m_closeLong = nullptr;
    QPushButton* m_closeShort = nullptr;
    QLabel* m_status = nullptr;
    bool m_filling = false;
};

// OpenFastExit: a new window on `position` (may be null), shown centred over the host.
int openFastExit(const tagOpenedPosition* position, const char* code);
