#include "robots/ui/auto_spread_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/clock.h"
#include "robots/ui/auto_spread_labels.h"
#include "spread/ui/template_menu.h"

namespace {

namespace t = auto_spread_label;

QString q(const char* s) {
    return QString::fromUtf8(s);
}
QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// A leg's price with its step's decimals ("5230.0"); an average off the step (several fills)
// with up to four.
QString legPrice(double v, int decimals) {
    const double scale = std::pow(10.0, decimals);
    if (std::abs(v * scale - std::round(v * scale)) < 1e-6)
        return QString::number(v, 'f', decimals);
    return q(spreadPriceText(v));
}

// What an account item holds besides its "id|broker" key.
constexpr int kNameRole = Qt::UserRole + 1;
constexpr int kTypeRole = Qt::UserRole + 2;

QString accountKey(const std::string& id, const std::string& broker) {
    return q(id) + "|" + q(broker);
}

std::int32_t tagAutoSpreadTemplate::*const kLineFlags[4] = {
    &tagAutoSpreadTemplate::bLongEntry, &tagAutoSpreadTemplate::bLongExit,
    &tagAutoSpreadTemplate::bShortEntry, &tagAutoSpreadTemplate::bShortExit};
double tagAutoSpreadTemplate::*const kLinePrices[4] = {
    &tagAutoSpreadTemplate::dLongEntryPrice, &tagAutoSpreadTemplate::dLongExitPrice,
    &tagAutoSpreadTemplate::dShortEntryPrice, &tagAutoSpreadTemplate::dShortExitPrice};

QString timeOfDay(std::int64_t ms) {
    const std::tm tm = toLocalTm(ms / 1000);
    char buf[16];
    std::snprintf(buf, sizeof buf, "%02d:%02d:%02d", tm.tm_hour, tm.tm_min, tm.tm_sec);
    return q(buf);
}

}  // namespace

AutoSpreadWindow::AutoSpreadWindow(CHelmsmanManage& manager, QWidget* parent)
    : QWidget(parent, Qt::Window), m_manager(manager), m_core(manager) {
    setObjectName("AutoSpreadWindow");
    setAttribute(Qt::WA_DeleteOnClose);

    auto* middle = new QHBoxLayout;
    middle->setSpacing(8);
    middle->addWidget(buildSpread());
    middle->addWidget(buildLines());
    middle->addWidget(buildOrders(), 1);

    m_templateButton = new QPushButton(q(t::kTemplate), this);
    m_start = new QPushButton(q(t::kStart), this);
    m_start->setMinimumWidth(96);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_templateButton);
    buttons->addStretch(1);
    buttons->addWidget(m_start);

    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(8, 8, 8, 8);
    root->setSpacing(6);
    root->addWidget(buildLegs());
    root->addLayout(middle);
    root->addWidget(buildState(), 1);
    root->addLayout(buttons);

    m_menu = new TemplateMenu(m_core.templates(), this);
    m_templateButton->setMenu(m_menu);
    connect(m_menu, &TemplateMenu::templateChanged, this, [this] { showSettings(); });
    connect(m_start, &QPushButton::clicked, this, [this] { startOrPause(); });
    connect(m_update, &QPushButton::clicked, this, [this] { updatePosition(); });
    connect(m_position, &QSpinBox::valueChanged, this, [this] { m_positionEdited = true; });

    fillAccounts();
    connectEdits();
    showSettings();

    m_core.setChanged([this](unsigned what) { onCoreChanged(what); });
    m_timer = new QTimer(this);
    m_timer->setInterval(CAutoSpread::kTimerMs);
    connect(m_timer, &QTimer::timeout, this, [this] {
        m_core.timerPass();
        showState();  // the status line also moves with time (the wait between rounds)
    });
    m_timer->start();
    m_pending = kAutoSpreadChangeState | kAutoSpreadChangeQuote;
    flush();
}

AutoSpreadWindow::~AutoSpreadWindow() {
    m_timer->stop();
    m_core.setChanged({});
}

