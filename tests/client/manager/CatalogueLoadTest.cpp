// SPDX-License-Identifier: MIT
// Catalogues on their way from a scripted repository into real local ones.
#include "ZEBXRepositoryClient/CatalogueTransfer.h"
#include "client/manager/CatalogueTransferTest.h"

#include <gmock/gmock.h>

using namespace Repository;
using testing::_;
using testing::ElementsAre;
using testing::InSequence;
using testing::IsEmpty;
using testing::IsNull;
using testing::Return;

namespace {

class CatalogueLoad : public CatalogueTransferTest {
protected:
    // The backend lists these children, once.
    void ExpectList(const char16_t* parent, const std::vector<NetItem>& children, int answer = 1) {
        const auto give = [children, answer](auto, auto, std::vector<NetItem>& items, auto) {
            items = children;
            return answer;
        };
        if (parent)
            EXPECT_CALL(backend,
                        GetChildCatalogItems(TextIs(u"PIPES"), TextIs(parent), IsEmpty(), 0))
                .WillOnce(give);
        else
            EXPECT_CALL(backend, GetChildCatalogItems(TextIs(u"PIPES"), IsNull(), IsEmpty(), 0))
                .WillOnce(give);
    }
    void ExpectFetch(const NetItem& record, const NetItem& answer) {
        EXPECT_CALL(backend,
                    GetCatalogItemById(TextIs(u"PIPES"), TextIs(record->GetCatalogueId()), 1))
            .WillOnce(Return(answer));
    }
    void ExpectFetch(const NetItem& record) { ExpectFetch(record, record); }

    int LoadAll() { return transfer.LoadCatalogs(VisibleCatalogues(), 1); }

    static WorkspaceLines::Line Loaded(const CString& name) {
        return {1, Msg(10372) + u": '" + name + u"'"};
    }
    CString Shown() const { return ShownOutline(u"PIPES"); }
};

TEST_F(CatalogueLoad, RowsAreEveryCatalogueThatIsNotHiddenInTheRegistrysOrderNotTicked) {
    DeclareCatalogues(workstation, {Declared(u"Z"), Hidden(u"H"), Declared(u"A")});
    const auto rows = VisibleCatalogues();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].metadata->GetCatalogReference(), u"Z");
    EXPECT_EQ(rows[1].metadata->GetCatalogReference(), u"A");
    EXPECT_EQ(rows[0].checkState, 0);
}

TEST_F(CatalogueLoad, WithoutRowsNothingIsDone) {
    EXPECT_EQ(transfer.LoadCatalogs({}, 1), 1);
    DeclareCatalogues(workstation, {Hidden(u"H")});
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(CatalogueLoad, WithoutRowsTheProgressBarIsShownAndHidden) {
    DeclareCatalogues(workstation, {Hidden(u"H")});
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_THAT(steps.Take(), ElementsAre(Loading(0), u"hidden"));
}

TEST_F(CatalogueLoad, WalksDepthFirstInTheRepositorysOrderWithFilesItemByItem) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    const NetItem z = GroupRecord(u"z"), y = Record(u"y", u"z"), g = GroupRecord(u"g", u"z"),
                  x = Record(u"x", u"g"), a = Record(u"a");
    {
        const InSequence order;
        ExpectAccessible(1); // the row
        ExpectList(nullptr, {z, a});
        ExpectAccessible(1);
        ExpectFetch(z);
        ExpectAccessible(1);
        ExpectList(u"z", {y, g});
        ExpectAccessible(1);
        ExpectFetch(y); // its children are never asked for
        ExpectAccessible(1);
        ExpectAccessible(1);
        ExpectFetch(g);
        ExpectAccessible(1);
        ExpectList(u"g", {x});
        ExpectAccessible(1);
        ExpectFetch(x);
        ExpectAccessible(1);
        ExpectAccessible(1);
        ExpectFetch(a);
        ExpectAccessible(1);
    }
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"z(y g(x)) a");
    EXPECT_EQ(log.Lines(), Lines{Loaded(u"Name of PIPES")});
    EXPECT_THAT(steps.Take(),
                ElementsAre(Loading(1), u"0", Msg(350) + u": Name of PIPES", u"loaded", u"loaded",
                            u"loaded", u"loaded", u"loaded", u"hidden"));
}

