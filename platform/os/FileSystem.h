// SPDX-License-Identifier: MIT
// What kind of file system a path lies on.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace Platform {

// The name of the network file system ("NFS", "SMB") on which an existing file or folder
// lies; empty when it lies on none that this system knows, or when it cannot be told.  Every
// FUSE counts as one, since sshfs looks like any other from outside.
ZEBX_EXPORT CString NetworkFileSystemOf(CStringView path);

} // namespace Platform
