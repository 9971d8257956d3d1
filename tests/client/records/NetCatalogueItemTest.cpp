// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/NetCatalogueItem.h"
#include "RepositoryFiles.h"
#include "client/util/AnsiText.h"
#include "platform/text/Utf8.h"
#include "support/DocumentExample.h"

using namespace Repository;

namespace {

const CString kNewItem = u"<nci catId=\"\" catTag=\"\" isGroup=\"0\" parentId=\"\" strName=\"\" "
                         u"catName=\"\" content=\"\" files=\"\" ></nci>";

CString StreamForm(const CNetCatalogueItem& item) {
    WStringStream stream;
    item.Serialize(stream);
    return stream.str();
}

CNetCatalogueItem Deserialized(const CString& text) {
    CNetCatalogueItem item;
    EXPECT_EQ(item.Deserialize(text.c_str()), 1);
    return item;
}

CNetCatalogueItem FullItem() {
    CNetCatalogueItem item;
    item.SetCatalogueId(u"{7B}");
    item.SetCatalogueTag(u"PIPES");
    item.SetIsGroup(-3);
    item.SetParentId(u"{6A}");
    item.SetName(u"Čelična cijev");
    item.SetCatalogueName(u"Cijevi 'DN'>");
    item.SetItemContent(u"<item a=\"1&2\">\r\n'ž'</item>");
    return item;
}

// All but the files.
void ExpectEqual(const CNetCatalogueItem& item, const CNetCatalogueItem& expected) {
    EXPECT_EQ(item.GetCatalogueId(), expected.GetCatalogueId());
    EXPECT_EQ(item.GetCatalogueTag(), expected.GetCatalogueTag());
    EXPECT_EQ(item.GetIsGroup(), expected.GetIsGroup());
    EXPECT_EQ(item.GetParentId(), expected.GetParentId());
    EXPECT_EQ(item.GetName(), expected.GetName());
    EXPECT_EQ(item.GetCatalogueName(), expected.GetCatalogueName());
    EXPECT_EQ(item.GetItemContent(), expected.GetItemContent());
}

CString Between(const CString& text, CStringView before, CStringView behind) {
    const std::size_t begin = text.find(before) + before.size();
    return text.substr(begin, text.find(behind, begin) - begin);
}

} // namespace

TEST(NetCatalogueItem, ANewItemsElementHasEmptyAttributesAndGroupZero) {
    EXPECT_EQ(StreamForm(CNetCatalogueItem()), kNewItem);
}

TEST(NetCatalogueItem, TheTextFormEndsWithTheClosingTagTwice) {
    EXPECT_EQ(CNetCatalogueItem().Serialize(), kNewItem + u"</nci>");
    EXPECT_EQ(FullItem().Serialize(), StreamForm(FullItem()) + u"</nci>");
}

TEST(NetCatalogueItem, TheStreamFormIsAppended) {
    WStringStream stream;
    stream << u"before";
    CNetCatalogueItem().Serialize(stream);
    EXPECT_EQ(stream.str(), u"before" + kNewItem);
}

TEST(NetCatalogueItem, ANewItemComesBackAsANewItemWithoutFiles) {
    CNetCatalogueItem item = Deserialized(kNewItem);
    ExpectEqual(item, CNetCatalogueItem());
    EXPECT_TRUE(item.GetFiles()->empty());
}

TEST(NetCatalogueItem, EveryFieldSurvivesInEitherForm) {
    ExpectEqual(Deserialized(StreamForm(FullItem())), FullItem());
    ExpectEqual(Deserialized(FullItem().Serialize()), FullItem());
}

TEST(NetCatalogueItem, PlainTextsAreWrittenWithoutEscaping) {
    CNetCatalogueItem item;
    item.SetName(u"a&amp;b");
    EXPECT_NE(StreamForm(item).find(u"strName=\"a&amp;b\""), CString::npos);
    EXPECT_EQ(Deserialized(StreamForm(item)).GetName(), u"a&b"); // read they are decoded
}

TEST(NetCatalogueItem, AQuoteInAPlainTextBreaksTheElement) {
    CNetCatalogueItem item = FullItem();
    item.SetCatalogueId(u"a\"b");
    CNetCatalogueItem read;
    read.Deserialize(item.Serialize().c_str());
    EXPECT_NE(read.GetCatalogueId(), item.GetCatalogueId());
}

