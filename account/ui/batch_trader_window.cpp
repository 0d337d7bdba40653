#include "account/ui/batch_trader_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <cmath>
#include <cstdio>

#include "account/account_strings.h"
#include "account/close_plan.h"
#include "account/ui/account_widgets.h"
#include "app/column_layout.h"
#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/number_text.h"
#include "order/ui/confirm_order_dialog.h"

using namespace account_text;
using account_ui::u8;

namespace {
enum { kColCheck, kColAccount, kColFactor, kColLots };
}

BatchTraderWindow::BatchTraderWindow(CHelmsmanManage& manage, const tagSymbol* symbol, QWidget* parent)
    : QDialog(parent), m_manage(manage), m_core(manage, symbol) {
    setWindowTitle(u8(kBatchCaption));
    m_exchange = new QComboBox(this);
    m_exchange->setObjectName("exchange");
    m_symbol = new QComboBox(this);
    m_symbol->setObjectName("symbol");
    m_symbol->setMinimumWidth(100);
    m_quote = new QLabel(this);
    m_quote->setObjectName("quote");
    m_openClose = new QComboBox(this);
    m_openClose->setObjectName("openClose");
    m_openClose->addItem(u8(kOpenCloseOpen), kOpen);
    m_openClose->addItem(u8(kOpenCloseClose), kClose);
    m_openClose->addItem(u8(kOpenCloseToday), kCloseToday);
    m_price = new QDoubleSpinBox(this);
    m_price->setObjectName("price");
    m_price->setRange(0, number_text::kMaxPrice);
    m_touch = new QCheckBox(u8(kCheckTouch), this);
    m_touch->setObjectName("touchPrice");
    m_touch->setChecked(m_core.touchPrice);
    m_byMultiple = new QRadioButton(u8(kModeMultiple), this);
    m_byMultiple->setChecked(true);
    m_bySet = new QRadioButton(u8(kModeCustom), this);
    m_base = new QDoubleSpinBox(this);
    m_base->setObjectName("baseVolume");
    m_base->setDecimals(0);
    m_base->setRange(0, number_text::kMaxVolume);
    m_base->setValue(m_core.baseVolume);
    m_set = new QComboBox(this);
    m_set->setObjectName("volumeSet");
    m_set->setEditable(true);
    m_set->setMinimumWidth(90);

    m_accounts = new QTableWidget(this);
    m_accounts->setObjectName("accounts");
    const auto columns = parseColumnLayout(kBatchColumns);
    m_accounts->setColumnCount(static_cast<int>(columns.size()));
    QStringList titles;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        titles << u8(columns[i].title);
        m_accounts->setColumnWidth(static_cast<int>(i), columns[i].width * 3 / 2);
    }
    m_accounts->setHorizontalHeaderLabels(titles);
    m_accounts->verticalHeader()->hide();
    m_accounts->horizontalHeader()->setStretchLastSection(true);
    m_accounts->setMinimumSize(420, 150);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(u8(kLabelSymbol), this), 0, 0);
    auto* symbolRow = new QHBoxLayout;
    symbolRow->addWidget(m_exchange);
    symbolRow->addWidget(m_symbol, 1);
    grid->addLayout(symbolRow, 0, 1, 1, 3);
    grid->addWidget(m_quote, 1, 0, 1, 4);
    grid->addWidget(new QLabel(u8(kLabelPrice), this), 2, 0);
    grid->addWidget(m_price, 2, 1);
    grid->addWidget(m_touch, 2, 2);
    grid->addWidget(m_openClose, 2, 3);
    grid->addWidget(m_byMultiple, 3, 0);
    grid->addWidget(new QLabel(u8(kLabelBaseVolume), this), 3, 1);
    grid->addWidget(m_base, 3, 2);
    grid->addWidget(m_bySet, 4, 0);
    grid->addWidget(new QLabel(u8(kLabelSet), this), 4, 1);
    grid->addWidget(m_set, 4, 2);

    auto* buy = new QPushButton(u8(kButtonBuy), this);
    buy->setObjectName("buy");
    buy->setStyleSheet(confirm_ui::directionButtonStyle(true));
    buy->setAutoDefault(false);
    buy->setMinimumHeight(32);
    auto* sell = new QPushButton(u8(kButtonSell), this);
    sell->setObjectName("sell");
    sell->setStyleSheet(confirm_ui::directionButtonStyle(false));
    sell->setAutoDefault(false);
    sell->setMinimumHeight(32);
    auto* save = new QPushButton(u8(kButtonSaveCsv), this);
    save->setObjectName("save");
    save->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(buy);
    buttons->addWidget(sell);
    buttons->addStretch();
    buttons->addWidget(save);
    m_status = new QLabel(this);
    m_status->setObjectName("statusLine");
    m_status->setWordWrap(true);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(m_accounts, 1);
    layout->addLayout(buttons);
    layout->addWidget(m_status);

    const std::vector<std::string> messages = m_core.loadFiles();
    QStringList text;
    for (const std::string& m : messages) text << u8(m);
    m_status->setText(text.join('\n'));

    fillSymbols();
    fillSets();
    fillAccounts();
    showQuote();

    connect(m_exchange, &QComboBox::activated, this, [this] { fillSymbols(); });
    connect(m_symbol, &QComboBox::activated, this, [this] {
        const tagSymbol s{static_cast<std::uint16_t>(m_exchange->currentData().toInt()),
                          m_symbol->currentText().toStdString()};
        m_core.selectSymbol(s);
        showQuote();
    });
    auto modeChanged = [this] {
        toCore();
        fillAccounts();
    };
    connect(m_byMultiple, &QRadioButton::toggled, this, modeChanged);
    connect(m_base, &QDoubleSpinBox::valueChanged, this, modeChanged);
    connect(m_set, &QComboBox::currentTextChanged, this, modeChanged);
    connect(m_touch, &QCheckBox::toggled, m_price, [this](bool on) { m_price->setEnabled(!on); });
    m_price->setEnabled(!m_touch->isChecked());
    connect(m_accounts, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
        if (m_filling) return;
        const int row = item->row();
        const auto& accounts = m_core.accounts().accounts();
        if (row < 0 || row >= static_cast<int>(accounts.size())) return;
        if (item->column() == kColCheck) {
            m_core.accounts().setChecked(row, item->checkState() == Qt::Checked);
        } else if (item->column() == kColFactor) {
            const auto v = number_text::parse(item->text().toStdString());
            if (v && *v >= 0 && *v <= number_text::kMaxVolume) {
                if (m_core.mode == CBatchTrader::Mode::Multiple)
                    m_core.setMultiple(accounts[row], *v);
                else
                    m_core.setSetVolume(accounts[row], std::floor(*v));
            }
        }
        fillAccounts();
    });
    connect(buy, &QPushButton::clicked, this, [this] { send(kDirBuy); });
    connect(sell, &QPushButton::clicked, this, [this] { send(kDirSell); });
    connect(save, &QPushButton::clicked, this, [this] {
        QStringList failed;
        for (const std::string& m : m_core.saveFiles()) failed << u8(m);
        m_status->setText(failed.isEmpty() ? QString() : failed.join('\n'));
    });
    m_core.setOnSymbolChanged([this] {
        fillSymbols();
        showQuote();
    });
    auto* timer = new QTimer(this);
    timer->setInterval(500);
    connect(timer, &QTimer::timeout, this, [this] {
        m_core.refreshQuote();
        showQuote();
    });
    timer->start();
}

