#include "order/ui/trigger_modify_page.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "app/helmsman_manage.h"
#include "host/clock.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "host/ui/sort_list_ctrl.h"
#include "order/confirm_dialog.h"
#include "order/master_dialog.h"
#include "order/order_strings.h"
#include "order/ui/ticket_widgets.h"

namespace tx = order_text;
using ticket_ui::caption;
using ticket_ui::priceSpin;
using ticket_ui::q;

TriggerModifyPage::TriggerModifyPage(CMasterDialog& master, QWidget* parent)
    : QWidget(parent), m_master(master), m_core(std::make_unique<CTriggerModifyOrder>(master)) {
    setObjectName("triggerModifyPage");

    m_list = new CSortListCtrl(this);
    m_list->setObjectName("triggerList");
    m_list->SetHeadings(tx::kTriggerListColumns);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setMinimumHeight(96);
    m_list->setMaximumWidth(430);
    m_list->LoadColumnInfo(master.manage().userDir(), "TriggerModify");

    m_box = new QGroupBox(this);
    m_box->setObjectName("triggerBox");
    m_summary = new QLabel(m_box);
    m_summary->setObjectName("triggerSummary");
    // Three lines at most (account, order, the two protective prices): room for all of them,
    // so choosing an order never resizes the ticket.
    m_summary->setMinimumHeight(m_summary->fontMetrics().lineSpacing() * 3 + 10);
    m_summary->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_volume = priceSpin(m_box, "modifyVolume");
    m_volume->setDecimals(0);
    m_trigger = priceSpin(m_box, "modifyTrigger");
    m_exec = priceSpin(m_box, "modifyExec");
    m_exec->setSpecialValueText(q(tx::kExecAtMarket));
    m_stop = priceSpin(m_box, "modifyStop");
    m_profit = priceSpin(m_box, "modifyProfit");
    for (QDoubleSpinBox* s : {m_stop, m_profit}) s->setSpecialValueText(q(tx::kNoValue));
    m_useExpiry = new QCheckBox(q(tx::kLabelExpiry), m_box);
    m_useExpiry->setObjectName("modifyUseExpiry");
    m_expiry = new QDateTimeEdit(m_box);
    m_expiry->setObjectName("modifyExpiry");
    m_expiry->setDisplayFormat("yyyy-MM-dd HH:mm:ss");
    m_expiry->setCalendarPopup(true);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(4);
    grid->addWidget(caption(m_box, tx::kLabelVolume), 1, 0);
    grid->addWidget(m_volume, 1, 1);
    grid->addWidget(caption(m_box, tx::kLabelTriggerPrice), 1, 2);
    grid->addWidget(m_trigger, 1, 3);
    grid->addWidget(caption(m_box, tx::kLabelExecPrice), 2, 0);
    grid->addWidget(m_exec, 2, 1);
    grid->addWidget(caption(m_box, tx::kCheckStopLoss), 2, 2);
    grid->addWidget(m_stop, 2, 3);
    grid->addWidget(caption(m_box, tx::kCheckTakeProfit), 3, 2);
    grid->addWidget(m_profit, 3, 3);
    grid->addWidget(m_useExpiry, 4, 0);
    grid->addWidget(m_expiry, 4, 1, 1, 3);
    auto* boxLayout = new QVBoxLayout(m_box);
    boxLayout->addWidget(m_summary);
    boxLayout->addLayout(grid);

    m_modify = new QPushButton(q(tx::kButtonModifyTrigger), this);
    m_modify->setObjectName("modifyTrigger");
    m_delete = new QPushButton(q(tx::kButtonDelete), this);
    m_delete->setObjectName("deleteTrigger");
    m_refresh = new QPushButton(q(tx::kButtonRefresh), this);
    m_refresh->setObjectName("refreshTriggers");
    for (QPushButton* b : {m_modify, m_delete, m_refresh}) {
        b->setAutoDefault(false);
        b->setDefault(false);
    }
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_refresh);
    buttons->addStretch(1);
    buttons->addWidget(m_modify);
    buttons->addWidget(m_delete);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_box);
    layout->addLayout(buttons);

    m_core->setListener([this] { redraw(); });
    connect(m_list, &QTableWidget::itemSelectionChanged, this, [this] {
        if (m_refreshing) return;
        const auto rows = m_list->selectionModel()->selectedRows();
        const int row =
            rows.isEmpty() ? -1 : static_cast<int>(m_list->GetItemData(rows[0].row())) - 1;
        m_core->select(row);
    });
    for (QDoubleSpinBox* s : {m_volume, m_trigger, m_exec, m_stop, m_profit})
        connect(s, &QDoubleSpinBox::valueChanged, this, &TriggerModifyPage::push);
    connect(m_useExpiry, &QCheckBox::toggled, this, &TriggerModifyPage::push);
    connect(m_expiry, &QDateTimeEdit::dateTimeChanged, this, &TriggerModifyPage::push);
    connect(m_modify, &QPushButton::clicked, this, [this] {
        push();
        m_core->modify();
    });
    connect(m_delete, &QPushButton::clicked, this, [this] { m_core->remove(); });
    connect(m_refresh, &QPushButton::clicked, this, [this] { m_core->refresh(); });
    // The host tells of a trigger's release (an order follows), not of its expiry: while
    // the page is shown the list is read again every few seconds as well.
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this] {
        if (isVisible()) m_core->refresh();
    });
    timer->start(kRefreshMs);
    m_core->refresh();
}

