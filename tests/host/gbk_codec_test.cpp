#include <gtest/gtest.h>

#include "host/gbk_codec.h"

TEST(GbkCodec, RoundTripsChinese) {
    const std::string utf8 = "模拟账户一,舵手";
    const std::string bytes = gbk::fromUtf8(utf8);
    EXPECT_EQ(gbk::fromUtf8("中"), "\xD6\xD0");
    EXPECT_EQ(gbk::toUtf8(bytes), utf8);
    EXPECT_EQ(gbk::toUtf8("abc=1\r\n"), "abc=1\r\n");
}

TEST(GbkCodec, BadBytesNeverStopTheRest) {
    // A lone lead byte in the middle, and a truncated sequence at the end.
    const std::string bytes = std::string("a\xD6") + "\x01" + "b\xD6\xD0" + "\xD6";
    const std::string out = gbk::toUtf8(bytes);
    EXPECT_NE(out.find("b中"), std::string::npos);
    EXPECT_EQ(out.front(), 'a');
    // Invalid UTF-8 going out is replaced, not dropped silently with what follows.
    EXPECT_EQ(gbk::fromUtf8(std::string("x\xFFy")), "x?y");
}
