// AutoSpreadWindow: the auto spread robot's window ("价差舟[公式:…]"). It binds its controls to
// a CAutoSpread: per leg the account, exchange, instrument, multiplier and lots with the leg's
// quote and order state, the butterfly and roll switches, the live spread rows, the four
// price lines with how each compares, the sizes and timing, the position (which the trader
// may overtype), the average spread, the realised points, the status line and the finished
// rounds, newest first. It holds no trading rule.
//
// Every edit goes to the core at once (setSettings), so the template commands and a start
// always see what the window shows. While the robot runs or a round is open the settings are
// read-only. The core's change listener is drawn once per turn of the event loop however many
// quotes arrived; a QTimer drives the core's timer pass.
//
// Owns its core; deleted on close (closing asks the core first, and a refusal keeps the
// window). The core gives its handle back when it goes. UI thread only.
#pragma once

#include <QWidget>
#include <array>

#include "robots/auto_spread.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QTableWidget;
class QTimer;
class TemplateMenu;

class AutoSpreadWindow : public QWidget {
    Q_OBJECT
public:
    explicit AutoSpreadWindow(CHelmsmanManage& manager, QWidget* parent = nullptr);
    ~AutoSpreadWindow() override;

    CAutoSpread& core() { return m_core; }
    WndHandle handle() const { return m_core.handle(); }

    // The settings as the controls show them (the template name and the accounts' texts
    // included), and showing settings in the controls without echoing them to the core.
    tagAutoSpreadTemplate collect() const;
    void display(const tagAutoSpreadTemplate& s);
    // Chooses leg i's account (by identifier) and instrument as the lists would, and hands
    // the result to the core.
    void chooseLeg(int leg, const QString& accountId, int exchangeId, const QString& code);

    // The buttons' commands, also callable directly.
    void startOrPause();
    void updatePosition();
    // Draws what changed now instead of at the next turn of the event loop.
    void flush();
    // Whether the settings are locked (running or a round open).
    bool locked() const;

    QPushButton* startButton() const { return m_start; }
    QPushButton* templateButton() const { return m_templateButton; }
    TemplateMenu* templateMenu() const { return m_menu; }
    QPushButton* butterflyButton() const { return m_butterfly; }
    QSpinBox* positionBox() const { return m_position; }
    QLabel* statusLabel() const { return m_status; }
    QLabel* rowLabel(SpreadRow row) const { return m_rows[static_cast<int>(row)]; }
    QTableWidget* roundTable() const { return m_roundTable; }
    QDoubleSpinBox* lineBox(int i) const { return m_lines[i].price; }
    QCheckBox* lineCheck(int i) const { return m_lines[i].on; }
    QSpinBox* everyLotsBox() const { return m_everyLots; }
    QComboBox* symbolBox(int leg) const { return m_legs[leg].symbol; }
    QPushButton* updateButton() const { return m_update; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    struct LegRow {
        QLabel* title = nullptr;
        QComboBox* account = nullptr;
        QComboBox* exchange = nullptr;
        QComboBox* symbol = nullptr;
        QDoubleSpinBox* unit = nullptr;
        QSpinBox* lots = nullptr;
        QLabel* bid = nullptr;
        QLabel* ask = nullptr;
        QLabel* state = nullptr;
    };
    struct LineRow {
        QCheckBox* on = nullptr;
        QDoubleSpinBox* price = nullptr;
    };

    QWidget* buildLegs();
    QWidget* buildSpread();
    QWidget* buildLines();
    QWidget* buildOrders();
    QWidget* buildState();
    void connectEdits();
    void fillAccounts();
    void fillSymbols(int leg, int exchangeId);
    void showLeg(int leg, const tagTemplateLeg& l, const tagTemplateAccount& a);
    void showSettings();
    void toCore();
    void onCoreChanged(unsigned what);
    void showQuotes();
    void showState();
    void showRounds();
    void setEditable(bool on);
    void showCaption();

    CHelmsmanManage& m_manager;
    CAutoSpread m_core;
    std::array<LegRow, CAutoSpread::kLegs> m_legs;
    std::array<LineRow, 4> m_lines;
    std::array<QLabel*, 3> m_rows{};
    QPushButton* m_butterfly = nullptr;
    QPushButton* m_change = nullptr;
    QSpinBox* m_everyLots = nullptr;
    QSpinBox* m_maxLots = nullptr;
    QSpinBox* m_orderOffset = nullptr;
    QSpinBox* m_unstayedOffset = nullptr;
    QSpinBox* m_stay = nullptr;
    QSpinBox* m_delay = nullptr;
    QCheckBox* m_stepTrade = nullptr;
    QCheckBox* m_stepExit = nullptr;
    QSpinBox* m_gridOffset = nullptr;
    QSpinBox* m_gridLots = nullptr;
    QCheckBox* m_confirm = nullptr;
    QSpinBox* m_position = nullptr;
    QPushButton* m_update = nullptr;
    QLabel* m_average = nullptr;
    QLabel* m_realised = nullptr;
    QLabel* m_status = nullptr;
    QTableWidget* m_roundTable = nullptr;
    QPushButton* m_templateButton = nullptr;
    QPushButton* m_start = nullptr;
    TemplateMenu* m_menu = nullptr;
    QTimer* m_timer = nullptr;
    unsigned m_pending = 0;
    bool m_showing = false;    // controls are being set from a record: no echo to the core
    bool m_pushing = false;    // the window is handing its settings to the core
    bool m_defaulted = false;  // a leg without a saved account shows a logged-on one
    bool m_positionEdited = false;
    std::size_t m_roundsShown = 0;
};

// OpenSpreadTrader: a new window over the host's, registered with the manager for host
// events, shown centred. Returns the window's handle.
WndHandle openAutoSpread(CHelmsmanManage& manager);
