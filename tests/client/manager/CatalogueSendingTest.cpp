// SPDX-License-Identifier: MIT
// Real local catalogues on their way into a scripted repository.
#include "client/manager/CatalogueTransferTest.h"

#include <gmock/gmock.h>

using namespace Repository;
using testing::_;
using testing::ElementsAre;
using testing::InSequence;
using testing::IsEmpty;
using testing::Return;
using ZEBGis::Data::CatalogItemPtr;

namespace {

class CatalogueSending : public CatalogueTransferTest {
protected:
    CatalogueSending() { DeclareCatalogues(workstation, {Declared(u"PIPES", u"Drawings")}); }

    int Send() {
        return transfer.SendCatalog(*CCatalogManager::Instance()->GetCatalogMetadata(u"PIPES"));
    }
    // The backend takes the item and gives this answer.
    void ExpectItem(const CString& id, int answer = 1) {
        EXPECT_CALL(backend, AddCatalogItem(testing::ResultOf(
                                 [](const NetItem& item) { return item->GetCatalogueId(); }, id)))
            .WillOnce(Return(answer));
    }
    // The backend takes whatever comes, and notes it.
    void TakeEverything() {
        EXPECT_CALL(backend, IsRepositoryAccessible()).WillRepeatedly([this] {
            return goneAfter-- > 0 ? 1 : 0;
        });
        EXPECT_CALL(backend, AddCatalogItem(_)).WillRepeatedly([this](const NetItem& item) {
            sent.push_back(item);
            return item->GetCatalogueId() == refused ? 0 : 1;
        });
    }
    std::vector<CString> SentIds() const {
        std::vector<CString> ids;
        for (const NetItem& item : sent)
            ids.push_back(item->GetCatalogueId());
        return ids;
    }

    static WorkspaceLines::Line Sent() { return {1, Msg(10714) + u" Name of PIPES"}; }
    static WorkspaceLines::Line NotSent() { return {4, Msg(10715) + u" Name of PIPES"}; }

    std::vector<NetItem> sent;
    CString refused;
};

TEST_F(CatalogueSending, SendsParentsBeforeChildrenDepthFirstAndAsksAfterEach) {
    MakeCatalogue(u"PIPES",
                  {Group(u"g", u"g", {Group(u"h", u"h", {Leaf(u"x", u"x")}), Leaf(u"y", u"y")}),
                   Leaf(u"a", u"a")});
    const InSequence order;
    for (const char16_t* id : {u"g", u"h", u"x", u"y", u"a"}) {
        ExpectItem(id);
        ExpectAccessible(1);
    }
    EXPECT_NE(Send(), 0);
    EXPECT_EQ(log.Lines(), Lines{Sent()});
    EXPECT_THAT(steps.Take(), ElementsAre(u"sent", u"sent", u"sent", u"sent", u"sent"));
}

TEST_F(CatalogueSending, RecordsCarryReferenceDisplayNameParentAndFilesAndNoMembers) {
    MakeCatalogue(u"PIPES", {Group(u"g", u"g", {Leaf(u"x", u"x")})});
    const auto fileManager = ReplaceFileManager(u"Drawings");
    EXPECT_CALL(*fileManager, GetFiles(IsEmpty(), TextIs(u"g")));
    EXPECT_CALL(*fileManager, GetFiles(IsEmpty(), TextIs(u"x")))
        .WillOnce([](RepositoryFiles& files, const char16_t*) {
            files.push_back(Stored(u"x.dwg", "x"));
        });
    TakeEverything();
    EXPECT_NE(Send(), 0);
    ASSERT_EQ(sent.size(), 2U);
    EXPECT_EQ(sent[0]->GetItemContent(), XmlOf(*Group(u"g", u"g")));
    EXPECT_EQ(sent[1]->GetCatalogueTag(), u"PIPES");
    EXPECT_EQ(sent[1]->GetCatalogueName(), u"Name of PIPES");
    EXPECT_EQ(sent[1]->GetParentId(), u"g");
    EXPECT_EQ(NamesOf(*sent[1]->GetFiles()), std::vector<CString>{u"x.dwg"});
}

TEST_F(CatalogueSending, TheTraceNamesTheCatalogueAndTellsOfEachItemInItsWords) {
    MakeCatalogue(u"PIPES", {Group(u"g", u"Grupa", {Leaf(u"x", u"Čvor")})});
    TakeEverything();
    refused = u"x";
    EXPECT_EQ(Send(), 0);
    const std::string send = "DlgTabAdmin CDlgTabAdmin::SendCatalogToNetRepo ";
    const std::string add = "DlgTabAdmin CDlgTabAdmin::AddCatalogItemToNetrepo ";
    EXPECT_THAT(trace.Lines(),
                ElementsAre(send + "Entering function , CDlgTabAdmin::SendCatalogToNetRepo",
                            send + "strRefCat = 'PIPES'",
                            add + "Entering function , CDlgTabAdmin::AddCatalogItemToNetrepo",
                            add + "(LPCSTR)_tochar(strMsg) = 'Dodan item: Grupa'",
                            add + "Entering function , CDlgTabAdmin::AddCatalogItemToNetrepo",
                            add + "(LPCSTR)_tochar(strMsg) = 'Nije dodan item: \xC8vor'",
                            add + "Exiting function , CDlgTabAdmin::AddCatalogItemToNetrepo",
                            add + "Exiting function , CDlgTabAdmin::AddCatalogItemToNetrepo",
                            send + "Exiting function , CDlgTabAdmin::SendCatalogToNetRepo"));
}

TEST_F(CatalogueSending, TheTracesWordsStayInTheUsersEveryLanguage) {
    MakeCatalogue(u"PIPES", {Leaf(u"x", u"x")});
    workstation.Set("ZEBX_LANGUAGE", "hr");
    TakeEverything();
    EXPECT_NE(Send(), 0);
    EXPECT_THAT(trace.Lines(),
                testing::Contains(testing::EndsWith("(LPCSTR)_tochar(strMsg) = 'Dodan item: x'")));
}

TEST_F(CatalogueSending, ARefusedItemMakesItAFailureAndTheRestIsSentItsChildrenToo) {
    MakeCatalogue(u"PIPES", {Group(u"g", u"g", {Leaf(u"x", u"x")}), Leaf(u"a", u"a")});
    TakeEverything();
    refused = u"g";
    EXPECT_EQ(Send(), 0);
    EXPECT_THAT(SentIds(), ElementsAre(u"g", u"x", u"a"));
    EXPECT_EQ(log.Lines(), Lines{NotSent()});
    EXPECT_THAT(steps.Take(), ElementsAre(u"sent", u"sent"));
}

TEST_F(CatalogueSending, AnyRefusedItemCountsAlsoTheFirstOfSeveral) {
    MakeCatalogue(u"PIPES", {Leaf(u"a", u"a"), Leaf(u"b", u"b"), Leaf(u"c", u"c")});
    for (const char16_t* id : {u"a", u"b", u"c"}) {
        TakeEverything();
        refused = id;
        EXPECT_EQ(Send(), 0);
    }
}

TEST_F(CatalogueSending, StopsAfterTheItemWithWhichTheRepositoryWentAway) {
    MakeCatalogue(u"PIPES", {Group(u"g", u"g", {Leaf(u"x", u"x")}), Leaf(u"a", u"a")});
    for (int answers = 0; answers < 3; ++answers) {
        sent.clear();
        goneAfter = answers;
        TakeEverything();
        EXPECT_EQ(Send(), 0);
        EXPECT_EQ(sent.size(), answers + 1U);
        const auto lines = trace.Lines();
        EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                                [](const auto& line) {
                                    return line.find("Dodan item") != std::string::npos;
                                }),
                  (answers + 1) * answers / 2)
            << "the item itself gets no line";
    }
    EXPECT_EQ(log.Lines(), (Lines{NotSent(), NotSent(), NotSent()}));
}

