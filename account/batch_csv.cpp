#include "account/batch_csv.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <system_error>

#include "account/account_strings.h"
#include "host/gbk_codec.h"
#include "host/number_text.h"

namespace batch_csv {

namespace {

using namespace account_text;

std::string_view trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
    return s;
}

bool validUtf8(std::string_view s) {
    for (std::size_t i = 0; i < s.size();) {
        const auto c = static_cast<unsigned char>(s[i]);
        const std::size_t n = c < 0x80 ? 0 : (c >> 5) == 6 ? 1 : (c >> 4) == 14 ? 2 : (c >> 3) == 30 ? 3 : 9;
        if (n == 9 || i + n >= s.size() + (n == 0)) return false;
        for (std::size_t k = 1; k <= n; ++k)
            if ((static_cast<unsigned char>(s[i + k]) >> 6) != 2) return false;
        i += n + 1;
    }
    return true;
}

// File bytes as UTF-8 text: valid UTF-8 (after a byte-order mark, if any) is taken as it is,
// anything else is GBK.
std::string decode(std::string_view bytes) {
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
    if (validUtf8(bytes)) return std::string(bytes);
    return gbk::toUtf8(bytes);
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::string cur;
    for (char c : text) {
        if (c == '\n') {
            if (!cur.empty() && cur.back() == '\r') cur.pop_back();
            out.push_back(std::move(cur));
            cur.clear();
        } else {
            cur += c;
        }
    }
    if (!cur.empty()) {
        if (cur.back() == '\r') cur.pop_back();
        out.push_back(std::move(cur));
    }
    return out;
}

// A count read from a field: a finite number from 0 up to the volume range.
bool number(const std::string& field, double& out) {
    const auto v = number_text::parse(field);
    if (!v || *v < 0 || *v > number_text::kMaxVolume) return false;
    out = *v;
    return true;
}

std::string quoted(const std::string& field) {
    if (field.find_first_of(",\"\r\n") == std::string::npos && trim(field) == field) return field;
    std::string out = "\"";
    for (char c : field) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + "\"";
}

// The shortest text that reads back as the same number.
std::string numberText(double v) {
    char buf[64];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, r.ptr);
}

// Shared reading loop: `take` turns the fields of one line into a row or a reason.
template <class Row, class Take>
Table<Row> parse(std::string_view bytes, std::string_view heading, Take take) {
    Table<Row> t;
    const std::vector<std::string> all = lines(decode(bytes));
    std::vector<std::string> head;
    splitLine(heading, head);
    bool first = true;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const std::string& line = all[i];
        if (trim(line).empty()) continue;
        std::vector<std::string> fields;
        const char* reason = nullptr;
        Row row;
        if (!splitLine(line, fields)) {
            reason = kCsvBadQuote;
        } else if (first && fields[0] == head[0]) {
            first = false;
            continue;  // our heading line: it is written afresh
        }
        first = false;
        if (!reason) reason = take(fields, row);
        if (reason) {
            if (t.skipped++ == 0) {
                t.firstSkippedLine = static_cast<int>(i) + 1;
                t.firstReason = reason;
            }
            t.kept.push_back(line);
            continue;
        }
        t.rows.push_back(std::move(row));
    }
    return t;
}

std::optional<std::string> readFile(const std::filesystem::path& path, bool& readable) {
    readable = true;
    std::error_code ec;
    if (!std::filesystem::exists(path, ec)) return std::string();
    std::ifstream in(path, std::ios::binary);
    if (!in || std::filesystem::is_directory(path, ec)) {
        readable = false;
        return std::nullopt;
    }
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

FileWriteResult save(const std::filesystem::path& path, bool readable, const std::string& text) {
    if (!readable) return FileWriteResult::failure(path, file_write_text::kCannotRead);
    return replaceFileLocked(path, [&](const std::filesystem::path&) -> std::optional<std::string> {
        return gbk::fromUtf8(text);
    });
}

}  // namespace

