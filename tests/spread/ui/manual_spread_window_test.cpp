// The manual spread window, offscreen: the lists and toggles reach the core, the chart follows
// the history, and (with HELMSMAN_SCREENSHOT_DIR set) the documentation screenshots of the
// two-leg window with its chart and of the three-leg window.
#include "spread/ui/manual_spread_window.h"

#include <QLabel>
#include <QLineSeries>
#include <QListWidget>
#include <QPushButton>
#include <QValueAxis>
#include <cmath>

#include "spread/manual_spread_fixture.h"
#include "spread/manual_spread_strings.h"
#include "spread/ui/manual_spread_chart.h"
#include "support/qt_app.h"

namespace {

using namespace mstest;

struct ManualSpreadWindowTest : ManualSpreadTest {
    ManualSpreadWindowTest() { testApp(); }

    // A calm session: each leg moves a few ticks around its opening quote.
    void feed(ManualSpreadWindow& w, int quotes) {
        for (int k = 0; k < quotes; ++k) {
            const double a = 4400 + std::round(3 * std::sin(k * 0.3) + k * 0.05);
            const double b = 4350 + std::round(2 * std::cos(k * 0.21));
            const std::int64_t at = localMs(10, 0, 0) + k * 500;
            clock.setNowMs(at);
            w.core().onQuote(tick(0, "rb2105", a, a + 1, a, 4180, 4620, at));
            w.core().onQuote(tick(0, "rb2110", b, b + 2, b + 1, 4130, 4570, at + 120));
        }
        w.flush();
    }
};

TEST_F(ManualSpreadWindowTest, ListsAndTogglesReachTheCoreAndTheChartFollows) {
    ManualSpreadWindow w(manager);
    w.chooseLeg(0, 0, "rb2105");
    w.chooseLeg(1, 0, "rb2110");
    feed(w, 30);
    EXPECT_EQ(w.windowTitle().toStdString(), w.core().caption());
    EXPECT_EQ(w.rowLabel(SpreadRow::Ask)->text().toStdString(), w.core().rowText(SpreadRow::Ask));

    // The chart is off by default; switched on it draws the whole history.
    EXPECT_FALSE(w.chart()->isVisibleTo(&w));
    w.chartButton()->click();
    EXPECT_TRUE(w.chart()->isVisibleTo(&w));
    EXPECT_EQ(w.core().settings().bShowChart, 1);
    EXPECT_EQ(w.chart()->bidSeries()->count(), static_cast<int>(w.core().history().size()));
    EXPECT_EQ(w.chart()->askSeries()->name(), "SpreadAsk");
    EXPECT_EQ(w.chart()->priceAxis()->min(), w.core().history().range().first);
    EXPECT_EQ(w.chart()->tipAt(w.chart()->bidSeries(), 0).toStdString(),
              "买盘:" + std::to_string(static_cast<int>(w.core().history().at(0).bid)));

    // Leg C follows the butterfly switch; the calendar roll is for two legs only.
    EXPECT_FALSE(w.hedgeButton(2)->isEnabled());
    w.butterflyButton()->click();
    EXPECT_TRUE(w.hedgeButton(2)->isEnabled());
    EXPECT_EQ(w.core().legCount(), 3);
    w.butterflyButton()->click();

    // Nothing checked: the send is refused; with an account and A's hedge toggle it goes.
    EXPECT_EQ(w.accountList()->count(), 2);
    w.buyButton()->click();
    EXPECT_EQ(prompter.lastText(), manual_spread_text::kNoAccount);
    w.checkAccounts({"880002"});
    w.hedgeButton(0)->click();
    w.sellButton()->click();
    ASSERT_EQ(host.sent.size(), 2u);
    EXPECT_EQ(host.sent[0].strAccountID, "880002");
    EXPECT_EQ(host.sent[0].nDirection, kDirSell);
    EXPECT_EQ(host.sent[0].nHedge, kHedge);
    EXPECT_EQ(host.sent[1].nHedge, kSpeculation);
}

TEST_F(ManualSpreadWindowTest, Screenshots) {
    ManualSpreadWindow two(manager);
    two.chooseLeg(0, 0, "rb2105");
    two.chooseLeg(1, 0, "rb2110");
    two.checkAccounts({"880001"});
    two.chartButton()->click();
    feed(two, 80);
    two.show();
    saveScreenshot(&two, "manual_spread.png");

    // A steel mill's margin: rebar against 1.6 iron ore and 0.5 coke, as a named template.
    ManualSpreadWindow three(manager);
    tagManualSpreadTemplate margin;
    margin.strName = "螺纹利润";
    margin.legs = {{{0, "rb2105"}, {1, "i2105"}, {1, "j2105"}}};
    margin.dSpreadUnit = {1, 1.6, 0.5};
    margin.nSpreadLots = {10, 16, 5};
    margin.nOrderOffset = 2;
    margin.bButterfly = margin.bConfirmOrder = margin.bFirstLotsConfirm = 1;
    three.core().applyTemplate(margin);
    three.flush();
    three.hedgeButton(2)->click();
    three.checkAccounts({"880001", "880002"});
    EXPECT_EQ(three.core().legCount(), 3);
    EXPECT_TRUE(three.butterflyButton()->isChecked());
    EXPECT_TRUE(three.hedgeButton(2)->isChecked());
    three.show();
    saveScreenshot(&three, "manual_spread_3legs.png");
}

}  // namespace