void BatchTraderWindow::fillSymbols() {
    CSubscibeManage* f = m_manage.facade();
    if (!f) return;
    m_filling = true;
    if (m_exchange->count() == 0) {
        std::vector<tagExchangeInfo> exchanges;
        f->GetAllExchanges(exchanges);
        for (const auto& e : exchanges) m_exchange->addItem(u8(e.strName), e.nExchangeID);
    }
    const tagSymbol& current = m_core.symbol();
    if (!current.empty()) m_exchange->setCurrentIndex(std::max(0, m_exchange->findData(current.wExchangeID)));
    std::vector<tagSymbol> symbols;
    f->GetExchangeSymbols(m_exchange->currentData().toInt(), symbols, 1);
    m_symbol->clear();
    for (const auto& s : symbols) m_symbol->addItem(QString::fromStdString(s.strCode));
    const int i = current.empty() ? -1 : m_symbol->findText(QString::fromStdString(current.strCode));
    m_symbol->setCurrentIndex(i);
    m_filling = false;
    const int d = m_core.priceDecimals();
    m_price->setDecimals(d);
    m_price->setSingleStep(m_core.tickSize() > 0 ? m_core.tickSize() : std::pow(10.0, -d));
}

void BatchTraderWindow::fillSets() {
    m_filling = true;
    m_set->clear();
    for (const std::string& s : m_core.setNames()) m_set->addItem(u8(s));
    m_set->setCurrentText(u8(m_core.set));
    m_filling = false;
}

