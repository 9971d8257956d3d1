// SPDX-License-Identifier: MIT
// Paths as the rest of the system writes them ("\" between folders) and as the
// operating system wants them.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace Platform {

// A path as the operating system wants it: UTF-8, "\" turned into "/".  The path
// is taken letter by letter; nothing is looked up.
ZEBX_EXPORT std::string NativePath(CStringView path);

// The reverse: "/" becomes "\".  A byte that UTF-8 does not allow and a "\" that
// belongs to a name become unpaired surrogates, so that the path still leads to
// its file and no name can pass for a folder.
ZEBX_EXPORT CString PathFromNative(std::string_view native);

// Where `path` lies on this disk: each folder and the last name are taken exactly
// as written when they exist and, failing that, as the first name of the same
// folder that is equal without regard to case; a part that exists in neither way
// is taken as written.  An empty path gives an empty one.
//
// Cost: one look per part when the names are exact; a scan of the folder when not.
ZEBX_EXPORT std::string LookUp(CStringView path);

// `path` with a "\" at its end; the empty path stays empty.
ZEBX_EXPORT CString AsFolder(CStringView path);

// The part after the last "\"; a "/" does not separate.
ZEBX_EXPORT CString FileNameOf(CStringView path);

// The part up to the last "\", that separator included; empty when there is none.
inline CStringView FolderOf(CStringView path) {
    return path.substr(0, path.rfind(u'\\') + 1);
}

} // namespace Platform
