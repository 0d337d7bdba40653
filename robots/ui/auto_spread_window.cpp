#include "robots/ui/auto_spread_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
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

QSpinBox* countSpin(QWidget* parent, int low, int high) {
    auto* s = new QSpinBox(parent);
    s->setRange(low, high);
    s->setAlignment(Qt::AlignRight);
    return s;
}

// A switch that is down must be seen at a glance, in any theme.
QPushButton* toggle(QWidget* parent, const char* text) {
    auto* b = new QPushButton(q(text), parent);
    b->setCheckable(true);
    b->setStyleSheet(
        "QPushButton:checked{background:#ffd666;color:#202020;border:1px solid #b58900;"
        "border-radius:2px;padding:3px 6px}");
    b->setMinimumWidth(b->fontMetrics().horizontalAdvance(b->text()) + 24);
    return b;
}

// A real shown without trailing zeros (1, 1.6, -12.2): a multiplier or a spread price.
class RealSpin final : public QDoubleSpinBox {
public:
    RealSpin(QWidget* parent, double low, double high, double step) : QDoubleSpinBox(parent) {
        setLocale(QLocale::c());
        setDecimals(4);
        setRange(low, high);
        setSingleStep(step);
        setAlignment(Qt::AlignRight);
    }
    QString textFromValue(double v) const override { return q(spreadPriceText(v)); }
};

QLabel* valueLabel(QWidget* parent, int minChars) {
    auto* l = new QLabel(parent);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setMinimumWidth(l->fontMetrics().horizontalAdvance(QString(minChars, QChar('8'))));
    return l;
}

QString accountKey(const std::string& id, const std::string& broker) {
    return q(id) + "|" + q(broker);
}

// How each of the four lines compares the spread, in the order of m_lines.
constexpr SpreadAction kLineActions[4] = {SpreadAction::LongEntry, SpreadAction::LongExit,
                                          SpreadAction::ShortEntry, SpreadAction::ShortExit};

std::int32_t tagAutoSpreadTemplate::*const kLineFlags[4] = {
    &tagAutoSpreadTemplate::bLongEntry, &tagAutoSpreadTemplate::bLongExit,
    &tagAutoSpreadTemplate::bShortEntry, &tagAutoSpreadTemplate::bShortExit};
double tagAutoSpreadTemplate::*const kLinePrices[4] = {
    &tagAutoSpreadTemplate::dLongEntryPrice, &tagAutoSpreadTemplate::dLongExitPrice,
    &tagAutoSpreadTemplate::dShortEntryPrice, &tagAutoSpreadTemplate::dShortExitPrice};

// A long entry and a short exit buy the spread at its ask when it is low enough; the other
// two sell it at its bid when it is high enough.
const char* comparisonText(SpreadAction a) {
    return spreadSide(a) > 0 ? t::kAtMost : t::kAtLeast;
}

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
    connect(m_timer, &QTimer::timeout, this, [this] { m_core.timerPass(); });
    m_timer->start();
    m_pending = kAutoSpreadChangeState | kAutoSpreadChangeQuote;
    flush();
}

AutoSpreadWindow::~AutoSpreadWindow() {
    m_timer->stop();
    m_core.setChanged({});
}

// ---- Building ------------------------------------------------------------------------------

