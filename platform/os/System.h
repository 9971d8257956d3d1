// SPDX-License-Identifier: MIT
// The calls to the operating system's files, each wrapped once; used inside
// platform/os only.  Paths are native ones, taken as they stand; one that holds a NUL
// is not there (ENOENT) rather than cut.  Interrupted calls are repeated.
#pragma once

#include <cstdint>
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
// EEXIST when something has the new name already.
std::error_code RenameUnlessTaken(const std::string& from, const std::string& to);
// A second name for a file.
std::error_code Link(const std::string& from, const std::string& to);
std::error_code Remove(const std::string& path);
std::error_code CheckMayRead(const std::string& path);
std::error_code CheckMayWrite(const std::string& path);
// Whether the file has an access control list or other extended attributes.
bool HasExtendedAttributes(const std::string& path);

// Where relative paths start; empty when that folder is not there any more.
std::string CurrentFolder();
// What the link holds; empty when it cannot be read.
std::string LinkTarget(const std::string& link);

// What this user may still write on the file system of `path`.
std::error_code FreeBytes(const std::string& path, std::uint64_t& bytes);
// The type of the file system of `path`, as statfs(2) lists them; 0 on failure.
std::error_code FileSystemType(const std::string& path, std::uint32_t& type);
// Whether this machine has a process of that number; also when it is somebody else's.
bool IsRunning(pid_t process);

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

    // A new file in `folder` that has no name and vanishes unless it gets one.  EOPNOTSUPP
    // where there is no such thing.
    std::error_code OpenNameless(const std::string& folder, mode_t mode);
    // EEXIST when something has that name already.
    std::error_code GiveName(const std::string& path);

    // Everything from the current position on; empty on failure.
    std::error_code ReadAll(std::string& bytes);

    std::error_code WriteAll(std::string_view bytes);
    std::error_code Truncate();
    std::error_code Sync();
    std::error_code SetMode(mode_t mode);
    std::error_code SetOwner(uid_t user, gid_t group);
    std::error_code GetStatus(struct stat& status);

    // Reports what the system could not write until now.
    std::error_code Close();

private:
    std::error_code ReadToEnd(std::string& bytes);
    int OpenOnce(const std::string& path, int flags, mode_t mode);

    int m_descriptor = -1;
    std::string m_path; // known while a test watches
};

} // namespace Platform::System
