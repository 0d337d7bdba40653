// The close-position trigger: refusals (nothing sent), side labels and formats, the trigger
// type from the reference price, the expiry question and the three ways an order leaves.
#include "order/order_strings.h"
#include "order/stop_trigger.h"
#include "order_test_support.h"
#include "ticket_fixture.h"

namespace {

using namespace order_text;

// Account A1 holds long 3 and short 2 of 白银2412 (ag2412) on 上期所; last 5000.
class StopTriggerTest : public TicketTest {
protected:
    void SetUp() override {
        TicketTest::SetUp();
        host.details["ag2412"].strName = "白银2412";
        host.quotes["ag2412"] = quote("ag2412", 5000, 5000.2, 5000, 4500, 5500);
        host.positions = {agPosition("B1")};
    }

    CStopTrigger make(int side) { return CStopTrigger(manage, host.positions[0], side, "ag2412"); }
};

TEST_F(StopTriggerTest, SideLabelsDirectionAndSymbolText) {
    CStopTrigger longSide = make(1);
    EXPECT_STREQ(longSide.sideText(), "多头持仓");
    EXPECT_EQ(longSide.direction(), kDirSell);
    EXPECT_EQ(longSide.controls().volumeText, "3");
    EXPECT_EQ(longSide.symbolText(), "白银2412[ag2412@上期所]");
    CStopTrigger shortSide = make(2);
    EXPECT_STREQ(shortSide.sideText(), "空头持仓");
    EXPECT_EQ(shortSide.direction(), kDirBuy);
    EXPECT_EQ(shortSide.controls().volumeText, "2");
    // Without a name the code stands in for it.
    host.details["ag2412"].strName.clear();
    EXPECT_EQ(make(1).symbolText(), "ag2412[ag2412@上期所]");
}

TEST(StopTriggerType, EqualGoesToTheDipTypeBothWays) {
    struct Case {
        int dir;
        double trigger;
        int type;
    } cases[] = {
        {kDirBuy, 5000, kTriggerBuyDip},    {kDirBuy, 4999, kTriggerBuyDip},
        {kDirBuy, 5001, kTriggerBuyChase},  {kDirSell, 5000, kTriggerSellRise},
        {kDirSell, 5001, kTriggerSellRise}, {kDirSell, 4999, kTriggerSellChase},
    };
    for (const Case& c : cases)
        EXPECT_EQ(CStopTrigger::autoType(c.dir, c.trigger, 5000), c.type) << c.dir << " " << c.trigger;
    EXPECT_DOUBLE_EQ(CStopTrigger::referencePrice(TickBuilder(1, "x").last(7).preSettle(6)), 7);
    EXPECT_DOUBLE_EQ(CStopTrigger::referencePrice(TickBuilder(1, "x").last(0.000001).preSettle(6)), 6);
}

TEST_F(StopTriggerTest, RefusalsSendNothing) {
    struct Case {
        const char* name;
        std::function<void(FakeHost&, CStopTrigger::Controls&)> setUp;
        const char* caption;
        std::string text;
    };
    const Case cases[] = {
        {"logged off", [](FakeHost& h, CStopTrigger::Controls&) { h.accounts.clear(); }, kCaptionPrompt, kMsgLogin},
        {"untradable", [](FakeHost& h, CStopTrigger::Controls&) { h.details["ag2412"].bTradable = false; },
         kCaptionPrompt, kMsgSymbolNotTradable},
        {"no quote", [](FakeHost& h, CStopTrigger::Controls&) { h.quotes.clear(); }, kCaptionPrompt,
         "当前商品行情无效或现价为0，不能进行触发单交易！"},
        {"empty quote", [](FakeHost& h, CStopTrigger::Controls&) { h.quotes["ag2412"] = TickBuilder(1, "ag2412"); },
         kCaptionPrompt, "当前商品行情无效或现价为0，不能进行触发单交易！"},
        {"volume 0", [](FakeHost&, CStopTrigger::Controls& c) { c.volumeText = "0"; }, kCaptionPrompt,
         "输入错误，交易数量必须大于0！"},
        {"above the side", [](FakeHost&, CStopTrigger::Controls& c) { c.volumeText = "4"; }, kCaptionPrompt,
         "输入错误，平仓数量4张超过当前持仓数量3张！"},
        {"above today's part",
         [](FakeHost&, CStopTrigger::Controls& c) {
             c.volumeText = "2";
             c.openClose = kCloseToday;
         },
         kCaptionPrompt, "输入错误，平仓数量2张超过当前持仓数量1张！"},
        {"no trigger price", [](FakeHost&, CStopTrigger::Controls& c) { c.triggerPrice = 0; }, "提示 ",
         "触发价无效，请重新输入价格！"},
        {"no reference",
         [](FakeHost& h, CStopTrigger::Controls&) { h.quotes["ag2412"] = TickBuilder(1, "ag2412").bid(5000, 1); },
         kCaptionPrompt, "当前商品现价为0并且昨结算价为0，不能进行触发单交易！"},
    };
    for (const Case& c : cases) {
        SetUp();
        prompter.boxes.clear();
        host.sentTriggers.clear();
        CStopTrigger st = make(1);
        st.controls().triggerPrice = 4900;
        c.setUp(host, st.controls());
        EXPECT_EQ(st.send(), CStopTrigger::SendResult::Refused) << c.name;
        ASSERT_EQ(prompter.boxes.size(), 1u) << c.name;
        EXPECT_EQ(prompter.lastCaption(), c.caption) << c.name;
        EXPECT_EQ(prompter.lastText(), c.text) << c.name;
        EXPECT_TRUE(host.sentTriggers.empty()) << c.name;
    }
}

TEST_F(StopTriggerTest, SendsAClosingTriggerAfterConfirmation) {
    CStopTrigger st = make(1);
    st.controls().triggerPrice = 4900.1;  // a sell rounds down to the tick
    st.controls().volumeText = "2";
    ASSERT_EQ(st.send(), CStopTrigger::SendResult::Sent);
    EXPECT_TRUE(prompter.boxes.empty());  // today's expiry: no question
    EXPECT_EQ(ui.log, std::vector<std::string>{"confirmTriggerOrder 舵手"});
    ASSERT_EQ(host.sentTriggers.size(), 1u);
    const tagTriggerOrder& t = host.sentTriggers[0];
    EXPECT_EQ(t.strAccountID, "A1");
    EXPECT_EQ(t.nDirection, kDirSell);
    EXPECT_EQ(t.nOpenClose, kClose);
    EXPECT_DOUBLE_EQ(t.dVolume, 2);
    EXPECT_DOUBLE_EQ(t.dTriggerPrice, 4900.0);
    EXPECT_DOUBLE_EQ(t.dPrice, 0);
    EXPECT_EQ(t.nTriggerType, kTriggerSellChase);
    EXPECT_EQ(t.dStopLoss + t.dTakeProfit, 0);
    EXPECT_EQ(t.tExpiry, endOfDay(kNowMs / 1000));
    EXPECT_EQ(t.strRemark, "舵手");

    ui.acceptConfirm = false;
    EXPECT_EQ(make(2).send(), CStopTrigger::SendResult::Cancelled);
    EXPECT_EQ(host.sentTriggers.size(), 1u);
    HelmsmanSettings s = manage.settings();
    s.bShowTriggerOrderConfirm = 0;
    manage.saveSettings(s);
    CStopTrigger shortSide = make(2);
    shortSide.controls().triggerPrice = 5100;
    ASSERT_EQ(shortSide.send(), CStopTrigger::SendResult::Sent);
    EXPECT_EQ(host.sentTriggers.back().nTriggerType, kTriggerBuyChase);
}

TEST_F(StopTriggerTest, NextDayExpiryAsksAndNoMeansToday) {
    const std::int64_t eod = endOfDay(kNowMs / 1000);
    struct Case {
        bool hasExpiry;
        std::int64_t expiry;
        bool answer;
        bool asked;
        std::int64_t sent;
    } cases[] = {
        {false, 0, false, true, eod},     {false, 0, true, true, 0},
        {true, eod + 60, false, true, eod}, {true, eod + 60, true, true, eod + 60},
        {true, eod - 60, false, false, eod - 60},
    };
    for (const Case& c : cases) {
        prompter.boxes.clear();
        prompter.answers = {c.answer};
        CStopTrigger st = make(1);
        st.controls().triggerPrice = 4900;
        st.controls().hasExpiry = c.hasExpiry;
        st.controls().expiry = c.expiry;
        ASSERT_EQ(st.send(), CStopTrigger::SendResult::Sent);
        EXPECT_EQ(!prompter.boxes.empty(), c.asked);
        if (c.asked) {
            EXPECT_EQ(prompter.boxes[0].caption, "提示");
            EXPECT_EQ(prompter.boxes[0].text, kMsgNextDayExpiry);
        }
        EXPECT_EQ(host.sentTriggers.back().tExpiry, c.sent);
    }
}

TEST_F(StopTriggerTest, LocalVariantAsksThenHandsToTheCentreForToday) {
    RecordingCentre centre;
    manage.setLocalTriggerFactory([&] { return &centre; });
    CStopTrigger st = make(1);
    st.controls().triggerPrice = 4900;
    st.controls().local = true;
    st.controls().hasExpiry = false;
    prompter.answers = {true, false};  // keep no expiry, then decline the local order
    EXPECT_EQ(st.send(), CStopTrigger::SendResult::Cancelled);
    ASSERT_EQ(prompter.boxes.size(), 2u);
    EXPECT_EQ(prompter.boxes[1].caption, "确认");
    EXPECT_EQ(prompter.boxes[1].text,
              "本地触发单最长时效为当日有效，只在本程序运行时有效，\r\n关闭程序时会自动删除，您确定要"
              "发送本地触发单吗？");
    EXPECT_TRUE(centre.added.empty());

    prompter.answers = {true, true};
    EXPECT_EQ(st.send(), CStopTrigger::SendResult::Sent);
    ASSERT_EQ(centre.added.size(), 1u);
    EXPECT_EQ(centre.added[0].tExpiry, endOfDay(kNowMs / 1000));
    EXPECT_TRUE(host.sentTriggers.empty());
    EXPECT_TRUE(ui.log.empty());  // no server confirmation for a local order
    manage.localTriggerCentreGone(&centre);
}

}  // namespace
