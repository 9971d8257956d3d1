// SPDX-License-Identifier: MIT
// The calls to the operating system's files, each wrapped once; used inside
// platform/os only.  Paths are native ones, taken as they stand; one that holds a NUL
// is not there (ENOENT) rather than cut.  Interrupted calls are repeated.
#pragma once

#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <sys/stat.h>
#include <sys/types.h>

namespace Platform::System {

// The error of the system call that has just failed.
std::error_code LastError();

enum class Links { Follow, Keep };

std::error_code Status(const std::string& path, Links links, struct stat& status);

// Nothing wrong with a regular file; EISDIR for a folder, ELOOP for a link, EINVAL for
// anything else.
std::error_code CheckRegular(const struct stat& status);

// The names in a folder, without "." and "..", in no order; none on failure.
std::error_code ListNames(const std::string& folder, std::vector<std::string>& names);

std::error_code CreateFolder(const std::string& path, mode_t mode);
std::error_code Rename(const std::string& from, const std::string& to);
std::error_code Remove(const std::string& path);
std::error_code CheckMayWrite(const std::string& path);

// Flushes a folder's names to the disk.
std::error_code SyncFolder(const std::string& path);

// An open regular file; closed, without regard to errors, when it goes out of scope.
class OpenFile {
public:
    OpenFile() = default;
    ~OpenFile();
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    // `flags` as for open(2); never waits for the other end of a pipe or for a device,
    // and never hands the file to a program that this process starts.
    std::error_code Open(const std::string& path, int flags, mode_t mode = 0);

    // Everything from the current position on; empty on failure.
    std::error_code ReadAll(std::string& bytes);

    std::error_code WriteAll(std::string_view bytes);
    std::error_code Truncate();
    std::error_code Sync();
    std::error_code SetMode(mode_t mode);
    std::error_code SetOwner(uid_t user, gid_t group);

    // Reports what the system could not write until now.
    std::error_code Close();

private:
    std::error_code ReadToEnd(std::string& bytes);

    int m_descriptor = -1;
};

} // namespace Platform::System
