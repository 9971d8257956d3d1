// SPDX-License-Identifier: MIT
// Whether the configuration dialog can be shown on this workstation, and what its module and
// the client's say to each other.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

namespace Repository {

// Empty when CRepositoryStorageManager::ShowConfigurationDialog can show the dialog here;
// otherwise what is missing (a storage plug-in, the dialog's module, the window system's
// libraries, a display) and how to get it, in the user's language.  Loads what it looks for.
ZEBX_EXPORT CString WhyNoConfigurationDialog();

// The exports of ZEBXRepositoryClientDialog.arx: "ShowNetworkRepositoryConfiguration", and
// "WhyNoWindows", which fills in why no window can be shown; left empty when one can.
using ShowConfigurationFunction = void (*)();
using WhyNoWindowsFunction = void (*)(CString& reason);

} // namespace Repository
