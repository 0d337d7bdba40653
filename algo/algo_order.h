// CAlgoOrder: one algo order, a large parent quantity worked into the market as a sequence of
// small child orders (slices), each sized, priced and timed by the order's settings and its
// pacing. It holds the rules and the two state machines: the step, a deterministic function
// of the clock, the quote and the order, and the notification machine that follows the host's
// reports of the slice now out.
//
// The order never talks to the host itself: the step returns what it wants done (send a slice,
// query or cancel the slice) and the engine (algo_engine.h) makes the host call and hands the
// answer back. That keeps every rule testable with plain values.
//
// Ownership: shared (std::shared_ptr) between the engine's list and the centre's view; plain
// data otherwise. Not thread-safe: the engine's recursive mutex guards every access.
#pragma once

#include <cstdint>
#include <string>

#include "algo/algo_setting.h"
#include "host/records.h"

// Engine states.
enum : int {
    kAlgoNormal = 0,       // no slice working; the next one goes when its interval is over
    kAlgoSending = 1,      // a slice was sent, no report yet
    kAlgoQueued = 2,       // the slice rests at the exchange
    kAlgoCancelling = 3,   // a cancel of the slice was requested
    kAlgoPartFilled = 4,   // the slice is partly filled
    kAlgoError = 99,       // stopped until the centre resets it
};

// Pacing.
enum : int { kPaceNormal = 0, kPaceFast = 1, kPaceUrgent = 2, kPaceImmediate = 3 };

// Run condition, set by the centre and read by the step.
enum : int { kRunPaused = 0, kRunRunning = 1, kRunCancelled = 2, kRunDeleted = 3 };

// The slice interval when pacing is not normal or a range asks for speed, and the floor of
// total-time pacing.
inline constexpr std::int64_t kFastestIntervalMs = 500;
// How long a cancel request is given before it is repeated.
inline constexpr std::int64_t kCancelRepeatMs = 5000;

// The generator of the randomisation: the C library's classic linear congruential rand(),
// re-seeded with the millisecond tick count on every call, so its output is a function of the
// tick alone (0..32767).
int algoRand(std::uint64_t seedTick);
// Value v randomised by p percent: d = v * p / 100 (integer part); d <= 0 gives v, else
// v - d + (r * 2d) div 32767 with r = algoRand(tick), so the value lies in [v - d, v + d].
std::int64_t randomise(std::int64_t v, std::int64_t percent, std::uint64_t tick);

// Trading-session time, in milliseconds, that lies between two calendar times (ms since
// 1970) on the exchange's day sessions (host/trading_session.h); exchanges the table does
// not know trade all day.
std::int64_t sessionMsBetween(int exchangeId, std::int64_t fromMs, std::int64_t toMs);

// What a step wants done with the host.
enum class AlgoAction { None, SendSlice, QuerySlice, CancelSlice, FindSlice };

// The slice the step decided on.
struct AlgoSlice {
    int volume = 0;
    double price = 0;
    std::int64_t intervalMs = 0;
};

// The stop and limit ranges against a last price.
struct AlgoRangeState {
    bool blocked = false;  // a range with out-of-range setting 0 is crossed: no slice
    bool fast = false;     // a range with out-of-range setting 1 is crossed: 500 ms
};

class CAlgoOrder {
public:
    CAlgoOrder() = default;
    // A new order from a plain order record (account, instrument, side, open/close, volume)
    // and its settings; `serial` is its number in the engine.
    CAlgoOrder(int serial, const tagBrokerOrder& order, const tagAlgoSetting& setting,
               const IModuleFutureTrader::ISpecDetailValue& detail);

    // ---- Rules (pure) -------------------------------------------------------------------
    double tick() const;
    int remaining() const;  // total - filled, whole lots
    AlgoRangeState ranges(double last) const;
    // Slice size in state 0 for this quote at this tick count.
    int sliceSize(const IModuleFutureTrader::ITickEx& q, std::uint64_t tick) const;
    // Slice price for this quote (0 when there is no price at all).
    double slicePrice(const IModuleFutureTrader::ITickEx& q) const;
    // Interval after a slice of `size` lots, at calendar time nowMs and tick count `tick`.
    std::int64_t sliceInterval(const IModuleFutureTrader::ITickEx& q, int size, std::int64_t nowMs,
                               std::uint64_t tick) const;

