#include "journal/sqlite_order_journal.h"

#include <sqlite3.h>

#include <algorithm>
#include <system_error>

#include "journal/journal_file.h"
#include "journal/journal_strings.h"
#include "journal/sqlite_util.h"

using namespace sqlite_util;
using journal_file::kOrderColumns;

std::unique_ptr<SqliteOrderJournal> SqliteOrderJournal::open(const std::filesystem::path& path,
                                                             std::string* error) {
    std::string ignored;
    std::string& message = error ? *error : ignored;
    sqlite3* db = journal_file::connect(path, message);
    if (!db) return nullptr;
    std::unique_ptr<SqliteOrderJournal> journal(new SqliteOrderJournal(db, path));
    std::string why;
    if (!journal->prepareWrites(&why)) {
        message = journal_text::fill(journal_text::kMsgCannotOpen, {path.string(), why});
        return nullptr;
    }
    return journal;
}

SqliteOrderJournal::SqliteOrderJournal(sqlite3* db, std::filesystem::path path)
    : m_db(db), m_path(std::move(path)) {
    queryText(m_db, "PRAGMA journal_mode", m_journalMode);
}

SqliteOrderJournal::~SqliteOrderJournal() { closeAll(); }

void SqliteOrderJournal::closeAll() {
    for (auto& [mask, stmt] : m_selects) sqlite3_finalize(stmt);
    m_selects.clear();
    for (sqlite3_stmt** s : {&m_begin, &m_commit, &m_rollback, &m_insertOrder, &m_insertFigure,
                             &m_selectFigures}) {
        sqlite3_finalize(*s);
        *s = nullptr;
    }
    sqlite3_close_v2(m_db);
    m_db = nullptr;
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

int SqliteOrderJournal::insert(const JournalEntry& e) {
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
    if (rc != SQLITE_DONE && !sqlite3_get_autocommit(m_db)) {
        const std::string why = sqlite3_errmsg(m_db);  // the rollback must not replace it
        stepOnce(m_rollback);
        m_lastError = why;
    } else if (rc != SQLITE_DONE) {
        m_lastError = sqlite3_errmsg(m_db);
    }
    return rc;
}

void SqliteOrderJournal::record(const JournalEntry& e) {
    std::lock_guard lock(m_mutex);
    if (!m_db) {  // lastError says why there is no file to write
        ++m_failedWrites;
        return;
    }
    int rc = insert(e);
    const int primary = rc & 0xff;
    if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB) {
        // Damage found in use: the file goes aside like one found damaged at start-up, and the
        // entry goes into the new journal.
        const std::string detail = m_lastError;
        closeAll();
        std::string message;
        m_db = journal_file::replaceDamaged(m_path, detail, message);
        if (m_db && !prepareWrites(&message)) closeAll();
        rc = m_db ? insert(e) : SQLITE_CANTOPEN;
        if (rc == SQLITE_DONE || !m_db) {
            m_lastError = message;
            if (!m_db) ++m_failedWrites;
            return;
        }
    }
    if (rc != SQLITE_DONE) {
        ++m_failedWrites;
        m_lastError = journal_text::fill(journal_text::kMsgWriteFailed, {m_lastError});
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
    sqlite3_stmt* s = m_db ? selectStatement(mask) : nullptr;
    if (!s) {
        if (error) *error = m_db ? sqlite3_errmsg(m_db) : m_lastError;
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
    if (!m_db ||
        !prepare(m_db, "SELECT tool FROM orders WHERE tool > ?1 ORDER BY tool LIMIT 1", s))
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
