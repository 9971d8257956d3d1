// SPDX-License-Identifier: MIT
// Catalogues from one workstation to another, with the files of their items.
#include "CatalogueStations.h"
#include "Content.h"
#include "Documents.h"
#include "Lines.h"
#include "Plant.h"

#include <gmock/gmock.h>

using namespace AppTest;
using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class CatalogueTransfer : public CatalogueStations {
protected:
    Ended Push() const { return ana.Zebx({"push", "catalogue:TEST_CATALOG"}); }
    Ended Pull() const { return ivan.Zebx({"pull", "catalogue:TEST_CATALOG"}); }
    fs::path File(const Station& station, const std::string& name) const {
        return station.Support() / "TestFiles" / name;
    }
};

TEST_F(CatalogueTransfer, ACatalogueArrivesWithItsFiles) {
    WriteParts();
    const Ended push = Push();
    ASSERT_EQ(push.status, 0) << push;
    EXPECT_THAT(push.err, HasSubstr("Test parts"));
    EXPECT_THAT(Words(push.out), Contains(HasSubstr("catalogue:TEST_CATALOG 4 4 ")));
    const Ended pull = Pull();
    ASSERT_EQ(pull.status, 0) << pull;
    EXPECT_THAT(pull.err, HasSubstr("Test parts"));
    EXPECT_THAT(Words(pull.out), Contains("catalogue:TEST_CATALOG 2 4 0"));
    EXPECT_EQ(Bytes(Parts(ivan)), Bytes(Parts(ana)));
    EXPECT_EQ(Bytes(File(ivan, "gate.png")), "picture");
    EXPECT_EQ(Bytes(File(ivan, "hydrant.pdf")), "sheet");
}

TEST_F(CatalogueTransfer, TheLineOfProgressSaysWhichCatalogueOfHowManyItIs) {
    WriteParts();
    Push();
    const Ended pull = ivan.Zebx({"pull", "catalogues", "--progress", "always"});
    EXPECT_EQ(pull.status, 0) << pull;
    // Two of this test and those that the installation declares.
    EXPECT_THAT(pull.err, testing::ContainsRegex("Catalogues: Test parts \\([0-9] of [0-9]\\)"));
    EXPECT_THAT(pull.err, testing::ContainsRegex("Test parts \\(.*\\)  1 items loaded  0 s"));
    EXPECT_THAT(pull.err, HasSubstr("Catalogues: Other parts ("));
}

TEST_F(CatalogueTransfer, PushingAgainMakesNoRevision) {
    WriteParts();
    Push();
    EXPECT_THAT(Push().out, HasSubstr("Nothing changed"));
}

TEST_F(CatalogueTransfer, PullingAgainChangesNothing) {
    WriteParts();
    Push();
    Pull();
    const auto before = Tree(ivan.Support());
    const auto written = fs::last_write_time(Parts(ivan));
    const auto fileWritten = fs::last_write_time(File(ivan, "gate.png"));
    const Ended again = Pull();
    EXPECT_EQ(again.status, 0) << again;
    EXPECT_EQ(Tree(ivan.Support()), before);
    EXPECT_EQ(fs::last_write_time(Parts(ivan)), written);
    EXPECT_EQ(fs::last_write_time(File(ivan, "gate.png")), fileWritten);
}

TEST_F(CatalogueTransfer, ItemsAreReplacedByGuidAndOthersStay) {
    WriteParts();
    Push();
    fs::create_directories(ivan.Support() / "Catalogues");
    Write(Parts(ivan), R"(<catalogue reference="TEST_CATALOG">
  <item guid="A" name="Old hydrant" group="no"/>
  <item guid="OWN" name="My own part" group="no"/>
</catalogue>)");
    ASSERT_EQ(Pull().status, 0);
    const std::string text = Bytes(Parts(ivan));
    EXPECT_THAT(text, AllOf(HasSubstr("My own part"), HasSubstr("\"Hydrant\""),
                            Not(HasSubstr("Old hydrant"))));
    // The repository's order, behind what is only here.
    EXPECT_LT(text.find("My own part"), text.find("Valves"));
    EXPECT_LT(text.find("Gate valve"), text.find("Ball valve"));
    EXPECT_LT(text.find("Valves"), text.find("Hydrant"));
    EXPECT_THAT(Bytes(ivan.Support() / "Catalogues/TEST_CATALOG.previous.xml"),
                HasSubstr("Old hydrant"));
}

