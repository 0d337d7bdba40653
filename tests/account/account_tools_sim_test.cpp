// Each tool against the simulated exchange at 10:00, through the real event flow: what is
// closed, cancelled or deleted, and what is left alone.
#include <gtest/gtest.h>

#include <algorithm>

#include "account/batch_trader.h"
#include "account/fast_delete_all.h"
#include "account/fast_exit.h"
#include "account/fast_exit_all.h"
#include "account/filled_statistics.h"
#include "app/helmsman_manage.h"
#include "sim/sim_exchange.h"
#include "support/scripted.h"
#include "support/temp_dir.h"
#include "sim/sim_test_util.h"
#include "support/manager_sink.h"

namespace {

using simtest::kIF;
using simtest::kRB;

using HostSink = ManagerSink;

class AccountToolsOnSim : public ::testing::Test {
protected:
    ManualClock clock{simtest::localMs(10, 0, 0)};
    SimExchange sim{clock, simtest::quietOptions()};
    CHelmsmanManage manage;
    ScriptedPrompter prompter;
    ScriptedUi ui;  // accepts every confirmation
    TempDir root{"helmsman_account"};
    HostSink sink{manage};

    void SetUp() override {
        sim.logonAll();
        manage.setClock(&clock);
        manage.setPrompter(&prompter);
        manage.setUi(&ui);
        manage.init(1, &sim, root.string(), "demo", 0);
        HelmsmanSettings s = manage.settings();
        s.bShowNormalOrderConfirm = 0;
        manage.saveSettings(s);
        sim.setEventSink(&sink);
        market(4400, 5216.2);
    }

    // A deep touch around both prices.
    void market(double rb, double ifPrice) {
        ASSERT_TRUE(sim.applyQuote(simtest::quote(kRB, rb - 1, 50, rb + 1, 50, rb)));
        ASSERT_TRUE(sim.applyQuote(simtest::quote(kIF, ifPrice - 0.2, 50, ifPrice + 0.2, 50, ifPrice)));
        sim.deliverPending();
    }

    void send(tagBrokerOrder o) {
        ASSERT_EQ(sim.SendOrder(o), 1) << o.strStatusMsg;
        sim.deliverPending();
    }

    tagOpenedPosition position(const std::string& account, const tagSymbol& s) {
        tagOpenedPosition p;
        sim.GetPosition(p, account, "9999", s);
        return p;
    }

