#include "spread/spread_templates.h"

#include <cstdio>

#include "app/profile_ini.h"
#include "host/number_text.h"
#include "spread/spread_strings.h"

namespace {

void writeLeg(CArchiveWriter& out, const tagTemplateLeg& leg) {
    out.writeU16(leg.wExchangeID);
    out.writeString(leg.szSymbolCode);
}

void readLeg(CArchiveReader& in, tagTemplateLeg& leg) {
    in.readU16(leg.wExchangeID);
    in.readString(leg.szSymbolCode, kTemplateCodeBytes);
}

template <class T>
std::vector<std::string> rowOf(const T& t) {
    std::vector<std::string> row{t.strName};
    for (int i = 0; i < 3; ++i) {
        if (i == 2 && !t.bButterfly) {
            row.push_back(spread_text::kNotApplicable);
            row.push_back(spread_text::kNotApplicable);
        } else {
            row.push_back(t.legs[i].szSymbolCode);
            row.push_back(std::to_string(t.nSpreadLots[i]));
        }
    }
    return row;
}

std::string formatG(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%g", v);
    return buf;
}

// The legs' keys both spread tools keep: wExchangeID1..3 and szSymbolCode1..3, then
// dSpreadUnit1..3, then nSpreadLots1..3.
template <class T>
void writeLegKeys(CProfileIni& ini, const char* s, const T& t) {
    for (int i = 0; i < 3; ++i) {
        const std::string n = std::to_string(i + 1);
        ini.writeString(s, "wExchangeID" + n, std::to_string(t.legs[i].wExchangeID));
        ini.writeString(s, "szSymbolCode" + n, t.legs[i].szSymbolCode);
    }
    for (int i = 0; i < 3; ++i)
        ini.writeString(s, "dSpreadUnit" + std::to_string(i + 1), formatG(t.dSpreadUnit[i]));
    for (int i = 0; i < 3; ++i)
        ini.writeString(s, "nSpreadLots" + std::to_string(i + 1), std::to_string(t.nSpreadLots[i]));
}

// Reads them back: an absent key keeps the record's default, reals are read as reals and
// codes are cut like a record's.
template <class T>
void readLegKeys(const CProfileIni& ini, const char* s, T& t) {
    for (int i = 0; i < 3; ++i) {
        const std::string n = std::to_string(i + 1);
        t.legs[i].wExchangeID =
            static_cast<std::uint16_t>(ini.getInt(s, "wExchangeID" + n, t.legs[i].wExchangeID));
        t.legs[i].szSymbolCode = ini.getString(s, "szSymbolCode" + n, {}, kTemplateCodeBytes + 1);
        if (const auto v = number_text::parse(ini.getString(s, "dSpreadUnit" + n)))
            t.dSpreadUnit[i] = *v;
        t.nSpreadLots[i] = ini.getInt(s, "nSpreadLots" + n, t.nSpreadLots[i]);
    }
}

}  // namespace

void writeTemplate(CArchiveWriter& out, const tagManualSpreadTemplate& t) {
    out.writeString(t.strName);
    for (const auto& leg : t.legs) writeLeg(out, leg);
    for (double u : t.dSpreadUnit) out.writeF64(u);
    for (std::int32_t n : t.nSpreadLots) out.writeI32(n);
    for (std::int32_t v : {t.nEveryLots, t.nOrderOffset, t.bButterfly, t.bChange, t.bExit,
                           t.bConfirmOrder, t.bFirstLotsConfirm})
        out.writeI32(v);
}

void readTemplate(CArchiveReader& in, tagManualSpreadTemplate& t) {
    in.readString(t.strName);
    for (auto& leg : t.legs) readLeg(in, leg);
    for (double& u : t.dSpreadUnit) in.readF64(u);
    for (std::int32_t& n : t.nSpreadLots) in.readI32(n);
    for (std::int32_t* v : {&t.nEveryLots, &t.nOrderOffset, &t.bButterfly, &t.bChange, &t.bExit,
                            &t.bConfirmOrder, &t.bFirstLotsConfirm})
        in.readI32(*v);
}

