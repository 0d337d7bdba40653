// Wiring of the confirmation and fill windows through the manager's UI seam. With
// HELMSMAN_SCREENSHOT_DIR set, each window is also saved there as a PNG.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <functional>

#include "app/helmsman_manage.h"
#include "order/ui/bargain_window.h"
#include "order/ui/confirm_order_dialog.h"
#include "order/ui/multi_confirm_dialog.h"
#include "order/ui/qt_module_ui.h"
#include "order/ui/same_confirm_dialog.h"
#include "support/fake_host.h"
#include "support/qt_app.h"
#include "support/quote_builders.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

namespace {

// Runs `act` on the modal dialog of type D once it is up.
template <class D>
void whenModal(std::function<void(D*)> act) {
    QTimer::singleShot(0, [act] {
        auto* d = qobject_cast<D*>(QApplication::activeModalWidget());
        ASSERT_NE(d, nullptr);
        act(d);
    });
}

tagBrokerOrder order(std::string acct, int dir, double vol, double price) {
    tagBrokerOrder o = brokerOrder(std::move(acct), "IF2406", dir, vol, price);
    o.nExchangeID = 1;
    return o;
}

class ConfirmWindows : public ::testing::Test {
protected:
    void SetUp() override {
        testApp();
        m_host.details["IF2406"] = contractDetail(0.2f, 1, 300);
        m_host.quotes["IF2406"] = TickBuilder().limits(2700, 3300);
        m_host.accounts = {FakeHost::account("8001", "9999", "模拟账户一"),
                           FakeHost::account("8002", "9999", "模拟账户二"),
                           FakeHost::account("8003", "9999", "模拟账户三")};
        m_manager.init(0, &m_host, m_root.string(), "u", 0);
        m_manager.setPrompter(&m_prompter);
        m_manager.setUi(&m_ui);
    }
    TempDir m_root{"helmsman_confirm_windows"};
    FakeHost m_host;
    ScriptedPrompter m_prompter;
    CHelmsmanManage m_manager;
    QtModuleUi m_ui{&m_manager};
};

TEST_F(ConfirmWindows, SingleConfirmationAnswersAndTheManagerSends) {
    tagBrokerOrder buy = order("8001", kDirBuy, 2, 3001.4);
    buy.dStopLoss = 2990;
    whenModal<ConfirmOrderDialog>([](ConfirmOrderDialog* d) {
        EXPECT_EQ(d->windowTitle(), QString::fromUtf8("委托确认[舵手]"));
        EXPECT_EQ(d->findChild<QLabel*>("confirmText")->text(),
                  QString::fromUtf8("普通单,帐户:8001\n开仓买入IF2406合约2张,价格:3001.4\n"
                                    "止损价:2990.0\n获利价:无"));
        saveScreenshot(d, "confirm_buy.png");
        d->okButton()->click();
    });
    EXPECT_EQ(m_manager.submitOrder(buy, true, "舵手", nullptr), 1);
    ASSERT_EQ(m_host.sent.size(), 1u);
    EXPECT_EQ(m_host.sent[0].strRemark, "舵手");

    tagBrokerOrder sell = order("8001", kDirSell, 1, 3000);
    sell.nOpenClose = kClose;
    whenModal<ConfirmOrderDialog>([](ConfirmOrderDialog* d) {
        saveScreenshot(d, "confirm_sell.png");
        d->cancelButton()->click();
    });
    EXPECT_EQ(m_manager.submitOrder(sell, true, "舵手", nullptr), 0);
    EXPECT_EQ(m_host.sent.size(), 1u);
}

TEST_F(ConfirmWindows, BatchEditsTravelWithTheAcceptedBatch) {
    std::vector<tagBrokerOrder> batch = {order("8001", kDirBuy, 2, 3001.4),
                                         order("8002", kDirBuy, 1, 3001.4),
                                         order("8003", kDirSell, 3, 3001.4)};
    whenModal<MultiConfirmDialog>([this](MultiConfirmDialog* d) {
        EXPECT_EQ(d->windowTitle(), QString::fromUtf8("委托确认[批量] - 双击可修改价格数量"));
        QTableWidget* t = d->table();
        ASSERT_EQ(t->rowCount(), 3);
        EXPECT_EQ(t->item(0, CMultiConfirm::kColAccount)->text(),
                  QString::fromUtf8("8001(模拟账户一)"));
        t->item(0, CMultiConfirm::kColVolume)->setText("5");      // accepted
        t->item(1, CMultiConfirm::kColPrice)->setText("3001.3");  // rounded up for a buy
        t->item(2, CMultiConfirm::kColPrice)->setText("3400");    // outside the band: refused
        EXPECT_EQ(t->item(1, CMultiConfirm::kColPrice)->text(), "3001.4");
        EXPECT_EQ(t->item(2, CMultiConfirm::kColPrice)->text(), "3001.4");
        ASSERT_EQ(m_prompter.boxes.size(), 1u);
        EXPECT_EQ(m_prompter.lastCaption(), "提示");
        saveScreenshot(d, "batch_confirm.png");
        d->okButton()->click();
    });
    EXPECT_EQ(m_manager.submitBatch(batch, true, "批量", nullptr), 1);
    ASSERT_EQ(m_host.sent.size(), 3u);
    EXPECT_DOUBLE_EQ(m_host.sent[0].dVolume, 5);
    EXPECT_DOUBLE_EQ(m_host.sent[1].dPrice, 3001.4);
    EXPECT_DOUBLE_EQ(m_host.sent[2].dPrice, 3001.4);
}

TEST_F(ConfirmWindows, LikeOrdersConfirmationSendsOnAcceptOnly) {
    m_ui.showSameConfirm({order("8001", kDirSell, 2, 3001.4), order("8002", kDirSell, 1, 3001.4)},
                         "多帐户");
    SameConfirmDialog* d = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* s = qobject_cast<SameConfirmDialog*>(w); s && s->isVisible()) d = s;
    ASSERT_NE(d, nullptr);
    EXPECT_FALSE(d->isModal());
    EXPECT_TRUE(m_host.sent.empty());
    EXPECT_EQ(d->summary()->text(), QString::fromUtf8("开仓卖出IF2406,共2笔,合计3张"));
    saveScreenshot(d, "same_confirm.png");
    d->okButton()->click();
    d->okButton()->click();  // a second click sends nothing more
    EXPECT_EQ(m_host.sent.size(), 2u);
    EXPECT_EQ(m_host.sent[1].strAccountID, "8002");
}

