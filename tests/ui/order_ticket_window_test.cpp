// Wiring of the order ticket window to its core: widgets write into the core's controls,
// the core's state reaches the labels, Enter never sends, the buy button and a shortcut do,
// closing saves. With HELMSMAN_SCREENSHOT_DIR set the ticket is also saved there as a PNG.
#include "order/ui/order_ticket_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <functional>
#include <memory>

#include "app/exports.h"
#include "app/helmsman_manage.h"
#include "order/ui/hotkey_dialog.h"
#include "order/ui/tick_chart.h"
#include "support/fake_host.h"
#include "support/qt_app.h"
#include "support/quote_builders.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

namespace {

class OrderTicketWindowTest : public ::testing::Test {
protected:
    FakeHost host;
    ScriptedPrompter prompter;
    ScriptedUi ui;
    ManualClock clock{1'717'000'000'000};
    CHelmsmanManage manage;
    TempDir root{"helmsman_ticket_ui"};

    void SetUp() override {
        testApp();
        manage.init(7, &host, root.string(), "trader", 0);
        manage.setPrompter(&prompter);
        manage.setUi(&ui);
        manage.setClock(&clock);
        host.accounts = {FakeHost::account("8800123", "9999", "张三")};
        host.exchanges = {{1, "上期所"}, {2, "大商所"}};
        host.symbolsByExchange[1] = {{1, "ag2412"}, {1, "rb2410"}, {1, "cu2409"}};
        const auto ag = contractDetail(1.0f, 1, 15, 0.12);
        host.details["ag2412"] = ag;
        host.details["rb2410"] = ag;
        host.summaries["8800123"] = tagAccountSummary{"8800123", "9999", 0, 0, 500000};
        host.positions = {{"8800123", "9999", 1, "ag2412", 5, 3, 2}};
        host.quotes["ag2412"] =
            TickBuilder(1, "ag2412").last(7412).bid(7411, 18).ask(7413, 7).limits(6818, 8004);
    }

    template <class W>
    W* child(QWidget* w, const char* name) {
        W* c = w->findChild<W*>(name);
        EXPECT_NE(c, nullptr) << name;
        return c;
    }
    static void pressReturn(QWidget* w) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(w, &press);
    }
    void setting(const std::function<void(HelmsmanSettings&)>& change) {
        HelmsmanSettings s = manage.settings();
        change(s);
        manage.saveSettings(s);
    }
    // A ticket window shown on `code`.
    std::unique_ptr<OrderTicketWindow> openOn(const char* code) {
        auto w = std::make_unique<OrderTicketWindow>(manage);
        w->openTicket(nullptr);
        w->core().selectSymbol({1, code});
        w->show();
        return w;
    }
    // A new snapshot, then its notice at the ticket's handle (the ticket reads the snapshot).
    void deliver(OrderTicketWindow& w, const IModuleFutureTrader::ITickEx& t) {
        host.quotes[t.strCode] = t;
        manage.sendMessage(w.core().handle(), kMsgDataChange, kEventQuote, 0);
    }
};

