// SPDX-License-Identifier: MIT
// A whole repository copied to another place, from one engine to another: the copy is at
// each moment what the original was at some revision, whatever happens on the way.
#include "storage/copy/RepositoryCopy.h"
#include "FaultySqlConnection.h"
#include "TestFiles.h"
#include "TestRepository.h"
#include "platform/host/Interruption.h"
#include "platform/text/Numbers.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// All rows of a table as text.
void Dump(SqlConnection& sql, SqlText query, std::string_view types, std::vector<std::string>& to) {
    const auto rows = sql.Query(query, {});
    while (rows->Next()) {
        std::string line(query.View().substr(query.View().find(" FROM ")));
        for (int i = 0; i < static_cast<int>(types.size()); ++i) {
            line += '|';
            if (rows->IsNull(i))
                line += "NULL";
            else if (types[static_cast<std::size_t>(i)] == 'i')
                line += std::to_string(rows->Integer(i));
            else
                line += types[static_cast<std::size_t>(i)] == 't' ? rows->Text(i) : rows->Bytes(i);
        }
        to.push_back(line);
    }
}

// Everything that a repository holds.
std::vector<std::string> Everything(SqlConnection& sql) {
    std::vector<std::string> rows;
    Dump(sql, "SELECT id, schema_version, revision, last_id, content_bytes FROM head", "iiiii",
         rows);
    Dump(sql,
         "SELECT number, made_at, user_name, workstation, program, operation, subject "
         "FROM revision ORDER BY number",
         "itttttt", rows);
    Dump(sql, "SELECT hash, size_bytes, bytes FROM content ORDER BY hash", "bib", rows);
    Dump(sql,
         "SELECT id, content_code, kind_id, message_number, since_revision, until_revision "
         "FROM kind ORDER BY id",
         "iitiii", rows);
    Dump(sql,
         "SELECT id, holder, position, name, name_folded, file_manager_id, origin_id, "
         "custom_parameter, file_type, size_bytes, hash, since_revision, until_revision "
         "FROM stored_file ORDER BY id",
         "iiitttttiibii", rows);
    Dump(sql,
         "SELECT id, name, size_bytes, hash, since_revision, until_revision "
         "FROM general_settings ORDER BY id",
         "itibii", rows);
    Dump(sql,
         "SELECT id, tag, item_id, position, name, entity_type, topology_function, topology_type, "
         "configuration_xml, repository_name, repository_tag, since_revision, until_revision "
         "FROM repository_item ORDER BY id",
         "ittitiiitttii", rows);
    Dump(sql,
         "SELECT id, catalogue_tag, item_id, parent_id, position, is_group, name, catalogue_name, "
         "item_content, since_revision, until_revision FROM catalogue_item ORDER BY id",
         "itttiitttii", rows);
    return rows;
}

using FromTo = std::tuple<EngineUnderTest, EngineUnderTest>;

// Every engine as the original's and as the copy's, and the embedded one as both, which needs no
// server.
std::vector<FromTo> Ways() {
    std::vector<FromTo> ways;
    for (const EngineUnderTest& from : kEngines)
        for (const EngineUnderTest& to : kEngines)
            if (std::string_view(from.name) == "SQLite" || std::string_view(to.name) == "SQLite")
                ways.emplace_back(from, to);
    return ways;
}

class RepositoryCopy : public testing::TestWithParam<FromTo> {
protected:
    void SetUp() override {
        for (const EngineUnderTest& engine : {From(), To()})
            if (const std::string whyNot = engine.whyNot(); !whyNot.empty())
                GTEST_SKIP() << whyNot;
        original = From().make();
        copy = To().make();
        store = OpenStore(*original);
        Note();
    }
    static const EngineUnderTest& From() { return std::get<0>(GetParam()); }
    static const EngineUnderTest& To() { return std::get<1>(GetParam()); }
    // A repository on a server takes its time to be made: some of the places have to do.
    static int Step() { return std::string_view(To().name) == "SQLite" ? 1 : 9; }

