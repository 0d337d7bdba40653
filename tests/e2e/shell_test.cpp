// The desktop shell: its command line, the add-in loader, the monitors' row builders and
// models, and the desk wired to the simulated exchange with a stand-in add-in loaded at run
// time (events reach the add-in, monitors follow the exchange, the quote board links open
// tickets).
#include <gtest/gtest.h>

#include <QApplication>
#include <QDateTime>
#include <QTableView>
#include <QTemporaryDir>

#include "host/clock.h"
#include "shell/addin_library.h"
#include "shell/desk_window.h"
#include "shell/monitor_rows.h"
#include "shell/quote_board_model.h"
#include "shell/record_table_model.h"
#include "shell/shell_options.h"
#include "sim/sim_exchange.h"
#include "support/qt_app.h"
#include "support/quote_builders.h"

namespace {

// Records a model's change signals: the rows dataChanged named, and how many resets.
struct ModelSignals {
    explicit ModelSignals(QAbstractItemModel& m) {
        QObject::connect(
            &m, &QAbstractItemModel::dataChanged,
            [this](const QModelIndex& tl, const QModelIndex&) { changedRows.push_back(tl.row()); });
        QObject::connect(&m, &QAbstractItemModel::modelReset, [this] { ++resets; });
    }
    std::vector<int> changedRows;
    int resets = 0;
};

// ---- Command line ------------------------------------------------------------------------

TEST(ShellOptions, AcceptsEveryOption) {
    ShellOptions o;
    QString error;
    ASSERT_TRUE(parseShellOptions(
        {"--root", "/r", "--user=li", "--market-time", "09:30:00", "--ticks", "a.csv", "b.csv",
         "--open", "OpenHelmsman,OpenLocalTrigger", "--screenshot", "/s", "--quit-after", "3000"},
        o, error))
        << error.toStdString();
    EXPECT_EQ(o.rootDir, "/r");
    EXPECT_EQ(o.userName, "li");
    ASSERT_TRUE(o.marketTime.has_value());
    EXPECT_EQ(*o.marketTime, QTime(9, 30, 0));
    EXPECT_EQ(o.tickFiles, (QStringList{"a.csv", "b.csv"}));
    EXPECT_EQ(o.openExports, (QStringList{"OpenHelmsman", "OpenLocalTrigger"}));
    EXPECT_EQ(o.screenshotDir, "/s");
    EXPECT_EQ(o.quitAfterMs, 3000);
}

TEST(ShellOptions, Defaults) {
    ShellOptions o;
    QString error;
    ASSERT_TRUE(parseShellOptions({}, o, error));
    EXPECT_TRUE(o.rootDir.isEmpty());
    EXPECT_EQ(o.userName, "demo");
    EXPECT_FALSE(o.marketTime.has_value());
    EXPECT_EQ(o.quitAfterMs, -1);
}

TEST(ShellOptions, RefusesBadInputWithAReason) {
    const struct {
        QStringList args;
        const char* mentions;
    } cases[] = {
        {{"--bogus"}, "--bogus"},
        {{"stray"}, "stray"},
        {{"--root"}, "--root"},
        {{"--user", "--root", "/r"}, "--user"},  // an option is not a value
        {{"--market-time", "25:00:00"}, "25:00:00"},
        {{"--market-time", "9.30"}, "9.30"},
        {{"--ticks"}, "--ticks"},
        {{"--ticks", "--user", "x"}, "--ticks"},
        {{"--quit-after", "soon"}, "soon"},
        {{"--quit-after", "-5"}, "-5"},
        {{"--measure-busy", "0"}, "--measure-busy"},
    };
    for (const auto& c : cases) {
        ShellOptions o;
        QString error;
        EXPECT_FALSE(parseShellOptions(c.args, o, error)) << c.args.join(' ').toStdString();
        EXPECT_TRUE(error.contains(c.mentions))
            << c.args.join(' ').toStdString() << " -> " << error.toStdString();
    }
}

TEST(ShellOptions, MarketTimeOffsetLandsOnThatTimeToday) {
    const QDateTime now(QDate(2021, 1, 4), QTime(14, 5, 7, 250), Qt::LocalTime);
    for (const QTime target :
         {QTime(9, 30, 0), QTime(0, 0, 0), QTime(23, 59, 59), QTime(14, 5, 7)}) {
        const std::int64_t offset = marketTimeOffsetMs(target, now.toMSecsSinceEpoch());
        const QDateTime shifted =
            QDateTime::fromMSecsSinceEpoch(now.toMSecsSinceEpoch() + offset, Qt::LocalTime);
        EXPECT_EQ(shifted.date(), now.date()) << target.toString().toStdString();
        EXPECT_EQ(shifted.time(), target) << target.toString().toStdString();
    }
}

// ---- Row builders and models ---------------------------------------------------------------

tagBrokerOrder order(const char* id, std::int32_t status, double price = 4400) {
    tagBrokerOrder o;
    o.strAccountID = "880001";
    o.strBrokerID = "9999";
    o.strCode = "rb2105";
    o.strOrderID = id;
    o.nStatus = status;
    o.nDirection = kDirBuy;
    o.dVolume = 2;
    o.dPrice = price;
    return o;
}

const DecimalsOf kTwoDecimals = [](std::int32_t, const std::string&) { return 2; };

TEST(MonitorRows, WorkingOrdersAreTheOnesStillAtTheExchange) {
    const struct {
        std::int32_t status;
        bool working;
    } cases[] = {{kOrderSending, true},     {kOrderQueued, true},         {kOrderPartFilled, true},
                 {kOrderCancelling, true},  {kOrderFilled, false},        {kOrderCancelled, false},
                 {kOrderRejected, false},   {kOrderPartCancelled, false}, {kOrderExpired, false},
                 {kOrderWaitTrigger, false}};
    for (const auto& c : cases) EXPECT_EQ(isWorkingStatus(c.status), c.working) << c.status;
}

TEST(MonitorRows, OrdersNewestFirstAndWorkingFilter) {
    const std::vector<tagBrokerOrder> orders = {
        order("1", kOrderFilled), order("2", kOrderQueued, 4401.5), order("3", kOrderRejected)};
    const auto all = orderRows(orders, false, kTwoDecimals);
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[0].key, "880001|9999|3");
    EXPECT_EQ(all[2].key, "880001|9999|1");
    EXPECT_EQ(splitRowKey(all[0].key), (QStringList{"880001", "9999", "3"}));

