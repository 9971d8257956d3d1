// SPDX-License-Identifier: MIT
// Definitions: one item fetched from the storage and made a local one.
#include "client/manager/ItemsTest.h"

#include <stdexcept>

using namespace Repository;
using testing::_;
using testing::InSequence;
using testing::IsNull;
using testing::Return;
using testing::ReturnRef;
using testing::StrictMock;

namespace {

class MockRepository : public ZEBGis::CDefinitionRepository {
public:
    MOCK_METHOD(CString, CreateRepositoryXML, (const char16_t*), (const, override));
    MOCK_METHOD(const ZEBGis::CRepositoryItemList&, GetRepositoryItemList, (), (const, override));
};

class MockFactory : public ZEBGis::CRepositoryFactory {
public:
    virtual ~MockFactory() = default;
    MOCK_METHOD(CString, GetTag, (), (const, override));
    MOCK_METHOD(ZEBGis::CDefinitionRepository*, CreateRepository, (const char16_t*), (override));
    MOCK_METHOD(void, ReleaseRepository, (ZEBGis::CDefinitionRepository*), (override));
    MOCK_METHOD(std::vector<ZEBGis::enmEntityType>, GetEntityTypes, (), (const, override));
    MOCK_METHOD(CString, GetFilePath, (), (const, override));
    MOCK_METHOD(CString, GetRepositoryName, (), (const, override));
};

class ItemsFetch : public ItemsTest {
protected:
    // Makes `factory` the tag's; the manager's own map hands it out only to read.
    void Replace(const char16_t* tag) {
        using Factories = std::map<CString, ZEBGis::CRepositoryFactory*>;
        const_cast<Factories&>(Definitions().GetRepositoryFactories())[tag] = &factory;
    }
    void ExpectStored(const char16_t* tag, const CString& xml = u"<definition id='x'/>") {
        EXPECT_CALL(backend, GetRepositoryItemById(TextIs(tag), TextIs(u"1"), 42))
            .WillOnce(Return(Stored(u"1", u"stored", xml)));
    }
    void ExpectEmptyRepository() {
        EXPECT_CALL(factory, CreateRepository(TextIs(u""))).WillOnce(Return(&empty));
        EXPECT_CALL(empty, CreateRepositoryXML(TextIs(u"<definition id='x'/>")))
            .WillOnce(Return(u"<all/>"));
        EXPECT_CALL(factory, ReleaseRepository(&empty));
    }
    Item Fetch(const char16_t* tag = u"A") {
        return Item(manager.GetRepositoryItemById(tag, u"1", 42));
    }

