// The batch trader's two files in the user directory, GBK CSV that traders also edit by hand:
//
//   Multiple.csv   帐户,经纪商,倍数            one line per account: its multiple of the base
//                                              volume (a number >= 0, fractions allowed)
//   CustomVol.csv  方案,帐户,经纪商,数量       named volume sets: one line per set and
//                                              account, the lots that account trades
//
// Reading is forgiving, because the files are edited by hand: a UTF-8 or GBK file, with or
// without a byte-order mark, CRLF or LF, fields in double quotes (with "" inside), blanks
// around fields, an optional heading line, blank lines, and a missing broker (any broker of
// that account then matches). A line that cannot be understood is kept verbatim and named in
// the load message (how many, the first one's number and why); the rest loads.
//
// Writing never leaves a file with less than it held: lines that were not understood are
// written back after the rows, a file that exists but could not be read is never written, and
// the write goes through a temporary and a rename under the file's lock.
//
// Values; safe from any thread.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "app/file_replace.h"

namespace batch_csv {

struct MultipleRow {
    std::string account;
    std::string broker;  // empty: any broker
    double multiple = 1;
    friend bool operator==(const MultipleRow&, const MultipleRow&) = default;
};

struct CustomVolRow {
    std::string set;
    std::string account;
    std::string broker;
    double volume = 0;
    friend bool operator==(const CustomVolRow&, const CustomVolRow&) = default;
};

template <class Row>
struct Table {
    std::vector<Row> rows;
    std::vector<std::string> kept;  // lines not understood, verbatim (UTF-8)
    bool readable = true;           // false: the file exists and could not be read
    int skipped = 0;
    int firstSkippedLine = 0;  // 1-based
    std::string firstReason;
};
using MultipleTable = Table<MultipleRow>;
using CustomVolTable = Table<CustomVolRow>;

// Splits one CSV line into fields; false when a quote is not closed.
bool splitLine(std::string_view line, std::vector<std::string>& fields);

// Parses file bytes (GBK or UTF-8, BOM or not).
MultipleTable parseMultiple(std::string_view bytes);
CustomVolTable parseCustomVol(std::string_view bytes);
// The UTF-8 text a table is written as (the caller encodes it to GBK).
std::string formatMultiple(const MultipleTable& table);
std::string formatCustomVol(const CustomVolTable& table);

MultipleTable loadMultiple(const std::filesystem::path& path);
CustomVolTable loadCustomVol(const std::filesystem::path& path);
// Refused (with a reason) for a table loaded from an unreadable file.
FileWriteResult saveMultiple(const std::filesystem::path& path, const MultipleTable& table);
FileWriteResult saveCustomVol(const std::filesystem::path& path, const CustomVolTable& table);

// The message a load deserves ("" when everything loaded).
template <class Row>
std::string loadMessage(const std::string& fileName, const Table<Row>& table);

}  // namespace batch_csv
