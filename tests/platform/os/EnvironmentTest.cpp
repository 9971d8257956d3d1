// SPDX-License-Identifier: MIT
#include "platform/os/Environment.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "support/InAChildProcess.h"

#include <ctime>
#include <fcntl.h>
#include <pwd.h>
#include <stdlib.h>

#include <gtest/gtest.h>

using Platform::EnvironmentValue;

TEST(Environment, AVariableIsReadAsUtf8) {
    setenv("ZEBX_TEST_VARIABLE", "čvor \xFF", 1);
    EXPECT_EQ(EnvironmentValue("ZEBX_TEST_VARIABLE"), Platform::FromUtf8("čvor \xFF"));
}

TEST(Environment, AnEmptyVariableIsAsGoodAsNone) {
    setenv("ZEBX_TEST_VARIABLE", "", 1);
    EXPECT_EQ(EnvironmentValue("ZEBX_TEST_VARIABLE"), std::nullopt);
    unsetenv("ZEBX_TEST_VARIABLE");
    EXPECT_EQ(EnvironmentValue("ZEBX_TEST_VARIABLE"), std::nullopt);
}

TEST(Environment, TheUserHasANameOrElseANumber) {
    const passwd* user = getpwuid(geteuid());
    EXPECT_EQ(Platform::ToUtf8(Platform::UserName()),
              user ? std::string(user->pw_name) : std::to_string(geteuid()));
}

TEST(Environment, AUserWhomNobodyKnowsIsANumber) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become a user whom nobody knows";
    EXPECT_TRUE(PassesInAChildProcess([] {
        constexpr uid_t kNobodyKnows = 3'999'999;
        ASSERT_EQ(getpwuid(kNobodyKnows), nullptr);
        ASSERT_EQ(setuid(kNobodyKnows), 0);
        EXPECT_EQ(Platform::UserName(), u"3999999");
    }));
}

TEST(Environment, TheWorkstationHasAName) {
    char name[256] = {};
    ASSERT_EQ(gethostname(name, sizeof(name) - 1), 0);
    EXPECT_EQ(Platform::ToUtf8(Platform::HostName()), name);
}

TEST(Environment, NowIsWrittenInUtc) {
    setenv("TZ", "Europe/Zagreb", 1);
    tzset();
    const std::time_t before = std::time(nullptr);
    const std::string text = Platform::ToUtf8(Platform::UtcNow());
    const std::time_t after = std::time(nullptr);
    std::tm parts = {};
    const char* rest = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    ASSERT_NE(rest, nullptr);
    EXPECT_STREQ(rest, "");
    EXPECT_EQ(text.size(), 20u);
    const std::time_t now = timegm(&parts);
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(Environment, APseudoTerminalIsATerminalAndAPipeIsNot) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal != -1) {
        EXPECT_TRUE(Platform::IsTerminal(terminal));
        close(terminal);
    }
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_FALSE(Platform::IsTerminal(ends[1]));
    close(ends[0]);
    close(ends[1]);
    EXPECT_FALSE(Platform::IsTerminal(-1));
}
