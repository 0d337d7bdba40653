// Number boxes' text: any text parses without a crash to nothing or a finite number; any
// finite number formats to a non-empty text that parses back to it within the places shown.
#include <fuzzer/FuzzedDataProvider.h>

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "host/number_text.h"

namespace {

void check(bool ok) {
    if (!ok) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    const std::string text = in.ConsumeRandomLengthString(64);
    const auto whole = number_text::parse(text);
    const auto leading = number_text::parseLeading(text);
    if (whole) {
        check(std::isfinite(*whole));
        check(leading && *leading == *whole);  // a whole number is also a leading one
    }
    if (leading) check(std::isfinite(*leading));
    const auto price = number_text::checkPrice(text);
    check(price.ok() == (whole && number_text::isPriceInRange(*whole)));
    check(*price.message(true) == '\0' || !price.ok());

    const double v = in.ConsumeFloatingPoint<double>();
    const int decimals = in.ConsumeIntegralInRange<int>(-1, 17);
    const std::string shown = number_text::format(v, decimals);
    check(!shown.empty());
    if (!std::isfinite(v)) {
        check(shown == "-");
        return 0;
    }
    const auto back = number_text::parse(shown);
    check(back.has_value());
    const int places = decimals < 0 ? 4 : decimals;
    check(std::fabs(*back - v) <= 0.5 * std::pow(10.0, -places) + std::fabs(v) * DBL_EPSILON);
    return 0;
}
