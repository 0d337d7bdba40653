// Matching, cancels, rejects, closes and money of SimExchange, as tables of scripted sessions.
#include <gtest/gtest.h>

#include <sstream>

#include "sim_test_util.h"

using namespace simtest;

namespace {

// Steps: "Q bid bidVol ask askVol last" a quote round for IF2101; "B|S O|C|T vol price" an
// order of 880001 (open / close / close today); "X n" cancels the n-th order (1-based).
struct MatchCase {
    const char* name;
    std::vector<const char*> steps;
    std::vector<std::string> statuses;  // per order: every status it was reported with
    std::string fills;                  // every fill in order: "2@5230.2 1@5230"
    std::string position;
};

const MatchCase kMatchCases[] = {
    {"BuyAtAskFillsAtOnce", {"Q 5230 5 5230.2 3 5230", "B O 2 5230.2"},
     {"11 1 3"}, "2@5230.2", "L2/2 S0/0"},
    {"BuyAboveAskFillsAtTheAsk", {"Q 5230 5 5230.2 3 5230", "B O 1 5231"},
     {"11 1 3"}, "1@5230.2", "L1/1 S0/0"},
    {"SellAtBidFillsAtTheBid", {"Q 5230 5 5230.2 3 5230", "S O 2 5229"},
     {"11 1 3"}, "2@5230", "L0/0 S2/2"},
    {"PartialUpToTouchThenTouchThenTradeThrough",
     {"Q 5230 5 5230.2 3 5230", "B O 5 5230.2", "Q 5230 5 5230.4 9 5230.2",
      "Q 5230 5 5230.2 1 5230.2", "Q 5229.6 5 5229.8 9 5229.8"},
     {"11 1 2 2 3"}, "3@5230.2 1@5230.2 1@5230.2", "L5/5 S0/0"},
    {"TouchConsumedWithinTheRound", {"Q 5230 5 5230.2 3 5230", "B O 3 5230.2", "B O 1 5230.2"},
     {"11 1 3", "11 1"}, "3@5230.2", "L3/3 S0/0"},
    {"RestingBuyFillsWhenAskComesDown",
     {"Q 5230 5 5230.2 3 5230", "B O 2 5229", "Q 5228.8 4 5229 1 5229.2",
      "Q 5228.8 4 5229 6 5229.2"},
     {"11 1 2 3"}, "1@5229 1@5229", "L2/2 S0/0"},
    {"LastEqualToRestingPriceDoesNotFill",
     {"Q 5230 5 5230.2 3 5230", "B O 1 5229", "Q 5228.8 4 5229.2 3 5229"},
     {"11 1"}, "", "L0/0 S0/0"},
    {"RestingSellTradedThrough",
     {"Q 5230 5 5230.2 3 5230", "S O 2 5231", "Q 5231.2 1 5231.4 1 5231.2"},
     {"11 1 3"}, "2@5231", "L0/0 S2/2"},
    {"BetterPriceFirst",
     {"Q 5230 5 5230.2 3 5230", "B O 1 5229", "B O 1 5229.4", "Q 5228.8 4 5229 1 5229.4"},
     {"11 1", "11 1 3"}, "1@5229.4", "L1/1 S0/0"},
    {"TimePriorityAtOnePrice",
     {"Q 5230 5 5230.2 3 5230", "B O 1 5229", "B O 1 5229", "Q 5228.8 4 5229 1 5229.2"},
     {"11 1 3", "11 1"}, "1@5229", "L1/1 S0/0"},
    {"NoOppositeQuoteRests", {"Q 5230 5 0 0 5230", "B O 1 5230.2"},
     {"11 1"}, "", "L0/0 S0/0"},
    {"CancelledOrderDoesNotFillLater",
     {"Q 5230 5 5230.2 3 5230", "B O 1 5229", "X 1", "Q 5228 4 5228.2 3 5228"},
     {"11 1 7 4"}, "", "L0/0 S0/0"},
    {"PartlyFilledThenCancelled", {"Q 5230 5 5230.2 3 5230", "B O 5 5230.2", "X 1"},
     {"11 1 2 7 6"}, "3@5230.2", "L3/3 S0/0"},
    {"OpenThenCloseToday", {"Q 5230 5 5230.2 3 5230", "S O 2 5230", "B T 2 5230.2"},
     {"11 1 3", "11 1 3"}, "2@5230 2@5230.2", "L0/0 S0/0"},
};

class MatchTable : public ::testing::TestWithParam<MatchCase> {};

TEST_P(MatchTable, StatusesFillsAndPosition) {
    const MatchCase& c = GetParam();
    Rig r;
    std::vector<std::string> ids;
    for (const char* step : c.steps) {
        std::istringstream in(step);
        std::string kind, oc;
        in >> kind;
        if (kind == "Q") {
            double b, bv, a, av, l;
            in >> b >> bv >> a >> av >> l;
            r.clock.advanceMs(500);
            ASSERT_TRUE(r.ex.applyQuote(quote(kIF, b, bv, a, av, l)));
        } else if (kind == "X") {
            std::size_t n;
            in >> n;
            EXPECT_EQ(r.ex.DeleteOrder("880001", "9999", ids.at(n - 1)), 1) << step;
        } else {
            double vol, px;
            in >> oc >> vol >> px;
            auto o = order(kIF, kind == "B" ? kDirBuy : kDirSell,
                           oc == "O" ? kOpen : oc == "C" ? kClose : kCloseToday, vol, px);
            r.ex.SendOrder(o);
            ids.push_back(o.strOrderID);
        }
        r.ex.deliverPending();
    }
    ASSERT_EQ(ids.size(), c.statuses.size());
    for (std::size_t i = 0; i < ids.size(); ++i) {
        std::string seen;
        for (const auto& o : r.sink.orders)
            if (o.strOrderID == ids[i]) seen += (seen.empty() ? "" : " ") + std::to_string(o.nStatus);
        EXPECT_EQ(seen, c.statuses[i]) << "order " << i + 1;
    }
    std::string fills;
    for (const auto& b : r.sink.fills)
        fills += (fills.empty() ? "" : " ") + fmt(b.dVolume) + "@" + fmt(b.dPrice);
    EXPECT_EQ(fills, c.fills);
    EXPECT_EQ(r.position(kIF), c.position);
}

INSTANTIATE_TEST_SUITE_P(Sim, MatchTable, ::testing::ValuesIn(kMatchCases),
                         [](const auto& info) { return std::string(info.param.name); });

// ---- Rejects ---------------------------------------------------------------------------

struct RejectCase {
    const char* name;
    tagBrokerOrder order;
    const char* reason;
};

const RejectCase kRejectCases[] = {
    {"UnknownContract", order({3, "XX999"}, kDirBuy, kOpen, 1, 100), simtext::kUnknownContract},
    {"WrongExchange", order({1, "IF2101"}, kDirBuy, kOpen, 1, 5230), simtext::kUnknownContract},
    {"ExpiredContract", order({3, "IF2012"}, kDirBuy, kOpen, 1, 5045), simtext::kNotTradable},
    {"ZeroVolume", order(kIF, kDirBuy, kOpen, 0, 5230), simtext::kBadVolume},
    {"FractionalVolume", order(kIF, kDirBuy, kOpen, 1.5, 5230), simtext::kBadVolume},
    {"BadDirection", order(kIF, 3, kOpen, 1, 5230), simtext::kBadDirection},
    {"AboveUpperLimit", order(kIF, kDirBuy, kOpen, 1, 5738.0), simtext::kPriceOutOfBand},
    {"BelowLowerLimit", order(kIF, kDirSell, kOpen, 1, 4694.4), simtext::kPriceOutOfBand},
    {"OffTheTick", order(kIF, kDirBuy, kOpen, 1, 5230.1), simtext::kPriceOffTick},
    {"CloseWithoutPosition", order(kIF, kDirSell, kClose, 1, 5230), simtext::kCloseExceeds},
    {"CloseTodayWithoutPosition", order(kIF, kDirSell, kCloseToday, 1, 5230),
     simtext::kCloseTodayExceeds},
    {"NoFunds", order(kIF, kDirBuy, kOpen, 100, 5230), simtext::kNoFunds},
};

class RejectTable : public ::testing::TestWithParam<RejectCase> {};

TEST_P(RejectTable, RejectedWithReason) {
    const RejectCase& c = GetParam();
    Rig r;
    tagBrokerOrder o = c.order;
    EXPECT_EQ(r.ex.SendOrder(o), 0);
    EXPECT_EQ(o.nStatus, kOrderRejected);
    EXPECT_EQ(o.strStatusMsg, c.reason);
    ASSERT_FALSE(o.strOrderID.empty());
    r.ex.deliverPending();
    EXPECT_EQ(r.sink.lines, (std::vector<std::string>{"2 " + o.strOrderID + " 11 0",
                                                      "2 " + o.strOrderID + " 5 0"}));
    EXPECT_EQ(r.sink.orders.back().strStatusMsg, c.reason);
    tagBrokerOrder back;
    ASSERT_EQ(r.ex.GetOrder(back, "880001", "9999", o.strOrderID), 1);
    EXPECT_EQ(back.nStatus, kOrderRejected);
    std::vector<tagBrokerOrder> open;
    r.ex.GetOpenOrders(open, "880001", "9999", {});
    EXPECT_TRUE(open.empty());
}

INSTANTIATE_TEST_SUITE_P(Sim, RejectTable, ::testing::ValuesIn(kRejectCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(SimReject, NotLoggedOnOrUnknownAccountBooksNothing) {
    Rig r;
    r.ex.logoff("880001");
    r.ex.deliverPending();
    r.sink.lines.clear();
    auto o = order(kIF, kDirBuy, kOpen, 1, 5230);
    EXPECT_EQ(r.ex.SendOrder(o), 0);
    EXPECT_EQ(o.nStatus, kOrderRejected);
    EXPECT_EQ(o.strStatusMsg, simtext::kNotLoggedOn);
    EXPECT_TRUE(o.strOrderID.empty());
    r.ex.deliverPending();
    EXPECT_TRUE(r.sink.lines.empty());
    auto u = order(kIF, kDirBuy, kOpen, 1, 5230, "123456");
    EXPECT_EQ(r.ex.SendOrder(u), 0);
    EXPECT_EQ(u.strStatusMsg, simtext::kUnknownAccount);
}

TEST(SimReject, PricesAtTheLimitsAreAccepted) {
    Rig r;
    auto up = order(kIF, kDirBuy, kOpen, 1, 5737.8);
    auto lo = order(kIF, kDirSell, kOpen, 1, 4694.6);
    EXPECT_EQ(r.ex.SendOrder(up), 1);
    EXPECT_EQ(up.nStatus, kOrderQueued);
    EXPECT_EQ(r.ex.SendOrder(lo), 1);
}

// ---- Close versus close today ---------------------------------------------------------------

// rb2105 (exchange 0 keeps yesterday and today apart): 880002 holds 5 long from yesterday.
// IF2101 (exchange 3 closes yesterday then today): 880001 gets 1 long seeded as yesterday's.
// Both then buy `openToday` lots before the close.
struct CloseCase {
    const char* name;
    tagSymbol symbol;
    double openToday;
    int closeFlag;
    double closeVolume;
    bool accepted;
    std::string after;
};

const CloseCase kCloseCases[] = {
    {"ShfeCloseTakesYesterdayOnly", kRB, 2, kClose, 5, true, "L2/2 S0/0"},
    {"ShfeCloseMoreThanYesterdayRefused", kRB, 2, kClose, 6, false, "L7/2 S0/0"},
    {"ShfeCloseTodayTakesToday", kRB, 2, kCloseToday, 2, true, "L5/0 S0/0"},
    {"ShfeCloseTodayMoreThanTodayRefused", kRB, 2, kCloseToday, 3, false, "L7/2 S0/0"},
    {"CffexCloseTakesYesterdayThenToday", kIF, 2, kClose, 2, true, "L1/1 S0/0"},
    {"CffexCloseMoreThanHeldRefused", kIF, 2, kClose, 4, false, "L3/2 S0/0"},
    {"CffexCloseTodayTakesToday", kIF, 2, kCloseToday, 1, true, "L2/1 S0/0"},
};

class CloseTable : public ::testing::TestWithParam<CloseCase> {};

TEST_P(CloseTable, CloseRespectsTodaysPart) {
    const CloseCase& c = GetParam();
    Rig r;
    const bool isIF = c.symbol.strCode == "IF2101";
    const double tick = isIF ? 0.2 : 1.0, px = isIF ? 5230.0 : 4400.0;
    const std::string acct = isIF ? "880001" : "880002";
    ASSERT_TRUE(r.ex.applyQuote(quote(c.symbol, px, 100, px + tick, 100, px)));
    if (isIF) r.ex.seedYesterdayPosition(acct, c.symbol, kDirBuy, 1, px);
    auto o = order(c.symbol, kDirBuy, kOpen, c.openToday, px + tick, acct);
    ASSERT_EQ(r.ex.SendOrder(o), 1) << o.strStatusMsg;
    auto cl = order(c.symbol, kDirSell, c.closeFlag, c.closeVolume, px, acct);
    EXPECT_EQ(r.ex.SendOrder(cl), c.accepted ? 1 : 0) << cl.strStatusMsg;
    EXPECT_EQ(r.position(c.symbol, acct), c.after);
}

INSTANTIATE_TEST_SUITE_P(Sim, CloseTable, ::testing::ValuesIn(kCloseCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(SimClose, WorkingCloseOrdersFreezeThePosition) {
    Rig r;
    r.ex.applyQuote(quote(kRB, 4400, 100, 4401, 100, 4400));
    // 880002 holds 5 long from yesterday: a resting close of 4 leaves 1 closable.
    auto a = order(kRB, kDirSell, kClose, 4, 4450, "880002");
    ASSERT_EQ(r.ex.SendOrder(a), 1);
    auto b = order(kRB, kDirSell, kClose, 2, 4450, "880002");
    EXPECT_EQ(r.ex.SendOrder(b), 0);
    EXPECT_EQ(b.strStatusMsg, simtext::kCloseExceeds);
    ASSERT_EQ(r.ex.DeleteOrder("880002", "9999", a.strOrderID), 1);  // releases the 4
    auto c = order(kRB, kDirSell, kClose, 5, 4450, "880002");
    EXPECT_EQ(r.ex.SendOrder(c), 1);
}

TEST(SimClose, CloseProfitAndSummary) {
    Rig r;
    r.ex.applyQuote(quote(kIF, 5230.0, 10, 5230.2, 10, 5230.0));
    auto o = order(kIF, kDirBuy, kOpen, 2, 5230.2);
    ASSERT_EQ(r.ex.SendOrder(o), 1);
    r.ex.applyQuote(quote(kIF, 5231.0, 10, 5231.2, 10, 5231.2));
    tagAccountSummary s = r.summary();
    const double commission = 0.000023 * 5230.2 * 300 * 2;
    EXPECT_DOUBLE_EQ(s.dPreBalance, 1000000.0);
    EXPECT_NEAR(s.dPositionProfit, 1.0 * 300 * 2, 1e-6);
    EXPECT_NEAR(s.dCommission, commission, 1e-6);
    EXPECT_NEAR(s.dMargin, 5231.2 * 300 * 0.12 * 2, 1e-6);
    EXPECT_NEAR(s.dBalance, 1000000.0 + 600 - commission, 1e-6);
    EXPECT_NEAR(s.dAvailable, s.dBalance - s.dMargin, 1e-6);
    auto c = order(kIF, kDirSell, kClose, 2, 5231.0);
    ASSERT_EQ(r.ex.SendOrder(c), 1);
    s = r.summary();
    EXPECT_NEAR(s.dCloseProfit, 0.8 * 300 * 2, 1e-6);
    EXPECT_NEAR(s.dPositionProfit, 0, 1e-9);
    EXPECT_NEAR(s.dMargin, 0, 1e-9);
    // A resting open order freezes margin and commission until it is cancelled.
    auto rest = order(kIF, kDirBuy, kOpen, 1, 5200.0);
    ASSERT_EQ(r.ex.SendOrder(rest), 1);
    EXPECT_NEAR(r.summary().dFrozen, 5200.0 * 300 * 0.12 + 0.000023 * 5200.0 * 300, 1e-6);
    r.ex.DeleteOrder("880001", "9999", rest.strOrderID);
    EXPECT_NEAR(r.summary().dFrozen, 0, 1e-6);
}

TEST(SimOrders, IdentifiersFillsAndQueries) {
    Rig r;
    r.ex.applyQuote(quote(kIF, 5230.0, 10, 5230.2, 10, 5230.0));
    auto a = order(kIF, kDirBuy, kOpen, 1, 5230.2);
    auto b = order(kIF, kDirBuy, kOpen, 1, 5220.0);
    ASSERT_EQ(r.ex.SendOrder(a), 1);
    ASSERT_EQ(r.ex.SendOrder(b), 1);
    EXPECT_EQ(a.strOrderID + " " + b.strOrderID, "1 2");
    std::vector<tagBargainOrder> fills;
    r.ex.GetAllBargains(fills);
    ASSERT_EQ(fills.size(), 1u);
    EXPECT_EQ(fills[0].strContractNo + " " + fills[0].strBargainNo + " " + fills[0].strRemark,
              "1 F1 test");
    std::vector<tagBrokerOrder> open;
    r.ex.GetOpenOrders(open, "880001", "9999", kIF);
    ASSERT_EQ(open.size(), 1u);
    EXPECT_EQ(open[0].strOrderID, "2");
    EXPECT_EQ(r.allOrders().size(), 2u);
    EXPECT_EQ(r.ex.DeleteOrder("880001", "9999", "1"), 0);  // already filled
    EXPECT_EQ(r.ex.DeleteOrder("880001", "9999", "99"), 0);
    EXPECT_EQ(r.ex.DeleteOrder("880002", "9999", "2"), 0);  // another account's
    EXPECT_EQ(r.ex.stats().restingOrders, 1u);
}

}  // namespace
