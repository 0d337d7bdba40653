#include "sim/sim_exchange.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <random>
#include <unordered_map>
#include <variant>

#include "host/window.h"

const char* simTriggerStatusText(std::int32_t status) {
    switch (status) {
        case kSimTriggerWaiting:
            return "等待触发";
        case kSimTriggerReleased:
            return "已触发";
        case kSimTriggerDeleted:
            return "已删除";
        case kSimTriggerExpired:
            return "已过期";
        default:
            return "未知";
    }
}

namespace {

using IModuleFutureTrader::ISpecDetailValue;
using IModuleFutureTrader::ITickEx;

constexpr double kVolEps = 1e-9;

SimContract makeContract(std::uint16_t ex, const char* code, const char* name, float unit,
                         double mult, double margin, double preSettle, double limitPct,
                         double perLot, double rate, double touch, bool tradable = true) {
    SimContract c;
    c.symbol = tagSymbol{ex, code};
    c.detail.fPriceUnit = unit;
    c.detail.nMinMove = 1;
    c.detail.dMultiplier = mult;
    c.detail.dMarginRate = margin;
    c.detail.bTradable = tradable;
    c.detail.strName = name;
    c.preSettle = preSettle;
    c.preClose = preSettle;
    c.limitPct = limitPct;
    c.commissionPerLot = perLot;
    c.commissionRate = rate;
    c.typicalTouchVolume = touch;
    return c;
}

std::vector<SimContract> defaultCatalogue() {
    return {
        // 上海期货交易所
        makeContract(0, "rb2105", "螺纹钢2105", 1.0f, 10, 0.10, 4402, 0.05, 0, 0.0001, 60),
        makeContract(0, "cu2102", "沪铜2102", 10.0f, 5, 0.10, 58120, 0.06, 0, 0.00005, 12),
        makeContract(0, "au2106", "黄金2106", 0.02f, 1000, 0.08, 399.48, 0.05, 10, 0, 8),
        // 大连商品交易所
        makeContract(1, "m2105", "豆粕2105", 1.0f, 10, 0.08, 3551, 0.05, 1.5, 0, 80),
        makeContract(1, "i2105", "铁矿石2105", 0.5f, 100, 0.11, 1006.5, 0.08, 0, 0.0001, 30),
        // 郑州商品交易所
        makeContract(2, "RM705", "菜粕705", 1.0f, 10, 0.06, 2370, 0.04, 1.5, 0, 90),
        makeContract(2, "SR105", "白糖105", 1.0f, 10, 0.07, 5192, 0.05, 3, 0, 40),
        makeContract(2, "CF105", "棉花105", 5.0f, 5, 0.07, 14815, 0.05, 4.3, 0, 20),
        // 中国金融期货交易所
        makeContract(3, "IF2101", "沪深300指数2101", 0.2f, 300, 0.12, 5216.2, 0.10, 0, 0.000023, 4),
        makeContract(3, "IC2101", "中证500指数2101", 0.2f, 200, 0.14, 6372.8, 0.10, 0, 0.000023, 3),
        makeContract(3, "IH2101", "上证50指数2101", 0.2f, 300, 0.12, 3645.4, 0.10, 0, 0.000023, 3),
        makeContract(3, "T2103", "10年期国债2103", 0.005f, 10000, 0.02, 97.625, 0.02, 3, 0, 25),
        // An expired contract, still listed: orders in it are refused.
        makeContract(3, "IF2012", "沪深300指数2012(已到期)", 0.2f, 300, 0.12, 5045.0, 0.10, 0,
                     0.000023, 0, false),
    };
}

std::string lower(std::string s) {
    for (auto& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// Local time of day of calendar milliseconds.
std::int32_t timeOfDayMs(std::int64_t nowMs) {
    std::int64_t sec = nowMs >= 0 ? nowMs / 1000 : (nowMs - 999) / 1000;
    std::tm tm = toLocalTm(sec);
    return ((tm.tm_hour * 60 + tm.tm_min) * 60 + tm.tm_sec) * 1000 +
           static_cast<std::int32_t>(nowMs - sec * 1000);
}

// Calendar milliseconds of local midnight of the day of nowMs.
std::int64_t midnightMs(std::int64_t nowMs) {
    return nowMs - timeOfDayMs(nowMs);
}

bool isWorking(std::int32_t s) {
    return s == kOrderQueued || s == kOrderPartFilled || s == kOrderCancelling ||
           s == kOrderSending;
}

}  // namespace

struct SimExchange::Impl {
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
    bool delivering = false;
    std::uint64_t deliverCalls = 0;

    int rejectN = 0;
    std::string rejectReason;
    int delayCalls = 0;
    std::int64_t delayMs = 0;
    int dropN = 0;
    int dupN = 0;

    SimStats st;

    Impl(IClock& c, SimOptions o) : clock(c), opt(o), rng(o.seed), randomWalk(o.randomWalk) {}

    // ---- Lookups ----------------------------------------------------------------------
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
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    // ---- Market set-up ----------------------------------------------------------------
    void initMarket(Market& m) {
        const auto& c = m.c;
        m.step = std::max<std::int64_t>(1, std::llround(static_cast<double>(c.detail.nMinMove) *
                                                        c.detail.fPriceUnit * 10000.0));
        std::int64_t ps = std::llround(c.preSettle * 10000.0);
        double up = static_cast<double>(ps) * (1.0 + c.limitPct);
        double lo = static_cast<double>(ps) * (1.0 - c.limitPct);
        m.upperTicks = static_cast<std::int64_t>(std::floor(up / m.step + 1e-9));
        m.lowerTicks = static_cast<std::int64_t>(std::ceil(lo / m.step - 1e-9));
        if (c.limitPct <= 0) {
            m.upperTicks = std::llround(ps * 2.0 / m.step);
            m.lowerTicks = 1;
        }
        m.q = ITickEx{};
        m.q.wExchangeID = c.symbol.wExchangeID;
        m.q.strCode = c.symbol.strCode;
        m.q.dPreSettle = c.preSettle;
        m.q.dPreClose = c.preClose;
        m.q.dUpperLimit = m.price(m.upperTicks);
        m.q.dLowerLimit = m.price(m.lowerTicks);
        m.q.dPreOpenPrice2 = c.preClose;
        m.q.dOpenInterest = std::floor(c.typicalTouchVolume * 2000);
        std::int64_t psT = m.nearestTicks(c.preSettle);
        std::uniform_int_distribution<int> d(-5, 5);
        m.indicativeTicks = std::clamp<std::int64_t>(psT + d(rng), m.lowerTicks, m.upperTicks);
        m.q.dPreOpenPrice1 = m.price(m.indicativeTicks);
        m.opened = false;
        m.replaying = false;
        m.ticks.clear();
        m.next = 0;
        if (!m.subs) m.subs = std::make_shared<const std::vector<std::uint32_t>>();
        std::int64_t now = clock.nowMs();
        m.q.tQuoteTime = now;
        if (!inPreOpen(m, now)) openMarket(m, now);
    }

    bool inPreOpen(const Market& m, std::int64_t nowMs) const {
        std::int32_t tod = timeOfDayMs(nowMs);
        std::int32_t start =
            m.c.symbol.wExchangeID == 3 ? (9 * 60 + 10) * 60000 : (8 * 60 + 55) * 60000;
        return tod >= start && tod < start + 5 * 60000;
    }

    void openMarket(Market& m, std::int64_t nowMs) {
        m.opened = true;
        m.lastTicks = m.indicativeTicks;
        m.q.dOpen = m.q.dHigh = m.q.dLow = m.q.dLast = m.price(m.lastTicks);
        m.q.dPreOpenPrice1 = m.q.dOpen;
        double lots = std::max(1.0, std::floor(m.c.typicalTouchVolume * 3));
        m.q.dVolume = lots;
        m.q.dTurnover = lots * m.q.dLast * m.c.detail.dMultiplier;
        setBook(m);
        m.q.tQuoteTime = nowMs;
    }

    // A book around the last price: spread of one tick (sometimes two), clamped to the band.
    void setBook(Market& m) {
        std::uniform_int_distribution<int> coin(0, 1);
        std::uniform_int_distribution<int> sp(0, 4);
        std::int64_t bid = m.lastTicks - coin(rng);
        std::int64_t ask = bid + (sp(rng) == 0 ? 2 : 1);
        if (ask <= m.lastTicks) ask = m.lastTicks + (bid == m.lastTicks ? 1 : 0);
        if (bid == m.lastTicks && ask == m.lastTicks) ask = bid + 1;
        double typical = std::max(1.0, m.c.typicalTouchVolume);
        std::uniform_int_distribution<int> vol(1, static_cast<int>(typical * 2));
        m.q.dBid = bid >= m.lowerTicks ? m.price(bid) : 0;
        m.q.dBidVol = m.q.dBid > 0 ? vol(rng) : 0;
        m.q.dAsk = ask <= m.upperTicks ? m.price(ask) : 0;
        m.q.dAskVol = m.q.dAsk > 0 ? vol(rng) : 0;
    }

    void walk(Market& m, std::int64_t nowMs) {
        m.q.tQuoteTime = nowMs;
        if (!m.opened) {
            if (inPreOpen(m, nowMs)) {
                std::uniform_int_distribution<int> d(-1, 1);
                m.indicativeTicks = std::clamp<std::int64_t>(m.indicativeTicks + d(rng),
                                                             m.lowerTicks, m.upperTicks);
                m.q.dPreOpenPrice1 = m.price(m.indicativeTicks);
                m.q.dLast = m.q.dBid = m.q.dAsk = 0;
                m.q.dBidVol = m.q.dAskVol = 0;
                return;
            }
            openMarket(m, nowMs);
            return;
        }
        // Step of -2..+2 ticks, mostly 0 and ±1, with a slight pull back to the
        // pre-settlement so a long session does not drift into a limit.
        static constexpr int kMoves[] = {-2, -1, -1, 0, 0, 0, 0, 1, 1, 2};
        std::uniform_int_distribution<int> pick(0, 9);
        int mv = kMoves[pick(rng)];
        std::int64_t psT = m.nearestTicks(m.c.preSettle);
        std::int64_t dev = m.lastTicks - psT;
        std::int64_t band = std::max<std::int64_t>(1, (m.upperTicks - m.lowerTicks) / 2);
        std::uniform_int_distribution<std::int64_t> pull(0, band);
        if (dev != 0 && pull(rng) < std::llabs(dev) / 4) mv = dev > 0 ? -1 : 1;
        m.lastTicks = std::clamp<std::int64_t>(m.lastTicks + mv, m.lowerTicks, m.upperTicks);
        m.q.dLast = m.price(m.lastTicks);
        m.q.dHigh = std::max(m.q.dHigh, m.q.dLast);
        m.q.dLow = m.q.dLow > 0 ? std::min(m.q.dLow, m.q.dLast) : m.q.dLast;
        double typical = std::max(1.0, m.c.typicalTouchVolume);
        std::uniform_int_distribution<int> traded(0, static_cast<int>(typical));
        double lots = (mv != 0 ? 1 : 0) + traded(rng);
        m.q.dVolume += lots;
        m.q.dTurnover += lots * m.q.dLast * m.c.detail.dMultiplier;
        std::uniform_int_distribution<int> oi(-static_cast<int>(lots), static_cast<int>(lots));
        m.q.dOpenInterest = std::max(0.0, m.q.dOpenInterest + oi(rng));
        setBook(m);
    }

    void applyRecord(Market& m, const sim::TickRecord& r, std::int64_t dayMs) {
        ITickEx& q = m.q;
        q.tQuoteTime = dayMs + r.timeMs;
        q.dLast = r.last;
        q.dBid = r.bid;
        q.dBidVol = r.bidVol;
        q.dAsk = r.ask;
        q.dAskVol = r.askVol;
        if (r.volume > 0) q.dVolume = r.volume;
        if (r.turnover > 0) q.dTurnover = r.turnover;
        if (r.openInterest > 0) q.dOpenInterest = r.openInterest;
        if (r.preSettle > 0) q.dPreSettle = r.preSettle;
        if (r.preClose > 0) q.dPreClose = q.dPreOpenPrice2 = r.preClose;
        if (r.upperLimit > 0 && r.lowerLimit > 0) setLimits(m, r.upperLimit, r.lowerLimit);
        if (r.open > 0)
            q.dOpen = q.dPreOpenPrice1 = r.open;
        else if (q.dOpen <= 0 && r.last > 0)
            q.dOpen = q.dPreOpenPrice1 = r.last;
        if (r.high > 0)
            q.dHigh = r.high;
        else if (r.last > 0)
            q.dHigh = std::max(q.dHigh, r.last);
        if (r.low > 0)
            q.dLow = r.low;
        else if (r.last > 0)
            q.dLow = q.dLow > 0 ? std::min(q.dLow, r.last) : r.last;
        if (r.last > 0) m.lastTicks = m.nearestTicks(r.last);
        m.opened = true;
    }

    void setLimits(Market& m, double upper, double lower) {
        m.q.dUpperLimit = upper;
        m.q.dLowerLimit = lower;
        m.upperTicks = m.nearestTicks(upper);
        m.lowerTicks = m.nearestTicks(lower);
    }

    // ---- Rounds -----------------------------------------------------------------------
    // A new quote is in m.q: reset the touch, fill resting orders, then triggers.
    void round(std::size_t mi) {
        Market& m = markets[mi];
        m.availBid = m.q.dBid > 0 ? m.q.dBidVol : 0;
        m.availAsk = m.q.dAsk > 0 ? m.q.dAskVol : 0;
        matchResting(mi);
        evaluateTriggers(mi);
    }

    // Resting orders of one market against the quote now in m.q. A level fills completely
    // when the last price traded through it, else from the touch volume left this round.
    // Fills can erase levels, so the next level is found again by key after each one.
    template <class Book>
    void matchSide(Market& m, Book& book, bool buy) {
        const double last = m.q.dLast;
        const double opp = buy ? m.q.dAsk : m.q.dBid;
        double& avail = buy ? m.availAsk : m.availBid;
        std::vector<std::size_t> level;
        auto it = book.begin();
        while (it != book.end()) {
            const std::int64_t key = it->first;
            const double p = m.price(key);
            bool through =
                isPricePresent(last) && (buy ? last < p - kPriceEpsilon : last > p + kPriceEpsilon);
            bool touch = isPricePresent(opp) && avail > kVolEps &&
                         (buy ? opp <= p + kPriceEpsilon : opp >= p - kPriceEpsilon);
            if (!through && !touch) break;
            level.assign(it->second.begin(), it->second.end());
            for (std::size_t oi : level) {
                const Order& o = orders[oi];
                double qty = o.o.dVolume - o.o.dFilledVolume;
                if (!through) qty = std::min(qty, avail);
                if (qty <= kVolEps) break;
                if (!through) avail -= qty;
                fill(oi, qty, p);
            }
            it = book.upper_bound(key);
        }
    }

    void matchResting(std::size_t mi) {
        Market& m = markets[mi];
        matchSide(m, m.buys, true);
        matchSide(m, m.sells, false);
    }

    void addResting(std::size_t oi) {
        Order& o = orders[oi];
        Market& m = markets[o.market];
        o.resting = true;
        if (o.o.nDirection == kDirBuy)
            m.buys[o.priceTicks].push_back(oi);
        else
            m.sells[o.priceTicks].push_back(oi);
        ++st.restingOrders;
    }

    void removeResting(std::size_t oi) {
        Order& o = orders[oi];
        if (!o.resting) return;
        o.resting = false;
        --st.restingOrders;
        Market& m = markets[o.market];
        auto erase = [&](auto& book) {
            auto it = book.find(o.priceTicks);
            if (it == book.end()) return;
            auto& dq = it->second;
            dq.erase(std::remove(dq.begin(), dq.end(), oi), dq.end());
            if (dq.empty()) book.erase(it);
        };
        if (o.o.nDirection == kDirBuy)
            erase(m.buys);
        else
            erase(m.sells);
    }

    double commissionOf(const Market& m, double qty, double price) const {
        if (m.c.commissionPerLot > 0) return m.c.commissionPerLot * qty;
        return m.c.commissionRate * price * qty * m.c.detail.dMultiplier;
    }

    void fill(std::size_t oi, double qty, double px) {
        Order& o = orders[oi];
        Market& m = markets[o.market];
        Account& a = accounts[o.account];
        Position& pos = positions[{o.account, o.market}];
        const double mult = m.c.detail.dMultiplier;
        std::int64_t now = clock.now();

        if (o.o.nOpenClose == kOpen) {
            a.frozen = std::max(0.0, a.frozen - o.frozenPerLot * qty);
            if (o.o.nDirection == kDirBuy) {
                double q0 = pos.longQty();
                pos.longAvg = (pos.longAvg * q0 + px * qty) / (q0 + qty);
                pos.longTd += qty;
            } else {
                double q0 = pos.shortQty();
                pos.shortAvg = (pos.shortAvg * q0 + px * qty) / (q0 + qty);
                pos.shortTd += qty;
            }
        } else {
            double fromYd = std::min(qty, o.frzYd);
            double fromTd = qty - fromYd;
            o.frzYd -= fromYd;
            o.frzTd = std::max(0.0, o.frzTd - fromTd);
            if (o.o.nDirection == kDirSell) {  // closes long
                pos.longYd -= fromYd;
                pos.longTd -= fromTd;
                pos.frzLongYd -= fromYd;
                pos.frzLongTd -= fromTd;
                a.closeProfit += (px - pos.longAvg) * qty * mult;
                if (pos.longQty() <= kVolEps) pos.longAvg = 0, pos.longYd = pos.longTd = 0;
            } else {
                pos.shortYd -= fromYd;
                pos.shortTd -= fromTd;
                pos.frzShortYd -= fromYd;
                pos.frzShortTd -= fromTd;
                a.closeProfit += (pos.shortAvg - px) * qty * mult;
                if (pos.shortQty() <= kVolEps) pos.shortAvg = 0, pos.shortYd = pos.shortTd = 0;
            }
        }
        a.commission += commissionOf(m, qty, px);

        o.o.dFilledVolume += qty;
        double oldFilled = o.o.dFilledVolume - qty;
        o.o.dAvgPrice = (o.o.dAvgPrice * oldFilled + px * qty) / o.o.dFilledVolume;
        bool done = o.o.dFilledVolume >= o.o.dVolume - kVolEps;
        o.o.nStatus = done ? kOrderFilled : kOrderPartFilled;
        o.o.tUpdateTime = now;
        if (done) removeResting(oi);

        tagBargainOrder b;
        b.strAccountID = o.o.strAccountID;
        b.strBrokerID = o.o.strBrokerID;
        b.nExchangeID = o.o.nExchangeID;
        b.strCode = o.o.strCode;
        b.nDirection = o.o.nDirection;
        b.nOpenClose = o.o.nOpenClose;
        b.dVolume = qty;
        b.dPrice = px;
        b.strContractNo = o.o.strOrderID;
        b.strBargainNo = "F" + std::to_string(nextFillNo++);
        b.tTime = now;
        b.strRemark = o.o.strRemark;
        bargains.push_back(b);
        ++st.fills;

        queueOrder(oi);
        if (a.on) queueTrade(kEventNewFill, Payload(std::move(b)));
    }

    // ---- Orders -----------------------------------------------------------------------
    // Books and processes one order; returns its index, or npos when refused before booking.
    std::size_t send(tagBrokerOrder& in) {
        const std::int64_t now = clock.now();
        std::size_t ai = findAccount(in.strAccountID, in.strBrokerID);
        if (ai == npos || !accounts[ai].on) {
            in.strOrderID.clear();
            in.nStatus = kOrderRejected;
            in.strStatusMsg = ai == npos ? simtext::kUnknownAccount : simtext::kNotLoggedOn;
            in.tUpdateTime = now;
            ++st.ordersRejected;
            return npos;
        }
        ++st.ordersSent;
        Order o;
        o.o = in;
        o.o.strBrokerID = accounts[ai].a.info.strBrokerID;
        o.o.strOrderID = std::to_string(nextOrderNo++);
        o.o.nStatus = kOrderSending;
        o.o.dFilledVolume = 0;
        o.o.dAvgPrice = 0;
        o.o.strStatusMsg.clear();
        o.o.tUpdateTime = now;
        if (o.o.tCreateTime == 0) o.o.tCreateTime = now;
        o.account = ai;
        o.market = findMarket(in.nExchangeID, in.strCode);
        std::size_t oi = orders.size();
        orders.push_back(std::move(o));
        orderById[orders[oi].o.strOrderID] = oi;
        queueOrder(oi);

        const char* reason = validate(oi);
        std::string injected;
        if (!reason && rejectN > 0) {
            --rejectN;
            injected = rejectReason;
        }
        Order& ord = orders[oi];
        if (reason || !injected.empty()) {
            ord.o.nStatus = kOrderRejected;
            ord.o.strStatusMsg = reason ? reason : injected;
            ord.o.tUpdateTime = now;
            ++st.ordersRejected;
            queueOrder(oi);
        } else {
            accept(oi);
        }
        const Order& done = orders[oi];
        in.strOrderID = done.o.strOrderID;
        in.nStatus = done.o.nStatus == kOrderRejected ? kOrderRejected : kOrderQueued;
        in.strStatusMsg = done.o.strStatusMsg;
        in.tUpdateTime = done.o.tUpdateTime;
        return oi;
    }

    // Checks an order; on success freezes what it needs and returns nullptr.
    const char* validate(std::size_t oi) {
        Order& o = orders[oi];
        if (o.market == npos) return simtext::kUnknownContract;
        Market& m = markets[o.market];
        if (!m.c.detail.bTradable) return simtext::kNotTradable;
        if (!(o.o.dVolume > kVolEps) || std::fabs(o.o.dVolume - std::round(o.o.dVolume)) > kVolEps)
            return simtext::kBadVolume;
        o.o.dVolume = std::round(o.o.dVolume);
        if (o.o.nDirection != kDirBuy && o.o.nDirection != kDirSell) return simtext::kBadDirection;
        if (o.o.nOpenClose != kOpen && o.o.nOpenClose != kClose && o.o.nOpenClose != kCloseToday)
            return simtext::kBadOpenClose;
        if (!m.toTicks(o.o.dPrice, o.priceTicks)) return simtext::kPriceOffTick;
        if (o.priceTicks < m.lowerTicks || o.priceTicks > m.upperTicks || o.priceTicks <= 0)
            return simtext::kPriceOutOfBand;
        Account& a = accounts[o.account];
        Position& pos = positions[{o.account, o.market}];
        const double vol = o.o.dVolume;
        if (o.o.nOpenClose == kOpen) {
            double perLot = o.o.dPrice * m.c.detail.dMultiplier * m.c.detail.dMarginRate +
                            commissionOf(m, 1, o.o.dPrice);
            if (available(o.account) < perLot * vol - 1e-6) return simtext::kNoFunds;
            o.frozenPerLot = perLot;
            a.frozen += perLot * vol;
            return nullptr;
        }
        const bool closesLong = o.o.nDirection == kDirSell;
        double& yd = closesLong ? pos.longYd : pos.shortYd;
        double& td = closesLong ? pos.longTd : pos.shortTd;
        double& fyd = closesLong ? pos.frzLongYd : pos.frzShortYd;
        double& ftd = closesLong ? pos.frzLongTd : pos.frzShortTd;
        double freeYd = yd - fyd, freeTd = td - ftd;
        if (o.o.nOpenClose == kCloseToday) {
            if (freeTd < vol - kVolEps) return simtext::kCloseTodayExceeds;
            o.frzTd = vol;
        } else if (m.c.symbol.wExchangeID == 0) {  // 上期所: 平仓 closes yesterday's only
            if (freeYd < vol - kVolEps) return simtext::kCloseExceeds;
            o.frzYd = vol;
        } else {
            if (freeYd + freeTd < vol - kVolEps) return simtext::kCloseExceeds;
            o.frzYd = std::min(vol, freeYd);
            o.frzTd = vol - o.frzYd;
        }
        fyd += o.frzYd;
        ftd += o.frzTd;
        return nullptr;
    }

    void accept(std::size_t oi) {
        orders[oi].o.nStatus = kOrderQueued;
        queueOrder(oi);
        Order& o = orders[oi];
        Market& m = markets[o.market];
        double p = o.o.dPrice;
        if (o.o.nDirection == kDirBuy) {
            if (isPricePresent(m.q.dAsk) && m.q.dAsk <= p + kPriceEpsilon && m.availAsk > kVolEps) {
                double qty = std::min(o.o.dVolume, m.availAsk);
                m.availAsk -= qty;
                fill(oi, qty, m.q.dAsk);
            }
        } else {
            if (isPricePresent(m.q.dBid) && m.q.dBid >= p - kPriceEpsilon && m.availBid > kVolEps) {
                double qty = std::min(o.o.dVolume, m.availBid);
                m.availBid -= qty;
                fill(oi, qty, m.q.dBid);
            }
        }
        if (orders[oi].o.nStatus == kOrderQueued || orders[oi].o.nStatus == kOrderPartFilled)
            addResting(oi);
    }

    // Releases what a working order holds (frozen funds or position) for its remainder.
    void releaseHold(std::size_t oi) {
        Order& o = orders[oi];
        double rem = o.o.dVolume - o.o.dFilledVolume;
        if (o.o.nOpenClose == kOpen) {
            Account& a = accounts[o.account];
            a.frozen = std::max(0.0, a.frozen - o.frozenPerLot * rem);
        } else {
            Position& pos = positions[{o.account, o.market}];
            bool closesLong = o.o.nDirection == kDirSell;
            (closesLong ? pos.frzLongYd : pos.frzShortYd) -= o.frzYd;
            (closesLong ? pos.frzLongTd : pos.frzShortTd) -= o.frzTd;
            o.frzYd = o.frzTd = 0;
        }
    }

    int cancel(const std::string& k1, const std::string& k2, const std::string& id) {
        auto it = orderById.find(id);
        if (it == orderById.end()) return 0;
        std::size_t oi = it->second;
        Order& o = orders[oi];
        if (o.o.strAccountID != k1 || (!k2.empty() && o.o.strBrokerID != k2)) return 0;
        if (!accounts[o.account].on) return 0;
        if (o.o.nStatus != kOrderQueued && o.o.nStatus != kOrderPartFilled) return 0;
        std::int64_t now = clock.now();
        o.o.nStatus = kOrderCancelling;
        o.o.tUpdateTime = now;
        queueOrder(oi);
        removeResting(oi);
        releaseHold(oi);
        Order& o2 = orders[oi];
        o2.o.nStatus = o2.o.dFilledVolume > kVolEps ? kOrderPartCancelled : kOrderCancelled;
        o2.o.tUpdateTime = now;
        queueOrder(oi);
        return 1;
    }

    // ---- Triggers -----------------------------------------------------------------------
    void expireTriggers() {
        std::int64_t now = clock.now();
        for (std::size_t i = 0; i < triggers.size(); ++i) {
            auto& t = triggers[i].t;
            if (t.nStatus == kSimTriggerWaiting && t.tExpiry > 0 && now > t.tExpiry) {
                t.nStatus = kSimTriggerExpired;
                queueTrigger(i);
            }
        }
    }

    void evaluateTriggers(std::size_t mi) {
        const Market& m = markets[mi];
        const double last = m.q.dLast;
        if (!isPricePresent(last)) return;
        std::int64_t now = clock.now();
        for (std::size_t i = 0; i < triggers.size(); ++i) {
            if (triggers[i].market != mi || triggers[i].t.nStatus != kSimTriggerWaiting) continue;
            if (!accounts[triggers[i].account].on) continue;
            const auto& t = triggers[i].t;
            if (t.tExpiry > 0 && now > t.tExpiry) continue;  // expireTriggers takes it
            const double tp = t.dTriggerPrice;
            bool fire = false;
            switch (t.nTriggerType) {
                case kTriggerBuyDip:
                    fire = last <= tp + kPriceEpsilon;
                    break;
                case kTriggerSellRise:
                    fire = last >= tp - kPriceEpsilon;
                    break;
                case kTriggerBuyChase:
                    fire = last >= tp - kPriceEpsilon;
                    break;
                case kTriggerSellChase:
                    fire = last <= tp + kPriceEpsilon;
                    break;
                default:
                    break;
            }
            if (fire) release(i, now);
        }
    }

    void release(std::size_t ti, std::int64_t now) {
        auto& t = triggers[ti].t;
        t.nStatus = kSimTriggerReleased;
        t.tStart = now;
        queueTrigger(ti);
        const Market& m = markets[triggers[ti].market];
        tagBrokerOrder o;
        o.strAccountID = t.strAccountID;
        o.strBrokerID = t.strBrokerID;
        o.nExchangeID = t.nExchangeID;
        o.strSymbolText = t.strSymbolText;
        o.strCode = t.strCode;
        o.nDirection = t.nDirection;
        o.nOpenClose = t.nOpenClose;
        o.nHedge = t.nHedge;
        o.dVolume = t.dVolume;
        o.dStopLoss = t.dStopLoss;
        o.dTakeProfit = t.dTakeProfit;
        o.dTriggerPrice = t.dTriggerPrice;
        o.strRemark = t.strRemark;
        o.tCreateTime = now;
        double px = t.dPrice;
        if (!isPricePresent(px)) {
            if (t.nDirection == kDirBuy)
                px = isPricePresent(m.q.dAsk) ? m.q.dAsk : m.q.dUpperLimit;
            else
                px = isPricePresent(m.q.dBid) ? m.q.dBid : m.q.dLowerLimit;
        }
        o.dPrice = px;
        send(o);
    }

    // ---- Event queue ------------------------------------------------------------------
    void push(Event&& e) {
        ++st.eventsQueued;
        queue.push_back(std::move(e));
    }

    void queueOrder(std::size_t oi) {
        const Order& o = orders[oi];
        if (!accounts[o.account].on) return;
        queueTrade(kEventOrderChanged, Payload(o.o));
    }

    void queueTrade(std::uint32_t code, Payload&& p) {
        if (!sink && !desk) return;
        if (dropN > 0) {
            --dropN;
            ++st.eventsDropped;
            return;
        }
        Event e;
        e.code = code;
        e.payload = std::move(p);
        e.toMain = sink != nullptr;
        e.toDesk = desk != nullptr;
        if (dupN > 0) {
            --dupN;
            e.copies = 2;
        }
        if (delayCalls > 0) e.dueCall = deliverCalls + static_cast<std::uint64_t>(delayCalls) + 1;
        if (delayMs > 0) e.dueMs = clock.nowMs() + delayMs;
        push(std::move(e));
    }

    void queueTrigger(std::size_t ti) {
        if (!desk) return;
        Event e;
        e.code = kSimEventTriggerChanged;
        e.payload = triggers[ti].t;
        e.toDesk = true;
        push(std::move(e));
    }

    void queueQuote(std::size_t mi) {
        const Market& m = markets[mi];
        bool main = sink && !m.subs->empty();
        if (!main && !desk) return;
        Event e;
        e.code = kEventQuote;
        e.payload.emplace<ITickEx>(m.q);
        if (main) e.handles = m.subs;
        e.toMain = main;
        e.toDesk = desk != nullptr;
        push(std::move(e));
    }

    void queueLogon(std::uint32_t code, const tagAccoutInfo& info) {
        if (!sink && !desk) return;
        Event e;
        e.logon = true;
        e.code = code;
        e.payload = info;
        e.toMain = sink != nullptr;
        e.toDesk = desk != nullptr;
        push(std::move(e));
    }

    // ---- Funds ------------------------------------------------------------------------
    double mark(const Market& m) const {
        return isPricePresent(m.q.dLast) ? m.q.dLast : m.q.dPreSettle;
    }

    void summary(std::size_t ai, tagAccountSummary& s) const {
        const Account& a = accounts[ai];
        s = tagAccountSummary{};
        s.strAccountID = a.a.info.strAccountID;
        s.strBrokerID = a.a.info.strBrokerID;
        s.dPreBalance = a.a.preBalance;
        double margin = 0, posProfit = 0;
        for (const auto& [key, p] : positions) {
            if (key.first != ai) continue;
            const Market& m = markets[key.second];
            double mk = mark(m), mult = m.c.detail.dMultiplier;
            margin += (p.longQty() + p.shortQty()) * mk * mult * m.c.detail.dMarginRate;
            posProfit += (mk - p.longAvg) * p.longQty() * mult;
            posProfit += (p.shortAvg - mk) * p.shortQty() * mult;
        }
        s.dCloseProfit = a.closeProfit;
        s.dPositionProfit = posProfit;
        s.dCommission = a.commission;
        s.dMargin = margin;
        s.dFrozen = a.frozen;
        s.dBalance = a.a.preBalance + a.closeProfit + posProfit - a.commission;
        s.dAvailable = s.dBalance - margin - a.frozen;
    }

    double available(std::size_t ai) const {
        tagAccountSummary s;
        summary(ai, s);
        return s.dAvailable;
    }

    tagOpenedPosition positionRecord(std::size_t ai, std::size_t mi, const Position& p) const {
        tagOpenedPosition r;
        r.strAccountID = accounts[ai].a.info.strAccountID;
        r.strBrokerID = accounts[ai].a.info.strBrokerID;
        r.nExchangeID = markets[mi].c.symbol.wExchangeID;
        r.strCode = markets[mi].c.symbol.strCode;
        r.dLong = p.longQty();
        r.dShort = p.shortQty();
        r.dTotal = r.dLong + r.dShort;
        r.dLongToday = p.longTd;
        r.dShortToday = p.shortTd;
        r.dLongAvgPrice = p.longAvg;
        r.dShortAvgPrice = p.shortAvg;
        return r;
    }

    void setLogon(std::size_t ai, bool on, std::uint32_t code) {
        Account& a = accounts[ai];
        if (a.on == on) return;
        a.on = on;
        queueLogon(code, a.a.info);
    }
};

// ======================================================================================

SimExchange::SimExchange(IClock& clock, SimOptions options)
    : m_impl(std::make_unique<Impl>(clock, options)) {
    Impl& d = *m_impl;
    for (auto& c : defaultCatalogue()) {
        Impl::Market m;
        m.c = c;
        d.markets.push_back(std::move(m));
        d.initMarket(d.markets.back());
    }
    auto acct = [](const char* id, const char* name, double funds) {
        Impl::Account a;
        a.a.info = tagAccoutInfo{id, "9999", name, 1};
        a.a.password = "888888";
        a.a.preBalance = funds;
        return a;
    };
    d.accounts.push_back(acct("880001", "模拟账户一", 1000000.0));
    d.accounts.push_back(acct("880002", "模拟账户二", 500000.0));
    if (options.yesterdayPositions) {
        // 880002 holds 5 long rb2105 and 1 short IF2101 from yesterday.
        auto seed = [&](std::size_t mi, int dir, double vol) {
            auto& p = d.positions[{1, mi}];
            double px = d.markets[mi].c.preSettle;
            if (dir == kDirBuy)
                p.longYd = vol, p.longAvg = px;
            else
                p.shortYd = vol, p.shortAvg = px;
        };
        seed(d.findMarket(0, "rb2105"), kDirBuy, 5);
        seed(d.findMarket(3, "IF2101"), kDirSell, 1);
    }
    for (auto& a : d.accounts) a.on = options.logonAtStart;
    d.config = {
        {"system.ini|trade|defaultvolume", "1"}, {"system.ini|trade|confirmorder", "0"},
        {"system.ini|quote|refreshms", "500"},   {"system.ini|host|name", "SimExchange"},
        {"system.ini|host|version", "1.0"},
    };
}

SimExchange::~SimExchange() = default;

#define SIM_LOCK                                             \
    std::lock_guard<std::recursive_mutex> lock_(m_impl->mu); \
    Impl& d = *m_impl

int SimExchange::GetMarketQuote(const tagSymbol& symbol, IModuleFutureTrader::ITickEx& tick) {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos) return 0;
    tick = d.markets[mi].q;
    return 1;
}

int SimExchange::GetSymbolProperty(const tagSymbol& symbol,
                                   IModuleFutureTrader::ISpecDetailValue& detail) {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos) return 0;
    detail = d.markets[mi].c.detail;
    return 1;
}

