// The local trigger centre's step: one evaluation pass over 10,000 waiting triggers on 13
// symbols (reported per waiting trigger, with the heap allocations of one pass), and adding
// 10,000 triggers one by one.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "alloc_count.h"
#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/test_day.h"
#include "trigger/local_trigger.h"

namespace {

constexpr int kTriggers = 10000;
constexpr int kSymbols = 13;

std::string symbolCode(int i) {
    return "cu21" + std::to_string(10 + i);
}

struct Desk {
    FakeHost host;
    ManualClock clock{testday::localMs(10, 0)};
    CHelmsmanManage manager;
    Desk() {
        for (int s = 0; s < kSymbols; ++s) {
            host.details[symbolCode(s)] = contractDetail(10.0f, 1, 5);
            host.quotes[symbolCode(s)] =
                TickBuilder(0, symbolCode(s)).bid(50000, 1).ask(50010, 1).last(50000);
        }
        manager.setClock(&clock);
        manager.init(1, &host, "/nonexistent-helmsman-bench", "bench", 0);
    }
    ~Desk() { manager.setClock(nullptr); }
};

tagTriggerOrder waitingTrigger(int i) {
    tagTriggerOrder t;
    t.strAccountID = "880001";
    t.nExchangeID = 0;
    t.strCode = symbolCode(i % kSymbols);
    t.nDirection = i % 2 ? kDirSell : kDirBuy;
    // Far from the market on the firing side, so every trigger stays waiting.
    t.nTriggerType = i % 2 ? kTriggerSellRise : kTriggerBuyDip;
    t.dTriggerPrice = i % 2 ? 60000 + i : 40000 - i;
    t.dVolume = 1;
    return t;
}

void BM_StepOverWaitingTriggers(benchmark::State& state) {
    Desk desk;
    CLocalTrigger centre(desk.manager);
    for (int i = 0; i < kTriggers; ++i) centre.addTrigger(waitingTrigger(i));
    centre.step();  // the first pass sizes its scratch
    const std::uint64_t before = g_allocations.load();
    std::uint64_t steps = 0;
    for (auto _ : state) {
        centre.step();
        ++steps;
    }
    const double allocations = static_cast<double>(g_allocations.load() - before);
    if (!desk.host.sent.empty()) state.SkipWithError("a trigger fired");
    // Seconds per waiting trigger: "3.2n" reads 3.2 ns.
    state.counters["per_trigger"] = benchmark::Counter(
        static_cast<double>(kTriggers),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["allocs_per_step"] = allocations / static_cast<double>(steps);
}
BENCHMARK(BM_StepOverWaitingTriggers);

void BM_AddTriggersOneByOne(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto desk = std::make_unique<Desk>();
        auto centre = std::make_unique<CLocalTrigger>(desk->manager);
        state.ResumeTiming();
        for (int i = 0; i < kTriggers; ++i) centre->addTrigger(waitingTrigger(i));
        state.PauseTiming();
        centre.reset();
        desk.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kTriggers);
}
BENCHMARK(BM_AddTriggersOneByOne)->Unit(benchmark::kMillisecond);

}  // namespace