bool splitLine(std::string_view line, std::vector<std::string>& fields) {
    fields.clear();
    std::string cur;
    bool inQuotes = false, wasQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (inQuotes) {
            if (c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
                cur += '"';
                ++i;
            } else if (c == '"') {
                inQuotes = false;
            } else {
                cur += c;
            }
        } else if (c == '"' && trim(cur).empty()) {
            cur.clear();
            inQuotes = wasQuoted = true;
        } else if (c == ',') {
            fields.push_back(wasQuoted ? cur : std::string(trim(cur)));
            cur.clear();
            wasQuoted = false;
        } else if (!(wasQuoted && (c == ' ' || c == '\t' || c == '\r'))) {
            cur += c;
        }
    }
    if (inQuotes) return false;
    fields.push_back(wasQuoted ? cur : std::string(trim(cur)));
    return true;
}

MultipleTable parseMultiple(std::string_view bytes) {
    return parse<MultipleRow>(bytes, kMultipleHeader,
                              [](const std::vector<std::string>& f, MultipleRow& r) -> const char* {
                                  if (f.size() != 3 && f.size() != 2) return kCsvBadFieldCount;
                                  r.account = f[0];
                                  if (r.account.empty()) return kCsvNoAccount;
                                  r.broker = f.size() == 3 ? f[1] : std::string();
                                  if (!number(f.back(), r.multiple)) return kCsvBadNumber;
                                  return nullptr;
                              });
}

CustomVolTable parseCustomVol(std::string_view bytes) {
    return parse<CustomVolRow>(bytes, kCustomVolHeader,
                               [](const std::vector<std::string>& f, CustomVolRow& r) -> const char* {
                                   if (f.size() != 4 && f.size() != 3) return kCsvBadFieldCount;
                                   r.set = f[0];
                                   r.account = f[1];
                                   if (r.account.empty()) return kCsvNoAccount;
                                   r.broker = f.size() == 4 ? f[2] : std::string();
                                   if (!number(f.back(), r.volume) ||
                                       std::fabs(r.volume - std::round(r.volume)) > 1e-9)
                                       return kCsvBadNumber;
                                   return nullptr;
                               });
}

std::string formatMultiple(const MultipleTable& t) {
    std::string out = std::string(kMultipleHeader) + "\r\n";
    for (const MultipleRow& r : t.rows)
        out += quoted(r.account) + "," + quoted(r.broker) + "," + numberText(r.multiple) + "\r\n";
    for (const std::string& line : t.kept) out += line + "\r\n";
    return out;
}

std::string formatCustomVol(const CustomVolTable& t) {
    std::string out = std::string(kCustomVolHeader) + "\r\n";
    for (const CustomVolRow& r : t.rows)
        out += quoted(r.set) + "," + quoted(r.account) + "," + quoted(r.broker) + "," +
               numberText(r.volume) + "\r\n";
    for (const std::string& line : t.kept) out += line + "\r\n";
    return out;
}

MultipleTable loadMultiple(const std::filesystem::path& path) {
    bool readable = true;
    const auto bytes = readFile(path, readable);
    MultipleTable t = parseMultiple(bytes ? *bytes : std::string());
    t.readable = readable;
    return t;
}

CustomVolTable loadCustomVol(const std::filesystem::path& path) {
    bool readable = true;
    const auto bytes = readFile(path, readable);
    CustomVolTable t = parseCustomVol(bytes ? *bytes : std::string());
    t.readable = readable;
    return t;
}

FileWriteResult saveMultiple(const std::filesystem::path& path, const MultipleTable& t) {
    return save(path, t.readable, formatMultiple(t));
}

FileWriteResult saveCustomVol(const std::filesystem::path& path, const CustomVolTable& t) {
    return save(path, t.readable, formatCustomVol(t));
}

template <class Row>
std::string loadMessage(const std::string& fileName, const Table<Row>& t) {
    char text[512];
    if (!t.readable) {
        std::snprintf(text, sizeof text, kMsgCsvUnreadable, fileName.c_str());
        return text;
    }
    if (t.skipped == 0) return {};
    std::snprintf(text, sizeof text, kMsgCsvSkipped, fileName.c_str(), t.skipped, t.firstSkippedLine,
                  t.firstReason.c_str());
    return text;
}

template std::string loadMessage(const std::string&, const Table<MultipleRow>&);
template std::string loadMessage(const std::string&, const Table<CustomVolRow>&);

}  // namespace batch_csv
