// Changing a working order: the corrections (nothing sent), the position texts, and the
// cancel-then-send flow on the simulated exchange — the old order goes, one new order works,
// and nothing is doubled when the cancel fails, a fill races it or a notice repeats.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "app/helmsman_manage.h"
#include "order/order_modify.h"
#include "order/order_strings.h"
#include "order_test_support.h"
#include "sim/sim_test_util.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

namespace {

using namespace order_text;

struct CancelRefusingHost : FakeHost {
    int deleteResult = 1;
    int DeleteOrder(const std::string& k1, const std::string& k2, const std::string& id) override {
        FakeHost::DeleteOrder(k1, k2, id);
        return deleteResult;
    }
};

class OrderModifyTest : public ::testing::Test {
protected:
    CancelRefusingHost host;
    ScriptedPrompter prompter;
    ManualClock clock{1'717'000'000'000};
    CHelmsmanManage manage;
    TempDir root{"helmsman_modify"};

    void SetUp() override {
        manage.init(7, &host, root.string(), "trader", 0);
        manage.setPrompter(&prompter);
        manage.setClock(&clock);
        host.details["ag2412"] = contractDetail(0.2f, 1, 10, 0.1);
        host.quotes["ag2412"] =
            TickBuilder(1, "ag2412").bid(5000, 3).ask(5000.2, 4).last(5000).limits(4500, 5500);
        host.positions = {agPosition("9999")};
    }

    tagBrokerOrder working(int direction, int openClose) {
        tagBrokerOrder o = brokerOrder("A1", "ag2412", direction, 1, 4990);
        o.nExchangeID = 1;
        o.nOpenClose = openClose;
        o.strOrderID = "77";
        o.nStatus = kOrderQueued;
        host.orders = {o};
        return o;
    }
};

TEST_F(OrderModifyTest, PositionTexts) {
    COrderModify m(manage, working(kDirBuy, kOpen));
    EXPECT_EQ(m.positionText(), "5(3/2)");
    EXPECT_EQ(m.sidesText(), "今多(1)/今空(2)");
    EXPECT_EQ(m.controls().volumeText, "1");
    EXPECT_EQ(manage.handlesOf(kOrderModifyDialogId), std::vector<WndHandle>{m.handle()});
}

TEST_F(OrderModifyTest, CorrectionsAndRefusalsSendNothing) {
    struct Case {
        const char* name;
        int direction;
        int openClose;
        double price;
        const char* volume;
        const char* text;
        double correctedPrice;        // 0: unchanged
        const char* correctedVolume;  // nullptr: unchanged
    };
    const Case cases[] = {
        {"buy above the band", kDirBuy, kOpen, 5600, "1", kMsgModifyToAsk, 5000.2, nullptr},
        {"buy below the band", kDirBuy, kOpen, 4400, "1", kMsgModifyToBid, 5000, nullptr},
        {"sell above the band", kDirSell, kOpen, 5600, "1", kMsgModifyToAsk, 5000.2, nullptr},
        {"close long above", kDirSell, kClose, 4990, "4", kMsgCloseLongAbove, 0, "3"},
        {"close long zero", kDirSell, kClose, 4990, "0", kMsgCloseLongNotPositive, 0, "3"},
        {"close short above", kDirBuy, kCloseToday, 4990, "5", kMsgCloseShortAbove, 0, "2"},
        {"close short negative", kDirBuy, kClose, 4990, "-1", kMsgCloseShortNotPositive, 0, "2"},
        {"open zero", kDirBuy, kOpen, 4990, "0", "输入错误，交易数量必须大于0！", 0, nullptr},
        {"unchanged", kDirBuy, kOpen, 4990, "1", kMsgModifyUnchanged, 0, nullptr},
    };
    for (const Case& c : cases) {
        prompter.boxes.clear();
        host.calls.clear();
        COrderModify m(manage, working(c.direction, c.openClose));
        m.controls().price = c.price;
        m.controls().volumeText = c.volume;
        m.submit();
        ASSERT_EQ(prompter.boxes.size(), 1u) << c.name;
        EXPECT_EQ(prompter.lastCaption(), "提示") << c.name;
        EXPECT_EQ(prompter.lastText(), c.text) << c.name;
        if (c.correctedPrice) EXPECT_DOUBLE_EQ(m.controls().price, c.correctedPrice) << c.name;
        if (c.correctedVolume) EXPECT_EQ(m.controls().volumeText, c.correctedVolume) << c.name;
        EXPECT_EQ(m.state(), COrderModify::State::Editing) << c.name;
        EXPECT_TRUE(host.callsStartingWith("DeleteOrder").empty()) << c.name;
        EXPECT_TRUE(host.sent.empty()) << c.name;
    }
    EXPECT_STREQ(kMsgModifyToBid, "输入的委托价格数量不在涨跌停范围内，已自动修改为当前叫买价！");
    EXPECT_STREQ(kMsgCloseShortAbove, "输入的平空仓数量大于当前卖持仓，已自动修改为当前卖持仓量！");
}

TEST_F(OrderModifyTest, RefusedCancelSendsNothing) {
    host.deleteResult = 0;
    COrderModify m(manage, working(kDirBuy, kOpen));
    m.controls().price = 4992;
    EXPECT_EQ(m.submit(), COrderModify::Result::Refused);
    EXPECT_EQ(m.state(), COrderModify::State::Failed);
    EXPECT_EQ(m.status(), kModifyCancelFailed);
    EXPECT_TRUE(host.sent.empty());
    EXPECT_EQ(m.submit(), COrderModify::Result::Refused);  // finished: a second press does nothing
    EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), 1u);
}

// ---- On the simulated exchange ---------------------------------------------------------------

