// SPDX-License-Identifier: MIT
// The repository's tables, which docs/storage.md describes.
#pragma once

#include "storage/SqlConnection.h"

namespace Storage {

inline constexpr std::int64_t kSchemaVersion = 2;

// Makes the tables of an empty repository, in the transaction that is open.
void CreateSchema(SqlConnection& sql);

// The version of the repository's tables.  Throws NewerVersion when it is newer than
// this program knows and Integrity when there is none.  An older one can be used as it is.
std::int64_t CheckSchema(SqlConnection& sql);

// Tells that a repository's tables are older, and what to type.
Message OldTables(const CString& repository, std::int64_t version);

// Brings the tables to this program's version, in one transaction, while no other writer is at
// work.  Gives the version that they had.  Throws what CheckSchema does, and NotAllowed.
std::int64_t UpgradeSchema(SqlConnection& sql);

} // namespace Storage