    StrictMock<MockFactory> factory;
    StrictMock<MockRepository> empty;
    StrictMock<MockRepository> full;
    ZEBGis::CRepositoryItemList list;
};

TEST_F(ItemsFetch, GivesNoneWhenTheStorageHasNone) {
    EXPECT_CALL(backend, GetRepositoryItemById(_, _, _)).WillOnce(Return(nullptr));
    EXPECT_EQ(manager.GetRepositoryItemById(u"A", u"1", 0), nullptr);
}

TEST_F(ItemsFetch, TheItemHasTheRequestedIdAndTheStoredNameWhateverItsXmlSays) {
    ExpectStored(u"A", u"<definition id='of the XML' name='of the XML' entityType='3' "
                       u"topologyFunction='4' topologyType='5' tool='x'><a/></definition>");
    const Item item = Fetch();
    ASSERT_TRUE(item);
    EXPECT_EQ(item->GetId(), u"1");
    EXPECT_EQ(item->GetName(), u"stored");
    EXPECT_EQ(item->GetEntityType(), 3);
    EXPECT_EQ(item->GetTopologyFunction(), 4);
    EXPECT_EQ(item->GetTopologyType(), 5);
    EXPECT_EQ(item->GetXML(), u"<definition id=\"1\" name=\"stored\" entityType='3' "
                              u"topologyFunction='4' topologyType='5' tool='x'><a/></definition>");
}

TEST_F(ItemsFetch, ThePictureIsNeitherAskedNorChanged) {
    ExpectStored(u"A");
    EXPECT_TRUE(Fetch());
    EXPECT_TRUE(Picture()->GetRepositories()->empty());
}

TEST_F(ItemsFetch, OfSeveralDefinitionsInTheXmlTheFirstCounts) {
    ExpectStored(u"A", u"<definition id='x' topologyType='1'/><definition id='y'/>");
    EXPECT_EQ(Fetch()->GetTopologyType(), 1);
}

TEST_F(ItemsFetch, GivesNoneForAnXmlThatIsNoDefinition) {
    for (const CString xml :
         {u"", u"<other/>", u"<definition id='x'>", u"text", u"</definitions>"}) {
        ExpectStored(u"A", xml);
        EXPECT_FALSE(Fetch());
    }
}

TEST_F(ItemsFetch, GivesNoneForATagThatIsNotDeclared) {
    ExpectStored(u"elsewhere");
    EXPECT_FALSE(Fetch(u"elsewhere"));
}

TEST_F(ItemsFetch, GivesNoneForATagWithoutAnItemFactory) {
    Replace(u"without items"); // the item factories are those of the declared tags
    ExpectStored(u"without items");
    EXPECT_FALSE(Fetch(u"without items"));
}

TEST_F(ItemsFetch, TheEmptyRepositoryIsReleasedBeforeTheFullOneIsMade) {
    Replace(u"A");
    list.Add(LocalItem(u"of the XML", u""));
    const InSequence order;
    ExpectStored(u"A");
    ExpectEmptyRepository();
    EXPECT_CALL(factory, CreateRepository(TextIs(u"<all/>"))).WillOnce(Return(&full));
    EXPECT_CALL(full, GetRepositoryItemList())
        .Times(testing::AtLeast(1))
        .WillRepeatedly(ReturnRef(list));
    EXPECT_CALL(factory, ReleaseRepository(&full));
    const Item item = Fetch();
    ASSERT_TRUE(item);
    EXPECT_NE(item.get(), list.GetHead());
    EXPECT_EQ(item->GetId(), u"1");
    EXPECT_EQ(list.GetHead()->GetId(), u"of the XML");
}

TEST_F(ItemsFetch, WithoutAnEmptyRepositoryNothingIsReleased) {
    Replace(u"A");
    ExpectStored(u"A");
    EXPECT_CALL(factory, CreateRepository(TextIs(u""))).WillOnce(Return(nullptr));
    EXPECT_FALSE(Fetch());
}

TEST_F(ItemsFetch, AFullRepositoryThatIsNotMadeIsReleasedWithTheNullPointer) {
    Replace(u"A");
    const InSequence order;
    ExpectStored(u"A");
    ExpectEmptyRepository();
    EXPECT_CALL(factory, CreateRepository(TextIs(u"<all/>"))).WillOnce(Return(nullptr));
    EXPECT_CALL(factory, ReleaseRepository(IsNull()));
    EXPECT_FALSE(Fetch());
}

TEST_F(ItemsFetch, AFullRepositoryWithoutItemsIsReleased) {
    Replace(u"A");
    const InSequence order;
    ExpectStored(u"A");
    ExpectEmptyRepository();
    EXPECT_CALL(factory, CreateRepository(TextIs(u"<all/>"))).WillOnce(Return(&full));
    EXPECT_CALL(full, GetRepositoryItemList()).WillOnce(ReturnRef(list));
    EXPECT_CALL(factory, ReleaseRepository(&full));
    EXPECT_FALSE(Fetch());
}

TEST_F(ItemsFetch, WhatWasMadeIsReleasedAlsoWhenSomethingThrows) {
    Replace(u"A");
    {
        const InSequence order;
        ExpectStored(u"A");
        EXPECT_CALL(factory, CreateRepository(TextIs(u""))).WillOnce(Return(&empty));
        EXPECT_CALL(empty, CreateRepositoryXML(_)).WillOnce(testing::Throw(std::bad_alloc()));
        EXPECT_CALL(factory, ReleaseRepository(&empty));
        EXPECT_FALSE(Fetch());
    }
    const InSequence order;
    ExpectStored(u"A");
    ExpectEmptyRepository();
    EXPECT_CALL(factory, CreateRepository(TextIs(u"<all/>"))).WillOnce(Return(&full));
    EXPECT_CALL(full, GetRepositoryItemList()).WillOnce(testing::Throw(std::bad_alloc()));
    EXPECT_CALL(factory, ReleaseRepository(&full));
    EXPECT_FALSE(Fetch());
}

} // namespace
