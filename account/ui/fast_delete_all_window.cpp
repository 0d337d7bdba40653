#include "account/ui/fast_delete_all_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "account/account_strings.h"
#include "account/ui/account_widgets.h"
#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/ui/sort_list_ctrl.h"
#include "order/ui/confirm_order_dialog.h"

using namespace account_text;
using account_ui::u8;

namespace {

QPlainTextEdit* resultPane(QWidget* parent) {
    auto* pane = new QPlainTextEdit(parent);
    pane->setObjectName("results");
    pane->setReadOnly(true);
    pane->setMaximumHeight(110);
    return pane;
}

void showResults(QPlainTextEdit* pane, QLabel* summary, const std::vector<std::string>& lines,
                 const std::string& total) {
    QStringList text;
    for (const std::string& line : lines) text << u8(line);
    if (!lines.empty()) pane->setPlainText(text.join('\n'));
    if (!total.empty()) summary->setText(u8(total));
}

}  // namespace

// ---- Cancel-all ------------------------------------------------------------------------------

FastDeleteAllWindow::FastDeleteAllWindow(CHelmsmanManage& manage, QWidget* parent)
    : QDialog(parent), m_core(manage) {
    setWindowTitle(u8(kFastDeleteAllCaption));
    m_core.setWindowName(kFastDeleteAllCaption);
    m_accounts = new account_ui::AccountBoxes(m_core.accounts(), [this] { reload(); }, this);
    m_code = new QComboBox(this);
    m_code->setObjectName("symbolFilter");
    m_code->setMinimumWidth(100);
    m_side = new QComboBox(this);
    m_side->setObjectName("sideFilter");
    m_side->addItem(u8(kSideAll), 0);
    m_side->addItem(u8(kBuy), kDirBuy);
    m_side->addItem(u8(kSell), kDirSell);
    m_list = new CSortListCtrl(this);
    m_list->setObjectName("orders");
    m_list->SetHeadings(kFastDeleteAllColumns);
    m_list->LoadColumnInfo(manage.userDir(), "FastDeleteAll");
    m_list->setMinimumSize(780, 200);
    m_results = resultPane(this);
    m_summary = new QLabel(this);
    m_summary->setObjectName("summary");

    auto* refresh = new QPushButton(u8(kButtonRefresh), this);
    refresh->setAutoDefault(false);
    auto* cancel = new QPushButton(u8(kButtonDeleteAll), this);
    cancel->setObjectName("deleteAll");
    cancel->setAutoDefault(false);
    cancel->setMinimumHeight(30);
    connect(refresh, &QPushButton::clicked, this, [this] { reload(); });
    connect(cancel, &QPushButton::clicked, this, [this] { cancelAll(); });
    auto filterChanged = [this] {
        m_core.setSymbolFilter(m_code->currentIndex() > 0 ? m_code->currentText().toStdString() : std::string());
        m_core.setSideFilter(m_side->currentData().toInt());
        m_core.refresh();
        fillList();
    };
    connect(m_code, &QComboBox::activated, this, filterChanged);
    connect(m_side, &QComboBox::activated, this, filterChanged);

    auto* filters = new QHBoxLayout;
    filters->addWidget(new QLabel(u8(kLabelSymbol), this));
    filters->addWidget(m_code);
    filters->addWidget(m_side);
    filters->addStretch();
    filters->addWidget(refresh);
    filters->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_accounts);
    layout->addLayout(filters);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_results);
    layout->addWidget(m_summary);

    auto* timer = new QTimer(this);
    timer->setInterval(1000);
    connect(timer, &QTimer::timeout, this, [this] { reload(); });
    timer->start();
    reload();
}

void FastDeleteAllWindow::reload() {
    m_core.refresh();
    fillCodes();
    fillList();
}

void FastDeleteAllWindow::fillCodes() {
    const QString current = m_code->currentIndex() > 0 ? m_code->currentText() : QString();
    m_code->clear();
    m_code->addItem(u8(kAllSymbols));
    for (const std::string& c : m_core.codes()) m_code->addItem(QString::fromStdString(c));
    const int i = current.isEmpty() ? 0 : m_code->findText(current);
    if (i < 0) m_code->addItem(current);  // a filter with nothing left keeps showing itself
    m_code->setCurrentIndex(i < 0 ? m_code->count() - 1 : i);
}

