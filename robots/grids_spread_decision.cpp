#include "robots/grids_spread_decision.h"

#include <algorithm>
#include <cmath>

#include "host/price.h"

namespace {

bool present(double v) {
    return isPricePresent(v);
}

// The edge, opposite-quote and limit rules on a B price, for B's direction.
GridBlock applyBRules(std::int32_t direction, double& p, const GridQuote& b, const GridTick& t,
                      std::int32_t edge) {
    // Prices on the tick grid compare with a margin far below one tick.
    const double eps = t.tick > 0 ? t.tick * 1e-6 : 1e-9;
    const double reach = edge * t.tick;
    if (direction == kDirBuy) {
        if (present(b.bid) && p + reach < b.bid - eps) return GridBlock::Edge;
        if (present(b.ask) && b.ask < p - eps) p = b.ask;
        if (present(b.lower) && p < b.lower - eps) return GridBlock::Limit;
        if (present(b.upper) && p > b.upper + eps) p = b.upper;
    } else {
        if (present(b.ask) && p - reach > b.ask + eps) return GridBlock::Edge;
        if (present(b.bid) && b.bid > p + eps) p = b.bid;
        if (present(b.upper) && p > b.upper + eps) return GridBlock::Limit;
        if (present(b.lower) && p < b.lower - eps) p = b.lower;
    }
    if (!present(p)) return GridBlock::Limit;
    return GridBlock::None;
}

// B's price for target spread `target` against A's reference, rounded for B's direction.
double bPrice(const GridsSpreadSettings& s, double reference, double target, std::int32_t direction,
              const GridTick& t) {
    const double raw = (s.nSpreadLots1 * reference - target) / s.nSpreadLots2;
    return direction == kDirBuy ? price::roundBuy(raw, t.minMove, t.unit)
                                : price::roundSell(raw, t.minMove, t.unit);
}

// The rest of a plan once its direction, reference and target are known.
GridPlan finish(GridPlan plan, const GridsSpreadSettings& s, const GridQuote& b,
                const GridTick& tickB, GridTrend trend) {
    if (!present(plan.reference)) {
        plan.block = GridBlock::NoReference;
        return plan;
    }
    if (s.nSpreadLots2 == 0) {
        plan.block = GridBlock::Limit;
        return plan;
    }
    plan.price = bPrice(s, plan.reference, plan.target, plan.direction, tickB);
    plan.block = applyBRules(plan.direction, plan.price, b, tickB, s.nMonitorEdge);
    if (plan.block != GridBlock::None) return plan;
    // Buying B means selling A: not into a fall. Selling B means buying A: not into a rise.
    const GridTrend against = plan.direction == kDirBuy ? GridTrend::Falling : GridTrend::Rising;
    if (trend == against) plan.block = GridBlock::Filter;
    return plan;
}

bool hasQuote(const GridQuote& q) {
    return present(q.bid) || present(q.ask);
}

}  // namespace

GridTick gridTick(std::int32_t minMove, float unit) {
    return {minMove, unit, price::pointOnGrid(minMove, unit)};
}

GridPlan planOpening(const GridsSpreadSettings& s, std::size_t entries, const GridQuote& a,
                     const GridQuote& b, const GridTick& tickB, GridTrend trend) {
    GridPlan plan;
    if (entries >= static_cast<std::size_t>(std::max(0, s.nMaxLots))) {
        plan.block = GridBlock::Full;
        return plan;
    }
    if (!hasQuote(b)) {
        plan.block = GridBlock::NoQuoteB;
        return plan;
    }
    plan.levelIndex =
        static_cast<int>(entries / static_cast<std::size_t>(std::max(1, s.nGridLots)));
    const bool sell = s.bLong == 0;
    plan.level = sell ? s.dFirstGrid + plan.levelIndex * s.dGridInterval
                      : s.dFirstGrid - plan.levelIndex * s.dGridInterval;
    plan.target = plan.level;
    plan.direction = sell ? kDirBuy : kDirSell;
    plan.reference = sell ? a.bid : a.ask;
    return finish(plan, s, b, tickB, trend);
}

GridPlan planClosing(const GridsSpreadSettings& s, std::size_t entries,
                     const GridEntryPrices& newest, const GridQuote& a, const GridQuote& b,
                     const GridTick& tickB, GridTrend trend) {
    GridPlan plan;
    if (entries == 0) {
        plan.block = GridBlock::NoEntry;
        return plan;
    }
    if (!hasQuote(b)) {
        plan.block = GridBlock::NoQuoteB;
        return plan;
    }
    plan.levelIndex =
        static_cast<int>((entries - 1) / static_cast<std::size_t>(std::max(1, s.nGridLots)));
    const bool sold = s.bLong == 0;
    plan.level = sold ? s.dFirstGrid + plan.levelIndex * s.dGridInterval
                      : s.dFirstGrid - plan.levelIndex * s.dGridInterval;
    double base = plan.level;
    if (present(newest.aFill) && present(newest.bFill)) {
        plan.realised = s.nSpreadLots1 * newest.aFill - s.nSpreadLots2 * newest.bFill;
        base = sold ? std::max(plan.level, plan.realised) : std::min(plan.level, plan.realised);
    }
    // A sold spread is closed by buying A and selling B; a bought one the other way.
    plan.target = sold ? base - s.dWinGrid : base + s.dWinGrid;
    plan.direction = sold ? kDirSell : kDirBuy;
    plan.reference = sold ? a.ask : a.bid;
    return finish(plan, s, b, tickB, trend);
}

double hitPriceA(std::int32_t directionA, const GridQuote& a, const GridTick& tickA,
                 std::int32_t fixupOffset) {
    const bool buy = directionA == kDirBuy;
    const double reference = buy ? a.ask : a.bid;
    if (!present(reference)) return 0;
    const double given = fixupOffset * tickA.tick;
    const double raw = buy ? reference + given : reference - given;
    const double p = buy ? price::roundBuy(raw, tickA.minMove, tickA.unit)
                         : price::roundSell(raw, tickA.minMove, tickA.unit);
    double clamped = p;
    if (present(a.upper) && clamped > a.upper) clamped = a.upper;
    if (present(a.lower) && clamped < a.lower) clamped = a.lower;
    return clamped;
}

bool keepResting(const GridPlan& plan, double resting, const GridTick& tickB,
                 std::int32_t threshold) {
    // The filter stops new orders; it does not pull one that already waits at its price.
    if (plan.block != GridBlock::None && plan.block != GridBlock::Filter) return false;
    if (!(tickB.tick > 0)) return plan.price == resting;
    const double ticks = std::fabs(plan.price - resting) / tickB.tick;
    return std::llround(ticks) < std::max(1, threshold);
}

GridSizes gridSizes(const GridsSpreadSettings& s, double multiplierA, double multiplierB) {
    const auto ma = static_cast<long long>(multiplierA);
    const auto mb = static_cast<long long>(multiplierB);
    const double every = s.nEveryLots;
    GridSizes out{static_cast<double>(s.nSpreadLots1) * every,
                  static_cast<double>(s.nSpreadLots2) * every};
    if (ma > mb && mb > 0)
        out.b = static_cast<double>(ma / mb) * s.nSpreadLots2 * every;
    else if (mb > ma && ma > 0)
        out.a = static_cast<double>(mb / ma) * s.nSpreadLots1 * every;
    return out;
}
