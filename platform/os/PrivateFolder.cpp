// SPDX-License-Identifier: MIT
#include "platform/os/PrivateFolder.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/os/System.h"

#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace Platform {
namespace {

using System::LastError;

std::error_code Error(int number) {
    return {number, std::system_category()};
}

std::error_code ResultOf(int returned) {
    return returned == -1 ? LastError() : std::error_code();
}

std::int64_t Nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

bool IsOwnFile(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
}

// Only this user's, and only his to enter.
std::error_code MakePrivate(int folder) {
    struct stat status = {};
    if (::fstat(folder, &status) == -1)
        return LastError();
    if (status.st_uid != ::geteuid())
        return Error(EPERM);
    return (status.st_mode & 0077) == 0 ? std::error_code() : ResultOf(::fchmod(folder, 0700));
}

std::error_code OpenRegular(int folder, const std::string& name, int flags, int& descriptor) {
    // Without waiting for the other end of a pipe that somebody put there.
    const int opened =
        ::openat(folder, name.c_str(), flags | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, 0600);
    if (opened == -1)
        return LastError();
    struct stat status = {};
    if (::fstat(opened, &status) == -1 || !IsOwnFile(status)) {
        ::close(opened);
        return Error(EPERM);
    }
    descriptor = opened;
    return {};
}

} // namespace

std::error_code PrivateFile::GetSize(std::uint64_t& bytes) const {
    struct stat status = {};
    const std::error_code error = ResultOf(::fstat(m_descriptor, &status));
    bytes = error ? 0 : static_cast<std::uint64_t>(status.st_size);
    return error;
}

std::error_code PrivateFile::ReadAt(std::uint64_t offset, char* into, std::size_t size) const {
    while (size > 0) {
        const ssize_t moved = ::pread(m_descriptor, into, size, static_cast<off_t>(offset));
        if (moved == -1 && errno == EINTR)
            continue;
        if (moved <= 0)
            return moved == 0 ? Error(EIO) : LastError();
        into += moved;
        offset += static_cast<std::uint64_t>(moved);
        size -= static_cast<std::size_t>(moved);
    }
    return {};
}

std::error_code PrivateFile::Append(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t moved = ::write(m_descriptor, bytes.data(), bytes.size());
        if (moved == -1 && errno == EINTR)
            continue;
        if (moved == -1)
            return LastError();
        bytes.remove_prefix(static_cast<std::size_t>(moved));
    }
    return {};
}

std::error_code PrivateFile::Touch() {
    return ResultOf(::futimens(m_descriptor, nullptr));
}

void PrivateFile::Close() {
    if (m_descriptor != -1)
        ::close(m_descriptor);
    m_descriptor = -1;
}

PrivateFolder::~PrivateFolder() {
    if (m_descriptor != -1)
        ::close(m_descriptor);
}

std::error_code PrivateFolder::Open(CStringView path) {
    CreateFolderChain(path, Access::Private);
    std::string native = LookUp(path);
    while (native.size() > 1 && native.back() == '/')
        native.pop_back(); // a link's name with "/" behind it is followed
    const int opened = ::open(native.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (opened == -1)
        return LastError();
    if (const std::error_code error = MakePrivate(opened)) {
        ::close(opened);
        return error;
    }
    if (m_descriptor != -1)
        ::close(m_descriptor);
    m_descriptor = opened;
    return {};
}

std::error_code PrivateFolder::List(std::vector<Entry>& entries) const {
    entries.clear();
    const int again = ::openat(m_descriptor, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> open(again == -1 ? nullptr : ::fdopendir(again),
                                                   ::closedir);
    if (!open)
        return LastError();
    while (const dirent* entry = ::readdir(open.get())) {
        struct stat status = {};
        if (::fstatat(m_descriptor, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            IsOwnFile(status))
            entries.push_back({entry->d_name, static_cast<std::uint64_t>(status.st_size),
                               Nanoseconds(status.st_mtim)});
    }
    return {};
}

std::error_code PrivateFolder::GetChange(std::int64_t& changedNs) const {
    struct stat status = {};
    const std::error_code error = ResultOf(::fstat(m_descriptor, &status));
    changedNs = Nanoseconds(status.st_mtim);
    return error;
}

std::error_code PrivateFolder::GetFreeBytes(std::uint64_t& bytes) const {
    struct statvfs space = {};
    const std::error_code error = ResultOf(::fstatvfs(m_descriptor, &space));
    bytes = std::uint64_t{space.f_bavail} * space.f_frsize;
    return error;
}

std::error_code PrivateFolder::OpenFile(const std::string& name, PrivateFile& file) const {
    file.Close();
    return OpenRegular(m_descriptor, name, O_RDONLY, file.m_descriptor);
}

std::error_code PrivateFolder::CreateFile(const std::string& name, PrivateFile& file) const {
    file.Close();
    return OpenRegular(m_descriptor, name, O_WRONLY | O_CREAT | O_EXCL, file.m_descriptor);
}

std::error_code PrivateFolder::Rename(const std::string& from, const std::string& to) const {
    return ResultOf(::renameat(m_descriptor, from.c_str(), m_descriptor, to.c_str()));
}

std::error_code PrivateFolder::Remove(const std::string& name) const {
    return ResultOf(::unlinkat(m_descriptor, name.c_str(), 0));
}

} // namespace Platform
