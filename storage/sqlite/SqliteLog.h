// SPDX-License-Identifier: MIT
// The "-wal" file of a repository as it stands on the disk, for the check.
#pragma once

#include <cstdint>
#include <set>

struct sqlite3_file;

namespace Storage {

struct LogState {
    // Pages of which the log holds a newer form than the repository file may.
    std::set<std::uint32_t> pages;
    // The first frame, from 1, that does not fit its checksum though a call's end stands behind
    // it; 0: none.  A process that is killed leaves no such frame.
    std::uint32_t brokenFrame = 0;
};

// `log` may be null or empty.  Another process may be writing to it meanwhile.
LogState ReadLog(sqlite3_file* log);

} // namespace Storage