QWidget* AutoSpreadWindow::buildLegs() {
    auto* box = new QGroupBox(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(4);
    const char* heads[] = {t::kAccount, t::kExchange, t::kSymbol, t::kUnit,
                           t::kLots,    t::kBid,      t::kAsk,    t::kLegState};
    for (int c = 0; c < 8; ++c) {
        auto* head = new QLabel(q(heads[c]), box);
        if (c >= 3 && c <= 6) head->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(head, 0, c + 1);
    }
    const char* titles[] = {t::kLegA, t::kLegB, t::kLegC};
    std::vector<tagExchangeInfo> exchanges;
    if (CSubscibeManage* host = m_manager.facade()) host->GetAllExchanges(exchanges);
    for (int i = 0; i < CAutoSpread::kLegs; ++i) {
        LegRow& row = m_legs[i];
        row.title = new QLabel(q(titles[i]), box);
        row.account = new QComboBox(box);
        row.account->setMinimumContentsLength(14);
        row.exchange = new QComboBox(box);
        for (const tagExchangeInfo& e : exchanges) row.exchange->addItem(q(e.strName), e.nExchangeID);
        row.symbol = new QComboBox(box);
        row.symbol->setMinimumContentsLength(8);
        row.unit = new RealSpin(box, -10000, 10000, 0.1);
        row.lots = countSpin(box, 0, 9999);
        row.bid = valueLabel(box, 9);
        row.ask = valueLabel(box, 9);
        row.state = new QLabel(box);
        row.state->setMinimumWidth(row.state->fontMetrics().horizontalAdvance(QString(14, QChar(0x6C49))));
        const int r = i + 1;
        QWidget* cells[] = {row.title, row.account, row.exchange, row.symbol, row.unit,
                            row.lots,  row.bid,     row.ask,      row.state};
        for (int c = 0; c < 9; ++c) grid->addWidget(cells[c], r, c);
    }
    grid->setColumnStretch(8, 1);

    m_butterfly = toggle(box, t::kButterfly);
    m_change = toggle(box, t::kChange);
    auto* switches = new QHBoxLayout;
    switches->addWidget(m_butterfly);
    switches->addWidget(m_change);
    switches->addStretch(1);
    grid->addLayout(switches, 4, 1, 1, 8);
    return box;
}

QWidget* AutoSpreadWindow::buildSpread() {
    auto* box = new QGroupBox(q(t::kSpreadBox), this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(8, 6, 8, 6);
    const char* titles[] = {t::kRowAsk, t::kRowBid, t::kRowLast};
    // The ask red and the bid green; the last in the theme's own colour.
    const QColor colours[] = {QColor(0xd0, 0x21, 0x21), QColor(0x1a, 0x9a, 0x3a), QColor()};
    for (int r = 0; r < 3; ++r) {
        grid->addWidget(new QLabel(q(titles[r]), box), r, 0);
        QLabel* value = valueLabel(box, 14);
        QFont f = value->font();
        f.setBold(true);
        f.setPointSizeF(f.pointSizeF() * 1.15);
        value->setFont(f);
        if (colours[r].isValid()) {
            QPalette p = value->palette();
            p.setColor(QPalette::WindowText, colours[r]);
            value->setPalette(p);
        }
        grid->addWidget(value, r, 1);
        m_rows[r] = value;
    }
    grid->setRowStretch(3, 1);
    return box;
}

QWidget* AutoSpreadWindow::buildLines() {
    auto* box = new QGroupBox(q(t::kLinesBox), this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(8, 6, 8, 6);
    for (int i = 0; i < 4; ++i) {
        LineRow& line = m_lines[i];
        line.on = new QCheckBox(q(spreadActionText(kLineActions[i])), box);
        line.price = new RealSpin(box, -10000000, 10000000, 1);
        line.price->setMinimumWidth(line.price->fontMetrics().horizontalAdvance("-88888.8888") + 30);
        grid->addWidget(line.on, i, 0);
        grid->addWidget(new QLabel(q(comparisonText(kLineActions[i])), box), i, 1);
        grid->addWidget(line.price, i, 2);
    }
    return box;
}

QWidget* AutoSpreadWindow::buildOrders() {
    auto* box = new QGroupBox(q(t::kOrderBox), this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setVerticalSpacing(4);
    m_everyLots = countSpin(box, 0, 9999);
    m_maxLots = countSpin(box, 0, 99999);
    m_orderOffset = countSpin(box, 0, 999);
    m_unstayedOffset = countSpin(box, 0, 999);
    m_stay = countSpin(box, 0, 600000);
    m_stay->setSingleStep(100);
    m_delay = countSpin(box, 0, 86400);
    m_gridOffset = countSpin(box, 0, 9999);
    m_gridLots = countSpin(box, 0, 9999);
    m_stepTrade = new QCheckBox(q(t::kStepTrade), box);
    m_stepExit = new QCheckBox(q(t::kStepExit), box);
    m_confirm = new QCheckBox(q(t::kConfirmOrder), box);
    const std::pair<const char*, QSpinBox*> cells[] = {
        {t::kEveryLots, m_everyLots},     {t::kMaxLots, m_maxLots},
        {t::kOrderOffset, m_orderOffset}, {t::kUnstayedOffset, m_unstayedOffset},
        {t::kStay, m_stay},               {t::kDelay, m_delay},
        {t::kGridOffset, m_gridOffset},   {t::kGridLots, m_gridLots},
    };
    int i = 0;
    for (const auto& [label, spin] : cells) {
        // The step settings go below their switches.
        const int row = i / 2 + (i >= 6 ? 1 : 0), col = (i % 2) * 2;
        grid->addWidget(new QLabel(q(label), box), row, col);
        grid->addWidget(spin, row, col + 1);
        ++i;
    }
    grid->addWidget(m_stepTrade, 3, 0, 1, 2);
    grid->addWidget(m_stepExit, 3, 2, 1, 2);
    grid->addWidget(m_confirm, 5, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    grid->setColumnMinimumWidth(2, 60);
    return box;
}

QWidget* AutoSpreadWindow::buildState() {
    auto* box = new QGroupBox(q(t::kStateBox), this);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(4);
    m_position = countSpin(box, -99999, 99999);
    m_update = new QPushButton(q(t::kUpdate), box);
    m_average = valueLabel(box, 10);
    m_realised = valueLabel(box, 10);
    auto* figures = new QHBoxLayout;
    figures->addWidget(new QLabel(q(t::kPosition), box));
    figures->addWidget(m_position);
    figures->addWidget(m_update);
    figures->addSpacing(16);
    figures->addWidget(new QLabel(q(t::kAverage), box));
    figures->addWidget(m_average);
    figures->addSpacing(16);
    figures->addWidget(new QLabel(q(t::kRealised), box));
    figures->addWidget(m_realised);
    figures->addStretch(1);
    layout->addLayout(figures);

    m_status = new QLabel(box);
    QFont f = m_status->font();
    f.setBold(true);
    m_status->setFont(f);
    auto* status = new QHBoxLayout;
    status->addWidget(new QLabel(q(t::kStatus), box));
    status->addWidget(m_status, 1);
    layout->addLayout(status);

    m_roundTable = new QTableWidget(0, 7, box);
    QStringList heads;
    for (const char* h : t::kRoundHeads) heads << q(h);
    m_roundTable->setHorizontalHeaderLabels(heads);
    m_roundTable->verticalHeader()->hide();
    m_roundTable->verticalHeader()->setDefaultSectionSize(m_roundTable->fontMetrics().height() + 6);
    m_roundTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_roundTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_roundTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_roundTable->setMinimumHeight(m_roundTable->verticalHeader()->defaultSectionSize() * 5 + 28);
    layout->addWidget(m_roundTable, 1);
    return box;
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
            row.account->setItemData(at, q(a.strAccountName), Qt::UserRole + 1);
            row.account->setItemData(at, a.nAccountType, Qt::UserRole + 2);
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
        a.strAccountName = row.account->currentData(Qt::UserRole + 1).toString().toStdString();
        a.strAccountText = row.account->currentText().toStdString();
        const QVariant type = row.account->currentData(Qt::UserRole + 2);
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
            for (QWidget* w : std::initializer_list<QWidget*>{row.title, row.unit, row.lots, row.bid,
                                                              row.ask, row.state})
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
        m_legs[i].bid->setText(has ? q(spreadPriceText(tick.dBid)) : QString());
        m_legs[i].ask->setText(has ? q(spreadPriceText(tick.dAsk)) : QString());
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
    if (rounds.size() == m_roundsShown && m_roundTable->rowCount() == static_cast<int>(rounds.size()))
        return;
    m_roundsShown = rounds.size();
    m_roundTable->setRowCount(static_cast<int>(rounds.size()));
    int row = 0;
    for (auto it = rounds.rbegin(); it != rounds.rend(); ++it, ++row) {
        const AutoSpreadRound& r = *it;
        QStringList cells = {timeOfDay(r.endMs), q(spreadActionText(r.action)),
                             QString::number(r.units)};
        for (double fill : r.fill) cells << (fill != 0 ? q(spreadPriceText(fill)) : QString());
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
