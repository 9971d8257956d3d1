// SPDX-License-Identifier: MIT
#include "TestFiles.h"
#include "TestRepository.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using Repository::CNetCatalogueItem;
using testing::ElementsAre;
using testing::IsEmpty;

CatalogueItemPtr MakeItem(const CString& id, const CString& parent = u"",
                          const CString& name = u"a name",
                          const Repository::RepositoryFiles& files = {}) {
    auto item = boost::make_shared<CNetCatalogueItem>();
    item->SetCatalogueTag(u"PIPES");
    item->SetCatalogueId(id.c_str());
    item->SetParentId(parent.c_str());
    item->SetIsGroup(1);
    item->SetName(name.c_str());
    item->SetCatalogueName(u"Cijevi");
    item->SetItemContent(u"<item name=\"čvor\">\"quoted\"</item>");
    *item->GetFiles() = files;
    return item;
}

class StoreCatalogue : public StoreTest {
protected:
    void Add(const CString& id, const CString& parent = u"") {
        store->AddCatalogueItem(*MakeItem(id, parent));
    }
    std::vector<CString> Children(const CString& parent = u"", const CString& tag = u"PIPES") {
        std::vector<CString> ids;
        for (const auto& item : store->CatalogueChildren(tag, parent, true))
            ids.push_back(item->GetCatalogueId());
        return ids;
    }
};
ZEBX_FOR_EVERY_ENGINE(StoreCatalogue);

TEST_P(StoreCatalogue, UnknownTagsParentsAndIdsGiveNothing) {
    Add(u"a");
    EXPECT_THAT(Children(u"", u"OTHER"), IsEmpty());
    EXPECT_THAT(Children(u"unknown"), IsEmpty());
    EXPECT_FALSE(store->CatalogueItem(u"PIPES", u"unknown", true));
    EXPECT_FALSE(store->CatalogueItem(u"PIPES", u"", true));
    EXPECT_FALSE(store->CatalogueItem(u"OTHER", u"a", true));
}

TEST_P(StoreCatalogue, AnItemComesBackWithEveryFieldAndWithItsFilesWhenAsked) {
    store->AddCatalogueItem(
        *MakeItem(u"{1}", u"{0}", u"Cijev", {MakeFile(u"b.dwg", "1"), MakeFile(u"a.dwg", "2")}));
    for (const bool withFiles : {true, false}) {
        for (const auto& item : {store->CatalogueItem(u"PIPES", u"{1}", withFiles),
                                 store->CatalogueChildren(u"PIPES", u"{0}", withFiles).at(0)}) {
            ASSERT_TRUE(item);
            EXPECT_EQ(item->GetCatalogueTag(), u"PIPES");
            EXPECT_EQ(item->GetCatalogueId(), u"{1}");
            EXPECT_EQ(item->GetParentId(), u"{0}");
            EXPECT_EQ(item->GetIsGroup(), 1);
            EXPECT_EQ(item->GetName(), u"Cijev");
            EXPECT_EQ(item->GetCatalogueName(), u"Cijevi");
            EXPECT_EQ(item->GetItemContent(), u"<item name=\"čvor\">\"quoted\"</item>");
            ASSERT_EQ(item->GetFiles()->size(), withFiles ? 2u : 0u);
        }
    }
    const auto files = *store->CatalogueItem(u"PIPES", u"{1}", true)->GetFiles();
    EXPECT_EQ(files[0]->GetFileName(), u"b.dwg");
    EXPECT_EQ(BytesOf(files[1]), "2");
}

TEST_P(StoreCatalogue, SiblingsStandInTheOrderOfTheirArrival) {
    Add(u"c");
    Add(u"c2", u"c");
    Add(u"a");
    Add(u"c1", u"c");
    Add(u"b");
    EXPECT_THAT(Children(), ElementsAre(u"c", u"a", u"b"));
    EXPECT_THAT(Children(u"c"), ElementsAre(u"c2", u"c1"));
}

TEST_P(StoreCatalogue, AddingAgainReplacesInPlace) {
    Add(u"c");
    Add(u"a");
    store->AddCatalogueItem(*MakeItem(u"c", u"", u"new"));
    EXPECT_THAT(Children(), ElementsAre(u"c", u"a"));
    EXPECT_EQ(store->CatalogueItem(u"PIPES", u"c", true)->GetName(), u"new");
    EXPECT_EQ(Revision(), 3);
    store->AddCatalogueItem(*MakeItem(u"c", u"", u"new"));
    EXPECT_EQ(Revision(), 3);
}

TEST_P(StoreCatalogue, AnItemThatMovesToAnotherGroupIsTheLastToArriveThere) {
    Add(u"g");
    Add(u"h");
    Add(u"x", u"g");
    Add(u"y", u"h");
    Add(u"x", u"h");
    EXPECT_THAT(Children(u"g"), IsEmpty());
    EXPECT_THAT(Children(u"h"), ElementsAre(u"y", u"x"));
}

