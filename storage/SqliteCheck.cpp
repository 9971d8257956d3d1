// SPDX-License-Identifier: MIT
#include "storage/SqliteCheck.h"

#include "platform/text/Numbers.h"
#include "storage/PageChecksumVfs.h"
#include "storage/SqliteError.h"

#include <array>
#include <cstring>
#include <set>
#include <sqlite3.h>

namespace Storage {
namespace {

// SQLite keeps locks there and never reads or writes it.
constexpr std::uint32_t kLockPage = 0x40000000 / kPageBytes + 1;

// The "-wal" file: a header, then frames of a header and a page each.
constexpr int kLogHeaderBytes = 32;
constexpr int kSaltAt = 16; // in the log's header
constexpr int kFrameHeaderBytes = 24;
constexpr int kFrameSaltAt = 8; // in a frame's header
constexpr int kSaltBytes = 8;

sqlite3_file* FileOf(sqlite3* database, int operation) {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(database, "main", operation, &file);
    return file && file->pMethods ? file : nullptr;
}

sqlite3_int64 SizeOf(sqlite3_file* file) {
    sqlite3_int64 size = 0;
    return file && file->pMethods->xFileSize(file, &size) == SQLITE_OK ? size : 0;
}

template<std::size_t size>
bool Read(sqlite3_file* file, std::array<unsigned char, size>& bytes, sqlite3_int64 at) {
    return file->pMethods->xRead(file, bytes.data(), int(size), at) == SQLITE_OK;
}

// The numbers of the pages whose newest form is in the "-wal" file.
std::set<std::uint32_t> PagesInLog(sqlite3_file* log) {
    std::set<std::uint32_t> pages;
    std::array<unsigned char, kLogHeaderBytes> header;
    const sqlite3_int64 size = SizeOf(log);
    if (size == 0 || !Read(log, header, 0))
        return pages;
    std::array<unsigned char, kFrameHeaderBytes> frame;
    // Frames of another salt are left from before the log began anew.
    for (sqlite3_int64 at = kLogHeaderBytes;
         at < size && Read(log, frame, at) &&
         std::memcmp(&frame[kFrameSaltAt], &header[kSaltAt], kSaltBytes) == 0;
         at += kFrameHeaderBytes + kPageBytes)
        pages.insert(std::uint32_t(frame[0]) << 24 | std::uint32_t(frame[1]) << 16 |
                     std::uint32_t(frame[2]) << 8 | frame[3]);
    return pages;
}

// Twice, because another process may be writing the page just now.
int ReadPage(sqlite3_file* file, std::uint32_t page) {
    std::array<unsigned char, kPageBytes> bytes;
    const sqlite3_int64 at = sqlite3_int64(page - 1) * kPageBytes;
    const int code = file->pMethods->xRead(file, bytes.data(), kPageBytes, at);
    return code == SQLITE_IOERR_DATA ? file->pMethods->xRead(file, bytes.data(), kPageBytes, at)
                                     : code;
}

} // namespace

bool CheckPages(sqlite3* database, const CString& path, const TellFinding& tell) {
    sqlite3_file* file = FileOf(database, SQLITE_FCNTL_FILE_POINTER);
    const auto inLog = PagesInLog(FileOf(database, SQLITE_FCNTL_JOURNAL_POINTER));
    const auto pages = static_cast<std::uint32_t>((SizeOf(file) + kPageBytes - 1) / kPageBytes);
    bool isRight = true;
    for (std::uint32_t page = 1; page <= pages; ++page) {
        if (page == kLockPage || inLog.count(page) > 0)
            continue;
        const int code = ReadPage(file, page);
        if (code != SQLITE_OK && code != SQLITE_IOERR_DATA)
            ThrowSqliteError(nullptr, code, path);
        if (code == SQLITE_IOERR_DATA)
            tell({MessageNumber::InPage, {Platform::ToText(std::int64_t(page))}},
                 {MessageNumber::PageDamaged, {}});
        isRight = isRight && code == SQLITE_OK;
    }
    (void)TakePageProblem();
    return isRight;
}

} // namespace Storage
