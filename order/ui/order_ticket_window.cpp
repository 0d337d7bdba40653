#include "order/ui/order_ticket_window.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/exports.h"
#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/codes.h"
#include "order/order_strings.h"
#include "order/ui/hotkey_dialog.h"
#include "order/ui/tick_chart.h"
#include "order/ui/ticket_widgets.h"
#include "order/ui/trigger_modify_page.h"
#include "order/ui/trigger_order_page.h"

namespace tx = order_text;
using ticket_ui::caption;
using ticket_ui::q;

namespace {

constexpr int kPositionRefreshMs = 1000;

// Chinese convention: above the previous settlement red, below it green; readable on the
// light and on the dark palette alike. Colours go through style sheets, which win over any
// palette the host's own style sheet imposes.
const char* const kRiseCss = "color: #e0383e;";
const char* const kFallCss = "color: #1fa35a;";

QLabel* valueLabel(QWidget* parent, const char* name, bool bold = true) {
    auto* l = new QLabel(q(tx::kNoValue), parent);
    l->setObjectName(name);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setMinimumWidth(64);
    QFont f = l->font();
    f.setBold(bold);
    l->setFont(f);
    l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return l;
}

// Colours a price by where it stands against the reference; restyles only on a change.
void setTrend(QLabel* l, double price, double reference) {
    const int trend = !isPricePresent(price) || !isPricePresent(reference) ? 0
                      : price > reference + kPriceEpsilon                  ? 1
                      : price < reference - kPriceEpsilon                  ? -1
                                                                           : 0;
    const QVariant old = l->property("trend");
    if (old.isValid() && old.toInt() == trend) return;
    l->setProperty("trend", trend);
    l->setStyleSheet(trend > 0 ? kRiseCss : trend < 0 ? kFallCss : "");
}

}  // namespace

OrderTicketWindow::OrderTicketWindow(CHelmsmanManage& manage, QWidget* parent)
    : QDialog(parent), m_manage(manage), m_core(std::make_unique<CMasterDialog>(manage)) {
    setObjectName("orderTicket");
    setWindowTitle(q(tx::kTicketCaption));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMinimizeButtonHint, true);
    setModal(false);

    buildFrame();
    m_hotkeys = loadHotkeys(m_manage.profilePath());
    setHotkeys(m_hotkeys);

    m_core->setListener([this](unsigned what) { onCoreChanged(what); });

    // Fills change position and funds without telling the ticket; read them now and then.
    m_positionTimer = new QTimer(this);
    m_positionTimer->setInterval(kPositionRefreshMs);
    connect(m_positionTimer, &QTimer::timeout, this, [this] {
        if (!m_core->closed()) m_core->refreshPosition();
    });
    m_positionTimer->start();
}

OrderTicketWindow::~OrderTicketWindow() {
    m_core->setListener(nullptr);
    // The trigger pages hold the core: they go first.
    delete m_triggerPage;
    delete m_modifyPage;
    m_core.reset();
}

// ---- Layout ------------------------------------------------------------------------------

