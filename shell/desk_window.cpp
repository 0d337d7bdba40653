#include "shell/desk_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>
#include <set>

#include "host/clock.h"
#include "host/price.h"
#include "host/window.h"
#include "shell/quote_board_model.h"
#include "shell/record_table_model.h"
#include "shell/shell_texts.h"

namespace t = shell_text;

namespace {

constexpr int kDeliverIntervalMs = 20;
constexpr int kMonitorRefreshMs = 200;
constexpr int kTicketDialog = 25001;
constexpr int kBatchDialog = 25009;
constexpr const char* kCallerName = "交易台";
// The settings group of the saved layout; bumped when the desk's columns change so an old
// header state is never forced onto different columns.
constexpr const char* kLayoutGroup = "desk.v2";

// The instrument the user picked on the board: a selected row (a click, a key, a double
// click). The row the board's focus merely rests on is not a choice.
tagSymbol pickedSymbol(const QTableView* view, const QuoteBoardModel* board) {
    const QModelIndexList rows = view->selectionModel()->selectedRows();
    const QuoteBoardModel::Row* r = rows.isEmpty() ? nullptr : board->rowAt(rows.front().row());
    return r ? r->symbol : tagSymbol{};
}

std::string decimalsKey(std::int32_t exchangeID, const std::string& code) {
    return std::to_string(exchangeID) + '|' + code;
}

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

}  // namespace

// The add-in's side of the exchange's events: straight into its exports.
class DeskWindow::AddinSink final : public ISimEventSink {
public:
    explicit AddinSink(AddinLibrary& lib) : m_lib(lib) {}
    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        m_lib.dataChange(code, data);
    }
    void onLogonStateChange(std::uint32_t code, std::uintptr_t data) override {
        m_lib.logonStateChange(code, data);
    }
    void onWindowMessage(std::uint32_t hWnd, std::uint32_t msg, std::uintptr_t wParam,
                         std::uintptr_t lParam) override {
        if (m_lib.sendMessage) m_lib.sendMessage(hWnd, msg, wParam, lParam);
    }

private:
    AddinLibrary& m_lib;
};

// The desk's own side: quotes update the board at once; trade events only mark the
// monitors they touch, which the pump refreshes in one go.
class DeskWindow::DeskSink final : public ISimEventSink {
public:
    explicit DeskSink(DeskWindow& desk) : m_desk(desk) {}
    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        switch (eventKind(code)) {
            case kEventQuote:
                if (data) {
                    m_desk.m_quotes->applyQuote(
                        *reinterpret_cast<const IModuleFutureTrader::ITickEx*>(data));
                }
                // Marks move with the market: funds and floating profit follow.
                m_desk.m_dirtyAccounts = true;
                break;
            case kEventOrderChanged:
                m_desk.m_dirtyOrders = true;
                m_desk.m_dirtyAccounts = true;
                break;
            case kEventNewFill:
                m_desk.m_dirtyFills = true;
                m_desk.m_dirtyPositions = true;
                m_desk.m_dirtyAccounts = true;
                break;
            case kSimEventTriggerChanged:
                m_desk.m_dirtyTriggers = true;
                break;
            default:
                break;
        }
    }
    void onLogonStateChange(std::uint32_t, std::uintptr_t) override {
        // Logging on or off changes what every query answers.
        m_desk.m_dirtyAccounts = m_desk.m_dirtyOrders = m_desk.m_dirtyFills = true;
        m_desk.m_dirtyPositions = m_desk.m_dirtyTriggers = true;
    }
    void onWindowMessage(std::uint32_t, std::uint32_t, std::uintptr_t, std::uintptr_t) override {}

private:
    DeskWindow& m_desk;
};