TEST_F(OrderTicketWindowTest, ShowsTheCoreAndSendsFromTheButton) {
    tagHelmsmanPrefill block;
    block.symbol = {1, "ag2412"};
    setting([](HelmsmanSettings& s) { s.bShowChartWnd = 1; });

    OrderTicketWindow w(manage);
    w.openTicket(&block);
    w.show();
    EXPECT_EQ(w.windowTitle(), QString::fromUtf8("舵手"));
    auto* tabs = child<QTabWidget>(&w, "tabs");
    ASSERT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->tabText(0), QString::fromUtf8("即时执行"));
    EXPECT_EQ(tabs->tabText(1), QString::fromUtf8("触发单交易"));
    EXPECT_EQ(tabs->tabText(2), QString::fromUtf8("修改或删除触发单"));
    EXPECT_EQ(child<QLabel>(&w, "position")->text(), QString::fromUtf8("持仓:5(3/2)"));
    // 500000 / (7412 × 15 × 0.12) = 37.5
    EXPECT_EQ(child<QLabel>(&w, "openable")->text(), QString::fromUtf8("可开:37"));
    EXPECT_EQ(child<QLabel>(&w, "ask")->text(), "7413");
    EXPECT_EQ(child<QComboBox>(&w, "symbol")->currentText(), "ag2412");
    ASSERT_TRUE(w.chart()->isVisible());
    EXPECT_EQ(w.chart()->code(), "ag2412");

    // A quote at the ticket's handle reaches the labels and the chart.
    IModuleFutureTrader::ITickEx t = host.quotes["ag2412"];
    t.dAsk = 7415;
    t.dLast = 7414;
    const int points = w.chart()->pointCount();
    deliver(w, t);
    EXPECT_EQ(child<QLabel>(&w, "ask")->text(), "7415");
    EXPECT_EQ(w.chart()->pointCount(), points + 1);
    for (int i = 0; i < 90; ++i) {  // a few minutes of ticks to look at
        clock.advanceMs(2000);
        t.dLast = 7414 + ((i * 7) % 11) - 5 + i / 12;
        t.dBid = t.dLast - 1, t.dAsk = t.dLast + 1;
        deliver(w, t);
    }
    saveScreenshot(&w, "order_ticket.png");

    // Widgets write into the core; Enter in the volume box moves on and sends nothing.
    auto* volume = child<QLineEdit>(&w, "volume");
    volume->setText("3");
    child<QDoubleSpinBox>(&w, "price")->setValue(7400);
    EXPECT_EQ(w.core().normalOrder().controls().volumeText, "3");
    EXPECT_EQ(w.core().normalOrder().controls().price, 7400);
    volume->setFocus();
    pressReturn(volume);
    EXPECT_TRUE(host.sent.empty());
    EXPECT_TRUE(ui.log.empty());

    child<QPushButton>(&w, "buy")->click();
    ASSERT_EQ(host.sent.size(), 1u);
    EXPECT_EQ(host.sent[0].dVolume, 3);
    EXPECT_EQ(host.sent[0].dPrice, 7400);
    EXPECT_EQ(host.sent[0].nDirection, kDirBuy);
    EXPECT_EQ(ui.log, std::vector<std::string>{"confirmOrder 舵手"});
}

TEST_F(OrderTicketWindowTest, VolumePriceAndEscGuards) {
    setting([](HelmsmanSettings& s) { s.bShowNormalOrderConfirm = 0; });
    auto ticket = openOn("ag2412");
    OrderTicketWindow& w = *ticket;

    // Whole lots only in the volume box.
    auto* volume = child<QLineEdit>(&w, "volume");
    QString text = "1.5";
    int pos = 0;
    EXPECT_NE(volume->validator()->validate(text, pos), QValidator::Acceptable);
    text = "2";
    EXPECT_EQ(volume->validator()->validate(text, pos), QValidator::Acceptable);

    // An emptied price box is refused, not sent at its old value.
    auto* price = child<QDoubleSpinBox>(&w, "price");
    price->setValue(7400);
    price->findChild<QLineEdit*>()->clear();
    child<QPushButton>(&w, "buy")->click();
    EXPECT_TRUE(host.sent.empty());
    EXPECT_EQ(prompter.lastText(), "请输入委托价格！");

    // Esc does not throw the ticket away.
    QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&w, &esc);
    EXPECT_TRUE(w.isVisible());
    EXPECT_FALSE(w.core().closed());
}

TEST_F(OrderTicketWindowTest, ARejectionIsExplainedOnTheTicket) {
    setting([](HelmsmanSettings& s) { s.bShowNormalOrderConfirm = 0; });
    tagHelmsmanPrefill block;
    block.symbol = {1, "ag2412"};
    host.positions = {{"8800123", "9999", 1, "ag2412", 5, 3, 2, 1, 0}};  // one long lot today
    OrderTicketWindow w(manage);
    w.openTicket(&block);
    w.show();
    EXPECT_EQ(child<QLabel>(&w, "closable")->text(),
              QString::fromUtf8("可平 多:昨2 今1  空:昨2 今0"));
    child<QLineEdit>(&w, "volume")->setText("40");
    child<QDoubleSpinBox>(&w, "price")->setValue(7413);
    child<QPushButton>(&w, "buy")->click();
    ASSERT_EQ(host.sent.size(), 1u);
    tagBrokerOrder rejected = host.sent[0];
    rejected.nStatus = kOrderRejected;
    rejected.strStatusMsg = "可用资金不足";
    manage.dataChange(kEventOrderChanged, reinterpret_cast<std::uintptr_t>(&rejected));
    auto* status = child<QLabel>(&w, "status");
    EXPECT_EQ(status->text(),
              QString::fromUtf8("已废除：买入开仓 ag2412 40张 价格:7413\n原因：可用资金不足"));
    EXPECT_TRUE(prompter.boxes.empty());
    QApplication::processEvents();
    saveScreenshot(&w, "ticket_rejected.png");
}

