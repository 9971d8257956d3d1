// SPDX-License-Identifier: MIT
#include "platform/Export.h"

extern "C" ZEBX_EXPORT int AbsentAnswer() {
    return 42;
}