DeskWindow::DeskWindow(SimExchange& exchange, AddinLibrary& addin, QString settingsFile,
                       QString feedText, QWidget* parent)
    : QMainWindow(parent),
      m_exchange(exchange),
      m_addin(addin),
      m_settings(settingsFile, QSettings::IniFormat),
      m_feedText(std::move(feedText)),
      m_addinSink(std::make_unique<AddinSink>(addin)),
      m_deskSink(std::make_unique<DeskSink>(*this)) {
    setObjectName("desk");
    setWindowTitle(t::kAppTitle);
    buildUi();
    buildMenus();
    loadBoard();
    restoreLayout();
    refreshMonitors(true);
    updateStatus();

    m_deliverTimer.setInterval(kDeliverIntervalMs);
    m_quoteTimer.setInterval(static_cast<int>(SimExchange::kQuoteIntervalMs));
    connect(&m_deliverTimer, &QTimer::timeout, this, &DeskWindow::onDeliverTimer);
    connect(&m_quoteTimer, &QTimer::timeout, this, &DeskWindow::onQuoteTimer);
}

DeskWindow::~DeskWindow() {
    m_exchange.setEventSink(nullptr);
    m_exchange.setDeskSink(nullptr);
}

// ---- Building ----------------------------------------------------------------------------

QTableView* DeskWindow::makeTable(QAbstractItemModel* model, const QString& name) {
    auto* view = new QTableView(this);
    view->setObjectName(name);
    view->setModel(model);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setAlternatingRowColors(true);
    view->setShowGrid(false);
    view->setWordWrap(false);
    view->setCornerButtonEnabled(false);
    view->verticalHeader()->setVisible(false);
    view->verticalHeader()->setDefaultSectionSize(22);
    view->horizontalHeader()->setHighlightSections(false);
    view->horizontalHeader()->setSectionsMovable(true);
    view->horizontalHeader()->setStretchLastSection(true);
    view->horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
    view->horizontalHeader()->setMinimumSectionSize(36);
    m_tables.push_back(view);
    return view;
}

