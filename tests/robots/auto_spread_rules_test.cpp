// The auto spread's pure rules: which line the spread meets, the units of the next round, the
// step lines, and the settings a start refuses.
#include <gtest/gtest.h>

#include "app/profile_ini.h"
#include "robots/auto_spread_rules.h"
#include "robots/auto_spread_strings.h"
#include "spread/template_store.h"

namespace {

namespace t = auto_spread_text;
using A = SpreadAction;

tagAutoSpreadTemplate lines() {
    tagAutoSpreadTemplate s;
    s.legs[0].szSymbolCode = "IF2101";
    s.legs[1].szSymbolCode = "IH2101";
    s.bLongEntry = s.bLongExit = s.bShortEntry = s.bShortExit = 1;
    s.dLongEntryPrice = 100;
    s.dLongExitPrice = 110;
    s.dShortEntryPrice = 120;
    s.dShortExitPrice = 112;
    s.nEveryLots = 2;
    s.nMaxLots = 5;
    return s;
}

SpreadPrices market(double bid, double ask) {
    SpreadPrices p;
    p.bid = bid;
    p.ask = ask;
    p.bidVol = p.askVol = 1;
    return p;
}

TEST(AutoSpreadRules, TheLineMetAndTheUnitsOfTheNextRound) {
    struct Case {
        const char* what;
        std::int32_t held;
        double bid, ask;
        A action;
        std::int32_t units;
        double level;
    };
    // clang-format off
    const Case cases[] = {
        {"flat, ask at the long entry line",         0,  99.8, 100.0, A::LongEntry,  2, 100},
        {"flat, ask a hair above it",                0,  99.8, 100.2, A::None,       0, 0},
        {"flat, bid at the short entry line",        0, 120.0, 120.2, A::ShortEntry, 2, 120},
        {"long 4: one unit left under the maximum",  4,  99.0,  99.2, A::LongEntry,  1, 100},
        {"long 5: full, no entry",                   5,  99.0,  99.2, A::None,       0, 0},
        {"long: the exit comes before an entry",     3, 110.0,  99.0, A::LongExit,   2, 110},
        {"long 1: the exit takes what is held",      1, 110.4, 110.6, A::LongExit,   1, 110},
        {"long: the short entry is not looked at",   2, 121.0, 121.2, A::LongExit,   2, 110},
        {"short 3: exit at the ask",                -3, 111.8, 112.0, A::ShortExit,  2, 112},
        {"short: bid at the line adds",             -1, 120.0, 125.0, A::ShortEntry, 2, 120},
        {"short 5: full, no entry",                 -5, 121.0, 121.2, A::None,       0, 0},
    };
    // clang-format on
    const tagAutoSpreadTemplate s = lines();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const AutoSpreadPlan p = planAutoSpread(s, c.held, market(c.bid, c.ask), 0.2);
        EXPECT_EQ(p.action, c.action);
        EXPECT_EQ(p.units, c.units);
        if (c.action != A::None) {
            EXPECT_DOUBLE_EQ(p.level, c.level);
        }
    }
}

TEST(AutoSpreadRules, ASideWithoutVolumeOrSwitchedOffMeetsNothing) {
    tagAutoSpreadTemplate s = lines();
    SpreadPrices p = market(99, 99.2);
    p.askVol = 0;  // a leg without the price the buy needs
    EXPECT_FALSE(planAutoSpread(s, 0, p, 0.2).send());
    s.bLongEntry = 0;
    EXPECT_FALSE(planAutoSpread(s, 0, market(99, 99.2), 0.2).send());
    // A spread below zero is a price like any other.
    s = lines();
    s.dLongEntryPrice = -5;
    EXPECT_EQ(planAutoSpread(s, 0, market(-5.4, -5.2), 0.2).action, A::LongEntry);
}

TEST(AutoSpreadRules, StepsMoveTheLinesAndCapTheRound) {
    tagAutoSpreadTemplate s = lines();
    s.bStepTrade = s.bStepExit = 1;
    s.nGridLots = 2;
    s.nEveryLots = 3;
    s.nMaxLots = 6;
    const double step = 1.0;  // nGridOffset ticks of A
    struct Case {
        std::int32_t held;
        bool isLong;
        double entry, exit;
    };
    // clang-format off
    const Case cases[] = {
        {0, true, 100, 110}, {1, true, 100, 110}, {2, true, 99, 110}, {3, true, 99, 109},
        {5, true, 98, 108},  {2, false, 121, 112}, {3, false, 121, 113},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.held);
        EXPECT_DOUBLE_EQ(autoSpreadEntryLevel(s, c.isLong, c.held, step), c.entry);
        EXPECT_DOUBLE_EQ(autoSpreadExitLevel(s, c.isLong, c.held, step), c.exit);
    }
    // A round fills at most the rest of its step, and an exit takes the newest step only.
    EXPECT_EQ(planAutoSpread(s, 0, market(99, 100), step).units, 2);
    EXPECT_EQ(planAutoSpread(s, 3, market(97, 98), step).units, 1);
    EXPECT_EQ(planAutoSpread(s, 3, market(109, 109.2), step).units, 1);
    EXPECT_EQ(planAutoSpread(s, 4, market(109, 109.2), step).units, 2);
    // Step 1's line is one step further: 99.2 does not reach 99.
    EXPECT_FALSE(planAutoSpread(s, 2, market(99, 99.2), step).send());
}

