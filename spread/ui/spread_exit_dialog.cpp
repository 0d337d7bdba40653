#include "spread/ui/spread_exit_dialog.h"

#include <QHeaderView>
#include <algorithm>
#include <QScrollBar>
#include <QVBoxLayout>

#include "host/ui/sort_list_ctrl.h"

namespace {

// Names under which the lists keep their column layouts.
constexpr const char* kListsTwoLegs[] = {"SpreadExitOpen", "SpreadExitClosed"};
constexpr const char* kListsFourLegs[] = {"ButterflyExitOpen", "ButterflyExitClosed"};

int listWidth(const QTableWidget* table) {
    int w = 0;
    for (int i = 0; i < table->columnCount(); ++i) w += table->columnWidth(i);
    return w + 2 * table->frameWidth() + table->verticalScrollBar()->sizeHint().width();
}

}  // namespace

SpreadExitDialog::SpreadExitDialog(CSpreadExitInfo info, const std::string& userDir,
                                   QWidget* parent)
    : QDialog(parent), m_info(std::move(info)) {
    setWindowTitle(QString::fromUtf8(m_info.title()));
    const bool two = m_info.kind() == CSpreadExitInfo::Kind::TwoLegs;
    const auto& names = two ? kListsTwoLegs : kListsFourLegs;
    m_open = makeList(m_info.openList(), userDir, names[0]);
    m_closed = makeList(m_info.closedList(), userDir, names[1]);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);
    layout->addWidget(m_open, 2);
    layout->addWidget(m_closed, 3);
    resize(std::max(listWidth(m_closed), 360) + 16, 460);
}

CSortListCtrl* SpreadExitDialog::makeList(const SpreadExitList& content,
                                          const std::string& userDir, const char* listName) {
    auto* list = new CSortListCtrl(this);
    list->setAlternatingRowColors(false);
    list->horizontalHeader()->setStretchLastSection(false);
    list->verticalHeader()->setDefaultSectionSize(list->fontMetrics().height() + 8);
    list->SetHeadings(content.layout);
    if (!userDir.empty()) list->LoadColumnInfo(userDir, listName);
    fill(list, content);
    connect(list->horizontalHeader(), &QHeaderView::sectionClicked, list,
            [list] { keepTotalsLast(list); });
    return list;
}

void SpreadExitDialog::fill(CSortListCtrl* list, const SpreadExitList& content) {
    list->DeleteAllItems();
    for (std::size_t i = 0; i < content.rows.size(); ++i) {
        const int row = list->AddItem(content.rows[i]);
        list->SetItemData(row, i);
        for (int c = 0; c < list->columnCount(); ++c)
            list->item(row, c)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    if (list->sortColumn() >= 0) list->SortByColumn(list->sortColumn(), list->sortAscending());
    if (!content.totals.empty()) {
        const int row = list->AddItem(content.totals);
        list->SetItemData(row, kTotalsRow);
        styleTotalsRow(list, row);
    }
}

void SpreadExitDialog::keepTotalsLast(CSortListCtrl* list) {
    const int row = list->FindItemData(kTotalsRow);
    const int last = list->rowCount() - 1;
    if (row < 0 || row == last) return;
    std::vector<std::string> texts;
    for (int c = 0; c < list->columnCount(); ++c)
        texts.push_back(list->item(row, c)->text().toStdString());
    list->DeleteItem(row);
    const int moved = list->AddItem(texts);
    list->SetItemData(moved, kTotalsRow);
    styleTotalsRow(list, moved);
}

void SpreadExitDialog::styleTotalsRow(CSortListCtrl* list, int row) {
    for (int c = 0; c < list->columnCount(); ++c) {
        QTableWidgetItem* it = list->item(row, c);
        QFont font = it->font();
        font.setBold(true);
        it->setFont(font);
        it->setBackground(QColor(0xF2, 0xF2, 0xF2));
        it->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
}
