// SPDX-License-Identifier: MIT
#include "storage/sqlite/PageChecksumVfs.h"

#include "storage/content/ContentHash.h"

#include <array>
#include <cstring>
#include <sqlite3.h>
#include <utility>
#include <xxhash.h>

namespace Storage {
namespace {

using Page = std::array<unsigned char, kPageBytes>;

constexpr int kBodyBytes = kPageBytes - kPageChecksumBytes;

// SQLite's own header, at the file's start.
constexpr int kHeaderBytes = 100;
constexpr char kMagic[16] = {'S', 'Q', 'L', 'i', 't', 'e', ' ', 'f',
                             'o', 'r', 'm', 'a', 't', ' ', '3', '\0'};
constexpr int kPageSizeAt = 16; // two bytes, the higher one first
constexpr int kReservedAt = 20;
constexpr int kApplicationIdAt = 68;
// These 16 bytes SQLite reads to see whether somebody wrote, and serves to nobody.
constexpr int kChangeMarkAt = 24;
constexpr int kChangeMarkBytes = 16;

// The file of the operating system's VFS stands behind it.
struct CheckedFile {
    sqlite3_file base;
};

thread_local std::optional<PageProblem> theProblem;

sqlite3_vfs* theSystem = nullptr;

sqlite3_file* SystemFile(sqlite3_file* file) {
    return reinterpret_cast<sqlite3_file*>(reinterpret_cast<CheckedFile*>(file) + 1);
}

const sqlite3_io_methods& SystemMethods(sqlite3_file* file) {
    return *SystemFile(file)->pMethods;
}

int ReadAsItIs(sqlite3_file* file, void* buffer, int size, sqlite3_int64 at) {
    return SystemMethods(file).xRead(SystemFile(file), buffer, size, at);
}

int Refuse(PageFault fault, sqlite3_int64 at) {
    theProblem = {fault, static_cast<std::uint32_t>(at / kPageBytes + 1)};
    return fault == PageFault::Damaged ? SQLITE_IOERR_DATA : SQLITE_NOTADB;
}

// The page's number is part of it, so that no page can stand in another's place.
XXH64_canonical_t ChecksumOf(const unsigned char* page, sqlite3_int64 at) {
    XXH64_canonical_t bytes;
    XXH64_canonicalFromHash(
        &bytes, XXH3_64bits_withSeed(page, kBodyBytes, XXH64_hash_t(at / kPageBytes + 1)));
    return bytes;
}

bool IsEmpty(sqlite3_file* file) {
    sqlite3_int64 size = 0;
    return SystemMethods(file).xFileSize(SystemFile(file), &size) == SQLITE_OK && size == 0;
}

int ReadPage(sqlite3_file* file, unsigned char* page, sqlite3_int64 at) {
    const int code = ReadAsItIs(file, page, kPageBytes, at);
    // SQLite takes what is missing for zeros, which is right for a new file alone.
    if (code == SQLITE_IOERR_SHORT_READ)
        return IsEmpty(file) ? code : Refuse(PageFault::Damaged, at);
    if (code != SQLITE_OK)
        return code;
    const XXH64_canonical_t checksum = ChecksumOf(page, at);
    return std::memcmp(checksum.digest, page + kBodyBytes, kPageChecksumBytes) == 0
               ? SQLITE_OK
               : Refuse(PageFault::Damaged, at);
}

// SQLite reads the header without a lock and before it knows the "-wal" file, and takes from it
// the page's size and the reserved bytes alone.  Page 1 may just be written, or be stale: it
// is verified when it is read as a page.  Until then nothing depends on what stands here, as
// every repository has the same sizes; it only has to be one, and no single changed byte makes
// it look like something else.
int ReadHeader(sqlite3_file* file, unsigned char* header) {
    const int code = ReadAsItIs(file, header, kHeaderBytes, 0);
    if (code == SQLITE_IOERR_SHORT_READ)
        return IsEmpty(file) ? code : Refuse(PageFault::OtherFile, 0);
    if (code != SQLITE_OK)
        return code;
    const unsigned char id[4] = {kApplicationId >> 24, kApplicationId >> 16 & 255,
                                 kApplicationId >> 8 & 255, kApplicationId & 255};
    const bool isDatabase = std::memcmp(header, kMagic, sizeof(kMagic)) == 0;
    const bool hasId = std::memcmp(header + kApplicationIdAt, id, sizeof(id)) == 0;
    const bool hasSizes = header[kPageSizeAt] == kPageBytes >> 8 && header[kPageSizeAt + 1] == 0 &&
                          header[kReservedAt] == kPageChecksumBytes;
    if (!hasId && !hasSizes)
        return Refuse(isDatabase ? PageFault::OtherDatabase : PageFault::OtherFile, 0);
    if (isDatabase && header[kReservedAt] == 0)
        return Refuse(PageFault::NoChecksums, 0);
    header[kPageSizeAt] = kPageBytes >> 8;
    header[kPageSizeAt + 1] = 0;
    header[kReservedAt] = kPageChecksumBytes;
    return SQLITE_OK;
}

int ReadPart(sqlite3_file* file, void* buffer, int size, sqlite3_int64 at) {
    const sqlite3_int64 offset = at % kPageBytes;
    if (offset + size > kPageBytes)
        return SQLITE_IOERR_READ;
    Page page;
    const int code = ReadPage(file, page.data(), at - offset);
    if (code == SQLITE_OK || code == SQLITE_IOERR_SHORT_READ)
        std::memcpy(buffer, page.data() + offset, static_cast<std::size_t>(size));
    return code;
}

int Read(sqlite3_file* file, void* buffer, int size, sqlite3_int64 at) {
    if (size == kPageBytes && at % kPageBytes == 0)
        return ReadPage(file, static_cast<unsigned char*>(buffer), at);
    if (size == kHeaderBytes && at == 0)
        return ReadHeader(file, static_cast<unsigned char*>(buffer));
    if (size == kChangeMarkBytes && at == kChangeMarkAt)
        return ReadAsItIs(file, buffer, size, at);
    return ReadPart(file, buffer, size, at);
}

int Write(sqlite3_file* file, const void* buffer, int size, sqlite3_int64 at) {
    // Nothing without a checksum comes in; SQLite writes whole pages.
    if (size != kPageBytes || at % kPageBytes != 0)
        return SQLITE_IOERR_WRITE;
    // The page is SQLite's own and writable, and its last bytes are reserved for this: copying
    // all of it for their sake would cost as much as the checksum.
    auto* page = static_cast<unsigned char*>(const_cast<void*>(buffer));
    const XXH64_canonical_t checksum = ChecksumOf(page, at);
    std::memcpy(page + kBodyBytes, checksum.digest, kPageChecksumBytes);
    return SystemMethods(file).xWrite(SystemFile(file), buffer, size, at);
}

// Everything else is the operating system's.

int Close(sqlite3_file* file) {
    return SystemMethods(file).xClose(SystemFile(file));
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    return SystemMethods(file).xTruncate(SystemFile(file), size);
}

int Sync(sqlite3_file* file, int flags) {
    return SystemMethods(file).xSync(SystemFile(file), flags);
}

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
    return SystemMethods(file).xFileSize(SystemFile(file), size);
}

int Lock(sqlite3_file* file, int level) {
    return SystemMethods(file).xLock(SystemFile(file), level);
}

int Unlock(sqlite3_file* file, int level) {
    return SystemMethods(file).xUnlock(SystemFile(file), level);
}

int CheckReservedLock(sqlite3_file* file, int* isReserved) {
    return SystemMethods(file).xCheckReservedLock(SystemFile(file), isReserved);
}

int FileControl(sqlite3_file* file, int operation, void* argument) {
    return SystemMethods(file).xFileControl(SystemFile(file), operation, argument);
}

int SectorSize(sqlite3_file* file) {
    return SystemMethods(file).xSectorSize(SystemFile(file));
}

int DeviceCharacteristics(sqlite3_file* file) {
    return SystemMethods(file).xDeviceCharacteristics(SystemFile(file));
}

int MapShared(sqlite3_file* file, int region, int size, int extend, void volatile** memory) {
    return SystemMethods(file).xShmMap(SystemFile(file), region, size, extend, memory);
}

int LockShared(sqlite3_file* file, int offset, int count, int flags) {
    return SystemMethods(file).xShmLock(SystemFile(file), offset, count, flags);
}

void BarrierShared(sqlite3_file* file) {
    SystemMethods(file).xShmBarrier(SystemFile(file));
}

int UnmapShared(sqlite3_file* file, int remove) {
    return SystemMethods(file).xShmUnmap(SystemFile(file), remove);
}

// Version 2, without memory mapping: what is mapped is not read through here.
constexpr sqlite3_io_methods kMethods = {2,
                                         Close,
                                         Read,
                                         Write,
                                         Truncate,
                                         Sync,
                                         FileSize,
                                         Lock,
                                         Unlock,
                                         CheckReservedLock,
                                         FileControl,
                                         SectorSize,
                                         DeviceCharacteristics,
                                         MapShared,
                                         LockShared,
                                         BarrierShared,
                                         UnmapShared,
                                         nullptr,
                                         nullptr};

int Open(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* outFlags) {
    if ((flags & SQLITE_OPEN_MAIN_DB) == 0)
        return theSystem->xOpen(theSystem, name, file, flags, outFlags);
    file->pMethods = nullptr;
    const int code = theSystem->xOpen(theSystem, name, SystemFile(file), flags, outFlags);
    if (code == SQLITE_OK)
        file->pMethods = &kMethods;
    return code;
}

// SQLite keeps pointers to what is registered, so it goes with the module; and the name has
// to be this module's alone, because a process may hold this code twice.
class Registration {
public:
    Registration() : m_name("zebx-checksums-" + RandomName()) {
        theSystem = sqlite3_initialize() == SQLITE_OK ? sqlite3_vfs_find(nullptr) : nullptr;
        if (!theSystem)
            return;
        m_vfs = *theSystem;
        m_vfs.szOsFile += static_cast<int>(sizeof(CheckedFile));
        m_vfs.pNext = nullptr;
        m_vfs.zName = m_name.c_str();
        m_vfs.xOpen = Open;
        sqlite3_vfs_register(&m_vfs, 0);
    }
    ~Registration() { sqlite3_vfs_unregister(&m_vfs); }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    const char* Name() const { return m_name.c_str(); }

private:
    std::string m_name;
    sqlite3_vfs m_vfs = {};
};

} // namespace

const char* PageChecksumVfs() {
    static const Registration registration;
    return registration.Name();
}

std::optional<PageProblem> TakePageProblem() {
    return std::exchange(theProblem, std::nullopt);
}

} // namespace Storage
