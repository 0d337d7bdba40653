// The account tools' windows on the simulated exchange, offscreen: each button reaches its
// core and the window shows what came of it. With HELMSMAN_SCREENSHOT_DIR set, each window
// is also saved as a picture.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <filesystem>
#include <fstream>

#include "account/ui/batch_trader_window.h"
#include "account/ui/fast_delete_all_window.h"
#include "account/ui/fast_exit_all_window.h"
#include "account/ui/fast_exit_window.h"
#include "account/ui/filled_statistics_window.h"
#include "app/helmsman_manage.h"
#include "host/gbk_codec.h"
#include "sim/sim_exchange.h"
#include "sim/sim_test_util.h"
#include "support/qt_app.h"
#include "support/scripted.h"
#include "support/temp_dir.h"
#include "support/manager_sink.h"

namespace {

using simtest::kIF;
using simtest::kRB;

using Sink = ManagerSink;

// Shown at its natural size first, as the trader would see it.
void shot(QWidget* w, const char* name) {
    w->adjustSize();
    w->show();
    QApplication::processEvents();
    saveScreenshot(w, name);
}

class AccountWindows : public ::testing::Test {
protected:
    ManualClock clock{simtest::localMs(10, 0, 0)};
    SimExchange sim{clock, simtest::quietOptions()};
    CHelmsmanManage manage;
    ScriptedPrompter prompter;
    ScriptedUi ui;
    TempDir root{"helmsman_account_ui"};
    Sink sink{manage};

    void SetUp() override {
        testApp();
        sim.logonAll();
        manage.setClock(&clock);
        manage.setPrompter(&prompter);
        manage.setUi(&ui);
        manage.init(1, &sim, root.string(), "demo", 0);
        HelmsmanSettings s = manage.settings();
        s.bShowNormalOrderConfirm = 0;
        manage.saveSettings(s);
        sim.setEventSink(&sink);
        ASSERT_TRUE(sim.applyQuote(simtest::quote(kRB, 4399, 50, 4401, 50, 4400)));
        ASSERT_TRUE(sim.applyQuote(simtest::quote(kIF, 5216.0, 50, 5216.4, 50, 5216.2)));
        sim.deliverPending();
    }

    void send(tagBrokerOrder o) {
        ASSERT_EQ(sim.SendOrder(o), 1) << o.strStatusMsg;
        sim.deliverPending();
    }