void DeskWindow::buildUi() {
    m_quotes = new QuoteBoardModel(this);
    m_accounts = new RecordTableModel(accountHeaders(), this);
    m_working = new RecordTableModel(orderHeaders(), this);
    m_allOrders = new RecordTableModel(orderHeaders(), this);
    m_fills = new RecordTableModel(fillHeaders(), this);
    m_positions = new RecordTableModel(positionHeaders(), this);
    m_triggers = new RecordTableModel(triggerHeaders(), this);

    m_quoteView = makeTable(m_quotes, "quoteBoard");
    m_quoteView->setSelectionMode(QAbstractItemView::SingleSelection);
    m_quoteView->setProperty("board", true);
    m_quoteView->verticalHeader()->setDefaultSectionSize(24);
    m_quoteView->horizontalHeader()->setStretchLastSection(false);
    m_accountView = makeTable(m_accounts, "accounts");
    m_workingView = makeTable(m_working, "workingOrders");
    m_allOrdersView = makeTable(m_allOrders, "allOrders");
    m_fillView = makeTable(m_fills, "fills");
    m_positionView = makeTable(m_positions, "positions");
    m_triggerView = makeTable(m_triggers, "triggerOrders");
    // Tables that end on a number keep it beside its neighbours instead of far right.
    m_positionView->horizontalHeader()->setStretchLastSection(false);
    m_accountView->horizontalHeader()->setStretchLastSection(false);

    // Default widths that fit the Chinese titles and the widest values; the user's own
    // widths, once saved, replace them.
    const int quoteWidths[] = {76, 176, 84, 72, 72, 84, 60, 84, 60, 84, 84, 84, 84, 84, 76};
    for (int c = 0; c < QuoteBoardModel::kColumnCount; ++c) {
        m_quoteView->setColumnWidth(c, quoteWidths[c]);
    }
    const int accountWidths[] = {60, 84, 50, 92, 92, 84, 70, 70, 56};
    for (int c = 0; c < 9; ++c) m_accountView->setColumnWidth(c, accountWidths[c]);
    const int orderWidths[] = {66, 52, 60, 64, 40, 48, 72, 40, 50, 72, 100, 70};
    for (int c = 0; c < 12; ++c) {
        m_workingView->setColumnWidth(c, orderWidths[c]);
        m_allOrdersView->setColumnWidth(c, orderWidths[c]);
    }
    const int fillWidths[] = {70, 56, 56, 70, 70, 44, 52, 76, 44, 80};
    for (int c = 0; c < 10; ++c) m_fillView->setColumnWidth(c, fillWidths[c]);
    const int positionWidths[] = {80, 80, 60, 60, 90, 60, 60, 90};
    for (int c = 0; c < 8; ++c) m_positionView->setColumnWidth(c, positionWidths[c]);
    const int triggerWidths[] = {70, 56, 70, 70, 44, 52, 64, 76, 76, 44, 110, 72, 80};
    for (int c = 0; c < 13; ++c) m_triggerView->setColumnWidth(c, triggerWidths[c]);

    // A pick is a selected row; some ways of selecting move the current row first.
    connect(m_quoteView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { onQuotePicked(); });
    connect(m_quoteView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { onQuotePicked(); });
    connect(m_quoteView, &QTableView::doubleClicked, this, [this] { openTool("OpenHelmsman"); });

    // A pane: a title bar with command buttons over a table.
    auto pane = [this](QTableView* view, const QString& title,
                       std::initializer_list<QPushButton*> buttons) {
        auto* box = new QWidget(this);
        auto* v = new QVBoxLayout(box);
        v->setContentsMargins(0, 0, 0, 0);
        v->setSpacing(2);
        auto* bar = new QHBoxLayout;
        bar->setContentsMargins(6, 2, 6, 0);
        if (!title.isEmpty()) {
            auto* label = new QLabel(title, box);
            label->setObjectName("paneTitle");
            bar->addWidget(label);
        }
        bar->addStretch(1);
        for (QPushButton* b : buttons) bar->addWidget(b);
        v->addLayout(bar);
        v->addWidget(view, 1);
        return box;
    };
    auto button = [this](const char* text, auto slot) {
        auto* b = new QPushButton(QString::fromUtf8(text), this);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, slot);
        return b;
    };

    QWidget* accountPane = pane(m_accountView, t::kAccounts,
                                {button(t::kLogon, [this] { logonSelected(true); }),
                                 button(t::kLogoff, [this] { logonSelected(false); })});

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName("monitors");
    m_tabs->setDocumentMode(true);
    m_tabs->addTab(pane(m_workingView, {},
                        {button(t::kCancel, [this] { cancelSelectedOrders(); }),
                         button(t::kCancelAllWorking, [this] { cancelAllWorking(); })}),
                   t::kWorking);
    m_tabs->addTab(
        pane(m_allOrdersView, {}, {button(t::kCancel, [this] { cancelSelectedOrders(); })}),
        t::kAllOrders);
    m_tabs->addTab(m_fillView, t::kFills);
    m_tabs->addTab(pane(m_positionView, {},
                        {button(t::kToolOpenFastExit, [this] { openTool("OpenFastExit"); }),
                         button(t::kToolOpenStopTrigger, [this] { openTool("OpenStopTrigger"); })}),
                   t::kPositions);
    m_tabs->addTab(
        pane(m_triggerView, {}, {button(t::kDeleteTrigger, [this] { deleteSelectedTriggers(); })}),
        t::kTriggers);

    // Accounts and monitors side by side under the board: the board gets the height.
    auto* lower = new QSplitter(Qt::Horizontal, this);
    lower->setObjectName("lowerSplitter");
    lower->addWidget(m_tabs);
    lower->addWidget(accountPane);
    lower->setStretchFactor(0, 3);
    lower->setStretchFactor(1, 2);

    m_splitter = new QSplitter(Qt::Vertical, this);
    m_splitter->setObjectName("mainSplitter");
    m_splitter->addWidget(pane(m_quoteView, t::kQuoteBoard, {}));
    m_splitter->addWidget(lower);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 2);
    setCentralWidget(m_splitter);

    m_clockLabel = new QLabel(this);
    m_clockLabel->setObjectName("marketClock");
    m_feedLabel = new QLabel(this);
    m_accountLabel = new QLabel(this);
    m_addinLabel = new QLabel(this);
    statusBar()->addWidget(m_addinLabel, 1);
    statusBar()->addPermanentWidget(m_feedLabel);
    statusBar()->addPermanentWidget(m_accountLabel);
    statusBar()->addPermanentWidget(m_clockLabel);
    m_addinLabel->setText(QString(t::kStatusAddin).arg(m_addin.fileName()));
}

void DeskWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu(t::kMenuFile);
    file->addAction(t::kActLogonAll, this, [this] { logonAll(true); });
    file->addAction(t::kActLogoffAll, this, [this] { logonAll(false); });
    file->addSeparator();
    QAction* options = file->addAction(t::kActOptions, this, [this] { showOptions(); });
    options->setEnabled(m_addin.createOptionPage != nullptr);
    file->addSeparator();
    file->addAction(t::kActQuit, this, [this] { close(); });

    QMenu* trade = menuBar()->addMenu(t::kMenuTrade);
    QMenu* tools = menuBar()->addMenu(t::kMenuTools);
    QToolBar* bar = addToolBar(t::kToolbar);
    bar->setObjectName("toolbar");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);

    for (const AddinTool& tool : addinTools()) {
        const bool tradeMenu =
            tool.needs != AddinTool::Needs::Nothing && tool.needs != AddinTool::Needs::AlgoBlock;
        QMenu* menu = tradeMenu || QLatin1String(tool.exportName) == "OpenFastExitAll" ||
                              QLatin1String(tool.exportName) == "OpenFastDeleteAll"
                          ? trade
                          : tools;
        const QString name = QString::fromLatin1(tool.exportName);
        QAction* a = menu->addAction(QString::fromUtf8(tool.menuText), this,
                                     [this, name] { openTool(name); });
        a->setObjectName(name);
        const bool available = m_addin.isToolAvailable(tool.exportName);
        a->setEnabled(available);
        a->setToolTip(available ? QString("%1 (%2)").arg(tool.menuText, name)
                                : QString("%1%2").arg(tool.menuText, t::kNotAvailableTip));
        if (tool.onToolbar) bar->addAction(a);
        if (QLatin1String(tool.exportName) == "ShowMultiConfirm_Same" ||
            QLatin1String(tool.exportName) == "OpenStopTrigger") {
            menu->addSeparator();
        }
    }
    bar->addSeparator();
    bar->addAction(options);
}

void DeskWindow::loadBoard() {
    std::vector<tagExchangeInfo> exchanges;
    m_exchange.GetAllExchanges(exchanges);
    std::map<int, QString> exchangeNames;
    for (const auto& e : exchanges) exchangeNames[e.nExchangeID] = q(e.strName);

    std::vector<QuoteBoardModel::Row> rows;
    for (const SimContract& c : m_exchange.contracts()) {
        QuoteBoardModel::Row r;
        r.symbol = c.symbol;
        r.name = q(c.detail.strName);
        r.exchangeName = exchangeNames[c.symbol.wExchangeID];
        r.decimals = price::decimals(c.detail.nMinMove, c.detail.fPriceUnit);
        m_decimals[decimalsKey(c.symbol.wExchangeID, c.symbol.strCode)] = r.decimals;
        IModuleFutureTrader::ITickEx tick;
        if (m_exchange.GetMarketQuote(c.symbol, tick)) {
            r.tick = tick;
            r.hasTick = true;
        }
        rows.push_back(std::move(r));
    }
    m_quotes->setRows(std::move(rows));
}

// ---- Layout memory -------------------------------------------------------------------------

void DeskWindow::restoreLayout() {
    m_settings.beginGroup(kLayoutGroup);
    if (m_settings.contains("geometry")) {
        restoreGeometry(m_settings.value("geometry").toByteArray());
    } else {
        resize(1480, 880);
    }
    restoreState(m_settings.value("state").toByteArray());
    m_splitter->restoreState(m_settings.value("mainSplitter").toByteArray());
    if (auto* lower = findChild<QSplitter*>("lowerSplitter")) {
        if (m_settings.contains("lowerSplitter")) {
            lower->restoreState(m_settings.value("lowerSplitter").toByteArray());
        } else {
            lower->setSizes({780, 700});
        }
    }
    // A fresh desk opens on the positions, the one monitor that is never empty at the start.
    m_tabs->setCurrentIndex(m_settings.value("monitorTab", 3).toInt());
    for (QTableView* v : m_tables) {
        const QVariant s = m_settings.value("columns/" + v->objectName());
        if (s.isValid()) v->horizontalHeader()->restoreState(s.toByteArray());
    }
    m_settings.endGroup();
    if (!m_settings.contains(QString(kLayoutGroup) + "/mainSplitter"))
        m_splitter->setSizes({420, 400});
}