void OrderTicketWindow::buildFrame() {
    // Tool buttons: short labels, the menu texts as tool tips; the same actions in the menu.
    m_actChart = new QAction(q(tx::kMenuChart), this);
    m_actChart->setIconText(q(tx::kToolChart));
    m_actChart->setCheckable(true);
    m_actAutoStop = new QAction(q(tx::kMenuAutoStopLoss), this);
    m_actAutoStop->setIconText(q(tx::kToolAutoStopLoss));
    m_actAutoStop->setCheckable(true);
    m_actAutoProfit = new QAction(q(tx::kMenuAutoTakeProfit), this);
    m_actAutoProfit->setIconText(q(tx::kToolAutoTakeProfit));
    m_actAutoProfit->setCheckable(true);
    m_actHotkeys = new QAction(q(tx::kMenuHotkeys), this);
    m_actHotkeys->setIconText(q(tx::kToolHotkeys));
    for (QAction* a : {m_actChart, m_actAutoStop, m_actAutoProfit, m_actHotkeys})
        a->setToolTip(a->text());
    connect(m_actChart, &QAction::triggered, this, [this](bool on) { m_core->setChartShown(on); });
    connect(m_actAutoStop, &QAction::triggered, this,
            [this] { m_core->normalOrder().toggleAutoStopLoss(); });
    connect(m_actAutoProfit, &QAction::triggered, this,
            [this] { m_core->normalOrder().toggleAutoTakeProfit(); });
    connect(m_actHotkeys, &QAction::triggered, this, &OrderTicketWindow::editHotkeys);

    m_account = new QComboBox(this);
    m_account->setObjectName("account");
    m_account->setMinimumWidth(150);
    m_exchange = new QComboBox(this);
    m_exchange->setObjectName("exchange");
    m_symbol = new QComboBox(this);
    m_symbol->setObjectName("symbol");
    m_symbol->setEditable(true);
    m_symbol->setInsertPolicy(QComboBox::NoInsert);
    m_symbol->setMinimumWidth(110);

    auto* tools = new QHBoxLayout;
    tools->setSpacing(2);
    for (QAction* a : {m_actChart, m_actAutoStop, m_actAutoProfit, m_actHotkeys}) {
        auto* b = new QToolButton(this);
        b->setDefaultAction(a);
        b->setFocusPolicy(Qt::NoFocus);
        b->setAutoRaise(true);
        tools->addWidget(b);
    }
    auto* menuButton = new QToolButton(this);
    menuButton->setObjectName("menuButton");
    menuButton->setText(q(tx::kToolMenu));
    menuButton->setFocusPolicy(Qt::NoFocus);
    menuButton->setAutoRaise(true);
    menuButton->setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(menuButton);
    menu->addActions({m_actChart, m_actAutoStop, m_actAutoProfit});
    menu->addSeparator();
    menu->addAction(m_actHotkeys);
    menuButton->setMenu(menu);
    tools->addStretch(1);
    tools->addWidget(menuButton);

    auto* choose = new QGridLayout;
    choose->setHorizontalSpacing(6);
    choose->addWidget(caption(this, tx::kLabelAccount), 0, 0);
    choose->addWidget(m_account, 0, 1, 1, 3);
    choose->addWidget(caption(this, tx::kLabelExchange), 1, 0);
    choose->addWidget(m_exchange, 1, 1);
    choose->addWidget(caption(this, tx::kLabelSymbol), 1, 2);
    choose->addWidget(m_symbol, 1, 3);
    choose->setColumnStretch(1, 1);
    choose->setColumnStretch(3, 1);

    // Quote block: asks above bids, as a depth ladder reads; rising red, falling green.
    auto* quoteFrame = new QFrame(this);
    quoteFrame->setObjectName("quoteBlock");
    quoteFrame->setFrameShape(QFrame::StyledPanel);
    quoteFrame->setBackgroundRole(QPalette::Base);
    quoteFrame->setAutoFillBackground(true);
    m_last = valueLabel(quoteFrame, "last");
    m_ask = valueLabel(quoteFrame, "ask");
    m_askVol = valueLabel(quoteFrame, "askVol", false);
    m_bid = valueLabel(quoteFrame, "bid");
    m_bidVol = valueLabel(quoteFrame, "bidVol", false);
    m_upper = valueLabel(quoteFrame, "upper");
    m_lower = valueLabel(quoteFrame, "lower");
    for (QLabel* v : {m_askVol, m_bidVol}) v->setMinimumWidth(36);
    // The limits always read as the band's two ends.
    m_upper->setStyleSheet(kRiseCss);
    m_lower->setStyleSheet(kFallCss);
    auto* quote = new QGridLayout(quoteFrame);
    quote->setContentsMargins(8, 4, 8, 4);
    quote->setVerticalSpacing(2);
    quote->addWidget(caption(quoteFrame, tx::kLabelAsk), 0, 0);
    quote->addWidget(m_ask, 0, 1);
    quote->addWidget(m_askVol, 0, 2);
    quote->addWidget(caption(quoteFrame, tx::kLabelUpper), 0, 4);
    quote->addWidget(m_upper, 0, 5);
    quote->addWidget(caption(quoteFrame, tx::kLabelLast), 1, 0);
    quote->addWidget(m_last, 1, 1);
    quote->addWidget(caption(quoteFrame, tx::kLabelBid), 2, 0);
    quote->addWidget(m_bid, 2, 1);
    quote->addWidget(m_bidVol, 2, 2);
    quote->addWidget(caption(quoteFrame, tx::kLabelLower), 2, 4);
    quote->addWidget(m_lower, 2, 5);
    quote->setColumnStretch(3, 1);

    m_position = new QLabel(q(m_core->positionText()), this);
    m_position->setObjectName("position");
    m_openable = new QLabel(q(m_core->openableText()), this);
    m_openable->setObjectName("openable");
    m_closable = new QLabel(q(m_core->closableText()), this);
    m_closable->setObjectName("closable");
    auto* positionRow = new QHBoxLayout;
    positionRow->addWidget(m_position);
    positionRow->addSpacing(10);
    positionRow->addWidget(m_closable);
    positionRow->addStretch(1);
    positionRow->addWidget(m_openable);

    // What became of the last order sent from here; a refusal in red with the host's reason.
    m_status = new QLabel(this);
    m_status->setObjectName("status");
    m_status->setWordWrap(true);
    // The ticket's width is set by its pages; a long reason wraps instead of widening it.
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    m_status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Room for two lines of the bold refusal text: a reason is rarely longer.
    QFont bold = m_status->font();
    bold.setBold(true);
    m_status->setMinimumHeight(QFontMetrics(bold).lineSpacing() * 2 + 14);
    m_status->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_status->setFrameShape(QFrame::StyledPanel);
    m_status->setContentsMargins(4, 2, 4, 2);

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName("tabs");
    m_tabs->addTab(buildImmediatePage(), q(tx::kTabImmediate));
    m_triggerPage = new TriggerOrderPage(*m_core, this);
    m_modifyPage = new TriggerModifyPage(*m_core, this);
    m_tabs->addTab(m_triggerPage, q(tx::kTabTrigger));
    m_tabs->addTab(m_modifyPage, q(tx::kTabModifyTrigger));
    m_tabs->tabBar()->setFocusPolicy(Qt::NoFocus);

    auto* ticket = new QVBoxLayout;
    ticket->setSpacing(6);
    ticket->addLayout(tools);
    ticket->addLayout(choose);
    ticket->addWidget(quoteFrame);
    ticket->addLayout(positionRow);
    ticket->addWidget(m_tabs, 1);
    ticket->addWidget(m_status);

    m_chart = new TickChart(this);
    m_chart->hide();

    auto* root = new QHBoxLayout(this);
    root->setContentsMargins(8, 6, 8, 8);
    root->addLayout(ticket, 0);
    root->addWidget(m_chart, 1);
    root->setSizeConstraint(QLayout::SetFixedSize);

    connect(m_account, qOverload<int>(&QComboBox::activated), this,
            [this](int i) { m_core->selectAccount(i); });
    connect(m_exchange, qOverload<int>(&QComboBox::activated), this, [this](int i) {
        const auto& ex = m_core->exchanges();
        if (i >= 0 && i < static_cast<int>(ex.size())) m_core->selectExchange(ex[i].nExchangeID);
    });
    connect(m_symbol, qOverload<int>(&QComboBox::activated), this,
            [this](int i) { chooseSymbolText(m_symbol->itemText(i)); });
}

