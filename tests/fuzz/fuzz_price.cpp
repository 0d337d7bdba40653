// Tick rounding over any tick and any price: no undefined behaviour; with a usable tick and a
// price in range, buys go up and sells down by less than one tick onto the grid, and a price
// already on the grid never moves; anything else comes back unchanged.
#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "host/number_text.h"
#include "host/price.h"

namespace {

void check(bool ok) {
    if (!ok) std::abort();
}

bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool onGrid(double p, std::int32_t minMove, float unit) {
    return price::roundBuy(p, minMove, unit) == p && price::roundSell(p, minMove, unit) == p;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    // Half the time a realistic tick, otherwise any bits at all.
    const bool realistic = in.ConsumeBool();
    const std::int32_t minMove = realistic ? in.ConsumeIntegralInRange<std::int32_t>(1, 10)
                                           : in.ConsumeIntegral<std::int32_t>();
    const float unit = realistic
                           ? static_cast<float>(in.ConsumeIntegralInRange<int>(1, 50000)) / 10000.0f
                           : in.ConsumeFloatingPoint<float>();
    const double p = in.ConsumeBool() ? in.ConsumeFloatingPointInRange<double>(-1.1e9, 1.1e9)
                                      : in.ConsumeFloatingPoint<double>();

    const double buy = price::roundBuy(p, minMove, unit);
    const double sell = price::roundSell(p, minMove, unit);
    const std::int64_t s = price::stepUnits(minMove, unit);
    if (s <= 0 || !number_text::isPriceInRange(p)) {
        check(same(buy, p) && same(sell, p));
        return 0;
    }
    const double tick = static_cast<double>(s) / 10000.0;
    // Binary noise allowed on either side: what the rounding itself treats as on a
    // ten-thousandth.
    const double noise = 1e-8 + std::fabs(p) * 1e-14;
    check(buy >= p - noise && buy - p < tick + noise);
    check(sell <= p + noise && p - sell < tick + noise);
    check(onGrid(buy, minMove, unit) && onGrid(sell, minMove, unit));

    // Any grid price inside the range stays put.
    const std::int64_t maxK = static_cast<std::int64_t>(number_text::kMaxPrice * 10000.0) / s;
    const std::int64_t k = in.ConsumeIntegralInRange<std::int64_t>(-maxK, maxK);
    const double g = static_cast<double>(k * s) / 10000.0;
    check(onGrid(g, minMove, unit));
    return 0;
}