    // Some of everything, with rows that end, come back and share contents.
    void Fill() {
        Do([&] { store->RegisterContent(4, u"001_LABEL", 10313); });
        Do([&] { store->AddFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"šaht.dwg", "22")}); });
        Do([&] { store->AddFiles({MakeFile(u"a.dwg", "333"), MakeFile(u"empty.dwg", "")}); });
        Do([&] { store->AddFiles({MakeFile(u"a.dwg", "1")}); });
        Do([&] { store->RegisterContent(4, u"001_LABEL", 10314); });
        Do([&] { store->SaveGeneralSettings(u"<gs/>", {MakeFile(u"g", "22")}, u""); });
        Do([&] { store->SaveGeneralSettings(u"<gs>ž</gs>", {}, u""); });
        Repository::CNetRepositoryItem item;
        item.SetId(u"i");
        item.SetName(u"cijev");
        item.SetConfigurationXML(u"<x>\n</x>");
        item.GetFiles()->push_back(MakeFile(u"held.dwg", "4444"));
        Do([&] { store->AddRepositoryItem(u"TAG", item); });
        Do([&] { store->RenameRepositoryItem(u"TAG", u"i", u"cijev \U0001F6B0"); });
        Do([&] { store->DeleteRepositoryItem(u"TAG", u"i"); });
        Do([&] { AddToCatalogue(u"group", u"", 1); });
        Do([&] { AddToCatalogue(u"member", u"group", 0); });
        Do([&] { store->DeleteCatalogueItem(u"PIPES", u"group"); });
        Do([&] { AddToCatalogue(u"member", u"", 0); });
    }

    void AddToCatalogue(const char16_t* id, const char16_t* parent, int isGroup) {
        Repository::CNetCatalogueItem item;
        item.SetCatalogueTag(u"PIPES");
        item.SetCatalogueId(id);
        item.SetParentId(parent);
        item.SetIsGroup(isGroup);
        item.SetName(u"name");
        item.GetFiles()->push_back(MakeFile(u"sheet.pdf", "55555"));
        store->AddCatalogueItem(item);
    }

    template<typename Work>
    void Do(Work work) {
        work();
        Note();
    }
    void Note() { states.push_back(Everything(store->Connection())); }

    static CopyCounts CopyNow(SqlConnection& from, SqlConnection& to,
                              const CopyLimits& limits = {}) {
        CopyCounts counts;
        CopyRepository(
            from, to, [](const CopyCounts&) {}, counts, limits);
        return counts;
    }
    CopyCounts CopyAll(const CopyLimits& limits = {}) {
        return CopyNow(*original->Connect(), *copy->Connect(), limits);
    }

    std::vector<std::string> InCopy() { return Everything(*copy->Connect()); }
    std::vector<CString> FindingsInCopy() {
        std::vector<CString> findings;
        CheckCounts counts;
        StoreOptions options;
        Store(copy->Connect(), options)
            .Check(
                [&](const Message& where, const Message& what) {
                    findings.push_back(TextOf(where, nullptr) + u": " + TextOf(what, nullptr));
                },
                counts);
        return findings;
    }
    void ExpectWholeAt(const std::vector<std::string>& state) {
        EXPECT_EQ(InCopy(), state);
        EXPECT_THAT(FindingsInCopy(), IsEmpty());
    }

    std::unique_ptr<TestRepository> original;
    std::unique_ptr<TestRepository> copy;
    Stamp stamp{u"2026-11-21T08:05:19Z", u"ana", u"station-1", u"test 1.2.3.4"};
    std::unique_ptr<Store> store;
    std::vector<std::vector<std::string>> states; // of the original, by revision

    std::unique_ptr<Store> OpenStore(TestRepository& repository) {
        StoreOptions options;
        options.stamp = [this] { return stamp; };
        options.leftOut = [](const StorageError&) { FAIL(); };
        return std::make_unique<Store>(repository.Connect(), std::move(options));
    }
};
INSTANTIATE_TEST_SUITE_P(Every, RepositoryCopy, testing::ValuesIn(Ways()), [](const auto& engines) {
    return std::string(std::get<0>(engines.param).name) + "To" + std::get<1>(engines.param).name;
});