int SimExchange::GetAllPositions(std::vector<tagOpenedPosition>& out) {
    SIM_LOCK;
    out.clear();
    for (const auto& [key, p] : d.positions)
        if (d.accounts[key.first].on && (p.longQty() > kVolEps || p.shortQty() > kVolEps))
            out.push_back(d.positionRecord(key.first, key.second, p));
    return 1;
}

int SimExchange::GetPosition(tagOpenedPosition& position, const std::string& k1,
                             const std::string& k2, const tagSymbol& symbol) {
    SIM_LOCK;
    std::size_t ai = d.findAccount(k1, k2);
    std::size_t mi = d.findMarket(symbol);
    if (ai == Impl::npos || mi == Impl::npos || !d.accounts[ai].on) return 0;
    auto it = d.positions.find({ai, mi});
    position = d.positionRecord(ai, mi, it == d.positions.end() ? Impl::Position{} : it->second);
    return 1;
}

int SimExchange::GetAllOrders(std::vector<tagBrokerOrder>& out) {
    SIM_LOCK;
    out.clear();
    for (const auto& o : d.orders)
        if (d.accounts[o.account].on) out.push_back(o.o);
    return 1;
}

int SimExchange::GetOpenOrders(std::vector<tagBrokerOrder>& out, const std::string& k1,
                               const std::string& k2, const tagSymbol& symbol) {
    SIM_LOCK;
    out.clear();
    std::size_t ai = d.findAccount(k1, k2);
    if (ai == Impl::npos || !d.accounts[ai].on) return 0;
    for (const auto& o : d.orders)
        if (o.account == ai && isWorking(o.o.nStatus) &&
            (symbol.strCode.empty() ||
             (o.o.strCode == symbol.strCode && o.o.nExchangeID == symbol.wExchangeID)))
            out.push_back(o.o);
    return 1;
}

