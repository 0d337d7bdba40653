// The engine on the fake host: slices out with their tag and journal entry, the cancel of an
// overdue slice and its repetition, reports, commands, the order file and the settings files.
#include "algo/algo_file.h"
#include "algo/algo_strings.h"
#include "algo_fixture.h"
#include "spread/template_store.h"

using namespace algotest;

namespace {

tagAlgoSetting lots(int n, int intervalSec = 5) {
    tagAlgoSetting s;
    s.nLotSingle = n;
    s.nLotRandom = 0;
    s.nTimeInterval = intervalSec;
    return s;
}

}  // namespace

TEST_F(EngineTest, ASliceGoesOutTaggedAndJournalled) {
    auto o = engine->add(parent(10), lots(3), true);
    ASSERT_TRUE(o);
    EXPECT_DOUBLE_EQ(o->m_dBasePrice, 100);
    engine->pass();
    ASSERT_EQ(host.sent.size(), 1u);
    const tagBrokerOrder& s = host.sent[0];
    EXPECT_EQ(s.strRemark, "算法|1|1");
    EXPECT_DOUBLE_EQ(s.dVolume, 3);
    EXPECT_DOUBLE_EQ(s.dPrice, 100);  // the ask
    EXPECT_EQ(o->m_nState, kAlgoSending);
    EXPECT_EQ(o->m_strSliceID, "1000");

    EXPECT_TRUE(journal.entries.empty());  // written on the draining thread only
    engine->drainJournal();
    ASSERT_EQ(journal.entries.size(), 1u);
    const JournalEntry& e = journal.entries[0];
    EXPECT_EQ(e.tool, "算法交易");
    EXPECT_EQ(e.tag, "算法|1|1");
    EXPECT_EQ(e.order.strOrderID, "1000");
    EXPECT_EQ(e.result, 1);
    EXPECT_EQ(e.reason, "算法单第1笔：剩余10手，节奏常速");
    EXPECT_EQ(e.timeMs, clock.nowMs());
    ASSERT_FALSE(e.figures.empty());
    EXPECT_EQ(e.figures[2].name, "volume");
    EXPECT_DOUBLE_EQ(e.figures[2].value, 3);
}

TEST_F(EngineTest, AnOverdueSliceIsCancelledAndTheCancelRepeatedEveryFiveSeconds) {
    auto o = engine->add(parent(10), lots(3, 2), true);
    engine->pass();
    engine->onOrderChanged(report(0, kOrderQueued));
    EXPECT_EQ(o->m_nState, kAlgoQueued);
    after(1999);
    EXPECT_TRUE(host.callsStartingWith("DeleteOrder").empty());
    after(1);
    EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), 1u);
    EXPECT_EQ(o->m_nState, kAlgoCancelling);
    after(4999);
    EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), 1u);
    after(1);  // still queued at the host: asked again
    EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), 2u);
    after(5000);
    EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), 3u);
    engine->onOrderChanged(report(0, kOrderCancelled));
    EXPECT_EQ(o->m_nState, kAlgoNormal);
    EXPECT_EQ(host.sent.size(), 1u);
    after(0);  // the interval is long over: the next slice goes
    ASSERT_EQ(host.sent.size(), 2u);
    EXPECT_EQ(host.sent[1].strRemark, "算法|1|2");
    EXPECT_DOUBLE_EQ(host.sent[1].dVolume, 3);
}

TEST_F(EngineTest, ReportsOfOtherSlicesAndOrdersAreIgnored) {
    auto o = engine->add(parent(10), lots(3), true);
    engine->pass();
    tagBrokerOrder stranger = report(0, kOrderFilled, 3);
    stranger.strRemark = "舵手";
    EXPECT_EQ(engine->onOrderChanged(stranger), 0);
    EXPECT_EQ(engine->onOrderChanged(report(0, kOrderFilled, 3)), 1);
    EXPECT_DOUBLE_EQ(o->filled(), 3);
    EXPECT_EQ(engine->onOrderChanged(report(0, kOrderFilled, 3)), 0);  // duplicate
    EXPECT_DOUBLE_EQ(o->filled(), 3);
    // Through the manager's fan-out, as the host delivers it.
    after(5000);
    tagBrokerOrder r = report(1, kOrderFilled, 3);
    manager.dataChange(kEventOrderChanged, reinterpret_cast<std::uintptr_t>(&r));
    EXPECT_DOUBLE_EQ(o->filled(), 6);
}

