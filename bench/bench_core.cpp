// Core hot paths: one host event fanned out to registered windows, and price rounding.
#include <benchmark/benchmark.h>

#include <vector>

#include "app/helmsman_manage.h"
#include "host/price.h"

namespace {

// A window that reads the event the way a robot does: look at the code, touch the record.
class Listener : public IWndTarget {
public:
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t w, std::uintptr_t l) override {
        if (msg == kMsgDataChange && eventKind(static_cast<std::uint32_t>(w)) == kEventOrderChanged)
            m_seen += reinterpret_cast<const tagBrokerOrder*>(l)->dVolume > 0;
        return 1;
    }
    long m_seen = 0;
};

void BM_DataChangeFanOut(benchmark::State& state) {
    CHelmsmanManage manager;
    std::vector<Listener> listeners(static_cast<size_t>(state.range(0)));
    for (auto& l : listeners) manager.registerWindow(manager.createHandle(&l));
    tagBrokerOrder order;
    order.dVolume = 1;
    const auto data = reinterpret_cast<std::uintptr_t>(&order);
    for (auto _ : state) benchmark::DoNotOptimize(manager.dataChange(kEventOrderChanged, data));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DataChangeFanOut)->Arg(10)->Arg(50);

void BM_PriceRounding(benchmark::State& state) {
    double p = 3001.3;
    for (auto _ : state) {
        benchmark::DoNotOptimize(price::roundBuy(p, 1, 0.2f));
        benchmark::DoNotOptimize(price::roundSell(p, 1, 0.2f));
        p += 0.01;
        if (p > 6000) p = 3001.3;
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_PriceRounding);

}  // namespace
