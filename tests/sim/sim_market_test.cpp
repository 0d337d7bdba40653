// Catalogue, random walk, replay of recorded ticks and server trigger orders.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "host/price.h"
#include "sim_test_util.h"
#include "support/temp_dir.h"

using namespace simtest;

namespace {

// Price limits are the band around the settlement rounded inwards onto each contract's grid.
TEST(SimCatalogue, LimitsOnTheGridAndTradability) {
    Rig r;
    const struct {
        tagSymbol symbol;
        double upper, lower;
    } cases[] = {{kIF, 5737.8, 4694.6}, {{0, "au2106"}, 419.44, 379.52},
                 {{3, "T2103"}, 99.575, 95.675}};
    for (const auto& c : cases) {
        IModuleFutureTrader::ITickEx q;
        ASSERT_EQ(r.ex.GetMarketQuote(c.symbol, q), 1) << c.symbol.strCode;
        EXPECT_NEAR(q.dUpperLimit, c.upper, 1e-9) << c.symbol.strCode;
        EXPECT_NEAR(q.dLowerLimit, c.lower, 1e-9) << c.symbol.strCode;
    }
    IModuleFutureTrader::ISpecDetailValue s;
    ASSERT_EQ(r.ex.GetSymbolProperty(kIF, s), 1);
    EXPECT_TRUE(s.bTradable);
    EXPECT_EQ(r.ex.GetSymbolProperty({3, "IF2012"}, s), 1);
    EXPECT_FALSE(s.bTradable);
    EXPECT_EQ(r.ex.GetSymbolProperty({3, "XX"}, s), 0);
}

TEST(SimCatalogue, SymbolsBrokerAndConfig) {
    Rig r;
    std::vector<tagSymbol> all, tradable;
    r.ex.GetExchangeSymbols(3, all, 0);
    r.ex.GetExchangeSymbols(3, tradable, 1);
    EXPECT_EQ(tradable.size() + 1, all.size());  // all but the expired IF2012
    for (const auto& s : tradable) EXPECT_NE(s.strCode, "IF2012");
    tagBrokerInfo b;
    EXPECT_EQ(r.ex.GetBrokerByID(b, "9999"), 1);
    EXPECT_EQ(r.ex.GetBrokerByID(b, "1"), 0);
    std::string v;
    EXPECT_TRUE(r.ex.GetConfigFileProperty("System.ini", "quote", "RefreshMs", v));
    EXPECT_EQ(v, "500");
    EXPECT_FALSE(r.ex.GetConfigFileProperty("system.ini", "quote", "nothing", v));
    r.ex.setConfigProperty("a.ini", "S", "K", "x");
    EXPECT_TRUE(r.ex.GetConfigFileProperty("A.INI", "s", "k", v));  // names ignore case
    EXPECT_EQ(v, "x");
}

TEST(SimWalk, PricesStayOnTheGridAndInsideTheBand) {
    ManualClock clock(localMs(10, 0, 0));
    SimExchange ex(clock);
    for (int i = 0; i < 3000; ++i) {
        clock.advanceMs(SimExchange::kQuoteIntervalMs);
        ex.step();
        for (const auto& sym : ex.allSymbols()) {
            IModuleFutureTrader::ITickEx q;
            IModuleFutureTrader::ISpecDetailValue s;
            ASSERT_EQ(ex.GetMarketQuote(sym, q), 1);
            ex.GetSymbolProperty(sym, s);
            const std::int64_t step = price::stepUnits(s.nMinMove, s.fPriceUnit);
            for (double p : {q.dLast, q.dBid, q.dAsk, q.dHigh, q.dLow, q.dOpen}) {
                if (!isPricePresent(p)) continue;
                ASSERT_EQ(std::llround(p * 10000.0) % step, 0) << sym.strCode << " " << p;
                ASSERT_GE(p, q.dLowerLimit - 1e-9) << sym.strCode;
                ASSERT_LE(p, q.dUpperLimit + 1e-9) << sym.strCode;
            }
            ASSERT_TRUE(isPricePresent(q.dLast));
            if (isPricePresent(q.dBid) && isPricePresent(q.dAsk)) {
                ASSERT_LT(q.dBid, q.dAsk);
            }
            if (isPricePresent(q.dBid)) {
                ASSERT_GT(q.dBidVol, 0);
            }
            SimContract c;
            ASSERT_TRUE(ex.contract(sym, c));
            ASSERT_EQ(q.dVolume > 0, !c.expired) << sym.strCode;  // an expired one never trades
            ASSERT_GT(q.dPreOpenPrice1, 0);
            ASSERT_GT(q.dPreOpenPrice2, 0);
        }
    }
}

TEST(SimWalk, SameSeedSameWalk) {
    ManualClock c1(localMs(10, 0, 0)), c2(localMs(10, 0, 0));
    SimExchange a(c1), b(c2);
    for (int i = 0; i < 200; ++i) {
        a.step();
        b.step();
    }
    IModuleFutureTrader::ITickEx qa, qb;
    a.GetMarketQuote(kIF, qa);
    b.GetMarketQuote(kIF, qb);
    EXPECT_EQ(qa.dLast, qb.dLast);
    EXPECT_EQ(qa.dVolume, qb.dVolume);
}

TEST(SimWalk, PreOpenHasOnlyTheFallbackPrices) {
    ManualClock clock(localMs(8, 0, 0));  // before the auction the day has not begun either
    SimExchange ex(clock);
    IModuleFutureTrader::ITickEx q;
    ex.GetMarketQuote(kRB, q);
    EXPECT_FALSE(isPricePresent(q.dLast));
    clock.setNowMs(localMs(9, 12, 0));
    ex.step();
    ex.GetMarketQuote(kIF, q);
    EXPECT_FALSE(isPricePresent(q.dLast));
    EXPECT_TRUE(isPricePresent(q.dPreOpenPrice1));
    EXPECT_TRUE(isPricePresent(q.dPreOpenPrice2));
    ex.GetMarketQuote(kRB, q);  // 09:12 is trading time on exchange 0
    EXPECT_TRUE(isPricePresent(q.dLast));
    clock.setNowMs(localMs(9, 15, 1));
    ex.step();
    ex.GetMarketQuote(kIF, q);
    EXPECT_TRUE(isPricePresent(q.dLast));
    EXPECT_DOUBLE_EQ(q.dOpen, q.dPreOpenPrice1);
}

// ---- Replay -------------------------------------------------------------------------------

TEST(SimReplay, TicksPlayByTimeOfDay) {
    const auto p = dataDir() / "ticks" / "IF2101_20210104.csv";
    ASSERT_TRUE(std::filesystem::exists(p)) << testdata::missing(p);
    ManualClock clock(localMs(9, 30, 0));
    SimExchange ex(clock, quietOptions());
    ASSERT_TRUE(ex.loadTickFile(p.string(), {}, nullptr));
    EXPECT_EQ(ex.replayRemaining(kIF), 27955u);
    ex.step();
    IModuleFutureTrader::ITickEx q;
    ex.GetMarketQuote(kIF, q);
    EXPECT_DOUBLE_EQ(q.dLast, 5230.0);  // 09:29:00.400 is the only tick due
    EXPECT_DOUBLE_EQ(q.dUpperLimit, 5737.8);
    EXPECT_DOUBLE_EQ(q.dLowerLimit, 4694.6);
    EXPECT_DOUBLE_EQ(q.dPreSettle, 5216.2);
    EXPECT_EQ(q.tQuoteTime, localMs(9, 29, 0, 400));
    EXPECT_EQ(ex.replayRemaining(kIF), 27954u);
    clock.advanceMs(1000);  // 09:30:01.000: the .400 and .900 ticks
    ex.step();
    ex.GetMarketQuote(kIF, q);
    EXPECT_DOUBLE_EQ(q.dLast, 5231.8);
    EXPECT_DOUBLE_EQ(q.dBid, 5232.8);
    EXPECT_DOUBLE_EQ(q.dVolume, 398);
    EXPECT_EQ(ex.replayRemaining(kIF), 27952u);
}

TEST(SimReplay, ReplayedQuotesDriveMatching) {
    ManualClock clock(localMs(9, 30, 0));
    SimExchange ex(clock, quietOptions());
    const int t0 = (9 * 3600 + 30 * 60) * 1000;
    std::vector<sim::TickRecord> ticks = {{20210104, t0, 5230, 5229.8, 5, 5230.2, 5},
                                          {20210104, t0 + 500, 5229.0, 5228.8, 5, 5229.2, 5},
                                          {20210104, t0 + 1000, 5231.0, 5230.8, 5, 5231.2, 5}};
    ASSERT_TRUE(ex.loadTicks(kIF, ticks));
    ex.step();
    auto o = order(kIF, kDirBuy, kOpen, 1, 5229.4);
    ASSERT_EQ(ex.SendOrder(o), 1);
    clock.advanceMs(2000);
    ex.step();  // both later ticks are due: the 5229.0 trade goes through the buy
    tagBrokerOrder back;
    ex.GetOrder(back, "880001", "9999", o.strOrderID);
    EXPECT_EQ(back.nStatus, kOrderFilled);
    EXPECT_DOUBLE_EQ(back.dAvgPrice, 5229.4);
}

// A refused file says why, in words the desk can show as they are.
TEST(SimReplay, RefusedFileSaysWhy) {
    const TempDir dir("sim_replay");
    const std::string good = "20210104,09:30:00,5230,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0\n";
    const struct {
        const char* file;
        std::string text;
        std::string error;
    } cases[] = {
        {"ZZ805_20180201.csv", good, "unknown contract ZZ805"},
        {"IF2012_20201218.csv", good, "contract IF2012 has expired"},
        {"IF2101_header.csv", "date,time\n\n", "no tick lines"},
        {"IF2101_bad.csv", "20210231,09:30:00,1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0\nx\n",
         "no usable tick: 2 lines skipped (line 1: no such date; line 2: too few fields)"},
    };
    for (const auto& c : cases) {
        Rig r;
        writeFileBytes(dir / c.file, c.text);
        sim::TickParseReport rep;
        EXPECT_FALSE(r.ex.loadTickFile((dir / c.file).string(), {}, &rep)) << c.file;
        EXPECT_EQ(rep.error, c.error) << c.file;
        EXPECT_EQ(r.ex.replayRemaining(kIF), 0u);
    }
    Rig r;
    sim::TickParseReport rep;
    EXPECT_FALSE(r.ex.loadTickFile((dir / "IF2101_missing.csv").string(), {}, &rep));
    EXPECT_EQ(rep.error.rfind("cannot open ", 0), 0u) << rep.error;
}

// ---- Server trigger orders ----------------------------------------------------------------

struct TriggerCase {
    const char* name;
    int type;
    int direction;
    double trigger;
    double price;               // 0 = at market
    std::vector<double> lasts;  // successive last prices
    int releasedAt;             // index into lasts, -1 = never
    double fillPrice;
};

const TriggerCase kTriggerCases[] = {
    {"BuyDip", kTriggerBuyDip, kDirBuy, 5229.0, 0, {5230.0, 5229.4, 5229.0}, 2, 5229.2},
    {"BuyDipBelow", kTriggerBuyDip, kDirBuy, 5229.0, 5229.2, {5230.0, 5228.0}, 1, 5228.2},
    {"SellRise", kTriggerSellRise, kDirSell, 5231.0, 0, {5230.0, 5231.2}, 1, 5231.0},
    {"BuyChase", kTriggerBuyChase, kDirBuy, 5231.0, 0, {5230.0, 5230.8, 5231.0}, 2, 5231.2},
    {"SellChase", kTriggerSellChase, kDirSell, 5229.0, 0, {5230.0, 5229.0}, 1, 5228.8},
    {"BuyDipNotReached", kTriggerBuyDip, kDirBuy, 5229.0, 0, {5230.0, 5229.2, 5231.0}, -1, 0},
    {"SellChaseNotReached", kTriggerSellChase, kDirSell, 5229.0, 0, {5229.2, 5240.0}, -1, 0},
};

class TriggerTable : public ::testing::TestWithParam<TriggerCase> {};

TEST_P(TriggerTable, ReleasedByTypeAgainstTheLastPrice) {
    const TriggerCase& c = GetParam();
    Rig r;
    RecordingSink desk;
    r.ex.setDeskSink(&desk);
    auto t = trigger(c.type, c.direction, c.trigger, c.price);
    ASSERT_EQ(r.ex.SendTriggerOrder(t), 1);
    EXPECT_EQ(t.strOrderID, "T1");
    EXPECT_EQ(t.nStatus, kSimTriggerWaiting);
    for (int i = 0; i < static_cast<int>(c.lasts.size()); ++i) {
        r.clock.advanceMs(500);
        const double l = c.lasts[i];
        r.ex.applyQuote(quote(kIF, l - 0.2, 10, l + 0.2, 10, l));
        const tagTriggerOrder back = r.triggerOf("T1");
        const bool released = c.releasedAt >= 0 && i >= c.releasedAt;
        EXPECT_EQ(back.nStatus, released ? kSimTriggerReleased : kSimTriggerWaiting) << i;
        if (i == c.releasedAt) {
            EXPECT_EQ(back.tStart, r.clock.now());
        }
    }
    const auto orders = r.allOrders();
    if (c.releasedAt < 0) {
        EXPECT_TRUE(orders.empty());
        return;
    }
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_EQ(orders[0].nDirection, c.direction);
    EXPECT_EQ(orders[0].strRemark, "server trigger");
    EXPECT_EQ(orders[0].nStatus, kOrderFilled);
    EXPECT_DOUBLE_EQ(orders[0].dAvgPrice, c.fillPrice);
    r.ex.deliverPending();
    EXPECT_EQ(desk.with("T "), (std::vector<std::string>{"T T1 0", "T T1 1"}));
}

INSTANTIATE_TEST_SUITE_P(Sim, TriggerTable, ::testing::ValuesIn(kTriggerCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(SimTrigger, ExpiryModifyDeleteAndQueries) {
    Rig r;
    auto a = trigger(kTriggerBuyDip, kDirBuy, 5000.0, 0);
    a.tExpiry = r.clock.now() + 60;
    auto b = trigger(kTriggerSellRise, kDirSell, 5400.0, 0);
    auto rb = trigger(kTriggerBuyDip, kDirBuy, 4000.0, 0);
    rb.strCode = "rb2105";
    rb.nExchangeID = 0;
    ASSERT_EQ(r.ex.SendTriggerOrder(a), 1);
    ASSERT_EQ(r.ex.SendTriggerOrder(b), 1);
    ASSERT_EQ(r.ex.SendTriggerOrder(rb), 1);
    std::vector<tagTriggerOrder> list;
    r.ex.GetTriggerOrdersBySymbol(list, kIF);
    EXPECT_EQ(list.size(), 2u);
    r.ex.GetAllTriggerOrders(list);
    EXPECT_EQ(list.size(), 3u);

    r.clock.advanceMs(61 * 1000);
    r.ex.step();
    EXPECT_EQ(r.triggerOf(a.strOrderID).nStatus, kSimTriggerExpired);
    EXPECT_STREQ(simTriggerStatusText(kSimTriggerExpired), "已过期");
    EXPECT_EQ(r.ex.ModifyTriggerOrder(a.strOrderID, a), 0);  // no longer waiting

    auto m = b;
    m.dTriggerPrice = 5231.0;
    m.dVolume = 2;
    ASSERT_EQ(r.ex.ModifyTriggerOrder(b.strOrderID, m), 1);

    EXPECT_EQ(r.ex.DeleteTriggerOrder("880001", "9999", rb.strOrderID), 1);
    EXPECT_EQ(r.ex.DeleteTriggerOrder("880001", "9999", rb.strOrderID), 0);
    EXPECT_EQ(r.triggerOf(rb.strOrderID).nStatus, kSimTriggerDeleted);
    r.ex.applyQuote(quote(kRB, 3999, 10, 4000, 10, 3999));  // deleted: does not fire
    r.ex.applyQuote(quote(kIF, 5231.0, 10, 5231.2, 10, 5231.2));  // fires the modified one
    EXPECT_EQ(r.triggerOf(b.strOrderID).nStatus, kSimTriggerReleased);
    const auto orders = r.allOrders();
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_DOUBLE_EQ(orders[0].dVolume, 2);
}

TEST(SimTrigger, RefusedWhenInvalid) {
    Rig r;
    auto unknownSymbol = trigger(kTriggerBuyDip, kDirBuy, 5000, 0);
    unknownSymbol.strCode = "ZZ";
    for (auto t : {trigger(7, kDirBuy, 5000, 0), trigger(kTriggerBuyDip, kDirBuy, 0, 0),
                   unknownSymbol})
        EXPECT_EQ(r.ex.SendTriggerOrder(t), 0) << t.nTriggerType << " " << t.dTriggerPrice;
    r.ex.logoffAll();
    auto t = trigger(kTriggerBuyDip, kDirBuy, 5000, 0);
    EXPECT_EQ(r.ex.SendTriggerOrder(t), 0);
}

}  // namespace
