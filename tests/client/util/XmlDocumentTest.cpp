// SPDX-License-Identifier: MIT
#include "client/util/XmlDocument.h"

#include <gtest/gtest.h>

using namespace Repository;

namespace {

// The value that a lone element "nci" has for "catId".
CString CatIdOf(const char16_t* text) {
    XmlDocument document;
    document.SetText(text);
    EXPECT_NE(document.FindElement(u"nci"), 0);
    return document.GetAttribute(u"catId");
}

CString ValueOf(const char16_t* text, const char16_t* name) {
    XmlDocument document;
    document.SetText(text);
    EXPECT_NE(document.FindElement(nullptr), 0);
    return document.GetAttribute(name);
}

bool Finds(const char16_t* text, const char16_t* name) {
    XmlDocument document;
    document.SetText(text);
    return document.FindElement(name) != 0;
}

} // namespace

TEST(XmlDocument, ANewDocumentAndANullTextAreEmpty) {
    XmlDocument document;
    EXPECT_EQ(document.FindElement(u"nci"), 0);
    document.SetText(u"<nci/>");
    document.SetText(nullptr);
    EXPECT_EQ(document.GetResultText(), u"Empty document");
    EXPECT_EQ(document.FindElement(u"nci"), 0);
}

TEST(XmlDocument, AnEmptyTextHasNoElement) {
    EXPECT_FALSE(Finds(u"", u"nci"));
    EXPECT_FALSE(Finds(u"", nullptr));
}

TEST(XmlDocument, AnAttributeIsReadDecodedInEitherQuotes) {
    EXPECT_EQ(CatIdOf(u"<nci catId=\"a&amp;b\"></nci>"), u"a&b");
    EXPECT_EQ(CatIdOf(u"<nci catId='a&amp;b'></nci>"), u"a&b");
    EXPECT_EQ(CatIdOf(u"<nci catId='say \"x\"'/>"), u"say \"x\"");
}

TEST(XmlDocument, AnUnquotedValueBeforeTheEndOfTheTagKeepsTheSlash) {
    EXPECT_EQ(CatIdOf(u"<nci catId=7/>"), u"7/");
    EXPECT_EQ(CatIdOf(u"<nci catId=a/b x=1>"), u"a/b");
    EXPECT_EQ(CatIdOf(u"<nci catId=7>"), u"7");
    // The tag ends the element all the same.
    XmlDocument document;
    document.SetText(u"<nci catId=7/>");
    EXPECT_EQ(document.GetResultText(), u"");
}

TEST(XmlDocument, NamesAreFoundWholeOnly) {
    EXPECT_TRUE(Finds(u"<nci/>", u"nci"));
    EXPECT_FALSE(Finds(u"<nci/>", u"nc"));
    EXPECT_FALSE(Finds(u"<ncis/>", u"nci"));
    EXPECT_FALSE(Finds(u"<nci/>", u"ncis"));
    EXPECT_FALSE(Finds(u"<nci/>", u"NCI"));
}

TEST(XmlDocument, ANameMayGoOnWithACharacterThatEndsIt) {
    for (const char16_t* asked : {u"nci x", u"nci=x", u"nci/x", u"nci[1]", u"nci]"})
        EXPECT_TRUE(Finds(u"<nci/>", asked));
    EXPECT_FALSE(Finds(u"<nci/>", u"nci\tx"));
    EXPECT_FALSE(Finds(u"<nci/>", u"nci>"));
}

TEST(XmlDocument, ANullOrEmptyNameTakesWhateverComesNext) {
    EXPECT_TRUE(Finds(u"<x/>", nullptr));
    EXPECT_TRUE(Finds(u"<x/>", u""));
}

TEST(XmlDocument, AmongTwoTopLevelElementsTheFirstOfTheNameIsFound) {
    XmlDocument document;
    document.SetText(u"<x/><nci catId='1'/><nci catId='2'/>");
    ASSERT_NE(document.FindElement(u"nci"), 0);
    EXPECT_EQ(document.GetAttribute(u"catId"), u"1");
    EXPECT_EQ(document.GetResultText(), u"Root element has sibling");
}

