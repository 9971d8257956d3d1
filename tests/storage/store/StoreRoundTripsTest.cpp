// SPDX-License-Identifier: MIT
// How often each operation waits for a server, and what of it goes over the wire.  The server
// is an embedded repository that counts.
#include "CountingSqlConnection.h"
#include "TestFiles.h"
#include "TestRepository.h"
#include "ZEBXRepositoryClient/ContentKinds.h"
#include "platform/os/File.h"
#include "platform/os/FileSearch.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using Repository::kContentNCF;
using testing::ElementsAre;
using testing::IsEmpty;

std::string Content(int i, std::size_t size) {
    std::string bytes(size, static_cast<char>('a' + i % 26));
    bytes += std::to_string(i);
    return bytes;
}

class StoreRoundTrips : public testing::Test {
protected:
    StoreRoundTrips() { OpenStore(); }

    void OpenStore(std::shared_ptr<ContentCache> cache = {}) {
        StoreOptions options;
        options.stamp = [] { return Stamp{u"2026-11-22T03:00:00Z", u"ana", u"s1", u"test"}; };
        options.leftOut = [this](const StorageError& error) { leftOut.push_back(error); };
        options.cache = std::move(cache);
        store = std::make_unique<Store>(
            std::make_unique<CountingSqlConnection>(repository.Connect(), wire),
            std::move(options));
    }
    // The round trips of `work`.
    template<typename Work>
    int Waits(Work work) {
        const int before = wire.waits;
        work();
        return wire.waits - before;
    }
    static CString NameOf(int i) { return u"f" + Platform::ToText(100'000 + i); }
    Repository::RepositoryFiles Files(int count, std::size_t size) {
        Repository::RepositoryFiles files;
        for (int i = 0; i < count; ++i)
            files.push_back(MakeFile(NameOf(i), Content(i, size)));
        return files;
    }
    void LoadAll(int count, std::size_t size) {
        const auto ids = store->FileIds(kContentNCF, u"001_LABEL");
        ASSERT_EQ(ids.size(), static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            ASSERT_TRUE(BytesOf(store->File(ids[static_cast<std::size_t>(i)])) == Content(i, size))
                << i;
    }
    CatalogueItemPtr Item(const CString& id, const CString& parent, int files = 0) {
        auto item = boost::make_shared<Repository::CNetCatalogueItem>();
        item->SetCatalogueTag(u"PIPES");
        item->SetCatalogueId(id.c_str());
        item->SetParentId(parent.c_str());
        item->SetIsGroup(files == 0);
        item->SetName(id.c_str());
        for (int i = 0; i < files; ++i)
            item->GetFiles()->push_back(
                MakeFile(id + Platform::ToText(i), "of " + std::to_string(i)));
        return item;
    }
    // As the manager walks; what it was given, in order.
    void Walk(const CString& parent, std::vector<CString>& given) {
        for (const auto& child : store->CatalogueChildren(u"PIPES", parent, false)) {
            const CString id = child->GetCatalogueId();
            const auto item = store->CatalogueItem(u"PIPES", id, true);
            ASSERT_TRUE(item);
            given.push_back(id + u":" +
                            Platform::ToText(static_cast<std::int64_t>(item->GetFiles()->size())));
            if (child->GetIsGroup())
                Walk(id, given);
        }
    }
    // Two groups of three items with two files each.
    void MakeCatalogue() {
        for (const char16_t* group : {u"g", u"h"}) {
            store->AddCatalogueItem(*Item(group, u""));
            for (int i = 0; i < 3; ++i)
                store->AddCatalogueItem(*Item(group + Platform::ToText(i), group, 2));
        }
    }

    SqliteTestRepository repository;
    WireCounts wire;
    std::vector<StorageError> leftOut;
    std::unique_ptr<Store> store;
};

TEST_F(StoreRoundTrips, AThousandFilesTakeAsManyAsTen) {
    store->AddFiles(Files(10, 100));
    EXPECT_EQ(Waits([&] { LoadAll(10, 100); }), 2); // the listing, the contents
    store->AddFiles(Files(1000, 100));
    EXPECT_EQ(Waits([&] { LoadAll(1000, 100); }), 2);
}

TEST_F(StoreRoundTrips, BatchesAreOnTheirWayBeforeTheyAreNeeded) {
    store->AddFiles(Files(60, 1 << 20));
    wire.mostOpenAnswers = 0;
    // 60 MB: a batch of 1 MB, eight of 8 MB; all but those at the beginning were asked for while
    // others were read.
    EXPECT_LE(Waits([&] { LoadAll(60, 1 << 20); }), 7);
    EXPECT_GE(wire.mostOpenAnswers, 3);
    EXPECT_LE(wire.mostOpenAnswers, 6);
}

TEST_F(StoreRoundTrips, ACallerWhoWantsOneFileBringsFewMore) {
    store->AddFiles(Files(100, 1 << 20));
    const auto ids = store->FileIds(kContentNCF, u"001_LABEL");
    wire.statements = wire.number = wire.arrived = 0;
    store->File(ids[50]);
    EXPECT_LE(wire.statements, 6);
}

TEST_F(StoreRoundTrips, AContentThatSeveralFilesHaveComesOnce) {
    Repository::RepositoryFiles files;
    for (int i = 0; i < 50; ++i)
        files.push_back(MakeFile(NameOf(i), std::string(10'000, 'x')));
    store->AddFiles(files);
    wire.answerBytes = 0;
    for (const CString& id : store->FileIds(kContentNCF, u"001_LABEL"))
        EXPECT_EQ(BytesOf(store->File(id)).size(), 10'000u);
    EXPECT_LT(wire.answerBytes, 30'000);
}

TEST_F(StoreRoundTrips, SendingFilesAsksOnceForMany) {
    // The turn with the files of the kind, which contents are known, the commit.
    EXPECT_EQ(Waits([&] { store->AddFiles(Files(500, 100)); }), 3);
    // Nothing new: the turn alone.
    EXPECT_EQ(Waits([&] { store->AddFiles(Files(500, 100)); }), 1);
    auto changed = Files(500, 100);
    changed[3] = MakeFile(NameOf(3), "new");
    EXPECT_EQ(Waits([&] { store->AddFiles(changed); }), 3);
}

TEST_F(StoreRoundTrips, NoContentThatTheServerHasIsSentAgain) {
    store->AddFiles(Files(20, 10'000));
    Repository::RepositoryFiles renamed;
    for (int i = 0; i < 20; ++i)
        renamed.push_back(MakeFile(u"other" + NameOf(i), Content(i, 10'000)));
    wire.sentBytes = 0;
    store->AddFiles(renamed);
    EXPECT_LT(wire.sentBytes, 10'000);
}

TEST_F(StoreRoundTrips, OneContentInManyFilesIsSentOnce) {
    Repository::RepositoryFiles files;
    for (int i = 0; i < 2500; ++i)
        files.push_back(MakeFile(NameOf(i), std::string(1000, 'x')));
    wire.sentBytes = 0;
    store->AddFiles(files);
    EXPECT_LT(wire.sentBytes, 1'000'000);
    EXPECT_EQ(store->FileIds(kContentNCF, u"001_LABEL").size(), 2500u);
}

TEST_F(StoreRoundTrips, RegisteringAKindTakesTwoAndOneThatIsKnownOne) {
    EXPECT_EQ(Waits([&] { store->RegisterContent(4, u"001_LABEL", 10313); }), 2);
    EXPECT_EQ(Waits([&] { store->RegisterContent(4, u"001_LABEL", 10313); }), 1);
}

TEST_F(StoreRoundTrips, AnItemTakesTwoWithItsFilesAndOneWhenItIsKnown) {
    EXPECT_EQ(Waits([&] { store->AddCatalogueItem(*Item(u"i", u"", 5)); }), 2);
    EXPECT_EQ(Waits([&] { store->AddCatalogueItem(*Item(u"i", u"", 5)); }), 1);
    Repository::CNetRepositoryItem definition;
    definition.SetId(u"d");
    definition.SetName(u"n");
    definition.GetFiles()->push_back(MakeFile(u"a", "1"));
    EXPECT_EQ(Waits([&] { store->AddRepositoryItem(u"TAG", definition); }), 2);
    EXPECT_EQ(Waits([&] { store->AddRepositoryItem(u"TAG", definition); }), 1);
    EXPECT_EQ(Waits([&] { store->RenameRepositoryItem(u"TAG", u"d", u"m"); }), 2);
    EXPECT_EQ(Waits([&] { store->DeleteRepositoryItem(u"TAG", u"d"); }), 2);
    EXPECT_EQ(Waits([&] { store->DeleteCatalogueItem(u"PIPES", u"i"); }), 2);
}

TEST_F(StoreRoundTrips, GeneralSettingsTakeTwoToSaveAndTwoToLoadWithTheirFiles) {
    EXPECT_EQ(Waits([&] { store->SaveGeneralSettings(u"<gs/>", Files(5, 10), u"N"); }), 2);
    EXPECT_EQ(Waits([&] { store->SaveGeneralSettings(u"<gs/>", Files(5, 10), u"N"); }), 1);
    EXPECT_EQ(Waits([&] {
                  const auto settings = store->LoadGeneralSettings(u"N");
                  ASSERT_TRUE(settings);
                  EXPECT_EQ(settings->xml, u"<gs/>");
                  ASSERT_EQ(settings->fileIds.size(), 5u);
                  for (const CString& id : settings->fileIds)
                      EXPECT_TRUE(store->File(id));
              }),
              2);
    EXPECT_EQ(Waits([&] { store->GeneralSettingsNames(); }), 1);
}

TEST_F(StoreRoundTrips, DefinitionsTakeTwoHoweverManyThereAre) {
    for (const char16_t* id : {u"a", u"b", u"c", u"d"}) {
        Repository::CNetRepositoryItem item;
        item.SetId(id);
        item.SetName(id);
        item.GetFiles()->push_back(MakeFile(u"f", Platform::ToUtf8(id)));
        store->AddRepositoryItem(u"TAG", item);
    }
    std::vector<RepositoryItemPtr> items;
    EXPECT_EQ(Waits([&] { items = store->RepositoryItems(u"TAG"); }), 2);
    ASSERT_EQ(items.size(), 4u);
    EXPECT_EQ(BytesOf(items[2]->GetFiles()->at(0)), "c");
    EXPECT_EQ(Waits([&] { store->RepositoryItem(u"TAG", u"b"); }), 2);
}

TEST_F(StoreRoundTrips, AWholeCatalogueTakesThree) {
    MakeCatalogue();
    std::vector<CString> given;
    EXPECT_EQ(Waits([&] { Walk(u"", given); }), 3); // its size, its rows, the files' contents
    EXPECT_THAT(given,
                ElementsAre(u"g:0", u"g0:2", u"g1:2", u"g2:2", u"h:0", u"h0:2", u"h1:2", u"h2:2"));
    EXPECT_THAT(leftOut, IsEmpty());
}

TEST_F(StoreRoundTrips, WhatWasGivenOnceIsANewReadTheSecondTime) {
    MakeCatalogue();
    std::vector<CString> given;
    Walk(u"", given);
    EXPECT_EQ(Waits([&] { store->CatalogueChildren(u"PIPES", u"g", false); }), 1);
    EXPECT_EQ(Waits([&] { store->CatalogueItem(u"PIPES", u"g0", false); }), 1);
    EXPECT_EQ(Waits([&] { store->CatalogueChildren(u"PIPES", u"", false); }), 2);
    EXPECT_EQ(Waits([&] { store->CatalogueChildren(u"OTHER", u"g", false); }), 1);
    EXPECT_EQ(Waits([&] { store->CatalogueItem(u"PIPES", u"none", true); }), 1);
}

TEST_F(StoreRoundTrips, AWalkUnderWayIsDroppedWhenAChangeIsKnown) {
    MakeCatalogue();
    store->CatalogueChildren(u"PIPES", u"", false);
    const auto other = repository.Connect();
    StoreOptions options;
    options.stamp = [] { return Stamp{}; };
    Store writer(repository.Connect(), options);
    writer.AddCatalogueItem(*Item(u"g9", u"g", 1));
    wire.wasChanged = true;
    EXPECT_EQ(store->CatalogueChildren(u"PIPES", u"g", false).size(), 4u);
    EXPECT_TRUE(store->CatalogueItem(u"PIPES", u"g9", true));
}

TEST_F(StoreRoundTrips, AWalkThatGoesOnAfterAChangeReadsAheadAgain) {
    for (int i = 0; i < 100; ++i)
        store->AddCatalogueItem(*Item(u"i" + Platform::ToText(100 + i), u"", 1));
    const auto children = store->CatalogueChildren(u"PIPES", u"", false);
    wire.wasChanged = true;
    EXPECT_LE(Waits([&] {
                  for (const auto& child : children)
                      EXPECT_EQ(store->CatalogueItem(u"PIPES", child->GetCatalogueId(), true)
                                    ->GetFiles()
                                    ->size(),
                                1u);
              }),
              40);
}

TEST_F(StoreRoundTrips, GroupsThatHoldThemselvesEndNoWalkInALoop) {
    store->AddCatalogueItem(*Item(u"a", u"b"));
    store->AddCatalogueItem(*Item(u"b", u"a"));
    EXPECT_THAT(store->CatalogueChildren(u"PIPES", u"", false), IsEmpty());
    EXPECT_EQ(store->CatalogueChildren(u"PIPES", u"a", false).size(), 1u);
    EXPECT_EQ(store->CatalogueChildren(u"PIPES", u"b", false).size(), 1u);
}

TEST_F(StoreRoundTrips, ACheckReadsContentsInBatches) {
    store->AddFiles(Files(300, 100));
    CheckCounts counts;
    int findings = 0;
    const int waits =
        Waits([&] { store->Check([&](const Message&, const Message&) { ++findings; }, counts); });
    EXPECT_LE(waits, 40);
    EXPECT_EQ(findings, 0);
    EXPECT_EQ(counts.contents, 300);
}

TEST_F(StoreRoundTrips, ACheckInBatchesTellsEachDamagedContent) {
    store->AddFiles(Files(300, 100));
    store->Connection().Execute("UPDATE content SET bytes = substr(bytes, 1, 50) "
                                "WHERE rowid IN (3, 200)",
                                {});
    store->Connection().Execute("UPDATE content SET bytes = hash WHERE rowid = 250", {});
    store->Connection().Execute("UPDATE content SET size_bytes = 32 WHERE rowid = 250", {});
    CheckCounts counts;
    std::vector<MessageNumber> findings;
    store->Check([&](const Message&, const Message& what) { findings.push_back(what.number); },
                 counts);
    EXPECT_EQ(std::ranges::count(findings, MessageNumber::HashDiffers), 3);
    EXPECT_EQ(counts.contents, 300);
}

TEST_F(StoreRoundTrips, ALoadWithNothingChangedMovesNoContent) {
    TemporaryFolder folder;
    const auto cache = std::make_shared<ContentCache>(folder.Path() + u"cache\\");
    store->AddFiles(Files(200, 100'000));
    OpenStore(cache);
    LoadAll(200, 100'000);
    OpenStore(cache);
    wire.answerBytes = wire.sentBytes = 0;
    EXPECT_EQ(Waits([&] { LoadAll(200, 100'000); }), 1);
    EXPECT_LT(wire.answerBytes + wire.sentBytes, 200 * 100'000 / 100);
    EXPECT_EQ(cache->Counts().found, 200);
}

TEST_F(StoreRoundTrips, ACacheThatIsDeletedOrDamagedMeanwhileIsFetchedAgain) {
    TemporaryFolder folder;
    const CString path = folder.Path() + u"cache\\";
    const auto cache = std::make_shared<ContentCache>(path);
    store->AddFiles(Files(300, 100'000));
    OpenStore(cache);
    LoadAll(300, 100'000);
    const auto ids = store->FileIds(kContentNCF, u"001_LABEL");
    store->File(ids[0]);
    const auto packs = Platform::FindFiles(path + u"*.contents");
    ASSERT_GT(packs.size(), 2u);
    for (std::size_t i = 0; i < packs.size(); ++i) {
        const CString pack = path + packs[i];
        std::string bytes;
        ASSERT_FALSE(Platform::ReadFile(pack, bytes));
        bytes[bytes.size() / 3] ^= 1;
        if (i % 2 == 0)
            ASSERT_FALSE(Platform::WriteFile(pack, bytes));
        else
            ASSERT_FALSE(Platform::RemoveFile(pack));
    }
    LoadAll(300, 100'000);
    EXPECT_GT(cache->Counts().damaged, 0);
    LoadAll(300, 100'000);
    EXPECT_THAT(leftOut, IsEmpty());
}

// A damaged content of the repository is never kept, nor told from the cache.
TEST_F(StoreRoundTrips, ADamagedContentIsToldForItsFileAloneAndNotKept) {
    TemporaryFolder folder;
    const auto cache = std::make_shared<ContentCache>(folder.Path() + u"cache\\");
    store->AddFiles(Files(30, 1000));
    store->Connection().Execute("UPDATE content SET bytes = hash, size_bytes = 32 "
                                "WHERE rowid = 7",
                                {});
    OpenStore(cache);
    for (int turn = 0; turn < 2; ++turn) {
        int damaged = 0;
        for (const CString& id : store->FileIds(kContentNCF, u"001_LABEL"))
            damaged += ProblemOf([&] { store->File(id); }) == Problem::Integrity ? 1 : 0;
        EXPECT_EQ(damaged, 1);
        EXPECT_EQ(cache->Counts().kept, 29);
    }
}

} // namespace
} // namespace Storage
