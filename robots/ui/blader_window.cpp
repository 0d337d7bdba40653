#include "robots/ui/blader_window.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdio>

#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "robots/blader_strings.h"
#include "spread/ui/template_menu.h"

namespace t = blader_text;

namespace {

QString u8(const char* s) {
    return QString::fromUtf8(s);
}
QString u8(const std::string& s) {
    return QString::fromStdString(s);
}

std::string priceText(double v, int decimals) {
    if (!isPricePresent(v)) return t::kNone;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, v);
    return text;
}

QSpinBox* spin(QWidget* parent, const char* name, int low, int high, const char* suffix) {
    auto* box = new QSpinBox(parent);
    box->setObjectName(name);
    box->setRange(low, high);
    if (suffix) box->setSuffix(QStringLiteral(" ") + u8(suffix));
    return box;
}

}  // namespace

BladerWindow::BladerWindow(CHelmsmanManage& manager, QWidget* parent)
    : QWidget(parent, Qt::Window), m_manager(manager), m_core(manager) {
    setObjectName("BladerWindow");

    // ---- Settings -----------------------------------------------------------------------
    auto* settings = new QGroupBox(u8(t::kSettingsGroup), this);
    auto* form = new QGridLayout(settings);
    m_account = new QComboBox(settings);
    m_account->setObjectName("account");
    m_exchange = new QComboBox(settings);
    m_exchange->setObjectName("exchange");
    m_code = new QComboBox(settings);
    m_code->setObjectName("code");
    m_code->setEditable(true);
    m_code->setMinimumContentsLength(8);
    m_long = new QRadioButton(u8(t::kLong), settings);
    m_short = new QRadioButton(u8(t::kShort), settings);
    m_maxPos = spin(settings, "maxPos", 1, 100, nullptr);
    m_grid = spin(settings, "grid", 1, 10000, t::kTicks);
    m_win = spin(settings, "win", 1, 10000, t::kTicks);
    m_timeExit = spin(settings, "timeExit", 0, 86400, t::kSeconds);

    auto* symbolRow = new QHBoxLayout;
    symbolRow->addWidget(m_exchange, 1);
    symbolRow->addWidget(m_code, 1);
    auto* sideRow = new QHBoxLayout;
    sideRow->addWidget(m_long);
    sideRow->addWidget(m_short);
    sideRow->addStretch();
    int row = 0;
    form->addWidget(new QLabel(u8(t::kAccount), settings), row, 0);
    form->addWidget(m_account, row, 1, 1, 3);
    form->addWidget(new QLabel(u8(t::kSymbol), settings), ++row, 0);
    form->addLayout(symbolRow, row, 1, 1, 3);
    form->addWidget(new QLabel(u8(t::kSide), settings), ++row, 0);
    form->addLayout(sideRow, row, 1);
    form->addWidget(new QLabel(u8(t::kMaxPos), settings), row, 2);
    form->addWidget(m_maxPos, row, 3);
    form->addWidget(new QLabel(u8(t::kGridInterval), settings), ++row, 0);
    form->addWidget(m_grid, row, 1);
    form->addWidget(new QLabel(u8(t::kWinPoint), settings), row, 2);
    form->addWidget(m_win, row, 3);
    form->addWidget(new QLabel(u8(t::kTimeExit), settings), ++row, 0);
    form->addWidget(m_timeExit, row, 1);
    form->setColumnStretch(1, 1);
    form->setColumnStretch(3, 1);

    // ---- Running ------------------------------------------------------------------------
    auto* running = new QGroupBox(u8(t::kRunningGroup), this);
    auto* status = new QGridLayout(running);
    m_quote = new QLabel(running);
    m_quote->setObjectName("quote");
    m_position = spin(running, "position", 0, 1000, nullptr);
    m_position->setKeyboardTracking(false);
    m_base = new QLabel(running);
    m_base->setObjectName("base");
    m_openStatus = new QLabel(running);
    m_openStatus->setObjectName("openStatus");
    m_closeStatus = new QLabel(running);
    m_closeStatus->setObjectName("closeStatus");
    m_totals = new QLabel(running);
    m_totals->setObjectName("totals");
    m_state = new QLabel(running);
    m_state->setObjectName("state");
    m_state->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row = 0;
    status->addWidget(new QLabel(u8(t::kQuote), running), row, 0);
    status->addWidget(m_quote, row, 1, 1, 3);
    status->addWidget(new QLabel(u8(t::kPosition), running), ++row, 0);
    status->addWidget(m_position, row, 1);
    status->addWidget(new QLabel(u8(t::kBase), running), row, 2);
    status->addWidget(m_base, row, 3);
    status->addWidget(new QLabel(u8(t::kOpenLeg), running), ++row, 0);
    status->addWidget(m_openStatus, row, 1, 1, 3);
    status->addWidget(new QLabel(u8(t::kCloseLeg), running), ++row, 0);
    status->addWidget(m_closeStatus, row, 1, 1, 3);
    status->addWidget(m_totals, ++row, 0, 1, 2);
    status->addWidget(m_state, row, 2, 1, 2);
    status->setColumnStretch(1, 1);
    status->setColumnStretch(3, 1);

    // ---- Buttons ------------------------------------------------------------------------
    m_templateButton = new QPushButton(u8(t::kTemplates), this);
    m_start = new QPushButton(u8(t::kStart), this);
    m_start->setObjectName("start");
    m_pause = new QPushButton(u8(t::kPause), this);
    m_pause->setObjectName("pause");
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_templateButton);
    buttons->addStretch();
    buttons->addWidget(m_start);
    buttons->addWidget(m_pause);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(settings);
    layout->addWidget(running);
    layout->addLayout(buttons);

    // ---- Templates: the tool's file, and its default template in Profile.ini ------------
    TemplateToolHooks<tagBladerSetting> hooks;
    hooks.collect = [this] { return collect(); };
    hooks.apply = [this](const tagBladerSetting& s) { showSetting(s); };
    hooks.currentName = [this] { return m_templateName; };
    hooks.setName = [this](const std::string& name) { m_templateName = name; };
    hooks.writeDefault = writeBladerDefault;
    hooks.row = bladerTemplateRow;
    m_templates = std::make_unique<CToolTemplates<tagBladerSetting>>(
        manager.userDir(), template_files::kBlader,
        TemplateManagerLayout{t::kTemplateManager, t::kTemplateColumns, "BladerTemplates"},
        std::move(hooks), manager.prompter());
    m_menu = new TemplateMenu(*m_templates, this);
    m_templateButton->setMenu(m_menu);

    fillAccounts();
    if (CSubscibeManage* host = manager.facade()) {
        std::vector<tagExchangeInfo> exchanges;
        host->GetAllExchanges(exchanges);
        for (const tagExchangeInfo& e : exchanges)
            m_exchange->addItem(u8(e.strName), e.nExchangeID);
    }
    tagBladerSetting initial;
    if (!manager.userDir().empty()) initial = loadBladerDefault(CProfileIni(manager.profilePath()));
    showSetting(initial);

    connect(m_exchange, &QComboBox::currentIndexChanged, this, [this] {
        if (m_showing) return;
        fillSymbols({});
        toCore();
    });
    connect(m_code, &QComboBox::currentTextChanged, this, [this] { toCore(); });
    for (QSpinBox* box : {m_maxPos, m_grid, m_win, m_timeExit})
        connect(box, &QSpinBox::valueChanged, this, [this] { toCore(); });
    connect(m_long, &QRadioButton::toggled, this, [this] { toCore(); });
    connect(m_account, &QComboBox::currentIndexChanged, this, [this] { toCore(); });
    connect(m_position, &QSpinBox::editingFinished, this, [this] { typedPosition(); });
    connect(m_start, &QPushButton::clicked, this, [this] { startRobot(); });
    connect(m_pause, &QPushButton::clicked, this, [this] {
        m_core.pause();
        refresh();
    });

    m_step = new QTimer(this);
    m_step->setInterval(CBlader::kTimerMs);
    connect(m_step, &QTimer::timeout, this, [this] { m_core.timerStep(); });
    m_step->start();
    m_redraw = new QTimer(this);
    m_redraw->setInterval(200);
    connect(m_redraw, &QTimer::timeout, this, [this] {
        if (m_core.revision() != m_drawn) refresh();
    });
    m_redraw->start();
    refresh();
    resize(sizeHint().expandedTo(QSize(460, 0)));
}

