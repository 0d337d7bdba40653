#include <gtest/gtest.h>

#include <filesystem>

#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

namespace {

class ManagerTest : public testing::Test {
protected:
    void SetUp() override {
        manager.setUi(&ui);
        manager.setPrompter(&prompter);
        manager.init(7, &host, m_root.string(), "trader", 42);
    }

    void showFills(bool on) {
        HelmsmanSettings s = manager.settings();
        s.bShowFilledOrder = on;
        manager.saveSettings(s);
    }

    static tagBrokerOrder order(double volume, std::string remark = "") {
        tagBrokerOrder o;
        o.strAccountID = "880001";
        o.strCode = "IF2101";
        o.nDirection = kDirBuy;
        o.dVolume = volume;
        o.dPrice = 5000;
        o.strRemark = std::move(remark);
        return o;
    }

    TempDir m_root{"helmsman_mgr"};
    FakeHost host;
    ScriptedUi ui;
    ScriptedPrompter prompter;
    CHelmsmanManage manager;
};

TEST_F(ManagerTest, InitKeepsWhatTheHostHandedOver) {
    EXPECT_EQ(manager.facade(), &host);
    EXPECT_EQ(manager.parentWnd(), 7u);
    EXPECT_EQ(manager.hostValue(), 42u);
    EXPECT_EQ(manager.rootDir(), m_root.string());
    EXPECT_EQ(manager.userName(), "trader");
    EXPECT_EQ(std::filesystem::path(manager.userDir()), m_root / "user" / "trader");
    EXPECT_EQ(manager.profilePath(), m_root / "user" / "trader" / "Profile.ini");
    EXPECT_EQ(manager.settings(), HelmsmanSettings{});  // no file yet: every default
}

TEST_F(ManagerTest, RegistrationKeepsOrderAndDuplicates) {
    manager.registerWindow(5);
    manager.registerWindow(6);
    manager.registerWindow(5);
    manager.registerWindow(7);
    EXPECT_EQ(manager.registeredWindows(), (std::vector<WndHandle>{5, 6, 5, 7}));
    manager.unregisterWindow(5);  // only the first equal handle goes
    EXPECT_EQ(manager.registeredWindows(), (std::vector<WndHandle>{6, 5, 7}));
    manager.unregisterWindow(99);  // not there: nothing changes
    EXPECT_EQ(manager.registeredWindows(), (std::vector<WndHandle>{6, 5, 7}));
}

TEST_F(ManagerTest, EventsReachRegisteredWindowsInOrderAsMessage2070) {
    std::vector<std::string> log;
    RecordingTarget a, b, unregistered;
    a.name = "a";
    b.name = "b";
    unregistered.name = "u";
    a.sharedLog = b.sharedLog = unregistered.sharedLog = &log;
    WndHandle ha = manager.createHandle(&a), hb = manager.createHandle(&b);
    manager.createHandle(&unregistered);
    manager.registerWindow(hb);
    manager.registerWindow(ha);

    tagBrokerOrder changed = order(1);
    EXPECT_EQ(manager.dataChange(0x10002, reinterpret_cast<std::uintptr_t>(&changed)), 0);
    EXPECT_EQ(manager.dataChange(1000, 0), 0);
    EXPECT_EQ(log, (std::vector<std::string>{"b:2070", "a:2070", "b:2070", "a:2070"}));
    ASSERT_EQ(a.received.size(), 2u);
    EXPECT_EQ(a.received[0].w, 0x10002u);  // the full code, not just its low 16 bits
    EXPECT_EQ(a.received[0].l, reinterpret_cast<std::uintptr_t>(&changed));

    log.clear();
    EXPECT_EQ(manager.logonStateChange(3, 9), 0);
    EXPECT_EQ(log, (std::vector<std::string>{"b:2069", "a:2069"}));
    EXPECT_EQ(a.received.back().w, 3u);
    EXPECT_EQ(a.received.back().l, 9u);
}

TEST_F(ManagerTest, FillsGoOnlyToTheFillNotice) {
    RecordingTarget w;
    manager.registerWindow(manager.createHandle(&w));
    tagBargainOrder fill;
    fill.strCode = "IF2101";
    fill.strContractNo = "1";
    const auto data = reinterpret_cast<std::uintptr_t>(&fill);

    // Off: no window hears it, no notice, nothing kept.
    for (std::uint32_t code : {4u, 0x20004u}) manager.dataChange(code, data);
    EXPECT_TRUE(w.received.empty());
    EXPECT_TRUE(ui.noticeShows.empty());
    EXPECT_TRUE(manager.noticeFills().empty());

    showFills(true);
    manager.dataChange(4, 0);  // null data shows nothing
    EXPECT_TRUE(ui.noticeShows.empty());
    for (const char* no : {"1", "2", "3"}) {
        fill.strContractNo = no;
        manager.dataChange(0x30004, data);
    }
    EXPECT_TRUE(w.received.empty());
    ASSERT_EQ(ui.noticeShows.size(), 3u);
    ASSERT_EQ(ui.noticeShows.back().size(), 3u);
    EXPECT_EQ(ui.noticeShows.back()[0].strContractNo, "1");
    EXPECT_EQ(ui.noticeShows.back()[2].strContractNo, "3");
}

TEST_F(ManagerTest, AHandlerThatUnregistersItselfDoesNotDisturbTheOthers) {
    struct SelfRemoving : RecordingTarget {
        CHelmsmanManage* m = nullptr;
        WndHandle self = 0;
        std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t w, std::uintptr_t l) override {
            m->unregisterWindow(self);
            m->releaseHandle(self);
            return RecordingTarget::onMessage(msg, w, l);
        }
    } robot;
    RecordingTarget after;
    robot.m = &manager;
    robot.self = manager.createHandle(&robot);
    manager.registerWindow(robot.self);
    manager.registerWindow(manager.createHandle(&after));
    manager.dataChange(2, 0);
    manager.dataChange(2, 0);
    EXPECT_EQ(robot.received.size(), 1u);
    EXPECT_EQ(after.received.size(), 2u);
}

