// SPDX-License-Identifier: MIT
// The check of a whole repository: what is wrong is told where it is, and nothing else is.
#include "TestFiles.h"
#include "TestRepository.h"
#include "platform/text/Numbers.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class StoreCheck : public StoreTest {
protected:
    void Fill() override {
        Repository::CNetRepositoryItem item;
        item.SetId(u"i");
        item.GetFiles()->push_back(MakeFile(u"held.dwg", "4444"));
        store->RegisterContent(4, u"001_LABEL", 10313);
        store->AddFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "22")});
        store->AddFiles({MakeFile(u"a.dwg", "333")});
        store->SaveGeneralSettings(u"<gs/>", {}, u"");
        store->AddRepositoryItem(u"TAG", item);
    }
    // What the check finds, each as the numbers of where and what.
    using Pair = std::pair<MessageNumber, MessageNumber>;
    std::vector<Pair> Findings() {
        auto findings = FindingsOfTheEngineToo();
        // What the engine finds beside it is its own affair.
        std::erase_if(findings, [](const Pair& finding) {
            return finding.second == MessageNumber::EngineSays ||
                   finding.second == MessageNumber::ServerLacks ||
                   finding.second == MessageNumber::ServerHasMore;
        });
        return findings;
    }
    std::vector<Pair> FindingsOfTheEngineToo() {
        std::vector<Pair> findings;
        counts = {};
        store->Check([&](const Message& where,
                         const Message& what) { findings.emplace_back(where.number, what.number); },
                     counts);
        return findings;
    }
    // Somebody with other tools, whom nothing holds back.
    template<typename... Values>
    void Plant(SqlText sql, Values... values) {
        repository->LiftRules(store->Connection());
        store->Connection().Execute(sql, {SqlValue(values)...});
    }
    CheckCounts counts;
};
ZEBX_FOR_EVERY_ENGINE(StoreCheck);

TEST_P(StoreCheck, AGoodRepositoryHasNoFindingsAndIsCounted) {
    EXPECT_THAT(Findings(), IsEmpty());
    EXPECT_EQ(counts.contents, 5);
    EXPECT_EQ(counts.files, 4);
    EXPECT_EQ(counts.revisions, 5);
    EXPECT_EQ(counts.bytes, 1 + 2 + 3 + 5 + 4);
}

TEST_P(StoreCheck, AnEmptyRepositoryIsGood) {
    store = nullptr;
    repository = GetParam().make();
    store = OpenStore();
    EXPECT_THAT(Findings(), IsEmpty());
    EXPECT_EQ(counts.contents + counts.files + counts.revisions + counts.bytes, 0);
}

TEST_P(StoreCheck, AfterADeletionItIsStillGood) {
    store->RenameRepositoryItem(u"TAG", u"i", u"n");
    store->DeleteRepositoryItem(u"TAG", u"i");
    store->SaveGeneralSettings(u"<gs>2</gs>", {}, u"");
    EXPECT_THAT(Findings(), IsEmpty());
}

TEST_P(StoreCheck, ItWritesNothing) {
    Plant("UPDATE stored_file SET name = '../x' WHERE name = 'b.dwg'");
    const auto first = Findings();
    EXPECT_EQ(Revision(), 5);
    EXPECT_EQ(Findings(), first);
}

TEST_P(StoreCheck, AContentThatDoesNotFitItsHash) {
    Plant("UPDATE content SET bytes = $1 WHERE size_bytes = 2", SqlBytes("23"));
    EXPECT_THAT(Findings(),
                ElementsAre(Pair(MessageNumber::InContent, MessageNumber::HashDiffers)));
    EXPECT_EQ(counts.contents, 5);
    EXPECT_EQ(counts.bytes, 1 + 3 + 5 + 4);
}

TEST_P(StoreCheck, AContentOfAnotherSizeThanTold) {
    Plant("UPDATE content SET size_bytes = 9 WHERE size_bytes = 2");
    EXPECT_THAT(Findings(), ElementsAre(Pair(MessageNumber::InContent, MessageNumber::SizeLies),
                                        Pair(MessageNumber::InFile, MessageNumber::SizeLies)));
}

TEST_P(StoreCheck, AFileOrATextWhoseSizeLies) {
    Plant("UPDATE stored_file SET size_bytes = 9 WHERE name = 'b.dwg'");
    Plant("UPDATE general_settings SET size_bytes = 9");
    EXPECT_THAT(Findings(), ElementsAre(Pair(MessageNumber::InFile, MessageNumber::SizeLies),
                                        Pair(MessageNumber::InRow, MessageNumber::SizeLies)));
}

TEST_P(StoreCheck, AContentThatIsMissingIsMissedByThoseWhoNeedIt) {
    Plant("DELETE FROM content WHERE size_bytes IN (2, 5)");
    EXPECT_THAT(Findings(),
                ElementsAre(Pair(MessageNumber::InFile, MessageNumber::NoContent),
                            Pair(MessageNumber::InRow, MessageNumber::NoContent),
                            Pair(MessageNumber::InCounters, MessageNumber::AllBytesDiffer)));
}

