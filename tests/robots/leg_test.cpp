// The leg machines transition by transition, against a fake host: every (state, status)
// pair that means something, the ones that must park the leg, and the decisions a leg
// refuses.
#include "robots/leg.h"

#include <gtest/gtest.h>

#include "host/clock.h"
#include "robots/order_tag.h"
#include "support/fake_host.h"
#include "support/scripted.h"

namespace {

struct Rig {
    explicit Rig(LegMachine m) : leg(m, prompter, clock) {}

    ManualClock clock;
    ScriptedPrompter prompter;
    FakeHost host;
    CLeg leg;
    int sends = 0;
    int dir = kDirBuy;

    OrderSubmit submit() {
        return [this](tagBrokerOrder& o) {
            ++sends;
            return host.SendOrder(o);
        };
    }
    bool send(double price = 3500) {
        tagBrokerOrder o;
        o.strAccountID = "880001";
        o.nDirection = dir;
        o.dPrice = price;
        return leg.send(o, "h|1|te|" + std::to_string(sends), submit());
    }
    LegStep notify(int status, double price = 0) {
        tagBrokerOrder r;
        r.strRemark = leg.tag();
        r.strOrderID = "A7";
        r.nStatus = status;
        r.dPrice = price;
        return leg.onOrder(r);
    }
    // Drives a fresh leg into `state` the way the host and the robot would.
    void reach(int state) {
        const int b = leg.machine() == LegMachine::SingleClose ? 4 : 0;
        if (state == 0) return;
        ASSERT_TRUE(send());
        if (state == b + 1) return;
        if (state == b + 4) return void(notify(kOrderFilled));
        notify(kOrderQueued);
        if (state == b + 2) return;
        if (state == b + 3) {
            ASSERT_TRUE(leg.cancel(host));
            return;
        }
        notify(kOrderFilled);  // pair: B filled (4), then A goes out (5)
        ASSERT_TRUE(send());
        if (state == 6) notify(kOrderQueued);
    }
};

struct Row {
    int from;
    int status;
    int to;
    const char* message;  // the box shown before parking, or nullptr
};

void runTable(LegMachine m, std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "state " << row.from << " status " << row.status);
        Rig rig(m);
        rig.reach(row.from);
        ASSERT_EQ(rig.leg.state(), row.from);
        const int sent = rig.sends;
        const LegStep step = rig.notify(row.status);
        EXPECT_EQ(rig.leg.state(), row.to);
        EXPECT_EQ(step.parked, row.to == 99 && row.from != 99);
        EXPECT_EQ(rig.sends, sent);  // a notification never sends
        if (row.message) {
            ASSERT_EQ(rig.prompter.boxes.size(), 1u);
            EXPECT_EQ(rig.prompter.lastCaption(), "提示");
            EXPECT_EQ(rig.prompter.lastText(), row.message);
        } else {
            EXPECT_TRUE(rig.prompter.boxes.empty()) << rig.prompter.lastText();
        }
    }
}

TEST(LegMachine, SingleOpening) {
    // clang-format off
    runTable(LegMachine::SingleOpen, {
        {1, 1, 2, nullptr}, {1, 2, 2, nullptr}, {1, 3, 4, nullptr}, {1, 4, 0, nullptr},
        {1, 5, 0, nullptr}, {1, 8, 0, nullptr}, {1, 11, 1, nullptr},
        {1, 0, 99, "开仓委托发送后续状态出错，新状态=0"},
        {1, 6, 99, "开仓委托发送后续状态出错，新状态=6"},
        {2, 3, 4, nullptr}, {2, 4, 0, nullptr}, {2, 1, 2, nullptr}, {2, 2, 2, nullptr},
        {2, 5, 99, "外部撤单或过期！,新状态=5"},
        {2, 7, 99, "外部撤单或过期！,新状态=7"},
        {3, 4, 0, nullptr}, {3, 3, 4, nullptr}, {3, 1, 3, nullptr}, {3, 7, 3, nullptr},
        {3, 2, 3, nullptr},
        {3, 5, 99, "撤单处理失败，请手动处理,新状态=5"},
        {3, 6, 99, "撤单处理失败，请手动处理,新状态=6"},
        {4, 4, 4, nullptr}, {4, 5, 4, nullptr}, {0, 3, 0, nullptr},
    });
    // clang-format on
}

