#include "algo/ui/algo_order_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <cstdio>

#include "algo/algo_strings.h"
#include "algo/ui/algo_setting_dialog.h"
#include "app/helmsman_manage.h"
#include "host/codes.h"

namespace {

using namespace algo_text;

QString qs(const char* s) {
    return QString::fromUtf8(s);
}

// The exchange that lists `code`, or -1.
int exchangeOf(CSubscibeManage& host, const std::string& code) {
    std::vector<tagExchangeInfo> exchanges;
    host.GetAllExchanges(exchanges);
    for (const auto& e : exchanges) {
        std::vector<tagSymbol> symbols;
        host.GetExchangeSymbols(e.nExchangeID, symbols, 0);
        for (const auto& s : symbols)
            if (s.strCode == code) return e.nExchangeID;
    }
    return -1;
}

}  // namespace

AlgoOrderDialog::AlgoOrderDialog(CHelmsmanManage& manager, const tagAlgoSetting& setting,
                                 QWidget* parent)
    : QDialog(parent), m_manager(manager), m_setting(setting) {
    setWindowTitle(qs(kFormCaption));
    setObjectName("AlgoOrderDialog");
    m_account = new QComboBox(this);
    m_account->setObjectName("account");
    if (CSubscibeManage* host = m_manager.facade()) host->GetAvailableAccounts(m_accounts);
    for (const auto& a : m_accounts)
        m_account->addItem(QString::fromStdString(a.strAccountID + "(" + a.strAccountName + ")"));
    m_symbol = new QLineEdit(this);
    m_symbol->setObjectName("symbol");
    m_side = new QComboBox(this);
    m_side->setObjectName("side");
    m_side->addItems({qs(kBuy), qs(kSell)});
    m_openClose = new QComboBox(this);
    m_openClose->setObjectName("openClose");
    for (int f : {kOpen, kClose, kCloseToday})
        m_openClose->addItem(QString::fromUtf8(codes::openCloseText(f).data(),
                                               static_cast<int>(codes::openCloseText(f).size())));
    m_volume = new QSpinBox(this);
    m_volume->setObjectName("volume");
    m_volume->setRange(1, 1000000);
    m_volume->setValue(std::max(1, setting.nBaseLine));
    m_startNow = new QCheckBox(qs(kFormStartNow), this);
    m_startNow->setChecked(true);

    auto* settings = new QPushButton(qs(kFormSettings), this);
    settings->setObjectName("settings");
    connect(settings, &QPushButton::clicked, this,
            [this] { editAlgoSettingModal(m_setting, m_manager, this); });

    auto* form = new QFormLayout(this);
    form->addRow(qs(kFormAccount), m_account);
    form->addRow(qs(kFormSymbol), m_symbol);
    form->addRow(qs(kFormSide), m_side);
    form->addRow(qs(kFormOpenClose), m_openClose);
    form->addRow(qs(kFormVolume), m_volume);
    form->addRow(m_startNow, settings);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(qs(kOk), QDialogButtonBox::AcceptRole)->setObjectName("ok");
    buttons->addButton(qs(kCancel), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        if (collect()) accept();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

bool AlgoOrderDialog::startNow() const {
    return m_startNow->isChecked();
}

bool AlgoOrderDialog::collect() {
    CSubscibeManage* host = m_manager.facade();
    const int a = m_account->currentIndex();
    if (!host || a < 0 || a >= static_cast<int>(m_accounts.size())) {
        m_manager.prompter().inform(kCaptionInfo, kNotLoggedOn);
        return false;
    }
    const std::string code = m_symbol->text().trimmed().toStdString();
    const int exchange = code.empty() ? -1 : exchangeOf(*host, code);
    if (exchange < 0) {
        char buf[128];
        std::snprintf(buf, sizeof buf, kUnknownSymbol, code.c_str());
        m_manager.prompter().inform(kCaptionInfo, buf);
        return false;
    }
    m_order = tagBrokerOrder{};
    m_order.strAccountID = m_accounts[a].strAccountID;
    m_order.strBrokerID = m_accounts[a].strBrokerID;
    m_order.nExchangeID = exchange;
    m_order.strCode = m_order.strSymbolText = code;
    m_order.nDirection = m_side->currentIndex() == 0 ? kDirBuy : kDirSell;
    m_order.nOpenClose = m_openClose->currentIndex();
    m_order.dVolume = m_volume->value();
    m_order.strRemark = kFormCaption;
    return true;
}
