// SPDX-License-Identifier: MIT
#include "platform/host/Interruption.h"

#include <gtest/gtest.h>
#include <signal.h>

using namespace Platform;

namespace {

using Handler = void (*)(int);

Handler HandlerOf(int signal) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

TEST(Interruption, IsNotThereWithoutAWish) {
    EXPECT_FALSE(IsInterrupted());
    const InterruptionGuard guard;
    EXPECT_FALSE(IsInterrupted());
}

TEST(Interruption, IsWishedByEachOfTheSignalsAndForgottenWithTheGuard) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        {
            const InterruptionGuard guard;
            raise(signal);
            EXPECT_TRUE(IsInterrupted()) << signal;
        }
        EXPECT_FALSE(IsInterrupted()) << signal;
    }
}

TEST(Interruption, TheNextSignalOfAnyKindHasItsDefaultAction) {
    const InterruptionGuard guard;
    raise(SIGINT);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        EXPECT_EQ(HandlerOf(signal), SIG_DFL) << signal;
}

TEST(Interruption, AfterTheGuardTheSignalsDoWhatTheyDidBefore) {
    const Handler before = HandlerOf(SIGINT);
    {
        const InterruptionGuard guard;
        EXPECT_NE(HandlerOf(SIGINT), before);
        raise(SIGINT);
    }
    EXPECT_EQ(HandlerOf(SIGINT), before);
}

TEST(Interruption, ASignalThatIsIgnoredStaysIgnored) {
    const Handler before = signal(SIGHUP, SIG_IGN);
    {
        const InterruptionGuard guard;
        raise(SIGHUP);
        EXPECT_FALSE(IsInterrupted());
        EXPECT_EQ(HandlerOf(SIGHUP), SIG_IGN);
        raise(SIGINT);
        EXPECT_EQ(HandlerOf(SIGHUP), SIG_IGN);
    }
    signal(SIGHUP, before);
}

} // namespace