TEST_F(CatalogueLoad, TheTraceTellsOfTheLoadAndOfEachItem) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    NetIs({Record(u"a")});
    EXPECT_EQ(LoadAll(), 1);
    const std::string load = "DlgTabCatalogs CDlgTabCatalogs::LoadCatalogs ";
    const std::string items = "DlgTabCatalogs CDlgTabCatalogs::LoadCatalogItems ";
    const std::string list = "RepositoryStorageManager "
                             "Repository::CRepositoryStorageManager::GetChildCatalogItems ";
    const std::string listName = "Repository::CRepositoryStorageManager::GetChildCatalogItems";
    EXPECT_THAT(trace.Lines(),
                ElementsAre(load + "Entering function , CDlgTabCatalogs::LoadCatalogs",
                            items + "Entering function , CDlgTabCatalogs::LoadCatalogItems",
                            list + "Entering function , " + listName,
                            list + "Exiting function , " + listName,
                            items + "Entering function , CDlgTabCatalogs::LoadCatalogItems",
                            items + "Exiting function , CDlgTabCatalogs::LoadCatalogItems",
                            items + "Exiting function , CDlgTabCatalogs::LoadCatalogItems",
                            load + "Exiting function , CDlgTabCatalogs::LoadCatalogs"));
}

TEST_F(CatalogueLoad, ReplacesTheLocalItemOfTheSameGuidWithAllBelowItAndLeavesTheOthers) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    MakeCatalogue(u"PIPES", {Group(u"g", u"old", {Leaf(u"local", u"below")}),
                             Group(u"mine", u"mine", {Leaf(u"x", u"old-x")})});
    NetIs({GroupRecord(u"g"), Record(u"x", u"g")});
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"mine g(x)");
}

TEST_F(CatalogueLoad, LoadingTwiceLeavesEachItemOnce) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    NetIs({GroupRecord(u"g"), Record(u"x", u"g"), Record(u"a")});
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"g(x) a");
    EXPECT_EQ(log.Lines(), (Lines{Loaded(u"Name of PIPES"), Loaded(u"Name of PIPES")}));
}

TEST_F(CatalogueLoad, TheParentOfAPlacedItemIsTheGroupThatHoldsIt) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    NetIs({GroupRecord(u"g"), Record(u"x", u"g")});
    EXPECT_EQ(LoadAll(), 1);
    const auto catalogue = CCatalogManager::Instance()->GetCatalog(u"PIPES", 1);
    EXPECT_EQ(catalogue->GetItembyGuid(u"x")->GetParentItemGuid(), u"g");
    EXPECT_EQ(catalogue->GetItembyGuid(u"g")->GetParentItemGuid(), u"");
}

TEST_F(CatalogueLoad, AnItemWithoutALocalFormIsTracedAndLeftOutAndItsChildrenGoToTheTopLevel) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    NetIs({GroupRecord(u"bad"), Record(u"x", u"bad"), Record(u"a")});
    net.at(u"bad")->SetItemContent(u"no item");
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"x a");
    EXPECT_THAT(trace.Lines(), testing::Contains("DlgTabCatalogs CDlgTabCatalogs::LoadCatalogItems "
                                                 "Failed verification:  'ptrItemFromNet.get()!=0'")
                                   .Times(1));
    EXPECT_THAT(steps.Take(), ElementsAre(_, _, _, u"loaded", u"loaded", u"hidden"));
    EXPECT_EQ(log.Lines(), (Lines{LeftOut(u"bad"), Loaded(u"Name of PIPES")}));
    EXPECT_TRUE(transfer.HasLeftOut());
}

TEST_F(CatalogueLoad, AnItemThatTheCatalogueDoesNotTakeIsLeftOutAndTheLocalOneStays) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    MakeCatalogue(u"PIPES", {Leaf(u"taken", u"mine"), Group(u"g", u"old", {Leaf(u"y", u"y")})});
    NetIs({GroupRecord(u"g"), Record(u"x", u"g"), Record(u"a")});
    // Its content brings a member along whose GUID is taken.
    net.at(u"g")->SetItemContent(XmlOf(*Group(u"g", u"g", {Leaf(u"taken", u"other")})).c_str());
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"mine old(y) x a");
    EXPECT_THAT(steps.Take(), ElementsAre(_, _, _, u"loaded", u"loaded", u"hidden"));
    EXPECT_EQ(log.Lines(), (Lines{LeftOut(u"g"), Loaded(u"Name of PIPES")}));
    EXPECT_TRUE(transfer.HasLeftOut());
}

