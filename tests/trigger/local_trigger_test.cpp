// The centre around the evaluation: adding, the quote cache and its subscriptions, firing
// once with the attached options, the list, the cancel commands and the CSV export.
#include <filesystem>

#include "host/gbk_codec.h"
#include "host/utf8_path.h"
#include "trigger_fixture.h"

using namespace trigtest;

namespace {

IModuleFutureTrader::ITickEx cuQuote(double last) {
    return TickBuilder(0, "cu2102").bid(last - 10, 3).ask(last + 10, 4).last(last);
}

}  // namespace

TEST_F(TriggerTest, AnUnknownContractIsRefusedSilently) {
    EXPECT_FALSE(centre->addTrigger(trigger(0, "zz9999", kDirBuy, 0, 100)));
    EXPECT_EQ(centre->size(), 0u);
    EXPECT_TRUE(host.subscriptions.empty());
    EXPECT_TRUE(prompter.boxes.empty());
    // The batch path keeps the known ones and still answers true.
    EXPECT_TRUE(centre->addTriggers(
        {trigger(0, "zz9999", kDirBuy, 0, 100), trigger(0, "cu2102", kDirBuy, 0, 100)}));
    EXPECT_EQ(centre->size(), 1u);
}

TEST_F(TriggerTest, EachSymbolIsSubscribedOnceAndReleasedOnClose) {
    centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 100));
    centre->addTriggers(
        {trigger(0, "cu2102", kDirSell, 1, 200), trigger(3, "IF2101", kDirBuy, 0, 1)});
    EXPECT_EQ(host.callsStartingWith("Subscribe").size(), 2u);
    const std::string h = std::to_string(centre->handle());
    centre.reset();
    EXPECT_EQ(
        host.callsStartingWith("Unsubscribe"),
        (std::vector<std::string>{"Unsubscribe " + h + " cu2102", "Unsubscribe " + h + " IF2101"}));
}

TEST_F(TriggerTest, NoticesUpdateOnlyCachedSymbolsAndAreRefusedAfterClose) {
    centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 100));
    const IModuleFutureTrader::ITickEx other = TickBuilder(0, "al2102").last(50);
    EXPECT_EQ(centre->dataChange(kEventQuote, reinterpret_cast<std::uintptr_t>(&other)), 1);
    EXPECT_EQ(centre->dataChange(kEventQuote, 0), -1);
    const tagBrokerOrder order;
    EXPECT_EQ(centre->dataChange(kEventOrderChanged, reinterpret_cast<std::uintptr_t>(&order)), 0);
    centre->step();
    EXPECT_EQ(centre->record(0).nResult, kTriggerNoQuote);

    // Through the manager's window message, as the host delivers it.
    const IModuleFutureTrader::ITickEx q = cuQuote(100);
    manager.sendMessage(centre->handle(), kMsgDataChange, kEventQuote,
                        reinterpret_cast<std::uintptr_t>(&q));
    centre->step();
    EXPECT_EQ(centre->record(0).nResult, kTriggerFired);

    centre->close();
    EXPECT_EQ(centre->dataChange(kEventQuote, reinterpret_cast<std::uintptr_t>(&q)), -1);
}

TEST_F(TriggerTest, ATriggerWaitsForAQuoteAndTakesTheStandingOneWhenSubscribing) {
    centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 100));
    for (int i = 0; i < 3; ++i) centre->step();
    EXPECT_EQ(centre->statusText(0), "无有效行情数据");
    // A new symbol starts from the quote the host holds now.
    host.quotes["IF2101"] = TickBuilder(3, "IF2101").bid(99, 1).ask(101, 1).last(100);
    centre->addTrigger(trigger(3, "IF2101", kDirBuy, 0, 100));
    centre->step();
    EXPECT_EQ(host.sent.size(), 1u);
    quote(cuQuote(100));
    centre->step();
    EXPECT_EQ(host.sent.size(), 2u);
}