void DeskWindow::saveLayout() {
    m_settings.beginGroup(kLayoutGroup);
    m_settings.setValue("geometry", saveGeometry());
    m_settings.setValue("state", saveState());
    m_settings.setValue("mainSplitter", m_splitter->saveState());
    if (auto* lower = findChild<QSplitter*>("lowerSplitter")) {
        m_settings.setValue("lowerSplitter", lower->saveState());
    }
    m_settings.setValue("monitorTab", m_tabs->currentIndex());
    for (QTableView* v : m_tables) {
        m_settings.setValue("columns/" + v->objectName(), v->horizontalHeader()->saveState());
    }
    m_settings.endGroup();
    m_settings.sync();
}

void DeskWindow::closeEvent(QCloseEvent* event) {
    saveLayout();
    QMainWindow::closeEvent(event);
    // Closing the desk ends the platform, tool windows included.
    if (event->isAccepted()) qApp->quit();
}

// ---- The pump ------------------------------------------------------------------------------

void DeskWindow::startPump() {
    m_exchange.setEventSink(m_addinSink.get());
    m_exchange.setDeskSink(m_deskSink.get());
    m_sinceStart.start();
    m_deliverTimer.start();
    m_quoteTimer.start();
}

void DeskWindow::pumpOnce() {
    BusyMeter::Section section(m_busy);
    m_exchange.step();
    m_exchange.deliverPending();
    refreshMonitors(true);
    updateStatus();
}

void DeskWindow::onDeliverTimer() {
    BusyMeter::Section section(m_busy);
    m_exchange.deliverPending();
    refreshMonitors(false);
}

void DeskWindow::onQuoteTimer() {
    BusyMeter::Section section(m_busy);
    m_exchange.step();
    updateStatus();
}

void DeskWindow::refreshMonitors(bool force) {
    const qint64 now = m_sinceStart.isValid() ? m_sinceStart.elapsed() : 0;
    if (!force && now - m_lastRefreshMs < kMonitorRefreshMs) return;
    m_lastRefreshMs = now;
    if (force || m_dirtyAccounts) refreshAccounts();
    if (force || m_dirtyOrders) refreshOrders();
    if (force || m_dirtyFills) refreshFills();
    if (force || m_dirtyPositions) refreshPositions();
    if (force || m_dirtyTriggers) refreshTriggers();
}

void DeskWindow::refreshAccounts() {
    m_dirtyAccounts = false;
    std::vector<AccountLine> lines;
    for (const SimAccount& a : m_exchange.demoAccounts()) {
        AccountLine line;
        line.info = a.info;
        line.loggedOn = m_exchange.isLoggedOn(a.info.strAccountID);
        if (line.loggedOn) {
            m_exchange.GetAccountSummary(line.summary, a.info.strAccountID, a.info.strBrokerID);
        }
        lines.push_back(std::move(line));
    }
    m_accounts->setRows(accountRows(lines));
}

void DeskWindow::refreshOrders() {
    m_dirtyOrders = false;
    std::vector<tagBrokerOrder> orders;
    m_exchange.GetAllOrders(orders);
    const DecimalsOf dec = [this](std::int32_t e, const std::string& c) {
        return decimalsOf(e, c);
    };
    m_working->setRows(orderRows(orders, true, dec));
    m_allOrders->setRows(orderRows(orders, false, dec));
}

void DeskWindow::refreshFills() {
    m_dirtyFills = false;
    std::vector<tagBargainOrder> fills;
    m_exchange.GetAllBargains(fills);
    m_fills->setRows(
        fillRows(fills, [this](std::int32_t e, const std::string& c) { return decimalsOf(e, c); }));
}

void DeskWindow::refreshPositions() {
    m_dirtyPositions = false;
    std::vector<tagOpenedPosition> positions;
    m_exchange.GetAllPositions(positions);
    m_positions->setRows(positionRows(
        positions, [this](std::int32_t e, const std::string& c) { return decimalsOf(e, c); }));
}

