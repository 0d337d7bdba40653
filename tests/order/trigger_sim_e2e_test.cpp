// A server trigger sent from the trigger page on the simulated exchange: the exchange books
// it, the modify page lists it, and when the market reaches the trigger the exchange
// releases it and the modify page drops it on the order notice that follows.
#include "app/helmsman_manage.h"
#include "order/master_dialog.h"
#include "order/trigger_modify_order.h"
#include "order/trigger_order.h"
#include "order_test_support.h"
#include "sim/sim_test_util.h"
#include "support/scripted.h"

namespace {

TEST(TriggerPageOnSim, SentTriggerIsListedThenReleasedAndDropped) {
    ManualClock clock(simtest::localMs(10, 0, 0));
    SimExchange sim(clock, simtest::quietOptions());
    sim.logonAll();
    CHelmsmanManage manage;
    ScriptedPrompter prompter;
    manage.setClock(&clock);
    manage.setPrompter(&prompter);
    manage.init(1, &sim, "/nonexistent-helmsman-e2e", "demo", 0);
    HelmsmanSettings s = manage.settings();
    s.bShowTriggerOrderConfirm = 0;
    manage.saveSettings(s);
    HostSink sink(manage);
    sim.setEventSink(&sink);

    CMasterDialog ticket(manage);
    ticket.open(nullptr);
    ASSERT_TRUE(ticket.selectSymbol(simtest::kRB));
    ASSERT_TRUE(sim.applyQuote(simtest::quote(simtest::kRB, 4399, 10, 4401, 10, 4400)));
    sim.deliverPending();
    ASSERT_TRUE(ticket.quoteValid());

    CTriggerOrder page(ticket);
    CTriggerModifyOrder modify(ticket);
    page.controls().triggerPrice = 4390;
    page.controls().expiry = endOfDay(clock.now());
    ASSERT_EQ(page.send(kDirBuy), CTriggerOrder::SendResult::Sent) << prompter.lastText();
    EXPECT_EQ(page.lastOrder().nTriggerType, kTriggerBuyDip);
    modify.refresh();
    ASSERT_EQ(modify.orders().size(), 1u);
    EXPECT_EQ(modify.orders()[0].strOrderID, page.lastOrder().strOrderID);

    clock.advanceMs(1000);
    ASSERT_TRUE(sim.applyQuote(simtest::quote(simtest::kRB, 4389, 10, 4391, 10, 4390)));
    sim.deliverPending();
    EXPECT_TRUE(modify.orders().empty());
    std::vector<tagBrokerOrder> orders;
    sim.GetAllOrders(orders);
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_EQ(orders[0].strRemark, "舵手");
    EXPECT_EQ(orders[0].nDirection, kDirBuy);
    EXPECT_NE(orders[0].nStatus, kOrderRejected) << orders[0].strStatusMsg;
}

}  // namespace