    // ---- The step -----------------------------------------------------------------------
    // What to do now (tick count `tick`). SendSlice needs the quote: the engine fetches it and
    // calls planSlice. A paused, finished or stopped order does nothing; a cancelled or
    // deleted one only finishes the cancel of a slice it still has out.
    AlgoAction step(std::uint64_t tick) const;
    // Size, price and interval for the quote; volume 0 when nothing is to be sent.
    AlgoSlice planSlice(const IModuleFutureTrader::ITickEx& q, std::int64_t nowMs,
                        std::uint64_t tick) const;
    // The slice order to send (its remark is the slice tag).
    tagBrokerOrder sliceOrder(const AlgoSlice& s, std::int64_t nowSec) const;
    // The host took (result != 0) or refused the slice; `sent` is the record as written back.
    void sliceSent(const AlgoSlice& s, const tagBrokerOrder& sent, int result, std::uint64_t tick);
    // A cancel was requested at `tick`.
    void cancelRequested(std::uint64_t tick);
    // The answer of a query for the slice (GetOrder), or of a search of the day's orders
    // (found false: the host has no order with the slice's tag). Returns true when the order
    // changed. After a query, a slice still working whose interval is over wants a cancel:
    // wantsCancel() says so.
    bool lookupAnswered(bool found, const tagBrokerOrder& record, std::uint64_t tick);
    bool wantsCancel(std::uint64_t tick) const;

    // ---- The notification machine -------------------------------------------------------
    // A report of the slice now out (already matched to this order). Returns true when
    // anything changed.
    bool onNotification(const tagBrokerOrder& record);
    // A report that tells nothing new is stale: a status earlier in an order's life than one
    // already seen for this slice (a late "已报" after "部分成交"), or a partial fill no larger
    // than the one known. accept() drops stale reports and runs the machine on the others.
    bool isStale(const tagBrokerOrder& record) const;
    bool accept(const tagBrokerOrder& record);
    // True when the record is a report of this order's current slice: its remark carries the
    // slice tag and, once the identifier is known, the identifier matches.
    bool matches(const tagBrokerOrder& record) const;

    // ---- Commands (the centre) ---------------------------------------------------------
    // Start: records the base price (last price, else the mid, else the order price) and the
    // start time on the first start.
    void start(double basePrice, std::int64_t nowMs);
    void pause();
    void cancel();
    void markDeleted();
    // Leaves state 99 for state 0; a slice that was out is looked up before anything is sent.
    void reset();
    void setPacing(int pacing);
    // After a reload: running orders come back paused, a slice that was out is looked up.
    void restored();

    // ---- Reading --------------------------------------------------------------------------
    bool finished() const { return m_dDoneFilled + m_dSliceFilled >= m_dTotal - 1e-9; }
    bool sliceOut() const { return m_bSliceOpen; }
    double filled() const { return m_dDoneFilled + m_dSliceFilled; }
    std::string tag() const;
    static std::string tagOf(int serial, int sliceNo);
    // Parses a slice tag: true with the order and slice numbers.
    static bool parseTag(const std::string& remark, int& serial, int& sliceNo);
    const char* stateText() const;
    const char* runText() const;

    // ---- Data (public for the file format and the views) --------------------------------
    // What every pass reads comes first, so a pass over many orders touches little memory.
    int m_nRun = kRunPaused;
    int m_nState = kAlgoNormal;
    bool m_bSliceOpen = false;
    bool m_bNeedsLookup = false;  // the slice's fate is unknown: ask the host before sending
    double m_dTotal = 0;
    double m_dDoneFilled = 0;  // filled by slices that are over
    double m_dSliceFilled = 0;
    // Timing, in tick-count ms of this process (-1: long ago).
    std::int64_t m_tSend = -1;
    std::int64_t m_nIntervalMs = 0;
    std::int64_t m_tCancel = -1;
    std::string m_strSliceID;  // the slice now out, as the host names it ("" : not known)

    int m_nSerial = 0;
    tagAlgoSetting m_setting;
    std::string m_strAccountID;
    std::string m_strBrokerID;
    tagSymbol m_symbol;
    std::string m_strSymbolText;
    std::int32_t m_nMinMove = 1;
    double m_dPriceUnit = 0;
    std::int32_t m_nDirection = kDirBuy;
    std::int32_t m_nOpenClose = kOpen;
    std::int32_t m_nHedge = kSpeculation;
    std::int32_t m_nMinAutoKPPos = 2;  // the automatic open/close choice's position floor
    double m_dOrderPrice = 0;          // the price the parent order came with
    double m_dBasePrice = 0;
    std::int64_t m_tStartMs = 0;  // calendar ms of the first start (0: never started)
    int m_nPacing = kPaceNormal;
    int m_nSliceNo = 0;
    double m_dSliceVolume = 0;
    double m_dSlicePrice = 0;
    std::string m_strMessage;
    int m_nLastStatus = -1;  // the host's status of the slice at the last query
    int m_nSeenRank = 0;     // how far in its life the slice was last seen (see isStale)

private:
    void closeSlice(double filledVolume);
    void fail(const char* format, int status);
};