    std::vector<tagBrokerOrder> working() {
        std::vector<tagBrokerOrder> all, out;
        sim.GetAllOrders(all);
        for (const auto& o : all)
            if (o.nStatus == kOrderQueued || o.nStatus == kOrderPartFilled) out.push_back(o);
        return out;
    }
};

TEST_F(AccountToolsOnSim, FastExitSplitsYesterdayAndTodayOnExchangeZero) {
    // 880002 holds 5 rb2105 from yesterday; two more today.
    send(simtest::order(kRB, kDirBuy, kOpen, 2, 4401, "880002"));
    tagOpenedPosition p = position("880002", kRB);
    ASSERT_DOUBLE_EQ(p.dLong, 7);
    CFastExit fx(manage, &p, "rb2105");
    fx.volume = 7;
    EXPECT_EQ(fx.closeLong(), CFastExit::Result::Sent) << prompter.lastText();
    ASSERT_EQ(fx.lastOrders().size(), 2u);
    EXPECT_EQ(fx.lastOrders()[0].nOpenClose, kClose);
    EXPECT_DOUBLE_EQ(fx.lastOrders()[0].dVolume, 5);
    EXPECT_EQ(fx.lastOrders()[1].nOpenClose, kCloseToday);
    EXPECT_DOUBLE_EQ(fx.lastOrders()[1].dVolume, 2);
    sim.deliverPending();
    EXPECT_DOUBLE_EQ(position("880002", kRB).dLong, 0);

    // Off exchange 0 one 平仓 order closes both days.
    send(simtest::order(kIF, kDirSell, kOpen, 1, 5216.0, "880002"));
    p = position("880002", kIF);
    ASSERT_DOUBLE_EQ(p.dShort, 2);
    CFastExit ifExit(manage, &p, "IF2101");
    ifExit.volume = 2;
    EXPECT_EQ(ifExit.closeShort(), CFastExit::Result::Sent) << prompter.lastText();
    ASSERT_EQ(ifExit.lastOrders().size(), 1u);
    EXPECT_EQ(ifExit.lastOrders()[0].nOpenClose, kClose);
    sim.deliverPending();
    EXPECT_DOUBLE_EQ(position("880002", kIF).dShort, 0);
}

TEST_F(AccountToolsOnSim, ExitAllFlattensTheChosenAccountOnly) {
    send(simtest::order(kRB, kDirSell, kOpen, 3, 4399, "880001"));
    send(simtest::order(kRB, kDirBuy, kOpen, 1, 4401, "880002"));  // today's lot beside yesterday's
    CFastExitAll all(manage);
    const auto& accounts = all.accounts().accounts();
    ASSERT_EQ(accounts.size(), 2u);
    for (std::size_t i = 0; i < accounts.size(); ++i)
        if (accounts[i].strAccountID == "880001") all.accounts().setChecked(i, false);
    all.refresh();
    // 880002: long rb (5 yesterday + 1 today) and short IF (1 yesterday).
    ASSERT_EQ(all.rows().size(), 2u);
    EXPECT_EQ(all.summary(), "共2笔持仓，选中2笔，合计7张");
    EXPECT_EQ(all.closeChecked(), CFastExitAll::Result::Sent);
    EXPECT_EQ(ui.log.back(), "confirmBatch 一键全平 3");  // rb split in two, IF in one
    sim.deliverPending();
    EXPECT_DOUBLE_EQ(position("880002", kRB).dTotal, 0);
    EXPECT_DOUBLE_EQ(position("880002", kIF).dTotal, 0);
    EXPECT_DOUBLE_EQ(position("880001", kRB).dShort, 3);
    // A sell at the bid less one point still fills at the bid.
    const auto& sent = all.lastOrders();
    const auto rb = std::find_if(sent.begin(), sent.end(), [](const auto& o) { return o.strCode == "rb2105"; });
    ASSERT_NE(rb, sent.end());
    EXPECT_DOUBLE_EQ(rb->dPrice, 4398);
}

TEST_F(AccountToolsOnSim, CancelAllCancelsWhatTheFiltersShow) {
    send(simtest::order(kRB, kDirBuy, kOpen, 1, 4300, "880001"));
    send(simtest::order(kRB, kDirSell, kOpen, 1, 4500, "880001"));
    send(simtest::order(kIF, kDirBuy, kOpen, 1, 5100, "880001"));
    send(simtest::order(kRB, kDirBuy, kOpen, 1, 4300, "880002"));
    CFastDeleteAll del(manage);
    ASSERT_EQ(del.rows().size(), 4u);
    for (std::size_t i = 0; i < del.accounts().accounts().size(); ++i)
        if (del.accounts().accounts()[i].strAccountID == "880002") del.accounts().setChecked(i, false);
    del.setSymbolFilter("rb2105");
    del.setSideFilter(kDirBuy);
    del.refresh();
    ASSERT_EQ(del.rows().size(), 1u);
    EXPECT_EQ(del.codes(), (std::vector<std::string>{"IF2101", "rb2105"}));

    prompter.answers = {false};
    EXPECT_EQ(del.cancelAll(), 0);  // declined: nothing asked of the exchange
    EXPECT_EQ(working().size(), 4u);
    prompter.answers = {true};
    EXPECT_EQ(del.cancelAll(), 1);
    ASSERT_EQ(del.results().size(), 1u);
    EXPECT_NE(del.results()[0].find("rb2105 买开仓 1张@4300：撤单请求已发送"), std::string::npos)
        << del.results()[0];
    sim.deliverPending();
    EXPECT_EQ(working().size(), 3u);
    del.refresh();
    EXPECT_TRUE(del.rows().empty());
}

TEST_F(AccountToolsOnSim, TriggerCancelDeletesTheCheckedOrdersOfChosenAccounts) {
    for (const char* account : {"880001", "880002"}) {
        tagTriggerOrder t = simtest::trigger(kTriggerBuyDip, kDirBuy, 5000, 0);
        t.strAccountID = account;
        ASSERT_EQ(sim.SendTriggerOrder(t), 1);
    }
    tagAccoutInfo only;
    only.strAccountID = "880001";
    CDeleteTriggerOrders del(manage, &only);
    ASSERT_EQ(del.rows().size(), 1u);
    EXPECT_EQ(del.cell(0, CDeleteTriggerOrders::kColType), "吊买");
    EXPECT_EQ(del.cell(0, CDeleteTriggerOrders::kColPrice), "市价");
    EXPECT_EQ(del.deleteChecked(), 0);  // nothing checked yet
    del.checkAll(true);
    prompter.answers = {true};
    EXPECT_EQ(del.deleteChecked(), 1);
    EXPECT_EQ(del.summary(), "删除1笔，成功1笔，失败0笔");
    std::vector<tagTriggerOrder> all;
    sim.GetAllTriggerOrders(all);
    for (const auto& t : all) EXPECT_EQ(t.nStatus == kSimTriggerDeleted, t.strAccountID == "880001");
}

TEST_F(AccountToolsOnSim, StatisticsMarkTodayAgainstOpensAndYesterdayAgainstSettlement) {
    send(simtest::order(kRB, kDirBuy, kOpen, 2, 4401, "880001"));  // fills at the ask 4401
    market(4410, 5216.2);
    send(simtest::order(kRB, kDirSell, kCloseToday, 1, 4409, "880001"));  // at the bid 4409
    send(simtest::order(kRB, kDirSell, kClose, 5, 4409, "880002"));       // yesterday's, at 4409
    CFilledOrderStatistics stats(manage);
    // 880001 rb, its total, 880002 rb, its total, the grand total.
    ASSERT_EQ(stats.rows().size(), 5u);
    const auto& a = stats.rows()[0];
    EXPECT_DOUBLE_EQ(a.buyLots, 2);
    EXPECT_DOUBLE_EQ(a.sellLots, 1);
    EXPECT_DOUBLE_EQ(a.turnover, (2 * 4401 + 4409) * 10.0);
    EXPECT_DOUBLE_EQ(a.profit, (4409 - 4401) * 10.0);
    // Yesterday's lots close against the previous settlement, 4402.
    EXPECT_DOUBLE_EQ(stats.rows()[2].profit, (4409 - 4402) * 5 * 10.0);
    tagAccountSummary s;
    sim.GetAccountSummary(s, "880002", "9999");
    EXPECT_DOUBLE_EQ(stats.rows()[2].profit, s.dCloseProfit);
    EXPECT_DOUBLE_EQ(stats.rows()[3].commission, s.dCommission);
    EXPECT_EQ(stats.cell(4, CFilledOrderStatistics::kColAccount), "总计");
    EXPECT_EQ(stats.csv().substr(0, 14), "帐户,商品,");
}

TEST_F(AccountToolsOnSim, BatchTraderSendsMultiplesAndFollowsLinks) {
    CBatchTrader batch(manage, &kRB);
    batch.setMultiple(batch.accounts().accounts()[0], 2);
    batch.setMultiple(batch.accounts().accounts()[1], 0.5);
    batch.baseVolume = 3;
    EXPECT_EQ(batch.send(kDirBuy), CBatchTrader::Result::Sent) << prompter.lastText();
    ASSERT_EQ(batch.lastOrders().size(), 2u);
    EXPECT_DOUBLE_EQ(batch.lastOrders()[0].dVolume, 6);
    EXPECT_DOUBLE_EQ(batch.lastOrders()[1].dVolume, 1);  // 1.5 rounds down
    EXPECT_DOUBLE_EQ(batch.lastOrders()[0].dPrice, 4401);
    EXPECT_TRUE(batch.saveFiles().empty());
    EXPECT_EQ(batch.loadFiles(), std::vector<std::string>{});
    EXPECT_DOUBLE_EQ(batch.factorOf(batch.accounts().accounts()[0]), 2);

    struct Case {
        std::uintptr_t w;
        tagSymbol s;
        std::intptr_t result;
    } cases[] = {{1, kIF, 1}, {1, kIF, 0}, {0, kRB, 0}, {1, {9, "xx"}, 0}};
    for (const Case& c : cases)
        EXPECT_EQ(manage.sendMessage(batch.handle(), kMsgSymbolLink, c.w,
                                     reinterpret_cast<std::uintptr_t>(&c.s)),
                  c.result);
    EXPECT_EQ(batch.symbol(), kIF);
}

}  // namespace
