// The desk's monitors: row builders, the keyed model, sorting, and the monitors against the
// simulated exchange (one row per event, selection and scroll kept, actions by order id).
#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <functional>

#include "host/gbk_codec.h"
#include "shell/desk_style.h"
#include "shell/monitor_set.h"
#include "sim/sim_exchange.h"
#include "support/model_signals.h"
#include "support/qt_app.h"
#include "support/quote_builders.h"
#include "support/scripted.h"

namespace {

const DecimalsOf kTwoDecimals = [](std::int32_t, const std::string&) { return 2; };

RecordCell cell(const char* text, double number = std::numeric_limits<double>::quiet_NaN()) {
    RecordCell c;
    c.text = text;
    c.number = number;
    return c;
}

RecordRow record(const char* key, std::vector<RecordCell> cells) {
    RecordRow r;
    r.key = key;
    r.cells = std::move(cells);
    return r;
}

TEST(MonitorRows, OrderRowsCarryKeyLivenessSortValuesAndTheWholeStatusMessage) {
    tagBrokerOrder o;
    o.strAccountID = "880001";
    o.strBrokerID = "9999";
    o.strCode = "rb2105";
    o.strOrderID = "12";
    o.nDirection = kDirBuy;
    o.dVolume = 2;
    o.dPrice = 4401.5;
    o.tCreateTime = 1609725600;
    o.nStatus = kOrderRejected;
    o.strStatusMsg = "资金不足，可用资金 1000.00，需要 8802.00";
    const RecordRow r = orderRow(o, kTwoDecimals);
    EXPECT_EQ(r.key, "880001|9999|12");
    EXPECT_EQ(splitRowKey(r.key), (QStringList{"880001", "9999", "12"}));
    EXPECT_FALSE(r.live);
    EXPECT_EQ(r.tip, QString::fromUtf8("已废除：资金不足，可用资金 1000.00，需要 8802.00"));
    EXPECT_EQ(r.cells[kOrderColStatusMsg].text, QString::fromStdString(o.strStatusMsg));
    EXPECT_EQ(r.cells[kOrderColPrice].text, "4401.50");
    EXPECT_EQ(r.cells[kOrderColPrice].number, 4401.5);
    EXPECT_EQ(r.cells[kOrderColId].number, 12);
    EXPECT_EQ(r.cells[kOrderColTime].number, 1609725600);  // the full time, not the clock text
    EXPECT_EQ(r.symbol, (tagSymbol{0, "rb2105"}));

    for (auto s : {kOrderSending, kOrderQueued, kOrderPartFilled, kOrderCancelling}) {
        o.nStatus = s;
        EXPECT_TRUE(orderRow(o, kTwoDecimals).live) << s;
    }
    for (auto s : {kOrderFilled, kOrderCancelled, kOrderPartCancelled, kOrderExpired}) {
        o.nStatus = s;
        EXPECT_FALSE(orderRow(o, kTwoDecimals).live) << s;
    }

    tagOpenedPosition flat;
    flat.strAccountID = "880002";
    flat.strCode = "IF2101";
    EXPECT_FALSE(positionRow(flat, kTwoDecimals).live);
    flat.dShort = 1;
    EXPECT_TRUE(positionRow(flat, kTwoDecimals).live);
}

TEST(MonitorSort, NumbersAndTimesByValueTextsByText) {
    const struct {
        RecordCell a, b;
        bool less;
    } cases[] = {
        {cell("9", 9), cell("10", 10), true},  // not "10" < "9"
        {cell("10", 10), cell("9", 9), false},
        {cell("-5.00", -5), cell("3.00", 3), true},
        {cell("23:59:59", 1609775999), cell("09:00:00", 1609808400), true},  // next day
        {cell("4400.00", 4400), cell("—"), true},  // an absent price after every number
        {cell("—"), cell("4400.00", 4400), false},
        {cell("买入"), cell("卖出"), QString("买入") < QString("卖出")},
        {cell("a"), cell("a"), false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(recordCellLess(c.a, c.b), c.less)
            << c.a.text.toStdString() << " vs " << c.b.text.toStdString();
    }
}

TEST(MonitorSort, EqualCellsKeepArrivalOrderSoTheNewestComeFirstDescending) {
    testApp();
    RecordTableModel m({"time"});
    for (const char* key : {"1", "2", "3"}) m.upsert(record(key, {cell("10:00:00", 36000)}));
    MonitorProxy p(m, false);
    p.sort(0, Qt::DescendingOrder);
    m.upsert(record("4", {cell("10:00:00", 36000)}));
    QStringList keys;
    for (int r = 0; r < p.rowCount(); ++r) keys << p.rowAt(r)->key;
    EXPECT_EQ(keys, (QStringList{"4", "3", "2", "1"}));
}

TEST(RecordTable, OneRowPerRecordByKey) {
    testApp();
    RecordTableModel m({"a", "b"});
    auto row = [](const char* key, const char* text) {
        return record(key, {cell(key), cell(text)});
    };
    m.setRows({row("1", "x"), row("2", "y")});
    ModelSignals sig(m);
    EXPECT_EQ(m.upsert(row("3", "w")), 2);  // new: appended
    EXPECT_EQ(sig.inserted, 1);
    EXPECT_EQ(m.upsert(row("2", "z")), 1);  // changed: that row alone
    EXPECT_EQ(sig.changed, std::vector<int>{1});
    m.upsert(row("2", "z"));  // unchanged: nothing signalled
    EXPECT_EQ(sig.changed.size(), 1u);
    m.setRows({row("1", "x"), row("2", "z"), row("3", "w"), row("4", "v")});
    EXPECT_EQ(sig.resets, 0);
    EXPECT_EQ(sig.inserted, 2);
    m.setRows({row("4", "v")});  // keys gone (logoff): a reset
    EXPECT_EQ(sig.resets, 1);
    EXPECT_EQ(m.rowOfKey("4"), 0);
    EXPECT_EQ(m.rowOfKey("1"), -1);
}

// A prompter whose question can run something first, as a user who waits while events
// arrive would.
class HookPrompter : public ScriptedPrompter {
public:
    std::function<void()> whileAsking;
    bool ask(const std::string& caption, const std::string& text, PromptIcon icon) override {
        if (whileAsking) whileAsking();
        return ScriptedPrompter::ask(caption, text, icon);
    }
};

class MonitorTest : public ::testing::Test, public ISimEventSink {
protected:
    static void SetUpTestSuite() { testApp(); }  // before the fixture's window is made
    void SetUp() override {
        testApp();
        SimOptions so;
        so.randomWalk = false;
        m_exchange = std::make_unique<SimExchange>(m_clock, so);
        m_window.resize(900, 400);
        MonitorSet::Hooks hooks;
        hooks.openTicket = [this](const tagSymbol& s) { m_opened.push_back(s); };
        hooks.modifyOrder = [this](const tagBrokerOrder& o) { m_modified.push_back(o); };
        m_monitors = std::make_unique<MonitorSet>(*m_exchange, m_prompter, kTwoDecimals,
                                                  std::move(hooks), &m_window);
        auto* layout = new QVBoxLayout(&m_window);
        layout->addWidget(m_monitors->tabs());
        m_monitors->tabs()->setCurrentIndex(1);  // all orders
        m_monitors->applyHeaderSorts();
        m_monitors->flush(true);
        m_exchange->setDeskSink(this);
    }
    void TearDown() override { m_exchange->setDeskSink(nullptr); }

    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        m_monitors->onEvent(code, data);
    }
    void onLogonStateChange(std::uint32_t, std::uintptr_t) override {
        m_monitors->onLogonChanged();
    }
    void onWindowMessage(std::uint32_t, std::uint32_t, std::uintptr_t, std::uintptr_t) override {}

    // A buy of rb2105 far below the market: it rests. Returns the order id.
    std::string rest(double volume = 1, double ticksBelow = 0) {
        IModuleFutureTrader::ITickEx q;
        m_exchange->GetMarketQuote({0, "rb2105"}, q);
        tagBrokerOrder o =
            brokerOrder("880001", "rb2105", kDirBuy, volume, q.dLowerLimit + ticksBelow);
        EXPECT_EQ(m_exchange->SendOrder(o), 1) << o.strStatusMsg;
        m_clock.advanceMs(1000);
        return o.strOrderID;
    }
    void deliver() {
        m_exchange->deliverPending();
        m_monitors->flush();
    }
    QTableView* view(const char* name) { return m_monitors->view(name); }
    MonitorProxy* proxy(const char* name) {
        return static_cast<MonitorProxy*>(view(name)->model());
    }
    QString keyOf(const std::string& id) { return orderKey("880001", "9999", id); }
    void select(const char* name, const std::string& id) {
        view(name)->selectRow(proxy(name)->rowOfKey(keyOf(id)));
    }
    QString selectedKey(const char* name) {
        const auto rows = MonitorSet::selectedRecords(view(name));
        return rows.size() == 1 ? rows[0]->key : QString("<%1 selected>").arg(rows.size());
    }
    std::string status(const std::string& id) {
        tagBrokerOrder o;
        m_exchange->GetOrder(o, "880001", "9999", id);
        return std::to_string(o.nStatus);
    }

    ManualClock m_clock{QDateTime(QDate(2021, 1, 4), QTime(10, 0)).toMSecsSinceEpoch()};
    std::unique_ptr<SimExchange> m_exchange;
    QWidget m_window;
    HookPrompter m_prompter;
    std::vector<tagSymbol> m_opened;
    std::vector<tagBrokerOrder> m_modified;
    std::unique_ptr<MonitorSet> m_monitors;
};

TEST_F(MonitorTest, EachEventTouchesOneRowAndTheSelectionStaysOnItsOrder) {
    const std::string first = rest(), second = rest();
    deliver();
    ASSERT_EQ(proxy("workingOrders")->rowCount(), 2);
    EXPECT_EQ(proxy("workingOrders")->rowAt(0)->key, keyOf(second));  // newest first
    select("workingOrders", first);

    auto& orders = proxy("allOrders")->records();
    ModelSignals sig(orders);
    const std::string third = rest();
    deliver();
    EXPECT_EQ(sig.inserted, 1);
    EXPECT_EQ(sig.resets, 0);
    EXPECT_EQ(proxy("workingOrders")->rowAt(0)->key, keyOf(third));
    EXPECT_EQ(selectedKey("workingOrders"), keyOf(first));

    sig.changed.clear();
    ASSERT_EQ(m_exchange->DeleteOrder("880001", "9999", second), 1);
    deliver();  // 撤单中 and 已撤单 in one delivery: one row update
    EXPECT_EQ(sig.changed, std::vector<int>{orders.rowOfKey(keyOf(second))});
    EXPECT_EQ(proxy("workingOrders")->rowCount(), 2);  // gone from the working orders only
    EXPECT_EQ(proxy("allOrders")->rowCount(), 3);
    EXPECT_EQ(selectedKey("workingOrders"), keyOf(first));
}

TEST_F(MonitorTest, SortingByAColumnKeepsTheSelection) {
    const std::string cheap = rest(3, 0), dear = rest(1, 5), mid = rest(2, 2);
    deliver();
    select("workingOrders", mid);
    const struct {
        int column;
        Qt::SortOrder order;
        std::vector<std::string> ids;
    } cases[] = {
        {kOrderColPrice, Qt::AscendingOrder, {cheap, mid, dear}},
        {kOrderColVolume, Qt::DescendingOrder, {cheap, mid, dear}},
        {kOrderColTime, Qt::AscendingOrder, {cheap, dear, mid}},
        {kOrderColTime, Qt::DescendingOrder, {mid, dear, cheap}},
    };
    for (const auto& c : cases) {
        view("workingOrders")->sortByColumn(c.column, c.order);
        for (int r = 0; r < 3; ++r) {
            EXPECT_EQ(proxy("workingOrders")->rowAt(r)->key, keyOf(c.ids[r]))
                << "column " << c.column << " row " << r;
        }
        EXPECT_EQ(selectedKey("workingOrders"), keyOf(mid));
    }
    if (std::getenv("HELMSMAN_SCREENSHOT_DIR")) {
        // A picture for people: the desk's look, a fuller book sorted by price, one picked.
        applyDeskStyle(testApp());
        for (int i = 0; i < 6; ++i) rest(1 + i % 3, 3 + i * 4);
        m_exchange->rejectNextOrders(1, "可用资金不足，需要 8,802.00，可用 1,000.00");
        tagBrokerOrder refused =
            brokerOrder("880001", "rb2105", kDirSell, 9,
                        proxy("allOrders")->rowAt(0)->cells[kOrderColPrice].number);
        m_exchange->SendOrder(refused);
        ASSERT_EQ(m_exchange->DeleteOrder("880001", "9999", cheap), 1);
        deliver();
        view("allOrders")->sortByColumn(kOrderColPrice, Qt::AscendingOrder);
        select("allOrders", mid);
        m_window.resize(900, 300);
        m_window.show();
        QApplication::processEvents();
        saveScreenshot(m_monitors->tabs(), "monitor_sorted.png");
    }
}

TEST_F(MonitorTest, RowsArrivingAboveKeepTheRowsBeingReadInPlace) {
    for (int i = 0; i < 60; ++i) rest();
    deliver();
    m_window.show();
    QTableView* v = view("allOrders");
    QApplication::processEvents();
    ASSERT_GT(v->verticalScrollBar()->maximum(), 20);
    v->verticalScrollBar()->setValue(20);
    const QString top = proxy("allOrders")->rowAt(v->rowAt(0))->key;
    rest();
    rest();
    deliver();
    QApplication::processEvents();
    EXPECT_EQ(proxy("allOrders")->rowAt(v->rowAt(0))->key, top);
    v->verticalScrollBar()->setValue(0);  // at the top the newest come into sight
    rest();
    deliver();
    QApplication::processEvents();
    EXPECT_EQ(v->verticalScrollBar()->value(), 0);
}

TEST_F(MonitorTest, CancellingAsksFirstAndActsOnTheOrderById) {
    const std::string a = rest(), b = rest();
    deliver();
    select("workingOrders", a);
    m_prompter.answers = {false};
    EXPECT_EQ(m_monitors->cancelSelected(view("workingOrders")), 0);
    EXPECT_EQ(m_prompter.lastCaption(), "确认");
    EXPECT_EQ(m_prompter.lastText(),
              "确定撤销委托 " + a + "（rb2105 买入 " +
                  proxy("workingOrders")->rowAt(1)->cells[kOrderColPrice].text.toStdString() +
                  " 1手）吗？");
    EXPECT_EQ(status(a), std::to_string(kOrderQueued));

    // New orders arrive while the question is open: the answer still cancels order a.
    m_prompter.whileAsking = [&] {
        rest();
        rest();
        deliver();
    };
    m_prompter.answers = {true};
    EXPECT_EQ(m_monitors->cancelSelected(view("workingOrders")), 1);
    EXPECT_EQ(status(a), std::to_string(kOrderCancelled));
    EXPECT_EQ(status(b), std::to_string(kOrderQueued));
    m_prompter.whileAsking = nullptr;

    deliver();
    m_prompter.answers = {true};
    EXPECT_EQ(m_monitors->cancelAllWorking(), 3);
    EXPECT_EQ(m_prompter.lastText(), "确定撤销全部 3 笔挂单吗？");
    deliver();
    EXPECT_EQ(m_monitors->cancelAllWorking(), 0);
    EXPECT_EQ(m_prompter.lastText(), "没有可撤的挂单。");
    select("allOrders", a);
    EXPECT_EQ(m_monitors->cancelSelected(view("allOrders")), 0);  // a cancelled order
    EXPECT_EQ(m_prompter.lastText(), "请先选择要撤销的挂单。");
}

TEST_F(MonitorTest, ChangingAnOrderHandsTheSelectedWorkingOrderOver) {
    const std::string a = rest(2);
    deliver();
    select("workingOrders", a);
    EXPECT_TRUE(m_monitors->modifySelected(view("workingOrders")));
    ASSERT_EQ(m_modified.size(), 1u);
    EXPECT_EQ(m_modified[0].strOrderID, a);
    EXPECT_DOUBLE_EQ(m_modified[0].dVolume, 2);
    m_exchange->DeleteOrder("880001", "9999", a);
    deliver();
    select("allOrders", a);
    EXPECT_FALSE(m_monitors->modifySelected(view("allOrders")));
    EXPECT_EQ(m_prompter.lastText(), "请先选择要修改的挂单。");
    EXPECT_EQ(m_modified.size(), 1u);
}

TEST_F(MonitorTest, AFillAppendsAFillAndUpdatesItsPosition) {
    IModuleFutureTrader::ITickEx q;
    m_exchange->GetMarketQuote({0, "rb2105"}, q);
    ASSERT_TRUE(m_exchange->applyQuote(q));  // a round with volume at the touch
    deliver();
    tagBrokerOrder o = brokerOrder("880002", "rb2105", kDirBuy, 1, q.dAsk);
    ASSERT_EQ(m_exchange->SendOrder(o), 1);
    auto& positions = proxy("positions")->records();
    ModelSignals sig(positions);
    deliver();
    ASSERT_EQ(proxy("fills")->rowCount(), 1);
    tagOpenedPosition held;
    held.strAccountID = "880002";
    held.strBrokerID = "9999";
    held.strCode = "rb2105";
    const int row = positions.rowOfKey(positionKey(held));
    EXPECT_EQ(sig.changed, std::vector<int>{row});
    EXPECT_EQ(positions.rowAt(row)->cells[2].text, "6");  // 5 from yesterday and 1 more
}

TEST_F(MonitorTest, ContextMenuCopyAndGbkCsvExport) {
    const std::string a = rest();
    deliver();
    m_exchange->rejectNextOrders(1, "价格不合法, 请重新输入");
    tagBrokerOrder bad = brokerOrder("880001", "rb2105", kDirSell, 1,
                                     proxy("allOrders")->rowAt(0)->cells[kOrderColPrice].number);
    m_exchange->SendOrder(bad);
    deliver();

    QTableView* v = view("allOrders");
    select("allOrders", a);
    const QPoint at =
        v->visualRect(v->model()->index(proxy("allOrders")->rowOfKey(keyOf(a)), 0)).center();
    std::unique_ptr<QMenu> menu(m_monitors->contextMenu(v, at));
    QStringList texts;
    for (QAction* act : menu->actions()) {
        if (!act->isSeparator()) texts << act->text() + (act->isEnabled() ? "" : "(off)");
    }
    EXPECT_EQ(texts, (QStringList{"撤单", "改单", "复制", "下单：rb2105", "导出CSV..."}));
    menu->actions()[3]->trigger();
    ASSERT_EQ(m_opened.size(), 1u);
    EXPECT_EQ(m_opened[0], (tagSymbol{0, "rb2105"}));

    QTemporaryDir dir;
    const QString path = dir.filePath("orders.csv");
    ASSERT_TRUE(m_monitors->exportCsv(v, path));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QString text = QString::fromStdString(gbk::toUtf8(f.readAll().toStdString()));
    const QStringList lines = text.split("\r\n", Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0], orderHeaders().join(','));
    EXPECT_TRUE(lines[1].contains(",\"价格不合法, 请重新输入\",")) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].startsWith(rowTexts(*v, 1).join(',')));
}

}  // namespace
