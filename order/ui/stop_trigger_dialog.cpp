#include "order/ui/stop_trigger_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
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
QString u8(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<int>(s.size())); }

}  // namespace

StopTriggerDialog::StopTriggerDialog(CHelmsmanManage& manage, const tagOpenedPosition& position,
                                     int side, const std::string& code, QWidget* parent)
    : QDialog(parent), m_core(manage, position, side, code) {
    using namespace order_text;
    setWindowTitle(u8(kStopTriggerCaption));
    const bool buy = m_core.direction() == kDirBuy;
    const int decimals = m_core.priceDecimals();

    // The band: which side is being protected, on which instrument.
    auto* band = new QFrame(this);
    band->setObjectName("sideBand");
    band->setStyleSheet(QStringLiteral("#sideBand { background: %1; } QLabel { color: white; "
                                       "font-size: 16px; font-weight: bold; }")
                            .arg(confirm_ui::directionColor(!buy).name()));
    auto* bandLayout = new QHBoxLayout(band);
    bandLayout->setContentsMargins(12, 6, 12, 6);
    m_side = new QLabel(band);
    m_side->setObjectName("sideLabel");
    m_symbol = new QLabel(QString::fromStdString(m_core.symbolText()), band);
    m_symbol->setObjectName("symbolLabel");
    bandLayout->addWidget(m_side);
    bandLayout->addStretch();
    bandLayout->addWidget(m_symbol);

    m_quote = new QLabel(this);
    m_quote->setObjectName("quoteLabel");
    m_quoteTime = new QLabel(this);
    m_quoteTime->setObjectName("quoteTime");

    const CStopTrigger::Controls& c = m_core.controls();
    const double step = std::pow(10.0, -decimals);
    m_trigger = new QDoubleSpinBox(this);
    m_trigger->setObjectName("triggerPrice");
    m_trigger->setDecimals(decimals);
    m_trigger->setRange(0, 1e9);
    m_trigger->setSingleStep(step);
    m_trigger->setValue(c.triggerPrice);
    m_price = new QDoubleSpinBox(this);
    m_price->setObjectName("execPrice");
    m_price->setDecimals(decimals);
    m_price->setRange(0, 1e9);
    m_price->setSingleStep(step);
    m_price->setSpecialValueText(u8(kExecAtMarket));
    m_price->setValue(c.price);
    m_volume = new QSpinBox(this);
    m_volume->setObjectName("volume");
    m_volume->setRange(0, 1'000'000);
    m_volume->setValue(static_cast<int>(m_core.sideVolume()));
    m_openClose = new QComboBox(this);
    m_openClose->setObjectName("openClose");
    m_openClose->addItem(u8(kOpenCloseClose), kClose);
    m_openClose->addItem(u8(kOpenCloseToday), kCloseToday);
    m_hasExpiry = new QCheckBox(u8(kLabelExpiry), this);
    m_hasExpiry->setObjectName("hasExpiry");
    m_hasExpiry->setChecked(c.hasExpiry);
    m_expiry = new QDateTimeEdit(this);
    m_expiry->setObjectName("expiry");
    m_expiry->setDisplayFormat(u8(kExpiryDisplayFormat));
    m_expiry->setCalendarPopup(true);
    m_expiry->setDateTime(QDateTime::fromSecsSinceEpoch(c.expiry));
    m_expiry->setEnabled(c.hasExpiry);
    connect(m_hasExpiry, &QCheckBox::toggled, m_expiry, &QWidget::setEnabled);
    m_local = new QCheckBox(u8(kCheckLocalTrigger), this);
    m_local->setObjectName("local");
    m_type = new QLabel(this);
    m_type->setObjectName("triggerType");

    auto* form = new QFormLayout;
    form->setContentsMargins(12, 8, 12, 4);
    form->addRow(u8(kLabelQuoteTime), m_quoteTime);
    form->addRow(QString(), m_quote);
    form->addRow(u8(kLabelTriggerPrice), m_trigger);
    form->addRow(u8(kLabelTriggerType), m_type);
    form->addRow(u8(kLabelExecPrice), m_price);
    form->addRow(u8(kLabelVolume), m_volume);
    form->addRow(u8(kLabelOpenClose), m_openClose);
    form->addRow(m_hasExpiry, m_expiry);
    form->addRow(QString(), m_local);

    m_send = new QPushButton(u8(kButtonSendTrigger), this);
    m_send->setObjectName("sendButton");
    m_send->setStyleSheet(confirm_ui::directionButtonStyle(buy));
    m_send->setAutoDefault(false);
    auto* close = new QPushButton(u8(kButtonClose), this);
    close->setAutoDefault(false);
    connect(m_send, &QPushButton::clicked, this, [this] { send(); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(12, 4, 12, 4);
    buttons->addStretch();
    buttons->addWidget(m_send);
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

    connect(m_trigger, &QDoubleSpinBox::valueChanged, this, [this] { showQuote(); });
    m_timer = new QTimer(this);
    m_timer->setInterval(500);
    connect(m_timer, &QTimer::timeout, this, [this] {
        m_core.refresh();
        showQuote();
    });
    m_timer->start();
    showQuote();
}

void StopTriggerDialog::showQuote() {
    using namespace order_text;
    const int d = m_core.priceDecimals();
    const auto& t = m_core.tick();
    m_side->setText(QStringLiteral("%1 %2").arg(u8(m_core.sideText()),
                                                QString::number(m_core.sideVolume(), 'f', 0)));
    auto px = [d](double v) {
        return isPricePresent(v) ? QString::number(v, 'f', d) : u8(kNoValue);
    };
    m_quote->setText(QStringLiteral("%1 %2   %3 %4   %5 %6")
                         .arg(u8(kLabelLast), px(t.dLast), u8(kLabelBid), px(t.dBid),
                              u8(kLabelAsk), px(t.dAsk)));
    m_quoteTime->setText(t.tQuoteTime > 0 ? QDateTime::fromMSecsSinceEpoch(t.tQuoteTime)
                                                .toString(u8(kQuoteTimeFormat))
                                          : u8(kNoValue));
    const double ref = CStopTrigger::referencePrice(t);
    m_type->setText(isPricePresent(ref) && isPricePresent(m_trigger->value())
                        ? u8(codes::triggerTypeText(CStopTrigger::autoType(
                              m_core.direction(), m_trigger->value(), ref)))
                        : u8(kNoValue));
}

void StopTriggerDialog::toCore() {
    CStopTrigger::Controls& c = m_core.controls();
    c.triggerPrice = m_trigger->value();
    c.price = m_price->value();
    c.volumeText = std::to_string(m_volume->value());
    c.openClose = m_openClose->currentData().toInt();
    c.hasExpiry = m_hasExpiry->isChecked();
    c.expiry = m_expiry->dateTime().toSecsSinceEpoch();
    c.local = m_local->isChecked();
}

CStopTrigger::SendResult StopTriggerDialog::send() {
    using namespace order_text;
    toCore();
    const CStopTrigger::SendResult r = m_core.send();
    const tagTriggerOrder& o = m_core.lastOrder();
    const int d = m_core.priceDecimals();
    const std::string vol = number_text::format(o.dVolume);
    const std::string trig = number_text::format(o.dTriggerPrice, d);
    char text[512] = "";
    if (r == CStopTrigger::SendResult::Sent)
        std::snprintf(text, sizeof text, m_core.controls().local ? kStopTriggerLocalSent
                                                                 : kStopTriggerSent,
                      o.strCode.c_str(), vol.c_str(), trig.c_str());
    else if (r == CStopTrigger::SendResult::Failed && !m_core.controls().local)
        std::snprintf(text, sizeof text, kStopTriggerFailed, kStatusNotTaken);
    if (*text) m_status->setText(u8(text));
    showQuote();
    return r;
}

int openStopTrigger(const tagOpenedPosition* position, int side, const char* code) {
    if (!position) return 0;
    auto* w = new StopTriggerDialog(CHelmsmanManage::instance(), *position, side,
                                    code ? std::string(code) : std::string(),
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
