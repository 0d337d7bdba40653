// One session on the simulated exchange fed with the recorded IF2101 ticks of 2021-01-04:
// quotes reach the strategy's window handle through the real event flow, it enters in
// steps on a dip under 5215 while the book's spread (a formula value of the exchange) is
// narrow, a trailing stop takes the position out after the 10:00 rally, and the exchange's
// position matches what the strategy booked at every moment.
#include "amt/amt_order.h"
#include "amt/amt_strings.h"
#include "app/helmsman_manage.h"
#include "sim/sim_test_util.h"
#include "support/manager_sink.h"
#include "support/scripted.h"

namespace {

double longHeld(SimExchange& sim) {
    tagOpenedPosition p;
    if (!sim.GetPosition(p, "880001", "9999", simtest::kIF)) return 0;
    return p.dLong;
}

TEST(AmtOnSim, EntersInStepsTrailsAndLeavesWithTheExchangeAgreeing) {
    const auto file = simtest::dataDir() / "ticks" / "IF2101_20210104.csv";
    ASSERT_TRUE(std::filesystem::exists(file)) << testdata::missing(file);
    ManualClock clock(simtest::localMs(9, 35, 0));
    SimExchange sim(clock, simtest::quietOptions());
    ASSERT_TRUE(sim.loadTickFile(file.string(), simtest::kIF));
    CHelmsmanManage manager;
    ScriptedPrompter prompter;
    ScriptedUi ui;  // accepts every confirmation
    manager.setClock(&clock);
    manager.setPrompter(&prompter);
    manager.setUi(&ui);
    manager.init(1, &sim, "/nonexistent-helmsman-amt", "demo", 0);
    ManagerSink sink(manager);
    sim.setEventSink(&sink);
    sim.step();
    sim.deliverPending();

    CAMTOrder amt(manager);
    tagAMTParams p;
    p.wExchangeID = 3;
    p.szSymbolCode = "IF2101";
    p.strAccountID = "880001";
    p.strBrokerID = "9999";
    p.tStartTime = clock.now();
    p.nDelaySecs = 20;
    p.nEveryLots = 1;
    p.nMaxLots = 3;
    p.nOrderOffset = 2;
    p.bEntryPriceCon = 1;
    p.nEntryPriceCon = 1;  // 吊买: enter while last <= 5215
    p.dEntryPrice = 5215;
    p.entryFilters[0] = {1, "SPREAD", 3, 0, "", 2.0};  // the book no wider than 2.0
    p.bStopLoss = 1;
    p.nStopLossPoint = 100;  // 20.0 under the first entry
    p.bTrailingStop = 1;
    p.nTrailingStart = 50;  // armed 10.0 above the first entry
    p.nTrailingStopType = 0;
    p.nTrailingStopSet = 25;  // gives back 5.0
    amt.setParams(p);
    prompter.answers = {true};  // the dip line is above the last price: start anyway
    ASSERT_TRUE(amt.start());
    EXPECT_EQ(prompter.lastText(), amt_text::kEntryMetDipBuy);

    int maxHeld = 0;
    bool disagreed = false;
    const std::int64_t endMs = simtest::localMs(10, 30, 0);
    while (clock.nowMs() < endMs) {
        clock.advanceMs(100);
        sim.step();
        sim.deliverPending();
        sim.deliverPending();  // the fills of what a quote just sent
        maxHeld = std::max(maxHeld, amt.state().position);
        if (longHeld(sim) != amt.state().position) disagreed = true;
    }
    EXPECT_FALSE(disagreed) << "the exchange's position left the booking";
    EXPECT_EQ(maxHeld, 3);
    EXPECT_EQ(amt.state().position, 0);
    EXPECT_EQ(amt.state().cumulative, 3);  // lots sent to enter
    EXPECT_TRUE(amt.state().suspended);
    EXPECT_EQ(longHeld(sim), 0);

    std::vector<tagBargainOrder> fills;
    sim.GetAllBargains(fills);
    double bought = 0, sold = 0;
    for (const auto& f : fills) {
        EXPECT_EQ(f.strRemark, amt_text::kToolName);
        (f.nDirection == kDirBuy ? bought : sold) += f.dVolume;
    }
    EXPECT_EQ(bought, 3);
    EXPECT_EQ(sold, 3);
}

}  // namespace
