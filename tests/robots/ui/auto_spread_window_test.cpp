// The auto spread window, offscreen, on the simulated exchange with IF2101 against IH2101:
// what a trader relies on — a refused start says why and leaves the settings open, a start
// locks them, a template shows its values, and the state follows the robot's rounds. With
// HELMSMAN_SCREENSHOT_DIR set, the two- and three-leg windows are saved as PNGs.
#include "robots/ui/auto_spread_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>

#include "app/helmsman_manage.h"
#include "host/clock.h"
#include "sim/sim_test_util.h"
#include "spread/template_store.h"
#include "spread/ui/template_menu.h"
#include "support/manager_sink.h"
#include "support/qt_app.h"
#include "support/recording_journal.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

namespace {

const tagSymbol kIH{3, "IH2101"};
const tagSymbol kIC{3, "IC2101"};

QString u(const char* s) {
    return QString::fromUtf8(s);
}

class AutoSpreadWindowTest : public ::testing::Test {
protected:
    AutoSpreadWindowTest() : sim(clock, simtest::quietOptions()), sink(manager) {
        testApp();
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.setJournal(&journal);
        manager.init(1, &sim, root.string(), "demo", 0);
        std::filesystem::create_directories(manager.userDir());
        sim.setEventSink(&sink);
        quotes(5229.8, 3645.4);
        sim.applyQuote(simtest::quote(kIC, 6372.6, 6, 6373.0, 6, 6372.8));
        sim.deliverPending();
    }
    ~AutoSpreadWindowTest() override {
        if (w) {
            prompter.answers = {true};
            w->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    // IF's and IH's touch around these lasts; the spread's ask is if + 0.2 - (ih - 0.2).
    void quotes(double ifLast, double ihLast) {
        sim.applyQuote(simtest::quote(simtest::kIF, ifLast - 0.2, 10, ifLast + 0.2, 10, ifLast));
        sim.applyQuote(simtest::quote(kIH, ihLast - 0.2, 8, ihLast + 0.2, 8, ihLast));
    }

    // Opens the window through its export's opener, with IF2101 and IH2101 on two accounts.
    void open() {
        const WndHandle h = openAutoSpread(manager);
        for (QWidget* top : QApplication::topLevelWidgets())
            if (auto* found = qobject_cast<AutoSpreadWindow*>(top); found && found->handle() == h)
                w = found;
        ASSERT_NE(w, nullptr);
        EXPECT_EQ(manager.registeredWindows(), std::vector<WndHandle>{h});
        w->chooseLeg(0, "880001", 3, "IF2101");
        w->chooseLeg(1, "880002", 3, "IH2101");
        sim.deliverPending();
        w->flush();
        legs = w->collect();
    }

    // Lets the exchange and the robot run for `passes` timer passes.
    void run(int passes) {
        for (int i = 0; i < passes; ++i) {
            clock.advanceMs(CAutoSpread::kTimerMs);
            sim.deliverPending();
            w->core().timerPass();
            sim.deliverPending();
        }
        w->flush();
    }

    // The legs as opened with only the long lines: one unit a round, one held at most.
    tagAutoSpreadTemplate longLines(bool entry, double entryAt, bool exit, double exitAt) const {
        tagAutoSpreadTemplate s = legs;
        s.bLongEntry = entry ? 1 : 0;
        s.dLongEntryPrice = entryAt;
        s.bLongExit = exit ? 1 : 0;
        s.dLongExitPrice = exitAt;
        s.nEveryLots = 1;
        s.nMaxLots = 1;
        return s;
    }

    TempDir root;
    ManualClock clock{simtest::localMs(10, 0, 0)};
    SimExchange sim;
    ScriptedPrompter prompter;
    RecordingJournal journal;
    CHelmsmanManage manager;
    ManagerSink sink;
    AutoSpreadWindow* w = nullptr;
    tagAutoSpreadTemplate legs;
};

TEST_F(AutoSpreadWindowTest, SaysWhyAStartIsRefusedAndLocksTheSettingsWhileRunning) {
    open();
    EXPECT_EQ(w->windowTitle(), u("价差舟[公式:1A-1B]"));
    // 5230.0 - 3645.2 to buy, 5229.6 - 3645.6 to sell.
    EXPECT_EQ(w->rowLabel(SpreadRow::Ask)->text(), u("1584.8/8"));
    EXPECT_EQ(w->rowLabel(SpreadRow::Bid)->text(), u("1584/8"));
    EXPECT_EQ(w->core().settings().accounts[1].strAccountID, "880002");

    struct Refusal {
        const char* what;
        void (*edit)(tagAutoSpreadTemplate&);
        const char* text;
    };
    const Refusal refusals[] = {
        {"no line", [](tagAutoSpreadTemplate& s) { s.bLongEntry = s.bLongExit = 0; },
         "请至少勾选一个开仓或平仓条件！"},
        {"long lines crossed",
         [](tagAutoSpreadTemplate& s) {
             s.dLongEntryPrice = 1600;
             s.dLongExitPrice = 1590;
         },
         "多头开仓价差必须低于多头平仓价差，请重新设置！"},
        {"no leg B", [](tagAutoSpreadTemplate& s) { s.legs[1].szSymbolCode.clear(); },
         "请选择商品A和商品B！"},
        // A saved account that is not logged on is kept, never swapped for another.
        {"account logged off",
         [](tagAutoSpreadTemplate& s) {
             s.accounts[1] = {"880009", "9999", "", "880009()", 1};
         },
         "请先登录交易帐户！"},
    };
    for (const Refusal& r : refusals) {
        tagAutoSpreadTemplate s = longLines(true, 1500, true, 1700);
        r.edit(s);
        w->display(s);
        prompter.boxes.clear();
        w->startButton()->click();
        EXPECT_FALSE(w->core().running()) << r.what;
        EXPECT_EQ(prompter.lastText(), r.text) << r.what;
        EXPECT_FALSE(w->locked()) << r.what;
        EXPECT_FALSE(w->everyLotsBox()->isReadOnly()) << r.what;
    }

    w->display(longLines(true, 1500, true, 1700));
    w->startButton()->click();
    ASSERT_TRUE(w->core().running()) << prompter.lastText();
    EXPECT_EQ(w->startButton()->text(), u("暂停"));
    EXPECT_TRUE(w->everyLotsBox()->isReadOnly());
    EXPECT_TRUE(w->lineBox(0)->isReadOnly());
    EXPECT_FALSE(w->lineCheck(0)->isEnabled());
    EXPECT_FALSE(w->templateButton()->isEnabled());
    EXPECT_FALSE(w->butterflyButton()->isEnabled());
    for (QComboBox* box : w->findChildren<QComboBox*>()) EXPECT_FALSE(box->isEnabled());
    prompter.answers = {false};
    EXPECT_FALSE(w->close());  // the trader keeps the running robot
    EXPECT_EQ(prompter.lastText(), "价差舟正在运行或有委托未完成，确定要关闭吗？");

    w->startButton()->click();
    EXPECT_FALSE(w->core().running());
    EXPECT_EQ(w->startButton()->text(), u("启动"));
    EXPECT_FALSE(w->everyLotsBox()->isReadOnly());
    w->everyLotsBox()->setValue(4);  // an edit reaches the robot at once
    EXPECT_EQ(w->core().settings().nEveryLots, 4);

    // Closed, the robot gives its handle back.
    EXPECT_TRUE(w->close());
    w = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(manager.registeredWindows().empty());
}

TEST_F(AutoSpreadWindowTest, ShowsATemplateItApplies) {
    tagAutoSpreadTemplate t;
    t.strName = "IF-IH-IC";
    t.legs = {tagTemplateLeg{3, "IF2101"}, tagTemplateLeg{3, "IH2101"},
              tagTemplateLeg{3, "IC2101"}};
    t.nSpreadLots = {2, 1, 1};
    t.dSpreadUnit = {2, 1, 0.5};
    t.bButterfly = 1;
    t.bShortEntry = 1;
    t.dShortEntryPrice = 3620.4;
    t.bShortExit = 1;
    t.dShortExitPrice = 3590;
    t.nEveryLots = 3;
    t.nMaxLots = 9;
    t.nStayMilliSeconds = 5000;  // not the template's to change
    ASSERT_TRUE(
        CTemplateStore<tagAutoSpreadTemplate>(manager.userDir(), template_files::kAutoSpread)
            .save({t}));
    open();
    EXPECT_FALSE(w->symbolBox(2)->isEnabled());
    const int stay = w->core().settings().nStayMilliSeconds;
    w->templateMenu()->run(26780);
    w->flush();
    EXPECT_EQ(w->windowTitle(), u("IF-IH-IC@价差舟[公式:2A-1B-1C]"));
    EXPECT_TRUE(w->symbolBox(2)->isEnabled());
    EXPECT_EQ(w->symbolBox(2)->currentText(), u("IC2101"));
    EXPECT_TRUE(w->lineCheck(2)->isChecked());
    EXPECT_EQ(w->lineBox(2)->text(), u("3620.4"));
    EXPECT_EQ(w->lineBox(3)->text(), u("3590"));
    EXPECT_FALSE(w->lineCheck(0)->isChecked());
    EXPECT_EQ(w->everyLotsBox()->value(), 3);
    // 2 x 5229.6 - 3645.6 - 0.5 x 6373.0 to sell.
    EXPECT_EQ(w->rowLabel(SpreadRow::Bid)->text(), u("3627.1/6"));
    const tagAutoSpreadTemplate shown = w->collect();
    EXPECT_EQ(shown.dSpreadUnit[2], 0.5);
    EXPECT_EQ(shown.nStayMilliSeconds, stay);
    // The legs of a template without accounts take the logged-on ones, and the robot too.
    EXPECT_EQ(w->core().settings().accounts[1].strAccountID, shown.accounts[1].strAccountID);
    EXPECT_FALSE(shown.accounts[1].strAccountID.empty());
    w->show();
    w->resize(w->sizeHint());
    saveScreenshot(w, "auto_spread_butterfly.png");
}

TEST_F(AutoSpreadWindowTest, FollowsTheRobotsRounds) {
    open();
    // In at once (ask 1584.8 below 1590), then out at once (bid 1584 above 1580).
    w->display(longLines(true, 1590, false, 1700));
    w->startButton()->click();
    ASSERT_TRUE(w->core().running()) << prompter.lastText();
    run(6);
    ASSERT_EQ(w->core().position(), 1) << w->core().statusText();
    w->startButton()->click();
    run(2);
    ASSERT_FALSE(w->locked()) << w->core().statusText();
    w->display(longLines(false, 1570, true, 1580));
    w->startButton()->click();
    run(6);
    quotes(5230.4, 3645.4);  // the spread 0.6 up, and in again
    w->startButton()->click();
    run(2);
    w->display(longLines(true, 1590, true, 1600));
    w->startButton()->click();
    run(6);

    ASSERT_EQ(w->core().rounds().size(), 3u) << w->core().statusText();
    EXPECT_EQ(w->positionBox()->value(), 1);
    QTableWidget* table = w->roundTable();
    ASSERT_EQ(table->rowCount(), 3);
    EXPECT_EQ(table->item(0, 1)->text(), u("多头开仓"));  // newest first
    EXPECT_EQ(table->item(1, 1)->text(), u("多头平仓"));
    EXPECT_EQ(table->item(0, 0)->text().toStdString(),
              formatDateTime(w->core().rounds().back().endMs / 1000).substr(11));
    EXPECT_EQ(w->statusLabel()->text().toStdString(), w->core().statusText());
    EXPECT_FALSE(journal.entries.empty());
    EXPECT_EQ(journal.entries.front().tool, "价差舟");
    w->show();
    w->resize(w->sizeHint());
    saveScreenshot(w, "auto_spread.png");

    // The position the trader types replaces the robot's after "更新".
    w->startButton()->click();
    run(2);
    prompter.answers = {true};
    w->positionBox()->setValue(0);
    w->updateButton()->click();
    EXPECT_EQ(w->core().position(), 0);
}

}  // namespace