TEST(LegMachine, SingleClosingOnlyRefreshesOnUnexpectedWhileCancelling) {
    // clang-format off
    runTable(LegMachine::SingleClose, {
        {5, 1, 6, nullptr}, {5, 3, 8, nullptr}, {5, 4, 0, nullptr},
        {5, 0, 99, "平仓委托发送后续状态出错，新状态=0"},
        {6, 3, 8, nullptr}, {6, 4, 0, nullptr}, {6, 8, 99, "外部撤单或过期！,新状态=8"},
        {7, 4, 0, nullptr}, {7, 3, 8, nullptr}, {7, 5, 7, nullptr}, {8, 4, 8, nullptr},
    });
    // clang-format on
}

TEST(LegMachine, PairOpening) {
    // clang-format off
    runTable(LegMachine::PairOpen, {
        // Leg B (states 1 to 3) runs the single machine: only its own messages differ.
        {1, 6, 99, "开仓委托发送后续状态出错，新状态=6"},
        {2, 8, 99, "开仓外部撤单或委托过期，新状态=8"},
        {3, 6, 99, "开仓撤单处理失败，请手动处理,新状态=6"},
        {4, 3, 4, nullptr}, {5, 1, 6, nullptr}, {5, 2, 6, nullptr},
        {5, 3, 6, nullptr}, {5, 11, 5, nullptr},
        {5, 5, 99, "开仓商品A委托失败，请手动处理，补齐头寸！"},
        {5, 8, 99, "开仓商品A委托失败，请手动处理，补齐头寸！"},
        {5, 4, 99, "开仓商品A委托发送后续状态出错，新状态=4"},
        {6, 4, 6, nullptr},
    });
    // clang-format on
}

TEST(LegMachine, PairClosing) {
    // clang-format off
    runTable(LegMachine::PairClose, {
        {1, 0, 99, "平仓委托发送后续状态出错，新状态=0"},
        {2, 5, 99, "平仓外部撤单或委托过期，新状态=5"},
        {3, 6, 99, "平仓撤单处理失败，请手动处理,新状态=6"},
        {5, 5, 99, "商品A平仓委托失败，请手动处理，补齐头寸！"},
        {5, 7, 99, "商品A平仓委托发送后续状态出错，新状态=7"},
    });
    // clang-format on
}

TEST(LegMachine, ASpreadLegEndsInPartWithoutAMessage) {
    for (int from : {1, 2, 3}) {
        Rig rig(LegMachine::SpreadLeg);
        rig.reach(from);
        EXPECT_EQ(rig.notify(kOrderPartCancelled).to, 0) << from;
        EXPECT_TRUE(rig.prompter.boxes.empty());
    }
    Rig plain(LegMachine::SingleOpen);  // the single machines keep their message
    plain.reach(3);
    EXPECT_EQ(plain.notify(kOrderPartCancelled).to, 99);
}

TEST(LegMachine, ParkedLegStaysParkedUntilTheUserIntervenes) {
    Rig rig(LegMachine::SingleOpen);
    rig.reach(1);
    rig.notify(kOrderPartCancelled);
    ASSERT_EQ(rig.leg.state(), 99);
    for (int status : {1, 3, 4, 5}) rig.notify(status);
    EXPECT_EQ(rig.leg.state(), 99);
    EXPECT_EQ(rig.prompter.boxes.size(), 1u);
    EXPECT_FALSE(rig.send());
    EXPECT_FALSE(rig.leg.finishCycle());
    EXPECT_TRUE(rig.leg.intervene());
    EXPECT_EQ(rig.leg.state(), 0);
    EXPECT_TRUE(rig.leg.tag().empty());
    EXPECT_TRUE(rig.send());
}

