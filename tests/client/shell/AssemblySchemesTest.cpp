// SPDX-License-Identifier: MIT
// The module's command, byte for byte as it prints.
#include "client/manager/Installation.h"
#include "client/manager/LocalCatalogues.h"
#include "client/shell/AssemblySchemesCommand.h"
#include "platform/host/Prompt.h"
#include "platform/text/Numbers.h"

#include <fstream>
#include <gtest/gtest.h>

using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CCatalogManager;
using ZEBGis::Data::CDataBox;

namespace {

constexpr const char16_t* kCatalogue = u"ASSEMBLYSCHEMES_CATALOG";

class AssemblySchemes : public testing::Test {
protected:
    AssemblySchemes() {
        std::filesystem::create_directories(Drawing("").parent_path());
        DeclareCatalogues(installation, {Declared(kCatalogue)});
        Platform::SetPromptWriter([this](CStringView text) { m_printed.append(text); });
    }
    ~AssemblySchemes() override { Platform::SetPromptWriter({}); }

    std::filesystem::path Drawing(const std::string& name) const {
        return installation.Native() / "assemblyElements" / name;
    }
    void MakeDrawing(const std::string& name) const { std::ofstream(Drawing(name)) << "dwg"; }

    // An item with these texts as its properties from AS_BLOCK1 on.
    static CatalogItemPtr Scheme(const CString& id, const std::vector<CString>& blocks) {
        auto item = Leaf(id, id);
        int n = 0;
        for (const CString& block : blocks)
            SetBlock(item, ++n, CDataBox::OfText(block.c_str()));
        return item;
    }
    static void SetBlock(const CatalogItemPtr& item, int n, const CDataBox& value) {
        item->SetProperty((u"AS_BLOCK" + Platform::ToText(n)).c_str(), value);
    }

    CString Missing(const CString& name) const {
        return u"\nFali " + installation.Path() + u"assemblyElements\\" + name;
    }
    CString Printed() {
        m_printed.clear();
        Repository::CheckAssemblySchemes();
        return m_printed;
    }

    Installation installation;

private:
    CString m_printed;
};

TEST_F(AssemblySchemes, AnEmptyCataloguePrintsOnlyTheTotal) {
    EXPECT_EQ(Printed(), u"\ntotal blocks = 0");
}

TEST_F(AssemblySchemes, EveryNamedDrawingThatIsThereIsCounted) {
    MakeDrawing("a.dwg");
    MakeDrawing("b.dwg");
    MakeDrawing("c.dwg");
    MakeCatalogue(kCatalogue, {Scheme(u"1", {u"a.dwg", u"b.dwg", u"c.dwg"})});
    EXPECT_EQ(Printed(), u"\ntotal blocks = 3");
}

TEST_F(AssemblySchemes, AFileThatTwoItemsNameIsCountedTwice) {
    MakeDrawing("a.dwg");
    MakeCatalogue(kCatalogue, {Scheme(u"1", {u"a.dwg"}), Scheme(u"2", {u"a.dwg"})});
    EXPECT_EQ(Printed(), u"\ntotal blocks = 2");
}

TEST_F(AssemblySchemes, EachMissingFileHasALineAndTheWalkGoesOn) {
    MakeDrawing("b.dwg");
    MakeCatalogue(kCatalogue, {Scheme(u"1", {u"a.dwg", u"b.dwg", u"a.dwg"})});
    EXPECT_EQ(Printed(), Missing(u"a.dwg") + Missing(u"a.dwg") + u"\ntotal blocks = 1");
}

TEST_F(AssemblySchemes, AFolderInAFilesPlaceIsMissing) {
    std::filesystem::create_directories(Drawing("a.dwg"));
    MakeCatalogue(kCatalogue, {Scheme(u"1", {u"a.dwg"})});
    EXPECT_EQ(Printed(), Missing(u"a.dwg") + u"\ntotal blocks = 0");
}

TEST_F(AssemblySchemes, ANameIsPrintedAsItIsWhateverItHolds) {
    MakeCatalogue(kCatalogue, {Scheme(u"1", {u"čvor %s 100%d.dwg"})});
    EXPECT_EQ(Printed(), Missing(u"čvor %s 100%d.dwg") + u"\ntotal blocks = 0");
}

TEST_F(AssemblySchemes, EmptyNullAndAbsentPropertiesArePassedOverSilently) {
    const auto empty = Scheme(u"1", {u"", u"", u"", u"", u"", u""});
    const auto null = Leaf(u"2", u"2");
    for (int n = 1; n <= 6; ++n)
        SetBlock(null, n, CDataBox());
    MakeCatalogue(kCatalogue, {empty, null, Leaf(u"3", u"3")});
    EXPECT_EQ(Printed(), u"\ntotal blocks = 0");
}

TEST_F(AssemblySchemes, SixPropertiesAreReadByTheirNames) {
    const auto item = Leaf(u"1", u"1");
    for (const int n : {0, 7, 6, 1})
        SetBlock(item, n, CDataBox::OfText((u"block" + Platform::ToText(n)).c_str()));
    item->SetProperty(u"as_block2", CDataBox::OfText(u"other"));
    MakeCatalogue(kCatalogue, {item});
    EXPECT_EQ(Printed(), Missing(u"block1") + Missing(u"block6") + u"\ntotal blocks = 0");
}

TEST_F(AssemblySchemes, AGroupIsWalkedWholeBeforeItsNextSiblingAndItsOwnPropertiesDoNotCount) {
    const auto inner = Group(u"h", u"h", {Scheme(u"2", {u"2"}), Scheme(u"3", {u"3"})});
    const auto outer = Group(u"g", u"g", {Scheme(u"1", {u"1"}), inner, Scheme(u"4", {u"4"})});
    SetBlock(outer, 1, CDataBox::OfText(u"of the group"));
    MakeCatalogue(kCatalogue, {outer, Scheme(u"5", {u"5"})});
    EXPECT_EQ(Printed(), Missing(u"1") + Missing(u"2") + Missing(u"3") + Missing(u"4") +
                             Missing(u"5") + u"\ntotal blocks = 0");
}

TEST_F(AssemblySchemes, ACatalogueThatIsNotDeclaredPrintsWhyInPlaceOfACount) {
    DeclareCatalogues(installation, {});
    EXPECT_FALSE(CCatalogManager::Instance()->GetCatalog(kCatalogue, 1));
    const CString problem = CCatalogManager::Instance()->GetProblem();
    EXPECT_FALSE(problem.empty());
    EXPECT_EQ(Printed(), u"\n" + problem);
}

TEST_F(AssemblySchemes, ADamagedCataloguePrintsWhyInPlaceOfACount) {
    const auto file = CatalogueFile(installation, "ASSEMBLYSCHEMES_CATALOG");
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << "<catalogue";
    const CString printed = Printed();
    EXPECT_EQ(printed, u"\n" + CCatalogManager::Instance()->GetProblem());
    EXPECT_NE(printed.find(u"ASSEMBLYSCHEMES_CATALOG.xml"), CString::npos);
}

} // namespace
