// CGridsSpread: the grid spread robot. It trades the spread nSpreadLots1 x A - nSpreadLots2
// x B, each leg on its own account, as a ladder of grid levels: for each entry it rests a
// limit order on leg B at the price that realises the level's spread against A's quote, and
// as soon as B fills it hits A at a marketable price. The newest entry is closed the same
// way once the spread has come back by the profit step. A rolling volume-weighted filter on
// A (grids_spread_filter.h) holds back steps that would trade against A's short-term move.
//
// Two two-leg machines (CLeg, PairOpen and PairClose) follow the orders by their tags ("teb"
// and "tea" to open, "txb" and "txa" to close). The decision runs for the opening pair and
// then the closing pair on every quote of A or B and on every timer pass:
//   state 0  running: place B where the plan says (grids_spread_decision.h)
//   state 2  running: keep B while the plan still agrees within nMonitorThreshold ticks,
//            else cancel it (and place it anew once the cancel is confirmed); a B order
//            that has partly filled is left to fill
//   state 4  B filled: hit A at once, whether or not the robot is running
//   state 6  A at the exchange: book the entry (open: append; close: remove the newest)
// The newest entry is not closed while its A order still works at the exchange: there is no
// A position to close until it fills.
// Timer passes also look up an order a leg has heard nothing about for a while, so a lost
// notification never leaves a leg stuck, and a late fill of A completes its entry's price.
//
// Pausing cancels a resting B through its leg, so a fill that races the cancel is still
// booked and its A still hit; the robot sends nothing new until started again. A pair between
// states (B sent, cancelling, filled, or a B that has traded in part) refuses the pause.
//
// Every order is recorded in the manager's audit journal with the reason and its figures.
//
// Headless use (a replay, a test) needs only the manager with its facade, clock and
// prompter:
//     CGridsSpread grid(manager);
//     grid.setSettings(readGridsSpreadSettings(ini));   // section "GridsSpread"
//     manager.registerWindow(grid.handle());           // or call onQuote/onOrder directly
//     grid.start();
//     ... host events reach onMessage; call timerPass() every 500 ms of virtual time ...
//     grid.entries();                                   // the open entries
//
// Owns its legs, filter and entries; holds the manager (which must outlive it). UI thread
// only.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "app/order_journal.h"
#include "host/quote_subscription.h"
#include "host/window.h"
#include "robots/grids_spread_decision.h"
#include "robots/grids_spread_filter.h"
#include "robots/grids_spread_settings.h"
#include "robots/leg.h"
#include "robots/order_tag.h"
#include "spread/spread_exit.h"

class CHelmsmanManage;

// One open entry of the grid.
struct GridEntry {
    double bFill = 0;  // B's fill price (0 unknown)
    double aFill = 0;  // A's fill price (0 unknown)
    std::string aTag;  // A's order while it works, so a fill reported late completes aFill
    std::string aOrderId;
    bool bRepriced = false;  // B rested at more than one price before it filled
    std::int64_t openedMs = 0;
};

// An entry opened and closed again.
struct GridRoundTrip {
    GridEntry open;
    GridEntry exit;
};

// What changed, for the window.
enum GridChange : unsigned {
    kGridChangeState = 1,     // running flag, pair states, entries, counters
    kGridChangeQuote = 2,     // a quote or the filter
    kGridChangeSettings = 4,  // settings (a template applied)
};

class CGridsSpread final : public IWndTarget {
public:
    // Patience of a leg before it looks its order up, in milliseconds.
    static constexpr std::uint64_t kLookupMs = 3000;
    static constexpr int kTimerMs = 500;

    explicit CGridsSpread(CHelmsmanManage& manager);
    ~CGridsSpread() override;
    CGridsSpread(const CGridsSpread&) = delete;
    CGridsSpread& operator=(const CGridsSpread&) = delete;

    WndHandle handle() const { return m_handle; }
    // "价差格[公式:%dA-%dB]" with the two ratios.
    std::string caption() const { return captionOf(m_settings); }
    static std::string captionOf(const GridsSpreadSettings& s);

    // ---- Settings ---------------------------------------------------------------------
    const GridsSpreadSettings& settings() const { return m_settings; }
    // Takes new settings (refused while running or while a pair waits on an order); follows
    // the quotes of the new legs.
    bool setSettings(const GridsSpreadSettings& s);

