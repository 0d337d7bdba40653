// Server trigger orders: booked here, released into plain orders on quote rounds.
#include "sim/sim_exchange_impl.h"

using namespace simdetail;

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

void SimExchange::Impl::expireTriggers() {
    std::int64_t now = clock.now();
    for (std::size_t i = 0; i < triggers.size(); ++i) {
        auto& t = triggers[i].t;
        if (t.nStatus == kSimTriggerWaiting && t.tExpiry > 0 && now > t.tExpiry) {
            t.nStatus = kSimTriggerExpired;
            queueTrigger(i);
        }
    }
}

void SimExchange::Impl::evaluateTriggers(std::size_t mi) {
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

void SimExchange::Impl::release(std::size_t ti, std::int64_t now) {
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