TEST_F(CatalogueLoad, OnlyRowsTickedExactlyAreLoadedUnlessAllAre) {
    DeclareCatalogues(workstation,
                      {Declared(u"A"), Declared(u"B"), Declared(u"C"), Declared(u"D")});
    NetIs({});
    auto rows = VisibleCatalogues();
    rows[1].checkState = 1;
    rows[2].checkState = 2;
    rows[3].checkState = -1;
    EXPECT_EQ(transfer.LoadCatalogs(rows, 0), 1);
    EXPECT_EQ(log.Lines(), Lines{Loaded(u"Name of B")});
    EXPECT_THAT(steps.Take(), ElementsAre(Loading(4), u"0", u"1", Msg(350) + u": Name of B", u"2",
                                          u"3", u"hidden"));
    EXPECT_EQ(transfer.LoadCatalogs(rows, 1), 1);
    EXPECT_EQ(log.Lines().size(), 5U);
}

TEST_F(CatalogueLoad, WithNoRowTickedNothingIsLoaded) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    ExpectAccessible(1);
    EXPECT_EQ(transfer.LoadCatalogs(VisibleCatalogues(), 0), 1);
    EXPECT_EQ(log.Lines(), Lines{});
    EXPECT_FALSE(std::filesystem::exists(CatalogueFile(workstation, "PIPES")));
}

TEST_F(CatalogueLoad, ARowWithoutMetadataIsPassedOver) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    NetIs({});
    auto rows = VisibleCatalogues();
    rows.insert(rows.begin(), CatalogueRow{{}, 1});
    EXPECT_EQ(transfer.LoadCatalogs(rows, 1), 1);
    EXPECT_EQ(log.Lines(), Lines{Loaded(u"Name of PIPES")});
    EXPECT_THAT(steps.Take(),
                ElementsAre(Loading(2), u"0", u"1", Msg(350) + u": Name of PIPES", u"hidden"));
}

TEST_F(CatalogueLoad, StopsAtTheThirdOfFiveCataloguesWithTheFirstTwoSaved) {
    DeclareCatalogues(workstation, {Declared(u"A"), Declared(u"B"), Declared(u"C"), Declared(u"D"),
                                    Declared(u"E")});
    NetIs({Record(u"x")});
    goneAfter = 3 + 3 + 2; // its row and its first item's turn are the third's last answers
    EXPECT_EQ(LoadAll(), 0);
    EXPECT_EQ(log.Lines(), (Lines{Loaded(u"Name of A"), Loaded(u"Name of B")}));
    EXPECT_EQ(SavedOutline(u"A"), u"x");
    EXPECT_EQ(SavedOutline(u"B"), u"x");
    for (const char* reference : {"C", "D", "E"})
        EXPECT_FALSE(std::filesystem::exists(CatalogueFile(workstation, reference))) << reference;
    EXPECT_EQ(steps.Take().back(), Msg(350) + u": Name of C");
    ASSERT_TRUE(steps.Shown()); // the progress bar stays, kept
    EXPECT_EQ(steps.Shown()->position, 2);
    EXPECT_EQ(steps.Shown()->to, 5);
}

TEST_F(CatalogueLoad, StopsWhereverItIsWhenTheRepositoryGoesAwayAndSavesNothing) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    NetIs({GroupRecord(u"g"), GroupRecord(u"h", u"g"), Record(u"x", u"h"), Record(u"a")});
    const CString placed[] = {u"", u"", u"", u"g", u"g", u"g(h)", u"g(h)", u"g(h(x))", u"g(h(x))"};
    for (int answers = 0; answers < 9; ++answers) {
        CCatalogManager::Instance()->Forget(u"PIPES");
        goneAfter = answers;
        EXPECT_EQ(LoadAll(), 0) << answers;
        EXPECT_EQ(Shown(), placed[answers]) << answers;
        EXPECT_FALSE(std::filesystem::exists(CatalogueFile(workstation, "PIPES")));
        EXPECT_TRUE(steps.Shown()) << answers;
    }
    EXPECT_EQ(log.Lines(), Lines{});
    goneAfter = 9; // the last answer was needed
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_FALSE(steps.Shown());
    EXPECT_FALSE(transfer.HasLeftOut());
    EXPECT_EQ(SavedOutline(u"PIPES"), u"g(h(x)) a");
}

