// GBK <-> UTF-8 at file boundaries. Memory is UTF-8; Profile.ini, template files and CSV
// exports are GBK on disk, as the host writes them on a Chinese Windows: code page 936.
//
// One table (host/gbk_cp936_table.inc, taken from Windows' code page 936) serves both
// systems, so a file gives the same text on Linux and on Windows and a text gives the same
// bytes. Code page 936 is GBK plus "€" as the single byte 0x80, with every double-byte code
// GBK leaves undefined mapped into the Private Use Area, so whatever the host wrote reads
// back to the same bytes.
//
// Conversion never fails hard, and each thing that cannot be converted gives one mark:
//  - decoding: a byte that starts no valid code (0xFF, a lead byte without a trail byte) and
//    a GB18030 four-byte sequence (which code page 936 does not have) each become U+FFFD;
//  - encoding: a character code page 936 cannot represent (an emoji, "ß") and each
//    malformed UTF-8 sequence become one "?". There is no best fit.
#pragma once

#include <string>
#include <string_view>

namespace gbk {

std::string toUtf8(std::string_view gbkBytes);
std::string fromUtf8(std::string_view utf8);

}  // namespace gbk