    const auto working = orderRows(orders, true, kTwoDecimals);
    ASSERT_EQ(working.size(), 1u);
    EXPECT_EQ(working[0].key, "880001|9999|2");
    const QStringList headers = orderHeaders();
    ASSERT_EQ(working[0].cells.size(), static_cast<std::size_t>(headers.size()));
    EXPECT_EQ(working[0].cells[headers.indexOf("价格")].text, "4401.50");
    EXPECT_EQ(working[0].cells[headers.indexOf("状态")].text, "已报");
    EXPECT_EQ(working[0].cells[headers.indexOf("买卖")].text, "买入");
}

TEST(MonitorRows, FlatPositionsAreLeftOutAndLoggedOffAccountsShowNoFunds) {
    tagOpenedPosition held;
    held.strAccountID = "880002";
    held.strCode = "IF2101";
    held.dShort = 1;
    tagOpenedPosition flat = held;
    flat.strCode = "IC2101";
    flat.dShort = 0;
    const auto rows = positionRows({held, flat}, kTwoDecimals);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_TRUE(rows[0].key.endsWith("IF2101"));

    AccountLine on;
    on.info.strAccountID = "880001";
    on.loggedOn = true;
    on.summary.dBalance = 1000000;
    AccountLine off = on;
    off.info.strAccountID = "880002";
    off.loggedOn = false;
    const auto accounts = accountRows({on, off});
    const QStringList headers = accountHeaders();
    ASSERT_EQ(accounts.size(), 2u);
    ASSERT_EQ(accounts[0].cells.size(), static_cast<std::size_t>(headers.size()));
    ASSERT_EQ(accounts[1].cells.size(), static_cast<std::size_t>(headers.size()));
    EXPECT_EQ(accounts[0].cells[headers.indexOf("权益")].text, "1000000.00");
    EXPECT_EQ(accounts[1].cells[headers.indexOf("状态")].text, "未登录");
    EXPECT_EQ(accounts[1].cells[headers.indexOf("权益")].text, "—");
}

