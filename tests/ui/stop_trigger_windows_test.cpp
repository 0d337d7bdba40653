// Wiring of the close-position trigger and the order change windows: the controls reach the
// core, corrections come back into the controls. With HELMSMAN_SCREENSHOT_DIR set, each
// window is also saved there as a PNG.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include "app/helmsman_manage.h"
#include "order/ui/order_modify_dialog.h"
#include "order/ui/stop_trigger_dialog.h"
#include "support/fake_host.h"
#include "support/qt_app.h"
#include "support/quote_builders.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

namespace {

class StopTriggerWindows : public ::testing::Test {
protected:
    void SetUp() override {
        testApp();
        host.accounts = {FakeHost::account("8001", "9999", "模拟账户一")};
        host.exchanges = {{3, "中金所"}};
        host.details["IF2101"] = contractDetail(0.2f, 1, 300);
        host.details["IF2101"].strName = "沪深300指数2101";
        host.quotes["IF2101"] = TickBuilder(3, "IF2101")
                                    .bid(5230, 3)
                                    .ask(5230.2, 4)
                                    .last(5230)
                                    .limits(4694.6, 5737.8);
        host.quotes["IF2101"].tQuoteTime = 1'609'726'200'000;
        position.strAccountID = "8001";
        position.strBrokerID = "9999";
        position.nExchangeID = 3;
        position.strCode = "IF2101";
        position.dLong = 4;
        position.dLongToday = 1;
        position.dShort = 1;
        position.dTotal = 5;
        host.positions = {position};
        manage.init(0, &host, root.string(), "u", 0);
        manage.setPrompter(&prompter);
        manage.setUi(&ui);
    }
    TempDir root{"helmsman_stoptrig_windows"};
    FakeHost host;
    ScriptedPrompter prompter;
    ScriptedUi ui;
    CHelmsmanManage manage;
    tagOpenedPosition position;
};

TEST_F(StopTriggerWindows, ControlsReachTheOrder) {
    StopTriggerDialog w(manage, position, 1, "IF2101");
    w.findChild<QDoubleSpinBox*>("triggerPrice")->setValue(5200);
    w.findChild<QSpinBox*>("volume")->setValue(2);
    w.adjustSize();
    saveScreenshot(&w, "stop_trigger.png");
    EXPECT_EQ(w.findChild<QLabel*>("sideLabel")->text(), QString::fromUtf8("多头持仓 4"));
    EXPECT_EQ(w.findChild<QLabel*>("triggerType")->text(), QString::fromUtf8("追卖"));
    w.findChild<QPushButton*>("sendButton")->click();
    ASSERT_EQ(host.sentTriggers.size(), 1u);
    EXPECT_DOUBLE_EQ(host.sentTriggers[0].dTriggerPrice, 5200);
    EXPECT_DOUBLE_EQ(host.sentTriggers[0].dVolume, 2);
    EXPECT_EQ(host.sentTriggers[0].nDirection, kDirSell);
    EXPECT_FALSE(w.findChild<QLabel*>("statusLine")->text().isEmpty());
}

TEST_F(StopTriggerWindows, ModifyShowsTheCorrectedPrice) {
    tagBrokerOrder o = brokerOrder("8001", "IF2101", kDirSell, 1, 5240);
    o.strBrokerID = "9999";
    o.nExchangeID = 3;
    o.nOpenClose = kClose;
    o.strOrderID = "1042";
    o.nStatus = kOrderQueued;
    host.orders = {o};
    OrderModifyDialog w(manage, o);
    w.adjustSize();
    saveScreenshot(&w, "order_modify.png");
    EXPECT_EQ(w.findChild<QLabel*>("positionLabel")->text(), "5(4/1)");
    w.findChild<QDoubleSpinBox*>("price")->setValue(6000);
    w.findChild<QPushButton*>("modifyButton")->click();
    EXPECT_EQ(prompter.lastText(), "输入的委托价格数量不在涨跌停范围内，已自动修改为当前叫卖价！");
    EXPECT_DOUBLE_EQ(w.findChild<QDoubleSpinBox*>("price")->value(), 5230.2);
    EXPECT_TRUE(host.callsStartingWith("DeleteOrder").empty());
    w.findChild<QPushButton*>("modifyButton")->click();
    EXPECT_EQ(host.callsStartingWith("DeleteOrder").size(), 1u);
    EXPECT_FALSE(w.findChild<QPushButton*>("modifyButton")->isEnabled());
}

}  // namespace
