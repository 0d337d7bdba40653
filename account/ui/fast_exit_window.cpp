#include "account/ui/fast_exit_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "account/account_strings.h"
#include "account/ui/account_widgets.h"
#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/number_text.h"
#include "order/ui/confirm_order_dialog.h"

using namespace account_text;
using account_ui::u8;

FastExitWindow::FastExitWindow(CHelmsmanManage& manage, const tagOpenedPosition* position,
                               const std::string& code, QWidget* parent)
    : QDialog(parent), m_core(manage, position, code) {
    setWindowTitle(u8(kFastExitCaption));
    m_account = new QComboBox(this);
    m_account->setObjectName("account");
    m_account->setMinimumWidth(170);
    m_symbol = new QComboBox(this);
    m_symbol->setObjectName("symbol");
    m_symbol->setMinimumWidth(100);
    m_quote = new QLabel(this);
    m_quote->setObjectName("quote");
    m_position = new QLabel(this);
    m_position->setObjectName("position");

    const FastExitOptions& o = m_core.options();
    m_volume = new QDoubleSpinBox(this);
    m_volume->setObjectName("volume");
    m_volume->setDecimals(0);
    m_volume->setRange(0, number_text::kMaxVolume);
    m_volume->setValue(m_core.volume);
    m_price = new QDoubleSpinBox(this);
    m_price->setObjectName("price");
    m_price->setRange(0, number_text::kMaxPrice);
    m_useTouch = new QCheckBox(u8(kCheckBidAsk), this);
    m_useTouch->setObjectName("useBidAsk");
    m_useTouch->setChecked(o.bUseBidAskPrice != 0);
    m_useOffset = new QCheckBox(u8(kCheckOffset), this);
    m_useOffset->setObjectName("useOffset");
    m_useOffset->setChecked(o.bUserBidAskOffset != 0);
    m_offset = new QSpinBox(this);
    m_offset->setObjectName("offset");
    m_offset->setRange(0, 1000);
    m_offset->setValue(o.nOffsetPoint);
    m_offset->setSuffix(u8(kLabelOffsetUnit));
    m_algo = new QCheckBox(u8(kCheckAlgo), this);
    m_algo->setObjectName("useAlgo");
    m_algo->setChecked(o.bUseAlgoTrading != 0);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(u8(kLabelAccount), this), 0, 0);
    grid->addWidget(m_account, 0, 1);
    grid->addWidget(new QLabel(u8(kLabelSymbol), this), 0, 2);
    grid->addWidget(m_symbol, 0, 3);
    grid->addWidget(m_quote, 1, 0, 1, 4);
    grid->addWidget(m_position, 2, 0, 1, 4);
    grid->addWidget(new QLabel(u8(kLabelVolume), this), 3, 0);
    grid->addWidget(m_volume, 3, 1);
    grid->addWidget(new QLabel(u8(kLabelPrice), this), 3, 2);
    grid->addWidget(m_price, 3, 3);
    auto* options = new QHBoxLayout;
    options->addWidget(m_useTouch);
    options->addWidget(m_useOffset);
    options->addWidget(m_offset);
    options->addWidget(m_algo);
    options->addStretch();
    grid->addLayout(options, 4, 0, 1, 4);

    m_closeLong = new QPushButton(u8(kButtonCloseLong), this);
    m_closeLong->setObjectName("closeLong");
    m_closeLong->setStyleSheet(confirm_ui::directionButtonStyle(false));
    m_closeLong->setAutoDefault(false);
    m_closeLong->setMinimumHeight(34);
    m_closeShort = new QPushButton(u8(kButtonCloseShort), this);
    m_closeShort->setObjectName("closeShort");
    m_closeShort->setStyleSheet(confirm_ui::directionButtonStyle(true));
    m_closeShort->setAutoDefault(false);
    m_closeShort->setMinimumHeight(34);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_closeLong);
    buttons->addWidget(m_closeShort);
    m_status = new QLabel(this);
    m_status->setObjectName("statusLine");
    m_status->setWordWrap(true);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);
    layout->addWidget(m_status);

    fillAccounts();
    // A new account or instrument offers its larger side whole, at its last price.
    auto offerSide = [this] {
        m_volume->setValue(std::max(m_core.position().dLong, m_core.position().dShort));
        m_price->setValue(m_core.tick().dLast);
    };
    connect(m_account, &QComboBox::currentIndexChanged, this, [this, offerSide](int i) {
        if (m_filling) return;
        m_core.selectAccount(i);
        fillSymbols();
        offerSide();
        showState();
    });
    connect(m_symbol, &QComboBox::currentIndexChanged, this, [this, offerSide](int i) {
        if (m_filling || i < 0) return;
        const auto& held = m_core.heldSymbols();
        if (i < static_cast<int>(held.size())) m_core.selectSymbol(held[i]);
        setPriceStep();
        offerSide();
        showState();
    });
    auto optionsChanged = [this] {
        toCore();
        m_core.saveOptions();
        showState();
    };
    for (QCheckBox* b : {m_useTouch, m_useOffset, m_algo}) connect(b, &QCheckBox::toggled, this, optionsChanged);
    connect(m_offset, &QSpinBox::valueChanged, this, optionsChanged);
    connect(m_closeLong, &QPushButton::clicked, this, [this] { closeSide(kDirSell); });
    connect(m_closeShort, &QPushButton::clicked, this, [this] { closeSide(kDirBuy); });
    auto* timer = new QTimer(this);
    timer->setInterval(500);
    connect(timer, &QTimer::timeout, this, [this] {
        m_core.refresh();
        showState();
    });
    timer->start();
    m_core.setWindowName(kFastExitCaption);
    m_price->setValue(m_core.tick().dLast);
    showState();
}

