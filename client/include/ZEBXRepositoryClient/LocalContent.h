// SPDX-License-Identifier: MIT
// Which files of this workstation belong to a kind, and which kinds take part: the rules of
// the manager's transfers, for programs that look before they transfer.
#pragma once

#include "ZEBXRepositoryClient/ContentKinds.h"

namespace Repository {

// The folder into which a kind's stored files are fetched; "\" at its end.
ZEBX_EXPORT CString LocalFolder(const CNCFMetadata& kind);
ZEBX_EXPORT CString LocalFolder(const CFOCMetadata& kind);

// Whether the kind takes part when everything is transferred: a mandatory kind always, an
// optional one when the installation has switched it on.
ZEBX_EXPORT bool IsEnabled(const CNCFMetadata& kind);
ZEBX_EXPORT bool IsEnabled(const CFOCMetadata& kind);

// Where the kind's files are looked for when they are sent, in the order of sending.  The
// paths need not name files: whatever matches a pattern is among them, folders and "." and
// ".." too, and a file that the kind names may be missing; only what ReadLocalFile reads is
// sent.  None when a pattern matches nothing or memory runs out.
ZEBX_EXPORT std::vector<CString> LocalPaths(const CNCFMetadata& kind);
// A kind with a file manager leaves its files to it; the paths are then without meaning.
ZEBX_EXPORT std::vector<CString> LocalPaths(CFOCMetadata& kind);

// Reads a whole file as it is sent: its content, and as its name the part of the path behind
// the last "\".  False, with `name` as it was and `bytes` empty, when it cannot be opened and
// read, is no regular file, or has 4 GiB or more.
ZEBX_EXPORT bool ReadLocalFile(CStringView path, CString& name, std::string& bytes);

// A local file, or a pattern, and why the operating system did not give it out.
struct UnreadFile {
    CString path;
    CString reason;
};

// What the functions above and the manager's Save operations had to pass over since the last
// call because it could not be read, in their order; they say nothing of it themselves.  What
// is missing or is no file is not among it.
ZEBX_EXPORT std::vector<UnreadFile> TakeUnreadFiles();

} // namespace Repository
