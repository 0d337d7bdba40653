// End to end: the add-in library loaded by name, initialised, fed the simulated exchange's
// events through its exports; a plain order submitted without confirmation is queued, fills,
// and the fill reaches the fill notice.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLibrary>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <QWidget>

#include "app/exports.h"
#include "host/clock.h"
#include "host/window.h"
#include "order/confirm_strings.h"
#include "sim/sim_exchange.h"
#include "support/qt_app.h"
#include "support/temp_dir.h"

namespace {

struct Exports {
    decltype(&InitHelmsman) init = nullptr;
    decltype(&HelmsmanDataChange) dataChange = nullptr;
    decltype(&HelmsmanLogonStateChange) logonChange = nullptr;
    decltype(&HelmsmanSendMessage) sendMessage = nullptr;
    decltype(&HelmsmanUseClock) useClock = nullptr;
    decltype(&ShowConfirmOrder) showConfirmOrder = nullptr;
    decltype(&OpenHelmsman) openHelmsman = nullptr;
};

// Forwards the exchange's events to the add-in, as the host's message loop would, and keeps
// the status sequence of every order it sees.
class Forwarder : public ISimEventSink {
public:
    explicit Forwarder(const Exports& x) : m_x(x) {}
    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        if (eventKind(code) == kEventOrderChanged)
            statuses.push_back(reinterpret_cast<const tagBrokerOrder*>(data)->nStatus);
        if (eventKind(code) == kEventNewFill) ++fills;
        m_x.dataChange(code, data);
    }
    void onLogonStateChange(std::uint32_t code, std::uintptr_t data) override {
        m_x.logonChange(code, data);
    }
    void onWindowMessage(std::uint32_t hWnd, std::uint32_t msg, std::uintptr_t w,
                         std::uintptr_t l) override {
        m_x.sendMessage(hWnd, msg, w, l);
    }
    std::vector<std::int32_t> statuses;
    int fills = 0;

private:
    const Exports& m_x;
};

std::int64_t todayAt(int h, int m) {
    std::tm tm = toLocalTm(SystemClock::instance().now());
    tm.tm_hour = h;
    tm.tm_min = m;
    tm.tm_sec = 0;
    return fromLocalTm(tm) * 1000;
}

QWidget* visibleWindowTitled(const char* title) {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && w->windowTitle() == QString::fromUtf8(title)) return w;
    return nullptr;
}

// The add-in, loaded once by name as the host does, with its exports resolved.
const Exports& addin() {
    static QLibrary lib(QStringLiteral(HELMSMAN_ADDIN));
    static Exports x = [] {
        Exports e;
        if (!lib.load()) {
            ADD_FAILURE() << lib.errorString().toStdString();
            return e;
        }
        e.init = reinterpret_cast<decltype(e.init)>(lib.resolve("InitHelmsman"));
        e.dataChange = reinterpret_cast<decltype(e.dataChange)>(lib.resolve("HelmsmanDataChange"));
        e.logonChange =
            reinterpret_cast<decltype(e.logonChange)>(lib.resolve("HelmsmanLogonStateChange"));
        e.sendMessage =
            reinterpret_cast<decltype(e.sendMessage)>(lib.resolve("HelmsmanSendMessage"));
        e.useClock = reinterpret_cast<decltype(e.useClock)>(lib.resolve("HelmsmanUseClock"));
        e.showConfirmOrder =
            reinterpret_cast<decltype(e.showConfirmOrder)>(lib.resolve("ShowConfirmOrder"));
        e.openHelmsman = reinterpret_cast<decltype(e.openHelmsman)>(lib.resolve("OpenHelmsman"));
        return e;
    }();
    return x;
}

QWidget* topLevelNamed(const char* objectName) {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && w->objectName() == QLatin1String(objectName)) return w;
    return nullptr;
}

// Rows of the single fill notice, shown or hidden (it keeps its list while hidden).
int noticeRows() {
    QWidget* notice = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->windowTitle() == QString::fromUtf8(confirm_text::kFillWindowTitle)) notice = w;
    auto* list = notice ? notice->findChild<QTableWidget*>("fillList") : nullptr;
    return list ? list->rowCount() : 0;
}

