// SPDX-License-Identifier: MIT
#include "ZEBXNetworkCore/CatalogManager.h"
#include "client/manager/LocalCatalogues.h"
#include "client/manager/ManagerTest.h"
#include "client/manager/TraceLines.h"

#include <stdexcept>

using namespace Repository;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::InSequence;
using testing::IsEmpty;
using testing::IsNull;
using testing::Ref;
using testing::Return;
using testing::SetArgReferee;
using testing::Throw;
using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CCatalog;

namespace {

using NetItem = boost::shared_ptr<CNetCatalogueItem>;

class CatalogueItems : public ManagerTest {
protected:
    // A record as a storage hands it out.
    static NetItem Record(const char16_t* id, const char16_t* parent = u"") {
        const auto record = boost::make_shared<CNetCatalogueItem>();
        record->SetCatalogueId(id);
        record->SetCatalogueTag(u"PIPES");
        record->SetParentId(parent);
        record->SetItemContent(XmlOf(*Leaf(id, u"Cijev")).c_str());
        return record;
    }
};

TEST_F(CatalogueItems, ARecordHasTheItemsFieldsAndTheArguments) {
    const auto group = Group(u"{g}", u"Grupa");
    const auto leaf = Leaf(u"{1}", u"čvor \"1\"");
    group->AddSubItem(leaf);
    const auto record = manager.Transform2NetCatalogItem(u"PIPES", u"Cijevi", leaf, 0);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->GetCatalogueId(), u"{1}");
    EXPECT_EQ(record->GetCatalogueTag(), u"PIPES");
    EXPECT_EQ(record->GetIsGroup(), 0);
    EXPECT_EQ(record->GetParentId(), u"{g}");
    EXPECT_EQ(record->GetName(), u"čvor \"1\"");
    EXPECT_EQ(record->GetCatalogueName(), u"Cijevi");
    EXPECT_EQ(record->GetItemContent(), XmlOf(*leaf));
    EXPECT_THAT(*record->GetFiles(), IsEmpty());
    EXPECT_NE(manager.Transform2NetCatalogItem(u"PIPES", u"Cijevi", group, 0)->GetIsGroup(), 0);
    EXPECT_EQ(manager.Transform2NetCatalogItem(u"PIPES", u"Cijevi", group, 0)->GetParentId(), u"");
}

TEST_F(CatalogueItems, AGroupTravelsWithoutItsMembersAndKeepsThem) {
    const auto group = Group(u"{g}", u"Grupa");
    for (const char16_t* id : {u"{1}", u"{2}", u"{3}"})
        group->AddSubItem(Leaf(id, u"member"));
    const CString before = XmlOf(*group);

    const auto record = manager.Transform2NetCatalogItem(u"PIPES", u"Cijevi", group, 0);
    EXPECT_EQ(record->GetItemContent(), XmlOf(*Group(u"{g}", u"Grupa")));
    EXPECT_NE(record->GetIsGroup(), 0);
    EXPECT_EQ(IdsOf(group->GetSortedSubItems()), (std::vector<CString>{u"{1}", u"{2}", u"{3}"}));
    for (const auto& [key, member] : group->GetSubItems())
        EXPECT_EQ(member->GetParentItemGuid(), u"{g}");
    EXPECT_EQ(XmlOf(*group), before);
}

TEST_F(CatalogueItems, MembersOfAGroupOfACatalogueStayInTheCatalogue) {
    CCatalog catalogue;
    const auto group = Group(u"{g}", u"Grupa");
    group->AddSubItem(Leaf(u"{1}", u"member"));
    catalogue.AddItem(group);
    manager.Transform2NetCatalogItem(u"PIPES", u"Cijevi", group, 0);
    EXPECT_EQ(catalogue.GetItemCount(), 2U);
    EXPECT_TRUE(catalogue.GetItembyGuid(u"{1}"));
}

TEST_F(CatalogueItems, NoItemGivesAnEmptyRecord) {
    const auto record = manager.Transform2NetCatalogItem(u"PIPES", u"Cijevi", {}, 1);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->Serialize(), CNetCatalogueItem().Serialize());
}

TEST_F(CatalogueItems, FilesOnTheWayOutComeFromTheFileManagerThatTheMetadataNames) {
    DeclareCatalogues(workstation, {Declared(u"PIPES", u"Drawings")});
    const auto fileManager = ReplaceFileManager(u"Drawings");
    ReplaceFileManager(u"PIPES"); // is not asked
    const File file = Stored(u"a.dwg", "a");
    EXPECT_CALL(*fileManager, GetFiles(IsEmpty(), TextIs(u"{1}")))
        .WillOnce([&](RepositoryFiles& files, const char16_t*) { files.push_back(file); });
    const auto record =
        manager.Transform2NetCatalogItem(u"PIPES", u"Cijevi", Leaf(u"{1}", u"x"), 42);
    EXPECT_EQ(*record->GetFiles(), RepositoryFiles{file});
}

