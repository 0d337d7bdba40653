#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#ifdef _WIN32
#include <windows.h>
#endif

#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/scripted.h"
#include "host/utf8_path.h"
#include "support/temp_dir.h"

namespace {

class ManagerTest : public testing::Test {
protected:
    void SetUp() override {
        manager.setUi(&ui);
        manager.init(7, &host, m_root.string(), "trader", 42);
    }

    static tagBrokerOrder order(double volume, std::string code = "IF2101") {
        tagBrokerOrder o;
        o.strAccountID = "880001";
        o.strCode = std::move(code);
        o.nDirection = kDirBuy;
        o.dVolume = volume;
        o.dPrice = 5000;
        return o;
    }
    static std::string codes(const std::vector<tagBrokerOrder>& orders) {
        std::string out;
        for (const auto& o : orders) out += o.strCode + " ";
        return out;
    }

    TempDir m_root{"helmsman_mgr"};
    FakeHost host;
    ScriptedUi ui;
    CHelmsmanManage manager;
};

TEST_F(ManagerTest, InitFormsTheUserDirectoryAndStartsFromDefaults) {
    EXPECT_EQ(manager.profilePath(), m_root / "user" / "trader" / "Profile.ini");
    EXPECT_EQ(manager.settings(), HelmsmanSettings{});  // no file yet
}

// A user named in Chinese gets a folder of that name on both systems (a wide-character path
// on Windows): the settings land in it and nowhere else.
TEST_F(ManagerTest, AChineseUserNameOpensTheFolderOfThatName) {
    CHelmsmanManage chinese;
    chinese.init(7, &host, m_root.string(), "舵手", 42);
    HelmsmanSettings s;
    s.bUseAlgoTrading = 1;
    ASSERT_TRUE(chinese.saveSettings(s).ok);
    std::vector<std::string> users;
    for (const auto& entry : std::filesystem::directory_iterator(m_root / "user"))
        users.push_back(pathUtf8(entry.path().filename()));
    EXPECT_EQ(users, std::vector<std::string>{"舵手"});
    EXPECT_TRUE(std::filesystem::exists(m_root / "user" / u8"舵手" / "Profile.ini"));
    CHelmsmanManage again;
    again.init(7, &host, m_root.string(), "舵手", 42);
    EXPECT_EQ(again.settings().bUseAlgoTrading, 1);
}

TEST(HostText, TheHostsFolderNamesBecomeUtf8Once) {
#ifdef _WIN32
    // A Chinese Windows hands its names over in code page 936 (the Windows run sets it).
    ASSERT_EQ(GetACP(), 936u) << "run the Windows tests with a Chinese ANSI code page";
    EXPECT_EQ(hostTextToUtf8("\xB6\xE6\xCA\xD6"), "舵手");
#else
    EXPECT_EQ(hostTextToUtf8("舵手"), "舵手");
#endif
    EXPECT_EQ(hostTextToUtf8("trader"), "trader");
}

TEST_F(ManagerTest, EventsReachRegisteredWindowsInOrderAsMessage2070) {
    std::vector<std::string> log;
    RecordingTarget a, b, unregistered;
    for (auto [t, name] : {std::pair{&a, "a"}, {&b, "b"}, {&unregistered, "u"}}) {
        t->name = name;
        t->sharedLog = &log;
    }
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

    HelmsmanSettings s = manager.settings();
    s.bShowFilledOrder = 1;
    manager.saveSettings(s);
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

TEST_F(ManagerTest, HandlesAndRegistration) {
    for (WndHandle h : {5, 6, 5, 7}) manager.registerWindow(h);
    manager.unregisterWindow(5);   // only the first equal handle goes
    manager.unregisterWindow(99);  // not there: nothing changes
    EXPECT_EQ(manager.registeredWindows(), (std::vector<WndHandle>{6, 5, 7}));
    for (WndHandle h : {6, 5, 7}) manager.unregisterWindow(h);

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
    struct {
        bool confirm, accept;
        const char* remark;
        int result;
        std::size_t sent, confirms;
        const char* carried;  // an empty remark becomes the caller's name
    } cases[] = {
        {false, true, "", 1, 1, 0, "舵手"},
        {false, true, "h|1|te|2", 1, 1, 0, "h|1|te|2"},
        {true, true, "", 1, 1, 1, "舵手"},
        {true, false, "", 0, 0, 1, "舵手"},  // cancelled: nothing sent
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.confirm << c.accept << c.remark);
        host.sent.clear();
        ui.confirmed.clear();
        ui.acceptConfirm = c.accept;
        tagBrokerOrder o = order(1);
        o.strRemark = c.remark;
        EXPECT_EQ(manager.submitOrder(o, c.confirm, "舵手", nullptr), c.result);
        EXPECT_EQ(host.sent.size(), c.sent);
        EXPECT_EQ(ui.confirmed.size(), c.confirms);
        EXPECT_EQ(o.strRemark, c.carried);
        if (!ui.confirmed.empty()) EXPECT_EQ(ui.confirmed[0].strRemark, c.carried);
        if (!host.sent.empty()) EXPECT_EQ(host.sent[0].strRemark, c.carried);
    }
    // A direct submission answers with the host's own result.
    host.sendOrderResult = 0;
    tagBrokerOrder o = order(1);
    EXPECT_EQ(manager.submitOrder(o, false, "x", nullptr), 0);
}

TEST_F(ManagerTest, AlgoThresholdRoutesLargeOrdersOnlyWhenSwitchedOn) {
    tagAlgoSetting algo;
    algo.nBaseLine = 10;
    const std::tuple<bool, double, const tagAlgoSetting*, bool> cases[] = {
        {true, 9.99, &algo, false},
        {true, 10, &algo, true},
        {true, 500, nullptr, false},  // no block: never
        {false, 500, &algo, false},   // a block alone is a threshold, not a switch
    };
    for (auto [on, volume, block, toAlgo] : cases) {
        manager.setAlgoTrading(on);
        host.sent.clear();
        ui.toAlgo.clear();
        tagBrokerOrder o = order(volume);
        manager.submitOrder(o, false, "舵手", block);
        EXPECT_EQ(ui.toAlgo.size(), toAlgo ? 1u : 0u) << on << " " << volume;
        EXPECT_EQ(host.sent.size(), toAlgo ? 0u : 1u) << on << " " << volume;
        std::vector<tagBrokerOrder> batch{order(volume)};
        ui.toAlgo.clear();
        manager.sendBatch(batch, block);
        EXPECT_EQ(ui.toAlgo.size(), toAlgo ? 1u : 0u) << "batch " << on << " " << volume;
    }
    manager.setAlgoTrading(true);
    // No algo centre to take it: nothing reaches the exchange either.
    ui.algoCentreAvailable = false;
    host.sent.clear();
    tagBrokerOrder o = order(20);
    EXPECT_EQ(manager.submitOrder(o, false, "舵手", &algo), 0);
    EXPECT_TRUE(host.sent.empty());
}

TEST_F(ManagerTest, BatchKeepsArrayOrderAndSplitsByThreshold) {
    manager.setAlgoTrading(true);
    tagAlgoSetting algo;
    algo.nBaseLine = 5;
    std::vector<tagBrokerOrder> batch;
    for (double v : {1.0, 7.0, 2.0, 5.0, 3.0})
        batch.push_back(order(v, "C" + std::to_string(static_cast<int>(v))));
    batch[2].strRemark = "own";
    EXPECT_EQ(manager.submitBatch(batch, false, "批量", &algo), 1);
    EXPECT_EQ(codes(host.sent), "C1 C2 C3 ");
    EXPECT_EQ(host.sent.at(0).strRemark, "批量");
    EXPECT_EQ(host.sent.at(1).strRemark, "own");
    // The large ones go to the centre in one hand-over, in array order.
    EXPECT_EQ(ui.log.back(), "handToAlgoCentre 2");
    EXPECT_EQ(codes(ui.toAlgo), "C7 C5 ");
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
    HelmsmanSettings s = manager.settings();
    EXPECT_EQ(s.bAutoKP, 1);
    s.bAutoKP = 0;
    s.nMinAutoKPPos = 5;
    s.dDefaultVolume = 3;
    manager.saveSettings(s);
    for (int reload : {0, 1}) {
        if (reload) manager.loadSettings();
        EXPECT_EQ(manager.settings().bAutoKP, 1) << reload;
        EXPECT_EQ(manager.settings().nMinAutoKPPos, 0) << reload;
        EXPECT_EQ(manager.settings().dDefaultVolume, 3) << reload;
    }
}

}  // namespace
