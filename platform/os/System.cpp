// SPDX-License-Identifier: MIT
#include "platform/os/System.h"

#include "platform/os/SystemCalls.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <memory>
#include <signal.h>
#include <stdexcept>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace Platform::System {
namespace {

CallWatcher* theWatcher = nullptr;

// Whether a test wants the call to fail; errno is set then.
bool IsToFail(const char* call, const std::string& path) {
    if (!theWatcher) [[likely]]
        return false;
    errno = theWatcher->ErrorOf(call, path);
    return errno != 0;
}

// Makes a call that returns -1 on failure, unless a test wants it to fail.
template<typename Call>
auto Make(const char* name, const std::string& path, Call call) -> decltype(call()) {
    return IsToFail(name, path) ? -1 : call();
}

std::size_t BytesToMove(const char* call, std::size_t size) {
    return theWatcher ? theWatcher->BytesOf(call, size) : size;
}

// The system would take a path with a NUL for a shorter one.
const char* Argument(const std::string& path) {
    return path.find('\0') == std::string::npos ? path.c_str() : "";
}

std::error_code Error(int number) {
    return {number, std::system_category()};
}

// What a call that returns -1 on failure had to say.
std::error_code ResultOf(int returned) {
    return returned == -1 ? LastError() : std::error_code();
}

// The same; repeats it when a signal interrupted it.
template<typename Call>
auto Repeat(const char* name, const std::string& path, Call call) {
    auto returned = Make(name, path, call);
    while (returned == -1 && errno == EINTR)
        returned = Make(name, path, call);
    return returned;
}

} // namespace

void WatchCalls(CallWatcher* watcher) {
    theWatcher = watcher;
}

std::error_code LastError() {
    return Error(errno);
}

std::error_code Status(const std::string& path, Links links, struct stat& status) {
    const int flags = links == Links::Follow ? 0 : AT_SYMLINK_NOFOLLOW;
    return ResultOf(
        Make("fstatat", path, [&] { return ::fstatat(AT_FDCWD, Argument(path), &status, flags); }));
}

std::error_code CheckRegular(const struct stat& status) {
    if (S_ISREG(status.st_mode))
        return {};
    if (S_ISDIR(status.st_mode))
        return Error(EISDIR);
    return Error(S_ISLNK(status.st_mode) ? ELOOP : EINVAL);
}

std::error_code ListNames(const std::string& folder, std::vector<std::string>& names) {
    names.clear();
    const std::unique_ptr<DIR, int (*)(DIR*)> open(
        IsToFail("opendir", folder) ? nullptr : ::opendir(Argument(folder)), ::closedir);
    if (!open)
        return LastError();
    const auto next = [&] {
        errno = 0;
        return IsToFail("readdir", folder) ? nullptr : ::readdir(open.get());
    };
    while (const dirent* entry = next()) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    const std::error_code error = errno == 0 ? std::error_code() : LastError();
    if (error)
        names.clear();
    return error;
}

std::error_code CreateFolder(const std::string& path, mode_t mode) {
    return ResultOf(Make("mkdir", path, [&] { return ::mkdir(Argument(path), mode); }));
}

std::error_code Rename(const std::string& from, const std::string& to) {
    return ResultOf(Make("rename", to, [&] { return ::rename(Argument(from), Argument(to)); }));
}

std::error_code RenameUnlessTaken(const std::string& from, const std::string& to) {
    const auto call = [&] {
        return ::renameat2(AT_FDCWD, Argument(from), AT_FDCWD, Argument(to), RENAME_NOREPLACE);
    };
    return ResultOf(Make("renameat2", to, call));
}

std::error_code Link(const std::string& from, const std::string& to) {
    return ResultOf(Make("link", to, [&] { return ::link(Argument(from), Argument(to)); }));
}

std::error_code Remove(const std::string& path) {
    return ResultOf(Make("unlink", path, [&] { return ::unlink(Argument(path)); }));
}

std::error_code CheckMayRead(const std::string& path) {
    const auto call = [&] { return ::faccessat(AT_FDCWD, Argument(path), R_OK, AT_EACCESS); };
    return ResultOf(Make("faccessat", path, call));
}

std::error_code FreeBytes(const std::string& path, std::uint64_t& bytes) {
    struct statvfs space = {};
    const std::error_code error =
        ResultOf(Repeat("statvfs", path, [&] { return ::statvfs(Argument(path), &space); }));
    bytes = error ? 0 : std::uint64_t{space.f_bavail} * space.f_frsize;
    return error;
}

std::error_code CheckMayWrite(const std::string& path) {
    const auto call = [&] { return ::faccessat(AT_FDCWD, Argument(path), W_OK, AT_EACCESS); };
    return ResultOf(Make("faccessat", path, call));
}

bool HasExtendedAttributes(const std::string& path) {
    return Make("llistxattr", path, [&] { return ::llistxattr(Argument(path), nullptr, 0); }) > 0;
}

std::string CurrentFolder() {
    char folder[PATH_MAX];
    const bool known = !IsToFail("getcwd", ".") && ::getcwd(folder, sizeof(folder));
    return known ? folder : std::string();
}

std::string LinkTarget(const std::string& link) {
    std::string target(256, '\0');
    while (true) {
        const auto call = [&] { return ::readlink(Argument(link), target.data(), target.size()); };
        const ssize_t size = Make("readlink", link, call);
        if (size < 0)
            return {};
        if (static_cast<std::size_t>(size) < target.size()) {
            target.resize(static_cast<std::size_t>(size));
            return target;
        }
        target.resize(target.size() * 2);
    }
}

