// The order ticket's pages: the immediate page ("即时执行") with its controls, layout, keyboard
// path and bindings to the core. The trigger tabs are pages of their own (trigger_order_page,
// trigger_modify_page).
#include <QCheckBox>
#include <QComboBox>
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
#include "order/order_strings.h"
#include "order/ui/order_ticket_window.h"
#include "order/ui/ticket_widgets.h"

namespace tx = order_text;
using ticket_ui::caption;
using ticket_ui::pointSpin;
using ticket_ui::priceSpin;
using ticket_ui::q;

QWidget* OrderTicketWindow::buildImmediatePage() {
    auto* page = new QWidget(this);
    page->setObjectName("immediatePage");

    m_volume = new QLineEdit(page);
    m_volume->setObjectName("volume");
    m_volume->setAlignment(Qt::AlignRight);
    // Whole lots only: a fraction cannot be typed (the core refuses one from elsewhere).
    auto* volumeValidator = new QIntValidator(0, 9'999'999, m_volume);
    volumeValidator->setLocale(QLocale::c());
    m_volume->setValidator(volumeValidator);
    m_openClose = new QComboBox(page);
    m_openClose->setObjectName("openClose");
    for (int f : {kOpen, kClose, kCloseToday}) m_openClose->addItem(q(codes::openCloseText(f)));
    m_price = priceSpin(page, "price");
    m_hedge = new QComboBox(page);
    m_hedge->setObjectName("hedge");
    for (int f : {kSpeculation, kHedge}) m_hedge->addItem(q(codes::hedgeText(f)));
    m_useBidAsk = new QCheckBox(q(tx::kCheckBidAsk), page);
    m_useBidAsk->setObjectName("useBidAsk");
    m_useOffset = new QCheckBox(q(tx::kCheckOffset), page);
    m_useOffset->setObjectName("useOffset");
    m_offset = pointSpin(page, "offsetPoints");
    m_stopLoss = new QCheckBox(q(tx::kCheckStopLoss), page);
    m_stopLoss->setObjectName("stopLoss");
    m_stopPrice = priceSpin(page, "stopLossPrice");
    m_stopAuto = new QPushButton(q(tx::kButtonAuto), page);
    m_stopAuto->setObjectName("stopLossAuto");
    m_stopPoints = pointSpin(page, "stopLossPoints");
    m_takeProfit = new QCheckBox(q(tx::kCheckTakeProfit), page);
    m_takeProfit->setObjectName("takeProfit");
    m_profitPrice = priceSpin(page, "takeProfitPrice");
    m_profitAuto = new QPushButton(q(tx::kButtonAuto), page);
    m_profitAuto->setObjectName("takeProfitAuto");
    m_profitPoints = pointSpin(page, "takeProfitPoints");
    m_algo = new QCheckBox(q(tx::kCheckAlgo), page);
    m_algo->setObjectName("algo");
    m_algoSettings = new QPushButton(q(tx::kButtonAlgoSettings), page);
    m_algoSettings->setObjectName("algoSettings");
    m_buy = new QPushButton(q(tx::kButtonBuy), page);
    m_buy->setObjectName("buy");
    m_sell = new QPushButton(q(tx::kButtonSell), page);
    m_sell->setObjectName("sell");

    for (QPushButton* b : {m_stopAuto, m_profitAuto}) {
        b->setCheckable(true);
        b->setMaximumWidth(48);
        // Down must read as on at a glance: a filled button, not a shade darker.
        b->setStyleSheet(
            "QPushButton { border: 1px solid palette(mid); border-radius: 3px; padding: 3px 6px;"
            " background: palette(button); color: palette(button-text); }"
            "QPushButton:checked { background: #2f6fc4; color: white; border-color: #1f4f94; }"
            "QPushButton:disabled { color: palette(mid); }"
            "QPushButton:focus { border-color: palette(highlight); }");
    }
    // No button is ever the dialog's default: Enter must not send an order.
    for (QPushButton* b : {m_stopAuto, m_profitAuto, m_algoSettings, m_buy, m_sell}) {
        b->setAutoDefault(false);
        b->setDefault(false);
    }
    m_buy->setMinimumHeight(40);
    m_sell->setMinimumHeight(40);
    m_buy->setStyleSheet(
        "QPushButton { background: #d23a3a; color: white; font-size: 15px; font-weight: bold;"
        " border: 1px solid #a82828; border-radius: 3px; }"
        "QPushButton:focus { border: 2px solid #202020; }"
        "QPushButton:pressed { background: #a82828; }");
    m_sell->setStyleSheet(
        "QPushButton { background: #1f9150; color: white; font-size: 15px; font-weight: bold;"
        " border: 1px solid #16703d; border-radius: 3px; }"
        "QPushButton:focus { border: 2px solid #202020; }"
        "QPushButton:pressed { background: #16703d; }");

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(5);
    grid->addWidget(caption(page, tx::kLabelVolume), 0, 0);
    grid->addWidget(m_volume, 0, 1);
    grid->addWidget(caption(page, tx::kLabelOpenClose), 0, 2, Qt::AlignRight);
    grid->addWidget(m_openClose, 0, 3, 1, 2);
    grid->addWidget(caption(page, tx::kLabelPrice), 1, 0);
    grid->addWidget(m_price, 1, 1);
    grid->addWidget(caption(page, tx::kLabelHedge), 1, 2, Qt::AlignRight);
    grid->addWidget(m_hedge, 1, 3, 1, 2);
    grid->addWidget(m_useBidAsk, 2, 0, 1, 2);
    grid->addWidget(m_useOffset, 2, 2);
    grid->addWidget(m_offset, 2, 3);
    grid->addWidget(caption(page, tx::kLabelPoints), 2, 4);
    grid->addWidget(m_stopLoss, 3, 0);
    grid->addWidget(m_stopPrice, 3, 1);
    grid->addWidget(m_stopAuto, 3, 2);
    grid->addWidget(m_stopPoints, 3, 3);
    grid->addWidget(caption(page, tx::kLabelPoints), 3, 4);
    grid->addWidget(m_takeProfit, 4, 0);
    grid->addWidget(m_profitPrice, 4, 1);
    grid->addWidget(m_profitAuto, 4, 2);
    grid->addWidget(m_profitPoints, 4, 3);
    grid->addWidget(caption(page, tx::kLabelPoints), 4, 4);
    grid->addWidget(m_algo, 5, 0, 1, 2);
    grid->addWidget(m_algoSettings, 5, 2, 1, 3);
    grid->setColumnStretch(1, 1);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(10);
    buttons->addWidget(m_buy);
    buttons->addWidget(m_sell);

    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addLayout(grid);
    layout->addSpacing(4);
    layout->addLayout(buttons);

    // Keyboard path, top to bottom.
    QWidget* order[] = {m_account,     m_exchange,   m_symbol,       m_volume,     m_openClose,
                        m_price,       m_hedge,      m_useBidAsk,    m_useOffset,  m_offset,
                        m_stopLoss,    m_stopPrice,  m_stopAuto,     m_stopPoints, m_takeProfit,
                        m_profitPrice, m_profitAuto, m_profitPoints, m_algo,       m_buy,
                        m_sell};
    for (std::size_t i = 0; i + 1 < std::size(order); ++i)
        QWidget::setTabOrder(order[i], order[i + 1]);

    // Every edit goes straight into the core's controls.
    connect(m_volume, &QLineEdit::textChanged, this, &OrderTicketWindow::pushPage);
    for (QDoubleSpinBox* s : {m_price, m_stopPrice, m_profitPrice})
        connect(s, &QDoubleSpinBox::valueChanged, this, &OrderTicketWindow::pushPage);
    for (QSpinBox* s : {m_offset, m_stopPoints, m_profitPoints})
        connect(s, &QSpinBox::valueChanged, this, &OrderTicketWindow::pushPage);
    for (QCheckBox* c : {m_useBidAsk, m_useOffset, m_stopLoss, m_takeProfit, m_algo})
        connect(c, &QCheckBox::toggled, this, &OrderTicketWindow::pushPage);
    for (QComboBox* c : {m_openClose, m_hedge})
        connect(c, &QComboBox::currentIndexChanged, this, &OrderTicketWindow::pushPage);
    connect(m_stopAuto, &QPushButton::clicked, this,
            [this] { m_core->normalOrder().toggleAutoStopLoss(); });
    connect(m_profitAuto, &QPushButton::clicked, this,
            [this] { m_core->normalOrder().toggleAutoTakeProfit(); });
    // The ticket's own algorithm block, edited in the algo settings dialog.
    connect(m_algoSettings, &QPushButton::clicked, this,
            [this] { m_manage.editAlgoSetting(m_core->algoSetting()); });
    connect(m_buy, &QPushButton::clicked, this, [this] { send(kDirBuy); });
    connect(m_sell, &QPushButton::clicked, this, [this] { send(kDirSell); });
    return page;
}
