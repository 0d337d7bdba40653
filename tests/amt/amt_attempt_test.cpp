// The entry and exit attempts of the conditional strategy, result code by result code, the
// order prices and the booking at send.
#include <functional>

#include "amt/amt_strings.h"
#include "amt_fixture.h"

namespace amttest {
namespace {

struct EntryCase {
    const char* name;
    std::function<void(tagAMTParams&)> set;
    double last, bid, ask, bidVol, askVol;
    int expected;
};

TEST_F(AmtTest, EntryGivesTheFirstFailingCheck) {
    auto longAt = [](double line) {
        return [line](tagAMTParams& p) {
            p.bEntryPriceCon = 1;
            p.dEntryPrice = line;
        };
    };
    const EntryCase cases[] = {
        {"sends when nothing is asked", {}, 5230, 5229.8, 5230, 10, 10, CAMTOrder::kEntrySent},
        {"maximum reached", [](tagAMTParams& p) { p.nMaxLots = 0; }, 5230, 5229.8, 5230, 10, 10,
         CAMTOrder::kEntryBlocked},
        {"long, ask locked at the lower limit, whatever else", longAt(1), 4000, 0, 4000, 0, 5,
         CAMTOrder::kEntryLimitLocked},
        {"short, bid locked at the upper limit", [](tagAMTParams& p) { p.bLong = 0; }, 6000, 6000,
         0, 5, 0, CAMTOrder::kEntryLimitLocked},
        {"chase: last below the line", longAt(5230.2), 5230, 5229.8, 5230, 10, 10,
         CAMTOrder::kEntryPrice},
        {"chase: last on the line", longAt(5230), 5230, 5229.8, 5230, 10, 10,
         CAMTOrder::kEntrySent},
        {"dip: last above the line",
         [](tagAMTParams& p) {
             p.bEntryPriceCon = 1;
             p.nEntryPriceCon = 1;
             p.dEntryPrice = 5229.8;
         },
         5230, 5229.8, 5230, 10, 10, CAMTOrder::kEntryPrice},
        {"chase: last beyond the range limit",
         [](tagAMTParams& p) {
             p.bEntryPriceCon = 1;
             p.dEntryPrice = 5200;
             p.bEntryRangeFilter = 1;
             p.dEntryRangeFilter = 5220;
         },
         5230, 5229.8, 5230, 10, 10, CAMTOrder::kEntryRange},
        {"long: ask volume below the filter",
         [](tagAMTParams& p) {
             p.bEntryVolFilter = 1;
             p.nEntryVolFilter = 11;
         },
         5230, 5229.8, 5230, 50, 10, CAMTOrder::kEntryVolume},
        {"short: bid volume meets the filter",
         [](tagAMTParams& p) {
             p.bLong = 0;
             p.bEntryVolFilter = 1;
             p.nEntryVolFilter = 10;
         },
         5230, 5229.8, 5230, 10, 1, CAMTOrder::kEntrySent},
        {"formula false", [](tagAMTParams& p) { p.entryFilters[0] = {1, "MA5", 0, 0, "", 9999}; },
         5230, 5229.8, 5230, 10, 10, CAMTOrder::kEntryFormula},
        {"no lots", [](tagAMTParams& p) { p.nEveryLots = 0; }, 5230, 5229.8, 5230, 10, 10,
         CAMTOrder::kEntryNoLots},
    };
    host.table["IF2101|MA5"] = "5228.4";
    const tagAMTParams base = params;
    for (const EntryCase& c : cases) {
        SCOPED_TRACE(c.name);
        params = base;
        if (c.set) c.set(params);
        core = std::make_unique<CAMTOrder>(manager);
        apply();
        quote(c.last, c.bid, c.ask, c.bidVol, c.askVol);
        EXPECT_EQ(enter(), c.expected);
    }
}

TEST_F(AmtTest, NeitherEntryNorExitOutsideTradingTime) {
    quote(5230, 5229.8, 5230);
    ASSERT_EQ(enter(), CAMTOrder::kEntrySent);
    at(12, 0, 0);  // lunch on the financial futures exchange
    quote(5230, 5229.8, 5230);
    EXPECT_EQ(enter(), CAMTOrder::kEntryNotTrading);
    EXPECT_EQ(leave(), CAMTOrder::kExitNotTrading);
}

struct PriceCase {
    const char* name;
    int isLong;
    int offset;
    double bid, ask, upper, lower;
    double expected;
};

TEST_F(AmtTest, OrderPriceFromTheTouchWithOffsetRoundedAndClamped) {
    const PriceCase cases[] = {
        {"long: ask plus two points", 1, 2, 5229.8, 5230.0, 6000, 4000, 5230.4},
        {"long without an ask: the bid", 1, 0, 5229.8, 0, 6000, 4000, 5229.8},
        {"long capped at the upper limit", 1, 5, 5999.4, 5999.6, 6000, 4000, 6000},
        {"short: bid less two points", 0, 2, 5229.8, 5230.0, 6000, 4000, 5229.4},
        {"short without a bid: the ask", 0, 0, 0, 5230.0, 6000, 4000, 5230.0},
        {"short floored at the lower limit", 0, 5, 4000.2, 4000.4, 6000, 4000, 4000},
    };
    for (const PriceCase& c : cases) {
        SCOPED_TRACE(c.name);
        params.bLong = c.isLong;
        params.nOrderOffset = c.offset;
        core = std::make_unique<CAMTOrder>(manager);
        apply();
        host.sent.clear();
        quote(c.ask > 0 ? c.ask : c.bid, c.bid, c.ask, 10, 10, c.upper, c.lower);
        ASSERT_EQ(enter(), CAMTOrder::kEntrySent);
        ASSERT_EQ(host.sent.size(), 1u);
        EXPECT_DOUBLE_EQ(host.sent[0].dPrice, c.expected);
        EXPECT_EQ(host.sent[0].nDirection, c.isLong ? kDirBuy : kDirSell);
    }
}

TEST_F(AmtTest, EntriesAreBookedAtSendThroughTheConfirmation) {
    params.nEveryLots = 2;
    params.nMaxLots = 5;
    params.bHedge = 1;
    apply();
    quote(5230, 5229.8, 5230);
    ASSERT_EQ(enter(), CAMTOrder::kEntrySent);
    quote(5234, 5233.8, 5234);
    ASSERT_EQ(enter(), CAMTOrder::kEntrySent);
    quote(5236, 5235.8, 5236);
    ASSERT_EQ(enter(), CAMTOrder::kEntrySent);  // the last lot up to the maximum
    EXPECT_EQ(enter(), CAMTOrder::kEntryBlocked);

    const CAMTOrder::State& s = core->state();
    EXPECT_EQ(s.position, 5);
    EXPECT_EQ(s.cumulative, 5);
    EXPECT_DOUBLE_EQ(s.firstPrice, 5230);
    EXPECT_DOUBLE_EQ(s.avgPrice, (2 * 5230 + 2 * 5234 + 5236) / 5.0);
    EXPECT_DOUBLE_EQ(s.extreme, 5236);  // first entry, then the highest last since
    ASSERT_EQ(host.sent.size(), 3u);
    const tagBrokerOrder& o = host.sent[2];
    EXPECT_EQ(o.dVolume, 1);
    EXPECT_EQ(o.strRemark, amt_text::kToolName);
    EXPECT_EQ(o.nOpenClose, kOpen);
    EXPECT_EQ(o.nHedge, kHedge);
    EXPECT_EQ(o.strAccountID, "880001");
    EXPECT_EQ(ui.log.front(), std::string("confirmOrder ") + amt_text::kToolName);
}

TEST_F(AmtTest, ARefusedOrderStillCountsADeclinedOneDoesNot) {
    host.sendOrderResult = 0;
    quote(5230, 5229.8, 5230);
    EXPECT_EQ(enter(), CAMTOrder::kEntrySent);
    EXPECT_EQ(core->state().position, 1);
    ASSERT_EQ(journal.entries.size(), 1u);
    EXPECT_EQ(journal.entries[0].result, 0);

    ui.acceptConfirm = false;
    EXPECT_EQ(enter(), CAMTOrder::kEntryDeclined);
    EXPECT_EQ(core->state().position, 1);
    EXPECT_EQ(journal.entries.size(), 1u);
}

TEST_F(AmtTest, JournalSaysWhichConditionSentAndThePrices) {
    params.bEntryPriceCon = 1;
    params.dEntryPrice = 5229;
    params.bStopLoss = 1;
    params.nStopLossPoint = 5;
    apply();
    quote(5230, 5229.8, 5230);
    ASSERT_EQ(enter(), CAMTOrder::kEntrySent);
    quote(5229, 5228.8, 5229);
    ASSERT_EQ(leave(), CAMTOrder::kExitSent);
    ASSERT_EQ(journal.entries.size(), 2u);
    const JournalEntry& in = journal.entries[0];
    EXPECT_EQ(in.tool, amt_text::kToolName);
    EXPECT_EQ(in.reason, amt_text::kReasonEntry);
    EXPECT_EQ(in.order.dPrice, 5230);
    const JournalEntry& out = journal.entries[1];
    EXPECT_EQ(out.reason, amt_text::kReasonStopLoss);
    EXPECT_EQ(out.order.nOpenClose, kClose);
    EXPECT_DOUBLE_EQ(journal.figure(1, "level"), 5229);  // 5230 less 5 points of 0.2
    EXPECT_DOUBLE_EQ(journal.figure(1, "last"), 5229);
    EXPECT_DOUBLE_EQ(journal.figure(1, "base"), 5230);
}

TEST_F(AmtTest, StepWaitsForTheStartTimeAndTheDelayAndShowsTheCodes) {
    params.tStartTime = localSec(10, 0, 5);
    params.nDelaySecs = 3;
    apply();
    ASSERT_TRUE(core->start());  // the start time lies ahead: no question
    EXPECT_TRUE(prompter.boxes.empty());
    quote(5230, 5229.8, 5230);
    EXPECT_EQ(core->caption(), amt_text::kToolName);  // before the start time
    at(10, 0, 5);
    quote(5230, 5229.8, 5230);
    EXPECT_EQ(core->caption(), "条件通[E:1,X:0]");
    at(10, 0, 7);
    quote(5230, 5229.8, 5230);
    EXPECT_EQ(core->state().position, 1);  // within the delay
    at(10, 0, 8);
    quote(5230, 5229.8, 5230);
    EXPECT_EQ(core->state().position, 2);
}

}  // namespace
}  // namespace amttest
