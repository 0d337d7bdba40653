// The desk's monitors under a large order book, on the UI thread as the desk runs them:
// - BM_NewOrder: one new resting order, from the exchange's events to a painted view
//   (delivery, the monitors' row updates, one pass of the event loop), at 10,000 and 20,000
//   orders already listed;
// - BM_Repaint: repainting the visible rows once with nothing changed (the floor under
//   BM_NewOrder's event-loop pass);
// - BM_Sort: re-sorting 10,000 listed orders by the price column, both ways in turn;
// - BM_LoopLatencyUnderFlow: a worker thread sends 2,000 orders a second while the UI thread
//   delivers every 20 ms and updates the monitors as the desk does; a 1 ms probe timer measures how
//   late the event loop answers (p50/p99/max in the counters, milliseconds), and how long the UI
//   thread's own work held it between two probes (held_p99/held_max: CPU time, so a busy machine's
//   scheduling does not count). The monitors' views are shown (offscreen): painting counts.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include "host/clock.h"
#include "shell/busy_meter.h"
#include "shell/monitor_set.h"
#include "sim/sim_exchange.h"

namespace {

QApplication& app() {
    static int argc = 1;
    static char name[] = "bench_monitors";
    static char* argv[] = {name, nullptr};
    static QApplication* a = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return new QApplication(argc, argv);
    }();
    return *a;
}

// The desk's monitors over a simulated exchange holding `orders` resting orders.
class MonitoredBook final : public ISimEventSink {
public:
    explicit MonitoredBook(int orders) {
        SimOptions so;
        so.randomWalk = false;
        m_exchange = std::make_unique<SimExchange>(m_clock, so);
        m_exchange->setAccountFunds("880001", 1e13);
        m_exchange->GetMarketQuote({0, "rb2105"}, m_quote);
        m_monitors = std::make_unique<MonitorSet>(
            *m_exchange, m_prompter, [](std::int32_t, const std::string&) { return 0; },
            MonitorSet::Hooks{}, &m_window);
        auto* layout = new QVBoxLayout(&m_window);
        layout->addWidget(m_monitors->tabs());
        m_monitors->tabs()->setCurrentIndex(1);  // all orders
        m_window.resize(1000, 500);
        m_window.show();
        m_monitors->applyHeaderSorts();
        for (int i = 0; i < orders; ++i) send(i);
        m_monitors->flush(true);  // start-up: the full list once
        m_exchange->setDeskSink(this);
        app().processEvents();
    }
    ~MonitoredBook() override { m_exchange->setDeskSink(nullptr); }

    // A buy resting a few ticks above the lower limit (prices spread for the sort).
    void send(int i) {
        tagBrokerOrder o;
        o.strAccountID = "880001";
        o.strBrokerID = "9999";
        o.strCode = "rb2105";
        o.nDirection = kDirBuy;
        o.dVolume = 1 + i % 7;
        o.dPrice = m_quote.dLowerLimit + (i * 7919) % 200;
        o.tCreateTime = m_clock.now();
        m_exchange->SendOrder(o);
    }
    // One delivery with the monitors brought up to date at once.
    void deliver() {
        m_exchange->deliverPending();
        m_monitors->flush();
    }
    // What the desk's delivery timer does: the monitors follow at their own pace.
    void deliverAsTheDesk() {
        m_exchange->deliverPending();
        m_monitors->flushIfDue();
    }

    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        m_monitors->onEvent(code, data);
    }
    void onLogonStateChange(std::uint32_t, std::uintptr_t) override {}
    void onWindowMessage(std::uint32_t, std::uint32_t, std::uintptr_t, std::uintptr_t) override {}

    SimExchange& exchange() { return *m_exchange; }
    MonitorSet& monitors() { return *m_monitors; }

private:
    QApplication& m_app = app();  // before any widget
    // A Monday at 10:00, in the morning session.
    ManualClock m_clock{QDateTime(QDate(2021, 1, 4), QTime(10, 0)).toMSecsSinceEpoch()};
    std::unique_ptr<SimExchange> m_exchange;
    IModuleFutureTrader::ITickEx m_quote;
    SilentPrompter m_prompter;
    QWidget m_window;
    std::unique_ptr<MonitorSet> m_monitors;
};

