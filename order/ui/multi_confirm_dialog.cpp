#include "order/ui/multi_confirm_dialog.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "app/helmsman_manage.h"
#include "order/confirm_strings.h"
#include "order/ui/confirm_order_dialog.h"

namespace confirm_ui {

void setupList(CSortListCtrl* list) {
    list->setAlternatingRowColors(false);
    list->horizontalHeader()->setStretchLastSection(false);
    list->verticalHeader()->setDefaultSectionSize(list->fontMetrics().height() + 10);
}

int tableWidth(const QTableWidget* table) {
    int w = table->verticalHeader()->isVisible() ? table->verticalHeader()->width() : 0;
    for (int i = 0; i < table->columnCount(); ++i) w += table->columnWidth(i);
    return w + 2 * table->frameWidth() + table->verticalScrollBar()->sizeHint().width();
}

void fitColumns(QTableWidget* table) {
    for (int c = 0; c < table->columnCount(); ++c) {
        const int detail = table->columnWidth(c);
        table->resizeColumnToContents(c);
        table->setColumnWidth(c, std::max(detail, table->columnWidth(c) + 8));
    }
}

}  // namespace confirm_ui

// ---- BatchOrderTable -------------------------------------------------------------------

BatchOrderTable::BatchOrderTable(CMultiConfirm& core, CHelmsmanManage& manager,
                                 const char* listName, QWidget* parent)
    : CSortListCtrl(parent), m_core(core), m_manager(manager) {
    confirm_ui::setupList(this);
    SetHeadings(CMultiConfirm::columnLayout());
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    refresh();
    confirm_ui::fitColumns(this);
    LoadColumnInfo(manager.userDir(), listName);
    connect(this, &QTableWidget::itemChanged, this, &BatchOrderTable::onItemChanged);
    // A double-click anywhere else on the row edits its price.
    connect(this, &QTableWidget::cellDoubleClicked, this, [this](int row, int column) {
        if (column != CMultiConfirm::kColPrice && column != CMultiConfirm::kColVolume)
            editRow(row, CMultiConfirm::kColPrice);
    });
}

void BatchOrderTable::refresh() {
    m_filling = true;
    DeleteAllItems();
    for (std::size_t i = 0; i < m_core.rowCount(); ++i) {
        const int row = AddItem({});
        SetItemData(row, i);
        fillRow(row);
    }
    if (sortColumn() >= 0) SortByColumn(sortColumn(), sortAscending());
    m_filling = false;
}

void BatchOrderTable::fillRow(int row) {
    const bool wasFilling = m_filling;
    m_filling = true;
    const std::size_t index = orderOf(row);
    const auto& order = m_core.orders()[index];
    const QColor colour = confirm_ui::directionColor(order.nDirection == kDirBuy);
    for (int c = 0; c < CMultiConfirm::kColCount; ++c) {
        SetItemText(row, c, m_core.cell(index, c));
        QTableWidgetItem* it = item(row, c);
        if (c == CMultiConfirm::kColPrice || c == CMultiConfirm::kColVolume) {
            it->setFlags(it->flags() | Qt::ItemIsEditable);
            it->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            it->setToolTip(QString::fromUtf8(confirm_text::kEditTip));
        }
        if (c == CMultiConfirm::kColSymbol) it->setForeground(colour);
    }
    m_filling = wasFilling;
}

void BatchOrderTable::editRow(int row, int column) {
    if (row < 0 || row >= rowCount()) return;
    setCurrentCell(row, column);
    editItem(item(row, column));
}

void BatchOrderTable::onItemChanged(QTableWidgetItem* changed) {
    if (m_filling) return;
    const int row = changed->row();
    const int column = changed->column();
    const std::size_t index = orderOf(row);
    const std::string typed = changed->text().toStdString();
    EditResult result;
    if (column == CMultiConfirm::kColPrice)
        result = m_core.editPrice(index, typed);
    else if (column == CMultiConfirm::kColVolume)
        result = m_core.editVolume(index, typed);
    else
        return;
    // Show what the order now is: the rounded price, or the old value after a refusal.
    fillRow(row);
    if (!result.ok) {
        m_manager.prompter().inform(confirm_text::kEditCaption, result.message,
                                    PromptIcon::Exclamation);
        return;
    }
    emit edited();
}

// ---- MultiConfirmDialog ----------------------------------------------------------------

