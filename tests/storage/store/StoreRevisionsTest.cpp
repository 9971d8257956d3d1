// SPDX-License-Identifier: MIT
// Every write is a revision.
#include "TestFiles.h"
#include "TestRepository.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;

class StoreRevisions : public StoreTest {
protected:
    // The texts of one column of the revisions, in their order.
    std::vector<std::string> Column(SqlText sql) {
        std::vector<std::string> texts;
        const auto rows = store->Connection().Query(sql, {});
        while (rows->Next())
            texts.emplace_back(rows->Text(0));
        return texts;
    }
};
ZEBX_FOR_EVERY_ENGINE(StoreRevisions);

TEST_P(StoreRevisions, ARevisionSaysWhoWhenFromWhereWithWhatAndWhat) {
    store->AddFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "2", u"002_NODE")});
    const auto rows = store->Connection().Query(
        "SELECT number, made_at, user_name, workstation, program, operation, subject "
        "FROM revision",
        {});
    ASSERT_TRUE(rows->Next());
    EXPECT_EQ(rows->Integer(0), 1);
    EXPECT_EQ(rows->Text(1), "2026-11-21T08:05:19Z");
    EXPECT_EQ(rows->Text(2), "ana");
    EXPECT_EQ(rows->Text(3), "station-1");
    EXPECT_EQ(rows->Text(4), "test 1.2.3.4");
    EXPECT_EQ(rows->Text(5), "AddRepositoryFiles");
    EXPECT_EQ(rows->Text(6), "001_LABEL, 002_NODE");
    EXPECT_FALSE(rows->Next());
}

TEST_P(StoreRevisions, AClockThatGoesBackChangesNoOrder) {
    store->AddFiles({MakeFile(u"a.dwg", "1")});
    stamp.time = u"1999-01-01T00:00:00Z";
    store->AddFiles({MakeFile(u"a.dwg", "2")});
    EXPECT_EQ(Revision(), 2);
    const auto ids = store->FileIds(4, u"001_LABEL");
    ASSERT_EQ(ids.size(), 1u);
    EXPECT_EQ(BytesOf(store->File(ids[0])), "2");
    EXPECT_EQ(Number("SELECT until_revision FROM stored_file WHERE since_revision = 1"), 2);
}

TEST_P(StoreRevisions, EveryWritingOperationIsOneRevision) {
    Repository::CNetRepositoryItem item;
    item.SetId(u"i");
    Repository::CNetCatalogueItem entry;
    entry.SetCatalogueId(u"c");
    entry.SetCatalogueTag(u"TAG");
    store->RegisterContent(4, u"001_LABEL", 10313);
    store->AddFiles({MakeFile(u"a.dwg", "1")});
    store->SaveGeneralSettings(u"<gs/>", {}, u"N");
    store->AddRepositoryItem(u"TAG", item);
    store->RenameRepositoryItem(u"TAG", u"i", u"n");
    store->DeleteRepositoryItem(u"TAG", u"i");
    store->AddCatalogueItem(entry);
    store->DeleteCatalogueItem(u"TAG", u"c");
    EXPECT_THAT(Column("SELECT operation FROM revision ORDER BY number"),
                ElementsAre("RegisterContent", "AddRepositoryFiles", "SaveGS", "AddRepositoryItem",
                            "RenameRepositoryItem", "DeleteRepositoryItem", "AddCatalogItem",
                            "DeleteCatalogItem"));
    EXPECT_THAT(
        Column("SELECT subject FROM revision ORDER BY number"),
        ElementsAre("001_LABEL", "001_LABEL", "N", "TAG/i", "TAG/i", "TAG/i", "TAG/c", "TAG/c"));
    EXPECT_EQ(Revision(), 8);
}

TEST_P(StoreRevisions, AKindIsAnnouncedOnce) {
    store->RegisterContent(4, u"001_LABEL", 10313);
    store->RegisterContent(4, u"001_LABEL", 10313);
    EXPECT_EQ(Revision(), 1);
    store->RegisterContent(4, u"001_LABEL", 10314);
    EXPECT_EQ(Revision(), 2);
    EXPECT_EQ(Number("SELECT message_number FROM kind WHERE until_revision IS NULL"), 10314);
}

