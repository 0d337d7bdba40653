// The grid spread's settings: one record held three ways — the robot's working copy, its
// Profile.ini section "GridsSpread" (the default template) and the records of its template
// file ("GridsSpread.dat", magic "QXGS_1.1").
//
// Template file record, in file order: the name (archive string), wExchangeID1 (uint16),
// szSymbolCode1 (archive string), wExchangeID2, szSymbolCode2, then nSpreadLots1,
// nSpreadLots2, bLong, nEveryLots, nMaxLots, nGridLots (int32 each), dFirstGrid,
// dGridInterval, dWinGrid (float64 each), nMonitorEdge, nMonitorThreshold, nFixupOffset,
// nFilterLength, nFilterOffset (int32 each). The two accounts are not part of a template:
// they belong to the trader's session and are kept in the Profile.ini section only.
//
// Plain value type and free functions; no locking.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/records.h"
#include "spread/archive.h"

class CProfileIni;

struct GridsSpreadSettings {
    std::string strName;  // the current template's name (not kept in Profile.ini)
    std::uint16_t wExchangeID1 = 0;
    std::string szSymbolCode1;
    std::uint16_t wExchangeID2 = 0;
    std::string szSymbolCode2;
    std::int32_t nSpreadLots1 = 1;
    std::int32_t nSpreadLots2 = 1;
    std::int32_t bLong = 1;  // 1: buy the spread at falling levels; 0: sell it at rising ones
    std::int32_t nEveryLots = 1;
    std::int32_t nMaxLots = 1;
    std::int32_t nGridLots = 1;
    double dFirstGrid = 0;
    double dGridInterval = 100;
    double dWinGrid = 20;
    std::int32_t nMonitorEdge = 10;      // ticks of B
    std::int32_t nMonitorThreshold = 1;  // ticks of B
    std::int32_t nFixupOffset = 0;       // ticks of A
    std::int32_t nFilterLength = 300;    // quotes of A
    std::int32_t nFilterOffset = 4;      // ticks of A
    // The trading accounts of the two legs (Profile.ini only).
    std::string strAccountID1;
    std::string strBrokerID1;
    std::string strAccountID2;
    std::string strBrokerID2;

    tagSymbol symbolA() const { return {wExchangeID1, szSymbolCode1}; }
    tagSymbol symbolB() const { return {wExchangeID2, szSymbolCode2}; }

    friend bool operator==(const GridsSpreadSettings&, const GridsSpreadSettings&) = default;
};

// Reads the section (absent keys take their defaults; reals are read as decimal text).
GridsSpreadSettings readGridsSpreadSettings(const CProfileIni& ini);
// Writes every key of the section, in memory; the caller saves the file. Integers "%d",
// codes "%s", reals in their shortest exact decimal form.
void writeGridsSpreadSettings(CProfileIni& ini, const GridsSpreadSettings& s);

void writeTemplate(CArchiveWriter& out, const GridsSpreadSettings& s);
void readTemplate(CArchiveReader& in, GridsSpreadSettings& s);
// Copies what a template holds into `current`, keeping the accounts.
void applyGridsTemplate(GridsSpreadSettings& current, const GridsSpreadSettings& t);
// The template manager's row: name, code and ratio of A, code and ratio of B, direction, the
// first level, the interval and the profit step.
std::vector<std::string> gridsTemplateRow(const GridsSpreadSettings& s);
