// SimExchange: a simulated futures exchange and broker that implements the host facade
// (CSubscibeManage), so Helmsman trades for real without a broker.
//
// What it simulates
// - A catalogue of real Chinese futures on four exchanges (0 上海期货交易所, 1 大连商品交易所,
//   2 郑州商品交易所, 3 中国金融期货交易所 — the index-futures exchange, pre-open 09:10,
//   open 09:15), with their real price unit, minimum move (1), multiplier, margin rate, a
//   previous settlement and the day's limit band (pre-settle ± limit%, rounded inward to the
//   tick). One expired contract (IF2012, 已到期) is listed with bTradable = false and
//   SimContract::expired: its last price is its final settlement, it has no book and never
//   ticks, orders in it are refused and it cannot be replayed.
// - Trading sessions: each exchange keeps its day sessions from host/trading_session.h (no
//   night sessions, except for learned recorded contracts, below). Outside continuous trading orders are accepted and rest, but nothing
//   matches and no server trigger is released; the first quote round inside a session
//   matches them. The random walk pauses in breaks, after the close and before the call
//   auction: a contract that does not move queues no quote. Replayed ticks play at any hour
//   (they are what the exchange recorded), matching still follows the sessions. Contracts of
//   the recorded data that the catalogue lacks (sim_recorded.h) are learned when replayed;
//   those of a product with a night session (郑商所 MA, SR, TA) also trade 21:00-23:30.
// - Two demo accounts, 880001 "模拟账户一" and 880002 "模拟账户二" (broker 9999, "模拟期货公司"),
//   password "888888", funds 1,000,000 and 500,000, both logged on at construction unless
//   SimOptions says otherwise. 880002 holds 5 long rb2105 and 1 short IF2101 from yesterday,
//   so close versus close-today can be seen.
// - Quotes: a seeded random walk (std::mt19937_64) advanced one 500 ms round per step(),
//   or replay of recorded ticks (loadTickFile) against the injected clock's time of day: a
//   tick whose HH:MM:SS.mmm <= the clock's local time of day is due; every due tick is
//   applied and matched in turn, and one quote event per contract and step carries the last.
//   Prices are always on the tick grid and inside the limit band. Until the first session
//   of the day opens the last price, bid and ask are 0 and only the fallbacks show:
//   dPreOpenPrice1 = indicative open (it moves during the call auction, 08:55–09:00 or
//   09:10–09:15 on exchange 3), dPreOpenPrice2 = previous close. Once open, dPreOpenPrice1
//   is the day's open.
// - Matching (one level book, the touch):
//     * A new limit buy at P fills at the ask when P >= ask, up to the ask volume still
//       available this round; a sell likewise against the bid. The rest rests at P.
//     * Each quote round resets the touch volumes to the new quote's. A resting order is
//       looked at on later rounds only: a buy at P fills completely at P when the last price
//       trades through it (last < P), else up to the available ask volume at P when
//       ask <= P. Sells mirror this (last > P; bid >= P). Best price first, then time.
//     * Resting orders are indexed per contract by price (integer ticks), so a quote round
//       touches only the orders that can fill.
// - Order status sequence: 11 发送中 -> 1 已报 -> 2 部分成交 -> 3 全部成交, every change an
//   event code 2 carrying a snapshot of the order; each fill is an event code 2 (the new
//   status and filled volume) followed by an event code 4 (the tagBargainOrder). Cancels:
//   7 撤单中... then 4 已撤单, or 6 部成部撤 when partly filled. Rejects: 11 then 5 已废除
//   with the reason in strStatusMsg (see SendOrder).
// - Positions per account and contract, long and short with today's part and average
//   prices. kClose closes yesterday's quantity first and then today's, except on exchange 0
//   (上期所) where kClose closes only yesterday's; kCloseToday closes only today's. Quantity
//   held by working close orders is frozen.
// - Funds: balance = pre-balance + close profit + position profit - commission; margin on
//   positions at the mark (last, else pre-settle); frozen = margin and commission of working
//   open orders; available = balance - margin - frozen.
// - Server trigger orders (tagTriggerOrder), evaluated on every quote round against the
//   last price: 0 吊买 releases when last <= trigger, 1 吊卖 when last >= trigger, 2 追买
//   when last >= trigger, 3 追卖 when last <= trigger. On release a plain order is sent at
//   dPrice (0 = at market: the opposite best, else the limit on that side) with the
//   trigger's remark, tStart is set to the firing time and the status becomes released.
//   A waiting trigger whose tExpiry (> 0) lies before now expires.
//
// Events
// - SimExchange never calls out inside a facade call. Every event is queued and delivered
//   by deliverPending(), which the host calls on its UI thread (a ~20 ms timer) and tests
//   call directly. deliverPending takes the due events out under the lock and calls the
//   sinks without holding it, in queue order.
// - Re-entrancy: a sink handler may call any facade operation (SendOrder, DeleteOrder...).
//   Events caused by it are queued and delivered by the NEXT deliverPending call, never
//   inside the handler and never in the current call. A deliverPending call made while a
//   delivery is running (a nested event loop inside a handler, or another thread) returns 0
//   at once and delivers nothing.
// - The event sink (setEventSink, the add-in's side) receives:
//     onDataChange(2, &tagBrokerOrder) for every order change of a logged-on account,
//     onDataChange(4, &tagBargainOrder) for every fill,
//     onDataChange(1000, &ITickEx) once per quote of a symbol with at least one
//       QueryInterface(1000) subscription, followed by
//     onWindowMessage(hWnd, 2070, 1000, &ITickEx) to each subscribed handle (in the order
//       the handles first subscribed),
//     onDataChange(kSimEventTriggerChanged, &tagTriggerOrder) for every server trigger
//       order change (booked, released, expired, modified, deleted),
//     onLogonStateChange(code, &tagAccoutInfo) for logon changes (kSimLogon* codes).
//   The pointers are valid only during the call.
// - The desk sink (setDeskSink, the shell's own monitors) receives every event regardless
//   of subscriptions: onDataChange for every order change, fill and quote of every
//   contract, onDataChange(kSimEventTriggerChanged, &tagTriggerOrder) for every trigger
//   order change, onLogonStateChange for every logon
//   change. It never receives onWindowMessage. For one event the event sink is called
//   first, then the desk sink.
// - When neither sink is set, nothing is queued.
//
// Fault injection (for tests): rejectNextOrders, dropNextNotifications,
// duplicateNextNotifications and setNotificationDelay act on trade notifications only —
// events code 2 and 4 — so quotes do not disturb the counts; forceLogoff logs every account
// off with code kSimLogonForcedOff.
//
// Ownership and threads: the host owns the SimExchange and the clock (which must outlive
// it). Every public method locks one internal recursive mutex, so the UI thread and the algo
// worker may call concurrently. Sinks are called on the thread that calls deliverPending.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/clock.h"
#include "host/subscibe_manage.h"
#include "sim/sim_types.h"
#include "sim/tick_file.h"

