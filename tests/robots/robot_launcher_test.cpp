#include "robots/robot_launcher.h"

#include <gtest/gtest.h>

#include "app/helmsman_manage.h"
#include "support/scripted.h"

namespace {

TEST(RobotLauncher, OpeningRegistersTheRobotWindowAndNothingElse) {
    CHelmsmanManage manager;
    RecordingTarget robot;
    int built = 0;
    std::vector<RobotEntry> robots = {
        {"A", "opens", [&](CHelmsmanManage& m) { return ++built, m.createHandle(&robot); }},
        {"B", "not built yet", {}},
        {"C", "fails to build", [&](CHelmsmanManage&) { return ++built, WndHandle{0}; }},
    };
    CRobotLauncher launcher(manager, robots);

    const WndHandle h = launcher.open(0);
    ASSERT_NE(h, 0u);
    EXPECT_EQ(manager.registeredWindows(), std::vector<WndHandle>{h});
    EXPECT_EQ(launcher.open(1), 0u);
    EXPECT_EQ(launcher.open(2), 0u);
    EXPECT_EQ(launcher.open(3), 0u);
    EXPECT_EQ(built, 2);
    EXPECT_EQ(manager.registeredWindows().size(), 1u);

    // Registered, the robot hears the host's order events.
    manager.dataChange(kEventOrderChanged, 0);
    EXPECT_EQ(robot.received.size(), 1u);
}

}  // namespace
