#include "amt/amt_params.h"

#include <charconv>
#include <cstdio>

#include "app/profile_ini.h"
#include "host/number_text.h"
#include "spread/archive.h"
#include "spread/spread_templates.h"

namespace {

// Calls f(key, field) for every parameter in record order; the one list the file, the
// section and their tests share. P is tagAMTParams or const tagAMTParams.
template <class P, class F>
void forEachKey(P& p, F&& f) {
    f("wExchangeID", p.wExchangeID);
    f("szSymbolCode", p.szSymbolCode);
    f("bLong", p.bLong);
    f("bHedge", p.bHedge);
    f("tStartTime", p.tStartTime);
    f("nDelaySecs", p.nDelaySecs);
    f("nEveryLots", p.nEveryLots);
    f("nMaxLots", p.nMaxLots);
    f("nOrderOffset", p.nOrderOffset);
    f("bEntryPriceCon", p.bEntryPriceCon);
    f("nEntryPriceCon", p.nEntryPriceCon);
    f("dEntryPrice", p.dEntryPrice);
    f("bEntryRangeFilter", p.bEntryRangeFilter);
    f("dEntryRangeFilter", p.dEntryRangeFilter);
    f("bEntryVolFilter", p.bEntryVolFilter);
    f("nEntryVolFilter", p.nEntryVolFilter);
    f("bEntryFilterOR", p.bEntryFilterOR);
    auto filters = [&](auto& list, const char* side) {
        for (int i = 0; i < 3; ++i) {
            auto& c = list[static_cast<std::size_t>(i)];
            const std::string n = std::to_string(i + 1);
            const std::string s = side;
            f(("b" + s + "Filter" + n).c_str(), c.bEnabled);
            f(("str" + s + "Filter" + n).c_str(), c.strKey);
            f(("n" + s + "Filter" + n + "Type").c_str(), c.nType);
            f(("bUse" + s + "Key" + n).c_str(), c.bUseKey);
            f(("str" + s + "Key" + n).c_str(), c.strCompareKey);
            f(("d" + s + "Filter" + n + "Value").c_str(), c.dValue);
        }
    };
    filters(p.entryFilters, "Entry");
    f("bExitPriceCon", p.bExitPriceCon);
    f("nExitPriceCon", p.nExitPriceCon);
    f("dExitPrice", p.dExitPrice);
    f("nStopBasePriceType", p.nStopBasePriceType);
    f("bStopLoss", p.bStopLoss);
    f("nStopLossPoint", p.nStopLossPoint);
    f("bTakeProfit", p.bTakeProfit);
    f("nTakeProfitPoint", p.nTakeProfitPoint);
    f("bTrailingStop", p.bTrailingStop);
    f("nTrailingStart", p.nTrailingStart);
    f("nTrailingStopType", p.nTrailingStopType);
    f("nTrailingStopSet", p.nTrailingStopSet);
    f("bExitAtTime", p.bExitAtTime);
    f("tExitTime", p.tExitTime);
    f("bExitVolFilter", p.bExitVolFilter);
    f("nExitVolFilter", p.nExitVolFilter);
    f("bExitFilterOR", p.bExitFilterOR);
    filters(p.exitFilters, "Exit");
    f("strAccountID", p.strAccountID);
    f("strBrokerID", p.strBrokerID);
    f("strAccountName", p.strAccountName);
}

void writeI64(CArchiveWriter& out, std::int64_t v) {
    const auto u = static_cast<std::uint64_t>(v);
    out.writeU32(static_cast<std::uint32_t>(u & 0xFFFFFFFFu));
    out.writeU32(static_cast<std::uint32_t>(u >> 32));
}

void readI64(CArchiveReader& in, std::int64_t& v) {
    std::uint32_t lo = 0, hi = 0;
    in.readU32(lo);
    in.readU32(hi);
    v = static_cast<std::int64_t>((static_cast<std::uint64_t>(hi) << 32) | lo);
}

std::string shortest(double v) {
    char buf[64];
    auto r = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, r.ptr);
}

}  // namespace

void writeTemplate(CArchiveWriter& out, const tagAMTParams& p) {
    out.writeString(p.strName);
    forEachKey(p, [&](const char*, const auto& v) {
        using T = std::decay_t<decltype(v)>;
        if constexpr (std::is_same_v<T, std::uint16_t>)
            out.writeU16(v);
        else if constexpr (std::is_same_v<T, std::int32_t>)
            out.writeI32(v);
        else if constexpr (std::is_same_v<T, std::int64_t>)
            writeI64(out, v);
        else if constexpr (std::is_same_v<T, double>)
            out.writeF64(v);
        else
            out.writeString(v);
    });
}

void readTemplate(CArchiveReader& in, tagAMTParams& p) {
    in.readString(p.strName);
    forEachKey(p, [&](const char* key, auto& v) {
        using T = std::decay_t<decltype(v)>;
        if constexpr (std::is_same_v<T, std::uint16_t>)
            in.readU16(v);
        else if constexpr (std::is_same_v<T, std::int32_t>)
            in.readI32(v);
        else if constexpr (std::is_same_v<T, std::int64_t>)
            readI64(in, v);
        else if constexpr (std::is_same_v<T, double>)
            in.readF64(v);
        else if (std::string_view(key) == "szSymbolCode")
            in.readString(v, kTemplateCodeBytes);
        else
            in.readString(v);
    });
}

void writeAMTDefault(CProfileIni& ini, const tagAMTParams& p) {
    forEachKey(p, [&](const char* key, const auto& v) {
        using T = std::decay_t<decltype(v)>;
        if constexpr (std::is_same_v<T, double>)
            ini.writeString(kAMTSection, key, shortest(v));
        else if constexpr (std::is_same_v<T, std::string>)
            ini.writeString(kAMTSection, key, v);
        else
            ini.writeString(kAMTSection, key, std::to_string(v));
    });
}

tagAMTParams readAMTDefault(const CProfileIni& ini) {
    tagAMTParams p;
    forEachKey(p, [&](const char* key, auto& v) {
        using T = std::decay_t<decltype(v)>;
        if (!ini.hasKey(kAMTSection, key)) return;
        const std::string text = ini.getString(kAMTSection, key);
        if constexpr (std::is_same_v<T, std::string>) {
            v = text;
        } else if constexpr (std::is_same_v<T, double>) {
            if (auto d = number_text::parseLeading(text)) v = *d;
        } else if constexpr (std::is_same_v<T, std::int64_t>) {
            std::int64_t t = 0;
            const char* b = text.data();
            std::from_chars(b, b + text.size(), t);
            v = t;
        } else {
            v = static_cast<T>(ini.getInt(kAMTSection, key, v));
        }
    });
    return p;
}

std::vector<std::string> amtTemplateRow(const tagAMTParams& p) {
    return {p.strName, p.strAccountID, p.szSymbolCode, std::to_string(p.nEveryLots),
            std::to_string(p.nMaxLots)};
}
