#include "sim/sim_recorded.h"

#include <ctime>

#include "host/clock.h"

namespace sim {
namespace {

constexpr std::int32_t kEveningMs = 18 * 3600 * 1000;
constexpr std::int32_t kMorningMs = 6 * 3600 * 1000;
constexpr std::int64_t kDaySec = 86400;

SimContract recorded(const char* code, const char* name, float unit, double mult, double margin,
                     double preSettle, double limitPct, double perLot, double touch) {
    SimContract c;
    c.symbol = tagSymbol{2, code};  // every recorded contract missing from the catalogue is 郑商所's
    c.detail.fPriceUnit = unit;
    c.detail.nMinMove = 1;
    c.detail.dMultiplier = mult;
    c.detail.dMarginRate = margin;
    c.detail.bTradable = true;
    c.detail.strName = name;
    c.preSettle = preSettle;
    c.preClose = preSettle;
    c.limitPct = limitPct;
    c.commissionPerLot = perLot;
    c.typicalTouchVolume = touch;
    c.night = session::nightSession(2, code) != nullptr;
    return c;
}

std::int64_t dateStartSec(std::int32_t date) {
    std::tm tm{};
    tm.tm_year = date / 10000 - 1900;
    tm.tm_mon = date / 100 % 100 - 1;
    tm.tm_mday = date % 100;
    tm.tm_isdst = -1;
    return fromLocalTm(tm);
}

std::int32_t dateOf(std::int64_t sec) {
    const std::tm tm = toLocalTm(sec);
    return (tm.tm_year + 1900) * 10000 + (tm.tm_mon + 1) * 100 + tm.tm_mday;
}

bool isWeekend(std::int64_t sec) {
    const int wday = toLocalTm(sec).tm_wday;
    return wday == 0 || wday == 6;
}

// Start of the weekday before (step -1) or after (step +1) the day that starts at `start`.
std::int64_t weekdayFrom(std::int64_t start, int step) {
    std::int64_t noon = start + kDaySec / 2 + step * kDaySec;
    while (isWeekend(noon)) noon += step * kDaySec;
    return dateStartSec(dateOf(noon));
}

}  // namespace

bool recordedContract(const std::string& code, SimContract& out) {
    // Previous settlements near each file's first price; fees per lot as the exchange charged.
    static const SimContract kRecorded[] = {
        recorded("AP805", "苹果805", 1.0f, 10, 0.08, 7492, 0.07, 5.0, 10),
        recorded("MA805", "甲醇805", 1.0f, 10, 0.07, 2786, 0.07, 2.0, 40),
        recorded("SR805", "白糖805", 1.0f, 10, 0.07, 5807, 0.07, 3.0, 40),
        recorded("TA805", "PTA805", 2.0f, 5, 0.07, 5730, 0.07, 3.0, 60),
    };
    for (const auto& c : kRecorded)
        if (c.symbol.strCode == code) {
            out = c;
            return true;
        }
    return false;
}

bool isNightTime(std::int32_t timeMs) {
    return timeMs >= kEveningMs || timeMs < kMorningMs;
}

std::vector<std::int64_t> tradingDayTimes(const std::vector<TickRecord>& ticks,
                                          std::int32_t tradingDate) {
    std::vector<std::int64_t> out;
    out.reserve(ticks.size());
    std::int32_t cachedDate = 0;
    std::int64_t dayMs = 0, eveningMs = 0;
    for (const TickRecord& r : ticks) {
        const std::int32_t date = tradingDate != 0 ? tradingDate : r.date;
        if (date != cachedDate) {
            cachedDate = date;
            const std::int64_t start = dateStartSec(date);
            dayMs = start * 1000;
            eveningMs = weekdayFrom(start, -1) * 1000;
        }
        if (r.timeMs >= kEveningMs)
            out.push_back(eveningMs + r.timeMs);
        else if (r.timeMs < kMorningMs)
            out.push_back(eveningMs + kDaySec * 1000 + r.timeMs);
        else
            out.push_back(dayMs + r.timeMs);
    }
    return out;
}

std::int32_t replayTradingDate(std::int64_t now, bool fileHasNight) {
    const std::int32_t today = dateOf(now);
    if (!fileHasNight || toLocalTm(now).tm_hour < 18) return today;
    return dateOf(weekdayFrom(dateStartSec(today), +1));
}

session::SessionState contractSession(const SimContract& c, std::int32_t msOfDay) {
    if (c.night) {
        if (const auto* n = session::nightSession(c.symbol.wExchangeID, c.symbol.strCode.c_str())) {
            if (msOfDay >= n->trading.startMs && msOfDay < n->trading.endMs)
                return session::SessionState::Trading;
            if (msOfDay >= n->preOpen.startMs && msOfDay < n->preOpen.endMs)
                return session::SessionState::PreOpen;
        }
    }
    return session::sessionState(c.symbol.wExchangeID, msOfDay);
}

}  // namespace sim
