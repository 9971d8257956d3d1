// SPDX-License-Identifier: MIT
#include "client/manager/ManagerTest.h"

using namespace Repository;

TEST(ContentKinds, ASetOfConfigurationFilesKeepsWhatItWasMadeFrom) {
    const CFOCMetadata kind(u"X", 17, BaseFolderSupport, u"cfg", u"M", 1);

    EXPECT_EQ(kind.GetId(), u"X");
    EXPECT_EQ(kind.GetMsgNum(), 17);
    EXPECT_EQ(kind.GetBaseFolder(), BaseFolderSupport);
    EXPECT_EQ(kind.GetSubfolder(), u"cfg\\");
    EXPECT_EQ(kind.GetFileManagerId(), u"M");
    EXPECT_EQ(kind.IsOptional(), 1);
}

TEST(ContentKinds, ASetsListsStartEmptyAndAreFilledInPlace) {
    CFOCMetadata kind(u"X", 17, BaseFolderSupport, u"", u"", 0);
    EXPECT_TRUE(kind.GetFileNames().empty());
    EXPECT_TRUE(kind.GetDependentNCFs().empty());

    kind.GetFileNames().push_back(u"a.xml");
    kind.GetDependentNCFs().push_back(u"002_NODE");

    EXPECT_EQ(kind.GetFileNames(), std::vector<CString>{u"a.xml"});
    EXPECT_EQ(kind.GetDependentNCFs(), std::vector<CString>{u"002_NODE"});
}

TEST(ContentKinds, ADrawingKindKeepsWhatItWasMadeFrom) {
    const CNCFMetadata kind(u"X", 17, BaseFolderInstall, u"a\\b", NCFTypeSingleFile, u"f.dwg", 1);

    EXPECT_EQ(kind.GetId(), u"X");
    EXPECT_EQ(kind.GetMsgNum(), 17);
    EXPECT_EQ(kind.GetBaseFolder(), BaseFolderInstall);
    EXPECT_EQ(kind.GetSubfolder(), u"a\\b\\");
    EXPECT_EQ(kind.GetType(), NCFTypeSingleFile);
    EXPECT_EQ(kind.GetFile(), u"f.dwg");
    EXPECT_EQ(kind.IsOptional(), 1);
}

TEST(ContentKinds, ASubfolderEndsWithExactlyOneSeparator) {
    const auto ncf = [](const char16_t* subfolder) {
        return CNCFMetadata(u"X", 1, BaseFolderSupport, subfolder, NCFTypePattern, u"*", 0)
            .GetSubfolder();
    };
    const auto foc = [](const char16_t* subfolder) {
        return CFOCMetadata(u"X", 1, BaseFolderSupport, subfolder, u"", 0).GetSubfolder();
    };

    EXPECT_EQ(ncf(u"label"), u"label\\");
    EXPECT_EQ(ncf(u"label\\"), u"label\\");
    EXPECT_EQ(foc(u"label"), u"label\\");
    EXPECT_EQ(foc(u"label\\"), u"label\\");
}

TEST(ContentKinds, NoSubfolderStaysEmpty) {
    EXPECT_EQ(CNCFMetadata(u"X", 1, BaseFolderSupport, u"", NCFTypePattern, u"*", 0).GetSubfolder(),
              u"");
    EXPECT_EQ(CFOCMetadata(u"X", 1, BaseFolderSupport, u"", u"", 0).GetSubfolder(), u"");
}

TEST(ContentKinds, NullTextsReadAsEmpty) {
    const CFOCMetadata foc(nullptr, 1, BaseFolderSupport, nullptr, nullptr, 0);
    EXPECT_EQ(foc.GetId() + foc.GetSubfolder() + foc.GetFileManagerId(), u"");
    const CNCFMetadata ncf(nullptr, 1, BaseFolderSupport, nullptr, NCFTypePattern, nullptr, 0);
    EXPECT_EQ(ncf.GetId() + ncf.GetSubfolder() + ncf.GetFile(), u"");
}

TEST(ContentKinds, TheFileManagerOfTheGeneralSettingsDoesNothing) {
    CGSFileManager fileManager;
    RepositoryFiles files{boost::make_shared<CRepositoryFile>()};
    const RepositoryFiles before = files;

    fileManager.GetFiles(files, nullptr);
    EXPECT_EQ(files, before);
    fileManager.PutFiles(files, 0, nullptr);
    EXPECT_EQ(files, before);
    EXPECT_EQ(fileManager.GetId(), u"GS");
}

