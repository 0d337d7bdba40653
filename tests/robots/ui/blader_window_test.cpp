#include "robots/ui/blader_window.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>

#include "app/helmsman_manage.h"
#include "robots/robot_strings.h"
#include "robots/ui/robot_launcher_window.h"
#include "sim/sim_test_util.h"
#include "support/qt_app.h"
#include "support/manager_sink.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

namespace {

using simtest::kIF;

TEST(BladerWindow, OpensFromTheLauncherAndRunsOnTheExchange) {
    testApp();
    TempDir root;
    ManualClock clock(simtest::localMs(10, 0, 0));
    SimExchange sim(clock, simtest::quietOptions());
    ScriptedPrompter prompter;
    CHelmsmanManage manager;
    manager.setClock(&clock);
    manager.setPrompter(&prompter);
    manager.init(1, &sim, root.string(), "demo", 0);
    ManagerSink sink(manager);
    sim.setEventSink(&sink);
    sim.applyQuote(simtest::quote(kIF, 5229.8, 10, 5230.2, 10, 5230.0));
    sim.deliverPending();

    BladerWindow* window = nullptr;
    CRobotLauncher::attachFactory(robot_text::kBladerName, [&](CHelmsmanManage& m) {
        window = new BladerWindow(m);
        window->setAttribute(Qt::WA_DeleteOnClose);
        return window->core().handle();
    });
    RobotLauncherWindow launcher(manager);
    QTreeWidgetItem* item = launcher.list()->topLevelItem(1);
    ASSERT_TRUE(item->flags() & Qt::ItemIsEnabled);
    launcher.list()->setCurrentItem(item);
    launcher.openButton()->click();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(manager.registeredWindows(), std::vector<WndHandle>{window->core().handle()});
    EXPECT_EQ(window->windowTitle(), QString::fromUtf8("顺势锤[时间:N/A]"));

    // The instrument chosen in the window reaches the core; the settings lock while running.
    auto* exchange = window->findChild<QComboBox*>("exchange");
    exchange->setCurrentIndex(exchange->findData(3));
    window->findChild<QComboBox*>("code")->setCurrentText("IF2101");
    window->findChild<QSpinBox*>("maxPos")->setValue(3);
    ASSERT_TRUE(window->core().contractKnown());
    window->show();
    window->startButton()->click();
    ASSERT_TRUE(window->core().running());
    EXPECT_FALSE(exchange->isEnabled());
    EXPECT_TRUE(window->pauseButton()->isEnabled());

    const double path[] = {5229.8, 5229.6, 5229.2, 5228.8, 5228.6, 5228.4, 5228.8, 5229.0};
    for (double last : path) {
        clock.advanceMs(500);
        sim.applyQuote(simtest::quote(kIF, last - 0.2, 10, last + 0.2, 10, last));
        sim.deliverPending();
        window->core().timerStep();
        sim.deliverPending();
    }
    window->refresh();
    EXPECT_EQ(window->core().held(), 2);
    EXPECT_EQ(window->windowTitle(), QString::fromUtf8("顺势锤[时间:4(秒)]"));
    EXPECT_EQ(window->closeStatus()->text().toStdString(), window->core().closeStatus());
    EXPECT_EQ(window->totals()->text(), QString::fromUtf8("合计:2(0)"));
    EXPECT_EQ(window->positionBox()->value(), 2);
    saveScreenshot(window, "blader.png");

    window->close();  // running: asks, and stays on No
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(prompter.lastText(), "关闭窗体将会终止顺势锤的运行，您确认要退出？");
    prompter.answers = {true};
    window->close();  // its resting orders go with it
    sim.deliverPending();
    std::vector<tagBrokerOrder> working;
    sim.GetOpenOrders(working, "880001", "9999", kIF);
    EXPECT_TRUE(working.empty());
    CRobotLauncher::attachFactory(robot_text::kBladerName, {});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(manager.registeredWindows().empty());
}

}  // namespace
