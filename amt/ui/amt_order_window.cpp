// AMTOrderWindow: construction and layout of the controls.
#include "amt/ui/amt_order_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFont>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimeEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include "amt/amt_strings.h"
#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "app/ui/window_placement.h"
#include "spread/spread_strings.h"
#include "spread/ui/template_menu.h"

namespace {

QString q(const char* s) {
    return QString::fromUtf8(s);
}

QDoubleSpinBox* priceSpin(QWidget* parent) {
    auto* s = new QDoubleSpinBox(parent);
    s->setLocale(QLocale::c());
    s->setRange(-1e9, 1e9);
    s->setDecimals(2);
    s->setAlignment(Qt::AlignRight);
    s->setMinimumWidth(90);
    return s;
}

QSpinBox* intSpin(QWidget* parent, int lo, int hi, int width = 60) {
    auto* s = new QSpinBox(parent);
    s->setRange(lo, hi);
    s->setAlignment(Qt::AlignRight);
    s->setMinimumWidth(width);
    return s;
}

// The entry and exit grids share their column widths, so the two groups line up.
void alignColumns(QGridLayout* g) {
    const int widths[] = {130, 100, 100, 100, 110, 150};
    for (int c = 0; c < 6; ++c) g->setColumnMinimumWidth(c, widths[c]);
}

QComboBox* conditionCombo(QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->addItem(q(amt_text::kAtLeast));
    c->addItem(q(amt_text::kAtMost));
    return c;
}

}  // namespace

CAMTManager::CAMTManager(ITemplateCommands& commands, QWidget* parent)
    : TemplateManagerDialog(commands, parent) {
    setObjectName("amtManager");
}

