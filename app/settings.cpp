#include "app/settings.h"

#include <cstdio>
#include <string>

#include "app/profile_ini.h"

namespace {

// The symbol code field holds at most 8 bytes.
constexpr std::size_t kSymbolCodeBytes = 8;

std::string formatInt(std::int32_t v) {
    return std::to_string(v);
}

// "%.f": no decimals, rounded the way the C library rounds (half to even with glibc, so 2.5
// is written "2"). A reload reads the whole number back.
std::string formatWhole(double v) {
    char small[64];
    int n = std::snprintf(small, sizeof small, "%.f", v);
    if (n < 0) return "0";
    if (static_cast<std::size_t>(n) < sizeof small) return std::string(small, n);
    std::string big(static_cast<std::size_t>(n) + 1, '\0');
    std::snprintf(big.data(), big.size(), "%.f", v);
    big.resize(static_cast<std::size_t>(n));
    return big;
}

}  // namespace

HelmsmanSettings loadSettings(const std::filesystem::path& profileIni) {
    const CProfileIni ini(profileIni);
    const char* sec = kHelmsmanSection;
    HelmsmanSettings d;  // the defaults
    HelmsmanSettings s;
    auto i = [&](const char* key, std::int32_t def) { return ini.getInt(sec, key, def); };
    // Double keys are stored as whole numbers; any fraction in the file is dropped on read.
    auto w = [&](const char* key, double def) {
        return static_cast<double>(ini.getInt(sec, key, static_cast<std::int32_t>(def)));
    };
    auto t = [&](const char* key) { return ini.getString(sec, key, "", kProfileStringSize); };

    s.bUserDefaultAcct = i("bUserDefaultAcct", d.bUserDefaultAcct);
    s.strAccountID = t("strAccountID");
    s.strAccountName = t("strAccountName");
    s.strBrokerID = t("strBrokerID");
    s.nAccountType = i("nAccountType", d.nAccountType);
    s.bLoadLastSymbol = i("bLoadLastSymbol", d.bLoadLastSymbol);
    // The field is 16 bits wide; a larger number keeps its low 16 bits.
    s.wExchangeID = static_cast<std::uint16_t>(i("wExchangeID", d.wExchangeID));
    s.szSymbolCode = cutGbk(t("szSymbolCode"), kSymbolCodeBytes);
    s.bSaveVolume = i("bSaveVolume", d.bSaveVolume);
    s.dLastVolume = w("dLastVolume", d.dLastVolume);
    s.dDefaultVolume = w("dDefaultVolume", d.dDefaultVolume);
    s.bUseSingleLimit = i("bUseSingleLimit", d.bUseSingleLimit);
    s.dMaxSingleLimitVol = w("dMaxSingleLimitVol", d.dMaxSingleLimitVol);
    s.bShowChartWnd = i("bShowChartWnd", d.bShowChartWnd);
    s.bShowNormalOrderConfirm = i("bShowNormalOrderConfirm", d.bShowNormalOrderConfirm);
    s.bShowTriggerOrderConfirm = i("bShowTriggerOrderConfirm", d.bShowTriggerOrderConfirm);
    s.bShowHotkeyOrderConfirm = i("bShowHotkeyOrderConfirm", d.bShowHotkeyOrderConfirm);
    s.bShowFilledOrder = i("bShowFilledOrder", d.bShowFilledOrder);
    s.bUseBidAskPrice = i("bUseBidAskPrice", d.bUseBidAskPrice);
    s.bUserBidAskOffset = i("bUserBidAskOffset", d.bUserBidAskOffset);
    s.nOffsetPoint = i("nOffsetPoint", d.nOffsetPoint);
    s.bUseAlgoTrading = i("bUseAlgoTrading", d.bUseAlgoTrading);
    s.bUseLocalTrigger = i("bUseLocalTrigger", d.bUseLocalTrigger);
    s.bUseAlgoTradingTrigger = i("bUseAlgoTradingTrigger", d.bUseAlgoTradingTrigger);
    s.bAutoFillStopLoss = i("bAutoFillStopLoss", d.bAutoFillStopLoss);
    s.nAFStopLossPoint = i("nAFStopLossPoint", d.nAFStopLossPoint);
    s.bAutoFillTakeProfit = i("bAutoFillTakeProfit", d.bAutoFillTakeProfit);
    s.nAFTakeProfitPoint = i("nAFTakeProfitPoint", d.nAFTakeProfitPoint);
    s.bAutoKP = i("bAutoKP", d.bAutoKP);
    s.nMinAutoKPPos = i("nMinAutoKPPos", d.nMinAutoKPPos);
    return s;
}

FileWriteResult saveSettings(const std::filesystem::path& profileIni, const HelmsmanSettings& s) {
    CProfileIni ini(profileIni);
    const char* sec = kHelmsmanSection;
    auto i = [&](const char* key, std::int32_t v) { ini.writeString(sec, key, formatInt(v)); };
    auto w = [&](const char* key, double v) { ini.writeString(sec, key, formatWhole(v)); };
    auto t = [&](const char* key, const std::string& v) { ini.writeString(sec, key, v); };

    // Table order: a fresh file lists the keys in this order. bAutoKP and nMinAutoKPPos are
    // the user's to edit by hand and are deliberately not written.
    i("bUserDefaultAcct", s.bUserDefaultAcct);
    t("strAccountID", s.strAccountID);
    t("strAccountName", s.strAccountName);
    t("strBrokerID", s.strBrokerID);
    i("nAccountType", s.nAccountType);
    i("bLoadLastSymbol", s.bLoadLastSymbol);
    i("wExchangeID", s.wExchangeID);
    t("szSymbolCode", s.szSymbolCode);
    i("bSaveVolume", s.bSaveVolume);
    w("dLastVolume", s.dLastVolume);
    w("dDefaultVolume", s.dDefaultVolume);
    i("bUseSingleLimit", s.bUseSingleLimit);
    w("dMaxSingleLimitVol", s.dMaxSingleLimitVol);
    i("bShowChartWnd", s.bShowChartWnd);
    i("bShowNormalOrderConfirm", s.bShowNormalOrderConfirm);
    i("bShowTriggerOrderConfirm", s.bShowTriggerOrderConfirm);
    i("bShowHotkeyOrderConfirm", s.bShowHotkeyOrderConfirm);
    i("bShowFilledOrder", s.bShowFilledOrder);
    i("bUseBidAskPrice", s.bUseBidAskPrice);
    i("bUserBidAskOffset", s.bUserBidAskOffset);
    i("nOffsetPoint", s.nOffsetPoint);
    i("bUseAlgoTrading", s.bUseAlgoTrading);
    i("bUseLocalTrigger", s.bUseLocalTrigger);
    i("bUseAlgoTradingTrigger", s.bUseAlgoTradingTrigger);
    i("bAutoFillStopLoss", s.bAutoFillStopLoss);
    i("nAFStopLossPoint", s.nAFStopLossPoint);
    i("bAutoFillTakeProfit", s.bAutoFillTakeProfit);
    i("nAFTakeProfitPoint", s.nAFTakeProfitPoint);
    return ini.save();
}
