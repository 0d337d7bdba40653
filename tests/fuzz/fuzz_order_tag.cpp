// Order tags: any remark parses without undefined behaviour, and whatever parses is written
// back to exactly the same text; a tag built from any parts parses back to those parts.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "robots/order_tag.h"

namespace {

void check(bool ok) {
    if (!ok) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string remark(reinterpret_cast<const char*>(data), size);
    if (const auto tag = parseOrderTag(remark)) {
        check(formatOrderTag(*tag) == remark);
        check(tagMatches(remark, formatOrderTag(*tag)));
    }

    FuzzedDataProvider in(data, size);
    OrderTag built;
    built.prefix = static_cast<TagPrefix>(in.ConsumeIntegralInRange<int>(0, 2));
    built.handle = in.ConsumeIntegral<std::uint32_t>();
    built.tick = in.ConsumeIntegral<std::uint32_t>();
    built.tickSeparator = in.ConsumeBool();
    const int legLength = in.ConsumeIntegralInRange<int>(1, 4);
    for (int i = 0; i < legLength; ++i)
        built.leg += static_cast<char>('a' + in.ConsumeIntegralInRange<int>(0, 25));
    const auto back = parseOrderTag(formatOrderTag(built));
    check(back.has_value() && *back == built);
    return 0;
}
