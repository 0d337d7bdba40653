// A local trigger on the simulated exchange: recorded IF2101 ticks replay through the real
// event flow (quote notices to the centre's handle, orders back through the manager), the
// trigger fires on the first tick that reaches its price, at that tick's ask, and its order
// fills.
#include "app/helmsman_manage.h"
#include "sim/sim_test_util.h"
#include "support/scripted.h"
#include "trigger/local_trigger.h"

namespace {

// Forwards the exchange's events as the host does.
class HostSink : public ISimEventSink {
public:
    explicit HostSink(CHelmsmanManage& m) : m_manager(m) {}
    std::vector<tagBargainOrder> fills;

    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        if (eventKind(code) == kEventNewFill)
            fills.push_back(*reinterpret_cast<const tagBargainOrder*>(data));
        m_manager.dataChange(code, data);
    }
    void onLogonStateChange(std::uint32_t code, std::uintptr_t data) override {
        m_manager.logonStateChange(code, data);
    }
    void onWindowMessage(std::uint32_t hWnd, std::uint32_t msg, std::uintptr_t w,
                         std::uintptr_t l) override {
        m_manager.sendMessage(hWnd, msg, w, l);
    }

private:
    CHelmsmanManage& m_manager;
};

}  // namespace

TEST(LocalTriggerOnSim, FiresAtTheFirstCrossingTickAndFills) {
    const auto file = simtest::dataDir() / "ticks" / "IF2101_20210104.csv";
    ASSERT_TRUE(std::filesystem::exists(file)) << testdata::missing(file);
    const std::int64_t startMs = simtest::localMs(9, 30, 5);
    constexpr double kTriggerPrice = 5228.0;
    // The day's first tick after 09:30:05 at or below 5228.0: last exactly 5228.0, ask 5229.0.
    const std::int64_t crossingMs = simtest::localMs(9, 30, 9, 400);
    constexpr double kCrossingAsk = 5229.0;

    ManualClock clock(startMs);
    SimExchange sim(clock, simtest::quietOptions());
    ASSERT_TRUE(sim.loadTickFile(file.string(), simtest::kIF));
    sim.logonAll();
    CHelmsmanManage manager;
    ScriptedPrompter prompter;
    manager.setClock(&clock);
    manager.setPrompter(&prompter);
    manager.init(1, &sim, "/nonexistent-helmsman-e2e", "demo", 0);
    HostSink sink(manager);
    sim.setEventSink(&sink);
    sim.step();
    sim.deliverPending();

    CLocalTrigger centre(manager);
    ASSERT_TRUE(centre.addTrigger(simtest::trigger(kTriggerBuyDip, kDirBuy, kTriggerPrice, 0)));
    std::int64_t firedAt = 0;
    // Steps every 100 ms with the centre evaluating after each delivery, so it sees every tick.
    while (clock.nowMs() < crossingMs + 5000) {
        clock.advanceMs(100);
        sim.step();
        sim.deliverPending();
        centre.step();
        if (!firedAt && centre.record(0).trigger.nStatus == kOrderFilled) firedAt = clock.nowMs();
    }
    ASSERT_NE(firedAt, 0);
    EXPECT_GE(firedAt, crossingMs);
    EXPECT_LT(firedAt, crossingMs + 500);  // before the next tick
    std::vector<tagBrokerOrder> orders;
    sim.GetAllOrders(orders);
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_EQ(orders[0].strRemark, "本地触发单");
    EXPECT_DOUBLE_EQ(orders[0].dPrice, kCrossingAsk);
    ASSERT_EQ(sink.fills.size(), 1u);
    EXPECT_EQ(sink.fills[0].strRemark, "本地触发单");
    EXPECT_DOUBLE_EQ(sink.fills[0].dVolume, 1);
    EXPECT_TRUE(prompter.boxes.empty());
    manager.setClock(nullptr);
    manager.setPrompter(nullptr);
}