AMTOrderWindow::AMTOrderWindow(CHelmsmanManage& manager, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_manager(manager),
      m_core(std::make_unique<CAMTOrder>(manager)) {
    setObjectName("amtOrderWindow");
    TemplateToolHooks<tagAMTParams> hooks;
    hooks.collect = [this] { return collect(); };
    hooks.apply = [this](const tagAMTParams& p) {
        showParams(p);
        m_core->setParams(collect());
        m_core->setTemplateName(p.strName);
        refresh();
    };
    hooks.currentName = [this] { return m_core->templateName(); };
    hooks.setName = [this](const std::string& name) {
        m_core->setTemplateName(name);
        refresh();
    };
    hooks.writeDefault = [](CProfileIni& ini, const tagAMTParams& p) { writeAMTDefault(ini, p); };
    hooks.row = [](const tagAMTParams& p) { return amtTemplateRow(p); };
    m_templates = std::make_unique<CToolTemplates<tagAMTParams>>(
        std::filesystem::path(manager.userDir()), template_files::kAmtOrder,
        TemplateManagerLayout{spread_text::kAmtOrderManager, spread_text::kAmtOrderColumns,
                              "AMTManager"},
        std::move(hooks), manager.prompter());
    build();

    // The default template, or the first instrument of the first exchange.
    tagAMTParams p;
    CProfileIni ini(manager.profilePath());
    if (ini.hasSection(kAMTSection)) p = readAMTDefault(ini);
    if (p.szSymbolCode.empty() && m_symbol->count() > 0) {
        p.wExchangeID = static_cast<std::uint16_t>(m_exchange->currentData().toInt());
        p.szSymbolCode = m_symbol->itemText(0).toStdString();
    }
    if (p.tStartTime == 0) p.tStartTime = manager.clock().now();
    showParams(p);
    m_core->setParams(collect());
    m_core->setChanged([this] { refresh(); });
    refresh();
}

AMTOrderWindow::~AMTOrderWindow() {
    m_core->setChanged({});
}

void AMTOrderWindow::build() {
    using namespace amt_text;
    // Account, instrument, direction.
    m_account = new QComboBox(this);
    m_account->setObjectName("account");
    m_account->setMinimumWidth(150);
    m_exchange = new QComboBox(this);
    m_exchange->setObjectName("exchange");
    m_symbol = new QComboBox(this);
    m_symbol->setObjectName("symbol");
    m_symbol->setMinimumWidth(90);
    m_long = new QRadioButton(q(kLong), this);
    m_long->setObjectName("long");
    m_short = new QRadioButton(q(kShort), this);
    m_short->setObjectName("short");
    auto* direction = new QButtonGroup(this);
    direction->addButton(m_long);
    direction->addButton(m_short);
    m_hedge = new QCheckBox(q(kHedgeBox), this);
    m_hedge->setObjectName("hedge");
    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(q(kLabelAccount), this));
    top->addWidget(m_account);
    top->addSpacing(8);
    top->addWidget(new QLabel(q(kLabelExchange), this));
    top->addWidget(m_exchange);
    top->addWidget(new QLabel(q(kLabelSymbol), this));
    top->addWidget(m_symbol);
    top->addSpacing(8);
    top->addWidget(m_long);
    top->addWidget(m_short);
    top->addWidget(m_hedge);
    top->addStretch();

    m_quote = new QLabel(this);
    m_quote->setObjectName("quote");
    QFont bold = m_quote->font();
    bold.setBold(true);
    m_quote->setFont(bold);

    // Order settings.
    m_startTime = new QTimeEdit(this);
    m_startTime->setObjectName("startTime");
    m_startTime->setDisplayFormat("HH:mm:ss");
    m_delay = intSpin(this, 1, 3600, 50);
    m_delay->setObjectName("delay");
    m_everyLots = intSpin(this, 1, 9999, 55);
    m_everyLots->setObjectName("everyLots");
    m_maxLots = intSpin(this, 1, 9999, 55);
    m_maxLots->setObjectName("maxLots");
    m_offset = intSpin(this, 0, 9999, 50);
    m_offset->setObjectName("offset");
    auto* orders = new QHBoxLayout;
    const std::pair<const char*, QWidget*> items[] = {{kLabelStartTime, m_startTime},
                                                      {kLabelDelay, m_delay},
                                                      {kLabelEveryLots, m_everyLots},
                                                      {kLabelMaxLots, m_maxLots},
                                                      {kLabelOffset, m_offset}};
    for (const auto& [text, w] : items) {
        orders->addWidget(new QLabel(q(text), this));
        orders->addWidget(w);
        orders->addSpacing(6);
    }
    orders->addStretch();

    m_entryBox = buildEntry();
    m_exitBox = buildExit();

    // Run state and commands.
    m_position = intSpin(this, 0, 99999, 60);
    m_position->setObjectName("position");
    m_average = new QLabel(this);
    m_average->setObjectName("average");
    m_first = new QLabel(this);
    m_first->setObjectName("firstPrice");
    m_cumulative = new QLabel(this);
    m_cumulative->setObjectName("cumulative");
    m_extremeCaption = new QLabel(this);
    m_extreme = new QLabel(this);
    m_extreme->setObjectName("extreme");
    m_state = new QLabel(this);
    m_state->setObjectName("runState");
    for (QLabel* l : {m_average, m_first, m_extreme}) l->setMinimumWidth(60);
    auto* run = new QHBoxLayout;
    run->addWidget(new QLabel(q(kLabelPosition), this));
    run->addWidget(m_position);
    run->addSpacing(8);
    run->addWidget(new QLabel(q(kLabelAverage), this));
    run->addWidget(m_average);
    run->addWidget(new QLabel(q(kLabelFirst), this));
    run->addWidget(m_first);
    run->addWidget(m_extremeCaption);
    run->addWidget(m_extreme);
    run->addWidget(m_cumulative);
    run->addStretch();
    run->addWidget(m_state);
    connect(m_position, &QSpinBox::editingFinished, this,
            [this] { m_core->setPositionByHand(m_position->value()); });

    m_templateButton = new QToolButton(this);
    m_templateButton->setObjectName("templateButton");
    m_templateButton->setText(q(kTemplate));
    m_templateButton->setPopupMode(QToolButton::InstantPopup);
    m_menu = new TemplateMenu(*m_templates, this);
    m_menu->setManagerOpener([this](QWidget* owner) {
        CAMTManager dialog(*m_templates, owner);
        dialog.exec();
    });
    m_templateButton->setMenu(m_menu);
    m_start = new QPushButton(q(kStart), this);
    m_start->setObjectName("start");
    m_stop = new QPushButton(q(kStop), this);
    m_stop->setObjectName("stop");
    m_resume = new QPushButton(q(kResume), this);
    m_resume->setObjectName("resume");
    auto* close = new QPushButton(q(kCloseButton), this);
    for (QPushButton* b : {m_start, m_stop, m_resume, close}) b->setAutoDefault(false);
    connect(m_start, &QPushButton::clicked, this, [this] { startStrategy(); });
    connect(m_stop, &QPushButton::clicked, this, [this] { stopStrategy(); });
    connect(m_resume, &QPushButton::clicked, this, [this] { resumeEntries(); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_templateButton);
    buttons->addStretch();
    buttons->addWidget(m_start);
    buttons->addWidget(m_stop);
    buttons->addWidget(m_resume);
    buttons->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 8, 10, 8);
    layout->setSpacing(6);
    layout->addLayout(top);
    layout->addWidget(m_quote);
    layout->addLayout(orders);
    layout->addWidget(m_entryBox);
    layout->addWidget(m_exitBox);
    layout->addLayout(run);
    layout->addLayout(buttons);

    fillAccounts();
    fillExchanges();
    connect(m_exchange, &QComboBox::currentIndexChanged, this, [this] {
        if (m_filling) return;
        fillSymbols(m_exchange->currentData().toInt());
        onSymbolChosen();
    });
    connect(m_symbol, &QComboBox::currentIndexChanged, this, [this] {
        if (!m_filling) onSymbolChosen();
    });
    for (QRadioButton* r : {m_long, m_short})
        connect(r, &QRadioButton::toggled, this, [this] { updateLabels(); });
    for (QComboBox* c : {m_entryPriceCon, m_exitPriceCon, m_trailType})
        connect(c, &QComboBox::currentIndexChanged, this, [this] { updateLabels(); });
}

