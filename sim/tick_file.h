// Recorded tick files: the CSV format of shared/data/ticks (see its README).
//
// One line per top-of-book snapshot, a header line first:
//   date,time,last,bid,bid_vol,ask,ask_vol,volume,turnover,open_interest,open,high,low,
//   upper_limit,lower_limit,pre_close,pre_settle,settle
// A price of 0 means absent. The parser is a plain function over a text buffer: no
// per-line allocation (fields are parsed in place with std::from_chars). A malformed line
// (wrong field count, a field that is not a number, an impossible date or time, a negative
// price or volume) is skipped and counted, never fatal; the first few reasons are kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// One parsed snapshot. Prices and volumes as in the file (0 = absent).
struct TickRecord {
    std::int32_t date = 0;    // YYYYMMDD
    std::int32_t timeMs = 0;  // milliseconds since local midnight (HH:MM:SS.mmm)
    double last = 0;
    double bid = 0;
    double bidVol = 0;
    double ask = 0;
    double askVol = 0;
    double volume = 0;
    double turnover = 0;
    double openInterest = 0;
    double open = 0;
    double high = 0;
    double low = 0;
    double upperLimit = 0;
    double lowerLimit = 0;
    double preClose = 0;
    double preSettle = 0;
    double settle = 0;
};

// What a parse saw. linesRead counts every non-empty line after the header;
// linesRead == ticks + skipped.
struct TickParseReport {
    bool opened = true;           // false: the file could not be read (error says why)
    std::string error;            // why a load failed (set when !opened, or by the loader)
    std::size_t linesRead = 0;
    std::size_t ticks = 0;
    std::size_t skipped = 0;
    std::vector<std::string> firstErrors;  // "line N: reason", at most kMaxErrors
    static constexpr std::size_t kMaxErrors = 10;
};

// Parses CSV text (the whole file's content). A first line starting with "date" is the
// header and is not counted. Appends the ticks to `out` in file order.
void parseTickText(std::string_view text, std::vector<TickRecord>& out,
                   TickParseReport& report);

// Reads and parses one file. Returns false (report.opened false) when it cannot be read.
bool parseTickFile(const std::string& path, std::vector<TickRecord>& out,
                   TickParseReport& report);

// "3 lines skipped (line 2: bad date; line 5: too few fields; …)": the count and the first
// three reasons, for a message to the user. Empty when nothing was skipped.
std::string skippedSummary(const TickParseReport& report);

// "IF2101" from ".../IF2101_20210104.csv": the file name up to the first '_' (or the
// extension). Empty when there is none.
std::string symbolCodeFromTickPath(const std::string& path);

}  // namespace sim