std::error_code FileSystemType(const std::string& path, std::uint32_t& type) {
    struct statfs status = {};
    const std::error_code error =
        ResultOf(Repeat("statfs", path, [&] { return ::statfs(Argument(path), &status); }));
    type = error ? 0 : static_cast<std::uint32_t>(status.f_type);
    if (theWatcher)
        type = theWatcher->FileSystemTypeOf(path, type);
    return error;
}

bool IsRunning(pid_t process) {
    return ::kill(process, 0) == 0 || errno != ESRCH;
}

std::error_code SyncFolder(const std::string& path) {
    constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    const int folder = Repeat("open", path, [&] { return ::open(Argument(path), kFlags); });
    if (folder == -1)
        return LastError();
    const std::error_code error = ResultOf(Repeat("fsync", path, [&] { return ::fsync(folder); }));
    ::close(folder);
    return error;
}

OpenFile::~OpenFile() {
    if (m_descriptor != -1)
        ::close(m_descriptor);
}

int OpenFile::OpenOnce(const std::string& path, int flags, mode_t mode) {
    const int all = flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    if (theWatcher)
        m_path = path;
    return Repeat("open", path, [&] { return ::open(Argument(path), all, mode); });
}

std::error_code OpenFile::Open(const std::string& path, int flags, mode_t mode) {
    m_descriptor = OpenOnce(path, flags, mode);
    if (m_descriptor == -1)
        return LastError();
    struct stat status = {};
    const std::error_code error = GetStatus(status);
    return error ? error : CheckRegular(status);
}

std::error_code OpenFile::OpenNameless(const std::string& folder, mode_t mode) {
    // A name is given by way of /proc, which some confined processes do not have.
    static const bool mayBeNamed = ::access("/proc/self/fd", X_OK) == 0;
    if (!mayBeNamed)
        return Error(EOPNOTSUPP);
    m_descriptor = OpenOnce(folder, O_WRONLY | O_TMPFILE, mode);
    // Systems that do not know the flag see an attempt to write to a folder.
    return m_descriptor == -1 ? Error(errno == EISDIR ? EOPNOTSUPP : errno) : std::error_code();
}

std::error_code OpenFile::GiveName(const std::string& path) {
    const std::string open = "/proc/self/fd/" + std::to_string(m_descriptor);
    return ResultOf(Make("linkat", path, [&] {
        return ::linkat(AT_FDCWD, open.c_str(), AT_FDCWD, Argument(path), AT_SYMLINK_FOLLOW);
    }));
}

std::error_code OpenFile::ReadAll(std::string& bytes) {
    std::error_code error;
    try {
        error = ReadToEnd(bytes);
    } catch (const std::bad_alloc&) {
        error = Error(ENOMEM);
    } catch (const std::length_error&) {
        error = Error(ENOMEM);
    }
    if (error)
        bytes.clear();
    return error;
}

std::error_code OpenFile::ReadToEnd(std::string& bytes) {
    struct stat status = {};
    if (const std::error_code error = GetStatus(status))
        return error;
    // One byte more than the size, so that the file's end is met without growing.  The
    // size is only a hint: a file may grow meanwhile, and those below /proc have none.
    bytes.resize(static_cast<std::size_t>(status.st_size) + 1);
    std::size_t filled = 0;
    while (true) {
        if (filled == bytes.size())
            bytes.resize(bytes.size() * 2);
        const ssize_t count = Repeat("read", m_path, [&] {
            return ::read(m_descriptor, bytes.data() + filled,
                          BytesToMove("read", bytes.size() - filled));
        });
        if (count == -1)
            return LastError();
        if (count == 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return {};
}

std::error_code OpenFile::WriteAll(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = Repeat("write", m_path, [&] {
            return ::write(m_descriptor, bytes.data(), BytesToMove("write", bytes.size()));
        });
        if (count == -1)
            return LastError();
        if (count == 0)
            return Error(EIO);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

std::error_code OpenFile::Truncate() {
    return ResultOf(Repeat("ftruncate", m_path, [&] { return ::ftruncate(m_descriptor, 0); }));
}

std::error_code OpenFile::Sync() {
    return ResultOf(Repeat("fsync", m_path, [&] { return ::fsync(m_descriptor); }));
}

std::error_code OpenFile::SetMode(mode_t mode) {
    return ResultOf(Make("fchmod", m_path, [&] { return ::fchmod(m_descriptor, mode); }));
}

std::error_code OpenFile::SetOwner(uid_t user, gid_t group) {
    const auto call = [&] { return ::fchown(m_descriptor, user, group); };
    return ResultOf(Make("fchown", m_path, call));
}

std::error_code OpenFile::GetStatus(struct stat& status) {
    return ResultOf(Make("fstat", m_path, [&] { return ::fstat(m_descriptor, &status); }));
}

std::error_code OpenFile::Close() {
    // Not repeated: the descriptor is gone, whatever close answers.
    if (::close(std::exchange(m_descriptor, -1)) == -1 && errno != EINTR)
        return LastError();
    return IsToFail("close", m_path) && errno != EINTR ? LastError() : std::error_code();
}

} // namespace Platform::System
