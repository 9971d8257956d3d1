// SPDX-License-Identifier: MIT
// Writes a fetched file to disk and, unlike CRepositoryFile::SaveFile, tells whether it
// stands there. Used by the transfers, which report every file that does not.
#pragma once

#include "ZEBXRepositoryClient/RepositoryFile.h"
#include "platform/os/FolderWriter.h"

namespace Repository {

// Writes the decoded content to `folder` followed directly by `name`, or by the file's
// own name when `name` is null; no folder is created. True only when the system took
// every byte, so that the file holds exactly the content; never throws.
bool WriteRepositoryFile(const CRepositoryFile& file, const char16_t* folder,
                         const char16_t* name) noexcept;

// The same to the folder that `writer` writes to, under the file's own name.
bool WriteRepositoryFile(const CRepositoryFile& file, Platform::FolderWriter& writer) noexcept;

} // namespace Repository