TEST_F(CatalogueSending, AnEmptyCatalogueIsSentWithoutTheRepository) {
    EXPECT_NE(Send(), 0);
    EXPECT_EQ(log.Lines(), Lines{Sent()});
}

TEST_F(CatalogueSending, ACatalogueThatCannotBeReadSendsNothingAndSaysWhy) {
    Write(CatalogueFile(workstation, "PIPES"), "<catalogue");
    EXPECT_FALSE(CCatalogManager::Instance()->GetCatalog(u"PIPES", 1));
    const CString problem = CCatalogManager::Instance()->GetProblem();
    EXPECT_EQ(Send(), 0);
    EXPECT_EQ(log.Lines(),
              (Lines{{4, Platform::Fill(Msg(22002), {u"Name of PIPES", problem})}, NotSent()}));
    EXPECT_THAT(steps.Take(), IsEmpty());
    EXPECT_EQ(Read(CatalogueFile(workstation, "PIPES")), "<catalogue");
}

TEST_F(CatalogueSending, TheDeepestCatalogueIsSentWhole) {
    CatalogItemPtr outermost = Leaf(u"leaf", u"leaf");
    for (int level = 199; level >= 1; --level)
        outermost = Group(u"g" + Platform::ToText(level), u"g", {outermost});
    MakeCatalogue(u"PIPES", {outermost});
    TakeEverything();
    EXPECT_NE(Send(), 0);
    EXPECT_EQ(sent.size(), 200U);
}

TEST_F(CatalogueSending, WhatWasSentComesBackTheSame) {
    MakeCatalogue(u"PIPES",
                  {Group(u"g", u"g", {Leaf(u"x", u"x"), Leaf(u"y", u"y")}), Leaf(u"a", u"a")});
    TakeEverything();
    EXPECT_NE(Send(), 0);
    std::filesystem::remove(CatalogueFile(workstation, "PIPES"));
    CCatalogManager::Instance()->Forget(u"PIPES");
    NetIs(sent);
    EXPECT_EQ(transfer.LoadCatalogs(VisibleCatalogues(), 1), 1);
    EXPECT_EQ(SavedOutline(u"PIPES"), u"g(x y) a");
}

} // namespace