TEST_F(EngineTest, CommandsOnTheList) {
    auto a = engine->add(parent(10), lots(3), false);
    auto b = engine->add(parent(4, kDirSell), lots(3), true);
    engine->pass();
    EXPECT_EQ(host.sent.size(), 1u);  // only the running one
    EXPECT_EQ(host.sent[0].nDirection, kDirSell);

    EXPECT_TRUE(engine->start(a->m_nSerial));
    EXPECT_FALSE(engine->start(a->m_nSerial));
    EXPECT_TRUE(engine->pause(b->m_nSerial));
    after(5000);
    EXPECT_EQ(host.sent.size(), 2u);
    EXPECT_EQ(host.sent[1].nDirection, kDirBuy);

    // Cancelling with a slice queued cancels the slice at once; the order stays listed.
    engine->onOrderChanged(report(1, kOrderQueued));
    EXPECT_TRUE(engine->cancel(a->m_nSerial));
    EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), 1u);
    EXPECT_EQ(a->m_nState, kAlgoCancelling);
    engine->onOrderChanged(report(1, kOrderCancelled));
    after(10000);
    EXPECT_EQ(host.sent.size(), 2u);
    EXPECT_EQ(engine->snapshot().size(), 2u);
    EXPECT_STREQ(a->runText(), "已撤销");

    // Pacing for an order: the next slice goes now, twice the size, 4 ticks through.
    EXPECT_TRUE(engine->start(b->m_nSerial));
    engine->onOrderChanged(report(0, kOrderFilled, 3));
    EXPECT_TRUE(engine->setPacing(b->m_nSerial, kPaceUrgent));
    after(0);
    ASSERT_EQ(host.sent.size(), 3u);
    EXPECT_DOUBLE_EQ(host.sent[2].dVolume, 1);  // cut to the one lot left
    EXPECT_DOUBLE_EQ(host.sent[2].dPrice, 95);  // bid 99 - 4

    EXPECT_TRUE(engine->remove(a->m_nSerial));
    EXPECT_EQ(engine->snapshot().size(), 1u);
    EXPECT_EQ(engine->orders().size(), 2u);  // kept for the session
}

TEST_F(EngineTest, ResetFromErrorAsksTheHostBeforeSendingAgain) {
    auto o = engine->add(parent(10), lots(3), true);
    engine->pass();
    engine->onOrderChanged(report(0, kOrderQueued));
    engine->onOrderChanged(report(0, kOrderCancelling));  // cancelled outside the engine
    ASSERT_EQ(o->m_nState, kAlgoError);
    EXPECT_EQ(o->m_strMessage, "算法单外部撤单或过期！,新状态=7");
    after(60000);
    EXPECT_EQ(host.sent.size(), 1u);  // stopped

    report(0, kOrderPartCancelled, 1);  // what the host now says of the slice
    EXPECT_TRUE(engine->reset(o->m_nSerial));
    after(0);  // looks the slice up, counts its lot
    EXPECT_DOUBLE_EQ(o->filled(), 1);
    EXPECT_EQ(host.sent.size(), 1u);
    after(0);
    ASSERT_EQ(host.sent.size(), 2u);
    EXPECT_EQ(host.sent[1].strRemark, "算法|1|2");
}

TEST_F(EngineTest, ARefusedSliceIsOverAndTheNextWaitsItsInterval) {
    auto o = engine->add(parent(10), lots(3), true);
    host.sendOrderResult = 0;
    host.sentReason = "资金不足";
    engine->pass();
    EXPECT_EQ(o->m_nState, kAlgoNormal);
    EXPECT_EQ(o->m_strMessage, "第1笔被拒绝：资金不足");
    host.sendOrderResult = 1;
    after(4999);
    EXPECT_EQ(host.sent.size(), 1u);
    after(1);
    EXPECT_EQ(host.sent.size(), 2u);
    EXPECT_DOUBLE_EQ(o->filled(), 0);
}

TEST_F(EngineTest, ReloadNeverDoublesASlice) {
    struct Case {
        const char* what;
        bool sentBeforeKill;  // the kill came after SendOrder (else between the two saves)
        int hostStatus;
        double hostFilled;
        double filledAfterReload;
        int stateAfterReload;
        const char* nextTag;
    } cases[] = {
        {"slice filled while down", true, kOrderFilled, 3, 3, kAlgoNormal, "算法|1|2"},
        {"slice still queued", true, kOrderQueued, 0, 0, kAlgoQueued, ""},
        {"slice never reached the host", false, 0, 0, 0, kAlgoNormal, "算法|1|2"},
    };
    for (const auto& c : cases) {
        TempDir dir("algo-reload");
        const auto file = dir / "algoOrders.dat";
        host.sent.clear();
        host.orders.clear();
        host.calls.clear();
        {
            CAlgoEngine first(manager, file);
            auto o = first.add(parent(10), lots(3), true);
            first.pass();
            ASSERT_EQ(host.sent.size(), 1u);
            if (!c.sentBeforeKill) {
                // Only the save written ahead of the send reached the disk.
                CAlgoOrder ahead = *o;
                ahead.m_nSliceNo = 1;
                ahead.m_strSliceID.clear();
                template_file_detail::writeFileBytes(file, algo_file::compose({&ahead}));
                host.orders.clear();
                host.sent.clear();
            } else {
                report(0, c.hostStatus, c.hostFilled);
            }
        }  // killed: nothing more is written
        CAlgoEngine second(manager, file);
        ASSERT_EQ(second.load(), 1) << c.what;
        auto o = second.find(1);
        ASSERT_TRUE(o);
        EXPECT_EQ(o->m_nRun, kRunPaused) << c.what;
        EXPECT_DOUBLE_EQ(o->filled(), c.filledAfterReload) << c.what;
        EXPECT_EQ(o->m_nState, c.stateAfterReload) << c.what;
        const std::size_t sent = host.sent.size();
        second.start(1);
        clock.advanceMs(100);
        second.pass();
        if (*c.nextTag) {
            ASSERT_EQ(host.sent.size(), sent + 1) << c.what;
            EXPECT_EQ(host.sent.back().strRemark, c.nextTag) << c.what;
        } else {
            EXPECT_EQ(host.sent.size(), sent) << c.what;  // the queued slice is waited for
        }
    }
}

