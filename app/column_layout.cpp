#include "app/column_layout.h"

#include "app/profile_ini.h"

namespace {

std::string_view trimBlanks(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

}  // namespace

std::vector<ColumnDef> parseColumnLayout(std::string_view layout) {
    std::vector<ColumnDef> columns;
    while (!layout.empty()) {
        const std::size_t semi = layout.find(';');
        const std::string_view entry = trimBlanks(layout.substr(0, semi));
        layout = semi == std::string_view::npos ? std::string_view{} : layout.substr(semi + 1);
        if (entry.empty()) continue;

        ColumnDef column;
        const std::size_t comma = entry.rfind(',');
        column.title = std::string(trimBlanks(entry.substr(0, comma)));
        int width = 0;
        if (comma != std::string_view::npos)
            width = parseLeadingInt(entry.substr(comma + 1)).value_or(0);
        column.width = width > 0 ? width : kDefaultColumnWidth;
        columns.push_back(std::move(column));
    }
    return columns;
}

std::string formatColumnLayout(const std::vector<ColumnDef>& columns) {
    std::string out;
    for (const auto& c : columns) {
        for (char ch : c.title) out += ch == ';' ? ' ' : ch;
        out += ',';
        out += std::to_string(c.width);
        out += ';';
    }
    return out;
}
