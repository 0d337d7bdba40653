// Builders for the host records most tests make by hand: a contract's details, a market
// quote and a plain order. Free of gtest so the benchmarks can use them too.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "host/records.h"

// A contract's details: tick size (price unit), point factor (min move), contract
// multiplier, margin rate and whether the host accepts orders in it.
inline IModuleFutureTrader::ISpecDetailValue contractDetail(float priceUnit, int minMove,
                                                            double multiplier,
                                                            double marginRate = 0,
                                                            bool tradable = true) {
    IModuleFutureTrader::ISpecDetailValue v;
    v.fPriceUnit = priceUnit;
    v.nMinMove = minMove;
    v.dMultiplier = multiplier;
    v.dMarginRate = marginRate;
    v.bTradable = tradable;
    return v;
}

// A plain order of `account` at broker 9999; whatever else a test needs it sets itself.
inline tagBrokerOrder brokerOrder(std::string account, std::string code, int direction,
                                  double volume, double price) {
    tagBrokerOrder o;
    o.strAccountID = std::move(account);
    o.strBrokerID = "9999";
    o.strCode = std::move(code);
    o.nDirection = direction;
    o.dVolume = volume;
    o.dPrice = price;
    return o;
}

// A quote built field by field: `TickBuilder(1, "ag2412").bid(7411, 18).ask(7413, 7)`.
// Whatever is not set keeps the record's zero default. Converts to the record itself.
class TickBuilder {
public:
    TickBuilder() = default;
    TickBuilder(std::uint16_t exchangeId, std::string code) {
        m_tick.wExchangeID = exchangeId;
        m_tick.strCode = std::move(code);
    }

    TickBuilder& bid(double price, double volume) {
        m_tick.dBid = price;
        m_tick.dBidVol = volume;
        return *this;
    }
    TickBuilder& ask(double price, double volume) {
        m_tick.dAsk = price;
        m_tick.dAskVol = volume;
        return *this;
    }
    TickBuilder& last(double price) {
        m_tick.dLast = price;
        return *this;
    }
    TickBuilder& limits(double lower, double upper) {
        m_tick.dLowerLimit = lower;
        m_tick.dUpperLimit = upper;
        return *this;
    }
    TickBuilder& preSettle(double price) {
        m_tick.dPreSettle = price;
        return *this;
    }

    operator IModuleFutureTrader::ITickEx() const { return m_tick; }

private:
    IModuleFutureTrader::ITickEx m_tick;
};
