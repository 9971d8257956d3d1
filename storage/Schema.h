// SPDX-License-Identifier: MIT
// The repository's tables, which docs/storage.md describes.
#pragma once

#include "storage/SqlConnection.h"

namespace Storage {

inline constexpr std::int64_t kSchemaVersion = 1;

// Makes the tables of an empty repository, in one transaction.
void CreateSchema(SqlConnection& sql);

// The version of the repository's tables.  Throws NewerVersion when it is newer than
// this program knows and Integrity when there is none.
std::int64_t CheckSchema(SqlConnection& sql);

} // namespace Storage
