// SPDX-License-Identifier: MIT
// The superuser may do everything; what others may not is tried as one of them.
#pragma once

#include <stdexcept>
#include <unistd.h>

// Makes this process, which should be a child of the test's own, one of an ordinary user:
// of "nobody" when it is the superuser's, else it stays whose it is.  Folders that the
// process shall reach have to be open to others.
inline void BecomeOrdinaryUser() {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0))
        throw std::runtime_error("cannot become an ordinary user");
}
