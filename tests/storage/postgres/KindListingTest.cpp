// SPDX-License-Identifier: MIT
// A kind's list that this workstation has already is not sent again, and no other one is taken
// for it.
#include "storage/store/KindListing.h"
#include "ServerRepository.h"
#include "platform/os/File.h"
#include "platform/os/FileSearch.h"
#include "storage/content/ContentHash.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::IsEmpty;

class KindListing : public ServerRepository {
protected:
    void SetUp() override {
        ServerRepository::SetUp();
        Create();
        writer = OpenStore();
        writer->AddFiles({MakeFile(u"šaht.dwg", "1"), MakeFile(u"ČVOR \U0001F6B0.dwg", "22"),
                          MakeFile(u"a.dwg", "333"), MakeFile(u"empty.dwg", "")});
        cache = std::make_shared<ContentCache>(path);
        reader = OpenWith(cache);
    }
    std::unique_ptr<Store> OpenWith(std::shared_ptr<ContentCache> its) {
        StoreOptions options;
        options.cache = std::move(its);
        return std::make_unique<Store>(OpenRepository(At()), std::move(options));
    }
    SqlConnection& Sql() { return writer->Connection(); }
    StoredRecords Rows() { return RecordQuery::OfKind(Sql(), 4, u"001_LABEL").Read(); }
    std::string Digest() { return Sql().KindDigest(4, "001_LABEL"); }
    // Name, parameter and content of each file that the store lists.
    static std::vector<std::string> Load(Store& store) {
        std::vector<std::string> files;
        for (const CString& id : store.FileIds(4, u"001_LABEL")) {
            const auto file = store.File(id);
            files.push_back(Platform::ToUtf8(file->GetFileName()) + '|' +
                            Platform::ToUtf8(file->GetCustomParameter()) + '|' + BytesOf(file));
        }
        return files;
    }
    // How many lists and contents came from the cache.
    template<typename Work>
    std::int64_t Found(Work work) {
        const std::int64_t before = cache->Counts().found;
        work();
        return cache->Counts().found - before;
    }

    TemporaryFolder folder;
    const CString path = folder.Path() + u"cache\\";
    std::shared_ptr<ContentCache> cache;
    std::unique_ptr<Store> writer;
    std::unique_ptr<Store> reader;
};

TEST_F(KindListing, IsHashedByTheServerAsItIsWrittenHere) {
    EXPECT_EQ(ContentHash(WriteKindListing(Rows())), Digest());
    EXPECT_EQ(Sql().KindDigest(4, "NONE"), "");
}

TEST_F(KindListing, IsReadAsItWasWritten) {
    const StoredRecords rows = Rows();
    const StoredRecords read = ReadKindListing(WriteKindListing(rows), 4, u"001_LABEL");
    ASSERT_EQ(read.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto same = std::ranges::find(read, rows[i].id, &StoredRecord::id);
        ASSERT_NE(same, read.end());
        EXPECT_EQ(same->record, rows[i].record);
        EXPECT_EQ(same->folded, rows[i].folded);
        EXPECT_EQ(same->holder, 0);
        EXPECT_FALSE(same->isFoldedOtherwise);
    }
}

TEST_F(KindListing, ThatIsInTheCacheIsNotSentAgain) {
    const auto files = Load(*reader);
    EXPECT_EQ(files.size(), 4u);
    const auto again = OpenWith(std::make_shared<ContentCache>(path));
    EXPECT_EQ(Found([&] { EXPECT_EQ(reader->FileIds(4, u"001_LABEL").size(), 4u); }), 1);
    EXPECT_EQ(Load(*again), files);
}

TEST_F(KindListing, IsAskedForAnewAfterEveryChange) {
    const auto check = [&](const std::string& what) {
        EXPECT_EQ(Load(*reader), Load(*writer)) << what;
    };
    check("nothing");
    writer->AddFiles({MakeFile(u"new.dwg", "4")});
    check("a new file");
    writer->AddFiles({MakeFile(u"a.dwg", "other")});
    check("a new content");
    Sql().Execute("UPDATE stored_file SET custom_parameter = 'p' WHERE name = 'a.dwg' "
                  "AND until_revision IS NULL",
                  {});
    check("another parameter");
    Sql().Execute("UPDATE stored_file SET name = 'b.dwg', name_folded = 'b.dwg' "
                  "WHERE name = 'a.dwg' AND until_revision IS NULL",
                  {});
    check("another name");
    EXPECT_THAT(Load(*reader), testing::Contains("b.dwg|p|other"));
}

TEST_F(KindListing, WithADamagedNameIsNotKept) {
    Sql().Execute("UPDATE stored_file SET name_folded = 'x' WHERE name = 'a.dwg'", {});
    EXPECT_THAT(WriteKindListing(Rows()), IsEmpty());
    EXPECT_EQ(ProblemOf([&] { Load(*reader); }), Problem::Integrity);
    EXPECT_EQ(Found([&] { reader->FileIds(4, u"001_LABEL"); }), 0);
    EXPECT_EQ(ProblemOf([&] { Load(*reader); }), Problem::Integrity);
}

TEST_F(KindListing, WithWhatSeparatesItsFieldsIsNotKept) {
    for (const char* text : {"a\x01", "\x02"}) {
        Sql().Execute("UPDATE stored_file SET custom_parameter = $1", {text});
        EXPECT_THAT(WriteKindListing(Rows()), IsEmpty());
    }
}

TEST_F(KindListing, WhoseCacheIsDamagedOrDeletedIsSentAgain) {
    const auto files = Load(*reader);
    for (const bool isDeleted : {false, true}) {
        for (const CString& pack : Platform::FindFiles(path + u"*.contents")) {
            std::string bytes;
            ASSERT_FALSE(Platform::ReadFile(path + pack, bytes));
            for (char& byte : bytes)
                byte ^= 1;
            ASSERT_FALSE(isDeleted ? Platform::RemoveFile(path + pack)
                                   : Platform::WriteFile(path + pack, bytes));
        }
        EXPECT_EQ(Load(*reader), files);
    }
}

} // namespace
} // namespace Storage
