// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/NetRepositoryItem.h"
#include "RepositoryFiles.h"
#include "platform/text/Utf8.h"
#include "support/DocumentExample.h"

using namespace Repository;

namespace {

CNetRepositoryItem Deserialized(const CString& record) {
    CNetRepositoryItem item;
    EXPECT_EQ(item.Deserialize(record.c_str()), 1);
    return item;
}

CNetRepositoryItem FullItem() {
    CNetRepositoryItem item;
    item.SetId(u"id-1");
    item.SetName(u"Čvor $1|2#3");
    item.SetEntityType(3);
    item.SetTopologyFunction(-2147483647);
    item.SetTopologyType(2147483647);
    item.SetConfigurationXML(u"<a b=\"$|#@\">\r\n\tž</a>");
    item.SetRepositoryName(u"Čvorovi");
    item.SetRepositoryTag(u"NODES");
    return item;
}

// All but the files.
void ExpectEqual(const CNetRepositoryItem& item, const CNetRepositoryItem& expected) {
    EXPECT_EQ(item.GetId(), expected.GetId());
    EXPECT_EQ(item.GetName(), expected.GetName());
    EXPECT_EQ(item.GetEntityType(), expected.GetEntityType());
    EXPECT_EQ(item.GetTopologyFunction(), expected.GetTopologyFunction());
    EXPECT_EQ(item.GetTopologyType(), expected.GetTopologyType());
    EXPECT_EQ(item.GetConfigurationXML(), expected.GetConfigurationXML());
    EXPECT_EQ(item.GetRepositoryName(), expected.GetRepositoryName());
    EXPECT_EQ(item.GetRepositoryTag(), expected.GetRepositoryTag());
}

} // namespace

TEST(NetRepositoryItem, ANewItemHasTopologyFunctionMinusOneAndNothingElse) {
    CNetRepositoryItem item;
    EXPECT_EQ(item.GetEntityType(), 0);
    EXPECT_EQ(item.GetTopologyFunction(), -1);
    EXPECT_EQ(item.GetTopologyType(), 0);
    EXPECT_EQ(item.GetId() + item.GetName() + item.GetConfigurationXML() +
                  item.GetRepositoryName() + item.GetRepositoryTag(),
              u"");
    EXPECT_TRUE(item.GetFiles()->empty());
}

TEST(NetRepositoryItem, ANewItemsRecordIsEightFields) {
    EXPECT_EQ(CNetRepositoryItem().Serialize(), u"$$0$-1$0$$$$");
}

TEST(NetRepositoryItem, AnItemWithoutFilesComesBackWithOneEmptyFile) {
    CNetRepositoryItem item = Deserialized(u"$$0$-1$0$$$$");
    ExpectEqual(item, CNetRepositoryItem());
    ASSERT_EQ(item.GetFiles()->size(), 1u);
    ExpectEqual(*item.GetFiles()->front(), CRepositoryFile());
}

TEST(NetRepositoryItem, TheTagIsWrittenBeforeTheName) {
    CNetRepositoryItem item;
    item.SetRepositoryTag(u"Man");
    item.SetRepositoryName(u"M");
    EXPECT_EQ(item.Serialize(), u"$$0$-1$0$$TWFu$TQ==$");
    EXPECT_EQ(Deserialized(item.Serialize()).GetRepositoryTag(), u"Man");
    EXPECT_EQ(Deserialized(item.Serialize()).GetRepositoryName(), u"M");
}

TEST(NetRepositoryItem, EveryFieldSurvives) {
    ExpectEqual(Deserialized(FullItem().Serialize()), FullItem());
}

TEST(NetRepositoryItem, AConfigurationWithDelimitersSurvivesUnchanged) {
    CNetRepositoryItem item;
    item.SetConfigurationXML(u"<x a='$|#@'>\r\n\"ŠĐČĆŽšđčćž\"</x>");
    EXPECT_EQ(Deserialized(item.Serialize()).GetConfigurationXML(), item.GetConfigurationXML());
}

TEST(NetRepositoryItem, EachFilesRecordIsEndedByABarAndTheFieldByADollar) {
    CNetRepositoryItem item;
    item.GetFiles()->push_back(SharedFileNamed(u"a"));
    item.GetFiles()->push_back(SharedFileNamed(u"b"));
    EXPECT_EQ(item.Serialize(), u"$$0$-1$0$$$$" + RecordOf(FileNamed(u"a")) + u"|" +
                                    RecordOf(FileNamed(u"b")) + u"|$");
}

TEST(NetRepositoryItem, AnItemWithFilesComesBackWithOneMoreAndEmptyFile) {
    CNetRepositoryItem item;
    item.GetFiles()->push_back(SharedFileNamed(u"a"));
    CNetRepositoryItem read = Deserialized(item.Serialize());
    ASSERT_EQ(read.GetFiles()->size(), 2u);
    ExpectEqual(*(*read.GetFiles())[0], FileNamed(u"a"));
    ExpectEqual(*(*read.GetFiles())[1], CRepositoryFile());
    // And so once more each time.
    EXPECT_EQ(Deserialized(read.Serialize()).GetFiles()->size(), 3u);
}

TEST(NetRepositoryItem, SevenFieldsAreRejectedAndTheFilesAreGoneAllTheSame) {
    CNetRepositoryItem item = FullItem();
    item.GetFiles()->push_back(SharedFileNamed(u"a"));
    EXPECT_EQ(item.Deserialize(u"id$bmFtZQ==$1$2$3$$"), 0);
    EXPECT_TRUE(item.GetFiles()->empty());
    ExpectEqual(item, FullItem());
}

