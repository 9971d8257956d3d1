// SPDX-License-Identifier: MIT
#include "Catalogues.h"

#include <boost/weak_ptr.hpp>
#include <functional>

namespace ZEBGis::Data {
namespace {

// Every item of the catalogue is found by its GUID and stands where it says.
void ExpectIndexHolds(const CCatalog& catalog) {
    std::size_t count = 0;
    const std::function<void(const CatalogItems&, const CString&)> visit =
        [&](const CatalogItems& items, const CString& parent) {
            for (const auto& [key, item] : items) {
                ++count;
                EXPECT_EQ(catalog.GetItembyGuid(item->GetGUID().c_str()), item);
                EXPECT_EQ(item->GetParentItemGuid(), parent);
                visit(item->GetSubItems(), item->GetGUID());
            }
        };
    visit(catalog.GetRootElementsMap(), u"");
    EXPECT_EQ(catalog.GetItemCount(), count);
}

class CatalogTree : public testing::Test {
protected:
    // a(b(c d) e) f
    CatalogTree() {
        for (const auto& item : {m_a, m_f})
            EXPECT_EQ(m_catalog.AddItem(item), 1);
        EXPECT_EQ(m_a->AddSubItem(m_b), 1);
        EXPECT_EQ(m_b->AddSubItem(m_c), 1);
        EXPECT_EQ(m_b->AddSubItem(m_d), 1);
        EXPECT_EQ(m_a->AddSubItem(m_e), 1);
    }

    void ExpectTree(const std::string& tree) const {
        EXPECT_EQ(TreeOf(m_catalog), tree);
        ExpectIndexHolds(m_catalog);
    }

