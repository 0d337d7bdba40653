// Column layouts of the module's report lists: one text of entries "title,width"
// separated by ";", the width in dialog pixels, e.g. "帐号,120;商品,80;数量,60", with or
// without a trailing ";".
//
// Parsing is forgiving because the texts may come from user-edited files:
// - empty entries (";;", a trailing ";", blanks only) are skipped;
// - the width follows the last comma, so a title may itself contain commas;
// - blanks around the title and the width are trimmed;
// - the width is its leading integer ("80px" is 80); an entry with no comma, no digits or a
//   width of 0 or less gets kDefaultColumnWidth, so the column stays visible;
// - an entry with an empty title (",40") is kept: a column without a heading is legitimate.
//
// Free functions on values; safe from any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct ColumnDef {
    std::string title;
    int width = 0;

    friend bool operator==(const ColumnDef&, const ColumnDef&) = default;
};

inline constexpr int kDefaultColumnWidth = 60;

std::vector<ColumnDef> parseColumnLayout(std::string_view layout);

// The inverse: every entry followed by ";". A ";" inside a title would split the column in
// two on the way back, so it is written as a blank.
std::string formatColumnLayout(const std::vector<ColumnDef>& columns);
