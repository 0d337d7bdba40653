// One pass of the algo engine over N running orders (N = 100, 1000, 3000), reported per
// order: every order is between slices, so the pass decides and makes no host call.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "algo/algo_engine.h"
#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/temp_dir.h"

namespace {

void BM_AlgoPass(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    FakeHost host;
    const char* codes[] = {"rb2105", "IF2101", "cu2102", "m2105", "SR105"};
    for (const char* c : codes) host.details[c] = contractDetail(1.0f, 1, 10);
    ManualClock clock(1'609'725'600'000);
    CHelmsmanManage manager;
    manager.setClock(&clock);
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("helmsman-bench-algo-" + std::to_string(n));
    manager.init(1, &host, dir.string(), "demo", 0);
    {
        CAlgoEngine engine(manager);
        std::vector<tagBrokerOrder> orders;
        for (int i = 0; i < n; ++i) {
            tagBrokerOrder o = brokerOrder("880001", codes[i % 5], i % 2 ? kDirBuy : kDirSell,
                                           100, 0);
            orders.push_back(o);
        }
        engine.addOrders(orders, tagAlgoSetting{}, false);
        // Running, half between slices and half with a slice resting before its interval.
        for (const auto& o : engine.orders()) {
            o->m_nRun = kRunRunning;
            o->m_tSend = static_cast<std::int64_t>(clock.tickCount());
            o->m_nIntervalMs = 1'000'000'000;
            if (o->m_nSerial % 2) {
                o->m_nState = kAlgoQueued;
                o->m_bSliceOpen = true;
                o->m_strSliceID = std::to_string(o->m_nSerial);
                o->m_dSliceVolume = 1;
            }
        }
        for (auto _ : state) {
            clock.advanceMs(500);
            engine.pass();
        }
        if (!host.callsStartingWith("SendOrder").empty()) state.SkipWithError("a host call");
        state.counters["per_order"] = benchmark::Counter(
            static_cast<double>(n), benchmark::Counter::kIsIterationInvariantRate |
                                        benchmark::Counter::kInvert);
    }
    manager.setClock(nullptr);
    std::filesystem::remove_all(dir);
}

}  // namespace

BENCHMARK(BM_AlgoPass)->Arg(100)->Arg(1000)->Arg(3000);
