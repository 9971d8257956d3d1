// SPDX-License-Identifier: MIT
// The check of a repository file's own pages.
#pragma once

#include "storage/SqlConnection.h"

struct sqlite3;

namespace Storage {

// Reads every page of the file, the unused ones too, and tells those that do not fit their
// checksum, and a "-wal" file that is broken in its middle.  A page of which the "-wal" file holds
// a newer form is left out: it may just be written.  Whether all pages were right.  Throws
// StorageError when the file cannot be read.
bool CheckPages(sqlite3* database, const CString& path, const TellFinding& tell);

} // namespace Storage
