#include "journal/journal_file.h"

#include <sqlite3.h>

#include <system_error>

#include "journal/journal_strings.h"
#include "journal/sqlite_order_journal.h"
#include "journal/sqlite_util.h"

namespace journal_file {

const char* const kOrderColumns =
    "time_ms, tool, tool_window, tag, account, broker, exchange, symbol_text, code, "
    "account_state, price_type, direction, create_time, volume, price, trigger_price, "
    "avg_price, stop_loss, take_profit, open_close, hedge, remark, order_id, status, "
    "filled_volume, status_msg, update_time, result, reason";

namespace {

using namespace sqlite_util;

constexpr const char* kSchema = R"sql(
CREATE TABLE orders (
    id INTEGER PRIMARY KEY,
    time_ms INTEGER NOT NULL,
    tool TEXT NOT NULL,
    tool_window TEXT NOT NULL,
    tag TEXT NOT NULL,
    account TEXT NOT NULL,
    broker TEXT NOT NULL,
    exchange INTEGER NOT NULL,
    symbol_text TEXT NOT NULL,
    code TEXT NOT NULL,
    account_state TEXT NOT NULL,
    price_type INTEGER NOT NULL,
    direction INTEGER NOT NULL,
    create_time INTEGER NOT NULL,
    volume REAL,
    price REAL,
    trigger_price REAL,
    avg_price REAL,
    stop_loss REAL,
    take_profit REAL,
    open_close INTEGER NOT NULL,
    hedge INTEGER NOT NULL,
    remark TEXT NOT NULL,
    order_id TEXT NOT NULL,
    status INTEGER NOT NULL,
    filled_volume REAL,
    status_msg TEXT NOT NULL,
    update_time INTEGER NOT NULL,
    result INTEGER NOT NULL,
    reason TEXT NOT NULL
);
CREATE TABLE figures (
    entry INTEGER NOT NULL REFERENCES orders(id),
    seq INTEGER NOT NULL,
    name TEXT NOT NULL,
    value REAL,
    PRIMARY KEY (entry, seq)
) WITHOUT ROWID;
CREATE INDEX orders_by_time ON orders(time_ms);
CREATE INDEX orders_by_tool ON orders(tool, time_ms);
)sql";

// Every object of a database's schema, in one text, to compare schemas exactly.
int schemaText(sqlite3* db, std::string& out) {
    return queryText(db,
                     "SELECT group_concat(type || ' ' || name || ' ' || tbl_name || ' ' || "
                     "coalesce(sql, ''), char(10)) FROM (SELECT * FROM sqlite_master ORDER BY name)",
                     out);
}

// The schema text of a journal this program makes.
const std::string& expectedSchema() {
    static const std::string text = [] {
        std::string out;
        sqlite3* db = nullptr;
        if (sqlite3_open(":memory:", &db) == SQLITE_OK && exec(db, kSchema) == SQLITE_OK)
            schemaText(db, out);
        sqlite3_close(db);
        return out;
    }();
    return text;
}

enum class Verdict { Ok, CannotOpen, NotDatabase, Damaged, Foreign, Newer };

struct Attempt {
    Verdict verdict = Verdict::CannotOpen;
    std::string detail;  // SQLite's words, or the newer schema's version
    sqlite3* db = nullptr;
};

// What a failed read of the file says about it: the surroundings (no access, no space, a lock
// held too long) leave the file alone; any other failure means the file cannot serve.
Verdict verdictOf(int code) {
    switch (code & 0xff) {
        case SQLITE_NOTADB:
            return Verdict::NotDatabase;
        case SQLITE_CANTOPEN:
        case SQLITE_IOERR:
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
        case SQLITE_NOMEM:
        case SQLITE_PERM:
        case SQLITE_READONLY:
        case SQLITE_FULL:
        case SQLITE_AUTH:
        case SQLITE_NOLFS:
            return Verdict::CannotOpen;
        default:
            return Verdict::Damaged;
    }
}

// Opens the file and decides whether it is (or can become) this program's journal, changing
// nothing in a file that is not: a fresh or empty file gets the schema, nothing else is
// written.
Attempt tryOpen(const std::filesystem::path& path) {
    Attempt a;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    int rc = sqlite3_open_v2(path.string().c_str(), &a.db, flags, nullptr);
    if (rc != SQLITE_OK) {
        a.detail = a.db ? sqlite3_errmsg(a.db) : sqlite3_errstr(rc);
        return a;
    }
    sqlite3_extended_result_codes(a.db, 1);
    // A file handed to us may be crafted: no schema tricks, no functions from its schema.
    sqlite3_db_config(a.db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(a.db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_busy_timeout(a.db, 1000);

    auto fail = [&a](Verdict v, std::string detail) {
        a.verdict = v;
        a.detail = std::move(detail);
        return a;
    };
    std::int64_t appId = 0, version = 0, objects = 0;
    rc = queryInt(a.db, "PRAGMA application_id", appId);
    if (rc == SQLITE_OK) rc = queryInt(a.db, "PRAGMA user_version", version);
    if (rc == SQLITE_OK) rc = queryInt(a.db, "SELECT count(*) FROM sqlite_master", objects);
    if (rc != SQLITE_OK) return fail(verdictOf(rc), sqlite3_errmsg(a.db));

    if (appId == 0 && objects == 0) {
        // New (or an empty database): WAL is chosen before the first table is written.
        exec(a.db, "PRAGMA journal_mode=WAL");
        std::string schema = std::string("BEGIN;") + kSchema + "PRAGMA application_id=" +
                             std::to_string(SqliteOrderJournal::kApplicationId) +
                             ";PRAGMA user_version=" +
                             std::to_string(SqliteOrderJournal::kSchemaVersion) + ";COMMIT;";
        if ((rc = exec(a.db, schema.c_str())) != SQLITE_OK) {
            std::string why = sqlite3_errmsg(a.db);
            exec(a.db, "ROLLBACK");
            return fail(verdictOf(rc), why);
        }
    } else if (appId != SqliteOrderJournal::kApplicationId) {
        return fail(Verdict::Foreign, {});
    } else if (version > SqliteOrderJournal::kSchemaVersion) {
        return fail(Verdict::Newer, std::to_string(version));
    } else if (version < 1) {
        return fail(Verdict::Damaged, "user_version " + std::to_string(version));
    } else if (std::string have; schemaText(a.db, have) != SQLITE_OK || have != expectedSchema()) {
        return fail(Verdict::Damaged, journal_text::kSchemaMismatch);
    }

    // The whole check, indexes against their tables included: an index that lost a row would
    // otherwise hide entries from the viewer and make later writes fail.
    std::string check;
    rc = queryText(a.db, "PRAGMA integrity_check(1)", check);
    if (rc != SQLITE_OK) return fail(verdictOf(rc), sqlite3_errmsg(a.db));
    if (check != "ok") return fail(Verdict::Damaged, check);
    a.verdict = Verdict::Ok;
    return a;
}

// Renames `path` (and SQLite's companion files) to the first free "<path>.bad[.n]". The
// companions go along so a stale log is never replayed into the new journal.
std::filesystem::path moveAside(const std::filesystem::path& path, std::error_code& ec) {
    namespace fs = std::filesystem;
    fs::path target;
    for (int n = 1; n < 1000; ++n) {
        target = path;
        target += n == 1 ? ".bad" : ".bad." + std::to_string(n);
        if (!fs::exists(target, ec) && !ec) break;
    }
    fs::rename(path, target, ec);
    if (ec) return {};
    for (const char* suffix : {"-wal", "-shm", "-journal"}) {
        fs::path from = path, to = target;
        from += suffix;
        to += suffix;
        std::error_code ignored;
        if (!fs::exists(from, ignored)) continue;
        fs::rename(from, to, ignored);
        if (ignored) fs::remove(from, ignored);
    }
    return target;
}

std::string movedMessage(Verdict v, const std::string& file, const std::string& detail,
                         const std::string& moved) {
    using namespace journal_text;
    switch (v) {
        case Verdict::NotDatabase:
            return fill(kMsgNotDatabase, {file, moved});
        case Verdict::Damaged:
            return fill(kMsgDamaged, {file, detail, moved});
        case Verdict::Foreign:
            return fill(kMsgForeign, {file, moved});
        default:
            return fill(kMsgNewer, {file, detail, moved});
    }
}

// Tries the file as it is and, when it cannot serve, once more on a new file in its place.
sqlite3* connectFrom(const std::filesystem::path& path, std::string& message, int attempt) {
    std::error_code ec;
    for (; attempt < 2; ++attempt) {
        Attempt a = tryOpen(path);
        if (a.verdict == Verdict::Ok) {
            // Only now is the file known to be ours to change.
            exec(a.db, "PRAGMA journal_mode=WAL");
            exec(a.db, "PRAGMA synchronous=NORMAL");
            return a.db;
        }
        sqlite3_close_v2(a.db);
        if (a.verdict == Verdict::CannotOpen || attempt == 1) {
            message = journal_text::fill(journal_text::kMsgCannotOpen,
                                         {path.string(), a.detail.empty() ? "?" : a.detail});
            return nullptr;
        }
        const std::filesystem::path moved = moveAside(path, ec);
        if (moved.empty()) {
            message = journal_text::fill(journal_text::kMsgCannotMove, {path.string(), ec.message()});
            return nullptr;
        }
        message = movedMessage(a.verdict, path.string(), a.detail, moved.string());
    }
    return nullptr;
}

}  // namespace

sqlite3* connect(const std::filesystem::path& path, std::string& message) {
    message.clear();
    std::error_code ec;
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), ec);
    return connectFrom(path, message, 0);
}

sqlite3* replaceDamaged(const std::filesystem::path& path, const std::string& detail,
                        std::string& message) {
    std::error_code ec;
    const std::filesystem::path moved = moveAside(path, ec);
    if (moved.empty()) {
        message = journal_text::fill(journal_text::kMsgCannotMove, {path.string(), ec.message()});
        return nullptr;
    }
    message = movedMessage(Verdict::Damaged, path.string(), detail, moved.string());
    return connectFrom(path, message, 1);
}

}  // namespace journal_file
