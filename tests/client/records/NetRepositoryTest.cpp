// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/NetRepository.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

using namespace Repository;
using testing::ElementsAre;

namespace {

using Item = boost::shared_ptr<CNetRepositoryItem>;

Item ItemWithId(const char16_t* id) {
    const auto item = boost::make_shared<CNetRepositoryItem>();
    item->SetId(id);
    return item;
}

std::vector<Item> ItemsOf(const CNetDefinitionRepository& repository) {
    std::vector<Item> items;
    repository.GetRepositoryItems(items);
    return items;
}

} // namespace

TEST(NetDefinitionRepository, TheTagIsFixedAtConstruction) {
    EXPECT_EQ(CNetDefinitionRepository(u"NODES").GetTag(), u"NODES");
    EXPECT_EQ(CNetDefinitionRepository(nullptr).GetTag(), u"");
    EXPECT_TRUE(ItemsOf(CNetDefinitionRepository(u"NODES")).empty());
}

TEST(NetDefinitionRepository, OfTwoItemsWithOneIdTheFirstIsKept) {
    CNetDefinitionRepository repository(u"T");
    const Item first = ItemWithId(u"a");
    repository.AddRepositoryItem(first);
    repository.AddRepositoryItem(ItemWithId(u"a"));
    EXPECT_EQ(repository.GetNetRepositoryItemById(u"a"), first);
    EXPECT_EQ(ItemsOf(repository).size(), 1u);
}

TEST(NetDefinitionRepository, AnItemIsFoundUnderTheIdItHadWhenAdded) {
    CNetDefinitionRepository repository(u"T");
    const Item item = ItemWithId(u"old");
    repository.AddRepositoryItem(item);
    item->SetId(u"new");
    EXPECT_EQ(repository.GetNetRepositoryItemById(u"old"), item);
    EXPECT_FALSE(repository.GetNetRepositoryItemById(u"new"));
}

TEST(NetDefinitionRepository, IdsAreComparedWithRegardToCase) {
    CNetDefinitionRepository repository(u"T");
    repository.AddRepositoryItem(ItemWithId(u"ABC"));
    EXPECT_FALSE(repository.GetNetRepositoryItemById(u"abc"));
    EXPECT_FALSE(repository.GetNetRepositoryItemById(nullptr));
    EXPECT_EQ(ItemsOf(repository).size(), 1u); // looking up adds nothing
    repository.AddRepositoryItem(ItemWithId(u"abc"));
    EXPECT_EQ(ItemsOf(repository).size(), 2u);
}

TEST(NetDefinitionRepository, ItemsAreAppendedInOrderOfTheirIdsBehindWhatIsThere) {
    CNetDefinitionRepository repository(u"T");
    const Item a = ItemWithId(u"a"), b = ItemWithId(u"b");
    repository.AddRepositoryItem(b);
    repository.AddRepositoryItem(a);
    const Item one = ItemWithId(u"1"), two = ItemWithId(u"2");
    std::vector<Item> items = {one, two};
    repository.GetRepositoryItems(items);
    EXPECT_THAT(items, ElementsAre(one, two, a, b));
}

TEST(NetDefinitionRepository, TheOrderIsThatOfCodeUnits) {
    CNetDefinitionRepository repository(u"T");
    // A surrogate pair stands before U+FF21, which its code point would follow.
    const Item wide = ItemWithId(u"\uFF21"), pair = ItemWithId(u"\U00010000");
    const Item lower = ItemWithId(u"a"), upper = ItemWithId(u"Z"), accented = ItemWithId(u"č");
    for (const Item& item : {wide, pair, lower, upper, accented})
        repository.AddRepositoryItem(item);
    EXPECT_THAT(ItemsOf(repository), ElementsAre(upper, lower, accented, pair, wide));
}