void DeskWindow::refreshTriggers() {
    m_dirtyTriggers = false;
    std::vector<tagTriggerOrder> triggers;
    m_exchange.GetAllTriggerOrders(triggers);
    m_triggers->setRows(triggerRows(
        triggers, [](std::int32_t s) { return QString::fromUtf8(simTriggerStatusText(s)); },
        [this](std::int32_t e, const std::string& c) { return decimalsOf(e, c); }));
}

void DeskWindow::updateStatus() {
    const std::int64_t nowMs = SystemClock::instance().nowMs();
    m_clockLabel->setText(
        QString(t::kStatusMarketTime)
            .arg(QDateTime::fromMSecsSinceEpoch(nowMs).toString("yyyy-MM-dd HH:mm:ss")));
    m_feedLabel->setText(m_feedText);
    m_accountLabel->setText(QString(t::kStatusAccounts).arg(loggedOnAccounts().size()));
}

// ---- Commands ------------------------------------------------------------------------------

int DeskWindow::decimalsOf(std::int32_t exchangeID, const std::string& code) const {
    auto it = m_decimals.find(decimalsKey(exchangeID, code));
    return it == m_decimals.end() ? 2 : it->second;
}

std::vector<tagAccoutInfo> DeskWindow::loggedOnAccounts() const {
    std::vector<tagAccoutInfo> accounts;
    m_exchange.GetAvailableAccounts(accounts);
    return accounts;
}

tagSymbol DeskWindow::currentSymbol() const {
    const QModelIndex i = m_quoteView->currentIndex();
    const QuoteBoardModel::Row* r = i.isValid() ? m_quotes->rowAt(i.row()) : nullptr;
    return r ? r->symbol : tagSymbol{};
}

void DeskWindow::selectSymbol(const tagSymbol& symbol) {
    const int row = m_quotes->rowOf(symbol);
    if (row >= 0) m_quoteView->selectRow(row);
}

void DeskWindow::onQuotePicked() {
    const tagSymbol s = pickedSymbol(m_quoteView, m_quotes);
    if (s.empty() || s == m_linkedSymbol) return;
    m_linkedSymbol = s;
    linkSymbolToTickets(s);
}

void DeskWindow::linkSymbolToTickets(const tagSymbol& symbol) {
    if (!m_addin.enumWindows || !m_addin.sendMessage) return;
    for (int dialog : {kTicketDialog, kBatchDialog}) {
        std::uint32_t handles[64];
        const int n = std::min(m_addin.enumWindows(dialog, handles, 64), 64);
        for (int i = 0; i < n; ++i) {
            m_addin.sendMessage(handles[i], kMsgSymbolLink, 1,
                                reinterpret_cast<std::uintptr_t>(&symbol));
        }
    }
}

void DeskWindow::logonSelected(bool on) {
    std::set<QString> ids;
    for (const QModelIndex& i : m_accountView->selectionModel()->selectedRows()) {
        if (const RecordRow* r = m_accounts->rowAt(i.row())) ids.insert(r->key);
    }
    if (ids.empty()) {
        // No selection: act on the account under the cursor, else on all of them.
        const QModelIndex cur = m_accountView->currentIndex();
        if (const RecordRow* r = cur.isValid() ? m_accounts->rowAt(cur.row()) : nullptr) {
            ids.insert(r->key);
        } else {
            logonAll(on);
            return;
        }
    }
    for (const QString& id : ids) {
        if (on) {
            m_exchange.logon(id.toStdString());
        } else {
            m_exchange.logoff(id.toStdString());
        }
    }
    refreshMonitors(true);
    updateStatus();
}

void DeskWindow::logonAll(bool on) {
    if (on) {
        m_exchange.logonAll();
    } else {
        m_exchange.logoffAll();
    }
    refreshMonitors(true);
    updateStatus();
}

void DeskWindow::cancelSelectedOrders() {
    QTableView* view = m_tabs->currentIndex() == 1 ? m_allOrdersView : m_workingView;
    auto* model = static_cast<RecordTableModel*>(view->model());
    for (const QModelIndex& i : view->selectionModel()->selectedRows()) {
        const RecordRow* r = model->rowAt(i.row());
        if (!r) continue;
        const QStringList k = splitRowKey(r->key);
        if (k.size() == 3) {
            m_exchange.DeleteOrder(k[0].toStdString(), k[1].toStdString(), k[2].toStdString());
        }
    }
}

