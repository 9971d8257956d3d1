// SPDX-License-Identifier: MIT
// Copies a repository with its whole history into another one, of any engine.
//
// Numbers, ids, times and users stay what they are.  The copy goes forward by ranges of
// revisions, each one transaction, so that the target is at every moment the repository that the
// source was at some revision.  docs/storage.md describes it.
#pragma once

#include "storage/SqlConnection.h"

namespace Storage {

// Where a range of revisions ends at the latest; one revision is never divided.
struct CopyLimits {
    std::int64_t revisions = 1000;
    std::int64_t contentBytes = std::int64_t(64) << 20;
};

// Copies what `to` does not have of `from` as it is now, and compares both then, row by row, each
// content of the copy with its hash.  `tell` is called after each range and before the comparison.
//
// Problems: Refused when `to` holds anything but an earlier state of `from` (nothing was written),
// or when somebody else wrote there meanwhile; Integrity for what is damaged in `from`, and when
// the copy differs at its end; Interrupted; what the engines say.  Whatever was committed stays,
// and another call goes on from there.
void CopyRepository(SqlConnection& from, SqlConnection& to, const TellCopied& tell,
                    CopyCounts& counts, const CopyLimits& limits = {});

} // namespace Storage
