// SPDX-License-Identifier: MIT
// Files are read ahead of whoever fetches them; nobody may notice but by the clock.
#include "TestFiles.h"
#include "TestRepository.h"
#include "ZEBXRepositoryClient/ContentKinds.h"

#include <gmock/gmock.h>
#include <set>

namespace Storage {
namespace {

using Repository::kContentNCF;

// Some small, some worth a thread, one larger than what is read ahead at most.
std::string Content(int i) {
    const std::size_t sizes[] = {0, 10, 40'000, 300'000, 5'000'000, 100'000};
    std::string bytes(sizes[i % 6] + static_cast<std::size_t>(i), 'x');
    for (std::size_t at = 0; at < bytes.size(); at += 97)
        bytes[at] = static_cast<char>(at + static_cast<std::size_t>(i));
    return bytes;
}

class ReadingAhead : public StoreTest {
protected:
    static constexpr int kFiles = 20;

    void Fill() override {
        Repository::RepositoryFiles files;
        for (int i = 0; i < kFiles; ++i)
            files.push_back(MakeFile(NameOf(i), Content(i)));
        store->AddFiles(files);
        ids = store->FileIds(kContentNCF, u"001_LABEL");
        ASSERT_EQ(ids.size(), std::size_t(kFiles));
    }
    static CString NameOf(int i) {
        return {static_cast<char16_t>(u'a' + i), u'.', u'd', u'w', u'g'};
    }
    void ExpectFile(int i) {
        const auto file = store->File(ids[static_cast<std::size_t>(i)]);
        ASSERT_TRUE(file);
        EXPECT_EQ(file->GetFileName(), NameOf(i));
        EXPECT_TRUE(BytesOf(file) == Content(i)) << i;
    }
    // Somebody changes a stored content behind the store's back.
    void Damage(int i) {
        const auto other = repository->Connect();
        other->BeginWrite();
        const std::int64_t size = static_cast<std::int64_t>(Content(i).size());
        const std::string zeros(static_cast<std::size_t>(size), '\0');
        EXPECT_TRUE(other
                        ->Query("UPDATE content SET bytes = $1 WHERE size_bytes = $2 RETURNING 1",
                                {SqlBytes(zeros), size})
                        ->Next());
        other->Commit();
    }
    void ExpectDamaged(int i) {
        try {
            store->File(ids[static_cast<std::size_t>(i)]);
            FAIL() << i << " was given out";
        } catch (const StorageError& error) {
            EXPECT_EQ(error.Kind(), Problem::Integrity);
        }
    }

    std::vector<CString> ids;
};
ZEBX_FOR_EVERY_ENGINE(ReadingAhead);

TEST_P(ReadingAhead, FilesComeAsTheyAreInTheListingsOrder) {
    for (int i = 0; i < kFiles; ++i)
        ExpectFile(i);
}

TEST_P(ReadingAhead, AndInAnyOther) {
    for (const int i : {0, 1, 5, 2, 3, 3, 4, 19, 5, 6, 0, 7, 18, 8, 9})
        ExpectFile(i);
    for (int i = kFiles; i-- > 0;)
        ExpectFile(i);
}

TEST_P(ReadingAhead, ANewListingBeginsAnew) {
    ExpectFile(0);
    ExpectFile(1);
    ids = store->FileIds(kContentNCF, u"001_LABEL");
    for (int i = 0; i < kFiles; ++i)
        ExpectFile(i);
    EXPECT_TRUE(store->FileIds(kContentNCF, u"002_NODE").empty());
    ExpectFile(3);
}

TEST_P(ReadingAhead, AFileKeepsItsContentWhenItIsReplacedMeanwhile) {
    ExpectFile(0);
    store->AddFiles({MakeFile(NameOf(2), "new"), MakeFile(NameOf(9), "new")});
    for (int i = 1; i < kFiles; ++i)
        ExpectFile(i);
}

TEST_P(ReadingAhead, ADamagedFileIsToldWhenItIsFetchedAndThoseAfterItComeWhole) {
    const std::set<int> damaged = {1, 3, 4, 9, 10, 19};
    for (const int i : damaged)
        Damage(i);
    for (int i = 0; i < kFiles; ++i) {
        if (damaged.contains(i))
            ExpectDamaged(i);
        else
            ExpectFile(i);
    }
}

TEST_P(ReadingAhead, AMissingContentLikewise) {
    repository->LiftRules(store->Connection());
    store->Connection().Execute("DELETE FROM content WHERE size_bytes = $1",
                                {static_cast<std::int64_t>(Content(2).size())});
    ExpectFile(0);
    ExpectFile(1);
    ExpectDamaged(2);
    ExpectFile(3);
    ExpectFile(4);
}

} // namespace
} // namespace Storage
