#include "trigger/ui/local_trigger_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMetaObject>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>
#include <set>

#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/ui/sort_list_ctrl.h"
#include "trigger/trigger_strings.h"

namespace {

using namespace trigger_text;

QString qs(const char* s) {
    return QString::fromUtf8(s);
}

// The save dialog's filter, from the "title|pattern||" form the texts keep.
QString saveFilter() {
    const QString f = qs(kSaveFilter);
    const QStringList parts = f.split('|', Qt::SkipEmptyParts);
    return parts.size() >= 2 ? parts[0] + " (" + parts[1] + ")" : f;
}

}  // namespace

LocalTriggerWindow::LocalTriggerWindow(CHelmsmanManage& manager, QWidget* parent)
    : QWidget(parent ? parent : window_placement::hostWindow(), Qt::Window),
      m_manager(manager),
      m_core(std::make_unique<CLocalTrigger>(manager)) {
    setWindowTitle(qs(kCaption));
    setObjectName("LocalTriggerWindow");

    m_showType = new QComboBox(this);
    m_showType->setObjectName("showType");
    m_showType->addItems({qs(kShowAll), qs(kShowWaiting), qs(kShowCancelled), qs(kShowFired)});
    m_showExpiry = new QCheckBox(qs(kOptExpiry), this);
    m_showEntryFlag = new QCheckBox(qs(kOptEntryFlag), this);
    m_showHedge = new QCheckBox(qs(kOptHedge), this);
    m_showComment = new QCheckBox(qs(kOptComment), this);
    syncDisplayControls();

    auto* options = new QHBoxLayout;
    options->addWidget(new QLabel(qs(kShowLabel), this));
    options->addWidget(m_showType);
    options->addSpacing(12);
    for (QCheckBox* box : {m_showExpiry, m_showEntryFlag, m_showHedge, m_showComment})
        options->addWidget(box);
    options->addStretch(1);

    m_list = new CSortListCtrl(this);
    m_list->setObjectName("triggerList");
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->verticalHeader()->setDefaultSectionSize(m_list->fontMetrics().height() + 8);
    m_list->horizontalHeader()->setStretchLastSection(true);

    m_cancelSelected = new QPushButton(qs(kCancelSelected), this);
    m_cancelAll = new QPushButton(qs(kCancelAll), this);
    m_export = new QPushButton(qs(kExport), this);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton* b : {m_cancelSelected, m_cancelAll, m_export}) {
        b->setMinimumWidth(90);
        buttons->addWidget(b);
    }

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(options);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
    resize(960, 380);

    connect(m_showType, &QComboBox::currentIndexChanged, this, [this] { applyDisplayControls(); });
    for (QCheckBox* box : {m_showExpiry, m_showEntryFlag, m_showHedge, m_showComment})
        connect(box, &QCheckBox::toggled, this, [this] { applyDisplayControls(); });
    connect(m_cancelSelected, &QPushButton::clicked, this, [this] { cancelSelected(); });
    connect(m_cancelAll, &QPushButton::clicked, this, [this] { cancelAll(); });
    connect(m_export, &QPushButton::clicked, this, [this] { exportList(); });
    connect(m_list, &QTableWidget::itemSelectionChanged, this, [this] {
        const std::vector<int> selected = selectedIndices();
        if (!selected.empty()) m_core->setSelection(selected.front());
    });

    m_core->setListChanged([this] { scheduleRebuild(); });
    rebuild();

    m_timer = new QTimer(this);
    m_timer->setInterval(CLocalTrigger::kStepMs);
    connect(m_timer, &QTimer::timeout, this, [this] { onStep(); });
    m_timer->start();
}

LocalTriggerWindow::~LocalTriggerWindow() {
    // Subscriptions go first, then the timer; the manager forgets the centre last.
    m_core->close();
    m_timer->stop();
    m_core->setListChanged({});
    m_manager.localTriggerCentreGone(this);
}

bool LocalTriggerWindow::addTrigger(const tagTriggerOrder& trigger, const tagAlgoSetting* options) {
    return m_core->addTrigger(trigger, options);
}

bool LocalTriggerWindow::addTriggers(const std::vector<tagTriggerOrder>& triggers,
                                     const tagAlgoSetting* options) {
    return m_core->addTriggers(triggers, options);
}

void LocalTriggerWindow::showCentre() {
    if (!m_placed) {
        window_placement::placeCentred(this);
        m_placed = true;
    }
    rebuild();
    if (isMinimized()) showNormal();
    show();
    raise();
    activateWindow();
}

