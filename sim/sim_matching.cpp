// Orders: validation, the one-level book at the touch, fills and cancels.
#include "sim/sim_exchange_impl.h"

using namespace simdetail;

// A new quote is in m.q: reset the touch, fill resting orders, then triggers.
void SimExchange::Impl::round(std::size_t mi) {
    Market& m = markets[mi];
    formulas.onQuote(mi, m.q);
    m.availBid = m.q.dBid > 0 ? m.q.dBidVol : 0;
    m.availAsk = m.q.dAsk > 0 ? m.q.dAskVol : 0;
    if (!matchingOpen(m)) return;  // outside the sessions orders rest and triggers wait
    matchResting(mi);
    evaluateTriggers(mi);
}

// Resting orders of one market against the quote now in m.q. A level fills completely
// when the last price traded through it, else from the touch volume left this round.
// Fills can erase levels, so the next level is found again by key after each one.
template <class Book>
void SimExchange::Impl::matchSide(Market& m, Book& book, bool buy) {
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

void SimExchange::Impl::matchResting(std::size_t mi) {
    Market& m = markets[mi];
    matchSide(m, m.buys, true);
    matchSide(m, m.sells, false);
}

void SimExchange::Impl::addResting(std::size_t oi) {
    Order& o = orders[oi];
    Market& m = markets[o.market];
    o.resting = true;
    if (o.o.nDirection == kDirBuy)
        m.buys[o.priceTicks].push_back(oi);
    else
        m.sells[o.priceTicks].push_back(oi);
    ++st.restingOrders;
}

void SimExchange::Impl::removeResting(std::size_t oi) {
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

double SimExchange::Impl::commissionOf(const Market& m, double qty, double price) const {
    if (m.c.commissionPerLot > 0) return m.c.commissionPerLot * qty;
    return m.c.commissionRate * price * qty * m.c.detail.dMultiplier;
}

void SimExchange::Impl::fill(std::size_t oi, double qty, double px) {
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

// Books and processes one order; returns its index, or npos when refused before booking.
std::size_t SimExchange::Impl::send(tagBrokerOrder& in) {
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
    // An injected reject comes after the checks, which froze what the order needs.
    if (!injected.empty()) releaseHold(oi);
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
const char* SimExchange::Impl::validate(std::size_t oi) {
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

void SimExchange::Impl::accept(std::size_t oi) {
    orders[oi].o.nStatus = kOrderQueued;
    queueOrder(oi);
    Order& o = orders[oi];
    Market& m = markets[o.market];
    double p = o.o.dPrice;
    if (!matchingOpen(m)) {
        // Taken outside the sessions: it rests and meets the market when trading resumes.
    } else if (o.o.nDirection == kDirBuy) {
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
void SimExchange::Impl::releaseHold(std::size_t oi) {
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

int SimExchange::Impl::cancel(const std::string& k1, const std::string& k2, const std::string& id) {
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

void SimExchange::rejectNextOrders(int n, const std::string& reason) {
    SIM_LOCK;
    d.rejectN = std::max(0, n);
    d.rejectReason = reason.empty() ? simtext::kInjectedReject : reason;
}