TEST_F(TriggerTest, AFiredTriggerSendsOnceWithItsOptions) {
    tagAlgoSetting algo;
    algo.nBaseLine = 1;  // with algo trading on, every volume goes to algorithmic execution
    manager.setAlgoTrading(true);
    tagTriggerOrder t = trigger(0, "cu2102", kDirBuy, 0, 100, 0, 3);
    t.nOpenClose = kCloseToday;
    t.nHedge = kHedge;
    ASSERT_TRUE(centre->addTrigger(t, &algo));
    ASSERT_TRUE(centre->addTrigger(trigger(0, "cu2102", kDirSell, 1, 100)));
    quote(cuQuote(100));
    centre->step();
    centre->step();
    ASSERT_EQ(ui.toAlgo.size(), 1u);  // the first through its options
    EXPECT_EQ(ui.toAlgo[0].nOpenClose, kCloseToday);
    EXPECT_EQ(ui.toAlgo[0].nHedge, kHedge);
    EXPECT_DOUBLE_EQ(ui.toAlgo[0].dVolume, 3);
    EXPECT_DOUBLE_EQ(ui.toAlgo[0].dPrice, 110);
    ASSERT_EQ(host.sent.size(), 1u);  // the second straight to the host, at the bid
    EXPECT_DOUBLE_EQ(host.sent[0].dPrice, 90);
    EXPECT_TRUE(prompter.boxes.empty());
}

TEST_F(TriggerTest, AStepRunFromInsideASendNeitherFiresTwiceNorLosesItsPlace) {
    // The send re-enters (a modal box's event loop): a trigger on a new symbol is added and
    // the timer runs.
    host.quotes["IF2101"] = TickBuilder(3, "IF2101").bid(99, 1).ask(101, 1).last(100);
    host.afterSend = [this] {
        centre->addTrigger(trigger(3, "IF2101", kDirBuy, 0, 100));
        centre->step();
    };
    for (int i = 0; i < 3; ++i) centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 100));
    quote(cuQuote(100));
    centre->step();
    EXPECT_EQ(host.sent.size(), 3u);  // each of the three once; the added ones wait a step
    EXPECT_EQ(centre->size(), 6u);
    EXPECT_EQ(centre->record(3).trigger.nStatus, kOrderWaitTrigger);
    host.afterSend = nullptr;
    centre->step();
    EXPECT_EQ(host.sent.size(), 6u);
}

TEST_F(TriggerTest, RowsShowEveryColumnAndFollowTheDisplayOptions) {
    tagTriggerOrder t = trigger(3, "IF2101", kDirBuy, 2, 5001.2, 0, 2);
    t.tExpiry = localSec(15, 15, 0);
    centre->addTrigger(t);
    centre->addTrigger(trigger(3, "IF2101", kDirSell, 1, 5100, 5099.8, 1));
    EXPECT_EQ(centre->columnLayout(),
              "帐户,80;商品,50;数量,50;状态,60;触发类型,50;触发价,50;执行价,50;触发时间,60;"
              "状态信息,80;");
    auto rows = centre->rows();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].cells, (std::vector<std::string>{"880001", "IF2101", "2", "等待触发", "追买",
                                                       "5001.2", "市价", "-", ""}));
    EXPECT_EQ(rows[1].cells[6], "5099.8");

    LocalTriggerDisplay d;
    d.nShowType = 0;
    d.bShowExpiredTime = d.bShowEntryFlag = d.bShowSpeculate = d.bShowComment = 1;
    centre->setDisplay(d);
    EXPECT_EQ(centre->columnLayout(),
              "帐户,80;商品,50;数量,50;状态,60;触发类型,50;触发价,50;执行价,50;触发时间,60;"
              "状态信息,80;过期时间,60;开平标志,60;投机保值,60;注释,60;");
    rows = centre->rows();
    EXPECT_EQ(std::vector<std::string>(rows[0].cells.begin() + 9, rows[0].cells.end()),
              (std::vector<std::string>{"15:15:00", "开仓", "投机", "条件单"}));
    // Written to Profile.ini and read back by the next centre.
    EXPECT_EQ(loadLocalTriggerDisplay(manager.profilePath()), d);
}