int SimExchange::GetOrder(tagBrokerOrder& order, const std::string& k1, const std::string& k2,
                          const std::string& orderID) {
    SIM_LOCK;
    auto it = d.orderById.find(orderID);
    if (it == d.orderById.end()) return 0;
    const auto& o = d.orders[it->second];
    if (o.o.strAccountID != k1 || (!k2.empty() && o.o.strBrokerID != k2)) return 0;
    if (!d.accounts[o.account].on) return 0;
    order = o.o;
    return 1;
}

int SimExchange::SendOrder(tagBrokerOrder& order) {
    SIM_LOCK;
    std::size_t oi = d.send(order);
    return oi != Impl::npos && order.nStatus != kOrderRejected ? 1 : 0;
}

int SimExchange::DeleteOrder(const std::string& k1, const std::string& k2,
                             const std::string& orderID) {
    SIM_LOCK;
    return d.cancel(k1, k2, orderID);
}

int SimExchange::GetAllTriggerOrders(std::vector<tagTriggerOrder>& out) {
    SIM_LOCK;
    out.clear();
    for (const auto& t : d.triggers)
        if (d.accounts[t.account].on) out.push_back(t.t);
    return 1;
}

int SimExchange::GetTriggerOrdersBySymbol(std::vector<tagTriggerOrder>& out,
                                          const tagSymbol& symbol) {
    SIM_LOCK;
    out.clear();
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos) return 0;
    for (const auto& t : d.triggers)
        if (t.market == mi && d.accounts[t.account].on) out.push_back(t.t);
    return 1;
}

