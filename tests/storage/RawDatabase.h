// SPDX-License-Identifier: MIT
// A database file of SQLite as any other program opens it: without page checksums, which a
// test that changes a repository adds with SealPages.
#pragma once

#include <sqlite3.h>
#include <stdexcept>
#include <string>

namespace Storage {

class RawDatabase {
public:
    explicit RawDatabase(const std::string& path) {
        Check(sqlite3_open(path.c_str(), &m_database));
    }
    ~RawDatabase() { sqlite3_close(m_database); }
    RawDatabase(const RawDatabase&) = delete;
    RawDatabase& operator=(const RawDatabase&) = delete;

    void Run(const std::string& sql) {
        Check(sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, nullptr));
    }
    // The first column of the first row, as text.
    std::string Ask(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        Check(sqlite3_prepare_v2(m_database, sql.c_str(), -1, &statement, nullptr));
        std::string answer = "(none)";
        if (sqlite3_step(statement) == SQLITE_ROW)
            answer = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        sqlite3_finalize(statement);
        return answer;
    }

private:
    void Check(int code) {
        if (code != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_database));
    }
    sqlite3* m_database = nullptr;
};

} // namespace Storage
