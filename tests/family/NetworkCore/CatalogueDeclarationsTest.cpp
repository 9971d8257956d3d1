// SPDX-License-Identifier: MIT
#include "Catalogues.h"

namespace ZEBGis::Data {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CatalogueDeclarations : public testing::Test {
protected:
    // The installation folder of this station has messages, and what `Declare` puts there.
    CatalogueDeclarations() {
        std::filesystem::create_directories(m_install);
        std::filesystem::create_directories(m_support);
        std::filesystem::create_directory_symlink(
            std::filesystem::path(getenv("ZEBX_INSTALL")) / "messages", m_install / "messages");
        m_station.Set("ZEBX_INSTALL", m_install.string());
    }

    static void Declare(const std::filesystem::path& folder, const std::string& declarations) {
        MakeFile(folder / "Catalogues.xml", "<catalogues>" + declarations + "</catalogues>");
    }
    // The declarations are read anew when the folders change.
    void ReadAnew() {
        m_station.Set("ZEBX_SUPPORT", (m_station.Folder().Native() / "elsewhere").string());
        m_manager->GetCatalogRegistry();
        m_station.Set("ZEBX_SUPPORT", m_support.string());
    }
    std::vector<std::string> References() {
        std::vector<std::string> references;
        for (const auto& metadata : m_manager->GetCatalogRegistry())
            references.push_back(Platform::ToUtf8(metadata->GetCatalogReference()));
        return references;
    }
    std::vector<std::string> Problems() {
        std::vector<std::string> problems;
        for (const CString& problem : m_manager->GetRegistryProblems())
            problems.push_back(Platform::ToUtf8(problem));
        return problems;
    }
    // Expects that the declaration has no effect, and why.
    void ExpectRefused(const std::string& declaration, const std::string& reason) {
        Declare(m_support, "\n" + declaration + "\n<catalogue reference='good'/>");
        ReadAnew();
        EXPECT_THAT(References(), ElementsAre("good"));
        EXPECT_THAT(Problems(),
                    ElementsAre(testing::AllOf(HasSubstr((m_support / "Catalogues.xml").string()),
                                               HasSubstr("line 2"), HasSubstr(reason))));
    }

