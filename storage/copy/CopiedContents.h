// SPDX-License-Identifier: MIT
// The contents that a range of revisions brings into a copy.
#pragma once

#include "storage/SqlConnection.h"

namespace Storage {

// The revisions behind `after`, to `last`.
struct RevisionRange {
    std::int64_t after = 0;
    std::int64_t last = 0;
};

struct ContentCounts {
    std::int64_t contents = 0;
    std::int64_t bytes = 0;
};

// Throws Interrupted when the user asked to stop; `to` is the copy and `revision` what it has.
void StopCopyIfInterrupted(SqlConnection& to, std::int64_t revision);

// Adds to `to` what the range's rows name and `to` does not have, each once and compared with its
// hash on the way; one content at a time is in memory.  Within a transaction of `to`.  Throws
// Integrity with the name of what is damaged or missing in `from`.
ContentCounts CopyContents(SqlConnection& from, SqlConnection& to, const RevisionRange& range);

} // namespace Storage
