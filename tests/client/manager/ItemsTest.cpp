// SPDX-License-Identifier: MIT
// Definitions: sending, deleting, renaming and listing.
#include "client/manager/ItemsTest.h"

#include <stdexcept>

using namespace Repository;
using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::Throw;

namespace {

using Items = ItemsTest;

TEST_F(Items, AddingNothingGivesZeroAndChangesNothing) {
    EXPECT_EQ(manager.AddRepositoryItem(u"A", nullptr), 0);
    EXPECT_THAT(*Picture()->GetRepositories(), IsEmpty());
}

TEST_F(Items, AddingCopiesEveryFieldAndTheFactorysNameReplacesTheTag) {
    const Item item = LocalItem(u"1", u"one");
    item->SetEntityType(ZEBGis::enmEntityType(7));
    item->SetTopologyFunction(8);
    item->SetTopologyType(ZEBGis::enmTopologyType(9));
    NetItem sent;
    EXPECT_CALL(backend, AddRepositoryItem(TextIs(u"A"), _))
        .WillOnce([&](const char16_t*, const NetItem& net) {
            sent = net;
            return 3;
        });
    EXPECT_EQ(manager.AddRepositoryItem(u"A", item.get()), 3);
    ASSERT_TRUE(sent);
    EXPECT_EQ(sent->GetId(), u"1");
    EXPECT_EQ(sent->GetName(), u"one");
    EXPECT_EQ(sent->GetEntityType(), 7);
    EXPECT_EQ(sent->GetTopologyFunction(), 8);
    EXPECT_EQ(sent->GetTopologyType(), 9);
    EXPECT_EQ(sent->GetConfigurationXML(), item->GetXML());
    EXPECT_EQ(sent->GetRepositoryTag(), u"A");
    EXPECT_EQ(sent->GetRepositoryName(), u"Items of A");
    EXPECT_THAT(*sent->GetFiles(), IsEmpty());
    EXPECT_EQ(Picture()->GetDefinitionRepositoryByTag(u"A")->GetNetRepositoryItemById(u"1"), sent);
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(Items, WithoutAFactoryTheTagIsTheRepositorysName) {
    const Item item = LocalItem(u"1", u"one");
    NetItem sent;
    EXPECT_CALL(backend, AddRepositoryItem(TextIs(u"elsewhere"), _))
        .WillOnce([&](const char16_t*, const NetItem& net) {
            sent = net;
            return 1;
        });
    EXPECT_EQ(manager.AddRepositoryItem(u"elsewhere", item.get()), 1);
    EXPECT_EQ(sent->GetRepositoryName(), u"elsewhere");
}

TEST_F(Items, ThePictureHasTheItemBeforeTheStorageIsAsked) {
    const Item item = LocalItem(u"1", u"one");
    EXPECT_CALL(backend, AddRepositoryItem(_, _)).WillOnce([&](auto&&...) {
        EXPECT_THAT(Drawn(u"A"), ElementsAre(u"1=one"));
        EXPECT_EQ(Picture()->GetDefinitionRepositoryByTag(u"A")->GetTag(), u"A");
        return 1;
    });
    EXPECT_THAT(Drawn(u"A"), ElementsAre(u"(none)"));
    EXPECT_EQ(manager.AddRepositoryItem(u"A", item.get()), 1);
}

TEST_F(Items, ARefusedItemStaysInThePicture) {
    const Item item = LocalItem(u"1", u"one");
    EXPECT_CALL(backend, AddRepositoryItem(_, _)).WillOnce(Return(0));
    EXPECT_EQ(manager.AddRepositoryItem(u"A", item.get()), 0);
    EXPECT_THAT(Drawn(u"A"), ElementsAre(u"1=one"));
}

TEST_F(Items, ThePictureKeepsTheFirstItemOfAnIdAndTheStorageGetsTheNewOne) {
    Draw(u"A", {Stored(u"1", u"old")});
    const Item item = LocalItem(u"1", u"new");
    EXPECT_CALL(backend, AddRepositoryItem(_, testing::Pointee(testing::Property(
                                                  &CNetRepositoryItem::GetName, u"new"))))
        .WillOnce(Return(1));
    EXPECT_EQ(manager.AddRepositoryItem(u"A", item.get()), 1);
    EXPECT_THAT(Drawn(u"A"), ElementsAre(u"1=old"));
}

TEST_F(Items, DeletingAsksTheStorageFirstAndPassesItsResultOn) {
    Draw(u"A", {Stored(u"1", u"one"), Stored(u"2", u"two")});
    EXPECT_CALL(backend, DeleteRepositoryItem(TextIs(u"A"), TextIs(u"1"))).WillOnce([&](auto&&...) {
        EXPECT_THAT(Drawn(u"A"), ElementsAre(u"1=one", u"2=two"));
        return -7;
    });
    EXPECT_EQ(manager.DeleteRepositoryItem(u"A", u"1"), -7);
    EXPECT_THAT(Drawn(u"A"), ElementsAre(u"2=two"));
}

TEST_F(Items, RenamingAsksTheStorageFirstAndPassesItsResultOn) {
    Draw(u"A", {Stored(u"1", u"one"), Stored(u"2", u"two")});
    EXPECT_CALL(backend, RenameRepositoryItem(TextIs(u"A"), TextIs(u"2"), TextIs(u"new")))
        .WillOnce([&](auto&&...) {
            EXPECT_THAT(Drawn(u"A"), ElementsAre(u"1=one", u"2=two"));
            return 5;
        });
    EXPECT_EQ(manager.RenameRepositoryItem(u"A", u"2", u"new"), 5);
    EXPECT_THAT(Drawn(u"A"), ElementsAre(u"1=one", u"2=new"));
}

TEST_F(Items, WhatTheStorageRefusesToDeleteOrRenameStaysInThePicture) {
    Draw(u"A", {Stored(u"1", u"one")});
    EXPECT_CALL(backend, DeleteRepositoryItem(_, _)).WillOnce(Return(0));
    EXPECT_EQ(manager.DeleteRepositoryItem(u"A", u"1"), 0);
    EXPECT_CALL(backend, RenameRepositoryItem(_, _, _)).WillOnce(Return(0));
    EXPECT_EQ(manager.RenameRepositoryItem(u"A", u"1", u"new"), 0);
    EXPECT_THAT(Drawn(u"A"), ElementsAre(u"1=one"));
}

TEST_F(Items, DeletingAndRenamingWorkOnTagsThatThePictureDoesNotHave) {
    EXPECT_CALL(backend, DeleteRepositoryItem(_, _)).WillOnce(Return(2));
    EXPECT_EQ(manager.DeleteRepositoryItem(u"A", u"1"), 2);
    EXPECT_CALL(backend, RenameRepositoryItem(_, _, _)).WillOnce(Return(3));
    EXPECT_EQ(manager.RenameRepositoryItem(u"A", u"1", u"new"), 3);
    EXPECT_THAT(*Picture()->GetRepositories(), IsEmpty());
}

TEST_F(Items, ListingGivesZeroForAnUnknownTagAndAppendsNothing) {
    int result = -1;
    EXPECT_THAT(Listed(u"A", result), IsEmpty());
    EXPECT_EQ(result, 0);
}

TEST_F(Items, ListingGivesZeroForAKnownTagTooAndAppendsItsItems) {
    const NetItem stored = Stored(u"2", u"two", u"<definition id='2'/>");
    stored->SetEntityType(4);
    stored->SetTopologyFunction(5);
    stored->SetTopologyType(6);
    Draw(u"A", {stored, Stored(u"1", u"one")});
    int result = -1;
    const auto items = Listed(u"A", result);
    EXPECT_EQ(result, 0);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0]->GetId(), u"1");
    EXPECT_EQ(items[1]->GetId(), u"2");
    EXPECT_EQ(items[1]->GetName(), u"two");
    EXPECT_EQ(items[1]->GetEntityType(), 4);
    EXPECT_EQ(items[1]->GetTopologyFunction(), 5);
    // Neither the topology type nor the configuration is carried over: kept.
    EXPECT_EQ(items[1]->GetTopologyType(), 0);
    EXPECT_EQ(items[1]->GetXML(), u"");
}