TEST_P(StoreRevisions, WhatWasReplacedIsStillThereWithTheRevisionsItWasValidIn) {
    store->AddFiles({MakeFile(u"a.dwg", "old")});
    store->AddFiles({MakeFile(u"b.dwg", "other")});
    store->AddFiles({MakeFile(u"a.dwg", "new")});
    EXPECT_EQ(Number("SELECT COUNT(*) FROM stored_file WHERE name = 'a.dwg' "
                     "AND since_revision = 1 AND until_revision = 3"),
              1);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM stored_file WHERE name = 'a.dwg' "
                     "AND since_revision = 3 AND until_revision IS NULL"),
              1);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM content"), 3);
}

TEST_P(StoreRevisions, AClockThatJumpsBackDoesNotDisturbTheOrder) {
    store->AddFiles({MakeFile(u"a.dwg", "first")});
    stamp.time = u"1999-01-01T00:00:00Z";
    store->AddFiles({MakeFile(u"a.dwg", "second")});
    EXPECT_EQ(BytesOf(store->File(store->FileIds(4, u"001_LABEL").at(0))), "second");
    RepositoryState state;
    store->ReadState(state);
    EXPECT_EQ(state.revision, 2);
    EXPECT_EQ(state.revisionTime, u"1999-01-01T00:00:00Z");
    EXPECT_EQ(state.revisionUser, u"ana");
}

TEST_P(StoreRevisions, ACallThatFailsInItsMiddleLeavesNothing) {
    store->AddFiles({MakeFile(u"a.dwg", "1")});
    auto broken = MakeFile(u"c.dwg", "");
    broken->SetFileContent("T");
    EXPECT_EQ(ProblemOf([&] {
                  store->AddFiles({MakeFile(u"a.dwg", "changed"), MakeFile(u"b.dwg", "2"), broken});
              }),
              Problem::Refused);
    EXPECT_EQ(Revision(), 1);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM revision"), 1);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM content"), 1);
    EXPECT_EQ(BytesOf(store->File(store->FileIds(4, u"001_LABEL").at(0))), "1");
    // The next one lands.
    store->AddFiles({MakeFile(u"b.dwg", "2")});
    EXPECT_EQ(Revision(), 2);
}

TEST_P(StoreRevisions, RowIdsAreNeverUsedAgain) {
    store->AddFiles({MakeFile(u"a.dwg", "1")});
    const auto first = store->FileIds(4, u"001_LABEL");
    store->AddFiles({MakeFile(u"a.dwg", "2")});
    store->AddFiles({MakeFile(u"a.dwg", "1")});
    const auto third = store->FileIds(4, u"001_LABEL");
    EXPECT_NE(first, third);
    EXPECT_EQ(Revision(), 3);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM content"), 2);
}

TEST_P(StoreRevisions, TheListingShowsKindsInOrderOfCodeAndIdentifierAndFilesByName) {
    store->RegisterContent(5, u"001_PUMPCURVE", 10321);
    store->RegisterContent(4, u"002_NODE", 10314);
    store->AddFiles({MakeFile(u"b.dwg", "22"), MakeFile(u"A.dwg", "1")});
    store->AddFiles({MakeFile(u"x.xml", "333", u"008_GPE", Repository::FileTypeFOC)});
    store->SaveGeneralSettings(u"<gs>č</gs>", {}, u"");
    std::vector<StoredFile> files;
    std::vector<StoredGS> settings;
    store->List(files, settings);
    ASSERT_EQ(files.size(), 5u);
    EXPECT_EQ(files[0].kind, u"001_LABEL");
    EXPECT_EQ(files[0].name, u"A.dwg");
    EXPECT_EQ(files[0].contentCode, 4);
    EXPECT_EQ(files[0].sizeBytes, 1);
    EXPECT_EQ(files[0].revision, 3);
    EXPECT_EQ(files[0].time, u"2026-11-21T08:05:19Z");
    EXPECT_EQ(BytesOf(store->File(files[0].id)), "1");
    // Published digest of the text "1".
    EXPECT_EQ(files[0].sha256, u"6b86b273ff34fce19d6b804eff5a3f5747ada4eaa22f1d49c01e52ddb7875b4b");
    EXPECT_EQ(files[1].name, u"b.dwg");
    EXPECT_EQ(files[2].kind, u"002_NODE");
    EXPECT_EQ(files[2].name, u"");
    EXPECT_EQ(files[3].kind, u"001_PUMPCURVE");
    EXPECT_EQ(files[3].contentCode, 5);
    EXPECT_EQ(files[4].name, u"x.xml");
    ASSERT_EQ(settings.size(), 1u);
    EXPECT_EQ(settings[0].name, u"");
    EXPECT_EQ(settings[0].sizeBytes, 11);
    EXPECT_EQ(settings[0].revision, 5);
}

} // namespace
} // namespace Storage
