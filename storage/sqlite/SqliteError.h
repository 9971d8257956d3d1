// SPDX-License-Identifier: MIT
// What SQLite answers, as the storage's problems.
#pragma once

#include "storage/StorageError.h"

struct sqlite3;

namespace Storage {

// A path as the user of this machine writes it.
CString ShownPath(CStringView path);

// Throws what `code`, an extended result code, means for the repository file at `path`.
// `database` may be null.
[[noreturn]] void ThrowSqliteError(sqlite3* database, int code, const CString& path);

} // namespace Storage