TEST_F(ConfirmWindows, ThreeFillsOneNoticeThreeEntriesInArrivalOrder) {
    HelmsmanSettings s = m_manager.settings();
    s.bShowFilledOrder = 1;
    m_manager.saveSettings(s);
    tagBargainOrder f;
    f.strAccountID = "8001";
    f.nExchangeID = 1;
    f.strCode = "IF2406";
    for (int i = 0; i < 3; ++i) {
        f.nDirection = i == 1 ? kDirSell : kDirBuy;
        f.nOpenClose = i == 2 ? kClose : kOpen;
        f.dVolume = i + 1;
        f.dPrice = 3001.4 + i;
        f.strContractNo = std::to_string(i + 1);
        f.tTime = 1717378205 + i;
        m_manager.dataChange(kEventNewFill, reinterpret_cast<std::uintptr_t>(&f));
    }
    BargainWindow* w = m_ui.fillNotice();
    ASSERT_NE(w, nullptr);
    int notices = 0;
    for (QWidget* t : QApplication::topLevelWidgets())
        notices += qobject_cast<BargainWindow*>(t) != nullptr;
    EXPECT_EQ(notices, 1);
    EXPECT_TRUE(w->isVisible());
    ASSERT_EQ(w->list()->rowCount(), 3);
    EXPECT_EQ(w->list()->item(0, 2)->text(),
              QString::fromUtf8("买入IF2406合约1张[合同号:1],成交价格:3001.4"));
    EXPECT_EQ(w->list()->item(1, 1)->text(), QString::fromUtf8("[8001]开仓卖出成交"));
    EXPECT_EQ(w->latestTitle()->text(), QString::fromUtf8("[8001]平仓买入成交"));
    EXPECT_EQ(w->list()->currentRow(), 2);
    saveScreenshot(w, "fill_notice.png");
}

TEST_F(ConfirmWindows, TriggerBatchSendsEachInListOrderOnAccept) {
    std::vector<tagTriggerOrder> triggers(2);
    for (int i = 0; i < 2; ++i) {
        triggers[i].strAccountID = i ? "8002" : "8001";
        triggers[i].strBrokerID = "9999";
        triggers[i].nExchangeID = 1;
        triggers[i].strCode = "IF2406";
        triggers[i].nDirection = kDirBuy;
        triggers[i].nTriggerType = kTriggerBuyChase;
        triggers[i].dVolume = 1;
        triggers[i].dTriggerPrice = 3010;
    }
    triggers[0].dTakeProfit = 3050;
    MultiTriggerConfirmDialog d(std::make_unique<CMultiTriggerConfirm>(triggers, "舵手", &m_host),
                                m_manager);
    EXPECT_EQ(d.windowTitle(), QString::fromUtf8("触发单确认[舵手]"));
    EXPECT_EQ(d.table()->item(1, CMultiTriggerConfirm::kColPrice)->text(),
              QString::fromUtf8("市价"));
    saveScreenshot(&d, "trigger_batch_confirm.png");
    EXPECT_TRUE(m_host.sentTriggers.empty());
    d.okButton()->click();
    ASSERT_EQ(m_host.sentTriggers.size(), 2u);
    EXPECT_EQ(m_host.sentTriggers[0].strAccountID, "8001");
    EXPECT_EQ(m_host.sentTriggers[1].strAccountID, "8002");
    EXPECT_TRUE(m_prompter.boxes.empty());
}

TEST_F(ConfirmWindows, AlgoHandOverTellsTheTraderNothingWasSent) {
    m_manager.setAlgoTrading(true);
    tagAlgoSetting algo;
    algo.nBaseLine = 5;
    tagBrokerOrder big = order("8001", kDirBuy, 8, 3001.4);
    EXPECT_EQ(m_manager.submitOrder(big, false, "舵手", &algo), 0);
    EXPECT_TRUE(m_host.sent.empty());
    ASSERT_EQ(m_prompter.boxes.size(), 1u);
    EXPECT_EQ(m_prompter.boxes[0].caption, "提示");
    EXPECT_NE(m_prompter.boxes[0].text.find("1笔"), std::string::npos);
}

}  // namespace
