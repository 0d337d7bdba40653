// The desktop shell: command line, add-in loader, quote board, and the desk wired
// to the simulated exchange with a stand-in add-in loaded at run time.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTemporaryDir>

#include "host/clock.h"
#include "shell/addin_library.h"
#include "shell/desk_window.h"
#include "shell/quote_board_model.h"
#include "shell/shell_options.h"
#include "sim/sim_exchange.h"
#include "support/model_signals.h"
#include "support/qt_app.h"
#include "support/quote_builders.h"

namespace {

TEST(ShellOptions, AcceptsEveryOptionInEveryForm) {
    ShellOptions o;
    QString error;
    ASSERT_TRUE(parseShellOptions({}, o, error));
    EXPECT_EQ(o.userName, "demo");
    EXPECT_FALSE(o.marketTime.has_value());
    EXPECT_EQ(o.quitAfterMs, -1);
    ASSERT_TRUE(parseShellOptions(
        {"--root", "/r", "--user=li", "--market-time", "09:30:00", "--ticks", "a.csv", "b.csv",
         "--open", "OpenHelmsman,OpenLocalTrigger", "--screenshot", "/s", "--quit-after", "3000"},
        o, error))
        << error.toStdString();
    EXPECT_EQ(o.rootDir, "/r");
    EXPECT_EQ(o.userName, "li");
    EXPECT_EQ(o.marketTime.value_or(QTime()), QTime(9, 30, 0));
    EXPECT_EQ(o.tickFiles, (QStringList{"a.csv", "b.csv"}));
    EXPECT_EQ(o.openExports, (QStringList{"OpenHelmsman", "OpenLocalTrigger"}));
    EXPECT_EQ(o.screenshotDir, "/s");
    EXPECT_EQ(o.quitAfterMs, 3000);

    const struct {
        QStringList args;
        QStringList ticks, opens;
        bool help;
    } forms[] = {
        {{"--ticks=a.csv", "b.csv", "--user", "x"}, {"a.csv", "b.csv"}, {}, false},
        {{"--ticks", "a.csv", "--ticks", "b.csv"}, {"a.csv", "b.csv"}, {}, false},
        {{"--open", "A", "--open=B,C"}, {}, {"A", "B", "C"}, false},
        {{"-h"}, {}, {}, true},
        {{"--user", "x", "--help"}, {}, {}, true},
    };
    for (const auto& c : forms) {
        SCOPED_TRACE(c.args.join(' ').toStdString());
        ShellOptions f;
        ASSERT_TRUE(parseShellOptions(c.args, f, error)) << error.toStdString();
        EXPECT_EQ(f.tickFiles, c.ticks);
        EXPECT_EQ(f.openExports, c.opens);
        EXPECT_EQ(f.help, c.help);
    }
    for (const char* option : {"--root", "--user", "--market-time", "--ticks", "--open",
                               "--screenshot", "--quit-after", "--measure-busy", "--library"})
        EXPECT_TRUE(shellUsage().contains(option)) << option;
}

TEST(ShellOptions, RefusesBadInputNamingIt) {
    const struct {
        QStringList args;
        const char* mentions;
    } cases[] = {
        {{"--bogus"}, "--bogus"},        {{"stray"}, "stray"},
        {{"--root"}, "--root"},          {{"--user", "--root", "/r"}, "--user"},
        {{"--market-time", "25:00:00"}, "25:00:00"}, {{"--ticks", "--user", "x"}, "--ticks"},
        {{"--quit-after", "soon"}, "soon"},          {{"--quit-after", "-5"}, "-5"},
        {{"--measure-busy", "0"}, "--measure-busy"},
    };
    for (const auto& c : cases) {
        ShellOptions o;
        QString error;
        EXPECT_FALSE(parseShellOptions(c.args, o, error)) << c.args.join(' ').toStdString();
        EXPECT_TRUE(error.contains(c.mentions)) << error.toStdString();
    }
}

TEST(ShellOptions, MarketTimeOffsetLandsOnThatTimeToday) {
    const std::int64_t now =
        QDateTime(QDate(2021, 1, 4), QTime(14, 5, 7, 250), Qt::LocalTime).toMSecsSinceEpoch();
    for (const QTime target : {QTime(9, 30, 0), QTime(0, 0, 0), QTime(23, 59, 59), QTime(14, 5, 7)}) {
        const QDateTime shifted = QDateTime::fromMSecsSinceEpoch(
            now + marketTimeOffsetMs(target, now), Qt::LocalTime);
        EXPECT_EQ(shifted, QDateTime(QDate(2021, 1, 4), target, Qt::LocalTime));
    }
}

// ---- Row builders and models ---------------------------------------------------------------

TEST(DeskNotice, SaysWhenTheExchangeTurnedAnOrderDown) {
    const std::int64_t at = QDateTime(QDate(2021, 1, 4), QTime(10, 15, 30)).toSecsSinceEpoch();
    const struct {
        std::int32_t status;
        const char* reason;
        std::int64_t updated;
        const char* expected;  // empty: nothing to say
    } cases[] = {
        {kOrderRejected, "资金不足", at, "10:15:30 帐户880001 rb2105 委托被拒绝：资金不足"},
        {kOrderRejected, "", 0, "10:15:30 帐户880001 rb2105 委托被拒绝"},  // time of now
        {kOrderCancelled, "", at, ""},                                     // the trader's own
        {kOrderPartCancelled, "", at, ""},
        {kOrderCancelled, "收盘撤单", at, "10:15:30 帐户880001 rb2105 委托被交易所撤销：收盘撤单"},
        {kOrderExpired, "", at, "10:15:30 帐户880001 rb2105 委托已失效"},
        {kOrderFilled, "", at, ""},
        {kOrderQueued, "", at, ""},
    };
    for (const auto& c : cases) {
        tagBrokerOrder o;
        o.strAccountID = "880001";
        o.strCode = "rb2105";
        o.nStatus = c.status;
        o.strStatusMsg = c.reason;
        o.tUpdateTime = c.updated;
        EXPECT_EQ(orderRefusalNotice(o, at).toStdString(), c.expected) << c.status;
    }
}

const DecimalsOf kTwoDecimals = [](std::int32_t, const std::string&) { return 2; };

QString cellOf(const RecordRow& row, const QStringList& headers, const char* header) {
    return row.cells.at(headers.indexOf(header)).text;
}

TEST(MonitorRows, AccountsShowFrozenFundsAndRiskAndNoFundsWhenLoggedOff) {
    AccountLine on;
    on.loggedOn = true;
    on.summary.dBalance = 1000000;
    on.summary.dMargin = 123456.78;
    on.summary.dFrozen = 5000.5;
    AccountLine off = on;
    off.loggedOn = false;
    const auto accounts = accountRows({on, off});
    ASSERT_EQ(accounts.size(), 2u);
    EXPECT_EQ(cellOf(accounts[0], accountHeaders(), "权益"), "1000000.00");
    EXPECT_EQ(cellOf(accounts[0], accountHeaders(), "冻结资金"), "5000.50");
    EXPECT_EQ(cellOf(accounts[0], accountHeaders(), "风险度"), "12.35%");
    EXPECT_EQ(cellOf(accounts[1], accountHeaders(), "风险度"), "—");
    EXPECT_EQ(cellOf(accounts[1], accountHeaders(), "状态"), "未登录");
    EXPECT_EQ(cellOf(accounts[1], accountHeaders(), "权益"), "—");
}

// ---- The quote board ------------------------------------------------------------------------

TEST(QuoteBoard, RedUpGreenDownAgainstTheSettlement) {
    const struct {
        double price, reference;
        QColor expected;
    } cases[] = {
        {4410, 4402, QuoteBoardModel::kUp},   {4390, 4402, QuoteBoardModel::kDown},
        {4402, 4402, QuoteBoardModel::kFlat}, {0, 4402, QuoteBoardModel::kFlat},
        {4410, 0, QuoteBoardModel::kFlat},    {97.625, 97.62, QuoteBoardModel::kUp},
    };
    for (const auto& c : cases)
        EXPECT_EQ(QuoteBoardModel::priceColor(c.price, c.reference), c.expected) << c.price;
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
    rows[1].symbol = {3, "IF2101"};
    rows[1].decimals = 1;
    m.setRows(rows);
    ModelSignals sig(m);
    auto text = [&](int row, int col) { return m.data(m.index(row, col), Qt::DisplayRole).toString(); };

    IModuleFutureTrader::ITickEx t = TickBuilder(3, "IF2101").last(5234.0).preSettle(5216.2);
    ASSERT_TRUE(m.applyQuote(t));
    EXPECT_EQ(sig.changed, std::vector<int>{1});
    EXPECT_EQ(text(1, QuoteBoardModel::kLast), "5234.0");
    EXPECT_EQ(text(1, QuoteBoardModel::kChange), "+17.8");
    EXPECT_EQ(text(1, QuoteBoardModel::kChangePct), "+0.34%");
    EXPECT_EQ(text(0, QuoteBoardModel::kLast), "—");
    t.wExchangeID = 0;  // same code, other exchange: not on the board
    EXPECT_FALSE(m.applyQuote(t));
    EXPECT_EQ(sig.changed.size(), 1u);
}

// ---- The add-in loader ---------------------------------------------------------------------

TEST(AddinLoader, CandidatesAndRefusals) {
    EXPECT_EQ(AddinLibrary::candidates("/opt/desk", "/x/libH.so"), QStringList{"/x/libH.so"});
    EXPECT_EQ(AddinLibrary::candidates("/opt/desk", {}),
              (QStringList{"/opt/desk/Helmsman", "Helmsman"}));
    AddinLibrary missing, incomplete;
    EXPECT_FALSE(missing.load("/nonexistent-dir", "/nonexistent-dir/libNothing.so"));
    EXPECT_TRUE(missing.errorString().contains("/nonexistent-dir/libNothing.so"));
    EXPECT_EQ(missing.init, nullptr);
    EXPECT_FALSE(incomplete.load({}, STUB_ADDIN_INCOMPLETE));
    EXPECT_TRUE(incomplete.errorString().contains("HelmsmanLogonStateChange"))
        << incomplete.errorString().toStdString();
    EXPECT_EQ(incomplete.dataChange, nullptr);
}

TEST(AddinLoader, AsksWhichToolsWork) {
    AddinLibrary lib;
    ASSERT_TRUE(lib.load({}, STUB_ADDIN)) << lib.errorString().toStdString();
    EXPECT_EQ(lib.createOptionPage, nullptr);  // optional: the stand-in has no options page
    EXPECT_TRUE(lib.isToolAvailable("OpenHelmsman"));
    EXPECT_FALSE(lib.isToolAvailable("OpenManualSpread"));  // exported, but says not built
    EXPECT_FALSE(lib.isToolAvailable("OpenAMTOrder"));      // not exported at all
    EXPECT_NE(findAddinTool("OpenHelmsman"), nullptr);
    EXPECT_EQ(findAddinTool("InitHelmsman"), nullptr);
}

// ---- The desk against the exchange ---------------------------------------------------------

class DeskTest : public ::testing::Test {
protected:
    void SetUp() override {
        testApp();
        ASSERT_TRUE(m_dir.isValid());
        ASSERT_TRUE(m_lib.load({}, STUB_ADDIN)) << m_lib.errorString().toStdString();
        m_log = reinterpret_cast<const char* (*)()>(QLibrary(STUB_ADDIN).resolve("StubLog"));
        auto clear = reinterpret_cast<void (*)()>(QLibrary(STUB_ADDIN).resolve("StubClear"));
        ASSERT_TRUE(m_log && clear);
        clear();
        SimOptions so;
        so.randomWalk = false;  // quotes only when the test imposes them
        m_exchange = std::make_unique<SimExchange>(m_clock, so);
        m_desk = std::make_unique<DeskWindow>(*m_exchange, m_lib, m_dir.filePath("desk.ini"),
                                              "test");
        m_lib.init(1, m_exchange.get(), "/tmp", "demo", 0);
        m_desk->startPump();
    }
    QAbstractItemModel* model(const char* view) {
        return m_desk->findChild<QTableView*>(view)->model();
    }
    QString cell(const char* view, int row, const char* header) {
        QAbstractItemModel* m = model(view);
        for (int c = 0; c < m->columnCount(); ++c)
            if (m->headerData(c, Qt::Horizontal).toString() == header)
                return m->data(m->index(row, c)).toString();
        return "<no column>";
    }
    QString log() const { return QString::fromUtf8(m_log()); }

