// What the exit tools share: how much of a position can still be closed, how a close is split
// into orders the exchange takes, and the touch price with an offset.
//
// Exchange rule: on exchange 0 an order flagged 平仓 closes yesterday's lots only and 平今
// today's only, so closing both needs two orders (yesterday's first: 平今 costs more there).
// Everywhere else 平仓 closes yesterday's lots first and then today's, so one order does.
//
// Free functions on values; safe from any thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/records.h"

namespace close_plan {

// One side of a position, split into yesterday's and today's lots.
struct SideLots {
    double yesterday = 0;
    double today = 0;
    double total() const { return yesterday + today; }
};

struct Closable {
    SideLots longSide;
    SideLots shortSide;
    // The side a closing order of `direction` reduces: a sell closes the long side.
    const SideLots& sideFor(std::int32_t direction) const {
        return direction == kDirSell ? longSide : shortSide;
    }
};

// Whether 平仓 closes only yesterday's lots on this exchange.
inline bool closesYesterdayOnly(std::int32_t exchangeID) { return exchangeID == 0; }

// The position's lots by side and day.
Closable held(const tagOpenedPosition& position);
// The lots still free: the position less what working closing orders in the same account and
// instrument hold, booked the way the exchange books them.
Closable closable(const tagOpenedPosition& position, const std::vector<tagBrokerOrder>& working);

// One closing order of a split.
struct Part {
    std::int32_t openClose = kClose;
    double volume = 0;
};
// Splits `volume` lots closed from `free` into orders: one 平仓 order off exchange 0; on
// exchange 0 平仓 for yesterday's part and 平今 for the rest. Never more than `free` holds.
std::vector<Part> split(std::int32_t exchangeID, const SideLots& free, double volume);

// The touch price of a closing order: a sell takes the bid, a buy the ask, moved `offset`
// points through the market (a sell lower, a buy higher) when `useOffset`; when that side is
// absent the other side's price without offset; nothing when both are absent.
struct Touch {
    bool ok = false;
    double price = 0;
    bool opposite = false;  // the other side's price was taken
};
Touch touchPrice(std::int32_t direction, const IModuleFutureTrader::ITickEx& tick, bool useOffset,
                 int offsetPoints, double point);

// "880001(模拟账户一)".
std::string accountText(const std::string& id, const std::string& name);
std::string accountText(const tagAccoutInfo& account);

}  // namespace close_plan
