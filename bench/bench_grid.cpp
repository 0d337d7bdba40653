// The grid spread's decision step per quote while its B order rests: the quote is taken, A's
// filter is fed and both pairs decide (the opening pair re-prices its resting B and keeps
// it, the closing pair has nothing to close). Reported with the heap allocations per quote,
// which must be none. Once called directly, once through the manager's event fan-out.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "alloc_count.h"
#include "two_leg_desk.h"
#include "robots/grids_spread.h"

namespace {

// A running grid whose opening B rests at the exchange.
struct Desk : TwoLegDesk {
    std::unique_ptr<CGridsSpread> grid;

    Desk() {
        grid = std::make_unique<CGridsSpread>(manager);
        GridsSpreadSettings s;
        s.wExchangeID1 = s.wExchangeID2 = 3;
        s.szSymbolCode1 = "IF2101";
        s.szSymbolCode2 = "IH2101";
        s.dFirstGrid = 1570.6;  // B rests at 5216.2 - 1570.6 = 3645.6
        s.nMaxLots = 5;
        s.nFilterLength = 300;
        s.strAccountID1 = "880001";
        s.strAccountID2 = "880002";
        s.strBrokerID1 = s.strBrokerID2 = "9999";
        grid->setSettings(s);
        grid->start();
        tagBrokerOrder queued = host.sent.at(0);
        queued.nStatus = kOrderQueued;
        grid->onOrder(kEventOrderChanged, &queued);
        manager.registerWindow(grid->handle());
        if (grid->openPair().state() != 2) std::abort();
    }
};

// Quotes of A that move the volume and the time but leave B's price where it rests.
void run(benchmark::State& state, bool throughManager) {
    Desk desk;
    IModuleFutureTrader::ITickEx a = benchTick("IF2101", 5216.0, 5216.2);
    std::uint64_t quotes = 0;
    const std::uint64_t before = g_allocations.load();
    for (auto _ : state) {
        a.tQuoteTime += 500;
        a.dVolume += 3;
        if (throughManager)
            desk.manager.dataChange(kEventQuote, reinterpret_cast<std::uintptr_t>(&a));
        else
            desk.grid->onQuote(a);
        ++quotes;
    }
    const std::uint64_t allocations = g_allocations.load() - before;
    if (desk.host.sent.size() != 1 || desk.grid->openPair().state() != 2) std::abort();
    state.counters["allocs/quote"] =
        benchmark::Counter(static_cast<double>(allocations) / static_cast<double>(quotes));
}

void BM_GridQuoteRestingB(benchmark::State& state) {
    run(state, false);
}
void BM_GridQuoteThroughManager(benchmark::State& state) {
    run(state, true);
}

}  // namespace

BENCHMARK(BM_GridQuoteRestingB);
BENCHMARK(BM_GridQuoteThroughManager);
