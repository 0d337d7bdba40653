// Whole orders worked to the end against the simulated exchange on a manual clock, through the
// real event flow, with refused slices and dropped, late and duplicated reports; and the
// worker thread driving the same engine.
#include <chrono>
#include <map>
#include <thread>

#include "algo/algo_worker.h"
#include "algo_fixture.h"
#include "sim/sim_exchange.h"
#include "support/manager_sink.h"

using namespace algotest;

namespace {

class AlgoOnSim : public ::testing::Test {
protected:
    AlgoOnSim() {
        sim.logonAll();
        sim.setAccountFunds("880001", 1e9);
        manager.setClock(&clock);
        manager.init(1, &sim, root.string(), "demo", 0);
        sim.setEventSink(&sink);
    }
    ~AlgoOnSim() override {
        sim.setEventSink(nullptr);
        manager.setClock(nullptr);
    }

    static tagBrokerOrder parent(double volume) {
        tagBrokerOrder o = brokerOrder("880001", "rb2105", kDirBuy, volume, 0);
        o.nExchangeID = 0;
        return o;
    }
    static tagAlgoSetting setting() {
        tagAlgoSetting s;
        s.nLotSingle = 5;
        s.nLotRandom = 40;
        s.nTimeInterval = 1;
        s.nPriceType = 1;
        return s;
    }
    // Filled lots of every slice the exchange holds, and how many slices carry each tag.
    double slicesFilled(int& doubledTags) {
        std::vector<tagBrokerOrder> all;
        sim.GetAllOrders(all);
        std::map<std::string, int> tags;
        double filled = 0;
        for (const auto& o : all) {
            if (o.strRemark.rfind("算法|", 0) != 0) continue;
            filled += o.dFilledVolume;
            ++tags[o.strRemark];
        }
        doubledTags = 0;
        for (auto& [tag, n] : tags) doubledTags += n > 1;
        return filled;
    }
    // 250 ms of market time: a quote round every other call, delivery, one engine pass.
    void tickOnce(CAlgoEngine& engine, int i) {
        clock.advanceMs(250);
        if (i % 2 == 0) sim.step();
        sim.deliverPending();
        engine.pass();
    }
    // Faults over the life of the order, by iteration.
    void inject(int i) {
        if (i == 8) sim.rejectNextOrders(2);
        if (i == 30) sim.dropNextNotifications(4);
        if (i == 60) sim.setNotificationDelay(3);
        if (i == 90) sim.setNotificationDelay(0);
        if (i == 100) sim.duplicateNextNotifications(6);
    }

    TempDir root{"algo-sim"};
    ManualClock clock{localMs(10, 0)};
    SimExchange sim{clock};
    CHelmsmanManage manager;
    ManagerSink sink{manager};
};

}  // namespace

TEST_F(AlgoOnSim, WorksAHundredLotsToTheEndThroughFaults) {
    CAlgoEngine engine(manager);
    auto o = engine.add(parent(100), setting(), true);
    ASSERT_TRUE(o);
    int i = 0;
    for (; i < 4000 && !o->finished(); ++i) {
        inject(i);
        tickOnce(engine, i);
        ASSERT_LE(o->filled(), 100) << i;
        ASSERT_NE(o->m_nState, kAlgoError) << o->m_strMessage;
    }
    // Let the last reports arrive.
    for (int k = 0; k < 8; ++k) tickOnce(engine, i + k);
    EXPECT_TRUE(o->finished());
    EXPECT_DOUBLE_EQ(o->filled(), 100);
    EXPECT_STREQ(o->stateText(), "已完成");
    int doubled = 0;
    EXPECT_DOUBLE_EQ(slicesFilled(doubled), 100);
    EXPECT_EQ(doubled, 0);
    EXPECT_GE(sim.stats().ordersRejected, 2u);
    EXPECT_GE(sim.stats().eventsDropped, 4u);
}

TEST_F(AlgoOnSim, TheWorkerThreadDrivesTheEngine) {
    CAlgoEngine engine(manager);
    auto o = engine.add(parent(10), setting(), true);
    CAlgoWorker worker(engine, std::chrono::milliseconds(1));
    worker.start();
    EXPECT_TRUE(worker.running());
    bool done = false;
    for (int i = 0; i < 20000 && !done; ++i) {
        clock.advanceMs(50);
        if (i % 10 == 0) sim.step();
        sim.deliverPending();
        // Rounds follow the worker's passes, not the wall clock: each round waits for two more
        // passes (so one ran wholly after this round's reports), whatever the scheduler does.
        const std::uint64_t target = worker.passes() + 2;
        const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (worker.passes() < target && std::chrono::steady_clock::now() < giveUp)
            std::this_thread::yield();
        std::lock_guard lock(engine.mutex());
        done = o->finished() && !o->sliceOut();
    }
    worker.stop();
    EXPECT_FALSE(worker.running());
    EXPECT_TRUE(done);
    EXPECT_GT(worker.passes(), 0u);
    int doubled = 0;
    EXPECT_DOUBLE_EQ(slicesFilled(doubled), 10);
    EXPECT_EQ(doubled, 0);
    const std::uint64_t passes = worker.passes();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(worker.passes(), passes);  // stopped means stopped
}