TEST_F(EngineTest, NoSliceGoesOutThatCannotBeRecorded) {
    TempDir dir("algo-unsaved");
    const auto file = dir / "algoOrders.dat";
    std::filesystem::create_directories(file);  // a folder where the file should be
    CAlgoEngine blocked(manager, file);
    auto o = blocked.add(parent(10), lots(3), true);
    blocked.pass();
    EXPECT_TRUE(host.sent.empty());
    EXPECT_EQ(o->m_strMessage.rfind("无法保存算法单文件，暂不发送：", 0), 0u) << o->m_strMessage;
}

TEST(AlgoFile, RoundTripAndDamagedFiles) {
    tagAlgoSetting s;
    s.nPriceType = -3;
    s.nTimeSession = 1;
    CAlgoOrder a = order(s, kDirSell, 40, 12, kPaceUrgent);
    a.m_nSerial = 4;
    a.m_strSymbolText = "白银 XX";
    a.m_bSliceOpen = true;
    a.m_nState = kAlgoPartFilled;
    a.m_nSliceNo = 6;
    a.m_strSliceID = "88";
    a.m_dSliceVolume = 6;
    a.m_dSliceFilled = 2;
    a.m_tStartMs = localMs(9, 30);
    a.m_strMessage = "部分成交";
    CAlgoOrder b = order(tagAlgoSetting{});
    b.m_nSerial = 9;
    const std::string bytes = algo_file::compose({&a, &b});
    bool complete = false;
    const auto back = algo_file::parse(bytes, &complete);
    EXPECT_TRUE(complete);
    ASSERT_EQ(back.size(), 2u);
    EXPECT_EQ(algo_file::compose({&back[0], &back[1]}), bytes);
    EXPECT_EQ(back[0].m_strSymbolText, "白银 XX");
    EXPECT_EQ(back[0].m_setting.nPriceType, -3);
    EXPECT_EQ(back[0].m_tStartMs, a.m_tStartMs);

    struct Case {
        const char* what;
        std::string bytes;
        std::size_t orders;
    } cases[] = {
        {"empty", "", 0},
        {"foreign magic", std::string("\x08QXAT_1.0", 9) + bytes.substr(9), 0},
        {"cut in the second record", bytes.substr(0, bytes.size() - 10), 1},
        {"count beyond the records", bytes.substr(0, 9) + std::string("\x05\0\0\0", 4) +
                                         bytes.substr(13), 2},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(algo_file::parse(c.bytes, &complete).size(), c.orders) << c.what;
        EXPECT_FALSE(complete && c.orders != 2) << c.what;
    }
    // A record that breaks a rule ends the list: more filled than the total.
    CAlgoOrder bad = b;
    bad.m_dDoneFilled = 11;
    EXPECT_EQ(algo_file::parse(algo_file::compose({&a, &bad})).size(), 1u);
}

TEST(AlgoSettingsFiles, DefaultSectionAndNamedSettings) {
    TempDir dir("algo-settings");
    const auto profile = dir / "Profile.ini";
    writeFileBytes(profile, "[AlgoDefault]\nnLotSingle=4\nnPriceType=-2\n[Helmsman]\nbAutoKP=1\n");
    tagAlgoSetting s = loadAlgoDefault(profile);
    EXPECT_EQ(s.nLotSingle, 4);
    EXPECT_EQ(s.nPriceType, -2);
    EXPECT_EQ(s.nBaseLine, 10);  // absent: the default
    EXPECT_EQ(s.nTimeTotal, 60);
    s.nTimeInterval = 7;
    ASSERT_TRUE(saveAlgoDefault(profile, s));
    const std::string text = readFileBytes(profile);
    EXPECT_NE(text.find("nTimeInterval=7"), std::string::npos);
    EXPECT_NE(text.find("[Helmsman]\nbAutoKP=1"), std::string::npos);  // other sections kept
    EXPECT_EQ(loadAlgoDefault(profile).nTimeInterval, 7);

    CTemplateStore<AlgoSetTemplate> store(std::filesystem::path(dir.string()), template_files::kAlgoSet);
    ASSERT_TRUE(store.save({{"快速", s}, {"慢速", tagAlgoSetting{}}}));
    const std::string bytes = readFileBytes(dir / "algoset.dat");
    EXPECT_EQ(bytes.substr(0, 9), std::string("\x08QXAT_1.0", 9));
    EXPECT_EQ(bytes.size(), 9u + 4 + (1 + 4 + 64) + (1 + 4 + 64));
    const auto list = store.load();
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].strName, "快速");
    EXPECT_EQ(list[0].setting.nTimeInterval, 7);
    EXPECT_EQ(list[1].setting.nLotSingle, 1);
}
