#include "robots/ui/grids_spread_window.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdio>

#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "app/ui/window_placement.h"
#include "robots/grids_spread_strings.h"
#include "spread/spread_strings.h"
#include "spread/template_commands.h"
#include "spread/ui/spread_exit_dialog.h"
#include "spread/ui/template_menu.h"

namespace t = grid_text;

namespace {

QString qs(const char* s) {
    return QString::fromUtf8(s);
}
QString qs(const std::string& s) {
    return QString::fromStdString(s);
}

QSpinBox* intBox(QWidget* parent, int low, int high) {
    auto* b = new QSpinBox(parent);
    b->setRange(low, high);
    b->setAlignment(Qt::AlignRight);
    return b;
}

QDoubleSpinBox* realBox(QWidget* parent) {
    auto* b = new QDoubleSpinBox(parent);
    b->setRange(-1e7, 1e7);
    b->setDecimals(2);
    b->setAlignment(Qt::AlignRight);
    return b;
}

// Picks the item whose data is `key`; the first item when none is.
void selectData(QComboBox* box, const QString& key) {
    const int i = box->findData(key);
    box->setCurrentIndex(i >= 0 ? i : (box->count() > 0 ? 0 : -1));
}

QString symbolKey(std::uint16_t exchange, const std::string& code) {
    return QString::number(exchange) + "|" + qs(code);
}

}  // namespace

