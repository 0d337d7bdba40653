#include "robots/ui/robot_launcher_window.h"

#include <QPushButton>
#include <QTreeWidget>

#include "app/helmsman_manage.h"
#include "support/qt_app.h"
#include "support/scripted.h"

namespace {

TEST(RobotLauncherWindow, RobotsNotBuiltAreListedGreyedAndCannotBeOpened) {
    testApp();
    CHelmsmanManage manager;
    RobotLauncherWindow w(manager);
    w.show();
    ASSERT_EQ(w.list()->topLevelItemCount(), 2);
    for (int i = 0; i < 2; ++i) {
        QTreeWidgetItem* item = w.list()->topLevelItem(i);
        EXPECT_FALSE(item->flags() & Qt::ItemIsEnabled);
        EXPECT_TRUE(item->text(0).endsWith(QString::fromUtf8("（尚未提供）")));
        EXPECT_FALSE(item->text(1).isEmpty());
        w.list()->setCurrentItem(item);
        EXPECT_FALSE(w.openButton()->isEnabled());
        EXPECT_EQ(w.openSelected(), 0u);
    }
    EXPECT_TRUE(manager.registeredWindows().empty());
    saveScreenshot(&w, "robot_launcher.png");
}

TEST(RobotLauncherWindow, OpenButtonOpensThePickedRobot) {
    testApp();
    CHelmsmanManage manager;
    RecordingTarget robot;
    RobotLauncherWindow w(
        manager, nullptr,
        {{"A", "opens", [&](CHelmsmanManage& m) { return m.createHandle(&robot); }},
         {"B", "not yet", {}}});
    w.list()->setCurrentItem(w.list()->topLevelItem(0));
    ASSERT_TRUE(w.openButton()->isEnabled());
    w.openButton()->click();
    ASSERT_EQ(manager.registeredWindows().size(), 1u);
    EXPECT_EQ(manager.target(manager.registeredWindows()[0]), &robot);
}

}  // namespace
