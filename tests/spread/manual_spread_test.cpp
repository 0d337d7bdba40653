// The manual spread tool on the fake host: quotes and history, the batch a click builds per
// account and leg, the refusals before sending, the quantity question, the journal, and the
// default template.
#include "spread/manual_spread.h"

#include "app/profile_ini.h"
#include "spread/manual_spread_fixture.h"
#include "spread/manual_spread_strings.h"

namespace {

using namespace mstest;
namespace t = manual_spread_text;
using Result = CManualSpread::SendResult;
using Manual = tagManualSpreadTemplate;

std::string describe(const tagBrokerOrder& o) {
    char buf[160];
    std::snprintf(buf, sizeof buf, "%s %s %s %.f@%g %s %s", o.strAccountID.c_str(),
                  o.strCode.c_str(), o.nDirection == kDirBuy ? "buy" : "sell", o.dVolume, o.dPrice,
                  o.nOpenClose == kOpen ? "open" : "close", o.nHedge == kHedge ? "hedge" : "speculative");
    return buf;
}

std::vector<std::string> describe(const std::vector<tagBrokerOrder>& orders) {
    std::vector<std::string> out;
    for (const auto& o : orders) out.push_back(describe(o));
    return out;
}

TEST_F(ManualSpreadTest, QuotesMoveThePricesAndAddHistoryOnceTheLegsInUseHaveQuotes) {
    CManualSpread& s = open();
    EXPECT_EQ(s.history().size(), 1u);  // A and B quoted; choosing the unused leg C adds none
    EXPECT_EQ(s.rowText(SpreadRow::Ask), "51/10");  // 4401 - 4350
    EXPECT_EQ(s.rowText(SpreadRow::Bid), "48/10");  // 4400 - 4352

    quote(tick(0, "rb2105", 4402, 4403, 4402));
    EXPECT_EQ(s.prices().ask, 53);
    EXPECT_EQ(s.history().size(), 2u);
    quote(tick(0, "cu2102", 1, 2));  // not a leg
    EXPECT_EQ(s.history().size(), 2u);

    s.setButterfly(true);  // another spread: the history starts again
    EXPECT_EQ(s.history().size(), 1u);
    EXPECT_EQ(s.prices().ask, 4403 - 4350 - 1006);
}

TEST_F(ManualSpreadTest, LegsSubscribeOncePerInstrumentAndReleaseOnClose) {
    CManualSpread& s = open();
    const std::string h = std::to_string(s.handle());
    s.setLeg(2, {0, "rb2105"});  // C shares A's instrument
    s.setLeg(0, {0, "rb2110"});  // A leaves it, C keeps it
    spread.reset();
    EXPECT_EQ(host.callsStartingWith("Subscribe"),
              (std::vector<std::string>{"Subscribe " + h + " rb2105", "Subscribe " + h + " rb2110",
                                        "Subscribe " + h + " i2105"}));
    EXPECT_EQ(
        host.callsStartingWith("Unsubscribe"),
        (std::vector<std::string>{"Unsubscribe " + h + " i2105", "Unsubscribe " + h + " rb2110",
                                  "Unsubscribe " + h + " rb2105"}));
}

TEST_F(ManualSpreadTest, ClickBuildsOneOrderPerAccountAndLeg) {
    struct Case {
        const char* name;
        bool buy;
        void (*setup)(Manual&);
        std::array<bool, 3> hedge;
        std::vector<std::string> want;
    };
    const Case cases[] = {
        {"buy with offset, lots and hedge on A, two accounts",
         true,
         [](Manual& m) {
             m.nSpreadLots = {2, 3, 1};
             m.nOrderOffset = 1;
         },
         {true, false, false},
         {"880001 rb2105 buy 2@4402 open hedge", "880001 rb2110 sell 3@4349 open speculative",
          "880002 rb2105 buy 2@4402 open hedge", "880002 rb2110 sell 3@4349 open speculative"}},
        {"sell to close, two units per click",
         false,
         [](Manual& m) {
             m.bExit = 1;
             m.nEveryLots = 2;
         },
         {},
         {"880001 rb2105 sell 2@4400 close speculative", "880001 rb2110 buy 2@4352 close speculative"}},
        {"calendar roll, bought: A closes, B opens",
         true,
         [](Manual& m) { m.bChange = 1; },
         {},
         {"880001 rb2105 buy 1@4401 close speculative", "880001 rb2110 sell 1@4350 open speculative"}},
        {"calendar roll, sold, whatever bExit says",
         false,
         [](Manual& m) {
             m.bChange = 1;
             m.bExit = 1;
         },
         {},
         {"880001 rb2105 sell 1@4400 close speculative", "880001 rb2110 buy 1@4352 open speculative"}},
        {"three legs ignore the roll",
         true,
         [](Manual& m) {
             m.bButterfly = 1;
             m.bChange = 1;
         },
         {false, false, true},
         {"880001 rb2105 buy 1@4401 open speculative", "880001 rb2110 sell 1@4350 open speculative",
          "880001 i2105 sell 1@1006 open hedge"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host.sent.clear();
        CManualSpread& s = open();
        c.setup(s.editSettings());
        std::vector<tagAccoutInfo> accounts = host.accounts;
        if (c.want.size() != 4) accounts.resize(1);
        EXPECT_EQ(s.send(c.buy, accounts, c.hedge), Result::Sent);
        EXPECT_EQ(describe(host.sent), c.want);
        for (const auto& o : host.sent) {
            EXPECT_EQ(o.strRemark, t::kName);
            EXPECT_EQ(o.tCreateTime, clock.now());
        }
    }
    EXPECT_TRUE(ui.log.empty());  // no confirmation asked for
}

TEST_F(ManualSpreadTest, RefusalsBeforeSendingSendNothing) {
    struct Case {
        const char* name;
        void (*setup)(CManualSpread&, std::vector<tagAccoutInfo>&);
        Result want;
        const char* box;  // "" for a silent end
    };
    const Case cases[] = {
        {"no account", [](CManualSpread&, std::vector<tagAccoutInfo>& a) { a.clear(); },
         Result::Refused, t::kNoAccount},
        {"no spread unit",
         [](CManualSpread& s, std::vector<tagAccoutInfo>&) { s.editSettings().nEveryLots = 0; },
         Result::Refused, t::kBadEveryLots},
        {"two legs, B unquoted",
         [](CManualSpread& s, std::vector<tagAccoutInfo>&) {
             s.setLeg(1, {0, "rb2110x"});
         },
         Result::Refused, t::kNoQuote2},
        {"three legs, C unquoted",
         [](CManualSpread& s, std::vector<tagAccoutInfo>&) {
             s.setButterfly(true);
             s.setLeg(2, {});
         },
         Result::Refused, t::kNoQuote3},
        {"a leg's bid at its upper limit",
         [](CManualSpread& s, std::vector<tagAccoutInfo>&) {
             s.onQuote(tick(0, "rb2110", 4570, 4570, 4570, 4130, 4570));
         },
         Result::Skipped, ""},
        {"a leg without ask",
         [](CManualSpread& s, std::vector<tagAccoutInfo>&) {
             s.onQuote(tick(0, "rb2105", 4400, 0, 4400));
         },
         Result::Skipped, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<tagAccoutInfo> accounts = host.accounts;
        CManualSpread& s = open();
        c.setup(s, accounts);
        prompter.boxes.clear();
        EXPECT_EQ(s.send(true, accounts, {}), c.want);
        EXPECT_EQ(prompter.lastText(), c.box);
        EXPECT_TRUE(host.sent.empty());
    }
}

TEST_F(ManualSpreadTest, QuantitiesAreAskedBeforeTheFirstOrderAndAfterEachInstrumentChange) {
    CManualSpread& s = open();
    s.editSettings().bFirstLotsConfirm = 1;
    s.editSettings().nSpreadLots = {2, 3, 1};
    s.editSettings().nEveryLots = 2;
    const std::vector<tagAccoutInfo> one{host.accounts[0]};

    prompter.answers = {false};
    EXPECT_EQ(s.send(true, one, {}), Result::Declined);
    EXPECT_EQ(prompter.lastCaption(), t::kLotsCaption);
    EXPECT_EQ(prompter.lastText(), "商品A和商品B的单笔交易数量为[4:6]，这是您预期的数量吗？");
    prompter.answers = {true};
    EXPECT_EQ(s.send(true, one, {}), Result::Sent);
    EXPECT_EQ(s.send(true, one, {}), Result::Sent);
    EXPECT_EQ(prompter.boxes.size(), 2u);  // asked twice in all: not again once confirmed

    s.setButterfly(true);
    s.setLeg(2, {0, "rb2105"});
    prompter.answers = {false};
    EXPECT_EQ(s.send(true, one, {}), Result::Declined);
    EXPECT_EQ(prompter.lastText(),
              "商品A、商品B和商品C的单笔交易数量为[4:6:2]，这是您预期的数量吗？");
}

TEST_F(ManualSpreadTest, BatchGoesThroughTheConfirmationAndEachOrderIsJournalled) {
    CManualSpread& s = open();
    s.editSettings().bConfirmOrder = 1;
    ui.acceptConfirm = false;
    EXPECT_EQ(s.send(false, host.accounts, {}), Result::Cancelled);
    EXPECT_TRUE(host.sent.empty());
    EXPECT_TRUE(journal.entries.empty());

    ui.acceptConfirm = true;
    host.sendOrderResult = 0;  // the host refuses: still recorded, as refused
    EXPECT_EQ(s.send(true, {host.accounts[0]}, {}), Result::Sent);
    EXPECT_EQ(ui.log.back(), "confirmBatch 价差下单 2");
    ASSERT_EQ(journal.entries.size(), 2u);
    const JournalEntry& e = journal.entries[1];
    EXPECT_EQ(e.tool, t::kName);
    EXPECT_EQ(e.window, s.caption());
    EXPECT_EQ(e.tag, t::kName);
    EXPECT_EQ(e.reason, t::kReasonBuy);
    EXPECT_EQ(e.order.strCode, "rb2110");
    EXPECT_EQ(e.result, 0);
    EXPECT_EQ(e.timeMs, clock.nowMs());
    ASSERT_EQ(e.figures.size(), 4u);
    EXPECT_EQ(e.figures[0].name, "spread");
    EXPECT_EQ(e.figures[0].value, 51);
    EXPECT_EQ(e.figures[1].value, 4401);  // A bought at its ask
    EXPECT_EQ(e.figures[2].value, 4350);  // B sold at its bid
}

TEST_F(ManualSpreadTest, DefaultTemplateRoundTripsThroughProfileAndOpensTheTool) {
    Manual m;
    m.legs = {{{0, "rb2105"}, {0, "rb2110"}, {1, "i2105"}}};
    m.dSpreadUnit = {1, 0.5, 2.25};
    m.nSpreadLots = {2, 3, 4};
    m.nEveryLots = 5;
    m.nOrderOffset = 2;
    m.bButterfly = m.bChange = m.bExit = m.bConfirmOrder = m.bFirstLotsConfirm = 1;
    m.bShowChart = 1;
    CProfileIni ini(manager.profilePath());
    writeManualSpreadDefault(ini, m);
    ASSERT_TRUE(ini.save());

    CManualSpread& s = *(spread = std::make_unique<CManualSpread>(manager));
    EXPECT_EQ(composeTemplateFile<Manual>({s.settings()}, "x"),
              composeTemplateFile<Manual>({m}, "x"));
    EXPECT_EQ(s.settings().bShowChart, 1);
    EXPECT_EQ(s.leg(2), (tagSymbol{1, "i2105"}));
    EXPECT_TRUE(s.hasQuote(2));
    EXPECT_FALSE(s.quantitiesConfirmed());
}

TEST_F(ManualSpreadTest, ApplyingATemplateKeepsTheChartSwitchAndNamesTheCaption) {
    CManualSpread& s = open();
    s.editSettings().bShowChart = 1;
    Manual m;
    m.strName = "螺纹跨期";
    m.legs = {{{0, "rb2110"}, {0, "rb2105"}, {}}};
    ASSERT_TRUE(CTemplateStore<Manual>(manager.userDir(), template_files::kManualSpread).save({m}));
    ASSERT_TRUE(s.templates().apply(0));
    EXPECT_EQ(s.settings().bShowChart, 1);
    EXPECT_EQ(s.leg(0), (tagSymbol{0, "rb2110"}));
    EXPECT_EQ(s.caption().rfind("螺纹跨期@价差下单:A[", 0), 0u);
}

}  // namespace
