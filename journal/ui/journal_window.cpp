#include "journal/ui/journal_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "app/ui/window_placement.h"
#include "host/ui/sort_list_ctrl.h"
#include "journal/journal_strings.h"
#include "journal/journal_view.h"

namespace {

using namespace journal_text;

QString qs(const char* s) { return QString::fromUtf8(s); }
QString qs(const std::string& s) { return QString::fromStdString(s); }

std::string text(const QLineEdit* edit) { return edit->text().trimmed().toStdString(); }

CSortListCtrl* makeList(QWidget* parent, const char* name) {
    auto* list = new CSortListCtrl(parent);
    list->setObjectName(name);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->verticalHeader()->setDefaultSectionSize(list->fontMetrics().height() + 8);
    list->horizontalHeader()->setStretchLastSection(true);
    return list;
}

}  // namespace

JournalWindow::JournalWindow(SqliteOrderJournal* journal, const std::string& notice,
                             const std::string& userDir, QWidget* parent)
    : QWidget(parent, Qt::Window), m_journal(journal), m_notice(notice) {
    setWindowTitle(qs(kCaption));
    setObjectName("JournalWindow");

    m_allDays = new QCheckBox(qs(kAllDays), this);
    m_day = new QDateEdit(QDate::currentDate(), this);
    m_day->setObjectName("day");
    m_day->setCalendarPopup(true);
    m_day->setDisplayFormat("yyyy-MM-dd");
    m_day->setMinimumWidth(m_day->fontMetrics().horizontalAdvance("2026-12-31") + 40);
    m_tool = new QComboBox(this);
    m_tool->setObjectName("tool");
    m_tool->setMinimumWidth(110);
    m_account = new QLineEdit(this);
    m_code = new QLineEdit(this);
    m_tag = new QLineEdit(this);
    m_account->setObjectName("account");
    m_code->setObjectName("code");
    m_tag->setObjectName("tagText");
    m_account->setMaximumWidth(100);
    m_code->setMaximumWidth(80);
    m_tag->setMaximumWidth(120);
    m_refresh = new QPushButton(qs(kRefresh), this);
    m_more = new QPushButton(qs(kMore), this);

    auto* filters = new QHBoxLayout;
    filters->addWidget(new QLabel(qs(kDay), this));
    filters->addWidget(m_day);
    filters->addWidget(m_allDays);
    filters->addSpacing(10);
    filters->addWidget(new QLabel(qs(kTool), this));
    filters->addWidget(m_tool);
    filters->addSpacing(10);
    filters->addWidget(new QLabel(qs(kAccount), this));
    filters->addWidget(m_account);
    filters->addWidget(new QLabel(qs(kCode), this));
    filters->addWidget(m_code);
    filters->addWidget(new QLabel(qs(kTagText), this));
    filters->addWidget(m_tag);
    filters->addStretch(1);
    filters->addWidget(m_refresh);

    m_noticeLabel = new QLabel(this);
    m_noticeLabel->setObjectName("notice");
    m_noticeLabel->setWordWrap(true);
    m_noticeLabel->setStyleSheet("color: #b00000;");

    m_list = makeList(this, "journalList");
    m_list->SetHeadings(kColumns);
    m_figures = makeList(this, "figureList");
    m_figures->SetHeadings(kFigureColumns);
    if (!userDir.empty()) {
        m_list->LoadColumnInfo(userDir, kListName);
        m_figures->LoadColumnInfo(userDir, kFigureListName);
    }
    m_reason = new QPlainTextEdit(this);
    m_reason->setObjectName("reason");
    m_reason->setReadOnly(true);

    auto* reasonBox = new QVBoxLayout;
    reasonBox->addWidget(new QLabel(qs(kReasonLabel), this));
    reasonBox->addWidget(m_reason, 1);
    auto* figureBox = new QVBoxLayout;
    figureBox->addWidget(new QLabel(qs(kFiguresLabel), this));
    figureBox->addWidget(m_figures, 1);
    auto* detail = new QWidget(this);
    auto* detailLayout = new QHBoxLayout(detail);
    detailLayout->setContentsMargins(0, 0, 0, 0);
    detailLayout->addLayout(reasonBox, 3);
    detailLayout->addLayout(figureBox, 2);

    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(m_list);
    splitter->addWidget(detail);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 1);

    m_status = new QLabel(this);
    m_status->setObjectName("status");
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_status, 1);
    bottom->addWidget(m_more);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(filters);
    layout->addWidget(m_noticeLabel);
    layout->addWidget(splitter, 1);
    layout->addLayout(bottom);
    resize(1280, 640);

    connect(m_refresh, &QPushButton::clicked, this, [this] { refresh(); });
    connect(m_more, &QPushButton::clicked, this, [this] { loadMore(); });
    connect(m_allDays, &QCheckBox::toggled, this, [this](bool all) {
        m_day->setEnabled(!all);
        refresh();
    });
    connect(m_day, &QDateEdit::dateChanged, this, [this] { refresh(); });
    connect(m_tool, &QComboBox::activated, this, [this] { refresh(); });
    for (QLineEdit* edit : {m_account, m_code, m_tag})
        connect(edit, &QLineEdit::returnPressed, this, [this] { refresh(); });
    connect(m_list, &QTableWidget::itemSelectionChanged, this, [this] { showSelected(); });

    const QString noticeText = qs(m_notice.empty() && !m_journal ? kNoJournal : m_notice.c_str());
    m_noticeLabel->setText(noticeText);
    m_noticeLabel->setVisible(!noticeText.isEmpty());
    for (QWidget* w : std::initializer_list<QWidget*>{m_allDays, m_day, m_tool, m_account,
                                                      m_code, m_tag, m_refresh})
        w->setEnabled(m_journal != nullptr);
    refresh();
}