BladerWindow::~BladerWindow() = default;

void BladerWindow::fillAccounts() {
    const std::string chosen = m_core.account().strAccountID;
    m_account->clear();
    std::vector<tagAccoutInfo> accounts;
    if (CSubscibeManage* host = m_manager.facade()) host->GetAvailableAccounts(accounts);
    const HelmsmanSettings& s = m_manager.settings();
    int select = accounts.empty() ? -1 : 0;
    for (std::size_t i = 0; i < accounts.size(); ++i) {
        const tagAccoutInfo& a = accounts[i];
        m_account->addItem(u8(a.strAccountID + "(" + a.strAccountName + ")"),
                           QStringList{u8(a.strAccountID), u8(a.strBrokerID)});
        const std::string& wanted = chosen.empty() && s.bUserDefaultAcct ? s.strAccountID : chosen;
        if (!wanted.empty() && a.strAccountID == wanted) select = static_cast<int>(i);
    }
    m_account->setCurrentIndex(select);
}

void BladerWindow::fillSymbols(const std::string& select) {
    const bool was = m_showing;
    m_showing = true;
    m_code->clear();
    if (CSubscibeManage* host = m_manager.facade(); host && m_exchange->currentIndex() >= 0) {
        std::vector<tagSymbol> symbols;
        host->GetExchangeSymbols(m_exchange->currentData().toInt(), symbols, 1);
        for (const tagSymbol& s : symbols) m_code->addItem(u8(s.strCode));
    }
    m_code->setCurrentText(u8(select));
    if (select.empty() && m_code->count() > 0) m_code->setCurrentIndex(0);
    m_showing = was;
}

