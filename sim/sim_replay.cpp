// Replay of recorded ticks on calendar time, and learning the recorded data's contracts.
#include <numeric>

#include "sim/sim_exchange_impl.h"

using namespace simdetail;

bool SimExchange::loadTicksAt(const tagSymbol& symbol, std::vector<sim::TickRecord> ticks,
                              std::vector<std::int64_t> atMs) {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos || ticks.empty() || ticks.size() != atMs.size() ||
        d.markets[mi].c.expired)
        return false;
    auto& m = d.markets[mi];
    if (!std::is_sorted(atMs.begin(), atMs.end())) {
        std::vector<std::size_t> order(ticks.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return atMs[a] < atMs[b]; });
        std::vector<sim::TickRecord> t2;
        std::vector<std::int64_t> a2;
        t2.reserve(order.size());
        a2.reserve(order.size());
        for (std::size_t i : order) t2.push_back(ticks[i]), a2.push_back(atMs[i]);
        ticks.swap(t2);
        atMs.swap(a2);
    }
    // The day's fixed values from the first tick that has them.
    for (const auto& r : ticks) {
        if (r.upperLimit > 0 && r.lowerLimit > 0) {
            d.setLimits(m, r.upperLimit, r.lowerLimit);
            break;
        }
    }
    for (const auto& r : ticks)
        if (r.preSettle > 0) {
            m.q.dPreSettle = r.preSettle;
            break;
        }
    m.ticks = std::move(ticks);
    m.tickAt = std::move(atMs);
    m.next = 0;
    m.replaying = true;
    m.opened = false;
    m.q.dLast = m.q.dBid = m.q.dAsk = m.q.dBidVol = m.q.dAskVol = 0;
    m.q.dVolume = m.q.dTurnover = 0;
    m.q.dOpen = m.q.dHigh = m.q.dLow = 0;
    return true;
}

bool SimExchange::learnContract(const std::string& code, tagSymbol& symbol) {
    SIM_LOCK;
    for (const auto& m : d.markets)
        if (m.c.symbol.strCode == code) {
            symbol = m.c.symbol;
            return true;
        }
    SimContract c;
    if (!sim::recordedContract(code, c)) return false;
    addContract(c);
    symbol = c.symbol;
    return true;
}
