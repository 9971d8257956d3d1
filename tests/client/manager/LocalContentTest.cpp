// SPDX-License-Identifier: MIT
// The rules themselves; that the transfers keep them is told in the transfers' own tests.
#include "ZEBXRepositoryClient/LocalContent.h"
#include "client/manager/ManagerTest.h"

using namespace Repository;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LocalContent : public ManagerTest {
protected:
    static CNCFMetadata Drawings(enmNCFType type, const char16_t* file,
                                 const char16_t* subfolder = u"sub", int optional = 0) {
        return {u"K", 1, BaseFolderSupport, subfolder, type, file, optional};
    }
    CString Support() const {
        return Platform::AsFolder(Platform::PathFromNative(SupportFolder().string()));
    }
};

TEST_F(LocalContent, OfAPatternIsEverythingThatMatchesInFoldedOrder) {
    Write(SupportFolder() / "sub/b.dwg", "b");
    Write(SupportFolder() / "sub/A.DWG", "a");
    Write(SupportFolder() / "sub/other.txt", "o");
    std::filesystem::create_directory(SupportFolder() / "sub/folder.dwg");
    EXPECT_THAT(LocalPaths(Drawings(NCFTypePattern, u"*.dwg")),
                ElementsAre(Support() + u"sub\\A.DWG", Support() + u"sub\\b.dwg",
                            Support() + u"sub\\folder.dwg"));
}

TEST_F(LocalContent, OfAPatternThatMatchesNothingIsNone) {
    EXPECT_THAT(LocalPaths(Drawings(NCFTypePattern, u"*.dwg")), IsEmpty());
}

TEST_F(LocalContent, OfASingleFileIsItsPathWhetherThereOrNot) {
    EXPECT_THAT(LocalPaths(Drawings(NCFTypeSingleFile, u"*.dwg")),
                ElementsAre(Support() + u"sub\\*.dwg"));
}

TEST_F(LocalContent, OfConfigurationFilesIsEachNamedPathInTheirOrder) {
    CFOCMetadata kind(u"K", 1, BaseFolderInstall, u"", u"", 0);
    kind.GetFileNames() = {u"z.xml", u"a.xml"};
    EXPECT_THAT(LocalPaths(kind),
                ElementsAre(workstation.Path() + u"z.xml", workstation.Path() + u"a.xml"));
    EXPECT_EQ(LocalFolder(kind), workstation.Path());
}

TEST_F(LocalContent, AMandatoryKindTakesPartAndAnOptionalOneWhenItIsOn) {
    EXPECT_TRUE(IsEnabled(Drawings(NCFTypePattern, u"*", u"", 0)));
    EXPECT_FALSE(IsEnabled(Drawings(NCFTypePattern, u"*", u"", 1)));
    EXPECT_FALSE(IsEnabled(CFOCMetadata(u"K", 1, BaseFolderSupport, u"", u"", 1)));
}

TEST_F(LocalContent, AFileIsReadWithItsContentAndTheNameThatItWasAskedBy) {
    Write(SupportFolder() / "UPPER.dwg", std::string("a\0b", 3));
    CString name;
    std::string bytes;
    EXPECT_TRUE(ReadLocalFile(Support() + u"upper.DWG", name, bytes));
    EXPECT_EQ(name, u"upper.DWG");
    EXPECT_EQ(bytes, std::string("a\0b", 3));
}

TEST_F(LocalContent, AFolderIsNotReadAndKeepsTheName) {
    std::filesystem::create_directories(SupportFolder() / "folder.dwg");
    CString name = u"before";
    std::string bytes = "before";
    EXPECT_FALSE(ReadLocalFile(Support() + u"folder.dwg", name, bytes));
    EXPECT_FALSE(ReadLocalFile(Support() + u"nothing.dwg", name, bytes));
    EXPECT_EQ(name, u"before");
    EXPECT_EQ(bytes, "");
}

} // namespace
