// Quotes: the random walk and the exchange's sessions, replay of recorded ticks, imposed
// quotes and quote subscriptions.
#include "sim/sim_exchange_impl.h"

using namespace simdetail;

void SimExchange::Impl::initMarket(Market& m) {
    const auto& c = m.c;
    m.step = std::max<std::int64_t>(
        1, std::llround(static_cast<double>(c.detail.nMinMove) * c.detail.fPriceUnit * 10000.0));
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
    m.tickAt.clear();
    m.next = 0;
    if (!m.subs) m.subs = std::make_shared<const std::vector<std::uint32_t>>();
    std::int64_t now = clock.nowMs();
    m.q.tQuoteTime = now;
    if (c.expired) {
        // Its last day is over: the final price stands, there is no book and no trading.
        m.opened = true;
        m.lastTicks = m.nearestTicks(c.preSettle);
        m.q.dOpen = m.q.dHigh = m.q.dLow = m.q.dLast = m.price(m.lastTicks);
        m.q.dPreOpenPrice1 = m.q.dLast;
        return;
    }
    // Before the call auction the day has not begun (only the fallbacks show); later in the
    // day the market has opened, whether it is trading now or not.
    const auto state = sessionAt(m, now);
    if (state != session::SessionState::NotOpen && state != session::SessionState::PreOpen)
        openMarket(m, now);
}

std::int32_t SimExchange::Impl::timeOfDay(std::int64_t nowMs) const {
    const std::int64_t sec = nowMs >= 0 ? nowMs / 1000 : (nowMs - 999) / 1000;
    if (sec != todSecond) {
        todSecond = sec;
        todSecondMs = timeOfDayMs(sec * 1000);
    }
    return todSecondMs + static_cast<std::int32_t>(nowMs - sec * 1000);
}

session::SessionState SimExchange::Impl::sessionAt(const Market& m, std::int64_t nowMs) const {
    return sim::contractSession(m.c, timeOfDay(nowMs));
}

bool SimExchange::Impl::matchingOpen(const Market& m) const {
    return !m.c.expired && sessionAt(m, clock.nowMs()) == session::SessionState::Trading;
}

void SimExchange::Impl::openMarket(Market& m, std::int64_t nowMs) {
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
void SimExchange::Impl::setBook(Market& m) {
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

// One step of the walk; false when the contract does not tick now: expired, before the call
// auction, in a break or after the close.
bool SimExchange::Impl::walk(Market& m, std::int64_t nowMs) {
    if (m.c.expired) return false;
    const auto state = sessionAt(m, nowMs);
    if (!m.opened) {
        if (state == session::SessionState::PreOpen) {
            m.q.tQuoteTime = nowMs;
            std::uniform_int_distribution<int> d(-1, 1);
            m.indicativeTicks =
                std::clamp<std::int64_t>(m.indicativeTicks + d(rng), m.lowerTicks, m.upperTicks);
            m.q.dPreOpenPrice1 = m.price(m.indicativeTicks);
            m.q.dLast = m.q.dBid = m.q.dAsk = 0;
            m.q.dBidVol = m.q.dAskVol = 0;
            return true;
        }
        if (state != session::SessionState::Trading) return false;
        openMarket(m, nowMs);
        return true;
    }
    if (state != session::SessionState::Trading) return false;
    m.q.tQuoteTime = nowMs;
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
    return true;
}

void SimExchange::Impl::applyRecord(Market& m, const sim::TickRecord& r, std::int64_t dayMs) {
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

void SimExchange::Impl::setLimits(Market& m, double upper, double lower) {
    m.q.dUpperLimit = upper;
    m.q.dLowerLimit = lower;
    m.upperTicks = m.nearestTicks(upper);
    m.lowerTicks = m.nearestTicks(lower);
}

int SimExchange::GetMarketQuote(const tagSymbol& symbol, IModuleFutureTrader::ITickEx& tick) {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos) return 0;
    tick = d.markets[mi].q;
    return 1;
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

void SimExchange::step() {
    SIM_LOCK;
    ++d.st.quoteRounds;
    const std::int64_t now = d.clock.nowMs();
    d.expireTriggers();
    for (std::size_t mi = 0; mi < d.markets.size(); ++mi) {
        auto& m = d.markets[mi];
        if (m.replaying) {
            bool any = false;
            while (m.next < m.ticks.size() && m.tickAt[m.next] <= now) {
                const sim::TickRecord& r = m.ticks[m.next];
                d.applyRecord(m, r, m.tickAt[m.next] - r.timeMs);
                ++m.next;
                d.round(mi);
                any = true;
            }
            if (any) d.queueQuote(mi);
            continue;
        }
        if (!d.randomWalk || !d.walk(m, now)) continue;
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
    std::vector<sim::TickRecord> ticks;
    if (!sim::parseTickFile(path, ticks, rep)) return false;  // parsed outside the lock
    tagSymbol sym = symbol;
    if (sym.strCode.empty()) sym.strCode = sim::symbolCodeFromTickPath(path);
    {
        SIM_LOCK;
        std::size_t mi = symbol.strCode.empty() ? Impl::npos : d.findMarket(sym);
        if (symbol.strCode.empty())
            for (std::size_t i = 0; i < d.markets.size() && mi == Impl::npos; ++i)
                if (d.markets[i].c.symbol.strCode == sym.strCode) mi = i;
        if (mi == Impl::npos && !symbol.strCode.empty()) {
            rep.error = "unknown contract " + sym.strCode;
            return false;
        }
        if (mi == Impl::npos) {
            // A contract of the recorded data that the catalogue does not list is learned.
            SimContract learned;
            if (!sim::recordedContract(sym.strCode, learned)) {
                rep.error = "unknown contract " + sym.strCode;
                return false;
            }
            addContract(learned);
            mi = d.findMarket(learned.symbol);
        }
        if (d.markets[mi].c.expired) {
            rep.error = "contract " + sym.strCode + " has expired";
            return false;
        }
        sym = d.markets[mi].c.symbol;
    }
    if (ticks.empty()) {
        rep.error = rep.linesRead == 0 ? std::string("no tick lines")
                                       : "no usable tick: " + sim::skippedSummary(rep);
        return false;
    }
    return loadTicks(sym, std::move(ticks));
}

bool SimExchange::loadTicks(const tagSymbol& symbol, std::vector<sim::TickRecord> ticks) {
    // The file plays on the clock's trading day, in trading-day order (night rows first).
    bool night = false;
    for (const auto& r : ticks) night = night || sim::isNightTime(r.timeMs);
    auto at = sim::tradingDayTimes(ticks, sim::replayTradingDate(m_impl->clock.now(), night));
    return loadTicksAt(symbol, std::move(ticks), std::move(at));
}

std::size_t SimExchange::replayRemaining(const tagSymbol& symbol) const {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos || !d.markets[mi].replaying) return 0;
    return d.markets[mi].ticks.size() - d.markets[mi].next;
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
