// SPDX-License-Identifier: MIT
#include "TestFiles.h"
#include "TestRepository.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using Repository::CNetRepositoryItem;
using testing::ElementsAre;
using testing::IsEmpty;

RepositoryItemPtr MakeItem(const CString& id, const CString& name = u"a name",
                           const Repository::RepositoryFiles& files = {}) {
    auto item = boost::make_shared<CNetRepositoryItem>();
    item->SetId(id.c_str());
    item->SetName(name.c_str());
    item->SetEntityType(3);
    item->SetTopologyFunction(-1);
    item->SetTopologyType(-2147483647 - 1);
    item->SetConfigurationXML(u"<item>čvor $ | #\r\n\"</item>");
    item->SetRepositoryName(u"Čvorovi");
    item->SetRepositoryTag(u"NODES");
    *item->GetFiles() = files;
    return item;
}

class StoreItems : public StoreTest {
protected:
    void Add(const RepositoryItemPtr& item, const CString& tag = u"NODES") {
        store->AddRepositoryItem(tag, *item);
    }
    std::vector<CString> Ids(const CString& tag = u"NODES") {
        std::vector<CString> ids;
        for (const auto& item : store->RepositoryItems(tag))
            ids.push_back(item->GetId());
        return ids;
    }
    static std::vector<CString> FileNames(const RepositoryItemPtr& item) {
        std::vector<CString> names;
        for (const auto& file : *item->GetFiles())
            names.push_back(file->GetFileName());
        return names;
    }
};
ZEBX_FOR_EVERY_ENGINE(StoreItems);

TEST_P(StoreItems, UnknownTagsAndIdsGiveNothing) {
    EXPECT_THAT(Ids(u"UNKNOWN"), IsEmpty());
    EXPECT_FALSE(store->RepositoryItem(u"UNKNOWN", u"x"));
    Add(MakeItem(u"a"));
    EXPECT_FALSE(store->RepositoryItem(u"NODES", u"A"));
    EXPECT_FALSE(store->RepositoryItem(u"nodes", u"a"));
    EXPECT_FALSE(store->RepositoryItem(u"NODES", u""));
}

TEST_P(StoreItems, AnItemComesBackWithEveryFieldAndItsFiles) {
    Add(MakeItem(u"{1}", u"Čvor 'a'", {MakeFile(u"b.dwg", "1"), MakeFile(u"a.dwg", "2")}));
    for (const auto& item :
         {store->RepositoryItem(u"NODES", u"{1}"), store->RepositoryItems(u"NODES").at(0)}) {
        ASSERT_TRUE(item);
        EXPECT_EQ(item->GetId(), u"{1}");
        EXPECT_EQ(item->GetName(), u"Čvor 'a'");
        EXPECT_EQ(item->GetEntityType(), 3);
        EXPECT_EQ(item->GetTopologyFunction(), -1);
        EXPECT_EQ(item->GetTopologyType(), -2147483647 - 1);
        EXPECT_EQ(item->GetConfigurationXML(), u"<item>čvor $ | #\r\n\"</item>");
        EXPECT_EQ(item->GetRepositoryName(), u"Čvorovi");
        EXPECT_EQ(item->GetRepositoryTag(), u"NODES");
        EXPECT_THAT(FileNames(item), ElementsAre(u"b.dwg", u"a.dwg"));
        EXPECT_EQ(BytesOf(item->GetFiles()->at(1)), "2");
        EXPECT_EQ(BytesOf(store->File(item->GetFiles()->at(1)->GetFileId())), "2");
    }
}

TEST_P(StoreItems, ItemsStandInTheOrderOfTheirArrival) {
    for (const CString id : {u"c", u"a", u"b"})
        Add(MakeItem(id));
    EXPECT_THAT(Ids(), ElementsAre(u"c", u"a", u"b"));
}

