#include "robots/order_tag.h"

#include <charconv>

namespace {

constexpr std::string_view kDollar = "$|";
constexpr std::string_view kBlader = "blader|";
constexpr std::size_t kMaxLegLength = 4;

bool isLower(char c) {
    return c >= 'a' && c <= 'z';
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Reads an unsigned 32-bit decimal at the front of `s` in its canonical spelling (no sign,
// no leading zero unless it is "0"), advancing `s` past it.
std::optional<std::uint32_t> takeNumber(std::string_view& s) {
    std::size_t n = 0;
    while (n < s.size() && isDigit(s[n])) ++n;
    if (n == 0 || (n > 1 && s[0] == '0')) return std::nullopt;
    std::uint32_t v = 0;
    const auto [end, ec] = std::from_chars(s.data(), s.data() + n, v);
    if (ec != std::errc() || end != s.data() + n) return std::nullopt;
    s.remove_prefix(n);
    return v;
}

bool takeText(std::string_view& s, std::string_view text) {
    if (!s.starts_with(text)) return false;
    s.remove_prefix(text.size());
    return true;
}

}  // namespace

std::string formatOrderTag(const OrderTag& tag) {
    std::string out;
    out.reserve(40);
    if (tag.prefix == TagPrefix::Dollar) out += kDollar;
    if (tag.prefix == TagPrefix::Blader) out += kBlader;
    out += "h|";
    out += std::to_string(tag.handle);
    out += '|';
    out += tag.leg;
    if (tag.tickSeparator) out += '|';
    out += std::to_string(tag.tick);
    return out;
}

std::optional<OrderTag> parseOrderTag(std::string_view s) {
    OrderTag tag;
    if (takeText(s, kDollar))
        tag.prefix = TagPrefix::Dollar;
    else if (takeText(s, kBlader))
        tag.prefix = TagPrefix::Blader;
    if (!takeText(s, "h|")) return std::nullopt;
    const auto handle = takeNumber(s);
    if (!handle || !takeText(s, "|")) return std::nullopt;
    tag.handle = *handle;
    std::size_t n = 0;
    while (n < s.size() && isLower(s[n])) ++n;
    if (n == 0 || n > kMaxLegLength) return std::nullopt;
    tag.leg.assign(s.substr(0, n));
    s.remove_prefix(n);
    tag.tickSeparator = takeText(s, "|");
    const auto tick = takeNumber(s);
    if (!tick || !s.empty()) return std::nullopt;
    tag.tick = *tick;
    return tag;
}

bool tagMatches(std::string_view remark, std::string_view stored) {
    return !stored.empty() && remark == stored;
}

std::string COrderTagSource::make(std::string_view leg, TagPrefix prefix, bool tickSeparator) {
    auto tick = static_cast<std::uint32_t>(m_clock->tickCount());
    // Modular comparison: the count wraps after about 49.7 days.
    if (m_lastTick && static_cast<std::int32_t>(tick - *m_lastTick) <= 0) tick = *m_lastTick + 1;
    m_lastTick = tick;
    return formatOrderTag({prefix, m_handle, std::string(leg), tick, tickSeparator});
}