void BM_NewOrder(benchmark::State& state) {
    MonitoredBook book(static_cast<int>(state.range(0)));
    int i = 0;
    double deliverNs = 0, loopNs = 0;
    for (auto _ : state) {
        book.send(i++);  // the sender's work, not the UI's
        QElapsedTimer t;
        t.start();
        book.deliver();
        const qint64 delivered = t.nsecsElapsed();
        app().processEvents();
        const qint64 total = t.nsecsElapsed();
        deliverNs += delivered;
        loopNs += total - delivered;
        state.SetIterationTime(static_cast<double>(total) / 1e9);
    }
    // Where the time goes: the monitors' updates, then layout and painting.
    state.counters["update_ms"] = deliverNs / 1e6 / state.iterations();
    state.counters["paint_ms"] = loopNs / 1e6 / state.iterations();
}
BENCHMARK(BM_NewOrder)
    ->Arg(10000)
    ->Arg(20000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(300);

void BM_Repaint(benchmark::State& state) {
    MonitoredBook book(static_cast<int>(state.range(0)));
    QTableView* view = book.monitors().view("allOrders");
    for (auto _ : state) {
        view->viewport()->update();
        app().processEvents();
    }
}
BENCHMARK(BM_Repaint)->Arg(20000)->Unit(benchmark::kMillisecond)->Iterations(300);

void BM_Sort(benchmark::State& state) {
    MonitoredBook book(static_cast<int>(state.range(0)));
    QTableView* view = book.monitors().view("allOrders");
    bool ascending = true;
    for (auto _ : state) {
        view->sortByColumn(kOrderColPrice, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
        app().processEvents();
        ascending = !ascending;
    }
}
BENCHMARK(BM_Sort)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(20);

void BM_LoopLatencyUnderFlow(benchmark::State& state) {
    MonitoredBook book(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::vector<double> lateMs;
        // The UI thread's own CPU time between two probes: how long its work held the loop,
        // without the waits a busy machine's scheduler adds to the lateness.
        std::vector<double> heldMs;
        std::atomic<bool> stop{false};
        // 2,000 orders a second: 20 every 10 ms, off the UI thread like the algo worker.
        std::thread sender([&] {
            int i = 1000000;
            auto next = std::chrono::steady_clock::now();
            while (!stop) {
                for (int k = 0; k < 20; ++k) book.send(i++);
                next += std::chrono::milliseconds(10);
                std::this_thread::sleep_until(next);
            }
        });
        QTimer deliver;
        deliver.setInterval(20);
        QObject::connect(&deliver, &QTimer::timeout, [&] { book.deliverAsTheDesk(); });
        QElapsedTimer clock;
        clock.start();
        qint64 lastNs = clock.nsecsElapsed();
        std::int64_t lastCpuNs = BusyMeter::threadCpuNs();
        QTimer probe;
        probe.setTimerType(Qt::PreciseTimer);
        probe.setInterval(1);
        QObject::connect(&probe, &QTimer::timeout, [&] {
            const qint64 now = clock.nsecsElapsed();
            lateMs.push_back(std::max(0.0, (now - lastNs) / 1e6 - 1.0));
            lastNs = now;
            const std::int64_t cpu = BusyMeter::threadCpuNs();
            heldMs.push_back((cpu - lastCpuNs) / 1e6);
            lastCpuNs = cpu;
        });
        QEventLoop loop;
        QTimer::singleShot(3000, &loop, &QEventLoop::quit);
        deliver.start();
        probe.start();
        loop.exec();
        stop = true;
        sender.join();
        auto at = [](std::vector<double>& v, double p) {
            std::sort(v.begin(), v.end());
            return v.empty() ? 0.0
                             : v[std::min(v.size() - 1, static_cast<std::size_t>(p * v.size()))];
        };
        state.counters["p50_ms"] = at(lateMs, 0.50);
        state.counters["p99_ms"] = at(lateMs, 0.99);
        state.counters["max_ms"] = at(lateMs, 1.0);
        state.counters["held_p99_ms"] = at(heldMs, 0.99);
        state.counters["held_max_ms"] = at(heldMs, 1.0);
        state.counters["orders_listed"] = book.monitors().view("allOrders")->model()->rowCount();
    }
}
BENCHMARK(BM_LoopLatencyUnderFlow)
    ->Arg(0)
    ->Arg(20000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