GridsSpreadWindow::GridsSpreadWindow(CHelmsmanManage& manager, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_manager(manager),
      m_core(std::make_unique<CGridsSpread>(manager)) {
    setObjectName("GridsSpreadWindow");
    setAttribute(Qt::WA_DeleteOnClose);
    buildControls();
    fillLists();

    TemplateToolHooks<GridsSpreadSettings> hooks;
    hooks.collect = [this] { return collect(); };
    hooks.apply = [this](const GridsSpreadSettings& tpl) {
        GridsSpreadSettings s = collect();
        applyGridsTemplate(s, tpl);
        m_templateName = s.strName;
        display(s);
    };
    hooks.currentName = [this] { return m_templateName; };
    hooks.setName = [this](const std::string& name) { m_templateName = name; };
    hooks.writeDefault = [](CProfileIni& ini, const GridsSpreadSettings& s) {
        writeGridsSpreadSettings(ini, s);
    };
    hooks.row = [](const GridsSpreadSettings& s) { return gridsTemplateRow(s); };
    m_templates = std::make_unique<CToolTemplates<GridsSpreadSettings>>(
        std::filesystem::path(manager.userDir()), template_files::kGridsSpread,
        TemplateManagerLayout{spread_text::kGridsSpreadManager, t::kManagerColumns,
                              "GridsSpreadTemplates"},
        std::move(hooks), manager.prompter());
    m_templateMenu = new TemplateMenu(*m_templates, this);
    m_template->setMenu(m_templateMenu);

    // The default template.
    GridsSpreadSettings s = readGridsSpreadSettings(CProfileIni(manager.profilePath()));
    display(s);
    m_core->setSettings(collect());

    m_core->setChanged([this](unsigned what) { refresh(what); });
    m_timer = new QTimer(this);
    m_timer->setInterval(CGridsSpread::kTimerMs);
    connect(m_timer, &QTimer::timeout, this, [this] { m_core->timerPass(); });
    m_timer->start();
    refresh(kGridChangeState | kGridChangeQuote | kGridChangeSettings);
}

GridsSpreadWindow::~GridsSpreadWindow() {
    m_timer->stop();
    m_core->setChanged({});
}

void GridsSpreadWindow::buildControls() {
    auto* accounts = new QHBoxLayout;
    m_accountA = new QComboBox(this);
    m_accountB = new QComboBox(this);
    for (QComboBox* box : {m_accountA, m_accountB}) box->setMinimumWidth(170);
    accounts->addWidget(new QLabel(qs(t::kAccountA), this));
    accounts->addWidget(m_accountA, 1);
    accounts->addSpacing(12);
    accounts->addWidget(new QLabel(qs(t::kAccountB), this));
    accounts->addWidget(m_accountB, 1);

    auto* legs = new QGridLayout;
    m_symbolA = new QComboBox(this);
    m_symbolB = new QComboBox(this);
    m_lotsA = intBox(this, 1, 999);
    m_lotsB = intBox(this, 1, 999);
    legs->addWidget(new QLabel(qs(t::kSymbolA), this), 0, 0);
    legs->addWidget(m_symbolA, 0, 1);
    legs->addWidget(m_lotsA, 0, 2);
    legs->addWidget(new QLabel(qs(t::kSymbolB), this), 1, 0);
    legs->addWidget(m_symbolB, 1, 1);
    legs->addWidget(m_lotsB, 1, 2);
    legs->setColumnStretch(1, 1);

    m_everyLots = intBox(this, 0, 9999);
    m_maxLots = intBox(this, 0, 9999);
    m_gridLots = intBox(this, 1, 9999);
    m_firstGrid = realBox(this);
    m_interval = realBox(this);
    m_winGrid = realBox(this);
    m_edge = intBox(this, 0, 9999);
    m_threshold = intBox(this, 0, 9999);
    m_fixup = intBox(this, -999, 999);
    m_filterLength = intBox(this, 1, 100000);
    m_filterOffset = intBox(this, -999, 999);

    auto* settings = new QGridLayout;
    const std::pair<const char*, QWidget*> cells[] = {
        {t::kEveryLots, m_everyLots}, {t::kFirstGrid, m_firstGrid},
        {t::kMaxLots, m_maxLots},     {t::kGridInterval, m_interval},
        {t::kGridLots, m_gridLots},   {t::kWinGrid, m_winGrid},
        {t::kMonitorEdge, m_edge},    {t::kMonitorThreshold, m_threshold},
        {t::kFixupOffset, m_fixup},
    };
    int i = 0;
    for (const auto& [label, box] : cells) {
        const int row = i / 2, col = (i % 2) * 2;
        settings->addWidget(new QLabel(qs(label), this), row, col);
        settings->addWidget(box, row, col + 1);
        ++i;
    }
    auto* filter = new QHBoxLayout;
    filter->setContentsMargins(0, 0, 0, 0);
    filter->addWidget(m_filterLength);
    filter->addWidget(m_filterOffset);
    settings->addWidget(new QLabel(qs(t::kFilter), this), 4, 2);
    settings->addLayout(filter, 4, 3);
    settings->setColumnStretch(1, 1);
    settings->setColumnStretch(3, 1);
    settings->setColumnMinimumWidth(2, 56);

    m_direction = new QPushButton(this);
    m_start = new QPushButton(qs(t::kStart), this);
    m_template = new QPushButton(qs(t::kTemplate), this);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_direction);
    buttons->addWidget(m_start);
    buttons->addStretch(1);
    buttons->addWidget(m_template);

    auto* state = new QGridLayout;
    m_position = intBox(this, 0, 9999);
    m_update = new QPushButton(qs(t::kUpdate), this);
    m_openStatus = new QLabel(this);
    m_closeStatus = new QLabel(this);
    m_filterState = new QLabel(this);
    m_closedCount = new QLabel(this);
    m_details = new QPushButton(qs(t::kDetails), this);
    for (QLabel* l : {m_openStatus, m_closeStatus})
        l->setMinimumWidth(l->fontMetrics().horizontalAdvance(QString(22, QChar(0x6C49))));
    auto* position = new QHBoxLayout;
    position->addWidget(m_position);
    position->addWidget(m_update);
    position->addStretch(1);
    position->addWidget(new QLabel(qs(t::kFilterState), this));
    position->addWidget(m_filterState);
    position->addSpacing(12);
    position->addWidget(m_closedCount);
    position->addWidget(m_details);
    state->addWidget(new QLabel(qs(t::kPosition), this), 0, 0);
    state->addLayout(position, 0, 1);
    state->addWidget(new QLabel(qs(t::kOpenPair), this), 1, 0);
    state->addWidget(m_openStatus, 1, 1);
    state->addWidget(new QLabel(qs(t::kClosePair), this), 2, 0);
    state->addWidget(m_closeStatus, 2, 1);
    state->setColumnStretch(1, 1);
    auto* stateBox = new QGroupBox(this);
    stateBox->setLayout(state);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(accounts);
    layout->addLayout(legs);
    layout->addLayout(settings);
    layout->addLayout(buttons);
    layout->addWidget(stateBox);

    connect(m_direction, &QPushButton::clicked, this, [this] { toggleDirection(); });
    connect(m_start, &QPushButton::clicked, this, [this] { startOrPause(); });
    connect(m_update, &QPushButton::clicked, this, [this] { updatePosition(); });
    connect(m_details, &QPushButton::clicked, this, [this] { showDetails(); });
    connect(m_position, &QSpinBox::valueChanged, this, [this] { m_positionEdited = true; });
    for (QSpinBox* b : {m_lotsA, m_lotsB})
        connect(b, &QSpinBox::valueChanged, this,
                [this] { setWindowTitle(qs(CGridsSpread::captionOf(collect()))); });
}

