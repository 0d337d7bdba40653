// Catalogue, random walk, replay of recorded ticks and server trigger orders.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "host/price.h"
#include "sim_test_util.h"

using namespace simtest;

namespace {

bool onGrid(double p, const IModuleFutureTrader::ISpecDetailValue& s) {
    std::int64_t step = price::stepUnits(s.nMinMove, s.fPriceUnit);
    return std::llround(p * 10000.0) % step == 0;
}

struct DetailCase {
    tagSymbol symbol;
    float unit;
    double mult;
    double upper, lower;
};

const DetailCase kDetails[] = {
    {{3, "IF2101"}, 0.2f, 300, 5737.8, 4694.6},    {{2, "RM705"}, 1.0f, 10, 2464, 2276},
    {{0, "rb2105"}, 1.0f, 10, 4622, 4182},         {{0, "au2106"}, 0.02f, 1000, 419.44, 379.52},
    {{3, "T2103"}, 0.005f, 10000, 99.575, 95.675},
};

TEST(SimCatalogue, DetailsAndLimits) {
    ManualClock clock(localMs(10, 0, 0));
    SimExchange ex(clock, quietOptions());
    for (const auto& c : kDetails) {
        IModuleFutureTrader::ISpecDetailValue s;
        ASSERT_EQ(ex.GetSymbolProperty(c.symbol, s), 1) << c.symbol.strCode;
        EXPECT_FLOAT_EQ(s.fPriceUnit, c.unit) << c.symbol.strCode;
        EXPECT_EQ(s.nMinMove, 1);
        EXPECT_DOUBLE_EQ(s.dMultiplier, c.mult);
        EXPECT_TRUE(s.bTradable);
        EXPECT_FALSE(s.strName.empty());
        EXPECT_GT(s.dMarginRate, 0);
        IModuleFutureTrader::ITickEx q;
        ASSERT_EQ(ex.GetMarketQuote(c.symbol, q), 1);
        EXPECT_NEAR(q.dUpperLimit, c.upper, 1e-9) << c.symbol.strCode;
        EXPECT_NEAR(q.dLowerLimit, c.lower, 1e-9) << c.symbol.strCode;
    }
    IModuleFutureTrader::ISpecDetailValue s;
    EXPECT_EQ(ex.GetSymbolProperty({3, "IF2012"}, s), 1);
    EXPECT_FALSE(s.bTradable);
    EXPECT_EQ(ex.GetSymbolProperty({3, "XX"}, s), 0);
}

TEST(SimCatalogue, ExchangesSymbolsBrokerConfig) {
    ManualClock clock(localMs(10, 0, 0));
    SimExchange ex(clock, quietOptions());
    std::vector<tagExchangeInfo> exs;
    ex.GetAllExchanges(exs);
    ASSERT_EQ(exs.size(), 4u);
    EXPECT_EQ(exs[3].strName, "中国金融期货交易所");
    std::size_t total = 0;
    for (int id = 0; id < 4; ++id) {
        std::vector<tagSymbol> syms;
        ex.GetExchangeSymbols(id, syms, 0);
        EXPECT_GE(syms.size(), 2u);
        for (const auto& s : syms) EXPECT_EQ(s.wExchangeID, id);
        total += syms.size();
    }
    EXPECT_GE(total, 8u);
    std::vector<tagSymbol> tradable;
    ex.GetExchangeSymbols(3, tradable, 1);
    for (const auto& s : tradable) EXPECT_NE(s.strCode, "IF2012");
    tagBrokerInfo b;
    ASSERT_EQ(ex.GetBrokerByID(b, "9999"), 1);
    EXPECT_EQ(b.strName, "模拟期货公司");
    EXPECT_EQ(ex.GetBrokerByID(b, "1"), 0);
    std::string v;
    EXPECT_TRUE(ex.GetConfigFileProperty("System.ini", "quote", "RefreshMs", v));
    EXPECT_EQ(v, "500");
    EXPECT_FALSE(ex.GetConfigFileProperty("system.ini", "quote", "nothing", v));
    ex.setConfigProperty("a.ini", "S", "K", "x");
    EXPECT_TRUE(ex.GetConfigFileProperty("A.INI", "s", "k", v));
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
            for (double p : {q.dLast, q.dBid, q.dAsk, q.dHigh, q.dLow, q.dOpen}) {
                if (!isPricePresent(p)) continue;
                ASSERT_TRUE(onGrid(p, s)) << sym.strCode << " " << p;
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
            ASSERT_GT(q.dVolume, 0);
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
    ManualClock clock(localMs(9, 12, 0));
    SimExchange ex(clock);
    ex.step();
    IModuleFutureTrader::ITickEx q;
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
    std::filesystem::path p =
        std::filesystem::path(HELMSMAN_DATA_DIR) / "ticks" / "IF2101_20210104.csv";
    if (!std::filesystem::exists(p)) GTEST_SKIP() << "no data at " << p;
    ManualClock clock(localMs(9, 30, 0));
    SimExchange ex(clock, quietOptions());
    sim::TickParseReport rep;
    ASSERT_TRUE(ex.loadTickFile(p.string(), {}, &rep));
    EXPECT_EQ(rep.ticks, 27955u);
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
    std::vector<sim::TickRecord> ticks(3);
    ticks[0] = {20210104, (9 * 3600 + 30 * 60) * 1000, 5230, 5229.8, 5, 5230.2, 5};
    ticks[1] = {20210104, (9 * 3600 + 30 * 60) * 1000 + 500, 5229.0, 5228.8, 5, 5229.2, 5};
    ticks[2] = {20210104, (9 * 3600 + 30 * 60) * 1000 + 1000, 5231.0, 5230.8, 5, 5231.2, 5};
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

TEST(SimReplay, BadFileIsRefused) {
    ManualClock clock(localMs(9, 30, 0));
    SimExchange ex(clock, quietOptions());
    sim::TickParseReport rep;
    EXPECT_FALSE(ex.loadTickFile("/nonexistent/IF2101_1.csv", {}, &rep));
    EXPECT_FALSE(ex.loadTickFile("/nonexistent/ZZ999_1.csv", {}, &rep));
    EXPECT_FALSE(rep.error.empty());
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
    double fillPrice;           // of the released order
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

tagTriggerOrder trigger(int type, int dir, double trig, double px) {
    tagTriggerOrder t;
    t.strAccountID = "880001";
    t.strBrokerID = "9999";
    t.nExchangeID = 3;
    t.strSymbolText = "IF2101";
    t.strCode = "IF2101";
    t.nDirection = dir;
    t.nOpenClose = kOpen;
    t.dVolume = 1;
    t.dPrice = px;
    t.dTriggerPrice = trig;
    t.nTriggerType = type;
    t.strRemark = "server trigger";
    return t;
}

TEST_P(TriggerTable, ReleasedByTypeAgainstTheLastPrice) {
    const TriggerCase& c = GetParam();
    ManualClock clock(localMs(10, 0, 0));
    SimExchange ex(clock, quietOptions());
    RecordingSink desk;
    ex.setDeskSink(&desk);
    auto t = trigger(c.type, c.direction, c.trigger, c.price);
    ASSERT_EQ(ex.SendTriggerOrder(t), 1);
    EXPECT_EQ(t.strOrderID, "T1");
    EXPECT_EQ(t.nStatus, kSimTriggerWaiting);
    for (std::size_t i = 0; i < c.lasts.size(); ++i) {
        clock.advanceMs(500);
        double l = c.lasts[i];
        ex.applyQuote(quote(kIF, l - 0.2, 10, l + 0.2, 10, l));
        tagTriggerOrder back;
        ASSERT_EQ(ex.GetTriggerOrder(back, "880001", "9999", "T1"), 1);
        bool released = c.releasedAt >= 0 && static_cast<int>(i) >= c.releasedAt;
        EXPECT_EQ(back.nStatus, released ? kSimTriggerReleased : kSimTriggerWaiting) << i;
        if (static_cast<int>(i) == c.releasedAt) {
            EXPECT_EQ(back.tStart, clock.now());
        }
    }
    std::vector<tagBrokerOrder> orders;
    ex.GetAllOrders(orders);
    if (c.releasedAt < 0) {
        EXPECT_TRUE(orders.empty());
        return;
    }
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_EQ(orders[0].nDirection, c.direction);
    EXPECT_EQ(orders[0].strRemark, "server trigger");
    EXPECT_EQ(orders[0].nStatus, kOrderFilled);
    EXPECT_DOUBLE_EQ(orders[0].dAvgPrice, c.fillPrice);
    ex.deliverPending();
    EXPECT_EQ(desk.with("T "), (std::vector<std::string>{"T T1 0", "T T1 1"}));
}

INSTANTIATE_TEST_SUITE_P(Sim, TriggerTable, ::testing::ValuesIn(kTriggerCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(SimTrigger, ExpiryModifyDeleteAndQueries) {
    ManualClock clock(localMs(10, 0, 0));
    SimExchange ex(clock, quietOptions());
    auto a = trigger(kTriggerBuyDip, kDirBuy, 5000.0, 0);
    a.tExpiry = clock.now() + 60;
    auto b = trigger(kTriggerSellRise, kDirSell, 5400.0, 0);
    auto r = trigger(kTriggerBuyDip, kDirBuy, 5000.0, 0);
    r.strCode = "rb2105";
    r.nExchangeID = 0;
    r.dTriggerPrice = 4000;
    ASSERT_EQ(ex.SendTriggerOrder(a), 1);
    ASSERT_EQ(ex.SendTriggerOrder(b), 1);
    ASSERT_EQ(ex.SendTriggerOrder(r), 1);
    std::vector<tagTriggerOrder> list;
    ex.GetTriggerOrdersBySymbol(list, kIF);
    EXPECT_EQ(list.size(), 2u);
    ex.GetAllTriggerOrders(list);
    EXPECT_EQ(list.size(), 3u);

    clock.advanceMs(61 * 1000);
    ex.step();
    tagTriggerOrder back;
    ex.GetTriggerOrder(back, "880001", "9999", a.strOrderID);
    EXPECT_EQ(back.nStatus, kSimTriggerExpired);
    EXPECT_EQ(ex.ModifyTriggerOrder(a.strOrderID, a), 0);  // no longer waiting

    auto m = b;
    m.dTriggerPrice = 5231.0;
    m.dVolume = 2;
    ASSERT_EQ(ex.ModifyTriggerOrder(b.strOrderID, m), 1);
    ex.GetTriggerOrder(back, "880001", "9999", b.strOrderID);
    EXPECT_DOUBLE_EQ(back.dTriggerPrice, 5231.0);
    EXPECT_DOUBLE_EQ(back.dVolume, 2);

    EXPECT_EQ(ex.DeleteTriggerOrder("880001", "9999", r.strOrderID), 1);
    EXPECT_EQ(ex.DeleteTriggerOrder("880001", "9999", r.strOrderID), 0);
    ex.GetTriggerOrder(back, "880001", "9999", r.strOrderID);
    EXPECT_EQ(back.nStatus, kSimTriggerDeleted);
    ex.applyQuote(quote(kRB, 3999, 10, 4000, 10, 3999));  // deleted: does not fire
    ex.applyQuote(quote(kIF, 5231.0, 10, 5231.2, 10, 5231.2));
    ex.GetTriggerOrder(back, "880001", "9999", b.strOrderID);
    EXPECT_EQ(back.nStatus, kSimTriggerReleased);
    std::vector<tagBrokerOrder> orders;
    ex.GetAllOrders(orders);
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_DOUBLE_EQ(orders[0].dVolume, 2);
    EXPECT_STREQ(simTriggerStatusText(kSimTriggerExpired), "已过期");
}

TEST(SimTrigger, RefusedWhenInvalid) {
    ManualClock clock(localMs(10, 0, 0));
    SimExchange ex(clock, quietOptions());
    auto t = trigger(7, kDirBuy, 5000.0, 0);
    EXPECT_EQ(ex.SendTriggerOrder(t), 0);
    t = trigger(kTriggerBuyDip, kDirBuy, 0, 0);
    EXPECT_EQ(ex.SendTriggerOrder(t), 0);
    t = trigger(kTriggerBuyDip, kDirBuy, 5000, 0);
    t.strCode = "ZZ";
    EXPECT_EQ(ex.SendTriggerOrder(t), 0);
    ex.logoffAll();
    t = trigger(kTriggerBuyDip, kDirBuy, 5000, 0);
    EXPECT_EQ(ex.SendTriggerOrder(t), 0);
}

}  // namespace
