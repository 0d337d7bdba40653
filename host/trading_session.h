// Trading sessions of the exchanges, as data: one place that the simulated exchange, the desk,
// the local trigger engine and the algo engine's timing all read.
//
// Two tables live here and they are deliberately different:
// - The exchanges' day sessions (exchangeSessions): the hours an exchange really runs, by the
//   host's exchange ids 0..3 (0 上海期货交易所, 1 大连商品交易所, 2 郑州商品交易所 with the
//   mid-morning break 10:15-10:30 and lunch 11:30-13:30; 3 中国金融期货交易所 with its 09:15 open
//   and lunch 11:30-13:00). Every product of an exchange keeps its exchange's day hours.
// - Night sessions (nightSession): the evening hours of the products that trade at night
//   (郑州商品交易所's MA, SR and TA: 21:00-23:30 after a call auction from 20:55). They are
//   data only: a market uses them when it is set up to trade at night.
// - The local trigger engine's period table (localTriggerPeriod): the same day shifted inward
//   by three seconds after each opening and four seconds before each end, with both ends
//   strict, so that no local trigger fires just after a period opens or just before it ends.
//   Ids other than 0..3 trade all day in that table.
//
// All times are local wall-clock times of the current day. Plain data and pure functions: no
// clock is read here, callers pass the time of day.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace session {

// Milliseconds since local midnight of hh:mm:ss.
constexpr std::int32_t hms(int h, int m, int s = 0) {
    return ((h * 60 + m) * 60 + s) * 1000;
}

// What an exchange is doing at a time of day.
enum class SessionState : std::uint8_t {
    NotOpen,  // before the day's pre-open auction
    PreOpen,  // the opening call auction: orders are taken, nothing trades
    Trading,  // continuous trading
    Break,    // between two sessions of the day (mid-morning break, lunch)
    Closed,   // after the day's last session
};

// Short labels for the trader (status bars, quote boards).
namespace text {
inline constexpr const char* kNotOpen = "未开盘";
inline constexpr const char* kPreOpen = "集合竞价";
inline constexpr const char* kTrading = "交易中";
inline constexpr const char* kBreak = "休市";
inline constexpr const char* kClosed = "已收盘";
}  // namespace text

const char* sessionStateText(SessionState state);

// One window of a day, [startMs, endMs) in milliseconds since local midnight.
struct SessionWindow {
    std::int32_t startMs;
    std::int32_t endMs;
};

// The day of one exchange: its pre-open auction and its continuous sessions in time order.
struct ExchangeSessions {
    std::uint16_t exchangeId;
    const char* name;
    SessionWindow preOpen;
    std::span<const SessionWindow> trading;
};

// The table of exchanges 0..3; nullptr for any other id.
const ExchangeSessions* exchangeSessions(int exchangeId);

// The state of an exchange at a time of day. Ids the table does not know trade all day.
SessionState sessionState(int exchangeId, std::int32_t msOfDay);
// True in continuous trading. `productCode` is accepted so callers can ask about an
// instrument; every product of an exchange keeps the exchange's day hours.
bool isTrading(int exchangeId, std::int32_t msOfDay, const char* productCode = nullptr);

// The evening of a product that trades at night: its call auction and its session, both
// before midnight.
struct NightSession {
    SessionWindow preOpen;
    SessionWindow trading;
};

// The night session of a product ("MA", "SR", ...) of an exchange; nullptr when it has none.
const NightSession* nightSession(int exchangeId, const char* productCode);
// The product of a contract code: its leading letters ("MA" of "MA805").
std::string_view productOf(std::string_view code);

// ---- The local trigger engine's periods ------------------------------------------------------

// Trading-period state as the local trigger engine numbers it.
enum LocalPeriodState : int {
    kLocalClosed = 0,
    kLocalTrading = 1,
    kLocalPreOpen = 2,
};

// A period of the local trigger table in whole seconds of the day; open when
// startSec < now < endSec (both strict).
struct LocalPeriod {
    std::int32_t startSec;
    std::int32_t endSec;
    LocalPeriodState state;
};

// The periods of one exchange id (empty for ids other than 0..3, which always trade).
std::span<const LocalPeriod> localTriggerPeriods(int exchangeId);

// State of an exchange at `secOfDay` (whole seconds since local midnight) in that table.
LocalPeriodState localTriggerPeriod(int exchangeId, std::int32_t secOfDay);

}  // namespace session