class SimExchange final : public CSubscibeManage {
public:
    explicit SimExchange(IClock& clock, SimOptions options = {});
    ~SimExchange() override;
    SimExchange(const SimExchange&) = delete;
    SimExchange& operator=(const SimExchange&) = delete;

    // ---- CSubscibeManage ------------------------------------------------------------
    // Results: 1 success, 0 failure (unknown symbol, order, account...).
    //
    // Queries of orders, positions, fills, trigger orders and summaries answer for logged-on
    // accounts only. GetExchangeSymbols ignores `filter` except that a filter of 1 lists only
    // tradable contracts. GetOpenOrders returns the working orders (status 1, 2, 7, 11).
    //
    // SendOrder books the order under a new identifier ("1", "2", ...) and matches it at
    // once against the current touch when its exchange is trading (else it rests); events
    // follow through deliverPending. Written back:
    // strOrderID, nStatus, strStatusMsg, tUpdateTime (dFilledVolume stays as it was sent
    // with; the fills arrive as events). Returns 1 when accepted, with nStatus 1 (已报).
    // Returns 0 when refused:
    //   - not logged on, or an unknown account: nothing booked, no event, no identifier,
    //     nStatus 5 and the reason in strStatusMsg;
    //   - every other reject (unknown contract, untradable, volume <= 0 or not whole,
    //     direction or open/close flag invalid, price off the tick or outside the band,
    //     closing more than is held or than today's, no funds, injected reject): booked
    //     with an identifier, nStatus 5, the reason in strStatusMsg, events 11 then 5.
    // SendTriggerOrder returns 1 and writes strOrderID ("T1", ...), nStatus 0 and
    // tCreateTime; 0 (nothing booked) when not logged on, the contract is unknown, the
    // volume <= 0, the trigger price is absent or the type is not 0..3.
    // ModifyTriggerOrder replaces price, trigger price, type, volume, expiry, stop-loss,
    // take-profit and remark of a waiting trigger order; DeleteTriggerOrder marks a waiting
    // one deleted. Both return 0 for an unknown or no longer waiting order.
    int GetMarketQuote(const tagSymbol& symbol, IModuleFutureTrader::ITickEx& tick) override;
    int GetSymbolProperty(const tagSymbol& symbol,
                          IModuleFutureTrader::ISpecDetailValue& detail) override;
    int GetAllPositions(std::vector<tagOpenedPosition>& positions) override;
    int GetPosition(tagOpenedPosition& position, const std::string& accountKey1,
                    const std::string& accountKey2, const tagSymbol& symbol) override;
    int GetAllOrders(std::vector<tagBrokerOrder>& orders) override;
    int GetOpenOrders(std::vector<tagBrokerOrder>& orders, const std::string& accountKey1,
                      const std::string& accountKey2, const tagSymbol& symbol) override;
    int GetOrder(tagBrokerOrder& order, const std::string& accountKey1,
                 const std::string& accountKey2, const std::string& orderID) override;
    int SendOrder(tagBrokerOrder& order) override;
    int DeleteOrder(const std::string& accountKey1, const std::string& accountKey2,
                    const std::string& orderID) override;
    int GetAllTriggerOrders(std::vector<tagTriggerOrder>& orders) override;
    int GetTriggerOrdersBySymbol(std::vector<tagTriggerOrder>& orders,
                                 const tagSymbol& symbol) override;
    int GetTriggerOrder(tagTriggerOrder& order, const std::string& accountKey1,
                        const std::string& accountKey2, const std::string& orderID) override;
    int SendTriggerOrder(tagTriggerOrder& order) override;
    int ModifyTriggerOrder(const std::string& orderID, const tagTriggerOrder& order) override;
    int DeleteTriggerOrder(const std::string& accountKey1, const std::string& accountKey2,
                           const std::string& orderID) override;
    int GetAllBargains(std::vector<tagBargainOrder>& bargains) override;
    int GetAccountSummary(tagAccountSummary& summary, const std::string& accountKey1,
                          const std::string& accountKey2) override;
    int GetAvailableAccounts(std::vector<tagAccoutInfo>& accounts) override;
    int GetAllExchanges(std::vector<tagExchangeInfo>& exchanges) override;
    int GetExchangeSymbols(int exchangeID, std::vector<tagSymbol>& symbols, int filter) override;
    int GetBrokerByID(tagBrokerInfo& broker, const std::string& brokerID) override;
    // Backed by a table (see setConfigProperty); file, section and key compare
    // case-insensitively. Defaults: ("system.ini","Trade","DefaultVolume")="1",
    // ("system.ini","Trade","ConfirmOrder")="0", ("system.ini","Quote","RefreshMs")="500",
    // ("system.ini","Host","Name")="SimExchange", ("system.ini","Host","Version")="1.0".
    // The file "tblprofile" answers live formula values per contract (sim_formula.h).
    bool GetConfigFileProperty(const std::string& file, const std::string& section,
                               const std::string& key, std::string& value) override;
    // Request 1000: arg = window handle, flag 1 subscribe / 0 unsubscribe, data ->
    // tagSubscribeBlock. Returns 1 for a known symbol (subscribing twice keeps one
    // subscription; unsubscribing an absent one is harmless and returns 1), 0 for an unknown
    // symbol, a null block or any other request.
    int QueryInterface(std::uint32_t request, std::uint32_t arg, std::uint8_t flag,
                       void* data) override;

