// SPDX-License-Identifier: MIT
#include "Catalogues.h"

#include "platform/text/Fill.h"
#include "platform/text/Windows1250.h"

namespace ZEBGis::Data {
namespace {

class ItemXml : public Catalogues {
protected:
    // Reading the item's text and writing it again gives the same text.
    void ExpectSurvives(const CString& xml) {
        const CatalogItemPtr item = Parse(xml);
        ASSERT_TRUE(item);
        EXPECT_EQ(Platform::ToUtf8(XmlOf(*item)), Platform::ToUtf8(xml));
    }
    void ExpectNoItem(const char16_t* xml, const char* reason) {
        EXPECT_FALSE(m_manager->ParseCatalogItem(xml, {}, {}));
        EXPECT_THAT(Problem(), testing::HasSubstr(reason));
    }
};

TEST_F(ItemXml, ALeafWithoutPropertiesIsOneEmptyElement) {
    EXPECT_EQ(XmlOf(*Leaf(u"g-1", u"Ventil")),
              u"<item guid=\"g-1\" name=\"Ventil\" group=\"no\"/>");
}

TEST_F(ItemXml, TheTextHoldsTheSubItemsThatTheItemHoldsNow) {
    const auto group = Group(u"g");
    group->SetParentItemGuid(u"p");
    group->AddSubItem(Leaf(u"a"));
    EXPECT_EQ(XmlOf(*group), u"<item guid=\"g\" name=\"group\" group=\"yes\" parent=\"p\">"
                             u"<item guid=\"a\" name=\"leaf\" group=\"no\" parent=\"g\"/></item>");
    group->RemoveSubItem(group->GetSubItems().begin()->first);
    EXPECT_EQ(XmlOf(*group), u"<item guid=\"g\" name=\"group\" group=\"yes\" parent=\"p\"/>");
}

TEST_F(ItemXml, TheTextIsAppended) {
    WStringStream stream;
    stream << u"before ";
    Leaf(u"a")->GetXML(stream);
    EXPECT_EQ(stream.str(), u"before <item guid=\"a\" name=\"leaf\" group=\"no\"/>");
}

TEST_F(ItemXml, EveryTypeIsWrittenAndRead) {
    const auto item = Leaf(u"g");
    item->SetProperty(u"text", CDataBox::OfText(u"t"));
    item->SetProperty(u"integer", CDataBox::OfInteger(-7));
    item->SetProperty(u"number", CDataBox::OfReal(0.1));
    item->SetProperty(u"boolean", CDataBox::OfBoolean(1));
    item->SetProperty(u"date", CDataBox::OfDate(u"2026-11-21"));
    item->SetProperty(u"null", CDataBox());
    const CString xml = XmlOf(*item);
    EXPECT_EQ(Platform::ToUtf8(xml), "<item guid=\"g\" name=\"leaf\" group=\"no\">"
                                     "<property name=\"text\" value=\"t\"/>"
                                     "<property name=\"integer\" type=\"integer\" value=\"-7\"/>"
                                     "<property name=\"number\" type=\"number\" value=\"0.1\"/>"
                                     "<property name=\"boolean\" type=\"boolean\" value=\"yes\"/>"
                                     "<property name=\"date\" type=\"date\" value=\"2026-11-21\"/>"
                                     "<property name=\"null\" type=\"null\"/></item>");
    const auto read = Parse(xml)->GetProperties();
    const auto written = item->GetProperties();
    ASSERT_EQ(read.size(), written.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(read[i]->GetName(), written[i]->GetName());
        EXPECT_EQ(read[i]->GetValue(), written[i]->GetValue()) << i;
    }
}

TEST_F(ItemXml, OtherWordsForYesAndNoAreReadAndStayAsTheyStand) {
    const CString xml = u"<item guid=\"g\" name=\"\" group=\"no\">"
                        u"<property name=\"a\" type=\"boolean\" value=\"1\"/>"
                        u"<property name=\"b\" type=\"boolean\" value=\"true\"/>"
                        u"<property name=\"c\" type=\"boolean\" value=\"0\"/>"
                        u"<property name=\"d\" type=\"boolean\" value=\"false\"/></item>";
    const auto item = Parse(xml);
    for (const char16_t* name : {u"a", u"b"})
        EXPECT_EQ(item->GetProperty(name)->GetValue(), CDataBox::OfBoolean(1));
    for (const char16_t* name : {u"c", u"d"})
        EXPECT_EQ(item->GetProperty(name)->GetValue(), CDataBox::OfBoolean(0));
    ExpectSurvives(xml);
}

TEST_F(ItemXml, AValueThatDoesNotFitItsTypeReadsAsTextAndSurvives) {
    for (const auto& [type, value] :
         std::vector<std::pair<CString, CString>>{{u"integer", u"12a"},
                                                  {u"integer", u""},
                                                  {u"integer", u" 1"},
                                                  {u"integer", u"+1"},
                                                  {u"integer", u"9223372036854775808"},
                                                  {u"integer", u"č1"},
                                                  {u"number", u"1,5"},
                                                  {u"number", u"nan"},
                                                  {u"number", u"1e999"},
                                                  {u"boolean", u"Yes"},
                                                  {u"date", u"2026-02-30"},
                                                  {u"null", u"something"},
                                                  {u"colour", u"red"},
                                                  {u"Integer", u"1"}}) {
        const CString xml = Platform::Fill(u"<item guid=\"g\" name=\"\" group=\"no\"><property "
                                           u"name=\"a\" type=\"%s\" value=\"%s\"/></item>",
                                           {type, value});
        const auto property = Parse(xml)->GetProperty(u"a");
        ASSERT_TRUE(property);
        EXPECT_EQ(property->GetValue(), CDataBox::OfText(value.c_str()))
            << Platform::ToUtf8(type) << " " << Platform::ToUtf8(value);
        ExpectSurvives(xml);
    }
}

TEST_F(ItemXml, ANumberStaysAsItIsWrittenUntilItIsSet) {
    const CString xml = u"<item guid=\"g\" name=\"\" group=\"no\">"
                        u"<property name=\"a\" type=\"integer\" value=\"007\"/>"
                        u"<property name=\"b\" type=\"number\" value=\"1.50\"/></item>";
    ExpectSurvives(xml);
    const auto item = Parse(xml);
    EXPECT_EQ(item->GetProperty(u"a")->GetValue(), CDataBox::OfInteger(7));
    EXPECT_EQ(item->GetProperty(u"b")->GetValue(), CDataBox::OfReal(1.5));
    item->SetProperty(u"a", CDataBox::OfInteger(7));
    EXPECT_NE(XmlOf(*item).find(u"value=\"7\""), CString::npos);
}

TEST_F(ItemXml, OfPropertiesWithOneNameTheFirstCountsAndAllSurvive) {
    const CString xml =
        u"<item guid=\"g\" name=\"\" group=\"no\">"
        u"<property name=\"a\" value=\"1\"/><property name=\"a\" value=\"2\"/></item>";
    EXPECT_EQ(PropertyOf(Parse(xml), u"a"), u"1");
    EXPECT_EQ(Parse(xml)->GetProperties().size(), 2u);
    ExpectSurvives(xml);
}

class ItemText : public ItemXml, public testing::WithParamInterface<CString> {};

TEST_P(ItemText, ComesBackExactly) {
    const auto item = boost::make_shared<CCatalogItem>(GetParam().c_str(), GetParam().c_str(), 0);
    item->SetProperty(GetParam().c_str(), CDataBox::OfText(GetParam().c_str()));
    const auto read = Parse(XmlOf(*item));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->GetGUID(), GetParam());
    EXPECT_EQ(read->GetName(), GetParam());
    EXPECT_EQ(PropertyOf(read, GetParam().c_str()), GetParam());
}

TEST_P(ItemText, ComesBackExactlyThroughTheRecordsCodePage) {
    const auto item = Leaf(u"g", GetParam().c_str());
    item->SetProperty(u"a", CDataBox::OfText(GetParam().c_str()));
    const auto read = Parse(Platform::FromAnsi(Platform::ToAnsi(XmlOf(*item))));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->GetName(), GetParam());
    EXPECT_EQ(PropertyOf(read, u"a"), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Texts, ItemText,
                         testing::Values(u"\"double\" and 'single'", u"<a> & ]]> &amp; &#65;",
                                         u"a\nb\r\nc\rd\te", u"\t \n", u" blanks around ",
                                         u"čšžđć ČŠŽĐĆ", u"Ελλάδα Россия 日本",
                                         u"\U0001F6B0\U0001F600", u"\u007F\u0085\u00A0\u2028\uFEFF",
                                         u"\uD7FF\uE000\uFFFD", CString(10000, u'x') + u"&",
                                         CString(10000, u'ж')));

TEST_F(ItemXml, WhatOtherToolsPutIntoAnItemIsInItsText) {
    ExpectSurvives(
        u"<item guid=\"g\" name=\"n\" group=\"yes\" colour=\"red\" x:y=\"&quot;&#10;\">"
        u"<!-- before a -->"
        u"<property name=\"a\" value=\"1\" unit=\"mm\"/>"
        u"<property name=\"b\" value=\"2\"><!-- within --><range from=\"1\"/></property>"
        u"<?tool do it?><?tool?>"
        u"<extra><deep a=\"1\">text <b/> &lt;more&gt; <![CDATA[<raw>]]></deep>\n  <c/></extra>"
        u"<item guid=\"i\" name=\"\" group=\"no\" parent=\"g\" tag=\"t\"><own/></item>"
        u"<!-- between -->"
        u"<item guid=\"j\" name=\"\" group=\"no\" parent=\"g\"/>"
        u"<!-- last -->"
        u"</item>");
}

TEST_F(ItemXml, TextBesideElementsSurvivesWithItsBlanks) {
    ExpectSurvives(u"<item guid=\"g\" name=\"n\" group=\"no\"> a <b/>\n <property name=\"p\" "
                   u"value=\"\"> x <y/> </property> c </item>");
}

TEST_F(ItemXml, BlanksThatOnlyLayTheTextOutAreLeftOut) {
    const auto item = Parse(u"\n<item guid=\"g\" name=\"n\" group=\"no\">\n  <property name=\"p\" "
                            u"value=\"1\">\n  </property>\r\n\t<b/>\n</item>\n");
    EXPECT_EQ(XmlOf(*item), u"<item guid=\"g\" name=\"n\" group=\"no\"><property name=\"p\" "
                            u"value=\"1\"/><b/></item>");
}

TEST_F(ItemXml, WhatOtherToolsPutStaysWhenThePropertyChanges) {
    const auto item = Parse(u"<item guid=\"g\" name=\"n\" group=\"no\"><property name=\"p\" "
                            u"value=\"1\" unit=\"mm\"><a/></property></item>");
    item->SetProperty(u"p", CDataBox::OfInteger(2));
    EXPECT_EQ(XmlOf(*item),
              u"<item guid=\"g\" name=\"n\" group=\"no\"><property name=\"p\" type=\"integer\" "
              u"value=\"2\" unit=\"mm\"><a/></property></item>");
}

TEST_F(ItemXml, WhatOtherToolsPutTravelsWithACopyWithoutSubItems) {
    const auto item = Parse(u"<item guid=\"g\" name=\"n\" group=\"yes\"><!--a--><item guid=\"i\" "
                            u"name=\"\" group=\"no\"/><!--b--><item guid=\"j\" name=\"\" "
                            u"group=\"no\"/><!--c--></item>");
    CCatalogItem copy(*item);
    while (!copy.GetSubItems().empty())
        copy.RemoveSubItem(copy.GetSubItems().begin()->first);
    EXPECT_EQ(XmlOf(copy),
              u"<item guid=\"g\" name=\"n\" group=\"yes\"><!--a--><!--b--><!--c--></item>");
}

TEST_F(ItemXml, LettersBeyondTheCodePageAreReferencesAlsoInWhatOtherToolsPut) {
    EXPECT_EQ(XmlOf(*Leaf(u"g", u"š \U0001F6B0")),
              u"<item guid=\"g\" name=\"š &#128688;\" group=\"no\"/>");
    EXPECT_EQ(XmlOf(*Parse(u"<item guid=\"g\" name=\"\" group=\"no\"><a b=\"ж\">ж"
                           u"<![CDATA[<ж>]]><![CDATA[<š>]]></a></item>")),
              u"<item guid=\"g\" name=\"\" group=\"no\"><a b=\"&#1078;\">&#1078;"
              u"&lt;&#1078;&gt;<![CDATA[<š>]]></a></item>");
}

TEST_F(ItemXml, AParsedItemBelongsToNothing) {
    const auto catalog = boost::make_shared<CCatalog>();
    const auto item = m_manager->ParseCatalogItem(
        u"<item guid=\"g\" name=\"\" group=\"yes\" parent=\"p\"><item guid=\"i\" name=\"\" "
        u"group=\"no\"/></item>",
        catalog, {});
    ASSERT_TRUE(item);
    EXPECT_EQ(catalog->GetItemCount(), 0u);
    EXPECT_EQ(item->GetParentItemGuid(), u"p");
    EXPECT_EQ(TreeOf({item}), "g(i)");
    EXPECT_EQ(item->GetSubItems().begin()->second->GetParentItemGuid(), u"g");
    EXPECT_EQ(m_manager->GetProblem(), u"");
}

TEST_F(ItemXml, AGivenParentWinsOverTheTexts) {
    const auto item = m_manager->ParseCatalogItem(
        u"<item guid=\"g\" name=\"\" group=\"no\" parent=\"p\"/>", {}, Group(u"holder"));
    ASSERT_TRUE(item);
    EXPECT_EQ(item->GetParentItemGuid(), u"holder");
}

TEST_F(ItemXml, AnXmlDeclarationAndAByteOrderMarkAreAccepted) {
    EXPECT_TRUE(Parse(u"\uFEFF<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n"
                      u"<item guid=\"g\" name=\"\" group=\"no\"/>"));
}

TEST_F(ItemXml, AMissingGroupAttributeFollowsFromWhatTheItemHolds) {
    EXPECT_EQ(Parse(u"<item guid=\"g\" name=\"\"/>")->IsGroup(), 0);
    EXPECT_EQ(Parse(u"<item guid=\"g\"><item guid=\"i\"/></item>")->IsGroup(), 1);
    EXPECT_EQ(Parse(u"<item guid=\"g\" group=\"1\"/>")->IsGroup(), 1);
    EXPECT_EQ(Parse(u"<item guid=\"g\" group=\"false\"/>")->IsGroup(), 0);
}

TEST_F(ItemXml, WhatIsNoItemGivesNothingAndTheReason) {
    ExpectNoItem(nullptr, "no well-formed XML");
    ExpectNoItem(u"", "no well-formed XML");
    ExpectNoItem(u"text", "beside it");
    ExpectNoItem(u"<pipe guid=\"g\"/>", "\"pipe\" and should be \"item\"");
    ExpectNoItem(u"<item guid=\"g\"/><item guid=\"h\"/>", "only one element");
    ExpectNoItem(u"<item guid=\"g\"/> text", "only one element");
    ExpectNoItem(u"<item guid=\"g\"", "ends before");
    ExpectNoItem(u"<item guid=\"g\">", "ends before");
    ExpectNoItem(u"<item guid=\"g\"></itme>", "no well-formed XML");
    ExpectNoItem(u"<item name=\"Ventil\"/>", "item \"Ventil\" (): it has no GUID");
    ExpectNoItem(u"<item guid=\"g\" guid=\"h\"/>", "\"guid\" stands twice");
    ExpectNoItem(u"<item guid=\"g\" group=\"maybe\"/>", "group is \"maybe\"");
    ExpectNoItem(u"<item guid=\"g\"><item guid=\"g\"/></item>", "same GUID");
    ExpectNoItem(u"<item guid=\"g\"><item guid=\"h\" parent=\"x\"/></item>", "another item");
    ExpectNoItem(u"<!DOCTYPE item><item guid=\"g\"/>", "document type");
    ExpectNoItem(u"<item guid=\"g\" name=\"&#0;\"/>", "&#0;");
    ExpectNoItem(u"<item guid=\"g\" name=\"&#xD83D;\"/>", "&#xD83D;");
    ExpectNoItem(u"<item guid=\"g\" name=\"&#x110000;\"/>", "&#x110000;");
    ExpectNoItem(u"<item guid=\"g\" name=\"&#99999999999999999999;\"/>", "no character");
    ExpectNoItem(u"<item guid=\"g\" name=\"\u0001\"/>", "U+0001");
    ExpectNoItem(u"<item guid=\"g\" name=\"\xD83D\"/>", "half a character");
    ExpectNoItem(u"<item guid=\"g\"><?xml version=\"1.0\"?></item>", "no well-formed XML");
}

TEST_F(ItemXml, WhatXmlCannotCarryIsInTheTextAndRefusedByItsReader) {
    const auto item = Leaf(u"g", u"a\u0001\xD83D");
    EXPECT_NE(XmlOf(*item).find(u"a\u0001\xD83D"), CString::npos);
    EXPECT_FALSE(m_manager->ParseCatalogItem(XmlOf(*item).c_str(), {}, {}));
}

TEST_F(ItemXml, NestingWithoutEndIsRefusedWithoutHarm) {
    CString items, others = u"<item guid=\"g\">";
    for (int i = 0; i < 300; ++i)
        items += u"<item guid=\"" + CString(static_cast<std::size_t>(i) + 1, u'g') + u"\">";
    for (int i = 0; i < 300; ++i)
        items += u"</item>";
    ExpectNoItem(items.c_str(), "more than 200 levels");
    for (int i = 0; i < 200000; ++i)
        others += u"<a>";
    for (int i = 0; i < 200000; ++i)
        others += u"</a>";
    ExpectNoItem((others + u"</item>").c_str(), "more than 200 levels");
}

} // namespace
} // namespace ZEBGis::Data