TriggerModifyPage::~TriggerModifyPage() {
    m_core->setListener(nullptr);
}

void TriggerModifyPage::onCoreChanged(unsigned what) {
    if (what & kTicketAccounts) m_core->refresh();
}

void TriggerModifyPage::redraw() {
    m_refreshing = true;
    const auto& orders = m_core->orders();
    const int decimals = m_master.priceDecimals();
    const auto px = [&](double p) {
        return isPricePresent(p) ? confirm_fmt::price(p, decimals) : std::string(tx::kNoValue);
    };
    m_list->setSortingEnabled(false);
    m_list->DeleteAllItems();
    for (std::size_t i = 0; i < orders.size(); ++i) {
        const tagTriggerOrder& t = orders[i];
        const int row = m_list->AddItem(
            {t.strOrderID, t.strCode, std::string(codes::directionText(t.nDirection)),
             std::string(codes::openCloseText(t.nOpenClose)), number_text::format(t.dVolume),
             // A stop/profit order has no trigger of its own: its type means nothing.
             isStopProfitOrder(t) ? std::string(tx::kNoValue)
                                  : std::string(codes::triggerTypeText(t.nTriggerType)),
             px(t.dTriggerPrice),
             isPricePresent(t.dPrice) ? px(t.dPrice) : std::string(tx::kExecAtMarket),
             px(t.dStopLoss), px(t.dTakeProfit),
             t.tExpiry > 0 ? formatDateTime(t.tExpiry) : std::string(tx::kNoValue)});
        m_list->SetItemData(row, i + 1);
    }
    const int chosen = m_core->selected();
    if (chosen >= 0)
        m_list->selectRow(m_list->FindItemData(static_cast<std::uint64_t>(chosen) + 1));

    const tagTriggerOrder* t = m_core->selectedOrder();
    m_box->setEnabled(t != nullptr);
    m_modify->setEnabled(t != nullptr);
    m_delete->setEnabled(t != nullptr);
    m_box->setTitle(t ? q(CTriggerModifyOrder::title(*t)) : QString());
    // One line per piece, the two protective prices side by side.
    QString text;
    if (t) {
        const auto lines = CTriggerModifyOrder::summary(*t, decimals);
        for (std::size_t i = 0; i < lines.size(); ++i)
            text += q(lines[i]) + (i + 2 == lines.size() ? "  " : "\n");
    }
    m_summary->setText(text.trimmed());
    // The edit boxes are loaded when another order is chosen, never while the trader is
    // editing the one shown: the list is redrawn on every order notice.
    const std::string shownId = t ? t->strOrderID : std::string();
    if (shownId == m_shownId && t) {
        m_refreshing = false;
        return;
    }
    m_shownId = shownId;
    const CTriggerModifyOrder::Edit& e = m_core->edit();
    for (QDoubleSpinBox* s : {m_trigger, m_exec, m_stop, m_profit}) {
        s->setDecimals(decimals);
        if (m_master.pointValue() > 0) s->setSingleStep(m_master.pointValue());
    }
    m_volume->setValue(e.volume);
    m_trigger->setValue(e.triggerPrice);
    m_exec->setValue(e.execPrice);
    m_stop->setValue(e.stopLoss);
    m_profit->setValue(e.takeProfit);
    m_useExpiry->setChecked(e.expiry > 0);
    m_expiry->setEnabled(e.expiry > 0);
    const std::int64_t shown = e.expiry > 0 ? e.expiry : endOfDay(m_master.manage().clock().now());
    m_expiry->setDateTime(QDateTime::fromSecsSinceEpoch(shown));
    m_refreshing = false;
}

void TriggerModifyPage::push() {
    if (m_refreshing) return;
    CTriggerModifyOrder::Edit& e = m_core->edit();
    e.volume = m_volume->value();
    e.triggerPrice = m_trigger->value();
    e.execPrice = m_exec->value();
    e.stopLoss = m_stop->value();
    e.takeProfit = m_profit->value();
    e.expiry = m_useExpiry->isChecked() ? m_expiry->dateTime().toSecsSinceEpoch() : 0;
    m_expiry->setEnabled(m_useExpiry->isChecked());
}
