// The tools' template files: each tool keeps its named parameter sets (templates) as an
// ordered list of records in a binary file of its own in the user directory. A file is the
// tool's magic (an archive string), an int32 count and that many records; every record
// starts with the template's name (see archive.h for the encoding).
//
// The store holds no state: every load reads the file afresh and every save rewrites it
// whole, so two windows of one tool always see the last writer's list.
//
// Loading never shows a message and never fails hard: a missing file, a folder of that name,
// an unreadable file or another magic give an empty list; a file cut short, or a count beyond
// what follows, gives the records read so far. The file is left as it is until the user
// saves. A magic compares without regard to letter case.
//
// Saving goes through a temporary file and a rename under the file's lock (file_replace.h),
// so a reader never sees a half-written list and a kill never loses the file.
//
// A record type R plugs in with two free functions found by argument-dependent lookup:
//   void writeTemplate(CArchiveWriter&, const R&);
//   void readTemplate(CArchiveReader&, R&);   // reads every field; the reader says if it failed
// and a member std::string strName (the template's name, UTF-8).
//
// Free functions and a small value class; no locking (the UI thread only).
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "app/file_replace.h"
#include "spread/archive.h"

// A tool's template file: its name in the user directory and its magic.
struct TemplateFile {
    const char* fileName;
    const char* magic;
};

namespace template_files {
inline constexpr TemplateFile kManualSpread{"ManualSpread.dat", "QXMS_1.2"};
inline constexpr TemplateFile kAutoSpread{"AutoSpread.dat", "QXSO_1.3"};
inline constexpr TemplateFile kSpreadVip{"SpreadVIP.dat", "QXSV_1.0"};
inline constexpr TemplateFile kSniper{"snipper.dat", "QXSPV_1.0"};
inline constexpr TemplateFile kGridsSpread{"GridsSpread.dat", "QXGS_1.1"};
// The interlinked grids share the grid spread's magic: files written with it must keep
// loading, so each tool tells the two apart only by reading with its own record layout.
inline constexpr TemplateFile kInterlinkGrids{"InterlinkGrids.dat", "QXGS_1.1"};
inline constexpr TemplateFile kSingleGrid{"singlegrid.dat", "QXSG_1.1"};
inline constexpr TemplateFile kScalper{"Scalper.dat", "QXST_1.0"};
inline constexpr TemplateFile kBlader{"blader.dat", "QXBT_1.0"};
inline constexpr TemplateFile kAmtOrder{"AMTOrder.dat", "QXAMT_1.0"};
inline constexpr TemplateFile kAlgoSet{"algoset.dat", "QXAT_1.0"};
inline constexpr TemplateFile kRiskCalc{"RiskCalc.dat", "QXRC_1.0"};
// Defined beside the others and written by no file; kept so the name stays reserved.
inline constexpr const char* kInterlinkGridsMagic = "QXIG_1.0";
}  // namespace template_files

// What a load found, for callers that care (the UI does not: a bad file is an empty list).
struct TemplateLoadInfo {
    bool magicMatched = false;
    bool complete = false;  // every counted record was read and nothing follows
    bool exact = false;     // complete, and a save of the list gives back the same bytes
};

namespace template_file_detail {
// Reads the magic and the count; false when the magic is not `magic` (any letter case).
// A negative count reads as none. `exact` says whether a save would write the same header.
bool readHeader(CArchiveReader& in, std::string_view magic, std::uint32_t& count, bool& exact);
void writeHeader(CArchiveWriter& out, std::string_view magic, std::size_t count);
// The file's bytes, or "" when it is missing, a folder or unreadable.
std::string readFileBytes(const std::filesystem::path& path);
FileWriteResult writeFileBytes(const std::filesystem::path& path, std::string bytes);
bool equalsNoCase(std::string_view a, std::string_view b);
}  // namespace template_file_detail

// The list a template file holds.
template <class R>
std::vector<R> parseTemplateFile(std::string_view bytes, std::string_view magic,
                                 TemplateLoadInfo* info = nullptr) {
    std::vector<R> list;
    CArchiveReader in(bytes);
    std::uint32_t count = 0;
    bool exactHeader = false;
    TemplateLoadInfo found;
    if (template_file_detail::readHeader(in, magic, count, exactHeader)) {
        found.magicMatched = true;
        // The count is not trusted for allocation: records are appended as they are read, and
        // a short file ends the loop at its first failed read.
        for (std::uint32_t i = 0; i < count; ++i) {
            R record{};
            readTemplate(in, record);
            if (!in.ok()) break;
            list.push_back(std::move(record));
        }
        found.complete = in.ok() && in.atEnd() && list.size() == count;
        found.exact = found.complete && exactHeader && in.exact();
    }
    if (info) *info = found;
    return list;
}

template <class R>
std::string composeTemplateFile(const std::vector<R>& list, std::string_view magic) {
    CArchiveWriter out;
    template_file_detail::writeHeader(out, magic, list.size());
    for (const R& record : list) writeTemplate(out, record);
    return out.take();
}

// Case-insensitive lookup of a template by name; -1 when there is none.
template <class R>
int findTemplate(const std::vector<R>& list, std::string_view name) {
    for (std::size_t i = 0; i < list.size(); ++i)
        if (template_file_detail::equalsNoCase(list[i].strName, name)) return static_cast<int>(i);
    return -1;
}

// One tool's template file in one user directory.
template <class R>
class CTemplateStore {
public:
    CTemplateStore(const std::filesystem::path& userDir, const TemplateFile& file)
        : m_path(userDir / file.fileName), m_magic(file.magic) {}

    const std::filesystem::path& path() const { return m_path; }
    std::string_view magic() const { return m_magic; }

    std::vector<R> load(TemplateLoadInfo* info = nullptr) const {
        return parseTemplateFile<R>(template_file_detail::readFileBytes(m_path), m_magic, info);
    }
    // Load into the caller's list, which is cleared first.
    void load(std::vector<R>& list) const { list = load(); }
    FileWriteResult save(const std::vector<R>& list) const {
        return template_file_detail::writeFileBytes(m_path, composeTemplateFile(list, m_magic));
    }

private:
    std::filesystem::path m_path;
    std::string m_magic;
};
