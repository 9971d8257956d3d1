// SPDX-License-Identifier: MIT
// A configuration dialog that needs a library which does not lie beside it.
#include "platform/Export.h"

extern "C" int AbsentAnswer();

extern "C" ZEBX_EXPORT void ShowNetworkRepositoryConfiguration() {
    AbsentAnswer();
}