void writeManualSpreadDefault(CProfileIni& ini, const tagManualSpreadTemplate& t) {
    const char* s = kManualSpreadSection;
    writeLegKeys(ini, s, t);
    const std::pair<const char*, std::int32_t> ints[] = {{"nEveryLots", t.nEveryLots},
                                                         {"nOrderOffset", t.nOrderOffset},
                                                         {"bButterfly", t.bButterfly},
                                                         {"bChange", t.bChange},
                                                         {"bExit", t.bExit},
                                                         {"bConfirmOrder", t.bConfirmOrder},
                                                         {"bFirstLotsConfirm", t.bFirstLotsConfirm},
                                                         {"bShowChart", t.bShowChart}};
    for (const auto& [key, value] : ints) ini.writeString(s, key, std::to_string(value));
}

tagManualSpreadTemplate readManualSpreadDefault(const CProfileIni& ini) {
    const char* s = kManualSpreadSection;
    tagManualSpreadTemplate t;
    readLegKeys(ini, s, t);
    const std::pair<const char*, std::int32_t*> ints[] = {{"nEveryLots", &t.nEveryLots},
                                                          {"nOrderOffset", &t.nOrderOffset},
                                                          {"bButterfly", &t.bButterfly},
                                                          {"bChange", &t.bChange},
                                                          {"bExit", &t.bExit},
                                                          {"bConfirmOrder", &t.bConfirmOrder},
                                                          {"bFirstLotsConfirm", &t.bFirstLotsConfirm},
                                                          {"bShowChart", &t.bShowChart}};
    for (const auto& [key, value] : ints)
        *value = ini.getInt(s, key, *value);
    return t;
}

void writeTemplate(CArchiveWriter& out, const tagAutoSpreadTemplate& t) {
    out.writeString(t.strName);
    for (const auto& a : t.accounts) {
        out.writeString(a.strAccountID);
        out.writeString(a.strBrokerID);
        out.writeString(a.strAccountName);
        out.writeString(a.strAccountText);
        out.writeI32(a.nAccountType);
    }
    for (const auto& leg : t.legs) writeLeg(out, leg);
    for (double u : t.dSpreadUnit) out.writeF64(u);
    for (std::int32_t n : t.nSpreadLots) out.writeI32(n);
    for (std::int32_t v : {t.nEveryLots, t.nMaxLots, t.nOrderOffset, t.bButterfly, t.bLongEntry,
                           t.bLongExit, t.bShortEntry, t.bShortExit, t.bChange, t.bStepTrade,
                           t.bStepExit, t.nGridOffset, t.nGridLots})
        out.writeI32(v);
    for (double p : {t.dLongEntryPrice, t.dLongExitPrice, t.dShortEntryPrice, t.dShortExitPrice})
        out.writeF64(p);
    for (std::int32_t v : {t.bConfirmOrder, t.nOrderDelaySeconds, t.nUnstayedOffset})
        out.writeI32(v);
}

void readTemplate(CArchiveReader& in, tagAutoSpreadTemplate& t) {
    in.readString(t.strName);
    for (auto& a : t.accounts) {
        in.readString(a.strAccountID);
        in.readString(a.strBrokerID);
        in.readString(a.strAccountName);
        in.readString(a.strAccountText);
        in.readI32(a.nAccountType);
    }
    for (auto& leg : t.legs) readLeg(in, leg);
    for (double& u : t.dSpreadUnit) in.readF64(u);
    for (std::int32_t& n : t.nSpreadLots) in.readI32(n);
    for (std::int32_t* v : {&t.nEveryLots, &t.nMaxLots, &t.nOrderOffset, &t.bButterfly,
                            &t.bLongEntry, &t.bLongExit, &t.bShortEntry, &t.bShortExit, &t.bChange,
                            &t.bStepTrade, &t.bStepExit, &t.nGridOffset, &t.nGridLots})
        in.readI32(*v);
    for (double* p :
         {&t.dLongEntryPrice, &t.dLongExitPrice, &t.dShortEntryPrice, &t.dShortExitPrice})
        in.readF64(*p);
    for (std::int32_t* v : {&t.bConfirmOrder, &t.nOrderDelaySeconds, &t.nUnstayedOffset})
        in.readI32(*v);
}

