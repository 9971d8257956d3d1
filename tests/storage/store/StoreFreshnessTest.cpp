// SPDX-License-Identifier: MIT
// Two workstations: whatever one reads ahead, a read that begins after the other's commit sees it.
#include "TestFiles.h"
#include "TestRepository.h"

#include "platform/text/Utf8.h"

#include <gmock/gmock.h>

namespace Storage {
namespace {

using testing::ElementsAre;

class StoreFreshness : public StoreTest {
protected:
    RepositoryItemPtr Definition(const char16_t* id, const char16_t* name) {
        auto item = boost::make_shared<Repository::CNetRepositoryItem>();
        item->SetId(id);
        item->SetName(name);
        item->GetFiles()->push_back(MakeFile(u"f", Platform::ToUtf8(name)));
        return item;
    }
    void AddItem(Store& to, const char16_t* id, const char16_t* parent, const char16_t* name) {
        Repository::CNetCatalogueItem item;
        item.SetCatalogueTag(u"PIPES");
        item.SetCatalogueId(id);
        item.SetParentId(parent);
        item.SetIsGroup(1);
        item.SetName(name);
        item.GetFiles()->push_back(MakeFile(u"f", Platform::ToUtf8(name)));
        to.AddCatalogueItem(item);
    }
    std::vector<CString> Children(const char16_t* parent) {
        std::vector<CString> names;
        for (const auto& item : store->CatalogueChildren(u"PIPES", parent, true))
            names.push_back(item->GetName() + u"=" +
                            Platform::FromUtf8(BytesOf(item->GetFiles()->at(0))));
        return names;
    }
    CString Item(const char16_t* id) {
        const auto item = store->CatalogueItem(u"PIPES", id, true);
        return item ? item->GetName() : CString(u"(none)");
    }
    std::vector<std::string> Files() {
        std::vector<std::string> contents;
        for (const CString& id : store->FileIds(4, u"001_LABEL"))
            contents.push_back(BytesOf(store->File(id)));
        return contents;
    }

    std::unique_ptr<Store> other = OpenStore();
};
ZEBX_FOR_EVERY_ENGINE(StoreFreshness);

TEST_P(StoreFreshness, AListingSeesWhatWasCommittedBeforeIt) {
    for (int i = 0; i < 5; ++i) {
        const std::string now = std::to_string(i);
        other->AddFiles({MakeFile(u"a", "a" + now), MakeFile(u"b", "b" + now)});
        EXPECT_THAT(Files(), ElementsAre("a" + now, "b" + now));
    }
    // What was listed stays what it was.
    const auto ids = store->FileIds(4, u"001_LABEL");
    EXPECT_EQ(BytesOf(store->File(ids[0])), "a4");
    other->AddFiles({MakeFile(u"b", "later")});
    EXPECT_EQ(BytesOf(store->File(ids[1])), "b4");
    EXPECT_THAT(Files(), ElementsAre("a4", "later"));
}

TEST_P(StoreFreshness, DefinitionsAreReadAnewEachTime) {
    for (const char16_t* name : {u"one", u"two", u"three"}) {
        other->AddRepositoryItem(u"TAG", *Definition(u"1", name));
        EXPECT_EQ(store->RepositoryItem(u"TAG", u"1")->GetName(), name);
        const auto items = store->RepositoryItems(u"TAG");
        ASSERT_EQ(items.size(), 1u);
        EXPECT_EQ(BytesOf(items[0]->GetFiles()->at(0)), Platform::ToUtf8(name));
    }
    other->DeleteRepositoryItem(u"TAG", u"1");
    EXPECT_FALSE(store->RepositoryItem(u"TAG", u"1"));
    EXPECT_TRUE(store->RepositoryItems(u"TAG").empty());
}

TEST_P(StoreFreshness, GeneralSettingsAreReadAnewEachTime) {
    for (const char16_t* xml : {u"<a/>", u"<b/>"}) {
        other->SaveGeneralSettings(xml, {MakeFile(u"f", Platform::ToUtf8(xml))}, u"N");
        const auto settings = store->LoadGeneralSettings(u"N");
        ASSERT_TRUE(settings);
        EXPECT_EQ(settings->xml, xml);
        EXPECT_EQ(BytesOf(store->File(settings->fileIds.at(0))), Platform::ToUtf8(xml));
    }
    other->SaveGeneralSettings(u"<c/>", {}, u"M");
    EXPECT_THAT(store->GeneralSettingsNames(), ElementsAre(u"M", u"N"));
}

TEST_P(StoreFreshness, ACataloguesRootsAreReadAnewEachTime) {
    AddItem(*other, u"g", u"", u"old");
    EXPECT_THAT(Children(u""), ElementsAre(u"old=old"));
    AddItem(*other, u"g", u"", u"new");
    EXPECT_THAT(Children(u""), ElementsAre(u"new=new"));
}

TEST_P(StoreFreshness, AGroupAndAnItemThatAreAskedForAgainAreReadAnew) {
    AddItem(*other, u"g", u"", u"group");
    AddItem(*other, u"i", u"g", u"old");
    EXPECT_THAT(Children(u""), ElementsAre(u"group=group"));
    EXPECT_THAT(Children(u"g"), ElementsAre(u"old=old"));
    EXPECT_EQ(Item(u"i"), u"old");
    AddItem(*other, u"i", u"g", u"new");
    EXPECT_THAT(Children(u"g"), ElementsAre(u"new=new"));
    EXPECT_EQ(Item(u"i"), u"new");
    AddItem(*other, u"i", u"g", u"newer");
    EXPECT_EQ(Item(u"i"), u"newer");
    other->DeleteCatalogueItem(u"PIPES", u"i");
    EXPECT_EQ(Item(u"i"), u"(none)");
    EXPECT_TRUE(Children(u"g").empty());
}

TEST_P(StoreFreshness, AWalkUnderWayGoesOnWithTheChangeOnceItIsKnown) {
    AddItem(*other, u"g", u"", u"group");
    AddItem(*other, u"i", u"g", u"old");
    EXPECT_THAT(Children(u""), ElementsAre(u"group=group"));
    AddItem(*other, u"i", u"g", u"new");
    AddItem(*other, u"j", u"g", u"second");
    Revision(); // any answer of a server brings what it has to tell
    EXPECT_THAT(Children(u"g"), ElementsAre(u"new=new", u"second=second"));
    EXPECT_EQ(Item(u"j"), u"second");
}

TEST_P(StoreFreshness, AWalkUnderWaySeesWhatItsOwnWorkstationCommits) {
    AddItem(*store, u"g", u"", u"group");
    AddItem(*store, u"i", u"g", u"old");
    EXPECT_THAT(Children(u""), ElementsAre(u"group=group"));
    AddItem(*store, u"i", u"g", u"new");
    EXPECT_THAT(Children(u"g"), ElementsAre(u"new=new"));
}

TEST_P(StoreFreshness, AKindIsKnownToTheOneWhoRegistersItSecond) {
    store->RegisterContent(4, u"001_LABEL", 10313);
    other->RegisterContent(4, u"001_LABEL", 10313);
    EXPECT_EQ(Revision(), 1);
}

} // namespace
} // namespace Storage