void GridsSpreadWindow::fillLists() {
    CSubscibeManage* host = m_manager.facade();
    if (!host) return;
    std::vector<tagAccoutInfo> accounts;
    host->GetAvailableAccounts(accounts);
    for (QComboBox* box : {m_accountA, m_accountB}) {
        box->clear();
        for (const tagAccoutInfo& a : accounts) {
            char text[160];
            std::snprintf(text, sizeof text, t::kAccountFormat, a.strAccountID.c_str(),
                          a.strAccountName.c_str());
            box->addItem(qs(text), qs(a.strAccountID) + "|" + qs(a.strBrokerID));
        }
    }
    std::vector<tagExchangeInfo> exchanges;
    host->GetAllExchanges(exchanges);
    for (const tagExchangeInfo& e : exchanges) {
        std::vector<tagSymbol> symbols;
        host->GetExchangeSymbols(e.nExchangeID, symbols, 1);
        for (const tagSymbol& s : symbols)
            for (QComboBox* box : {m_symbolA, m_symbolB})
                box->addItem(qs(s.strCode), symbolKey(s.wExchangeID, s.strCode));
    }
}

GridsSpreadSettings GridsSpreadWindow::collect() const {
    GridsSpreadSettings s;
    s.strName = m_templateName;
    auto symbol = [](const QComboBox* box, std::uint16_t& exchange, std::string& code) {
        const QStringList parts = box->currentData().toString().split('|');
        exchange = parts.size() == 2 ? static_cast<std::uint16_t>(parts[0].toUInt()) : 0;
        code = parts.size() == 2 ? parts[1].toStdString() : std::string();
    };
    symbol(m_symbolA, s.wExchangeID1, s.szSymbolCode1);
    symbol(m_symbolB, s.wExchangeID2, s.szSymbolCode2);
    auto account = [](const QComboBox* box, std::string& id, std::string& broker) {
        const QStringList parts = box->currentData().toString().split('|');
        id = parts.value(0).toStdString();
        broker = parts.value(1).toStdString();
    };
    account(m_accountA, s.strAccountID1, s.strBrokerID1);
    account(m_accountB, s.strAccountID2, s.strBrokerID2);
    s.nSpreadLots1 = m_lotsA->value();
    s.nSpreadLots2 = m_lotsB->value();
    s.bLong = m_bLong;
    s.nEveryLots = m_everyLots->value();
    s.nMaxLots = m_maxLots->value();
    s.nGridLots = m_gridLots->value();
    s.dFirstGrid = m_firstGrid->value();
    s.dGridInterval = m_interval->value();
    s.dWinGrid = m_winGrid->value();
    s.nMonitorEdge = m_edge->value();
    s.nMonitorThreshold = m_threshold->value();
    s.nFixupOffset = m_fixup->value();
    s.nFilterLength = m_filterLength->value();
    s.nFilterOffset = m_filterOffset->value();
    return s;
}

