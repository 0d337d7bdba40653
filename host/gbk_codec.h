// GBK <-> UTF-8 at file boundaries. Memory is UTF-8; Profile.ini, template files and CSV
// exports are GBK on disk. Conversion never fails hard: a byte sequence that cannot be
// decoded becomes U+FFFD (or '?' when encoding), so a damaged file still loads.
#pragma once

#include <string>
#include <string_view>

namespace gbk {

std::string toUtf8(std::string_view gbkBytes);
std::string fromUtf8(std::string_view utf8);

}  // namespace gbk
