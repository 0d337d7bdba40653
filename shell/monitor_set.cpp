#include "shell/monitor_set.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>
#include <memory>
#include <set>
#include <tuple>

#include "host/window.h"
#include "shell/shell_texts.h"
#include "sim/sim_exchange.h"

namespace t = shell_text;

namespace {

// Default widths that fit the Chinese titles and the widest values; the user's own widths,
// once saved, replace them. The order monitors give the status message room to be read.
const std::vector<int> kAccountWidths = {56, 80, 46, 86, 86, 80, 72, 60, 72, 72, 56};
const std::vector<int> kOrderWidths = {66, 52, 60, 64, 40, 48, 72, 40, 50, 72, 160, 70};
const std::vector<int> kFillWidths = {70, 56, 56, 70, 70, 44, 52, 76, 44, 80};
const std::vector<int> kPositionWidths = {80, 80, 60, 60, 90, 60, 60, 90};
const std::vector<int> kTriggerWidths = {70, 56, 70, 70, 44, 52, 64, 76, 76, 44, 110, 72, 80};

std::string pendingKey(const std::string& a, const std::string& b, const std::string& c) {
    return a + '|' + b + '|' + c;
}

}  // namespace

MonitorSet::MonitorSet(SimExchange& exchange, IPrompter& prompter, DecimalsOf decimals, Hooks hooks,
                       QWidget* parent)
    : QObject(parent),
      m_exchange(exchange),
      m_prompter(prompter),
      m_decimals(std::move(decimals)),
      m_hooks(std::move(hooks)) {
    m_accounts = new RecordTableModel(accountHeaders(), this);
    m_orders = new RecordTableModel(orderHeaders(), this);
    m_fills = new RecordTableModel(fillHeaders(), this);
    m_positions = new RecordTableModel(positionHeaders(), this);
    m_triggers = new RecordTableModel(triggerHeaders(), this);

    m_accountView = makeView(new MonitorProxy(*m_accounts, false, this), "accounts");
    m_workingView = makeView(new MonitorProxy(*m_orders, true, this), "workingOrders");
    m_allOrdersView = makeView(new MonitorProxy(*m_orders, false, this), "allOrders");
    m_fillView = makeView(new MonitorProxy(*m_fills, false, this), "fills");
    m_positionView = makeView(new MonitorProxy(*m_positions, true, this), "positions");
    m_triggerView = makeView(new MonitorProxy(*m_triggers, false, this), "triggerOrders");
    // Tables that end on a number keep it beside its neighbours instead of far right.
    m_positionView->horizontalHeader()->setStretchLastSection(false);
    m_accountView->horizontalHeader()->setStretchLastSection(false);

    const std::pair<QTableView*, const std::vector<int>*> widths[] = {
        {m_accountView, &kAccountWidths},   {m_workingView, &kOrderWidths},
        {m_allOrdersView, &kOrderWidths},   {m_fillView, &kFillWidths},
        {m_positionView, &kPositionWidths}, {m_triggerView, &kTriggerWidths}};
    for (const auto& [view, w] : widths) {
        for (std::size_t c = 0; c < w->size(); ++c) view->setColumnWidth(int(c), (*w)[c]);
    }
    // Records with a time list the newest first; accounts and positions by account.
    for (QTableView* v : {m_workingView, m_allOrdersView, m_fillView, m_triggerView}) {
        v->horizontalHeader()->setSortIndicator(0, Qt::DescendingOrder);
    }
    for (QTableView* v : {m_accountView, m_positionView}) {
        v->horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
    }
    for (QTableView* v : m_views) {
        v->setSortingEnabled(true);
        wireView(v);
    }
    buildPanes(parent);
    m_sinceAccounts.start();
}

MonitorSet::~MonitorSet() = default;

