// Fast exit on a fake host: how the price, the limit band and the volume are found and
// corrected (a table of cases against hand-computed orders), which box says so, and the ways
// an order leaves (confirmation, algorithmic hand-off, journal).
#include <gtest/gtest.h>

#include "account/account_strings.h"
#include "account/fast_exit.h"
#include "app/helmsman_manage.h"
#include "host/clock.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/scripted.h"
#include "support/temp_dir.h"
#include "support/recording_journal.h"

namespace {

using namespace account_text;

// Account A1 holds m2501 (tick 1) on exchange 2: long 3 (1 today), short 2 (today).
class FastExitTest : public ::testing::Test {
protected:
    FakeHost host;
    ScriptedPrompter prompter;
    ScriptedUi ui;
    ManualClock clock{1'717'000'000'000};
    CHelmsmanManage manage;
    TempDir root{"helmsman_fastexit"};

    void SetUp() override {
        manage.init(7, &host, root.string(), "trader", 0);
        manage.setPrompter(&prompter);
        manage.setUi(&ui);
        manage.setClock(&clock);
        confirm(false);
        host.accounts = {FakeHost::account("A1", "B1", "张三")};
        host.details["m2501"] = contractDetail(1.0f, 1, 10);
        tagOpenedPosition p;
        p.strAccountID = "A1";
        p.strBrokerID = "B1";
        p.nExchangeID = 2;
        p.strCode = "m2501";
        p.dLong = 3;
        p.dLongToday = 1;
        p.dShort = 2;
        p.dShortToday = 2;
        host.positions = {p};
    }

    void confirm(bool on) {
        HelmsmanSettings s = manage.settings();
        s.bShowNormalOrderConfirm = on ? 1 : 0;
        manage.saveSettings(s);
    }

    void quote(double bid, double ask, double lower = 0, double upper = 0) {
        host.quotes["m2501"] = TickBuilder(2, "m2501").bid(bid, 5).ask(ask, 5).limits(lower, upper);
    }