TEST_P(RepositoryCopy, HoldsTheSameRowsWithTheirNumbersTimesAndUsers) {
    Fill();
    const CopyCounts counts = CopyAll();
    ExpectWholeAt(states.back());
    EXPECT_EQ(counts.revisions, std::int64_t(states.size()) - 1);
    EXPECT_EQ(counts.allRevisions, counts.revisions);
    EXPECT_EQ(counts.contents, 8);
    EXPECT_EQ(counts.bytes, 1 + 2 + 3 + 0 + 5 + 11 + 4 + 5);
    EXPECT_EQ(counts.checkedContents, 8);
    EXPECT_EQ(counts.checkedBytes, counts.bytes);
}

TEST_P(RepositoryCopy, OfAnEmptyRepositoryIsEmpty) {
    const CopyCounts counts = CopyAll();
    EXPECT_EQ(counts.revisions, 0);
    ExpectWholeAt(states.front());
}

TEST_P(RepositoryCopy, IsAfterEveryPartWhatTheOriginalWasAtThatRevision) {
    Fill();
    for (const CopyLimits limits : {CopyLimits{1}, CopyLimits{3}, CopyLimits{1000, 6}}) {
        copy = To().make();
        std::vector<std::int64_t> told;
        CopyCounts counts;
        const auto from = original->Connect();
        const auto to = copy->Connect();
        CopyRepository(
            *from, *to,
            [&](const CopyCounts& now) {
                told.push_back(now.revisions);
                ExpectWholeAt(states.at(std::size_t(now.revisions)));
            },
            counts, limits);
        EXPECT_EQ(told.front(), 0);
        EXPECT_EQ(told.back(), std::int64_t(states.size()) - 1);
        EXPECT_GT(told.size(), 4U);
    }
}

TEST_P(RepositoryCopy, ThatIsThereAlreadyIsComparedAndNotWrittenTo) {
    Fill();
    CopyAll();
    const CopyCounts again = CopyAll();
    EXPECT_EQ(again.contents, 0);
    EXPECT_EQ(again.checkedContents, 8);
    ExpectWholeAt(states.back());
}

TEST_P(RepositoryCopy, GoesOnWhereAnEarlierOneEnded) {
    Do([&] { store->AddFiles({MakeFile(u"a.dwg", "1")}); });
    CopyAll();
    Fill();
    const CopyCounts counts = CopyAll();
    EXPECT_EQ(counts.contents, 7);
    ExpectWholeAt(states.back());
}

TEST_P(RepositoryCopy, CanBeSentToLikeAnyRepository) {
    Fill();
    CopyAll();
    const auto other = OpenStore(*copy);
    Do([&] { store->AddFiles({MakeFile(u"later.dwg", "666666")}); });
    other->AddFiles({MakeFile(u"later.dwg", "666666")});
    ExpectWholeAt(states.back());
}

TEST_P(RepositoryCopy, TakesInNothingThatCameAfterItBegan) {
    Fill();
    CopyCounts counts;
    const auto from = original->Connect();
    const auto to = copy->Connect();
    int parts = 0;
    CopyRepository(*from, *to,
                   [&](const CopyCounts&) {
                       store->AddFiles(
                           {MakeFile(u"a.dwg", std::string(std::size_t(++parts), 'n'))});
                   },
                   counts, {.revisions = 2});
    ExpectWholeAt(states.back());
    Note();
    CopyAll();
    ExpectWholeAt(states.back());
}

TEST_P(RepositoryCopy, CountsNothingTwiceWhenItStoppedAtAnyOperationOfTheCopy) {
    Fill();
    const auto from = original->Connect();
    for (int failAt = 0;; failAt += Step()) {
        copy = To().make();
        FaultPlan plan{.failAt = failAt};
        FaultySqlConnection faulty(copy->Connect(), plan);
        const Problem problem = ProblemOf([&] { CopyNow(*from, faulty, {.revisions = 4}); });
        faulty.Rollback();
        if (problem == Problem::None)
            break;
        EXPECT_EQ(problem, Problem::Unreachable);
        EXPECT_THAT(states, Contains(InCopy())) << failAt;
        EXPECT_THAT(FindingsInCopy(), IsEmpty());
        CopyNow(*from, *copy->Connect(), {.revisions = 4});
        EXPECT_EQ(InCopy(), states.back()) << failAt;
    }
}

