#include "robots/order_tag.h"

#include <gtest/gtest.h>

#include "host/clock.h"

namespace {

constexpr std::uint32_t kMax = 4294967295u;

TEST(OrderTag, EveryFormBuildsAndParsesBack) {
    struct Case {
        OrderTag tag;
        const char* text;
    };
    const Case cases[] = {
        {{TagPrefix::Dollar, 65537, "te", 1000, true}, "$|h|65537|te|1000"},
        {{TagPrefix::Blader, 65537, "te", 7, true}, "blader|h|65537|te|7"},
        {{TagPrefix::None, 1, "tea", 2, true}, "h|1|tea|2"},
        {{TagPrefix::None, 1, "txb", 2, false}, "h|1|txb2"},
        // The 32-bit boundaries of both numbers.
        {{TagPrefix::None, 0, "leb", 0, true}, "h|0|leb|0"},
        {{TagPrefix::Dollar, kMax, "ted", kMax, true}, "$|h|4294967295|ted|4294967295"},
        {{TagPrefix::None, kMax, "txb", kMax, false}, "h|4294967295|txb4294967295"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(formatOrderTag(c.tag), c.text);
        const auto parsed = parseOrderTag(c.text);
        ASSERT_TRUE(parsed.has_value());
        EXPECT_EQ(*parsed, c.tag);
    }
}

TEST(OrderTag, MalformedRemarksAreNotTags) {
    const char* remarks[] = {
        "",
        "舵手下单",
        "h|",
        "h|1|te|",
        "h|1|te",
        "h||te|1",
        "h|1||1",
        "h|4294967296|te|1",  // handle beyond 32 bits
        "h|1|te|4294967296",  // tick beyond 32 bits
        "h|99999999999999999999|te|1",
        "h|01|te|1",  // leading zeros are never written; only the written form parses
        "h|-1|te|1",
        " h|1|te|1",
        "h|1|te|1|",
        "h|1|TE|1",
        "h|1|abcde|1",  // leg codes are at most four letters
        "h|1|t1|1",
        "$$|h|1|te|1",
        "$|blader|h|1|te|1",
        "blader|$|h|1|te|1",
        "H|1|te|1",
        "h|1|te||1",
    };
    for (const char* r : remarks) EXPECT_FALSE(parseOrderTag(r).has_value()) << r;
}

TEST(OrderTagSource, EveryOrderGetsItsOwnTagEvenWithinOneMillisecond) {
    ManualClock clock;  // tick count 1000
    COrderTagSource source(42, clock);
    EXPECT_EQ(source.make("te", TagPrefix::Dollar), "$|h|42|te|1000");
    EXPECT_EQ(source.make("tx", TagPrefix::Dollar), "$|h|42|tx|1001");
    EXPECT_EQ(source.make("te", TagPrefix::Dollar), "$|h|42|te|1002");
    clock.advanceMs(1);  // the clock is still behind what was issued
    EXPECT_EQ(source.make("tea"), "h|42|tea|1003");
    clock.advanceMs(10);
    EXPECT_EQ(source.make("txb", TagPrefix::None, false), "h|42|txb1011");
}

TEST(OrderTagSource, TickCountWrapsAt32Bits) {
    ManualClock clock;
    clock.advanceMs(std::int64_t{kMax} - 1000);
    COrderTagSource source(7, clock);
    EXPECT_EQ(source.make("te"), "h|7|te|4294967295");
    EXPECT_EQ(source.make("te"), "h|7|te|0");  // same millisecond, past the wrap
    clock.advanceMs(5);
    EXPECT_EQ(source.make("te"), "h|7|te|4");
}

}  // namespace