TEST(XmlDocument, TheNextSearchGoesOnBehindTheCurrentElement) {
    XmlDocument document;
    document.SetText(u"<nci catId='1'/><x/><nci catId='2'/>");
    ASSERT_NE(document.FindElement(u"nci"), 0);
    ASSERT_NE(document.FindElement(u"nci"), 0);
    EXPECT_EQ(document.GetAttribute(u"catId"), u"2");
}

TEST(XmlDocument, ASearchThatFindsNothingLeavesTheCursor) {
    XmlDocument document;
    document.SetText(u"<nci catId='1'/><x/>");
    ASSERT_NE(document.FindElement(u"nci"), 0);
    EXPECT_EQ(document.FindElement(u"nci"), 0);
    EXPECT_EQ(document.GetAttribute(u"catId"), u"1");
    EXPECT_NE(document.FindElement(u"x"), 0);
    EXPECT_EQ(document.FindElement(nullptr), 0);
}

TEST(XmlDocument, ElementsInsideOthersAreNotSeen) {
    EXPECT_FALSE(Finds(u"<x><nci/></x>", u"nci"));
    EXPECT_TRUE(Finds(u"<x><nci/></x><nci/>", u"nci"));
}

TEST(XmlDocument, ElementsInCommentsAndSectionsAreNoElements) {
    EXPECT_FALSE(Finds(u"<!-- <nci/> --><![CDATA[<nci/>]]><?x <nci/>?><x/>", u"nci"));
    EXPECT_TRUE(Finds(u"<?xml version='1.0'?><!-- x --><nci/>", u"nci"));
    // A document type ends at its first ">".
    EXPECT_FALSE(Finds(u"<!DOCTYPE x [<nci/>", u"nci"));
    EXPECT_TRUE(Finds(u"<!DOCTYPE x [<!ELEMENT x>]><nci/>", u"nci"));
}

TEST(XmlDocument, TheTextBehindTheFirstElementIsNotInItsWay) {
    XmlDocument document;
    document.SetText(u"<nci catId=\"1\" ></nci></nci>");
    EXPECT_EQ(document.GetResultText(), u"No start tag for end tag 'nci' at offset 22");
    EXPECT_NE(document.FindElement(u"nci"), 0);
}

TEST(XmlDocument, AnAbsentAttributeReadsAsAnEmptyOne) {
    EXPECT_EQ(CatIdOf(u"<nci/>"), u"");
    EXPECT_EQ(CatIdOf(u"<nci x='1'/>"), u"");
    EXPECT_EQ(CatIdOf(u"<nci catId=\"\"/>"), u"");
    EXPECT_EQ(CatIdOf(u"<nci catId/>"), u"");
    EXPECT_EQ(CatIdOf(u"<nci catId=>"), u"");
    EXPECT_EQ(ValueOf(u"<nci x='1'/>", nullptr), u"");
    EXPECT_EQ(ValueOf(u"<nci x='1'/>", u""), u"");
}

TEST(XmlDocument, WithoutACurrentElementEveryAttributeIsEmpty) {
    XmlDocument document;
    document.SetText(u"<nci catId='1'/>");
    EXPECT_EQ(document.GetAttribute(u"catId"), u"");
}

TEST(XmlDocument, AttributeNamesAreComparedAsElementNamesAre) {
    EXPECT_EQ(ValueOf(u"<nci catId='1' cat='2' catIds='3'/>", u"cat"), u"2");
    EXPECT_EQ(ValueOf(u"<nci catId='1'/>", u"catid"), u"");
    EXPECT_EQ(ValueOf(u"<nci catId='1'/>", u"catId=x"), u"1");
}

TEST(XmlDocument, TheFirstAttributeOfANameCounts) {
    EXPECT_EQ(CatIdOf(u"<nci catId='1' catId='2'/>"), u"1");
}

TEST(XmlDocument, TheTagsOwnNameIsNoAttribute) {
    EXPECT_EQ(ValueOf(u"<nci>", u"nci"), u"");
    EXPECT_EQ(ValueOf(u"<nci nci='1'>", u"nci"), u"1");
}

