// SPDX-License-Identifier: MIT
// Definitions read from XML texts, and what their items tell.
#include "DefinitionStation.h"
#include "support/DocumentExample.h"

#include <gmock/gmock.h>

using testing::EndsWith;
using testing::HasSubstr;

namespace {

class Definitions : public DefinitionStation {
protected:
    Definitions() { Declare(); }

    // Why a file of that content is no file of definitions: what is said behind its path.
    std::string ReasonAgainst(std::string_view bytes) {
        Write(File(), bytes);
        EXPECT_EQ(ReadLocal(), nullptr) << bytes;
        EXPECT_EQ(Bytes(File()), bytes);
        const std::string text = Platform::ToUtf8(problem);
        EXPECT_THAT(text, HasSubstr(File().string()));
        return text;
    }
};

TEST_F(Definitions, TheExampleOfTheDocumentIsRead) {
    Write(Install() / "Definitions.xml", DocumentExample("definition-repositories"));
    Write(DefinitionsFolder() / "PIPE_DEFINITIONS.xml", DocumentExample("definitions"));
    ZEBGis::CDefinitionRepository* read = manager.ReadDefinitions(u"PIPE_DEFINITIONS", problem);
    const DefinitionsOfATag repository(read, {u"PIPE_DEFINITIONS"});
    ASSERT_NE(repository, nullptr) << Platform::ToUtf8(problem);
    const auto& items = repository->GetRepositoryItemList();
    ASSERT_EQ(items.GetCount(), 2U);
    EXPECT_EQ(items.GetHead(), items.GetAt(0));
    EXPECT_EQ(items.GetAt(0)->GetId(), u"PE-110");
    EXPECT_EQ(items.GetAt(0)->GetName(), u"PE 110 \"plava\"");
    EXPECT_EQ(items.GetAt(0)->GetEntityType(), 1);
    EXPECT_EQ(items.GetAt(0)->GetTopologyFunction(), 3);
    EXPECT_EQ(items.GetAt(0)->GetTopologyType(), 2);
    EXPECT_THAT(Platform::ToUtf8(items.GetAt(0)->GetXML()), HasSubstr("<layer>VODOVOD</layer>"));
    EXPECT_EQ(items.GetAt(1)->GetTopologyFunction(), -1);
    EXPECT_EQ(items.GetAt(1)->GetTopologyType(), 0);
}

TEST_F(Definitions, AMissingFileAndTheEmptyTextGiveNoDefinitions) {
    const auto local = ReadLocal();
    ASSERT_NE(local, nullptr);
    EXPECT_EQ(local->GetRepositoryItemList().GetCount(), 0U);
    EXPECT_EQ(local->GetRepositoryItemList().GetHead(), nullptr);
    const auto empty = Of(u"");
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->GetRepositoryItemList().GetCount(), 0U);
    const auto null = manager.GetRepositoryfactory(u"T")->CreateRepository(nullptr);
    EXPECT_NE(null, nullptr);
    manager.GetRepositoryfactory(u"T")->ReleaseRepository(null);
}

TEST_F(Definitions, ReleasingNothingIsNoError) {
    manager.GetRepositoryfactory(u"T")->ReleaseRepository(nullptr);
}

TEST_F(Definitions, AnUnknownTagIsNamed) {
    EXPECT_EQ(manager.ReadDefinitions(u"t", problem), nullptr);
    EXPECT_EQ(problem, u"t is not declared in any Definitions.xml of this installation.");
    EXPECT_EQ(manager.WriteDefinitions(u"", {}, problem), 0);
    EXPECT_EQ(manager.ReadDefinitions(nullptr, problem), nullptr);
}

