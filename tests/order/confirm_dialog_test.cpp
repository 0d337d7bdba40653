#include "order/confirm_dialog.h"

#include <gtest/gtest.h>

#include "support/fake_host.h"
#include "support/quote_builders.h"

namespace {

FakeHost hostWithContracts() {
    FakeHost host;
    host.details["IF2406"] = contractDetail(0.2f, 1, 10);  // tick 0.2: one decimal
    host.details["rb2410"] = contractDetail(1.0f, 1, 10);  // tick 1: no decimals
    host.details["au2412"] = contractDetail(0.02f, 1, 10);
    return host;
}

tagBrokerOrder plainOrder(std::string code, int dir, int openClose, double vol, double price,
                          double stop, double profit) {
    tagBrokerOrder o;
    o.strAccountID = "8001";
    o.strBrokerID = "9999";
    o.nExchangeID = 1;
    o.strCode = std::move(code);
    o.strSymbolText = o.strCode + " 沪深";
    o.nDirection = dir;
    o.nOpenClose = openClose;
    o.dVolume = vol;
    o.dPrice = price;
    o.dStopLoss = stop;
    o.dTakeProfit = profit;
    return o;
}

struct PlainCase {
    const char* name;
    tagBrokerOrder order;
    std::vector<std::string> lines;
};

TEST(ConfirmDialog, PlainOrderTextBlock) {
    FakeHost host = hostWithContracts();
    const PlainCase cases[] = {
        {"open buy with stop and profit",
         plainOrder("IF2406", kDirBuy, kOpen, 2, 3001.4, 2990, 3020.2),
         {"普通单,帐户:8001", "开仓买入IF2406合约2张,价格:3001.4", "止损价:2990.0",
          "获利价:3020.2"}},
        {"open sell, no stop, no profit",
         plainOrder("rb2410", kDirSell, kOpen, 10, 3650, 0, 0),
         {"普通单,帐户:8001", "开仓卖出rb2410合约10张,价格:3650", "止损价:无", "获利价:无"}},
        {"close buy",
         plainOrder("au2412", kDirBuy, kClose, 1, 560.48, 0, 0),
         {"普通单,帐户:8001", "平仓买入au2412合约1张,价格:560.48", "止损价:无", "获利价:无"}},
        {"close today reads as a close; volume rounds with %.f",
         plainOrder("IF2406", kDirSell, kCloseToday, 3, 3000, 0, 2980),
         {"普通单,帐户:8001", "平仓卖出IF2406合约3张,价格:3000.0", "止损价:无", "获利价:2980.0"}},
        {"a stop of 0.000001 counts as none",
         plainOrder("IF2406", kDirBuy, kOpen, 1, 3000, 0.000001, 0),
         {"普通单,帐户:8001", "开仓买入IF2406合约1张,价格:3000.0", "止损价:无", "获利价:无"}},
        {"unknown contract: up to four decimals, trailing zeros dropped",
         plainOrder("ZZ999", kDirBuy, kOpen, 1, 12.3450, 12.1, 0),
         {"普通单,帐户:8001", "开仓买入ZZ999合约1张,价格:12.345", "止损价:12.1", "获利价:无"}},
    };
    for (const auto& c : cases) {
        CConfirmDialog dlg(c.order, nullptr, "舵手", &host);
        EXPECT_FALSE(dlg.isTrigger()) << c.name;
        EXPECT_EQ(dlg.lines(), c.lines) << c.name;
    }
}

TEST(ConfirmDialog, TitleTextAndAlgoBlockAreKept) {
    FakeHost host = hostWithContracts();
    tagAlgoSetting algo;
    algo.nBaseLine = 7;
    CConfirmDialog dlg(plainOrder("rb2410", kDirBuy, kOpen, 1, 3650, 0, 0), &algo, "快捷平仓",
                       &host);
    EXPECT_EQ(dlg.title(), "委托确认[快捷平仓]");
    ASSERT_NE(dlg.algoSetting(), nullptr);
    EXPECT_EQ(dlg.algoSetting()->nBaseLine, 7);
    algo.nBaseLine = 99;  // a copy, not the caller's block
    EXPECT_EQ(dlg.algoSetting()->nBaseLine, 7);
    EXPECT_EQ(CConfirmDialog(dlg.order(), nullptr, "x", &host).algoSetting(), nullptr);
}

TEST(ConfirmDialog, NoFacadeStillShowsEveryDigit) {
    CConfirmDialog dlg(plainOrder("IF2406", kDirBuy, kOpen, 1, 3001.4, 0, 0), nullptr, "舵手",
                       nullptr);
    EXPECT_EQ(dlg.lines()[1], "开仓买入IF2406合约1张,价格:3001.4");
}

tagTriggerOrder triggerOrder(int dir, int openClose, double vol, double price, double trigger,
                             double stop, double profit) {
    tagTriggerOrder t;
    t.strAccountID = "8002";
    t.strBrokerID = "9999";
    t.nExchangeID = 1;
    t.strCode = "IF2406";
    t.nDirection = dir;
    t.nOpenClose = openClose;
    t.dVolume = vol;
    t.dPrice = price;
    t.dTriggerPrice = trigger;
    t.dStopLoss = stop;
    t.dTakeProfit = profit;
    return t;
}

TEST(ConfirmDialog, TriggerOrderTextBlock) {
    FakeHost host = hostWithContracts();
    struct Case {
        const char* name;
        tagTriggerOrder order;
        std::vector<std::string> lines;
    } cases[] = {
        {"open buy with both",
         triggerOrder(kDirBuy, kOpen, 2, 3001.4, 3000, 2990, 3020),
         {"触发单,帐户:8002", "开仓买入IF2406合约2张,价格:3001.4,触发价:3000.0", "止损价:2990.0",
          "获利价:3020.0"}},
        {"close sell at market",
         triggerOrder(kDirSell, kClose, 1, 0, 2950.2, 0, 0),
         {"触发单,帐户:8002", "平仓卖出IF2406合约1张,价格:市价,触发价:2950.2", "止损价:无",
          "获利价:无"}},
    };
    for (const auto& c : cases) {
        CConfirmDialog dlg(c.order, "舵手", &host);
        EXPECT_TRUE(dlg.isTrigger()) << c.name;
        EXPECT_EQ(dlg.title(), "委托确认[舵手]") << c.name;
        EXPECT_EQ(dlg.lines(), c.lines) << c.name;
    }
}

}  // namespace
