#include "host/trading_session.h"

namespace session {
namespace {

// The commodity exchanges (0, 1, 2): 09:00-10:15, a break to 10:30, 10:30-11:30, lunch,
// 13:30-15:00; call auction 08:55-09:00.
constexpr SessionWindow kCommodityDay[] = {
    {hms(9, 0), hms(10, 15)},
    {hms(10, 30), hms(11, 30)},
    {hms(13, 30), hms(15, 0)},
};

// The financial futures exchange (3): 09:15-11:30, lunch, 13:00-15:15; call auction
// 09:10-09:15.
constexpr SessionWindow kFinancialDay[] = {
    {hms(9, 15), hms(11, 30)},
    {hms(13, 0), hms(15, 15)},
};

constexpr ExchangeSessions kExchanges[] = {
    {0, "上海期货交易所", {hms(8, 55), hms(9, 0)}, kCommodityDay},
    {1, "大连商品交易所", {hms(8, 55), hms(9, 0)}, kCommodityDay},
    {2, "郑州商品交易所", {hms(8, 55), hms(9, 0)}, kCommodityDay},
    {3, "中国金融期货交易所", {hms(9, 10), hms(9, 15)}, kFinancialDay},
};

// 郑州商品交易所's evening: call auction 20:55-21:00, trading 21:00-23:30.
constexpr NightSession kZceEvening{{hms(20, 55), hms(21, 0)}, {hms(21, 0), hms(23, 30)}};
struct NightProduct {
    std::uint16_t exchangeId;
    const char* product;
    const NightSession* night;
};
constexpr NightProduct kNightProducts[] = {
    {2, "MA", &kZceEvening},
    {2, "SR", &kZceEvening},
    {2, "TA", &kZceEvening},
};

constexpr std::int32_t sec(int h, int m, int s) {
    return (h * 60 + m) * 60 + s;
}

// The local trigger engine's table, kept exactly as the engine defines it.
constexpr LocalPeriod kLocalCommodity[] = {
    {sec(8, 55, 3), sec(8, 58, 56), kLocalPreOpen},
    {sec(9, 0, 3), sec(10, 14, 56), kLocalTrading},
    {sec(10, 30, 3), sec(11, 29, 56), kLocalTrading},
    {sec(13, 30, 3), sec(14, 59, 56), kLocalTrading},
};
constexpr LocalPeriod kLocalFinancial[] = {
    {sec(9, 10, 3), sec(9, 14, 56), kLocalPreOpen},
    {sec(9, 15, 3), sec(11, 29, 56), kLocalTrading},
    {sec(13, 0, 3), sec(15, 14, 56), kLocalTrading},
};

bool inside(const SessionWindow& w, std::int32_t ms) {
    return ms >= w.startMs && ms < w.endMs;
}

}  // namespace

const char* sessionStateText(SessionState state) {
    switch (state) {
        case SessionState::NotOpen:
            return text::kNotOpen;
        case SessionState::PreOpen:
            return text::kPreOpen;
        case SessionState::Trading:
            return text::kTrading;
        case SessionState::Break:
            return text::kBreak;
        case SessionState::Closed:
            return text::kClosed;
    }
    return text::kClosed;
}

const ExchangeSessions* exchangeSessions(int exchangeId) {
    for (const auto& e : kExchanges)
        if (e.exchangeId == exchangeId) return &e;
    return nullptr;
}

SessionState sessionState(int exchangeId, std::int32_t msOfDay) {
    const ExchangeSessions* e = exchangeSessions(exchangeId);
    if (!e) return SessionState::Trading;
    for (const auto& w : e->trading)
        if (inside(w, msOfDay)) return SessionState::Trading;
    if (inside(e->preOpen, msOfDay)) return SessionState::PreOpen;
    if (msOfDay < e->preOpen.startMs) return SessionState::NotOpen;
    if (msOfDay >= e->trading.back().endMs) return SessionState::Closed;
    return SessionState::Break;
}

bool isTrading(int exchangeId, std::int32_t msOfDay, const char* /*productCode*/) {
    return sessionState(exchangeId, msOfDay) == SessionState::Trading;
}

const NightSession* nightSession(int exchangeId, const char* productCode) {
    if (!productCode) return nullptr;
    const std::string_view product = productOf(productCode);
    for (const auto& p : kNightProducts)
        if (p.exchangeId == exchangeId && product == p.product) return p.night;
    return nullptr;
}

std::string_view productOf(std::string_view code) {
    std::size_t n = 0;
    while (n < code.size() && ((code[n] >= 'A' && code[n] <= 'Z') || (code[n] >= 'a' && code[n] <= 'z')))
        ++n;
    return code.substr(0, n);
}

std::span<const LocalPeriod> localTriggerPeriods(int exchangeId) {
    switch (exchangeId) {
        case 0:
        case 1:
        case 2:
            return kLocalCommodity;
        case 3:
            return kLocalFinancial;
        default:
            return {};
    }
}

LocalPeriodState localTriggerPeriod(int exchangeId, std::int32_t secOfDay) {
    auto periods = localTriggerPeriods(exchangeId);
    if (periods.empty()) return kLocalTrading;
    for (const auto& p : periods)
        if (p.startSec < secOfDay && secOfDay < p.endSec) return p.state;
    return kLocalClosed;
}

}  // namespace session