JournalFilter JournalWindow::filter() const {
    JournalFilter f;
    if (!m_allDays->isChecked()) {
        const QDate day = m_day->date();
        f.fromMs = QDateTime(day, QTime(0, 0)).toMSecsSinceEpoch();
        f.toMs = QDateTime(day.addDays(1), QTime(0, 0)).toMSecsSinceEpoch();
    }
    if (m_tool->currentIndex() > 0) f.tool = m_tool->currentText().toStdString();
    f.account = text(m_account);
    f.code = text(m_code);
    f.tagText = text(m_tag);
    return f;
}

void JournalWindow::refresh() {
    fillTools();
    readPage(false);
}

void JournalWindow::loadMore() {
    if (m_hasMore) readPage(true);
}

void JournalWindow::fillTools() {
    const QString current = m_tool->currentIndex() > 0 ? m_tool->currentText() : QString();
    m_tool->blockSignals(true);
    m_tool->clear();
    m_tool->addItem(qs(kAllTools));
    if (m_journal)
        for (const std::string& tool : m_journal->tools()) m_tool->addItem(qs(tool));
    const int keep = current.isEmpty() ? 0 : m_tool->findText(current);
    if (keep < 0) m_tool->addItem(current);  // nothing of it yet on record: keep the choice
    m_tool->setCurrentIndex(keep < 0 ? m_tool->count() - 1 : keep);
    m_tool->blockSignals(false);
}

void JournalWindow::readPage(bool append) {
    std::string error;
    std::vector<JournalRecord> page;
    if (m_journal) {
        // One row beyond the page tells whether there is more.
        page = m_journal->query(filter(), kPageSize + 1, append ? m_cursor : JournalCursor{},
                                &error);
    }
    m_hasMore = page.size() > static_cast<std::size_t>(kPageSize);
    if (m_hasMore) page.pop_back();
    if (!page.empty()) m_cursor = {page.back().entry.timeMs, page.back().id};

    const int sortColumn = m_list->sortColumn();
    const bool ascending = m_list->sortAscending();
    m_list->setUpdatesEnabled(false);
    m_list->blockSignals(true);
    if (!append) {
        m_rows.clear();
        m_list->DeleteAllItems();
    }
    for (JournalRecord& rec : page) {
        const int r = m_list->AddItem(journal_view::rowCells(rec.entry));
        m_rows.push_back(std::move(rec));
        m_list->SetItemData(r, m_rows.size());
    }
    if (sortColumn >= 0) m_list->SortByColumn(sortColumn, ascending);
    m_list->blockSignals(false);
    m_list->setUpdatesEnabled(true);
    if (!append && m_list->rowCount() > 0) m_list->selectRow(0);
    showSelected();
    m_more->setEnabled(m_hasMore);
    updateStatus(error);
}

void JournalWindow::showSelected() {
    const QList<QTableWidgetItem*> items = m_list->selectedItems();
    const std::uint64_t data = items.isEmpty() ? 0 : m_list->GetItemData(items.front()->row());
    m_figures->DeleteAllItems();
    if (data == 0 || data > m_rows.size()) {
        m_reason->clear();
        return;
    }
    const JournalEntry& e = m_rows[data - 1].entry;
    m_reason->setPlainText(qs(e.reason));
    for (const JournalFigure& f : e.figures)
        m_figures->AddItem({f.name, journal_view::figureText(f.value)});
}

void JournalWindow::updateStatus(const std::string& error) {
    const std::string count = std::to_string(m_rows.size());
    std::string status = journal_text::fill(m_hasMore ? kShownMore : kShown, {count});
    const std::string writeError = m_journal ? m_journal->lastError() : std::string();
    for (const std::string& e : {error, writeError})
        if (!e.empty()) status += "　" + e;
    m_status->setText(qs(status));
}

JournalWindow* openOrderJournal(SqliteOrderJournal* journal, const std::string& notice,
                                const std::string& userDir) {
    static QPointer<JournalWindow> viewer;
    if (!viewer) {
        viewer = new JournalWindow(journal, notice, userDir, window_placement::hostWindow());
        viewer->setAttribute(Qt::WA_DeleteOnClose);
        window_placement::placeCentred(viewer);
    } else {
        viewer->refresh();
    }
    if (viewer->isMinimized()) viewer->showNormal();
    viewer->show();
    viewer->raise();
    viewer->activateWindow();
    return viewer;
}
