// SPDX-License-Identifier: MIT
// Each operation of the backend, with each operation of the connection below it failing in
// turn and in every way: nothing of the call is there afterwards, the result and one line of
// the log tell, and the backend goes on working.
#include "EnglishMessages.h"
#include "FaultySqlConnection.h"
#include "TestFiles.h"
#include "WorkspaceLog.h"
#include "storage/SqlBackend.h"
#include "support/Workstation.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Problem kProblems[] = {Problem::Unreachable, Problem::Busy,      Problem::Full,
                                 Problem::NotAllowed,  Problem::Integrity, Problem::Internal};

RepositoryItemPtr MakeItem(const char16_t* id) {
    auto item = boost::make_shared<Repository::CNetRepositoryItem>();
    item->SetId(id);
    item->SetName(u"name");
    return item;
}

CatalogueItemPtr MakeCatalogueItem(const char16_t* id, const char16_t* parent) {
    auto item = boost::make_shared<Repository::CNetCatalogueItem>();
    item->SetCatalogueTag(u"PIPES");
    item->SetCatalogueId(id);
    item->SetParentId(parent);
    item->SetName(u"name");
    return item;
}

// An operation, and what it gives: 0 or nothing when it failed.
struct Operation {
    const char* name;
    int (*run)(SqlBackend& backend);
};

std::vector<CString> FileIds(SqlBackend& backend) {
    std::vector<CString> ids;
    return backend.GetRepositoryFileIds(4, u"001_LABEL", ids) ? ids : std::vector<CString>();
}

// In an order in which each finds what it needs; the last ones take things away.
const Operation kOperations[] = {
    {"RegisterContent", [](auto& b) { return b.RegisterContent(4, u"001_LABEL", 10313); }},
    {"AddRepositoryFiles",
     [](auto& b) {
         return b.AddRepositoryFiles({MakeFile(u"a.dwg", "1"), MakeFile(u"b.dwg", "2")});
     }},
    {"ReplaceRepositoryFiles",
     [](auto& b) {
         return b.AddRepositoryFiles({MakeFile(u"a.dwg", "3"), MakeFile(u"c.dwg", "4")});
     }},
    {"GetRepositoryFileIds", [](auto& b) { return int(FileIds(b).size() == 3); }},
    {"SaveGS", [](auto& b) { return b.SaveGS(u"<gs/>", {MakeFile(u"f", "5")}, u"N"); }},
    {"GetAvailableGS",
     [](auto& b) {
         std::vector<CString> names;
         return b.GetAvailableGS(names);
     }},
    {"LoadGS",
     [](auto& b) {
         CString xml;
         std::vector<CString> files;
         return b.LoadGS(xml, files, u"N");
     }},
    {"AddRepositoryItem", [](auto& b) { return b.AddRepositoryItem(u"TAG", MakeItem(u"1")); }},
    {"RenameRepositoryItem",
     [](auto& b) { return b.RenameRepositoryItem(u"TAG", u"1", u"other"); }},
    {"GetRepositoryItems",
     [](auto& b) {
         std::vector<RepositoryItemPtr> items;
         return b.GetRepositoryItems(u"TAG", items);
     }},
    {"GetRepositoryItemById",
     [](auto& b) { return int(b.GetRepositoryItemById(u"TAG", u"1", 0) != nullptr); }},
    {"AddCatalogItem", [](auto& b) { return b.AddCatalogItem(MakeCatalogueItem(u"g", u"")); }},
    {"AddCatalogItemBelow",
     [](auto& b) { return b.AddCatalogItem(MakeCatalogueItem(u"h", u"g")); }},
    {"GetChildCatalogItems",
     [](auto& b) {
         std::vector<CatalogueItemPtr> items;
         return b.GetChildCatalogItems(u"PIPES", u"", items, 1);
     }},
    {"GetCatalogItemById",
     [](auto& b) { return int(b.GetCatalogItemById(u"PIPES", u"h", 1) != nullptr); }},
    {"DeleteCatalogItem", [](auto& b) { return b.DeleteCatalogItem(u"PIPES", u"g"); }},
    {"DeleteRepositoryItem", [](auto& b) { return b.DeleteRepositoryItem(u"TAG", u"1"); }},
};