namespace {

// The integer fields of the auto spread record in file order, nStayMilliSeconds last (it is
// not in the file), with their key names.
template <class T, class F>
void forEachAutoSpreadInt(T& t, F f) {
    f("nEveryLots", t.nEveryLots);
    f("nMaxLots", t.nMaxLots);
    f("nOrderOffset", t.nOrderOffset);
    f("bButterfly", t.bButterfly);
    f("bLongEntry", t.bLongEntry);
    f("bLongExit", t.bLongExit);
    f("bShortEntry", t.bShortEntry);
    f("bShortExit", t.bShortExit);
    f("bChange", t.bChange);
    f("bStepTrade", t.bStepTrade);
    f("bStepExit", t.bStepExit);
    f("nGridOffset", t.nGridOffset);
    f("nGridLots", t.nGridLots);
    f("bConfirmOrder", t.bConfirmOrder);
    f("nOrderDelaySeconds", t.nOrderDelaySeconds);
    f("nUnstayedOffset", t.nUnstayedOffset);
    f("nStayMilliSeconds", t.nStayMilliSeconds);
}

template <class T, class F>
void forEachAutoSpreadPrice(T& t, F f) {
    f("dLongEntryPrice", t.dLongEntryPrice);
    f("dLongExitPrice", t.dLongExitPrice);
    f("dShortEntryPrice", t.dShortEntryPrice);
    f("dShortExitPrice", t.dShortExitPrice);
}

}  // namespace

void writeAutoSpreadDefault(CProfileIni& ini, const tagAutoSpreadTemplate& t) {
    const char* s = kAutoSpreadSection;
    for (int i = 0; i < 3; ++i) {
        const std::string n = std::to_string(i + 1);
        const tagTemplateAccount& a = t.accounts[i];
        ini.writeString(s, "strAccountID" + n, a.strAccountID);
        ini.writeString(s, "strBrokerID" + n, a.strBrokerID);
        ini.writeString(s, "strAccountName" + n, a.strAccountName);
        ini.writeString(s, "strAccountText" + n, a.strAccountText);
        ini.writeString(s, "nAccountType" + n, std::to_string(a.nAccountType));
    }
    writeLegKeys(ini, s, t);
    forEachAutoSpreadPrice(t, [&](const char* key, double v) { ini.writeString(s, key, formatG(v)); });
    forEachAutoSpreadInt(t, [&](const char* key, std::int32_t v) {
        ini.writeString(s, key, std::to_string(v));
    });
}

tagAutoSpreadTemplate readAutoSpreadDefault(const CProfileIni& ini) {
    const char* s = kAutoSpreadSection;
    tagAutoSpreadTemplate t;
    auto real = [&](const std::string& key, double& v) {
        if (const auto parsed = number_text::parse(ini.getString(s, key))) v = *parsed;
    };
    for (int i = 0; i < 3; ++i) {
        const std::string n = std::to_string(i + 1);
        tagTemplateAccount& a = t.accounts[i];
        a.strAccountID = ini.getString(s, "strAccountID" + n);
        a.strBrokerID = ini.getString(s, "strBrokerID" + n);
        a.strAccountName = ini.getString(s, "strAccountName" + n);
        a.strAccountText = ini.getString(s, "strAccountText" + n);
        a.nAccountType = ini.getInt(s, "nAccountType" + n, a.nAccountType);
    }
    readLegKeys(ini, s, t);
    forEachAutoSpreadPrice(t, [&](const char* key, double& v) { real(key, v); });
    forEachAutoSpreadInt(t, [&](const char* key, std::int32_t& v) { v = ini.getInt(s, key, v); });
    return t;
}

std::vector<std::string> spreadTemplateRow(const tagManualSpreadTemplate& t) {
    return rowOf(t);
}
std::vector<std::string> spreadTemplateRow(const tagAutoSpreadTemplate& t) {
    return rowOf(t);
}
