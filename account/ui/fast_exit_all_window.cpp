#include "account/ui/fast_exit_all_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdio>

#include "account/account_strings.h"
#include "account/ui/account_widgets.h"
#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/ui/sort_list_ctrl.h"
#include "order/ui/confirm_order_dialog.h"

using namespace account_text;
using account_ui::u8;

namespace {
constexpr int kColumns = 8;
}

FastExitAllWindow::FastExitAllWindow(CHelmsmanManage& manage, QWidget* parent)
    : QDialog(parent), m_core(manage) {
    setWindowTitle(u8(kFastExitAllCaption));
    m_core.setWindowName(kFastExitAllCaption);
    m_accounts = new account_ui::AccountBoxes(m_core.accounts(), [this] {
        m_core.refresh();
        fillList();
    }, this);
    m_list = new CSortListCtrl(this);
    m_list->setObjectName("positions");
    m_list->SetHeadings(kFastExitAllColumns);
    m_list->LoadColumnInfo(manage.userDir(), "FastExitAll");
    m_list->setMinimumSize(760, 220);
    connect(m_list, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (m_filling || item->column() != 0) return;
        const auto row = m_list->GetItemData(item->row());
        if (row == 0) return;
        m_core.setChecked(row - 1, item->checkState() == Qt::Checked);
        m_summary->setText(u8(m_core.summary()));
    });

    m_offset = new QSpinBox(this);
    m_offset->setObjectName("offset");
    m_offset->setRange(0, 1000);
    m_offset->setValue(m_core.offsetPoints());
    m_offset->setSuffix(u8(kLabelOffsetUnit));
    connect(m_offset, &QSpinBox::valueChanged, this, [this](int v) {
        m_core.setOffsetPoints(v);
        m_core.saveOptions();
        updatePrices();
    });
    m_summary = new QLabel(this);
    m_summary->setObjectName("summary");
    auto* refresh = new QPushButton(u8(kButtonRefresh), this);
    refresh->setAutoDefault(false);
    connect(refresh, &QPushButton::clicked, this, [this] {
        m_core.refresh();
        m_accounts->rebuild();
        fillList();
    });
    auto* exitAll = new QPushButton(u8(kButtonExitAll), this);
    exitAll->setObjectName("exitAll");
    exitAll->setStyleSheet(confirm_ui::directionButtonStyle(false));
    exitAll->setAutoDefault(false);
    exitAll->setMinimumHeight(30);
    connect(exitAll, &QPushButton::clicked, this, [this] { closeAll(); });

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(new QLabel(u8(kLabelOffset), this));
    bottom->addWidget(m_offset);
    bottom->addWidget(m_summary, 1);
    bottom->addWidget(refresh);
    bottom->addWidget(exitAll);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_accounts);
    layout->addWidget(m_list, 1);
    layout->addLayout(bottom);

    auto* timer = new QTimer(this);
    timer->setInterval(1000);
    connect(timer, &QTimer::timeout, this, [this] {
        m_core.reprice();
        updatePrices();
    });
    timer->start();
    fillList();
}

void FastExitAllWindow::fillList() {
    m_filling = true;
    m_list->setSortingEnabled(false);
    m_list->DeleteAllItems();
    for (std::size_t i = 0; i < m_core.rows().size(); ++i) {
        std::vector<std::string> cells;
        for (int c = 0; c < kColumns; ++c) cells.push_back(m_core.cell(i, c));
        const int row = m_list->AddItem(cells);
        m_list->SetItemData(row, i + 1);
        if (QTableWidgetItem* item = m_list->item(row, 0)) {
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(m_core.rows()[i].checked ? Qt::Checked : Qt::Unchecked);
        }
    }
    m_summary->setText(u8(m_core.summary()));
    m_filling = false;
}

void FastExitAllWindow::updatePrices() {
    m_filling = true;
    for (int row = 0; row < m_list->rowCount(); ++row) {
        const auto i = m_list->GetItemData(row);
        if (i == 0 || i > m_core.rows().size()) continue;
        m_list->SetItemText(row, kColumns - 1, m_core.cell(i - 1, kColumns - 1));
    }
    m_filling = false;
}

CFastExitAll::Result FastExitAllWindow::closeAll() {
    const CFastExitAll::Result r = m_core.closeChecked();
    fillList();
    if (r == CFastExitAll::Result::Sent) {
        char text[128];
        std::snprintf(text, sizeof text, kExitAllSent, static_cast<int>(m_core.lastOrders().size()));
        m_summary->setText(u8(text));
    } else if (r == CFastExitAll::Result::Cancelled) {
        m_summary->setText(u8(kExitAllCancelled));
    }
    return r;
}

int openFastExitAll() {
    account_ui::showToolWindow(new FastExitAllWindow(CHelmsmanManage::instance(), window_placement::hostWindow()));
    return 1;
}
