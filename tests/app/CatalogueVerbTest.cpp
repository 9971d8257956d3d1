// SPDX-License-Identifier: MIT
#include "CatalogueStations.h"
#include "Documents.h"
#include "Lines.h"

#include <gmock/gmock.h>

using namespace AppTest;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class CatalogueVerb : public CatalogueStations {
protected:
    CatalogueVerb() {
        WriteParts();
        EXPECT_EQ(ana.Zebx({"push", "catalogue:TEST_CATALOG"}).status, 0);
    }
    Ended Catalogue(std::vector<std::string> words) const {
        words.insert(words.begin(), {"catalogue", "TEST_CATALOG"});
        return ana.Zebx(words);
    }
};

TEST_F(CatalogueVerb, ShowListsEachGroupBeforeItsMembers) {
    const Ended run = Catalogue({"show"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(Words(run.out), ElementsAre("GUID In group Name", "G - Valves",
                                            "G2 Valves Gate valve", "G1 Valves Ball valve",
                                            "A - Hydrant", "In all: 4 items, 1 of them groups."));
    EXPECT_EQ(Catalogue({}).out, run.out);
}

TEST_F(CatalogueVerb, TheTreeShowsLevelsAndFiles) {
    EXPECT_EQ(Catalogue({"show", "--tree", "--files"}).out, "Valves/\n"
                                                            "  Gate valve\n"
                                                            "    - gate.png\n"
                                                            "  Ball valve\n"
                                                            "Hydrant\n"
                                                            "  - hydrant.pdf\n"
                                                            "In all: 4 items, 1 of them groups.\n");
}

TEST_F(CatalogueVerb, TheTableNamesFilesOnWish) {
    EXPECT_THAT(Words(Catalogue({"--files", "show"}).out),
                ElementsAre("GUID In group Name Files", "G - Valves",
                            "G2 Valves Gate valve gate.png", "G1 Valves Ball valve",
                            "A - Hydrant hydrant.pdf", "In all: 4 items, 1 of them groups."));
}

TEST_F(CatalogueVerb, TheDocumentHasTheItemsWithTheirTexts) {
    const json result = DocumentOf(Catalogue({"show", "--files", "--json"}))["result"];
    EXPECT_EQ(result["catalogue"], "TEST_CATALOG");
    const json& gate = result["items"][1];
    EXPECT_EQ(gate["id"], "G2");
    EXPECT_EQ(gate["parent"], "G");
    EXPECT_EQ(gate["level"], 1);
    EXPECT_EQ(gate["isGroup"], false);
    EXPECT_EQ(gate["files"], json({{{"name", "gate.png"}, {"bytes", 7}}}));
    EXPECT_THAT(gate["content"].get<std::string>(), HasSubstr("name=\"DN\""));
    EXPECT_TRUE(DocumentOf(Catalogue({"show", "--json"}))["result"]["items"][1]["files"].is_null());
}

TEST_F(CatalogueVerb, DeletingAGroupTakesItsMembersAlong) {
    const Ended run = Catalogue({"delete", "G"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("Valves"));
    EXPECT_THAT(Words(Catalogue({"show"}).out), ElementsAre("GUID In group Name", "A - Hydrant",
                                                            "In all: 1 items, 0 of them groups."));
    const Ended log = ana.Zebx({"log", "--limit", "1"});
    EXPECT_THAT(log.out, HasSubstr("TEST_CATALOG/G"));
    const json again = DocumentOf(Catalogue({"delete", "A", "--json"}));
    EXPECT_EQ(again["result"]["deleted"], json({{"id", "A"}, {"name", "Hydrant"}}));
}

TEST_F(CatalogueVerb, WhatIsNotThereCannotBeDeleted) {
    const Ended run = Catalogue({"delete", "nothing"});
    EXPECT_EQ(run.status, 8) << run;
    EXPECT_THAT(run.err, HasSubstr("nothing"));
    EXPECT_EQ(ana.Zebx({"catalogue", "NO_CATALOG", "delete", "G"}).status, 2);
}

TEST_F(CatalogueVerb, AnUnknownCatalogueIsAUsageError) {
    const Ended run = ana.Zebx({"catalogue", "TEST_CATALOK"});
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_THAT(run.err, HasSubstr("Did you mean catalogue:TEST_CATALOG?"));
}

TEST_F(CatalogueVerb, WhatTheRepositoryHoldsIsShownWhereItIsNotDeclared) {
    fs::remove(ana.Support() / "Catalogues.xml");
    EXPECT_THAT(Catalogue({"show"}).out, HasSubstr("Hydrant"));
}

TEST_F(CatalogueVerb, WrongWordsAreUsageErrors) {
    EXPECT_EQ(ana.Zebx({"catalogue"}).status, 2);
    EXPECT_EQ(Catalogue({"remove", "G"}).status, 2);
    EXPECT_EQ(Catalogue({"delete"}).status, 2);
    EXPECT_EQ(Catalogue({"show", "G"}).status, 2);
    EXPECT_EQ(Catalogue({"delete", "G", "A"}).status, 2);
    EXPECT_EQ(Catalogue({"delete", "G", "--tree"}).status, 2);
}

} // namespace
