// The centre's window, offscreen: built hidden and stepping, shown on demand, the list and
// its selection through a rebuild, the cancel command, and what it gives back when destroyed.
#include "trigger/ui/local_trigger_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QTimer>

#include "../trigger_fixture.h"
#include "host/ui/sort_list_ctrl.h"
#include "support/qt_app.h"

using namespace trigtest;

namespace {

class WindowTest : public TriggerTest {
protected:
    WindowTest() {
        testApp();
        centre.reset();  // the window brings its own core
        manager.setLocalTriggerFactory([this] {
            window = new LocalTriggerWindow(manager);
            return window;
        });
    }
    ~WindowTest() override { delete window; }

    LocalTriggerWindow* window = nullptr;
};

}  // namespace

TEST_F(WindowTest, TheFirstAddBuildsTheCentreHiddenAndItWatchesAtOnce) {
    host.quotes["cu2102"] = TickBuilder(0, "cu2102").bid(49990, 1).ask(50010, 1).last(50000);
    ASSERT_TRUE(manager.addLocalTrigger(trigger(0, "cu2102", kDirBuy, 0, 50000), nullptr));
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(window->timer()->isActive());
    EXPECT_EQ(window->timer()->interval(), 600);
    window->core().step();
    EXPECT_EQ(host.sent.size(), 1u);

    EXPECT_TRUE(manager.openLocalTrigger());
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), QString::fromUtf8("本地触发单中心"));
    LocalTriggerWindow* first = window;
    manager.openLocalTrigger();  // only shows the same one
    EXPECT_EQ(window, first);
    window->close();  // hides; the triggers stay
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(manager.existingLocalTriggerCentre(), window);

    delete window;  // with its owner: subscriptions given back, the manager forgets it
    window = nullptr;
    EXPECT_EQ(host.callsStartingWith("Unsubscribe").size(), 1u);
    EXPECT_EQ(manager.existingLocalTriggerCentre(), nullptr);
    EXPECT_TRUE(manager.registeredWindows().empty());
}

TEST_F(WindowTest, TheListKeepsItsSelectionAndCancelsWhatIsSelected) {
    host.quotes["IF2101"] = TickBuilder(3, "IF2101").bid(5000, 1).ask(5000.4, 1).last(5000.2);
    host.quotes["cu2102"] = TickBuilder(0, "cu2102").bid(49990, 1).ask(50010, 1).last(50000);
    tagTriggerOrder t1 = trigger(3, "IF2101", kDirBuy, 0, 4980.2, 0, 2);
    t1.tExpiry = localSec(15, 15, 0);
    tagTriggerOrder t2 = trigger(3, "IF2101", kDirSell, 1, 5050, 5049.8, 1);
    t2.nOpenClose = kClose;
    tagTriggerOrder t3 = trigger(0, "cu2102", kDirSell, 3, 49500, 0, 3);
    tagTriggerOrder t4 = trigger(0, "cu2102", kDirBuy, 2, 50600, 50610, 5);
    t4.tStart = localSec(10, 30, 0);
    manager.addLocalTriggers({t1, t2, t3, t4}, nullptr);
    manager.openLocalTrigger();
    window->core().step();
    window->rebuild();
    CSortListCtrl* list = window->list();
    ASSERT_EQ(list->rowCount(), 4);

    list->selectRow(list->FindItemData(2 + 1));
    EXPECT_EQ(window->core().selection(), 2);
    window->rebuild();
    ASSERT_EQ(list->selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(list->GetItemData(list->selectionModel()->selectedRows()[0].row()), 3u);

    QCheckBox* option = window->findChildren<QCheckBox*>().front();
    option->setChecked(true);  // the expiry column
    EXPECT_EQ(list->columnCount(), 10);
    for (QCheckBox* box : window->findChildren<QCheckBox*>()) box->setChecked(true);
    window->resize(1240, 280);
    saveScreenshot(window, "local_trigger_centre.png");

    prompter.answers = {true};
    window->cancelSelected();
    EXPECT_EQ(prompter.boxes.size(), 1u);
    EXPECT_EQ(list->rowCount(), 3);  // only waiting ones are shown
    EXPECT_EQ(window->core().record(2).trigger.nStatus, kOrderCancelled);
}