TEST(NetDefinitionRepository, RenamingChangesTheNameAndNotTheKey) {
    CNetDefinitionRepository repository(u"T");
    const Item item = ItemWithId(u"a");
    repository.AddRepositoryItem(item);
    repository.RenameRepositoryItem(u"a", u"Novi");
    EXPECT_EQ(item->GetName(), u"Novi");
    EXPECT_EQ(item->GetId(), u"a");
    EXPECT_EQ(repository.GetNetRepositoryItemById(u"a"), item);
    EXPECT_FALSE(repository.GetNetRepositoryItemById(u"Novi"));
}

TEST(NetDefinitionRepository, RenamingAnUnknownItemChangesNothing) {
    CNetDefinitionRepository repository(u"T");
    const Item item = ItemWithId(u"a");
    item->SetName(u"Stari");
    repository.AddRepositoryItem(item);
    repository.RenameRepositoryItem(u"b", u"Novi");
    repository.RenameRepositoryItem(nullptr, u"Novi");
    EXPECT_EQ(item->GetName(), u"Stari");
    EXPECT_THAT(ItemsOf(repository), ElementsAre(item));
}

TEST(NetDefinitionRepository, RemovingTakesTheItemOfThatIdAndNoOther) {
    CNetDefinitionRepository repository(u"T");
    const Item a = ItemWithId(u"a"), b = ItemWithId(u"b");
    repository.AddRepositoryItem(a);
    repository.AddRepositoryItem(b);
    repository.RemoveNetRepositoryItemById(u"unknown");
    EXPECT_THAT(ItemsOf(repository), ElementsAre(a, b));
    repository.RemoveNetRepositoryItemById(u"a");
    EXPECT_THAT(ItemsOf(repository), ElementsAre(b));
}

TEST(NetDefinitionRepository, AnEmptyHandleIsNotAdded) {
    CNetDefinitionRepository repository(u"T");
    repository.AddRepositoryItem({});
    EXPECT_TRUE(ItemsOf(repository).empty());
}

TEST(NetDefinitionRepository, ACopyHasATableOfItsOwnWithTheSameItems) {
    CNetDefinitionRepository repository(u"T");
    const Item item = ItemWithId(u"a");
    repository.AddRepositoryItem(item);
    CNetDefinitionRepository copy(repository);
    CNetDefinitionRepository assigned(u"other");
    assigned = repository;
    repository.RemoveNetRepositoryItemById(u"a");
    EXPECT_EQ(copy.GetNetRepositoryItemById(u"a"), item);
    EXPECT_EQ(copy.GetTag(), u"T");
    EXPECT_EQ(assigned.GetNetRepositoryItemById(u"a"), item);
    EXPECT_EQ(assigned.GetTag(), u"T");
}

TEST(NetRepository, DefinitionRepositoriesAreAddedThroughTheMapAndFoundByTag) {
    CNetRepository repository;
    EXPECT_TRUE(repository.GetRepositories()->empty());
    const auto nodes = boost::make_shared<CNetDefinitionRepository>(u"NODES");
    repository.GetRepositories()->emplace(u"NODES", nodes);
    EXPECT_EQ(repository.GetDefinitionRepositoryByTag(u"NODES"), nodes);
}

TEST(NetRepository, AnUnknownTagGivesAnEmptyHandleAndNoEntry) {
    CNetRepository repository;
    repository.GetRepositories()->emplace(u"NODES",
                                          boost::make_shared<CNetDefinitionRepository>(u"NODES"));
    EXPECT_FALSE(repository.GetDefinitionRepositoryByTag(u"nodes"));
    EXPECT_FALSE(repository.GetDefinitionRepositoryByTag(nullptr));
    EXPECT_EQ(repository.GetRepositories()->size(), 1u);
}

TEST(NetRepository, ACopySharesTheDefinitionRepositories) {
    CNetRepository repository;
    const auto nodes = boost::make_shared<CNetDefinitionRepository>(u"NODES");
    repository.GetRepositories()->emplace(u"NODES", nodes);
    const CNetRepository copy(repository);
    repository.GetRepositories()->clear();
    EXPECT_EQ(copy.GetDefinitionRepositoryByTag(u"NODES"), nodes);
}
