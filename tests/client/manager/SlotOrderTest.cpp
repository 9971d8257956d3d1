// SPDX-License-Identifier: MIT
// The order of the operations that cross module borders: plug-ins and sibling modules are
// built on their own, so each operation keeps its slot.
#include "ZEBXRepositoryClient/ContentKinds.h"
#include "ZEBXRepositoryClient/StorageBackend.h"

#include <bit>
#include <gtest/gtest.h>

namespace {

using namespace Repository;

// The slot of a virtual operation, counted from 1.  A pointer to one holds 1 + its offset
// in the table (Itanium C++ ABI, section 2.3).
template<class Operation>
int SlotOf(Operation operation) {
    struct Pointer {
        std::ptrdiff_t offset;
        std::ptrdiff_t adjustment;
    };
    const auto pointer = std::bit_cast<Pointer>(operation);
    return static_cast<int>((pointer.offset - 1) / static_cast<int>(sizeof(void*))) + 1;
}

} // namespace

TEST(SlotOrder, TheBackendsOperationsStandInTheirSlots) {
    EXPECT_EQ(SlotOf(&StorageBackend::Reserved1), 1);
    EXPECT_EQ(SlotOf(&StorageBackend::SetSettingsPath), 2);
    EXPECT_EQ(SlotOf(&StorageBackend::SaveSettings), 3);
    EXPECT_EQ(SlotOf(&StorageBackend::LoadSettings), 4);
    EXPECT_EQ(SlotOf(&StorageBackend::Reserved5), 5);
    EXPECT_EQ(SlotOf(&StorageBackend::Reserved6), 6);
    EXPECT_EQ(SlotOf(&StorageBackend::GetNameMsgNum), 7);
    EXPECT_EQ(SlotOf(&StorageBackend::ApplyConnectionParameters), 8);
    EXPECT_EQ(SlotOf(&StorageBackend::HasConnectionParameters), 9);
    EXPECT_EQ(SlotOf(&StorageBackend::SetVersion), 10);
    EXPECT_EQ(SlotOf(&StorageBackend::IsMultipleGSSupported), 11);
    EXPECT_EQ(SlotOf(&StorageBackend::GetAvailableGS), 12);
    EXPECT_EQ(SlotOf(&StorageBackend::LoadGS), 13);
    EXPECT_EQ(SlotOf(&StorageBackend::SaveGS), 14);
    EXPECT_EQ(SlotOf(&StorageBackend::GetRepositoryFile), 15);
    EXPECT_EQ(SlotOf(&StorageBackend::RegisterContent), 16);
    EXPECT_EQ(SlotOf(&StorageBackend::AmIAdmin), 17);
    EXPECT_EQ(SlotOf(&StorageBackend::AddRepositoryFiles), 18);
    EXPECT_EQ(SlotOf(&StorageBackend::GetRepositoryFileIds), 19);
    EXPECT_EQ(SlotOf(&StorageBackend::GetRepositoryItems), 20);
    EXPECT_EQ(SlotOf(&StorageBackend::DeleteRepositoryItem), 21);
    EXPECT_EQ(SlotOf(&StorageBackend::RenameRepositoryItem), 22);
    EXPECT_EQ(SlotOf(&StorageBackend::GetRepositoryItemById), 23);
    EXPECT_EQ(SlotOf(&StorageBackend::AddRepositoryItem), 24);
    EXPECT_EQ(SlotOf(&StorageBackend::GetChildCatalogItems), 25);
    EXPECT_EQ(SlotOf(&StorageBackend::GetCatalogItemById), 26);
    EXPECT_EQ(SlotOf(&StorageBackend::AddCatalogItem), 27);
    EXPECT_EQ(SlotOf(&StorageBackend::DeleteCatalogItem), 28);
    EXPECT_EQ(SlotOf(&StorageBackend::IsRepositoryAccessible), 29);
    EXPECT_EQ(SlotOf(&StorageBackend::EditConnectionParameters), 30);
}

TEST(SlotOrder, ThePluginHandsOutTheBackendBeforeItTakesTheMessageProvider) {
    EXPECT_EQ(SlotOf(&IPluginInfo::GetStorageBackend), 1);
    EXPECT_EQ(SlotOf(&IPluginInfo::SetMsgProvider), 2);
}

TEST(SlotOrder, AFileManagerGivesThenTakesThenNamesItself) {
    EXPECT_EQ(SlotOf(&IFileManager::GetFiles), 1);
    EXPECT_EQ(SlotOf(&IFileManager::PutFiles), 2);
    EXPECT_EQ(SlotOf(&IFileManager::GetId), 3);
}

TEST(SlotOrder, AMessageProviderHasOneOperation) {
    EXPECT_EQ(SlotOf(&IMsgProvider::GetMsg), 1);
}