TEST(XmlDocument, BlanksMayStandAroundTheEqualsSignAndBetweenLines) {
    EXPECT_EQ(CatIdOf(u"<nci\r\n\tcatId =\t\"1\"\n>"), u"1");
    EXPECT_EQ(CatIdOf(u"<nci x=\n'0' catId= '1'>"), u"1");
}

TEST(XmlDocument, NothingIsReadBehindWhatEndsTheTag) {
    EXPECT_EQ(CatIdOf(u"<nci / catId='1'>"), u"");
    EXPECT_EQ(CatIdOf(u"<nci ? catId='1'>"), u"");
    EXPECT_EQ(CatIdOf(u"<nci></nci> catId='1'"), u"");
}

TEST(XmlDocument, QuotesHideWhatWouldEndTheTag) {
    EXPECT_EQ(CatIdOf(u"<nci x='/>?=' catId='1'/>"), u"1");
    EXPECT_EQ(ValueOf(u"<nci x='/>?=' catId='1'/>", u"x"), u"/>?=");
    EXPECT_EQ(ValueOf(u"<nci x=\"it's\" catId='1'/>", u"x"), u"it's");
}

TEST(XmlDocument, AQuoteInsideAnUnquotedTokenIsACharacterLikeOthers) {
    EXPECT_EQ(ValueOf(u"<nci x=a\"b y='1'>", u"x"), u"a\"b");
    EXPECT_EQ(ValueOf(u"<nci x=a\"b y='1'>", u"y"), u"1");
}

TEST(XmlDocument, AnEmptyTokenCountsAsOneCharacter) {
    EXPECT_EQ(ValueOf(u"<nci =x catId='1'>", u"catId"), u"1");
    EXPECT_EQ(ValueOf(u"<nci ='x' catId='1'>", u"catId"), u"1");
    EXPECT_EQ(ValueOf(u"<nci = catId='1'>", u"catId"), u"1"); // a name, not a value's "="
}

TEST(XmlDocument, NamesMayHoldLettersBeyondAscii) {
    EXPECT_EQ(ValueOf(u"<čvor naziv='Š'/>", u"naziv"), u"Š");
    EXPECT_TRUE(Finds(u"<čvor/>", u"čvor"));
    EXPECT_TRUE(Finds(u"<_a:b-1.2/>", u"_a:b-1.2"));
}

TEST(XmlDocument, CaseIsIgnoredOnlyOnRequest) {
    XmlDocument document;
    document.SetOptions(XmlDocument::kIgnoreCase);
    document.SetText(u"<ČVOR CatId='1'><b></B></čvor>");
    EXPECT_EQ(document.GetResultText(), u"");
    EXPECT_NE(document.FindElement(u"čvor"), 0);
    EXPECT_EQ(document.GetAttribute(u"CATID"), u"1");
    document.SetText(u"<a><b></A>");
    EXPECT_EQ(document.GetResultText(),
              u"End tag 'A' at offset 6 does not match start tag 'b' at offset 3");
    document.SetOptions(0);
    EXPECT_EQ(document.FindElement(u"A"), 0);
}

TEST(XmlDocument, SettingATextAgainStartsAnew) {
    XmlDocument document;
    document.SetText(u"<x></y><nci catId='1'>");
    ASSERT_NE(document.FindElement(u"x"), 0);
    document.SetText(u"<nci catId='2'/>");
    EXPECT_EQ(document.GetResultText(), u"");
    EXPECT_EQ(document.GetAttribute(u"catId"), u"");
    ASSERT_NE(document.FindElement(u"nci"), 0);
    EXPECT_EQ(document.GetAttribute(u"catId"), u"2");
}

TEST(XmlDocument, AnAttributeOfMegabytesIsReadWhole) {
    for (const std::size_t size : {5'000'000u, 5'000'001u, 5'000'002u, 5'000'003u}) {
        const CString value(size, u'A');
        const CString text = u"<nci content=\"" + value + u"\" catId=\"1\" ></nci>";
        EXPECT_EQ(CatIdOf(text.c_str()), u"1");
        EXPECT_EQ(ValueOf(text.c_str(), u"content"), value);
    }
}
