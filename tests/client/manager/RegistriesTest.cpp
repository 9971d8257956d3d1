// SPDX-License-Identifier: MIT
#include "client/manager/ManagerTest.h"

using namespace Repository;

namespace {

boost::shared_ptr<CNCFMetadata> Drawings(const char16_t* id) {
    return boost::make_shared<CNCFMetadata>(id, 1, BaseFolderSupport, u"", NCFTypePattern, u"*", 0);
}

boost::shared_ptr<CFOCMetadata> Configuration(const char16_t* id) {
    return boost::make_shared<CFOCMetadata>(id, 1, BaseFolderSupport, u"", u"", 0);
}

boost::shared_ptr<MockFileManager> FileManager(const char16_t* id) {
    const auto fileManager = boost::make_shared<MockFileManager>();
    fileManager->id = id;
    return fileManager;
}

} // namespace

using Registries = ManagerTest;

TEST_F(Registries, GiveWhatWasRegisteredByItsIdentifier) {
    const auto ncf = Drawings(u"X");
    const auto foc = Configuration(u"X");
    const auto fileManager = FileManager(u"M");
    manager.RegisterNCFMetadata(ncf);
    manager.RegisterFOCMetadata(foc);
    manager.RegisterFileManager(fileManager);

    EXPECT_EQ(manager.GetNCFMetadataById(u"X"), ncf);
    EXPECT_EQ(manager.GetFOCMetadataById(u"X"), foc);
    EXPECT_EQ(manager.GetFileManagerById(u"M"), fileManager);
}

TEST_F(Registries, GiveAnEmptyHandleForAnUnknownIdentifier) {
    EXPECT_FALSE(manager.GetNCFMetadataById(u"nobody"));
    EXPECT_FALSE(manager.GetFOCMetadataById(u"nobody"));
    EXPECT_FALSE(manager.GetFileManagerById(u"nobody"));
    EXPECT_FALSE(manager.GetNCFMetadataById(nullptr));
    EXPECT_FALSE(manager.GetFOCMetadataById(nullptr));
    EXPECT_FALSE(manager.GetFileManagerById(nullptr));
}

TEST_F(Registries, TellCapitalsFromSmallLetters) {
    EXPECT_TRUE(manager.GetNCFMetadataById(u"002_NODE"));
    EXPECT_FALSE(manager.GetNCFMetadataById(u"002_node"));
    EXPECT_FALSE(manager.GetFOCMetadataById(u"008_gpe"));
    EXPECT_FALSE(manager.GetFileManagerById(u"gs"));
}

TEST_F(Registries, KeepTheFirstObjectOfAnIdentifier) {
    const auto node = manager.GetNCFMetadataById(u"002_NODE");
    const auto gpe = manager.GetFOCMetadataById(u"008_GPE");
    const auto gs = manager.GetFileManagerById(u"GS");

    manager.RegisterNCFMetadata(Drawings(u"002_NODE"));
    manager.RegisterFOCMetadata(Configuration(u"008_GPE"));
    manager.RegisterFileManager(FileManager(u"GS"));

    EXPECT_EQ(manager.GetNCFMetadataById(u"002_NODE"), node);
    EXPECT_EQ(manager.GetFOCMetadataById(u"008_GPE"), gpe);
    EXPECT_EQ(manager.GetFileManagerById(u"GS"), gs);
}

TEST_F(Registries, PassOverEmptyHandles) {
    const auto ncfCount = manager.GetNCFMetadata().size();
    const auto focCount = manager.GetFOCMetadata().size();

    manager.RegisterNCFMetadata({});
    manager.RegisterFOCMetadata({});
    manager.RegisterFileManager({});

    EXPECT_EQ(manager.GetNCFMetadata().size(), ncfCount);
    EXPECT_EQ(manager.GetFOCMetadata().size(), focCount);
}

TEST_F(Registries, AreWalkedInTheOrderOfTheirIdentifiersCodeUnits) {
    ForgetKinds();
    for (const char16_t* id : {u"b", u"B", u"a", u"10", u"9"})
        manager.RegisterNCFMetadata(Drawings(id));

    std::vector<CString> keys;
    for (const auto& [key, kind] : manager.GetNCFMetadata())
        keys.push_back(key);

    EXPECT_EQ(keys, (std::vector<CString>{u"10", u"9", u"B", u"a", u"b"}));
}

TEST_F(Registries, AreHandedOutThemselvesNotAsCopies) {
    EXPECT_EQ(&manager.GetNCFMetadata(), &manager.GetNCFMetadata());
    manager.GetFOCMetadata().erase(u"001_PUMPCURVE");
    EXPECT_FALSE(manager.GetFOCMetadataById(u"001_PUMPCURVE"));
}

TEST_F(Registries, BeginAndEndWithTheseBuiltInSets) {
    EXPECT_EQ(manager.GetFOCMetadata().begin()->first, u"001_PUMPCURVE");
    EXPECT_EQ(manager.GetFOCMetadata().rbegin()->first, u"008_GPE");
}

TEST_F(Registries, HoldTheFileManagerOfTheGeneralSettingsFromTheStart) {
    ASSERT_TRUE(manager.GetFileManagerById(u"GS"));
    EXPECT_EQ(manager.GetFileManagerById(u"GS")->GetId(), u"GS");
}

TEST_F(Registries, OfACopyShareTheirObjectsButAreMapsOfItsOwn) {
    CRepositoryStorageManager copy(manager);
    EXPECT_EQ(copy.GetNCFMetadata(), manager.GetNCFMetadata());
    EXPECT_EQ(copy.GetFOCMetadata(), manager.GetFOCMetadata());
    EXPECT_EQ(copy.GetFileManagerById(u"GS"), manager.GetFileManagerById(u"GS"));
    EXPECT_EQ(copy.GetStorage(), manager.GetStorage());

    copy.RegisterNCFMetadata(Drawings(u"only in the copy"));
    EXPECT_FALSE(manager.GetNCFMetadataById(u"only in the copy"));

    copy = manager;
    EXPECT_FALSE(copy.GetNCFMetadataById(u"only in the copy"));
}
