#include "spread/archive.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string bytes(std::initializer_list<int> b) {
    std::string s;
    for (int c : b) s.push_back(static_cast<char>(c));
    return s;
}

// The prefix switches form at 255 and 0xFFFE; each length reads back whole.
TEST(ArchiveString, PrefixFormsAtTheBoundaries) {
    const struct {
        std::size_t length;
        std::string prefix;
    } cases[] = {
        {0, bytes({0x00})},
        {8, bytes({0x08})},
        {254, bytes({0xFE})},
        {255, bytes({0xFF, 0xFF, 0x00})},
        {0xFFFD, bytes({0xFF, 0xFD, 0xFF})},
        {0xFFFE, bytes({0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00})},
        {0x10000, bytes({0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x01, 0x00})},
    };
    for (const auto& c : cases) {
        const std::string text(c.length, 'x');
        CArchiveWriter out;
        out.writeString(text);
        ASSERT_EQ(out.bytes().size(), c.prefix.size() + c.length) << c.length;
        EXPECT_EQ(out.bytes().substr(0, c.prefix.size()), c.prefix) << c.length;

        CArchiveReader in(out.bytes());
        std::string back;
        ASSERT_TRUE(in.readString(back)) << c.length;
        EXPECT_EQ(back, text);
        EXPECT_TRUE(in.atEnd());
        EXPECT_TRUE(in.exact());
    }
}

TEST(ArchiveString, LongFormsOfShortStringsAreAccepted) {
    for (const std::string& file : {bytes({0xFF, 0x02, 0x00, 'a', 'b'}),
                                    bytes({0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x00, 0x00, 'a', 'b'})}) {
        CArchiveReader in(file);
        std::string s;
        ASSERT_TRUE(in.readString(s));
        EXPECT_EQ(s, "ab");
        EXPECT_FALSE(in.exact());  // a save would write the one-byte form
    }
}

TEST(ArchiveString, ChineseIsGbkOnDisk) {
    CArchiveWriter out;
    out.writeString("价差");
    EXPECT_EQ(out.bytes(), bytes({0x04, 0xBC, 0xDB, 0xB2, 0xEE}));
}

// A length past the end fails without reading or allocating it; every later read fails too.
TEST(ArchiveReader, LengthPastTheEndFails) {
    for (const std::string& file : {bytes({0x05, 'a'}), bytes({0xFF, 0x10}),
                                    bytes({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F})}) {
        CArchiveReader in(file);
        std::string s;
        EXPECT_FALSE(in.readString(s));
        std::int32_t n;
        EXPECT_FALSE(in.readI32(n));
        EXPECT_FALSE(in.ok());
    }
}

}  // namespace
