// The auto spread's decision per quote: the leg's quote is taken, the spread worked out and
// the lines checked. Twice: watching (no line met, nothing to send) and with A resting at the
// exchange (the line still holds, so A stays). Reported with the heap allocations per quote,
// which must be none.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "alloc_count.h"
#include "two_leg_desk.h"
#include "robots/auto_spread.h"

namespace {

// A running robot on IF2101 - IH2101 (spread ask 5216.2 - 3645.4 = 1570.8).
struct Desk : TwoLegDesk {
    std::unique_ptr<CAutoSpread> robot;

    explicit Desk(double longEntry) {
        robot = std::make_unique<CAutoSpread>(manager);
        tagAutoSpreadTemplate s;
        s.accounts[0] = {"880001", "9999", "一", "880001(一)", 1};
        s.accounts[1] = {"880002", "9999", "二", "880002(二)", 1};
        s.legs[0] = {3, "IF2101"};
        s.legs[1] = {3, "IH2101"};
        s.bLongEntry = s.bLongExit = s.bShortEntry = s.bShortExit = 1;
        s.dLongEntryPrice = longEntry;
        s.dLongExitPrice = 1600;
        s.dShortEntryPrice = 1620;
        s.dShortExitPrice = 1610;
        s.nMaxLots = 5;
        s.nStayMilliSeconds = 1000000;
        robot->setSettings(s);
        if (!robot->start()) std::abort();
    }
};

void run(benchmark::State& state, bool aResting) {
    Desk desk(aResting ? 1571 : 1560);
    if (aResting) {
        tagBrokerOrder queued = desk.host.sent.at(0);
        queued.nStatus = kOrderQueued;
        desk.robot->onOrder(kEventOrderChanged, &queued);
        if (desk.robot->leg(0).state() != 2) std::abort();
    }
    IModuleFutureTrader::ITickEx b = benchTick("IH2101", 3645.4, 3645.6);
    std::uint64_t quotes = 0;
    const std::uint64_t before = g_allocations.load();
    for (auto _ : state) {
        b.tQuoteTime += 500;
        b.dVolume += 3;
        desk.robot->onQuote(b);
        ++quotes;
    }
    const std::uint64_t allocations = g_allocations.load() - before;
    if (desk.host.sent.size() != (aResting ? 1u : 0u)) std::abort();
    state.counters["allocs/quote"] =
        benchmark::Counter(static_cast<double>(allocations) / static_cast<double>(quotes));
}

void BM_AutoSpreadQuoteWatching(benchmark::State& state) {
    run(state, false);
}
void BM_AutoSpreadQuoteAResting(benchmark::State& state) {
    run(state, true);
}

}  // namespace

BENCHMARK(BM_AutoSpreadQuoteWatching);
BENCHMARK(BM_AutoSpreadQuoteAResting);