TEST_F(Definitions, AFileThatIsNoneIsToldWithItsPlace) {
    EXPECT_THAT(ReasonAgainst(""), HasSubstr("it is empty"));
    EXPECT_THAT(ReasonAgainst("pipes"), EndsWith(": there is no element in it"));
    EXPECT_THAT(ReasonAgainst("<definitions>\n<definition id='a'"), HasSubstr(", line 2: "));
    EXPECT_THAT(ReasonAgainst("<definitions>\n<definition id='a'>"), HasSubstr("cut short"));
    EXPECT_THAT(ReasonAgainst("<definitions>\n<definition id='a'></definitions>"),
                HasSubstr("an end tag is missing"));
    EXPECT_THAT(ReasonAgainst("<definitions/>x"), HasSubstr("outside the first"));
    EXPECT_THAT(ReasonAgainst("<definitions/><definitions/>"), HasSubstr("outside the first"));
    EXPECT_THAT(ReasonAgainst("\n<catalogue/>"), EndsWith(", line 2: the element <catalogue> "
                                                          "stands where <definitions> belongs"));
    EXPECT_THAT(ReasonAgainst("<definition id='a'/>"), HasSubstr("<definitions> belongs"));
    EXPECT_THAT(ReasonAgainst("<definitions tag='U'/>"),
                EndsWith("line 1: these are definitions of U, not of T"));
    EXPECT_THAT(ReasonAgainst("<definitions>\xC8</definitions>"), HasSubstr("UTF-8"));
    EXPECT_THAT(ReasonAgainst("<?xml version='1.0' encoding='latin9'?><definitions/>"),
                HasSubstr("latin9"));
}

TEST_F(Definitions, WhatAReaderWouldPassOverIsToldWithItsLine) {
    const auto with = [](const std::string& id) {
        return "<definitions>\n<definition id='" + id + "'/></definitions>";
    };
    EXPECT_THAT(ReasonAgainst(with("a&#0;b")), AllOf(HasSubstr("line 2"), HasSubstr("&#0;")));
    EXPECT_THAT(ReasonAgainst(with("a&#7;b")), AllOf(HasSubstr("line 2"), HasSubstr("&#7;")));
    EXPECT_THAT(ReasonAgainst("<!DOCTYPE definitions>" + with("a")), HasSubstr("document type"));
    EXPECT_THAT(ReasonAgainst("<definitions>\n<definition id='a/>\n<definition id='b'/>"
                              "</definitions>"),
                HasSubstr("line 3"));
}

TEST_F(Definitions, ADefinitionThatIsNoneIsToldWithItsLineAndId) {
    EXPECT_THAT(ReasonAgainst("<definitions>\n\n<definition name='x'/></definitions>"),
                EndsWith(", line 3: a definition needs an id"));
    EXPECT_THAT(ReasonAgainst("<definitions>\n<definition id='a'/>\n<definition id='b'/>\n"
                              "<definition id='a'/></definitions>"),
                EndsWith(", line 4, definition a: this id is taken by the definition in line 2"));
    for (const std::string number : {"x", "1x", "", " 1", "1.0", "+1", "2147483648", "99999999999"})
        EXPECT_THAT(ReasonAgainst("<definitions><definition id='a' topologyType='" + number +
                                  "'/></definitions>"),
                    EndsWith("definition a: topologyType is \"" + number +
                             "\", which is not a whole number of 32 bits"));
}

