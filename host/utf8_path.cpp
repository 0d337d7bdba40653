#include "host/utf8_path.h"

#ifdef _WIN32
#include <windows.h>
#endif

std::filesystem::path utf8Path(std::string_view utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string pathUtf8(const std::filesystem::path& p) {
    const std::u8string u8 = p.u8string();
    return std::string(u8.begin(), u8.end());
}

std::FILE* openFile(const std::filesystem::path& p, const char* mode) {
#ifdef _WIN32
    std::wstring wmode;
    for (const char* m = mode; *m; ++m) wmode += static_cast<wchar_t>(*m);
    return _wfopen(p.c_str(), wmode.c_str());
#else
    return std::fopen(p.c_str(), mode);
#endif
}

std::string hostTextToUtf8(std::string_view hostText) {
#ifdef _WIN32
    if (hostText.empty()) return {};
    const int n = static_cast<int>(hostText.size());
    const int wlen = MultiByteToWideChar(CP_ACP, 0, hostText.data(), n, nullptr, 0);
    std::wstring w(static_cast<std::size_t>(wlen), L'\0');
    MultiByteToWideChar(CP_ACP, 0, hostText.data(), n, w.data(), wlen);
    return pathUtf8(std::filesystem::path(w));
#else
    return std::string(hostText);
#endif
}
