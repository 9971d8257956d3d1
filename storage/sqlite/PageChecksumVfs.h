// SPDX-License-Identifier: MIT
// The embedded engine's way to its files: every page of the repository file ends with a
// checksum, which is filled in when the page is written to the file and verified when it is
// read from there.  docs/storage.md describes the file.
//
// Beside SqliteConnection.cpp and SqliteError.cpp, this file, SqliteCheck.cpp and SqliteLog.cpp
// know SQLite.
#pragma once

#include <cstdint>
#include <optional>

namespace Storage {

inline constexpr int kPageBytes = 16384;
inline constexpr int kPageChecksumBytes = 8; // at the end of the page
// "ZEBX", at byte 68 of the file: tells repositories from other databases of SQLite.
inline constexpr std::uint32_t kApplicationId = 0x5A454258;

// The name under which SQLite finds it; the first call registers it, and sqlite3_open_v2
// fails when that did not work.  Throws Internal when there are no random numbers.  Files other
// than the database's own, the "-wal" among them, go to the operating system's VFS as they are.
const char* PageChecksumVfs();

// Why a read was refused.
enum class PageFault {
    Damaged,     // the page does not fit its checksum, or the file ends before it
    NoChecksums, // a repository, but of pages without checksums
    OtherDatabase,
    OtherFile
};

struct PageProblem {
    PageFault fault;
    std::uint32_t page; // from 1
};

// The reason for this thread's last read that was refused, which it forgets.  SQLite itself
// says SQLITE_IOERR_DATA (Damaged) or SQLITE_NOTADB (the others).
std::optional<PageProblem> TakePageProblem();

} // namespace Storage