TEST_F(Items, ListedItemsGoBehindWhatTheCallerHas) {
    Draw(u"A", {Stored(u"1", u"one")});
    const Item mine = LocalItem(u"mine", u"");
    std::vector<ZEBGis::CRepositoryItem*> out = {mine.get()};
    EXPECT_EQ(manager.GetRepositoryItemsLite(u"A", out), 0);
    ASSERT_EQ(out.size(), 2U);
    EXPECT_EQ(out[0], mine.get());
    delete out[1];
}

TEST_F(Items, AMissingPictureIsOnlyMadeByARefresh) {
    Picture().reset();
    const Item item = LocalItem(u"1", u"one");
    EXPECT_CALL(backend, AddRepositoryItem(_, _)).WillOnce(Return(1));
    EXPECT_CALL(backend, DeleteRepositoryItem(_, _)).WillOnce(Return(1));
    EXPECT_CALL(backend, RenameRepositoryItem(_, _, _)).WillOnce(Return(1));
    EXPECT_EQ(manager.AddRepositoryItem(u"A", item.get()), 1);
    EXPECT_EQ(manager.DeleteRepositoryItem(u"A", u"1"), 1);
    EXPECT_EQ(manager.RenameRepositoryItem(u"A", u"1", u"x"), 1);
    int result = -1;
    EXPECT_THAT(Listed(u"A", result), IsEmpty());
    EXPECT_FALSE(Picture());
}

