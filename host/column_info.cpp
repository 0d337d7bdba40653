#include "host/column_info.h"

#include <algorithm>

#include "app/profile_ini.h"

namespace {

constexpr std::size_t kValueSize = 4096;
constexpr char kTitleSeparator = '|';

std::string joinTitles(const std::vector<std::string>& titles) {
    std::string out;
    for (const auto& t : titles) {
        if (!out.empty()) out += kTitleSeparator;
        // A separator inside a title would shift the columns on the way back.
        for (char c : t) out += c == kTitleSeparator ? ' ' : c;
    }
    return out;
}

std::string joinInts(const std::vector<int>& values) {
    std::string out;
    for (int v : values) {
        if (!out.empty()) out += ',';
        out += std::to_string(v);
    }
    return out;
}

// Comma-separated integers; nullopt when an entry is not one.
std::optional<std::vector<int>> splitInts(std::string_view text) {
    std::vector<int> out;
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        const auto v = parseLeadingInt(text.substr(0, comma));
        if (!v) return std::nullopt;
        out.push_back(*v);
        text = comma == std::string_view::npos ? std::string_view{} : text.substr(comma + 1);
    }
    return out;
}

bool isPermutation(const std::vector<int>& order, std::size_t n) {
    if (order.size() != n) return false;
    std::vector<bool> seen(n, false);
    for (int c : order) {
        if (c < 0 || static_cast<std::size_t>(c) >= n || seen[static_cast<std::size_t>(c)])
            return false;
        seen[static_cast<std::size_t>(c)] = true;
    }
    return true;
}

}  // namespace

std::optional<ColumnInfo> loadColumnInfo(const std::filesystem::path& userDir,
                                         std::string_view listName,
                                         const std::vector<std::string>& titles) {
    const CProfileIni ini(userDir / kColumnInfoFile);
    if (titles.empty() || !ini.hasSection(listName)) return std::nullopt;
    if (ini.getString(listName, "Columns", {}, kValueSize) != joinTitles(titles))
        return std::nullopt;

    ColumnInfo info;
    info.titles = titles;
    const std::size_t n = titles.size();
    if (auto w = splitInts(ini.getString(listName, "Widths", {}, kValueSize));
        w && w->size() == n && std::all_of(w->begin(), w->end(), [](int v) {
            return v >= kMinColumnWidth && v <= kMaxColumnWidth;
        }))
        info.widths = std::move(*w);
    if (auto o = splitInts(ini.getString(listName, "Order", {}, kValueSize));
        o && isPermutation(*o, n))
        info.order = std::move(*o);
    if (auto s = splitInts(ini.getString(listName, "Sort", {}, kValueSize));
        s && s->size() == 2 && (*s)[0] >= 0 && static_cast<std::size_t>((*s)[0]) < n) {
        info.sortColumn = (*s)[0];
        info.ascending = (*s)[1] != 0;
    }
    return info;
}

bool saveColumnInfo(const std::filesystem::path& userDir, std::string_view listName,
                    const ColumnInfo& info) {
    CProfileIni ini(userDir / kColumnInfoFile);
    if (ini.loadResult() == CProfileIni::LoadResult::Unreadable) return false;
    const std::string sort =
        info.sortColumn >= 0 ? joinInts({info.sortColumn, info.ascending ? 1 : 0}) : "-1";
    return ini.writeString(listName, "Columns", joinTitles(info.titles)) &&
           ini.writeString(listName, "Widths", joinInts(info.widths)) &&
           ini.writeString(listName, "Order", joinInts(info.order)) &&
           ini.writeString(listName, "Sort", sort) && ini.save();
}
