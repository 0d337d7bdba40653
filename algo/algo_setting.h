// Settings block of an algo order. It doubles as the algorithm threshold block of order
// submission: an order whose volume is at least nBaseLine goes to algorithmic execution
// instead of straight to the exchange.
#pragma once

#include <cstdint>

struct tagAlgoSetting {
    std::int32_t nBaseLine = 10;  // start base-line quantity: the routing threshold
    std::int32_t bAutoKP = 0;
    std::int32_t nLotType = 0;
    std::int32_t nLotSingle = 1;
    std::int32_t nLotRandom = 1;
    std::int32_t nLotRatio = 0;
    std::int32_t nPriceType = 0;
    std::int32_t nTimeType = 0;
    std::int32_t nTimeInterval = 5;
    std::int32_t nTimeRadom = 0;
    std::int32_t nTimeTotal = 60;
    std::int32_t nTimeSession = 0;
    std::int32_t nStopRange = 0;
    std::int32_t nOutStopRange = 0;
    std::int32_t nLimitRange = 0;
    std::int32_t nOutLimitRange = 0;

    double minVolume() const { return static_cast<double>(nBaseLine); }
};
