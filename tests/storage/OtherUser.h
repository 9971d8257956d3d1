// SPDX-License-Identifier: MIT
// Lets a test find out what a user without rights would: runs a part of it in a process
// of its own, as an ordinary user also when the tests are run by root.
#pragma once

#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace Storage {

inline constexpr uid_t kNobody = 65534;
inline constexpr uid_t kUnknownUser = 54321;

// What `work` (0 to 100) returns there; -1 when it did not end by itself.  Root becomes
// `user`; anybody else is ordinary already.
inline int AsOrdinaryUser(const std::function<int()>& work, uid_t user = kNobody) {
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && (setgid(user) != 0 || setuid(user) != 0))
            _exit(120);
        int result = 121;
        try {
            result = work();
        } catch (...) {
        }
        _exit(result);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

} // namespace Storage
