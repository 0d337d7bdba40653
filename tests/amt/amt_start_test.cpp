// The start checks, in their order: each row breaks one thing of a valid set of parameters
// (a later row's breakage never hides an earlier check), says what box appears and whether
// the strategy then runs.
#include <functional>

#include "amt/amt_strings.h"
#include "amt_fixture.h"

namespace amttest {
namespace {

struct StartCase {
    const char* name;
    std::function<void(tagAMTParams&)> set;
    std::deque<bool> answers;
    const char* box;  // the last box shown, or null for none
    bool runs;
};

TEST_F(AmtTest, StartChecksInOrder) {
    using namespace amt_text;
    auto chase = [](int isLong, int con, double line) {
        return [=](tagAMTParams& p) {
            p.bLong = isLong;
            p.bEntryPriceCon = 1;
            p.nEntryPriceCon = con;
            p.dEntryPrice = line;
        };
    };
    auto range = [](int isLong, int con, double line, double limit) {
        return [=](tagAMTParams& p) {
            p.bLong = isLong;
            p.bEntryPriceCon = 1;
            p.nEntryPriceCon = con;
            p.dEntryPrice = line;
            p.bEntryRangeFilter = 1;
            p.dEntryRangeFilter = limit;
        };
    };
    auto exitLine = [](int isLong, int con, double line) {
        return [=](tagAMTParams& p) {
            p.bLong = isLong;
            p.bExitPriceCon = 1;
            p.nExitPriceCon = con;
            p.dExitPrice = line;
        };
    };
    using P = tagAMTParams&;
    // The last price is 5230.
    // clang-format off
    const StartCase cases[] = {
        {"valid", {}, {}, nullptr, true},
        {"no lots", [](P p) { p.nEveryLots = 0; p.nDelaySecs = 0; }, {}, kLotsBelowOne, false},
        {"2 into 5", [](P p) { p.nEveryLots = 2; p.nMaxLots = 5; }, {}, kMaxNotMultiple, false},
        {"delay 0", [](P p) { p.nDelaySecs = 0; p.bStopLoss = 1; p.nStopLossPoint = 0; }, {}, kDelayBelowOne, false},
        {"start time passed, No", [](P p) { p.tStartTime = 1; }, {false}, kStartPassed, false},
        {"start time passed, Yes", [](P p) { p.tStartTime = 1; }, {true}, kStartPassed, true},
        {"追买 met, No", chase(1, 0, 5230), {false}, kEntryMetChaseBuy, false},
        {"吊买 met, Yes", chase(1, 1, 5230), {true}, kEntryMetDipBuy, true},
        {"吊卖 met", chase(0, 0, 5229), {false}, kEntryMetDipSell, false},
        {"追卖 met", chase(0, 1, 5231), {false}, kEntryMetChaseSell, false},
        {"追买 not met", chase(1, 0, 5231), {}, nullptr, true},
        {"追买 range equal", range(1, 0, 5240, 5240), {}, kRangeChaseBuy, false},
        {"吊买 range above", range(1, 1, 5220, 5221), {}, kRangeDipBuy, false},
        {"吊卖 range below", range(0, 0, 5240, 5239), {}, kRangeDipSell, false},
        {"追卖 range above", range(0, 1, 5220, 5221), {}, kRangeChaseSell, false},
        {"entry volume 0", [](P p) { p.bEntryVolFilter = 1; p.nEntryVolFilter = 0; }, {}, kEntryVolBelowOne, false},
        {"entry 2 key empty", [](P p) { p.entryFilters[1] = {1, "", 0, 0, "", 0}; }, {},
         "开仓条件2的关键字不能为空，请重新设置！", false},
        {"entry 3 compare key empty", [](P p) { p.entryFilters[2] = {1, "MA5", 0, 1, "", 0}; }, {},
         "开仓条件3的比较关键字不能为空，请重新设置！", false},
        {"stop loss 0", [](P p) { p.bStopLoss = 1; p.nStopLossPoint = 0; }, {}, kStopLossBelowOne, false},
        {"take profit 0", [](P p) { p.bTakeProfit = 1; p.nTakeProfitPoint = 0; }, {}, kTakeProfitBelowOne, false},
        {"trail start -1", [](P p) { p.bTrailingStop = 1; p.nTrailingStart = -1; }, {}, kTrailStartBelowZero, false},
        {"trail points 0", [](P p) { p.bTrailingStop = 1; p.nTrailingStopSet = 0; }, {}, kTrailPointsBelowOne, false},
        {"exit time passed", [](P p) { p.bExitAtTime = 1; p.tExitTime = localSec(10, 0, 0); }, {}, kExitTimePassed, false},
        {"trail percent 0", [](P p) { p.bTrailingStop = 1; p.nTrailingStopType = 1; p.nTrailingStopSet = 0; }, {},
         kTrailPercentBelowOne, false},
        {"trail percent 101", [](P p) { p.bTrailingStop = 1; p.nTrailingStopType = 1; p.nTrailingStopSet = 101; }, {},
         kTrailPercentAbove100, false},
        {"long exit 吊卖 met", exitLine(1, 0, 5230), {false}, kExitMetDipSell, false},
        {"long exit 追卖 met", exitLine(1, 1, 5230), {false}, kExitMetChaseSell, false},
        {"short exit 追买 met, Yes", exitLine(0, 0, 5230), {true}, kExitMetChaseBuy, true},
        {"short exit 吊买 met", exitLine(0, 1, 5230), {false}, kExitMetDipBuy, false},
        {"exit volume 0", [](P p) { p.bExitVolFilter = 1; p.nExitVolFilter = 0; }, {}, kExitVolBelowOne, false},
        {"exit 1 key empty", [](P p) { p.exitFilters[0] = {1, "", 0, 0, "", 0}; }, {},
         "平仓条件1的关键字不能为空，请重新设置！", false},
        {"exit 2 compare key empty", [](P p) { p.exitFilters[1] = {1, "K", 0, 1, "", 0}; }, {},
         "平仓条件2的比较关键字不能为空，请重新设置！", false},
    };
    // clang-format on
    host.quotes["IF2101"] = TickBuilder(3, "IF2101").last(5230).bid(5229.8, 1).ask(5230, 1);
    params.tStartTime = localSec(10, 0, 0);
    for (const StartCase& c : cases) {
        SCOPED_TRACE(c.name);
        tagAMTParams p = params;
        if (c.set) c.set(p);
        core = std::make_unique<CAMTOrder>(manager);
        core->setParams(p);
        prompter.boxes.clear();
        prompter.answers = c.answers;
        EXPECT_EQ(core->start(), c.runs);
        EXPECT_EQ(core->state().running, c.runs);
        if (c.box)
            EXPECT_EQ(prompter.lastText(), c.box);
        else
            EXPECT_TRUE(prompter.boxes.empty()) << prompter.lastText();
    }
}

TEST_F(AmtTest, StartNeedsALoggedOnAccountAndAPositionThatFits) {
    params.nEveryLots = 2;
    params.nMaxLots = 4;
    params.tStartTime = localSec(10, 0, 0);
    apply();
    core->setPositionByHand(1);
    EXPECT_FALSE(core->start());
    EXPECT_EQ(prompter.lastText(), amt_text::kRestNotMultiple);
    core->setPositionByHand(6);
    EXPECT_FALSE(core->start());
    EXPECT_EQ(prompter.lastText(), amt_text::kPositionAboveMax);
    host.accounts.clear();
    EXPECT_FALSE(core->start());
    EXPECT_EQ(prompter.lastText(), amt_text::kNoAccount);
}

TEST_F(AmtTest, ClosingARunningStrategyAsks) {
    EXPECT_TRUE(core->confirmClose());  // stopped: no question
    EXPECT_TRUE(prompter.boxes.empty());
    params.tStartTime = localSec(10, 0, 0);
    apply();
    ASSERT_TRUE(core->start());
    prompter.answers = {false};
    EXPECT_FALSE(core->confirmClose());
    EXPECT_EQ(prompter.lastText(), amt_text::kAskClose);
    EXPECT_TRUE(core->state().running);
    prompter.answers = {true};
    EXPECT_TRUE(core->confirmClose());
    EXPECT_FALSE(core->state().running);
}

}  // namespace
}  // namespace amttest