QWidget* AMTOrderWindow::buildEntry() {
    using namespace amt_text;
    auto* box = new QGroupBox(q(kEntryGroup), this);
    box->setObjectName("entryGroup");
    auto* g = new QGridLayout(box);
    g->setHorizontalSpacing(6);
    g->setVerticalSpacing(4);
    m_entryPriceOn = new QCheckBox(q(kWhenLast), box);
    m_entryPriceOn->setObjectName("entryPriceOn");
    m_entryPriceCon = conditionCombo(box);
    m_entryPriceCon->setObjectName("entryPriceCon");
    m_entryPrice = priceSpin(box);
    m_entryPrice->setObjectName("entryPrice");
    m_entryLabel = new QLabel(box);
    m_entryLabel->setObjectName("entryLabel");
    m_entryRangeOn = new QCheckBox(q(kRangeLimit), box);
    m_entryRangeOn->setObjectName("entryRangeOn");
    m_entryRange = priceSpin(box);
    m_entryRange->setObjectName("entryRange");
    m_entryVolOn = new QCheckBox(q(kEntryVol), box);
    m_entryVolOn->setObjectName("entryVolOn");
    m_entryVol = intSpin(box, 0, 99999);
    m_entryVol->setObjectName("entryVol");
    m_entryAnd = new QRadioButton(q(kAnd), box);
    m_entryOr = new QRadioButton(q(kOr), box);
    m_entryOr->setObjectName("entryOr");
    auto* mode = new QButtonGroup(box);
    mode->addButton(m_entryAnd);
    mode->addButton(m_entryOr);

    g->addWidget(m_entryPriceOn, 0, 0);
    g->addWidget(m_entryPriceCon, 0, 1);
    g->addWidget(m_entryPrice, 0, 2);
    g->addWidget(m_entryLabel, 0, 3);
    g->addWidget(m_entryRangeOn, 0, 4);
    g->addWidget(m_entryRange, 0, 5);
    g->addWidget(m_entryVolOn, 1, 0);
    g->addWidget(m_entryVol, 1, 1);
    g->addWidget(new QLabel(q(kLots), box), 1, 2);
    g->addWidget(m_entryAnd, 1, 3, 1, 2);
    g->addWidget(m_entryOr, 1, 5, 1, 2);
    addFilterRows(g, 2, m_entryFilters, "entryFilter");
    alignColumns(g);
    return box;
}

