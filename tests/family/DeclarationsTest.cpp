// SPDX-License-Identifier: MIT
// Which definition repositories an installation has.
#include "DefinitionStation.h"
#include "support/DocumentExample.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Declarations : public DefinitionStation {
protected:
    std::vector<CString> Tags() {
        std::vector<CString> tags;
        for (const auto& [tag, factory] : manager.GetRepositoryFactories())
            tags.push_back(tag);
        return tags;
    }
    void DeclareHere(const std::string& xml) const { Write(Install() / "Definitions.xml", xml); }
    // What is said about a declaration of that tag (or with that attribute text).
    CString ProblemOf(const std::string& attributes) {
        DeclareHere("<definitions>\n<repository " + attributes + "/></definitions>");
        // Other folders are other declarations.
        m_station.Set("ZEBX_SUPPORT", "/support" + std::to_string(++m_runs));
        const auto& problems = manager.GetDeclarationProblems();
        const CString lead = Platform::FromUtf8((Install() / "Definitions.xml").string()) + u", ";
        if (problems.size() != 1 || !problems[0].starts_with(lead) || !Tags().empty())
            return u"(" + CString(problems.empty() ? u"nothing" : problems[0]) + u")";
        return problems[0].substr(lead.size());
    }
    int m_runs = 0;
};

TEST_F(Declarations, WithoutAFileThereIsNoRepositoryAndNoProblem) {
    EXPECT_THAT(Tags(), IsEmpty());
    EXPECT_THAT(manager.GetDeclarationProblems(), IsEmpty());
    EXPECT_EQ(manager.GetRepositoryfactory(u"PIPE_DEFINITIONS"), nullptr);
    EXPECT_EQ(manager.GetRIF(u"PIPE_DEFINITIONS"), nullptr);
    EXPECT_EQ(manager.GetRepositoryfactory(nullptr), nullptr);
}

TEST_F(Declarations, TheShippedFileDeclaresPipesManholesAndValves) {
    std::filesystem::copy_file(ZEBX_BUILD_DIR "/lib/zebx/Definitions.xml",
                               Install() / "Definitions.xml");
    EXPECT_THAT(Tags(),
                ElementsAre(u"MANHOLE_DEFINITIONS", u"PIPE_DEFINITIONS", u"VALVE_DEFINITIONS"));
    EXPECT_THAT(manager.GetDeclarationProblems(), IsEmpty());
    for (const char* language : {"en", "hr"}) {
        m_station.Set("ZEBX_LANGUAGE", language);
        for (const auto& [tag, factory] : manager.GetRepositoryFactories())
            EXPECT_NE(factory->GetRepositoryName(), tag);
    }
}

TEST_F(Declarations, TheExampleOfTheDocumentIsRead) {
    DeclareHere(DocumentExample("definition-repositories"));
    EXPECT_THAT(Tags(), ElementsAre(u"PIPE_DEFINITIONS"));
    auto* factory = manager.GetRepositoryfactory(u"PIPE_DEFINITIONS");
    EXPECT_EQ(factory->GetTag(), u"PIPE_DEFINITIONS");
    EXPECT_EQ(factory->GetRepositoryName(), u"Pipe definitions");
    EXPECT_THAT(factory->GetEntityTypes(),
                ElementsAre(ZEBGis::enmEntityType(1), ZEBGis::enmEntityType(2)));
    EXPECT_EQ(factory->GetFilePath(), m_station.Support() + u"Definitions\\PIPE_DEFINITIONS.xml");
    m_station.Set("ZEBX_LANGUAGE", "hr");
    EXPECT_EQ(factory->GetRepositoryName(), u"Definicije cijevi");
}

TEST_F(Declarations, WithoutANameInTheLanguageAnotherStandsInForIt) {
    DeclareHere("<definitions><repository tag='A'><name language='hr'> Cijevi </name></repository>"
                "<repository tag='B'><name language='en'>Pipes</name><name language='de'>Rohre"
                "</name></repository><repository tag='C'><name language='en'> </name>"
                "</repository></definitions>");
    EXPECT_EQ(manager.GetRepositoryfactory(u"A")->GetRepositoryName(), u"Cijevi");
    m_station.Set("ZEBX_LANGUAGE", "hr");
    EXPECT_EQ(manager.GetRepositoryfactory(u"B")->GetRepositoryName(), u"Pipes");
    EXPECT_EQ(manager.GetRepositoryfactory(u"C")->GetRepositoryName(), u"C");
}

TEST_F(Declarations, TheFirstDeclarationOfATagWinsTheInstallationsBeforeTheSupportFolders) {
    DeclareHere("<definitions><repository tag='A' entityTypes='1'/>"
                "<repository tag='A' entityTypes='2'/></definitions>");
    Write(Support() / "Definitions.xml", "<definitions><repository tag='A' entityTypes='3'/>"
                                         "<repository tag='B'/></definitions>");
    EXPECT_THAT(Tags(), ElementsAre(u"A", u"B"));
    EXPECT_THAT(manager.GetRepositoryfactory(u"A")->GetEntityTypes(),
                ElementsAre(ZEBGis::enmEntityType(1)));
    EXPECT_THAT(manager.GetRepositoryfactory(u"B")->GetEntityTypes(), IsEmpty());
    EXPECT_THAT(manager.GetDeclarationProblems(), IsEmpty());
}

