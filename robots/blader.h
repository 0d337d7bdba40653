// CBlader: the ladder robot's core. It builds a position in one instrument of up to nMaxPos
// entries, one lot each, nGridInterval ticks apart, starting at the market, and takes the
// newest entry off again at nWinPoint ticks of profit, over and over.
//
// The ladder (ticks of the instrument, one tick = minimum move x price unit):
//   first entry       at the last price, which becomes the base price;
//   entry k (k >= 1)  at base - k x grid (long) or base + k x grid (short);
//   close of entry k  at its price + win (long, selling) or - win (short, buying).
// Buying prices round up to the tick, selling prices down. One opening and one closing order
// work at a time, each tracked by its leg (robots/leg.h): the opening leg with "te" tags
// (the entry that sets a new base with "blader|h|...|te|...", the others "$|h|...|te|..."),
// the closing leg with "$|h|...|tx|...". A filled entry adds one to the count of entries
// held, a filled close takes one off. No entry opens within 20 ticks of a limit price;
// closing goes on there.
//
// Resting orders follow the ladder: when the count of entries changes under a resting order
// (the other leg filled, or the user typed a new figure) it is cancelled and placed anew at
// the new rung once the cancel is confirmed.
//
// Time limit: nTimeExit seconds (> 0) after the first entry the robot stops adding, cancels a
// resting entry, and closes what it holds lot by lot at the opposite best quote with an
// allowance of 10 ticks, within the limit price (placed anew should the quote run past a
// resting order). Once flat, both legs stop in 99 ("出错或时间到") and
// the robot stops; a start begins afresh.
//
// A leg whose order the host refused (at once or by notification) waits before it sends
// again: 1 s, doubling up to 30 s while refusals go on, so a logged-off account is not
// bombarded. A leg that has heard nothing for 3 s looks its order up (reconcile), so a lost
// notification never leaves it stuck. Pausing lets go of resting orders (cancelled, tag
// cleared, leg idle); their tags are still watched so a fill that beat the cancel is booked.
//
// Driving it: every host event through onMessage (2070: quotes of the instrument and order
// notifications; anything else is ignored), and timerStep() about twice a second. Decisions
// run on every quote, after every notification that moved a leg, and in the timer pass.
// Nothing here reads the system clock or shows a window: time, boxes and the market come
// from the manager's clock, prompter and facade, and every order sent is recorded in the
// manager's journal.
//
// Ownership: owned by its window (or a headless driver). It takes a window handle from the
// manager at construction and gives it back when destroyed; whoever opens it registers that
// handle for host events (the robot launcher does). UI thread only.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/quote_subscription.h"
#include "host/records.h"
#include "host/window.h"
#include "robots/blader_setting.h"
#include "robots/leg.h"
#include "robots/order_tag.h"

class CHelmsmanManage;

namespace blader {

// Ticks between a limit price and the last price inside which no entry opens.
inline constexpr int kLimitGuardTicks = 20;
// Ticks beyond the opposite best at which a time-up close is priced.
inline constexpr int kExitAllowanceTicks = 10;

// The ladder's arithmetic for one side and one instrument.
struct Ladder {
    bool isLong = true;
    std::int32_t grid = 5;  // ticks between entries
    std::int32_t win = 5;   // ticks of profit
    std::int32_t minMove = 1;
    float priceUnit = 1;

    double tick() const;
    // Entry k (0 first) as priced from the base, unrounded.
    double entry(double base, std::int32_t k) const;
    // The opening order of entry k, rounded (long buys up, short sells down).
    double openPrice(double base, std::int32_t k) const;
    // The closing order of the newest of n >= 1 entries, rounded (long sells down, short
    // buys up).
    double closePrice(double base, std::int32_t n) const;
    // Whether the last price lies within the guard band of either limit:
    // upper - 20 ticks < last, or lower + 20 ticks >= last.
    bool nearLimit(double last, double upper, double lower) const;
};

}  // namespace blader

class CBlader : public IWndTarget {
public:
    static constexpr int kDialogId = 25120;
    static constexpr std::uint64_t kQuietMs = 3000;       // look an order up after this
    static constexpr std::uint64_t kFirstRetryMs = 1000;  // wait after a refusal
    static constexpr std::uint64_t kLastRetryMs = 30000;
    static constexpr int kTimerMs = 500;  // how often the owner should call timerStep()

    explicit CBlader(CHelmsmanManage& manager);
    ~CBlader() override;
    CBlader(const CBlader&) = delete;
    CBlader& operator=(const CBlader&) = delete;

    WndHandle handle() const { return m_hWnd; }

    // ---- Settings -----------------------------------------------------------------------
    const tagBladerSetting& setting() const { return m_setting; }
    // Takes new settings while stopped (false while running): reads the instrument's contract
    // and quote, and subscribes its quotes under this robot's handle.
    bool setSetting(const tagBladerSetting& setting);
    // Whether the host knows the instrument (its tick is known).
    bool contractKnown() const { return m_tickUnits > 0; }
    const tagAccoutInfo& account() const { return m_account; }
    void setAccount(const tagAccoutInfo& account) { m_account = account; }

