// SPDX-License-Identifier: MIT
// The revisions as people look at them.
#include "TestFiles.h"
#include "TestRepository.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StoreHistory : public StoreTest {
protected:
    std::vector<std::int64_t> Numbers(std::int64_t before, std::size_t count) {
        std::vector<std::int64_t> numbers;
        for (const RevisionEntry& entry : store->Revisions(before, count))
            numbers.push_back(entry.number);
        return numbers;
    }
};
ZEBX_FOR_EVERY_ENGINE(StoreHistory);

TEST_P(StoreHistory, AnEmptyRepositoryHasNone) {
    EXPECT_THAT(store->Revisions(0, 10), IsEmpty());
}

TEST_P(StoreHistory, TheNewestComesFirstAndNoMoreThanAskedFor) {
    for (const char* bytes : {"1", "2", "3", "4", "5"})
        store->AddFiles({MakeFile(u"a.dwg", bytes)});
    EXPECT_THAT(Numbers(0, 2), ElementsAre(5, 4));
    EXPECT_THAT(Numbers(4, 2), ElementsAre(3, 2));
    EXPECT_THAT(Numbers(2, 2), ElementsAre(1));
    EXPECT_THAT(Numbers(1, 2), IsEmpty());
    EXPECT_THAT(Numbers(0, 0), IsEmpty());
    EXPECT_THAT(Numbers(0, static_cast<std::size_t>(-1)), ElementsAre(5, 4, 3, 2, 1));
}

TEST_P(StoreHistory, AnEntrySaysWhoWhenFromWhereWithWhatAndWhat) {
    store->AddFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "22", u"002_NODE")});
    const RevisionEntry entry = store->Revisions(0, 1).at(0);
    EXPECT_EQ(entry.number, 1);
    EXPECT_EQ(entry.time, u"2026-11-21T08:05:19Z");
    EXPECT_EQ(entry.user, u"ana");
    EXPECT_EQ(entry.workstation, u"station-1");
    EXPECT_EQ(entry.program, u"test 1.2.3.4");
    EXPECT_EQ(entry.operation, u"AddRepositoryFiles");
    EXPECT_EQ(entry.subject, u"001_LABEL, 002_NODE");
    EXPECT_EQ(entry.files, 2);
    EXPECT_EQ(entry.bytes, 3);
}

TEST_P(StoreHistory, EachCountsWhatCameWithItAlsoWhatWasReplacedSince) {
    store->AddFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "22")});
    store->AddFiles({MakeFile(u"a.dwg", "333"), MakeFile(u"b.dwg", "22")});
    store->SaveGeneralSettings(u"<gs/>", {MakeFile(u"held.xml", "4444")}, u"");
    store->RegisterContent(4, u"001_LABEL", 10313);
    const auto revisions = store->Revisions(0, 10);
    ASSERT_EQ(revisions.size(), 4u);
    EXPECT_EQ(revisions[0].files, 0);
    EXPECT_EQ(revisions[0].bytes, 0);
    EXPECT_EQ(revisions[1].files, 1);
    EXPECT_EQ(revisions[1].bytes, 4 + 5);
    EXPECT_EQ(revisions[2].files, 1);
    EXPECT_EQ(revisions[2].bytes, 3);
    EXPECT_EQ(revisions[3].files, 2);
    EXPECT_EQ(revisions[3].bytes, 3);
}

TEST_P(StoreHistory, ASizeThatNoContentCanHaveDoesNotSpoilTheSum) {
    store->AddFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "22"), MakeFile(u"c.dwg", "333")});
    store->Connection().Execute(
        "UPDATE stored_file SET size_bytes = 9223372036854775807 WHERE name <> 'a.dwg'", {});
    EXPECT_EQ(store->Revisions(0, 1).at(0).bytes, 1);
}

} // namespace
} // namespace Storage
