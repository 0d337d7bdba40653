#include "robots/auto_spread_rules.h"

#include <algorithm>

#include "robots/auto_spread_strings.h"

namespace t = auto_spread_text;

namespace {

// Spread prices are sums of products of prices: compare with a little room so a line typed
// as 12.2 is met by a spread computed as 12.199999999.
constexpr double kLineEpsilon = 1e-7;

bool stepped(const tagAutoSpreadTemplate& s, bool exits) {
    return (exits ? s.bStepExit : s.bStepTrade) && s.nGridLots > 0;
}

}  // namespace

int spreadSide(SpreadAction a) {
    return a == SpreadAction::LongEntry || a == SpreadAction::ShortExit ? 1 : -1;
}

bool isEntry(SpreadAction a) {
    return a == SpreadAction::LongEntry || a == SpreadAction::ShortEntry;
}

const char* spreadActionText(SpreadAction a) {
    switch (a) {
        case SpreadAction::LongEntry:
            return t::kLongEntry;
        case SpreadAction::LongExit:
            return t::kLongExit;
        case SpreadAction::ShortEntry:
            return t::kShortEntry;
        case SpreadAction::ShortExit:
            return t::kShortExit;
        case SpreadAction::None:
            break;
    }
    return "";
}

double autoSpreadEntryLevel(const tagAutoSpreadTemplate& s, bool isLong, std::int32_t held,
                            double step) {
    const double line = isLong ? s.dLongEntryPrice : s.dShortEntryPrice;
    if (!stepped(s, false)) return line;
    const double k = held / s.nGridLots;
    return isLong ? line - k * step : line + k * step;
}

double autoSpreadExitLevel(const tagAutoSpreadTemplate& s, bool isLong, std::int32_t held,
                           double step) {
    const double line = isLong ? s.dLongExitPrice : s.dShortExitPrice;
    if (!stepped(s, true) || held < 1) return line;
    const double k = (held - 1) / s.nGridLots;
    return isLong ? line - k * step : line + k * step;
}

bool autoSpreadLineHolds(SpreadAction action, double level, const SpreadPrices& p) {
    // Buying the spread pays its ask; selling it fetches its bid.
    if (spreadSide(action) > 0) return p.askVol > 0 && p.ask <= level + kLineEpsilon;
    return p.bidVol > 0 && p.bid >= level - kLineEpsilon;
}

AutoSpreadPlan planAutoSpread(const tagAutoSpreadTemplate& s, std::int32_t held,
                              const SpreadPrices& prices, double step) {
    const std::int32_t every = std::max(s.nEveryLots, 0);
    auto entry = [&](SpreadAction a, bool isLong) -> AutoSpreadPlan {
        const std::int32_t n = held < 0 ? -held : held;
        std::int32_t units = std::min(every, s.nMaxLots - n);
        if (stepped(s, false)) units = std::min(units, s.nGridLots - n % s.nGridLots);
        const double level = autoSpreadEntryLevel(s, isLong, n, step);
        if (units < 1 || !autoSpreadLineHolds(a, level, prices)) return {};
        return {a, units, level, isLong ? prices.ask : prices.bid};
    };
    auto exit = [&](SpreadAction a, bool isLong) -> AutoSpreadPlan {
        const std::int32_t n = held < 0 ? -held : held;
        std::int32_t units = std::min(every, n);
        if (stepped(s, true)) units = std::min(units, n - (n - 1) / s.nGridLots * s.nGridLots);
        const double level = autoSpreadExitLevel(s, isLong, n, step);
        if (units < 1 || !autoSpreadLineHolds(a, level, prices)) return {};
        return {a, units, level, isLong ? prices.bid : prices.ask};
    };
    AutoSpreadPlan p;
    if (held > 0) {
        if (s.bLongExit) p = exit(SpreadAction::LongExit, true);
        if (!p.send() && s.bLongEntry) p = entry(SpreadAction::LongEntry, true);
    } else if (held < 0) {
        if (s.bShortExit) p = exit(SpreadAction::ShortExit, false);
        if (!p.send() && s.bShortEntry) p = entry(SpreadAction::ShortEntry, false);
    } else {
        if (s.bLongEntry) p = entry(SpreadAction::LongEntry, true);
        if (!p.send() && s.bShortEntry) p = entry(SpreadAction::ShortEntry, false);
    }
    return p.send() ? p : AutoSpreadPlan{};
}

const char* autoSpreadSettingsError(const tagAutoSpreadTemplate& s) {
    const int legs = s.bButterfly ? 3 : 2;
    if (s.legs[0].szSymbolCode.empty() || s.legs[1].szSymbolCode.empty()) return t::kNoSymbols;
    if (legs == 3 && s.legs[2].szSymbolCode.empty()) return t::kNoSymbolC;
    if (s.bChange && legs == 3) return t::kRollTwoLegs;
    for (int i = 0; i < legs; ++i) {
        if (!(s.dSpreadUnit[i] > 0)) return t::kBadUnits;
        if (s.nSpreadLots[i] < 1) return t::kBadLegLots;
    }
    if (s.nEveryLots < 1 || s.nMaxLots < 1) return t::kBadLots;
    if (!s.bLongEntry && !s.bLongExit && !s.bShortEntry && !s.bShortExit) return t::kNoLine;
    if (s.bLongEntry && s.bLongExit && !(s.dLongEntryPrice < s.dLongExitPrice))
        return t::kBadLongLines;
    if (s.bShortEntry && s.bShortExit && !(s.dShortEntryPrice > s.dShortExitPrice))
        return t::kBadShortLines;
    if ((s.bStepTrade || s.bStepExit) && (s.nGridOffset < 1 || s.nGridLots < 1)) return t::kBadStep;
    if (s.nStayMilliSeconds < 100) return t::kBadStay;
    if (s.nOrderDelaySeconds < 0) return t::kBadDelay;
    return nullptr;
}