TEST_F(TriggerTest, TheShowTypeFiltersByStatus) {
    for (int i = 0; i < 3; ++i) centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 100 - i * 50));
    centre->addTrigger(trigger(0, "cu2102", kDirBuy, 7, 100));  // never listed
    quote(cuQuote(90));
    centre->step();  // fires index 0 (at 100 >= 90)
    prompter.answers = {true};
    centre->cancelSelected({1});
    const std::pair<int, std::vector<int>> expected[] = {
        {0, {0, 1, 2}}, {1, {2}}, {2, {1}}, {3, {0}}};
    for (const auto& [showType, indices] : expected) {
        LocalTriggerDisplay d;
        d.nShowType = showType;
        centre->setDisplay(d);
        std::vector<int> listed;
        for (const auto& r : centre->rows()) listed.push_back(r.index);
        EXPECT_EQ(listed, indices) << showType;
    }
    LocalTriggerDisplay d;
    d.nShowType = 3;
    centre->setDisplay(d);
    EXPECT_EQ(centre->rows()[0].cells[3], "全部成交");
    EXPECT_EQ(centre->rows()[0].cells[7], "10:00:00");
}

TEST_F(TriggerTest, CancellingSelectedRowsAsksOncePerRowFromTheLast) {
    for (int i = 0; i < 3; ++i) centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 100));
    prompter.answers = {true, false, true};
    EXPECT_EQ(centre->cancelSelected({0, 1, 2}), (std::vector<int>{2, 0}));
    ASSERT_EQ(prompter.boxes.size(), 3u);
    EXPECT_EQ(prompter.boxes[0].caption, "确认");
    EXPECT_EQ(prompter.boxes[0].text, "您确定要撤销当前选中的本地触发单？");
    EXPECT_EQ(centre->record(1).trigger.nStatus, kOrderWaitTrigger);
    EXPECT_EQ(centre->record(2).trigger.nStatus, kOrderCancelled);
}

TEST_F(TriggerTest, CancelAllAsksOnceAndTouchesOnlyWaitingRecords) {
    centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 100));
    centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 50));
    quote(cuQuote(90));
    centre->step();
    prompter.answers = {false};
    EXPECT_FALSE(centre->cancelAll());
    prompter.answers = {true};
    EXPECT_TRUE(centre->cancelAll());
    EXPECT_EQ(prompter.boxes.size(), 2u);
    EXPECT_EQ(centre->record(0).trigger.nStatus, kOrderFilled);
    EXPECT_EQ(centre->record(1).trigger.nStatus, kOrderCancelled);
    prompter.answers = {true};
    EXPECT_FALSE(centre->cancelAll());  // nothing left waiting
    quote(cuQuote(10));
    centre->step();
    EXPECT_EQ(host.sent.size(), 1u);  // a cancelled trigger never fires
}

TEST_F(TriggerTest, ExportAppendsAHeaderAndTheRowsInGbk) {
    centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 100));
    const auto file = root / utf8Path("本地触发单.csv");
    ASSERT_TRUE(centre->exportCsv(file));
    ASSERT_TRUE(centre->exportCsv(file));
    const std::string once =
        "帐户,商品,数量,状态,触发类型,触发价,执行价,触发时间,状态信息\n"
        "880001,cu2102,1,等待触发,吊买,100,市价,-,\n";
    EXPECT_EQ(readFileBytes(file), gbk::fromUtf8(once + once));
}

TEST_F(TriggerTest, AnExportThatCannotBeWrittenSaysSoAndKeepsEverything) {
    centre->addTrigger(trigger(0, "cu2102", kDirBuy, 0, 100));
    const auto file = root / "no such folder" / "x.csv";
    EXPECT_FALSE(centre->exportCsv(file));
    ASSERT_EQ(prompter.boxes.size(), 1u);
    EXPECT_EQ(prompter.boxes[0].caption, "提示");
    EXPECT_NE(prompter.boxes[0].text.find("x.csv"), std::string::npos);
    EXPECT_EQ(centre->size(), 1u);
    EXPECT_EQ(centre->rows().size(), 1u);
}
