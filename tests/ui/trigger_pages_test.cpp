// Wiring of the ticket's two trigger tabs: the trigger page's widgets reach its core and its
// buttons send; the modify page lists what the host holds, shows the chosen order under its
// title and deletes it. With HELMSMAN_SCREENSHOT_DIR set both tabs are saved there as PNGs.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

#include "app/helmsman_manage.h"
#include "order/ui/order_ticket_window.h"
#include "order/ui/trigger_modify_page.h"
#include "support/fake_host.h"
#include "support/qt_app.h"
#include "support/quote_builders.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

namespace {

void shoot(QWidget& w, const char* name) {
    const QByteArray dir = qgetenv("HELMSMAN_SCREENSHOT_DIR");
    if (dir.isEmpty()) return;
    QDir().mkpath(QString::fromUtf8(dir));
    QApplication::processEvents();  // let the layout settle as the event loop would
    w.grab().save(QString::fromUtf8(dir) + "/" + name);
}

TEST(TriggerPages, SendListAndDeleteThroughTheWidgets) {
    testApp();
    FakeHost host;
    ScriptedPrompter prompter;
    ScriptedUi ui;
    ManualClock clock{1'717'000'000'000};
    CHelmsmanManage manage;
    TempDir root{"helmsman_trigger_ui"};
    manage.init(7, &host, root.string(), "trader", 0);
    manage.setPrompter(&prompter);
    manage.setUi(&ui);
    manage.setClock(&clock);
    HelmsmanSettings s = manage.settings();
    s.bShowTriggerOrderConfirm = 0;
    manage.saveSettings(s);
    host.accounts = {FakeHost::account("8800123", "9999", "张三")};
    host.exchanges = {{1, "上期所"}};
    host.symbolsByExchange[1] = {{1, "ag2412"}};
    host.details["ag2412"] = contractDetail(1.0f, 1, 15, 0.12);
    host.summaries["8800123"] = tagAccountSummary{"8800123", "9999", 0, 0, 500000};
    host.quotes["ag2412"] =
        TickBuilder(1, "ag2412").last(7412).bid(7411, 18).ask(7413, 7).limits(6818, 8004);
    // A stop/profit order the host already holds for the account.
    tagTriggerOrder sp;
    sp.strOrderID = "S7";
    sp.strAccountID = "8800123";
    sp.strBrokerID = "9999";
    sp.nExchangeID = 1;
    sp.strCode = "ag2412";
    sp.nDirection = kDirSell;
    sp.nOpenClose = kClose;
    sp.dVolume = 2;
    sp.dStopLoss = 7350;
    sp.dTakeProfit = 7500;
    host.triggerOrders = {sp};

    OrderTicketWindow w(manage);
    w.openTicket(nullptr);
    w.core().selectSymbol({1, "ag2412"});
    w.show();
    auto* tabs = w.findChild<QTabWidget*>("tabs");
    ASSERT_NE(tabs, nullptr);

    // The trigger page: the trigger price starts at the last price; a typed one is sent.
    tabs->setCurrentIndex(1);
    auto* trigger = w.findChild<QDoubleSpinBox*>("triggerPrice");
    ASSERT_NE(trigger, nullptr);
    EXPECT_EQ(trigger->value(), 7412);
    trigger->setValue(7400);
    prompter.answers = {true};  // no expiry set: keep it as a next-day order
    w.findChild<QPushButton*>("triggerSell")->click();
    ASSERT_EQ(host.sentTriggers.size(), 1u) << prompter.lastText();
    EXPECT_EQ(host.sentTriggers[0].dTriggerPrice, 7400);
    EXPECT_EQ(host.sentTriggers[0].nTriggerType, kTriggerSellChase);
    EXPECT_EQ(w.findChild<QLabel*>("triggerStatus")->text(),
              QString::fromUtf8("触发单已发送：追卖 卖出开仓 ag2412 1张 触发价:7400"));
    shoot(w, "trigger_page.png");

    // The modify page: refreshed, it lists both orders; choosing one shows it.
    tabs->setCurrentIndex(2);
    w.findChild<QPushButton*>("refreshTriggers")->click();
    auto* list = w.findChild<QTableWidget*>("triggerList");
    ASSERT_EQ(list->rowCount(), 2);
    list->selectRow(1);
    auto* page = w.findChild<TriggerModifyPage*>("triggerModifyPage");
    ASSERT_NE(page->core().selectedOrder(), nullptr);
    const std::string chosen = page->core().selectedOrder()->strOrderID;
    EXPECT_EQ(w.findChild<QGroupBox*>("triggerBox")->title().toStdString(),
              chosen == "T1" ? "舵手 - [触发单#T1]" : "舵手 - [止损获利单#S7]");
    shoot(w, "trigger_modify_page.png");

    w.findChild<QPushButton*>("deleteTrigger")->click();
    EXPECT_EQ(host.calls.end()[-2], "DeleteTriggerOrder " + chosen);
    EXPECT_EQ(prompter.lastText(),
              chosen == "T1" ? "成功删除当前触发单！" : "成功删除当前止损获利单！");
    w.close();
}

}  // namespace