TEST(QuoteBoard, RedUpGreenDownAgainstTheSettlement) {
    const struct {
        double price, reference;
        QColor expected;
    } cases[] = {
        {4410, 4402, QuoteBoardModel::kUp},   {4390, 4402, QuoteBoardModel::kDown},
        {4402, 4402, QuoteBoardModel::kFlat}, {0, 4402, QuoteBoardModel::kFlat},
        {4410, 0, QuoteBoardModel::kFlat},    {97.625, 97.62, QuoteBoardModel::kUp},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(QuoteBoardModel::priceColor(c.price, c.reference), c.expected)
            << c.price << " vs " << c.reference;
    }
    IModuleFutureTrader::ITickEx t;
    t.dPreClose = 10;
    EXPECT_EQ(QuoteBoardModel::referencePrice(t), 10);
    t.dPreSettle = 11;
    EXPECT_EQ(QuoteBoardModel::referencePrice(t), 11);
}

TEST(QuoteBoard, AQuoteUpdatesOnlyItsRow) {
    testApp();
    QuoteBoardModel m;
    std::vector<QuoteBoardModel::Row> rows(2);
    rows[0].symbol = {0, "rb2105"};
    rows[0].decimals = 0;
    rows[1].symbol = {3, "IF2101"};
    rows[1].decimals = 1;
    m.setRows(rows);
    ModelSignals sig(m);

    IModuleFutureTrader::ITickEx t = TickBuilder(3, "IF2101").last(5234.0).preSettle(5216.2);
    ASSERT_TRUE(m.applyQuote(t));
    EXPECT_EQ(sig.changedRows, std::vector<int>{1});
    EXPECT_EQ(m.data(m.index(1, QuoteBoardModel::kLast), Qt::DisplayRole).toString(), "5234.0");
    EXPECT_EQ(m.data(m.index(1, QuoteBoardModel::kChange), Qt::DisplayRole).toString(), "+17.8");
    EXPECT_EQ(m.data(m.index(1, QuoteBoardModel::kChangePct), Qt::DisplayRole).toString(),
              "+0.34%");
    EXPECT_EQ(m.data(m.index(0, QuoteBoardModel::kLast), Qt::DisplayRole).toString(), "—");

    t.wExchangeID = 0;  // same code, other exchange: not on the board
    EXPECT_FALSE(m.applyQuote(t));
    EXPECT_EQ(sig.changedRows.size(), 1u);
}

TEST(RecordTable, SameKeysUpdateInPlaceOtherKeysReset) {
    testApp();
    RecordTableModel m({"a", "b"});
    auto row = [](const char* key, const char* text) {
        return RecordRow{key, {RecordCell{key, {}, false}, RecordCell{text, {}, false}}};
    };
    m.setRows({row("1", "x"), row("2", "y")});
    ModelSignals sig(m);

    m.setRows({row("1", "x"), row("2", "z")});
    EXPECT_EQ(sig.resets, 0);
    EXPECT_EQ(sig.changedRows, std::vector<int>{1});
    EXPECT_EQ(m.data(m.index(1, 1), Qt::DisplayRole).toString(), "z");

    m.setRows({row("1", "x"), row("2", "z")});  // nothing changed: nothing signalled
    EXPECT_EQ(sig.changedRows.size(), 1u);

    m.setRows({row("3", "w"), row("1", "x"), row("2", "z")});
    EXPECT_EQ(sig.resets, 1);
    EXPECT_EQ(m.rowOfKey("3"), 0);
}

// ---- The add-in loader ---------------------------------------------------------------------

TEST(AddinLoader, ExplicitFileIsTheOnlyCandidateElseAppDirThenSearchPath) {
    EXPECT_EQ(AddinLibrary::candidates("/opt/desk", "/x/libH.so"), QStringList{"/x/libH.so"});
    EXPECT_EQ(AddinLibrary::candidates("/opt/desk", {}),
              (QStringList{"/opt/desk/Helmsman", "Helmsman"}));
}

