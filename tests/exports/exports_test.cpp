// The entry points of the module built without a user interface: they initialise, carry the
// host's events and orders, and answer 0 for every window. Run on Linux and under Wine.
#include <gtest/gtest.h>

#include <string>

#include "app/exports.h"
#include "app/helmsman_manage.h"
#include "host/utf8_path.h"
#include "support/fake_host.h"
#include "support/temp_dir.h"

namespace {

// "舵手" as the host spells it: its ANSI code page on Windows (936 under the test run),
// UTF-8 elsewhere.
#ifdef _WIN32
const char* const kHostUserName = "\xB6\xE6\xCA\xD6";
#else
const char* const kHostUserName = "舵手";
#endif

struct Logger : IWndTarget {
    std::vector<std::uint32_t> messages;
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t, std::uintptr_t) override {
        messages.push_back(msg);
        return 1;
    }
};

class ExportsTest : public testing::Test {
protected:
    void SetUp() override {
        writeFileBytes(m_root / "user" / u8"舵手" / "Profile.ini",
                       "[Helmsman]\r\nbUseAlgoTrading=1\r\n");
        InitHelmsman(7, &host, m_root.string().c_str(), kHostUserName, 42);
    }

    TempDir m_root{"helmsman_exports"};
    FakeHost host;
    CHelmsmanManage& manager = CHelmsmanManage::instance();
};

TEST_F(ExportsTest, InitOpensTheUsersFolderByItsChineseName) {
    EXPECT_EQ(manager.userName(), "舵手");
    EXPECT_EQ(manager.settings().bUseAlgoTrading, 1);  // read from the folder named 舵手
}

TEST_F(ExportsTest, WindowExportsAnswerZeroAndTheRestWork) {
    for (const char* name : {"OpenHelmsman", "OpenLocalTrigger", "OpenAlgoSet", "OpenFastExit"})
        EXPECT_EQ(HelmsmanToolAvailable(name), 0) << name;
    for (const char* name : {"InitHelmsman", "HelmsmanDataChange", "ShowConfirmOrder"})
        EXPECT_EQ(HelmsmanToolAvailable(name), 1) << name;
    EXPECT_EQ(HelmsmanToolAvailable(nullptr), 0);
    EXPECT_EQ(OpenHelmsman(nullptr), 0);
    EXPECT_EQ(OpenLocalTrigger(), 0);
    EXPECT_EQ(OpenAlgoSet(nullptr, 0), 0);
}

TEST_F(ExportsTest, EventsReachRegisteredWindowsAndOrdersReachTheHost) {
    Logger window;
    const WndHandle h = manager.createHandle(&window);
    manager.registerWindow(h);
    tagBrokerOrder changed;
    changed.strRemark = "x";
    HelmsmanDataChange(0x10002, reinterpret_cast<std::uintptr_t>(&changed));
    HelmsmanLogonStateChange(1, 0);
    EXPECT_FALSE(window.messages.empty());
    manager.releaseHandle(h);

    tagBrokerOrder order;
    order.strAccountID = "880001";
    order.strCode = "IF2101";
    order.nDirection = kDirBuy;
    order.dVolume = 1;
    order.dPrice = 5000;
    EXPECT_EQ(ShowConfirmOrder(&order, 0, "舵手", nullptr), 1);
    ASSERT_EQ(host.sent.size(), 1u);
    EXPECT_EQ(host.sent[0].strRemark, "舵手");
    EXPECT_EQ(ShowConfirmOrder(nullptr, 0, "舵手", nullptr), 0);
}

}  // namespace
