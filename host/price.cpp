#include "host/price.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "host/number_text.h"

namespace price {

namespace {

// Floor division: int64 division truncates towards zero, the grid does not.
std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    const std::int64_t q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}

// A price in ten-thousandths: the whole ten-thousandth at or below it, and whether the price
// sits on that whole ten-thousandth. A decimal such as 3001.4 is not exact in binary and
// neither is its product with 10000, so a product within the margin of a whole number is
// taken as that number. The margin is 1/10000 of a ten-thousandth, widened to a few units of
// the product's last bit where it is coarser than that (above about 1e8).
struct Units {
    std::int64_t whole;
    bool exact;
};

Units unitsOf(double p) {
    const double x = p * 10000.0;
    const double nearest = std::nearbyint(x);
    const double margin = std::max(1e-4, std::fabs(x) * 8 * DBL_EPSILON);
    if (std::fabs(x - nearest) <= margin) return {static_cast<std::int64_t>(nearest), true};
    return {static_cast<std::int64_t>(std::floor(x)), false};
}

// Whether rounding applies at all: a known step and a price inside the range price boxes
// allow. Anything else is returned as it came (callers refuse such prices before rounding).
bool roundable(double p, std::int64_t s) {
    return s > 0 && number_text::isPriceInRange(p);
}

}  // namespace

double pointValue(std::int32_t minMove, float priceUnit) {
    const double v = static_cast<double>(minMove) * static_cast<double>(priceUnit);
    return std::isfinite(v) && v > 0 ? v : 0;
}

std::int64_t stepUnits(std::int32_t minMove, float priceUnit) {
    const double v = pointValue(minMove, priceUnit);
    // A tick larger than any price is no tick: it would round every price to 0 or beyond.
    if (!(v > 0) || v > number_text::kMaxPrice) return 0;
    return static_cast<std::int64_t>(v * 10000.0 + 0.5);
}

double pointOnGrid(std::int32_t minMove, float priceUnit) {
    const std::int64_t s = stepUnits(minMove, priceUnit);
    return s > 0 ? static_cast<double>(s) / 10000.0 : pointValue(minMove, priceUnit);
}

double roundBuy(double p, std::int32_t minMove, float priceUnit) {
    const std::int64_t s = stepUnits(minMove, priceUnit);
    if (!roundable(p, s)) return p;
    const Units u = unitsOf(p);
    // On a whole ten-thousandth: up to the next multiple unless already on one. Between two:
    // the first multiple above the whole part below it.
    const std::int64_t k = u.exact ? -floorDiv(-u.whole, s) : floorDiv(u.whole, s) + 1;
    return static_cast<double>(k * s) / 10000.0;
}

double roundSell(double p, std::int32_t minMove, float priceUnit) {
    const std::int64_t s = stepUnits(minMove, priceUnit);
    if (!roundable(p, s)) return p;
    return static_cast<double>(floorDiv(unitsOf(p).whole, s) * s) / 10000.0;
}

double roundForDirection(double p, std::int32_t direction, std::int32_t minMove, float priceUnit) {
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
