// The codec gives the same bytes and the same text on Linux and on Windows: these tables run
// on both builds (the Windows one under Wine in CI).
#include <gtest/gtest.h>

#include <string>

#include "host/gbk_codec.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

struct Case {
    const char* name;
    std::string utf8;
    std::string gbk;
};

// Text that round-trips: what the module writes and reads back.
const Case kRoundTrip[] = {
    {"ascii", "abc=1\r\n", "abc=1\r\n"},
    {"chinese", "模拟账户一,舵手", "\xC4\xA3\xC4\xE2\xD5\xCB\xBB\xA7\xD2\xBB,\xB6\xE6\xCA\xD6"},
    {"euroIsTheSingleByte80", "€", "\x80"},
    {"middleDot", "·", "\xA1\xA4"},
    {"emDash", "—", "\xA1\xAA"},
    {"fullWidthComma", "，", "\xA3\xAC"},
    {"moduleTexts", "价差格[公式:1A-1B]", "\xBC\xDB\xB2\xEE\xB8\xF1[\xB9\xAB\xCA\xBD:1A-1B]"},
    {"privateUseArea", "\xEE\x80\x80", "\xAA\xA1"},  // U+E000: a user-defined code kept
};

TEST(GbkCodec, RoundTripsWhatTheHostWrites) {
    for (const auto& c : kRoundTrip) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(gbk::fromUtf8(c.utf8), c.gbk);
        EXPECT_EQ(gbk::toUtf8(c.gbk), c.utf8);
    }
}

// Bytes code page 936 cannot read: one U+FFFD each, and what follows is kept.
const Case kUndecodable[] = {
    {"byteFF", "a\xEF\xBF\xBD" "b", "a\xFF" "b"},
    {"leadBeforeAscii", "\xEF\xBF\xBD\x01" "b", "\xD6\x01" "b"},
    {"leadAtTheEnd", "中\xEF\xBF\xBD", "\xD6\xD0\xD6"},
    {"gb18030FourByteSequence", "x\xEF\xBF\xBDy", "x\x81\x30\x81\x30y"},
};

TEST(GbkCodec, MarksEachUnreadableCodeOnce) {
    for (const auto& c : kUndecodable) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(gbk::toUtf8(c.gbk), c.utf8);
    }
}

// Text code page 936 cannot hold: one "?" per character, no best fit ("ß" never becomes "b").
const Case kUnencodable[] = {
    {"emoji", "a😀b", "a?b"},
    {"latinLetter", "ß", "?"},
    {"malformedUtf8", "x\xFF" "y", "x?y"},
    {"truncatedUtf8", "x\xE4\xB8", "x?"},
    {"surrogateInUtf8", "\xED\xA0\x80", "?"},
};

TEST(GbkCodec, ReplacesEachUnrepresentableCharacterWithOneMark) {
    for (const auto& c : kUnencodable) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(gbk::fromUtf8(c.utf8), c.gbk);
    }
}

TEST(GbkCodec, EveryDoubleByteCodeRoundTrips) {
    int checked = 0;
    for (int lead = 0x81; lead <= 0xFE; ++lead)
        for (int trail = 0x40; trail <= 0xFE; ++trail) {
            if (trail == 0x7F) continue;
            const std::string bytes{static_cast<char>(lead), static_cast<char>(trail)};
            const std::string text = gbk::toUtf8(bytes);
            ASSERT_NE(text, "\xEF\xBF\xBD") << std::hex << lead << ' ' << trail;
            ASSERT_EQ(gbk::fromUtf8(text), bytes) << std::hex << lead << ' ' << trail;
            ++checked;
        }
    EXPECT_EQ(checked, 126 * 190);
}

#ifdef _WIN32
// The table is Windows' own code page 936, code by code.
TEST(GbkCodec, AgreesWithTheSystemCodePage936) {
    for (int lead = 0x81; lead <= 0xFE; ++lead)
        for (int trail = 0x40; trail <= 0xFE; ++trail) {
            if (trail == 0x7F) continue;
            const char in[2] = {static_cast<char>(lead), static_cast<char>(trail)};
            wchar_t w[2] = {};
            const int n = MultiByteToWideChar(936, MB_ERR_INVALID_CHARS, in, 2, w, 2);
            ASSERT_EQ(n, 1);
            char utf8[8] = {};
            const int len = WideCharToMultiByte(CP_UTF8, 0, w, 1, utf8, sizeof utf8, nullptr,
                                                nullptr);
            ASSERT_EQ(gbk::toUtf8(std::string(in, 2)), std::string(utf8, len))
                << std::hex << lead << ' ' << trail;
        }
}
#endif

}  // namespace