class OrderModifySimTest : public ::testing::Test {
protected:
    ManualClock clock{simtest::localMs(10, 0, 0)};
    SimExchange sim{clock, simtest::quietOptions()};
    ScriptedPrompter prompter;
    CHelmsmanManage manage;
    HostSink sink{manage};

    void SetUp() override {
        manage.setClock(&clock);
        manage.setPrompter(&prompter);
        manage.init(1, &sim, "/nonexistent-helmsman-modify", "demo", 0);
        sim.setEventSink(&sink);
        sim.applyQuote(simtest::quote(simtest::kIF, 5230, 10, 5230.2, 3, 5230));
        sim.deliverPending();
    }

    // A resting buy of `volume` IF2101 at 5229.
    tagBrokerOrder restingBuy(double volume) {
        tagBrokerOrder o = simtest::order(simtest::kIF, kDirBuy, kOpen, volume, 5229);
        EXPECT_NE(sim.SendOrder(o), 0);
        sim.deliverPending();
        tagBrokerOrder now;
        sim.GetOrder(now, o.strAccountID, o.strBrokerID, o.strOrderID);
        return now;
    }
    std::vector<tagBrokerOrder> working() {
        std::vector<tagBrokerOrder> all, out;
        sim.GetAllOrders(all);
        for (const auto& o : all)
            if (o.nStatus == kOrderQueued || o.nStatus == kOrderPartFilled) out.push_back(o);
        return out;
    }
    std::size_t orderCount() {
        std::vector<tagBrokerOrder> all;
        sim.GetAllOrders(all);
        return all.size();
    }
};

TEST_F(OrderModifySimTest, OldOrderGoesThenOneNewOrderWorks) {
    const tagBrokerOrder old = restingBuy(2);
    COrderModify m(manage, old);
    m.controls().price = 5228.8;
    m.controls().volumeText = "3";
    ASSERT_EQ(m.submit(), COrderModify::Result::Cancelling);
    EXPECT_EQ(orderCount(), 1u);  // nothing new before the cancel is confirmed
    sim.deliverPending();
    sim.deliverPending();
    EXPECT_EQ(m.state(), COrderModify::State::Done);
    const auto live = working();
    ASSERT_EQ(live.size(), 1u);
    EXPECT_NE(live[0].strOrderID, old.strOrderID);
    EXPECT_DOUBLE_EQ(live[0].dPrice, 5228.8);
    EXPECT_DOUBLE_EQ(live[0].dVolume, 3);
    EXPECT_EQ(live[0].strRemark, old.strRemark);
    tagBrokerOrder gone;
    sim.GetOrder(gone, old.strAccountID, old.strBrokerID, old.strOrderID);
    EXPECT_EQ(gone.nStatus, kOrderCancelled);
    EXPECT_EQ(m.status(), "已改单：原委托已撤销，新委托 3张 价格:5228.8");
}

TEST_F(OrderModifySimTest, RepeatedOrLostNoticesNeverDoubleTheOrder) {
    for (const bool lose : {false, true}) {
        const tagBrokerOrder old = restingBuy(1);
        COrderModify m(manage, old);
        m.controls().price = 5228.6;
        if (lose)
            sim.dropNextNotifications(10);
        else
            sim.duplicateNextNotifications(10);
        ASSERT_EQ(m.submit(), COrderModify::Result::Cancelling);
        sim.deliverPending();
        m.poll();  // a lost notice is made up by reading the order
        m.poll();
        sim.deliverPending();
        sim.deliverPending();
        EXPECT_EQ(m.state(), COrderModify::State::Done) << lose;
        const auto live = working();
        ASSERT_EQ(live.size(), 1u) << lose;
        EXPECT_DOUBLE_EQ(live[0].dPrice, 5228.6);
        sim.DeleteOrder(live[0].strAccountID, live[0].strBrokerID, live[0].strOrderID);
        sim.deliverPending();
    }
}

TEST_F(OrderModifySimTest, FillsRacingTheCancelCountAgainstTheNewVolume) {
    const tagBrokerOrder old = restingBuy(5);
    COrderModify m(manage, old);
    // The ask comes down to the resting price for 2 lots; the fill is not delivered yet.
    sim.applyQuote(simtest::quote(simtest::kIF, 5228.8, 10, 5229, 2, 5229));
    m.controls().price = 5229.2;
    m.controls().volumeText = "5";
    ASSERT_EQ(m.submit(), COrderModify::Result::Cancelling);
    sim.deliverPending();
    sim.deliverPending();
    const auto live = working();
    ASSERT_EQ(live.size(), 1u);
    EXPECT_DOUBLE_EQ(live[0].dVolume + live[0].dFilledVolume, 3);  // 5 wanted, 2 filled
    tagBrokerOrder gone;
    sim.GetOrder(gone, old.strAccountID, old.strBrokerID, old.strOrderID);
    EXPECT_EQ(gone.nStatus, kOrderPartCancelled);
    EXPECT_DOUBLE_EQ(gone.dFilledVolume, 2);
}

TEST_F(OrderModifySimTest, AnOrderFilledBeforeTheChangeIsNotReplaced) {
    const tagBrokerOrder old = restingBuy(1);
    COrderModify m(manage, old);
    sim.applyQuote(simtest::quote(simtest::kIF, 5228.8, 10, 5229, 5, 5229));  // fills it
    m.controls().price = 5228;
    EXPECT_EQ(m.submit(), COrderModify::Result::Refused);
    EXPECT_EQ(prompter.lastText(), kMsgModifyNotWorking);
    sim.deliverPending();
    EXPECT_EQ(orderCount(), 1u);
    EXPECT_TRUE(working().empty());
}

}  // namespace
