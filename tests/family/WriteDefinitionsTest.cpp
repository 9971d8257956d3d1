// SPDX-License-Identifier: MIT
// Definitions written into the local file of their tag.
#include "DefinitionStation.h"

#include <gmock/gmock.h>

using testing::EndsWith;
using testing::HasSubstr;

namespace {

class WriteDefinitions : public DefinitionStation {
protected:
    WriteDefinitions() { Declare(); }

    // Writes definitions with these elements.
    int WriteThese(const std::vector<CString>& elements) {
        std::vector<std::unique_ptr<ZEBGis::CRepositoryItem>> items;
        std::vector<const ZEBGis::CRepositoryItem*> borrowed;
        for (const CString& xml : elements)
            borrowed.push_back(items.emplace_back(Item(xml)).get());
        problem.clear();
        return manager.WriteDefinitions(u"T", borrowed, problem);
    }
    std::filesystem::path Previous() const { return DefinitionsFolder() / "T.previous.xml"; }
};

TEST_F(WriteDefinitions, ANewFileHoldsThemInOrder) {
    std::filesystem::remove(DefinitionsFolder());
    EXPECT_EQ(WriteThese({u"<definition id='b'/>", u"<definition id='a'>č</definition>"}), 1);
    EXPECT_EQ(Bytes(File()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<definitions tag=\"T\">\n"
                             "  <definition id='b'/>\n  <definition id='a'>č</definition>\n"
                             "</definitions>\n");
    EXPECT_FALSE(std::filesystem::exists(Previous()));
    EXPECT_EQ(ReadLocal()->GetRepositoryItemList().GetCount(), 2U);
}

TEST_F(WriteDefinitions, ThoseOfKnownIdsAreReplacedInTheirPlacesAndTheRestKeepsEveryByte) {
    const std::string before = "\n<!-- a --><definitions tag='T' x='&#9;'>\r\n\t<other a='1'/>"
                               "<definition id='a'  >old</definition>text"
                               "<definition id='b'><![CDATA[]]></definition><!-- end -->\n"
                               " </definitions>\n<!-- behind -->";
    Write(File(), before);
    EXPECT_EQ(WriteThese({u"<definition id='c'/>", u"<definition id='a'>new</definition>"}), 1);
    EXPECT_EQ(Bytes(File()), "\n<!-- a --><definitions tag='T' x='&#9;'>\r\n\t<other a='1'/>"
                             "<definition id='a'>new</definition>text"
                             "<definition id='b'><![CDATA[]]></definition><!-- end -->\n"
                             " \n  <definition id='c'/>\n</definitions>\n<!-- behind -->");
    EXPECT_EQ(Bytes(Previous()), before);
}

TEST_F(WriteDefinitions, AnEmptyRootTagGetsThem) {
    Write(File(), "<definitions x='/' />");
    EXPECT_EQ(WriteThese({u"<definition id='a'/>"}), 1);
    EXPECT_EQ(Bytes(File()), "<definitions x='/' >\n  <definition id='a'/>\n</definitions>");
}

TEST_F(WriteDefinitions, NothingChangedIsNothingWritten) {
    std::string utf16 = "\xFF\xFE";
    for (const char c : std::string("<definitions><definition id='a'/></definitions>"))
        utf16 += {c, '\0'};
    Write(File(), utf16);
    const auto time = std::filesystem::last_write_time(File());
    EXPECT_EQ(WriteThese({u"<definition id='a'/>"}), 1);
    EXPECT_EQ(WriteThese({}), 1);
    EXPECT_EQ(Bytes(File()), utf16);
    EXPECT_EQ(std::filesystem::last_write_time(File()), time);
    EXPECT_FALSE(std::filesystem::exists(Previous()));
}

TEST_F(WriteDefinitions, WithoutAnyNoFileIsMade) {
    EXPECT_EQ(WriteThese({}), 1);
    EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(WriteDefinitions, AFileOfAnotherEncodingBecomesUtf8AndSaysSo) {
    Write(File(), "<?xml version='1.0' encoding='windows-1250' standalone='yes'?>"
                  "<definitions><definition id='\xE8'/></definitions>");
    EXPECT_EQ(WriteThese({u"<definition id='😀'/>"}), 1);
    EXPECT_EQ(Bytes(File()), "<?xml version='1.0' encoding=\"UTF-8\" standalone='yes'?>"
                             "<definitions><definition id='č'/>\n"
                             "  <definition id='😀'/>\n</definitions>");
}

TEST_F(WriteDefinitions, OfTwoWithOneIdTheLaterCounts) {
    EXPECT_EQ(WriteThese({u"<definition id='a'>1</definition>", u"<definition id='b'/>",
                          u"<definition id='a'>2</definition>"}),
              1);
    EXPECT_THAT(Bytes(File()),
                HasSubstr("<definition id='a'>2</definition>\n  <definition id='b'/>\n</d"));
}

TEST_F(WriteDefinitions, ADamagedFileIsLeftAlone) {
    for (const std::string damaged :
         {"<definitions><definition id='a'>", "", "<definitions><definition/></definitions>"}) {
        Write(File(), damaged);
        EXPECT_EQ(WriteThese({u"<definition id='a'/>"}), 0);
        EXPECT_THAT(Platform::ToUtf8(problem), HasSubstr(File().string()));
        EXPECT_EQ(Bytes(File()), damaged);
        EXPECT_FALSE(std::filesystem::exists(Previous()));
    }
}

TEST_F(WriteDefinitions, AnItemThatCouldNotBeReadAgainIsRefusedByItsIdAndNothingIsWritten) {
    const auto good = Item(u"<definition id='good'/>");
    const auto bad = Item(u"<definition id='bad'/>");
    bad->SetName(u"a\u0001b");
    EXPECT_EQ(manager.WriteDefinitions(u"T", {good.get(), bad.get()}, problem), 0);
    EXPECT_THAT(Platform::ToUtf8(problem), HasSubstr("T.xml, definition bad: it holds"));
    bad->SetName(CString(1, u'\xDC00').c_str());
    EXPECT_EQ(manager.WriteDefinitions(u"T", {bad.get()}, problem), 0);
    bad->SetName(u"n");
    bad->SetId(u"");
    EXPECT_EQ(manager.WriteDefinitions(u"T", {bad.get()}, problem), 0);
    EXPECT_THAT(Platform::ToUtf8(problem), EndsWith("definition n: a definition needs an id"));
    EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(WriteDefinitions, AnEntityTypeThatTheTagDoesNotHaveIsNotWritten) {
    Declare("1");
    const auto item = Item(u"<definition id='a' entityType='1'/>");
    item->SetEntityType(ZEBGis::enmEntityType(2));
    EXPECT_EQ(manager.WriteDefinitions(u"T", {item.get()}, problem), 0);
    EXPECT_THAT(Platform::ToUtf8(problem), HasSubstr("definition a: entity type 2"));
}

TEST_F(WriteDefinitions, AFileThatCannotBeWrittenStaysAndIsToldAsThat) {
    Write(File(), "<definitions/>");
    // A folder where the copy of what it held has to go.
    std::filesystem::create_directories(Previous() / "x");
    EXPECT_EQ(WriteThese({u"<definition id='a'/>"}), 0);
    EXPECT_THAT(Platform::ToUtf8(problem), HasSubstr(Previous().string()));
    EXPECT_EQ(Bytes(File()), "<definitions/>");
}

TEST_F(WriteDefinitions, HostileNamesComeBack) {
    const CString longName(10000, u'ž');
    for (const CString& name :
         {CString(u"\"'<&>"), CString(u"a\r\nb\tc\nd "), CString(u"жλ😀\u2028"), longName,
          CString(u"]]>"), CString(u"  "), CString(u"%s$|#")}) {
        const auto item = Item(u"<definition id='x'/>");
        item->SetName(name.c_str());
        item->SetId((u"id " + name).c_str());
        ASSERT_EQ(manager.WriteDefinitions(u"T", {item.get()}, problem), 1)
            << Platform::ToUtf8(problem);
        const auto repository = ReadLocal();
        const auto& items = repository->GetRepositoryItemList();
        EXPECT_EQ(items.GetAt(items.GetCount() - 1)->GetName(), name);
        EXPECT_EQ(items.GetAt(items.GetCount() - 1)->GetId(), u"id " + name);
    }
    EXPECT_EQ(ReadLocal()->GetRepositoryItemList().GetCount(), 7U);
}

} // namespace
