// Wiring of the options page: controls filled from the record, live enabling, accept saves.
#include "app/ui/trade_option_page.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>

#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/qt_app.h"
#include "support/temp_dir.h"

namespace {

template <class W>
W* findByText(QWidget& page, const char* text) {
    for (W* w : page.findChildren<W*>())
        if (w->text() == QString::fromUtf8(text)) return w;
    return nullptr;
}

TEST(TradeOptionPage, FillsEnablesAndSaves) {
    testApp();
    const TempDir root("helmsman_option_page");
    FakeHost host;
    host.accounts = {FakeHost::account("880001", "9999", "模拟一"),
                     FakeHost::account("880002", "8888", "模拟二", 2)};
    CHelmsmanManage manager;
    manager.init(0, &host, root.string(), "u", 0);

    CTradeOptionPage page(nullptr, &manager);
    EXPECT_EQ(page.windowTitle(), QStringLiteral("交易"));
    auto* defaultAccount = findByText<QCheckBox>(page, "默认帐户");
    auto* singleLimit = findByText<QCheckBox>(page, "使用单笔上限，每笔上限:");
    auto* saveLast = findByText<QRadioButton>(page, "保存舵手最后使用数量");
    auto* filled = findByText<QCheckBox>(page, "默认显示成交回报页面");
    ASSERT_TRUE(defaultAccount && singleLimit && saveLast && filled);
    auto* accounts = page.findChild<QComboBox*>();
    ASSERT_EQ(accounts->count(), 2);
    EXPECT_EQ(accounts->itemText(1), QStringLiteral("880002(模拟二)"));
    EXPECT_FALSE(accounts->isEnabled());

    defaultAccount->setChecked(true);
    EXPECT_TRUE(accounts->isEnabled());
    accounts->setCurrentIndex(1);
    singleLimit->setChecked(true);
    auto boxes = page.findChildren<QLineEdit*>();
    ASSERT_EQ(boxes.size(), 2);
    EXPECT_TRUE(boxes[1]->isEnabled());
    boxes[1]->setText("30");
    boxes[0]->setText("2");
    filled->setChecked(true);

    // Screenshot for a human to look at, when asked for.
    page.resize(page.sizeHint());
    saveScreenshot(&page, "trade_option_page.png");

    saveLast->setChecked(true);
    EXPECT_FALSE(boxes[0]->isEnabled());
    saveLast->setChecked(false);
    findByText<QRadioButton>(page, "使用默认数量")->setChecked(true);
    EXPECT_TRUE(boxes[0]->isEnabled());

    EXPECT_TRUE(page.onApply());
    const HelmsmanSettings& s = manager.settings();
    EXPECT_EQ(s.bUserDefaultAcct, 1);
    EXPECT_EQ(s.strAccountID, "880002");
    EXPECT_EQ(s.nAccountType, 2);
    EXPECT_EQ(s.bUseSingleLimit, 1);
    EXPECT_EQ(s.dMaxSingleLimitVol, 30);
    EXPECT_EQ(s.dDefaultVolume, 2);
    EXPECT_EQ(s.bShowFilledOrder, 1);
    // And it is on disk: a fresh load sees the same.
    EXPECT_EQ(loadSettings(manager.profilePath()).strAccountID, "880002");
}

}  // namespace
