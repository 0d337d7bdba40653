#include "host/gbk_codec.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>

#include <cerrno>
#endif

namespace gbk {

#ifdef _WIN32

namespace {
std::string convert(std::string_view in, UINT from, UINT to) {
    if (in.empty()) return {};
    int wlen = MultiByteToWideChar(from, 0, in.data(), (int)in.size(), nullptr, 0);
    std::wstring w(wlen, L'\0');
    MultiByteToWideChar(from, 0, in.data(), (int)in.size(), w.data(), wlen);
    int len = WideCharToMultiByte(to, 0, w.data(), wlen, nullptr, 0, nullptr, nullptr);
    std::string out(len, '\0');
    WideCharToMultiByte(to, 0, w.data(), wlen, out.data(), len, nullptr, nullptr);
    return out;
}
}  // namespace

std::string toUtf8(std::string_view gbkBytes) { return convert(gbkBytes, 936, CP_UTF8); }
std::string fromUtf8(std::string_view utf8) { return convert(utf8, CP_UTF8, 936); }

#else

namespace {

// Converts with iconv, replacing each undecodable input byte (or unencodable character)
// with `replacement` and carrying on.
std::string convert(std::string_view in, const char* to, const char* from,
                    std::string_view replacement, bool skipWholeUtf8Char) {
    std::string out;
    if (in.empty()) return out;
    iconv_t cd = iconv_open(to, from);
    if (cd == reinterpret_cast<iconv_t>(-1)) return std::string(in);
    out.reserve(in.size() * 3 / 2 + 4);
    char* src = const_cast<char*>(in.data());
    size_t srcLeft = in.size();
    char buf[1024];
    while (srcLeft > 0) {
        char* dst = buf;
        size_t dstLeft = sizeof buf;
        size_t r = iconv(cd, &src, &srcLeft, &dst, &dstLeft);
        out.append(buf, static_cast<size_t>(dst - buf));
        if (r != static_cast<size_t>(-1)) break;
        if (errno == E2BIG) continue;
        // EILSEQ or EINVAL (truncated sequence at the end): skip and mark.
        out.append(replacement);
        size_t skip = 1;
        if (skipWholeUtf8Char) {
            // One mark per bad character: drop its continuation bytes (10xxxxxx) with it.
            while (skip < srcLeft && (static_cast<unsigned char>(src[skip]) & 0xC0) == 0x80)
                ++skip;
        }
        src += skip;
        srcLeft -= skip;
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
    }
    iconv_close(cd);
    return out;
}

}  // namespace

std::string toUtf8(std::string_view gbkBytes) {
    return convert(gbkBytes, "UTF-8", "GB18030", "\xEF\xBF\xBD", false);
}

std::string fromUtf8(std::string_view utf8) {
    return convert(utf8, "GB18030", "UTF-8", "?", true);
}

#endif

}  // namespace gbk
