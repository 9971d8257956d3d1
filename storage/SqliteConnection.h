// SPDX-License-Identifier: MIT
// The embedded engine: a repository in one file of SQLite, beside it the files "-wal"
// and "-shm" that stay there so that users who may only read can.
#pragma once

#include "storage/SqlConnection.h"

#include <functional>

namespace Storage {

struct SqliteOptions {
    int busyTimeoutMs = 10'000; // how long a writer waits for another
};

// Opens the repository file at `path`; never makes one.  Problems: Missing,
// NotARepository, NotAllowed, Integrity, Unreachable, Busy.
std::unique_ptr<SqlConnection> OpenSqlite(const CString& path, const SqliteOptions& options = {});

// Makes a repository file at `path`, private, its folders too, and lets `fill` make the
// tables.  Whole or not at all.  What stands at `path` already is left alone; that is
// no error.
void CreateSqlite(const CString& path, const std::function<void(SqlConnection&)>& fill);

} // namespace Storage
