// CAMTOrder: the conditional strategy ("条件通", dialog 25038) without widgets. A
// one-instrument, one-account robot that builds a position in steps while its entry
// conditions hold and closes it when an exit condition holds: a price line, a time, stop
// loss, take profit, a trailing stop (points or a percentage of the best profit), the touch
// volume and up to three formula conditions on each side.
//
// Driving it: every quote of its instrument (window message 2070 with event 1000, or
// onQuote) refreshes the quote, tracks the extreme price of the open position and runs one
// step: the entry attempt, then the exit attempt, each leaving a result code (E, X) that the
// caption shows. Nothing else drives it: no timer is needed, the clock only tells the time.
// A headless driver binds it to a facade and a clock through the manager and calls onQuote.
//
// Orders are booked when they are sent, never on fills: a refused order still counts, and
// the trader corrects the position by hand. They go through the manager's confirmation
// path with the remark "条件通" (confirmation by bShowNormalOrderConfirm); an order the
// trader declines in the confirmation is not booked (its code is 0) and the next one waits
// nDelaySecs like after an order. Once an exit order went out entries stay suspended until
// resumeEntries(). Flattening the position ends the round trip: first, average and extreme
// prices are cleared for the next one. Every order is recorded in the manager's journal
// with the condition that sent it and its prices.
//
// A step allocates nothing: the quote is copied field by field, formula values are read
// into a reused buffer, and texts are only built when asked for (caption()).
//
// Owned by its window (or a test or headless driver). UI thread only; a step never shows a
// box, start() and the hand edit of the position do.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "amt/amt_formula.h"
#include "amt/amt_params.h"
#include "host/quote_subscription.h"
#include "host/records.h"
#include "host/window.h"

class CHelmsmanManage;

class CAMTOrder : public IWndTarget {
public:
    static constexpr int kDialogId = 25038;

    // Result codes of the entry attempt (E).
    enum Entry : int {
        kEntrySent = 1,
        kEntryDeclined = 0,  // the trader declined the confirmation
        kEntryBlocked = -1,  // suspended, or the position is at its maximum
        kEntryLimitLocked = -2,
        kEntryNotTrading = -3,
        kEntryPrice = -4,
        kEntryRange = -5,
        kEntryVolume = -6,
        kEntryFormula = -7,
        kEntryNoLots = -8,
    };
    // Result codes of the exit attempt (X).
    enum Exit : int {
        kExitSent = 1,
        kExitNone = 0,  // no exit condition holds (or the trader declined the confirmation)
        kExitFlat = -1,
        kExitNotTrading = -2,
        kExitNoBase = -3,
        kExitVolume = -4,
        kExitNoLots = -5,
    };
    static constexpr int kNotRun = 100;  // no step has run yet

    // The quote fields a step reads.
    struct Quote {
        double last = 0, bid = 0, bidVol = 0, ask = 0, askVol = 0;
        double upper = 0, lower = 0;
        std::int64_t timeMs = 0;
    };

    struct State {
        bool running = false;
        bool suspended = false;  // entries suspended after an exit order
        std::int32_t position = 0;
        double firstPrice = 0;
        double avgPrice = 0;
        double extreme = 0;  // highest last since entry (long), lowest (short); 0 unset
        std::int32_t cumulative = 0;
        std::int64_t lastOrderMs = 0;  // 0: none yet
        int entryResult = kNotRun;
        int exitResult = kNotRun;
    };

    explicit CAMTOrder(CHelmsmanManage& manager);
    ~CAMTOrder() override;
    CAMTOrder(const CAMTOrder&) = delete;
    CAMTOrder& operator=(const CAMTOrder&) = delete;

    WndHandle handle() const { return m_hWnd; }

    // ---- Parameters --------------------------------------------------------------------
    const tagAMTParams& params() const { return m_params; }
    // Takes new parameters (from the window, a template or the default); a new instrument
    // is read from the host and subscribed.
    void setParams(const tagAMTParams& params);
    // The instrument: false (and no valid instrument) when the host knows no contract.
    bool selectSymbol(const tagSymbol& symbol);
    bool instrumentValid() const { return m_point > 0; }
    double point() const { return m_point; }
    int priceDecimals() const { return m_decimals; }
    const IModuleFutureTrader::ISpecDetailValue& detail() const { return m_detail; }

    // ---- Commands ------------------------------------------------------------------------
    // Runs the start checks (boxes and questions); true when the strategy now runs.
    bool start();
    void stop();
    // Clears the entry suspension.
    void resumeEntries();
    // A position typed by the trader: warns and takes it when it differs; false when equal.
    bool setPositionByHand(std::int32_t lots);
    // Whether the window may close: asks while running (and stops on Yes).
    bool confirmClose();

    // ---- Events ----------------------------------------------------------------------
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;
    // A quote of any instrument; only the strategy's own is taken.
    void onQuote(const IModuleFutureTrader::ITickEx& tick);
    // Reads the quote from the host (when the window opens, at start).
    void refreshQuote();
    // One strategy step on the current quote.
    void step();
    // Called after a quote or a command changed what the window shows.
    void setChanged(std::function<void()> callback) { m_changed = std::move(callback); }

    // ---- Reading ---------------------------------------------------------------------
    const State& state() const { return m_state; }
    const Quote& quote() const { return m_quote; }
    // "条件通[E:%d,X:%d]" once a step ran, else "条件通" (with the template name when set).
    std::string caption() const;
    const std::string& templateName() const { return m_params.strName; }
    void setTemplateName(const std::string& name) { m_params.strName = name; }
    // The price conditions' labels for a direction and a condition (0 last >= price, 1 <=).
    static const char* entryLabel(bool isLong, int condition);
    static const char* exitLabel(bool isLong, int condition);
    // The base of stop, profit and trailing distances (first or average entry price).
    double basePrice() const;

    // The entry and exit attempts on their own (a step runs both, after its time checks).
    int entryAttempt(std::int64_t nowMs);
    int exitAttempt(std::int64_t nowMs);

private:
    struct Reason {
        const char* words;
        double threshold;  // the price line, stop or trail level that decided, or 0
    };
    bool tradingNow(std::int64_t nowMs);
    void trackExtreme();
    int closeOrder(std::int64_t nowMs, const Reason& why);
    // Sends through the confirmation path and records it; false when declined.
    bool sendOrder(bool buy, bool open, std::int32_t lots, double price, std::int64_t nowMs,
                   const Reason& why);
    void endRoundTrip();
    void notify();

    CHelmsmanManage& m_manager;
    WndHandle m_hWnd = 0;
    tagAMTParams m_params;
    IModuleFutureTrader::ISpecDetailValue m_detail;
    double m_point = 0;
    int m_decimals = 2;
    CQuoteSubscription m_subscription;
    CAMTFormulaReader m_formula;
    Quote m_quote;
    State m_state;
    bool m_inStep = false;
    // Local midnight of the current day, so a step finds the time of day without a
    // calendar conversion.
    std::int64_t m_dayStartMs = 0;
    std::int64_t m_dayEndMs = 0;
    std::function<void()> m_changed;
};