TEST(NetCatalogueItem, TheFilesAreBase64OfTheirRecordsEachEndedByAnAtSign) {
    CNetCatalogueItem item;
    item.GetFiles()->push_back(SharedFileNamed(u"a"));
    item.GetFiles()->push_back(SharedFileNamed(u"b"));
    EXPECT_EQ(
        Between(StreamForm(item), u"files=\"", u"\""),
        EncodeBase64Text(RecordOf(FileNamed(u"a")) + u"@" + RecordOf(FileNamed(u"b")) + u"@"));
}

TEST(NetCatalogueItem, AnItemComesBackWithExactlyTheFilesItHad) {
    CNetCatalogueItem item;
    item.GetFiles()->push_back(SharedFileNamed(u"a"));
    item.GetFiles()->push_back(SharedFileNamed(u"b"));
    for (const CString& text : {StreamForm(item), item.Serialize()}) {
        CNetCatalogueItem read = Deserialized(text);
        ASSERT_EQ(read.GetFiles()->size(), 2u);
        ExpectEqual(*(*read.GetFiles())[0], FileNamed(u"a"));
        ExpectEqual(*(*read.GetFiles())[1], FileNamed(u"b"));
    }
}

TEST(NetCatalogueItem, FilesThatAreReadGoBehindThoseThatAreThere) {
    CNetCatalogueItem item;
    item.GetFiles()->push_back(SharedFileNamed(u"a"));
    const CString text = item.Serialize();
    (*item.GetFiles())[0] = SharedFileNamed(u"old");
    EXPECT_EQ(item.Deserialize(text.c_str()), 1);
    ASSERT_EQ(item.GetFiles()->size(), 2u);
    EXPECT_EQ((*item.GetFiles())[0]->GetFileName(), u"old");
    EXPECT_EQ((*item.GetFiles())[1]->GetFileName(), u"a");
}

TEST(NetCatalogueItem, ATextWithoutTheElementChangesNothing) {
    for (const char16_t* text :
         {u"", u"nci", u"<nc catId=\"1\"/>", u"<x><nci catId=\"1\"/></x>", u"<NCI catId=\"1\"/>",
          u"<nci catId=\"1\" content=\"QU", static_cast<const char16_t*>(nullptr)}) {
        CNetCatalogueItem item = FullItem();
        item.GetFiles()->push_back(SharedFileNamed(u"a"));
        EXPECT_EQ(item.Deserialize(text), 0);
        ExpectEqual(item, FullItem());
        EXPECT_EQ(item.GetFiles()->size(), 1u);
    }
}

TEST(NetCatalogueItem, AnAbsentAttributeReadsAsTheEmptyText) {
    CNetCatalogueItem item = FullItem();
    EXPECT_EQ(item.Deserialize(u"<nci/>"), 1);
    ExpectEqual(item, CNetCatalogueItem());
}

TEST(NetCatalogueItem, AReferenceToNulEndsItsText) {
    const CNetCatalogueItem item = Deserialized(u"<nci catId='a&#0;b' catTag='c&#x0;d' "
                                                u"parentId='&#0;' strName='e&#0;' catName='f'/>");
    EXPECT_EQ(item.GetCatalogueId(), u"a");
    EXPECT_EQ(item.GetCatalogueTag(), u"c");
    EXPECT_EQ(item.GetParentId(), u"");
    EXPECT_EQ(item.GetName(), u"e");
    EXPECT_EQ(item.GetCatalogueName(), u"f");
}

TEST(NetCatalogueItem, TheFirstElementOfTheNameIsRead) {
    EXPECT_EQ(Deserialized(u"<x/><nci catId='1'/><nci catId='2'/>").GetCatalogueId(), u"1");
}

TEST(NetCatalogueItem, TheGroupFlagIsReadAsTheCLibraryReadsNumbers) {
    EXPECT_EQ(Deserialized(u"<nci isGroup=' 1x'/>").GetIsGroup(), 1);
    EXPECT_EQ(Deserialized(u"<nci isGroup='yes'/>").GetIsGroup(), 0);
    EXPECT_EQ(Deserialized(u"<nci isGroup='-2'/>").GetIsGroup(), -2);
}