void AutoSpreadWindow::connectEdits() {
    for (int i = 0; i < CAutoSpread::kLegs; ++i) {
        LegRow& row = m_legs[i];
        connect(row.exchange, &QComboBox::activated, this, [this, i] {
            fillSymbols(i, m_legs[i].exchange->currentData().toInt());
            toCore();
        });
        for (QComboBox* box : {row.account, row.symbol})
            connect(box, &QComboBox::activated, this, [this] { toCore(); });
        connect(row.unit, &QDoubleSpinBox::valueChanged, this, [this] { toCore(); });
        connect(row.lots, &QSpinBox::valueChanged, this, [this] { toCore(); });
    }
    for (const LineRow& line : m_lines) {
        connect(line.on, &QCheckBox::toggled, this, [this] { toCore(); });
        connect(line.price, &QDoubleSpinBox::valueChanged, this, [this] { toCore(); });
    }
    for (QSpinBox* b : {m_everyLots, m_maxLots, m_orderOffset, m_unstayedOffset, m_stay, m_delay,
                        m_gridOffset, m_gridLots})
        connect(b, &QSpinBox::valueChanged, this, [this] { toCore(); });
    for (QAbstractButton* b : std::initializer_list<QAbstractButton*>{
             m_stepTrade, m_stepExit, m_confirm, m_butterfly, m_change})
        connect(b, &QAbstractButton::toggled, this, [this] { toCore(); });
}

void AutoSpreadWindow::fillAccounts() {
    std::vector<tagAccoutInfo> accounts;
    if (CSubscibeManage* host = m_manager.facade()) host->GetAvailableAccounts(accounts);
    int widest = 0;
    for (LegRow& row : m_legs) {
        const QSignalBlocker block(row.account);
        row.account->clear();
        for (const tagAccoutInfo& a : accounts) {
            char text[160];
            std::snprintf(text, sizeof text, t::kAccountFormat, a.strAccountID.c_str(),
                          a.strAccountName.c_str());
            row.account->addItem(q(text), accountKey(a.strAccountID, a.strBrokerID));
            const int at = row.account->count() - 1;
            row.account->setItemData(at, q(a.strAccountName), kNameRole);
            row.account->setItemData(at, a.nAccountType, kTypeRole);
            widest = std::max(widest, row.account->fontMetrics().horizontalAdvance(q(text)));
        }
    }
    // The whole "id(name)" stays readable whatever the style's padding.
    for (LegRow& row : m_legs) row.account->setMinimumWidth(widest + 48);
}

void AutoSpreadWindow::fillSymbols(int leg, int exchangeId) {
    QComboBox* box = m_legs[leg].symbol;
    const QSignalBlocker block(box);
    box->clear();
    box->addItem(QString(), QString());  // no instrument
    std::vector<tagSymbol> symbols;
    if (CSubscibeManage* host = m_manager.facade())
        host->GetExchangeSymbols(exchangeId, symbols, 1);
    for (const tagSymbol& s : symbols) box->addItem(q(s.strCode), q(s.strCode));
}

// ---- Settings ------------------------------------------------------------------------------