tagBladerSetting BladerWindow::collect() const {
    tagBladerSetting s;
    s.strName = m_templateName;
    s.wExchangeID = static_cast<std::uint16_t>(m_exchange->currentData().toInt());
    s.szSymbolCode = m_code->currentText().trimmed().toStdString();
    s.bLong = m_long->isChecked() ? 1 : 0;
    s.nMaxPos = m_maxPos->value();
    s.nGridInterval = m_grid->value();
    s.nWinPoint = m_win->value();
    s.nTimeExit = m_timeExit->value();
    return s;
}

void BladerWindow::showSetting(const tagBladerSetting& s) {
    m_showing = true;
    m_templateName = s.strName;
    const int exchange = m_exchange->findData(static_cast<int>(s.wExchangeID));
    m_exchange->setCurrentIndex(exchange >= 0 ? exchange : 0);
    fillSymbols(s.szSymbolCode);
    (s.bLong ? m_long : m_short)->setChecked(true);
    m_maxPos->setValue(s.nMaxPos);
    m_grid->setValue(s.nGridInterval);
    m_win->setValue(s.nWinPoint);
    m_timeExit->setValue(s.nTimeExit);
    m_showing = false;
    toCore();
}

void BladerWindow::toCore() {
    if (m_showing || m_core.running()) return;
    const QStringList keys = m_account->currentData().toStringList();
    if (keys.size() == 2) {
        tagAccoutInfo a;
        a.strAccountID = keys[0].toStdString();
        a.strBrokerID = keys[1].toStdString();
        m_core.setAccount(a);
    }
    m_core.setSetting(collect());
    refresh();
}

void BladerWindow::startRobot() {
    if (m_account->count() == 0) fillAccounts();
    toCore();
    m_core.start();
    refresh();
}

void BladerWindow::typedPosition() {
    if (m_position->value() != m_core.held()) m_core.setPosition(m_position->value());
    refresh();
}

void BladerWindow::refresh() {
    m_drawn = m_core.revision();
    setWindowTitle(u8(m_core.caption()));
    const bool running = m_core.running();
    for (QWidget* w :
         std::initializer_list<QWidget*>{m_account, m_exchange, m_code, m_long, m_short, m_maxPos,
                                         m_grid, m_win, m_timeExit, m_templateButton})
        w->setEnabled(!running);
    m_start->setEnabled(!running);
    m_pause->setEnabled(running);
    const int d = m_core.priceDecimals();
    char quote[160];
    std::snprintf(quote, sizeof quote, t::kQuoteLine, priceText(m_core.last(), d).c_str(),
                  priceText(m_core.bid(), d).c_str(), priceText(m_core.ask(), d).c_str());
    m_quote->setText(u8(quote));
    if (!m_position->hasFocus()) {
        const QSignalBlocker quiet(m_position);
        m_position->setValue(m_core.held());
    }
    m_base->setText(u8(m_core.held() > 0 ? priceText(m_core.basePrice(), d) : t::kNone));
    m_openStatus->setText(u8(m_core.openStatus()));
    m_closeStatus->setText(u8(m_core.closeStatus()));
    m_totals->setText(u8(m_core.totals()));
    m_state->setText(u8(running ? t::kRunning : t::kPaused));
}

void BladerWindow::closeEvent(QCloseEvent* event) {
    if (!m_core.confirmClose()) {
        event->ignore();
        return;
    }
    m_step->stop();
    m_redraw->stop();
    event->accept();
}

WndHandle openBladerWindow(CHelmsmanManage& manager) {
    auto* w = new BladerWindow(manager, window_placement::hostWindow());
    w->setAttribute(Qt::WA_DeleteOnClose);
    window_placement::placeCentred(w);
    w->show();
    return w->core().handle();
}
