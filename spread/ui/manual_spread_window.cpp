#include "spread/ui/manual_spread_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "spread/manual_spread_strings.h"
#include "spread/ui/manual_spread_chart.h"
#include "spread/ui/spread_price_rows.h"
#include "spread/ui/template_menu.h"

namespace {

namespace t = manual_spread_text;

QString q(const char* s) {
    return QString::fromUtf8(s);
}
QString q(const std::string& s) {
    return QString::fromStdString(s);
}

QPushButton* toggle(QWidget* parent, const char* text) {
    auto* b = new QPushButton(q(text), parent);
    b->setCheckable(true);
    // A switch that is down must be seen at a glance, in any theme.
    b->setStyleSheet(
        "QPushButton:checked{background:#ffd666;color:#202020;border:1px solid #b58900;"
        "border-radius:2px;padding:3px 6px}");
    b->setMinimumWidth(b->fontMetrics().horizontalAdvance(b->text()) + 20);
    return b;
}

// Whole-number boxes of the window: lots, units per click, offset.
QSpinBox* countSpin(QWidget* parent, int low, int high) {
    auto* s = new QSpinBox(parent);
    s->setRange(low, high);
    s->setAlignment(Qt::AlignRight);
    return s;
}

constexpr int kAccountRefreshMs = 2000;

// A leg's multiplier, shown as "%g" (1, 1.6, 0.5) rather than with fixed decimals.
class MultiplierSpin final : public QDoubleSpinBox {
public:
    explicit MultiplierSpin(QWidget* parent) : QDoubleSpinBox(parent) {
        setLocale(QLocale::c());
        setDecimals(4);
        setRange(-10000, 10000);
        setSingleStep(0.1);
        setAlignment(Qt::AlignRight);
    }
    QString textFromValue(double v) const override { return QString::asprintf("%g", v); }
};

}  // namespace

ManualSpreadWindow::ManualSpreadWindow(CHelmsmanManage& manager, QWidget* parent)
    : QWidget(parent, Qt::Window), m_core(manager) {
    setObjectName("ManualSpreadWindow");
    auto* left = new QVBoxLayout;
    left->setSpacing(6);
    left->addWidget(buildLegs());
    left->addWidget(buildSwitches());
    left->addWidget(buildPrices());
    left->addWidget(buildAccounts(), 1);

    m_chart = new ManualSpreadChart(this);
    m_chart->setMinimumWidth(380);
    auto* root = new QHBoxLayout(this);
    root->setContentsMargins(8, 8, 8, 8);
    root->setSpacing(8);
    root->addLayout(left);
    root->addWidget(m_chart, 1);

    m_menu = new TemplateMenu(m_core.templates(), this);
    connect(m_templateButton, &QPushButton::clicked, this, [this] {
        m_menu->popup(m_templateButton->mapToGlobal(QPoint(0, m_templateButton->height())));
    });
    connect(m_menu, &TemplateMenu::templateChanged, this, [this] { showSettings(); });

    connectEdits();
    m_core.setListener([this](unsigned what) { onCoreChanged(what); });
    m_accountTimer = new QTimer(this);
    connect(m_accountTimer, &QTimer::timeout, this, [this] {
        if (m_core.reloadAccounts()) showAccounts();
    });
    m_accountTimer->start(kAccountRefreshMs);

    showSettings();
    showAccounts();
    showQuotes();
    showChart(m_core.settings().bShowChart != 0);
}

// ---- Building ------------------------------------------------------------------------------

QWidget* ManualSpreadWindow::buildLegs() {
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(6);
    const char* heads[] = {t::kExchange, t::kSymbol, t::kUnit, t::kLots};
    for (int c = 0; c < 4; ++c) grid->addWidget(new QLabel(q(heads[c]), box), 0, c + 1);
    const char* titles[] = {t::kLegA, t::kLegB, t::kLegC};
    const std::vector<tagExchangeInfo> exchanges = m_core.exchanges();
    for (int i = 0; i < CManualSpread::kLegs; ++i) {
        LegRow& row = m_legRows[i];
        row.title = new QLabel(q(titles[i]), box);
        row.exchange = new QComboBox(box);
        for (const tagExchangeInfo& e : exchanges)
            row.exchange->addItem(q(e.strName), e.nExchangeID);
        row.symbol = new QComboBox(box);
        row.symbol->setMinimumContentsLength(8);
        row.unit = new MultiplierSpin(box);
        row.lots = countSpin(box, 1, 9999);
        row.hedge = toggle(box, t::kHedge);
        const int r = i + 1;
        grid->addWidget(row.title, r, 0);
        grid->addWidget(row.exchange, r, 1);
        grid->addWidget(row.symbol, r, 2);
        grid->addWidget(row.unit, r, 3);
        grid->addWidget(row.lots, r, 4);
        grid->addWidget(row.hedge, r, 5);
    }
    return box;
}