TEST_P(RepositoryCopy, IsAnEarlierStateWhenTheOriginalFailsAtAnyOperation) {
    Fill();
    std::int64_t reached = 0;
    for (int failAt = 0;; ++failAt) {
        FaultPlan plan{.failAt = failAt};
        FaultySqlConnection faulty(original->Connect(), plan);
        const auto to = copy->Connect();
        const Problem problem = ProblemOf([&] { CopyNow(faulty, *to, {.revisions = 4}); });
        if (problem == Problem::None)
            break;
        EXPECT_EQ(problem, Problem::Unreachable);
        const auto now = InCopy();
        const auto state = std::find(states.begin(), states.end(), now);
        ASSERT_NE(state, states.end()) << failAt;
        EXPECT_GE(state - states.begin(), reached);
        reached = state - states.begin();
    }
    ExpectWholeAt(states.back());
}

TEST_P(RepositoryCopy, WhoseLastAnswerWasLostIsContinued) {
    Fill();
    const auto from = original->Connect();
    for (int failAt = 0;; failAt += Step()) {
        copy = To().make();
        FaultPlan plan{.failAt = failAt, .loseAnswer = true};
        FaultySqlConnection faulty(copy->Connect(), plan);
        if (ProblemOf([&] { CopyNow(*from, faulty); }) == Problem::None)
            break;
        faulty.Rollback();
        CopyNow(*from, *copy->Connect());
        EXPECT_EQ(InCopy(), states.back()) << failAt;
    }
}

TEST_P(RepositoryCopy, StopsAtTheUsersWishAndKeepsWhatIsThere) {
    Fill();
    const Platform::InterruptionGuard guard;
    CopyCounts counts;
    const auto from = original->Connect();
    const auto to = copy->Connect();
    const auto error = ErrorOf([&] {
        CopyRepository(*from, *to,
                       [&](const CopyCounts& now) {
                           if (now.revisions == 6)
                               Platform::RequestInterruption();
                       },
                       counts, {.revisions = 3});
    });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Interrupted);
    EXPECT_EQ(error->Messages()[0].values, (std::vector<CString>{to->Name(), u"6"}));
    EXPECT_EQ(counts.revisions, 6);
    ExpectWholeAt(states.at(6));
}