TEST(LegMachine, DecisionsOnlyWhereTheMachineExpectsThem) {
    struct Case {
        LegMachine m;
        int state;
        bool send, cancel, finish;
    };
    const Case cases[] = {
        {LegMachine::SingleOpen, 0, true, false, false},
        {LegMachine::SingleOpen, 1, false, false, false},
        {LegMachine::SingleOpen, 2, false, true, false},
        {LegMachine::SingleOpen, 3, false, false, false},
        {LegMachine::SingleOpen, 4, false, false, true},
        {LegMachine::SingleClose, 0, true, false, false},
        {LegMachine::SingleClose, 6, false, true, false},
        {LegMachine::SingleClose, 8, false, false, true},
        {LegMachine::PairOpen, 4, true, false, false},  // B filled: A goes out
        {LegMachine::PairOpen, 5, false, false, false},
        {LegMachine::PairOpen, 6, false, false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "machine " << int(c.m) << " state " << c.state);
        {
            Rig rig(c.m);
            rig.reach(c.state);
            const int sent = rig.sends;
            EXPECT_EQ(rig.send(), c.send);
            EXPECT_EQ(rig.sends, sent + (c.send ? 1 : 0));
        }
        {
            Rig rig(c.m);
            rig.reach(c.state);
            EXPECT_EQ(rig.leg.cancel(rig.host), c.cancel);
            EXPECT_EQ(rig.leg.finishCycle(), c.finish);
            EXPECT_FALSE(rig.leg.intervene());
        }
    }
}

TEST(LegMachine, ARefusalWrittenBackAtOnceIsTakenAsItsStatus) {
    Rig single(LegMachine::SingleOpen);
    single.host.sendOrderResult = 0;
    EXPECT_TRUE(single.send());
    EXPECT_EQ(single.leg.state(), 0);  // free to send again at the next decision
    EXPECT_TRUE(single.prompter.boxes.empty());

    Rig pair(LegMachine::PairOpen);
    pair.reach(4);
    pair.host.sendOrderResult = 0;
    EXPECT_TRUE(pair.send());
    EXPECT_EQ(pair.leg.state(), 99);
    EXPECT_EQ(pair.prompter.lastText(), "开仓商品A委托失败，请手动处理，补齐头寸！");
}

TEST(LegMachine, RecordsPriceAndIdentifierFromMatchingNotifications) {
    Rig rig(LegMachine::SingleOpen);
    rig.send(3500);
    EXPECT_EQ(rig.leg.price(), 3500);
    EXPECT_EQ(rig.leg.orderId(), "1000");  // written back by the host
    rig.notify(kOrderQueued, 0);           // a price of 0 is no price
    EXPECT_EQ(rig.leg.price(), 3500);
    EXPECT_EQ(rig.leg.orderId(), "A7");
    rig.notify(kOrderFilled, 3499);
    EXPECT_EQ(rig.leg.price(), 3499);
}