    // ---- Events -----------------------------------------------------------------------
    void setEventSink(ISimEventSink* sink);  // the add-in's side; nullptr to detach
    void setDeskSink(ISimEventSink* sink);   // the shell's monitors; nullptr to detach
    // Delivers the due events in queue order; returns how many sink events were delivered
    // (one per queued event that was due, duplicates counted). Call on the UI thread.
    std::size_t deliverPending();
    std::size_t pendingEventCount() const;

    // ---- Market -----------------------------------------------------------------------
    static constexpr std::int64_t kQuoteIntervalMs = 500;
    // One quote round at the clock's current time: replayed contracts take every tick now
    // due (matching against each), the others move one random-walk step (if enabled); then
    // resting orders, trigger orders and marks are updated and quote events queued.
    void step();
    void advanceQuotes() { step(); }
    // Imposes one quote (wExchangeID/strCode name the contract) as if the market produced
    // it: a new round for that contract, matching, triggers and marks as in step().
    // Absent limits are kept from the catalogue; a tQuoteTime of 0 takes the clock's time.
    // Returns false for an unknown contract.
    bool applyQuote(const IModuleFutureTrader::ITickEx& tick);
    void setRandomWalk(bool on);

    // Replays a recorded tick file for `symbol` (empty: the code from the file name, on the
    // exchange that lists it). Ticks play by time of day against the clock; limits,
    // pre-settle and pre-close come from the file when present. Returns false with the
    // reason in report->error, fit to show the user: the file cannot be read, the contract
    // is unknown or expired, the file has no tick lines, or every line was skipped (the
    // count and the first reasons).
    bool loadTickFile(const std::string& path, const tagSymbol& symbol = {},
                      sim::TickParseReport* report = nullptr);
    // Replays already parsed ticks (same rules), in trading-day order on the clock's trading
    // day (sim_recorded.h): the night rows of a product that trades at night play the evening
    // before its day rows.
    bool loadTicks(const tagSymbol& symbol, std::vector<sim::TickRecord> ticks);
    // Replays ticks at the calendar times given (ms, one per tick; see sim::tradingDayTimes):
    // a tick is due once the clock reaches its time. Ticks are ordered by time, ties kept in
    // the given order. False for an unknown or expired contract, no ticks or a count mismatch.
    bool loadTicksAt(const tagSymbol& symbol, std::vector<sim::TickRecord> ticks,
                     std::vector<std::int64_t> atMs);
    // Makes sure a contract of the recorded data is listed (sim::recordedContract) and gives
    // its symbol; a contract already listed is left as it is. False for a code neither knows.
    bool learnContract(const std::string& code, tagSymbol& symbol);
    // How many ticks of a replay remain to play (0 when not replaying).
    std::size_t replayRemaining(const tagSymbol& symbol) const;