void LocalTriggerWindow::closeEvent(QCloseEvent* event) {
    // The triggers keep being watched: closing only hides the centre.
    event->ignore();
    hide();
}

void LocalTriggerWindow::onStep() {
    if (m_core->step() && isVisible() && !isMinimized()) rebuild();
}

void LocalTriggerWindow::scheduleRebuild() {
    // Many adds in a row (a batch, or adds from another thread) cost one rebuild.
    if (m_rebuildQueued.exchange(true)) return;
    QMetaObject::invokeMethod(
        this, [this] { rebuild(); }, Qt::QueuedConnection);
}

void LocalTriggerWindow::rebuild() {
    m_rebuildQueued = false;
    const std::string headings = m_core->columnLayout();
    const int vscroll = m_list->verticalScrollBar() ? m_list->verticalScrollBar()->value() : 0;
    m_list->setUpdatesEnabled(false);
    if (headings != m_headings) {
        m_list->SetHeadings(headings);
        m_list->LoadColumnInfo(m_manager.userDir(), "LocalTrigger");
        m_headings = headings;
    }
    const int sortColumn = m_list->sortColumn();
    const bool ascending = m_list->sortAscending();
    m_list->blockSignals(true);
    m_list->DeleteAllItems();
    int reselect = -1;
    for (const LocalTriggerRow& row : m_core->rows()) {
        const int r = m_list->AddItem(row.cells);
        // Data 0 means "no data" to the list: indices are kept one up.
        m_list->SetItemData(r, static_cast<std::uint64_t>(row.index) + 1);
        if (row.index == m_core->selection()) reselect = row.index;
    }
    if (sortColumn >= 0) m_list->SortByColumn(sortColumn, ascending);
    if (reselect >= 0)
        m_list->selectRow(m_list->FindItemData(static_cast<std::uint64_t>(reselect) + 1));
    m_list->blockSignals(false);
    m_list->setUpdatesEnabled(true);
    if (m_list->verticalScrollBar()) m_list->verticalScrollBar()->setValue(vscroll);
}

std::vector<int> LocalTriggerWindow::selectedIndices() const {
    std::set<int> rows;
    for (const QModelIndex& i : m_list->selectionModel()->selectedRows()) rows.insert(i.row());
    std::vector<int> out;
    for (int r : rows) {
        const std::uint64_t data = m_list->GetItemData(r);
        if (data > 0) out.push_back(static_cast<int>(data - 1));
    }
    return out;
}

void LocalTriggerWindow::cancelSelected() {
    if (!m_core->cancelSelected(selectedIndices()).empty()) rebuild();
}

void LocalTriggerWindow::cancelAll() {
    if (m_core->cancelAll()) rebuild();
}

void LocalTriggerWindow::exportList() {
    const QString start =
        QString::fromStdString((std::filesystem::path(m_manager.userDir()) /
                                (std::string(kSaveDefaultName) + "." + kSaveDefaultExt))
                                   .string());
    QString file = QFileDialog::getSaveFileName(this, qs(kSaveTitle), start, saveFilter());
    if (file.isEmpty()) return;
    if (QFileInfo(file).suffix().isEmpty()) file += "." + qs(kSaveDefaultExt);
    m_core->exportCsv(std::filesystem::path(file.toStdString()));
}

void LocalTriggerWindow::syncDisplayControls() {
    const LocalTriggerDisplay& d = m_core->display();
    for (QWidget* w : std::initializer_list<QWidget*>{m_showType, m_showExpiry, m_showEntryFlag,
                                                      m_showHedge, m_showComment})
        w->blockSignals(true);
    m_showType->setCurrentIndex(d.nShowType);
    m_showExpiry->setChecked(d.bShowExpiredTime != 0);
    m_showEntryFlag->setChecked(d.bShowEntryFlag != 0);
    m_showHedge->setChecked(d.bShowSpeculate != 0);
    m_showComment->setChecked(d.bShowComment != 0);
    for (QWidget* w : std::initializer_list<QWidget*>{m_showType, m_showExpiry, m_showEntryFlag,
                                                      m_showHedge, m_showComment})
        w->blockSignals(false);
}

void LocalTriggerWindow::applyDisplayControls() {
    LocalTriggerDisplay d;
    d.nShowType = m_showType->currentIndex();
    d.bShowExpiredTime = m_showExpiry->isChecked() ? 1 : 0;
    d.bShowEntryFlag = m_showEntryFlag->isChecked() ? 1 : 0;
    d.bShowSpeculate = m_showHedge->isChecked() ? 1 : 0;
    d.bShowComment = m_showComment->isChecked() ? 1 : 0;
    m_core->setDisplay(d);
    rebuild();
}
