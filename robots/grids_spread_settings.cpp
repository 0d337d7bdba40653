#include "robots/grids_spread_settings.h"

#include <charconv>
#include <cstdlib>

#include "app/profile_ini.h"
#include "robots/grids_spread_strings.h"
#include "spread/spread_templates.h"

namespace {

using S = GridsSpreadSettings;

struct IntKey {
    const char* key;
    std::int32_t S::*field;
};
struct RealKey {
    const char* key;
    double S::*field;
};
struct TextKey {
    const char* key;
    std::string S::*field;
};

// In the order of the template file (after the instruments).
constexpr IntKey kLots[] = {{"nSpreadLots1", &S::nSpreadLots1},
                            {"nSpreadLots2", &S::nSpreadLots2},
                            {"bLong", &S::bLong},
                            {"nEveryLots", &S::nEveryLots},
                            {"nMaxLots", &S::nMaxLots},
                            {"nGridLots", &S::nGridLots}};
constexpr RealKey kReals[] = {{"dFirstGrid", &S::dFirstGrid},
                              {"dGridInterval", &S::dGridInterval},
                              {"dWinGrid", &S::dWinGrid}};
constexpr IntKey kMonitor[] = {{"nMonitorEdge", &S::nMonitorEdge},
                               {"nMonitorThreshold", &S::nMonitorThreshold},
                               {"nFixupOffset", &S::nFixupOffset},
                               {"nFilterLength", &S::nFilterLength},
                               {"nFilterOffset", &S::nFilterOffset}};
constexpr TextKey kAccounts[] = {{"strAccountID1", &S::strAccountID1},
                                 {"strBrokerID1", &S::strBrokerID1},
                                 {"strAccountID2", &S::strAccountID2},
                                 {"strBrokerID2", &S::strBrokerID2}};

std::string shortest(double v) {
    char text[32];
    const auto r = std::to_chars(text, text + sizeof text, v);
    return std::string(text, r.ptr);
}

double readReal(const CProfileIni& ini, const char* key, double def) {
    if (!ini.hasKey(grid_text::kSection, key)) return def;
    const std::string text = ini.getString(grid_text::kSection, key);
    return std::strtod(text.c_str(), nullptr);  // not a number reads as 0
}

}  // namespace

GridsSpreadSettings readGridsSpreadSettings(const CProfileIni& ini) {
    const char* sec = grid_text::kSection;
    S s;
    s.wExchangeID1 = static_cast<std::uint16_t>(ini.getInt(sec, "wExchangeID1", 0));
    s.szSymbolCode1 = ini.getString(sec, "szSymbolCode1", {}, kTemplateCodeBytes + 1);
    s.wExchangeID2 = static_cast<std::uint16_t>(ini.getInt(sec, "wExchangeID2", 0));
    s.szSymbolCode2 = ini.getString(sec, "szSymbolCode2", {}, kTemplateCodeBytes + 1);
    for (const IntKey& k : kLots) s.*k.field = ini.getInt(sec, k.key, s.*k.field);
    for (const RealKey& k : kReals) s.*k.field = readReal(ini, k.key, s.*k.field);
    for (const IntKey& k : kMonitor) s.*k.field = ini.getInt(sec, k.key, s.*k.field);
    for (const TextKey& k : kAccounts) s.*k.field = ini.getString(sec, k.key);
    return s;
}

void writeGridsSpreadSettings(CProfileIni& ini, const GridsSpreadSettings& s) {
    const char* sec = grid_text::kSection;
    ini.writeString(sec, "wExchangeID1", std::to_string(s.wExchangeID1));
    ini.writeString(sec, "szSymbolCode1", s.szSymbolCode1);
    ini.writeString(sec, "wExchangeID2", std::to_string(s.wExchangeID2));
    ini.writeString(sec, "szSymbolCode2", s.szSymbolCode2);
    for (const IntKey& k : kLots) ini.writeString(sec, k.key, std::to_string(s.*k.field));
    for (const RealKey& k : kReals) ini.writeString(sec, k.key, shortest(s.*k.field));
    for (const IntKey& k : kMonitor) ini.writeString(sec, k.key, std::to_string(s.*k.field));
    for (const TextKey& k : kAccounts) ini.writeString(sec, k.key, s.*k.field);
}

void writeTemplate(CArchiveWriter& out, const GridsSpreadSettings& s) {
    out.writeString(s.strName);
    out.writeU16(s.wExchangeID1);
    out.writeString(s.szSymbolCode1);
    out.writeU16(s.wExchangeID2);
    out.writeString(s.szSymbolCode2);
    for (const IntKey& k : kLots) out.writeI32(s.*k.field);
    for (const RealKey& k : kReals) out.writeF64(s.*k.field);
    for (const IntKey& k : kMonitor) out.writeI32(s.*k.field);
}

void readTemplate(CArchiveReader& in, GridsSpreadSettings& s) {
    in.readString(s.strName);
    in.readU16(s.wExchangeID1);
    in.readString(s.szSymbolCode1, kTemplateCodeBytes);
    in.readU16(s.wExchangeID2);
    in.readString(s.szSymbolCode2, kTemplateCodeBytes);
    for (const IntKey& k : kLots) in.readI32(s.*k.field);
    for (const RealKey& k : kReals) in.readF64(s.*k.field);
    for (const IntKey& k : kMonitor) in.readI32(s.*k.field);
}

void applyGridsTemplate(GridsSpreadSettings& current, const GridsSpreadSettings& t) {
    GridsSpreadSettings next = t;
    for (const TextKey& k : kAccounts) next.*k.field = current.*k.field;
    current = std::move(next);
}

std::vector<std::string> gridsTemplateRow(const GridsSpreadSettings& s) {
    return {s.strName,
            s.szSymbolCode1,
            std::to_string(s.nSpreadLots1),
            s.szSymbolCode2,
            std::to_string(s.nSpreadLots2),
            s.bLong ? grid_text::kBuySpread : grid_text::kSellSpread,
            shortest(s.dFirstGrid),
            shortest(s.dGridInterval),
            shortest(s.dWinGrid)};
}