    double total(const std::string& account, const tagSymbol& s) {
        tagOpenedPosition p;
        sim.GetPosition(p, account, "9999", s);
        return p.dTotal;
    }
};

TEST_F(AccountWindows, FastExitButtonClosesTheSideAndSaysSo) {
    tagOpenedPosition p;
    sim.GetPosition(p, "880002", "9999", kRB);
    FastExitWindow w(manage, &p, "rb2105");
    shot(&w, "fast_exit.png");
    auto* closeShort = w.findChild<QPushButton*>("closeShort");
    ASSERT_NE(closeShort, nullptr);
    EXPECT_FALSE(closeShort->isEnabled());  // no short side to close
    w.findChild<QPushButton*>("closeLong")->click();
    sim.deliverPending();
    EXPECT_DOUBLE_EQ(total("880002", kRB), 0);
    EXPECT_TRUE(w.findChild<QLabel*>("statusLine")->text().contains("已发送"));
}

TEST_F(AccountWindows, ExitAllLeavesTheDemoAccountFlat) {
    send(simtest::order(kRB, kDirSell, kOpen, 2, 4399, "880001"));
    FastExitAllWindow w(manage);
    ASSERT_EQ(w.findChild<QTableWidget*>("positions")->rowCount(), 3);
    shot(&w, "fast_exit_all.png");
    // 880001's short is left alone: its box is unchecked.
    auto* list = w.findChild<QTableWidget*>("positions");
    for (int r = 0; r < list->rowCount(); ++r)
        if (list->item(r, 0)->text().startsWith("880001")) list->item(r, 0)->setCheckState(Qt::Unchecked);
    w.findChild<QPushButton*>("exitAll")->click();
    sim.deliverPending();
    EXPECT_DOUBLE_EQ(total("880002", kRB), 0);
    EXPECT_DOUBLE_EQ(total("880002", kIF), 0);
    EXPECT_DOUBLE_EQ(total("880001", kRB), 2);
}

TEST_F(AccountWindows, CancelAllAndTriggerCancelShowAResultPerOrder) {
    send(simtest::order(kRB, kDirBuy, kOpen, 1, 4300, "880001"));
    send(simtest::order(kRB, kDirSell, kOpen, 2, 4500, "880001"));
    send(simtest::order(kIF, kDirBuy, kOpen, 1, 5100, "880002"));
    for (const char* account : {"880001", "880002"}) {
        tagTriggerOrder trigger = simtest::trigger(kTriggerBuyDip, kDirBuy, 5000, 0);
        trigger.strAccountID = account;
        ASSERT_EQ(sim.SendTriggerOrder(trigger), 1);
    }
    FastDeleteAllWindow del(manage);
    auto* orders = del.findChild<QTableWidget*>("orders");
    EXPECT_EQ(orders->rowCount(), 3);
    // The buys only: the sell stays.
    auto* side = del.findChild<QComboBox*>("sideFilter");
    side->setCurrentIndex(1);
    emit side->activated(1);
    EXPECT_EQ(orders->rowCount(), 2);
    prompter.answers = {true};
    EXPECT_EQ(del.cancelAll(), 2);
    EXPECT_EQ(del.findChild<QPlainTextEdit*>("results")->toPlainText().count("撤单请求已发送"), 2);
    sim.deliverPending();
    side->setCurrentIndex(0);
    emit side->activated(0);
    EXPECT_EQ(orders->rowCount(), 1);
    shot(&del, "fast_delete_all.png");

    DeleteTriggerWindow trig(manage, nullptr);
    ASSERT_EQ(trig.findChild<QTableWidget*>("triggers")->rowCount(), 2);
    trig.core().setChecked(0, true);
    prompter.answers = {true};
    EXPECT_EQ(trig.deleteChecked(), 1);
    EXPECT_TRUE(trig.findChild<QPlainTextEdit*>("results")->toPlainText().contains("已删除"));
    EXPECT_EQ(trig.findChild<QTableWidget*>("triggers")->rowCount(), 1);
    shot(&trig, "delete_trigger_orders.png");
}

TEST_F(AccountWindows, StatisticsListChartAndGbkExport) {
    send(simtest::order(kRB, kDirBuy, kOpen, 3, 4401, "880001"));
    send(simtest::order(kRB, kDirSell, kCloseToday, 1, 4399, "880001"));
    send(simtest::order(kIF, kDirBuy, kClose, 1, 5216.4, "880002"));
    FilledStatisticsWindow w(manage);
    // Two groups of two accounts, their totals and the grand total.
    EXPECT_EQ(w.findChild<QTableWidget*>("statistics")->rowCount(), 5);
    shot(&w, "filled_statistics.png");
    const std::string path = w.exportCsv();
    ASSERT_FALSE(path.empty());
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    EXPECT_EQ(gbk::toUtf8(bytes).substr(0, 6), "帐户");
}

TEST_F(AccountWindows, BatchTraderFollowsALinkedSymbol) {
    BatchTraderWindow w(manage, &kRB);
    EXPECT_EQ(w.findChild<QComboBox*>("symbol")->currentText(), "rb2105");
    EXPECT_EQ(w.findChild<QTableWidget*>("accounts")->rowCount(), 2);
    shot(&w, "batch_trader.png");
    EXPECT_EQ(manage.sendMessage(w.core().handle(), kMsgSymbolLink, 1, reinterpret_cast<std::uintptr_t>(&kIF)), 1);
    EXPECT_EQ(w.findChild<QComboBox*>("symbol")->currentText(), "IF2101");
    w.findChild<QPushButton*>("buy")->click();
    EXPECT_EQ(ui.log.back(), "confirmBatch 批量下单 2");
}

}  // namespace