TEST_F(ManagerTest, MessagesToHandles) {
    RecordingTarget t;
    t.result = 17;
    WndHandle h = manager.createHandle(&t, 25001);
    manager.createHandle(&t, 25013);
    EXPECT_NE(h, 0u);
    EXPECT_EQ(manager.sendMessage(h, 2065, 1, 0), 17);
    EXPECT_EQ(manager.handlesOf(25001), std::vector<WndHandle>{h});
    EXPECT_EQ(manager.handlesOf(0).size(), 2u);
    manager.registerWindow(h);
    manager.releaseHandle(h);
    EXPECT_EQ(manager.sendMessage(h, 2065, 1, 0), 0);  // gone: nobody answers
    EXPECT_TRUE(manager.registeredWindows().empty());
}

TEST_F(ManagerTest, SingleSubmission) {
    struct Case {
        const char* name;
        bool confirm;
        bool accept;
        std::string remark;
        int expectResult;
        size_t expectSent;
        size_t expectConfirms;
        std::string expectRemark;
    } cases[] = {
        {"direct", false, true, "", 1, 1, 0, "舵手"},
        {"direct keeps remark", false, true, "h|1|te|2", 1, 1, 0, "h|1|te|2"},
        {"confirmed", true, true, "", 1, 1, 1, "舵手"},
        {"cancelled", true, false, "", 0, 0, 1, "舵手"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        host.sent.clear();
        ui.confirmed.clear();
        ui.acceptConfirm = c.accept;
        tagBrokerOrder o = order(1, c.remark);
        EXPECT_EQ(manager.submitOrder(o, c.confirm, "舵手", nullptr), c.expectResult);
        EXPECT_EQ(host.sent.size(), c.expectSent);
        EXPECT_EQ(ui.confirmed.size(), c.expectConfirms);
        EXPECT_EQ(o.strRemark, c.expectRemark);
        if (!ui.confirmed.empty()) EXPECT_EQ(ui.confirmed[0].strRemark, c.expectRemark);
        if (!host.sent.empty()) EXPECT_EQ(host.sent[0].strRemark, c.expectRemark);
    }
    // A direct submission answers with the host's own result.
    host.sendOrderResult = 0;
    tagBrokerOrder o = order(1);
    EXPECT_EQ(manager.submitOrder(o, false, "x", nullptr), 0);
}

TEST_F(ManagerTest, AlgoThresholdRoutesLargeOrders) {
    tagAlgoSetting algo;
    algo.nBaseLine = 10;
    struct {
        double volume;
        bool toAlgo;
    } cases[] = {{9, false}, {9.99, false}, {10, true}, {11, true}};
    for (auto c : cases) {
        host.sent.clear();
        ui.toAlgo.clear();
        tagBrokerOrder o = order(c.volume);
        manager.submitOrder(o, false, "舵手", &algo);
        EXPECT_EQ(ui.toAlgo.size(), c.toAlgo ? 1u : 0u) << c.volume;
        EXPECT_EQ(host.sent.size(), c.toAlgo ? 0u : 1u) << c.volume;
    }
    // Without a block nothing is routed, however large.
    host.sent.clear();
    ui.toAlgo.clear();
    tagBrokerOrder big = order(500);
    manager.submitOrder(big, false, "舵手", nullptr);
    EXPECT_EQ(host.sent.size(), 1u);
    EXPECT_TRUE(ui.toAlgo.empty());
    // No algo centre to take it: nothing reaches the exchange either.
    ui.algoCentreAvailable = false;
    host.sent.clear();
    tagBrokerOrder o = order(20);
    EXPECT_EQ(manager.submitOrder(o, false, "舵手", &algo), 0);
    EXPECT_TRUE(host.sent.empty());
}

TEST_F(ManagerTest, BatchKeepsArrayOrderAndSplitsByThreshold) {
    tagAlgoSetting algo;
    algo.nBaseLine = 5;
    std::vector<tagBrokerOrder> batch;
    for (double v : {1.0, 7.0, 2.0, 5.0, 3.0}) {
        batch.push_back(order(v));
        batch.back().strCode = "C" + std::to_string(static_cast<int>(v));
    }
    batch[2].strRemark = "own";
    EXPECT_EQ(manager.submitBatch(batch, false, "批量", &algo), 1);
    ASSERT_EQ(host.sent.size(), 3u);
    EXPECT_EQ(host.sent[0].strCode, "C1");
    EXPECT_EQ(host.sent[1].strCode, "C2");
    EXPECT_EQ(host.sent[2].strCode, "C3");
    EXPECT_EQ(host.sent[1].strRemark, "own");
    EXPECT_EQ(host.sent[0].strRemark, "批量");
    // The large ones go to the centre in one hand-over, in array order.
    EXPECT_EQ(ui.log.back(), "handToAlgoCentre 2");
    ASSERT_EQ(ui.toAlgo.size(), 2u);
    EXPECT_EQ(ui.toAlgo[0].strCode, "C7");
    EXPECT_EQ(ui.toAlgo[1].strCode, "C5");
}

TEST_F(ManagerTest, ConfirmedBatchSendsTheEditedOrders) {
    std::vector<tagBrokerOrder> batch = {order(1), order(2)};
    ui.editBatch = [](std::vector<tagBrokerOrder>& orders) { orders[1].dVolume = 4; };
    EXPECT_EQ(manager.submitBatch(batch, true, "批量", nullptr), 1);
    ASSERT_EQ(host.sent.size(), 2u);
    EXPECT_EQ(host.sent[1].dVolume, 4);

    host.sent.clear();
    ui.acceptConfirm = false;
    EXPECT_EQ(manager.submitBatch(batch, true, "批量", nullptr), 0);
    EXPECT_TRUE(host.sent.empty());
}

TEST_F(ManagerTest, SaveKeepsTheNeverWrittenKeysInMemory) {
    writeFileBytes(manager.profilePath(), "[Helmsman]\r\nbAutoKP=1\r\nnMinAutoKPPos=0\r\n");
    manager.loadSettings();
    EXPECT_EQ(manager.settings().bAutoKP, 1);
    HelmsmanSettings s = manager.settings();
    s.bAutoKP = 0;
    s.nMinAutoKPPos = 5;
    s.dDefaultVolume = 3;
    manager.saveSettings(s);
    EXPECT_EQ(manager.settings().bAutoKP, 1);
    EXPECT_EQ(manager.settings().nMinAutoKPPos, 0);
    EXPECT_EQ(manager.settings().dDefaultVolume, 3);
    manager.loadSettings();
    EXPECT_EQ(manager.settings().dDefaultVolume, 3);
    EXPECT_EQ(manager.settings().bAutoKP, 1);
}

TEST(ManagerMap, KeyFormat) {
    EXPECT_EQ(CHelmsmanManage::mapKey(3, "IF2101"), "3|IF2101");
    EXPECT_EQ(CHelmsmanManage::mapKey(-1, ""), "-1|");
}

}  // namespace
