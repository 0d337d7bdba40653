#include "spread/template_store.h"

#include <fstream>
#include <system_error>

#include "host/gbk_codec.h"

namespace template_file_detail {

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        unsigned char x = static_cast<unsigned char>(a[i]);
        unsigned char y = static_cast<unsigned char>(b[i]);
        if (x >= 'A' && x <= 'Z') x = static_cast<unsigned char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z') y = static_cast<unsigned char>(y - 'A' + 'a');
        if (x != y) return false;
    }
    return true;
}

bool readHeader(CArchiveReader& in, std::string_view magic, std::uint32_t& count, bool& exact) {
    std::string found;
    count = 0;
    exact = false;
    // A magic that cannot be read counts as the empty one, which matches no tool.
    if (!in.readRawString(found)) found.clear();
    if (!equalsNoCase(found, magic)) return false;
    std::int32_t n = 0;
    if (!in.readI32(n)) return true;
    count = n < 0 ? 0 : static_cast<std::uint32_t>(n);
    // A save writes the tool's own spelling of the magic and the true count.
    exact = found == magic && n >= 0;
    return true;
}

void writeHeader(CArchiveWriter& out, std::string_view magic, std::size_t count) {
    out.writeRawString(magic);
    out.writeI32(static_cast<std::int32_t>(count));
}

std::string readFileBytes(const std::filesystem::path& path) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) return {};
    std::ifstream in(path, std::ios::binary);
    if (!in) return {};
    std::string bytes;
    char buffer[4096];
    while (in.read(buffer, sizeof buffer) || in.gcount() > 0)
        bytes.append(buffer, static_cast<std::size_t>(in.gcount()));
    return bytes;
}

FileWriteResult writeFileBytes(const std::filesystem::path& path, std::string bytes) {
    return replaceFileLocked(path, [&](const std::filesystem::path&) {
        return std::optional<std::string>(std::move(bytes));
    });
}

}  // namespace template_file_detail
