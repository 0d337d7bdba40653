#include "host/number_text.h"

#include <charconv>
#include <cmath>

namespace number_text {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// Reads a finite number at the start of [first, last); `end` receives where it stopped.
std::optional<double> readAt(const char* first, const char* last, const char** end) {
    // from_chars takes a '-' but no '+'; a second sign after '+' is not a number.
    if (first != last && *first == '+') {
        ++first;
        if (first == last || *first == '-' || *first == '+') return std::nullopt;
    }
    double v = 0;
    const auto [ptr, ec] = std::from_chars(first, last, v, std::chars_format::general);
    if (ec != std::errc() || !std::isfinite(v)) return std::nullopt;
    *end = ptr;
    return v;
}

}  // namespace

std::optional<double> parse(std::string_view text) {
    const char* first = text.data();
    const char* last = first + text.size();
    while (first != last && isBlank(*first)) ++first;
    while (last != first && isBlank(last[-1])) --last;
    if (first == last) return std::nullopt;
    const char* end = nullptr;
    const auto v = readAt(first, last, &end);
    if (!v || end != last) return std::nullopt;
    return v;
}

std::optional<double> parseLeading(std::string_view text) {
    const char* first = text.data();
    const char* last = first + text.size();
    while (first != last && isBlank(*first)) ++first;
    const char* end = nullptr;
    return readAt(first, last, &end);
}

bool isPriceInRange(double v) {
    return std::isfinite(v) && std::fabs(v) <= kMaxPrice;
}

bool isVolumeInRange(double v) {
    return std::isfinite(v) && v >= 0 && v <= kMaxVolume;
}

const char* Checked::message(bool isPrice) const {
    switch (status) {
        case Check::Ok: return "";
        case Check::NotNumber: return kMsgNotNumber;
        case Check::OutOfRange: return isPrice ? kMsgPriceOutOfRange : kMsgVolumeOutOfRange;
    }
    return kMsgNotNumber;
}

Checked checkPrice(std::string_view text) {
    const auto v = parse(text);
    if (!v) return {Check::NotNumber, 0};
    return {isPriceInRange(*v) ? Check::Ok : Check::OutOfRange, *v};
}

Checked checkVolume(std::string_view text) {
    const auto v = parse(text);
    if (!v) return {Check::NotNumber, 0};
    return {isVolumeInRange(*v) ? Check::Ok : Check::OutOfRange, *v};
}

std::string format(double v, int decimals) {
    if (!std::isfinite(v)) return "-";
    const int places = decimals < 0 ? 4 : (decimals > 17 ? 17 : decimals);
    // The largest double has 309 integer digits: room for it, a sign, a point and 17 places.
    char buf[400];
    const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, places);
    std::string s(buf, r.ec == std::errc() ? r.ptr : buf);
    if (decimals < 0 && s.find('.') != std::string::npos) {
        while (s.back() == '0') s.pop_back();
        if (s.back() == '.') s.pop_back();
    }
    // A negative value that shows as all zeros is shown without its sign.
    if (!s.empty() && s.front() == '-' && s.find_first_not_of("-0.") == std::string::npos)
        s.erase(0, 1);
    return s;
}

}  // namespace number_text
