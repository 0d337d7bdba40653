#include "algo/ui/algo_centre_window.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdio>
#include <set>

#include "algo/algo_file.h"
#include "algo/algo_strings.h"
#include "algo/algo_view.h"
#include "algo/ui/algo_order_dialog.h"
#include "algo/ui/algo_setting_dialog.h"
#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/ui/sort_list_ctrl.h"

namespace {

using namespace algo_text;

QString qs(const char* s) {
    return QString::fromUtf8(s);
}

std::string fmt(const char* format, int a, int b = 0) {
    char buf[256];
    std::snprintf(buf, sizeof buf, format, a, b);
    return buf;
}

}  // namespace

AlgoCentreWindow::AlgoCentreWindow(CHelmsmanManage& manager, QWidget* parent, bool runWorker)
    : QWidget(parent ? parent : window_placement::hostWindow(), Qt::Window),
      m_manager(manager),
      m_engine(std::make_unique<CAlgoEngine>(manager)),
      m_defaults(loadAlgoDefault(manager.profilePath())) {
    setWindowTitle(qs(kCentreCaption));
    setObjectName("AlgoCentreWindow");

    m_list = new CSortListCtrl(this);
    m_list->setObjectName("algoList");
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->verticalHeader()->setDefaultSectionSize(m_list->fontMetrics().height() + 8);
    m_list->horizontalHeader()->setStretchLastSection(true);
    m_list->SetHeadings(kCentreColumns);
    m_list->LoadColumnInfo(m_manager.userDir(), kCentreListName);

    auto* buttons = new QHBoxLayout;
    const auto button = [&](const char* text, const char* name, auto slot) {
        auto* b = new QPushButton(qs(text), this);
        b->setObjectName(name);
        connect(b, &QPushButton::clicked, this, slot);
        buttons->addWidget(b);
        return b;
    };
    button(kBtnNew, "new", [this] { newOrder(); });
    button(kBtnStart, "start", [this] { startSelected(); });
    button(kBtnPause, "pause", [this] { pauseSelected(); });
    button(kBtnCancel, "cancel", [this] { cancelSelected(); });
    button(kBtnDelete, "delete", [this] { deleteSelected(); });
    button(kBtnReset, "reset", [this] { resetSelected(); });
    auto* pacing = new QPushButton(qs(kBtnPacing), this);
    pacing->setObjectName("pacing");
    auto* menu = new QMenu(pacing);
    for (int p = kPaceNormal; p <= kPaceImmediate; ++p)
        menu->addAction(qs(kPacing[p]), this, [this, p] { pacingSelected(p); });
    pacing->setMenu(menu);
    buttons->addWidget(pacing);
    buttons->addStretch(1);
    m_summary = new QLabel(this);
    m_summary->setObjectName("summary");
    buttons->addWidget(m_summary);
    button(kBtnDefaults, "defaults", [this] { editDefaults(); });

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(m_list, 1);
    resize(1120, 380);

    m_engine->load();
    rebuild();

    m_timer = new QTimer(this);
    m_timer->setInterval(static_cast<int>(CAlgoWorker::kPeriod.count()));
    connect(m_timer, &QTimer::timeout, this, [this] {
        m_engine->drainJournal();
        refresh();
    });
    m_timer->start();
    if (runWorker) {
        m_worker = std::make_unique<CAlgoWorker>(*m_engine);
        m_worker->start();
    }
}

AlgoCentreWindow::~AlgoCentreWindow() {
    m_timer->stop();
    if (m_worker) m_worker->stop();
    m_engine->drainJournal();
    m_engine->save();
    m_manager.algoCentreGone(this);
}

int AlgoCentreWindow::addAlgoOrders(const std::vector<tagBrokerOrder>& orders,
                                    const tagAlgoSetting& setting) {
    const int n = m_engine->addOrders(orders, setting, true);
    rebuild();
    if (n < static_cast<int>(orders.size()))
        m_manager.prompter().inform(kCaptionInfo,
                                    fmt(kNotTaken, static_cast<int>(orders.size()) - n));
    if (n > 0 && !isVisible()) {
        // The trader sees the order being worked; the window that sent it keeps the focus.
        setAttribute(Qt::WA_ShowWithoutActivating);
        showCentre();
        setAttribute(Qt::WA_ShowWithoutActivating, false);
    }
    return n;
}

void AlgoCentreWindow::setDefaultSetting(const tagAlgoSetting& setting) {
    m_defaults = clampAlgoSetting(setting);
}