TEST(LegMachine, StatusTexts) {
    // Order at 3500; bid 3498 / ask 3501 unless the row says otherwise.
    struct Case {
        LegMachine m;
        int state;
        int dir;
        double bid, ask;
        int decimals;
        LegWording wording;
        const char* text;
    };
    const auto O = LegWording::Orders, R = LegWording::Resting;
    const auto SO = LegMachine::SingleOpen, SC = LegMachine::SingleClose, PO = LegMachine::PairOpen;
    const int B = kDirBuy, S = kDirSell;
    const Case cases[] = {
        {SO, 2, B, 3498, 3501, -1, O, "买入开仓委托已报(3500/2)"},
        {SO, 2, S, 3498, 3501, -1, O, "卖出开仓委托已报(3500/1)"},
        {SO, 2, B, 0, 3501, -1, O, "买入开仓委托已报(已跌停)"},
        {SO, 2, S, 3498, 0, -1, O, "卖出开仓委托已报(已跌停)"},
        {SO, 2, B, 3497.5, 3501, 1, O, "买入开仓委托已报(3500.0/2.5)"},
        {SO, 3, B, 0, 0, -1, R, "开仓挂单撤单中..."},
        {SO, 99, B, 0, 0, -1, O, "出错或时间到"},
        {SC, 6, S, 3498, 3501, -1, O, "卖出平仓委托已报(3500/1)"},
        {SC, 6, B, 3498, 3501, -1, O, "买入平仓委托已报(3500/2)"},
        {SC, 6, S, 3498, 0, -1, O, "卖出平仓委托已报(已跌停)"},
        {SC, 6, S, 3498, 0, -1, R, "卖出平仓委托已报(已涨停)"},
        {SC, 6, B, 0, 3501, -1, R, "买入平仓委托已报(已跌停)"},
        {SC, 8, S, 0, 0, -1, R, "平仓挂单成交"},
        {PO, 2, B, 3499.8, 3501, 1, O, "商品B挂单委托已报(3500.0/0.2)"},
        {PO, 2, B, 0, 3501, 1, O, "商品B挂单委托已报(已跌停)"},
        {PO, 2, S, 3499, 0, 1, O, "商品B挂单委托已报(已涨停)"},
        {PO, 6, B, 0, 0, 1, O, "商品A委托已报"},
        {PO, 99, B, 0, 0, 1, O, "出错，请手工很处理"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        Rig rig(c.m);
        rig.dir = c.dir;
        if (c.state == 99) {
            rig.reach(1);
            rig.notify(kOrderPartCancelled);
        } else {
            rig.reach(c.state);
        }
        ASSERT_EQ(rig.leg.state(), c.state);
        EXPECT_EQ(rig.leg.statusText(c.bid, c.ask, c.decimals, c.wording), c.text);
    }
}

TEST(RouteOrderNotification, MatchingRule) {
    ManualClock clock;
    ScriptedPrompter prompter;
    FakeHost host;
    CLeg open(LegMachine::SingleOpen, prompter, clock),
        close(LegMachine::SingleClose, prompter, clock);
    auto submit = [&](tagBrokerOrder& o) { return host.SendOrder(o); };
    tagBrokerOrder o;
    open.send(o, "$|h|5|te|1", submit);
    close.send(o, "$|h|5|tx|2", submit);
    CLeg* legs[] = {&open, &close};

    tagBrokerOrder rec;
    rec.nStatus = kOrderQueued;
    CLeg* hit = &open;
    rec.strRemark = "$|h|5|tx|2";
    EXPECT_EQ(routeOrderNotification(true, 2, &rec, legs, &hit), -1);  // stopping
    EXPECT_EQ(hit, nullptr);
    EXPECT_EQ(routeOrderNotification(false, 1000, &rec, legs), 1);  // not an order event
    EXPECT_EQ(routeOrderNotification(false, 0x10002, nullptr, legs), -1);
    rec.strRemark.clear();
    EXPECT_EQ(routeOrderNotification(false, 2, &rec, legs), -1);
    rec.strRemark = "$|h|6|tx|2";  // another window's tag
    EXPECT_EQ(routeOrderNotification(false, 2, &rec, legs, &hit), 1);
    EXPECT_EQ(hit, nullptr);
    EXPECT_EQ(close.state(), 5);
    rec.strRemark = "$|h|5|tx|2";
    EXPECT_EQ(routeOrderNotification(false, 0x10002, &rec, legs, &hit), 1);  // high bits ignored
    EXPECT_EQ(hit, &close);
    EXPECT_EQ(close.state(), 6);
    EXPECT_EQ(open.state(), 1);
}

}  // namespace