void DeskWindow::cancelAllWorking() {
    std::vector<tagBrokerOrder> orders;
    m_exchange.GetAllOrders(orders);
    for (const tagBrokerOrder& o : orders) {
        if (isWorkingStatus(o.nStatus) && o.nStatus != kOrderCancelling) {
            m_exchange.DeleteOrder(o.strAccountID, o.strBrokerID, o.strOrderID);
        }
    }
}

void DeskWindow::deleteSelectedTriggers() {
    for (const QModelIndex& i : m_triggerView->selectionModel()->selectedRows()) {
        const RecordRow* r = m_triggers->rowAt(i.row());
        if (!r) continue;
        const QStringList k = splitRowKey(r->key);
        if (k.size() == 3) {
            m_exchange.DeleteTriggerOrder(k[0].toStdString(), k[1].toStdString(),
                                          k[2].toStdString());
        }
    }
}

bool DeskWindow::selectedPosition(tagOpenedPosition& out) const {
    std::vector<tagOpenedPosition> positions;
    m_exchange.GetAllPositions(positions);
    QString wanted;
    const QModelIndex cur = m_positionView->currentIndex();
    if (const RecordRow* r = cur.isValid() ? m_positions->rowAt(cur.row()) : nullptr) {
        wanted = r->key;
    }
    for (const tagOpenedPosition& p : positions) {
        if (p.dLong < 0.5 && p.dShort < 0.5) continue;
        const QString k = QStringList{q(p.strAccountID), q(p.strBrokerID),
                                      QString::number(p.nExchangeID), q(p.strCode)}
                              .join('|');
        // Without a selection the first held position stands in.
        if (wanted.isEmpty() || k == wanted) {
            out = p;
            return true;
        }
    }
    return false;
}

bool DeskWindow::buildTouchOrder(const tagAccoutInfo& account, tagBrokerOrder& out,
                                 QString* reason) const {
    tagSymbol s = currentSymbol();
    if (s.empty()) {
        // Nothing picked: the board's first contract stands in.
        if (const QuoteBoardModel::Row* r = m_quotes->rowAt(0)) s = r->symbol;
    }
    IModuleFutureTrader::ITickEx tick;
    if (s.empty() || !m_exchange.GetMarketQuote(s, tick)) {
        if (reason) *reason = t::kPickInstrumentFirst;
        return false;
    }
    out = tagBrokerOrder{};
    out.strAccountID = account.strAccountID;
    out.strBrokerID = account.strBrokerID;
    out.nExchangeID = s.wExchangeID;
    out.strCode = s.strCode;
    out.strSymbolText = s.strCode;
    out.nDirection = kDirBuy;
    out.tCreateTime = SystemClock::instance().now();
    out.dVolume = 1;
    out.dPrice = isPricePresent(tick.dAsk) ? tick.dAsk : tick.dLast;
    out.nOpenClose = kOpen;
    return true;
}

void DeskWindow::inform(const QString& text) {
    QMessageBox::information(this, t::kPrompt, text);
}