TEST(AutoSpreadRules, SettingsAStartRefuses) {
    struct Case {
        void (*edit)(tagAutoSpreadTemplate&);
        const char* message;
    };
    // clang-format off
    const Case cases[] = {
        {[](tagAutoSpreadTemplate&) {}, nullptr},
        {[](tagAutoSpreadTemplate& s) { s.legs[1].szSymbolCode.clear(); }, t::kNoSymbols},
        {[](tagAutoSpreadTemplate& s) { s.bButterfly = 1; }, t::kNoSymbolC},
        {[](tagAutoSpreadTemplate& s) { s.bButterfly = 1; s.legs[2].szSymbolCode = "IC2101"; s.bChange = 1; }, t::kRollTwoLegs},
        {[](tagAutoSpreadTemplate& s) { s.dSpreadUnit[1] = 0; }, t::kBadUnits},
        {[](tagAutoSpreadTemplate& s) { s.nSpreadLots[0] = 0; }, t::kBadLegLots},
        {[](tagAutoSpreadTemplate& s) { s.nMaxLots = 0; }, t::kBadLots},
        {[](tagAutoSpreadTemplate& s) { s.bLongEntry = s.bLongExit = s.bShortEntry = s.bShortExit = 0; }, t::kNoLine},
        {[](tagAutoSpreadTemplate& s) { s.dLongExitPrice = 100; }, t::kBadLongLines},
        {[](tagAutoSpreadTemplate& s) { s.dShortExitPrice = 121; }, t::kBadShortLines},
        {[](tagAutoSpreadTemplate& s) { s.bShortExit = 0; s.dShortExitPrice = 121; }, nullptr},
        {[](tagAutoSpreadTemplate& s) { s.bStepExit = 1; }, t::kBadStep},
        {[](tagAutoSpreadTemplate& s) { s.nStayMilliSeconds = 99; }, t::kBadStay},
        {[](tagAutoSpreadTemplate& s) { s.nOrderDelaySeconds = -1; }, t::kBadDelay},
    };
    // clang-format on
    for (const Case& c : cases) {
        tagAutoSpreadTemplate s = lines();
        c.edit(s);
        const char* got = autoSpreadSettingsError(s);
        EXPECT_STREQ(got ? got : "(none)", c.message ? c.message : "(none)");
    }
}

TEST(AutoSpreadDefault, EveryFieldSurvivesProfileIni) {
    tagAutoSpreadTemplate s = lines();
    s.accounts[1] = {"880002", "9999", "模拟账户二", "880002(模拟账户二)", 2};
    s.legs[2] = {3, "IC2101"};
    s.dSpreadUnit = {1, 0.5, 2.25};
    s.nSpreadLots = {2, 3, 4};
    s.nOrderOffset = -1;
    s.bButterfly = s.bStepTrade = s.bStepExit = s.bConfirmOrder = 1;
    s.nGridOffset = 5;
    s.nGridLots = 2;
    s.dShortExitPrice = -12.5;
    s.nOrderDelaySeconds = 3;
    s.nUnstayedOffset = 2;
    s.nStayMilliSeconds = 750;
    CProfileIni ini;
    writeAutoSpreadDefault(ini, s);
    const tagAutoSpreadTemplate back = readAutoSpreadDefault(ini);
    EXPECT_EQ(composeTemplateFile<tagAutoSpreadTemplate>({back}, "x"),
              composeTemplateFile<tagAutoSpreadTemplate>({s}, "x"));
    EXPECT_EQ(back.nStayMilliSeconds, 750);
    // An empty section gives the record's defaults, the two lines out of reach included.
    const tagAutoSpreadTemplate empty = readAutoSpreadDefault(CProfileIni{});
    EXPECT_EQ(empty.dLongEntryPrice, -10000);
    EXPECT_EQ(empty.dLongExitPrice, 10000);
    EXPECT_EQ(empty.nStayMilliSeconds, 1000);
}

}  // namespace
