// The grid spread's pricing rules as pure functions: where leg B rests for the next grid
// entry or for closing the newest one, at what price leg A is hit once B has filled, and
// the two legs' order sizes. No state, no host: the robot (grids_spread.h) feeds them its
// quotes, settings and entries, and a replay or a test can call them the same way.
//
// Prices are rounded to the instrument's tick in units of 1/10000: buying prices up,
// selling prices down (price.h).
#pragma once

#include <cstddef>
#include <cstdint>

#include "robots/grids_spread_filter.h"
#include "robots/grids_spread_settings.h"

// The part of a quote the robot keeps: best prices, last, the day's volume and the limits.
// Prices not above 0.000001 are absent.
struct GridQuote {
    double bid = 0;
    double ask = 0;
    double last = 0;
    double volume = 0;
    double upper = 0;
    double lower = 0;
};

// An instrument's tick, from its contract: minimum move x price unit.
struct GridTick {
    std::int32_t minMove = 0;
    float unit = 0;
    double tick = 0;  // on the 1/10000 grid
};
GridTick gridTick(std::int32_t minMove, float unit);

// Why a pass sends nothing on a pair.
enum class GridBlock : std::uint8_t {
    None,         // send (or keep) the order
    Full,         // nMaxLots entries held
    NoEntry,      // nothing to close
    NoQuoteB,     // B has neither bid nor ask
    NoReference,  // A has no quote on the reference side
    Filter,       // the filter is against the move
    Edge,         // B would rest beyond nMonitorEdge ticks from its market
    Limit,        // B's price is beyond the limit on the side that cannot trade
};

// A leg B order the robot would have resting now, and the figures behind it.
struct GridPlan {
    GridBlock block = GridBlock::None;
    std::int32_t direction = 0;  // of leg B: kDirBuy / kDirSell
    double price = 0;            // B's price, rounded and pulled back within the market
    int levelIndex = 0;          // k
    double level = 0;            // L
    double target = 0;           // the spread the order realises: L (opening) or T (closing)
    double reference = 0;        // A's quote on the reference side
    double realised = 0;         // closing: the newest entry's realised spread (0 unknown)

    bool send() const { return block == GridBlock::None; }
};

// An open entry's fill prices, as far as the closing rule needs them.
struct GridEntryPrices {
    double bFill = 0;
    double aFill = 0;
};

// Opening: the B order of entry number `entries` + 1 (rules of edge, opposite quote and
// limits included). The filter is checked last, so a blocked plan still carries its price.
GridPlan planOpening(const GridsSpreadSettings& s, std::size_t entries, const GridQuote& a,
                     const GridQuote& b, const GridTick& tickB, GridTrend trend);
// Closing: the B order that closes the newest of `entries` entries.
GridPlan planClosing(const GridsSpreadSettings& s, std::size_t entries,
                     const GridEntryPrices& newest, const GridQuote& a, const GridQuote& b,
                     const GridTick& tickB, GridTrend trend);

// Leg A's price once B has filled: A goes the other way of B, at A's opposite best
// (bid for a sell, ask for a buy) given away by nFixupOffset ticks, rounded and kept within
// A's limits. 0 when A has no quote on that side.
double hitPriceA(std::int32_t directionA, const GridQuote& a, const GridTick& tickA,
                 std::int32_t fixupOffset);

// Whether a resting B order at `resting` may stay where `plan` would put one now: the plan
// must still send, and the two prices may differ by less than nMonitorThreshold ticks of B.
bool keepResting(const GridPlan& plan, double resting, const GridTick& tickB,
                 std::int32_t threshold);

// Order sizes of one entry, from the contract multipliers (whole numbers, integer division).
struct GridSizes {
    double a = 0;
    double b = 0;
};
GridSizes gridSizes(const GridsSpreadSettings& s, double multiplierA, double multiplierB);