TEST_P(StoreCheck, NamesThatMayNotBeGivenOut) {
    Plant("UPDATE stored_file SET name = '../x', name_folded = '../x' WHERE name = 'b.dwg'");
    EXPECT_THAT(Findings(), ElementsAre(Pair(MessageNumber::InFile, MessageNumber::NameSeparator)));
}

TEST_P(StoreCheck, AFoldedNameThatIsNotTheNames) {
    Plant("UPDATE stored_file SET name_folded = 'c.dwg' WHERE name = 'b.dwg'");
    EXPECT_THAT(Findings(), ElementsAre(Pair(MessageNumber::InFile, MessageNumber::FoldedDiffers)));
}

TEST_P(StoreCheck, TwoCurrentNamesOfAKindThatDifferByCaseAlone) {
    store->Connection().RunScript("DROP INDEX stored_file_current");
    Plant("UPDATE stored_file SET name = 'A.dwg', name_folded = 'a.dwg' WHERE name = 'b.dwg'");
    EXPECT_THAT(Findings(),
                ElementsAre(Pair(MessageNumber::InFile, MessageNumber::NameDiffersByCase)));
}

TEST_P(StoreCheck, TwoNamesOfAnItemThatDifferByCaseAlone) {
    Plant("INSERT INTO stored_file SELECT id + 1, holder, 2, 'HELD.dwg', name_folded, "
          "file_manager_id, origin_id, custom_parameter, file_type, size_bytes, hash, "
          "since_revision, until_revision FROM stored_file WHERE holder IS NOT NULL");
    Plant("UPDATE head SET last_id = last_id + 1");
    EXPECT_THAT(Findings(),
                ElementsAre(Pair(MessageNumber::InFile, MessageNumber::NameDiffersByCase)));
}

TEST_P(StoreCheck, AHolderThatIsMissing) {
    Plant("UPDATE stored_file SET holder = 999 WHERE holder IS NOT NULL");
    EXPECT_THAT(Findings(), ElementsAre(Pair(MessageNumber::InFile, MessageNumber::NoHolder)));
}

TEST_P(StoreCheck, RevisionsThatRowsNameAndThatAreMissing) {
    Plant("UPDATE kind SET since_revision = 77");
    Plant("UPDATE repository_item SET until_revision = 78");
    EXPECT_THAT(Findings(), ElementsAre(Pair(MessageNumber::InRow, MessageNumber::NoRevision),
                                        Pair(MessageNumber::InRow, MessageNumber::NoRevision)));
}

TEST_P(StoreCheck, ARowThatEndsBeforeItBegins) {
    Plant("UPDATE stored_file SET until_revision = since_revision WHERE name = 'b.dwg'");
    EXPECT_THAT(Findings(), ElementsAre(Pair(MessageNumber::InRow, MessageNumber::EndsTooEarly)));
}

TEST_P(StoreCheck, AGapInTheRevisions) {
    Plant("UPDATE revision SET number = 9 WHERE number = 5");
    Plant("UPDATE repository_item SET since_revision = 9");
    Plant("UPDATE stored_file SET since_revision = 9 WHERE since_revision = 5");
    EXPECT_THAT(Findings(),
                ElementsAre(Pair(MessageNumber::InTable, MessageNumber::RevisionsMissing),
                            Pair(MessageNumber::InCounters, MessageNumber::LastRevisionDiffers)));
}

TEST_P(StoreCheck, CountersThatLie) {
    Plant("UPDATE head SET revision = 4, last_id = 1, content_bytes = 0");
    EXPECT_THAT(Findings(), UnorderedElementsAre(
                                Pair(MessageNumber::InCounters, MessageNumber::LastRevisionDiffers),
                                Pair(MessageNumber::InCounters, MessageNumber::LastRowDiffers),
                                Pair(MessageNumber::InCounters, MessageNumber::AllBytesDiffer)));
    Plant("DELETE FROM head");
    EXPECT_THAT(Findings(),
                ElementsAre(Pair(MessageNumber::InCounters, MessageNumber::CounterMissing)));
}

TEST_P(StoreCheck, EveryFindingIsToldUpToAThousandAndThenHowManyMore) {
    Repository::RepositoryFiles files;
    for (int i = 0; i < 1200; ++i)
        files.push_back(MakeFile(u"f" + Platform::ToText(i), "1"));
    store->AddFiles(files);
    Plant("UPDATE stored_file SET size_bytes = 9");
    const auto findings = FindingsOfTheEngineToo();
    ASSERT_EQ(findings.size(), 1001u);
    EXPECT_EQ(findings.back(), Pair(MessageNumber::InDatabase, MessageNumber::MoreFindings));
}

} // namespace
} // namespace Storage