class FaultyConnection : public testing::Test {
protected:
    FaultyConnection() {
        access->SetMsgProvider(&messages);
        access->SetSettingsPath(workstation.Folder().Path());
        access->Connect(address.Text(), false);
    }

    // Everything that a call could leave, as another workstation sees it.
    std::vector<std::int64_t> Traces() {
        std::vector<std::int64_t> numbers;
        const auto rows = other->Query(
            "SELECT revision, last_id, content_bytes, (SELECT COUNT(*) FROM revision), "
            "(SELECT COUNT(*) FROM content), (SELECT COUNT(*) FROM kind), "
            "(SELECT COUNT(*) FROM stored_file), (SELECT COUNT(until_revision) FROM stored_file), "
            "(SELECT COUNT(*) FROM general_settings), (SELECT COUNT(*) FROM repository_item), "
            "(SELECT COUNT(until_revision) FROM repository_item), "
            "(SELECT COUNT(*) FROM catalogue_item), "
            "(SELECT COUNT(until_revision) FROM catalogue_item) FROM head",
            {});
        rows->Next();
        for (int column = 0; column < 13; ++column)
            numbers.push_back(rows->Integer(column));
        return numbers;
    }

    // Lets the operation of that number fail; false when there are not so many.
    bool FailsAt(const Operation& operation, int number, Problem problem) {
        const auto before = Traces();
        plan = {number, problem};
        const int result = operation.run(backend);
        const bool reached = plan.seen > number;
        plan = {};
        if (!reached) {
            EXPECT_EQ(result, 1);
            EXPECT_THAT(log.Take(), IsEmpty());
            return false;
        }
        EXPECT_EQ(result, 0);
        EXPECT_THAT(log.Take(), ElementsAre(u"The storage failed (the test wants it so). This is a "
                                            u"fault of the program; please report it."));
        EXPECT_EQ(access->TakeLastProblem(), problem);
        EXPECT_EQ(Traces(), before);
        EXPECT_EQ(backend.IsRepositoryAccessible(), 1);
        return true;
    }

    Workstation workstation;
    EnglishMessages messages;
    WorkspaceLog log;
    FaultPlan plan;
    Address address{workstation.Folder().Path() + u"repository.db"};
    boost::shared_ptr<RepositoryAccess> access =
        boost::make_shared<RepositoryAccess>([this](const Address& place) {
            return std::make_unique<FaultySqlConnection>(OpenRepository(place), plan);
        });
    SqlBackend backend{access};
    std::unique_ptr<SqlConnection> other = (CreateRepository(address), OpenRepository(address));
};

TEST_F(FaultyConnection, LeavesNothingOfACallAndGoesOnWorking) {
    for (const Operation& operation : kOperations) {
        int number = 0;
        for (bool reached = true; reached && !HasFailure(); ++number) {
            SCOPED_TRACE(std::string(operation.name) + ", operation " + std::to_string(number));
            for (const Problem problem : kProblems)
                reached = reached && FailsAt(operation, number, problem);
        }
        EXPECT_GT(number, 1) << operation.name;
    }
}

TEST_F(FaultyConnection, ACommitWhoseAnswerIsLostIsThereWholeAndToldAsAFailure) {
    EXPECT_EQ(kOperations[1].run(backend), 1);
    const Operation& replace = kOperations[2];
    const auto before = Traces();
    // The commit is the operation with whose failure the call is there.
    for (int number = 0; Traces() == before; ++number) {
        plan = {number, Problem::Unreachable, true};
        ASSERT_EQ(replace.run(backend), 0);
        EXPECT_EQ(log.Take().size(), 1u);
    }
    plan = {};
    EXPECT_EQ(Traces()[0], before[0] + 1);
    // The same call again finds nothing to do.
    const auto whole = Traces();
    EXPECT_EQ(replace.run(backend), 1);
    EXPECT_EQ(Traces(), whole);
    EXPECT_EQ(FileIds(backend).size(), 3u);
}

} // namespace
} // namespace Storage
