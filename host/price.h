// Price helpers shared by every tool.
//
// One tick (one point) = minimum move (integer) x price unit (real). Rounding works in
// ten-thousandths with integer arithmetic so that 3001.3 on a 0.2 grid lands exactly on
// 3001.4 for a buy and 3001.2 for a sell: buys round up, sells round down, by less than one
// tick. A price within binary noise of a whole ten-thousandth counts as that ten-thousandth,
// so a price already on the grid never moves, over the whole range a price box allows
// (|p| <= number_text::kMaxPrice; negative prices, as spreads have, round the same way).
//
// Nothing here has undefined behaviour for any input: a tick that is not a finite positive
// number, or larger than the price range, is unknown (step 0), and with an unknown step or a
// price that is not finite or outside the range the price comes back unchanged.
#pragma once

#include <cstdint>

#include "host/records.h"

namespace price {

// One point of price: nMinMove * fPriceUnit (0 when it is not a finite positive number).
double pointValue(std::int32_t minMove, float priceUnit);
inline double pointValue(const IModuleFutureTrader::ISpecDetailValue& detail) {
    return pointValue(detail.nMinMove, detail.fPriceUnit);
}

// One point on the rounding's 1/10000 grid: free of the single-precision price unit's noise
// (0.2f is 0.2000000030), so offsets and stop distances land on the tick. Falls back to the
// plain product for a step finer than 1/10000.
double pointOnGrid(std::int32_t minMove, float priceUnit);

// The step in ten-thousandths: integer part of (minMove * priceUnit * 10000 + 0.5); 0 when the
// point is unknown or larger than number_text::kMaxPrice.
std::int64_t stepUnits(std::int32_t minMove, float priceUnit);

// Round up to the step (buys). A step of 0 leaves the price as it is.
double roundBuy(double p, std::int32_t minMove, float priceUnit);
// Round down to the step (sells).
double roundSell(double p, std::int32_t minMove, float priceUnit);
// roundBuy for kDirBuy, roundSell otherwise.
double roundForDirection(double p, std::int32_t direction, std::int32_t minMove, float priceUnit);

// Clamp into [lower, upper] when both limits are present and lower < upper; else unchanged.
double clampToLimits(double p, double lower, double upper);

// Decimal places needed to show prices on this tick (0..4).
int decimals(std::int32_t minMove, float priceUnit);

}  // namespace price