TEST_F(CatalogueLoad, ALocalCatalogueThatCannotBeReadStaysAndTheNextRowFollows) {
    DeclareCatalogues(workstation, {Declared(u"BAD"), Declared(u"GOOD")});
    NetIs({Record(u"x")});
    Write(CatalogueFile(workstation, "BAD"), "<catalogue");
    EXPECT_FALSE(CCatalogManager::Instance()->GetCatalog(u"BAD", 1));
    const CString problem = CCatalogManager::Instance()->GetProblem();
    EXPECT_FALSE(problem.empty());
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(log.Lines(), (Lines{{4, Platform::Fill(Msg(22002), {u"Name of BAD", problem})},
                                  Loaded(u"Name of GOOD")}));
    EXPECT_EQ(Read(CatalogueFile(workstation, "BAD")), "<catalogue");
    EXPECT_EQ(SavedOutline(u"GOOD"), u"x");
}

TEST_F(CatalogueLoad, ACatalogueThatCannotBeSavedIsAFailureInsteadOfASuccess) {
    DeclareCatalogues(workstation, {Declared(u"A"), Declared(u"B")});
    NetIs({Record(u"x")});
    std::filesystem::create_directories(CatalogueFile(workstation, "A"));
    std::filesystem::create_directories(CatalogueFile(workstation, "B").parent_path());
    auto* const catalogues = CCatalogManager::Instance();
    if (!catalogues->GetCatalog(u"A", 1)) {
        // A folder in the file's place is noticed in reading already; then the file goes later.
        std::filesystem::remove(CatalogueFile(workstation, "A"));
        ASSERT_TRUE(catalogues->GetCatalog(u"A", 1));
        std::filesystem::create_directories(CatalogueFile(workstation, "A"));
    }
    EXPECT_EQ(LoadAll(), 1);
    ASSERT_EQ(log.Lines().size(), 2U);
    catalogues->Save(u"A", 1, 1);
    EXPECT_EQ(log.Lines()[0],
              (WorkspaceLines::Line{
                  4, Platform::Fill(Msg(22003), {u"Name of A", catalogues->GetProblem()})}));
    EXPECT_EQ(log.Lines()[1], Loaded(u"Name of B"));
}

TEST_F(CatalogueLoad, AGroupThatCannotBeListedKeepsTheCatalogueFromBeingSaved) {
    DeclareCatalogues(workstation, {Declared(u"PIPES"), Declared(u"NEXT")});
    MakeCatalogue(u"PIPES", {Group(u"g", u"g", {Leaf(u"x", u"x")})});
    NetIs({GroupRecord(u"g"), Record(u"a")});
    notListed = u"g";
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"g(x)");
    EXPECT_EQ(log.Lines()[0],
              (WorkspaceLines::Line{4, Platform::Fill(Msg(22004), {u"Name of PIPES"})}));
}

TEST_F(CatalogueLoad, AListThatFailsBecauseTheRepositoryWentAwayIsAStop) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    const InSequence order;
    ExpectAccessible(1);
    ExpectList(nullptr, {}, 0);
    ExpectAccessible(0);
    EXPECT_EQ(LoadAll(), 0);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(CatalogueLoad, AnEmptyHandleAmongTheChildrenIsPassedOver) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    const NetItem a = Record(u"a");
    const InSequence order;
    ExpectAccessible(1);
    ExpectList(nullptr, {nullptr, a});
    ExpectAccessible(1);
    ExpectAccessible(1);
    ExpectFetch(a);
    ExpectAccessible(1);
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"a");
}

TEST_F(CatalogueLoad, AGroupThatHoldsItselfComesToAnEnd) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    NetIs({GroupRecord(u"g"), GroupRecord(u"h", u"g"), Record(u"x", u"h")});
    below[u"h"].insert(below[u"h"].begin(), net.at(u"g"));
    EXPECT_EQ(LoadAll(), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"g(h(x))");
    EXPECT_THAT(steps.Take(), ElementsAre(_, _, _, u"loaded", u"loaded", u"loaded", u"hidden"));
    EXPECT_EQ(log.Lines(), (Lines{LeftOut(u"g"), Loaded(u"Name of PIPES")}));
}

TEST_F(CatalogueLoad, WhatLiesBelow200GroupsIsLeftOut) {
    DeclareCatalogues(workstation, {Declared(u"PIPES")});
    std::vector<NetItem> records;
    CString parent;
    for (int level = 1; level <= 202; ++level) {
        records.push_back(GroupRecord(u"g" + Platform::ToText(level), parent));
        parent = records.back()->GetCatalogueId();
    }
    NetIs(records);
    EXPECT_EQ(LoadAll(), 1);
    const auto taken = steps.Take();
    EXPECT_EQ(std::count(taken.begin(), taken.end(), u"loaded"), 200);
    EXPECT_EQ(log.Lines(), (Lines{LeftOut(u"g201"), Loaded(u"Name of PIPES")}));
}

} // namespace