void GridsSpreadWindow::display(const GridsSpreadSettings& s) {
    m_templateName = s.strName;
    selectData(m_symbolA, symbolKey(s.wExchangeID1, s.szSymbolCode1));
    selectData(m_symbolB, symbolKey(s.wExchangeID2, s.szSymbolCode2));
    selectData(m_accountA, qs(s.strAccountID1) + "|" + qs(s.strBrokerID1));
    selectData(m_accountB, qs(s.strAccountID2) + "|" + qs(s.strBrokerID2));
    // With no saved account the second leg takes the second account, if there is one.
    if (s.strAccountID2.empty() && m_accountB->count() > 1) m_accountB->setCurrentIndex(1);
    m_lotsA->setValue(s.nSpreadLots1);
    m_lotsB->setValue(s.nSpreadLots2);
    m_bLong = s.bLong ? 1 : 0;
    m_direction->setText(qs(m_bLong ? t::kBuySpread : t::kSellSpread));
    m_everyLots->setValue(s.nEveryLots);
    m_maxLots->setValue(s.nMaxLots);
    m_gridLots->setValue(s.nGridLots);
    m_firstGrid->setValue(s.dFirstGrid);
    m_interval->setValue(s.dGridInterval);
    m_winGrid->setValue(s.dWinGrid);
    m_edge->setValue(s.nMonitorEdge);
    m_threshold->setValue(s.nMonitorThreshold);
    m_fixup->setValue(s.nFixupOffset);
    m_filterLength->setValue(s.nFilterLength);
    m_filterOffset->setValue(s.nFilterOffset);
    setWindowTitle(qs(CGridsSpread::captionOf(s)));
}

void GridsSpreadWindow::toggleDirection() {
    if (m_core->running()) return;
    m_bLong = m_bLong ? 0 : 1;
    m_direction->setText(qs(m_bLong ? t::kBuySpread : t::kSellSpread));
}

void GridsSpreadWindow::startOrPause() {
    if (m_core->running()) {
        m_core->pause();
    } else {
        m_core->setSettings(collect());
        m_core->start();
    }
    refresh(kGridChangeState);
}

void GridsSpreadWindow::updatePosition() {
    m_core->overridePosition(m_position->value());
    m_positionEdited = false;
    refresh(kGridChangeState);
}

void GridsSpreadWindow::showDetails() {
    SpreadExitDialog dialog(m_core->exitInfo(), m_manager.userDir(), this);
    dialog.exec();
}

void GridsSpreadWindow::setEditable(bool on) {
    for (QWidget* w : std::initializer_list<QWidget*>{m_accountA, m_accountB, m_symbolA, m_symbolB,
                                                      m_direction, m_template})
        w->setEnabled(on);
    for (QSpinBox* b : {m_lotsA, m_lotsB, m_everyLots, m_maxLots, m_gridLots, m_edge, m_threshold,
                        m_fixup, m_filterLength, m_filterOffset})
        b->setReadOnly(!on);
    for (QDoubleSpinBox* b : {m_firstGrid, m_interval, m_winGrid}) b->setReadOnly(!on);
}

void GridsSpreadWindow::refresh(unsigned what) {
    const bool running = m_core->running();
    if (what & kGridChangeState) {
        setEditable(!running);
        m_start->setText(qs(running ? t::kPause : t::kStart));
        char text[64];
        std::snprintf(text, sizeof text, t::kClosedCount, m_core->closedCount());
        m_closedCount->setText(qs(text));
        // The figure follows the robot unless the trader is typing a new one.
        if (!m_positionEdited || !m_position->hasFocus()) {
            const QSignalBlocker block(m_position);
            m_position->setValue(static_cast<int>(m_core->entries().size()));
            m_positionEdited = false;
        }
    }
    m_openStatus->setText(qs(m_core->pairStatus(true)));
    m_closeStatus->setText(qs(m_core->pairStatus(false)));
    m_filterState->setText(qs(trendText(m_core->trend())));
}

void GridsSpreadWindow::closeEvent(QCloseEvent* event) {
    if (!m_core->requestClose()) {
        event->ignore();
        return;
    }
    m_timer->stop();
    event->accept();
}

WndHandle openGridsSpread(CHelmsmanManage& manager) {
    auto* w = new GridsSpreadWindow(manager, window_placement::hostWindow());
    window_placement::placeCentred(w);
    w->show();
    return w->handle();
}
