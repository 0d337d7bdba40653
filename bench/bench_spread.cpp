// The manual spread's price refresh: one quote notice for a leg, delivered through the
// manager to the tool's window handle, replaces the leg's snapshot, recomputes the three
// spread lines and adds a history point. Reported per quote, for two and three legs, with the
// heap allocations per quote (the refresh must allocate nothing).
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "alloc_count.h"
#include "app/helmsman_manage.h"
#include "spread/manual_spread.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"

namespace {

const char* const kCodes[] = {"rb2105", "rb2110", "rb2201"};

struct Desk {
    FakeHost host;
    ManualClock clock{1609725600000};
    CHelmsmanManage manager;
    Desk() {
        for (const char* code : kCodes) {
            host.details[code] = contractDetail(1.0f, 1, 10);
            host.quotes[code] = TickBuilder(0, code).bid(4400, 10).ask(4401, 12).last(4400);
        }
        manager.setClock(&clock);
        manager.init(1, &host, "/nonexistent-helmsman-bench", "bench", 0);
    }
    ~Desk() { manager.setClock(nullptr); }
};

void BM_QuoteRefresh(benchmark::State& state) {
    const int legs = static_cast<int>(state.range(0));
    Desk desk;
    CManualSpread spread(desk.manager);
    int redraws = 0;
    spread.setListener([&redraws](unsigned) { ++redraws; });
    spread.setButterfly(legs == 3);
    for (int i = 0; i < legs; ++i) spread.setLeg(i, tagSymbol{0, kCodes[i]});

    // A few hundred distinct quotes, built before the clock starts, cycled through the legs.
    std::vector<IModuleFutureTrader::ITickEx> quotes;
    for (int k = 0; k < 300; ++k) {
        const double p = 4400 + (k * 7) % 13;
        IModuleFutureTrader::ITickEx q =
            TickBuilder(0, kCodes[k % legs]).bid(p, 5 + k % 4).ask(p + 1, 6).last(p);
        q.tQuoteTime = 1609725600000 + k * 250;
        quotes.push_back(q);
    }
    const WndHandle h = spread.handle();
    const std::uint64_t before = g_allocations.load();
    std::size_t k = 0;
    for (auto _ : state) {
        desk.manager.sendMessage(h, kMsgDataChange, kEventQuote,
                                 reinterpret_cast<std::uintptr_t>(&quotes[k]));
        benchmark::DoNotOptimize(spread.prices());
        if (++k == quotes.size()) k = 0;
    }
    const double allocations = static_cast<double>(g_allocations.load() - before);
    state.counters["allocs_per_quote"] = allocations / static_cast<double>(state.iterations());
    if (redraws == 0 || spread.history().empty()) state.SkipWithError("the quotes missed the legs");
}
BENCHMARK(BM_QuoteRefresh)->Arg(2)->Arg(3);

}  // namespace