    Workstation m_station;
    std::filesystem::path m_install = m_station.Folder().Native() / "install";
    std::filesystem::path m_support = m_station.Folder().Native() / "support";
    CCatalogManager* m_manager = CCatalogManager::Instance();
};

TEST_F(CatalogueDeclarations, WithoutAnyTheRegistryIsEmpty) {
    ReadAnew();
    EXPECT_THAT(References(), IsEmpty());
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(CatalogueDeclarations, TheInstallationsComeBeforeTheSupportFoldersInTheirOrder) {
    Declare(m_support, "<catalogue reference='s2'/><catalogue reference='s1'/>");
    Declare(m_install, "<catalogue reference='i2'/><catalogue reference='i1'/>");
    ReadAnew();
    EXPECT_THAT(References(), ElementsAre("i2", "i1", "s2", "s1"));
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(CatalogueDeclarations, AReferenceThatIsDeclaredTwiceKeepsItsFirstDeclaration) {
    Declare(m_install, "<catalogue reference='a' hidden='yes'/>");
    Declare(m_support, "<catalogue reference='a'/>\n<catalogue reference='A'/>"
                       "<catalogue reference='b'/>");
    ReadAnew();
    EXPECT_THAT(References(), ElementsAre("a", "b"));
    EXPECT_NE(m_manager->GetCatalogMetadata(u"a")->GetHidden(), 0);
    EXPECT_THAT(Problems(), ElementsAre(HasSubstr("line 1: the catalogue \"a\" is declared"),
                                        HasSubstr("line 2: the catalogue \"A\" is declared")));
}

TEST_F(CatalogueDeclarations, AShortDeclarationGetsItsDefaults) {
    Declare(m_support, "<catalogue reference='a'/>");
    ReadAnew();
    const auto metadata = m_manager->GetCatalogMetadata(u"a");
    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->GetCatalogReference(), u"a");
    EXPECT_EQ(metadata->GetCatalogNameUI(), u"a");
    EXPECT_EQ(metadata->GetHidden(), 0);
    EXPECT_EQ(metadata->GetFileManager(), u"");
    EXPECT_EQ(metadata->GetFilesFolder(), u"");
    EXPECT_THAT(metadata->GetFileProperties(), IsEmpty());
}

TEST_F(CatalogueDeclarations, AFullDeclarationIsRead) {
    Declare(m_support, "<catalogue reference='a' hidden='yes' fileManager='M'>"
                       "<name language='en'>Pipes</name><name language='hr'>Cijevi</name>"
                       "<files base='support' folder='F\\pipes/deep\\' properties=' B  C\tD '/>"
                       "</catalogue>"
                       "<catalogue reference='b'><files base='install' folder='x' "
                       "properties='P'/></catalogue>"
                       "<catalogue reference='c' fileManager=''><files base='install' folder='x' "
                       "properties='P'/></catalogue>");
    ReadAnew();
    EXPECT_THAT(Problems(), IsEmpty());
    const auto a = m_manager->GetCatalogMetadata(u"a");
    ASSERT_TRUE(a);
    EXPECT_NE(a->GetHidden(), 0);
    EXPECT_EQ(a->GetFileManager(), u"M");
    EXPECT_EQ(a->GetFilesFolder(),
              Platform::AsFolder(Platform::PathFromNative(m_support.string())) +
                  u"F\\pipes\\deep\\");
    EXPECT_THAT(a->GetFileProperties(), ElementsAre(u"B", u"C", u"D"));
    const auto b = m_manager->GetCatalogMetadata(u"b");
    EXPECT_EQ(b->GetFileManager(), u"b");
    EXPECT_EQ(b->GetFilesFolder(),
              Platform::AsFolder(Platform::PathFromNative(m_install.string())) + u"x\\");
    EXPECT_EQ(m_manager->GetCatalogMetadata(u"c")->GetFileManager(), u"");
}

TEST_F(CatalogueDeclarations, TheNameComesInTheUsersLanguageElseEnglishElseAny) {
    Declare(m_support, "<catalogue reference='a'><name language='en'>Pipes</name>"
                       "<name language='hr'>Cijevi</name></catalogue>"
                       "<catalogue reference='b'><name language='en'>Valves</name></catalogue>"
                       "<catalogue reference='c'><name language='de'>Rohre</name></catalogue>");
    ReadAnew();
    const auto name = [&](const char16_t* reference) {
        return m_manager->GetCatalogMetadata(reference)->GetCatalogNameUI();
    };
    EXPECT_EQ(name(u"a"), u"Pipes");
    EXPECT_EQ(name(u"c"), u"Rohre");
    m_station.Set("ZEBX_LANGUAGE", "hr");
    EXPECT_EQ(name(u"a"), u"Cijevi");
    EXPECT_EQ(name(u"b"), u"Valves");
}

TEST_F(CatalogueDeclarations, UnknownElementsAndAttributesAreTolerated) {
    Declare(m_support, "<!-- c --><other/><catalogue reference='a' colour='red'><icon/>"
                       "<name language='en' x='y'>Pipes</name></catalogue>");
    ReadAnew();
    EXPECT_THAT(References(), ElementsAre("a"));
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(CatalogueDeclarations, AReferenceThatCannotNameAFileIsRefused) {
    const std::string tooLong(255 - 13 + 1, 'x');
    for (const std::string& reference :
         {std::string(), std::string("."), std::string(".."), std::string("a/b"),
          std::string("NUL"), std::string("a\\b"), std::string("C:a"), std::string("a&#9;b"),
          std::string("a&#127;b"), std::string("a.previous"), std::string("a.Previous"), tooLong,
          "č" + tooLong.substr(2)})
        ExpectRefused("<catalogue reference='" + reference + "'/>", "cannot be the name of a file");
    ExpectRefused("<catalogue/>", "cannot be the name of a file");
    Declare(m_support, "<catalogue reference='" + tooLong.substr(1) + "'/>");
    ReadAnew();
    EXPECT_THAT(Problems(), IsEmpty());
    const CString longest = Platform::FromUtf8(tooLong.substr(1));
    m_manager->GetCatalog(longest.c_str(), 1)->AddItem(Leaf(u"a"));
    EXPECT_EQ(m_manager->Save(longest.c_str(), 1, 1), 1);
    m_manager->GetCatalog(longest.c_str(), 1)->AddItem(Leaf(u"b"));
    EXPECT_EQ(m_manager->Save(longest.c_str(), 1, 1), 1);
}

TEST_F(CatalogueDeclarations, AFolderThatLeavesItsBaseIsRefused) {
    for (const char* folder :
         {"", "/etc", "\\etc", "..", "a\\..\\b", "a/../..", ".", "a\\.", "C:\\a", "a&#10;b"})
        ExpectRefused("<catalogue reference='a'><files base='support' folder='" +
                          std::string(folder) + "' properties='P'/></catalogue>",
                      "does not lie below its base");
}

TEST_F(CatalogueDeclarations, OtherMistakesAreTold) {
    ExpectRefused("<catalogue reference='a' hidden='maybe'/>", "hidden is \"maybe\"");
    ExpectRefused("<catalogue reference='a'><files base='home' folder='f' properties='P'/>"
                  "</catalogue>",
                  "base is \"home\"");
    ExpectRefused("<catalogue reference='a'><files folder='f' properties='P'/></catalogue>",
                  "base is \"\"");
    ExpectRefused("<catalogue reference='a'><files base='install' folder='f'/></catalogue>",
                  "no property is named");
}

TEST_F(CatalogueDeclarations, AMistakeBesideTheMatterLeavesTheDeclaration) {
    Declare(m_support, "<catalogue reference='a'><name>Pipes</name><name language='en'/>"
                       "<name language='en'>Pipes</name><name language='en'>Tubes</name>"
                       "<files base='support' folder='f' properties='P'/>"
                       "<files base='support' folder='g' properties='Q'/></catalogue>");
    ReadAnew();
    EXPECT_THAT(References(), ElementsAre("a"));
    EXPECT_EQ(m_manager->GetCatalogMetadata(u"a")->GetCatalogNameUI(), u"Pipes");
    EXPECT_THAT(m_manager->GetCatalogMetadata(u"a")->GetFileProperties(), ElementsAre(u"P"));
    EXPECT_THAT(Problems(),
                ElementsAre(HasSubstr("no language"), HasSubstr("no language"),
                            HasSubstr("element \"name\""), HasSubstr("element \"files\"")));
}

TEST_F(CatalogueDeclarations, AFileThatCannotBeReadLeavesTheOtherOne) {
    Declare(m_support, "<catalogue reference='a'/>");
    for (const auto& [content, reason] : std::vector<std::pair<std::string, std::string>>{
             {"", "empty"},
             {"<catalogues><catalogue reference='x'/>", "ends before"},
             {"<catalogue reference='x'/>", "should be \"catalogues\""},
             {"<catalogues/>\xE8", "UTF-8"}}) {
        MakeFile(m_install / "Catalogues.xml", content);
        ReadAnew();
        EXPECT_THAT(References(), ElementsAre("a"));
        EXPECT_THAT(Problems(),
                    ElementsAre(testing::AllOf(HasSubstr((m_install / "Catalogues.xml").string()),
                                               HasSubstr(reason))));
    }
}

TEST(ShippedCatalogues, AreThoseOfTheFamily) {
    const Workstation station;
    auto* manager = CCatalogManager::Instance();
    std::vector<std::string> catalogues;
    for (const auto& metadata : manager->GetCatalogRegistry())
        catalogues.push_back(Platform::ToUtf8(metadata->GetCatalogReference() + u": " +
                                              metadata->GetCatalogNameUI() + u", " +
                                              metadata->GetFileManager()));
    EXPECT_THAT(catalogues,
                ElementsAre("ASSEMBLYSCHEMES_CATALOG: Assembly schemes, ASSEMBLYSCHEMES_CATALOG",
                            "PIPES_CATALOG: Pipes, PIPES_CATALOG",
                            "MANHOLES_CATALOG: Manholes, MANHOLES_CATALOG",
                            "VALVES_CATALOG: Valves, VALVES_CATALOG"));
    EXPECT_TRUE(manager->GetRegistryProblems().empty());
    const auto schemes = manager->GetCatalogMetadata(u"ASSEMBLYSCHEMES_CATALOG");
    EXPECT_THAT(schemes->GetFileProperties(),
                ElementsAre(u"AS_BLOCK1", u"AS_BLOCK2", u"AS_BLOCK3", u"AS_BLOCK4", u"AS_BLOCK5",
                            u"AS_BLOCK6"));
    EXPECT_TRUE(schemes->GetFilesFolder().ends_with(u"\\assemblyElements\\"));
    const auto pipes = manager->GetCatalogMetadata(u"PIPES_CATALOG");
    EXPECT_EQ(pipes->GetFilesFolder(), station.Support() + u"CatalogueFiles\\pipes\\");
    EXPECT_THAT(pipes->GetFileProperties(), ElementsAre(u"BLOCK", u"PICTURE", u"DATASHEET"));
}

} // namespace
} // namespace ZEBGis::Data