// ---- Core to widgets ---------------------------------------------------------------------

void OrderTicketWindow::openTicket(const tagHelmsmanPrefill* prefill) {
    m_core->open(prefill);
    m_volume->setFocus();
    m_volume->selectAll();
}

void OrderTicketWindow::onCoreChanged(unsigned what) {
    if (what & kTicketAccounts) refreshAccounts();
    if (what & kTicketExchanges) refreshExchanges();
    if (what & kTicketSymbol) refreshSymbol();
    if (what & kTicketQuote) refreshQuote();
    if (what & kTicketPosition) refreshPosition();
    if (what & (kTicketPage | kTicketSymbol)) refreshPage();
    if (what & kTicketChart) refreshChart();
    if (what & kTicketStatus) refreshStatus();
    if (m_triggerPage) m_triggerPage->onCoreChanged(what);
    if (m_modifyPage) m_modifyPage->onCoreChanged(what);
}

void OrderTicketWindow::refreshStatus() {
    m_status->setText(QString::fromStdString(m_core->statusText()));
    m_status->setStyleSheet(m_core->statusIsError() ? "color: #c8282e; font-weight: bold;" : "");
}

void OrderTicketWindow::refreshAccounts() {
    QSignalBlocker block(m_account);
    m_account->clear();
    for (const auto& a : m_core->accounts())
        m_account->addItem(QString::fromStdString(CMasterDialog::accountText(a)));
    m_account->setCurrentIndex(m_core->accountIndex());
}