QWidget* ManualSpreadWindow::buildSwitches() {
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    m_butterfly = toggle(box, t::kButterfly);
    m_change = toggle(box, t::kChange);
    grid->addWidget(m_butterfly, 0, 0, 1, 2);
    grid->addWidget(m_change, 0, 2, 1, 2);

    m_everyLots = countSpin(box, 0, 9999);
    m_offset = countSpin(box, 0, 999);
    auto* numbers = new QHBoxLayout;
    numbers->addWidget(new QLabel(q(t::kEveryLots), box));
    numbers->addWidget(m_everyLots);
    numbers->addSpacing(12);
    numbers->addWidget(new QLabel(q(t::kOffset), box));
    numbers->addWidget(m_offset);
    numbers->addWidget(new QLabel(q(t::kOffsetUnit), box));
    numbers->addStretch(1);
    grid->addLayout(numbers, 1, 0, 1, 4);

    m_exit = new QCheckBox(q(t::kExit), box);
    m_confirm = new QCheckBox(q(t::kConfirmOrder), box);
    m_firstLots = new QCheckBox(q(t::kFirstLotsConfirm), box);
    auto* checks = new QHBoxLayout;
    checks->addWidget(m_exit);
    checks->addWidget(m_confirm);
    checks->addWidget(m_firstLots);
    checks->addStretch(1);
    grid->addLayout(checks, 2, 0, 1, 4);
    return box;
}

QWidget* ManualSpreadWindow::buildPrices() {
    auto* box = new QGroupBox(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(8, 6, 8, 6);
    m_rows = addSpreadPriceRows(grid, box, 150);
    m_buy = new QPushButton(q(t::kBuySpread), box);
    m_sell = new QPushButton(q(t::kSellSpread), box);
    m_buy->setStyleSheet(
        "QPushButton{background:#d02121;color:white;font-weight:bold;padding:6px}");
    m_sell->setStyleSheet(
        "QPushButton{background:#1a9a3a;color:white;font-weight:bold;padding:6px}");
    grid->addWidget(m_buy, 0, 2, 3, 1);
    grid->addWidget(m_sell, 0, 3, 3, 1);
    grid->setColumnStretch(1, 1);
    connect(m_buy, &QPushButton::clicked, this, [this] { sendSpread(true); });
    connect(m_sell, &QPushButton::clicked, this, [this] { sendSpread(false); });
    return box;
}

QWidget* ManualSpreadWindow::buildAccounts() {
    auto* box = new QWidget(this);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(q(t::kAccounts), box));
    m_accountList = new QListWidget(box);
    m_accountList->setMinimumHeight(64);
    layout->addWidget(m_accountList, 1);
    m_templateButton = new QPushButton(q(t::kTemplateButton), box);
    m_chartButton = toggle(box, t::kShowChart);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_templateButton);
    buttons->addStretch(1);
    buttons->addWidget(m_chartButton);
    layout->addLayout(buttons);
    return box;
}