TEST_F(CatalogueTransfer, WhatACatalogueLacksCreatesNoFile) {
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 0) << pull;
    EXPECT_FALSE(fs::exists(Parts(ivan)));
}

TEST_F(CatalogueTransfer, EverythingIncludesTheVisibleCatalogues) {
    WriteParts();
    Write(ana.Support() / "nodes/a.dwg", "drawing");
    const json push = DocumentOf(ana.Zebx({"push", "ncf:002_NODE", "catalogues", "--json"}));
    EXPECT_EQ(push["result"]["selections"][1]["stored"], 4);
    const json pull = DocumentOf(ivan.Zebx({"pull", "--json"}));
    EXPECT_EQ(pull["result"]["selections"][3]["selection"], "catalogues");
    EXPECT_EQ(pull["result"]["selections"][3]["items"], 4);
    EXPECT_EQ(pull["result"]["selections"][4]["selection"], "items");
    EXPECT_TRUE(fs::exists(Parts(ivan)));
}

TEST_F(CatalogueTransfer, NamesArriveExactly) {
    const std::string longName(10000, 'n');
    const std::string name = "&quot;a&quot; &lt;b&gt; &amp; &#10;c&#13;&#9;d čž 漢字 🚰 " + longName;
    WriteCatalogue("<catalogue reference=\"TEST_CATALOG\"><item guid=\"&quot;1&lt;\" name=\"" +
                   name + "\" group=\"no\"><property name=\"NOTE\" value=\"" + name +
                   "\"/></item></catalogue>");
    ASSERT_EQ(Push().status, 0);
    ASSERT_EQ(Pull().status, 0);
    const json shown = DocumentOf(ivan.Zebx({"catalogue", "TEST_CATALOG", "show", "--json"}));
    EXPECT_EQ(shown["result"]["items"][0]["name"], "\"a\" <b> & \nc\r\td čž 漢字 🚰 " + longName);
    EXPECT_EQ(shown["result"]["items"][0]["id"], "\"1<");
    // What was pulled goes out again without a difference.
    Write(ivan.Support() / "Catalogues.xml", kDeclaration);
    EXPECT_THAT(ivan.Zebx({"push", "catalogue:TEST_CATALOG"}).out, HasSubstr("Nothing changed"));
}

TEST_F(CatalogueTransfer, ADamagedCatalogueIsToldAndTheOthersGoOn) {
    WriteParts();
    const std::string cut = std::string(kParts).substr(0, 300);
    WriteCatalogue(cut);
    WriteCatalogue("<catalogue reference=\"OTHER_CATALOG\"><item guid=\"1\" name=\"One\" "
                   "group=\"no\"/></catalogue>",
                   "OTHER_CATALOG");
    const Ended push = ana.Zebx({"push", "catalogues"});
    EXPECT_EQ(push.status, 9) << push;
    EXPECT_THAT(push.err, AllOf(HasSubstr("TEST_CATALOG.xml"), HasSubstr("Other parts")));
    EXPECT_EQ(Bytes(Parts(ana)), cut);
    EXPECT_THAT(ana.Zebx({"ls", "catalogues"}).out,
                AllOf(HasSubstr("OTHER_CATALOG"), Not(HasSubstr("TEST_CATALOG"))));
}

TEST_F(CatalogueTransfer, ADamagedLocalCatalogueIsNotOverwrittenByAPull) {
    WriteParts();
    Push();
    const std::string twice = R"(<catalogue reference="TEST_CATALOG">
  <item guid="X" name="First" group="no"/>
  <item guid="X" name="Second" group="no"/>
</catalogue>)";
    fs::create_directories(ivan.Support() / "Catalogues");
    Write(Parts(ivan), twice);
    const Ended pull = ivan.Zebx({"pull", "catalogues"});
    EXPECT_EQ(pull.status, 9) << pull;
    EXPECT_THAT(pull.err, AllOf(HasSubstr("TEST_CATALOG.xml"), HasSubstr("Second")));
    EXPECT_EQ(Bytes(Parts(ivan)), twice);
}

