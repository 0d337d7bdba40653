// The ladder robot's decision per quote, in the states a running robot spends its time in:
// both orders resting at their rungs, the ladder full with only the close resting, and the
// market inside the limit guard band. Each quote differs from the last so the decision runs
// in full. Heap allocations are counted over the timed loop and reported per quote.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "alloc_count.h"
#include "app/helmsman_manage.h"
#include "robots/blader.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"

namespace {

enum class Scene { BothResting, LadderFull, NearLimit };

IModuleFutureTrader::ITickEx tick(double last, double upper = 5500) {
    return TickBuilder(3, "IF2101")
        .last(last)
        .bid(last - 0.2, 5)
        .ask(last + 0.2, 5)
        .limits(4500, upper);
}

struct Desk {
    FakeHost host;
    ManualClock clock{1'600'000'000'000};
    CHelmsmanManage manager;
    std::unique_ptr<CBlader> robot;

    explicit Desk(Scene scene) {
        host.accounts = {FakeHost::account("880001", "9999", "one")};
        host.details["IF2101"] = contractDetail(0.2f, 1, 300);
        host.quotes["IF2101"] = tick(scene == Scene::NearLimit ? 5497.0 : 5000.0);
        manager.setClock(&clock);
        manager.init(1, &host, "/nonexistent-helmsman-bench", "demo", 0);
        robot = std::make_unique<CBlader>(manager);
        tagBladerSetting s;
        s.wExchangeID = 3;
        s.szSymbolCode = "IF2101";
        s.nMaxPos = scene == Scene::LadderFull ? 1 : 2;
        robot->setSetting(s);
        robot->start();
        if (scene == Scene::NearLimit) return;  // the first entry waits outside the band
        notify(0, kOrderFilled);  // entry 1: its close and (below the maximum) entry 2 go out
        for (std::size_t i = 1; i < host.sent.size(); ++i) notify(i, kOrderQueued);
    }
    void notify(std::size_t i, int status) {
        tagBrokerOrder o = host.sent[i];
        o.nStatus = status;
        robot->onOrder(&o);
    }
};

void runScene(benchmark::State& state, Scene scene) {
    Desk desk(scene);
    const double base = scene == Scene::NearLimit ? 5497.0 : 5000.0;
    IModuleFutureTrader::ITickEx quotes[2] = {tick(base + 0.2), tick(base + 0.4)};
    const std::size_t sentBefore = desk.host.sent.size();
    std::uint64_t n = 0;
    const std::uint64_t before = g_allocations.load();
    for (auto _ : state) {
        IModuleFutureTrader::ITickEx& q = quotes[n & 1];
        q.tQuoteTime = static_cast<std::int64_t>(++n);
        desk.robot->onQuote(q);
        benchmark::DoNotOptimize(desk.robot->revision());
    }
    const std::uint64_t allocations = g_allocations.load() - before;
    if (desk.host.sent.size() != sentBefore) state.SkipWithError("a quote sent an order");
    state.counters["allocs_per_quote"] =
        benchmark::Counter(static_cast<double>(allocations) / static_cast<double>(n ? n : 1));
}

void BM_BladerQuote_BothResting(benchmark::State& s) {
    runScene(s, Scene::BothResting);
}
void BM_BladerQuote_LadderFull(benchmark::State& s) {
    runScene(s, Scene::LadderFull);
}
void BM_BladerQuote_NearLimit(benchmark::State& s) {
    runScene(s, Scene::NearLimit);
}

}  // namespace

BENCHMARK(BM_BladerQuote_BothResting);
BENCHMARK(BM_BladerQuote_LadderFull);
BENCHMARK(BM_BladerQuote_NearLimit);
