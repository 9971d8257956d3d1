// SPDX-License-Identifier: MIT
// The catalogues' examples of docs/formats.md.
#include "Catalogues.h"

#include "support/DocumentExample.h"

namespace ZEBGis::Data {
namespace {

class CatalogueDocuments : public Catalogues {
protected:
    const CString m_group = u"{7B0E2C52-51B7-4F1C-9A43-0D6C8E2A1F01}";
    const CString m_pipe = u"{7B0E2C52-51B7-4F1C-9A43-0D6C8E2A1F02}";
};

TEST_F(CatalogueDocuments, TheExampleOfDeclarationsIsReadAsItSays) {
    MakeFile(m_support / "Catalogues.xml", DocumentExample("catalogues"));
    const auto pumps = m_manager->GetCatalogMetadata(u"PUMPS_CATALOG");
    ASSERT_TRUE(pumps);
    EXPECT_TRUE(m_manager->GetRegistryProblems().empty());
    EXPECT_EQ(pumps->GetCatalogNameUI(), u"Pumps");
    EXPECT_EQ(pumps->GetHidden(), 0);
    EXPECT_EQ(pumps->GetFileManager(), u"PUMPS_CATALOG");
    EXPECT_EQ(pumps->GetFilesFolder(), m_station.Support() + u"CatalogueFiles\\pumps\\");
    EXPECT_EQ(pumps->GetFileProperties(), (std::vector<CString>{u"BLOCK", u"PICTURE"}));
}

TEST_F(CatalogueDocuments, TheExampleOfACatalogueIsReadAsItSays) {
    const CatalogPtr catalog = Load(DocumentExample("catalogue") + "\n");
    ASSERT_TRUE(catalog);
    EXPECT_EQ(catalog->GetItemCount(), 2u);
    EXPECT_EQ(catalog->GetItembyGuid(m_group.c_str())->IsGroup(), 1);
    const auto pipe = catalog->GetItembyGuid(m_pipe.c_str());
    ASSERT_TRUE(pipe);
    EXPECT_EQ(pipe->GetName(), u"PE 100 \"plava\" DN 110");
    EXPECT_EQ(pipe->GetParentItemGuid(), m_group);
    const std::pair<const char16_t*, CDataBox> values[] = {
        {u"DN", CDataBox::OfInteger(110)},
        {u"WALL", CDataBox::OfReal(6.6)},
        {u"IN_STORE", CDataBox::OfBoolean(1)},
        {u"SINCE", CDataBox::OfDate(u"2026-11-21")},
        {u"BLOCK", CDataBox::OfText(u"PE100 DN110.dwg")},
        {u"NOTE", CDataBox::OfText(u"first line\nsecond line")},
        {u"COLOUR", CDataBox()}};
    for (const auto& [name, value] : values)
        EXPECT_EQ(pipe->GetProperty(name)->GetValue(), value) << Platform::ToUtf8(name);
}

TEST_F(CatalogueDocuments, TheExampleOfACatalogueIsWrittenByteForByte) {
    Load(DocumentExample("catalogue") + "\n")->AddItem(Leaf(u"a"));
    ASSERT_EQ(Save(), 1);
    EXPECT_NE(Written(), DocumentExample("catalogue") + "\n");
    m_manager->GetCatalog(kPipes, 1)->DeleteItem(u"a");
    ASSERT_EQ(Save(), 1);
    EXPECT_EQ(Written(), DocumentExample("catalogue") + "\n");
}

TEST_F(CatalogueDocuments, TheExampleOfAnItemsTextIsReadAndWritten) {
    const CString xml = Platform::FromUtf8(DocumentExample("catalogue-item"));
    const CatalogItemPtr item = Parse(xml);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->GetGUID(), m_pipe);
    EXPECT_EQ(PropertyOf(item, u"MAKER"), u"Жук d.o.o., Šibenik");
    EXPECT_EQ(XmlOf(*item), xml);
}

} // namespace
} // namespace ZEBGis::Data