TEST(AddinLoader, ReportsEveryCandidateWhenNothingLoads) {
    AddinLibrary lib;
    EXPECT_FALSE(lib.load("/nonexistent-dir", "/nonexistent-dir/libNothing.so"));
    EXPECT_TRUE(lib.errorString().contains("/nonexistent-dir/libNothing.so"));
    EXPECT_EQ(lib.init, nullptr);
}

TEST(AddinLoader, RefusesALibraryWithoutTheEventExports) {
    AddinLibrary lib;
    EXPECT_FALSE(lib.load({}, STUB_ADDIN_INCOMPLETE));
    EXPECT_TRUE(lib.errorString().contains("HelmsmanLogonStateChange"))
        << lib.errorString().toStdString();
    EXPECT_EQ(lib.dataChange, nullptr);
}

TEST(AddinLoader, ResolvesExportsAndAsksWhichToolsWork) {
    AddinLibrary lib;
    ASSERT_TRUE(lib.load({}, STUB_ADDIN)) << lib.errorString().toStdString();
    EXPECT_NE(lib.init, nullptr);
    EXPECT_NE(lib.sendMessage, nullptr);
    EXPECT_NE(lib.enumWindows, nullptr);
    EXPECT_EQ(lib.createOptionPage, nullptr);  // the stand-in has no options page
    EXPECT_TRUE(lib.isToolAvailable("OpenHelmsman"));
    EXPECT_TRUE(lib.isToolAvailable("OpenLocalTrigger"));
    EXPECT_FALSE(lib.isToolAvailable("OpenManualSpread"));  // exported, but says not built
    EXPECT_FALSE(lib.isToolAvailable("OpenAMTOrder"));      // not exported at all
    for (const AddinTool& tool : addinTools()) {
        EXPECT_EQ(findAddinTool(tool.exportName), &tool);
    }
    EXPECT_EQ(findAddinTool("InitHelmsman"), nullptr);
}

// ---- The desk against the exchange ---------------------------------------------------------

class DeskTest : public ::testing::Test {
protected:
    void SetUp() override {
        testApp();
        ASSERT_TRUE(m_dir.isValid());
        ASSERT_TRUE(m_lib.load({}, STUB_ADDIN)) << m_lib.errorString().toStdString();
        log = reinterpret_cast<const char* (*)()>(QLibrary(STUB_ADDIN).resolve("StubLog"));
        auto clear = reinterpret_cast<void (*)()>(QLibrary(STUB_ADDIN).resolve("StubClear"));
        ASSERT_TRUE(log && clear);
        clear();
        SimOptions so;
        so.randomWalk = false;  // quotes only when the test imposes them
        m_exchange = std::make_unique<SimExchange>(m_clock, so);
        m_desk =
            std::make_unique<DeskWindow>(*m_exchange, m_lib, m_dir.filePath("desk.ini"), "test");
        m_lib.init(1, m_exchange.get(), "/tmp", "demo", 0);
        m_desk->startPump();
    }

    QAbstractItemModel* model(const char* view) {
        auto* v = m_desk->findChild<QTableView*>(view);
        return v ? v->model() : nullptr;
    }
    QString cell(const char* view, int row, const char* header) {
        QAbstractItemModel* m = model(view);
        for (int c = 0; c < m->columnCount(); ++c) {
            if (m->headerData(c, Qt::Horizontal).toString() == header) {
                return m->data(m->index(row, c)).toString();
            }
        }
        return "<no column>";
    }
    QString stubLog() const { return QString::fromUtf8(log()); }

    const char* (*log)() = nullptr;
    QTemporaryDir m_dir;
    ManualClock m_clock{QDateTime(QDate(2021, 1, 4), QTime(10, 0)).toMSecsSinceEpoch()};
    AddinLibrary m_lib;
    std::unique_ptr<SimExchange> m_exchange;
    std::unique_ptr<DeskWindow> m_desk;
};

