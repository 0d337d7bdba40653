#include "app/ui/trade_option_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleValidator>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/helmsman_manage.h"

namespace t = trade_option_text;

namespace {
QString q(const char* s) { return QString::fromUtf8(s); }

QLineEdit* numberBox(QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setAlignment(Qt::AlignRight);
    e->setMaximumWidth(80);
    return e;
}
}  // namespace

CTradeOptionPage::CTradeOptionPage(QWidget* parent, CHelmsmanManage* manager)
    : QWidget(parent), m_manager(manager ? *manager : CHelmsmanManage::instance()) {
    setWindowTitle(caption());
    setObjectName("CTradeOptionPage");

    m_defaultAccount = new QCheckBox(q(t::kDefaultAccount), this);
    m_accounts = new QComboBox(this);
    m_accounts->setMinimumWidth(200);
    m_loadLastSymbol = new QCheckBox(q(t::kLoadLastSymbol), this);
    m_useBidAsk = new QCheckBox(q(t::kUseBidAsk), this);
    m_showChart = new QCheckBox(q(t::kShowChart), this);
    m_showNormalConfirm = new QCheckBox(q(t::kShowNormalConfirm), this);
    m_showTriggerConfirm = new QCheckBox(q(t::kShowTriggerConfirm), this);
    m_showHotkeyConfirm = new QCheckBox(q(t::kShowHotkeyConfirm), this);
    m_showFilled = new QCheckBox(q(t::kShowFilled), this);
    m_useDefaultVolume = new QRadioButton(q(t::kUseDefaultVolume), this);
    m_saveLastVolume = new QRadioButton(q(t::kSaveLastVolume), this);
    m_defaultVolume = numberBox(this);
    m_useSingleLimit = new QCheckBox(q(t::kUseSingleLimit), this);
    m_maxSingle = numberBox(this);

    auto* accountRow = new QHBoxLayout;
    accountRow->addWidget(m_defaultAccount);
    accountRow->addWidget(m_accounts, 1);

    auto* ticketBox = new QGroupBox(QStringLiteral("舵手"), this);
    auto* ticket = new QVBoxLayout(ticketBox);
    for (QWidget* w : {static_cast<QWidget*>(m_loadLastSymbol), static_cast<QWidget*>(m_useBidAsk),
                       static_cast<QWidget*>(m_showChart),
                       static_cast<QWidget*>(m_showNormalConfirm),
                       static_cast<QWidget*>(m_showTriggerConfirm),
                       static_cast<QWidget*>(m_showHotkeyConfirm),
                       static_cast<QWidget*>(m_showFilled)})
        ticket->addWidget(w);

    auto* volumeBox = new QGroupBox(QStringLiteral("数量"), this);
    auto* volume = new QGridLayout(volumeBox);
    volume->addWidget(m_useDefaultVolume, 0, 0);
    volume->addWidget(m_defaultVolume, 0, 1);
    volume->addWidget(new QLabel(q(t::kLots), this), 0, 2);
    volume->addWidget(m_saveLastVolume, 1, 0, 1, 3);
    volume->addWidget(m_useSingleLimit, 2, 0);
    volume->addWidget(m_maxSingle, 2, 1);
    volume->addWidget(new QLabel(q(t::kLots), this), 2, 2);
    volume->setColumnStretch(3, 1);

    auto* root = new QVBoxLayout(this);
    root->addLayout(accountRow);
    root->addWidget(ticketBox);
    root->addWidget(volumeBox);
    root->addStretch(1);

    connect(m_defaultAccount, &QCheckBox::toggled, this, [this] { applyEnabling(); });
    connect(m_useSingleLimit, &QCheckBox::toggled, this, [this] { applyEnabling(); });
    connect(m_useDefaultVolume, &QRadioButton::toggled, this, [this] { applyEnabling(); });
    connect(m_saveLastVolume, &QRadioButton::toggled, this, [this] { applyEnabling(); });

    fillFromSettings();
}

QString CTradeOptionPage::caption() { return q(t::kCaption); }

void CTradeOptionPage::fillFromSettings() {
    const TradeOptionState page = CTradeOption::fill(m_manager.settings(), m_manager.facade());
    m_accountItems = page.accountItems;
    m_accounts->clear();
    for (const auto& item : page.accountItems) m_accounts->addItem(QString::fromStdString(item));
    m_accounts->setCurrentIndex(page.accountIndex);
    m_defaultAccount->setChecked(page.defaultAccount);
    m_loadLastSymbol->setChecked(page.loadLastSymbol);
    m_useBidAsk->setChecked(page.useBidAsk);
    m_showChart->setChecked(page.showChart);
    m_showNormalConfirm->setChecked(page.showNormalConfirm);
    m_showTriggerConfirm->setChecked(page.showTriggerConfirm);
    m_showHotkeyConfirm->setChecked(page.showHotkeyConfirm);
    m_showFilled->setChecked(page.showFilled);
    m_useDefaultVolume->setChecked(page.useDefaultVolume);
    m_saveLastVolume->setChecked(!page.useDefaultVolume);
    m_defaultVolume->setText(QString::fromStdString(page.defaultVolumeText));
    m_useSingleLimit->setChecked(page.useSingleLimit);
    m_maxSingle->setText(QString::fromStdString(page.maxSingleText));
    applyEnabling();
}

TradeOptionState CTradeOptionPage::state() const {
    TradeOptionState page;
    page.accountItems = m_accountItems;
    page.accountIndex = m_accounts->currentIndex();
    page.defaultAccount = m_defaultAccount->isChecked();
    page.loadLastSymbol = m_loadLastSymbol->isChecked();
    page.useBidAsk = m_useBidAsk->isChecked();
    page.showChart = m_showChart->isChecked();
    page.showNormalConfirm = m_showNormalConfirm->isChecked();
    page.showTriggerConfirm = m_showTriggerConfirm->isChecked();
    page.showHotkeyConfirm = m_showHotkeyConfirm->isChecked();
    page.showFilled = m_showFilled->isChecked();
    page.useDefaultVolume = m_useDefaultVolume->isChecked();
    page.defaultVolumeText = m_defaultVolume->text().toStdString();
    page.useSingleLimit = m_useSingleLimit->isChecked();
    page.maxSingleText = m_maxSingle->text().toStdString();
    return page;
}

bool CTradeOptionPage::onApply() {
    m_manager.saveSettings(
        CTradeOption::accept(state(), m_manager.settings(), m_manager.facade()));
    return true;
}

void CTradeOptionPage::applyEnabling() {
    const TradeOptionState page = state();
    m_accounts->setEnabled(page.accountListEnabled());
    m_defaultVolume->setEnabled(page.defaultVolumeEnabled());
    m_maxSingle->setEnabled(page.maxSingleEnabled());
}
