// SPDX-License-Identifier: MIT
#include "storage/sqlite/SqliteError.h"

#include "platform/os/Path.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/sqlite/PageChecksumVfs.h"

#include <cerrno>
#include <sqlite3.h>

namespace Storage {
namespace {

constexpr int kPrimaryCode = 0xff;

bool IsOutOfSpace(int systemError) {
    return systemError == ENOSPC || systemError == EDQUOT || systemError == EFBIG;
}

bool IsRightsError(int systemError) {
    return systemError == EACCES || systemError == EPERM || systemError == EROFS;
}

bool IsMissingError(int systemError) {
    return systemError == ENOENT || systemError == ENOTDIR;
}

// A file that may be read, in a state in which reading takes the right to write.
bool NeedsWriterFirst(int code) {
    return code == SQLITE_READONLY_RECOVERY || code == SQLITE_READONLY_CANTINIT ||
           code == SQLITE_READONLY_CANTLOCK;
}

StorageError OpenError(int systemError, const CString& path, const CString& reason) {
    if (IsRightsError(systemError))
        return {Problem::NotAllowed, MessageNumber::MayNotOpen, {path}};
    if (IsMissingError(systemError))
        return {Problem::Missing, MessageNumber::Missing, {path}};
    return {Problem::Unreachable, MessageNumber::Unreachable, {path, reason}};
}

StorageError PageError(const PageProblem& problem, const CString& path) {
    switch (problem.fault) {
    case PageFault::Damaged:
        return {Problem::Integrity,
                MessageNumber::DamagedPage,
                {path, Platform::ToText(std::int64_t(problem.page))}};
    case PageFault::NoChecksums:
        return {Problem::Integrity, MessageNumber::NoPageChecksums, {path}};
    case PageFault::OtherDatabase:
        return {Problem::NotARepository, MessageNumber::OtherDatabase, {path}};
    case PageFault::OtherFile:
        break;
    }
    return {Problem::NotARepository, MessageNumber::OtherFile, {path}};
}

StorageError InputOutputError(int systemError, const CString& path, const CString& reason) {
    if (IsOutOfSpace(systemError))
        return {Problem::Full, MessageNumber::Full, {path}};
    return {Problem::Unreachable, MessageNumber::Unreachable, {path, reason}};
}

} // namespace

CString ShownPath(CStringView path) {
    return Platform::FromUtf8(Platform::NativePath(path));
}

void ThrowSqliteError(sqlite3* database, int code, const CString& path) {
    const int systemError = database ? sqlite3_system_errno(database) : 0;
    const CString reason =
        Platform::FromUtf8(database ? sqlite3_errmsg(database) : sqlite3_errstr(code));
    const CString shown = ShownPath(path);
    const auto page = TakePageProblem();
    if (page && (code == SQLITE_IOERR_DATA || code == SQLITE_NOTADB))
        throw PageError(*page, shown);
    switch (code & kPrimaryCode) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        throw StorageError(Problem::Busy, MessageNumber::Busy, {shown});
    case SQLITE_FULL:
        throw StorageError(Problem::Full, MessageNumber::Full, {shown});
    case SQLITE_READONLY:
        throw StorageError(Problem::NotAllowed,
                           NeedsWriterFirst(code) ? MessageNumber::NeedsWriter
                                                  : MessageNumber::MayNotWrite,
                           {shown});
    case SQLITE_PERM:
    case SQLITE_AUTH:
        throw StorageError(Problem::NotAllowed, MessageNumber::MayNotWrite, {shown});
    case SQLITE_NOTADB:
        throw StorageError(Problem::NotARepository, MessageNumber::OtherFile, {shown});
    case SQLITE_CORRUPT:
        throw StorageError(Problem::Integrity, MessageNumber::Damaged, {shown, reason});
    case SQLITE_CANTOPEN:
        throw OpenError(systemError, shown, reason);
    case SQLITE_PROTOCOL: // the locks do not do what they should
    case SQLITE_IOERR:
        throw InputOutputError(systemError, shown, reason);
    default:
        throw StorageError(Problem::Internal, MessageNumber::Internal, {reason});
    }
}

} // namespace Storage