using ContentKindsOfTheManager = ManagerTest;

TEST_F(ContentKindsOfTheManager, ASetWithoutAFileManagerIdentifierHasNoFileManager) {
    EXPECT_FALSE(CFOCMetadata(u"X", 1, BaseFolderSupport, u"", u"", 0).GetFileManager());
}

TEST_F(ContentKindsOfTheManager, ASetWithAnUnknownFileManagerIdentifierHasNoFileManager) {
    EXPECT_FALSE(CFOCMetadata(u"X", 1, BaseFolderSupport, u"", u"nobody", 0).GetFileManager());
}

TEST_F(ContentKindsOfTheManager, ASetFindsItsRegisteredFileManager) {
    const CFOCMetadata kind(u"X", 1, BaseFolderSupport, u"", u"GS", 0);
    ASSERT_TRUE(kind.GetFileManager());
    EXPECT_EQ(kind.GetFileManager(), manager.GetFileManagerById(u"GS"));
}

TEST_F(ContentKindsOfTheManager, TheBuiltInSetsAreTheseInThisOrder) {
    struct Row {
        const char16_t* id;
        int msgNum;
        int optional;
        const char16_t* fileName;
        std::vector<CString> dependents;
    };
    const std::vector<Row> expected{
        {u"001_PUMPCURVE", 10321, 1, u"ZEBXCurveCatalog.xml", {}},
        {u"002_TERRAINTYPE", 10324, 1, u"ZEBXTerrainType.cfg", {}},
        {u"003_MANHOLE_RULES", 10325, 1, u"importMappings_Manhole.xml", {}},
        {u"004_PIPE_RULES", 10326, 1, u"importMappings_Pipe.xml", {}},
        {u"005_TOPOLOGY_CONFIG", 7082, 0, u"topologyConfiguration.xml", {u"002_NODE"}},
        {u"006_ALIGNPREVIEW", 10328, 1, u"AxisPreviews.xml", {}},
        {u"007_ALIGNLABEL", 10329, 1, u"GeoLabelDef.xml", {}},
        {u"008_GPE", 10174, 1, u"GPEConfiguration.xml", {u"005_GPEBLOCKS"}},
    };

    ASSERT_EQ(manager.GetFOCMetadata().size(), expected.size());
    auto row = expected.begin();
    for (const auto& [key, kind] : manager.GetFOCMetadata()) {
        EXPECT_EQ(key, row->id);
        EXPECT_EQ(kind->GetId(), row->id);
        EXPECT_EQ(kind->GetMsgNum(), row->msgNum);
        EXPECT_EQ(kind->IsOptional(), row->optional);
        EXPECT_EQ(kind->GetFileNames(), std::vector<CString>{row->fileName});
        EXPECT_EQ(kind->GetDependentNCFs(), row->dependents);
        EXPECT_EQ(kind->GetBaseFolder(), 1);
        EXPECT_EQ(kind->GetSubfolder(), u"");
        EXPECT_EQ(kind->GetFileManagerId(), u"");
        ++row;
    }
}

TEST_F(ContentKindsOfTheManager, TheBuiltInDrawingKindsAreTheseInThisOrder) {
    struct Row {
        const char16_t* id;
        int msgNum;
        const char16_t* subfolder;
        int optional;
    };
    const std::vector<Row> expected{
        {u"001_LABEL", 10313, u"label\\", 0},
        {u"002_NODE", 10314, u"nodes\\", 0},
        {u"003_PIPE", 10315, u"PipeCatalogueBlocks\\", 0},
        {u"004_SYMBOL", 10316, u"symbol\\", 0},
        {u"005_GPEBLOCKS", 10385, u"GPE\\", 1},
    };

    ASSERT_EQ(manager.GetNCFMetadata().size(), expected.size());
    auto row = expected.begin();
    for (const auto& [key, kind] : manager.GetNCFMetadata()) {
        EXPECT_EQ(key, row->id);
        EXPECT_EQ(kind->GetId(), row->id);
        EXPECT_EQ(kind->GetMsgNum(), row->msgNum);
        EXPECT_EQ(kind->GetSubfolder(), row->subfolder);
        EXPECT_EQ(kind->IsOptional(), row->optional);
        EXPECT_EQ(kind->GetBaseFolder(), 1);
        EXPECT_EQ(kind->GetType(), 0);
        EXPECT_EQ(kind->GetFile(), u"*.dwg");
        ++row;
    }
}