TEST_P(StoreItems, AddingAgainReplacesInPlace) {
    for (const CString id : {u"c", u"a", u"b"})
        Add(MakeItem(id, u"old", {MakeFile(u"x.dwg", "1")}));
    Add(MakeItem(u"a", u"new"));
    EXPECT_THAT(Ids(), ElementsAre(u"c", u"a", u"b"));
    const auto item = store->RepositoryItem(u"NODES", u"a");
    EXPECT_EQ(item->GetName(), u"new");
    EXPECT_THAT(*item->GetFiles(), IsEmpty());
    EXPECT_THAT(FileNames(store->RepositoryItem(u"NODES", u"b")), ElementsAre(u"x.dwg"));
}

TEST_P(StoreItems, AddingTheSameAgainMakesNoRevision) {
    Add(MakeItem(u"a", u"n", {MakeFile(u"x.dwg", "1")}));
    Add(MakeItem(u"a", u"n", {MakeFile(u"x.dwg", "1")}));
    EXPECT_EQ(Revision(), 1);
    Add(MakeItem(u"a", u"n", {MakeFile(u"x.dwg", "2")}));
    EXPECT_EQ(Revision(), 2);
    // What was fetched can be sent again, whatever ids its files have now.
    Add(store->RepositoryItem(u"NODES", u"a"));
    EXPECT_EQ(Revision(), 2);
}

TEST_P(StoreItems, AnItemThatWasDeletedArrivesAnew) {
    Add(MakeItem(u"a"));
    Add(MakeItem(u"b"));
    store->DeleteRepositoryItem(u"NODES", u"a");
    EXPECT_THAT(Ids(), ElementsAre(u"b"));
    EXPECT_FALSE(store->RepositoryItem(u"NODES", u"a"));
    Add(MakeItem(u"a"));
    EXPECT_THAT(Ids(), ElementsAre(u"b", u"a"));
}

TEST_P(StoreItems, RenamingChangesTheNameAloneAndKeepsPlaceAndFiles) {
    Add(MakeItem(u"a", u"old", {MakeFile(u"x.dwg", "1"), MakeFile(u"y.dwg", "2")}));
    Add(MakeItem(u"b"));
    store->RenameRepositoryItem(u"NODES", u"a", u"novo ime");
    EXPECT_THAT(Ids(), ElementsAre(u"a", u"b"));
    const auto item = store->RepositoryItem(u"NODES", u"a");
    EXPECT_EQ(item->GetName(), u"novo ime");
    EXPECT_EQ(item->GetConfigurationXML(), u"<item>čvor $ | #\r\n\"</item>");
    EXPECT_THAT(FileNames(item), ElementsAre(u"x.dwg", u"y.dwg"));
    EXPECT_EQ(BytesOf(item->GetFiles()->at(1)), "2");
    EXPECT_EQ(Revision(), 3);
    store->RenameRepositoryItem(u"NODES", u"a", u"novo ime");
    EXPECT_EQ(Revision(), 3);
}

TEST_P(StoreItems, WhatIsNotThereCannotBeRenamedOrDeleted) {
    Add(MakeItem(u"a"));
    EXPECT_EQ(ProblemOf([&] { store->RenameRepositoryItem(u"NODES", u"x", u"n"); }),
              Problem::Refused);
    EXPECT_EQ(ProblemOf([&] { store->DeleteRepositoryItem(u"OTHER", u"a"); }), Problem::Refused);
    EXPECT_EQ(Revision(), 1);
}

TEST_P(StoreItems, TheSameIdCanStandUnderTwoTags) {
    Add(MakeItem(u"a", u"one"), u"NODES");
    Add(MakeItem(u"a", u"two"), u"PIPES");
    store->DeleteRepositoryItem(u"NODES", u"a");
    EXPECT_EQ(store->RepositoryItem(u"PIPES", u"a")->GetName(), u"two");
}

