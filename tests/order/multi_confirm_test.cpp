#include "order/multi_confirm.h"

#include <gtest/gtest.h>

#include <limits>

#include "app/helmsman_manage.h"
#include "app/settings.h"
#include "host/number_text.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/scripted.h"

namespace {

FakeHost hostWithIF() {
    FakeHost host;
    host.details["IF2406"] = contractDetail(0.2f, 1, 10);
    host.details["rb2410"] = contractDetail(1.0f, 1, 10);
    host.quotes["IF2406"] = TickBuilder().limits(2700, 3300);  // rb2410 has no quote: no band known
    host.details["IH2406"] = contractDetail(0.2f, 1, 10);
    host.quotes["IH2406"] = TickBuilder().limits(2700.1, 3299.9);  // limits off the grid
    host.accounts = {FakeHost::account("8001", "9999", "模拟账户一")};
    return host;
}

tagBrokerOrder order(std::string acct, std::string code, int dir, int oc, double vol,
                     double price) {
    tagBrokerOrder o;
    o.strAccountID = std::move(acct);
    o.strBrokerID = "9999";
    o.nExchangeID = 1;
    o.strCode = std::move(code);
    o.nDirection = dir;
    o.nOpenClose = oc;
    o.dVolume = vol;
    o.dPrice = price;
    return o;
}

std::vector<tagBrokerOrder> likeOrders() {
    return {order("8001", "IF2406", kDirBuy, kOpen, 2, 3001.4),
            order("8002", "IF2406", kDirBuy, kOpen, 1, 3001.4),
            order("8003", "IF2406", kDirBuy, kOpen, 3, 3001.4)};
}

TEST(MultiConfirm, TitleColumnsAndRowsInArrayOrder) {
    FakeHost host = hostWithIF();
    std::vector<tagBrokerOrder> orders = {order("8001", "IF2406", kDirBuy, kOpen, 2, 3001.4),
                                          order("8002", "rb2410", kDirSell, kClose, 10, 3650),
                                          order("8003", "IF2406", kDirSell, kCloseToday, 1, 3000)};
    orders[1].strAccountState = "模拟账户二";  // logged off since: the name the ticket copied
    CMultiConfirm mc(orders, "批量下单", nullptr, &host);
    EXPECT_EQ(mc.title(), "委托确认[批量下单] - 双击可修改价格数量");
    EXPECT_STREQ(CMultiConfirm::columnLayout(), "帐户,80;商品信息,108;委托价格,60;委托数量,60;");
    ASSERT_EQ(mc.rowCount(), 3u);
    const std::vector<std::vector<std::string>> rows = {
        {"8001(模拟账户一)", "IF2406 开仓买入", "3001.4", "2"},
        {"8002(模拟账户二)", "rb2410 平仓卖出", "3650", "10"},
        {"8003", "IF2406 平今仓卖出", "3000.0", "1"},  // no name known
    };
    for (std::size_t r = 0; r < rows.size(); ++r)
        for (int c = 0; c < CMultiConfirm::kColCount; ++c)
            EXPECT_EQ(mc.cell(r, c), rows[r][c]) << r << "," << c;
    EXPECT_EQ(mc.summary(), "共3笔,合计13张");
}

TEST(MultiConfirm, PriceEditsAreLimitedAndRoundedForTheDirection) {
    FakeHost host = hostWithIF();
    const char* band = "输入错误，委托价格必须在涨跌停价2700.0至3300.0之间！";
    const char* notPositive = "输入错误，委托价格必须大于0！";
    struct Case {
        const char* code;  // IF2406 starts at 3000 in a 2700-3300 band, rb2410 at 3650 in none
        int dir;
        const char* typed;
        double price;         // after the edit (unchanged when refused)
        const char* message;  // "" when accepted
    } cases[] = {
        {"IF2406", kDirBuy, "3001.3", 3001.4, ""},
        {"IF2406", kDirSell, "3001.3", 3001.2, ""},
        {"IF2406", kDirBuy, " 3001.6 ", 3001.6, ""},
        {"IF2406", kDirBuy, "3300", 3300, ""},
        {"IF2406", kDirBuy, "3300.2", 3000, band},
        {"IF2406", kDirSell, "2699.8", 3000, band},
        {"IF2406", kDirBuy, "0", 3000, notPositive},
        {"rb2410", kDirBuy, "-5", 3650, notPositive},
        {"rb2410", kDirSell, "99999.7", 99999, ""},
        {"rb2410", kDirSell, "0.5", 3650, notPositive},  // rounds down to nothing
        {"IF2406", kDirBuy, "30o1", 3000, "输入错误，请输入数字！"},
        {"rb2410", kDirBuy, "inf", 3650, "输入错误，请输入数字！"},
        {"rb2410", kDirBuy, "nan", 3650, "输入错误，请输入数字！"},
        {"rb2410", kDirBuy, "3e33", 3650, number_text::kMsgPriceOutOfRange},
        {"rb2410", kDirBuy, "999999999.2", 1e9, ""},
        // Rounding never steps out of a band whose limits are off the grid.
        {"IH2406", kDirBuy, "3299.9", 3299.8, ""},
        {"IH2406", kDirSell, "2700.1", 2700.2, ""},
    };
    for (const auto& c : cases) {
        const double start = std::string(c.code) == "rb2410" ? 3650 : 3000;
        CMultiConfirm mc({order("1", c.code, c.dir, kOpen, 1, start)}, "x", nullptr, &host);
        const EditResult r = mc.editPrice(0, c.typed);
        EXPECT_EQ(r.ok, *c.message == '\0') << c.typed;
        EXPECT_EQ(r.message, c.message) << c.typed;
        EXPECT_DOUBLE_EQ(mc.orders()[0].dPrice, c.price) << c.typed;
    }
}

TEST(MultiConfirm, VolumeEditsAreWholeAndCapped) {
    FakeHost host = hostWithIF();
    struct Case {
        const char* typed;
        double cap;
        bool ok;
        double volume;
        const char* message;
    } cases[] = {
        {"1000", 1000, true, 1000, ""},
        {"1001", 1000, false, 2, "输入错误，委托数量不能超过1000张！"},
        {"20", 15, false, 2, "输入错误，委托数量不能超过15张！"},
        {"0", 1000, false, 2, "输入错误，委托数量必须是大于0的整数！"},
        {"-3", 1000, false, 2, "输入错误，委托数量必须是大于0的整数！"},
        {"2.5", 1000, false, 2, "输入错误，委托数量必须是大于0的整数！"},
        {"3.0", 1000, true, 3, ""},
        {"abc", 1000, false, 2, "输入错误，请输入数字！"},
        {"inf", 1000, false, 2, "输入错误，请输入数字！"},
        {"1e300", 1000, false, 2, "输入错误，委托数量不能超过1000张！"},
        {"5000", std::numeric_limits<double>::infinity(), false, 2,  // no cap: the default
         "输入错误，委托数量不能超过1000张！"},
    };
    for (const auto& c : cases) {
        CMultiConfirm mc({order("1", "IF2406", kDirBuy, kOpen, 2, 3000)}, "x", nullptr, &host,
                         c.cap);
        const EditResult r = mc.editVolume(0, c.typed);
        EXPECT_EQ(r.ok, c.ok) << c.typed;
        EXPECT_EQ(r.message, c.message) << c.typed;
        EXPECT_DOUBLE_EQ(mc.orders()[0].dVolume, c.volume) << c.typed;
    }
}

TEST(MultiConfirm, VolumeCapFollowsTheSingleOrderLimit) {
    HelmsmanSettings s;
    EXPECT_EQ(CMultiConfirm::volumeCapFor(s), CMultiConfirm::kDefaultVolumeCap);
    s.dMaxSingleLimitVol = 50;
    EXPECT_EQ(CMultiConfirm::volumeCapFor(s), CMultiConfirm::kDefaultVolumeCap);  // switched off
    s.bUseSingleLimit = 1;
    EXPECT_EQ(CMultiConfirm::volumeCapFor(s), 50);
    s.dMaxSingleLimitVol = 0;
    EXPECT_EQ(CMultiConfirm::volumeCapFor(s), CMultiConfirm::kDefaultVolumeCap);
    s.dMaxSingleLimitVol = std::numeric_limits<double>::infinity();
    EXPECT_EQ(CMultiConfirm::volumeCapFor(s), CMultiConfirm::kDefaultVolumeCap);
}

TEST(MultiConfirm, EditsChangeOnlyTheirRowAndTheCells) {
    FakeHost host = hostWithIF();
    CMultiConfirm mc(likeOrders(), "x", nullptr, &host);
    ASSERT_TRUE(mc.editPrice(1, "3010.1").ok);
    ASSERT_TRUE(mc.editVolume(2, "7").ok);
    EXPECT_EQ(mc.cell(1, CMultiConfirm::kColPrice), "3010.2");
    EXPECT_EQ(mc.cell(2, CMultiConfirm::kColVolume), "7");
    EXPECT_DOUBLE_EQ(mc.orders()[0].dPrice, 3001.4);
    EXPECT_DOUBLE_EQ(mc.orders()[0].dVolume, 2);
    EXPECT_EQ(mc.summary(), "开仓买入IF2406,共3笔,合计10张");
    EXPECT_FALSE(mc.editPrice(3, "3000").ok);  // no such row: refused, nothing thrown
}

TEST(MultiConfirm, SendGoesThroughTheManagersBatchOnce) {
    FakeHost host = hostWithIF();
    CHelmsmanManage manager;
    manager.init(0, &host, "/nonexistent-root", "u", 0);
    ScriptedUi ui;
    manager.setUi(&ui);
    manager.setAlgoTrading(true);

    tagAlgoSetting algo;
    algo.nBaseLine = 3;
    CMultiConfirm mc(likeOrders(), "x", &algo, &host);
    ASSERT_TRUE(mc.editVolume(0, "4").ok);
    EXPECT_TRUE(mc.send(manager));
    EXPECT_FALSE(mc.send(manager));  // a second accept sends nothing
    // Volumes 4, 1, 3 against the block's threshold of 3: the edited one goes to the centre.
    EXPECT_EQ(host.sent.size(), 1u);
    ASSERT_EQ(ui.toAlgo.size(), 2u);
    EXPECT_DOUBLE_EQ(ui.toAlgo[0].dVolume, 4);
}

tagTriggerOrder trigger(std::string acct, double trig, double price, double stop, double profit) {
    tagTriggerOrder t;
    t.strAccountID = std::move(acct);
    t.strBrokerID = "9999";
    t.nExchangeID = 1;
    t.strCode = "IF2406";
    t.nDirection = kDirSell;
    t.nOpenClose = kOpen;
    t.nTriggerType = kTriggerSellChase;
    t.dVolume = 2;
    t.dTriggerPrice = trig;
    t.dPrice = price;
    t.dStopLoss = stop;
    t.dTakeProfit = profit;
    return t;
}

TEST(MultiTriggerConfirm, RowsAndSendingInListOrder) {
    FakeHost host = hostWithIF();
    CMultiTriggerConfirm mc(
        {trigger("8001", 2990, 2989.8, 3000, 2950), trigger("8002", 2990, 0, 0, 0),
         trigger("8003", 2985.2, 2985, 0, 2900)},
        "舵手", &host);
    EXPECT_EQ(mc.title(), "触发单确认[舵手]");
    EXPECT_STREQ(CMultiTriggerConfirm::columnLayout(),
                 "帐户,80;商品信息,108;触发价格,60;执行价格,60;委托数量,60;止损价,60;获利价,60;");
    const std::vector<std::vector<std::string>> rows = {
        {"8001(模拟账户一)", "IF2406 开仓卖出 追卖", "2990.0", "2989.8", "2", "3000.0", "2950.0"},
        {"8002", "IF2406 开仓卖出 追卖", "2990.0", "市价", "2", "无", "无"},
        {"8003", "IF2406 开仓卖出 追卖", "2985.2", "2985.0", "2", "无", "2900.0"},
    };
    for (std::size_t r = 0; r < rows.size(); ++r)
        for (int c = 0; c < CMultiTriggerConfirm::kColCount; ++c)
            EXPECT_EQ(mc.cell(r, c), rows[r][c]) << r << "," << c;

    host.calls.clear();
    auto result = mc.send(host);
    EXPECT_EQ(result.sent, 3);
    EXPECT_TRUE(result.failed.empty());
    EXPECT_EQ(mc.failureMessage(result), "");
    ASSERT_EQ(host.sentTriggers.size(), 3u);
    EXPECT_EQ(host.sentTriggers[0].strAccountID, "8001");
    EXPECT_EQ(host.sentTriggers[1].strAccountID, "8002");
    EXPECT_EQ(host.sentTriggers[2].strAccountID, "8003");
    EXPECT_EQ(mc.send(host).sent, 0);  // once only
    EXPECT_EQ(host.sentTriggers.size(), 3u);
}

TEST(MultiTriggerConfirm, ARefusalIsReportedAndDoesNotStopTheRest) {
    FakeHost host = hostWithIF();
    host.sendTriggerResult = 0;
    CMultiTriggerConfirm mc({trigger("8001", 2990, 0, 0, 0), trigger("8002", 2990, 0, 0, 0)}, "x",
                            &host);
    auto result = mc.send(host);
    EXPECT_EQ(result.sent, 0);
    EXPECT_EQ(result.failed, (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(host.sentTriggers.size(), 2u);
    EXPECT_EQ(mc.failureMessage(result), "2笔触发单发送失败：IF2406(8001),IF2406(8002)");
}

}  // namespace