TEST_F(Definitions, NumbersGoToTheirLimits) {
    const auto item = Item(u"<definition id='a' entityType='2147483647' "
                           u"topologyFunction='-2147483648' topologyType='-0'/>");
    EXPECT_EQ(item->GetEntityType(), 2147483647);
    EXPECT_EQ(item->GetTopologyFunction(), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(item->GetTopologyType(), 0);
}

TEST_F(Definitions, AnEntityTypeThatTheTagDoesNotHaveIsRefused) {
    Declare("1 2");
    EXPECT_THAT(ReasonAgainst("<definitions><definition id='a' entityType='3'/></definitions>"),
                EndsWith("definition a: entity type 3 is not one that T has (1, 2)"));
    EXPECT_THAT(ReasonAgainst("<definitions><definition id='a'/></definitions>"),
                HasSubstr("entity type 0"));
    Write(File(), "<definitions><definition id='a' entityType='2'/></definitions>");
    EXPECT_NE(ReadLocal(), nullptr);
    EXPECT_EQ(Of(u"<definitions><definition id='a' entityType='3'/></definitions>"), nullptr);
}

TEST_F(Definitions, UnchangedItemsKeepEveryByteOfTheirElement) {
    const CString xml =
        u"<definition  id = 'a>b'\r\n name=\"č 😀\" entityType='01'>\r<![CDATA[</definition>]]>"
        u"<!-- </definition> --><?x </definition>?><definition id='inner'/>&#13;&unknown;\n"
        u"<a b='>'\t/></definition >";
    const auto item = Item(u"\n <other/>" + xml + u"<definition id='z'/>");
    EXPECT_EQ(item->GetId(), u"a>b");
    EXPECT_EQ(item->GetXML(), xml);
    WStringStream stream;
    stream << u"before ";
    item->GetXML(stream);
    EXPECT_EQ(stream.str(), u"before " + xml);
}

TEST_F(Definitions, AChangedItemChangesItsAttributesAlone) {
    const auto item =
        Item(u"<definition a='1' id='x' entityType=\"1\" b='2'><c id='x'/></definition>");
    item->SetId(u"y");
    item->SetName(u"<\"&'>\r\n\tš 😀");
    item->SetEntityType(ZEBGis::enmEntityType(7));
    EXPECT_EQ(item->GetXML(), u"<definition name=\"&lt;&quot;&amp;'&gt;&#13;&#10;&#9;š 😀\" a='1' "
                              u"id=\"y\" entityType=\"7\" b='2'><c id='x'/></definition>");
    const auto again = Item(item->GetXML());
    EXPECT_EQ(again->GetName(), item->GetName());
    EXPECT_EQ(again->GetId(), u"y");
}

TEST_F(Definitions, ANewItemIsAnEmptyDefinition) {
    const std::unique_ptr<ZEBGis::CRepositoryItem> item(manager.GetRIF(u"T")->CreateItem());
    EXPECT_EQ(item->GetXML(), u"<definition id=\"\" name=\"\" entityType=\"0\" "
                              u"topologyFunction=\"-1\" topologyType=\"0\"/>");
    item->SetTopologyFunction(4);
    item->SetId(u"a");
    EXPECT_EQ(item->GetXML(), u"<definition id=\"a\" name=\"\" entityType=\"0\" "
                              u"topologyFunction=\"4\" topologyType=\"0\"/>");
}

TEST_F(Definitions, AnItemMadeFromAnotherOutlivesIt) {
    auto first = Item(u"<definition id='a' name='n' topologyType='5'><x/></definition>");
    first->SetName(u"changed");
    const std::unique_ptr<ZEBGis::CRepositoryItem> second(manager.GetRIF(u"T")->CreateItem(*first));
    const CString xml = first->GetXML();
    first.reset();
    EXPECT_EQ(second->GetXML(), xml);
    EXPECT_EQ(second->GetName(), u"changed");
    EXPECT_EQ(second->GetTopologyType(), 5);
}

TEST_F(Definitions, TheDescriptionIsTheNameAndTheId) {
    const auto item = Item(u"<definition id='a' name='Pipe'/>");
    EXPECT_EQ(item->GetWsDescription(), u"Pipe (a)");
    item->SetName(u"");
    EXPECT_EQ(item->GetWsDescription(), u"a");
    item->RefreshTemporaryDataReferences();
}

TEST_F(Definitions, AnItemDependsOnTheOneWhoseIdItsConfigurationNames) {
    const auto pipe = Item(u"<definition id='P' name='V' material='M'><valve>V</valve>"
                           u"<end manhole=' H '/></definition>");
    const auto other = Item(u"<definition id='V' name='P'/>");
    EXPECT_NE(pipe->DependsOn(u"valve", other.get()), 0);
    EXPECT_NE(pipe->DependsOn(nullptr, other.get()), 0);
    EXPECT_NE(pipe->DependsOn(u"", other.get()), 0);
    EXPECT_EQ(pipe->DependsOn(u"manhole", other.get()), 0);
    EXPECT_EQ(other->DependsOn(u"", pipe.get()), 0); // its own name is no reference
    EXPECT_EQ(pipe->DependsOn(u"", pipe.get()), 0);
    EXPECT_EQ(pipe->DependsOn(u"", nullptr), 0);
    for (const auto& [id, what] : {std::pair(u"H", u"manhole"), {u"M", u"material"}}) {
        other->SetId(id);
        EXPECT_NE(pipe->DependsOn(what, other.get()), 0);
    }
    other->SetId(u"");
    EXPECT_EQ(pipe->DependsOn(u"", other.get()), 0);
}

TEST_F(Definitions, ARepositoryWrapsTheXmlOfOneItem) {
    const auto empty = Of(u"");
    const CString xml =
        empty->CreateRepositoryXML(u"<definition id='č\"' name='n'>\r\n</definition>");
    EXPECT_EQ(xml, u"<definitions tag=\"T\"><definition id='č\"' name='n'>\r\n</definition>"
                   u"</definitions>");
    ASSERT_NE(Of(xml), nullptr);
    EXPECT_EQ(Of(xml)->GetRepositoryItemList().GetCount(), 1U);
    EXPECT_EQ(Of(empty->CreateRepositoryXML(nullptr))->GetRepositoryItemList().GetCount(), 0U);
    EXPECT_EQ(Of(empty->CreateRepositoryXML(u"</definitions><definitions>")), nullptr);
    EXPECT_EQ(Of(empty->CreateRepositoryXML(u"<definition id='a'>")), nullptr);
}

TEST_F(Definitions, HalvesOfCharactersAndControlsAreNoDefinitions) {
    const CString half =
        CString(u"<definitions><definition id='a") + u'\xD800' + u"'/></definitions>";
    EXPECT_EQ(Of(half), nullptr);
    EXPECT_EQ(Of(u"<definitions><definition id='a\u0001'/></definitions>"), nullptr);
}

TEST_F(Definitions, ManyDefinitionsAreReadInTheOrderOfTheText) {
    std::string text = "<definitions>";
    for (int i = 20000; i > 0; --i)
        text += "<definition id='" + std::to_string(i) + "'><a><b/></a></definition>\n";
    Write(File(), text + "</definitions>");
    const auto repository = ReadLocal();
    ASSERT_NE(repository, nullptr) << Platform::ToUtf8(problem);
    ASSERT_EQ(repository->GetRepositoryItemList().GetCount(), 20000U);
    EXPECT_EQ(repository->GetRepositoryItemList().GetHead()->GetId(), u"20000");
    EXPECT_EQ(repository->GetRepositoryItemList().GetAt(19999)->GetId(), u"1");
}

TEST_F(Definitions, AFileFromElsewhereMayHoldOneDefinitionAlone) {
    const auto path = m_station.Folder().Native() / "x.xml";
    const CString shown = Platform::PathFromNative(path.string());
    const auto read = [&] {
        return DefinitionsOfATag(manager.ReadDefinitionsFile(u"T", shown.c_str(), problem), {u"T"});
    };
    EXPECT_EQ(read(), nullptr);
    EXPECT_EQ(Platform::ToUtf8(problem), path.string() + ": there is no such file");
    Write(path, "<?xml version='1.0'?><!-- x --><definition id='a'><b/></definition>\n");
    ASSERT_NE(read(), nullptr);
    EXPECT_EQ(read()->GetRepositoryItemList().GetHead()->GetXML(),
              u"<definition id='a'><b/></definition>");
    Write(path, "<definitions tag='T'><definition id='a'/><definition id='b'/></definitions>");
    EXPECT_EQ(read()->GetRepositoryItemList().GetCount(), 2U);
    Write(path, "<definition/>");
    EXPECT_EQ(read(), nullptr);
    EXPECT_THAT(Platform::ToUtf8(problem), EndsWith("line 1: a definition needs an id"));
}

} // namespace