TEST_P(StoreItems, TheEmptyFileAtTheEndOfAnItemReadFromItsRecordIsSkipped) {
    CNetRepositoryItem item;
    const auto sent = MakeItem(u"a", u"n", {MakeFile(u"x.dwg", "1")});
    item.Deserialize(sent->Serialize().c_str());
    ASSERT_EQ(item.GetFiles()->size(), 2u);
    store->AddRepositoryItem(u"NODES", item);
    EXPECT_THAT(FileNames(store->RepositoryItem(u"NODES", u"a")), ElementsAre(u"x.dwg"));
}

TEST_P(StoreItems, OneNameTwiceInAnItemIsKeptBecauseTheFilesMayBelongToDifferentManagers) {
    Add(MakeItem(u"a", u"n", {MakeFile(u"x.dwg", "1"), MakeFile(u"x.dwg", "2")}));
    const auto item = store->RepositoryItem(u"NODES", u"a");
    EXPECT_THAT(FileNames(item), ElementsAre(u"x.dwg", u"x.dwg"));
}

TEST_P(StoreItems, RefusedItemsLeaveNothing) {
    const auto problem = [&](const RepositoryItemPtr& item) {
        return ProblemOf([&] { Add(item); });
    };
    EXPECT_EQ(problem(MakeItem(u"")), Problem::Refused);
    EXPECT_EQ(problem(MakeItem(u"a", CString(u"\xDFFF", 1))), Problem::Refused);
    EXPECT_EQ(problem(MakeItem(u"a", u"n", {MakeFile(u"ok", "1"), MakeFile(u"a:b", "1")})),
              Problem::Refused);
    EXPECT_EQ(problem(MakeItem(u"a", u"n", {MakeFile(u"", ""), MakeFile(u"ok", "1")})),
              Problem::Refused);
    EXPECT_EQ(Revision(), 0);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM content"), 0);
}

TEST_P(StoreItems, AFileThatMayNotBeGivenOutIsLeftOutAndToldAndTheRestComes) {
    Add(MakeItem(u"a", u"n",
                 {MakeFile(u"bad.dwg", "1"), MakeFile(u"damaged.dwg", "2"),
                  MakeFile(u"good.dwg", "3"), MakeFile(u"twin.dwg", "3")}));
    Add(MakeItem(u"b"));
    auto& sql = store->Connection();
    sql.Execute("UPDATE stored_file SET name = '../bad' WHERE name = 'bad.dwg'", {});
    sql.Execute("UPDATE stored_file SET name = 'GOOD.dwg', name_folded = 'good.dwg' "
                "WHERE name = 'twin.dwg'",
                {});
    sql.Execute("UPDATE content SET bytes = $1 WHERE size_bytes = 1 AND bytes = $2",
                {SqlBytes("X"), SqlBytes("2")});
    const auto items = store->RepositoryItems(u"NODES");
    ASSERT_EQ(items.size(), 2u);
    EXPECT_THAT(FileNames(items[0]), ElementsAre(u"good.dwg"));
    ASSERT_EQ(leftOut.size(), 3u);
    EXPECT_EQ(leftOut[0].Messages()[0].number, MessageNumber::NameSeparator);
    EXPECT_EQ(leftOut[1].Kind(), Problem::Integrity);
    EXPECT_EQ(leftOut[2].Messages()[0].number, MessageNumber::NameDiffersByCase);
}

TEST_P(StoreItems, AreListedByTagInOrderOfArrival) {
    Add(MakeItem(u"b"));
    Add(MakeItem(u"a", u"Čvor", {MakeFile(u"b.dwg", "1")}));
    Add(MakeItem(u"x"), u"A_TAG");
    std::vector<StoredItem> catalogueItems;
    std::vector<StoredItem> items;
    store->ListItems(catalogueItems, items);
    EXPECT_THAT(catalogueItems, IsEmpty());
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].tag, u"A_TAG");
    EXPECT_EQ(items[1].id, u"b");
    EXPECT_EQ(items[2].id, u"a");
    EXPECT_EQ(items[2].name, u"Čvor");
    EXPECT_EQ(items[2].files, 1);
    EXPECT_FALSE(items[2].isGroup);
}

} // namespace
} // namespace Storage
