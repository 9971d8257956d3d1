// SPDX-License-Identifier: MIT
#include "storage/sqlite/SqliteCheck.h"

#include "platform/text/Numbers.h"
#include "storage/sqlite/PageChecksumVfs.h"
#include "storage/sqlite/SqliteError.h"
#include "storage/sqlite/SqliteLog.h"

#include <array>
#include <sqlite3.h>

namespace Storage {
namespace {

// SQLite keeps locks there and never reads or writes it.
constexpr std::uint32_t kLockPage = 0x40000000 / kPageBytes + 1;

sqlite3_file* FileOf(sqlite3* database, int operation) {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(database, "main", operation, &file);
    return file && file->pMethods ? file : nullptr;
}

sqlite3_int64 SizeOf(sqlite3_file* file) {
    sqlite3_int64 size = 0;
    return file && file->pMethods->xFileSize(file, &size) == SQLITE_OK ? size : 0;
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
    const LogState log = ReadLog(FileOf(database, SQLITE_FCNTL_JOURNAL_POINTER));
    if (log.brokenFrame != 0)
        tell({MessageNumber::InLog, {ShownPath(path)}},
             {MessageNumber::LogBroken, {Platform::ToText(std::int64_t(log.brokenFrame))}});
    const auto pages = static_cast<std::uint32_t>((SizeOf(file) + kPageBytes - 1) / kPageBytes);
    bool isRight = true;
    for (std::uint32_t page = 1; page <= pages; ++page) {
        if (page == kLockPage || log.pages.count(page) > 0)
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
