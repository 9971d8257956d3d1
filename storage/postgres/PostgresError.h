// SPDX-License-Identifier: MIT
// What a server answers, and what libpq says when there is none, as the storage's problems.
#pragma once

#include "storage/StorageError.h"

#include <libpq-fe.h>

namespace Storage {

// Throws what a failed result means for the repository that the user calls `name`.
[[noreturn]] void ThrowPostgresError(const PGresult* result, const CString& name);

// Throws why a connection could not be made, or that it broke.  `connection` may be null: no
// memory was left for it.
[[noreturn]] void ThrowNoPostgresConnection(PGconn* connection, const CString& name);

} // namespace Storage
