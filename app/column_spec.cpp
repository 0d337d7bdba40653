#include "app/column_spec.h"

#include "app/profile_ini.h"

namespace {

std::string_view trimBlanks(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

}  // namespace

std::vector<ColumnSpec> parseColumnSpec(std::string_view spec) {
    std::vector<ColumnSpec> columns;
    while (!spec.empty()) {
        const std::size_t semi = spec.find(';');
        const std::string_view entry = trimBlanks(spec.substr(0, semi));
        spec = semi == std::string_view::npos ? std::string_view{} : spec.substr(semi + 1);
        if (entry.empty()) continue;

        ColumnSpec column;
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

std::string formatColumnSpec(const std::vector<ColumnSpec>& columns) {
    std::string out;
    for (const auto& c : columns) {
        for (char ch : c.title) out += ch == ';' ? ' ' : ch;
        out += ',';
        out += std::to_string(c.width);
        out += ';';
    }
    return out;
}
