// The catalogue: the demo contracts and exchanges, the configuration table and
// construction of the whole exchange.
#include "sim/sim_exchange_impl.h"

using namespace simdetail;

namespace {

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

}  // namespace

namespace simdetail {

std::vector<SimContract> defaultCatalogue() {
    std::vector<SimContract> out{
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
    out.back().expired = true;
    return out;
}

}  // namespace simdetail

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

int SimExchange::GetSymbolProperty(const tagSymbol& symbol,
                                   IModuleFutureTrader::ISpecDetailValue& detail) {
    SIM_LOCK;
    std::size_t mi = d.findMarket(symbol);
    if (mi == Impl::npos) return 0;
    detail = d.markets[mi].c.detail;
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
    if (d.formulaValue(file, section, key, value)) return true;
    auto it = d.config.find(lower(file + "|" + section + "|" + key));
    if (it == d.config.end()) return false;
    value = it->second;
    return true;
}

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

void SimExchange::setConfigProperty(const std::string& file, const std::string& section,
                                    const std::string& key, const std::string& value) {
    SIM_LOCK;
    d.config[lower(file + "|" + section + "|" + key)] = value;
}