QWidget* AMTOrderWindow::buildExit() {
    using namespace amt_text;
    auto* box = new QGroupBox(q(kExitGroup), this);
    box->setObjectName("exitGroup");
    auto* g = new QGridLayout(box);
    g->setHorizontalSpacing(6);
    g->setVerticalSpacing(4);
    m_exitPriceOn = new QCheckBox(q(kWhenLast), box);
    m_exitPriceOn->setObjectName("exitPriceOn");
    m_exitPriceCon = conditionCombo(box);
    m_exitPriceCon->setObjectName("exitPriceCon");
    m_exitPrice = priceSpin(box);
    m_exitPrice->setObjectName("exitPrice");
    m_exitLabel = new QLabel(box);
    m_exitLabel->setObjectName("exitLabel");
    m_exitTimeOn = new QCheckBox(q(kExitAtTime), box);
    m_exitTimeOn->setObjectName("exitTimeOn");
    m_exitTime = new QTimeEdit(box);
    m_exitTime->setObjectName("exitTime");
    m_exitTime->setDisplayFormat("HH:mm:ss");
    m_basePrice = new QComboBox(box);
    m_basePrice->setObjectName("basePrice");
    m_basePrice->addItem(q(kBaseFirst), 0);
    m_basePrice->addItem(q(kBaseAverage), 1);
    m_stopLossOn = new QCheckBox(q(kStopLoss), box);
    m_stopLossOn->setObjectName("stopLossOn");
    m_stopLoss = intSpin(box, 0, 9999);
    m_stopLoss->setObjectName("stopLoss");
    m_takeProfitOn = new QCheckBox(q(kTakeProfit), box);
    m_takeProfitOn->setObjectName("takeProfitOn");
    m_takeProfit = intSpin(box, 0, 9999);
    m_takeProfit->setObjectName("takeProfit");
    m_trailOn = new QCheckBox(q(kTrailing), box);
    m_trailOn->setObjectName("trailOn");
    m_trailStart = intSpin(box, 0, 9999);
    m_trailStart->setObjectName("trailStart");
    m_trailType = new QComboBox(box);
    m_trailType->setObjectName("trailType");
    m_trailType->addItem(q(kTrailTicks));
    m_trailType->addItem(q(kTrailPercent));
    m_trailSet = intSpin(box, 0, 9999);
    m_trailSet->setObjectName("trailSet");
    m_exitVolOn = new QCheckBox(q(kExitVol), box);
    m_exitVolOn->setObjectName("exitVolOn");
    m_exitVol = intSpin(box, 0, 99999);
    m_exitVol->setObjectName("exitVol");
    m_exitAnd = new QRadioButton(q(kAnd), box);
    m_exitOr = new QRadioButton(q(kOr), box);
    m_exitOr->setObjectName("exitOr");
    auto* mode = new QButtonGroup(box);
    mode->addButton(m_exitAnd);
    mode->addButton(m_exitOr);

    g->addWidget(m_exitPriceOn, 0, 0);
    g->addWidget(m_exitPriceCon, 0, 1);
    g->addWidget(m_exitPrice, 0, 2);
    g->addWidget(m_exitLabel, 0, 3);
    g->addWidget(m_exitTimeOn, 0, 4);
    g->addWidget(m_exitTime, 0, 5);
    g->addWidget(new QLabel(q(kBasePrice), box), 1, 0);
    g->addWidget(m_basePrice, 1, 1);
    auto* stops = new QHBoxLayout;
    stops->addWidget(m_stopLossOn);
    stops->addWidget(m_stopLoss);
    stops->addWidget(new QLabel(q(kPoints), box));
    stops->addSpacing(10);
    stops->addWidget(m_takeProfitOn);
    stops->addWidget(m_takeProfit);
    stops->addWidget(new QLabel(q(kPoints), box));
    stops->addStretch();
    g->addLayout(stops, 1, 2, 1, 4);
    g->addWidget(m_trailOn, 2, 0);
    auto* trail = new QHBoxLayout;
    trail->addWidget(new QLabel(q(kTrailStart), box));
    trail->addWidget(m_trailStart);
    trail->addSpacing(10);
    trail->addWidget(m_trailType);
    trail->addWidget(m_trailSet);
    trail->addStretch();
    g->addLayout(trail, 2, 1, 1, 5);
    g->addWidget(m_exitVolOn, 3, 0);
    g->addWidget(m_exitVol, 3, 1);
    g->addWidget(new QLabel(q(kLots), box), 3, 2);
    g->addWidget(m_exitAnd, 3, 3, 1, 2);
    g->addWidget(m_exitOr, 3, 5, 1, 2);
    addFilterRows(g, 4, m_exitFilters, "exitFilter");
    alignColumns(g);
    return box;
}