TEST_F(CatalogueItems, WithoutTheFlagNoFileManagerIsAskedOnTheWayOut) {
    DeclareCatalogues(workstation, {Declared(u"PIPES", u"Drawings")});
    ReplaceFileManager(u"Drawings");
    const auto record = manager.Transform2NetCatalogItem(u"PIPES", u"", Leaf(u"{1}", u"x"), 0);
    EXPECT_THAT(*record->GetFiles(), IsEmpty());
}

TEST_F(CatalogueItems, NoFilesGoOutForAnUnknownTagOrNoManagerOrOneThatIsNotRegistered) {
    DeclareCatalogues(workstation, {Declared(u"PLAIN"), Declared(u"PIPES", u"Drawings")});
    ReplaceFileManager(u"UNKNOWN");
    ReplaceFileManager(u"PIPES");
    for (const char16_t* tag : {u"UNKNOWN", u"PLAIN", u"PIPES"}) {
        const auto record = manager.Transform2NetCatalogItem(tag, u"", Leaf(u"{1}", u"x"), 1);
        EXPECT_EQ(record->GetCatalogueId(), u"{1}");
        EXPECT_THAT(*record->GetFiles(), IsEmpty());
    }
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(CatalogueItems, AManagerWithoutAnIdIsNotAskedForAnUnknownTag) {
    ReplaceFileManager(u"");
    const auto record = manager.Transform2NetCatalogItem(u"UNKNOWN", u"", Leaf(u"{1}", u"x"), 1);
    EXPECT_THAT(*record->GetFiles(), IsEmpty());
}

TEST_F(CatalogueItems, AFileManagerThatThrowsLeavesAnEmptyRecordAndNothingIsSent) {
    DeclareCatalogues(workstation, {Declared(u"PIPES", u"Drawings")});
    const auto fileManager = ReplaceFileManager(u"Drawings");
    EXPECT_CALL(*fileManager, GetFiles(_, _)).Times(2).WillRepeatedly(Throw(std::bad_alloc()));
    EXPECT_CALL(backend, AddCatalogItem(_)).Times(0);
    const auto record = manager.Transform2NetCatalogItem(u"PIPES", u"", Leaf(u"{1}", u"x"), 1);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->GetCatalogueId(), u"");
    EXPECT_EQ(manager.AddCatalogItem(u"PIPES", u"", Leaf(u"{1}", u"x"), 1), 0);
}

TEST_F(CatalogueItems, ARecordBecomesTheItemOfItsContent) {
    const auto origin = Leaf(u"{1}", u"Cijev");
    origin->SetProperty(u"DN", ZEBGis::Data::CDataBox::OfInteger(110));
    const auto record = Record(u"{1}");
    record->SetItemContent(XmlOf(*origin).c_str());
    record->SetName(u"another name"); // is for lists
    const auto item = manager.Transform2CatalogItem(record, 1);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->GetGUID(), u"{1}");
    EXPECT_EQ(item->GetName(), u"Cijev");
    EXPECT_EQ(XmlOf(*item), XmlOf(*origin));
}

TEST_F(CatalogueItems, TheRecordsParentWinsOverTheOneOfItsContent) {
    const auto origin = Leaf(u"{1}", u"Cijev");
    origin->SetParentItemGuid(u"{content}");
    const auto record = Record(u"{1}", u"{record}");
    record->SetItemContent(XmlOf(*origin).c_str());
    EXPECT_EQ(manager.Transform2CatalogItem(record, 0)->GetParentItemGuid(), u"{record}");
    record->SetParentId(u"");
    EXPECT_EQ(manager.Transform2CatalogItem(record, 0)->GetParentItemGuid(), u"");
}

