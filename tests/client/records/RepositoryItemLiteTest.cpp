// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryItemLite.h"

#include <gtest/gtest.h>
#include <memory>

using Repository::CRepositoryItemLite;

namespace {

class Counted : public CRepositoryItemLite {
public:
    explicit Counted(int& deleted) : m_deleted(deleted) {}
    ~Counted() override { ++m_deleted; }

private:
    int& m_deleted;
};

} // namespace

TEST(RepositoryItemLite, BothXmlFormsAndTheDescriptionAreEmpty) {
    const CRepositoryItemLite item;
    EXPECT_EQ(item.GetXML(), u"");
    EXPECT_EQ(item.GetWsDescription(), u"");
    WStringStream stream;
    stream << u"before";
    item.GetXML(stream);
    EXPECT_EQ(stream.str(), u"before");
}

TEST(RepositoryItemLite, ItDependsOnNothing) {
    const CRepositoryItemLite item;
    EXPECT_EQ(item.DependsOn(u"anything", &item), 0);
    EXPECT_EQ(item.DependsOn(u"", nullptr), 0);
    EXPECT_EQ(item.DependsOn(nullptr, nullptr), 0);
}

TEST(RepositoryItemLite, RefreshingItsReferencesChangesNothing) {
    CRepositoryItemLite item;
    item.SetId(u"a");
    item.RefreshTemporaryDataReferences();
    EXPECT_EQ(item.GetId(), u"a");
}

TEST(RepositoryItemLite, ItCarriesWhatAListShows) {
    const std::unique_ptr<ZEBGis::CRepositoryItem> item = std::make_unique<CRepositoryItemLite>();
    item->SetId(u"a");
    item->SetName(u"Čvor");
    item->SetTopologyFunction(-7);
    item->SetEntityType(static_cast<ZEBGis::enmEntityType>(5));
    EXPECT_EQ(item->GetId(), u"a");
    EXPECT_EQ(item->GetName(), u"Čvor");
    EXPECT_EQ(item->GetTopologyFunction(), -7);
    EXPECT_EQ(item->GetEntityType(), 5);
    EXPECT_EQ(item->GetXML(), u"");
}

TEST(RepositoryItemLite, ItIsDeletedWholeThroughItsBase) {
    int deleted = 0;
    ZEBGis::CRepositoryItem* item = new Counted(deleted);
    delete item;
    EXPECT_EQ(deleted, 1);
}
