// The conditional strategy's parameters: one record that is at once the window's settings,
// a named template of "AMTOrder.dat" ("QXAMT_1.0") and the default template (Profile.ini
// section "AMTORDER"), with the same key names in the same order.
//
// Template record layout, in file order (archive strings are GBK with a length prefix,
// integers and flags int32, reals binary64, all little-endian):
//   name                                         archive string
//   wExchangeID                                  uint16
//   szSymbolCode                                 archive string (at most 31 bytes kept)
//   bLong, bHedge                                int32
//   tStartTime                                   int64, calendar seconds
//   nDelaySecs, nEveryLots, nMaxLots, nOrderOffset, bEntryPriceCon, nEntryPriceCon   int32
//   dEntryPrice                                  float64
//   bEntryRangeFilter                            int32
//   dEntryRangeFilter                            float64
//   bEntryVolFilter, nEntryVolFilter, bEntryFilterOR   int32
//   entry conditions 1..3, each: bEntryFilterN int32, strEntryFilterN string,
//     nEntryFilterNType int32, bUseEntryKeyN int32, strEntryKeyN string,
//     dEntryFilterNValue float64
//   bExitPriceCon, nExitPriceCon                 int32
//   dExitPrice                                   float64
//   nStopBasePriceType, bStopLoss, nStopLossPoint, bTakeProfit, nTakeProfitPoint,
//     bTrailingStop, nTrailingStart, nTrailingStopType, nTrailingStopSet, bExitAtTime  int32
//   tExitTime                                    int64, calendar seconds
//   bExitVolFilter, nExitVolFilter, bExitFilterOR   int32
//   exit conditions 1..3, as the entry ones (bExitFilterN, strExitFilterN, ...)
//   account: strAccountID, strBrokerID, strAccountName   archive strings
// The account closes the record so the parameters keep their documented order; the
// template manager shows it, and applying a template selects it when it is logged on.
//
// Plain values and free functions; no locking.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/records.h"

class CArchiveReader;
class CArchiveWriter;
class CProfileIni;

// One formula condition: the value named by strKey, compared by nType with the value named
// by strCompareKey (bUseKey) or with the constant dValue.
struct tagAMTFilter {
    std::int32_t bEnabled = 0;
    std::string strKey;
    std::int32_t nType = 0;  // 0 >, 1 >=, 2 <, 3 <=, 4 equal, 5 not equal
    std::int32_t bUseKey = 0;
    std::string strCompareKey;
    double dValue = 0;
    friend bool operator==(const tagAMTFilter&, const tagAMTFilter&) = default;
};

struct tagAMTParams {
    std::string strName;  // the template's name (not in Profile.ini)
    std::uint16_t wExchangeID = 0;
    std::string szSymbolCode;
    std::int32_t bLong = 1;
    std::int32_t bHedge = 0;
    std::int64_t tStartTime = 0;
    std::int32_t nDelaySecs = 1;
    std::int32_t nEveryLots = 1;
    std::int32_t nMaxLots = 1;
    std::int32_t nOrderOffset = 0;
    std::int32_t bEntryPriceCon = 0;
    std::int32_t nEntryPriceCon = 0;  // 0 last >= price, 1 last <= price
    double dEntryPrice = -1;
    std::int32_t bEntryRangeFilter = 0;
    double dEntryRangeFilter = -1;
    std::int32_t bEntryVolFilter = 0;
    std::int32_t nEntryVolFilter = 1;
    std::int32_t bEntryFilterOR = 0;
    std::array<tagAMTFilter, 3> entryFilters;
    std::int32_t bExitPriceCon = 0;
    std::int32_t nExitPriceCon = 0;  // 0 last >= price, 1 last <= price
    double dExitPrice = -1;
    std::int32_t nStopBasePriceType = 0;  // 1 the average entry price, else the first
    std::int32_t bStopLoss = 0;
    std::int32_t nStopLossPoint = 10;
    std::int32_t bTakeProfit = 0;
    std::int32_t nTakeProfitPoint = 10;
    std::int32_t bTrailingStop = 0;
    std::int32_t nTrailingStart = 0;
    std::int32_t nTrailingStopType = 0;  // 0 points, 1 percent of the best profit
    std::int32_t nTrailingStopSet = 10;
    std::int32_t bExitAtTime = 0;
    std::int64_t tExitTime = 0;
    std::int32_t bExitVolFilter = 0;
    std::int32_t nExitVolFilter = 1;
    std::int32_t bExitFilterOR = 0;
    std::array<tagAMTFilter, 3> exitFilters;
    // The account the orders are for.
    std::string strAccountID;
    std::string strBrokerID;
    std::string strAccountName;

    tagSymbol symbol() const { return tagSymbol{wExchangeID, szSymbolCode}; }
    friend bool operator==(const tagAMTParams&, const tagAMTParams&) = default;
};

void writeTemplate(CArchiveWriter& out, const tagAMTParams& p);
void readTemplate(CArchiveReader& in, tagAMTParams& p);

// The default template's section and its keys.
inline constexpr const char* kAMTSection = "AMTORDER";
// Writes every key (integers "%d", times as whole seconds, reals in their shortest exact
// form), in memory; the caller saves the file.
void writeAMTDefault(CProfileIni& ini, const tagAMTParams& p);
// Reads the section; absent keys keep the record's defaults.
tagAMTParams readAMTDefault(const CProfileIni& ini);

// The template manager's row: name, account, instrument, lots per order, maximum.
std::vector<std::string> amtTemplateRow(const tagAMTParams& p);
