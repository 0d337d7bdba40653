// The simulated exchange's formula values ("tblprofile"), computed from the quotes it makes.
#include "sim/sim_test_util.h"

namespace {

TEST(SimFormulaValues, FollowTheQuotes) {
    ManualClock clock(simtest::localMs(10, 0, 0));
    SimExchange sim(clock, simtest::quietOptions());
    auto value = [&](const char* key) {
        std::string text;
        return sim.GetConfigFileProperty("TBLPROFILE", "IF2101", key, text) ? text : "none";
    };
    EXPECT_EQ(value("MA5"), "none");  // no quote yet
    // Six quotes a quarter of a minute apart, 10 lots traded each, last 5200 .. 5205.
    for (int i = 0; i < 6; ++i) {
        auto q = simtest::quote(simtest::kIF, 5199.8 + i, 3, 5200.2 + i, 4, 5200 + i);
        q.dVolume = 100 + 10 * i;
        q.dPreSettle = 5000;
        q.tQuoteTime = clock.nowMs();
        ASSERT_TRUE(sim.applyQuote(q));
        clock.advanceMs(15000);
    }
    struct Row {
        const char* key;
        const char* text;
    };
    const Row rows[] = {
        {"LAST", "5205"},  {"ma5", "5203"}, {"MA60", "5202.5"}, {"VOL1M", "40"},
        {"SPREAD", "0.4"}, {"BIDVOL", "3"}, {"CHGPCT", "4.1"},  {"NOSUCH", "none"},
    };
    for (const Row& r : rows) EXPECT_EQ(value(r.key), r.text) << r.key;
    std::string other;
    EXPECT_FALSE(sim.GetConfigFileProperty("tblprofile", "rb2105", "LAST", other));
    EXPECT_TRUE(sim.GetConfigFileProperty("system.ini", "Trade", "DefaultVolume", other));
}

}  // namespace
