// The evaluation of one waiting trigger, case by case: the order of the checks, every result
// code, the edges of the trading-period table and the price an order fires at.
#include "trigger_fixture.h"

using namespace trigtest;

namespace {

struct EvalCase {
    const char* name;
    int exchange;
    const char* code;
    int hh, mm, ss;
    bool hasQuote;
    double last, pre1, pre2;
    int direction, type;
    double triggerPrice, price;
    std::int64_t startOffset, expiryOffset;  // seconds from now; 0 = unset
    int expected;
    double sentPrice;  // the order's price when it fires
};

constexpr int B = kDirBuy, S = kDirSell;

const EvalCase kCases[] = {
    // Equality fires for every type; a price on the wrong side does not.
    {"buyDipAtPrice", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"buyDipAbove", 0, "cu2102", 10, 0, 0, true, 100.01, 0, 0, B, 0, 100, 0, 0, 0, 0, 0},
    {"buyDipBelow", 0, "cu2102", 10, 0, 0, true, 99.5, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"sellRiseAtPrice", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, S, 1, 100, 0, 0, 0, 1, 99},
    {"sellRiseBelow", 0, "cu2102", 10, 0, 0, true, 99.99, 0, 0, S, 1, 100, 0, 0, 0, 0, 0},
    {"buyChaseAtPrice", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, B, 2, 100, 0, 0, 0, 1, 101},
    {"buyChaseBelow", 0, "cu2102", 10, 0, 0, true, 99.99, 0, 0, B, 2, 100, 0, 0, 0, 0, 0},
    {"sellChaseAtPrice", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, S, 3, 100, 0, 0, 0, 1, 99},
    {"sellChaseAbove", 0, "cu2102", 10, 0, 0, true, 100.01, 0, 0, S, 3, 100, 0, 0, 0, 0, 0},
    {"limitPriceKept", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, B, 0, 100, 98, 0, 0, 1, 98},
    // Start and expiry (checked before anything else).
    {"notStarted", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, B, 0, 100, 0, 5, 0, -1, 0},
    {"expired", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, B, 0, 100, 0, 0, -1, -2, 0},
    {"expiresNow", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, B, 0, 100, 0, 0, 1, 1, 101},
    {"notStartedBeforeClosed", 0, "cu2102", 3, 0, 0, false, 0, 0, 0, 9, 9, 100, 0, 5, 0, -1, 0},
    {"expiredBeforeClosed", 0, "cu2102", 3, 0, 0, false, 0, 0, 0, 9, 9, 100, 0, 0, -1, -2, 0},
    // Exchange 0: periods strict at both ends, three seconds in, four seconds short.
    {"ex0OpenEdge", 0, "cu2102", 9, 0, 3, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex0OpenPlusOne", 0, "cu2102", 9, 0, 4, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex0BeforeBreak", 0, "cu2102", 10, 14, 55, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex0BreakEdge", 0, "cu2102", 10, 14, 56, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex0AfterBreakEdge", 0, "cu2102", 10, 30, 3, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex0AfterBreak", 0, "cu2102", 10, 30, 4, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex0MorningLast", 0, "cu2102", 11, 29, 55, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex0MorningEnd", 0, "cu2102", 11, 29, 56, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex0Afternoon", 0, "cu2102", 13, 30, 4, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex0CloseEdge", 0, "cu2102", 14, 59, 56, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex0PreOpenFallback1", 0, "cu2102", 8, 57, 0, true, 0, 99, 98, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex0PreOpenEdge", 0, "cu2102", 8, 55, 3, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex0BetweenPreOpenAndOpen", 0, "cu2102", 8, 59, 0, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    // Exchange 3: the 09:15 open and its lunch.
    {"ex3PreOpenFallback1", 3, "IF2101", 9, 12, 0, true, 0, 99, 101, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex3PreOpenFallback2", 3, "IF2101", 9, 12, 0, true, 0, 0, 99, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex3PreOpenNoPrice", 3, "IF2101", 9, 12, 0, true, 0, 0, 0, B, 0, 100, 0, 0, 0, -5, 0},
    {"ex3PreOpenLastWins", 3, "IF2101", 9, 12, 0, true, 101, 99, 99, B, 0, 100, 0, 0, 0, 0, 0},
    {"ex3TradingNoLast", 3, "IF2101", 9, 20, 0, true, 0, 99, 99, B, 0, 100, 0, 0, 0, -5, 0},
    {"ex3PreOpenStart", 3, "IF2101", 9, 10, 3, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex3OpenEdge", 3, "IF2101", 9, 15, 3, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex3OpenPlusOne", 3, "IF2101", 9, 15, 4, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex3NoBreak", 3, "IF2101", 10, 20, 0, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex3LunchEdge", 3, "IF2101", 11, 29, 56, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex3AfterLunchEdge", 3, "IF2101", 13, 0, 3, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex3AfterLunch", 3, "IF2101", 13, 0, 4, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex3CloseLast", 3, "IF2101", 15, 14, 55, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    {"ex3CloseEdge", 3, "IF2101", 15, 14, 56, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    {"ex3Night", 3, "IF2101", 21, 0, 0, true, 100, 0, 0, B, 0, 100, 0, 0, 0, -3, 0},
    // Other exchanges trade around the clock.
    {"otherExchangeAtNight", 7, "XX", 3, 0, 0, true, 100, 0, 0, B, 0, 100, 0, 0, 0, 1, 101},
    // Quote checks come before the order's own checks.
    {"noQuote", 0, "cu2102", 10, 0, 0, false, 0, 0, 0, 9, 9, 100, 0, 0, 0, -4, 0},
    {"noLastInTrading", 0, "cu2102", 10, 0, 0, true, 0, 99, 99, 9, 9, 100, 0, 0, 0, -5, 0},
    {"badDirection", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, 0, 0, 100, 0, 0, 0, -7, 0},
    {"badDirectionBeforeType", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, 3, 9, 100, 0, 0, 0, -7, 0},
    {"buyWithSellType", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, B, 1, 100, 0, 0, 0, -6, 0},
    {"sellWithBuyType", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, S, 2, 100, 0, 0, 0, -6, 0},
    {"buyWithType4", 0, "cu2102", 10, 0, 0, true, 100, 0, 0, B, 4, 100, 0, 0, 0, -6, 0},
};

class EvalTest : public TriggerTest, public ::testing::WithParamInterface<EvalCase> {};

}  // namespace

TEST_P(EvalTest, GivesTheResultAndFiresAtTheRightPrice) {
    const EvalCase& c = GetParam();
    at(c.hh, c.mm, c.ss);
    const std::int64_t now = clock.now();
    tagTriggerOrder t = trigger(c.exchange, c.code, c.direction, c.type, c.triggerPrice, c.price);
    if (c.startOffset) t.tStart = now + c.startOffset;
    if (c.expiryOffset) t.tExpiry = now + c.expiryOffset;
    ASSERT_TRUE(centre->addTrigger(t));
    if (c.hasQuote) {
        IModuleFutureTrader::ITickEx q = TickBuilder(static_cast<std::uint16_t>(c.exchange), c.code)
                                             .bid(99, 5)
                                             .ask(101, 5)
                                             .last(c.last);
        q.dPreOpenPrice1 = c.pre1;
        q.dPreOpenPrice2 = c.pre2;
        quote(q);
    }

    centre->step();

    const tagLocalTrigger rec = centre->record(0);
    EXPECT_EQ(rec.nResult, c.expected);
    EXPECT_EQ(centre->statusText(0), triggerResultText(c.expected));
    if (c.expected == kTriggerFired) {
        ASSERT_EQ(host.sent.size(), 1u);
        const tagBrokerOrder& o = host.sent[0];
        EXPECT_DOUBLE_EQ(o.dPrice, c.sentPrice);
        EXPECT_EQ(o.strRemark, "本地触发单");
        EXPECT_EQ(o.nDirection, c.direction);
        EXPECT_EQ(o.strCode, c.code);
        EXPECT_EQ(rec.trigger.nStatus, kOrderFilled);
        EXPECT_EQ(rec.trigger.tStart, now);
    } else {
        EXPECT_TRUE(host.sent.empty());
        EXPECT_EQ(rec.trigger.nStatus, kOrderWaitTrigger);  // still waiting, expired or not
    }
}

INSTANTIATE_TEST_SUITE_P(Table, EvalTest, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(TriggerResultText, EveryCodeHasItsText) {
    const std::pair<int, const char*> texts[] = {
        {-7, "买卖类型出错"},
        {-6, "触发类型出错"},
        {-5, "无最新价格"},
        {-4, "无有效行情数据"},
        {-3, "非交易时间段"},
        {-2, "触发单已经过期"},
        {-1, "触发单启动时间未到"},
        {0, "正常"},
        {1, "正常"},
        {42, "正常"},
        {kTriggerNotEvaluated, ""},
    };
    for (const auto& [code, text] : texts) EXPECT_STREQ(triggerResultText(code), text) << code;
}