static QHBoxLayout* buttonRow(QPushButton* ok, QPushButton* cancel, bool buyColour, bool coloured) {
    ok->setDefault(true);
    ok->setAutoDefault(true);
    cancel->setAutoDefault(false);
    if (coloured) ok->setStyleSheet(confirm_ui::directionButtonStyle(buyColour));
    ok->setMinimumWidth(90);
    cancel->setMinimumWidth(90);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

// Whether every order of a batch goes the same way (then the accept button takes its colour).
template <class Orders>
static int commonDirection(const Orders& orders) {
    if (orders.empty()) return 0;
    for (const auto& o : orders)
        if (o.nDirection != orders.front().nDirection) return 0;
    return orders.front().nDirection;
}

MultiConfirmDialog::MultiConfirmDialog(CMultiConfirm& core, CHelmsmanManage& manager,
                                       QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(QString::fromStdString(core.title()));
    setModal(true);
    m_table = new BatchOrderTable(core, manager, confirm_lists::kBatch, this);
    auto* summary = new QLabel(QString::fromStdString(core.summary()), this);
    summary->setObjectName("summaryLabel");
    summary->setStyleSheet("font-weight: bold;");
    connect(m_table, &BatchOrderTable::edited, summary,
            [summary, &core] { summary->setText(QString::fromStdString(core.summary())); });

    m_ok = new QPushButton(QString::fromUtf8(confirm_text::kOk), this);
    m_ok->setObjectName("okButton");
    m_cancel = new QPushButton(QString::fromUtf8(confirm_text::kCancel), this);
    m_cancel->setObjectName("cancelButton");
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    const int dir = commonDirection(core.orders());

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(summary);
    layout->addWidget(m_table, 1);
    layout->addLayout(buttonRow(m_ok, m_cancel, dir == kDirBuy, dir != 0));
    const int rows = std::min<int>(static_cast<int>(core.rowCount()), 12);
    resize(std::max(confirm_ui::tableWidth(m_table) + 24, 420),
           m_table->horizontalHeader()->sizeHint().height() +
               rows * m_table->verticalHeader()->defaultSectionSize() + 90);
    m_ok->setFocus();
}

// ---- MultiTriggerConfirmDialog ---------------------------------------------------------

MultiTriggerConfirmDialog::MultiTriggerConfirmDialog(std::unique_ptr<CMultiTriggerConfirm> core,
                                                     CHelmsmanManage& manager, QWidget* parent)
    : QDialog(parent), m_core(std::move(core)), m_manager(manager) {
    setWindowTitle(QString::fromStdString(m_core->title()));
    setModal(true);
    m_table = new CSortListCtrl(this);
    confirm_ui::setupList(m_table);
    m_table->SetHeadings(CMultiTriggerConfirm::columnLayout());
    for (std::size_t i = 0; i < m_core->rowCount(); ++i) {
        std::vector<std::string> texts;
        for (int c = 0; c < CMultiTriggerConfirm::kColCount; ++c)
            texts.push_back(m_core->cell(i, c));
        const int r = m_table->AddItem(texts);
        m_table->SetItemData(r, i);
        for (int c = CMultiTriggerConfirm::kColTrigger; c < CMultiTriggerConfirm::kColCount; ++c)
            m_table->item(r, c)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        m_table->item(r, CMultiTriggerConfirm::kColSymbol)
            ->setForeground(confirm_ui::directionColor(m_core->orders()[i].nDirection == kDirBuy));
    }
    confirm_ui::fitColumns(m_table);
    m_table->LoadColumnInfo(manager.userDir(), confirm_lists::kTriggerBatch);

    m_ok = new QPushButton(QString::fromUtf8(confirm_text::kOk), this);
    m_ok->setObjectName("okButton");
    m_cancel = new QPushButton(QString::fromUtf8(confirm_text::kCancel), this);
    m_cancel->setObjectName("cancelButton");
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    const int dir = commonDirection(m_core->orders());

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_table, 1);
    layout->addLayout(buttonRow(m_ok, m_cancel, dir == kDirBuy, dir != 0));
    const int rows = std::min<int>(static_cast<int>(m_core->rowCount()), 12);
    resize(std::max(confirm_ui::tableWidth(m_table) + 24, 420),
           m_table->horizontalHeader()->sizeHint().height() +
               rows * m_table->verticalHeader()->defaultSectionSize() + 64);
    m_ok->setFocus();
}

void MultiTriggerConfirmDialog::accept() {
    m_ok->setEnabled(false);  // one click, one batch
    if (CSubscibeManage* facade = m_manager.facade()) {
        const auto result = m_core->send(*facade);
        const std::string failed = m_core->failureMessage(result);
        if (!failed.empty())
            m_manager.prompter().inform(confirm_text::kEditCaption, failed, PromptIcon::Warning);
    }
    QDialog::accept();
}
