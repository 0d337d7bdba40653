// Numbers as text: what a trader types into a price or volume box, and what the boxes show.
//
// Locale-free in both directions: the Qt application sets the process locale from the
// environment, and a price must never read or show a decimal comma. Parsing accepts plain
// decimal notation with an optional exponent ("3001.4", "+2", "-0.5", "3e3"), blanks around
// it, and nothing that is not finite: "inf", "nan", hexadecimal and values beyond the range
// of a double are not numbers.
//
// Sane ranges. Every price box allows magnitudes up to kMaxPrice and every volume box up to
// kMaxVolume. Within kMaxPrice the price rounding (host/price.h) is exact: a price on the
// tick grid never moves, down to a tick of 1/10000. A value outside its range is refused
// with kMsgPriceOutOfRange / kMsgVolumeOutOfRange, never passed on.
//
// Free functions on values; safe from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace number_text {

// Largest price magnitude any price box accepts: beyond every traded contract by orders of
// magnitude, and small enough that a tenth-of-a-thousandth grid stays exact in a double.
inline constexpr double kMaxPrice = 1e9;
// Largest volume, in lots, any volume box accepts; it also fits the 32-bit integer the
// settings file reads volumes back as.
inline constexpr double kMaxVolume = 1e8;

// Messages for a refused box (caption "提示").
inline constexpr const char* kMsgNotNumber = "输入错误，请输入数字！";
inline constexpr const char* kMsgPriceOutOfRange =
    "输入错误，价格超出允许范围（绝对值不超过1000000000）！";
inline constexpr const char* kMsgVolumeOutOfRange = "输入错误，数量超出允许范围（0至100000000）！";

// The whole text as a finite number: blanks around it allowed, nothing else.
std::optional<double> parse(std::string_view text);
// The leading number of a text, as number boxes read it ("3手" is 3): blanks before it
// allowed, anything may follow. nullopt when the text does not start with a finite number.
std::optional<double> parseLeading(std::string_view text);

// Whether a finite value lies in a box's range.
bool isPriceInRange(double v);
bool isVolumeInRange(double v);  // 0 to kMaxVolume

enum class Check { Ok, NotNumber, OutOfRange };
struct Checked {
    Check status = Check::NotNumber;
    double value = 0;
    bool ok() const { return status == Check::Ok; }
    // The message for a refusal ("" when ok).
    const char* message(bool isPrice) const;
};
// A whole price or volume box read and range-checked.
Checked checkPrice(std::string_view text);
Checked checkVolume(std::string_view text);

// Fixed-point text with `decimals` places (0..17), or with up to four places and trailing
// zeros dropped when `decimals` is negative. Never empty: any finite double is written out
// in full, "-0" shows as "0", and a value that is not finite shows as "-" (absent).
std::string format(double v, int decimals = -1);

}  // namespace number_text
