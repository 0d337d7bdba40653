#include "order/ui/trigger_order_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "app/helmsman_manage.h"
#include "host/codes.h"
#include "order/master_dialog.h"
#include "order/normal_order.h"
#include "order/order_strings.h"
#include "order/ui/ticket_widgets.h"

namespace tx = order_text;
using ticket_ui::caption;
using ticket_ui::pointSpin;
using ticket_ui::priceSpin;
using ticket_ui::q;

TriggerOrderPage::TriggerOrderPage(CMasterDialog& master, QWidget* parent)
    : QWidget(parent), m_master(master), m_core(std::make_unique<CTriggerOrder>(master)) {
    setObjectName("triggerPage");
    m_core->readSettings(master.manage().settings());

    m_volume = new QLineEdit(this);
    m_volume->setObjectName("triggerVolume");
    m_volume->setAlignment(Qt::AlignRight);
    auto* validator = new QIntValidator(0, 9'999'999, m_volume);
    validator->setLocale(QLocale::c());
    m_volume->setValidator(validator);
    m_openClose = new QComboBox(this);
    m_openClose->setObjectName("triggerOpenClose");
    for (int f : {kOpen, kClose, kCloseToday}) m_openClose->addItem(q(codes::openCloseText(f)));
    m_trigger = priceSpin(this, "triggerPrice");
    m_hedge = new QComboBox(this);
    m_hedge->setObjectName("triggerHedge");
    for (int f : {kSpeculation, kHedge}) m_hedge->addItem(q(codes::hedgeText(f)));
    m_exec = priceSpin(this, "execPrice");
    m_exec->setSpecialValueText(q(tx::kExecAtMarket));  // 0: at market
    m_type = new QComboBox(this);
    m_type->setObjectName("triggerType");
    for (const char* t : {tx::kTriggerTypeAuto, tx::kTriggerTypeDip, tx::kTriggerTypeChase})
        m_type->addItem(q(t));
    m_useExpiry = new QCheckBox(q(tx::kLabelExpiry), this);
    m_useExpiry->setObjectName("useExpiry");
    m_expiry = new QDateTimeEdit(this);
    m_expiry->setObjectName("expiry");
    m_expiry->setDisplayFormat("yyyy-MM-dd HH:mm:ss");
    m_expiry->setCalendarPopup(true);
    m_stopLoss = new QCheckBox(q(tx::kCheckStopLoss), this);
    m_stopLoss->setObjectName("triggerStopLoss");
    m_stopPrice = priceSpin(this, "triggerStopPrice");
    m_stopAuto = new QPushButton(q(tx::kButtonAuto), this);
    m_stopAuto->setObjectName("triggerStopAuto");
    m_stopPoints = pointSpin(this, "triggerStopPoints");
    m_takeProfit = new QCheckBox(q(tx::kCheckTakeProfit), this);
    m_takeProfit->setObjectName("triggerTakeProfit");
    m_profitPrice = priceSpin(this, "triggerProfitPrice");
    m_profitAuto = new QPushButton(q(tx::kButtonAuto), this);
    m_profitAuto->setObjectName("triggerProfitAuto");
    m_profitPoints = pointSpin(this, "triggerProfitPoints");
    m_local = new QCheckBox(q(tx::kCheckLocalTrigger), this);
    m_local->setObjectName("localTrigger");
    m_algo = new QCheckBox(q(tx::kCheckAlgoTrigger), this);
    m_algo->setObjectName("algoTrigger");
    m_buy = new QPushButton(q(tx::kButtonBuy), this);
    m_buy->setObjectName("triggerBuy");
    m_sell = new QPushButton(q(tx::kButtonSell), this);
    m_sell->setObjectName("triggerSell");
    m_status = new QLabel(this);
    m_status->setObjectName("triggerStatus");
    m_status->setWordWrap(true);
    // The line wraps inside the page's width; it never widens the ticket.
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_status->setMinimumHeight(m_status->fontMetrics().lineSpacing() * 2 + 4);
    m_status->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    for (QPushButton* b : {m_stopAuto, m_profitAuto}) {
        b->setCheckable(true);
        b->setMaximumWidth(48);
        b->setStyleSheet(
            "QPushButton { border: 1px solid palette(mid); border-radius: 3px; padding: 3px 6px;"
            " background: palette(button); color: palette(button-text); }"
            "QPushButton:checked { background: #2f6fc4; color: white; border-color: #1f4f94; }");
    }
    for (QPushButton* b : {m_stopAuto, m_profitAuto, m_buy, m_sell}) {
        b->setAutoDefault(false);
        b->setDefault(false);
    }
    m_buy->setMinimumHeight(36);
    m_sell->setMinimumHeight(36);
    m_buy->setStyleSheet(
        "QPushButton { background: #d23a3a; color: white; font-size: 15px; font-weight: bold;"
        " border: 1px solid #a82828; border-radius: 3px; }"
        "QPushButton:pressed { background: #a82828; }");
    m_sell->setStyleSheet(
        "QPushButton { background: #1f9150; color: white; font-size: 15px; font-weight: bold;"
        " border: 1px solid #16703d; border-radius: 3px; }"
        "QPushButton:pressed { background: #16703d; }");

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(5);
    grid->addWidget(caption(this, tx::kLabelVolume), 0, 0);
    grid->addWidget(m_volume, 0, 1);
    grid->addWidget(caption(this, tx::kLabelOpenClose), 0, 2, Qt::AlignRight);
    grid->addWidget(m_openClose, 0, 3, 1, 2);
    grid->addWidget(caption(this, tx::kLabelTriggerPrice), 1, 0);
    grid->addWidget(m_trigger, 1, 1);
    grid->addWidget(caption(this, tx::kLabelHedge), 1, 2, Qt::AlignRight);
    grid->addWidget(m_hedge, 1, 3, 1, 2);
    grid->addWidget(caption(this, tx::kLabelExecPrice), 2, 0);
    grid->addWidget(m_exec, 2, 1);
    grid->addWidget(caption(this, tx::kLabelTriggerType), 2, 2, Qt::AlignRight);
    grid->addWidget(m_type, 2, 3, 1, 2);
    grid->addWidget(m_useExpiry, 3, 0);
    grid->addWidget(m_expiry, 3, 1, 1, 4);
    grid->addWidget(m_stopLoss, 4, 0);
    grid->addWidget(m_stopPrice, 4, 1);
    grid->addWidget(m_stopAuto, 4, 2);
    grid->addWidget(m_stopPoints, 4, 3);
    grid->addWidget(caption(this, tx::kLabelPoints), 4, 4);
    grid->addWidget(m_takeProfit, 5, 0);
    grid->addWidget(m_profitPrice, 5, 1);
    grid->addWidget(m_profitAuto, 5, 2);
    grid->addWidget(m_profitPoints, 5, 3);
    grid->addWidget(caption(this, tx::kLabelPoints), 5, 4);
    grid->addWidget(m_local, 6, 0, 1, 2);
    grid->addWidget(m_algo, 6, 2, 1, 3);
    grid->setColumnStretch(1, 1);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(10);
    buttons->addWidget(m_buy);
    buttons->addWidget(m_sell);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addLayout(grid);
    layout->addSpacing(4);
    layout->addLayout(buttons);
    layout->addWidget(m_status);
    layout->addStretch(1);

    pull();

    connect(m_volume, &QLineEdit::textChanged, this, &TriggerOrderPage::push);
    for (QDoubleSpinBox* s : {m_trigger, m_exec, m_stopPrice, m_profitPrice})
        connect(s, &QDoubleSpinBox::valueChanged, this, &TriggerOrderPage::push);
    for (QSpinBox* s : {m_stopPoints, m_profitPoints})
        connect(s, &QSpinBox::valueChanged, this, &TriggerOrderPage::push);
    for (QCheckBox* c : {m_useExpiry, m_stopLoss, m_takeProfit, m_local, m_algo})
        connect(c, &QCheckBox::toggled, this, &TriggerOrderPage::push);
    // Switching an automatic price on also checks its box: an automatic price in an
    // unchecked box would do nothing.
    connect(m_stopAuto, &QPushButton::toggled, this, [this](bool on) {
        if (on && !m_refreshing) m_stopLoss->setChecked(true);
        push();
    });
    connect(m_profitAuto, &QPushButton::toggled, this, [this](bool on) {
        if (on && !m_refreshing) m_takeProfit->setChecked(true);
        push();
    });
    for (QComboBox* c : {m_openClose, m_hedge, m_type})
        connect(c, &QComboBox::currentIndexChanged, this, &TriggerOrderPage::push);
    connect(m_expiry, &QDateTimeEdit::dateTimeChanged, this, &TriggerOrderPage::push);
    connect(m_buy, &QPushButton::clicked, this, [this] { send(kDirBuy); });
    connect(m_sell, &QPushButton::clicked, this, [this] { send(kDirSell); });
}