TEST(NetCatalogueItem, MalformedBase64IsReadAsFarAsItGoes) {
    EXPECT_EQ(Deserialized(u"<nci content='TWFu!TWFu'/>").GetItemContent(), u"Man");
    CNetCatalogueItem item = Deserialized(u"<nci files='" + EncodeBase64Text(u"A#M@@B@") + u"!'/>");
    ASSERT_EQ(item.GetFiles()->size(), 2u); // the empty piece is dropped
    EXPECT_EQ((*item.GetFiles())[0]->GetFileManagerId(), u"M");
    EXPECT_EQ((*item.GetFiles())[1]->GetFileId(), u"B");
}

TEST(NetCatalogueItem, AnAtSignInAPlainFieldOfAFileBreaksTheList) {
    CNetCatalogueItem item;
    item.GetFiles()->push_back(SharedFileNamed(u"a@b"));
    EXPECT_GT(Deserialized(item.Serialize()).GetFiles()->size(), 1u);
}

TEST(NetCatalogueItem, AFilesPlainFieldsGoThroughTheCodePage) {
    CNetCatalogueItem item;
    item.GetFiles()->push_back(SharedFileNamed(u"Ω.dwg"));
    EXPECT_EQ(Deserialized(item.Serialize()).GetFiles()->front()->GetFileName(), u"?.dwg");
}

TEST(NetCatalogueItem, ACopySharesTheFiles) {
    CNetCatalogueItem item = FullItem();
    item.GetFiles()->push_back(SharedFileNamed(u"a"));
    CNetCatalogueItem copy(item);
    CNetCatalogueItem assigned;
    assigned = item;
    item.GetFiles()->front()->SetFileId(u"changed");
    for (CNetCatalogueItem* other : {&copy, &assigned}) {
        ExpectEqual(*other, item);
        ASSERT_EQ(other->GetFiles()->size(), 1u);
        EXPECT_EQ(other->GetFiles()->front()->GetFileId(), u"changed");
    }
    item.GetFiles()->clear();
    EXPECT_EQ(copy.GetFiles()->size(), 1u);
}

TEST(NetCatalogueItem, AnEmptyHandleAmongTheFilesIsPassedOver) {
    CNetCatalogueItem item;
    item.GetFiles()->push_back({});
    EXPECT_EQ(StreamForm(item), kNewItem);
}

TEST(NetCatalogueItem, NullTextsReadAsEmpty) {
    CNetCatalogueItem item = FullItem();
    item.SetCatalogueId(nullptr);
    item.SetCatalogueTag(nullptr);
    item.SetIsGroup(0);
    item.SetParentId(nullptr);
    item.SetName(nullptr);
    item.SetCatalogueName(nullptr);
    item.SetItemContent(nullptr);
    EXPECT_EQ(StreamForm(item), kNewItem);
}

TEST(NetCatalogueItem, MegabytesSurvive) {
    CNetCatalogueItem item = FullItem();
    item.SetItemContent(CString(1'000'000, u'ž').c_str());
    item.GetFiles()->push_back(SharedFileNamed(u"a"));
    item.GetFiles()->front()->SetFileContent(std::string(1'000'000, 'Q'));
    CNetCatalogueItem read = Deserialized(item.Serialize());
    ExpectEqual(read, item);
    ExpectEqual(*read.GetFiles()->front(), *item.GetFiles()->front());
}

TEST(NetCatalogueItem, TheDocumentsExamplesAreWhatIsWrittenAndRead) {
    CNetCatalogueItem item;
    item.SetCatalogueId(u"c-9");
    item.SetCatalogueTag(u"PIPES");
    item.SetParentId(u"c-1");
    item.SetName(u"Cijev DN 100");
    item.SetCatalogueName(u"Cijevi");
    item.SetItemContent(u"<dn>100</dn>");
    CRepositoryFile file;
    file.SetFileId(u"f-17");
    file.SetFileName(u"p.dwg");
    file.SetFileContent("TWFu");
    item.GetFiles()->push_back(boost::make_shared<CRepositoryFile>(file));

    const std::string example = DocumentExample("nci");
    EXPECT_EQ(Platform::ToUtf8(StreamForm(item)), example);
    const std::string doubled = DocumentExample("nci-doubled");
    EXPECT_EQ(Platform::ToUtf8(item.Serialize()), doubled);
    for (const std::string& text : {example, doubled}) {
        CNetCatalogueItem read = Deserialized(Platform::FromUtf8(text));
        ExpectEqual(read, item);
        ASSERT_EQ(read.GetFiles()->size(), 1u);
        ExpectEqual(*read.GetFiles()->front(), file);
    }
}
