// SimExchange's private state, shared by the files that implement it by concern:
//   sim_catalogue.cpp  contracts, exchanges, configuration table, construction
//   sim_market.cpp     quotes: random walk, sessions, replay, imposed quotes, subscriptions
//   sim_matching.cpp   orders: validation, the one-level book, fills, cancels
//   sim_accounts.cpp   accounts, logon, positions, funds
//   sim_triggers.cpp   server trigger orders
//   sim_events.cpp     the event queue and its delivery, notification faults
// Every Impl member runs under Impl::mu, taken by the public method that called it.
#pragma once

#include <algorithm>
#include <cctype>
#include <cmath>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <unordered_map>
#include <variant>

#include "host/trading_session.h"
#include "host/window.h"
#include "sim/sim_exchange.h"
#include "sim/sim_recorded.h"
#include "sim/sim_formula.h"

namespace simdetail {

using IModuleFutureTrader::ISpecDetailValue;
using IModuleFutureTrader::ITickEx;

inline constexpr double kVolEps = 1e-9;

inline std::string lower(std::string s) {
    for (auto& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// Local time of day of calendar milliseconds.
inline std::int32_t timeOfDayMs(std::int64_t nowMs) {
    std::int64_t sec = nowMs >= 0 ? nowMs / 1000 : (nowMs - 999) / 1000;
    std::tm tm = toLocalTm(sec);
    return ((tm.tm_hour * 60 + tm.tm_min) * 60 + tm.tm_sec) * 1000 +
           static_cast<std::int32_t>(nowMs - sec * 1000);
}

inline bool isWorking(std::int32_t s) {
    return s == kOrderQueued || s == kOrderPartFilled || s == kOrderCancelling ||
           s == kOrderSending;
}

// The demo catalogue (sim_catalogue.cpp).
std::vector<SimContract> defaultCatalogue();

}  // namespace simdetail

struct SimExchange::Impl {
    using ITickEx = IModuleFutureTrader::ITickEx;

    // ---- State ------------------------------------------------------------------------
    struct Market {
        SimContract c;
        std::int64_t step = 1;  // tick in 1/10000 units
        std::int64_t upperTicks = 0, lowerTicks = 0;
        ITickEx q;
        double availBid = 0, availAsk = 0;  // touch volume left this round
        bool opened = false;
        std::int64_t indicativeTicks = 0;
        std::int64_t lastTicks = 0;
        // replay
        std::vector<sim::TickRecord> ticks;
        std::vector<std::int64_t> tickAt;  // calendar ms of each tick (sim_recorded.h)
        std::size_t next = 0;
        bool replaying = false;
        // resting orders by price (ticks), FIFO within a price
        std::map<std::int64_t, std::deque<std::size_t>, std::greater<>> buys;
        std::map<std::int64_t, std::deque<std::size_t>> sells;
        // subscribed handles, copy-on-write so queued events can share the list
        std::shared_ptr<const std::vector<std::uint32_t>> subs;

        double price(std::int64_t ticks) const {
            return static_cast<double>(ticks * step) / 10000.0;
        }
        // Ticks of a price on the grid; false when off the grid.
        bool toTicks(double p, std::int64_t& ticks) const {
            std::int64_t units = std::llround(p * 10000.0);
            if (units % step != 0) return false;
            ticks = units / step;
            return true;
        }
        std::int64_t nearestTicks(double p) const {
            return std::llround(p * 10000.0 / static_cast<double>(step));
        }
    };

    struct Account {
        SimAccount a;
        bool on = false;
        double closeProfit = 0;
        double commission = 0;
        double frozen = 0;
    };

    struct Position {
        double longYd = 0, longTd = 0, shortYd = 0, shortTd = 0;
        double longAvg = 0, shortAvg = 0;
        double frzLongYd = 0, frzLongTd = 0, frzShortYd = 0, frzShortTd = 0;
        double longQty() const { return longYd + longTd; }
        double shortQty() const { return shortYd + shortTd; }
    };

    struct Order {
        tagBrokerOrder o;
        std::size_t market = 0;
        std::size_t account = 0;
        std::int64_t priceTicks = 0;
        double frzYd = 0, frzTd = 0;  // closing: position quantity still frozen
        double frozenPerLot = 0;      // opening: funds frozen per remaining lot
        bool resting = false;
    };

    struct Trigger {
        tagTriggerOrder t;
        std::size_t market = 0;
        std::size_t account = 0;
    };

    using Payload = std::variant<std::monostate, tagBrokerOrder, tagBargainOrder, ITickEx,
                                 tagTriggerOrder, tagAccoutInfo>;
    struct Event {
        bool logon = false;
        std::uint32_t code = 0;
        Payload payload;
        std::shared_ptr<const std::vector<std::uint32_t>> handles;  // quotes: subscribers
        bool toMain = false;
        bool toDesk = false;
        int copies = 1;
        std::uint64_t dueCall = 0;
        std::int64_t dueMs = 0;
    };

    IClock& clock;
    SimOptions opt;
    mutable std::recursive_mutex mu;
    std::mt19937_64 rng;
    bool randomWalk = true;

    std::vector<Market> markets;
    std::vector<Account> accounts;
    std::map<std::pair<std::size_t, std::size_t>, Position> positions;  // (account, market)
    std::vector<Order> orders;
    std::unordered_map<std::string, std::size_t> orderById;
    std::vector<Trigger> triggers;
    std::unordered_map<std::string, std::size_t> triggerById;
    std::vector<tagBargainOrder> bargains;
    std::map<std::string, std::string> config;  // lower("file|section|key")
    std::uint64_t nextOrderNo = 1, nextTriggerNo = 1, nextFillNo = 1;

    ISimEventSink* sink = nullptr;
    ISimEventSink* desk = nullptr;
    std::deque<Event> queue;
    std::vector<Event> batchScratch;  // deliverPending's buffer, kept between calls
    bool delivering = false;
    std::uint64_t deliverCalls = 0;

    int rejectN = 0;
    std::string rejectReason;
    int delayCalls = 0;
    std::int64_t delayMs = 0;
    int dropN = 0;
    int dupN = 0;

    SimStats st;
    sim::FormulaBook formulas;  // the "tblprofile" values (sim_formula.cpp)

    Impl(IClock& c, SimOptions o) : clock(c), opt(o), rng(o.seed), randomWalk(o.randomWalk) {}

    // ---- Lookups ----------------------------------------------------------------------
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);
    std::size_t findMarket(int ex, const std::string& code) const {
        for (std::size_t i = 0; i < markets.size(); ++i)
            if (markets[i].c.symbol.wExchangeID == ex && markets[i].c.symbol.strCode == code)
                return i;
        return npos;
    }
    std::size_t findMarket(const tagSymbol& s) const {
        return findMarket(s.wExchangeID, s.strCode);
    }
    std::size_t findAccount(const std::string& k1, const std::string& k2) const {
        for (std::size_t i = 0; i < accounts.size(); ++i)
            if (accounts[i].a.info.strAccountID == k1 &&
                (k2.empty() || accounts[i].a.info.strBrokerID == k2))
                return i;
        return npos;
    }

    // ---- Quotes (sim_market.cpp) ---------------------------------------------------------
    void initMarket(Market& m);
    // Local time of day of nowMs. The broken-down local time is worked out once per second,
    // not on every quote round.
    std::int32_t timeOfDay(std::int64_t nowMs) const;
    mutable std::int64_t todSecond = std::numeric_limits<std::int64_t>::min();
    mutable std::int32_t todSecondMs = 0;
    // Where the contract's exchange is in its day at nowMs.
    session::SessionState sessionAt(const Market& m, std::int64_t nowMs) const;
    // Orders of the contract match only in continuous trading (at the clock's time).
    bool matchingOpen(const Market& m) const;
    void openMarket(Market& m, std::int64_t nowMs);
    void setBook(Market& m);
    bool walk(Market& m, std::int64_t nowMs);
    void applyRecord(Market& m, const sim::TickRecord& r, std::int64_t dayMs);
    void setLimits(Market& m, double upper, double lower);

    // ---- Orders and matching (sim_matching.cpp) --------------------------------------------
    void round(std::size_t mi);
    template <class Book>
    void matchSide(Market& m, Book& book, bool buy);
    void matchResting(std::size_t mi);
    void addResting(std::size_t oi);
    void removeResting(std::size_t oi);
    double commissionOf(const Market& m, double qty, double price) const;
    void fill(std::size_t oi, double qty, double px);
    std::size_t send(tagBrokerOrder& in);
    const char* validate(std::size_t oi);
    void accept(std::size_t oi);
    void releaseHold(std::size_t oi);
    int cancel(const std::string& k1, const std::string& k2, const std::string& id);

    // ---- Server triggers (sim_triggers.cpp) ------------------------------------------------
    void expireTriggers();
    void evaluateTriggers(std::size_t mi);
    void release(std::size_t ti, std::int64_t now);

    // ---- Formula values (sim_formula.cpp) --------------------------------------------------
    bool formulaValue(const std::string& file, const std::string& section,
                      const std::string& key, std::string& value) const;

    // ---- Event queue (sim_events.cpp) -----------------------------------------------------
    void push(Event&& e);
    void queueOrder(std::size_t oi);
    void queueTrade(std::uint32_t code, Payload&& p);
    void queueTrigger(std::size_t ti);
    void queueQuote(std::size_t mi);
    void queueLogon(std::uint32_t code, const tagAccoutInfo& info);

    // ---- Funds and positions (sim_accounts.cpp) -------------------------------------------
    double mark(const Market& m) const;
    void summary(std::size_t ai, tagAccountSummary& s) const;
    double available(std::size_t ai) const;
    tagOpenedPosition positionRecord(std::size_t ai, std::size_t mi, const Position& p) const;
    void setLogon(std::size_t ai, bool on, std::uint32_t code);
};

#define SIM_LOCK                                             \
    std::lock_guard<std::recursive_mutex> lock_(m_impl->mu); \
    Impl& d = *m_impl
