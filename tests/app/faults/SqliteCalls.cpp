// SPDX-License-Identifier: MIT
#include "SqliteCalls.h"

#include <cstdarg>
#include <fcntl.h>
#include <sqlite3.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace AppTest {
namespace {

FailingCalls* theCalls = nullptr;

// Whether the call is to fail; errno is set then.
bool IsToFail(const char* call, const std::string& path) {
    const int error =
        theCalls ? theCalls->ErrorOf(("sqlite " + std::string(call)).c_str(), path) : 0;
    if (error != 0)
        errno = error;
    return error != 0;
}

std::string PathOf(int descriptor) {
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t size = readlink(link.c_str(), path, sizeof path);
    return size < 0 ? std::string() : std::string(path, std::size_t(size));
}

std::string PathOf(const char* path) {
    return path;
}

// The call that SQLite makes by that name, with the same arguments, unless it is to fail.
template<const char* const& name, typename Result, typename First, typename... Others>
struct Hook {
    using Function = Result (*)(First, Others...);
    static inline Function original = nullptr;
    static Result Call(First first, Others... others) {
        return IsToFail(name, PathOf(first)) ? Result(-1) : original(first, others...);
    }
    static void Set(sqlite3_vfs& vfs) {
        original = reinterpret_cast<Function>(vfs.xGetSystemCall(&vfs, name));
        const auto mine = reinterpret_cast<sqlite3_syscall_ptr>(&Call);
        if (!original || vfs.xSetSystemCall(&vfs, name, mine) != SQLITE_OK)
            throw std::runtime_error(std::string("no system call ") + name);
    }
};

constexpr const char* kOpen = "open";
constexpr const char* kAccess = "access";
constexpr const char* kStat = "stat";
constexpr const char* kFstat = "fstat";
constexpr const char* kFtruncate = "ftruncate";
constexpr const char* kRead = "read";
constexpr const char* kPread = "pread64";
constexpr const char* kWrite = "write";
constexpr const char* kPwrite = "pwrite64";
constexpr const char* kUnlink = "unlink";
constexpr const char* kFchmod = "fchmod";

int (*theFcntl)(int, int, ...) = nullptr;

int Fcntl(int descriptor, int command, ...) {
    va_list rest;
    va_start(rest, command);
    void* argument = va_arg(rest, void*);
    va_end(rest);
    return IsToFail("fcntl", PathOf(descriptor)) ? -1 : theFcntl(descriptor, command, argument);
}

void* Map(void* address, std::size_t size, int protection, int flags, int descriptor,
          off_t offset) {
    return IsToFail("mmap", PathOf(descriptor))
               ? MAP_FAILED
               : mmap(address, size, protection, flags, descriptor, offset);
}

int Close(int descriptor) {
    const std::string path = PathOf(descriptor);
    const int result = close(descriptor);
    return IsToFail("close", path) ? -1 : result;
}

void HookIn() {
    sqlite3_initialize();
    sqlite3_vfs& vfs = *sqlite3_vfs_find("unix");
    Hook<kOpen, int, const char*, int, int>::Set(vfs);
    Hook<kAccess, int, const char*, int>::Set(vfs);
    Hook<kStat, int, const char*, struct stat*>::Set(vfs);
    Hook<kFstat, int, int, struct stat*>::Set(vfs);
    Hook<kFtruncate, int, int, off_t>::Set(vfs);
    Hook<kRead, ssize_t, int, void*, std::size_t>::Set(vfs);
    Hook<kPread, ssize_t, int, void*, std::size_t, off_t>::Set(vfs);
    Hook<kWrite, ssize_t, int, const void*, std::size_t>::Set(vfs);
    Hook<kPwrite, ssize_t, int, const void*, std::size_t, off_t>::Set(vfs);
    Hook<kUnlink, int, const char*>::Set(vfs);
    Hook<kFchmod, int, int, mode_t>::Set(vfs);
    theFcntl = reinterpret_cast<int (*)(int, int, ...)>(vfs.xGetSystemCall(&vfs, "fcntl"));
    vfs.xSetSystemCall(&vfs, "fcntl", reinterpret_cast<sqlite3_syscall_ptr>(&Fcntl));
    vfs.xSetSystemCall(&vfs, "mmap", reinterpret_cast<sqlite3_syscall_ptr>(&Map));
    vfs.xSetSystemCall(&vfs, "close", reinterpret_cast<sqlite3_syscall_ptr>(&Close));
}

} // namespace

void WatchSqlite(FailingCalls* calls) {
    static const bool hookedIn = (HookIn(), true);
    (void)hookedIn;
    theCalls = calls;
}

} // namespace AppTest

// SQLite offers no way to replace these; defined in the program they take the place of the
// C library's. Nothing is flushed, since no test cuts the power: that only takes time.
extern "C" __attribute__((visibility("default"))) int fsync(int descriptor) {
    using namespace AppTest;
    return IsToFail("fsync", PathOf(descriptor)) ? -1 : 0;
}

extern "C" __attribute__((visibility("default"))) int fdatasync(int descriptor) {
    using namespace AppTest;
    return IsToFail("fdatasync", PathOf(descriptor)) ? -1 : 0;
}
