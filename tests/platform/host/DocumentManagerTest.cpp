// SPDX-License-Identifier: MIT
#include "platform/host/DocumentManager.h"

#include <gtest/gtest.h>

using Platform::DocumentManager;

TEST(DocumentManager, ThereIsOne) {
    ASSERT_NE(DocumentManager::Instance(), nullptr);
    EXPECT_EQ(DocumentManager::Instance(), DocumentManager::Instance());
}

TEST(DocumentManager, ResourcesAreThoseOfTheLastModuleThatAsked) {
    DocumentManager& manager = *DocumentManager::Instance();
    const int outer = 0;
    const int inner = 0;
    EXPECT_EQ(manager.CurrentResources(), nullptr);
    manager.PushResources(&outer);
    manager.PushResources(&inner);
    EXPECT_EQ(manager.CurrentResources(), &inner);
    manager.PopResources();
    EXPECT_EQ(manager.CurrentResources(), &outer);
    manager.PopResources();
    EXPECT_EQ(manager.CurrentResources(), nullptr);
    manager.PopResources();
    EXPECT_EQ(manager.CurrentResources(), nullptr);
}

TEST(DocumentManager, LocksAreCounted) {
    DocumentManager& manager = *DocumentManager::Instance();
    EXPECT_FALSE(manager.IsDocumentLocked());
    manager.LockDocument();
    manager.LockDocument();
    manager.UnlockDocument();
    EXPECT_TRUE(manager.IsDocumentLocked());
    manager.UnlockDocument();
    EXPECT_FALSE(manager.IsDocumentLocked());
}

TEST(DocumentManager, AnUnlockTooManyDoesNotEatALaterLock) {
    DocumentManager& manager = *DocumentManager::Instance();
    manager.UnlockDocument();
    manager.LockDocument();
    EXPECT_TRUE(manager.IsDocumentLocked());
    manager.UnlockDocument();
}
