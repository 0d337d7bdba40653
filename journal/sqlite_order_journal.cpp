#include "journal/sqlite_order_journal.h"

#include <sqlite3.h>

#include <algorithm>
#include <system_error>

#include "journal/journal_strings.h"
#include "journal/sqlite_util.h"

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

// Columns of `orders` in the order the insert binds and the selects read them, after id.
constexpr const char* kOrderColumns =
    "time_ms, tool, tool_window, tag, account, broker, exchange, symbol_text, code, "
    "account_state, price_type, direction, create_time, volume, price, trigger_price, "
    "avg_price, stop_loss, take_profit, open_close, hedge, remark, order_id, status, "
    "filled_volume, status_msg, update_time, result, reason";
constexpr int kOrderColumnCount = 29;

enum class Verdict { Ok, CannotOpen, NotDatabase, Damaged, Foreign, Newer };

struct Attempt {
    Verdict verdict = Verdict::CannotOpen;
    std::string detail;  // SQLite's words, or the newer schema's version
    sqlite3* db = nullptr;
};

Verdict verdictOf(int code) {
    switch (code & 0xff) {
        case SQLITE_NOTADB:
            return Verdict::NotDatabase;
        case SQLITE_CORRUPT:
            return Verdict::Damaged;
        default:
            return Verdict::CannotOpen;
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
    }

    std::string check;
    rc = queryText(a.db, "PRAGMA quick_check", check);
    if (rc != SQLITE_OK) return fail(verdictOf(rc) == Verdict::CannotOpen ? Verdict::CannotOpen
                                                                         : Verdict::Damaged,
                                     sqlite3_errmsg(a.db));
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

}  // namespace