TEST_F(CatalogueItems, NoRecordAndNoItemAsContentGiveAnEmptyItem) {
    EXPECT_FALSE(manager.Transform2CatalogItem({}, 1));
    for (const char16_t* content : {u"", u"no XML", u"<other/>", u"<item"}) {
        const auto record = Record(u"{1}");
        record->SetItemContent(content);
        EXPECT_FALSE(manager.Transform2CatalogItem(record, 1));
    }
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(CatalogueItems, FilesOnTheWayInGoToTheFileManagerOfTheTagAndNotOfTheMetadata) {
    DeclareCatalogues(workstation, {Declared(u"PIPES", u"Drawings")});
    ReplaceFileManager(u"Drawings"); // is not asked: kept
    const auto fileManager = ReplaceFileManager(u"PIPES");
    const auto record = Record(u"{1}");
    record->GetFiles()->push_back(Stored(u"a.dwg", "a"));
    EXPECT_CALL(*fileManager, PutFiles(Ref(*record->GetFiles()), 0, IsNull()));
    EXPECT_TRUE(manager.Transform2CatalogItem(record, 1));
}

TEST_F(CatalogueItems, FilesArePutInPlaceAlsoWhenTheContentIsNoItem) {
    const auto fileManager = ReplaceFileManager(u"PIPES");
    const auto record = Record(u"{1}");
    record->SetItemContent(u"no item");
    record->GetFiles()->push_back(Stored(u"a.dwg", "a"));
    EXPECT_CALL(*fileManager, PutFiles(_, 0, _));
    EXPECT_FALSE(manager.Transform2CatalogItem(record, 1));
}

TEST_F(CatalogueItems, WithoutTheFlagOrAFileOrAManagerNothingIsPutInPlace) {
    const auto record = Record(u"{1}");
    const File file = Stored(u"a.dwg", "a");
    record->GetFiles()->push_back(file);
    EXPECT_TRUE(manager.Transform2CatalogItem(record, 1)); // no manager
    ReplaceFileManager(u"PIPES");
    EXPECT_TRUE(manager.Transform2CatalogItem(record, 0));
    EXPECT_EQ(*record->GetFiles(), RepositoryFiles{file});
    EXPECT_TRUE(manager.Transform2CatalogItem(Record(u"{2}"), 1)); // no file
}

TEST_F(CatalogueItems, AFileManagerThatThrowsGivesAnEmptyItem) {
    const auto fileManager = ReplaceFileManager(u"PIPES");
    const auto record = Record(u"{1}");
    record->GetFiles()->push_back(Stored(u"a.dwg", "a"));
    EXPECT_CALL(*fileManager, PutFiles(_, _, _)).WillOnce(Throw(std::runtime_error("x")));
    EXPECT_FALSE(manager.Transform2CatalogItem(record, 1));
}

TEST_F(CatalogueItems, ChildrenAreTheBackendsWithAllArgumentsAndItsResultAsTheyAre) {
    const TraceLines trace(workstation);
    const NetItem record = Record(u"{1}");
    std::vector<NetItem> items;
    for (const int answer : {1, 0, 42, -3}) {
        EXPECT_CALL(backend, GetChildCatalogItems(TextIs(u"PIPES"), TextIs(u"{g}"), Ref(items), 17))
            .WillOnce(DoAll(SetArgReferee<2>(std::vector<NetItem>{record}), Return(answer)));
        EXPECT_EQ(manager.GetChildCatalogItems(u"PIPES", u"{g}", items, 17), answer);
        EXPECT_THAT(items, ElementsAre(record));
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(CatalogueItems, ANullParentGoesToTheBackendAsItIs) {
    std::vector<NetItem> items;
    EXPECT_CALL(backend, GetChildCatalogItems(_, IsNull(), _, 0)).WillOnce(Return(1));
    EXPECT_EQ(manager.GetChildCatalogItems(u"PIPES", nullptr, items, 0), 1);
}

TEST_F(CatalogueItems, ListingChildrenIsTracedAroundTheBackendsCall) {
    const TraceLines trace(workstation);
    const std::string name = "Repository::CRepositoryStorageManager::GetChildCatalogItems";
    const std::string prefix = "RepositoryStorageManager " + name + " ";
    std::vector<NetItem> items;
    EXPECT_CALL(backend, GetChildCatalogItems(_, _, _, _)).WillOnce([&] {
        EXPECT_THAT(trace.Lines(), ElementsAre(prefix + "Entering function , " + name));
        return 1;
    });
    manager.GetChildCatalogItems(u"PIPES", nullptr, items, 0);
    EXPECT_THAT(trace.Lines(), ElementsAre(prefix + "Entering function , " + name,
                                           prefix + "Exiting function , " + name));
}

TEST_F(CatalogueItems, AnItemByIdIsTheBackendsRecordMadeAnItemWithTheSameFlag) {
    const auto fileManager = ReplaceFileManager(u"PIPES");
    const NetItem record = Record(u"{1}", u"{g}");
    record->GetFiles()->push_back(Stored(u"a.dwg", "a"));
    const InSequence order;
    EXPECT_CALL(backend, GetCatalogItemById(TextIs(u"PIPES"), TextIs(u"{1}"), 42))
        .WillOnce(Return(record));
    EXPECT_CALL(*fileManager, PutFiles(Ref(*record->GetFiles()), 0, IsNull()));
    EXPECT_CALL(backend, GetCatalogItemById(TextIs(u"PIPES"), TextIs(u"{1}"), 0))
        .WillOnce(Return(record));
    for (const int withFiles : {42, 0}) {
        const auto item = manager.GetCatalogItemById(u"PIPES", u"{1}", withFiles);
        ASSERT_TRUE(item);
        EXPECT_EQ(item->GetGUID(), u"{1}");
        EXPECT_EQ(item->GetParentItemGuid(), u"{g}");
    }
}

TEST_F(CatalogueItems, AnUnknownIdAndContentThatIsNoItemGiveAnEmptyItem) {
    const NetItem record = Record(u"{1}");
    record->SetItemContent(u"no item");
    EXPECT_CALL(backend, GetCatalogItemById(_, _, _))
        .WillOnce(Return(nullptr))
        .WillOnce(Return(record));
    EXPECT_FALSE(manager.GetCatalogItemById(u"PIPES", u"{?}", 1));
    EXPECT_FALSE(manager.GetCatalogItemById(u"PIPES", u"{1}", 1));
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(CatalogueItems, AddingSendsTheRecordWithItsFilesAndGivesTheBackendsResult) {
    DeclareCatalogues(workstation, {Declared(u"PIPES", u"Drawings")});
    const auto fileManager = ReplaceFileManager(u"Drawings");
    const auto item = Leaf(u"{1}", u"Cijev");
    for (const int answer : {1, 0, 42, -3}) {
        const InSequence order;
        EXPECT_CALL(*fileManager, GetFiles(_, TextIs(u"{1}")))
            .WillOnce([](RepositoryFiles& files, const char16_t*) {
                files.push_back(Stored(u"a.dwg", "a"));
            });
        EXPECT_CALL(backend, AddCatalogItem(_)).WillOnce([&](const NetItem& record) {
            EXPECT_EQ(record->GetCatalogueId(), u"{1}");
            EXPECT_EQ(record->GetCatalogueTag(), u"PIPES");
            EXPECT_EQ(record->GetCatalogueName(), u"Cijevi");
            EXPECT_EQ(record->GetItemContent(), XmlOf(*item));
            EXPECT_EQ(record->GetFiles()->size(), 1U);
            return answer;
        });
        EXPECT_EQ(manager.AddCatalogItem(u"PIPES", u"Cijevi", item, 1), answer);
        testing::Mock::VerifyAndClearExpectations(&backend);
        testing::Mock::VerifyAndClearExpectations(fileManager.get());
    }
}

TEST_F(CatalogueItems, AddingNothingGives0WithoutTheBackend) {
    EXPECT_CALL(backend, AddCatalogItem(_)).Times(0);
    EXPECT_EQ(manager.AddCatalogItem(u"PIPES", u"Cijevi", {}, 1), 0);
}

TEST_F(CatalogueItems, DeletingHandsBothTextsAndTheResultOn) {
    for (const int answer : {1, 0, 42, -3}) {
        EXPECT_CALL(backend, DeleteCatalogItem(TextIs(u"PIPES"), TextIs(u"{1}")))
            .WillOnce(Return(answer));
        EXPECT_EQ(manager.DeleteCatalogItem(u"PIPES", u"{1}"), answer);
        testing::Mock::VerifyAndClearExpectations(&backend);
    }
}

TEST_F(CatalogueItems, NoExceptionOfABackendLeaves) {
    const std::runtime_error error("x");
    EXPECT_CALL(backend, GetChildCatalogItems(_, _, _, _)).WillOnce(Throw(error));
    EXPECT_CALL(backend, GetCatalogItemById(_, _, _)).WillOnce(Throw(error));
    EXPECT_CALL(backend, AddCatalogItem(_)).WillOnce(Throw(error));
    EXPECT_CALL(backend, DeleteCatalogItem(_, _)).WillOnce(Throw(error));
    std::vector<NetItem> items;
    EXPECT_EQ(manager.GetChildCatalogItems(u"PIPES", nullptr, items, 0), 0);
    EXPECT_FALSE(manager.GetCatalogItemById(u"PIPES", u"{1}", 0));
    EXPECT_EQ(manager.AddCatalogItem(u"PIPES", u"", Leaf(u"{1}", u"x"), 0), 0);
    EXPECT_EQ(manager.DeleteCatalogItem(u"PIPES", u"{1}"), 0);
}

} // namespace