TriggerOrderPage::~TriggerOrderPage() = default;

void TriggerOrderPage::showEvent(QShowEvent* event) {
    pull();  // the ticket's local and algorithm options may have been read since
    QWidget::showEvent(event);
}

void TriggerOrderPage::onCoreChanged(unsigned what) {
    if (what & kTicketSymbol) {
        m_core->onSymbolChanged();
        pull();
    }
    if (what & kTicketPage) refreshStatus();
}

CTriggerOrder::SendResult TriggerOrderPage::send(std::int32_t direction) {
    push();
    const auto r = m_core->send(direction);
    refreshStatus();
    return r;
}

void TriggerOrderPage::pull() {
    m_refreshing = true;
    const CTriggerOrder::Controls& c = m_core->controls();
    const int decimals = m_master.priceDecimals();
    const double step = m_master.pointValue() > 0 ? m_master.pointValue() : 1.0;
    for (QDoubleSpinBox* s : {m_trigger, m_exec, m_stopPrice, m_profitPrice}) {
        s->setDecimals(decimals);
        s->setSingleStep(step);
    }
    m_volume->setText(QString::fromStdString(c.volumeText));
    m_trigger->setValue(c.triggerPrice);
    m_exec->setValue(c.execPrice);
    m_type->setCurrentIndex(c.typeIndex);
    m_openClose->setCurrentIndex(c.openClose);
    m_hedge->setCurrentIndex(c.hedge);
    m_useExpiry->setChecked(c.expiry > 0);
    const std::int64_t shown = c.expiry > 0 ? c.expiry : endOfDay(m_master.manage().clock().now());
    m_expiry->setDateTime(QDateTime::fromSecsSinceEpoch(shown));
    m_expiry->setEnabled(c.expiry > 0);
    m_stopLoss->setChecked(c.stopLoss);
    m_stopPrice->setValue(c.stopLossPrice);
    m_stopAuto->setChecked(c.stopLossAuto);
    m_stopPoints->setValue(c.stopLossPoints);
    m_takeProfit->setChecked(c.takeProfit);
    m_profitPrice->setValue(c.takeProfitPrice);
    m_profitAuto->setChecked(c.takeProfitAuto);
    m_profitPoints->setValue(c.takeProfitPoints);
    m_local->setChecked(m_master.useLocalTrigger());
    m_algo->setChecked(m_master.useAlgoTrigger());
    m_refreshing = false;
}

