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

// Whether this process may write to the existing file or folder.
ZEBX_EXPORT bool MayWrite(CStringView path);

// Reads a regular file into `bytes`; on failure `bytes` is empty.  A folder, a
// pipe and a device are errors (EISDIR, EINVAL), never waited on.
ZEBX_EXPORT std::error_code ReadFile(CStringView path, std::string& bytes);

// Makes the regular file `path` hold exactly `bytes`: truncated first, then
// written.  A link in the file's place is an error (ELOOP), as is anything that is
// not a regular file.  Success means that the system took every byte and closed the
// file without an error; on failure the file may be cut.
ZEBX_EXPORT std::error_code WriteFile(CStringView path, std::string_view bytes);

// As WriteFile, but whole or not at all: written beside it, flushed to the disk,
// then renamed into place, also over a crash.  On failure the old file stands.
ZEBX_EXPORT std::error_code ReplaceFile(CStringView path, std::string_view bytes, Access access);

// Adds `bytes` at the end of `path`, which is made private when it is new.
ZEBX_EXPORT std::error_code AppendFile(CStringView path, std::string_view bytes);

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