    CFastExit make() { return CFastExit(manage, &host.positions[0], "m2501"); }
};

TEST_F(FastExitTest, PriceLimitAndVolumeCorrections) {
    struct Case {
        const char* name;
        double bid, ask, lower, upper;
        int useTouch, useOffset, offset;
        double manual, volume;
        int dir;
        const char* box;  // the one box expected, "" for none
        double price, lots;
    } cases[] = {
        {"bid absent: the ask, no offset", 0, 3000, 0, 0, 1, 1, 1, 0, 1, kDirSell, "", 3000, 1},
        {"ask absent: the bid, no offset", 2990, 0, 0, 0, 1, 1, 1, 0, 1, kDirBuy, "", 2990, 1},
        {"sell at bid less offset", 3000, 3001, 0, 0, 1, 1, 2, 0, 1, kDirSell, "", 2998, 1},
        {"buy at ask plus offset", 3000, 3001, 0, 0, 1, 1, 2, 0, 1, kDirBuy, "", 3003, 1},
        {"offset off", 3000, 3001, 0, 0, 1, 0, 2, 0, 1, kDirSell, "", 3000, 1},
        {"typed above upper limit", 3000, 3001, 2950, 3050, 0, 0, 0, 3100, 1, kDirSell,
         kMsgOutOfLimits, 3050, 1},
        {"touch offset below lower limit", 2950, 2951, 2950, 3050, 1, 1, 3, 0, 1, kDirSell,
         kMsgOutOfLimits, 2950, 1},
        {"band ignored when inverted", 3000, 3001, 3050, 2950, 0, 0, 0, 3100, 1, kDirSell, "", 3100, 1},
        {"long volume cut", 3000, 3001, 0, 0, 1, 0, 0, 0, 5, kDirSell, kMsgLongVolumeCut, 3000, 3},
        {"short volume cut", 3000, 3001, 0, 0, 1, 0, 0, 0, 5, kDirBuy, kMsgShortVolumeCut, 3001, 2},
        {"within 0.01 is no cut", 3000, 3001, 0, 0, 1, 0, 0, 0, 3.005, kDirSell, "", 3000, 3},
        {"typed sell rounds down", 3000, 3001, 0, 0, 0, 0, 0, 3000.6, 1, kDirSell, "", 3000, 1},
        {"typed buy rounds up", 3000, 3001, 0, 0, 0, 0, 0, 3000.2, 1, kDirBuy, "", 3001, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host.sent.clear();
        host.orders.clear();  // what earlier cases sent would hold lots back
        prompter.boxes.clear();
        quote(c.bid, c.ask, c.lower, c.upper);
        CFastExit fx = make();
        fx.options() = {c.useTouch, c.useOffset, c.offset, 0};
        fx.manualPrice = c.manual;
        fx.volume = c.volume;
        EXPECT_EQ(fx.close(c.dir), CFastExit::Result::Sent);
        ASSERT_EQ(host.sent.size(), 1u);
        EXPECT_DOUBLE_EQ(host.sent[0].dPrice, c.price);
        EXPECT_DOUBLE_EQ(host.sent[0].dVolume, c.lots);
        EXPECT_EQ(host.sent[0].nDirection, c.dir);
        EXPECT_EQ(host.sent[0].nOpenClose, kClose);
        EXPECT_EQ(host.sent[0].strRemark, kFastExitCaption);
        if (*c.box) {
            ASSERT_EQ(prompter.boxes.size(), 1u);
            EXPECT_EQ(prompter.boxes[0].text, c.box);
            EXPECT_EQ(prompter.boxes[0].caption, kCaptionPrompt);
        } else {
            EXPECT_TRUE(prompter.boxes.empty()) << prompter.lastText();
        }
    }
}

TEST_F(FastExitTest, StopsWithoutPriceAccountOrLots) {
    struct Case {
        const char* name;
        double bid, ask;
        bool quoteKnown, loggedOn;
        double longLots, volume;
        const char* caption;
        const char* box;
    } cases[] = {
        {"no touch on either side", 0, 0, true, true, 3, 1, kCaptionPromptBlank, kMsgNoTouchPrice},
        {"no quote at all", 0, 0, false, true, 3, 1, kCaptionPromptBlank, kMsgNoTouchPrice},
        {"not logged on", 3000, 3001, true, false, 3, 1, kCaptionPrompt, kMsgLogin},
        {"no long side", 3000, 3001, true, true, 0, 1, kCaptionPrompt, kMsgNoLong},
        {"zero volume", 3000, 3001, true, true, 3, 0, kCaptionPrompt, kMsgVolumeNotPositive},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host.accounts = {FakeHost::account("A1", "B1", "张三")};
        prompter.boxes.clear();
        host.sent.clear();
        host.quotes.clear();
        if (c.quoteKnown) quote(c.bid, c.ask);
        host.positions[0].dLong = c.longLots;
        host.positions[0].dLongToday = 0;
        CFastExit fx = make();
        fx.volume = c.volume;
        if (!c.loggedOn) host.accounts.clear();
        EXPECT_EQ(fx.closeLong(), CFastExit::Result::Stopped);
        EXPECT_TRUE(host.sent.empty());
        ASSERT_FALSE(prompter.boxes.empty());
        EXPECT_EQ(prompter.lastCaption(), c.caption);
        EXPECT_EQ(prompter.lastText(), c.box);
    }
}

TEST_F(FastExitTest, WorkingClosesHoldLotsBack) {
    quote(3000, 3001);
    tagBrokerOrder working;
    working.strAccountID = "A1";
    working.strBrokerID = "B1";
    working.nExchangeID = 2;
    working.strCode = "m2501";
    working.nDirection = kDirSell;
    working.nOpenClose = kClose;
    working.dVolume = 2;
    working.nStatus = kOrderQueued;
    working.strOrderID = "9";
    host.orders = {working};
    CFastExit fx = make();
    fx.volume = 3;
    EXPECT_EQ(fx.closeLong(), CFastExit::Result::Sent);
    ASSERT_EQ(host.sent.size(), 1u);
    EXPECT_DOUBLE_EQ(host.sent[0].dVolume, 1);
    EXPECT_NE(prompter.lastText().find("可平数量为1张"), std::string::npos) << prompter.lastText();
}

TEST_F(FastExitTest, ConfirmationAlgoHandOffAndJournal) {
    quote(3000, 3001);
    RecordingJournal journal;
    manage.setJournal(&journal);

    // Declined confirmation: nothing leaves, nothing is recorded.
    confirm(true);
    ui.acceptConfirm = false;
    CFastExit fx = make();
    fx.volume = 1;
    EXPECT_EQ(fx.closeLong(), CFastExit::Result::Cancelled);
    EXPECT_TRUE(host.sent.empty());
    EXPECT_TRUE(journal.entries.empty());

    // With the tool's algorithm option the order goes to the algo centre, and the module's
    // own switch is what it was afterwards.
    ui.acceptConfirm = true;
    fx.options().bUseAlgoTrading = 1;
    EXPECT_EQ(fx.closeLong(), CFastExit::Result::Sent);
    EXPECT_TRUE(host.sent.empty());
    ASSERT_EQ(ui.toAlgo.size(), 1u);
    EXPECT_EQ(manage.settings().bUseAlgoTrading, 0);

    fx.options().bUseAlgoTrading = 0;
    EXPECT_EQ(fx.closeShort(), CFastExit::Result::Sent);
    ASSERT_EQ(host.sent.size(), 1u);
    ASSERT_EQ(journal.entries.size(), 2u);
    const JournalEntry& e = journal.entries.back();
    EXPECT_EQ(e.tool, kFastExitCaption);
    EXPECT_EQ(e.order.strOrderID, host.sent[0].strOrderID);
    EXPECT_EQ(e.result, 1);
    EXPECT_EQ(e.reason, "平空仓，按叫买/卖价加减1点");
    EXPECT_EQ(e.timeMs, clock.nowMs());
}

}  // namespace
