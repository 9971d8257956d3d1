// SPDX-License-Identifier: MIT
// Embedded repositories that other programs wrote to, as they are copied: what is wrong is told,
// and the copy is whole up to there.
#include "TestFiles.h"
#include "TestRepository.h"
#include "storage/copy/RepositoryCopy.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;

class RepositoryCopyDamage : public testing::Test {
protected:
    void SetUp() override {
        StoreOptions options;
        options.stamp = [] { return Stamp{u"2026-11-21T08:05:19Z", u"ana", u"a", u"test"}; };
        store = std::make_unique<Store>(original.Connect(), std::move(options));
        store->AddFiles({MakeFile(u"a.dwg", "1")});
        store->AddFiles({MakeFile(u"b.dwg", "22")});
        store->AddFiles({MakeFile(u"b.dwg", "333")});
        store->Connection().RunScript("PRAGMA foreign_keys = OFF;"
                                      "PRAGMA ignore_check_constraints = ON;");
    }

    void Plant(std::string_view sql) { store->Connection().RunScript(sql); }

    StorageError WhatCopyingThrows() {
        CopyCounts counts;
        const auto from = original.Connect();
        const auto to = copy.Connect();
        const auto error = ErrorOf([&] {
            CopyRepository(*from, *to, [&](const CopyCounts& now) { reached = now.revisions; },
                           counts, {.revisions = 1});
        });
        return error.value_or(StorageError(Problem::None, MessageNumber::Internal, {u"nothing"}));
    }

    int FindingsInCopy() {
        int findings = 0;
        CheckCounts counts;
        Store(copy.Connect(), {})
            .Check([&](const Message&, const Message&) { ++findings; }, counts);
        return findings;
    }

    void ExpectWholeUpTo(std::int64_t revision) {
        EXPECT_EQ(reached, revision);
        RepositoryState state;
        Store(copy.Connect(), {}).ReadState(state);
        EXPECT_EQ(state.revision, revision);
        EXPECT_EQ(FindingsInCopy(), 0);
    }

    SqliteTestRepository original;
    SqliteTestRepository copy;
    std::unique_ptr<Store> store;
    std::int64_t reached = -1;
};

TEST_F(RepositoryCopyDamage, OfATextWithANulNamesTheEntry) {
    Plant("UPDATE stored_file SET custom_parameter = CAST(x'610062' AS TEXT) WHERE id = 2");
    const StorageError error = WhatCopyingThrows();
    EXPECT_EQ(error.Kind(), Problem::Integrity);
    EXPECT_THAT(NumbersOf(error),
                ElementsAre(MessageNumber::CopiedTextNotKept, MessageNumber::CopyStopsAt));
    EXPECT_EQ(error.Messages()[0].values, (std::vector<CString>{u"b.dwg", u"stored_file", u"2"}));
    ExpectWholeUpTo(1);
}

TEST_F(RepositoryCopyDamage, OfATextThatIsNoUtf8NamesTheEntry) {
    Plant("UPDATE revision SET user_name = CAST(x'c328' AS TEXT) WHERE number = 3");
    const StorageError error = WhatCopyingThrows();
    EXPECT_THAT(NumbersOf(error),
                ElementsAre(MessageNumber::CopiedTextNotKept, MessageNumber::CopyStopsAt));
    ExpectWholeUpTo(2);
}

TEST_F(RepositoryCopyDamage, OfAContentThatIsGoneNamesTheFile) {
    Plant("DELETE FROM content WHERE size_bytes = 3");
    const StorageError error = WhatCopyingThrows();
    EXPECT_EQ(error.Kind(), Problem::Integrity);
    EXPECT_THAT(NumbersOf(error),
                ElementsAre(MessageNumber::CopiedContentMissing, MessageNumber::CopyStopsAt));
    EXPECT_EQ(error.Messages()[0].values[0], u"b.dwg");
    ExpectWholeUpTo(2);
}

TEST_F(RepositoryCopyDamage, OfAHashOfAnotherLengthNamesTheFile) {
    Plant("UPDATE stored_file SET hash = x'0102' WHERE id = 2");
    const StorageError error = WhatCopyingThrows();
    EXPECT_THAT(NumbersOf(error),
                ElementsAre(MessageNumber::CopiedContentMissing, MessageNumber::CopyStopsAt));
    ExpectWholeUpTo(1);
}

TEST_F(RepositoryCopyDamage, OfASizeThatLiesNamesTheFile) {
    Plant("UPDATE content SET size_bytes = -5 WHERE size_bytes = 2;"
          "UPDATE stored_file SET size_bytes = 9223372036854775807 WHERE id > 1");
    const StorageError error = WhatCopyingThrows();
    EXPECT_THAT(NumbersOf(error),
                ElementsAre(MessageNumber::CopiedContentDamaged, MessageNumber::CopyStopsAt));
    ExpectWholeUpTo(1);
}

TEST_F(RepositoryCopyDamage, OfRowsThatNoTargetTakesIsToldAsTheOriginalsFault) {
    Plant("UPDATE stored_file SET until_revision = 1 WHERE id = 1");
    const StorageError error = WhatCopyingThrows();
    EXPECT_EQ(error.Kind(), Problem::Integrity);
    EXPECT_THAT(NumbersOf(error), ElementsAre(MessageNumber::CopiedRowsNotTaken));
    ExpectWholeUpTo(0);
}

TEST_F(RepositoryCopyDamage, OfARowWithoutARevisionIsADifference) {
    Plant("UPDATE stored_file SET since_revision = 0, until_revision = NULL WHERE id = 1");
    const StorageError error = WhatCopyingThrows();
    EXPECT_EQ(error.Kind(), Problem::Integrity);
    EXPECT_THAT(NumbersOf(error), ElementsAre(MessageNumber::CopyDiffers));
}

TEST_F(RepositoryCopyDamage, OfATableThatIsGoneIsToldAsTheOriginalsFault) {
    Plant("DROP TABLE catalogue_item");
    EXPECT_EQ(WhatCopyingThrows().Kind(), Problem::Integrity);
    ExpectWholeUpTo(0);
}

TEST_F(RepositoryCopyDamage, OfCountersThatLieIsADifference) {
    Plant("UPDATE head SET content_bytes = 77");
    const StorageError error = WhatCopyingThrows();
    EXPECT_THAT(NumbersOf(error), ElementsAre(MessageNumber::CopyDiffers));
    EXPECT_EQ(error.Messages()[0].values[0], u"head");
    ExpectWholeUpTo(3);
}

} // namespace
} // namespace Storage