tagAutoSpreadTemplate AutoSpreadWindow::collect() const {
    tagAutoSpreadTemplate s = m_core.settings();
    s.strName = m_core.templateName();
    for (int i = 0; i < CAutoSpread::kLegs; ++i) {
        const LegRow& row = m_legs[i];
        tagTemplateAccount& a = s.accounts[i];
        const QStringList key = row.account->currentData().toString().split('|');
        a.strAccountID = key.value(0).toStdString();
        a.strBrokerID = key.value(1).toStdString();
        a.strAccountName = row.account->currentData(kNameRole).toString().toStdString();
        a.strAccountText = row.account->currentText().toStdString();
        const QVariant type = row.account->currentData(kTypeRole);
        if (type.isValid()) a.nAccountType = type.toInt();
        s.legs[i].wExchangeID = static_cast<std::uint16_t>(row.exchange->currentData().toInt());
        s.legs[i].szSymbolCode = row.symbol->currentData().toString().toStdString();
        s.dSpreadUnit[i] = row.unit->value();
        s.nSpreadLots[i] = row.lots->value();
    }
    s.bButterfly = m_butterfly->isChecked() ? 1 : 0;
    s.bChange = m_change->isChecked() ? 1 : 0;
    for (int i = 0; i < 4; ++i) {
        s.*kLineFlags[i] = m_lines[i].on->isChecked() ? 1 : 0;
        s.*kLinePrices[i] = m_lines[i].price->value();
    }
    s.nEveryLots = m_everyLots->value();
    s.nMaxLots = m_maxLots->value();
    s.nOrderOffset = m_orderOffset->value();
    s.nUnstayedOffset = m_unstayedOffset->value();
    s.nStayMilliSeconds = m_stay->value();
    s.nOrderDelaySeconds = m_delay->value();
    s.bStepTrade = m_stepTrade->isChecked() ? 1 : 0;
    s.bStepExit = m_stepExit->isChecked() ? 1 : 0;
    s.nGridOffset = m_gridOffset->value();
    s.nGridLots = m_gridLots->value();
    s.bConfirmOrder = m_confirm->isChecked() ? 1 : 0;
    return s;
}

void AutoSpreadWindow::showSettings() {
    display(m_core.settings());
    // An account chosen for a leg that had none is what the robot holds from now on.
    if (m_defaulted) toCore();
}

void AutoSpreadWindow::display(const tagAutoSpreadTemplate& s) {
    m_showing = true;
    m_defaulted = false;
    for (int i = 0; i < CAutoSpread::kLegs; ++i) {
        const QSignalBlocker b1(m_legs[i].unit), b2(m_legs[i].lots);
        showLeg(i, s.legs[i], s.accounts[i]);
        m_legs[i].unit->setValue(s.dSpreadUnit[i]);
        m_legs[i].lots->setValue(s.nSpreadLots[i]);
    }
    m_butterfly->setChecked(s.bButterfly != 0);
    m_change->setChecked(s.bChange != 0);
    for (int i = 0; i < 4; ++i) {
        m_lines[i].on->setChecked(s.*kLineFlags[i] != 0);
        m_lines[i].price->setValue(s.*kLinePrices[i]);
    }
    m_everyLots->setValue(s.nEveryLots);
    m_maxLots->setValue(s.nMaxLots);
    m_orderOffset->setValue(s.nOrderOffset);
    m_unstayedOffset->setValue(s.nUnstayedOffset);
    m_stay->setValue(s.nStayMilliSeconds);
    m_delay->setValue(s.nOrderDelaySeconds);
    m_stepTrade->setChecked(s.bStepTrade != 0);
    m_stepExit->setChecked(s.bStepExit != 0);
    m_gridOffset->setValue(s.nGridOffset);
    m_gridLots->setValue(s.nGridLots);
    m_confirm->setChecked(s.bConfirmOrder != 0);
    m_showing = false;
    setEditable(!locked());
    showCaption();
}

void AutoSpreadWindow::showLeg(int leg, const tagTemplateLeg& l, const tagTemplateAccount& a) {
    LegRow& row = m_legs[leg];
    const QSignalBlocker b1(row.account), b2(row.exchange), b3(row.symbol);
    int at = row.account->findData(accountKey(a.strAccountID, a.strBrokerID));
    if (at < 0 && !a.strAccountID.empty()) {
        // A saved account that is not logged on stays the leg's choice: a start then says so
        // rather than trading on another account.
        const std::string text = a.strAccountText.empty() ? a.strAccountID : a.strAccountText;
        row.account->addItem(q(text), accountKey(a.strAccountID, a.strBrokerID));
        at = row.account->count() - 1;
        row.account->setItemData(at, q(a.strAccountName), kNameRole);
        row.account->setItemData(at, a.nAccountType, kTypeRole);
    }
    // No saved account: leg A the first, B the second, C the third logged-on account.
    if (at < 0 && row.account->count() > 0) {
        at = std::min(leg, row.account->count() - 1);
        m_defaulted = true;
    }
    row.account->setCurrentIndex(at);

    int ex = row.exchange->findData(static_cast<int>(l.wExchangeID));
    if (ex < 0 && row.exchange->count() > 0) ex = 0;
    row.exchange->setCurrentIndex(ex);
    fillSymbols(leg, row.exchange->currentData().toInt());
    const QString code = q(l.szSymbolCode);
    int sym = row.symbol->findData(code);
    if (sym < 0) {
        // An instrument the exchange no longer lists stays visible as the leg's choice.
        row.symbol->addItem(code, code);
        sym = row.symbol->count() - 1;
    }
    row.symbol->setCurrentIndex(sym);
}

