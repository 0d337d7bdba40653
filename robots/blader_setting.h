// The ladder robot's settings: one record that is both a named template of its template file
// ("blader.dat", magic "QXBT_1.0") and, without the name, its default template in
// Profile.ini section "Blader".
//
// File layout of a record: the name (archive string), wExchangeID (uint16), szSymbolCode
// (archive string, at most 31 bytes of GBK kept), then bLong, nMaxPos, nGridInterval,
// nWinPoint and nTimeExit as int32. Profile.ini holds the same keys, integers written "%d".
//
// Plain values and free functions; no state.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "spread/archive.h"

class CProfileIni;

inline constexpr const char* kBladerSection = "Blader";

struct tagBladerSetting {
    std::string strName;  // the template's name (not kept in Profile.ini)
    std::uint16_t wExchangeID = 0;
    std::string szSymbolCode;
    std::int32_t bLong = 1;          // 1 builds a long position, 0 a short one
    std::int32_t nMaxPos = 2;        // most entries held at once
    std::int32_t nGridInterval = 5;  // ticks between entries
    std::int32_t nWinPoint = 5;      // ticks of profit at which the newest entry is closed
    std::int32_t nTimeExit = 300;    // seconds a position may live from its first entry; 0: none

    friend bool operator==(const tagBladerSetting&, const tagBladerSetting&) = default;
};

void writeTemplate(CArchiveWriter& out, const tagBladerSetting& s);
void readTemplate(CArchiveReader& in, tagBladerSetting& s);

// The default template: the section's keys, the defaults above for what is absent.
tagBladerSetting loadBladerDefault(const CProfileIni& ini);
// Writes every key of the section in memory; the caller saves the file.
void writeBladerDefault(CProfileIni& ini, const tagBladerSetting& s);

// The template manager's row: name, code, side, then the four numbers.
std::vector<std::string> bladerTemplateRow(const tagBladerSetting& s);
