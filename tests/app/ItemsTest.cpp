// SPDX-License-Identifier: MIT
// zebx items: the repository's definitions shown and changed.
#include "ConnectedStation.h"
#include "Documents.h"
#include "Lines.h"
#include "Plant.h"
#include "support/DocumentExample.h"

#include <gmock/gmock.h>

using namespace AppTest;
using nlohmann::json;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr const char* kTag = "PIPE_DEFINITIONS";

class Items : public ConnectedStation {
protected:
    Ended Zebx(std::vector<std::string> words) const {
        words.insert(words.begin(), {"items", kTag});
        return station.Zebx(words);
    }
    json Document(std::vector<std::string> words) const {
        words.push_back("--json");
        return DocumentOf(Zebx(words));
    }
    // A file that holds this text.
    std::string File(const std::string& text) const {
        const fs::path path = station.Folder() / "given.xml";
        Write(path, text);
        return path.string();
    }
    Ended Add(const std::string& definitions) const {
        return Zebx({"add", File("<definitions>\n" + definitions + "</definitions>")});
    }
    // "id=name" each.
    std::vector<std::string> Listed() const {
        const json document = Document({"list"});
        std::vector<std::string> items;
        for (const json& item : document["result"]["items"])
            items.push_back(item["id"].get<std::string>() + "=" + item["name"].get<std::string>());
        return items;
    }
    std::int64_t Revision() const {
        return DocumentOf(station.Zebx({"status", "--json"}))["result"]["revision"];
    }
};