void AMTOrderWindow::addFilterRows(QGridLayout* g, int firstRow, std::array<FilterRow, 3>& rows,
                                   const char* prefix) {
    using namespace amt_text;
    QWidget* box = g->parentWidget();
    for (int i = 0; i < 3; ++i) {
        FilterRow& r = rows[static_cast<std::size_t>(i)];
        const QString name = QString::fromUtf8(prefix) + QString::number(i + 1);
        r.enabled =
            new QCheckBox(QString::fromUtf8(kCondition).replace("%d", QString::number(i + 1)), box);
        r.enabled->setObjectName(name);
        r.key = new QLineEdit(box);
        r.key->setObjectName(name + "Key");
        r.type = new QComboBox(box);
        r.type->setObjectName(name + "Type");
        for (const char* t : kFilterTypes) r.type->addItem(q(t));
        r.useKey = new QCheckBox(q(kCompareKey), box);
        r.useKey->setObjectName(name + "UseKey");
        r.compareKey = new QLineEdit(box);
        r.compareKey->setObjectName(name + "CompareKey");
        r.value = priceSpin(box);
        r.value->setObjectName(name + "Value");
        r.value->setDecimals(4);
        const int row = firstRow + i;
        g->addWidget(r.enabled, row, 0);
        g->addWidget(r.key, row, 1);
        g->addWidget(r.type, row, 2);
        g->addWidget(r.useKey, row, 3);
        g->addWidget(r.compareKey, row, 4);
        auto* value = new QHBoxLayout;
        value->addWidget(new QLabel(q(kOrValue), box));
        value->addWidget(r.value);
        g->addLayout(value, row, 5);
        QCheckBox* useKey = r.useKey;
        QLineEdit* compareKey = r.compareKey;
        QDoubleSpinBox* constant = r.value;
        auto sync = [useKey, compareKey, constant] {
            compareKey->setEnabled(useKey->isChecked() && useKey->isEnabled());
            constant->setEnabled(!useKey->isChecked() && useKey->isEnabled());
        };
        connect(useKey, &QCheckBox::toggled, this, sync);
        sync();
    }
}

void AMTOrderWindow::closeEvent(QCloseEvent* event) {
    if (!m_core->confirmClose()) {
        event->ignore();
        return;
    }
    event->accept();
}

int openAMTOrder() {
    auto* w = new AMTOrderWindow(CHelmsmanManage::instance(), window_placement::hostWindow());
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->adjustSize();
    window_placement::placeCentred(w);
    w->show();
    w->raise();
    w->activateWindow();
    return 1;
}
