#include "app/trade_option.h"

#include "host/number_text.h"

std::string CTradeOption::accountItemText(const std::string& id, const std::string& name) {
    return id + "(" + name + ")";
}

std::string CTradeOption::formatWhole(double v) {
    return number_text::format(v, 0);
}

double CTradeOption::readNumber(const std::string& text) {
    // The box's leading number; "inf", "nan" and volumes outside the range are no numbers
    // (a cap of inf would let any volume through).
    const auto v = number_text::parseLeading(text);
    return v && number_text::isVolumeInRange(*v) ? *v : 0;
}

namespace {
std::vector<tagAccoutInfo> availableAccounts(CSubscibeManage* host) {
    std::vector<tagAccoutInfo> accounts;
    if (host) host->GetAvailableAccounts(accounts);
    return accounts;
}
}  // namespace

TradeOptionState CTradeOption::fill(const HelmsmanSettings& s, CSubscibeManage* host) {
    TradeOptionState page;
    const std::string saved = accountItemText(s.strAccountID, s.strAccountName);
    for (const auto& a : availableAccounts(host)) {
        page.accountItems.push_back(accountItemText(a.strAccountID, a.strAccountName));
        if (page.accountIndex < 0 && page.accountItems.back() == saved)
            page.accountIndex = static_cast<int>(page.accountItems.size()) - 1;
    }
    page.defaultAccount = s.bUserDefaultAcct != 0;
    page.loadLastSymbol = s.bLoadLastSymbol != 0;
    page.useBidAsk = s.bUseBidAskPrice != 0;
    page.showChart = s.bShowChartWnd != 0;
    page.showNormalConfirm = s.bShowNormalOrderConfirm != 0;
    page.showTriggerConfirm = s.bShowTriggerOrderConfirm != 0;
    page.showHotkeyConfirm = s.bShowHotkeyOrderConfirm != 0;
    page.showFilled = s.bShowFilledOrder != 0;
    page.useDefaultVolume = s.bSaveVolume == 0;
    if (page.useDefaultVolume) page.defaultVolumeText = formatWhole(s.dDefaultVolume);
    page.useSingleLimit = s.bUseSingleLimit != 0;
    page.maxSingleText = formatWhole(s.dMaxSingleLimitVol);
    return page;
}

HelmsmanSettings CTradeOption::accept(const TradeOptionState& page, const HelmsmanSettings& current,
                                      CSubscibeManage* host) {
    HelmsmanSettings s = current;  // keys the page does not show keep their values
    s.bUserDefaultAcct = page.defaultAccount;
    s.bLoadLastSymbol = page.loadLastSymbol;
    s.bUseBidAskPrice = page.useBidAsk;
    s.bShowChartWnd = page.showChart;
    s.bShowNormalOrderConfirm = page.showNormalConfirm;
    s.bShowTriggerOrderConfirm = page.showTriggerConfirm;
    s.bShowHotkeyOrderConfirm = page.showHotkeyConfirm;
    s.bShowFilledOrder = page.showFilled;
    s.bUseSingleLimit = page.useSingleLimit;

    const std::string text = page.accountText();
    if (!text.empty()) {
        for (const auto& a : availableAccounts(host)) {
            if (accountItemText(a.strAccountID, a.strAccountName) == text) {
                s.strAccountID = a.strAccountID;
                s.strAccountName = a.strAccountName;
                s.strBrokerID = a.strBrokerID;
                s.nAccountType = a.nAccountType;
                break;
            }
        }
    }

    if (page.useDefaultVolume) {
        s.bSaveVolume = 0;
        s.dDefaultVolume = readNumber(page.defaultVolumeText);
    } else {
        s.bSaveVolume = 1;
    }
    s.dMaxSingleLimitVol = readNumber(page.maxSingleText);
    return s;
}
