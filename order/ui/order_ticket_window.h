// OrderTicketWindow: the order ticket (dialog 25001, caption "舵手"), the Qt face of one
// CMasterDialog. It lays out the frame (account, exchange, symbol, quote block, position and
// openable texts, tool buttons and their menu), the tabs "即时执行" / "触发单交易" /
// "修改或删除触发单" and the immediate page, docks the tick chart beside itself, and binds
// every widget to the core: edits are written into CNormalOrder::Controls as they happen, the
// core's listener redraws what changed, buttons and keys call the core. No trading rule lives
// here.
//
// Keyboard: the tab order follows the page top to bottom, Enter moves to the next field and
// never presses a button, and the "我的键盘" shortcuts (window-wide, only when switched on)
// send through CNormalOrder::sendHotkey.
//
// Esc does nothing: a ticket is closed by its close box only, never discarded by a stray key.
//
// Below the pages a status line tells what became of the last order sent from this ticket
// (a refusal in red, with the host's reason); beside the position, what can be closed.
//
// Modeless, one per OpenHelmsman, deleted on close (openOrderTicket). Closing closes the
// core, which unsubscribes and saves the ticket's settings. UI thread.
#pragma once

#include <QDialog>
#include <array>
#include <memory>

#include "order/hotkeys.h"
#include "order/master_dialog.h"

class CHelmsmanManage;
class QAction;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QShortcut;
class QSpinBox;
class QTabWidget;
class QTimer;
class TickChart;
class TriggerModifyPage;
class TriggerOrderPage;
struct tagHelmsmanPrefill;

class OrderTicketWindow final : public QDialog {
    Q_OBJECT
public:
    explicit OrderTicketWindow(CHelmsmanManage& manage, QWidget* parent = nullptr);
    ~OrderTicketWindow() override;

    // Opens the core (accounts, exchanges, settings, pre-fill) and draws it.
    void openTicket(const tagHelmsmanPrefill* prefill);

    CMasterDialog& core() { return *m_core; }
    TickChart* chart() const { return m_chart; }
    const HotkeySettings& hotkeys() const { return m_hotkeys; }
    void setHotkeys(const HotkeySettings& keys);

    void done(int r) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildFrame();
    QWidget* buildImmediatePage();

    void onCoreChanged(unsigned what);
    void refreshAccounts();
    void refreshExchanges();
    void refreshSymbol();
    void refreshQuote();
    void refreshPosition();
    void refreshPage();
    void refreshChart();
    void refreshStatus();
    void updateEnabling();

    void pushPage();
    void chooseSymbolText(const QString& text);
    void send(int direction);
    void sendHotkey(HotkeyAction action);
    void editHotkeys();

    CHelmsmanManage& m_manage;
    std::unique_ptr<CMasterDialog> m_core;
    HotkeySettings m_hotkeys;
    std::array<QShortcut*, kHotkeyActionCount> m_shortcuts{};

    // Frame.
    QComboBox* m_account = nullptr;
    QComboBox* m_exchange = nullptr;
    QComboBox* m_symbol = nullptr;
    QLabel* m_last = nullptr;
    QLabel* m_bid = nullptr;
    QLabel* m_bidVol = nullptr;
    QLabel* m_ask = nullptr;
    QLabel* m_askVol = nullptr;
    QLabel* m_upper = nullptr;
    QLabel* m_lower = nullptr;
    QLabel* m_position = nullptr;
    QLabel* m_openable = nullptr;
    QLabel* m_closable = nullptr;
    QLabel* m_status = nullptr;
    QTabWidget* m_tabs = nullptr;
    QAction* m_actChart = nullptr;
    QAction* m_actAutoStop = nullptr;
    QAction* m_actAutoProfit = nullptr;
    QAction* m_actHotkeys = nullptr;
    TickChart* m_chart = nullptr;
    QTimer* m_positionTimer = nullptr;

    // Immediate page.
    QLineEdit* m_volume = nullptr;
    QDoubleSpinBox* m_price = nullptr;
    QCheckBox* m_useBidAsk = nullptr;
    QCheckBox* m_useOffset = nullptr;
    QSpinBox* m_offset = nullptr;
    QComboBox* m_openClose = nullptr;
    QComboBox* m_hedge = nullptr;
    QCheckBox* m_stopLoss = nullptr;
    QDoubleSpinBox* m_stopPrice = nullptr;
    QPushButton* m_stopAuto = nullptr;
    QSpinBox* m_stopPoints = nullptr;
    QCheckBox* m_takeProfit = nullptr;
    QDoubleSpinBox* m_profitPrice = nullptr;
    QPushButton* m_profitAuto = nullptr;
    QSpinBox* m_profitPoints = nullptr;
    QCheckBox* m_algo = nullptr;
    QPushButton* m_algoSettings = nullptr;
    QPushButton* m_buy = nullptr;
    QPushButton* m_sell = nullptr;

    // The trigger pages ("触发单交易", "修改或删除触发单").
    TriggerOrderPage* m_triggerPage = nullptr;
    TriggerModifyPage* m_modifyPage = nullptr;

    bool m_refreshing = false;
};

// OpenHelmsman: a new modeless ticket on the process-wide manager (deleted on close), with
// the pre-fill block applied, shown and centred. Returns 1.
int openOrderTicket(const tagHelmsmanPrefill* block);
