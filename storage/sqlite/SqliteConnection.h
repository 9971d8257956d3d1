// SPDX-License-Identifier: MIT
// The embedded engine: a repository in one file of SQLite, beside it the files "-wal"
// and "-shm" that stay there so that users who may only read can.
#pragma once

#include "storage/SqlConnection.h"

#include <functional>

namespace Storage {

struct SqliteOptions {
    int busyTimeoutMs = 10'000; // how long a writer waits for another
    // Only to look: the repository stays as it is, and so do "-wal" and "-shm" beside it.  They
    // are not made, but for a "-shm" that is missing where "-wal" holds something.
    bool isTrial = false;
};

// Opens the repository file at `path`; never makes one.  Problems: Missing,
// NotARepository, NotAllowed, Integrity, Unreachable, Busy.
std::unique_ptr<SqlConnection> OpenSqlite(const CString& path, const SqliteOptions& options = {});

// Makes a repository file at `path`, private, its folders too, and lets `fill` make the
// tables in one transaction.  Whole or not at all.  What stands at `path` already is left
// alone; that is no error.
void CreateSqlite(const CString& path, const std::function<void(SqlConnection&)>& fill);

// Throws what CreateSqlite would, as far as it can be told before; makes nothing.
void CheckMayCreateSqlite(const CString& path);

} // namespace Storage