void OrderTicketWindow::refreshExchanges() {
    {
        QSignalBlocker block(m_exchange);
        m_exchange->clear();
        int current = -1;
        const auto& ex = m_core->exchanges();
        for (std::size_t i = 0; i < ex.size(); ++i) {
            m_exchange->addItem(QString::fromStdString(ex[i].strName));
            if (ex[i].nExchangeID == m_core->exchangeId()) current = static_cast<int>(i);
        }
        m_exchange->setCurrentIndex(current);
    }
    QSignalBlocker block(m_symbol);
    m_symbol->clear();
    for (const auto& s : m_core->exchangeSymbols())
        m_symbol->addItem(QString::fromStdString(s.strCode));
    refreshSymbol();
}

void OrderTicketWindow::refreshSymbol() {
    QSignalBlocker block(m_symbol);
    const QString code = QString::fromStdString(m_core->symbolText());
    const int i = m_symbol->findText(code);
    m_symbol->setCurrentIndex(i);
    m_symbol->setEditText(code);
    m_closable->setToolTip(QString::fromStdString(m_core->closableToolTip()));
    if (m_chart->code() != code && !code.isEmpty()) {
        m_chart->setCode(code, m_core->priceDecimals());
        m_chart->addTick(m_manage.clock().nowMs(), m_core->referencePrice());
    }
}

void OrderTicketWindow::refreshQuote() {
    const TicketQuoteTexts& t = m_core->quoteTexts();
    m_last->setText(q(t.last.data()));
    m_bid->setText(q(t.bid.data()));
    m_bidVol->setText(q(t.bidVol.data()));
    m_ask->setText(q(t.ask.data()));
    m_askVol->setText(q(t.askVol.data()));
    m_upper->setText(q(t.upper.data()));
    m_lower->setText(q(t.lower.data()));
    const auto& quoteNow = m_core->tick();
    setTrend(m_last, quoteNow.dLast, quoteNow.dPreSettle);
    setTrend(m_ask, quoteNow.dAsk, quoteNow.dPreSettle);
    setTrend(m_bid, quoteNow.dBid, quoteNow.dPreSettle);
    if (m_core->quoteValid()) {
        const auto& tick = m_core->tick();
        const std::int64_t when = tick.tQuoteTime > 0 ? tick.tQuoteTime : m_manage.clock().nowMs();
        m_chart->addTick(when, tick.dLast);
    }
}