int SimExchange::GetTriggerOrder(tagTriggerOrder& order, const std::string& k1,
                                 const std::string& k2, const std::string& orderID) {
    SIM_LOCK;
    auto it = d.triggerById.find(orderID);
    if (it == d.triggerById.end()) return 0;
    const auto& t = d.triggers[it->second];
    if (t.t.strAccountID != k1 || (!k2.empty() && t.t.strBrokerID != k2)) return 0;
    if (!d.accounts[t.account].on) return 0;
    order = t.t;
    return 1;
}

int SimExchange::SendTriggerOrder(tagTriggerOrder& order) {
    SIM_LOCK;
    std::size_t ai = d.findAccount(order.strAccountID, order.strBrokerID);
    std::size_t mi = d.findMarket(order.nExchangeID, order.strCode);
    if (ai == Impl::npos || !d.accounts[ai].on || mi == Impl::npos) return 0;
    if (!(order.dVolume > kVolEps) || !isPricePresent(order.dTriggerPrice)) return 0;
    if (order.nTriggerType < kTriggerBuyDip || order.nTriggerType > kTriggerSellChase) return 0;
    if (order.nDirection != kDirBuy && order.nDirection != kDirSell) return 0;
    Impl::Trigger t;
    t.t = order;
    t.t.strBrokerID = d.accounts[ai].a.info.strBrokerID;
    t.t.strOrderID = "T" + std::to_string(d.nextTriggerNo++);
    t.t.nStatus = kSimTriggerWaiting;
    t.t.tCreateTime = d.clock.now();
    t.t.tStart = 0;
    t.market = mi;
    t.account = ai;
    d.triggers.push_back(t);
    d.triggerById[t.t.strOrderID] = d.triggers.size() - 1;
    d.queueTrigger(d.triggers.size() - 1);
    order.strOrderID = t.t.strOrderID;
    order.nStatus = t.t.nStatus;
    order.tCreateTime = t.t.tCreateTime;
    return 1;
}

