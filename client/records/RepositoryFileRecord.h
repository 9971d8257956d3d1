// SPDX-License-Identifier: MIT
// The "#" record of a file, for the file itself and for the records that enclose it.
#pragma once

#include "ZEBXRepositoryClient/RepositoryFile.h"

namespace Repository {

// Appends the file's record to `text`.
void AppendRecord(const CRepositoryFile& file, CString& text);

// Reads a record as CRepositoryFile::Deserialize does, from one that ends with no NUL.
void ReadRecord(CRepositoryFile& file, CStringView record);

} // namespace Repository
