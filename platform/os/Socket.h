// SPDX-License-Identifier: MIT
// Waiting for a socket that a library opened.
#pragma once

#include "platform/Export.h"

namespace Platform {

enum class SocketWait { Read, ReadOrWrite };

// Waits until the socket can be read, or also written where that is asked, at most for so
// long; 0 looks only.  Whether it can: one that was closed or broke can be read.
ZEBX_EXPORT bool WaitForSocket(int descriptor, SocketWait wait, int milliseconds);

// Whether the other side closed it, or it broke, as far as is known by now; what came before
// may still be there to read.
ZEBX_EXPORT bool IsSocketClosed(int descriptor);

} // namespace Platform