int SimExchange::ModifyTriggerOrder(const std::string& orderID, const tagTriggerOrder& order) {
    SIM_LOCK;
    auto it = d.triggerById.find(orderID);
    if (it == d.triggerById.end()) return 0;
    auto& t = d.triggers[it->second].t;
    if (t.nStatus != kSimTriggerWaiting || !d.accounts[d.triggers[it->second].account].on) return 0;
    if (!(order.dVolume > kVolEps) || !isPricePresent(order.dTriggerPrice)) return 0;
    if (order.nTriggerType < kTriggerBuyDip || order.nTriggerType > kTriggerSellChase) return 0;
    t.dPrice = order.dPrice;
    t.dTriggerPrice = order.dTriggerPrice;
    t.nTriggerType = order.nTriggerType;
    t.dVolume = order.dVolume;
    t.tExpiry = order.tExpiry;
    t.dStopLoss = order.dStopLoss;
    t.dTakeProfit = order.dTakeProfit;
    t.strRemark = order.strRemark;
    d.queueTrigger(it->second);
    return 1;
}

int SimExchange::DeleteTriggerOrder(const std::string& k1, const std::string& k2,
                                    const std::string& orderID) {
    SIM_LOCK;
    auto it = d.triggerById.find(orderID);
    if (it == d.triggerById.end()) return 0;
    auto& tr = d.triggers[it->second];
    if (tr.t.strAccountID != k1 || (!k2.empty() && tr.t.strBrokerID != k2)) return 0;
    if (tr.t.nStatus != kSimTriggerWaiting || !d.accounts[tr.account].on) return 0;
    tr.t.nStatus = kSimTriggerDeleted;
    d.queueTrigger(it->second);
    return 1;
}

