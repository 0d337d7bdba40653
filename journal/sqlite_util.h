// Small helpers over SQLite's C interface for the journal: running a statement for one value,
// preparing, binding and stepping. Callers hold the connection's lock.
#pragma once

#include <sqlite3.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace sqlite_util {

// Runs one or more statements that return nothing wanted.
inline int exec(sqlite3* db, const char* sql) {
    return sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
}

inline bool prepare(sqlite3* db, const char* sql, sqlite3_stmt*& stmt) {
    return sqlite3_prepare_v3(db, sql, -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr) ==
           SQLITE_OK;
}

// The first column of the first row of `sql` (0 or "" when there is no row); SQLite's code.
inline int queryInt(sqlite3* db, const char* sql, std::int64_t& out) {
    sqlite3_stmt* s = nullptr;
    int rc = sqlite3_prepare_v2(db, sql, -1, &s, nullptr);
    out = 0;
    if (rc == SQLITE_OK) {
        rc = sqlite3_step(s);
        if (rc == SQLITE_ROW) out = sqlite3_column_int64(s, 0);
        rc = rc == SQLITE_ROW || rc == SQLITE_DONE ? SQLITE_OK : rc;
    }
    sqlite3_finalize(s);
    return rc;
}

inline int queryText(sqlite3* db, const char* sql, std::string& out) {
    sqlite3_stmt* s = nullptr;
    int rc = sqlite3_prepare_v2(db, sql, -1, &s, nullptr);
    out.clear();
    if (rc == SQLITE_OK) {
        rc = sqlite3_step(s);
        if (rc == SQLITE_ROW) {
            const auto* text = sqlite3_column_text(s, 0);
            if (text) out.assign(reinterpret_cast<const char*>(text), sqlite3_column_bytes(s, 0));
        }
        rc = rc == SQLITE_ROW || rc == SQLITE_DONE ? SQLITE_OK : rc;
    }
    sqlite3_finalize(s);
    return rc;
}

// Steps a statement that returns no row and makes it ready for the next use (texts are bound
// without a copy: they must live until this returns).
inline int stepOnce(sqlite3_stmt* s) {
    const int rc = sqlite3_step(s);
    sqlite3_reset(s);
    sqlite3_clear_bindings(s);
    return rc;
}

inline void bindInt(sqlite3_stmt* s, int i, std::int64_t v) { sqlite3_bind_int64(s, i, v); }
inline void bindText(sqlite3_stmt* s, int i, const std::string& v) {
    sqlite3_bind_text(s, i, v.data(), static_cast<int>(v.size()), SQLITE_STATIC);
}
// SQLite keeps no NaN (it would store NULL); the journal reads a NULL real back as NaN.
inline void bindReal(sqlite3_stmt* s, int i, double v) {
    if (std::isnan(v))
        sqlite3_bind_null(s, i);
    else
        sqlite3_bind_double(s, i, v);
}

inline std::string columnText(sqlite3_stmt* s, int i) {
    const auto* text = sqlite3_column_text(s, i);
    return text ? std::string(reinterpret_cast<const char*>(text), sqlite3_column_bytes(s, i))
                : std::string();
}
inline double columnReal(sqlite3_stmt* s, int i) {
    return sqlite3_column_type(s, i) == SQLITE_NULL ? std::numeric_limits<double>::quiet_NaN()
                                                    : sqlite3_column_double(s, i);
}

}  // namespace sqlite_util