TEST_F(OrderTicketWindowTest, MenuTogglesAndHotkeys) {
    auto ticket = openOn("ag2412");
    OrderTicketWindow& w = *ticket;
    EXPECT_FALSE(w.chart()->isVisible());
    auto* stopLoss = child<QCheckBox>(&w, "stopLoss");
    auto* stopAuto = child<QPushButton>(&w, "stopLossAuto");
    EXPECT_FALSE(stopAuto->isChecked());
    stopAuto->click();
    EXPECT_TRUE(w.core().normalOrder().controls().stopLossAuto);
    EXPECT_TRUE(stopLoss->isChecked());  // drawn back from the core
    saveScreenshot(&w, "order_ticket_auto_stop.png");

    // Shortcuts exist only when switched on, and act like the ticket's buttons.
    EXPECT_TRUE(w.findChildren<QShortcut*>().isEmpty());
    HotkeySettings keys;
    keys.bEnabled = 1;
    w.setHotkeys(keys);
    ASSERT_EQ(w.findChildren<QShortcut*>().size(), 4);
    setting([](HelmsmanSettings& s) { s.bShowHotkeyOrderConfirm = 0; });
    for (QShortcut* sc : w.findChildren<QShortcut*>())
        if (sc->key() == QKeySequence(Qt::Key_F3)) emit sc->activated();
    ASSERT_EQ(host.sent.size(), 1u);
    EXPECT_EQ(host.sent[0].nDirection, kDirSell);
    EXPECT_EQ(host.sent[0].dPrice, 7411);  // the bid
    EXPECT_TRUE(ui.log.empty());
}

TEST_F(OrderTicketWindowTest, HotkeyDialogRefusesADuplicateAndSavesOtherwise) {
    HotkeySettings keys;
    keys.bEnabled = 1;
    HotkeyDialog d(manage, keys);
    d.show();
    saveScreenshot(&d, "hotkey_dialog.png");
    auto* confirm = child<QCheckBox>(&d, "hotkeyConfirm");
    confirm->setChecked(false);
    child<QKeySequenceEdit>(&d, "hotkey3")->setKeySequence(QKeySequence(Qt::Key_F2));
    d.accept();
    EXPECT_EQ(d.result(), keys);  // unchanged: refused
    EXPECT_EQ(prompter.lastText(), "快捷键“F2”被重复设置，请修改！");
    EXPECT_EQ(manage.settings().bShowHotkeyOrderConfirm, 1);

    child<QKeySequenceEdit>(&d, "hotkey3")->setKeySequence(QKeySequence(Qt::Key_F7));
    d.accept();
    EXPECT_EQ(d.result().keys[3], "F7");
    EXPECT_EQ(loadHotkeys(manage.profilePath()), d.result());
    EXPECT_EQ(manage.settings().bShowHotkeyOrderConfirm, 0);
}

TEST_F(OrderTicketWindowTest, UnknownTypedCodeIsRefusedAndTheBoxRestored) {
    auto w = openOn("ag2412");
    auto* symbol = child<QComboBox>(w.get(), "symbol");
    symbol->setFocus();
    symbol->setEditText("zz999");
    pressReturn(symbol->lineEdit());
    ASSERT_EQ(prompter.boxes.size(), 1u);
    EXPECT_EQ(prompter.boxes[0].text, "当前商品不能进行交易，请重新选择商品！");
    EXPECT_EQ(symbol->currentText(), "ag2412");

    symbol->setEditText("rb2410");
    pressReturn(symbol->lineEdit());
    EXPECT_EQ(w->core().symbol().strCode, "rb2410");
    EXPECT_EQ(prompter.boxes.size(), 1u);
}

TEST_F(OrderTicketWindowTest, ClosingSavesAndDeletes) {
    setting([](HelmsmanSettings& s) { s.bSaveVolume = 1; });
    QPointer<OrderTicketWindow> w = new OrderTicketWindow(manage);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->openTicket(nullptr);
    w->show();
    child<QLineEdit>(w, "volume")->setText("8");
    child<QCheckBox>(w, "useBidAsk")->setChecked(true);
    const WndHandle h = w->core().handle();
    w->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(w.isNull());
    EXPECT_EQ(manage.settings().dLastVolume, 8);
    EXPECT_EQ(manage.settings().bUseBidAskPrice, 1);
    EXPECT_EQ(manage.target(h), nullptr);
}

}  // namespace
