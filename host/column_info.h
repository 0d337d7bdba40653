// The column layout a user gave a report list — widths, order and sort — kept between
// sessions in one small file of the user directory, "ColumnInfo.ini", one section per list
// name:
//
//   [MultiConfirm]
//   Columns=帐户|商品信息|委托价格|委托数量
//   Widths=120,162,90,90
//   Order=0,2,1,3
//   Sort=2,1
//
// Columns names the headings the layout was saved for: when a list's headings change (a new
// version, another column set) the old layout no longer fits and is ignored. Widths are
// pixels by column; Order lists the columns from left to right; Sort is the sort column and
// 1 for ascending, 0 for descending (-1: unsorted). The file is GBK on disk like every file
// of the module (CProfileIni) and is loaded forgivingly: a missing, unreadable or hand-broken
// entry is dropped on its own and the rest still applies; nothing here throws.
//
// Free functions on values and files; no locking (one UI thread writes the file).
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct ColumnInfo {
    std::vector<std::string> titles;  // the headings, by column
    std::vector<int> widths;          // pixels by column; empty: keep the list's own
    std::vector<int> order;           // columns left to right; empty: as defined
    int sortColumn = -1;              // -1: unsorted
    bool ascending = true;

    friend bool operator==(const ColumnInfo&, const ColumnInfo&) = default;
};

inline constexpr const char* kColumnInfoFile = "ColumnInfo.ini";
// Widths outside this range are no layout a user made on purpose (a hidden or runaway column).
inline constexpr int kMinColumnWidth = 8;
inline constexpr int kMaxColumnWidth = 4000;

// The layout saved for `listName` whose headings are `titles`, with every entry that does not
// fit those columns dropped; nullopt when none is saved for these headings.
std::optional<ColumnInfo> loadColumnInfo(const std::filesystem::path& userDir,
                                         std::string_view listName,
                                         const std::vector<std::string>& titles);
// Writes the layout under `listName`, keeping every other list's entry. False when the
// name cannot be a section or the file cannot be written.
bool saveColumnInfo(const std::filesystem::path& userDir, std::string_view listName,
                    const ColumnInfo& info);
