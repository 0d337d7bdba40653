// The arithmetic of the manual spread: the live spread prices from the legs' quotes, the
// short history the chart draws, each leg's order price, and the texts of the price rows and
// the caption.
//
// A spread is leg A against legs B and C, each leg's price times its multiplier (u1..u3):
//   ask (to buy it)  = u1 x ask(A) - u2 x bid(B) [- u3 x bid(C)]
//   bid (to sell it) = u1 x bid(A) - u2 x ask(B) [- u3 x ask(C)]
//   last             = u1 x last(A) - u2 x last(B) [- u3 x last(C)]
// A line whose prices are not all present is 0 with volume 0; a missing last price makes the
// last and the ratio -1. The volume of a line is the smallest volume on the quotes it uses.
//
// Free functions and small value types with no allocation: the quote path runs them on
// every quote.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "host/records.h"

struct SpreadPrices {
    double ask = 0;
    double askVol = 0;
    double bid = 0;
    double bidVol = 0;
    double last = 0;
    // Two legs: (u1 x last(A)) / (u2 x last(B)); three legs, or no divisor: 0 (not shown).
    double ratio = 0;
};

// `legs` holds two or three quotes (A, B[, C]); `units` the multipliers of A, B, C.
SpreadPrices computeSpreadPrices(std::span<const IModuleFutureTrader::ITickEx* const> legs,
                                 const std::array<double, 3>& units);

// One update of the spread, as the chart draws it.
struct SpreadPoint {
    double bid = 0;
    double ask = 0;
};

// The last kMaxPoints spread points, oldest first, in a fixed ring: adding never allocates.
class CSpreadHistory {
public:
    static constexpr std::size_t kMaxPoints = 100;
    // A fixed margin around the points on the chart's vertical axis, in price units.
    static constexpr double kRangeMargin = 5;

    // Appends a point; the oldest one goes when there are more than kMaxPoints.
    void add(const SpreadPoint& p);
    void clear() { m_first = m_size = 0; }
    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    // Point i, 0 the oldest.
    const SpreadPoint& at(std::size_t i) const { return m_points[(m_first + i) % kMaxPoints]; }

    // The chart's vertical range: the smallest bid minus the margin to the largest ask plus
    // the margin; (0, 0) when there is no point.
    std::pair<double, double> range() const;

private:
    std::array<SpreadPoint, kMaxPoints> m_points{};
    std::size_t m_first = 0;
    std::size_t m_size = 0;
};

// A leg's price step: a count of price units (both 1 until the contract is known).
struct SpreadLegStep {
    std::int32_t count = 1;
    float unit = 1;
};

// Which limit bounds a leg's order price. Own: a buy is lowered to the upper limit, a sell
// raised to the lower limit. Opposite: a sell is lowered to the upper limit and a buy raised
// to the lower limit, so in practice the price is not bounded (the second leg of a calendar
// roll is priced this way).
enum class SpreadLimitBound { Own, Opposite };

// The price of one leg's order: a buy at the ask plus `offset` steps rounded up to the step,
// a sell at the bid minus `offset` steps rounded down, then bounded by the day's limit.
double spreadLegOrderPrice(std::int32_t direction, const IModuleFutureTrader::ITickEx& quote,
                           std::int32_t offset, const SpreadLegStep& step,
                           SpreadLimitBound bound = SpreadLimitBound::Own);

// Whether a leg can be traded at all: bid and ask present, and the quote not locked at a
// limit (its bid at the upper limit or its ask at the lower limit).
bool spreadLegTradable(const IModuleFutureTrader::ITickEx& quote);

// The price rows: "卖盘价/量", "买盘价/量", "最新价/比值".
enum class SpreadRow { Ask, Bid, Last };
// "<price>/<volume>" for the ask and bid rows; "<last>/<ratio>" for the last row when the
// ratio is above 0, else the last alone.
std::string spreadRowText(const SpreadPrices& prices, SpreadRow row);
// A spread price as text: up to four decimals, trailing zeros dropped.
std::string spreadPriceText(double price);

// The window's caption: "<name>@" (nothing without a name), then the time of day of legs A
// and B's latest quotes (empty for a leg with none yet). Times are quote milliseconds.
std::string manualSpreadCaption(const std::string& templateName, bool hasA, std::int64_t timeA,
                                bool hasB, std::int64_t timeB);