TEST_F(DeskTest, EventsReachTheAddinAndTheMonitorsFollowTheExchange) {
    tagBrokerOrder o;
    o.strAccountID = "880001";
    o.strBrokerID = "9999";
    o.nExchangeID = 0;
    o.strCode = "rb2105";
    o.nDirection = kDirBuy;
    o.dVolume = 3;
    IModuleFutureTrader::ITickEx q;
    ASSERT_TRUE(m_exchange->GetMarketQuote({0, "rb2105"}, q));
    o.dPrice = q.dLowerLimit;  // far below the market: it rests
    ASSERT_EQ(m_exchange->SendOrder(o), 1);
    m_desk->pumpOnce();

    EXPECT_TRUE(stubLog().contains("data 2")) << stubLog().toStdString();
    ASSERT_EQ(model("workingOrders")->rowCount(), 1);
    EXPECT_EQ(cell("workingOrders", 0, "委托号"), QString::fromStdString(o.strOrderID));
    EXPECT_EQ(cell("workingOrders", 0, "状态"), "已报");
    EXPECT_EQ(model("allOrders")->rowCount(), 1);

    ASSERT_EQ(m_exchange->DeleteOrder("880001", "9999", o.strOrderID), 1);
    m_desk->pumpOnce();
    EXPECT_EQ(model("workingOrders")->rowCount(), 0);
    EXPECT_EQ(cell("allOrders", 0, "状态"), "已撤单");
}

TEST_F(DeskTest, LogoffEmptiesTheMonitorsAndTellsTheAddin) {
    m_desk->pumpOnce();
    ASSERT_EQ(model("accounts")->rowCount(), 2);
    EXPECT_EQ(cell("accounts", 0, "状态"), "已登录");
    EXPECT_GT(model("positions")->rowCount(), 0);  // 880002 holds yesterday's positions

    m_exchange->logoffAll();
    m_desk->pumpOnce();
    EXPECT_TRUE(stubLog().contains("logon ")) << stubLog().toStdString();
    EXPECT_EQ(cell("accounts", 0, "状态"), "未登录");
    EXPECT_EQ(cell("accounts", 1, "状态"), "未登录");
    EXPECT_EQ(model("positions")->rowCount(), 0);
}

TEST_F(DeskTest, QuotesMoveTheBoard) {
    IModuleFutureTrader::ITickEx t;
    ASSERT_TRUE(m_exchange->GetMarketQuote({3, "IF2101"}, t));
    t.dLast = t.dPreSettle + 10;
    t.dBid = t.dLast - 0.2;
    t.dAsk = t.dLast;
    ASSERT_TRUE(m_exchange->applyQuote(t));
    m_desk->pumpOnce();
    QuoteBoardModel& board = m_desk->quoteBoard();
    const int row = board.rowOf({3, "IF2101"});
    ASSERT_GE(row, 0);
    EXPECT_EQ(board.data(board.index(row, QuoteBoardModel::kLast), Qt::DisplayRole).toString(),
              QString::number(t.dLast, 'f', 1));
    EXPECT_EQ(
        board.data(board.index(row, QuoteBoardModel::kLast), Qt::ForegroundRole).value<QColor>(),
        QuoteBoardModel::kUp);
}

TEST_F(DeskTest, PickingAnInstrumentLinksEveryOpenTicketOnce) {
    m_desk->selectSymbol({3, "IF2101"});
    EXPECT_TRUE(stubLog().contains("msg 101 2065 1 IF2101")) << stubLog().toStdString();
    EXPECT_TRUE(stubLog().contains("msg 102 2065 1 IF2101"));
    const int before = stubLog().count("2065");
    m_desk->selectSymbol({3, "IF2101"});  // the same pick again: nothing new to link
    EXPECT_EQ(stubLog().count("2065"), before);
}

TEST_F(DeskTest, ToolsOpenWithTheBoardsInstrumentAndUnavailableOnesAreRefused) {
    m_desk->selectSymbol({0, "rb2105"});
    QString why;
    EXPECT_TRUE(m_desk->openTool("OpenHelmsman", &why)) << why.toStdString();
    EXPECT_TRUE(stubLog().contains("OpenHelmsman rb2105"));
    EXPECT_TRUE(m_desk->openTool("OpenLocalTrigger", &why));
    EXPECT_FALSE(m_desk->openTool("OpenManualSpread", &why));
    EXPECT_FALSE(stubLog().contains("OpenManualSpread"));
    EXPECT_FALSE(m_desk->openTool("NoSuchExport", &why));
    EXPECT_TRUE(why.contains("NoSuchExport"));
}

}  // namespace