void AutoSpreadWindow::chooseLeg(int leg, const QString& accountId, int exchangeId,
                                 const QString& code) {
    LegRow& row = m_legs[leg];
    for (int i = 0; i < row.account->count(); ++i)
        if (row.account->itemData(i).toString().section('|', 0, 0) == accountId)
            row.account->setCurrentIndex(i);
    row.exchange->setCurrentIndex(row.exchange->findData(exchangeId));
    fillSymbols(leg, exchangeId);
    row.symbol->setCurrentIndex(row.symbol->findData(code));
    toCore();
}

void AutoSpreadWindow::toCore() {
    if (m_showing || locked()) return;
    m_pushing = true;
    const bool taken = m_core.setSettings(collect());
    m_pushing = false;
    if (!taken) display(m_core.settings());
    setEditable(!locked());
    showCaption();
}

bool AutoSpreadWindow::locked() const {
    return m_core.running() || m_core.roundOpen();
}

void AutoSpreadWindow::setEditable(bool on) {
    for (int i = 0; i < CAutoSpread::kLegs; ++i) {
        const LegRow& row = m_legs[i];
        // Leg C belongs to the butterfly alone.
        const bool leg = on && (i < 2 || m_butterfly->isChecked());
        for (QWidget* w : std::initializer_list<QWidget*>{row.account, row.exchange, row.symbol})
            w->setEnabled(leg);
        row.unit->setReadOnly(!on);
        row.lots->setReadOnly(!on);
        if (i == 2) {
            const bool three = m_butterfly->isChecked();
            for (QWidget* w : std::initializer_list<QWidget*>{row.title, row.unit, row.lots,
                                                              row.bid, row.ask, row.state})
                w->setEnabled(three);
        }
    }
    m_butterfly->setEnabled(on);
    // A calendar roll has two legs.
    m_change->setEnabled(on && !m_butterfly->isChecked());
    for (const LineRow& line : m_lines) {
        line.on->setEnabled(on);
        line.price->setReadOnly(!on);
    }
    for (QSpinBox* b : {m_everyLots, m_maxLots, m_orderOffset, m_unstayedOffset, m_stay, m_delay,
                        m_gridOffset, m_gridLots})
        b->setReadOnly(!on);
    for (QCheckBox* b : {m_stepTrade, m_stepExit, m_confirm}) b->setEnabled(on);
    m_templateButton->setEnabled(on);
}

void AutoSpreadWindow::showCaption() {
    const std::string name = m_core.templateName();
    setWindowTitle(q(name.empty() ? m_core.caption() : name + "@" + m_core.caption()));
}

// ---- Commands ------------------------------------------------------------------------------

void AutoSpreadWindow::startOrPause() {
    if (m_core.running()) {
        m_core.pause();
    } else {
        toCore();
        m_core.start();
    }
    m_pending |= kAutoSpreadChangeState;
    flush();
}

void AutoSpreadWindow::updatePosition() {
    m_core.overridePosition(m_position->value());
    m_positionEdited = false;
    m_pending |= kAutoSpreadChangeState;
    flush();
}

void AutoSpreadWindow::closeEvent(QCloseEvent* event) {
    if (!m_core.requestClose()) {
        event->ignore();
        return;
    }
    m_timer->stop();
    event->accept();
}