void FastExitWindow::fillAccounts() {
    m_filling = true;
    m_account->clear();
    for (const tagAccoutInfo& a : m_core.accounts()) m_account->addItem(u8(close_plan::accountText(a)));
    m_account->setCurrentIndex(m_core.accountIndex());
    m_filling = false;
    fillSymbols();
}

void FastExitWindow::fillSymbols() {
    m_filling = true;
    m_symbol->clear();
    int current = -1;
    const auto& held = m_core.heldSymbols();
    for (std::size_t i = 0; i < held.size(); ++i) {
        m_symbol->addItem(QString::fromStdString(held[i].strCode));
        if (held[i] == m_core.symbol()) current = static_cast<int>(i);
    }
    if (current < 0 && !m_core.symbol().empty()) {
        m_symbol->addItem(QString::fromStdString(m_core.symbol().strCode));
        current = m_symbol->count() - 1;
    }
    m_symbol->setCurrentIndex(current);
    m_filling = false;
    setPriceStep();
}

void FastExitWindow::setPriceStep() {
    const int d = m_core.priceDecimals();
    m_price->setDecimals(d);
    m_price->setSingleStep(m_core.point() > 0 ? m_core.point() : std::pow(10.0, -d));
}

void FastExitWindow::showState() {
    const auto& t = m_core.tick();
    const int d = m_core.priceDecimals();
    auto px = [d](double v) { return isPricePresent(v) ? QString::number(v, 'f', d) : u8(kNoValue); };
    m_quote->setText(QStringLiteral("%1 %2    %3 %4    %5 %6    %7 %8")
                         .arg(u8(kLabelBid), px(t.dBid), u8(kLabelAsk), px(t.dAsk), u8(kLabelUpper),
                              px(t.dUpperLimit), u8(kLabelLower), px(t.dLowerLimit)));
    m_position->setText(u8(m_core.positionText()));
    m_price->setEnabled(!m_useTouch->isChecked());
    m_useOffset->setEnabled(m_useTouch->isChecked());
    m_offset->setEnabled(m_useTouch->isChecked() && m_useOffset->isChecked());
    m_closeLong->setEnabled(m_core.position().dLong > 0.5);
    m_closeShort->setEnabled(m_core.position().dShort > 0.5);
}

void FastExitWindow::toCore() {
    FastExitOptions& o = m_core.options();
    o.bUseBidAskPrice = m_useTouch->isChecked() ? 1 : 0;
    o.bUserBidAskOffset = m_useOffset->isChecked() ? 1 : 0;
    o.nOffsetPoint = m_offset->value();
    o.bUseAlgoTrading = m_algo->isChecked() ? 1 : 0;
    m_core.volume = m_volume->value();
    m_core.manualPrice = m_price->value();
}

CFastExit::Result FastExitWindow::closeSide(std::int32_t direction) {
    toCore();
    const CFastExit::Result r = m_core.close(direction);
    QStringList lines;
    for (const tagBrokerOrder& o : m_core.lastOrders()) {
        char text[512];
        const std::string vol = number_text::format(o.dVolume);
        const std::string px = number_text::format(o.dPrice, m_core.priceDecimals());
        if (m_core.options().bUseAlgoTrading != 0)
            std::snprintf(text, sizeof text, kStatusToAlgo, o.strCode.c_str(), vol.c_str());
        else if (o.nStatus == kOrderRejected)
            std::snprintf(text, sizeof text, kStatusRefused, o.strCode.c_str(),
                          o.nDirection == kDirBuy ? kButtonCloseShort : kButtonCloseLong,
                          o.strStatusMsg.c_str());
        else
            std::snprintf(text, sizeof text, kStatusSent, o.strCode.c_str(),
                          o.nDirection == kDirBuy ? kButtonCloseShort : kButtonCloseLong,
                          o.nOpenClose == kCloseToday ? kStatusTodayMark : "", vol.c_str(), px.c_str());
        lines << u8(text);
    }
    if (r == CFastExit::Result::Cancelled) lines << u8(kStatusCancelled);
    if (!lines.isEmpty()) m_status->setText(lines.join('\n'));
    fillSymbols();
    showState();
    return r;
}

int openFastExit(const tagOpenedPosition* position, const char* code) {
    auto* w = new FastExitWindow(CHelmsmanManage::instance(), position, code ? std::string(code) : std::string(),
                                 window_placement::hostWindow());
    account_ui::showToolWindow(w);
    return 1;
}