    // ---- Running ----------------------------------------------------------------------
    // Checks, fixes the order sizes from the contracts, sets up the filter and starts.
    // A refusal is said in a box; false then.
    bool start();
    // Pauses when no pair is between states (a resting B is cancelled); else says why not.
    bool pause();
    bool running() const { return m_running; }
    // Closing the window: asks while running; on yes (or when idle) stops for good, cancels
    // a resting B and gives the quotes back. False when the trader keeps the robot.
    bool requestClose();
    bool closing() const { return m_closing; }

    // ---- Host events ------------------------------------------------------------------
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;
    void onQuote(const IModuleFutureTrader::ITickEx& tick);
    // The matching rule of the legs: -1 when stopping or the record has no remark, else 1.
    int onOrder(std::uint32_t code, const tagBrokerOrder* record);
    // The timer's pass: looks up quiet orders, then decides.
    void timerPass();

    // ---- What it holds ----------------------------------------------------------------
    const std::vector<GridEntry>& entries() const { return m_entries; }
    const std::vector<GridRoundTrip>& roundTrips() const { return m_roundTrips; }
    int closedCount() const { return static_cast<int>(m_roundTrips.size()); }
    // The trader's own position figure: entries are dropped from the newest or added with
    // unknown prices to reach `count`, after a warning; parked pairs are freed. False for a
    // negative count.
    bool overridePosition(int count);
    const CLeg& openPair() const { return m_open.leg; }
    const CLeg& closePair() const { return m_close.leg; }
    std::string pairStatus(bool opening) const;
    GridTrend trend() const { return m_filter.state(); }
    const CGridFilter& filter() const { return m_filter; }
    const GridQuote& quoteA() const { return m_quoteA; }
    const GridQuote& quoteB() const { return m_quoteB; }
    GridSizes sizes() const { return m_sizes; }
    int decimalsA() const { return m_decimalsA; }
    int decimalsB() const { return m_decimalsB; }
    // The round trips for the spread exit window.
    CSpreadExitInfo exitInfo() const;

    // Called after every change the window shows (bits of GridChange).
    void setChanged(std::function<void(unsigned)> f) { m_changed = std::move(f); }

private:
    struct Pair {
        explicit Pair(LegMachine m, IPrompter& p, const IClock& c) : leg(m, p, c) {}
        CLeg leg;
        bool opening = true;
        std::string bAccount, bBroker;  // of the order the leg waits on
        double fill = 0;                // the fill price the last matched notification carried
        bool partFilled = false;        // the resting B has traded in part
        bool repriced = false;          // this cycle's B was cancelled and placed anew
        GridEntry booked;               // prices of this cycle so far
        std::int64_t retryAtMs = 0;     // after a refusal, no new B before this time
        int refusals = 0;               // in a row: each doubles the wait, up to a minute
    };

    void readContracts();
    void follow();
    void decide();
    void stepPair(Pair& p);
    void placeB(Pair& p, const GridPlan& plan);
    void hitA(Pair& p);
    void book(Pair& p);
    void afterStep(Pair& p, std::int32_t from, const tagBrokerOrder& record);
    void onRefused(Pair& p);
    void lookUp(Pair& p);
    void learnLateFill(const tagBrokerOrder& record);
    bool newestAWorking() const;
    void lookUpNewestA();
    void sendOrder(Pair& p, tagBrokerOrder& order, std::string tag, std::string reason,
                   std::vector<JournalFigure> figures);
    tagBrokerOrder makeOrder(bool legA, std::int32_t direction, double price, bool closing);
    GridPlan plan(const Pair& p) const;
    void notify(unsigned what);

    CHelmsmanManage& m_manager;
    WndHandle m_handle = 0;
    COrderTagSource m_tags;
    GridsSpreadSettings m_settings;
    Pair m_open;
    Pair m_close;
    CGridFilter m_filter;
    GridQuote m_quoteA;
    GridQuote m_quoteB;
    // The last quote taken per leg, so a quote the host delivers twice counts once.
    std::int64_t m_timeA = -1, m_timeB = -1;
    GridTick m_tickA, m_tickB;
    int m_decimalsA = 0, m_decimalsB = 0;
    GridSizes m_sizes;
    CQuoteSubscription m_subA;
    CQuoteSubscription m_subB;
    std::vector<GridEntry> m_entries;
    std::vector<GridRoundTrip> m_roundTrips;
    bool m_running = false;
    bool m_closing = false;
    bool m_deciding = false;
    std::int64_t m_nextEntryLookupMs = 0;
    std::function<void(unsigned)> m_changed;
};