void TriggerOrderPage::push() {
    if (m_refreshing) return;
    CTriggerOrder::Controls& c = m_core->controls();
    c.volumeText = m_volume->text().toStdString();
    c.triggerPrice = m_trigger->value();
    c.execPrice = m_exec->value();
    c.typeIndex = m_type->currentIndex();
    c.openClose = m_openClose->currentIndex();
    c.hedge = m_hedge->currentIndex();
    c.expiry = m_useExpiry->isChecked() ? m_expiry->dateTime().toSecsSinceEpoch() : 0;
    m_expiry->setEnabled(m_useExpiry->isChecked());
    c.stopLoss = m_stopLoss->isChecked();
    c.stopLossPrice = m_stopPrice->value();
    c.stopLossAuto = m_stopAuto->isChecked();
    c.stopLossPoints = m_stopPoints->value();
    c.takeProfit = m_takeProfit->isChecked();
    c.takeProfitPrice = m_profitPrice->value();
    c.takeProfitAuto = m_profitAuto->isChecked();
    c.takeProfitPoints = m_profitPoints->value();
    m_master.setUseLocalTrigger(m_local->isChecked());
    m_master.setUseAlgoTrigger(m_algo->isChecked());
    // An automatic price is computed when sending; the box shows it is not typed.
    m_stopPrice->setEnabled(!c.stopLossAuto);
    m_profitPrice->setEnabled(!c.takeProfitAuto);
}

void TriggerOrderPage::refreshStatus() {
    m_status->setText(QString::fromStdString(m_core->statusText()));
    m_status->setStyleSheet(m_core->statusIsError() ? "color: #c8282e; font-weight: bold;"
                                                    : "color: #1f6f3f;");
}
