#include "spread/ui/template_manager_dialog.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "host/ui/sort_list_ctrl.h"

namespace {
QPushButton* button(QWidget* parent, const char* text) {
    return new QPushButton(QString::fromUtf8(text), parent);
}
}  // namespace

TemplateManagerDialog::TemplateManagerDialog(ITemplateCommands& commands, QWidget* parent)
    : QDialog(parent), m_copy(commands.workingCopy()) {
    const TemplateManagerLayout& manager = commands.managerLayout();
    setWindowTitle(QString::fromStdString(manager.caption));
    m_list = new CSortListCtrl(this);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->SetHeadings(manager.columns);
    if (!manager.listName.empty()) m_list->LoadColumnInfo(commands.userDir().string(), manager.listName);

    QPushButton* up = button(this, spread_text::kMoveUp);
    QPushButton* down = button(this, spread_text::kMoveDown);
    QPushButton* remove = button(this, spread_text::kDelete);
    QPushButton* ok = button(this, spread_text::kOk);
    QPushButton* cancel = button(this, spread_text::kCancel);
    connect(up, &QPushButton::clicked, this, &TemplateManagerDialog::moveSelectedUp);
    connect(down, &QPushButton::clicked, this, &TemplateManagerDialog::moveSelectedDown);
    connect(remove, &QPushButton::clicked, this, &TemplateManagerDialog::removeSelected);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(up);
    buttons->addWidget(down);
    buttons->addWidget(remove);
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);

    // Wide enough for every column without a scroll bar.
    int width = m_list->verticalHeader()->width() + 4;
    for (int c = 0; c < m_list->columnCount(); ++c) width += m_list->columnWidth(c);
    resize(std::max(width + 24, 420), 300);
    refill(-1);
}

TemplateManagerDialog::~TemplateManagerDialog() = default;

void TemplateManagerDialog::takeShownOrder() {
    std::vector<std::size_t> order;
    for (int row = 0; row < m_list->rowCount(); ++row)
        order.push_back(static_cast<std::size_t>(m_list->GetItemData(row)));
    m_copy->arrange(order);
    for (int row = 0; row < m_list->rowCount(); ++row)
        m_list->SetItemData(row, static_cast<std::uint64_t>(row));
}

void TemplateManagerDialog::refill(int select) {
    m_list->SortByColumn(-1, true);
    m_list->DeleteAllItems();
    for (std::size_t i = 0; i < m_copy->size(); ++i) {
        const int row = m_list->AddItem(m_copy->row(i));
        m_list->SetItemData(row, i);
    }
    m_list->clearSelection();
    if (select < 0) return;
    const int row = m_list->FindItemData(static_cast<std::uint64_t>(select));
    if (row >= 0) m_list->selectRow(row);
}

int TemplateManagerDialog::firstSelectedRecord() const {
    for (int row = 0; row < m_list->rowCount(); ++row)
        if (m_list->item(row, 0) && m_list->item(row, 0)->isSelected())
            return static_cast<int>(m_list->GetItemData(row));
    return -1;
}

void TemplateManagerDialog::removeSelected() {
    takeShownOrder();
    // The selected rows' names, from the top of the list down.
    std::vector<std::string> names;
    for (int row = 0; row < m_list->rowCount(); ++row)
        if (m_list->item(row, 0) && m_list->item(row, 0)->isSelected())
            names.push_back(m_copy->name(m_list->GetItemData(row)));
    if (names.empty()) return;
    refill(m_copy->removeNamed(names));
}

void TemplateManagerDialog::moveSelectedUp() {
    takeShownOrder();
    const int at = firstSelectedRecord();
    if (at >= 0) refill(m_copy->moveUp(at));
}

void TemplateManagerDialog::moveSelectedDown() {
    takeShownOrder();
    const int at = firstSelectedRecord();
    if (at >= 0) refill(m_copy->moveDown(at));
}

void TemplateManagerDialog::accept() {
    takeShownOrder();
    m_copy->save();
    QDialog::accept();
}