TEST_F(CatalogueTransfer, ACharacterThatXmlDoesNotHaveIsRefusedBeforeAnythingIsSent) {
    WriteCatalogue("<catalogue reference=\"TEST_CATALOG\"><item guid=\"1\" name=\"Good\" "
                   "group=\"no\"/><item guid=\"2\" name=\"Bell&#7;\" group=\"no\"/></catalogue>");
    const Ended push = Push();
    EXPECT_EQ(push.status, 9) << push;
    EXPECT_THAT(push.err, HasSubstr("Bell"));
    EXPECT_THAT(ana.Zebx({"ls"}).out, HasSubstr("In all: 0 stored"));
}

TEST_F(CatalogueTransfer, AFileThatIsNotThereIsAWarning) {
    WriteCatalogue(kParts);
    const Ended push = Push();
    EXPECT_EQ(push.status, 0) << push;
    EXPECT_THAT(push.err, AllOf(HasSubstr("Warning"), HasSubstr("Gate valve"),
                                HasSubstr("TestFiles/gate.png")));
}

TEST_F(CatalogueTransfer, AFileNameThatLeavesTheFolderIsRefused) {
    Write(ana.Support() / "secret", "secret");
    WriteCatalogue("<catalogue reference=\"TEST_CATALOG\"><item guid=\"1\" name=\"Thief\" "
                   "group=\"no\"><property name=\"PICTURE\" value=\"../secret\"/></item>"
                   "</catalogue>");
    const Ended push = Push();
    EXPECT_EQ(push.status, 8) << push;
    EXPECT_THAT(push.err, HasSubstr("../secret"));
    EXPECT_THAT(ana.Zebx({"ls"}).out, HasSubstr("In all: 0 stored"));
}

TEST_F(CatalogueTransfer, ARecordCannotWriteOutsideTheFolder) {
    WriteParts();
    Push();
    Plant(ana, "UPDATE stored_file SET name = '../escaped', name_folded = '../escaped' "
               "WHERE name = 'gate.png'");
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 8) << pull;
    EXPECT_FALSE(fs::exists(ivan.Support() / "escaped"));
    EXPECT_EQ(Bytes(File(ivan, "hydrant.pdf")), "sheet");
}

TEST_F(CatalogueTransfer, ADamagedFileIsToldAndNotWritten) {
    WriteParts();
    Push();
    Plant(ana, "UPDATE content SET bytes = CAST('pictuRe' AS BLOB) WHERE hash = "
               "(SELECT hash FROM stored_file WHERE name = 'gate.png')");
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 7) << pull;
    EXPECT_FALSE(fs::exists(File(ivan, "gate.png")));
}

TEST_F(CatalogueTransfer, AnItemThatIsNoItemIsLeftOutAndTold) {
    WriteParts();
    Push();
    Plant(ana, "UPDATE catalogue_item SET item_content = 'no item' WHERE item_id = 'G1'");
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 8) << pull;
    EXPECT_THAT(pull.err, AllOf(HasSubstr("Ball valve"), HasSubstr("G1")));
    EXPECT_THAT(Bytes(Parts(ivan)), AllOf(HasSubstr("Gate valve"), Not(HasSubstr("Ball valve"))));
}

TEST_F(CatalogueTransfer, AFolderInAFilesPlaceIsALocalFailure) {
    WriteParts();
    Push();
    fs::create_directories(File(ivan, "gate.png"));
    const Ended pull = Pull();
    EXPECT_EQ(pull.status, 9) << pull;
    EXPECT_THAT(pull.err, HasSubstr("gate.png"));
    EXPECT_EQ(Bytes(File(ivan, "hydrant.pdf")), "sheet");
}

TEST_F(CatalogueTransfer, AWrongDeclarationIsAWarning) {
    WriteParts();
    Write(ana.Support() / "Catalogues.xml",
          std::string("<catalogues><catalogue reference=\"a/b\"/>") + (kDeclaration + 13));
    const Ended push = ana.Zebx({"push", "catalogues"});
    EXPECT_EQ(push.status, 0) << push;
    EXPECT_THAT(push.err, AllOf(HasSubstr("Warning"), HasSubstr("Catalogues.xml, line 1"),
                                HasSubstr("\"a/b\"")));
}