bool DeskWindow::openTool(const QString& exportName, QString* reason) {
    const AddinTool* tool = findAddinTool(exportName);
    QString why;
    auto fail = [&](const QString& text) {
        if (reason) *reason = text;
        return false;
    };
    if (!tool) return fail(QString("unknown tool export '%1'").arg(exportName));
    void* fn = m_addin.toolFunction(tool->exportName);
    if (!fn || !m_addin.isToolAvailable(tool->exportName)) {
        return fail(QString("%1 is not available in this build").arg(exportName));
    }
    const QByteArray caller = QByteArray(kCallerName);

    switch (tool->needs) {
        case AddinTool::Needs::Nothing:
            reinterpret_cast<AddinLibrary::NoArgFn>(fn)();
            return true;
        case AddinTool::Needs::Prefill: {
            // Only an instrument the user picked is handed over; without one the ticket opens
            // on its own saved symbol when the user keeps one.
            const tagSymbol s = pickedSymbol(m_quoteView, m_quotes);
            auto open = reinterpret_cast<AddinLibrary::PrefillFn>(fn);
            if (s.empty()) {
                open(nullptr);
            } else {
                tagHelmsmanPrefill block;
                block.symbol = s;
                open(&block);
            }
            return true;
        }
        case AddinTool::Needs::Position: {
            tagOpenedPosition p;
            if (!selectedPosition(p)) {
                if (!reason) inform(t::kPickPositionFirst);
                return fail(t::kPickPositionFirst);
            }
            const QByteArray text = QByteArray::fromStdString(p.strCode);
            if (exportName == "OpenFastExit") {
                reinterpret_cast<AddinLibrary::FastExitFn>(fn)(&p, text.constData());
            } else {
                // The number tells which side to protect: the long one when there is one.
                const int side = p.dLong > 0.5 ? kDirBuy : kDirSell;
                reinterpret_cast<AddinLibrary::StopTriggerFn>(fn)(&p, side, text.constData());
            }
            return true;
        }
        case AddinTool::Needs::Order: {
            const std::vector<tagAccoutInfo> accounts = loggedOnAccounts();
            if (accounts.empty()) {
                // The add-in's own rule; say it the same way.
                if (!reason) inform(QString::fromUtf8("请先登录交易帐户！"));
                return fail(QString::fromUtf8("请先登录交易帐户！"));
            }
            std::vector<tagBrokerOrder> orders;
            const std::size_t count = exportName == "ShowConfirmOrder" ? 1 : accounts.size();
            for (std::size_t i = 0; i < count; ++i) {
                tagBrokerOrder o;
                if (!buildTouchOrder(accounts[i], o, &why)) {
                    if (!reason) inform(why);
                    return fail(why);
                }
                orders.push_back(std::move(o));
            }
            if (exportName == "ShowConfirmOrder") {
                reinterpret_cast<AddinLibrary::ConfirmFn>(fn)(&orders[0], 1, caller.constData(),
                                                              nullptr);
            } else if (exportName == "ShowMultiConfirm") {
                reinterpret_cast<AddinLibrary::MultiConfirmFn>(fn)(
                    orders.data(), static_cast<int>(orders.size()), 1, caller.constData(), nullptr);
            } else {
                reinterpret_cast<AddinLibrary::SameConfirmFn>(fn)(
                    orders.data(), static_cast<int>(orders.size()), caller.constData());
            }
            return true;
        }
        case AddinTool::Needs::AlgoBlock:
            reinterpret_cast<AddinLibrary::AlgoSetFn>(fn)(&m_algoBlock, 0);
            return true;
    }
    return fail(QString("unhandled tool export '%1'").arg(exportName));
}

QDialog* DeskWindow::showOptions(bool modal) {
    if (!m_addin.createOptionPage) {
        if (modal) inform(t::kOptionsUnavailable);
        return nullptr;
    }
    auto* dialog = new QDialog(this);
    dialog->setObjectName("optionsDialog");
    dialog->setWindowTitle(t::kOptionsTitle);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(dialog);
    auto* tabs = new QTabWidget(dialog);
    QWidget* page = m_addin.createOptionPage(tabs);
    if (!page) {
        delete dialog;
        if (modal) inform(t::kOptionsUnavailable);
        return nullptr;
    }
    const QString caption =
        page->windowTitle().isEmpty() ? QString::fromUtf8("交易") : page->windowTitle();
    tabs->addTab(page, caption);
    layout->addWidget(tabs);
    auto* buttons = new QDialogButtonBox(dialog);
    buttons->addButton(t::kOk, QDialogButtonBox::AcceptRole);
    buttons->addButton(t::kCancelButton, QDialogButtonBox::RejectRole);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, dialog, [this, dialog, page] {
        // The page saves the settings; a page that refuses keeps the dialog open.
        if (!m_addin.applyOptionPage || m_addin.applyOptionPage(page) != 0) dialog->accept();
    });
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    if (modal) {
        dialog->exec();
        return nullptr;
    }
    dialog->show();
    return dialog;
}
