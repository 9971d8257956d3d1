// SPDX-License-Identifier: MIT
// The user's own folders (XDG base directories).  Each ends with "\" and is empty
// when neither its variable nor a home folder is known; a relative value of a
// variable is ignored.  Nothing is created.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace Platform {

// The roaming application-data folder: $XDG_CONFIG_HOME, else ~/.config.
ZEBX_EXPORT CString RoamingFolder();

// $XDG_DATA_HOME, else ~/.local/share.
ZEBX_EXPORT CString DataFolder();

// $XDG_STATE_HOME, else ~/.local/state: log files.
ZEBX_EXPORT CString StateFolder();

// $XDG_CACHE_HOME, else ~/.cache: what may be deleted at any time.
ZEBX_EXPORT CString CacheFolder();

// The folder of the running program.
ZEBX_EXPORT CString ProgramFolder();

} // namespace Platform