void FastDeleteAllWindow::fillList() {
    const int scroll = m_list->verticalScrollBar() ? m_list->verticalScrollBar()->value() : 0;
    m_list->DeleteAllItems();
    for (std::size_t i = 0; i < m_core.rows().size(); ++i) {
        std::vector<std::string> cells;
        for (int c = 0; c < CFastDeleteAll::kColCount; ++c) cells.push_back(m_core.cell(i, c));
        m_list->SetItemData(m_list->AddItem(cells), i + 1);
    }
    if (m_list->verticalScrollBar()) m_list->verticalScrollBar()->setValue(scroll);
}

int FastDeleteAllWindow::cancelAll() {
    const int n = m_core.cancelAll();
    showResults(m_results, m_summary, m_core.results(), m_core.summary());
    fillList();
    return n;
}

int openFastDeleteAll() {
    account_ui::showToolWindow(new FastDeleteAllWindow(CHelmsmanManage::instance(), window_placement::hostWindow()));
    return 1;
}

// ---- Multi-account trigger cancel ------------------------------------------------------------

DeleteTriggerWindow::DeleteTriggerWindow(CHelmsmanManage& manage, const tagAccoutInfo* preselect,
                                         QWidget* parent)
    : QDialog(parent), m_core(manage, preselect) {
    setWindowTitle(u8(kDeleteTriggerCaption));
    m_accounts = new account_ui::AccountBoxes(m_core.accounts(), [this] {
        m_core.refresh();
        fillList();
    }, this);
    m_list = new CSortListCtrl(this);
    m_list->setObjectName("triggers");
    m_list->SetHeadings(kDeleteTriggerColumns);
    m_list->LoadColumnInfo(manage.userDir(), "DeleteTriggerOrders");
    m_list->setMinimumSize(780, 200);
    connect(m_list, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (m_filling || item->column() != 0) return;
        const auto row = m_list->GetItemData(item->row());
        if (row > 0 && row <= m_core.rows().size()) m_core.setChecked(row - 1, item->checkState() == Qt::Checked);
    });
    m_results = resultPane(this);
    m_summary = new QLabel(this);
    m_summary->setObjectName("summary");

    auto* all = new QCheckBox(u8(kCheckAll), this);
    all->setObjectName("checkAll");
    connect(all, &QCheckBox::toggled, this, [this](bool on) {
        m_core.checkAll(on);
        fillList();
    });
    auto* refresh = new QPushButton(u8(kButtonRefresh), this);
    refresh->setAutoDefault(false);
    connect(refresh, &QPushButton::clicked, this, [this] {
        m_core.refresh();
        fillList();
    });
    auto* del = new QPushButton(u8(kButtonDeleteChecked), this);
    del->setObjectName("deleteChecked");
    del->setAutoDefault(false);
    del->setMinimumHeight(30);
    connect(del, &QPushButton::clicked, this, [this] { deleteChecked(); });
    auto* row = new QHBoxLayout;
    row->addWidget(all);
    row->addStretch();
    row->addWidget(refresh);
    row->addWidget(del);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_accounts);
    layout->addWidget(m_list, 1);
    layout->addLayout(row);
    layout->addWidget(m_results);
    layout->addWidget(m_summary);

    auto* timer = new QTimer(this);
    timer->setInterval(1000);
    connect(timer, &QTimer::timeout, this, [this] {
        m_core.refresh();
        fillList();
    });
    timer->start();
    fillList();
}

void DeleteTriggerWindow::fillList() {
    m_filling = true;
    m_list->DeleteAllItems();
    for (std::size_t i = 0; i < m_core.rows().size(); ++i) {
        std::vector<std::string> cells;
        for (int c = 0; c < CDeleteTriggerOrders::kColCount; ++c) cells.push_back(m_core.cell(i, c));
        const int r = m_list->AddItem(cells);
        m_list->SetItemData(r, i + 1);
        if (QTableWidgetItem* item = m_list->item(r, 0)) {
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(m_core.checked(i) ? Qt::Checked : Qt::Unchecked);
        }
    }
    m_filling = false;
}

int DeleteTriggerWindow::deleteChecked() {
    const int n = m_core.deleteChecked();
    showResults(m_results, m_summary, m_core.results(), m_core.summary());
    fillList();
    return n;
}

int openDeleteTriggerOrders(const tagAccoutInfo* block) {
    account_ui::showToolWindow(
        new DeleteTriggerWindow(CHelmsmanManage::instance(), block, window_placement::hostWindow()));
    return 1;
}
