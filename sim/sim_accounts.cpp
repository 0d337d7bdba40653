// Accounts: logon, positions and funds.
#include "sim/sim_exchange_impl.h"

using namespace simdetail;

double SimExchange::Impl::mark(const Market& m) const {
    return isPricePresent(m.q.dLast) ? m.q.dLast : m.q.dPreSettle;
}

void SimExchange::Impl::summary(std::size_t ai, tagAccountSummary& s) const {
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

double SimExchange::Impl::available(std::size_t ai) const {
    tagAccountSummary s;
    summary(ai, s);
    return s.dAvailable;
}

tagOpenedPosition SimExchange::Impl::positionRecord(std::size_t ai, std::size_t mi,
                                                    const Position& p) const {
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

void SimExchange::Impl::setLogon(std::size_t ai, bool on, std::uint32_t code) {
    Account& a = accounts[ai];
    if (a.on == on) return;
    a.on = on;
    queueLogon(code, a.a.info);
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

void SimExchange::forceLogoff() {
    SIM_LOCK;
    for (std::size_t i = 0; i < d.accounts.size(); ++i) d.setLogon(i, false, kSimLogonForcedOff);
}
