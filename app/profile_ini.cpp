#include "app/profile_ini.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <sstream>

#include "host/gbk_codec.h"

namespace fs = std::filesystem;

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

std::string_view trim(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

char foldAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

// ASCII-only folding: bytes of multi-byte UTF-8 characters are all >= 0x80 and compare exactly.
bool equalsFolded(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (foldAscii(a[i]) != foldAscii(b[i])) return false;
    return true;
}

bool isAscii(std::string_view s) {
    return std::all_of(s.begin(), s.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string decode(std::string_view gbkBytes) {
    return isAscii(gbkBytes) ? std::string(gbkBytes) : gbk::toUtf8(gbkBytes);
}

std::string encode(std::string_view utf8) {
    return isAscii(utf8) ? std::string(utf8) : gbk::fromUtf8(utf8);
}

std::string_view unquote(std::string_view v) {
    if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front())
        return v.substr(1, v.size() - 2);
    return v;
}

// A written name or value as it will read back from disk: text that is not valid UTF-8
// cannot be stored and comes back changed ('?'), so it is matched and stored changed alike.
std::string throughDisk(const std::string& utf8) {
    return isAscii(utf8) ? utf8 : gbk::toUtf8(gbk::fromUtf8(utf8));
}

// A line break or NUL inside a written name or value would let it end the line early and
// smuggle in a key or a section; a blank in its place keeps the text on one line.
std::string sanitise(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c == '\r' || c == '\n' || c == '\0') c = ' ';
    return out;
}

// The text to put after '=' so that a read gives back exactly `value`: quoted when a read
// would trim blanks from it or strip a pair of quotes off it.
std::string protectValue(const std::string& value) {
    if (trim(value) == value && unquote(value) == value) return value;
    return "\"" + value + "\"";
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

std::int32_t parseProfileInt(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && isBlank(text[i])) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    unsigned base = 10;
    if (i + 2 < text.size() && text[i] == '0' && (text[i + 1] == 'x' || text[i + 1] == 'X') &&
        hexDigit(text[i + 2]) >= 0) {
        base = 16;
        i += 2;
    }
    // Unsigned arithmetic wraps modulo 2^32, which is what the platform's reads do.
    std::uint32_t value = 0;
    for (; i < text.size(); ++i) {
        const int digit = hexDigit(text[i]);
        if (digit < 0 || static_cast<unsigned>(digit) >= base) break;
        value = value * base + static_cast<std::uint32_t>(digit);
    }
    if (negative) value = 0u - value;
    return static_cast<std::int32_t>(value);
}

std::optional<std::int32_t> parseLeadingInt(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && isBlank(text[i])) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    if (i >= text.size() || text[i] < '0' || text[i] > '9') return std::nullopt;
    // Accumulate in 64 bits and stop growing once past the 32-bit range, so any number of
    // digits saturates instead of overflowing.
    constexpr std::int64_t kLimit = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
    std::int64_t magnitude = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
        if (magnitude <= kLimit) magnitude = magnitude * 10 + (text[i] - '0');
    if (negative) return static_cast<std::int32_t>(-std::min(magnitude, kLimit));
    return static_cast<std::int32_t>(std::min(magnitude, kLimit - 1));
}

std::string cutUtf8(std::string_view text, std::size_t maxBytes) {
    if (text.size() <= maxBytes) return std::string(text);
    std::size_t n = maxBytes;
    while (n > 0 && (static_cast<unsigned char>(text[n]) & 0xC0) == 0x80) --n;
    return std::string(text.substr(0, n));
}

