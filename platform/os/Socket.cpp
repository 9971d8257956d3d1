// SPDX-License-Identifier: MIT
#include "platform/os/Socket.h"

#include <sys/poll.h>

namespace Platform {

bool WaitForSocket(int descriptor, SocketWait wait, int milliseconds) {
    const short events = wait == SocketWait::Read ? POLLIN : POLLIN | POLLOUT;
    pollfd poll{descriptor, events, 0};
    // A signal ends the wait early, which the caller takes for the end of its time.
    return ::poll(&poll, 1, milliseconds) > 0;
}

bool IsSocketClosed(int descriptor) {
    pollfd poll{descriptor, POLLRDHUP, 0};
    return ::poll(&poll, 1, 0) > 0;
}

} // namespace Platform
