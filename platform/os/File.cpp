// SPDX-License-Identifier: MIT
#include "platform/os/File.h"

#include "platform/os/Path.h"
#include "platform/os/System.h"

#include <atomic>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace Platform {
namespace {

using System::Links;
using System::OpenFile;

constexpr mode_t kSharedFile = 0666;
constexpr mode_t kPrivateFile = 0600;
constexpr mode_t kSharedFolder = 0777;
constexpr mode_t kPrivateFolder = 0700;
constexpr mode_t kRights = 0777;

std::error_code WriteAndClose(OpenFile& file, std::string_view bytes) {
    if (const std::error_code error = file.WriteAll(bytes))
        return error;
    return file.Close();
}

std::string FolderOf(const std::string& native) {
    const std::size_t slash = native.rfind('/');
    return slash == std::string::npos ? "./" : native.substr(0, slash + 1);
}

// Opens a new file in `folder`, under a name that no other program uses meanwhile.
std::error_code OpenTemporary(const std::string& folder, mode_t mode, OpenFile& file,
                              std::string& path) {
    static std::atomic<unsigned> number = 0;
    constexpr int kTries = 1000;
    std::error_code error;
    for (int i = 0; i < kTries; ++i) {
        path = folder + ".zebx-" + std::to_string(::getpid()) + "-" + std::to_string(++number);
        error = file.Open(path, O_WRONLY | O_CREAT | O_EXCL, mode);
        if (error != std::errc::file_exists)
            break;
    }
    return error;
}

// Gives the file that will stand in `previous`'s place its owner and access rights.
std::error_code TakeOver(OpenFile& file, const struct stat& previous) {
    // Only the superuser may give a file away; others replace their own ones.
    (void)file.SetOwner(previous.st_uid, previous.st_gid);
    return file.SetMode(previous.st_mode & kRights);
}

std::error_code WriteToDisk(OpenFile& file, std::string_view bytes) {
    if (const std::error_code error = file.WriteAll(bytes))
        return error;
    if (const std::error_code error = file.Sync())
        return error;
    return file.Close();
}

} // namespace

PathKind KindOfPath(CStringView path) {
    struct stat status;
    if (System::Status(LookUp(path), Links::Follow, status))
        return PathKind::Missing;
    if (S_ISREG(status.st_mode))
        return PathKind::File;
    return S_ISDIR(status.st_mode) ? PathKind::Folder : PathKind::Other;
}

bool PathExists(CStringView path) {
    return KindOfPath(path) != PathKind::Missing;
}

std::optional<std::uint64_t> FileSize(CStringView path) {
    struct stat status;
    if (System::Status(LookUp(path), Links::Follow, status) || !S_ISREG(status.st_mode))
        return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

bool MayWrite(CStringView path) {
    return !System::CheckMayWrite(LookUp(path));
}

std::error_code ReadFile(CStringView path, std::string& bytes) {
    bytes.clear();
    OpenFile file;
    if (const std::error_code error = file.Open(LookUp(path), O_RDONLY))
        return error;
    return file.ReadAll(bytes);
}

std::error_code WriteFile(CStringView path, std::string_view bytes) {
    OpenFile file;
    if (const auto error = file.Open(LookUp(path), O_WRONLY | O_CREAT | O_NOFOLLOW, kSharedFile))
        return error;
    // Not by a flag of open, which would cut before it is known what was opened.
    if (const std::error_code error = file.Truncate())
        return error;
    return WriteAndClose(file, bytes);
}

std::error_code ReplaceFile(CStringView path, std::string_view bytes, Access access) {
    const std::string target = LookUp(path);
    const std::string folder = FolderOf(target);
    struct stat previous;
    const bool exists = !System::Status(target, Links::Keep, previous);
    if (exists)
        if (const std::error_code error = System::CheckRegular(previous))
            return error;

    OpenFile file;
    std::string temporary;
    const mode_t mode = access == Access::Private ? kPrivateFile : kSharedFile;
    std::error_code error = OpenTemporary(folder, mode, file, temporary);
    if (error)
        return error;
    if (exists && access == Access::Shared)
        error = TakeOver(file, previous);
    if (!error)
        error = WriteToDisk(file, bytes);
    if (!error)
        error = System::Rename(temporary, target);
    if (error) {
        System::Remove(temporary);
        return error;
    }
    // The new file stands already: a folder that cannot be flushed is no failure.
    System::SyncFolder(folder);
    return {};
}

std::error_code AppendFile(CStringView path, std::string_view bytes) {
    OpenFile file;
    constexpr int kFlags = O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW;
    if (const std::error_code error = file.Open(LookUp(path), kFlags, kPrivateFile))
        return error;
    return WriteAndClose(file, bytes);
}

std::error_code RenameFile(CStringView from, CStringView to) {
    const std::string source = LookUp(from);
    std::string target = LookUp(to);
    if (target == source) {
        // The names differ by case alone: the new one is meant as written.
        const std::string written = NativePath(to);
        target = FolderOf(source) + written.substr(written.rfind('/') + 1);
    }
    return System::Rename(source, target);
}

std::error_code RemoveFile(CStringView path) {
    const std::error_code error = System::Remove(LookUp(path));
    const bool missing =
        error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
    return missing ? std::error_code() : error;
}

bool CreateFolderChain(CStringView path, Access access) {
    const mode_t mode = access == Access::Private ? kPrivateFolder : kSharedFolder;
    const auto separator = [&](std::size_t from) { return path.find_first_of(u"\\/", from); };
    for (auto end = separator(1); end != CStringView::npos; end = separator(end + 1))
        System::CreateFolder(LookUp(path.substr(0, end)), mode);
    System::CreateFolder(LookUp(path), mode);
    return KindOfPath(path) == PathKind::Folder;
}

} // namespace Platform