TEST_F(Items, AnEmptyListIsSaidToBeEmpty) {
    const Ended run = Zebx({"list"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "Definitions: 0.\n");
    EXPECT_EQ(Document({"list"})["result"], json({{"action", "list"},
                                                  {"tag", kTag},
                                                  {"name", "Pipe definitions"},
                                                  {"items", json::array()},
                                                  {"revision", nullptr}}));
}

TEST_F(Items, TheExampleOfTheDocumentIsAddedListedAndShown) {
    const Ended added = Zebx({"add", File(DocumentExample("definitions"))});
    EXPECT_EQ(added.status, 0) << added;
    EXPECT_THAT(Words(added.out), ElementsAre("Id Outcome Name", "PE-110 added PE 110 \"plava\"",
                                              "DN-200 added Ductile 200"));
    EXPECT_THAT(Words(Zebx({"list"}).out),
                ElementsAre("Id Entity type Topology function Name", "DN-200 2 -1 Ductile 200",
                            "PE-110 1 3 PE 110 \"plava\"", "Definitions: 2."));
    const std::string shown = Zebx({"show", "PE-110"}).out;
    EXPECT_THAT(Words(shown),
                ElementsAre("Id PE-110", "Name PE 110 \"plava\"", "Entity type 1",
                            "Topology function 3", "Topology type 2",
                            StartsWith("<definition id=\"PE-110\""), "<layer>VODOVOD</layer>",
                            StartsWith("<tool:colour"), "</definition>"));
}

TEST_F(Items, ShowGivesTheConfigurationCharacterForCharacter) {
    const std::string xml = "<definition id='a'  name='n' topologyType='7'>\t<![CDATA[<&]]>\r\n"
                            "<!-- č 😀 -->&#13;</definition>";
    ASSERT_EQ(Add(xml).status, 0);
    const json item = Document({"show", "a"})["result"]["items"][0];
    EXPECT_EQ(item, json({{"id", "a"},
                          {"name", "n"},
                          {"entityType", 0},
                          {"topologyFunction", -1},
                          {"topologyType", 7},
                          {"configuration", xml},
                          {"outcome", nullptr}}));
}

TEST_F(Items, AddTakesOneDefinitionAloneAndReplacesTheOneOfItsId) {
    ASSERT_EQ(Add("<definition id='a' name='old'/><definition id='b' name='b'/>").status, 0);
    const json document =
        Document({"add", File("<?xml version='1.0'?><definition id='a' name='new'/>")});
    EXPECT_EQ(document["result"]["items"][0]["outcome"], "replaced");
    EXPECT_EQ(document["result"]["revision"], 3);
    EXPECT_THAT(Listed(), ElementsAre("a=new", "b=b"));
}

TEST_F(Items, AddingTheSameAgainMakesNoRevision) {
    ASSERT_EQ(Add("<definition id='a'/>").status, 0);
    EXPECT_EQ(Document({"add", File("<definition id='a'/>")})["result"]["revision"], 1);
}

TEST_F(Items, RenameGivesAnotherNameAndKeepsTheConfiguration) {
    ASSERT_EQ(Add("<definition id='a' name='old'/>").status, 0);
    const Ended run = Zebx({"rename", "a", "new \"<&'š😀"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "The definition a is named new \"<&'š😀 now.\n");
    EXPECT_THAT(Listed(), ElementsAre("a=new \"<&'š😀"));
    EXPECT_EQ(Document({"show", "a"})["result"]["items"][0]["configuration"],
              "<definition id='a' name='old'/>");
    const json document = Document({"rename", "a", ""});
    EXPECT_EQ(document["result"]["items"][0]["outcome"], "renamed");
    EXPECT_THAT(Listed(), ElementsAre("a="));
}

TEST_F(Items, DeleteRemovesOneAndTheOthersStay) {
    ASSERT_EQ(Add("<definition id='a'/><definition id='b' name='x'/>").status, 0);
    const json document = Document({"delete", "b"});
    EXPECT_EQ(document["result"]["items"][0]["name"], "x");
    EXPECT_EQ(document["result"]["items"][0]["outcome"], "deleted");
    EXPECT_THAT(Listed(), ElementsAre("a="));
    EXPECT_EQ(Zebx({"delete", "a"}).out, "The definition a was deleted.\n");
    EXPECT_THAT(Listed(), IsEmpty());
}

TEST_F(Items, AnIdThatIsNotThereIsToldAndChangesNothing) {
    ASSERT_EQ(Add("<definition id='PE-110'/>").status, 0);
    const std::vector<std::vector<std::string>> lines = {
        {"show", "PE-111"}, {"rename", "PE-111", "x"}, {"delete", "pe-110"}};
    for (const auto& words : lines) {
        const Ended run = Zebx(words);
        EXPECT_EQ(run.status, 8) << run;
        EXPECT_EQ(run.err, "zebx: There is no definition " + words[1] +
                               " in Pipe definitions.\nDid you mean PE-110?\n");
        EXPECT_THAT(run.out, IsEmpty());
    }
    EXPECT_EQ(Document({"show", "x"})["error"]["status"], 8);
    EXPECT_EQ(Revision(), 1);
}

TEST_F(Items, WhatIsTypedWrongIsAnsweredWithWhatIsKnown) {
    const auto refusal = [this](const std::vector<std::string>& words) {
        const Ended run = station.Zebx(words);
        EXPECT_EQ(run.status, 2) << run;
        return run.err;
    };
    EXPECT_THAT(refusal({"items"}), HasSubstr("zebx items TAG list\nSee: zebx items --help"));
    EXPECT_THAT(refusal({"items", kTag}), HasSubstr("TAG list"));
    EXPECT_THAT(refusal({"items", kTag, "shwo", "a"}), HasSubstr("\nDid you mean show?\n"));
    EXPECT_THAT(refusal({"items", kTag, "add"}), HasSubstr("PIPE_DEFINITIONS add FILE\n"));
    EXPECT_THAT(refusal({"items", kTag, "rename", "a"}), HasSubstr("rename ID NAME\n"));
    EXPECT_THAT(refusal({"items", kTag, "list", "a"}), HasSubstr("\"a\" is one word too many"));
    EXPECT_THAT(refusal({"items", "pipe_definitions", "list"}),
                AllOf(HasSubstr("\n  MANHOLE_DEFINITIONS\n  PIPE_DEFINITIONS\n"),
                      EndsWith("Did you mean PIPE_DEFINITIONS?\n")));
    EXPECT_THAT(refusal({"items", kTag, "rename", "a", "x\x01"}), HasSubstr("U+0001"));
    EXPECT_THAT(refusal({"items", kTag, "rename", "a", "x\xff"}), HasSubstr("half a character"));
    EXPECT_EQ(DocumentOf(station.Zebx({"items", "--json"}))["status"], 2);
}

TEST_F(Items, WithoutAnyDeclarationNoTagIsKnown) {
    const fs::path folder = InstallationWithoutPlugin(station);
    const Ended run = station.Zebx({"items", kTag, "list", "--install", folder.string()});
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_THAT(run.err, HasSubstr("no Definitions.xml of this installation declares any tag"));
}

TEST_F(Items, TagsOfTheSupportFolderWorkToo) {
    Write(station.Support() / "Definitions.xml",
          "<definitions><repository tag='Moje ž'/><repository tag='..'/></definitions>");
    EXPECT_EQ(station.Zebx({"items", "Moje ž", "list"}).status, 0);
    // What is wrong with the declarations is told where a tag is missing.
    const Ended run = station.Zebx({"items", "..", "list"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("Definitions.xml, line 1: the tag \"..\" names a folder"));
}

TEST_F(Items, AFileThatIsNoneIsALocalFailureWithItsPlaceAndSendsNothing) {
    const std::map<std::string, std::string> reasons = {
        {"", "it is empty"},
        {"<definitions>\n<definition id='a'/>", "cut short"},
        {"<definitions>\n<definition id='a'/>\n<definition id='a'/></definitions>",
         ", line 3, definition a: this id is taken by the definition in line 2"},
        {"<definitions>\n<definition id='a'/>\n<definition/></definitions>",
         ", line 3: a definition needs an id"},
        {"<definitions tag='VALVE_DEFINITIONS'><definition id='a'/></definitions>",
         "these are definitions of VALVE_DEFINITIONS, not of PIPE_DEFINITIONS"},
        {"<definitions/>", "holds no definition"},
        {"<catalogue/>", "<definitions> belongs"}};
    for (const auto& [text, reason] : reasons) {
        const std::string file = File(text);
        const Ended run = Zebx({"add", file});
        EXPECT_EQ(run.status, 9) << run;
        EXPECT_THAT(run.err, AllOf(HasSubstr(file), HasSubstr(reason)));
    }
    EXPECT_EQ(Zebx({"add", (station.Folder() / "none.xml").string()}).status, 9);
    EXPECT_EQ(Zebx({"add", station.Folder().string()}).status, 9);
    EXPECT_EQ(Revision(), 0);
}

TEST_F(Items, ADefinitionThatTheRepositoryRefusesIsNamedAndTheOthersGoOn) {
    Plant(station, "CREATE UNIQUE INDEX no_two_names ON repository_item (name)");
    const Ended run = Add("<definition id='a' name='x'/><definition id='b' name='x'/>"
                          "<definition id='c' name='y'/>");
    EXPECT_NE(run.status, 0) << run;
    EXPECT_THAT(run.err, HasSubstr("Pipe definitions: the definition b (x) could not be sent."));
    EXPECT_THAT(Words(run.out),
                ElementsAre("Id Outcome Name", "a added x", "b failed x", "c added y"));
    EXPECT_THAT(Listed(), ElementsAre("a=x", "c=y"));
}

TEST_F(Items, WhoMayOnlyReadMayOnlyListAndShow) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    ASSERT_EQ(Add("<definition id='a'/>").status, 0);
    const std::string file = File("<definition id='b'/>");
    fs::permissions(station.Folder(), fs::perms(0755));
    for (const auto& entry : fs::recursive_directory_iterator(station.Folder()))
        fs::permissions(entry, fs::perms(entry.is_directory() ? 0755 : 0644));
    const auto status = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"items", kTag});
        return station.ZebxAsNobody(words).status;
    };
    EXPECT_EQ(status({"list"}), 0);
    EXPECT_EQ(status({"show", "a"}), 0);
    EXPECT_EQ(status({"add", file}), 5);
    EXPECT_EQ(status({"rename", "a", "x"}), 5);
    EXPECT_EQ(status({"delete", "a"}), 5);
}