std::string cutGbk(std::string_view text, std::size_t maxBytes) {
    // GBK never takes more bytes than UTF-8 (1 for ASCII, 2 for what takes 2 or 3 in UTF-8,
    // 4 for what takes 4), so text that fits in UTF-8 fits.
    if (text.size() <= maxBytes) return std::string(text);
    const std::string gbkBytes = gbk::fromUtf8(text);
    if (gbkBytes.size() <= maxBytes) return std::string(text);
    // Walk whole characters: ASCII is one byte; a two-byte character has a lead byte from
    // 0x81; the four-byte form has a digit as its second byte.
    std::size_t n = 0;
    for (;;) {
        const auto lead = static_cast<unsigned char>(gbkBytes[n]);
        std::size_t width = 1;
        if (lead >= 0x81 && n + 1 < gbkBytes.size())
            width = (gbkBytes[n + 1] >= '0' && gbkBytes[n + 1] <= '9') ? 4 : 2;
        if (n + width > maxBytes) break;
        n += width;
    }
    return gbk::toUtf8(std::string_view(gbkBytes).substr(0, n));
}

// ---- Loading and saving --------------------------------------------------------------------

CProfileIni::Line CProfileIni::parseLine(std::string raw, std::string eol, bool firstLine) {
    Line line;
    line.raw = std::move(raw);
    line.eol = std::move(eol);
    std::string_view bytes = line.raw;
    // A byte-order mark some editors put in front is not part of the first line's text.
    if (firstLine && bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
    const std::string text = decode(bytes);
    const std::string_view t = trim(text);
    if (t.empty()) {
        line.kind = Kind::Blank;
    } else if (t.front() == '[' && t.find(']') != std::string_view::npos) {
        line.kind = Kind::Section;
        line.name = std::string(trim(t.substr(1, t.find(']') - 1)));
    } else if (t.front() == ';' || t.front() == '#') {
        line.kind = Kind::Comment;
    } else if (auto eq = t.find('='); eq != std::string_view::npos) {
        line.kind = Kind::Key;
        line.name = std::string(trim(t.substr(0, eq)));
        line.value = std::string(unquote(trim(t.substr(eq + 1))));
    }
    return line;
}

CProfileIni::LoadResult CProfileIni::load(const fs::path& path) {
    m_path = path;
    m_lines.clear();
    m_edits.clear();
    std::error_code ec;
    const auto status = fs::status(path, ec);
    if (!fs::exists(status)) return m_loadResult = LoadResult::Missing;
    if (!fs::is_regular_file(status)) return m_loadResult = LoadResult::Unreadable;

    std::string content;
    {
        std::ifstream in(path, std::ios::binary);
        if (!in) return m_loadResult = LoadResult::Unreadable;
        std::ostringstream buffer;
        buffer << in.rdbuf();
        if (in.bad()) return m_loadResult = LoadResult::Unreadable;
        content = std::move(buffer).str();
    }

    // CR LF, LF and a lone CR all end a line. Neither byte occurs inside a GBK character.
    std::size_t start = 0;
    while (start < content.size()) {
        const std::size_t end = std::min(content.find_first_of("\r\n", start), content.size());
        std::size_t next = end;
        if (end < content.size()) {
            const bool crlf = content.compare(end, 2, "\r\n") == 0;
            next += crlf ? 2 : 1;
        }
        m_lines.push_back(parseLine(content.substr(start, end - start),
                                    content.substr(end, next - end), m_lines.empty()));
        start = next;
    }
    return m_loadResult = LoadResult::Loaded;
}

std::string CProfileIni::bytes() const {
    std::string out;
    std::size_t total = 0;
    for (const auto& l : m_lines) total += l.raw.size() + l.eol.size();
    out.reserve(total);
    for (const auto& l : m_lines) {
        out += l.raw;
        out += l.eol;
    }
    return out;
}

void CProfileIni::replayEdits(CProfileIni& onto) const {
    for (const Edit& e : m_edits) {
        switch (e.kind) {
            case EditKind::Write:
                onto.applyWrite(e.section, e.key, e.value);
                break;
            case EditKind::RemoveKey:
                onto.applyRemoveKey(e.section, e.key);
                break;
            case EditKind::RemoveSection:
                onto.applyRemoveSection(e.section);
                break;
        }
    }
}

FileWriteResult CProfileIni::save() {
    std::vector<Line> merged;
    auto compose = [&](const fs::path& target) -> std::optional<std::string> {
        CProfileIni current;
        if (current.load(target) == LoadResult::Unreadable) return std::nullopt;
        replayEdits(current);
        std::string data = current.bytes();
        merged = std::move(current.m_lines);
        return data;
    };
    FileWriteResult result = replaceFileLocked(m_path, compose);
    if (result) {
        m_lines = std::move(merged);
        m_edits.clear();
        m_loadResult = LoadResult::Loaded;
    }
    return result;
}

FileWriteResult CProfileIni::saveAs(const fs::path& path) {
    if (path == m_path) return save();
    return replaceFileLocked(
        path, [&](const fs::path&) -> std::optional<std::string> { return bytes(); });
}

// ---- Lookup --------------------------------------------------------------------------------

std::optional<CProfileIni::SectionRange> CProfileIni::findSection(std::string_view section) const {
    section = trim(section);
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        if (m_lines[i].kind != Kind::Section || !equalsFolded(m_lines[i].name, section)) continue;
        std::size_t end = i + 1;
        while (end < m_lines.size() && m_lines[end].kind != Kind::Section) ++end;
        return SectionRange{i, end};
    }
    return std::nullopt;
}