std::unique_ptr<SqliteOrderJournal> SqliteOrderJournal::open(const std::filesystem::path& path,
                                                             std::string* error) {
    std::string ignored;
    std::string& message = error ? *error : ignored;
    message.clear();
    std::error_code ec;
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), ec);

    // The file as it is; when it cannot serve, once more on a new file in its place.
    for (int attempt = 0; attempt < 2; ++attempt) {
        Attempt a = tryOpen(path);
        if (a.verdict == Verdict::Ok) {
            std::unique_ptr<SqliteOrderJournal> journal(new SqliteOrderJournal(a.db, path));
            a.db = nullptr;
            if (journal->prepareWrites(&a.detail)) {
                // Only now is the file known to be ours to change.
                exec(journal->m_db, "PRAGMA journal_mode=WAL");
                exec(journal->m_db, "PRAGMA synchronous=NORMAL");
                queryText(journal->m_db, "PRAGMA journal_mode", journal->m_journalMode);
                return journal;
            }
            // Tables that are not the ones this program makes: set aside like any damage.
            a.verdict = Verdict::Damaged;
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

SqliteOrderJournal::SqliteOrderJournal(sqlite3* db, std::filesystem::path path)
    : m_db(db), m_path(std::move(path)) {}

SqliteOrderJournal::~SqliteOrderJournal() {
    for (auto& [mask, stmt] : m_selects) sqlite3_finalize(stmt);
    for (sqlite3_stmt* s :
         {m_begin, m_commit, m_rollback, m_insertOrder, m_insertFigure, m_selectFigures})
        sqlite3_finalize(s);
    sqlite3_close_v2(m_db);
}

bool SqliteOrderJournal::prepareWrites(std::string* error) {
    const std::string insert = std::string("INSERT INTO orders (") + kOrderColumns +
                               ") VALUES (?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,?14,?15,"
                               "?16,?17,?18,?19,?20,?21,?22,?23,?24,?25,?26,?27,?28,?29)";
    const bool ok =
        prepare(m_db, "BEGIN IMMEDIATE", m_begin) && prepare(m_db, "COMMIT", m_commit) &&
        prepare(m_db, "ROLLBACK", m_rollback) && prepare(m_db, insert.c_str(), m_insertOrder) &&
        prepare(m_db, "INSERT INTO figures (entry, seq, name, value) VALUES (?1,?2,?3,?4)",
                m_insertFigure) &&
        prepare(m_db, "SELECT name, value FROM figures WHERE entry = ?1 ORDER BY seq",
                m_selectFigures) &&
        selectStatement(0) != nullptr;
    if (!ok && error) *error = sqlite3_errmsg(m_db);
    return ok;
}

void SqliteOrderJournal::record(const JournalEntry& e) {
    std::lock_guard lock(m_mutex);
    const tagBrokerOrder& o = e.order;
    int rc = stepOnce(m_begin);
    if (rc == SQLITE_DONE) {
        sqlite3_stmt* s = m_insertOrder;
        int i = 0;
        bindInt(s, ++i, e.timeMs);
        bindText(s, ++i, e.tool);
        bindText(s, ++i, e.window);
        bindText(s, ++i, e.tag);
        bindText(s, ++i, o.strAccountID);
        bindText(s, ++i, o.strBrokerID);
        bindInt(s, ++i, o.nExchangeID);
        bindText(s, ++i, o.strSymbolText);
        bindText(s, ++i, o.strCode);
        bindText(s, ++i, o.strAccountState);
        bindInt(s, ++i, o.nPriceType);
        bindInt(s, ++i, o.nDirection);
        bindInt(s, ++i, o.tCreateTime);
        for (double v : {o.dVolume, o.dPrice, o.dTriggerPrice, o.dAvgPrice, o.dStopLoss,
                         o.dTakeProfit})
            bindReal(s, ++i, v);
        bindInt(s, ++i, o.nOpenClose);
        bindInt(s, ++i, o.nHedge);
        bindText(s, ++i, o.strRemark);
        bindText(s, ++i, o.strOrderID);
        bindInt(s, ++i, o.nStatus);
        bindReal(s, ++i, o.dFilledVolume);
        bindText(s, ++i, o.strStatusMsg);
        bindInt(s, ++i, o.tUpdateTime);
        bindInt(s, ++i, e.result);
        bindText(s, ++i, e.reason);
        rc = stepOnce(s);
        const sqlite3_int64 id = sqlite3_last_insert_rowid(m_db);
        for (std::size_t k = 0; rc == SQLITE_DONE && k < e.figures.size(); ++k) {
            bindInt(m_insertFigure, 1, id);
            bindInt(m_insertFigure, 2, static_cast<std::int64_t>(k));
            bindText(m_insertFigure, 3, e.figures[k].name);
            bindReal(m_insertFigure, 4, e.figures[k].value);
            rc = stepOnce(m_insertFigure);
        }
        if (rc == SQLITE_DONE) rc = stepOnce(m_commit);
    }
    if (rc != SQLITE_DONE) {
        ++m_failedWrites;
        m_lastError = journal_text::fill(journal_text::kMsgWriteFailed, {sqlite3_errmsg(m_db)});
        if (!sqlite3_get_autocommit(m_db)) stepOnce(m_rollback);
    }
}

int SqliteOrderJournal::failedWrites() const {
    std::lock_guard lock(m_mutex);
    return m_failedWrites;
}

std::string SqliteOrderJournal::lastError() const {
    std::lock_guard lock(m_mutex);
    return m_lastError;
}

// ---- Reading ---------------------------------------------------------------------------------

namespace {

// Filters a page query has beyond the time range, as bits of its statement's key.
constexpr unsigned kByTool = 1, kByAccount = 2, kByCode = 4, kByTag = 8;

// A LIKE pattern for texts starting with `prefix`, taken literally.
std::string prefixPattern(const std::string& prefix) {
    std::string out;
    for (char c : prefix) {
        if (c == '\\' || c == '%' || c == '_') out += '\\';
        out += c;
    }
    return out + '%';
}

void readEntry(sqlite3_stmt* s, JournalRecord& rec) {
    rec.id = sqlite3_column_int64(s, 0);
    JournalEntry& e = rec.entry;
    tagBrokerOrder& o = e.order;
    int i = 0;
    auto integer = [&] { return sqlite3_column_int64(s, ++i); };
    auto text = [&] { return columnText(s, ++i); };
    auto real = [&] { return columnReal(s, ++i); };
    e.timeMs = integer();
    e.tool = text();
    e.window = text();
    e.tag = text();
    o.strAccountID = text();
    o.strBrokerID = text();
    o.nExchangeID = static_cast<std::int32_t>(integer());
    o.strSymbolText = text();
    o.strCode = text();
    o.strAccountState = text();
    o.nPriceType = static_cast<std::int32_t>(integer());
    o.nDirection = static_cast<std::int32_t>(integer());
    o.tCreateTime = integer();
    for (double* v : {&o.dVolume, &o.dPrice, &o.dTriggerPrice, &o.dAvgPrice, &o.dStopLoss,
                      &o.dTakeProfit})
        *v = real();
    o.nOpenClose = static_cast<std::int32_t>(integer());
    o.nHedge = static_cast<std::int32_t>(integer());
    o.strRemark = text();
    o.strOrderID = text();
    o.nStatus = static_cast<std::int32_t>(integer());
    o.dFilledVolume = real();
    o.strStatusMsg = text();
    o.tUpdateTime = integer();
    e.result = static_cast<int>(integer());
    e.reason = text();
}

}  // namespace

sqlite3_stmt* SqliteOrderJournal::selectStatement(unsigned mask) const {
    auto it = m_selects.find(mask);
    if (it != m_selects.end()) return it->second;
    // The range on time_ms (and the tool, when given) is what an index serves; the cursor
    // narrows the range to the page's start, the other filters are checked row by row.
    std::string sql = std::string("SELECT id, ") + kOrderColumns +
                      " FROM orders WHERE time_ms >= ?1 AND time_ms < ?2 AND time_ms <= ?3"
                      " AND (time_ms < ?3 OR id < ?4)";
    if (mask & kByTool) sql += " AND tool = ?5";
    if (mask & kByAccount) sql += " AND account = ?6";
    if (mask & kByCode) sql += " AND code LIKE ?7 ESCAPE '\\'";
    if (mask & kByTag) sql += " AND instr(tag, ?8) > 0";
    sql += " ORDER BY time_ms DESC, id DESC LIMIT ?9";
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(m_db, sql.c_str(), stmt)) return nullptr;
    m_selects.emplace(mask, stmt);
    return stmt;
}

void SqliteOrderJournal::loadFigures(JournalRecord& rec) const {
    sqlite3_stmt* s = m_selectFigures;
    bindInt(s, 1, rec.id);
    while (sqlite3_step(s) == SQLITE_ROW)
        rec.entry.figures.push_back(JournalFigure{columnText(s, 0), columnReal(s, 1)});
    sqlite3_reset(s);
}

std::vector<JournalRecord> SqliteOrderJournal::query(const JournalFilter& f, int limit,
                                                     const JournalCursor& after,
                                                     std::string* error) const {
    std::vector<JournalRecord> out;
    if (error) error->clear();
    if (limit <= 0) return out;
    limit = std::min(limit, kMaxPageSize);
    const unsigned mask = (f.tool.empty() ? 0 : kByTool) | (f.account.empty() ? 0 : kByAccount) |
                          (f.code.empty() ? 0 : kByCode) | (f.tagText.empty() ? 0 : kByTag);
    const std::string pattern = prefixPattern(f.code);

    std::lock_guard lock(m_mutex);
    sqlite3_stmt* s = selectStatement(mask);
    if (!s) {
        if (error) *error = sqlite3_errmsg(m_db);
        return out;
    }
    bindInt(s, 1, f.fromMs);
    bindInt(s, 2, f.toMs);
    bindInt(s, 3, after.timeMs);
    bindInt(s, 4, after.id);
    if (mask & kByTool) bindText(s, 5, f.tool);
    if (mask & kByAccount) bindText(s, 6, f.account);
    if (mask & kByCode) bindText(s, 7, pattern);
    if (mask & kByTag) bindText(s, 8, f.tagText);
    bindInt(s, 9, limit);
    int rc;
    while ((rc = sqlite3_step(s)) == SQLITE_ROW) {
        out.emplace_back();
        readEntry(s, out.back());
    }
    if (rc != SQLITE_DONE) {
        if (error) *error = sqlite3_errmsg(m_db);
        out.clear();
    }
    sqlite3_reset(s);
    sqlite3_clear_bindings(s);
    for (JournalRecord& rec : out) loadFigures(rec);
    return out;
}

std::vector<std::string> SqliteOrderJournal::tools() const {
    std::lock_guard lock(m_mutex);
    std::vector<std::string> out;
    // One index probe per distinct tool rather than a walk over every entry.
    sqlite3_stmt* s = nullptr;
    if (!prepare(m_db, "SELECT tool FROM orders WHERE tool > ?1 ORDER BY tool LIMIT 1", s))
        return out;
    std::string last;
    for (;;) {
        bindText(s, 1, last);
        if (sqlite3_step(s) != SQLITE_ROW) break;
        last = columnText(s, 0);
        sqlite3_reset(s);
        out.push_back(last);
    }
    sqlite3_finalize(s);
    return out;
}