int SimExchange::GetAllBargains(std::vector<tagBargainOrder>& out) {
    SIM_LOCK;
    out.clear();
    for (const auto& b : d.bargains) {
        std::size_t ai = d.findAccount(b.strAccountID, b.strBrokerID);
        if (ai != Impl::npos && d.accounts[ai].on) out.push_back(b);
    }
    return 1;
}

int SimExchange::GetAccountSummary(tagAccountSummary& summary, const std::string& k1,
                                   const std::string& k2) {
    SIM_LOCK;
    std::size_t ai = d.findAccount(k1, k2);
    if (ai == Impl::npos || !d.accounts[ai].on) return 0;
    d.summary(ai, summary);
    return 1;
}

int SimExchange::GetAvailableAccounts(std::vector<tagAccoutInfo>& out) {
    SIM_LOCK;
    out.clear();
    for (const auto& a : d.accounts)
        if (a.on) out.push_back(a.a.info);
    return 1;
}

int SimExchange::GetAllExchanges(std::vector<tagExchangeInfo>& out) {
    out = {{0, "上海期货交易所"},
           {1, "大连商品交易所"},
           {2, "郑州商品交易所"},
           {3, "中国金融期货交易所"}};
    return 1;
}

int SimExchange::GetExchangeSymbols(int exchangeID, std::vector<tagSymbol>& out, int filter) {
    SIM_LOCK;
    out.clear();
    for (const auto& m : d.markets)
        if (m.c.symbol.wExchangeID == exchangeID && (filter != 1 || m.c.detail.bTradable))
            out.push_back(m.c.symbol);
    return 1;
}

