// The journal's file: finding a usable one at a path, or making one. Inside the journal
// library only; SqliteOrderJournal is the interface.
//
// A file is usable when it is this program's journal (application_id), of this schema version
// with exactly this schema, and SQLite's quick check passes; an empty or missing file becomes
// one. Anything else is renamed aside ("<file>.bad", "<file>.bad.2", ...) together with its
// companion files, and a new journal is made in its place. A file that is not usable is never
// written to before it is set aside.
#pragma once

#include <filesystem>
#include <string>

struct sqlite3;

namespace journal_file {

// The columns of `orders` after id, in the order the journal binds and reads them.
extern const char* const kOrderColumns;

// A connection (WAL, synchronous=NORMAL) to a usable journal at `path`, or nullptr. `message`
// says what was done to the file found there, or why there is no journal; it is empty when
// the file was usable as it was.
sqlite3* connect(const std::filesystem::path& path, std::string& message);

// For a journal found damaged while in use (`detail`, SQLite's words): sets the closed file
// aside and connects to a new one in its place, as connect() does.
sqlite3* replaceDamaged(const std::filesystem::path& path, const std::string& detail,
                        std::string& message);

}  // namespace journal_file
