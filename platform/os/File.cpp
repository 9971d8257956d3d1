// SPDX-License-Identifier: MIT
#include "platform/os/File.h"

#include "platform/os/Path.h"
#include "platform/os/System.h"

#include <atomic>
#include <cstdlib>
#include <utility>

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
constexpr std::string_view kPassingName = ".zebx-";

std::error_code WriteAndClose(OpenFile& file, std::string_view bytes) {
    if (const std::error_code error = file.WriteAll(bytes))
        return error;
    return file.Close();
}

std::string FolderOf(const std::string& native) {
    const std::size_t slash = native.rfind('/');
    return slash == std::string::npos ? "./" : native.substr(0, slash + 1);
}

// No other program uses such a name meanwhile.
std::string PassingName(std::string folder) {
    static std::atomic<unsigned> number = 0;
    return folder.append(kPassingName) + std::to_string(::getpid()) + "-" +
           std::to_string(++number);
}

// Removes what processes of this machine that were killed left behind of files that had a
// passing name; looks once at each folder in turn.
void Tidy(const std::string& folder) {
    static std::string tidied;
    if (folder == tidied)
        return;
    tidied = folder;
    std::vector<std::string> names;
    System::ListNames(folder, names);
    for (const std::string& name : names)
        if (IsPassingName(name) &&
            !System::IsRunning(std::atoi(name.c_str() + kPassingName.size())))
            System::Remove(folder + name);
}