std::optional<std::size_t> CProfileIni::findKey(const SectionRange& range,
                                                std::string_view key) const {
    key = trim(key);
    for (std::size_t i = range.header + 1; i < range.end; ++i)
        if (m_lines[i].kind == Kind::Key && equalsFolded(m_lines[i].name, key)) return i;
    return std::nullopt;
}

const CProfileIni::Line* CProfileIni::findKeyLine(std::string_view section,
                                                  std::string_view key) const {
    auto range = findSection(section);
    if (!range) return nullptr;
    auto index = findKey(*range, key);
    return index ? &m_lines[*index] : nullptr;
}

std::string CProfileIni::getString(std::string_view section, std::string_view key,
                                   std::string_view def, std::size_t size) const {
    const Line* line = findKeyLine(section, key);
    std::string_view text = line ? std::string_view(line->value) : unquote(trim(def));
    // The caller gets a C string: a NUL in the file ends it there.
    text = text.substr(0, text.find('\0'));
    return cutGbk(text, size == 0 ? 0 : size - 1);
}

std::int32_t CProfileIni::getInt(std::string_view section, std::string_view key,
                                 std::int32_t def) const {
    const Line* line = findKeyLine(section, key);
    if (!line || line->value.empty()) return def;
    return parseProfileInt(line->value);
}

bool CProfileIni::hasKey(std::string_view section, std::string_view key) const {
    return findKeyLine(section, key) != nullptr;
}

bool CProfileIni::hasSection(std::string_view section) const {
    return findSection(section).has_value();
}

std::vector<std::string> CProfileIni::sectionNames() const {
    std::vector<std::string> names;
    for (const auto& l : m_lines) {
        if (l.kind != Kind::Section) continue;
        bool seen = std::any_of(names.begin(), names.end(),
                                [&](const std::string& n) { return equalsFolded(n, l.name); });
        if (!seen) names.push_back(l.name);
    }
    return names;
}

std::vector<std::string> CProfileIni::keys(std::string_view section) const {
    std::vector<std::string> names;
    auto range = findSection(section);
    if (!range) return names;
    for (std::size_t i = range->header + 1; i < range->end; ++i) {
        const Line& l = m_lines[i];
        if (l.kind != Kind::Key) continue;
        bool seen = std::any_of(names.begin(), names.end(),
                                [&](const std::string& n) { return equalsFolded(n, l.name); });
        if (!seen) names.push_back(l.name);
    }
    return names;
}

// ---- Writing -------------------------------------------------------------------------------

std::string CProfileIni::newLineEnd() const {
    for (const auto& l : m_lines)
        if (!l.eol.empty()) return l.eol;
    return "\r\n";
}

