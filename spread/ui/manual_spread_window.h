// ManualSpreadWindow: the window of CManualSpread ("价差下单"), a new one per call of
// OpenManualSpread. On the left the legs (exchange, instrument, multiplier, lots and hedge
// toggle per leg), the switches, the live spread rows, the buy and sell buttons and the
// accounts; on the right the chart pane, shown with "打开/关闭图表".
//
// Every edit goes straight into the core's settings, so the template commands and the send
// always see what the window shows. Quotes reach the core through its window handle; the
// window redraws once per turn of the event loop however many quotes arrived.
//
// Owns its core; deletes itself when closed. UI thread only.
#pragma once

#include <QWidget>
#include <array>

#include "spread/manual_spread.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QListWidget;
class QPushButton;
class QSpinBox;
class QTimer;
class ManualSpreadChart;
class TemplateMenu;

class ManualSpreadWindow : public QWidget {
    Q_OBJECT
public:
    explicit ManualSpreadWindow(CHelmsmanManage& manager, QWidget* parent = nullptr);

    CManualSpread& core() { return m_core; }
    ManualSpreadChart* chart() const { return m_chart; }
    QListWidget* accountList() const { return m_accountList; }
    QPushButton* buyButton() const { return m_buy; }
    QPushButton* sellButton() const { return m_sell; }
    QPushButton* hedgeButton(int leg) const { return m_legRows[leg].hedge; }
    QPushButton* butterflyButton() const { return m_butterfly; }
    QPushButton* chartButton() const { return m_chartButton; }
    QLabel* rowLabel(SpreadRow row) const { return m_rows[static_cast<int>(row)]; }
    TemplateMenu* templateMenu() const { return m_menu; }

    // Chooses leg i's instrument as the lists would.
    void chooseLeg(int leg, int exchangeId, const QString& code);
    // Checks the account rows whose identifiers are given (the others are unchecked).
    void checkAccounts(const QStringList& accountIds);
    // Buys or sells the spread with the accounts checked and the hedge toggles as they are.
    CManualSpread::SendResult sendSpread(bool buy);
    // Draws what changed now instead of at the next turn of the event loop.
    void flush();

private:
    struct LegRow {
        QLabel* title = nullptr;
        QComboBox* exchange = nullptr;
        QComboBox* symbol = nullptr;
        QDoubleSpinBox* unit = nullptr;
        QSpinBox* lots = nullptr;
        QPushButton* hedge = nullptr;
    };

    QWidget* buildLegs();
    QWidget* buildSwitches();
    QWidget* buildPrices();
    QWidget* buildAccounts();
    void connectEdits();
    void onCoreChanged(unsigned what);
    void showSettings();
    void showLeg(int leg);
    void fillSymbols(int leg, int exchangeId);
    void showQuotes();
    void showAccounts();
    void showChart(bool on);
    void enableLegC();

    CManualSpread m_core;
    std::array<LegRow, CManualSpread::kLegs> m_legRows;
    QPushButton* m_butterfly = nullptr;
    QPushButton* m_change = nullptr;
    QSpinBox* m_everyLots = nullptr;
    QSpinBox* m_offset = nullptr;
    QCheckBox* m_exit = nullptr;
    QCheckBox* m_confirm = nullptr;
    QCheckBox* m_firstLots = nullptr;
    std::array<QLabel*, 3> m_rows{};
    QPushButton* m_buy = nullptr;
    QPushButton* m_sell = nullptr;
    QListWidget* m_accountList = nullptr;
    QPushButton* m_templateButton = nullptr;
    QPushButton* m_chartButton = nullptr;
    TemplateMenu* m_menu = nullptr;
    ManualSpreadChart* m_chart = nullptr;
    QTimer* m_accountTimer = nullptr;
    unsigned m_pending = 0;
    bool m_accountsShown = false;
};

// OpenManualSpread: a new window, shown centred over the host.
int openManualSpread();
