// SPDX-License-Identifier: MIT
#include "Catalogues.h"

#include "support/FailingCalls.h"
#include "support/Python.h"

namespace ZEBGis::Data {
namespace {

using testing::HasSubstr;

const char* const kStart = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// As this library writes it.
const std::string kWritten =
    std::string(kStart) +
    "<!-- the office's pipes -->\n"
    "<?tool do it?>\n"
    "<catalogue reference=\"PIPES_CATALOG\" version=\"2\">\n"
    "  <!-- plastics -->\n"
    "  <item guid=\"g-1\" name=\"PE\" group=\"yes\">\n"
    "    <property name=\"MATERIAL\" value=\"PE 100\"/>\n"
    "    <item guid=\"i-1\" name=\"PE DN 110\" group=\"no\" parent=\"g-1\">\n"
    "      <property name=\"DN\" type=\"integer\" value=\"110\"/>\n"
    "      <note lang=\"hr\">stara <b>cijev</b> </note>\n"
    "    </item>\n"
    "    <!-- the last one -->\n"
    "    <item guid=\"i-2\" name=\"č &quot;Ж&quot;&#10;\" group=\"no\" parent=\"g-1\"/>\n"
    "  </item>\n"
    "  <tools>\n    <a/>\n  </tools>\n"
    "</catalogue>\n"
    "<!-- end -->\n";

using CatalogueFile = Catalogues;

TEST_F(CatalogueFile, ACatalogueWithoutAFileIsEmptyAndStaysInMemory) {
    const CatalogPtr catalog = Load();
    ASSERT_TRUE(catalog);
    EXPECT_EQ(catalog->GetItemCount(), 0u);
    EXPECT_EQ(Problem(), "");
    EXPECT_EQ(m_manager->GetCatalog(kPipes, 1), catalog);
    EXPECT_EQ(m_manager->GetCatalog(kPipes, 0), catalog);
    EXPECT_FALSE(std::filesystem::exists(m_file));
}

TEST_F(CatalogueFile, WithoutLoadingOnlyWhatIsInMemoryIsThere) {
    Write(kWritten);
    EXPECT_FALSE(m_manager->GetCatalog(kPipes, 0));
    EXPECT_THAT(Problem(), HasSubstr("\"PIPES_CATALOG\" is not loaded"));
    EXPECT_TRUE(m_manager->GetCatalog(kPipes, 1));
    EXPECT_TRUE(m_manager->GetCatalog(kPipes, 0));
    EXPECT_EQ(Problem(), "");
}

TEST_F(CatalogueFile, AnUnknownReferenceGivesNoCatalogue) {
    EXPECT_FALSE(m_manager->GetCatalog(u"nothing", 1));
    EXPECT_THAT(Problem(), HasSubstr("no catalogue \"nothing\""));
    EXPECT_EQ(m_manager->Save(u"nothing", 1, 1), 0);
    EXPECT_THAT(Problem(), HasSubstr("no catalogue \"nothing\""));
    EXPECT_FALSE(m_manager->GetCatalog(nullptr, 1));
    EXPECT_FALSE(m_manager->GetCatalogMetadata(u"nothing"));
    EXPECT_FALSE(m_manager->GetCatalogMetadata(u"pipes_catalog"));
}

TEST_F(CatalogueFile, ItsItemsAreRead) {
    const CatalogPtr catalog = Load(kWritten);
    EXPECT_EQ(TreeOf(*catalog), "g-1(i-1 i-2)");
    EXPECT_EQ(catalog->GetItemCount(), 3u);
    EXPECT_EQ(catalog->GetItembyGuid(u"i-2")->GetName(), u"č \"Ж\"\n");
    EXPECT_EQ(PropertyOf(catalog->GetItembyGuid(u"i-1"), u"DN"), u"110");
    EXPECT_EQ(catalog->GetItembyGuid(u"i-1")->GetParentItemGuid(), u"g-1");
    EXPECT_EQ(catalog->GetItembyGuid(u"g-1")->IsGroup(), 1);
}

TEST_F(CatalogueFile, SavingAnUntouchedCatalogueWritesNothing) {
    Load(kWritten);
    const auto time = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(m_file, time);
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(Written(), kWritten);
    EXPECT_EQ(std::filesystem::last_write_time(m_file), time);
    EXPECT_FALSE(std::filesystem::exists(m_folder / "PIPES_CATALOG.previous.xml"));
}

TEST_F(CatalogueFile, AFileWrittenByHandKeepsEverythingInItsPlace) {
    const std::string byHand = "<?xml version='1.0' encoding='utf-8'?>\r\n"
                               "<!-- the office's pipes --><?tool do it?>"
                               "<catalogue version='2' reference = 'PIPES_CATALOG' >"
                               "<!-- plastics -->\r\n"
                               "\t<item name='PE' guid='g-1' group='true'>"
                               "<item name='PE DN 110' guid='i-1' group='no'>"
                               "<property value='110' name='DN' type='integer'></property>"
                               "<note lang='hr'>stara <b>cijev</b> </note></item>"
                               "<property name='MATERIAL' value='PE 100'/>"
                               "<!-- the last one --><item guid='i-2' group='0' parent='g-1' "
                               "name='č \"&#x416;\"&#xA;'/></item>"
                               "<tools>\n    <a/>\n  </tools></catalogue><!-- end -->";
    Load(byHand);
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(Written(), kWritten);
    EXPECT_EQ(BytesOfFile(m_folder / "PIPES_CATALOG.previous.xml"), byHand);
}

TEST_F(CatalogueFile, TextBesideItemsKeepsItsBlanks) {
    const std::string written = std::string(kStart) +
                                "<catalogue reference=\"PIPES_CATALOG\"> some <item guid=\"a\" "
                                "name=\"\" group=\"no\"/>\n\ttext </catalogue>\n";
    Load(written);
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(Written(), written);
}

TEST_F(CatalogueFile, AChangedCatalogueIsWrittenAndThePreviousTextKept) {
    const CatalogPtr catalog = Load(kWritten);
    EXPECT_EQ(catalog->DeleteItem(u"i-1"), 1);
    EXPECT_EQ(catalog->AddItem(Leaf(u"new", u"Новая")), 1);
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(BytesOfFile(m_folder / "PIPES_CATALOG.previous.xml"), kWritten);
    EXPECT_EQ(TreeOf(*Load()), "g-1(i-2) new");
    EXPECT_THAT(Written(), HasSubstr("name=\"Новая\""));
    EXPECT_THAT(Written(), HasSubstr("<!-- the last one -->"));
}

TEST_F(CatalogueFile, WithoutBeingAskedNoPreviousTextIsKept) {
    Load(kWritten)->DeleteItem(u"i-1");
    EXPECT_EQ(m_manager->Save(kPipes, 0, 0), 1);
    EXPECT_FALSE(std::filesystem::exists(m_folder / "PIPES_CATALOG.previous.xml"));
}

TEST_F(CatalogueFile, TheFolderIsCreated) {
    std::filesystem::remove_all(m_support);
    Load()->AddItem(Leaf(u"a"));
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(TreeOf(*Load()), "a");
}

TEST_F(CatalogueFile, WhatIsNotInMemoryIsNotSaved) {
    Load(kWritten);
    m_manager->Forget(kPipes);
    m_manager->Forget(u"nothing");
    m_manager->Forget(nullptr);
    EXPECT_EQ(Save(), 0);
    EXPECT_THAT(Problem(), HasSubstr("is not loaded"));
}

TEST_F(CatalogueFile, AForgottenCatalogueIsReadAnew) {
    Load(kWritten)->DeleteItem(u"g-1");
    EXPECT_EQ(TreeOf(*m_manager->GetCatalog(kPipes, 1)), "");
    EXPECT_EQ(TreeOf(*Load()), "g-1(i-1 i-2)");
}

TEST_F(CatalogueFile, InTheFlatFormItemsStandUnderTheParentsThatTheyName) {
    const CatalogPtr catalog =
        Load("<catalogue>"
             "<item guid='c' parent='b'/><item guid='d' parent='a'/><item guid='a' group='yes'>"
             "<item guid='n'/></item><item guid='b' parent='a' group='no'/><item guid='e' "
             "parent='b'/><item guid='f'/><item guid='g' parent='n'/></catalogue>");
    EXPECT_EQ(TreeOf(*catalog), "a(n(g) d b(c e)) f");
    EXPECT_EQ(catalog->GetItemCount(), 8u);
    // What the attribute says counts; where it is missing, what the item holds.
    EXPECT_EQ(catalog->GetItembyGuid(u"b")->IsGroup(), 0);
    EXPECT_EQ(catalog->GetItembyGuid(u"n")->IsGroup(), 1);
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(TreeOf(*Load()), "a(n(g) d b(c e)) f");
    EXPECT_THAT(Written(),
                HasSubstr("\n      <item guid=\"g\" name=\"\" group=\"no\" parent=\"n\"/>"));
}

TEST_F(CatalogueFile, ParentsAreWrittenAsTheItemsStand) {
    const CatalogPtr catalog = Load(kWritten);
    catalog->GetItembyGuid(u"i-1")->SetParentItemGuid(u"somewhere");
    catalog->GetItembyGuid(u"g-1")->SetParentItemGuid(u"else");
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(Written(), kWritten);
}

TEST_F(CatalogueFile, Windows1250AndUtf16AreReadAndUtf8IsWritten) {
    const std::string start = "<?xml version=\"1.0\" encoding=\"windows-1250\"?>";
    EXPECT_EQ(Load(start + "<catalogue><item guid='a' name='\x8A\xE8'/></catalogue>")
                  ->GetItembyGuid(u"a")
                  ->GetName(),
              u"Šč");
    EXPECT_EQ(Save(), 1);
    EXPECT_THAT(Written(), HasSubstr("encoding=\"UTF-8\""));
    EXPECT_THAT(Written(), HasSubstr("name=\"Šč\""));
}

TEST_F(CatalogueFile, TextsOfEveryKindComeBackExactly) {
    const CString texts[] = {
        u"\"'<>&]]>&amp;&#65;",   u"a\nb\r\nc\rd\te",          u"\t \n", u" blanks ",
        u"čšž Ж 日本 \U0001F6B0", CString(10000, u'ж') + u"\n"};
    const CatalogPtr catalog = Load();
    for (const CString& text : texts) {
        const auto item = boost::make_shared<CCatalogItem>(text.c_str(), text.c_str(), 1);
        item->SetProperty(text.c_str(), CDataBox::OfText(text.c_str()));
        EXPECT_EQ(catalog->AddItem(item), 1);
        EXPECT_EQ(item->AddSubItem(Leaf((u"below " + text).c_str())), 1);
    }
    EXPECT_EQ(Save(), 1) << Problem();
    const CatalogPtr read = Load();
    ASSERT_TRUE(read) << Problem();
    for (const CString& text : texts) {
        const CatalogItemPtr item = read->GetItembyGuid(text.c_str());
        ASSERT_TRUE(item);
        EXPECT_EQ(item->GetName(), text);
        EXPECT_EQ(PropertyOf(item, text.c_str()), text);
        EXPECT_EQ(read->GetItembyGuid((u"below " + text).c_str())->GetParentItemGuid(), text);
    }
}

TEST_F(CatalogueFile, AnotherReaderOfXmlSeesTheSame) {
    const CatalogPtr catalog = Load();
    const auto item = Leaf(u"a", u"\"'<>&]]>\n\r\n\t č \U0001F6B0");
    catalog->AddItem(item);
    item->SetProperty(u"p", CDataBox::OfText(u" \t&#10; "));
    ASSERT_EQ(Save(), 1);
    EXPECT_EQ(
        PythonSays("import sys, xml.etree.ElementTree as E\n"
                   "root = E.fromstring(sys.stdin.buffer.read())\n"
                   "item = root.find('item')\n"
                   "print(ascii([root.tag, item.get('name'), item[0].get('value')]), end='')\n",
                   Written()),
        "['catalogue', '\"\\'<>&]]>\\n\\r\\n\\t \\u010d \\U0001f6b0', ' \\t&#10; ']");
}

class UnsavableText : public CatalogueFile, public testing::WithParamInterface<CString> {
protected:
    void ExpectRefused(const char* guid) {
        EXPECT_EQ(Save(), 0);
        EXPECT_THAT(Problem(), testing::AllOf(HasSubstr("PIPES_CATALOG.xml cannot be written"),
                                              HasSubstr(guid), HasSubstr("U+")));
        EXPECT_EQ(Written(), kWritten);
    }
};

TEST_P(UnsavableText, InANameIsNotSaved) {
    const auto item = Load(kWritten)->GetItembyGuid(u"i-1");
    item->SetName(GetParam().c_str());
    ExpectRefused("(i-1)");
    item->SetName(u"good");
    EXPECT_EQ(Save(), 1);
    EXPECT_EQ(Problem(), "");
}

TEST_P(UnsavableText, InAPropertyIsNotSaved) {
    Load(kWritten)->GetItembyGuid(u"i-2")->SetProperty(u"p", CDataBox::OfText(GetParam().c_str()));
    ExpectRefused("(i-2)");
}

TEST_P(UnsavableText, InAPropertysNameIsNotSaved) {
    Load(kWritten)->GetItembyGuid(u"i-2")->SetProperty(GetParam().c_str(), CDataBox());
    ExpectRefused("(i-2)");
}

TEST_P(UnsavableText, InAGuidIsNotSaved) {
    Load(kWritten)->AddItem(boost::make_shared<CCatalogItem>(GetParam().c_str(), u"bad one", 0));
    ExpectRefused("bad one");
}

INSTANTIATE_TEST_SUITE_P(Texts, UnsavableText,
                         testing::Values(u"a\u0001", u"\u001F", u"\xD83D", u"x\xDC00", u"\uFFFE",
                                         u"\uFFFF"));

TEST_F(CatalogueFile, AnItemWithoutAGuidIsNotSaved) {
    Load(kWritten)->AddItem(Leaf(u"", u"nameless"));
    EXPECT_EQ(Save(), 0);
    EXPECT_THAT(Problem(), HasSubstr("item \"nameless\" (): it has no GUID"));
    EXPECT_EQ(Written(), kWritten);
}

TEST_F(CatalogueFile, AFileThatCannotBeWrittenStaysAsItWas) {
    Load(kWritten)->DeleteItem(u"i-1");
    FailingCalls calls;
    calls.Fail("write", ENOSPC);
    EXPECT_EQ(Save(), 0);
    EXPECT_THAT(Problem(), HasSubstr("No space left on device"));
    EXPECT_EQ(Written(), kWritten);
}

TEST_F(CatalogueFile, WhenTheFoldersChangeEverythingIsReadAnew) {
    const CatalogPtr catalog = Load(kWritten);
    const std::string before = Platform::ToUtf8(m_station.Support());
    m_station.Set("ZEBX_SUPPORT", (m_station.Folder().Native() / "other").string());
    EXPECT_FALSE(m_manager->GetCatalog(kPipes, 0));
    EXPECT_EQ(m_manager->GetCatalog(kPipes, 1)->GetItemCount(), 0u);
    m_station.Set("ZEBX_SUPPORT", Platform::NativePath(m_station.Support()));
    EXPECT_NE(m_manager->GetCatalog(kPipes, 1), catalog);
    EXPECT_EQ(TreeOf(*m_manager->GetCatalog(kPipes, 1)), "g-1(i-1 i-2)");
    EXPECT_EQ(TreeOf(*catalog), "g-1(i-1 i-2)"); // who holds it keeps it
}

} // namespace
} // namespace ZEBGis::Data
