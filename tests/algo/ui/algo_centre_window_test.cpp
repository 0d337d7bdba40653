// The algo centre and the settings dialog offscreen: an order routed by the manager reaches
// the centre and is worked on the simulated exchange while the list follows; the buttons act
// on the selected rows; the dialog shows and returns a block.
#include "algo/ui/algo_centre_window.h"

#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QSpinBox>

#include "algo/ui/algo_setting_dialog.h"
#include "app/helmsman_manage.h"
#include "host/ui/sort_list_ctrl.h"
#include "sim/sim_exchange.h"
#include "support/manager_sink.h"
#include "support/qt_app.h"
#include "support/scripted.h"
#include "support/temp_dir.h"
#include "support/test_day.h"

namespace {

tagBrokerOrder ticketOrder(const char* code, int exchange, int direction, double volume) {
    tagBrokerOrder o;
    o.strAccountID = "880001";
    o.strBrokerID = "9999";
    o.nExchangeID = exchange;
    o.strCode = o.strSymbolText = code;
    o.nDirection = direction;
    o.dVolume = volume;
    o.strRemark = "舵手";
    return o;
}

QString cell(CSortListCtrl* list, int row, int column) {
    return list->item(row, column) ? list->item(row, column)->text() : QString();
}

class AlgoCentreUi : public ::testing::Test {
protected:
    AlgoCentreUi() {
        testApp();
        sim.logonAll();
        sim.setAccountFunds("880001", 1e9);
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.init(1, &sim, root.string(), "demo", 0);
        manager.setAlgoCentreFactory([this] {
            centre = new AlgoCentreWindow(manager, nullptr, false);
            return centre;
        });
        sim.setEventSink(&sink);
    }
    ~AlgoCentreUi() override {
        sim.setEventSink(nullptr);
        delete centre;
        manager.setPrompter(nullptr);
        manager.setClock(nullptr);
    }
    void run(int rounds) {
        for (int i = 0; i < rounds; ++i) {
            clock.advanceMs(250);
            if (i % 2 == 0) sim.step();
            sim.deliverPending();
            centre->engine().pass();
        }
        centre->refresh();
    }

    TempDir root{"algo-ui"};
    ManualClock clock{testday::localMs(10, 0)};
    SimExchange sim{clock};
    ScriptedPrompter prompter;
    CHelmsmanManage manager;
    ManagerSink sink{manager};
    AlgoCentreWindow* centre = nullptr;
};

}  // namespace

TEST_F(AlgoCentreUi, ARoutedTicketOrderIsWorkedAndTheListFollows) {
    tagAlgoSetting block;
    block.nLotSingle = 5;
    block.nLotRandom = 0;
    block.nTimeInterval = 2;
    manager.setAlgoTrading(true);
    tagBrokerOrder small = ticketOrder("rb2105", 0, kDirBuy, 3);
    manager.sendOrder(small, &block);  // below the base line: straight to the exchange
    EXPECT_EQ(sim.stats().ordersSent, 1u);
    EXPECT_EQ(centre, nullptr);
    tagBrokerOrder big = ticketOrder("rb2105", 0, kDirBuy, 100);
    EXPECT_EQ(manager.sendOrder(big, &block), 1);
    ASSERT_NE(centre, nullptr);
    EXPECT_TRUE(centre->isVisible());
    EXPECT_EQ(centre->windowTitle(), "算法交易中心");
    centre->addAlgoOrders({ticketOrder("IF2101", 3, kDirSell, 20)}, block);

    CSortListCtrl* list = centre->list();
    ASSERT_EQ(list->rowCount(), 2);
    EXPECT_EQ(cell(list, 0, 2), "rb2105");
    EXPECT_EQ(cell(list, 0, 3), "买");
    EXPECT_EQ(cell(list, 0, 5), "100");
    centre->selectSerial(2);
    centre->pauseSelected();
    EXPECT_EQ(cell(list, list->FindItemData(2), 10), "已暂停");
    run(60);
    const double filled = cell(list, 0, 6).toDouble();
    EXPECT_GT(filled, 0);
    EXPECT_LT(filled, 100);
    EXPECT_EQ(cell(list, 0, 7), QString::number(static_cast<int>(filled)) + "%");
    EXPECT_EQ(cell(list, 0, 10), "运行中");

    // The rb order urgent from the pacing menu's command.
    centre->selectSerial(1);
    centre->pacingSelected(kPaceUrgent);
    EXPECT_EQ(cell(list, list->FindItemData(1), 8), "紧急");
    centre->show();
    saveScreenshot(centre, "algo_centre.png");

    run(400);
    EXPECT_EQ(cell(list, list->FindItemData(1), 6), "100");
    EXPECT_EQ(cell(list, list->FindItemData(1), 9), "已完成");

    prompter.answers.push_back(true);
    centre->selectSerial(2);
    centre->deleteSelected();
    EXPECT_EQ(list->rowCount(), 1);
}

TEST_F(AlgoCentreUi, TheSettingsDialogShowsAndReturnsTheBlock) {
    tagAlgoSetting block;
    block.nLotType = 1;
    block.nLotRatio = 30;
    block.nPriceType = -2;
    block.nTimeType = 1;
    block.nTimeTotal = 600;
    block.nTimeSession = 1;
    block.nStopRange = 8;
    block.nOutLimitRange = 1;
    block.nLimitRange = 5;
    AlgoSettingDialog dialog(block, manager);
    EXPECT_EQ(dialog.windowTitle(), "算法交易设置");
    EXPECT_FALSE(dialog.findChild<QSpinBox*>("lotSingle")->isEnabled());
    EXPECT_EQ(dialog.findChild<QSpinBox*>("lotRatio")->value(), 30);
    EXPECT_EQ(dialog.findChild<QComboBox*>("outLimit")->currentIndex(), 1);
    dialog.findChild<QSpinBox*>("priceType")->setValue(15);  // the box keeps it in range
    const tagAlgoSetting back = dialog.setting();
    EXPECT_EQ(back.nPriceType, 10);
    EXPECT_EQ(back.nLotType, 1);
    EXPECT_EQ(back.nTimeTotal, 600);
    EXPECT_EQ(back.nTimeSession, 1);
    EXPECT_EQ(back.nStopRange, 8);
    dialog.findChild<QSpinBox*>("priceType")->setValue(-2);
    dialog.show();
    saveScreenshot(&dialog, "algo_settings.png");
}
