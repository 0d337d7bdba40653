#include "order/ui/order_modify_dialog.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>
#include <cmath>
#include <cstdio>

#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "order/order_strings.h"
#include "order/ui/confirm_order_dialog.h"

namespace {

QString u8(const char* s) { return QString::fromUtf8(s); }

}  // namespace

OrderModifyDialog::OrderModifyDialog(CHelmsmanManage& manage, const tagBrokerOrder& working,
                                     QWidget* parent)
    : QDialog(parent), m_core(std::make_unique<COrderModify>(manage, working)) {
    using namespace order_text;
    setWindowTitle(u8(kOrderModifyCaption));
    const tagBrokerOrder& o = m_core->original();
    const bool buy = o.nDirection == kDirBuy;
    const int d = m_core->priceDecimals();

    // The band: the order being changed.
    auto* band = new QFrame(this);
    band->setObjectName("orderBand");
    band->setStyleSheet(QStringLiteral("#orderBand { background: %1; } QLabel { color: white; "
                                       "font-size: 14px; font-weight: bold; }")
                            .arg(confirm_ui::directionColor(buy).name()));
    auto* bandLayout = new QHBoxLayout(band);
    bandLayout->setContentsMargins(12, 6, 12, 6);
    char summary[512];
    const std::string action = std::string(codes::openCloseText(o.nOpenClose)) +
                               std::string(codes::directionText(o.nDirection));
    std::snprintf(summary, sizeof summary, kOrderSummaryFormat, o.strOrderID.c_str(),
                  action.c_str(), o.strCode.c_str(), number_text::format(o.dVolume).c_str(),
                  number_text::format(o.dPrice, d).c_str(),
                  number_text::format(o.dFilledVolume).c_str());
    auto* orderLabel = new QLabel(u8(summary), band);
    orderLabel->setObjectName("orderLabel");
    bandLayout->addWidget(orderLabel);

    m_position = new QLabel(this);
    m_position->setObjectName("positionLabel");
    m_sides = new QLabel(this);
    m_sides->setObjectName("sidesLabel");
    m_quote = new QLabel(this);
    m_quote->setObjectName("quoteLabel");

    m_price = new QDoubleSpinBox(this);
    m_price->setObjectName("price");
    m_price->setDecimals(d);
    m_price->setRange(0, 1e9);
    m_price->setSingleStep(std::pow(10.0, -d));
    m_volume = new QSpinBox(this);
    m_volume->setObjectName("volume");
    m_volume->setRange(-1'000'000, 1'000'000);

    auto* form = new QFormLayout;
    form->setContentsMargins(12, 8, 12, 4);
    form->addRow(u8(kLabelPosition), m_position);
    form->addRow(u8(kLabelSides), m_sides);
    form->addRow(QString(), m_quote);
    form->addRow(u8(kLabelNewPrice), m_price);
    form->addRow(u8(kLabelNewVolume), m_volume);

    m_modify = new QPushButton(u8(kButtonModify), this);
    m_modify->setObjectName("modifyButton");
    m_modify->setStyleSheet(confirm_ui::directionButtonStyle(buy));
    m_modify->setAutoDefault(false);
    auto* close = new QPushButton(u8(kButtonClose), this);
    close->setAutoDefault(false);
    connect(m_modify, &QPushButton::clicked, this, [this] { submit(); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(12, 4, 12, 4);
    buttons->addStretch();
    buttons->addWidget(m_modify);
    buttons->addWidget(close);

    m_status = new QLabel(this);
    m_status->setObjectName("statusLine");
    m_status->setWordWrap(true);
    m_status->setContentsMargins(12, 0, 12, 8);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(band);
    layout->addLayout(form);
    layout->addLayout(buttons);
    layout->addWidget(m_status);

    // The controls start from the core's values and go back into it as the trader edits.
    m_price->setValue(m_core->controls().price);
    m_volume->setValue(static_cast<int>(
        number_text::parseLeading(m_core->controls().volumeText).value_or(0)));
    m_core->onChanged = [this] { showState(); };

    m_timer = new QTimer(this);
    m_timer->setInterval(500);
    connect(m_timer, &QTimer::timeout, this, [this] {
        if (m_core->state() == COrderModify::State::Editing) m_core->refresh();
        m_core->poll();
        showState();
    });
    m_timer->start();
    showState();
}

void OrderModifyDialog::showState() {
    using namespace order_text;
    m_position->setText(QString::fromStdString(m_core->positionText()));
    m_sides->setText(QString::fromStdString(m_core->sidesText()));
    const int d = m_core->priceDecimals();
    const auto& t = m_core->tick();
    auto px = [d](double v) {
        return isPricePresent(v) ? QString::number(v, 'f', d) : u8(kNoValue);
    };
    m_quote->setText(QStringLiteral("%1 %2  %3 %4  %5 %6  %7 %8")
                         .arg(u8(kLabelBid), px(t.dBid), u8(kLabelAsk), px(t.dAsk),
                              u8(kLabelUpper), px(t.dUpperLimit), u8(kLabelLower),
                              px(t.dLowerLimit)));
    // Corrections write into the core: show them.
    const QSignalBlocker b1(m_price), b2(m_volume);
    m_price->setValue(m_core->controls().price);
    m_volume->setValue(static_cast<int>(
        number_text::parseLeading(m_core->controls().volumeText).value_or(0)));
    const bool editing = m_core->state() == COrderModify::State::Editing;
    m_price->setEnabled(editing);
    m_volume->setEnabled(editing);
    m_modify->setEnabled(editing);
    m_status->setText(QString::fromStdString(m_core->status()));
}

COrderModify::Result OrderModifyDialog::submit() {
    m_core->controls().price = m_price->value();
    m_core->controls().volumeText = std::to_string(m_volume->value());
    const COrderModify::Result r = m_core->submit();
    showState();
    return r;
}

int openOrderModify(const tagBrokerOrder* order) {
    if (!order || order->strOrderID.empty()) return 0;
    auto* w = new OrderModifyDialog(CHelmsmanManage::instance(), *order,
                                    window_placement::hostWindow());
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->setModal(false);
    w->adjustSize();
    window_placement::placeCentred(w);
    w->show();
    w->raise();
    w->activateWindow();
    return 1;
}