// Presses OK on the modal confirmation as soon as it is up; counts the confirmations seen.
void acceptConfirmationWhenShown(int* accepted) {
    QTimer::singleShot(10, [accepted] {
        QWidget* modal = QApplication::activeModalWidget();
        auto* ok = modal ? modal->findChild<QPushButton*>("okButton") : nullptr;
        if (!ok) {
            acceptConfirmationWhenShown(accepted);
            return;
        }
        ++*accepted;
        ok->click();
    });
}

// The add-in initialised on a simulated exchange, for a user whose Profile.ini the test
// writes; torn down as the host would, windows closed and the exchange let go.
class AddinEndToEnd : public ::testing::Test {
protected:
    void SetUp() override {
        testApp();
        ASSERT_TRUE(x.init && x.dataChange && x.logonChange && x.sendMessage && x.useClock &&
                    x.showConfirmOrder && x.openHelmsman);
    }
    void start(const std::string& profile, int hour, int minute) {
        writeFileBytes(root / "user" / "e2e" / "Profile.ini", "[Helmsman]\r\n" + profile);
        clock = std::make_unique<ManualClock>(todayAt(hour, minute));
        sim = std::make_unique<SimExchange>(*clock);
        sim->setEventSink(&forwarder);
        x.useClock(clock.get());
        x.init(1, sim.get(), root.string().c_str(), "e2e", 0);
        sim->step();  // one quote round: a live book to trade against
        pump();
    }
    void TearDown() override {
        if (QWidget* ticket = topLevelNamed("orderTicket")) ticket->close();
        testApp().processEvents();
        if (sim) sim->setEventSink(nullptr);
        x.init(1, nullptr, root.string().c_str(), "e2e", 0);  // let go of the exchange
        for (QWidget* w : QApplication::topLevelWidgets()) w->close();
    }
    // Events through the host's loop, a few rounds.
    void pump() {
        for (int k = 0; k < 3; ++k) {
            sim->deliverPending();
            testApp().processEvents();
        }
    }
    std::vector<tagAccoutInfo> accounts() {
        std::vector<tagAccoutInfo> out;
        sim->GetAvailableAccounts(out);
        return out;
    }

    const Exports& x = addin();
    const TempDir root{"helmsman_addin_e2e"};
    Forwarder forwarder{x};
    std::unique_ptr<ManualClock> clock;
    std::unique_ptr<SimExchange> sim;
};

TEST_F(AddinEndToEnd, PlainOrderFillsAndIsAnnounced) {
    start("bShowFilledOrder=1\r\n", 10, 0);
    const auto accts = accounts();
    ASSERT_FALSE(accts.empty());
    const tagSymbol symbol{3, "IF2101"};
    IModuleFutureTrader::ITickEx quote;
    ASSERT_TRUE(sim->GetMarketQuote(symbol, quote));
    ASSERT_GT(quote.dAsk, 0);

    tagBrokerOrder order;
    order.strAccountID = accts[0].strAccountID;
    order.strBrokerID = accts[0].strBrokerID;
    order.nExchangeID = symbol.wExchangeID;
    order.strCode = order.strSymbolText = symbol.strCode;
    order.nDirection = kDirBuy;
    order.dVolume = 1;
    order.dPrice = quote.dAsk;  // at the touch: fills against the book
    order.nOpenClose = kOpen;
    order.tCreateTime = clock->now();
    forwarder.statuses.clear();
    EXPECT_EQ(x.showConfirmOrder(&order, 0, "舵手", nullptr), 1);
    EXPECT_EQ(order.strRemark, "舵手");
    EXPECT_FALSE(order.strOrderID.empty());
    // Nothing arrives inside the facade call; it comes through the host's loop.
    EXPECT_TRUE(forwarder.statuses.empty());

    pump();
    ASSERT_FALSE(forwarder.statuses.empty());
    EXPECT_EQ(forwarder.statuses.back(), kOrderFilled);
    EXPECT_NE(std::find(forwarder.statuses.begin(), forwarder.statuses.end(), kOrderQueued),
              forwarder.statuses.end());
    EXPECT_EQ(forwarder.fills, 1);
    tagBrokerOrder after;
    ASSERT_TRUE(sim->GetOrder(after, order.strAccountID, order.strBrokerID, order.strOrderID));
    EXPECT_EQ(after.strRemark, "舵手");
    tagOpenedPosition position;
    ASSERT_TRUE(sim->GetPosition(position, order.strAccountID, order.strBrokerID, symbol));
    EXPECT_EQ(position.dLong, 1);
    EXPECT_NE(visibleWindowTitled(confirm_text::kFillWindowTitle), nullptr);
}

