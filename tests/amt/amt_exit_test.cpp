// The exit attempt: its result codes, the stops measured from the first or the average
// entry price, both trailing stops, the exit at a time, and what a close order books.
#include <functional>

#include "amt/amt_strings.h"
#include "amt_fixture.h"

namespace amttest {
namespace {

// XX trades all day with a point of 1, so the distances read as prices.
class AmtExitTest : public AmtTest {
protected:
    AmtExitTest() {
        params.wExchangeID = 7;
        params.szSymbolCode = "XX";
        params.nMaxLots = 1;
        upperLimit = 1000;
        lowerLimit = 1;
        apply();
    }
    // Enters one lot at `entry` (both sides of the book stand there), then lets the last
    // price run through `path`.
    void openAt(double entry, std::initializer_list<double> path = {}) {
        quote(entry, entry, entry);
        ASSERT_EQ(enter(), CAMTOrder::kEntrySent);
        for (double last : path) quote(last, last - 1, last + 1);
    }
    int exitAt(double last) {
        quote(last, last - 1, last + 1);
        return leave();
    }
};

struct StopCase {
    const char* name;
    int isLong;
    std::function<void(tagAMTParams&)> set;
    std::initializer_list<double> path;  // last prices after the entry at 100
    double last;
    int expected;
    const char* reason;
};

TEST_F(AmtExitTest, StopsAndTrailingStops) {
    auto stop = [](tagAMTParams& p) { p.bStopLoss = 1, p.nStopLossPoint = 5; };
    auto profit = [](tagAMTParams& p) { p.bTakeProfit = 1, p.nTakeProfitPoint = 8; };
    auto ticks = [](tagAMTParams& p) {
        p.bTrailingStop = 1, p.nTrailingStart = 5, p.nTrailingStopType = 0, p.nTrailingStopSet = 3;
    };
    auto percent = [](tagAMTParams& p) {
        p.bTrailingStop = 1, p.nTrailingStart = 5, p.nTrailingStopType = 1, p.nTrailingStopSet = 50;
    };
    using namespace amt_text;
    // clang-format off
    const StopCase cases[] = {
        {"long stop at base less 5", 1, stop, {}, 95, CAMTOrder::kExitSent, kReasonStopLoss},
        {"long stop not yet", 1, stop, {}, 96, CAMTOrder::kExitNone, nullptr},
        {"short stop at base plus 5", 0, stop, {}, 105, CAMTOrder::kExitSent, kReasonStopLoss},
        {"long profit at base plus 8", 1, profit, {}, 108, CAMTOrder::kExitSent, kReasonTakeProfit},
        {"short profit at base less 8", 0, profit, {}, 92, CAMTOrder::kExitSent, kReasonTakeProfit},
        {"short profit not yet", 0, profit, {}, 93, CAMTOrder::kExitNone, nullptr},
        {"ticks: gives back 3 from 110", 1, ticks, {110}, 107, CAMTOrder::kExitSent, kReasonTrailing},
        {"ticks: 108 is not enough", 1, ticks, {110}, 108, CAMTOrder::kExitNone, nullptr},
        {"ticks: not armed below 5 of profit", 1, ticks, {104}, 101, CAMTOrder::kExitNone, nullptr},
        {"ticks short: from 90 back to 93", 0, ticks, {90}, 93, CAMTOrder::kExitSent, kReasonTrailing},
        // Percent 50, long, base 100, extreme 110, start 5: exit when last <= 105.
        {"percent: at 105", 1, percent, {110}, 105, CAMTOrder::kExitSent, kReasonTrailing},
        {"percent: 106 holds", 1, percent, {110}, 106, CAMTOrder::kExitNone, nullptr},
        {"percent short: low 90, back to 95", 0, percent, {90}, 95, CAMTOrder::kExitSent, kReasonTrailing},
    };
    // clang-format on
    const tagAMTParams base = params;
    for (const StopCase& c : cases) {
        SCOPED_TRACE(c.name);
        params = base;
        params.bLong = c.isLong;
        c.set(params);
        core = std::make_unique<CAMTOrder>(manager);
        apply();
        journal.entries.clear();
        openAt(100, c.path);
        EXPECT_EQ(exitAt(c.last), c.expected);
        if (c.reason) {
            ASSERT_EQ(journal.entries.size(), 2u);
            EXPECT_EQ(journal.entries[1].reason, c.reason);
        }
    }
}

TEST_F(AmtExitTest, BaseIsTheFirstOrTheAverageEntryPrice) {
    params.nMaxLots = 2;
    params.bStopLoss = 1;
    params.nStopLossPoint = 5;
    for (int type : {0, 1}) {
        SCOPED_TRACE(type);
        params.nStopBasePriceType = type;
        core = std::make_unique<CAMTOrder>(manager);
        apply();
        quote(100, 99, 100);
        ASSERT_EQ(enter(), CAMTOrder::kEntrySent);
        quote(90, 89, 90);
        ASSERT_EQ(enter(), CAMTOrder::kEntrySent);  // average 95
        // 94 is past the first price's stop (95) but not the average's (90).
        EXPECT_EQ(exitAt(94), type == 1 ? CAMTOrder::kExitNone : CAMTOrder::kExitSent);
    }
}

TEST_F(AmtExitTest, ResultCodes) {
    EXPECT_EQ(exitAt(100), CAMTOrder::kExitFlat);
    core->setPositionByHand(1);  // no entry price: no base
    params.bStopLoss = 1;
    apply();
    EXPECT_EQ(exitAt(100), CAMTOrder::kExitNoBase);

    params.bExitVolFilter = 1;
    params.nExitVolFilter = 20;
    params.bExitPriceCon = 1;
    params.dExitPrice = 100;
    apply();
    EXPECT_EQ(exitAt(100), CAMTOrder::kExitVolume);  // bid volume 10
    params.bExitVolFilter = 0;
    params.nEveryLots = 0;
    apply();
    EXPECT_EQ(exitAt(100), CAMTOrder::kExitNoLots);
}

TEST_F(AmtExitTest, ExitAtTime) {
    params.bExitAtTime = 1;
    params.tExitTime = localSec(10, 30, 0);
    apply();
    openAt(100);
    at(10, 29, 59);
    EXPECT_EQ(exitAt(100), CAMTOrder::kExitNone);
    at(10, 30, 0);
    EXPECT_EQ(exitAt(100), CAMTOrder::kExitSent);
    EXPECT_EQ(journal.entries.back().reason, amt_text::kReasonExitTime);
}

TEST_F(AmtExitTest, CloseOrdersStepOutSuspendEntriesAndEndTheRoundTrip) {
    params.nEveryLots = 2;
    params.nMaxLots = 4;
    params.nOrderOffset = 1;
    params.bExitPriceCon = 1;
    params.nExitPriceCon = 1;  // leave when last <= 90
    params.dExitPrice = 90;
    apply();
    quote(100, 99, 100);
    ASSERT_EQ(enter(), CAMTOrder::kEntrySent);
    ASSERT_EQ(enter(), CAMTOrder::kEntrySent);
    core->setPositionByHand(3);  // one lot lost by hand

    EXPECT_EQ(exitAt(90), CAMTOrder::kExitSent);  // 2 of 3
    EXPECT_EQ(host.sent.back().dVolume, 2);
    EXPECT_EQ(host.sent.back().nDirection, kDirSell);
    EXPECT_DOUBLE_EQ(host.sent.back().dPrice, 88);  // bid 89 less one point
    EXPECT_TRUE(core->state().suspended);
    EXPECT_EQ(enter(), CAMTOrder::kEntryBlocked);

    EXPECT_EQ(exitAt(90), CAMTOrder::kExitSent);  // the whole rest
    EXPECT_EQ(host.sent.back().dVolume, 1);
    const CAMTOrder::State& s = core->state();
    EXPECT_EQ(s.position, 0);
    EXPECT_EQ(s.firstPrice, 0);
    EXPECT_EQ(s.extreme, 0);
    EXPECT_EQ(s.cumulative, 4);

    core->resumeEntries();
    quote(95, 94, 95);
    EXPECT_EQ(enter(), CAMTOrder::kEntrySent);
    EXPECT_DOUBLE_EQ(core->state().firstPrice, 96);  // a new round trip (ask plus a point)
}

TEST_F(AmtExitTest, HandEditedPositionWarnsOnlyWhenItChanges) {
    EXPECT_FALSE(core->setPositionByHand(0));
    EXPECT_TRUE(prompter.boxes.empty());
    EXPECT_TRUE(core->setPositionByHand(2));
    EXPECT_EQ(prompter.lastText(), amt_text::kPositionEdited);
    EXPECT_EQ(core->state().position, 2);
}

}  // namespace
}  // namespace amttest
