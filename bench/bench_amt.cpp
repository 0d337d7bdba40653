// The conditional strategy's step per quote: one quote message to the core, which refreshes
// its quote, tracks the extreme price and runs the entry and exit attempts with three
// formula conditions enabled on the side that is looked at. Allocations inside the timed
// loop are counted (operator new is replaced) and reported per quote.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "alloc_count.h"
#include "amt/amt_order.h"
#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/scripted.h"
#include "support/test_day.h"

namespace {


// A host whose formula table answers without allocating: three values of IF2101.
struct BenchHost : FakeHost {
    std::string ma5 = "MA5", ma20 = "MA20", vol = "VOL1M";
    bool GetConfigFileProperty(const std::string&, const std::string& section,
                               const std::string& key, std::string& value) override {
        if (section != "IF2101") return false;
        if (key == ma5)
            value.assign("5230.4");
        else if (key == ma20)
            value.assign("5228.1");
        else if (key == vol)
            value.assign("350");
        else
            return false;
        return true;
    }
};

// Three conditions that hold, hold, and fail at the last: every one is read.
std::array<tagAMTFilter, 3> threeConditions() {
    return {tagAMTFilter{1, "MA5", 0, 1, "MA20", 0}, tagAMTFilter{1, "VOL1M", 1, 0, "", 100},
            tagAMTFilter{1, "MA5", 2, 0, "", 5000}};
}

void runQuotes(benchmark::State& state, bool holding) {
    BenchHost host;
    host.details["IF2101"] = contractDetail(0.2f, 1, 300);
    host.accounts = {FakeHost::account("880001", "9999", "模拟账户一")};
    ManualClock clock(testday::localMs(10, 0));
    ScriptedPrompter prompter;
    ScriptedUi ui;
    CHelmsmanManage manager;
    manager.setClock(&clock);
    manager.setPrompter(&prompter);
    manager.setUi(&ui);
    manager.init(1, &host, "/nonexistent-helmsman-bench", "demo", 0);
    CAMTOrder amt(manager);
    tagAMTParams p;
    p.wExchangeID = 3;
    p.szSymbolCode = "IF2101";
    p.strAccountID = "880001";
    p.tStartTime = clock.now();
    p.nMaxLots = 1;
    p.bEntryPriceCon = 1;
    p.dEntryPrice = 5000;
    p.bEntryVolFilter = 1;
    p.nEntryVolFilter = 1;
    p.bStopLoss = p.bTakeProfit = p.bTrailingStop = 1;
    p.nStopLossPoint = p.nTakeProfitPoint = 500;
    p.nTrailingStart = 400;
    (holding ? p.exitFilters : p.entryFilters) = threeConditions();
    amt.setParams(p);
    if (!amt.start()) state.SkipWithError("did not start");
    IModuleFutureTrader::ITickEx ticks[2] = {
        TickBuilder(3, "IF2101").last(5230.2).bid(5230, 8).ask(5230.4, 9),
        TickBuilder(3, "IF2101").last(5230.4).bid(5230.2, 7).ask(5230.6, 5)};
    for (auto& t : ticks) t.dUpperLimit = 5737.8, t.dLowerLimit = 4694.6;
    if (holding) {
        // One lot in, so the exit side is looked at and the entry side is full.
        p.entryFilters = {};
        amt.setParams(p);
        amt.onMessage(kMsgDataChange, kEventQuote, reinterpret_cast<std::uintptr_t>(&ticks[0]));
        if (amt.state().position != 1) state.SkipWithError("no position");
        clock.advanceMs(2000);
    }
    // Quotes half a second apart, the clock going back and forth so a long run stays inside
    // the morning session.
    const std::int64_t t0 = clock.nowMs();
    std::size_t i = 0;
    const std::uint64_t before = g_allocations.load();
    for (auto _ : state) {
        clock.setNowMs(t0 + static_cast<std::int64_t>(i & 1) * 500);
        amt.onMessage(kMsgDataChange, kEventQuote,
                      reinterpret_cast<std::uintptr_t>(&ticks[i++ & 1]));
        benchmark::DoNotOptimize(amt.state());
    }
    const std::uint64_t allocations = g_allocations.load() - before;
    state.counters["allocs_per_quote"] = benchmark::Counter(
        static_cast<double>(allocations) / static_cast<double>(state.iterations()));
    const int expected = holding ? static_cast<int>(CAMTOrder::kExitNone)
                                 : static_cast<int>(CAMTOrder::kEntryFormula);
    if ((holding ? amt.state().exitResult : amt.state().entryResult) != expected)
        state.SkipWithError("the step did not end where it should");
}

void BM_AmtStepEntryFormulas(benchmark::State& state) {
    runQuotes(state, false);
}
void BM_AmtStepExitFormulas(benchmark::State& state) {
    runQuotes(state, true);
}
BENCHMARK(BM_AmtStepEntryFormulas);
BENCHMARK(BM_AmtStepExitFormulas);

}  // namespace