// A file that takes another one's place once it is whole.  Nobody sees it before, also
// when the process is killed, where the file system knows files without a name; else it
// has a passing one.
class Replacement {
public:
    explicit Replacement(std::string target) : m_target(std::move(target)) {}
    ~Replacement() {
        if (!m_name.empty())
            System::Remove(m_name);
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    std::error_code Open(mode_t mode);
    OpenFile& File() { return m_file; }
    // Closes the file and gives it its place.
    std::error_code PutInPlace();

private:
    // Runs `take` with passing names until one is free, which is the file's own then.
    template<typename Take>
    std::error_code TakePassingName(Take take);
    std::error_code CloseInPlace();

    std::string m_target;
    std::string m_name; // the passing one, while it has one
    bool m_isNameless = false;
    OpenFile m_file;
};

template<typename Take>
std::error_code Replacement::TakePassingName(Take take) {
    constexpr int kTries = 1000;
    std::error_code error;
    for (int i = 0; i < kTries; ++i) {
        // On other failures, too, the file may have been made.
        m_name = PassingName(FolderOf(m_target));
        error = take(m_name);
        if (error != std::errc::file_exists)
            return error;
    }
    m_name.clear();
    return error;
}

std::error_code Replacement::Open(mode_t mode) {
    const std::error_code error = m_file.OpenNameless(FolderOf(m_target), mode);
    m_isNameless = !error;
    if (error != std::errc::operation_not_supported)
        return error;
    return TakePassingName([&](const std::string& name) {
        return m_file.Open(name, O_WRONLY | O_CREAT | O_EXCL, mode);
    });
}

std::error_code Replacement::CloseInPlace() {
    const std::error_code error = m_file.Close();
    if (error)
        System::Remove(m_target);
    return error;
}

std::error_code Replacement::PutInPlace() {
    if (m_isNameless) {
        std::error_code error = m_file.GiveName(m_target);
        if (!error)
            return CloseInPlace();
        // Only a rename replaces what stands there.
        if (error == std::errc::file_exists) {
            Tidy(FolderOf(m_target));
            error = TakePassingName([&](const std::string& name) { return m_file.GiveName(name); });
        }
        if (error)
            return error;
    }
    if (const std::error_code error = m_file.Close())
        return error;
    const std::error_code error = System::Rename(m_name, m_target);
    if (!error)
        m_name.clear();
    return error;
}

// Gives the file the owner that `previous` has; only the superuser may give one away.
std::error_code KeepOwner(OpenFile& file, const struct stat& previous) {
    struct stat own;
    if (const std::error_code error = file.GetStatus(own))
        return error;
    const bool same = own.st_uid == previous.st_uid && own.st_gid == previous.st_gid;
    return same ? std::error_code() : file.SetOwner(previous.st_uid, previous.st_gid);
}

std::error_code KeepRights(OpenFile& file, const struct stat& previous) {
    return file.SetMode(previous.st_mode & kRights);
}

bool IsRightsError(const std::error_code& error) {
    return error == std::errc::permission_denied || error == std::errc::operation_not_permitted;
}

// Whether nobody would miss anything of the file but its bytes, were it another one.
bool IsReplaceable(const std::string& path, const struct stat& status) {
    return status.st_nlink == 1 && !System::HasExtendedAttributes(path);
}

std::error_code WriteNew(const std::string& target, std::string_view bytes) {
    Replacement file(target);
    if (const std::error_code error = file.Open(kSharedFile))
        return error;
    if (const std::error_code error = file.File().WriteAll(bytes))
        return error;
    return file.PutInPlace();
}

std::error_code WriteInPlace(const std::string& target, std::string_view bytes) {
    OpenFile file;
    if (const std::error_code error = file.Open(target, O_WRONLY | O_NOFOLLOW))
        return error;
    // Not by a flag of open, which would cut before it is known what was opened.
    if (const std::error_code error = file.Truncate())
        return error;
    return WriteAndClose(file, bytes);
}

std::error_code WriteOver(const std::string& target, const struct stat& previous,
                          std::string_view bytes) {
    Replacement file(target);
    std::error_code error = file.Open(kSharedFile);
    if (!error)
        error = KeepOwner(file.File(), previous);
    if (!error)
        error = KeepRights(file.File(), previous);
    // Others' files, and folders in which only the files may be written.
    if (IsRightsError(error))
        return WriteInPlace(target, bytes);
    if (!error)
        error = file.File().WriteAll(bytes);
    return error ? error : file.PutInPlace();
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

bool MayRead(CStringView path) {
    return !System::CheckMayRead(LookUp(path));
}

bool MayWrite(CStringView path) {
    const std::error_code error = System::CheckMayWrite(LookUp(path));
    // A disk that fails is no question of rights; writing to it will tell.
    return !error || error == std::errc::io_error;
}

std::error_code ReadFile(CStringView path, std::string& bytes) {
    bytes.clear();
    OpenFile file;
    if (const std::error_code error = file.Open(LookUp(path), O_RDONLY))
        return error;
    return file.ReadAll(bytes);
}

std::error_code WriteFile(CStringView path, std::string_view bytes) {
    return WriteNativeFile(LookUp(path), bytes);
}

std::error_code WriteNativeFile(const std::string& target, std::string_view bytes) {
    struct stat previous;
    std::error_code error = System::Status(target, Links::Keep, previous);
    if (error == std::errc::no_such_file_or_directory)
        return WriteNew(target, bytes);
    if (!error)
        error = System::CheckRegular(previous);
    if (!error)
        error = System::CheckMayWrite(target);
    if (error)
        return error;
    return IsReplaceable(target, previous) ? WriteOver(target, previous, bytes)
                                           : WriteInPlace(target, bytes);
}

std::error_code ReplaceFile(CStringView path, std::string_view bytes, Access access) {
    const std::string target = LookUp(path);
    struct stat previous;
    std::error_code error = System::Status(target, Links::Keep, previous);
    const bool exists = error != std::errc::no_such_file_or_directory;
    if (exists && !error)
        error = System::CheckRegular(previous);
    if (exists && error)
        return error;

    Replacement file(target);
    error = file.Open(access == Access::Private ? kPrivateFile : kSharedFile);
    if (!error && exists && access == Access::Shared) {
        error = KeepOwner(file.File(), previous);
        if (!error || IsRightsError(error)) // as far as this user may
            error = KeepRights(file.File(), previous);
    }
    if (!error)
        error = file.File().WriteAll(bytes);
    if (!error)
        error = file.File().Sync();
    if (!error)
        error = file.PutInPlace();
    // The new file stands already: a folder that cannot be flushed is no failure.
    if (!error)
        System::SyncFolder(FolderOf(target));
    return error;
}

bool IsPassingName(std::string_view name) {
    return name.starts_with(kPassingName);
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