// ---- Showing -------------------------------------------------------------------------------

void AutoSpreadWindow::onCoreChanged(unsigned what) {
    // The settings the window itself just handed over need no redraw.
    if (m_pushing) what &= ~unsigned(kAutoSpreadChangeSettings);
    if (what == 0) return;
    const bool scheduled = m_pending != 0;
    m_pending |= what;
    if (!scheduled) QTimer::singleShot(0, this, [this] { flush(); });
}

void AutoSpreadWindow::flush() {
    const unsigned what = m_pending;
    m_pending = 0;
    if (what & kAutoSpreadChangeSettings) showSettings();
    if (what & kAutoSpreadChangeState) {
        setEditable(!locked());
        showRounds();
    }
    showQuotes();
    showState();
    showCaption();
}

void AutoSpreadWindow::showQuotes() {
    for (SpreadRow r : {SpreadRow::Ask, SpreadRow::Bid, SpreadRow::Last})
        m_rows[static_cast<int>(r)]->setText(q(spreadRowText(m_core.prices(), r)));
    for (int i = 0; i < CAutoSpread::kLegs; ++i) {
        const bool has = m_core.hasQuote(i);
        const IModuleFutureTrader::ITickEx& tick = m_core.quote(i);
        m_legs[i].bid->setText(has ? legPrice(tick.dBid, m_core.decimals(i)) : QString());
        m_legs[i].ask->setText(has ? legPrice(tick.dAsk, m_core.decimals(i)) : QString());
    }
}

void AutoSpreadWindow::showState() {
    m_start->setText(q(m_core.running() ? t::kPause : t::kStart));
    // The figure follows the robot unless the trader is typing a new one.
    if (!m_positionEdited || !m_position->hasFocus()) {
        const QSignalBlocker block(m_position);
        m_position->setValue(m_core.position());
        m_positionEdited = false;
    }
    m_average->setText(m_core.position() != 0 ? q(spreadPriceText(m_core.averageSpread()))
                                              : QString());
    m_realised->setText(q(spreadPriceText(m_core.realised())));
    m_status->setText(q(m_core.statusText()));
    for (int i = 0; i < CAutoSpread::kLegs; ++i)
        m_legs[i].state->setText(i < m_core.legCount() ? q(m_core.legStatus(i)) : QString());
}

void AutoSpreadWindow::showRounds() {
    const std::vector<AutoSpreadRound>& rounds = m_core.rounds();
    if (rounds.size() == m_roundsShown &&
        m_roundTable->rowCount() == static_cast<int>(rounds.size()))
        return;
    m_roundsShown = rounds.size();
    m_roundTable->setRowCount(static_cast<int>(rounds.size()));
    int row = 0;
    for (auto it = rounds.rbegin(); it != rounds.rend(); ++it, ++row) {
        const AutoSpreadRound& r = *it;
        QStringList cells = {timeOfDay(r.endMs), q(spreadActionText(r.action)),
                             QString::number(r.units)};
        for (int i = 0; i < CAutoSpread::kLegs; ++i)
            cells << (r.fill[i] != 0 ? legPrice(r.fill[i], m_core.decimals(i)) : QString());
        cells << q(spreadPriceText(r.spread));
        for (int c = 0; c < cells.size(); ++c) {
            auto* item = new QTableWidgetItem(cells[c]);
            item->setTextAlignment(c >= 2 ? Qt::AlignRight | Qt::AlignVCenter
                                          : Qt::AlignLeft | Qt::AlignVCenter);
            m_roundTable->setItem(row, c, item);
        }
    }
}

WndHandle openAutoSpread(CHelmsmanManage& manager) {
    auto* w = new AutoSpreadWindow(manager, window_placement::hostWindow());
    manager.registerWindow(w->handle());
    w->adjustSize();
    window_placement::placeCentred(w);
    w->show();
    w->raise();
    w->activateWindow();
    return w->handle();
}