    // ---- Running ------------------------------------------------------------------------
    // Starts stepping. Refused with a box when no trading account is logged on or the
    // instrument is unknown. Legs stopped in 99 start again from idle.
    bool start();
    // Lets go of resting orders (cancelled, legs idle) and stops stepping. Refused with a
    // box while an order is being sent or cancelled; true when paused (or not running).
    bool pause();
    bool running() const { return m_running; }
    // The user typed another count of entries held: warns once, then goes on from it.
    void setPosition(std::int32_t entries);
    // The window is about to close: asks first when running (false: stay open). On yes the
    // robot cancels its resting orders and stops listening.
    bool confirmClose();
    // Stops listening for good (the window is going).
    void close();
    bool closing() const { return m_closing; }

    // ---- Events -------------------------------------------------------------------------
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;
    // One quote; decides when it is the instrument's and news. No allocation.
    void onQuote(const IModuleFutureTrader::ITickEx& tick);
    // One order notification: 1 looked at, -1 when closing or the record/remark is missing.
    int onOrder(const tagBrokerOrder* record);
    // The timer pass: lost notifications, the time limit, and a decision.
    void timerStep();

    // ---- What the window shows --------------------------------------------------------
    std::int32_t held() const { return m_held; }
    double basePrice() const { return m_base; }
    bool timeUp() const { return m_timeUp; }
    std::int32_t opened() const { return m_opened; }
    std::int32_t closed() const { return m_closed; }
    const CLeg& openLeg() const { return m_open; }
    const CLeg& closeLeg() const { return m_close; }
    double last() const { return m_last; }
    double bid() const { return m_bid; }
    double ask() const { return m_ask; }
    int priceDecimals() const;
    // "顺势锤[时间:%d(秒)]" while entries are held (seconds since the first), else
    // "顺势锤[时间:N/A]".
    std::string caption() const;
    // "合计:%d(%d)": entries opened and entries closed since the window opened.
    std::string totals() const;
    std::string openStatus() const { return m_open.statusText(m_bid, m_ask); }
    std::string closeStatus() const { return m_close.statusText(m_bid, m_ask); }
    // Moves on whenever something the window shows changed.
    std::uint64_t revision() const { return m_revision; }

private:
    struct Released {  // an order let go of at a pause, watched for a late fill
        std::string tag;
        std::string orderId;
        bool opening;
    };

    blader::Ladder ladder() const;
    void decide();
    void stepOpen(std::uint64_t now);
    void stepClose(std::uint64_t now);
    void sendOpen(double price);
    void sendClose(double price);
    bool send(CLeg& leg, int l, tagBrokerOrder& order, std::string tag, const char* reason,
              double target);
    tagBrokerOrder newOrder(std::int32_t direction, std::int32_t openClose, double price) const;
    std::int32_t closeFlag() const;
    void settle();
    void noteStep(int l, std::int32_t from, std::int32_t to);
    bool watchReleased(const tagBrokerOrder& record);
    void reconcileReleased();
    void release(CLeg& leg, bool opening);
    void finishTimeUp();
    bool quoteValid() const;

    CHelmsmanManage& m_manager;
    WndHandle m_hWnd = 0;
    COrderTagSource m_tags;
    CQuoteSubscription m_subscription;
    tagBladerSetting m_setting;
    tagSymbol m_symbol;
    tagAccoutInfo m_account;
    std::int32_t m_minMove = 0;
    float m_priceUnit = 0;
    std::int64_t m_tickUnits = 0;
    double m_tick = 0;

    CLeg m_open;
    CLeg m_close;
    bool m_running = false;
    bool m_closing = false;
    bool m_timeUp = false;

    std::int32_t m_held = 0;         // entries held
    double m_base = 0;               // price of the first entry's decision
    std::uint64_t m_firstEntry = 0;  // tick count of the first entry; 0: none held
    std::int32_t m_openIndex = 0;    // the entry the opening order is for
    std::int32_t m_closeIndex = 0;   // entries held when the closing order was priced
    bool m_closeAtMarket = false;    // the closing order was priced at the quote (time up)
    double m_closeSent = 0;          // its price
    std::int32_t m_opened = 0;
    std::int32_t m_closed = 0;
    std::uint64_t m_retryAt[2] = {0, 0};  // per leg (0 opening, 1 closing)
    std::uint64_t m_retryDelay[2] = {0, 0};
    std::vector<Released> m_released;

    // The instrument's quote.
    double m_last = 0, m_bid = 0, m_ask = 0, m_upper = 0, m_lower = 0, m_volume = 0;
    std::int64_t m_quoteTime = 0;
    std::uint64_t m_revision = 0;
};