QTableView* MonitorSet::makeView(MonitorProxy* proxy, const QString& name) {
    auto* view = new QTableView(static_cast<QWidget*>(parent()));
    view->setObjectName(name);
    view->setModel(proxy);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setAlternatingRowColors(true);
    view->setShowGrid(false);
    view->setWordWrap(false);
    view->setCornerButtonEnabled(false);
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    view->verticalHeader()->setVisible(false);
    // Fixed heights: tens of thousands of rows lay out without measuring any of them.
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->verticalHeader()->setDefaultSectionSize(22);
    QHeaderView* h = view->horizontalHeader();
    h->setHighlightSections(false);
    h->setSectionsMovable(true);
    h->setSectionsClickable(true);
    h->setSortIndicatorShown(true);
    h->setStretchLastSection(true);
    h->setDefaultAlignment(Qt::AlignCenter);
    h->setMinimumSectionSize(36);
    m_views.push_back(view);
    return view;
}

void MonitorSet::wireView(QTableView* view) {
    keepScrollOnInsert(view);
    connect(view, &QWidget::customContextMenuRequested, view, [this, view](const QPoint& pos) {
        QMenu* menu = contextMenu(view, pos);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(view->viewport()->mapToGlobal(pos));
    });
    auto* copy = new QShortcut(QKeySequence::Copy, view, nullptr, nullptr, Qt::WidgetShortcut);
    connect(copy, &QShortcut::activated, view, [this, view] { copySelected(view); });
    if (isOrderView(view)) {
        auto* del = new QShortcut(QKeySequence::Delete, view, nullptr, nullptr, Qt::WidgetShortcut);
        connect(del, &QShortcut::activated, view, [this, view] { cancelSelected(view); });
        connect(view, &QTableView::doubleClicked, view, [this, view](const QModelIndex& i) {
            const RecordRow* r = proxyOf(view)->rowAt(i.row());
            if (r && r->live) cancelOrder(r->key);
        });
    }
}

// Rows that arrive (or leave) above the first visible row would push the rows being read
// out of place; the scroll position moves with them. At the very top the view stays at the
// top, so the newest rows come into sight.
void MonitorSet::keepScrollOnInsert(QTableView* view) {
    auto topRow = std::make_shared<int>(-1);
    auto remember = [view, topRow] {
        *topRow = view->verticalScrollBar()->value() > 0 ? view->rowAt(0) : -1;
    };
    auto shift = [view, topRow](int first, int last, int sign) {
        if (*topRow < 0 || first > *topRow) return;
        QScrollBar* bar = view->verticalScrollBar();
        const int n = last - first + 1;
        if (sign > 0) bar->setMaximum(bar->maximum() + n);
        bar->setValue(bar->value() + sign * n);
    };
    QAbstractItemModel* m = view->model();
    connect(m, &QAbstractItemModel::rowsAboutToBeInserted, view, remember);
    connect(m, &QAbstractItemModel::rowsAboutToBeRemoved, view,
            [remember, topRow](const QModelIndex&, int, int last) {
                remember();
                // A removal that takes the top row itself leaves the position alone.
                if (last >= *topRow) *topRow = -1;
            });
    connect(m, &QAbstractItemModel::rowsInserted, view,
            [shift](const QModelIndex&, int first, int last) { shift(first, last, +1); });
    connect(m, &QAbstractItemModel::rowsRemoved, view,
            [shift](const QModelIndex&, int first, int last) { shift(first, last, -1); });
}

QWidget* makePane(QWidget* parent, QTableView* view, const QString& title,
                  std::initializer_list<QPushButton*> buttons) {
    auto* box = new QWidget(parent);
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
}