void AlgoCentreWindow::showCentre() {
    if (!m_placed) {
        window_placement::placeCentred(this);
        m_placed = true;
    }
    rebuild();
    if (isMinimized()) showNormal();
    show();
    raise();
    if (!testAttribute(Qt::WA_ShowWithoutActivating)) activateWindow();
}

void AlgoCentreWindow::closeEvent(QCloseEvent* event) {
    // The orders keep being worked: closing only hides the centre.
    event->ignore();
    hide();
}

void AlgoCentreWindow::refresh() {
    if (m_engine->revision() != m_shownRevision) rebuild();
}

void AlgoCentreWindow::rebuild() {
    m_shownRevision = m_engine->revision();
    const std::vector<int> selected = selectedSerials();
    const std::set<int> keep(selected.begin(), selected.end());
    const int vscroll = m_list->verticalScrollBar() ? m_list->verticalScrollBar()->value() : 0;
    const int sortColumn = m_list->sortColumn();
    const bool ascending = m_list->sortAscending();
    m_list->setUpdatesEnabled(false);
    m_list->blockSignals(true);
    m_list->DeleteAllItems();
    int running = 0;
    const std::vector<CAlgoOrder> orders = m_engine->snapshot();
    for (const CAlgoOrder& o : orders) {
        const int r = m_list->AddItem(algoOrderRow(o));
        m_list->SetItemData(r, static_cast<std::uint64_t>(o.m_nSerial));
        running += o.m_nRun == kRunRunning && !o.finished();
    }
    if (sortColumn >= 0) m_list->SortByColumn(sortColumn, ascending);
    for (int serial : keep) {
        const int row = m_list->FindItemData(static_cast<std::uint64_t>(serial));
        if (row >= 0)
            m_list->selectionModel()->select(
                m_list->model()->index(row, 0),
                QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    m_list->blockSignals(false);
    m_list->setUpdatesEnabled(true);
    if (m_list->verticalScrollBar()) m_list->verticalScrollBar()->setValue(vscroll);
    m_summary->setText(QString::fromStdString(
        fmt(kSummary, static_cast<int>(orders.size()), running)));
}

std::vector<int> AlgoCentreWindow::selectedSerials() const {
    std::set<int> rows;
    for (const QModelIndex& i : m_list->selectionModel()->selectedRows()) rows.insert(i.row());
    std::vector<int> out;
    for (int r : rows)
        if (const std::uint64_t data = m_list->GetItemData(r)) out.push_back(static_cast<int>(data));
    return out;
}

void AlgoCentreWindow::selectSerial(int serial) {
    const int row = m_list->FindItemData(static_cast<std::uint64_t>(serial));
    if (row >= 0) m_list->selectRow(row);
}

template <class F>
void AlgoCentreWindow::forSelected(F&& f) {
    const std::vector<int> serials = selectedSerials();
    if (serials.empty()) {
        m_manager.prompter().inform(kCaptionInfo, kNothingSelected);
        return;
    }
    for (int s : serials) f(s);
    rebuild();
}

void AlgoCentreWindow::newOrder() {
    AlgoOrderDialog form(m_manager, m_defaults, this);
    if (form.exec() != QDialog::Accepted) return;
    if (const auto o = m_engine->add(form.order(), form.setting(), form.startNow())) {
        rebuild();
        selectSerial(o->m_nSerial);
    } else {
        m_manager.prompter().inform(kCaptionInfo, fmt(kNotTaken, 1));
    }
}

void AlgoCentreWindow::startSelected() {
    forSelected([this](int s) { m_engine->start(s); });
}

void AlgoCentreWindow::pauseSelected() {
    forSelected([this](int s) { m_engine->pause(s); });
}

void AlgoCentreWindow::cancelSelected() {
    const std::vector<int> serials = selectedSerials();
    if (!serials.empty() &&
        !m_manager.prompter().ask(kCaptionConfirm,
                                  fmt(kAskCancel, static_cast<int>(serials.size()))))
        return;
    forSelected([this](int s) { m_engine->cancel(s); });
}

void AlgoCentreWindow::deleteSelected() {
    const std::vector<int> serials = selectedSerials();
    if (!serials.empty() &&
        !m_manager.prompter().ask(kCaptionConfirm,
                                  fmt(kAskDelete, static_cast<int>(serials.size()))))
        return;
    forSelected([this](int s) { m_engine->remove(s); });
}

void AlgoCentreWindow::resetSelected() {
    forSelected([this](int s) { m_engine->reset(s); });
}

void AlgoCentreWindow::pacingSelected(int pacing) {
    forSelected([this, pacing](int s) { m_engine->setPacing(s, pacing); });
}

void AlgoCentreWindow::editDefaults() {
    editAlgoSettingModal(m_defaults, m_manager, this);
}