void OrderTicketWindow::refreshPosition() {
    m_position->setText(q(m_core->positionText()));
    m_openable->setText(q(m_core->openableText()));
    const QString closable = q(m_core->closableText());
    if (closable != m_closable->text() || m_closable->toolTip().isEmpty()) {
        m_closable->setText(closable);
        m_closable->setToolTip(QString::fromStdString(m_core->closableToolTip()));
    }
}

void OrderTicketWindow::refreshPage() {
    m_refreshing = true;
    const CNormalOrder::Controls& c = m_core->normalOrder().controls();
    const int decimals = m_core->priceDecimals();
    const double step = m_core->pointValue() > 0 ? m_core->pointValue() : 1.0;
    for (QDoubleSpinBox* s : {m_price, m_stopPrice, m_profitPrice}) {
        QSignalBlocker block(s);
        s->setDecimals(decimals);
        s->setSingleStep(step);
    }
    {
        QSignalBlocker b(m_volume);
        if (m_volume->text() != QString::fromStdString(c.volumeText))
            m_volume->setText(QString::fromStdString(c.volumeText));
    }
    const auto setSpin = [](QDoubleSpinBox* s, double v) {
        QSignalBlocker b(s);
        s->setValue(v);
    };
    setSpin(m_price, c.price);
    setSpin(m_stopPrice, c.stopLossPrice);
    setSpin(m_profitPrice, c.takeProfitPrice);
    const auto setInt = [](QSpinBox* s, int v) {
        QSignalBlocker b(s);
        s->setValue(v);
    };
    setInt(m_offset, static_cast<int>(c.offsetPoints));
    setInt(m_stopPoints, c.stopLossPoints);
    setInt(m_profitPoints, c.takeProfitPoints);
    const auto setCheck = [](QAbstractButton* b, bool on) {
        QSignalBlocker bl(b);
        b->setChecked(on);
    };
    setCheck(m_useBidAsk, c.useBidAsk);
    setCheck(m_useOffset, c.useOffset);
    setCheck(m_stopLoss, c.stopLoss);
    setCheck(m_stopAuto, c.stopLossAuto);
    setCheck(m_takeProfit, c.takeProfit);
    setCheck(m_profitAuto, c.takeProfitAuto);
    setCheck(m_algo, c.algo);
    {
        QSignalBlocker b1(m_openClose), b2(m_hedge);
        m_openClose->setCurrentIndex(c.openClose);
        m_hedge->setCurrentIndex(c.hedge == kHedge ? 1 : 0);
    }
    m_actAutoStop->setChecked(c.stopLossAuto);
    m_actAutoProfit->setChecked(c.takeProfitAuto);
    m_refreshing = false;
    updateEnabling();
}

void OrderTicketWindow::refreshChart() {
    const bool on = m_core->chartShown();
    m_actChart->setChecked(on);
    m_chart->setVisible(on);
}

// What the user can type into follows what the core will use; a disabled box is one the
// order ignores.
void OrderTicketWindow::updateEnabling() {
    const CNormalOrder::Controls& c = m_core->normalOrder().controls();
    const bool opening = c.openClose == kOpen;
    m_price->setEnabled(!c.useBidAsk);
    m_useOffset->setEnabled(c.useBidAsk);
    m_offset->setEnabled(c.useBidAsk && c.useOffset);
    m_stopLoss->setEnabled(opening);
    m_takeProfit->setEnabled(opening);
    m_stopPrice->setEnabled(opening && c.stopLoss && !c.stopLossAuto);
    m_stopPoints->setEnabled(opening && c.stopLoss && c.stopLossAuto);
    m_stopAuto->setEnabled(opening);
    m_profitPrice->setEnabled(opening && c.takeProfit && !c.takeProfitAuto);
    m_profitPoints->setEnabled(opening && c.takeProfit && c.takeProfitAuto);
    m_profitAuto->setEnabled(opening);
}

// ---- Widgets to core ---------------------------------------------------------------------