    // ---- Catalogue ----------------------------------------------------------------------
    std::vector<SimContract> contracts() const;
    std::vector<tagSymbol> allSymbols() const;
    bool contract(const tagSymbol& symbol, SimContract& out) const;
    // Adds or replaces a contract (resets its market).
    void addContract(const SimContract& contract);
    void setTradable(const tagSymbol& symbol, bool tradable);

    // ---- Accounts -----------------------------------------------------------------------
    std::vector<SimAccount> demoAccounts() const;  // logged on or not
    // Logs one account on (password checked when non-empty is given and the account has
    // one: the demo password is "888888"). Returns 1, or 0 for an unknown account / wrong
    // password. Logging on an account already on does nothing and returns 1.
    int logon(const std::string& accountID, const std::string& password = {});
    int logoff(const std::string& accountID);
    void logonAll();
    void logoffAll();
    bool isLoggedOn(const std::string& accountID) const;
    // Sets an account's funds at the start of the day (its pre-balance). False if unknown.
    bool setAccountFunds(const std::string& accountID, double preBalance);
    // Seeds a position held since yesterday (not today's) at `price`.
    void seedYesterdayPosition(const std::string& accountID, const tagSymbol& symbol,
                               std::int32_t direction, double volume, double price);

    // ---- Configuration table --------------------------------------------------------------
    void setConfigProperty(const std::string& file, const std::string& section,
                           const std::string& key, const std::string& value);

    // ---- Subscriptions (for tests and the desk) -------------------------------------------
    bool isSubscribed(std::uint32_t hWnd, const tagSymbol& symbol) const;
    std::size_t subscriptionCount() const;

    // ---- Fault injection ------------------------------------------------------------------
    // The next n orders sent are rejected (status 5) with `reason`.
    void rejectNextOrders(int n, const std::string& reason = simtext::kInjectedReject);
    // Trade notifications (codes 2, 4) queued from now on are held back for `calls`
    // deliverPending calls and/or `ms` of clock time (both 0: no delay).
    void setNotificationDelay(int calls, std::int64_t ms = 0);
    // The next n trade notifications are never delivered.
    void dropNextNotifications(int n);
    // The next n trade notifications are delivered twice in a row.
    void duplicateNextNotifications(int n);
    // Logs every account off (code kSimLogonForcedOff); working orders stay booked.
    void forceLogoff();

    SimStats stats() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