// The whole path a trader takes: a ticket opened through the export, three buys at the ask
// each confirmed in the confirmation window, three fills in the simulated book, one fill
// notice holding all three in arrival order.
TEST_F(AddinEndToEnd, TicketConfirmFillAndOneNoticeForThreeFills) {
    start("bShowFilledOrder=1\r\nbShowNormalOrderConfirm=1\r\nbUseBidAskPrice=1\r\n"
          "dDefaultVolume=1\r\n",
          10, 30);
    tagHelmsmanPrefill prefill;
    prefill.account = accounts().at(0);
    prefill.symbol = tagSymbol{3, "IF2101"};
    ASSERT_EQ(x.openHelmsman(&prefill), 1);
    QWidget* ticket = topLevelNamed("orderTicket");
    ASSERT_NE(ticket, nullptr);
    auto* buy = ticket->findChild<QPushButton*>("buy");
    ASSERT_NE(buy, nullptr);

    const int rowsBefore = noticeRows();
    int accepted = 0;
    for (int i = 0; i < 3; ++i) {
        clock->advanceMs(500);
        sim->step();  // a fresh book; the ticket hears its quote through its window handle
        pump();
        acceptConfirmationWhenShown(&accepted);
        buy->click();  // returns once the confirmation was accepted and the order sent
        pump();
    }
    EXPECT_EQ(accepted, 3);
    EXPECT_EQ(forwarder.fills, 3);

    std::vector<tagBargainOrder> fills;
    sim->GetAllBargains(fills);
    ASSERT_EQ(fills.size(), 3u);
    for (const auto& f : fills) EXPECT_EQ(f.strRemark, "舵手");
    EXPECT_NE(visibleWindowTitled(confirm_text::kFillWindowTitle), nullptr);
    EXPECT_EQ(noticeRows(), rowsBefore + 3);
    std::vector<tagBrokerOrder> orders;
    sim->GetAllOrders(orders);
    ASSERT_EQ(orders.size(), 3u);
    for (const auto& o : orders) EXPECT_EQ(o.nStatus, kOrderFilled);
}

// The ticket against the exchange: accounts logged off when it opens and on again before the
// press go where its box says, and an order the exchange refuses is explained on it.
TEST_F(AddinEndToEnd, TicketShowsItsAccountAndExplainsARejection) {
    start("bShowNormalOrderConfirm=0\r\nbUseBidAskPrice=1\r\n", 10, 30);
    sim->logoffAll();
    pump();

    tagHelmsmanPrefill prefill;
    prefill.symbol = tagSymbol{3, "IF2101"};
    ASSERT_EQ(x.openHelmsman(&prefill), 1);
    QWidget* ticket = topLevelNamed("orderTicket");
    ASSERT_NE(ticket, nullptr);
    auto* account = ticket->findChild<QComboBox*>("account");
    EXPECT_EQ(account->currentIndex(), -1);

    sim->logonAll();
    pump();
    const auto accts = accounts();
    ASSERT_GE(account->count(), 1);
    EXPECT_TRUE(account->currentText().startsWith(QString::fromStdString(accts.at(0).strAccountID)));

    sim->rejectNextOrders(1, "风控拒单");
    clock->advanceMs(500);
    sim->step();
    pump();
    ticket->findChild<QPushButton*>("buy")->click();
    pump();
    std::vector<tagBrokerOrder> orders;
    sim->GetAllOrders(orders);
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_EQ(orders[0].strAccountID, accts[0].strAccountID);
    EXPECT_EQ(orders[0].nStatus, kOrderRejected);
    const QString status = ticket->findChild<QLabel*>("status")->text();
    EXPECT_TRUE(status.startsWith(QString::fromUtf8("已废除："))) << status.toStdString();
    EXPECT_TRUE(status.contains(QString::fromUtf8("风控拒单"))) << status.toStdString();
}

}  // namespace