void OrderTicketWindow::pushPage() {
    if (m_refreshing) return;
    CNormalOrder::Controls& c = m_core->normalOrder().controls();
    c.volumeText = m_volume->text().toStdString();
    c.price = m_price->value();
    // An emptied box keeps its last value() behind the scenes; that value must not be sent.
    c.priceEntered = m_price->hasAcceptableInput() && !m_price->cleanText().trimmed().isEmpty();
    c.useBidAsk = m_useBidAsk->isChecked();
    c.useOffset = m_useOffset->isChecked();
    c.offsetPoints = m_offset->value();
    c.openClose = m_openClose->currentIndex() < 0 ? kOpen : m_openClose->currentIndex();
    c.hedge = m_hedge->currentIndex() == 1 ? kHedge : kSpeculation;
    c.stopLoss = m_stopLoss->isChecked();
    c.stopLossPrice = m_stopPrice->value();
    c.stopLossPoints = m_stopPoints->value();
    c.takeProfit = m_takeProfit->isChecked();
    c.takeProfitPrice = m_profitPrice->value();
    c.takeProfitPoints = m_profitPoints->value();
    c.algo = m_algo->isChecked();
    updateEnabling();
}

void OrderTicketWindow::chooseSymbolText(const QString& text) {
    const QString code = text.trimmed();
    if (code.isEmpty()) return;
    if (!m_core->selectCode(code.toStdString())) refreshSymbol();
}

void OrderTicketWindow::send(int direction) {
    pushPage();
    m_core->normalOrder().send(direction);
    m_core->refreshPosition();
}

void OrderTicketWindow::sendHotkey(HotkeyAction action) {
    pushPage();
    m_core->normalOrder().sendHotkey(action);
    m_core->refreshPosition();
}

void OrderTicketWindow::setHotkeys(const HotkeySettings& keys) {
    m_hotkeys = keys;
    for (QShortcut*& s : m_shortcuts) {
        delete s;
        s = nullptr;
    }
    if (!keys.bEnabled) return;
    for (std::size_t i = 0; i < kHotkeyActionCount; ++i) {
        const QKeySequence seq = QKeySequence::fromString(QString::fromStdString(keys.keys[i]),
                                                          QKeySequence::PortableText);
        if (seq.isEmpty()) continue;
        auto* s = new QShortcut(seq, this);
        s->setContext(Qt::WindowShortcut);
        s->setAutoRepeat(false);  // a held key must not fire a stream of orders
        const auto action = static_cast<HotkeyAction>(i);
        connect(s, &QShortcut::activated, this, [this, action] { sendHotkey(action); });
        m_shortcuts[i] = s;
    }
}

void OrderTicketWindow::editHotkeys() {
    HotkeyDialog dialog(m_manage, m_hotkeys, this);
    if (dialog.exec() == QDialog::Accepted) setHotkeys(dialog.result());
}

void OrderTicketWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        // A ticket holds a half-typed order; a stray Esc must not throw it away. It closes
        // by its close box.
        event->accept();
        return;
    }
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // Enter in the symbol box chooses the typed code; anywhere else it moves on.
        if (m_symbol->isAncestorOf(focusWidget()) || focusWidget() == m_symbol)
            chooseSymbolText(m_symbol->currentText());
        focusNextChild();
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

void OrderTicketWindow::done(int r) {
    if (!m_core->closed()) {
        pushPage();
        m_positionTimer->stop();
        m_core->close();
    }
    QDialog::done(r);
}

int openOrderTicket(const tagHelmsmanPrefill* block) {
    // Owned by the host's window: it stays above the host when the host is raised.
    auto* w = new OrderTicketWindow(CHelmsmanManage::instance(), window_placement::hostWindow());
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->openTicket(block);
    w->adjustSize();
    window_placement::placeCentred(w);
    w->show();
    w->raise();
    w->activateWindow();
    return 1;
}
