// SPDX-License-Identifier: MIT
// The superuser may do everything; what others may not is tried as one of them.
#pragma once

#include <cstdlib>
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

// The process is an ordinary user's for as long as the object lives: for what a child of the
// test's own cannot do.
class OrdinaryUserMeanwhile {
public:
    OrdinaryUserMeanwhile() {
        constexpr uid_t kNobody = 65534;
        if (m_isSuperuser && setresuid(kNobody, kNobody, 0) != 0)
            throw std::runtime_error("cannot become an ordinary user");
    }
    ~OrdinaryUserMeanwhile() {
        if (m_isSuperuser && setresuid(0, 0, 0) != 0)
            std::abort();
    }
    OrdinaryUserMeanwhile(const OrdinaryUserMeanwhile&) = delete;
    OrdinaryUserMeanwhile& operator=(const OrdinaryUserMeanwhile&) = delete;

private:
    bool m_isSuperuser = geteuid() == 0;
};