int SimExchange::GetBrokerByID(tagBrokerInfo& broker, const std::string& brokerID) {
    if (brokerID != "9999") return 0;
    broker.strBrokerID = brokerID;
    broker.strName = "模拟期货公司";
    return 1;
}

bool SimExchange::GetConfigFileProperty(const std::string& file, const std::string& section,
                                        const std::string& key, std::string& value) {
    SIM_LOCK;
    auto it = d.config.find(lower(file + "|" + section + "|" + key));
    if (it == d.config.end()) return false;
    value = it->second;
    return true;
}

int SimExchange::QueryInterface(std::uint32_t request, std::uint32_t arg, std::uint8_t flag,
                                void* data) {
    SIM_LOCK;
    if (request != kQuerySubscribeQuote || !data) return 0;
    auto* block = static_cast<const tagSubscribeBlock*>(data);
    if (block->nCount < 1 || !block->pSymbol) return 0;
    int ok = 1;
    for (std::uint32_t i = 0; i < block->nCount; ++i) {
        std::size_t mi = d.findMarket(block->pSymbol[i]);
        if (mi == Impl::npos) {
            ok = 0;
            continue;
        }
        auto& m = d.markets[mi];
        bool has = std::find(m.subs->begin(), m.subs->end(), arg) != m.subs->end();
        if (flag && !has) {
            auto next = std::make_shared<std::vector<std::uint32_t>>(*m.subs);
            next->push_back(arg);
            m.subs = std::move(next);
        } else if (!flag && has) {
            auto next = std::make_shared<std::vector<std::uint32_t>>(*m.subs);
            next->erase(std::find(next->begin(), next->end(), arg));
            m.subs = std::move(next);
        }
    }
    return ok;
}

// ---- Events -------------------------------------------------------------------------------

void SimExchange::setEventSink(ISimEventSink* sink) {
    SIM_LOCK;
    d.sink = sink;
}

void SimExchange::setDeskSink(ISimEventSink* sink) {
    SIM_LOCK;
    d.desk = sink;
}

std::size_t SimExchange::deliverPending() {
    Impl& d = *m_impl;
    std::vector<Impl::Event> batch;
    ISimEventSink* sink = nullptr;
    ISimEventSink* desk = nullptr;
    {
        std::lock_guard<std::recursive_mutex> lock(d.mu);
        if (d.delivering || d.queue.empty()) {
            if (!d.delivering) ++d.deliverCalls;
            return 0;
        }
        d.delivering = true;
        ++d.deliverCalls;
        const std::int64_t now = d.clock.nowMs();
        batch.reserve(d.queue.size());
        std::deque<Impl::Event> held;
        for (auto& e : d.queue) {
            if (e.dueCall > d.deliverCalls || (e.dueMs > 0 && e.dueMs > now))
                held.push_back(std::move(e));
            else
                batch.push_back(std::move(e));
        }
        d.queue.swap(held);
        sink = d.sink;
        desk = d.desk;
    }
    struct Reset {
        Impl& d;
        ~Reset() {
            std::lock_guard<std::recursive_mutex> lock(d.mu);
            d.delivering = false;
        }
    } reset{d};

    std::size_t delivered = 0;
    for (auto& e : batch) {
        std::uintptr_t data = std::visit(
            [](auto& v) -> std::uintptr_t {
                if constexpr (std::is_same_v<std::decay_t<decltype(v)>, std::monostate>)
                    return 0;
                else
                    return reinterpret_cast<std::uintptr_t>(&v);
            },
            e.payload);
        for (int c = 0; c < e.copies; ++c) {
            if (e.logon) {
                if (e.toMain && sink) sink->onLogonStateChange(e.code, data);
                if (e.toDesk && desk) desk->onLogonStateChange(e.code, data);
            } else {
                if (e.toMain && sink) {
                    sink->onDataChange(e.code, data);
                    if (e.handles)
                        for (std::uint32_t h : *e.handles)
                            sink->onWindowMessage(h, kMsgDataChange, e.code, data);
                }
                if (e.toDesk && desk) desk->onDataChange(e.code, data);
            }
            ++delivered;
        }
    }
    {
        std::lock_guard<std::recursive_mutex> lock(d.mu);
        d.st.eventsDelivered += delivered;
    }
    return delivered;
}

std::size_t SimExchange::pendingEventCount() const {
    SIM_LOCK;
    return d.queue.size();
}

// ---- Market -------------------------------------------------------------------------------

void SimExchange::step() {
    SIM_LOCK;
    ++d.st.quoteRounds;
    const std::int64_t now = d.clock.nowMs();
    d.expireTriggers();
    for (std::size_t mi = 0; mi < d.markets.size(); ++mi) {
        auto& m = d.markets[mi];
        if (m.replaying) {
            const std::int32_t tod = timeOfDayMs(now);
            const std::int64_t day = midnightMs(now);
            bool any = false;
            while (m.next < m.ticks.size() && m.ticks[m.next].timeMs <= tod) {
                d.applyRecord(m, m.ticks[m.next++], day);
                d.round(mi);
                any = true;
            }
            if (any) d.queueQuote(mi);
            continue;
        }
        if (!d.randomWalk) continue;
        d.walk(m, now);
        d.round(mi);
        d.queueQuote(mi);
    }
}

bool SimExchange::applyQuote(const IModuleFutureTrader::ITickEx& tick) {
    SIM_LOCK;
    std::size_t mi = d.findMarket(tick.wExchangeID, tick.strCode);
    if (mi == Impl::npos) return false;
    auto& m = d.markets[mi];
    ITickEx q = tick;
    if (q.tQuoteTime == 0) q.tQuoteTime = d.clock.nowMs();
    if (!isPricePresent(q.dPreSettle)) q.dPreSettle = m.q.dPreSettle;
    if (!isPricePresent(q.dPreClose)) q.dPreClose = m.q.dPreClose;
    if (isPricePresent(q.dUpperLimit) && isPricePresent(q.dLowerLimit)) {
        d.setLimits(m, q.dUpperLimit, q.dLowerLimit);
    } else {
        q.dUpperLimit = m.q.dUpperLimit;
        q.dLowerLimit = m.q.dLowerLimit;
    }
    m.q = q;
    if (isPricePresent(q.dLast)) m.lastTicks = m.nearestTicks(q.dLast);
    m.opened = true;
    ++d.st.quoteRounds;
    d.expireTriggers();
    d.round(mi);
    d.queueQuote(mi);
    return true;
}

void SimExchange::setRandomWalk(bool on) {
    SIM_LOCK;
    d.randomWalk = on;
}

bool SimExchange::loadTickFile(const std::string& path, const tagSymbol& symbol,
                               sim::TickParseReport* report) {
    sim::TickParseReport local;
    sim::TickParseReport& rep = report ? *report : local;
    tagSymbol sym = symbol;
    if (sym.strCode.empty()) {
        std::string code = sim::symbolCodeFromTickPath(path);
        SIM_LOCK;
        bool found = false;
        for (const auto& m : d.markets)
            if (m.c.symbol.strCode == code) {
                sym = m.c.symbol;
                found = true;
                break;
            }
        if (!found) {
            rep.error = "unknown contract " + code;
            return false;
        }
    }
    std::vector<sim::TickRecord> ticks;
    if (!sim::parseTickFile(path, ticks, rep)) return false;  // parsed outside the lock
    if (ticks.empty()) {
        rep.error = "no tick parsed";
        return false;
    }
    if (!loadTicks(sym, std::move(ticks))) {
        rep.error = "unknown contract " + sym.strCode;
        return false;
    }
    return true;
}

