// SPDX-License-Identifier: MIT
#include "client/shell/RepositoryClientApp.h"

#include <gtest/gtest.h>

namespace {

class Probe : public Repository::CRepositoryClientApp {
public:
    using CRepositoryClientApp::Commands;
    using CRepositoryClientApp::Strings;
};

} // namespace

TEST(RepositoryClientApp, HasOneCommand) {
    const auto commands = Probe().Commands();
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_EQ(CStringView(commands[0].group), u"ZEBXRepositoryClient");
    EXPECT_EQ(CStringView(commands[0].globalName), u"test");
    EXPECT_EQ(CStringView(commands[0].localName), u"test");
    EXPECT_EQ(commands[0].flags, 1);
    EXPECT_TRUE(commands[0].handler);
}

TEST(RepositoryClientApp, HasItsNameAsStringResource100) {
    EXPECT_EQ(Probe().Strings(), (Platform::StringResources{{100, u"RepositoryClient"}}));
}