TEST_F(Items, NullTextsReadAsEmpty) {
    const Item item = LocalItem(u"1", u"one");
    EXPECT_CALL(backend, AddRepositoryItem(testing::IsNull(), _)).WillOnce(Return(1));
    EXPECT_EQ(manager.AddRepositoryItem(nullptr, item.get()), 1);
    EXPECT_THAT(Drawn(u""), ElementsAre(u"1=one"));
    EXPECT_CALL(backend, DeleteRepositoryItem(_, _)).WillOnce(Return(1));
    EXPECT_EQ(manager.DeleteRepositoryItem(nullptr, nullptr), 1);
}

TEST_F(Items, ABackendThatThrowsIsAFailure) {
    Draw(u"A", {Stored(u"1", u"one")});
    const Item item = LocalItem(u"2", u"two");
    const std::runtime_error error("storage");
    EXPECT_CALL(backend, AddRepositoryItem(_, _)).WillOnce(Throw(error));
    EXPECT_CALL(backend, DeleteRepositoryItem(_, _)).WillOnce(Throw(error));
    EXPECT_CALL(backend, RenameRepositoryItem(_, _, _)).WillOnce(Throw(error));
    EXPECT_CALL(backend, GetRepositoryItemById(_, _, _)).WillOnce(Throw(error));
    EXPECT_CALL(backend, GetRepositoryItems(_, _)).WillOnce(Throw(error));
    EXPECT_EQ(manager.AddRepositoryItem(u"A", item.get()), 0);
    EXPECT_EQ(manager.DeleteRepositoryItem(u"A", u"1"), 0);
    EXPECT_EQ(manager.RenameRepositoryItem(u"A", u"1", u"x"), 0);
    EXPECT_EQ(manager.GetRepositoryItemById(u"A", u"1", 0), nullptr);
    EXPECT_THAT(Drawn(u"A"), ElementsAre(u"1=one", u"2=two"));
    EXPECT_EQ(manager.RefreshNetRepository(u"A"), 0);
}

} // namespace
