// The modify-or-delete page: what it lists, its checks, and the text of every result.
#include "order/trigger_modify_order.h"

#include "ticket_fixture.h"

namespace {

using Result = CTriggerModifyOrder::Result;

tagTriggerOrder trigger(std::string id, std::string account, std::int32_t status = 0) {
    tagTriggerOrder t;
    t.strOrderID = std::move(id);
    t.strAccountID = account;
    t.strBrokerID = account == "A1" ? "B1" : "B2";
    t.nExchangeID = 1;
    t.strCode = "ag2412";
    t.nDirection = kDirBuy;
    t.dVolume = 2;
    t.dTriggerPrice = 2990;
    t.nStatus = status;
    return t;
}

// A closing stop/profit order: no trigger price, a stop and a profit.
tagTriggerOrder stopProfit(std::string id) {
    tagTriggerOrder t = trigger(std::move(id), "A1");
    t.nOpenClose = kClose;
    t.nDirection = kDirSell;
    t.dTriggerPrice = 0;
    t.dStopLoss = 2950;
    t.dTakeProfit = 3050;
    return t;
}

class TriggerModifyTest : public TicketTest {
protected:
    std::unique_ptr<CTriggerModifyOrder> page;
    void SetUp() override {
        TicketTest::SetUp();
        host.triggerOrders = {trigger("T1", "A1"), trigger("T2", "A2"), trigger("T3", "A1", 1),
                              stopProfit("S1")};
        openOn("ag2412");
        page = std::make_unique<CTriggerModifyOrder>(*ticket);
        page->refresh();
    }
    void TearDown() override {
        page.reset();
        TicketTest::TearDown();
    }
    void choose(const std::string& id) {
        for (std::size_t i = 0; i < page->orders().size(); ++i)
            if (page->orders()[i].strOrderID == id) return page->select(static_cast<int>(i));
        FAIL() << id << " not listed";
    }
    std::int64_t endOfToday() const { return endOfDay(clock.now()); }
};

TEST_F(TriggerModifyTest, ListsTheAccountsWaitingOrdersOnly) {
    ASSERT_EQ(page->orders().size(), 2u);
    EXPECT_EQ(page->orders()[0].strOrderID, "T1");
    EXPECT_EQ(page->orders()[1].strOrderID, "S1");
    ticket->selectAccount(1);
    page->refresh();
    ASSERT_EQ(page->orders().size(), 1u);
    EXPECT_EQ(page->orders()[0].strOrderID, "T2");
}

// ---- Results of modify and delete, by kind of order ------------------------------------------

struct ResultCase {
    const char* id;
    bool remove;
    int hostResult;
    const char* text;
};

class Results : public TriggerModifyTest, public ::testing::WithParamInterface<ResultCase> {};

TEST_P(Results, AreAnnouncedByKind) {
    const ResultCase& rc = GetParam();
    host.modifyTriggerResult = host.deleteTriggerResult = rc.hostResult;
    choose(rc.id);
    page->edit().expiry = endOfToday();  // no next-day question
    const Result r = rc.remove ? page->remove() : page->modify();
    EXPECT_EQ(r, rc.hostResult ? Result::Done : Result::Failed);
    ASSERT_EQ(prompter.boxes.size(), 1u);
    EXPECT_EQ(prompter.boxes[0].caption, "提示");
    EXPECT_EQ(prompter.boxes[0].text, rc.text);
}

INSTANTIATE_TEST_SUITE_P(
    ModifyPage, Results,
    ::testing::Values(ResultCase{"T1", false, 1, "成功修改当前触发单！"},
                      ResultCase{"T1", false, 0, "修改触发单出错,请检查输入参数是否有效！"},
                      ResultCase{"S1", false, 1, "成功修改当前止损获利单！"},
                      ResultCase{"S1", false, 0, "修改止损获利单出错，请检查输入参数是否有效！"},
                      ResultCase{"T1", true, 1, "成功删除当前触发单！"},
                      ResultCase{"T1", true, 0, "删除触发单出错，请检查输入参数是否有效！"},
                      ResultCase{"S1", true, 1, "成功删除当前止损获利单！"},
                      ResultCase{"S1", true, 0, "删除止损获利单出错，请检查输入参数是否有效！"}));

TEST_F(TriggerModifyTest, SendsTheEditedOrderRoundedToTheTick) {
    choose("T1");
    page->edit().volume = 5;
    page->edit().triggerPrice = 2980.1;  // a buy rounds up
    page->edit().execPrice = 2985;
    page->edit().stopLoss = 2970;
    page->edit().expiry = 0;  // asks the next-day question; No means today only
    ASSERT_EQ(page->modify(), Result::Done);
    EXPECT_EQ(prompter.boxes[0].text.rfind("如果您想要使用隔日有效的触发单", 0), 0u);
    ASSERT_EQ(host.modifiedTriggers.size(), 1u);
    EXPECT_EQ(host.calls.end()[-2], "ModifyTriggerOrder T1");
    const tagTriggerOrder& m = host.modifiedTriggers[0];
    EXPECT_EQ(m.dVolume, 5);
    EXPECT_NEAR(m.dTriggerPrice, 2980.2, 1e-9);
    EXPECT_EQ(m.dPrice, 2985);
    EXPECT_EQ(m.dStopLoss, 2970);
    EXPECT_EQ(m.strAccountID, "A1");
    EXPECT_EQ(m.tExpiry, endOfToday());
}

TEST_F(TriggerModifyTest, RefusesWhatTheTriggerPageRefuses) {
    choose("T1");
    page->edit().volume = 0;
    EXPECT_EQ(page->modify(), Result::Refused);
    EXPECT_EQ(prompter.lastText(), "输入错误，交易数量必须大于0！");
    page->edit().volume = 1;
    page->edit().execPrice = 2985;
    page->edit().takeProfit = 2985;
    EXPECT_EQ(page->modify(), Result::Refused);
    EXPECT_EQ(prompter.lastText(), "输入错误，买入时获利价必须大于委托价！");
    EXPECT_TRUE(host.modifiedTriggers.empty());

    page->select(-1);
    EXPECT_EQ(page->remove(), Result::Refused);
    EXPECT_EQ(prompter.lastText(), "请先在列表中选择要修改或删除的触发单！");
}

TEST_F(TriggerModifyTest, FollowsTheHostsNoticesButNotQuotes) {
    choose("T1");
    host.triggerOrders[0].nStatus = 1;  // released by the host
    host.calls.clear();
    IModuleFutureTrader::ITickEx q = quote("ag2412", 2999, 3001, 3000);
    manage.dataChange(kEventQuote, reinterpret_cast<std::uintptr_t>(&q));
    EXPECT_EQ(std::count(host.calls.begin(), host.calls.end(), "GetAllTriggerOrders"), 0);
    tagBrokerOrder released;
    manage.dataChange(kEventOrderChanged, reinterpret_cast<std::uintptr_t>(&released));
    ASSERT_EQ(page->orders().size(), 1u);
    EXPECT_EQ(page->orders()[0].strOrderID, "S1");
    EXPECT_EQ(page->selected(), -1);  // the chosen order is gone
}

TEST_F(TriggerModifyTest, DescribesEachKind) {
    EXPECT_EQ(CTriggerModifyOrder::title(trigger("T1", "A1")), "舵手 - [触发单#T1]");
    EXPECT_EQ(CTriggerModifyOrder::title(stopProfit("S1")), "舵手 - [止损获利单#S1]");
    EXPECT_EQ(
        CTriggerModifyOrder::summary(stopProfit("S1"), 1),
        (std::vector<std::string>{"止损获利卖出ag2412合约2张,", "止损价:2950.0", "获利价:3050.0"}));
    tagTriggerOrder odd = trigger("T9", "A1");
    odd.nDirection = 7;
    EXPECT_EQ(CTriggerModifyOrder::summary(odd, 1),
              (std::vector<std::string>{"触发单,帐户:A1",
                                        "开仓未知操作ag2412合约2张,价格:市价,触发价:2990.0",
                                        "止损价:无", "获利价:无"}));
}

}  // namespace
