// MonitorSet: the desk's monitors — accounts, working orders, all orders, fills, positions
// and server trigger orders — with their panes, tabs and commands.
//
// Updates follow the exchange's events, one row per record: a new order appends one row to
// the order list (shared by the working and all-orders views, which only filter and sort
// it), a status change updates that row, a fill appends a fill row and re-reads that one
// position. Events are queued as they arrive and applied by flush() in batches, so an
// order's several changes in one batch cost one row update. The exchange's full lists
// are read only at start-up and on a forced refresh (logon, logoff).
//
// Every view sorts by any column (the header remembers it with the column layout), keeps
// its selection, current row and scroll position while rows arrive, and acts on the
// records selected by their keys, never by row number. Cancelling asks first.
//
// Owned by the desk window (a QObject child); the exchange and the prompter outlive it.
// UI thread only.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <functional>
#include <initializer_list>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/prompter.h"
#include "shell/monitor_proxy.h"
#include "shell/monitor_rows.h"

class QMenu;
class QPoint;
class QPushButton;
class QTabWidget;
class QTableView;
class QWidget;
class SimExchange;

// A pane of the desk: a title bar with command buttons over a table.
QWidget* makePane(QWidget* parent, QTableView* view, const QString& title,
                  std::initializer_list<QPushButton*> buttons);

class MonitorSet : public QObject {
public:
    // What the monitors ask of the desk.
    struct Hooks {
        std::function<void(const QString& exportName)> openTool;  // position pane buttons
        std::function<bool(const char* exportName)> toolAvailable;  // none: all available
        std::function<void(const tagSymbol&)> openTicket;         // context menu
        std::function<void()> accountsChanged;                    // after logon or logoff
        std::function<void(const tagBrokerOrder&)> modifyOrder;   // the add-in's 改单 window
    };

    MonitorSet(SimExchange& exchange, IPrompter& prompter, DecimalsOf decimals, Hooks hooks,
               QWidget* parent);
    ~MonitorSet() override;

    // The accounts pane and the tabs of the other monitors, for the desk's layout.
    QWidget* accountPane() const { return m_accountPane; }
    QTabWidget* tabs() const { return m_tabs; }
    // Every monitor view (named for the layout memory).
    const std::vector<QTableView*>& views() const { return m_views; }
    QTableView* view(const QString& objectName) const;

    // ---- Events (queued; applied by flush) --------------------------------------------------
    // One event of the exchange's desk sink (code and data as the sink receives them).
    void onEvent(std::uint32_t code, std::uintptr_t data);
    void onOrderChanged(const tagBrokerOrder& order);
    void onNewFill(const tagBargainOrder& fill);
    void onTriggerChanged(const tagTriggerOrder& trigger);
    void onQuote() { m_dirtyAccounts = true; }
    void onLogonChanged() { m_needFullRefresh = true; }

    // Applies the queued events, one row each. The accounts (funds move with every quote)
    // follow at most every refreshMs; `force` reads every list from the exchange.
    void flush(bool force = false);
    static constexpr int kAccountRefreshMs = 200;
    // After each delivery: flush, unless the monitors changed less than kFlushIntervalMs ago.
    // A lone order shows at once; a busy book repaints ten times a second rather than on
    // every delivery, as a repaint of a monitor costs far more than its row updates.
    void flushIfDue();
    static constexpr int kFlushIntervalMs = 100;

    // Sorts each view by the column its header remembers (call after restoring the header
    // states; a view without one sorts newest first).
    void applyHeaderSorts();

    // ---- Commands -----------------------------------------------------------------------------
    // Cancels the working orders selected in the view (working or all orders) after one
    // question. Returns how many cancel requests were sent.
    int cancelSelected(QTableView* view);
    // Cancels one order by key after a question naming it.
    int cancelOrder(const QString& key);
    // Sends a cancel for each order key (account|broker|order id); how many went out.
    int deleteOrders(const QStringList& keys);
    // Cancels every working order not already being cancelled, after a question that says
    // how many.
    int cancelAllWorking();
    void deleteSelectedTriggers();
    // Opens the change of the first working order selected in the view (through the hook).
    bool modifySelected(QTableView* view);
    void logonSelected(bool on);
    // The position picked in the positions view (else the first held one).
    bool selectedPosition(tagOpenedPosition& out) const;

    // Selected rows, tab-separated, to the clipboard; the whole view to a GBK CSV file.
    void copySelected(QTableView* view) const;
    bool exportCsv(QTableView* view, const QString& path);
    // The context menu of a view at a row (the desk shows it; tests inspect it).
    QMenu* contextMenu(QTableView* view, const QPoint& pos);

    // The records a view's selection holds, in view order (keys).
    static std::vector<const RecordRow*> selectedRecords(const QTableView* view);

private:
    QTableView* makeView(MonitorProxy* proxy, const QString& name);
    void buildPanes(QWidget* parent);
    void wireView(QTableView* view);
    void keepScrollOnInsert(QTableView* view);
    void refreshAccounts();
    void refreshAll();
    bool isOrderView(const QTableView* view) const;
    MonitorProxy* proxyOf(const QTableView* view) const;

    SimExchange& m_exchange;
    IPrompter& m_prompter;
    DecimalsOf m_decimals;
    Hooks m_hooks;

    RecordTableModel* m_accounts = nullptr;
    RecordTableModel* m_orders = nullptr;  // working and all orders share it
    RecordTableModel* m_fills = nullptr;
    RecordTableModel* m_positions = nullptr;
    RecordTableModel* m_triggers = nullptr;

    QTableView* m_accountView = nullptr;
    QTableView* m_workingView = nullptr;
    QTableView* m_allOrdersView = nullptr;
    QTableView* m_fillView = nullptr;
    QTableView* m_positionView = nullptr;
    QTableView* m_triggerView = nullptr;
    std::vector<QTableView*> m_views;
    QWidget* m_accountPane = nullptr;
    QTabWidget* m_tabs = nullptr;

    // Queued events: the latest snapshot per order and trigger (in first-seen order), fills.
    std::vector<tagBrokerOrder> m_pendingOrders;
    std::unordered_map<std::string, std::size_t> m_pendingOrderAt;
    std::vector<tagTriggerOrder> m_pendingTriggers;
    std::unordered_map<std::string, std::size_t> m_pendingTriggerAt;
    std::vector<tagBargainOrder> m_pendingFills;

    bool m_dirtyAccounts = true;
    bool m_needFullRefresh = true;
    QElapsedTimer m_sinceAccounts;  // since the accounts were last read
    QElapsedTimer m_sinceChange;    // since a flush last changed the order, fill... monitors
};

// Texts of a view as shown: the visible columns in their visual order.
QStringList visibleTitles(const QTableView& view);
QStringList rowTexts(const QTableView& view, int viewRow);
// The whole view as CSV (header line, then every row as sorted; cells with a comma, a quote
// or a line break quoted), lines ended by "\r\n".
QString monitorCsv(const QTableView& view);
