// The grid spread window, offscreen, on the simulated exchange: the controls reach the robot,
// start makes them read-only, the status texts follow the robot, and closing while running
// asks first. With HELMSMAN_SCREENSHOT_DIR set, the running window is saved as a PNG.
#include "robots/ui/grids_spread_window.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include "app/helmsman_manage.h"
#include "sim/sim_test_util.h"
#include "support/qt_app.h"
#include "support/manager_sink.h"
#include "support/scripted.h"

namespace {

TEST(GridsSpreadWindow, RunsARobotFromItsControls) {
    testApp();
    ManualClock clock{simtest::localMs(10, 0, 0)};
    SimOptions options;
    options.yesterdayPositions = false;
    SimExchange sim(clock, options);
    ScriptedPrompter prompter;
    CHelmsmanManage manager;
    ManagerSink sink(manager);
    sim.setEventSink(&sink);
    manager.setClock(&clock);
    manager.setPrompter(&prompter);
    manager.init(1, &sim, "/nonexistent-helmsman-grid-window", "demo", 0);
    for (int i = 0; i < 4; ++i) sim.step();
    sim.deliverPending();

    auto* w = new GridsSpreadWindow(manager);
    manager.registerWindow(w->handle());
    EXPECT_EQ(w->windowTitle(), QString::fromUtf8("价差格[公式:1A-1B]"));
    GridsSpreadSettings s = w->collect();
    EXPECT_EQ(s.strAccountID1, "880001");
    EXPECT_EQ(s.strAccountID2, "880002");
    s.wExchangeID1 = s.wExchangeID2 = 3;
    s.szSymbolCode1 = "IF2101";
    s.szSymbolCode2 = "IH2101";
    s.nMaxLots = 3;
    IModuleFutureTrader::ITickEx a, b;
    sim.GetMarketQuote({3, "IF2101"}, a);
    sim.GetMarketQuote({3, "IH2101"}, b);
    s.dFirstGrid = a.dLast - b.dLast;
    s.dGridInterval = 0.6;
    s.dWinGrid = 0.4;
    s.nFilterLength = 20;
    w->display(s);
    EXPECT_EQ(w->collect().szSymbolCode2, "IH2101");

    w->startButton()->click();
    ASSERT_TRUE(w->core().running()) << prompter.lastText();
    EXPECT_EQ(w->startButton()->text(), QString::fromUtf8("暂停"));
    EXPECT_FALSE(w->findChild<QComboBox*>()->isEnabled());
    // Until entries have closed, and then to a moment with an entry open and a B resting.
    for (int i = 0; i < 2000; ++i) {
        clock.advanceMs(500);
        sim.step();
        sim.deliverPending();
        w->core().timerPass();
        sim.deliverPending();
        const CGridsSpread& g = w->core();
        if (g.closedCount() >= 2 && !g.entries().empty() &&
            (g.openPair().state() == 2 || g.closePair().state() == 2))
            break;
    }
    EXPECT_GT(w->core().closedCount(), 0);
    EXPECT_TRUE(prompter.boxes.empty()) << prompter.lastText();
    EXPECT_EQ(w->closedCount()->text(), QString::fromUtf8("平仓:%1").arg(w->core().closedCount()));
    EXPECT_EQ(w->position()->value(), static_cast<int>(w->core().entries().size()));
    EXPECT_EQ(w->openStatus()->text().toStdString(), w->core().pairStatus(true));
    const QString trend = w->filterState()->text();
    EXPECT_TRUE(trend == QString::fromUtf8("涨") || trend == QString::fromUtf8("跌") ||
                trend == QString::fromUtf8("平"));
    w->show();
    w->resize(w->sizeHint());
    saveScreenshot(w, "grid_spread.png");

    prompter.answers = {false};
    EXPECT_FALSE(w->close());
    EXPECT_EQ(prompter.lastText(), "关闭窗体将会终止价差格的运行，您确认要退出？");
    const WndHandle h = w->handle();
    prompter.answers = {true};
    EXPECT_TRUE(w->close());  // deleted on close; the manager forgets it
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(manager.target(h), nullptr);
    EXPECT_TRUE(manager.registeredWindows().empty());
}

}  // namespace
