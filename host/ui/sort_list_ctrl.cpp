#include "host/ui/sort_list_ctrl.h"

#include <QHeaderView>
#include <QHideEvent>

#include "app/column_layout.h"
#include "host/number_text.h"

namespace {

// A horizontal dialog unit of the classic 9-point dialog font is about 1.5 pixels.
constexpr double kPixelsPerDialogUnit = 1.5;
constexpr Qt::ItemFlags kReadOnly = Qt::ItemIsEnabled | Qt::ItemIsSelectable;

}  // namespace

// ---- CSortListItem ---------------------------------------------------------------------

CSortListItem::CSortListItem(const QString& text) : QTableWidgetItem(text) {
    setFlags(kReadOnly);
}

bool CSortListItem::operator<(const QTableWidgetItem& other) const {
    const QString a = text();
    const QString b = other.text();
    const auto x = number_text::parse(a.toStdString());
    const auto y = number_text::parse(b.toStdString());
    if (x && y) return *x < *y;
    return QString::localeAwareCompare(a, b) < 0;
}

QTableWidgetItem* CSortListItem::clone() const {
    return new CSortListItem(*this);
}

// ---- CSortListCtrl ---------------------------------------------------------------------

CSortListCtrl::CSortListCtrl(QWidget* parent) : QTableWidget(parent) {
    verticalHeader()->setVisible(false);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSortingEnabled(false);  // sorted here, on a click, not on every change of a cell
    QHeaderView* header = horizontalHeader();
    header->setHighlightSections(false);
    header->setSectionsClickable(true);
    header->setSectionsMovable(true);
    header->setSortIndicatorShown(false);
    connect(header, &QHeaderView::sectionClicked, this, &CSortListCtrl::onHeaderClicked);
}

CSortListCtrl::~CSortListCtrl() {
    SaveColumnInfo();
}

void CSortListCtrl::SetHeadings(std::string_view layout) {
    const auto columns = parseColumnLayout(layout);
    setRowCount(0);
    setColumnCount(0);
    setColumnCount(static_cast<int>(columns.size()));
    m_titles.clear();
    QStringList labels;
    for (const auto& c : columns) {
        m_titles.push_back(c.title);
        labels << QString::fromStdString(c.title);
    }
    setHorizontalHeaderLabels(labels);
    for (int i = 0; i < static_cast<int>(columns.size()); ++i)
        setColumnWidth(
            i, static_cast<int>(columns[static_cast<std::size_t>(i)].width * kPixelsPerDialogUnit +
                                0.5));
    m_sortColumn = -1;
    horizontalHeader()->setSortIndicatorShown(false);
}

bool CSortListCtrl::LoadColumnInfo(const std::string& userDir, const std::string& listName) {
    m_userDir = userDir;
    m_listName = listName;
    const auto saved = loadColumnInfo(userDir, listName, m_titles);
    if (saved) applyColumnInfo(*saved);
    m_stored = columnInfo();
    return saved.has_value();
}

void CSortListCtrl::SaveColumnInfo() {
    if (m_listName.empty() || m_userDir.empty()) return;
    ColumnInfo now = columnInfo();
    if (m_stored && now == *m_stored) return;
    if (saveColumnInfo(m_userDir, m_listName, now)) m_stored = std::move(now);
}

void CSortListCtrl::hideEvent(QHideEvent* event) {
    SaveColumnInfo();
    QTableWidget::hideEvent(event);
}

ColumnInfo CSortListCtrl::columnInfo() const {
    ColumnInfo info;
    info.titles = m_titles;
    const QHeaderView* header = horizontalHeader();
    for (int c = 0; c < columnCount(); ++c) {
        info.widths.push_back(columnWidth(c));
        info.order.push_back(header->logicalIndex(c));
    }
    info.sortColumn = m_sortColumn;
    info.ascending = m_sortColumn < 0 || m_ascending;
    return info;
}

void CSortListCtrl::applyColumnInfo(const ColumnInfo& info) {
    const int n = columnCount();
    if (static_cast<int>(info.widths.size()) == n)
        for (int c = 0; c < n; ++c) setColumnWidth(c, info.widths[static_cast<std::size_t>(c)]);
    if (static_cast<int>(info.order.size()) == n) {
        QHeaderView* header = horizontalHeader();
        for (int v = 0; v < n; ++v)
            header->moveSection(header->visualIndex(info.order[static_cast<std::size_t>(v)]), v);
    }
    if (info.sortColumn >= 0 && info.sortColumn < n) SortByColumn(info.sortColumn, info.ascending);
}

void CSortListCtrl::onHeaderClicked(int column) {
    SortByColumn(column, column == m_sortColumn ? !m_ascending : true);
}

void CSortListCtrl::SortByColumn(int column, bool ascending) {
    QHeaderView* header = horizontalHeader();
    if (column < 0 || column >= columnCount()) {
        m_sortColumn = -1;
        header->setSortIndicatorShown(false);
        return;
    }
    m_sortColumn = column;
    m_ascending = ascending;
    const Qt::SortOrder order = ascending ? Qt::AscendingOrder : Qt::DescendingOrder;
    sortItems(column, order);
    header->setSortIndicatorShown(true);
    header->setSortIndicator(column, order);
}

QTableWidgetItem* CSortListCtrl::cellAt(int row, int column) {
    QTableWidgetItem* it = item(row, column);
    if (!it) {
        it = new CSortListItem(QString());
        setItem(row, column, it);
    }
    return it;
}

int CSortListCtrl::AddItem(const std::vector<std::string>& texts) {
    const int row = rowCount();
    insertRow(row);
    for (int c = 0; c < columnCount(); ++c) {
        const auto i = static_cast<std::size_t>(c);
        setItem(row, c,
                new CSortListItem(i < texts.size() ? QString::fromStdString(texts[i]) : QString()));
    }
    return row;
}

void CSortListCtrl::SetItemText(int row, int column, const std::string& text) {
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount()) return;
    cellAt(row, column)->setText(QString::fromStdString(text));
}

void CSortListCtrl::SetItemData(int row, std::uint64_t data) {
    if (row < 0 || row >= rowCount() || columnCount() == 0) return;
    cellAt(row, 0)->setData(Qt::UserRole, QVariant::fromValue<qulonglong>(data));
}

std::uint64_t CSortListCtrl::GetItemData(int row) const {
    const QTableWidgetItem* it = item(row, 0);
    return it ? it->data(Qt::UserRole).toULongLong() : 0;
}

int CSortListCtrl::FindItemData(std::uint64_t data) const {
    for (int r = 0; r < rowCount(); ++r)
        if (GetItemData(r) == data) return r;
    return -1;
}

void CSortListCtrl::DeleteItem(int row) {
    if (row >= 0 && row < rowCount()) removeRow(row);
}

void CSortListCtrl::DeleteAllItems() {
    setRowCount(0);
}