void ManualSpreadWindow::connectEdits() {
    for (int i = 0; i < CManualSpread::kLegs; ++i) {
        LegRow& row = m_legRows[i];
        connect(row.exchange, &QComboBox::activated, this, [this, i] {
            const int id = m_legRows[i].exchange->currentData().toInt();
            fillSymbols(i, id);
            m_core.setLeg(i, tagSymbol{static_cast<std::uint16_t>(id), {}});
        });
        connect(row.symbol, &QComboBox::activated, this, [this, i] {
            chooseLeg(i, m_legRows[i].exchange->currentData().toInt(),
                      m_legRows[i].symbol->currentData().toString());
        });
        connect(row.unit, &QDoubleSpinBox::valueChanged, this, [this, i](double v) {
            m_core.editSettings().dSpreadUnit[i] = v;
            m_core.settingsEdited();
        });
        connect(row.lots, &QSpinBox::valueChanged, this,
                [this, i](int v) { m_core.editSettings().nSpreadLots[i] = v; });
    }
    connect(m_everyLots, &QSpinBox::valueChanged, this,
            [this](int v) { m_core.editSettings().nEveryLots = v; });
    connect(m_offset, &QSpinBox::valueChanged, this,
            [this](int v) { m_core.editSettings().nOrderOffset = v; });
    connect(m_butterfly, &QPushButton::toggled, this, [this](bool on) {
        m_core.setButterfly(on);
        enableLegC();
    });
    connect(m_change, &QPushButton::toggled, this,
            [this](bool on) { m_core.editSettings().bChange = on ? 1 : 0; });
    const std::pair<QCheckBox*, std::int32_t tagManualSpreadTemplate::*> flags[] = {
        {m_exit, &tagManualSpreadTemplate::bExit},
        {m_confirm, &tagManualSpreadTemplate::bConfirmOrder},
        {m_firstLots, &tagManualSpreadTemplate::bFirstLotsConfirm}};
    for (const auto& [box, field] : flags)
        connect(box, &QCheckBox::toggled, this,
                [this, field](bool on) { m_core.editSettings().*field = on ? 1 : 0; });
    connect(m_chartButton, &QPushButton::toggled, this, [this](bool on) { showChart(on); });
}

// ---- Showing -------------------------------------------------------------------------------

void ManualSpreadWindow::onCoreChanged(unsigned what) {
    const bool scheduled = m_pending != 0;
    m_pending |= what;
    if (!scheduled) QTimer::singleShot(0, this, [this] { flush(); });
}

void ManualSpreadWindow::flush() {
    const unsigned what = m_pending;
    m_pending = 0;
    if (what & CManualSpread::kChangeSettings) showSettings();
    if (what & CManualSpread::kChangeAccounts) showAccounts();
    showQuotes();
}

void ManualSpreadWindow::showSettings() {
    const tagManualSpreadTemplate& s = m_core.settings();
    for (int i = 0; i < CManualSpread::kLegs; ++i) {
        const QSignalBlocker b1(m_legRows[i].unit), b2(m_legRows[i].lots);
        m_legRows[i].unit->setValue(s.dSpreadUnit[i]);
        m_legRows[i].lots->setValue(s.nSpreadLots[i]);
        showLeg(i);
    }
    {
        const QSignalBlocker b1(m_butterfly), b2(m_change), b3(m_everyLots), b4(m_offset),
            b5(m_exit), b6(m_confirm), b7(m_firstLots);
        m_butterfly->setChecked(s.bButterfly != 0);
        m_change->setChecked(s.bChange != 0);
        m_everyLots->setValue(s.nEveryLots);
        m_offset->setValue(s.nOrderOffset);
        m_exit->setChecked(s.bExit != 0);
        m_confirm->setChecked(s.bConfirmOrder != 0);
        m_firstLots->setChecked(s.bFirstLotsConfirm != 0);
    }
    // What a box could not show (a value outside its range) is what the core holds now.
    auto& edit = m_core.editSettings();
    for (int i = 0; i < CManualSpread::kLegs; ++i) {
        edit.dSpreadUnit[i] = m_legRows[i].unit->value();
        edit.nSpreadLots[i] = m_legRows[i].lots->value();
    }
    edit.nEveryLots = m_everyLots->value();
    edit.nOrderOffset = m_offset->value();
    m_core.settingsEdited();
    enableLegC();
    showQuotes();
}

void ManualSpreadWindow::showLeg(int leg) {
    LegRow& row = m_legRows[leg];
    const tagTemplateLeg& s = m_core.settings().legs[leg];
    const QSignalBlocker b1(row.exchange), b2(row.symbol);
    int ex = row.exchange->findData(static_cast<int>(s.wExchangeID));
    if (ex < 0 && row.exchange->count() > 0) ex = 0;
    row.exchange->setCurrentIndex(ex);
    fillSymbols(leg, row.exchange->currentData().toInt());
    const QString code = q(s.szSymbolCode);
    int at = row.symbol->findData(code);
    if (at < 0) {
        // An instrument the exchange no longer lists stays visible as the leg's choice.
        row.symbol->addItem(code, code);
        at = row.symbol->count() - 1;
    }
    row.symbol->setCurrentIndex(at);
}

