#include "host/price.h"

namespace price {

double pointValue(std::int32_t minMove, float priceUnit) {
    return static_cast<double>(minMove) * static_cast<double>(priceUnit);
}

std::int64_t stepUnits(std::int32_t minMove, float priceUnit) {
    return static_cast<std::int64_t>(pointValue(minMove, priceUnit) * 10000.0 + 0.5);
}

double pointOnGrid(std::int32_t minMove, float priceUnit) {
    const std::int64_t s = stepUnits(minMove, priceUnit);
    return s > 0 ? static_cast<double>(s) / 10000.0 : pointValue(minMove, priceUnit);
}

double roundBuy(double p, std::int32_t minMove, float priceUnit) {
    const std::int64_t s = stepUnits(minMove, priceUnit);
    if (s <= 0) return p;
    const auto units = static_cast<std::int64_t>(p * 10000.0 - 0.0001);
    return static_cast<double>((s + units) / s * s) / 10000.0;
}

double roundSell(double p, std::int32_t minMove, float priceUnit) {
    const std::int64_t s = stepUnits(minMove, priceUnit);
    if (s <= 0) return p;
    // The same hair's margin as the buy side, mirrored: a price on the grid whose decimal
    // lands a little below in binary (95.07 is 950699.99999... ten-thousandths) must stay put,
    // not drop a whole tick.
    const auto units = static_cast<std::int64_t>(p * 10000.0 + 0.0001);
    return static_cast<double>(units / s * s) / 10000.0;
}

double roundForDirection(double p, std::int32_t direction, std::int32_t minMove,
                         float priceUnit) {
    return direction == kDirBuy ? roundBuy(p, minMove, priceUnit)
                                : roundSell(p, minMove, priceUnit);
}

double clampToLimits(double p, double lower, double upper) {
    if (lower > 0 && upper > 0 && lower < upper) {
        if (p > upper) return upper;
        if (p < lower) return lower;
    }
    return p;
}

int decimals(std::int32_t minMove, float priceUnit) {
    std::int64_t s = stepUnits(minMove, priceUnit);
    if (s <= 0) return 2;
    int d = 4;
    while (d > 0 && s % 10 == 0) {
        s /= 10;
        --d;
    }
    return d;
}

}  // namespace price
