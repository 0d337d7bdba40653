#include "host/number_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace {

using number_text::Check;

TEST(NumberText, ParsesWholeTextsAndLeadingNumbers) {
    struct {
        const char* text;
        std::optional<double> whole, leading;
    } cases[] = {
        {"3001.4", 3001.4, 3001.4},
        {" +2 ", 2, 2},
        {"-0.5", -0.5, -0.5},
        {"3e3", 3000, 3000},
        {".5", 0.5, 0.5},
        {"3手", std::nullopt, 3},
        {"3,5", std::nullopt, 3},  // a decimal comma is not a decimal point
        {"", std::nullopt, std::nullopt},
        {"   ", std::nullopt, std::nullopt},
        {"abc", std::nullopt, std::nullopt},
        {"inf", std::nullopt, std::nullopt},
        {"-Infinity", std::nullopt, std::nullopt},
        {"nan", std::nullopt, std::nullopt},
        {"+nan", std::nullopt, std::nullopt},
        {"1e400", std::nullopt, std::nullopt},  // beyond a double
        {"+-3", std::nullopt, std::nullopt},
        {"0x10", std::nullopt, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(number_text::parse(c.text), c.whole);
        EXPECT_EQ(number_text::parseLeading(c.text), c.leading);
    }
}

TEST(NumberText, ChecksBoxRanges) {
    struct {
        const char* text;
        Check price, volume;
    } cases[] = {
        {"1000000000", Check::Ok, Check::OutOfRange},
        {"-1000000000", Check::Ok, Check::OutOfRange},
        {"1000000000.01", Check::OutOfRange, Check::OutOfRange},
        {"3e33", Check::OutOfRange, Check::OutOfRange},
        {"100000000", Check::Ok, Check::Ok},
        {"100000001", Check::Ok, Check::OutOfRange},
        {"-1", Check::Ok, Check::OutOfRange},
        {"0", Check::Ok, Check::Ok},
        {"inf", Check::NotNumber, Check::NotNumber},
        {"x", Check::NotNumber, Check::NotNumber},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(number_text::checkPrice(c.text).status, c.price);
        EXPECT_EQ(number_text::checkVolume(c.text).status, c.volume);
    }
    EXPECT_STREQ(number_text::checkPrice("3e33").message(true), number_text::kMsgPriceOutOfRange);
    EXPECT_STREQ(number_text::checkVolume("x").message(false), number_text::kMsgNotNumber);
}

TEST(NumberText, FormatsEveryFiniteValue) {
    struct {
        double v;
        int decimals;
        const char* text;
    } cases[] = {
        {3001.4, 1, "3001.4"}, {3001.4, -1, "3001.4"}, {2.0, -1, "2"},          {2.5, 0, "2"},
        {-0.00001, 2, "0.00"}, {-0.0, -1, "0"},        {0.12345, -1, "0.1235"},
    };
    for (const auto& c : cases) EXPECT_EQ(number_text::format(c.v, c.decimals), c.text) << c.v;
    // Large values are written out in full and read back as themselves.
    for (double v : {1e59, -1e59, 1.7976931348623157e308})
        EXPECT_EQ(number_text::parse(number_text::format(v, 17)), v) << v;
    EXPECT_EQ(number_text::format(std::numeric_limits<double>::infinity()), "-");
}

}  // namespace