TEST_F(CatalogueTransfer, DoctorReadsEveryCatalogueAndItsDeclaration) {
    WriteParts();
    EXPECT_THAT(ana.Zebx({"doctor"}).out, HasSubstr("Catalogues: declared: 6, items here: 4"));
    WriteCatalogue("<catalogue");
    const Ended run = ana.Zebx({"doctor"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.out, AllOf(HasSubstr("TEST_CATALOG.xml"), HasSubstr(".previous.xml")));
}

TEST_F(CatalogueTransfer, AnUnknownCatalogueIsAUsageErrorWithASuggestion) {
    const Ended run = ana.Zebx({"push", "catalogue:TEST_CATALOGUE"});
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_THAT(run.err, HasSubstr("Did you mean catalogue:TEST_CATALOG?"));
}

TEST_F(CatalogueTransfer, LsSumsACatalogueUpAndNamesItsItemsOnWish) {
    WriteParts();
    Push();
    const Ended all = ana.Zebx({"ls"});
    EXPECT_THAT(all.out, HasSubstr("items: 4"));
    const Ended one = ana.Zebx({"ls", "catalogue:TEST_CATALOG"});
    EXPECT_THAT(Lines(one.out),
                ElementsAre(HasSubstr("Kind"), HasSubstr("Valves"), HasSubstr("Hydrant"),
                            HasSubstr("Gate valve"), HasSubstr("Ball valve"),
                            HasSubstr("In all: 4 stored")));
    const json sum = DocumentOf(ana.Zebx({"ls", "catalogues", "--json"}))["result"]["entries"][0];
    EXPECT_EQ(sum["items"], 4);
    EXPECT_TRUE(sum["item"].is_null());
    const json item =
        DocumentOf(ana.Zebx({"ls", "catalogue:TEST_CATALOG", "--json"}))["result"]["entries"][1];
    EXPECT_EQ(item["item"], json({{"id", "A"}, {"name", "Hydrant"}}));
}

TEST_F(CatalogueTransfer, DiffComparesItemByItem) {
    WriteParts();
    Push();
    EXPECT_EQ(ana.Zebx({"diff", "catalogues"}).status, 0);
    EXPECT_EQ(ivan.Zebx({"diff", "catalogues"}).status, 1);
    Write(File(ana, "gate.png"), "another picture");
    const json run = DocumentOf(ana.Zebx({"diff", "catalogue:TEST_CATALOG", "--json"}));
    EXPECT_EQ(run["status"], 1);
    ASSERT_EQ(run["result"]["files"].size(), 1U);
    EXPECT_EQ(run["result"]["files"][0]["file"], "Gate valve");
    EXPECT_EQ(run["result"]["files"][0]["state"], "different");
}

TEST_F(CatalogueTransfer, ADryRunMovesNothing) {
    WriteParts();
    const Ended push = ana.Zebx({"push", "--dry-run", "catalogues"});
    EXPECT_EQ(push.status, 0) << push;
    EXPECT_THAT(Words(push.out), Contains(HasSubstr("catalogue:TEST_CATALOG new 4 ")));
    EXPECT_THAT(ana.Zebx({"ls"}).out, HasSubstr("In all: 0 stored"));
    Push();
    const Ended pull = ivan.Zebx({"pull", "--dry-run", "catalogues"});
    EXPECT_THAT(Words(pull.out), Contains(HasSubstr("catalogue:TEST_CATALOG new 4 ")));
    EXPECT_FALSE(fs::exists(Parts(ivan)));
}

TEST_F(CatalogueTransfer, LogTellsTheRevisionsOfACatalogue) {
    WriteParts();
    Push();
    Write(ana.Support() / "nodes/a.dwg", "drawing");
    ana.Zebx({"push", "ncf:002_NODE"});
    const Ended log = ana.Zebx({"log", "catalogue:TEST_CATALOG"});
    EXPECT_THAT(log.out, AllOf(HasSubstr("TEST_CATALOG/G1"), Not(HasSubstr("002_NODE"))));
    EXPECT_THAT(ana.Zebx({"log", "catalogue:OTHER_CATALOG"}).out, Not(HasSubstr("TEST_CATALOG")));
}

} // namespace
