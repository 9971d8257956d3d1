// SPDX-License-Identifier: MIT
#include "platform/host/CommandRegistry.h"

#include <gtest/gtest.h>

using Platform::CommandRegistry;
using Platform::FindService;

namespace {

void First() {}
void Second() {}

} // namespace

TEST(CommandRegistry, TheHostHasOneServiceOfCommands) {
    ASSERT_NE(FindService(u"ACAD_REGISTERED_COMMANDS"), nullptr);
    EXPECT_EQ(FindService(u"ACAD_REGISTERED_COMMANDS"),
              FindService(Platform::kRegisteredCommandsService));
    EXPECT_EQ(FindService(u"ACAD_OTHER"), nullptr);
    EXPECT_EQ(FindService(u""), nullptr);
}

TEST(CommandRegistry, ACommandIsFoundByEitherNameWithoutRegardToCase) {
    CommandRegistry registry;
    ASSERT_TRUE(registry.AddCommand({u"GROUP", u"test", u"Čvor", 1, First}));
    for (const CStringView name : {u"test", u"TEST", u"Čvor", u"ČVOR"}) {
        ASSERT_TRUE(registry.Find(name));
        EXPECT_EQ(registry.Find(name)->group, u"GROUP");
        EXPECT_EQ(registry.Find(name)->flags, 1);
        EXPECT_EQ(registry.Find(name)->handler, First);
    }
    EXPECT_FALSE(registry.Find(u"GROUP"));
    EXPECT_FALSE(registry.Find(u""));
}

TEST(CommandRegistry, TheFirstRegisteredCommandOfANameWins) {
    CommandRegistry registry;
    registry.AddCommand({u"A", u"one", u"same", 0, First});
    registry.AddCommand({u"B", u"same", u"other", 0, Second});
    EXPECT_EQ(registry.Find(u"same")->handler, First);
}

TEST(CommandRegistry, AGroupHasEachGlobalNameOnce) {
    CommandRegistry registry;
    EXPECT_TRUE(registry.AddCommand({u"GROUP", u"test", u"test", 0, First}));
    EXPECT_FALSE(registry.AddCommand({u"group", u"TEST", u"other", 0, Second}));
    EXPECT_TRUE(registry.AddCommand({u"GROUP", u"test2", u"test", 0, Second}));
    EXPECT_TRUE(registry.AddCommand({u"OTHER", u"test", u"test", 0, Second}));
    EXPECT_EQ(registry.Commands().size(), 3u);
    EXPECT_EQ(registry.Find(u"test")->handler, First);
}

TEST(CommandRegistry, ACommandNeedsAllItsNamesAndAHandler) {
    CommandRegistry registry;
    EXPECT_FALSE(registry.AddCommand({u"", u"g", u"l", 0, First}));
    EXPECT_FALSE(registry.AddCommand({u"G", u"", u"l", 0, First}));
    EXPECT_FALSE(registry.AddCommand({u"G", u"g", u"", 0, First}));
    EXPECT_FALSE(registry.AddCommand({u"G", u"g", u"l", 0, nullptr}));
    EXPECT_TRUE(registry.Commands().empty());
}

TEST(CommandRegistry, CommandsStandInOrderOfRegistration) {
    CommandRegistry registry;
    for (const CStringView name : {u"z", u"a", u"m"})
        registry.AddCommand({u"G", CString(name), CString(name), 0, First});
    EXPECT_EQ(registry.Commands()[0].globalName, u"z");
    EXPECT_EQ(registry.Commands()[1].globalName, u"a");
    EXPECT_EQ(registry.Commands()[2].globalName, u"m");
}

TEST(CommandRegistry, AGroupIsRemovedAsAWhole) {
    CommandRegistry registry;
    registry.AddCommand({u"A", u"one", u"one", 0, First});
    registry.AddCommand({u"B", u"two", u"two", 0, First});
    registry.AddCommand({u"A", u"three", u"three", 0, First});
    EXPECT_TRUE(registry.RemoveGroup(u"a"));
    ASSERT_EQ(registry.Commands().size(), 1u);
    EXPECT_EQ(registry.Commands().front().group, u"B");
    EXPECT_FALSE(registry.RemoveGroup(u"A"));
}
