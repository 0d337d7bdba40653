// CProfileIni: one INI file (Profile.ini and the tools' other setting files) read and written
// the way the Windows private-profile functions do it, so files users carry over from the
// platform behave exactly as they always have.
//
// Reading rules:
// - Lines end at CR LF, LF or a lone CR.
// - A line whose first non-blank character is '[' and that has a ']' starts a section; its
//   name is the text between them, blanks trimmed. A '[' line without ']' starts no section:
//   it is read like any other line, and the lines after it stay in the section before it.
//   ';' and '#' start a comment line. A line with '=' is a key line: key before the first
//   '=' (it may be empty: "=value" is the key ""), value after it, blanks trimmed from both
//   and one pair of matching surrounding quotes (" or ') stripped from the value. Any other
//   line is kept but means nothing.
// - Section and key names match case-insensitively with ASCII folding; other bytes compare
//   exactly. The first matching section is the only one consulted and its first matching key
//   wins, so duplicates further down are inert.
// - Integer reads take the leading signed integer, decimal or hexadecimal after "0x" ("2.5"
//   is 2, "12abc" 12, "0x1F" 31, "abc" 0), wrapping modulo 2^32 ("4294967297" is 1);
//   an absent key or an empty value gives the default.
// - String reads take a buffer size like the Windows call: at most size - 1 bytes come back,
//   counted in GBK as on disk (100 Chinese characters fit in 260) and cut on a character
//   boundary; a NUL byte ends the text, as it ends the caller's C string. A default is
//   trimmed and unquoted like a value from the file, then cut alike.
//
// Writing rules:
// - A key that exists gets its value replaced in place: the key's own spelling, the blanks
//   around '=' and every other line (comments, blank lines, unknown lines, even undecodable
//   bytes) stay exactly as they were. A new key goes after the last key line of its section
//   (before the blank lines and comments that trail it); a new section goes at the end.
// - CR, LF and NUL in a written section, key or value become a blank, so a value can never
//   start a new line or section. A value that a read would change (blanks at either end, or
//   one pair of matching quotes around it) is written inside double quotes, so it reads back
//   exactly as written. A key that is empty, contains '=' or starts with '[', ';' or '#',
//   and a section name that is empty or contains ']', are refused (the write returns false
//   and nothing changes).
// - Line endings follow the file (the first line's ending; CRLF for a new file).
// - Writes change memory only. save() replays them, under the file's lock, on the file as it
//   is on disk at that moment (another process may have changed other keys since the load),
//   and replaces it whole (see file_replace.h), so no writer loses another's keys.
//
// On disk the file is GBK; memory is UTF-8. Only lines a write touches are re-encoded, so
// bytes that cannot be decoded survive a save untouched.
//
// Ownership and threads: a plain value object owned by its user; no internal locking, use one
// instance from one thread at a time (saves of several instances, threads or processes to one
// file are serialised by the file lock). Nothing here throws (allocation failure aside). Reads
// fall back to defaults like the platform's functions; a save tells whether it worked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/file_replace.h"

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
    // Applies the writes made since the load to the file as it is now and replaces it (under
    // its lock, through a temporary; see file_replace.h); afterwards this object holds what
    // was written. Missing parent directories are created. A read-only file, or one that
    // cannot be read, is left alone and the result says why.
    FileWriteResult save();
    // Writes this content, whole, to another file (under that file's lock). The loaded file
    // itself is saved as by save().
    FileWriteResult saveAs(const std::filesystem::path& path);

    const std::filesystem::path& path() const { return m_path; }
    LoadResult loadResult() const { return m_loadResult; }

    // Reads. `size` is the buffer size of the Windows call: the result has at most size - 1
    // GBK bytes. The default is trimmed, unquoted and cut the same way.
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
    bool applyWrite(const std::string& section, const std::string& key, const std::string& value);
    bool applyRemoveKey(std::string_view section, std::string_view key);
    bool applyRemoveSection(std::string_view section);
    void replayEdits(CProfileIni& onto) const;
    const Line* findKeyLine(std::string_view section, std::string_view key) const;
    std::string newLineEnd() const;

    std::filesystem::path m_path;
    LoadResult m_loadResult = LoadResult::Missing;
    std::vector<Line> m_lines;
    // The writes since the load, in order, for save() to replay on the file's current content.
    enum class EditKind { Write, RemoveKey, RemoveSection };
    struct Edit {
        EditKind kind;
        std::string section, key, value;
    };
    std::vector<Edit> m_edits;
};

// The integer rule of profile reads: blanks skipped, an optional sign, then "0x" and hex
// digits or decimal digits, up to the first other character; 0 when no digit follows; the
// value wraps modulo 2^32.
std::int32_t parseProfileInt(std::string_view text);

// A leading integer in other user-edited text: blanks skipped, an optional sign, then decimal
// digits up to the first other character. nullopt when no digit follows; values beyond the
// 32-bit range saturate.
std::optional<std::int32_t> parseLeadingInt(std::string_view text);

// Cuts UTF-8 text to at most `maxBytes` bytes without splitting a character.
std::string cutUtf8(std::string_view text, std::size_t maxBytes);
// Cuts UTF-8 text so that its GBK form has at most `maxBytes` bytes, on a character boundary.
std::string cutGbk(std::string_view text, std::size_t maxBytes);

// One-shot calls in the shape of the Windows functions; each reads the file afresh. For
// several keys, load a CProfileIni once instead.
std::string profileGetString(const std::filesystem::path& path, std::string_view section,
                             std::string_view key, std::string_view def = {},
                             std::size_t size = kProfileStringSize);
std::int32_t profileGetInt(const std::filesystem::path& path, std::string_view section,
                           std::string_view key, std::int32_t def);
// False when the write was refused or the file could not be saved.
bool profileWriteString(const std::filesystem::path& path, std::string_view section,
                        std::string_view key, std::string_view value);