void BatchTraderWindow::fillAccounts() {
    m_filling = true;
    const auto& accounts = m_core.accounts().accounts();
    m_accounts->setRowCount(static_cast<int>(accounts.size()));
    for (std::size_t i = 0; i < accounts.size(); ++i) {
        const int row = static_cast<int>(i);
        auto* check = new QTableWidgetItem;
        check->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        check->setCheckState(m_core.accounts().checked(i) ? Qt::Checked : Qt::Unchecked);
        m_accounts->setItem(row, kColCheck, check);
        auto* name = new QTableWidgetItem(u8(close_plan::accountText(accounts[i])));
        name->setFlags(Qt::ItemIsEnabled);
        m_accounts->setItem(row, kColAccount, name);
        auto* factor = new QTableWidgetItem(QString::fromStdString(number_text::format(m_core.factorOf(accounts[i]))));
        factor->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        m_accounts->setItem(row, kColFactor, factor);
        auto* lots = new QTableWidgetItem(QString::fromStdString(number_text::format(m_core.volumeOf(accounts[i]))));
        lots->setFlags(Qt::ItemIsEnabled);
        lots->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        m_accounts->setItem(row, kColLots, lots);
    }
    m_filling = false;
}

void BatchTraderWindow::showQuote() {
    const auto& t = m_core.tick();
    const int d = m_core.priceDecimals();
    auto px = [d](double v) { return isPricePresent(v) ? QString::number(v, 'f', d) : u8(kNoValue); };
    m_quote->setText(QStringLiteral("%1 %2    %3 %4    %5 %6    %7 %8")
                         .arg(u8(kLabelBid), px(t.dBid), u8(kLabelAsk), px(t.dAsk), u8(kLabelUpper),
                              px(t.dUpperLimit), u8(kLabelLower), px(t.dLowerLimit)));
}

void BatchTraderWindow::toCore() {
    m_core.mode = m_byMultiple->isChecked() ? CBatchTrader::Mode::Multiple : CBatchTrader::Mode::CustomSet;
    m_core.baseVolume = m_base->value();
    m_core.set = m_set->currentText().toStdString();
    m_core.price = m_price->value();
    m_core.touchPrice = m_touch->isChecked();
    m_core.openClose = m_openClose->currentData().toInt();
}

CBatchTrader::Result BatchTraderWindow::send(std::int32_t direction) {
    toCore();
    const CBatchTrader::Result r = m_core.send(direction);
    if (r == CBatchTrader::Result::Sent) {
        char text[128];
        std::snprintf(text, sizeof text, kBatchSent, static_cast<int>(m_core.lastOrders().size()));
        m_status->setText(u8(text));
    }
    return r;
}

int openBatchTrader(const tagSymbol* symbol) {
    account_ui::showToolWindow(new BatchTraderWindow(CHelmsmanManage::instance(), symbol, window_placement::hostWindow()));
    return 1;
}