bool CProfileIni::writeString(std::string_view section, std::string_view key,
                              std::string_view value) {
    const std::string sectionName(trim(throughDisk(sanitise(section))));
    const std::string keyName(trim(throughDisk(sanitise(key))));
    if (sectionName.empty() || sectionName.find(']') != std::string::npos) return false;
    if (keyName.empty() || keyName.find('=') != std::string::npos || keyName.front() == '[' ||
        keyName.front() == ';' || keyName.front() == '#')
        return false;
    const std::string text = protectValue(throughDisk(sanitise(value)));
    m_edits.push_back({EditKind::Write, sectionName, keyName, text});
    return applyWrite(sectionName, keyName, text);
}

// `text` is the value as it goes on the line, names are checked already.
bool CProfileIni::applyWrite(const std::string& sectionName, const std::string& keyName,
                             const std::string& text) {
    const std::string nl = newLineEnd();
    auto range = findSection(sectionName);
    if (range) {
        if (auto index = findKey(*range, keyName)) {
            // Keep the key's spelling and the blanks after '=' exactly as the user left them.
            // '=' never occurs inside a GBK character, so the first one in the raw bytes is
            // the one the key was split at.
            Line& line = m_lines[*index];
            std::size_t cut = line.raw.find('=') + 1;
            while (cut < line.raw.size() && (line.raw[cut] == ' ' || line.raw[cut] == '\t')) ++cut;
            line = parseLine(line.raw.substr(0, cut) + encode(text), line.eol, *index == 0);
            return true;
        }
        // After the last key line, so trailing blank lines and the comments that introduce
        // the next section stay where they are; a section without keys grows after its last
        // non-blank line.
        std::size_t at = range->header + 1;
        for (std::size_t i = range->header + 1; i < range->end; ++i)
            if (m_lines[i].kind == Kind::Key) at = i + 1;
        if (at == range->header + 1)
            for (std::size_t i = range->header + 1; i < range->end; ++i)
                if (m_lines[i].kind != Kind::Blank) at = i + 1;
        if (m_lines[at - 1].eol.empty()) m_lines[at - 1].eol = nl;
        m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(at),
                       parseLine(encode(keyName) + "=" + encode(text), nl, false));
        return true;
    }

    if (!m_lines.empty() && m_lines.back().eol.empty()) m_lines.back().eol = nl;
    m_lines.push_back(parseLine(encode("[" + sectionName + "]"), nl, m_lines.empty()));
    m_lines.push_back(parseLine(encode(keyName) + "=" + encode(text), nl, false));
    return true;
}

bool CProfileIni::removeKey(std::string_view section, std::string_view key) {
    m_edits.push_back({EditKind::RemoveKey, std::string(section), std::string(key), {}});
    return applyRemoveKey(section, key);
}

bool CProfileIni::applyRemoveKey(std::string_view section, std::string_view key) {
    auto range = findSection(section);
    if (!range) return false;
    auto index = findKey(*range, key);
    if (!index) return false;
    m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(*index));
    return true;
}

bool CProfileIni::removeSection(std::string_view section) {
    m_edits.push_back({EditKind::RemoveSection, std::string(section), {}, {}});
    return applyRemoveSection(section);
}

bool CProfileIni::applyRemoveSection(std::string_view section) {
    auto range = findSection(section);
    if (!range) return false;
    m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(range->header),
                  m_lines.begin() + static_cast<std::ptrdiff_t>(range->end));
    return true;
}

// ---- One-shot calls ------------------------------------------------------------------------

std::string profileGetString(const fs::path& path, std::string_view section, std::string_view key,
                             std::string_view def, std::size_t size) {
    return CProfileIni(path).getString(section, key, def, size);
}

std::int32_t profileGetInt(const fs::path& path, std::string_view section, std::string_view key,
                           std::int32_t def) {
    return CProfileIni(path).getInt(section, key, def);
}

bool profileWriteString(const fs::path& path, std::string_view section, std::string_view key,
                        std::string_view value) {
    CProfileIni ini(path);
    if (ini.loadResult() == CProfileIni::LoadResult::Unreadable) return false;
    return ini.writeString(section, key, value) && ini.save().ok;
}