void ManualSpreadWindow::fillSymbols(int leg, int exchangeId) {
    QComboBox* box = m_legRows[leg].symbol;
    const QSignalBlocker block(box);
    box->clear();
    box->addItem(QString(), QString());  // no instrument
    for (const tagSymbol& s : m_core.symbols(exchangeId)) box->addItem(q(s.strCode), q(s.strCode));
}

void ManualSpreadWindow::chooseLeg(int leg, int exchangeId, const QString& code) {
    m_core.setLeg(leg, tagSymbol{static_cast<std::uint16_t>(exchangeId), code.toStdString()});
    showLeg(leg);
}

void ManualSpreadWindow::showQuotes() {
    for (SpreadRow r : {SpreadRow::Ask, SpreadRow::Bid, SpreadRow::Last})
        m_rows[static_cast<int>(r)]->setText(q(m_core.rowText(r)));
    setWindowTitle(q(m_core.caption()));
    if (m_chart->isVisibleTo(this)) m_chart->setHistory(m_core.history());
}

void ManualSpreadWindow::showAccounts() {
    QStringList checked;
    for (int r = 0; r < m_accountList->count(); ++r)
        if (m_accountList->item(r)->checkState() == Qt::Checked)
            checked << m_accountList->item(r)->data(Qt::UserRole).toString();
    m_accountList->clear();
    for (const tagAccoutInfo& a : m_core.accounts()) {
        auto* item = new QListWidgetItem(q(CManualSpread::accountText(a)), m_accountList);
        item->setData(Qt::UserRole, q(a.strAccountID));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsSelectable);
        item->setCheckState(Qt::Unchecked);
    }
    if (!m_accountsShown) {
        // The first time: the default account, or the only one.
        const int preset = m_core.defaultAccount();
        if (preset >= 0)
            checked << q(m_core.accounts()[static_cast<std::size_t>(preset)].strAccountID);
        m_accountsShown = true;
    }
    checkAccounts(checked);
}

void ManualSpreadWindow::checkAccounts(const QStringList& accountIds) {
    for (int r = 0; r < m_accountList->count(); ++r) {
        QListWidgetItem* item = m_accountList->item(r);
        item->setCheckState(
            accountIds.contains(item->data(Qt::UserRole).toString()) ? Qt::Checked : Qt::Unchecked);
    }
}

void ManualSpreadWindow::showChart(bool on) {
    m_core.editSettings().bShowChart = on ? 1 : 0;
    {
        const QSignalBlocker block(m_chartButton);
        m_chartButton->setChecked(on);
    }
    m_chart->setVisible(on);
    if (on) m_chart->setHistory(m_core.history());
    if (layout()) {
        layout()->activate();
        resize(on ? sizeHint() : minimumSizeHint());
    }
}

void ManualSpreadWindow::enableLegC() {
    const bool three = m_core.settings().bButterfly != 0;
    LegRow& c = m_legRows[2];
    for (QWidget* w : {static_cast<QWidget*>(c.title), static_cast<QWidget*>(c.exchange),
                       static_cast<QWidget*>(c.symbol), static_cast<QWidget*>(c.unit),
                       static_cast<QWidget*>(c.lots), static_cast<QWidget*>(c.hedge)})
        w->setEnabled(three);
    // A calendar roll has two legs: the three-leg spread ignores it.
    m_change->setEnabled(!three);
}

// ---- Sending -------------------------------------------------------------------------------

CManualSpread::SendResult ManualSpreadWindow::sendSpread(bool buy) {
    std::vector<tagAccoutInfo> accounts;
    const auto& all = m_core.accounts();
    for (int r = 0; r < m_accountList->count() && r < static_cast<int>(all.size()); ++r)
        if (m_accountList->item(r)->checkState() == Qt::Checked)
            accounts.push_back(all[static_cast<std::size_t>(r)]);
    std::array<bool, CManualSpread::kLegs> hedge{};
    for (int i = 0; i < CManualSpread::kLegs; ++i) hedge[i] = m_legRows[i].hedge->isChecked();
    return m_core.send(buy, accounts, hedge);
}

int openManualSpread() {
    auto* w = new ManualSpreadWindow(CHelmsmanManage::instance(), window_placement::hostWindow());
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->adjustSize();
    window_placement::placeCentred(w);
    w->show();
    w->raise();
    w->activateWindow();
    return 1;
}
