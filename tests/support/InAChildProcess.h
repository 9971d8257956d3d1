// SPDX-License-Identifier: MIT
// Runs a piece of a test in a child process: what it does to the process (limits, user,
// objects that exist once) ends with it.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

// Whether `body` ran to its end in a child of this process without a failed expectation;
// what failed is printed by the child.  Mock objects that live longer than `body` have to be
// verified in it.
template<class Body>
testing::AssertionResult PassesInAChildProcess(Body&& body) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        return testing::AssertionFailure() << "no child process";
    if (child == 0) {
        bool hasFailed = true;
        try {
            body();
            hasFailed = testing::Test::HasFailure();
        } catch (const std::exception& error) {
            std::printf("exception in the child: %s\n", error.what());
        }
        std::fflush(nullptr);
        std::_Exit(hasFailed ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "the child ended with wait status " << status;
}