TEST(NetRepositoryItem, AnEmptyTextIsRejected) {
    EXPECT_EQ(CNetRepositoryItem().Deserialize(u""), 0);
    EXPECT_EQ(CNetRepositoryItem().Deserialize(nullptr), 0);
}

TEST(NetRepositoryItem, ExactlyEightFieldsHaveNoFiles) {
    CNetRepositoryItem item = Deserialized(u"id$TWFu$1$2$3$TQ==$TWE=$TWFu");
    EXPECT_TRUE(item.GetFiles()->empty());
    EXPECT_EQ(item.GetId(), u"id");
    EXPECT_EQ(item.GetName(), u"Man");
    EXPECT_EQ(item.GetEntityType(), 1);
    EXPECT_EQ(item.GetTopologyFunction(), 2);
    EXPECT_EQ(item.GetTopologyType(), 3);
    EXPECT_EQ(item.GetConfigurationXML(), u"M");
    EXPECT_EQ(item.GetRepositoryTag(), u"Ma");
    EXPECT_EQ(item.GetRepositoryName(), u"Man");
}

TEST(NetRepositoryItem, WhatFollowsTheFilesIsIgnored) {
    EXPECT_EQ(Deserialized(u"$$0$0$0$$$$A|B$C|D|E$").GetFiles()->size(), 2u);
}

TEST(NetRepositoryItem, MalformedPartsAreReadAsFarAsTheyGo) {
    CNetRepositoryItem item = Deserialized(u"id$TWFu!TWFu$x$ -5y$9999999999$$$$A#M|");
    EXPECT_EQ(item.GetName(), u"Man");
    EXPECT_EQ(item.GetEntityType(), 0);
    EXPECT_EQ(item.GetTopologyFunction(), -5);
    EXPECT_EQ(item.GetTopologyType(), 2147483647);
    ASSERT_EQ(item.GetFiles()->size(), 2u);
    EXPECT_EQ(item.GetFiles()->front()->GetFileManagerId(), u"M");
}

TEST(NetRepositoryItem, ADelimiterInTheIdBreaksTheRecord) {
    CNetRepositoryItem item;
    item.SetId(u"a$b");
    EXPECT_EQ(Deserialized(item.Serialize()).GetId(), u"a");
}

TEST(NetRepositoryItem, ReadingReplacesTheFilesOfBefore) {
    CNetRepositoryItem item;
    item.GetFiles()->assign(5, SharedFileNamed(u"old"));
    EXPECT_EQ(item.Deserialize(u"$$0$-1$0$$$$"), 1);
    EXPECT_EQ(item.GetFiles()->size(), 1u);
}

TEST(NetRepositoryItem, ACopySharesTheFiles) {
    CNetRepositoryItem item = FullItem();
    item.GetFiles()->push_back(SharedFileNamed(u"a"));
    CNetRepositoryItem copy(item);
    CNetRepositoryItem assigned;
    assigned = item;
    item.GetFiles()->front()->SetFileId(u"changed");
    for (CNetRepositoryItem* other : {&copy, &assigned}) {
        ExpectEqual(*other, item);
        ASSERT_EQ(other->GetFiles()->size(), 1u);
        EXPECT_EQ(other->GetFiles()->front()->GetFileId(), u"changed");
    }
    // The lists are each item's own.
    item.GetFiles()->clear();
    EXPECT_EQ(copy.GetFiles()->size(), 1u);
}

TEST(NetRepositoryItem, AnEmptyHandleAmongTheFilesIsPassedOver) {
    CNetRepositoryItem item;
    item.GetFiles()->push_back({});
    EXPECT_EQ(item.Serialize(), u"$$0$-1$0$$$$");
    item.GetFiles()->push_back(boost::make_shared<CRepositoryFile>());
    EXPECT_EQ(item.Serialize(), u"$$0$-1$0$$$$######0#|$");
}

TEST(NetRepositoryItem, NullTextsReadAsEmpty) {
    CNetRepositoryItem item = FullItem();
    item.SetId(nullptr);
    item.SetName(nullptr);
    item.SetConfigurationXML(nullptr);
    item.SetRepositoryName(nullptr);
    item.SetRepositoryTag(nullptr);
    EXPECT_EQ(item.Serialize(), u"$$3$-2147483647$2147483647$$$$");
}

TEST(NetRepositoryItem, TheDocumentsExampleIsWhatIsWrittenAndRead) {
    CNetRepositoryItem item;
    item.SetId(u"n-1");
    item.SetName(u"Čvor");
    item.SetEntityType(2);
    item.SetTopologyType(1);
    item.SetConfigurationXML(u"<node/>");
    item.SetRepositoryName(u"Čvorovi");
    item.SetRepositoryTag(u"NODES");
    CRepositoryFile file;
    file.SetFileId(u"f-17");
    file.SetFileName(u"n.dwg");
    file.SetFileContent("TWFu");
    item.GetFiles()->push_back(boost::make_shared<CRepositoryFile>(file));

    const std::string example = DocumentExample("net-repository-item");
    EXPECT_EQ(Platform::ToUtf8(item.Serialize()), example);
    CNetRepositoryItem read = Deserialized(Platform::FromUtf8(example));
    ExpectEqual(read, item);
    ASSERT_EQ(read.GetFiles()->size(), 2u);
    ExpectEqual(*(*read.GetFiles())[0], file);
    ExpectEqual(*(*read.GetFiles())[1], CRepositoryFile());
}
