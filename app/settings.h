// The module's settings record (Profile.ini, section "Helmsman") and its load and save.
//
// A plain value: the manager owns the in-memory copy, every tool reads it, the options page
// and the order ticket save through the manager.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "app/file_replace.h"

inline constexpr const char* kHelmsmanSection = "Helmsman";

struct HelmsmanSettings {
    std::int32_t bUserDefaultAcct = 0;
    std::string strAccountID;
    std::string strAccountName;
    std::string strBrokerID;
    std::int32_t nAccountType = 1;
    std::int32_t bLoadLastSymbol = 0;
    std::uint16_t wExchangeID = 0;
    std::string szSymbolCode;  // at most 8 bytes
    std::int32_t bSaveVolume = 0;
    double dLastVolume = 0;
    double dDefaultVolume = 0;
    std::int32_t bUseSingleLimit = 0;
    double dMaxSingleLimitVol = 0;
    std::int32_t bShowChartWnd = 0;
    std::int32_t bShowNormalOrderConfirm = 1;
    std::int32_t bShowTriggerOrderConfirm = 1;
    std::int32_t bShowHotkeyOrderConfirm = 1;
    std::int32_t bShowFilledOrder = 0;
    std::int32_t bUseBidAskPrice = 0;
    std::int32_t bUserBidAskOffset = 0;
    std::int32_t nOffsetPoint = 0;
    std::int32_t bUseAlgoTrading = 0;
    std::int32_t bUseLocalTrigger = 0;
    std::int32_t bUseAlgoTradingTrigger = 0;
    std::int32_t bAutoFillStopLoss = 0;
    std::int32_t nAFStopLossPoint = 20;
    std::int32_t bAutoFillTakeProfit = 0;
    std::int32_t nAFTakeProfitPoint = 20;
    // Read at start, never written: the user sets these by editing the file.
    std::int32_t bAutoKP = 0;
    std::int32_t nMinAutoKPPos = 2;

    friend bool operator==(const HelmsmanSettings&, const HelmsmanSettings&) = default;
};

// Reads section "Helmsman" of the file; absent keys take their defaults. Never throws.
HelmsmanSettings loadSettings(const std::filesystem::path& profileIni);
// Writes every key except bAutoKP and nMinAutoKPPos, in table order, keeping every other
// key and line of the file. Never throws. The result may be shown or logged; the module
// itself reports nothing and its in-memory settings stay as they are either way.
FileWriteResult saveSettings(const std::filesystem::path& profileIni, const HelmsmanSettings& s);