TEST_F(Declarations, OtherFoldersHaveOtherRepositories) {
    DeclareHere("<definitions><repository tag='A'/></definitions>");
    EXPECT_THAT(Tags(), ElementsAre(u"A"));
    const auto other = m_station.Folder().Native() / "other";
    std::filesystem::create_directories(other);
    Write(other / "Definitions.xml", "<definitions><repository tag='B'/></definitions>");
    m_station.Set("ZEBX_SUPPORT", other.string());
    EXPECT_THAT(Tags(), ElementsAre(u"A", u"B"));
}

TEST_F(Declarations, ATagThatCannotBeTheNameOfAFileIsRefused) {
    EXPECT_EQ(ProblemOf("tag=''"), u"line 2: a repository needs a tag");
    EXPECT_EQ(ProblemOf(""), u"line 2: a repository needs a tag");
    for (const std::string tag : {".", ".."})
        EXPECT_THAT(Platform::ToUtf8(ProblemOf("tag='" + tag + "'")),
                    testing::HasSubstr("the tag \"" + tag + "\" names a folder"));
    for (const std::string tag : {"../A", "A\\B", "/", "C:"})
        EXPECT_THAT(Platform::ToUtf8(ProblemOf("tag='" + tag + "'")),
                    testing::HasSubstr("the tag \"" + tag + "\" holds a"));
    for (const std::string tag : {"A&#9;B", "A&#10;", "A&#127;"})
        EXPECT_THAT(Platform::ToUtf8(ProblemOf("tag='" + tag + "'")),
                    testing::HasSubstr("holds a control character"));
    EXPECT_THAT(Platform::ToUtf8(ProblemOf("tag='" + std::string(201, 'A') + "'")),
                testing::HasSubstr("longer than 200 bytes"));
    EXPECT_THAT(Platform::ToUtf8(ProblemOf("tag='con'")), testing::HasSubstr("as a device"));
    EXPECT_THAT(Platform::ToUtf8(ProblemOf("tag='A.PREVIOUS'")),
                testing::HasSubstr("ends with \".previous\""));
    EXPECT_THAT(Platform::ToUtf8(ProblemOf("tag='A' entityTypes='1,2'")),
                testing::HasSubstr("\"1,2\" are not whole numbers"));
}

TEST_F(Declarations, TheLongestTagHasAFile) {
    DeclareHere("<definitions><repository tag='" + std::string(200, 'A') + "'/></definitions>");
    ASSERT_EQ(Tags().size(), 1U);
    const CString tag = Tags().front();
    ZEBGis::CRepositoryItem* made = manager.GetRIF(tag.c_str())->CreateItem();
    const std::unique_ptr<ZEBGis::CRepositoryItem> item(made);
    for (const char16_t* id : {u"1", u"2"}) {
        item->SetId(id);
        EXPECT_EQ(manager.WriteDefinitions(tag.c_str(), {item.get()}, problem), 1)
            << Platform::ToUtf8(problem);
    }
}

TEST_F(Declarations, TagsThatDifferByCaseAloneWouldShareAFile) {
    DeclareHere("<definitions><repository tag='Čvor'/>\n<repository tag='čVOR'/></definitions>");
    EXPECT_THAT(Tags(), ElementsAre(u"Čvor"));
    EXPECT_THAT(Platform::ToUtf8(manager.GetDeclarationProblems().at(0)),
                testing::EndsWith("line 2: the tag \"čVOR\" differs from Čvor by "
                                  "case alone; both would have one file"));
}

TEST_F(Declarations, AFileThatIsNoneIsToldAndTheOtherOneCounts) {
    const std::vector<std::string> none = {
        "", "x", "<definitions>", "<a/>", "<definitions/><b/>", "<definitions>\xff</definitions>"};
    for (const std::string& bytes : none) {
        DeclareHere(bytes);
        const auto support = m_station.Folder().Native() / ("s" + std::to_string(++m_runs));
        std::filesystem::create_directories(support);
        Write(support / "Definitions.xml", "<definitions><repository tag='B'/></definitions>");
        m_station.Set("ZEBX_SUPPORT", support.string());
        EXPECT_THAT(Tags(), ElementsAre(u"B")) << bytes;
        ASSERT_EQ(manager.GetDeclarationProblems().size(), 1U) << bytes;
        EXPECT_THAT(Platform::ToUtf8(manager.GetDeclarationProblems()[0]),
                    testing::HasSubstr((Install() / "Definitions.xml").string()));
    }
}

} // namespace