    CCatalog m_catalog;
    CatalogItemPtr m_a = Group(u"a"), m_b = Group(u"b"), m_c = Leaf(u"c"), m_d = Leaf(u"d"),
                   m_e = Leaf(u"e"), m_f = Leaf(u"f");
};

TEST_F(CatalogTree, ItemsStandInTheOrderInWhichTheyWereAdded) {
    ExpectTree("a(b(c d) e) f");
}

TEST_F(CatalogTree, KeysRiseAndAreNotGivenAgainWhileALaterOneIsInUse) {
    const auto keys = [&] {
        std::vector<std::int32_t> found;
        for (const auto& [key, item] : m_a->GetSubItems())
            found.push_back(key);
        return found;
    };
    const std::vector<std::int32_t> before = keys();
    ASSERT_EQ(before.size(), 2u);
    EXPECT_LT(before[0], before[1]);
    EXPECT_EQ(m_a->RemoveSubItem(before[0]), 1);
    EXPECT_EQ(m_a->AddSubItem(m_b), 1);
    EXPECT_EQ(keys()[0], before[1]);
    EXPECT_GT(keys()[1], before[1]);
    ExpectTree("a(e b(c d)) f");
}

TEST_F(CatalogTree, AnEmptyCatalogueHasNothing) {
    const CCatalog catalog;
    EXPECT_EQ(catalog.GetItemCount(), 0u);
    EXPECT_TRUE(catalog.GetRootElementsMap().empty());
    EXPECT_TRUE(catalog.GetSortedRootElements().empty());
    EXPECT_FALSE(catalog.GetItembyGuid(u"a"));
    EXPECT_FALSE(catalog.GetItembyGuid(nullptr));
}

TEST_F(CatalogTree, GuidsAreFoundExactlyAndWithRegardToCase) {
    EXPECT_EQ(m_catalog.GetItembyGuid(u"c"), m_c);
    EXPECT_FALSE(m_catalog.GetItembyGuid(u"C"));
    EXPECT_FALSE(m_catalog.GetItembyGuid(u""));
}

TEST_F(CatalogTree, AnEmptyItemAndTheItemItselfAreNotAdded) {
    EXPECT_EQ(m_catalog.AddItem({}), 0);
    EXPECT_EQ(m_a->AddSubItem({}), 0);
    EXPECT_EQ(m_a->AddSubItem(m_a), 0);
    ExpectTree("a(b(c d) e) f");
}

TEST_F(CatalogTree, AnItemIsNotAddedBelowItself) {
    EXPECT_EQ(m_b->AddSubItem(m_a), 0);
    EXPECT_EQ(m_c->AddSubItem(m_a), 0);
    ExpectTree("a(b(c d) e) f");
}

TEST_F(CatalogTree, AGuidThatIsThereAlreadyIsNotAdded) {
    EXPECT_EQ(m_catalog.AddItem(Leaf(u"d")), 0);
    EXPECT_EQ(m_f->AddSubItem(Leaf(u"f")), 0);
    const auto tree = Group(u"x");
    tree->AddSubItem(Group(u"y"));
    tree->GetSubItems().begin()->second->AddSubItem(Leaf(u"c"));
    EXPECT_EQ(m_a->AddSubItem(tree), 0);
    EXPECT_EQ(TreeOf({tree}), "x(y(c))");
    EXPECT_EQ(tree->GetParentItemGuid(), u"");
    ExpectTree("a(b(c d) e) f");
}

TEST_F(CatalogTree, ATreeThatHoldsAGuidTwiceIsNotAdded) {
    const auto tree = Group(u"x");
    EXPECT_EQ(tree->AddSubItem(Leaf(u"y")), 1);
    EXPECT_EQ(tree->AddSubItem(Leaf(u"y")), 1); // belongs to no catalogue yet
    EXPECT_EQ(m_catalog.AddItem(tree), 0);
    ExpectTree("a(b(c d) e) f");
}

TEST_F(CatalogTree, AnAddedTreeIsFoundAtAllLevels) {
    const auto tree = Group(u"x");
    tree->AddSubItem(Group(u"y"));
    tree->GetSubItems().begin()->second->AddSubItem(Leaf(u"z"));
    EXPECT_EQ(m_b->AddSubItem(tree), 1);
    ExpectTree("a(b(c d x(y(z))) e) f");
}

TEST_F(CatalogTree, AnAddedItemLeavesThePlaceWhereItStood) {
    EXPECT_EQ(m_f->AddSubItem(m_b), 1);
    ExpectTree("a(e) f(b(c d))");
    EXPECT_EQ(m_catalog.AddItem(m_b), 1);
    ExpectTree("a(e) f b(c d)");
    EXPECT_EQ(m_catalog.AddItem(m_a), 1); // becomes the last where it stands
    ExpectTree("f b(c d) a(e)");
}

TEST_F(CatalogTree, AnItemMovesToAnotherCatalogue) {
    CCatalog other;
    EXPECT_EQ(other.AddItem(m_b), 1);
    ExpectTree("a(e) f");
    EXPECT_EQ(TreeOf(other), "b(c d)");
    ExpectIndexHolds(other);
    EXPECT_EQ(m_b->AddSubItem(m_f), 1);
    ExpectTree("a(e)");
    ExpectIndexHolds(other);
}

TEST_F(CatalogTree, ADeletedItemTakesItsDescendantsAlong) {
    EXPECT_EQ(m_catalog.DeleteItem(u"b"), 1);
    ExpectTree("a(e) f");
    EXPECT_FALSE(m_catalog.GetItembyGuid(u"d"));
    EXPECT_EQ(m_catalog.DeleteItem(u"b"), 0);
    EXPECT_EQ(m_catalog.DeleteItem(nullptr), 0);
    EXPECT_EQ(m_catalog.DeleteItem(u"a"), 1);
    ExpectTree("f");
    EXPECT_EQ(TreeOf({m_b}), "b(c d)");
    EXPECT_EQ(m_b->GetParentItemGuid(), u"");
}

TEST_F(CatalogTree, ADeletedTreeCanComeBack) {
    m_catalog.DeleteItem(u"a");
    EXPECT_EQ(m_a->AddSubItem(Leaf(u"g")), 1);
    EXPECT_EQ(m_catalog.AddItem(m_a), 1);
    ExpectTree("f a(b(c d) e g)");
}

TEST_F(CatalogTree, RemovingByKeyTakesTheItemOutOfTheCatalogue) {
    EXPECT_EQ(m_a->RemoveSubItem(m_a->GetSubItems().begin()->first), 1);
    ExpectTree("a(e) f");
    EXPECT_EQ(m_a->RemoveSubItem(-5), 0);
    EXPECT_EQ(m_a->RemoveSubItem(1000), 0);
    ExpectTree("a(e) f");
}

TEST_F(CatalogTree, SettingTheParentMovesNothing) {
    m_c->SetParentItemGuid(u"f");
    EXPECT_EQ(m_c->GetParentItemGuid(), u"f");
    m_c->SetParentItem(m_a);
    EXPECT_EQ(m_c->GetParentItemGuid(), u"a");
    EXPECT_EQ(TreeOf(m_catalog), "a(b(c d) e) f");
    m_c->SetParentItem({});
    EXPECT_EQ(m_c->GetParentItemGuid(), u"");
    m_c->SetParentItemGuid(nullptr);
    EXPECT_EQ(m_b->AddSubItem(m_c), 1);
    ExpectTree("a(b(d c) e) f");
}

TEST_F(CatalogTree, ACopyHoldsTheSameSubItemsInAMapOfItsOwn) {
    const auto copy = boost::make_shared<CCatalogItem>(*m_b);
    EXPECT_EQ(copy->GetGUID(), u"b");
    EXPECT_EQ(copy->GetParentItemGuid(), u"a");
    EXPECT_EQ(copy->GetSubItems(), m_b->GetSubItems());
    while (!copy->GetSubItems().empty())
        EXPECT_EQ(copy->RemoveSubItem(copy->GetSubItems().begin()->first), 1);
    ExpectTree("a(b(c d) e) f");
    EXPECT_EQ(m_c->GetParentItemGuid(), u"b");
}

TEST_F(CatalogTree, AChangedCopyLeavesItsOriginal) {
    m_c->SetProperty(u"DN", CDataBox::OfInteger(100));
    CCatalogItem copy(*m_c);
    copy.SetName(u"other");
    copy.SetProperty(u"DN", CDataBox::OfInteger(200));
    copy.SetParentItemGuid(u"z");
    EXPECT_EQ(copy.AddSubItem(Leaf(u"new")), 1);
    EXPECT_EQ(m_c->GetName(), u"leaf");
    EXPECT_EQ(PropertyOf(m_c, u"DN"), u"100");
    ExpectTree("a(b(c d) e) f");
}

TEST_F(CatalogTree, ACopyThatGoesAwayLeavesTheOriginalsSubItems) {
    { const CCatalogItem copy(*m_a); }
    ExpectTree("a(b(c d) e) f");
    EXPECT_EQ(m_catalog.DeleteItem(u"c"), 1);
    ExpectTree("a(b(d) e) f");
}

TEST_F(CatalogTree, ACopyInAnotherCatalogueGetsSubItemsOfItsOwn) {
    CCatalog other;
    const auto copy = boost::make_shared<CCatalogItem>(*m_a);
    EXPECT_EQ(m_catalog.AddItem(copy), 0); // its GUIDs are there
    EXPECT_EQ(other.AddItem(copy), 1);
    EXPECT_EQ(TreeOf(other), "a(b(c d) e)");
    ExpectIndexHolds(other);
    ExpectTree("a(b(c d) e) f");
    EXPECT_NE(other.GetItembyGuid(u"c"), m_c);
    EXPECT_EQ(other.DeleteItem(u"b"), 1);
    ExpectTree("a(b(c d) e) f");
}

TEST_F(CatalogTree, AStrippedCopyReplacesItsOriginal) {
    const auto copy = boost::make_shared<CCatalogItem>(*m_b);
    while (!copy->GetSubItems().empty())
        copy->RemoveSubItem(copy->GetSubItems().begin()->first);
    m_catalog.DeleteItem(u"b");
    EXPECT_EQ(m_a->AddSubItem(copy), 1);
    ExpectTree("a(e b) f");
}

TEST_F(CatalogTree, ACopyUnderItsOwnSubItemIsNoCircle) {
    const auto copy = boost::make_shared<CCatalogItem>(*m_a);
    m_catalog.DeleteItem(u"a");
    EXPECT_EQ(m_b->AddSubItem(copy), 1);
    EXPECT_EQ(TreeOf({m_a}), "a(b(c d a(b(c d) e)) e)");
}

TEST_F(CatalogTree, ACopyThatOutlivesItsOriginalKeepsItsSubItems) {
    auto origin = Group(u"o");
    origin->AddSubItem(Leaf(u"p"));
    const auto copy = boost::make_shared<CCatalogItem>(*origin);
    origin.reset();
    EXPECT_EQ(TreeOf({copy}), "o(p)");
    EXPECT_EQ(m_catalog.AddItem(copy), 1);
    ExpectTree("a(b(c d) e) f o(p)");
}

TEST_F(CatalogTree, ItemsOutliveTheirCatalogue) {
    auto catalog = std::make_unique<CCatalog>();
    const auto group = Group(u"x");
    const auto leaf = Leaf(u"y");
    catalog->AddItem(group);
    group->AddSubItem(leaf);
    catalog.reset();
    EXPECT_EQ(TreeOf({group}), "x(y)");
    EXPECT_EQ(group->AddSubItem(Leaf(u"y")), 1); // no catalogue minds
    EXPECT_EQ(m_catalog.AddItem(leaf), 1);
    ExpectTree("a(b(c d) e) f y");
}

TEST_F(CatalogTree, ItemsOutliveTheItemThatHeldThem) {
    auto group = Group(u"x");
    const auto leaf = Leaf(u"y");
    group->AddSubItem(leaf);
    group.reset();
    EXPECT_EQ(m_a->AddSubItem(leaf), 1);
    ExpectTree("a(b(c d) e y) f");
}

TEST_F(CatalogTree, NothingKeepsADeletedItemAlive) {
    boost::weak_ptr<CCatalogItem> group, leaf;
    {
        const auto x = Group(u"x");
        const auto y = Leaf(u"y");
        x->AddSubItem(y);
        m_catalog.AddItem(x);
        group = x;
        leaf = y;
    }
    EXPECT_FALSE(group.expired());
    m_catalog.DeleteItem(u"x");
    EXPECT_TRUE(group.expired());
    EXPECT_TRUE(leaf.expired());
}

TEST_F(CatalogTree, ItemsStandAtMost200LevelsDeep) {
    CCatalog catalog;
    const auto top = Group(u"1");
    CatalogItemPtr last = top;
    catalog.AddItem(top);
    for (int level = 2; level <= 200; ++level) {
        const auto next = Group((u"l" + CString(level, u'x')).c_str());
        EXPECT_EQ(last->AddSubItem(next), 1) << level;
        last = next;
    }
    EXPECT_EQ(last->AddSubItem(Leaf(u"too deep")), 0);
    EXPECT_EQ(Group(u"above")->AddSubItem(top), 0);
    EXPECT_EQ(catalog.GetItemCount(), 200u);
    EXPECT_EQ(catalog.AddItem(top), 1);
    ExpectIndexHolds(catalog);
}

TEST_F(CatalogTree, ManyMovesLeaveTheIndexRight) {
    CCatalog catalog;
    std::vector<CatalogItemPtr> items;
    for (int i = 0; i < 60; ++i) {
        items.push_back(Group((u"g" + CString(i + 1, u'x')).c_str()));
        catalog.AddItem(items.back());
    }
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        const auto& item = items[random() % items.size()];
        const auto& other = items[random() % items.size()];
        switch (random() % 4) {
        case 0:
            catalog.AddItem(item);
            break;
        case 1:
            catalog.DeleteItem(item->GetGUID().c_str());
            break;
        default:
            item->AddSubItem(other);
        }
    }
    ExpectIndexHolds(catalog);
}

} // namespace
} // namespace ZEBGis::Data