TEST_P(RepositoryCopy, LeavesAnotherRepositoryAlone) {
    Fill();
    stamp.user = u"ivo";
    const auto other = OpenStore(*copy);
    other->RegisterContent(4, u"001_LABEL", 10313);
    const auto before = InCopy();
    const auto error = ErrorOf([&] { CopyAll(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Refused);
    EXPECT_THAT(NumbersOf(*error), ElementsAre(MessageNumber::CopyIsOther));
    EXPECT_EQ(error->Messages()[0].values.back(), u"1");
    EXPECT_EQ(InCopy(), before);
}

TEST_P(RepositoryCopy, ThatIsAheadOfTheOriginalIsLeftAlone) {
    Fill();
    CopyAll();
    OpenStore(*copy)->AddFiles({MakeFile(u"later.dwg", "666666")});
    const auto before = InCopy();
    const auto error = ErrorOf([&] { CopyAll(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Refused);
    EXPECT_THAT(NumbersOf(*error), ElementsAre(MessageNumber::CopyIsAhead));
    EXPECT_EQ(InCopy(), before);
}

TEST_P(RepositoryCopy, GoesOnFromWhereAnotherThatWasStillAtWorkEnds) {
    Fill();
    CopyCounts counts;
    const auto from = original->Connect();
    const auto to = copy->Connect();
    bool isFirst = true;
    CopyRepository(*from, *to,
                   [&](const CopyCounts&) {
                       if (std::exchange(isFirst, false))
                           CopyAll();
                   },
                   counts, {.revisions = 2});
    EXPECT_EQ(counts.contents, 0);
    EXPECT_EQ(InCopy(), states.back());
}

TEST_P(RepositoryCopy, StopsWhenSomebodyElseWritesThereMeanwhile) {
    Fill();
    CopyCounts counts;
    const auto from = original->Connect();
    const auto to = copy->Connect();
    const auto other = OpenStore(*copy);
    const auto error = ErrorOf([&] {
        CopyRepository(*from, *to,
                       [&](const CopyCounts& now) {
                           if (now.revisions == 4)
                               other->AddFiles({MakeFile(u"mine.dwg", "7")});
                       },
                       counts, {.revisions = 2});
    });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Refused);
    EXPECT_THAT(NumbersOf(*error), ElementsAre(MessageNumber::CopyWasChanged));
    EXPECT_THAT(FindingsInCopy(), IsEmpty());
}

TEST_P(RepositoryCopy, NamesAContentThatIsDamagedAndStopsBeforeIt) {
    Fill();
    // "333" came with revision 3.
    store->Connection().Execute("UPDATE content SET bytes = $1 WHERE size_bytes = 3",
                                {SqlBytes("334")});
    const auto error = ErrorOf([&] { CopyAll({.revisions = 1}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Integrity);
    EXPECT_THAT(NumbersOf(*error),
                ElementsAre(MessageNumber::CopiedContentDamaged, MessageNumber::CopyStopsAt));
    EXPECT_EQ(error->Messages()[0].values[0], u"a.dwg");
    EXPECT_EQ(error->Messages()[0].values[1], u"001_LABEL");
    EXPECT_EQ(error->Messages()[1].values[1], u"2");
    ExpectWholeAt(states.at(2));
}

TEST_P(RepositoryCopy, NamesGeneralSettingsThatAreDamaged) {
    Fill();
    store->Connection().Execute("UPDATE content SET bytes = $1 WHERE size_bytes = 5 AND bytes = $2",
                                {SqlBytes("<gs!>"), SqlBytes("<gs/>")});
    const auto error = ErrorOf([&] { CopyAll(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Messages()[0].values[1], u"GS");
}

TEST_P(RepositoryCopy, TellsWhereItDiffersWhenItWasTamperedWith) {
    Fill();
    CopyAll();
    copy->Connect()->Execute("UPDATE stored_file SET position = 77 WHERE name = $1", {"g"});
    auto error = ErrorOf([&] { CopyAll(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Integrity);
    EXPECT_THAT(NumbersOf(*error), ElementsAre(MessageNumber::CopyDiffers));
    EXPECT_EQ(error->Messages()[0].values[0], u"stored_file");

    copy = To().make();
    CopyAll();
    copy->Connect()->Execute("UPDATE content SET bytes = $1 WHERE size_bytes = 3",
                             {SqlBytes("334")});
    error = ErrorOf([&] { CopyAll(); });
    ASSERT_TRUE(error);
    EXPECT_THAT(NumbersOf(*error), ElementsAre(MessageNumber::CopyKeptOtherBytes));
}

TEST_P(RepositoryCopy, MovesAContentThatIsLargerThanAPart) {
    Do([&] { store->AddFiles({MakeFile(u"before.dwg", "1")}); });
    std::string large(80 << 20, 'x');
    for (std::size_t i = 0; i < large.size(); i += 1013)
        large[i] = static_cast<char>(i / 1013);
    store->AddFiles({MakeFile(u"large.dwg", large)});
    store->AddFiles({MakeFile(u"after.dwg", "2")});
    const CopyCounts counts = CopyAll();
    EXPECT_EQ(counts.revisions, 3);
    EXPECT_EQ(counts.checkedBytes, std::int64_t(large.size()) + 2);
    const auto other = OpenStore(*copy);
    EXPECT_TRUE(BytesOf(other->File(other->FileIds(4, u"001_LABEL").back())) == large);
}

TEST_P(RepositoryCopy, WithARevisionThatIsMissingIsNotBegun) {
    Fill();
    store->Connection().Execute(
        "INSERT INTO revision (number, made_at, user_name, workstation, program, operation, "
        "subject) VALUES ($1, '', '', '', '', '', '')",
        {std::int64_t(1) << 62});
    store->Connection().Execute("UPDATE head SET revision = $1", {std::int64_t(1) << 62});
    const auto error = ErrorOf([&] { CopyAll(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Kind(), Problem::Integrity);
    EXPECT_THAT(NumbersOf(*error), ElementsAre(MessageNumber::CopiedIsNotWhole));
    ExpectWholeAt(states.front());
}

} // namespace
} // namespace Storage
