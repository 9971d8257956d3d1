// SPDX-License-Identifier: MIT
// The current files of a kind.  A server is asked for the list's hash first: one that this
// workstation has in its cache is not sent again.
#pragma once

#include "storage/store/FileRows.h"

namespace Storage {

// In no order, without their other names.  `cache` may be null.
StoredRecords ListKind(SqlConnection& sql, ContentCache* cache, std::int32_t contentCode,
                       CStringView kindId);

// The list as SqlConnection::KindDigest hashes it; empty when it cannot be written so.
std::string WriteKindListing(const StoredRecords& records);
// What WriteKindListing wrote of the kind.
StoredRecords ReadKindListing(std::string_view listing, std::int32_t contentCode,
                              CStringView kindId);

} // namespace Storage
