// SPDX-License-Identifier: MIT
#include "Catalogues.h"

namespace ZEBGis::Data {
namespace {

TEST(CatalogItem, ANewItemHasWhatItWasMadeWith) {
    const CCatalogItem item(u"g-1", u"Čvor", 5);
    EXPECT_EQ(item.GetGUID(), u"g-1");
    EXPECT_EQ(item.GetName(), u"Čvor");
    EXPECT_EQ(item.IsGroup(), 1);
    EXPECT_EQ(item.GetParentItemGuid(), u"");
    EXPECT_TRUE(item.GetSubItems().empty());
    EXPECT_TRUE(item.GetSortedSubItems().empty());
    EXPECT_TRUE(item.GetProperties().empty());
    const CCatalogItem empty(nullptr, nullptr, 0);
    EXPECT_EQ(empty.GetGUID(), u"");
    EXPECT_EQ(empty.GetName(), u"");
    EXPECT_EQ(empty.IsGroup(), 0);
}

TEST(CatalogItem, ItsNameCanChange) {
    const auto item = Leaf(u"g-1");
    item->SetName(u"other");
    EXPECT_EQ(item->GetName(), u"other");
    item->SetName(nullptr);
    EXPECT_EQ(item->GetName(), u"");
}

TEST(CatalogItem, PropertiesAreFoundExactlyAndWithRegardToCase) {
    const auto item = Leaf(u"g-1");
    item->SetProperty(u"DN", CDataBox::OfInteger(110));
    ASSERT_TRUE(item->GetProperty(u"DN"));
    EXPECT_EQ(item->GetProperty(u"DN")->GetName(), u"DN");
    EXPECT_EQ(item->GetProperty(u"DN")->GetValue(), CDataBox::OfInteger(110));
    EXPECT_FALSE(item->GetProperty(u"dn"));
    EXPECT_FALSE(item->GetProperty(u"D"));
    EXPECT_FALSE(item->GetProperty(nullptr));
}

TEST(CatalogItem, APropertyIsReplacedInItsPlaceOrAddedBehindTheOthers) {
    const auto item = Leaf(u"g-1");
    item->SetProperty(u"a", CDataBox::OfText(u"1"));
    item->SetProperty(u"b", CDataBox::OfText(u"2"));
    item->SetProperty(u"a", CDataBox::OfBoolean(1));
    item->SetProperty(u"c", {});
    const auto properties = item->GetProperties();
    ASSERT_EQ(properties.size(), 3u);
    EXPECT_EQ(properties[0]->GetName(), u"a");
    EXPECT_EQ(properties[0]->GetValue(), CDataBox::OfBoolean(1));
    EXPECT_EQ(properties[1]->GetName(), u"b");
    EXPECT_EQ(properties[2]->GetName(), u"c");
    EXPECT_NE(properties[2]->GetValue().IsNull(), 0);
}

TEST(CatalogItem, WhatWasHandedOutStaysAsItWas) {
    const auto item = Leaf(u"g-1");
    item->SetProperty(u"a", CDataBox::OfInteger(1));
    const auto property = item->GetProperty(u"a");
    item->SetProperty(u"a", CDataBox::OfInteger(2));
    EXPECT_EQ(property->GetValue().GetInteger(), 1);
    EXPECT_EQ(PropertyOf(item, u"a"), u"2");
}

} // namespace
} // namespace ZEBGis::Data