    const char* (*m_log)() = nullptr;
    QTemporaryDir m_dir;
    ManualClock m_clock{QDateTime(QDate(2021, 1, 4), QTime(10, 0)).toMSecsSinceEpoch()};
    AddinLibrary m_lib;
    std::unique_ptr<SimExchange> m_exchange;
    std::unique_ptr<DeskWindow> m_desk;
};

TEST_F(DeskTest, EventsReachTheAddinAndTheMonitorsFollowTheExchange) {
    IModuleFutureTrader::ITickEx q;
    ASSERT_TRUE(m_exchange->GetMarketQuote({0, "rb2105"}, q));
    // Far below the market: it rests.
    tagBrokerOrder o = brokerOrder("880001", "rb2105", kDirBuy, 3, q.dLowerLimit);
    ASSERT_EQ(m_exchange->SendOrder(o), 1);
    m_desk->pumpOnce();
    EXPECT_TRUE(log().contains("data 2")) << log().toStdString();
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
    EXPECT_TRUE(log().contains("logon ")) << log().toStdString();
    EXPECT_EQ(cell("accounts", 0, "状态"), "未登录");
    EXPECT_EQ(cell("accounts", 1, "状态"), "未登录");
    EXPECT_EQ(model("positions")->rowCount(), 0);
}

TEST_F(DeskTest, AMonitorsSortIsRememberedWithItsColumns) {
    m_desk->findChild<QTableView*>("fills")->sortByColumn(7, Qt::AscendingOrder);
    m_desk->close();  // saves the layout
    m_desk = std::make_unique<DeskWindow>(*m_exchange, m_lib, m_dir.filePath("desk.ini"), "test");
    auto* proxy = static_cast<QSortFilterProxyModel*>(model("fills"));
    EXPECT_EQ(proxy->sortColumn(), 7);
    EXPECT_EQ(proxy->sortOrder(), Qt::AscendingOrder);
    EXPECT_EQ(static_cast<QSortFilterProxyModel*>(model("allOrders"))->sortOrder(),
              Qt::DescendingOrder);  // untouched: newest first
}

TEST_F(DeskTest, QuotesMoveTheBoard) {
    IModuleFutureTrader::ITickEx t;
    ASSERT_TRUE(m_exchange->GetMarketQuote({3, "IF2101"}, t));
    t.dLast = t.dAsk = t.dPreSettle + 10;
    t.dBid = t.dLast - 0.2;
    ASSERT_TRUE(m_exchange->applyQuote(t));
    m_desk->pumpOnce();
    QuoteBoardModel& board = m_desk->quoteBoard();
    const QModelIndex last = board.index(board.rowOf({3, "IF2101"}), QuoteBoardModel::kLast);
    ASSERT_TRUE(last.isValid());
    EXPECT_EQ(board.data(last, Qt::DisplayRole).toString(), QString::number(t.dLast, 'f', 1));
    EXPECT_EQ(board.data(last, Qt::ForegroundRole).value<QColor>(), QuoteBoardModel::kUp);
}

TEST_F(DeskTest, PickingAnInstrumentLinksEveryOpenTicketOnce) {
    m_desk->selectSymbol({3, "IF2101"});
    EXPECT_TRUE(log().contains("msg 101 2065 1 IF2101")) << log().toStdString();
    EXPECT_TRUE(log().contains("msg 102 2065 1 IF2101"));
    const int before = log().count("2065");
    m_desk->selectSymbol({3, "IF2101"});  // the same pick again: nothing new to link
    EXPECT_EQ(log().count("2065"), before);
}

TEST_F(DeskTest, TheBoardsFocusAloneIsNoPick) {
    auto* board = m_desk->findChild<QTableView*>("quoteBoard");
    ASSERT_NE(board, nullptr);
    board->selectionModel()->setCurrentIndex(board->model()->index(0, 0),
                                             QItemSelectionModel::NoUpdate);
    QString why;
    EXPECT_TRUE(m_desk->openTool("OpenHelmsman", &why)) << why.toStdString();
    EXPECT_TRUE(log().contains("OpenHelmsman -")) << log().toStdString();
    EXPECT_FALSE(log().contains("2065"));
}

TEST_F(DeskTest, ToolsOpenWithTheBoardsInstrumentAndUnavailableOnesAreRefused) {
    m_desk->selectSymbol({0, "rb2105"});
    QString why;
    EXPECT_TRUE(m_desk->openTool("OpenHelmsman", &why)) << why.toStdString();
    EXPECT_TRUE(log().contains("OpenHelmsman rb2105"));
    EXPECT_TRUE(m_desk->openTool("OpenLocalTrigger", &why));
    EXPECT_FALSE(m_desk->openTool("OpenManualSpread", &why));
    EXPECT_FALSE(log().contains("OpenManualSpread"));
    EXPECT_FALSE(m_desk->openTool("NoSuchExport", &why));
    EXPECT_TRUE(why.contains("NoSuchExport"));
}

TEST_F(DeskTest, ARefusedOrderIsSaidOnTheStatusLineAtOnce) {
    IModuleFutureTrader::ITickEx q;
    ASSERT_TRUE(m_exchange->GetMarketQuote({0, "rb2105"}, q));
    // Outside the band: the exchange refuses it.
    tagBrokerOrder o = brokerOrder("880001", "rb2105", kDirBuy, 1, q.dUpperLimit * 2);
    ASSERT_EQ(m_exchange->SendOrder(o), 0);
    ASSERT_FALSE(o.strStatusMsg.empty());
    m_exchange->deliverPending();  // no monitor refresh needed: the event itself says it
    const QString notice = m_desk->notice();
    EXPECT_TRUE(notice.startsWith("10:00:00 帐户880001 rb2105 委托被拒绝")) << notice.toStdString();
    EXPECT_TRUE(notice.endsWith(QString::fromStdString(o.strStatusMsg))) << notice.toStdString();
    m_desk->resize(1200, 700);
    saveScreenshot(m_desk.get(), "desk_refusal_notice.png");
}

TEST_F(DeskTest, PositionToolsTheAddinLacksAreGreyedWithTheReason) {
    for (const char* name : {"OpenFastExit", "OpenStopTrigger"}) {
        auto* b = m_desk->findChild<QPushButton*>(name);
        ASSERT_NE(b, nullptr) << name;
        EXPECT_FALSE(b->isEnabled()) << name;
        EXPECT_TRUE(b->toolTip().contains("本版本未提供")) << name;
    }
}

TEST_F(DeskTest, ALayoutThatCannotBeWrittenIsSaid) {
    EXPECT_TRUE(m_desk->saveLayout());
    EXPECT_TRUE(m_desk->notice().isEmpty());
    // The settings file's folder is a plain file: nothing can be written there.
    QFile blocker(m_dir.filePath("blocked"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    DeskWindow desk(*m_exchange, m_lib, m_dir.filePath("blocked/desk.ini"), "test");
    EXPECT_FALSE(desk.saveLayout());
    EXPECT_TRUE(desk.notice().contains("无法写入交易台设置文件")) << desk.notice().toStdString();
    EXPECT_TRUE(desk.notice().contains("desk.ini"));
}

// The desk run unattended on the real add-in: a modal export is shot and the run still ends.
TEST(DeskUnattended, AModalConfirmationIsShotAndTheRunEnds) {
    QTemporaryDir dir;
    // A desk.ini that cannot be written either: closing says so without waiting for a click.
    ASSERT_TRUE(QDir().mkpath(dir.filePath("root/desk.ini/blocked")));
    QProcess desk;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    desk.setProcessEnvironment(env);
    desk.start(HELMSMAN_DESK, {"--root", dir.filePath("root"), "--open", "ShowConfirmOrder",
                               "--screenshot", dir.filePath("shots"), "--quit-after", "1500"});
    ASSERT_TRUE(desk.waitForStarted());
    const bool ended = desk.waitForFinished(20000);
    if (!ended) desk.kill();
    ASSERT_TRUE(ended) << "the modal confirmation kept the desk running";
    EXPECT_EQ(desk.exitStatus(), QProcess::NormalExit);
    const QString err = QString::fromLocal8Bit(desk.readAllStandardError());
    EXPECT_EQ(desk.exitCode(), 0) << err.toStdString();
    EXPECT_TRUE(err.contains(QString::fromUtf8("无法写入交易台设置文件"))) << err.toStdString();
    const QStringList shots = QDir(dir.filePath("shots")).entryList({"*.png"});
    EXPECT_EQ(shots.filter("ConfirmOrderDialog").size(), 1) << shots.join(' ').toStdString();
}

}  // namespace
