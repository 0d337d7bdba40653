// The conditional strategy's window, offscreen: the labels that follow the direction and the
// condition, the trailing spin's range, and start, resume and close wired to the core.
#include "amt/ui/amt_order_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "amt/amt_fixture.h"
#include "amt/amt_strings.h"
#include "support/qt_app.h"

namespace {

// The strategy's fixture with the instrument lists the window offers and a quote to start on.
class AmtWindowTest : public amttest::AmtTest {
protected:
    AmtWindowTest() {
        testApp();
        host.exchanges = {{3, "中国金融期货交易所"}};
        host.symbolsByExchange[3] = {{3, "IF2101"}, {3, "IF2102"}};
        host.details["IF2102"] = contractDetail(0.2f, 1, 300);
        host.quotes["IF2101"] = TickBuilder(3, "IF2101").last(5230).bid(5229.8, 3).ask(5230, 4);
        window = std::make_unique<AMTOrderWindow>(manager);
    }
    template <class T>
    T* find(const char* name) {
        return window->findChild<T*>(name);
    }

    std::unique_ptr<AMTOrderWindow> window;
};

TEST_F(AmtWindowTest, LabelsFollowTheDirectionAndTheCondition) {
    struct Row {
        bool isLong;
        int condition;
        const char* entry;
        const char* exit;
    };
    const Row rows[] = {{true, 0, "时追买建仓", "时吊卖平仓"},
                        {true, 1, "时吊买建仓", "时追卖平仓"},
                        {false, 0, "时吊卖建仓", "时追买平仓"},
                        {false, 1, "时追卖建仓", "时吊买平仓"}};
    for (const Row& r : rows) {
        find<QRadioButton>(r.isLong ? "long" : "short")->setChecked(true);
        find<QComboBox>("entryPriceCon")->setCurrentIndex(r.condition);
        find<QComboBox>("exitPriceCon")->setCurrentIndex(r.condition);
        EXPECT_EQ(find<QLabel>("entryLabel")->text().toStdString(), r.entry);
        EXPECT_EQ(find<QLabel>("exitLabel")->text().toStdString(), r.exit);
    }
    auto* trailSet = find<QSpinBox>("trailSet");
    find<QComboBox>("trailType")->setCurrentIndex(1);
    EXPECT_EQ(trailSet->minimum(), 1);
    EXPECT_EQ(trailSet->maximum(), 100);
    find<QComboBox>("trailType")->setCurrentIndex(0);
    EXPECT_EQ(trailSet->minimum(), 0);
    EXPECT_EQ(trailSet->maximum(), 9999);
}

TEST_F(AmtWindowTest, StartLocksTheParametersAndQuotesDriveTheCaption) {
    EXPECT_EQ(window->windowTitle().toStdString(), amt_text::kToolName);
    EXPECT_EQ(window->core().params().szSymbolCode, "IF2101");
    find<QSpinBox>("maxLots")->setValue(2);
    // A dip line above the last price (a question), a narrow book, a trailing stop.
    find<QCheckBox>("entryPriceOn")->setChecked(true);
    find<QComboBox>("entryPriceCon")->setCurrentIndex(1);
    find<QDoubleSpinBox>("entryPrice")->setValue(5235);
    find<QCheckBox>("entryFilter1")->setChecked(true);
    find<QLineEdit>("entryFilter1Key")->setText("SPREAD");
    find<QComboBox>("entryFilter1Type")->setCurrentIndex(3);
    find<QDoubleSpinBox>("entryFilter1Value")->setValue(0.4);
    find<QCheckBox>("trailOn")->setChecked(true);
    find<QSpinBox>("trailStart")->setValue(10);
    find<QSpinBox>("trailSet")->setValue(5);
    host.table["IF2101|SPREAD"] = "0.2";
    prompter.answers = {true};
    ASSERT_TRUE(window->startStrategy());
    EXPECT_EQ(prompter.lastText(), amt_text::kEntryMetDipBuy);
    EXPECT_FALSE(find<QPushButton>("start")->isEnabled());
    EXPECT_TRUE(find<QPushButton>("stop")->isEnabled());
    EXPECT_FALSE(find<QComboBox>("symbol")->isEnabled());
    EXPECT_FALSE(find<QPushButton>("resume")->isEnabled());

    IModuleFutureTrader::ITickEx t =
        TickBuilder(3, "IF2101").last(5230).bid(5229.8, 3).ask(5230, 4);
    clock.advanceMs(1000);
    manager.sendMessage(window->core().handle(), kMsgDataChange, kEventQuote,
                        reinterpret_cast<std::uintptr_t>(&t));
    EXPECT_EQ(window->windowTitle().toStdString(), "条件通[E:1,X:0]");
    EXPECT_EQ(find<QSpinBox>("position")->value(), 1);
    EXPECT_EQ(find<QLabel>("cumulative")->text().toStdString(), "累计:1");

    prompter.answers = {false};
    EXPECT_FALSE(window->close());  // the close question, answered No
    window->stopStrategy();
    EXPECT_TRUE(find<QComboBox>("symbol")->isEnabled());
    saveScreenshot(window.get(), "amt_order.png");
}

}  // namespace