TEST_P(StoreCatalogue, ChildrenMayArriveBeforeTheirGroup) {
    Add(u"x", u"g");
    EXPECT_THAT(Children(u"g"), ElementsAre(u"x"));
    EXPECT_THAT(Children(), IsEmpty());
    Add(u"g");
    EXPECT_THAT(Children(), ElementsAre(u"g"));
}

TEST_P(StoreCatalogue, DeletingAGroupTakesItsDescendantsAndTheirFilesInOneRevision) {
    Add(u"g");
    Add(u"g1", u"g");
    store->AddCatalogueItem(*MakeItem(u"g11", u"g1", u"deep", {MakeFile(u"x.dwg", "1")}));
    Add(u"h");
    Add(u"h1", u"h");
    store->DeleteCatalogueItem(u"PIPES", u"g");
    EXPECT_EQ(Revision(), 6);
    EXPECT_THAT(Children(), ElementsAre(u"h"));
    EXPECT_THAT(Children(u"g"), IsEmpty());
    EXPECT_THAT(Children(u"g1"), IsEmpty());
    EXPECT_FALSE(store->CatalogueItem(u"PIPES", u"g11", true));
    EXPECT_THAT(Children(u"h"), ElementsAre(u"h1"));
    EXPECT_EQ(Number("SELECT COUNT(*) FROM stored_file WHERE until_revision IS NULL"), 0);
    EXPECT_EQ(Number("SELECT COUNT(*) FROM catalogue_item WHERE until_revision = 6"), 3);
}

TEST_P(StoreCatalogue, DeletingInOneCatalogueLeavesTheSameIdsOfAnother) {
    Add(u"g");
    Add(u"x", u"g");
    auto other = MakeItem(u"g");
    other->SetCatalogueTag(u"VALVES");
    store->AddCatalogueItem(*other);
    other = MakeItem(u"x", u"g");
    other->SetCatalogueTag(u"VALVES");
    store->AddCatalogueItem(*other);
    store->DeleteCatalogueItem(u"PIPES", u"g");
    EXPECT_THAT(Children(u"", u"VALVES"), ElementsAre(u"g"));
    EXPECT_THAT(Children(u"g", u"VALVES"), ElementsAre(u"x"));
}

TEST_P(StoreCatalogue, ParentsThatFormALoopComeToAnEnd) {
    Add(u"a", u"b");
    Add(u"b", u"a");
    Add(u"self", u"self");
    EXPECT_THAT(Children(u"a"), ElementsAre(u"b"));
    EXPECT_THAT(Children(u"self"), ElementsAre(u"self"));
    store->DeleteCatalogueItem(u"PIPES", u"a");
    store->DeleteCatalogueItem(u"PIPES", u"self");
    EXPECT_EQ(Number("SELECT COUNT(*) FROM catalogue_item WHERE until_revision IS NULL"), 0);
}

TEST_P(StoreCatalogue, WhatIsNotThereCannotBeDeleted) {
    Add(u"x", u"g");
    // Though it has a child: there is no such item.
    EXPECT_EQ(ProblemOf([&] { store->DeleteCatalogueItem(u"PIPES", u"g"); }), Problem::Refused);
    EXPECT_EQ(ProblemOf([&] { store->DeleteCatalogueItem(u"PIPES", u""); }), Problem::Refused);
    EXPECT_EQ(Revision(), 1);
    EXPECT_THAT(Children(u"g"), ElementsAre(u"x"));
}

TEST_P(StoreCatalogue, RefusedItemsLeaveNothing) {
    EXPECT_EQ(ProblemOf([&] { Add(u""); }), Problem::Refused);
    EXPECT_EQ(ProblemOf([&] { Add(CString(u"\xD800", 1)); }), Problem::Refused);
    const auto item = MakeItem(u"a", u"", u"n", {MakeFile(u"a/b", "1")});
    EXPECT_EQ(ProblemOf([&] { store->AddCatalogueItem(*item); }), Problem::Refused);
    EXPECT_EQ(Revision(), 0);
}

TEST_P(StoreCatalogue, AreListedByTagAndParentInOrderOfArrival) {
    Add(u"z");
    Add(u"b", u"z");
    Add(u"a", u"z");
    store->AddCatalogueItem(*MakeItem(u"y", u"", u"Cijev", {MakeFile(u"b.dwg", "1")}));
    store->DeleteCatalogueItem(u"PIPES", u"a");
    std::vector<StoredItem> items;
    std::vector<StoredItem> definitions;
    store->ListItems(items, definitions);
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].id, u"z");
    EXPECT_EQ(items[1].id, u"y");
    EXPECT_EQ(items[2].id, u"b");
    EXPECT_EQ(items[2].parentId, u"z");
    const StoredItem& pipe = items[1];
    EXPECT_EQ(pipe.tag, u"PIPES");
    EXPECT_EQ(pipe.name, u"Cijev");
    EXPECT_TRUE(pipe.isGroup);
    EXPECT_EQ(pipe.sizeBytes, 34); // the letter outside ASCII has two bytes
    EXPECT_EQ(pipe.files, 1);
    EXPECT_EQ(pipe.revision, 4);
    EXPECT_FALSE(pipe.time.empty());
    EXPECT_THAT(definitions, IsEmpty());
}

} // namespace
} // namespace Storage