void MonitorSet::buildPanes(QWidget* parent) {
    auto pane = [parent](QTableView* view, const QString& title,
                         std::initializer_list<QPushButton*> buttons) {
        return makePane(parent, view, title, buttons);
    };
    auto button = [this, parent](const char* text, auto slot) {
        auto* b = new QPushButton(QString::fromUtf8(text), parent);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, slot);
        return b;
    };
    // A tool the add-in does not offer is shown greyed with the reason, never dead.
    auto toolButton = [this, &button](const char* text, const char* exportName) {
        QPushButton* b = button(text, [this, exportName] {
            if (m_hooks.openTool) m_hooks.openTool(QString::fromLatin1(exportName));
        });
        b->setObjectName(QString::fromLatin1(exportName));
        const bool available = !m_hooks.toolAvailable || m_hooks.toolAvailable(exportName);
        b->setEnabled(available);
        if (!available) b->setToolTip(QString::fromUtf8(text) + QString::fromUtf8(t::kNotAvailableTip));
        return b;
    };

    auto modifyButton = [this, &button] {
        QPushButton* b = button(t::kModifyOrder, [this] { modifySelected(m_workingView); });
        b->setObjectName(QStringLiteral("HelmsmanModifyOrder"));
        const bool available = m_hooks.modifyOrder &&
                               (!m_hooks.toolAvailable || m_hooks.toolAvailable("HelmsmanModifyOrder"));
        b->setEnabled(available);
        if (!available) b->setToolTip(QString::fromUtf8(t::kModifyOrder) + QString::fromUtf8(t::kNotAvailableTip));
        return b;
    };

    m_accountPane = pane(m_accountView, t::kAccounts,
                         {button(t::kLogon, [this] { logonSelected(true); }),
                          button(t::kLogoff, [this] { logonSelected(false); })});
    m_tabs = new QTabWidget(parent);
    m_tabs->setObjectName("monitors");
    m_tabs->setDocumentMode(true);
    m_tabs->addTab(pane(m_workingView, {},
                        {button(t::kCancel, [this] { cancelSelected(m_workingView); }),
                         modifyButton(),
                         button(t::kCancelAllWorking, [this] { cancelAllWorking(); })}),
                   t::kWorking);
    m_tabs->addTab(pane(m_allOrdersView, {},
                        {button(t::kCancel, [this] { cancelSelected(m_allOrdersView); })}),
                   t::kAllOrders);
    m_tabs->addTab(m_fillView, t::kFills);
    m_tabs->addTab(pane(m_positionView, {},
                        {toolButton(t::kToolOpenFastExit, "OpenFastExit"),
                         toolButton(t::kToolOpenStopTrigger, "OpenStopTrigger")}),
                   t::kPositions);
    m_tabs->addTab(
        pane(m_triggerView, {}, {button(t::kDeleteTrigger, [this] { deleteSelectedTriggers(); })}),
        t::kTriggers);
}

QTableView* MonitorSet::view(const QString& objectName) const {
    for (QTableView* v : m_views) {
        if (v->objectName() == objectName) return v;
    }
    return nullptr;
}

MonitorProxy* MonitorSet::proxyOf(const QTableView* view) const {
    return static_cast<MonitorProxy*>(view->model());
}

bool MonitorSet::isOrderView(const QTableView* view) const {
    return view == m_workingView || view == m_allOrdersView;
}

void MonitorSet::applyHeaderSorts() {
    for (QTableView* v : m_views) {
        QHeaderView* h = v->horizontalHeader();
        h->setSortIndicatorShown(true);
        int column = h->sortIndicatorSection();
        if (column < 0 || column >= h->count()) column = 0;
        v->sortByColumn(column, h->sortIndicatorOrder());
    }
}

// ---- Events --------------------------------------------------------------------------------

void MonitorSet::onEvent(std::uint32_t code, std::uintptr_t data) {
    switch (eventKind(code)) {
        case kEventQuote:
            onQuote();
            break;  // funds and floating profit follow the marks
        case kEventOrderChanged:
            if (data) onOrderChanged(*reinterpret_cast<const tagBrokerOrder*>(data));
            break;
        case kEventNewFill:
            if (data) onNewFill(*reinterpret_cast<const tagBargainOrder*>(data));
            break;
        case kSimEventTriggerChanged:
            if (data) onTriggerChanged(*reinterpret_cast<const tagTriggerOrder*>(data));
            break;
        default:
            break;
    }
}

void MonitorSet::onOrderChanged(const tagBrokerOrder& order) {
    const std::string k = pendingKey(order.strAccountID, order.strBrokerID, order.strOrderID);
    const auto [it, added] = m_pendingOrderAt.try_emplace(k, m_pendingOrders.size());
    if (added) {
        m_pendingOrders.push_back(order);
    } else {
        m_pendingOrders[it->second] = order;
    }
    m_dirtyAccounts = true;  // frozen funds
}

void MonitorSet::onNewFill(const tagBargainOrder& fill) {
    m_pendingFills.push_back(fill);
    m_dirtyAccounts = true;
}

