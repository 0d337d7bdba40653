#include "host/gbk_codec.h"

#include <array>
#include <cstdint>
#include <memory>

namespace gbk {

namespace {

#include "host/gbk_cp936_table.inc"

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kEuro = 0x20AC;

bool isLead(unsigned char b) { return b >= 0x81 && b <= 0xFE; }
bool isTrail(unsigned char b) { return b >= 0x40 && b <= 0xFE && b != 0x7F; }
bool isDigit(unsigned char b) { return b >= 0x30 && b <= 0x39; }

int column(unsigned char trail) { return trail - 0x40 - (trail > 0x7F ? 1 : 0); }

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Unicode (Basic Multilingual Plane) -> double-byte code, 0 when code page 936 has none.
// Built once from the decoding table; the table is one-to-one.
const std::array<std::uint16_t, 0x10000>& encodingTable() {
    static const auto table = [] {
        auto t = std::make_unique<std::array<std::uint16_t, 0x10000>>();
        t->fill(0);
        for (int lead = 0; lead < 126; ++lead)
            for (int col = 0; col < 190; ++col) {
                const int trail = 0x40 + col + (col >= 0x3F ? 1 : 0);
                const std::uint16_t u = kCp936[lead][col];
                if (u != 0) (*t)[u] = static_cast<std::uint16_t>(((0x81 + lead) << 8) | trail);
            }
        return t;
    }();
    return *table;
}

// Reads one UTF-8 character at s[i]; returns its length, or 0 for a malformed sequence
// (overlong, surrogate, above U+10FFFF, truncated).
std::size_t readUtf8(std::string_view s, std::size_t i, char32_t& c) {
    const auto b0 = static_cast<unsigned char>(s[i]);
    std::size_t len;
    char32_t min;
    if (b0 < 0x80) {
        c = b0;
        return 1;
    } else if ((b0 & 0xE0) == 0xC0) {
        len = 2, c = b0 & 0x1F, min = 0x80;
    } else if ((b0 & 0xF0) == 0xE0) {
        len = 3, c = b0 & 0x0F, min = 0x800;
    } else if ((b0 & 0xF8) == 0xF0) {
        len = 4, c = b0 & 0x07, min = 0x10000;
    } else {
        return 0;
    }
    if (i + len > s.size()) return 0;
    for (std::size_t k = 1; k < len; ++k) {
        const auto b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80) return 0;
        c = (c << 6) | (b & 0x3F);
    }
    if (c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return 0;
    return len;
}

}  // namespace

std::string toUtf8(std::string_view in) {
    std::string out;
    out.reserve(in.size() * 3 / 2);
    std::size_t i = 0;
    while (i < in.size()) {
        const auto b = static_cast<unsigned char>(in[i]);
        if (b < 0x80) {
            out += static_cast<char>(b);
            ++i;
        } else if (b == 0x80) {
            appendUtf8(out, kEuro);
            ++i;
        } else if (isLead(b) && i + 1 < in.size() &&
                   isTrail(static_cast<unsigned char>(in[i + 1]))) {
            appendUtf8(out, kCp936[b - 0x81][column(static_cast<unsigned char>(in[i + 1]))]);
            i += 2;
        } else if (isLead(b) && i + 3 < in.size() &&
                   isDigit(static_cast<unsigned char>(in[i + 1])) &&
                   isLead(static_cast<unsigned char>(in[i + 2])) &&
                   isDigit(static_cast<unsigned char>(in[i + 3]))) {
            appendUtf8(out, kReplacement);  // a GB18030 four-byte character: one mark
            i += 4;
        } else {
            appendUtf8(out, kReplacement);  // 0xFF, or a lead byte with no trail byte
            ++i;
        }
    }
    return out;
}

std::string fromUtf8(std::string_view in) {
    const auto& table = encodingTable();
    std::string out;
    out.reserve(in.size());
    std::size_t i = 0;
    while (i < in.size()) {
        char32_t c = 0;
        const std::size_t len = readUtf8(in, i, c);
        if (len == 0) {
            out += '?';
            // One mark per malformed sequence: its continuation bytes go with it.
            ++i;
            while (i < in.size() && (static_cast<unsigned char>(in[i]) & 0xC0) == 0x80) ++i;
            continue;
        }
        i += len;
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c == kEuro) {
            out += '\x80';
        } else if (c <= 0xFFFF && table[c] != 0) {
            out += static_cast<char>(table[c] >> 8);
            out += static_cast<char>(table[c] & 0xFF);
        } else {
            out += '?';
        }
    }
    return out;
}

}  // namespace gbk
