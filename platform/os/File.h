// SPDX-License-Identifier: MIT
// Files, whole.  Paths are looked up without regard to case (see Path.h).
//
// Errors are the operating system's (std::system_category); none is thrown.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <cstdint>
#include <optional>
#include <system_error>

namespace Platform {

enum class Access {
    Shared, // as the process's umask says
    Private // files 0600, folders 0700
};

enum class PathKind { Missing, File, Folder, Other };

// What `path` names; links are followed.  What may not be looked at is Missing.
ZEBX_EXPORT PathKind KindOfPath(CStringView path);

// Whether `path` exists, as a file, as a folder or as anything else.
ZEBX_EXPORT bool PathExists(CStringView path);

// The size of a file; nothing when `path` is not a file.
ZEBX_EXPORT std::optional<std::uint64_t> FileSize(CStringView path);

// Whether this process may read the existing file or folder / write to it.
ZEBX_EXPORT bool MayRead(CStringView path);
ZEBX_EXPORT bool MayWrite(CStringView path);

// Reads a regular file into `bytes`; on failure `bytes` is empty.  A folder, a
// pipe and a device are errors (EISDIR, EINVAL), never waited on.
ZEBX_EXPORT std::error_code ReadFile(CStringView path, std::string& bytes);

// Makes the regular file `path` hold exactly `bytes`.  A link in the file's place is an
// error (ELOOP), as are anything else that is not a regular file and a file that this
// process may not write to.  Success means that the system took every byte and closed the
// file without an error.
//
// Everybody sees the old file or the new one, whole, also when the process is killed; on
// failure the old one stands.  What the file has besides its bytes stays: so one that has
// several names, extended attributes or an owner whom this process cannot give to a new
// file, or that lies in a folder in which this process may make none, is written where it
// is, and a failure may cut it.
ZEBX_EXPORT std::error_code WriteFile(CStringView path, std::string_view bytes);

// As WriteFile, to a native path that was looked up already.
std::error_code WriteNativeFile(const std::string& target, std::string_view bytes);

// As WriteFile, but always a new file, and flushed to the disk: whole or not at all also
// over a crash of the machine.
ZEBX_EXPORT std::error_code ReplaceFile(CStringView path, std::string_view bytes, Access access);

// Whether a file of that native name is on its way into another one's place, or is what a
// killed process left of it where the file system knows no files without names.
bool IsPassingName(std::string_view name);

// Gives the file a new name in one step, over a file that has it already.
ZEBX_EXPORT std::error_code RenameFile(CStringView from, CStringView to);

// Removes a file; one that is not there is not an error.
ZEBX_EXPORT std::error_code RemoveFile(CStringView path);

// Creates every level of `path`: the prefix before each "\" from the second
// character on, then the whole path.  Failures on the way are ignored, since a
// level that exists is the common case; the result says whether `path` is a folder
// in the end.  The empty path gives false and creates nothing.
ZEBX_EXPORT bool CreateFolderChain(CStringView path, Access access = Access::Shared);

} // namespace Platform