TEST_F(Items, NamesThatCouldSteerATerminalDoNot) {
    const std::string name = "x&#10;Definitions: 9.&#13;";
    ASSERT_EQ(Add("<definition id='a&#10;b' name='" + name + "'/>").status, 0);
    EXPECT_THAT(Words(Zebx({"list"}).out),
                ElementsAre(testing::_, "a?b 0 -1 x?Definitions: 9.?", "Definitions: 1."));
    EXPECT_EQ(Lines(Zebx({"show", "a\nb"}).out)[1], "Name               x?Definitions: 9.?");
    EXPECT_THAT(Listed(), ElementsAre("a\nb=x\nDefinitions: 9.\r"));
}

TEST_F(Items, SpeakTheUsersLanguage) {
    station.Set("ZEBX_LANGUAGE", "hr");
    ASSERT_EQ(Add("<definition id='a' name='n'/>").status, 0);
    EXPECT_EQ(Document({"list"})["result"]["name"], "Definicije cijevi");
    EXPECT_EQ(Zebx({"delete", "a"}).out, "Definicija a je izbrisana.\n");
}

TEST_F(Items, WithoutARepositoryTheStatusIsThatOfEveryVerb) {
    fs::remove(station.Repository());
    EXPECT_EQ(Zebx({"list"}).status, 4);
}

} // namespace
