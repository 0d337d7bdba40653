#include "shell/desk_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
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

#include <cstdio>

#include "host/clock.h"
#include "host/price.h"
#include "host/trading_session.h"
#include "host/window.h"
#include "shell/quote_board_model.h"
#include "shell/shell_texts.h"

namespace t = shell_text;

namespace {

constexpr int kDeliverIntervalMs = 20;
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

// The desk's own side: quotes update the board at once; trade events are queued in the
// monitors, which the pump applies after each delivery.
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
                break;
            case kEventOrderChanged:
                if (data) m_desk.noteOrderChange(*reinterpret_cast<const tagBrokerOrder*>(data));
                break;
            default:
                break;
        }
        m_desk.m_monitors->onEvent(code, data);
    }
    void onLogonStateChange(std::uint32_t, std::uintptr_t) override {
        // Logging on or off changes what every query answers.
        m_desk.m_monitors->onLogonChanged();
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
    if (m_settings.status() != QSettings::NoError) {
        showNotice(QString(t::kLayoutNotRead).arg(QDir::toNativeSeparators(m_settings.fileName())));
    }
    m_monitors->flush(true);
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
    MonitorSet::Hooks hooks;
    hooks.openTool = [this](const QString& name) { openTool(name); };
    hooks.toolAvailable = [this](const char* name) { return m_addin.isToolAvailable(name); };
    hooks.openTicket = [this](const tagSymbol& symbol) {
        selectSymbol(symbol);
        openTool("OpenHelmsman");
    };
    hooks.accountsChanged = [this] { updateStatus(); };
    hooks.modifyOrder = [this](const tagBrokerOrder& order) {
        using ModifyFn = decltype(&HelmsmanModifyOrder);
        if (!m_addin.isToolAvailable("HelmsmanModifyOrder")) return;
        if (auto fn = reinterpret_cast<ModifyFn>(m_addin.toolFunction("HelmsmanModifyOrder")))
            fn(&order);
    };
    m_monitors = new MonitorSet(
        m_exchange, m_prompter,
        [this](std::int32_t e, const std::string& c) { return decimalsOf(e, c); }, std::move(hooks),
        this);

    m_quoteView = makeTable(m_quotes, "quoteBoard");
    m_quoteView->setSelectionMode(QAbstractItemView::SingleSelection);
    m_quoteView->setProperty("board", true);
    m_quoteView->verticalHeader()->setDefaultSectionSize(24);
    m_quoteView->horizontalHeader()->setStretchLastSection(false);
    // Default widths that fit the Chinese titles and the widest values; the user's own
    // widths, once saved, replace them.
    const int quoteWidths[] = {76, 176, 84, 72, 72, 84, 60, 84, 60, 84, 84, 84, 84, 84, 76};
    for (int c = 0; c < QuoteBoardModel::kColumnCount; ++c) {
        m_quoteView->setColumnWidth(c, quoteWidths[c]);
    }

    // A pick is a selected row; some ways of selecting move the current row first.
    connect(m_quoteView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { onQuotePicked(); });
    connect(m_quoteView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { onQuotePicked(); });
    connect(m_quoteView, &QTableView::doubleClicked, this, [this] { openTool("OpenHelmsman"); });

    QWidget* accountPane = m_monitors->accountPane();
    m_tabs = m_monitors->tabs();
    for (QTableView* v : m_monitors->views()) m_tables.push_back(v);

    // Accounts and monitors side by side under the board: the board gets the height.
    auto* lower = new QSplitter(Qt::Horizontal, this);
    lower->setObjectName("lowerSplitter");
    lower->addWidget(m_tabs);
    lower->addWidget(accountPane);
    lower->setStretchFactor(0, 3);
    lower->setStretchFactor(1, 2);

    m_splitter = new QSplitter(Qt::Vertical, this);
    m_splitter->setObjectName("mainSplitter");
    m_splitter->addWidget(makePane(this, m_quoteView, t::kQuoteBoard, {}));
    m_splitter->addWidget(lower);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 2);
    setCentralWidget(m_splitter);

    m_clockLabel = new QLabel(this);
    m_clockLabel->setObjectName("marketClock");
    m_feedLabel = new QLabel(this);
    m_accountLabel = new QLabel(this);
    m_addinLabel = new QLabel(this);
    m_noticeLabel = new QLabel(this);
    m_noticeLabel->setObjectName("deskNotice");
    m_noticeLabel->setStyleSheet("color: #ff4d4d; font-weight: bold;");
    statusBar()->addWidget(m_addinLabel);
    statusBar()->addWidget(m_noticeLabel, 1);
    statusBar()->addPermanentWidget(m_feedLabel);
    statusBar()->addPermanentWidget(m_accountLabel);
    m_sessionLabel = new QLabel(this);
    m_sessionLabel->setObjectName("sessionState");
    statusBar()->addPermanentWidget(m_sessionLabel);
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
    m_monitors->applyHeaderSorts();
    if (!m_settings.contains(QString(kLayoutGroup) + "/mainSplitter"))
        m_splitter->setSizes({420, 400});
}

