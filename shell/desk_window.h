// DeskWindow: the host platform's main window, a paper-trading desk on the simulated
// exchange. It shows the live quote board, the accounts with logon and logoff, and monitors
// of working orders, all orders, fills, positions and server trigger orders; its menus and
// toolbar open every tool the Helmsman add-in exports, and it pumps the exchange's events
// into the add-in.
//
// The pump: a 20 ms timer delivers the exchange's queued events (to the add-in's exports
// and to this window's own monitors, MonitorSet, which apply them row by row, at most ten
// times a second while orders stream), a 500 ms timer runs one quote round.
//
// Owns its widgets and the two sinks; the exchange and the add-in library are owned by
// main() and outlive it. UI thread only.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QSettings>
#include <QTimer>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "algo/algo_setting.h"
#include "shell/addin_library.h"
#include "shell/busy_meter.h"
#include "shell/monitor_prompter.h"
#include "shell/monitor_set.h"
#include "sim/sim_exchange.h"

class QAction;
class QDialog;
class QLabel;
class QSplitter;
class QTabWidget;
class QTableView;
class QuoteBoardModel;

// The status line's words for an order the exchange refused, cancelled or let expire, with
// time ("HH:mm:ss" of its last update, else of `fallbackTime`), account, code and the
// exchange's reason; empty for every other change, the trader's own cancels included.
QString orderRefusalNotice(const tagBrokerOrder& order, std::int64_t fallbackTime);

class DeskWindow : public QMainWindow {
public:
    DeskWindow(SimExchange& exchange, AddinLibrary& addin, QString settingsFile,
               QString feedText, QWidget* parent = nullptr);
    ~DeskWindow() override;

    // An unattended run (--quit-after, --measure-busy) must end by itself: closing then says
    // a failed layout write on stderr instead of in a box that would wait for a click.
    void setUnattended(bool on) { m_unattended = on; }

    // Hands the exchange's events to the add-in and starts the pump. Call once, after
    // InitHelmsman.
    void startPump();

    // Calls one tool export by name, collecting what it needs from the desk's selection (or
    // the first suitable row). Returns false with a reason for an unknown or unavailable
    // export or when nothing suitable is there to hand it.
    bool openTool(const QString& exportName, QString* reason = nullptr);

    // One quote round, one delivery and a full monitor refresh at once (start-up, tests).
    void pumpOnce();

    BusyMeter& busyMeter() { return m_busy; }
    QuoteBoardModel& quoteBoard() { return *m_quotes; }

    // The options dialog hosting the add-in's option page. Modal from the menu; modeless
    // (returned, deleted on close) for unattended runs that want to look at it.
    QDialog* showOptions(bool modal = true);

    // The symbol picked on the quote board (empty when none).
    tagSymbol currentSymbol() const;
    // Picks a row of the quote board, as a click would (links open tickets).
    void selectSymbol(const tagSymbol& symbol);

    // Writes the window layout to the desk's settings file. False (and said on the status
    // line) when the file could not be written.
    bool saveLayout();
    // The desk's notice on the status line: refusals, failures.
    QString notice() const;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    class AddinSink;
    class DeskSink;

    void buildUi();
    void buildMenus();
    QTableView* makeTable(QAbstractItemModel* model, const QString& name);
    void loadBoard();
    void restoreLayout();
    void showNotice(const QString& text);
    void noteOrderChange(const tagBrokerOrder& order);

    void onDeliverTimer();
    void onQuoteTimer();
    void updateStatus();

    void onQuotePicked();
    void linkSymbolToTickets(const tagSymbol& symbol);
    void logonAll(bool on);

    int decimalsOf(std::int32_t exchangeID, const std::string& code) const;
    std::vector<tagAccoutInfo> loggedOnAccounts() const;
    bool buildTouchOrder(const tagAccoutInfo& account, tagBrokerOrder& out,
                         QString* reason) const;
    void inform(const QString& text);

    SimExchange& m_exchange;
    AddinLibrary& m_addin;
    QSettings m_settings;
    QString m_feedText;

    std::unique_ptr<AddinSink> m_addinSink;
    std::unique_ptr<DeskSink> m_deskSink;

    DeskPrompter m_prompter{this};
    QuoteBoardModel* m_quotes = nullptr;
    MonitorSet* m_monitors = nullptr;

    QTableView* m_quoteView = nullptr;
    QTabWidget* m_tabs = nullptr;
    QSplitter* m_splitter = nullptr;
    std::vector<QTableView*> m_tables;

    QLabel* m_clockLabel = nullptr;
    QLabel* m_sessionLabel = nullptr;
    QLabel* m_feedLabel = nullptr;
    QLabel* m_accountLabel = nullptr;
    QLabel* m_addinLabel = nullptr;
    QLabel* m_noticeLabel = nullptr;
    bool m_unattended = false;

    QTimer m_deliverTimer;
    QTimer m_quoteTimer;
    BusyMeter m_busy;


    std::map<std::string, int> m_decimals;  // "exchange|code" -> price decimals
    tagAlgoSetting m_algoBlock;              // what the algo settings tool edits
    tagSymbol m_linkedSymbol;                // last symbol sent to the tickets
};
