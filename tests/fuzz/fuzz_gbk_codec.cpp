// The GBK codec at the file boundary: any bytes decode without a crash, and any UTF-8 text
// encodes; text that came from GBK goes back to the same GBK bytes when it decoded cleanly.
#include "host/gbk_codec.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::string utf8 = gbk::toUtf8(bytes);
    std::string back = gbk::fromUtf8(utf8);
    // U+FFFD marks a byte sequence that could not be decoded; anything else must round-trip.
    if (utf8.find("\xEF\xBF\xBD") == std::string::npos && bytes.find('\0') == std::string_view::npos &&
        back != bytes)
        std::abort();
    gbk::fromUtf8(bytes);  // the same bytes taken as (possibly invalid) UTF-8
    return 0;
}
