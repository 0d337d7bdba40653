// SqliteOrderJournal: the audit journal kept in one SQLite file (the user directory's
// journal.db for the desk, the output folder's journal.db for a replay).
//
// One row per order in table `orders` (time, tool, window, tag, the order's fields, the
// result and the reason) and its figures, in their order, in table `figures`: a child table
// rather than JSON text, so a figure comes back as the exact double that was recorded and can
// be queried by name. Indexes on time and on (tool, time) serve the viewer's newest-first
// pages.
//
// The file is written in WAL mode with synchronous=NORMAL: a commit appends to the log
// without waiting for the disk, so recording an order costs microseconds, readers (the viewer,
// a second desk) never wait for the writer, and the file stays consistent whatever happens;
// a power cut may lose the last commits, a crash of the program loses nothing. Where WAL is
// not available (a file system without shared memory) SQLite keeps its rollback journal,
// which is as safe, only slower.
//
// open() never leaves a broken journal behind: a file that is not SQLite, a damaged one, a
// database of another program or of a newer schema is renamed aside (journal.db.bad,
// journal.db.bad.2, ...) with a message that says so, and a new journal starts in its place
// (journal/journal_file.h). Damage that shows only when writing is handled the same way.
//
// Owned by whoever opened it (the composition root, a replay run); it outlives the manager's
// pointer to it. Thread-safe: record() may come from the UI thread, the trigger centre's step
// or the algo worker, queries from the viewer; one mutex serialises them, and each holds it
// for one short statement sequence (one insert transaction, or one page of at most
// kMaxPageSize rows read through an index).
#pragma once

#include <cstdint>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "app/order_journal.h"

struct sqlite3;
struct sqlite3_stmt;

// What the viewer asks for. Empty texts match everything.
struct JournalFilter {
    std::int64_t fromMs = std::numeric_limits<std::int64_t>::min();  // inclusive
    std::int64_t toMs = std::numeric_limits<std::int64_t>::max();    // exclusive
    std::string tool;     // exactly this tool
    std::string account;  // exactly this account (the order's first account key)
    std::string code;     // instruments starting with this, ignoring ASCII case ("IF" finds IF2101)
    std::string tagText;  // tags containing this
};

// Where a page ends: the next page holds the entries strictly older than this one.
struct JournalCursor {
    std::int64_t timeMs = std::numeric_limits<std::int64_t>::max();
    std::int64_t id = std::numeric_limits<std::int64_t>::max();
};

// One recorded entry and its row number (ascending in recording order).
struct JournalRecord {
    std::int64_t id = 0;
    JournalEntry entry;
};

class SqliteOrderJournal final : public IOrderJournal {
public:
    // The schema this program writes (PRAGMA user_version).
    static constexpr int kSchemaVersion = 1;
    // Marks the file as this program's journal (PRAGMA application_id).
    static constexpr std::int32_t kApplicationId = 0x484D4A4C;
    static constexpr int kMaxPageSize = 1000;

    // Opens the journal at `path`, creating it (and its folder) when missing. A file that
    // cannot serve as the journal is moved aside and a new one started; `error` (when given)
    // then receives the message for the user, and stays empty otherwise. nullptr, with the
    // reason in `error`, only when no journal can be written there at all.
    static std::unique_ptr<SqliteOrderJournal> open(const std::filesystem::path& path,
                                                    std::string* error);
    ~SqliteOrderJournal() override;
    SqliteOrderJournal(const SqliteOrderJournal&) = delete;
    SqliteOrderJournal& operator=(const SqliteOrderJournal&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    // "wal" or the rollback journal's mode ("delete", ...), as SQLite reports it.
    const std::string& journalMode() const { return m_journalMode; }

    // IOrderJournal. Never throws; a failed write is counted and its reason kept. A file found
    // damaged on writing is set aside and the entry goes into a new journal in its place.
    void record(const JournalEntry& entry) override;
    int failedWrites() const;
    // The last thing that went wrong, for the user ("" when nothing did).
    std::string lastError() const;

    // Newest first (by time, then by recording order), at most `limit` entries (capped at
    // kMaxPageSize) older than `after`. An error leaves the result empty and says why.
    std::vector<JournalRecord> query(const JournalFilter& filter, int limit,
                                     const JournalCursor& after = {},
                                     std::string* error = nullptr) const;
    // The tools that have recorded anything, in text order (for the viewer's tool filter).
    std::vector<std::string> tools() const;

private:
    SqliteOrderJournal(sqlite3* db, std::filesystem::path path);
    bool prepareWrites(std::string* error);
    int insert(const JournalEntry& entry);  // SQLite's code; SQLITE_DONE when written
    void closeAll();
    sqlite3_stmt* selectStatement(unsigned mask) const;
    void loadFigures(JournalRecord& rec) const;

    sqlite3* m_db;  // null once a damaged file could not be replaced
    std::filesystem::path m_path;
    std::string m_journalMode;
    mutable std::mutex m_mutex;
    sqlite3_stmt* m_begin = nullptr;
    sqlite3_stmt* m_commit = nullptr;
    sqlite3_stmt* m_rollback = nullptr;
    sqlite3_stmt* m_insertOrder = nullptr;
    sqlite3_stmt* m_insertFigure = nullptr;
    mutable sqlite3_stmt* m_selectFigures = nullptr;
    // Page queries, one prepared statement per combination of filters used.
    mutable std::map<unsigned, sqlite3_stmt*> m_selects;
    int m_failedWrites = 0;
    std::string m_lastError;
};
