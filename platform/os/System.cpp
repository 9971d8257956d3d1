// SPDX-License-Identifier: MIT
#include "platform/os/System.h"

#include <cerrno>
#include <memory>
#include <stdexcept>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace Platform::System {
namespace {

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

// Repeats a call that a signal interrupted.
template<typename Call>
auto Repeated(Call call) {
    auto returned = call();
    while (returned == -1 && errno == EINTR)
        returned = call();
    return returned;
}

} // namespace

std::error_code LastError() {
    return Error(errno);
}

std::error_code Status(const std::string& path, Links links, struct stat& status) {
    const int flags = links == Links::Follow ? 0 : AT_SYMLINK_NOFOLLOW;
    return ResultOf(::fstatat(AT_FDCWD, Argument(path), &status, flags));
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
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(Argument(folder)), ::closedir);
    if (!open)
        return LastError();
    errno = 0;
    while (const dirent* entry = ::readdir(open.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
        errno = 0;
    }
    const std::error_code error = errno == 0 ? std::error_code() : LastError();
    if (error)
        names.clear();
    return error;
}

std::error_code CreateFolder(const std::string& path, mode_t mode) {
    return ResultOf(::mkdir(Argument(path), mode));
}

std::error_code Rename(const std::string& from, const std::string& to) {
    return ResultOf(::rename(Argument(from), Argument(to)));
}

std::error_code Remove(const std::string& path) {
    return ResultOf(::unlink(Argument(path)));
}

std::error_code CheckMayWrite(const std::string& path) {
    return ResultOf(::faccessat(AT_FDCWD, Argument(path), W_OK, AT_EACCESS));
}

std::error_code SyncFolder(const std::string& path) {
    const int folder =
        Repeated([&] { return ::open(Argument(path), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (folder == -1)
        return LastError();
    const std::error_code error = ResultOf(Repeated([&] { return ::fsync(folder); }));
    ::close(folder);
    return error;
}

OpenFile::~OpenFile() {
    if (m_descriptor != -1)
        ::close(m_descriptor);
}

std::error_code OpenFile::Open(const std::string& path, int flags, mode_t mode) {
    const int all = flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    m_descriptor = Repeated([&] { return ::open(Argument(path), all, mode); });
    if (m_descriptor == -1)
        return LastError();
    struct stat status = {};
    const std::error_code error = ResultOf(::fstat(m_descriptor, &status));
    return error ? error : CheckRegular(status);
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
    if (const std::error_code error = ResultOf(::fstat(m_descriptor, &status)))
        return error;
    // One byte more than the size, so that the file's end is met without growing.  The
    // size is only a hint: a file may grow meanwhile, and those below /proc have none.
    bytes.resize(static_cast<std::size_t>(status.st_size) + 1);
    std::size_t filled = 0;
    while (true) {
        if (filled == bytes.size())
            bytes.resize(bytes.size() * 2);
        const ssize_t count = Repeated(
            [&] { return ::read(m_descriptor, bytes.data() + filled, bytes.size() - filled); });
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
        const ssize_t count =
            Repeated([&] { return ::write(m_descriptor, bytes.data(), bytes.size()); });
        if (count == -1)
            return LastError();
        if (count == 0)
            return Error(EIO);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

std::error_code OpenFile::Truncate() {
    return ResultOf(Repeated([&] { return ::ftruncate(m_descriptor, 0); }));
}

std::error_code OpenFile::Sync() {
    return ResultOf(Repeated([&] { return ::fsync(m_descriptor); }));
}

std::error_code OpenFile::SetMode(mode_t mode) {
    return ResultOf(::fchmod(m_descriptor, mode));
}

std::error_code OpenFile::SetOwner(uid_t user, gid_t group) {
    return ResultOf(::fchown(m_descriptor, user, group));
}

std::error_code OpenFile::Close() {
    // Not repeated: the descriptor is gone, whatever close answers.
    const int returned = ::close(std::exchange(m_descriptor, -1));
    return returned == -1 && errno != EINTR ? LastError() : std::error_code();
}

} // namespace Platform::System
