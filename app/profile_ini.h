// CProfileIni: one INI file (Profile.ini and the tools' other setting files) read and written
// the way the Windows private-profile functions do it, so files users carry over from the
// platform behave exactly as they always have.
//
// Reading rules:
// - A line whose first non-blank character is '[' starts a section; its name is the text up
//   to the first ']' (or the end of the line), blanks trimmed. ';' and '#' start a comment
//   line. A line with '=' is a key line: key before the first '=', value after it, blanks
//   trimmed from both and one pair of matching surrounding quotes (" or ') stripped from the
//   value. Any other line is kept but means nothing.
// - Section and key names match case-insensitively with ASCII folding; other bytes compare
//   exactly. The first matching section is the only one consulted and its first matching key
//   wins, so duplicates further down are inert.
// - Integer reads take the leading signed decimal integer ("2.5" is 2, "12abc" 12, "abc" 0);
//   an absent key or an empty value gives the default; out-of-range values saturate.
// - String reads take a buffer size like the Windows call: at most size - 1 bytes come back,
//   cut on a UTF-8 character boundary.
//
// Writing rules:
// - A key that exists gets its value replaced in place: the key's own spelling, the blanks
//   around '=' and every other line (comments, blank lines, unknown lines, even undecodable
//   bytes) stay exactly as they were. A new key goes after the last key line of its section
//   (before the blank lines and comments that trail it); a new section goes at the end.
// - CR, LF and NUL in a written section, key or value become a blank, so a value can never
//   start a new line or section. A key that is empty, contains '=' or starts with '[', ';'
//   or '#', and a section name that is empty or contains ']', are refused (the write returns
//   false and nothing changes).
// - Line endings follow the file (CRLF when the file's first line ends in CRLF or the file is
//   new, LF otherwise).
//
// On disk the file is GBK; memory is UTF-8. Only lines a write touches are re-encoded, so
// bytes that cannot be decoded survive a save untouched.
//
// Ownership and threads: a plain value object owned by its user; no internal locking, use one
// instance from one thread at a time. Nothing here throws (allocation failure aside) and
// nothing is reported: like the platform's functions, failures fall back to defaults.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The buffer size the module reads its strings with ("read up to 260 bytes").
inline constexpr std::size_t kProfileStringSize = 260;

class CProfileIni {
public:
    enum class LoadResult {
        Loaded,      // the file was read
        Missing,     // no such file: empty, and a save creates it
        Unreadable,  // it exists but could not be read (a directory, no permission): empty,
                     // and save() refuses so the file is never overwritten with a stub
    };

    CProfileIni() = default;
    explicit CProfileIni(const std::filesystem::path& path) { load(path); }

    // Replaces the content with the file's. Never throws.
    LoadResult load(const std::filesystem::path& path);
    // Writes the content back to the file it was loaded from, creating missing parent
    // directories; the file is replaced through a temporary so a failed write leaves the old
    // one whole. False when nothing was written.
    bool save() const;
    bool saveAs(const std::filesystem::path& path) const;

    const std::filesystem::path& path() const { return m_path; }
    LoadResult loadResult() const { return m_loadResult; }

    // Reads. `size` is the buffer size of the Windows call: the result has at most size - 1
    // bytes. The default is subject to the same cut.
    std::string getString(std::string_view section, std::string_view key, std::string_view def = {},
                          std::size_t size = kProfileStringSize) const;
    std::int32_t getInt(std::string_view section, std::string_view key, std::int32_t def) const;
    bool hasKey(std::string_view section, std::string_view key) const;
    bool hasSection(std::string_view section) const;
    // Section names in file order, and the keys of a section (its first occurrence) in order.
    std::vector<std::string> sectionNames() const;
    std::vector<std::string> keys(std::string_view section) const;

    // Writes (in memory; save() puts them on disk). False when refused.
    bool writeString(std::string_view section, std::string_view key, std::string_view value);
    // Removes the key's line from the section; false when there was none.
    bool removeKey(std::string_view section, std::string_view key);
    // Removes the section's first occurrence with all its lines; false when there was none.
    bool removeSection(std::string_view section);

    // The file as it would be written (GBK bytes).
    std::string bytes() const;

private:
    enum class Kind { Other, Blank, Comment, Section, Key };
    struct Line {
        std::string raw;  // the line's bytes as on disk, without its line end
        std::string eol;  // "\r\n", "\n" or "" (last line without an end)
        Kind kind = Kind::Other;
        std::string name;   // section name or key, UTF-8, trimmed
        std::string value;  // key lines: the value, UTF-8, trimmed and unquoted
    };
    struct SectionRange {
        std::size_t header;  // index of the section line
        std::size_t end;     // one past its last line
    };

    static Line parseLine(std::string raw, std::string eol, bool firstLine);
    std::optional<SectionRange> findSection(std::string_view section) const;
    std::optional<std::size_t> findKey(const SectionRange& range, std::string_view key) const;
    const Line* findKeyLine(std::string_view section, std::string_view key) const;
    std::string newLineEnd() const;

    std::filesystem::path m_path;
    LoadResult m_loadResult = LoadResult::Missing;
    std::vector<Line> m_lines;
};

// The integer rule of profile reads, shared with other parsers of user-edited text: blanks
// skipped, an optional sign, then decimal digits up to the first other character. nullopt
// when no digit follows; values beyond the 32-bit range saturate.
std::optional<std::int32_t> parseLeadingInt(std::string_view text);

// Cuts UTF-8 text to at most `maxBytes` bytes without splitting a character.
std::string cutUtf8(std::string_view text, std::size_t maxBytes);

// One-shot calls in the shape of the Windows functions; each reads the file afresh. For
// several keys, load a CProfileIni once instead.
std::string profileGetString(const std::filesystem::path& path, std::string_view section,
                             std::string_view key, std::string_view def = {},
                             std::size_t size = kProfileStringSize);
std::int32_t profileGetInt(const std::filesystem::path& path, std::string_view section,
                           std::string_view key, std::int32_t def);
bool profileWriteString(const std::filesystem::path& path, std::string_view section,
                        std::string_view key, std::string_view value);