bool DeskWindow::saveLayout() {
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
    if (m_settings.status() == QSettings::NoError) return true;
    showNotice(QString(t::kLayoutNotSaved).arg(QDir::toNativeSeparators(m_settings.fileName())));
    return false;
}

void DeskWindow::closeEvent(QCloseEvent* event) {
    if (!saveLayout()) {
        if (m_unattended)
            std::fprintf(stderr, "helmsman: %s\n", m_noticeLabel->text().toLocal8Bit().constData());
        else
            QMessageBox::warning(this, t::kPrompt, m_noticeLabel->text());
    }
    QMainWindow::closeEvent(event);
    // Closing the desk ends the platform, tool windows included.
    if (event->isAccepted()) qApp->quit();
}

// ---- The pump ------------------------------------------------------------------------------

void DeskWindow::startPump() {
    m_exchange.setEventSink(m_addinSink.get());
    m_exchange.setDeskSink(m_deskSink.get());
    m_deliverTimer.start();
    m_quoteTimer.start();
}

void DeskWindow::pumpOnce() {
    BusyMeter::Section section(m_busy);
    m_exchange.step();
    m_exchange.deliverPending();
    m_monitors->flush(true);
    updateStatus();
}

void DeskWindow::onDeliverTimer() {
    BusyMeter::Section section(m_busy);
    m_exchange.deliverPending();
    m_monitors->flushIfDue();
}

void DeskWindow::onQuoteTimer() {
    BusyMeter::Section section(m_busy);
    m_exchange.step();
    updateStatus();
}

void DeskWindow::updateStatus() {
    const std::int64_t nowMs = SystemClock::instance().nowMs();
    m_clockLabel->setText(
        QString(t::kStatusMarketTime)
            .arg(QDateTime::fromMSecsSinceEpoch(nowMs).toString("yyyy-MM-dd HH:mm:ss")));
    // Exchanges 0-2 share their hours; 3 keeps its own.
    const int msOfDay = QDateTime::fromMSecsSinceEpoch(nowMs).time().msecsSinceStartOfDay();
    m_sessionLabel->setText(
        QString(t::kStatusSessions)
            .arg(QString::fromUtf8(session::sessionStateText(session::sessionState(0, msOfDay))),
                 QString::fromUtf8(session::sessionStateText(session::sessionState(3, msOfDay)))));
    m_feedLabel->setText(m_feedText);
    m_accountLabel->setText(QString(t::kStatusAccounts).arg(loggedOnAccounts().size()));
}

void DeskWindow::showNotice(const QString& text) {
    m_noticeLabel->setText(text);
    m_noticeLabel->setToolTip(text);
}

QString orderRefusalNotice(const tagBrokerOrder& o, std::int64_t fallbackTime) {
    const char* what = nullptr;
    switch (o.nStatus) {
        case kOrderRejected:
            what = t::kNoticeRejected;
            break;
        case kOrderExpired:
            what = t::kNoticeExpired;
            break;
        case kOrderCancelled:
        case kOrderPartCancelled:
            // The trader's own cancel carries no reason; one the exchange made does.
            if (!o.strStatusMsg.empty()) what = t::kNoticeCancelled;
            break;
        default:
            break;
    }
    if (!what) return {};
    const std::int64_t when = o.tUpdateTime > 0 ? o.tUpdateTime : fallbackTime;
    QString text = QString(what).arg(QDateTime::fromSecsSinceEpoch(when).toString("HH:mm:ss"),
                                     q(o.strAccountID), q(o.strCode));
    if (!o.strStatusMsg.empty()) text += QString(t::kNoticeReason).arg(q(o.strStatusMsg));
    return text;
}

QString DeskWindow::notice() const {
    return m_noticeLabel->text();
}

void DeskWindow::noteOrderChange(const tagBrokerOrder& order) {
    const QString text = orderRefusalNotice(order, SystemClock::instance().now());
    if (!text.isEmpty()) showNotice(text);
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

void DeskWindow::logonAll(bool on) {
    if (on) {
        m_exchange.logonAll();
    } else {
        m_exchange.logoffAll();
    }
    m_monitors->flush(true);
    updateStatus();
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
            // The trigger cancel takes an optional block: none, every account checked.
            if (exportName == "DeleteTriggerOrders")
                reinterpret_cast<AddinLibrary::DeleteTriggersFn>(fn)(nullptr);
            else
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
            if (!m_monitors->selectedPosition(p)) {
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
