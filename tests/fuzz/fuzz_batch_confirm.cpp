// The batch confirmation's in-place edits: a typed price and volume against any contract and
// limit band are refused with a message and leave the order as it was, or are accepted and
// then the price is on the contract's grid, inside the band and the price range, and the
// volume a whole number of lots within the cap.
#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "host/number_text.h"
#include "host/price.h"
#include "order/multi_confirm.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"

namespace {

void check(bool ok) {
    if (!ok) std::abort();
}

double anyPrice(FuzzedDataProvider& in) {
    return in.ConsumeBool() ? in.ConsumeFloatingPointInRange<double>(0, 10000)
                            : in.ConsumeFloatingPoint<double>();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    FakeHost host;
    const bool realistic = in.ConsumeBool();
    const float unit = realistic
                           ? static_cast<float>(in.ConsumeIntegralInRange<int>(1, 50000)) / 10000.0f
                           : in.ConsumeFloatingPoint<float>();
    const int minMove =
        realistic ? in.ConsumeIntegralInRange<int>(1, 5) : in.ConsumeIntegral<int>();
    if (in.ConsumeBool()) host.details["IF2406"] = contractDetail(unit, minMove, 300);
    const double lower = anyPrice(in);
    const double upper = anyPrice(in);
    if (in.ConsumeBool()) host.quotes["IF2406"] = TickBuilder().limits(lower, upper);

    tagBrokerOrder o;
    o.strAccountID = "8001";
    o.nExchangeID = 1;
    o.strCode = "IF2406";
    o.nDirection = in.ConsumeBool() ? kDirBuy : kDirSell;
    o.dVolume = 1;
    o.dPrice = 3000;
    const double cap = in.ConsumeBool() ? in.ConsumeFloatingPoint<double>() : 1000;
    CMultiConfirm mc({o}, "fuzz", nullptr, &host, cap);

    const std::string priceText = in.ConsumeRandomLengthString(32);
    const std::string volumeText = in.ConsumeRandomLengthString(32);

    const EditResult pr = mc.editPrice(0, priceText);
    const double p = mc.orders()[0].dPrice;
    if (!pr.ok) {
        check(!pr.message.empty() && p == 3000);
    } else {
        check(pr.message.empty());
        check(std::isfinite(p) && p > 0.000001 && number_text::isPriceInRange(p));
        const auto detail = host.details.find("IF2406");
        if (detail != host.details.end() && price::stepUnits(minMove, unit) > 0) {
            check(price::roundBuy(p, minMove, unit) == p);
            check(price::roundSell(p, minMove, unit) == p);
        }
        const auto [lo, hi] = mc.limitBand(0);
        if (hi > 0) check(p >= lo - 1e-9 && p <= hi + 1e-9);
    }

    const EditResult vr = mc.editVolume(0, volumeText);
    const double v = mc.orders()[0].dVolume;
    if (!vr.ok) {
        check(!vr.message.empty() && v == 1);
    } else {
        check(v >= 1 && v == std::floor(v) && v <= mc.volumeCap());
        check(mc.volumeCap() <= number_text::kMaxVolume);
    }
    return 0;
}
