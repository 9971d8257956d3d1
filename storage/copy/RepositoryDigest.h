// SPDX-License-Identifier: MIT
// Whether two repositories hold the same, history included, whatever their engines are.
#pragma once

#include "storage/copy/CopiedContents.h"

namespace Storage {

// Reads all rows of both, in order of their ids, and the contents of `copy`, each of which has to
// fit its hash; those of `original` are compared by hash.  What there is, when all of it is the
// same.  Throws Integrity with the first table that differs, and Interrupted.  Within transactions
// of both; `revision` is that of both.
ContentCounts CompareRepositories(SqlConnection& original, SqlConnection& copy,
                                  std::int64_t revision);

} // namespace Storage
