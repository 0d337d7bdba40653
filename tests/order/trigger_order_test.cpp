// The trigger page's sending steps. ag2412 has a 0.2 tick, so N points are N × 0.2.
#include "order/trigger_order.h"

#include "order_test_support.h"
#include "ticket_fixture.h"

namespace {

using Result = CTriggerOrder::SendResult;

const char* const kNextDay =
    "如果您想要使用隔日有效的触发单，请先了解隔日触发单\r\n可能存在的跳空风险，并愿意接受由此产生的"
    "风险"
    "损失！\r\n\r\n您是否还要继续使用隔日触发单?选择[是]继续，选择[否]"
    "\r\n会自动将时间设置为仅当日有效!";
const char* const kMismatch =
    "您选择的触发单类型和根据价格自动计算出的类型不匹配，还要继续发送委托单吗？";
const char* const kLocalAsk =
    "本地触发单最长时效为当日有效，只在本程序运行时有效，\r\n关闭程序时会自动删除，您确定要发送本地"
    "触发单吗？";

class TriggerOrderTest : public TicketTest {
protected:
    std::unique_ptr<CTriggerOrder> page;
    RecordingCentre centre;

    // A ticket on ag2412 with last 3000 (pre-settlement 2990), expiry within today so that no
    // question is asked unless a test wants one, and no confirmation.
    void SetUp() override {
        TicketTest::SetUp();
        settings([](HelmsmanSettings& s) { s.bShowTriggerOrderConfirm = 0; });
        manage.setLocalTriggerFactory([this] { return &centre; });
        openOn("ag2412");
        tick(3000, 2990);
        page = std::make_unique<CTriggerOrder>(*ticket);
        c().triggerPrice = 2990;
        c().expiry = endOfToday() - 3600;
    }
    void TearDown() override {
        page.reset();
        TicketTest::TearDown();
    }
    void tick(double last, double preSettle) {
        IModuleFutureTrader::ITickEx t = quote("ag2412", 2999.8, 3000.2, last);
        t.dPreSettle = preSettle;
        deliverQuote(t);
    }
    CTriggerOrder::Controls& c() { return page->controls(); }
    std::int64_t endOfToday() const { return endOfDay(clock.now()); }
    bool nothingSent() const { return host.sentTriggers.empty() && centre.added.empty(); }
};

// ---- Every refusal: one box, its caption and text, nothing sent -----------------------------

struct RefusalCase {
    const char* name;
    int direction;
    const char* caption;
    const char* text;
    // What differs from the fixture's sendable trigger.
    bool loggedOff = false;
    const char* volume = "1";
    bool noReference = false;
    double trigger = 2990, exec = 0, stop = 0, profit = 0;
    bool local = false;
};

class Refusals : public TriggerOrderTest, public ::testing::WithParamInterface<RefusalCase> {};

TEST_P(Refusals, SayWhyAndSendNothing) {
    const RefusalCase& rc = GetParam();
    if (rc.loggedOff) host.accounts.clear();
    if (rc.noReference) tick(0, 0);
    c().volumeText = rc.volume;
    c().triggerPrice = rc.trigger;
    c().execPrice = rc.exec;
    c().stopLoss = rc.stop > 0;
    c().stopLossPrice = rc.stop;
    c().takeProfit = rc.profit > 0;
    c().takeProfitPrice = rc.profit;
    ticket->setUseLocalTrigger(rc.local);
    EXPECT_EQ(page->send(rc.direction), Result::Refused);
    ASSERT_EQ(prompter.boxes.size(), 1u) << prompter.lastText();
    EXPECT_EQ(prompter.boxes[0].caption, rc.caption);
    EXPECT_EQ(prompter.boxes[0].text, rc.text);
    EXPECT_TRUE(nothingSent());
}

// clang-format off
const RefusalCase kRefusals[] = {
    {.name = "NotLoggedOn", .direction = kDirBuy, .caption = "提示", .text = "请先登录交易帐户！", .loggedOff = true},
    {.name = "ZeroVolume", .direction = kDirBuy, .caption = "提示", .text = "输入错误，交易数量必须大于0！", .volume = "0"},
    {.name = "NoLastNoSettlement", .direction = kDirSell, .caption = "提示", .text = "当前商品现价为0并且昨结算价为0，不能进行触发单交易！", .noReference = true},
    {.name = "NoTriggerPrice", .direction = kDirBuy, .caption = "提示 ", .text = "触发价无效，请重新输入价格！", .trigger = 0},
    {.name = "BuyStopAtExec", .direction = kDirBuy, .caption = "提示", .text = "输入错误，买入时止损价必须小于委托价！", .exec = 2991, .stop = 2991},
    {.name = "BuyProfitAtExec", .direction = kDirBuy, .caption = "提示", .text = "输入错误，买入时获利价必须大于委托价！", .exec = 2991, .profit = 2991},
    {.name = "SellStopAtExec", .direction = kDirSell, .caption = "提示", .text = "输入错误，卖出时止损价必须大于委托价！", .exec = 2991, .stop = 2991},
    {.name = "SellProfitAtExec", .direction = kDirSell, .caption = "提示", .text = "输入错误，卖出时获利价必须小于委托价！", .exec = 2991, .profit = 2991},
    {.name = "BuyAtMarketStopAboveProfit", .direction = kDirBuy, .caption = "提示", .text = "输入错误，买入时止损价必须小于获利价！", .stop = 2995, .profit = 2994},
    {.name = "SellAtMarketStopBelowProfit", .direction = kDirSell, .caption = "提示", .text = "输入错误，卖出时止损价必须大于获利价！", .stop = 2994, .profit = 2995},
    {.name = "LocalWithStop", .direction = kDirBuy, .caption = "提示", .text = "输入错误，本地触发单不支持止损获利价设置！", .stop = 2980, .local = true},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(TriggerPage, Refusals, ::testing::ValuesIn(kRefusals),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(TriggerOrderTest, StopsOfAClosingOrderAreIgnored) {
    c().execPrice = 2991;
    c().stopLoss = c().takeProfit = true;
    c().stopLossPrice = c().takeProfitPrice = 2991;
    c().openClose = kClose;
    ASSERT_EQ(page->send(kDirBuy), Result::Sent) << prompter.lastText();
    EXPECT_EQ(host.sentTriggers[0].dStopLoss, 0);
    EXPECT_EQ(host.sentTriggers[0].dTakeProfit, 0);
}

// ---- Type: automatic from trigger and reference price, the list, the mismatch question ------

struct TypeCase {
    int direction;
    double trigger, last, preSettle;
    std::int32_t expected;
};

class AutoType : public TriggerOrderTest, public ::testing::WithParamInterface<TypeCase> {};

TEST_P(AutoType, FollowsTheReferencePrice) {
    const TypeCase& tc = GetParam();
    tick(tc.last, tc.preSettle);
    c().triggerPrice = tc.trigger;
    ASSERT_EQ(page->send(tc.direction), Result::Sent) << prompter.lastText();
    EXPECT_TRUE(prompter.boxes.empty());
    EXPECT_EQ(host.sentTriggers[0].nTriggerType, tc.expected);
}

INSTANTIATE_TEST_SUITE_P(
    TriggerPage, AutoType,
    ::testing::Values(TypeCase{kDirBuy, 3000, 3000, 0, kTriggerBuyDip},  // equal: 吊买
                      TypeCase{kDirBuy, 2999.8, 3000, 0, kTriggerBuyDip},
                      TypeCase{kDirBuy, 3000.2, 3000, 0, kTriggerBuyChase},
                      TypeCase{kDirSell, 3000, 3000, 0, kTriggerSellRise},  // equal: 吊卖
                      TypeCase{kDirSell, 3000.2, 3000, 0, kTriggerSellRise},
                      TypeCase{kDirSell, 2999.8, 3000, 0, kTriggerSellChase},
                      // No last price: the previous settlement is the reference.
                      TypeCase{kDirBuy, 2990, 0, 2990, kTriggerBuyDip},
                      TypeCase{kDirBuy, 2990.2, 0, 2990, kTriggerBuyChase},
                      TypeCase{kDirSell, 2989.8, 0, 2990, kTriggerSellChase}));

TEST(TriggerTypeList, EntryOneIsDipEntryTwoIsChaseOfTheDirection) {
    EXPECT_EQ(chosenTriggerType(kDirBuy, 1, kTriggerBuyChase), kTriggerBuyDip);
    EXPECT_EQ(chosenTriggerType(kDirBuy, 2, kTriggerBuyDip), kTriggerBuyChase);
    EXPECT_EQ(chosenTriggerType(kDirSell, 1, kTriggerSellChase), kTriggerSellRise);
    EXPECT_EQ(chosenTriggerType(kDirSell, 2, kTriggerSellRise), kTriggerSellChase);
    EXPECT_EQ(chosenTriggerType(kDirSell, 0, kTriggerSellChase), kTriggerSellChase);
}

TEST_F(TriggerOrderTest, ATypeAgainstThePricesIsAskedAbout) {
    c().typeIndex = 2;  // 追买 below the market
    EXPECT_EQ(page->send(kDirBuy), Result::Cancelled);
    ASSERT_EQ(prompter.boxes.size(), 1u);
    EXPECT_EQ(prompter.boxes[0].caption, "确认");
    EXPECT_EQ(prompter.boxes[0].text, kMismatch);
    EXPECT_TRUE(nothingSent());

    prompter.answers = {true};
    ASSERT_EQ(page->send(kDirBuy), Result::Sent);
    EXPECT_EQ(host.sentTriggers[0].nTriggerType, kTriggerBuyChase);

    c().typeIndex = 1;  // 吊买, as the prices say: no question
    prompter.boxes.clear();
    ASSERT_EQ(page->send(kDirBuy), Result::Sent);
    EXPECT_TRUE(prompter.boxes.empty());
}

// ---- Expiry ---------------------------------------------------------------------------------

struct ExpiryCase {
    const char* name;
    std::int64_t offsetFromEndOfDay;  // the control's value relative to today 23:59:59
    bool none;                        // the control holds no time (0), or a negative one
    bool answer;
    bool asked;
    std::int64_t expectedOffset;  // relative to today 23:59:59; kKeep0 = stays 0
};
constexpr std::int64_t kKeep0 = 1'000'000'000;

class Expiry : public TriggerOrderTest, public ::testing::WithParamInterface<ExpiryCase> {};

TEST_P(Expiry, NextDayQuestionDecides) {
    const ExpiryCase& ec = GetParam();
    c().expiry =
        ec.none ? (ec.offsetFromEndOfDay < 0 ? -5 : 0) : endOfToday() + ec.offsetFromEndOfDay;
    prompter.answers = {ec.answer};
    ASSERT_EQ(page->send(kDirBuy), Result::Sent);
    ASSERT_EQ(prompter.boxes.size(), ec.asked ? 1u : 0u);
    if (ec.asked) {
        EXPECT_EQ(prompter.boxes[0].caption, "提示");
        EXPECT_EQ(prompter.boxes[0].text, kNextDay);
    }
    const std::int64_t sent = host.sentTriggers[0].tExpiry;
    if (ec.expectedOffset == kKeep0)
        EXPECT_EQ(sent, 0);
    else
        EXPECT_EQ(sent, endOfToday() + ec.expectedOffset);
}

INSTANTIATE_TEST_SUITE_P(
    TriggerPage, Expiry,
    ::testing::Values(ExpiryCase{"EmptyNo", 0, true, false, true, 0},
                      ExpiryCase{"EmptyYes", 0, true, true, true, kKeep0},
                      ExpiryCase{"NegativeNo", -1, true, false, true, 0},
                      ExpiryCase{"TomorrowYes", 86400, false, true, true, 86400},
                      ExpiryCase{"TomorrowNo", 86400, false, false, true, 0},
                      ExpiryCase{"EndOfTodayAsIs", 0, false, false, false, 0}),
    [](const auto& info) { return std::string(info.param.name); });

// ---- Automatic stops from the trigger price, rounding, submission ----------------------------

TEST_F(TriggerOrderTest, AutomaticStopsAreMeasuredFromTheTriggerPrice) {
    c().stopLoss = c().stopLossAuto = true;
    c().takeProfit = c().takeProfitAuto = true;
    c().stopLossPoints = 10;
    c().takeProfitPoints = 15;
    c().triggerPrice = 2950.1;  // a buy rounds up to 2950.2
    ASSERT_EQ(page->send(kDirBuy), Result::Sent) << prompter.lastText();
    c().triggerPrice = 3050.1;  // a sell rounds down to 3050.0
    ASSERT_EQ(page->send(kDirSell), Result::Sent) << prompter.lastText();
    ASSERT_EQ(host.sentTriggers.size(), 2u);
    const tagTriggerOrder& buy = host.sentTriggers[0];
    EXPECT_NEAR(buy.dTriggerPrice, 2950.2, 1e-9);
    EXPECT_NEAR(buy.dStopLoss, 2948.2, 1e-9);
    EXPECT_NEAR(buy.dTakeProfit, 2953.2, 1e-9);
    const tagTriggerOrder& sell = host.sentTriggers[1];
    EXPECT_NEAR(sell.dTriggerPrice, 3050.0, 1e-9);
    EXPECT_NEAR(sell.dStopLoss, 3052.0, 1e-9);
    EXPECT_NEAR(sell.dTakeProfit, 3047.0, 1e-9);
}

TEST_F(TriggerOrderTest, ConfirmedWithTheTicketsNameThenSent) {
    settings([](HelmsmanSettings& s) { s.bShowTriggerOrderConfirm = 1; });
    c().volumeText = "3";
    c().execPrice = 2991;
    ui.acceptConfirm = false;
    EXPECT_EQ(page->send(kDirSell), Result::Cancelled);
    EXPECT_TRUE(nothingSent());

    ui.acceptConfirm = true;
    ASSERT_EQ(page->send(kDirSell), Result::Sent);
    EXPECT_EQ(ui.log,
              (std::vector<std::string>{"confirmTriggerOrder 舵手", "confirmTriggerOrder 舵手"}));
    ASSERT_EQ(host.sentTriggers.size(), 1u);
    const tagTriggerOrder& t = host.sentTriggers[0];
    EXPECT_EQ(t.strAccountID, "A1");
    EXPECT_EQ(t.strCode, "ag2412");
    EXPECT_EQ(t.nDirection, kDirSell);
    EXPECT_EQ(t.dVolume, 3);
    EXPECT_EQ(t.dPrice, 2991);
    EXPECT_EQ(t.nTriggerType, kTriggerSellChase);
    EXPECT_EQ(t.strRemark, "舵手");
    EXPECT_EQ(t.tCreateTime, clock.now());
    EXPECT_EQ(page->statusText(), "触发单已发送：追卖 卖出开仓 ag2412 3张 触发价:2990");
}

TEST_F(TriggerOrderTest, AHostRefusalIsShownOnThePage) {
    host.sendTriggerResult = 0;
    EXPECT_EQ(page->send(kDirBuy), Result::Failed);
    EXPECT_TRUE(page->statusIsError());
    EXPECT_EQ(page->statusText(), "交易服务未接受触发单：吊买 买入开仓 ag2412 1张 触发价:2990");
}

// ---- Local variant ----------------------------------------------------------------------------

TEST_F(TriggerOrderTest, LocalTriggerIsAskedForAndHandedToTheCentre) {
    ticket->setUseLocalTrigger(true);
    c().expiry = 0;
    prompter.answers = {true, false};  // next day: yes; local: no
    EXPECT_EQ(page->send(kDirBuy), Result::Cancelled);
    ASSERT_EQ(prompter.boxes.size(), 2u);
    EXPECT_EQ(prompter.boxes[1].caption, "确认");
    EXPECT_EQ(prompter.boxes[1].text, kLocalAsk);
    EXPECT_TRUE(nothingSent());

    ticket->setUseAlgoTrigger(true);
    prompter.answers = {true, true};
    ASSERT_EQ(page->send(kDirBuy), Result::Sent);
    ASSERT_EQ(centre.added.size(), 1u);
    EXPECT_TRUE(host.sentTriggers.empty());
    EXPECT_EQ(centre.added[0].tExpiry, endOfToday());  // cut to today even after "yes"
    EXPECT_EQ(centre.added[0].strRemark, "舵手");
    EXPECT_TRUE(centre.withOptions[0]);

    centre.accept = false;  // the centre knows no such contract
    prompter.answers = {true, true};
    prompter.boxes.clear();
    EXPECT_EQ(page->send(kDirBuy), Result::Failed);
    EXPECT_EQ(prompter.lastText(), "找不到ag2412的合约信息，不能进行本地触发单操作!");
}

}  // namespace
