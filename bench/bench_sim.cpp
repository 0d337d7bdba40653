// SimExchange benchmarks: quote -> event delivery, and matching cost per order with 1,000
// resting orders.
#include <benchmark/benchmark.h>

#include "host/clock.h"
#include "host/window.h"
#include "sim/sim_exchange.h"
#include "sim/sim_test_util.h"
#include "support/test_day.h"

namespace {

using simtest::kIF;

struct CountingSink : ISimEventSink {
    std::uint64_t data = 0, windows = 0;
    double lastSeen = 0;
    void onDataChange(std::uint32_t code, std::uintptr_t p) override {
        ++data;
        if (code == kEventQuote)
            lastSeen = reinterpret_cast<const IModuleFutureTrader::ITickEx*>(p)->dLast;
    }
    void onLogonStateChange(std::uint32_t, std::uintptr_t) override {}
    void onWindowMessage(std::uint32_t, std::uint32_t, std::uintptr_t, std::uintptr_t) override {
        ++windows;
    }
};

IModuleFutureTrader::ITickEx quote(double bid, double ask, double last) {
    return simtest::quote(kIF, bid, 10, ask, 10, last);
}

tagBrokerOrder order(int dir, double vol, double px) {
    tagBrokerOrder o;
    o.strAccountID = "880001";
    o.strBrokerID = "9999";
    o.nExchangeID = 3;
    o.strCode = "IF2101";
    o.nDirection = dir;
    o.dVolume = vol;
    o.dPrice = px;
    o.strRemark = "bench";
    return o;
}

// One imposed quote of a symbol subscribed by `handles` windows, delivered to the sink.
void BM_QuoteToDelivery(benchmark::State& state) {
    ManualClock clock(testday::localMs(10, 0));
    SimExchange ex(clock, simtest::quietOptions());
    ex.setAccountFunds("880001", 1e12);
    CountingSink sink;
    ex.setEventSink(&sink);
    for (int h = 0; h < state.range(0); ++h) {
        tagSubscribeBlock b{1, &kIF};
        ex.QueryInterface(kQuerySubscribeQuote, 100 + h, 1, &b);
    }
    auto q = quote(5230.0, 5230.2, 5230.0);
    for (auto _ : state) {
        ex.applyQuote(q);
        ex.deliverPending();
    }
    benchmark::DoNotOptimize(sink.lastSeen);
    state.SetItemsProcessed(state.iterations());
    state.counters["windowMsgs/quote"] =
        static_cast<double>(sink.windows) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_QuoteToDelivery)->Arg(1)->Arg(10);

// A full random-walk round of the whole catalogue (13 contracts), every quote delivered to
// the desk sink and to one subscribed window per contract: the UI thread's work per 500 ms.
void BM_StepAndDeliverCatalogue(benchmark::State& state) {
    ManualClock clock(testday::localMs(10, 0));
    SimExchange ex(clock);
    ex.setAccountFunds("880001", 1e12);
    CountingSink sink, desk;
    ex.setEventSink(&sink);
    ex.setDeskSink(&desk);
    auto syms = ex.allSymbols();
    for (std::size_t i = 0; i < syms.size(); ++i) {
        tagSubscribeBlock b{1, &syms[i]};
        ex.QueryInterface(kQuerySubscribeQuote, 100 + static_cast<std::uint32_t>(i), 1, &b);
    }
    int n = 0;
    for (auto _ : state) {
        // Rounds of the first ten minutes after 10:00, so every exchange keeps trading.
        clock.setNowMs(testday::localMs(10, 0) + 500 * (1 + n++ % 1200));
        ex.step();
        ex.deliverPending();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(syms.size()));
}
BENCHMARK(BM_StepAndDeliverCatalogue);

// Sending one order that fills against the touch, with `range` resting orders in the same
// contract (spread over 100 price levels below the market) that it must not disturb.
void BM_SendOrderWithResting(benchmark::State& state) {
    ManualClock clock(testday::localMs(10, 0));
    SimExchange ex(clock, simtest::quietOptions());
    ex.setAccountFunds("880001", 1e12);
    auto deep = quote(5230.0, 5230.2, 5230.0);
    deep.dBidVol = deep.dAskVol = 1e12;  // the touch never runs dry
    ex.applyQuote(deep);
    for (int i = 0; i < state.range(0); ++i) {
        auto o = order(kDirBuy, 1, 5200.0 - 0.2 * (i % 100));
        ex.SendOrder(o);
    }
    int n = 0;
    for (auto _ : state) {
        // Alternate an opening buy and a closing sell at the touch.
        const bool sell = n++ % 2 == 1;
        auto o = order(sell ? kDirSell : kDirBuy, 1, sell ? 5230.0 : 5230.2);
        o.nOpenClose = sell ? kClose : kOpen;
        benchmark::DoNotOptimize(ex.SendOrder(o));
    }
    state.counters["resting"] = static_cast<double>(ex.stats().restingOrders);
}
BENCHMARK(BM_SendOrderWithResting)->Arg(0)->Arg(1000);

// A quote round with 1,000 resting orders of which none can fill (the common case): the
// price index must make this independent of the resting count.
void BM_QuoteRoundWithResting(benchmark::State& state) {
    ManualClock clock(testday::localMs(10, 0));
    SimExchange ex(clock, simtest::quietOptions());
    ex.setAccountFunds("880001", 1e12);
    ex.applyQuote(quote(5230.0, 5230.2, 5230.0));
    for (int i = 0; i < state.range(0); ++i) {
        auto b = order(kDirBuy, 1, 5200.0 - 0.2 * (i % 100));
        auto s = order(kDirSell, 1, 5260.0 + 0.2 * (i % 100));
        ex.SendOrder(i % 2 ? b : s);
    }
    auto q1 = quote(5230.0, 5230.2, 5230.0);
    auto q2 = quote(5230.2, 5230.4, 5230.4);
    int n = 0;
    for (auto _ : state) ex.applyQuote(n++ % 2 ? q1 : q2);
    state.counters["resting"] = static_cast<double>(ex.stats().restingOrders);
}
BENCHMARK(BM_QuoteRoundWithResting)->Arg(0)->Arg(1000)->Arg(10000);

// Cost per fill of a resting order: 1,000 resting buys at one price, then a quote that
// trades through them all.
void BM_TradeThroughThousandResting(benchmark::State& state) {
    ManualClock clock(testday::localMs(10, 0));
    SimExchange ex(clock, simtest::quietOptions());
    ex.setAccountFunds("880001", 1e12);
    for (auto _ : state) {
        state.PauseTiming();
        ex.applyQuote(quote(5230.0, 5230.2, 5230.0));
        for (int i = 0; i < 1000; ++i) {
            auto o = order(kDirBuy, 1, 5229.0 - 0.2 * (i % 10));
            o.nOpenClose = 0;
            ex.SendOrder(o);
        }
        auto q = quote(5226.0, 5226.2, 5226.0);
        state.ResumeTiming();
        ex.applyQuote(q);
        state.PauseTiming();
        // Flatten so funds never run out.
        ex.applyQuote(quote(5226.0, 5226.2, 5226.0));
        auto c = order(kDirSell, 1000, 4694.6);
        c.nOpenClose = 1;
        ex.applyQuote([] {
            auto t = quote(5226.0, 5226.2, 5226.0);
            t.dBidVol = 1e6;
            return t;
        }());
        ex.SendOrder(c);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(BM_TradeThroughThousandResting)->Unit(benchmark::kMicrosecond)->Iterations(200);

}  // namespace
