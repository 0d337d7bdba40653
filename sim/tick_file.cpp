#include "sim/tick_file.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "host/utf8_path.h"

namespace sim {
namespace {

constexpr std::size_t kFields = 18;

void noteError(TickParseReport& report, std::size_t lineNo, const char* reason) {
    ++report.skipped;
    if (report.firstErrors.size() < TickParseReport::kMaxErrors)
        report.firstErrors.push_back("line " + std::to_string(lineNo) + ": " + reason);
}

bool parseInt(std::string_view s, std::int32_t& v) {
    if (s.empty()) return false;
    auto r = std::from_chars(s.data(), s.data() + s.size(), v);
    return r.ec == std::errc() && r.ptr == s.data() + s.size();
}

bool parseDouble(std::string_view s, double& v) {
    // Trim surrounding blanks (and a stray '\r').
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
        s.remove_suffix(1);
    if (s.empty()) return false;
    auto r = std::from_chars(s.data(), s.data() + s.size(), v, std::chars_format::general);
    return r.ec == std::errc() && r.ptr == s.data() + s.size() && v == v;  // not NaN
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// HH:MM:SS or HH:MM:SS.mmm (fewer fraction digits allowed). nullptr when good, else why not.
const char* parseTime(std::string_view s, std::int32_t& ms) {
    if (s.size() < 8 || s[2] != ':' || s[5] != ':') return "bad time";
    for (int i : {0, 1, 3, 4, 6, 7})
        if (!isDigit(s[i])) return "bad time";
    int frac = 0;
    if (s.size() > 8) {
        if (s[8] != '.' || s.size() > 12 || s.size() == 9) return "bad time";
        int scale = 100;
        for (std::size_t i = 9; i < s.size(); ++i) {
            if (!isDigit(s[i])) return "bad time";
            frac += (s[i] - '0') * scale;
            scale /= 10;
        }
    }
    int h = (s[0] - '0') * 10 + (s[1] - '0');
    int m = (s[3] - '0') * 10 + (s[4] - '0');
    int sec = (s[6] - '0') * 10 + (s[7] - '0');
    if (h > 23 || m > 59 || sec > 59) return "no such time";
    ms = ((h * 60 + m) * 60 + sec) * 1000 + frac;
    return nullptr;
}

// YYYYMMDD, a real day of the calendar. nullptr when good, else why not.
const char* parseDate(std::string_view s, std::int32_t& date) {
    if (s.size() != 8) return "bad date";
    for (char c : s)
        if (!isDigit(c)) return "bad date";
    if (!parseInt(s, date)) return "bad date";
    const int y = date / 10000, m = date / 100 % 100, d = date % 100;
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (y < 1990 || y > 2100 || m < 1 || m > 12 || d < 1) return "no such date";
    const bool leap = (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
    if (d > kDays[m - 1] + (m == 2 && leap ? 1 : 0)) return "no such date";
    return nullptr;
}

}  // namespace

void parseTickText(std::string_view text, std::vector<TickRecord>& out,
                   TickParseReport& report) {
    std::size_t pos = 0;
    std::size_t lineNo = 0;
    bool first = true;
    std::string_view fields[kFields + 1];
    while (pos < text.size()) {
        std::size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        pos = end + 1;
        ++lineNo;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (first) {
            first = false;
            // A UTF-8 byte-order mark before the header is tolerated.
            if (line.substr(0, 3) == "\xEF\xBB\xBF") line.remove_prefix(3);
            if (line.substr(0, 4) == "date") continue;
        }
        if (line.find_first_not_of(" \t") == std::string_view::npos) continue;
        ++report.linesRead;

        std::size_t n = 0;
        std::size_t start = 0;
        while (n <= kFields) {
            std::size_t comma = line.find(',', start);
            fields[n++] = line.substr(start, comma == std::string_view::npos
                                                 ? std::string_view::npos
                                                 : comma - start);
            if (comma == std::string_view::npos) break;
            start = comma + 1;
        }
        if (n != kFields) {
            noteError(report, lineNo, n > kFields ? "too many fields" : "too few fields");
            continue;
        }
        TickRecord t;
        if (const char* why = parseDate(fields[0], t.date)) {
            noteError(report, lineNo, why);
            continue;
        }
        if (const char* why = parseTime(fields[1], t.timeMs)) {
            noteError(report, lineNo, why);
            continue;
        }
        double* dst[kFields - 2] = {&t.last,      &t.bid,        &t.bidVol,    &t.ask,
                                    &t.askVol,    &t.volume,     &t.turnover,  &t.openInterest,
                                    &t.open,      &t.high,       &t.low,       &t.upperLimit,
                                    &t.lowerLimit, &t.preClose,  &t.preSettle, &t.settle};
        const char* bad = nullptr;
        for (std::size_t i = 0; i < kFields - 2 && !bad; ++i) {
            if (!parseDouble(fields[i + 2], *dst[i])) bad = "field is not a number";
            else if (*dst[i] < 0) bad = "negative value";
            else if (*dst[i] > 1e15) bad = "value out of range";
        }
        if (bad) {
            noteError(report, lineNo, bad);
            continue;
        }
        if (t.bid > 0 && t.ask > 0 && t.bid > t.ask) {
            noteError(report, lineNo, "crossed book (bid above ask)");
            continue;
        }
        out.push_back(t);
        ++report.ticks;
    }
}

bool parseTickFile(const std::string& path, std::vector<TickRecord>& out,
                   TickParseReport& report) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        report.opened = false;
        report.error = "cannot open " + path;
        return false;
    }
    std::error_code ec;
    auto size = std::filesystem::file_size(path, ec);
    std::string buf;
    if (!ec) {
        buf.resize(static_cast<std::size_t>(size));
        in.read(buf.data(), static_cast<std::streamsize>(buf.size()));
        buf.resize(static_cast<std::size_t>(in.gcount()));
    } else {
        buf.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    report.opened = true;
    out.reserve(out.size() + buf.size() / 100);
    parseTickText(buf, out, report);
    return true;
}

std::string skippedSummary(const TickParseReport& report) {
    if (report.skipped == 0) return {};
    constexpr std::size_t kShown = 3;
    std::string out = std::to_string(report.skipped) +
                      (report.skipped == 1 ? " line skipped (" : " lines skipped (");
    for (std::size_t i = 0; i < report.firstErrors.size() && i < kShown; ++i) {
        if (i > 0) out += "; ";
        out += report.firstErrors[i];
    }
    if (report.skipped > std::min(kShown, report.firstErrors.size())) out += "; …";
    out += ")";
    return out;
}

std::string symbolCodeFromTickPath(const std::string& path) {
    std::string name = pathUtf8(utf8Path(path).filename());
    std::size_t cut = name.find('_');
    if (cut == std::string::npos) cut = name.find('.');
    return name.substr(0, cut);
}

}  // namespace sim