bool SimExchange::loadTicks(const tagSymbol& symbol, std::vector<sim::TickRecord> ticks) {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos || ticks.empty()) return false;
    auto& m = d.markets[mi];
    std::stable_sort(ticks.begin(), ticks.end(),
                     [](const auto& a, const auto& b) { return a.timeMs < b.timeMs; });
    // The day's fixed values from the first tick that has them.
    for (const auto& r : ticks) {
        if (r.upperLimit > 0 && r.lowerLimit > 0) {
            d.setLimits(m, r.upperLimit, r.lowerLimit);
            break;
        }
    }
    for (const auto& r : ticks)
        if (r.preSettle > 0) {
            m.q.dPreSettle = r.preSettle;
            break;
        }
    m.ticks = std::move(ticks);
    m.next = 0;
    m.replaying = true;
    m.opened = false;
    m.q.dLast = m.q.dBid = m.q.dAsk = m.q.dBidVol = m.q.dAskVol = 0;
    m.q.dVolume = m.q.dTurnover = 0;
    m.q.dOpen = m.q.dHigh = m.q.dLow = 0;
    return true;
}

std::size_t SimExchange::replayRemaining(const tagSymbol& symbol) const {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos || !d.markets[mi].replaying) return 0;
    return d.markets[mi].ticks.size() - d.markets[mi].next;
}

// ---- Catalogue ----------------------------------------------------------------------------

std::vector<SimContract> SimExchange::contracts() const {
    SIM_LOCK;
    std::vector<SimContract> out;
    for (const auto& m : d.markets) out.push_back(m.c);
    return out;
}

std::vector<tagSymbol> SimExchange::allSymbols() const {
    SIM_LOCK;
    std::vector<tagSymbol> out;
    for (const auto& m : d.markets) out.push_back(m.c.symbol);
    return out;
}

bool SimExchange::contract(const tagSymbol& symbol, SimContract& out) const {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos) return false;
    out = d.markets[mi].c;
    return true;
}

void SimExchange::addContract(const SimContract& contract) {
    SIM_LOCK;
    std::size_t mi = d.findMarket(contract.symbol);
    if (mi == Impl::npos) {
        d.markets.emplace_back();
        mi = d.markets.size() - 1;
    } else {
        // Resting orders keep their indices; the book is rebuilt for the new market.
        for (auto& [p, q] : d.markets[mi].buys)
            for (auto oi : q) d.orders[oi].resting = false, --d.st.restingOrders;
        for (auto& [p, q] : d.markets[mi].sells)
            for (auto oi : q) d.orders[oi].resting = false, --d.st.restingOrders;
        d.markets[mi].buys.clear();
        d.markets[mi].sells.clear();
    }
    d.markets[mi].c = contract;
    d.initMarket(d.markets[mi]);
}

void SimExchange::setTradable(const tagSymbol& symbol, bool tradable) {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi != Impl::npos) d.markets[mi].c.detail.bTradable = tradable;
}

// ---- Accounts -----------------------------------------------------------------------------

std::vector<SimAccount> SimExchange::demoAccounts() const {
    SIM_LOCK;
    std::vector<SimAccount> out;
    for (const auto& a : d.accounts) out.push_back(a.a);
    return out;
}

int SimExchange::logon(const std::string& accountID, const std::string& password) {
    SIM_LOCK;
    std::size_t ai = d.findAccount(accountID, {});
    if (ai == Impl::npos) return 0;
    if (!password.empty() && !d.accounts[ai].a.password.empty() &&
        password != d.accounts[ai].a.password)
        return 0;
    d.setLogon(ai, true, kSimLogonOn);
    return 1;
}

int SimExchange::logoff(const std::string& accountID) {
    SIM_LOCK;
    std::size_t ai = d.findAccount(accountID, {});
    if (ai == Impl::npos) return 0;
    d.setLogon(ai, false, kSimLogonOff);
    return 1;
}

void SimExchange::logonAll() {
    SIM_LOCK;
    for (std::size_t i = 0; i < d.accounts.size(); ++i) d.setLogon(i, true, kSimLogonOn);
}

void SimExchange::logoffAll() {
    SIM_LOCK;
    for (std::size_t i = 0; i < d.accounts.size(); ++i) d.setLogon(i, false, kSimLogonOff);
}

bool SimExchange::isLoggedOn(const std::string& accountID) const {
    SIM_LOCK;
    std::size_t ai = d.findAccount(accountID, {});
    return ai != Impl::npos && d.accounts[ai].on;
}

bool SimExchange::setAccountFunds(const std::string& accountID, double preBalance) {
    SIM_LOCK;
    std::size_t ai = d.findAccount(accountID, {});
    if (ai == Impl::npos) return false;
    d.accounts[ai].a.preBalance = preBalance;
    return true;
}

void SimExchange::seedYesterdayPosition(const std::string& accountID, const tagSymbol& symbol,
                                        std::int32_t direction, double volume, double price) {
    SIM_LOCK;
    std::size_t ai = d.findAccount(accountID, {});
    std::size_t mi = d.findMarket(symbol);
    if (ai == Impl::npos || mi == Impl::npos || volume <= 0) return;
    auto& p = d.positions[{ai, mi}];
    if (direction == kDirBuy) {
        p.longAvg = (p.longAvg * p.longQty() + price * volume) / (p.longQty() + volume);
        p.longYd += volume;
    } else {
        p.shortAvg = (p.shortAvg * p.shortQty() + price * volume) / (p.shortQty() + volume);
        p.shortYd += volume;
    }
}

void SimExchange::setConfigProperty(const std::string& file, const std::string& section,
                                    const std::string& key, const std::string& value) {
    SIM_LOCK;
    d.config[lower(file + "|" + section + "|" + key)] = value;
}

bool SimExchange::isSubscribed(std::uint32_t hWnd, const tagSymbol& symbol) const {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos) return false;
    const auto& s = *d.markets[mi].subs;
    return std::find(s.begin(), s.end(), hWnd) != s.end();
}

std::size_t SimExchange::subscriptionCount() const {
    SIM_LOCK;
    std::size_t n = 0;
    for (const auto& m : d.markets) n += m.subs->size();
    return n;
}

// ---- Fault injection ----------------------------------------------------------------------

void SimExchange::rejectNextOrders(int n, const std::string& reason) {
    SIM_LOCK;
    d.rejectN = std::max(0, n);
    d.rejectReason = reason.empty() ? simtext::kInjectedReject : reason;
}

void SimExchange::setNotificationDelay(int calls, std::int64_t ms) {
    SIM_LOCK;
    d.delayCalls = std::max(0, calls);
    d.delayMs = std::max<std::int64_t>(0, ms);
}

void SimExchange::dropNextNotifications(int n) {
    SIM_LOCK;
    d.dropN = std::max(0, n);
}

void SimExchange::duplicateNextNotifications(int n) {
    SIM_LOCK;
    d.dupN = std::max(0, n);
}

void SimExchange::forceLogoff() {
    SIM_LOCK;
    for (std::size_t i = 0; i < d.accounts.size(); ++i) d.setLogon(i, false, kSimLogonForcedOff);
}

SimStats SimExchange::stats() const {
    SIM_LOCK;
    SimStats s = d.st;
    s.pendingEvents = d.queue.size();
    return s;
}