void MonitorSet::onTriggerChanged(const tagTriggerOrder& trigger) {
    const std::string k = pendingKey(trigger.strAccountID, trigger.strBrokerID, trigger.strOrderID);
    const auto [it, added] = m_pendingTriggerAt.try_emplace(k, m_pendingTriggers.size());
    if (added) {
        m_pendingTriggers.push_back(trigger);
    } else {
        m_pendingTriggers[it->second] = trigger;
    }
}

void MonitorSet::flush(bool force) {
    if (force || m_needFullRefresh) {
        refreshAll();
        return;
    }
    if (!m_pendingOrders.empty() || !m_pendingTriggers.empty() || !m_pendingFills.empty()) {
        m_sinceChange.restart();
    }
    // One batch per monitor: the rows new in this batch arrive in one insertion.
    std::vector<RecordRow> rows;
    rows.reserve(m_pendingOrders.size());
    for (const tagBrokerOrder& o : m_pendingOrders) rows.push_back(orderRow(o, m_decimals));
    m_orders->upsertAll(std::move(rows));
    rows.clear();
    for (const tagTriggerOrder& o : m_pendingTriggers) {
        rows.push_back(triggerRow(
            o, [](std::int32_t s) { return QString::fromUtf8(simTriggerStatusText(s)); },
            m_decimals));
    }
    m_triggers->upsertAll(std::move(rows));
    rows.clear();
    // Each fill moves one position: read just that one.
    std::set<std::tuple<std::string, std::string, std::int32_t, std::string>> moved;
    for (const tagBargainOrder& f : m_pendingFills) {
        rows.push_back(fillRow(f, m_decimals));
        moved.emplace(f.strAccountID, f.strBrokerID, f.nExchangeID, f.strCode);
    }
    m_fills->upsertAll(std::move(rows));
    rows.clear();
    for (const auto& [account, broker, exchangeID, code] : moved) {
        tagOpenedPosition p;
        if (!m_exchange.GetPosition(p, account, broker,
                                    {static_cast<std::uint16_t>(exchangeID), code})) {
            p = tagOpenedPosition{};  // no longer answered: shown as nothing held
        }
        p.strAccountID = account;
        p.strBrokerID = broker;
        p.nExchangeID = exchangeID;
        p.strCode = code;
        rows.push_back(positionRow(p, m_decimals));
    }
    m_positions->upsertAll(std::move(rows));
    m_pendingOrders.clear();
    m_pendingOrderAt.clear();
    m_pendingTriggers.clear();
    m_pendingTriggerAt.clear();
    m_pendingFills.clear();
    if (m_dirtyAccounts && m_sinceAccounts.elapsed() >= kAccountRefreshMs) refreshAccounts();
}

void MonitorSet::flushIfDue() {
    if (!m_sinceChange.isValid() || m_sinceChange.elapsed() >= kFlushIntervalMs) flush();
}

void MonitorSet::refreshAll() {
    m_needFullRefresh = false;
    m_pendingOrders.clear();
    m_pendingOrderAt.clear();
    m_pendingTriggers.clear();
    m_pendingTriggerAt.clear();
    m_pendingFills.clear();
    refreshAccounts();
    std::vector<tagBrokerOrder> orders;
    m_exchange.GetAllOrders(orders);
    m_orders->setRows(orderRows(orders, m_decimals));
    std::vector<tagBargainOrder> fills;
    m_exchange.GetAllBargains(fills);
    m_fills->setRows(fillRows(fills, m_decimals));
    std::vector<tagOpenedPosition> positions;
    m_exchange.GetAllPositions(positions);
    m_positions->setRows(positionRows(positions, m_decimals));
    std::vector<tagTriggerOrder> triggers;
    m_exchange.GetAllTriggerOrders(triggers);
    m_triggers->setRows(triggerRows(
        triggers, [](std::int32_t s) { return QString::fromUtf8(simTriggerStatusText(s)); },
        m_decimals));
}

void MonitorSet::refreshAccounts() {
    m_dirtyAccounts = false;
    m_sinceAccounts.restart();
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
