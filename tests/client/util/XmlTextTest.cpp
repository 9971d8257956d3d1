// SPDX-License-Identifier: MIT
#include "client/util/XmlText.h"

#include <gtest/gtest.h>

using namespace Repository;

TEST(XmlText, TheFiveEntitiesAreDecoded) {
    EXPECT_EQ(DecodeXmlText(u"&lt;&amp;&gt;&apos;&quot;"), u"<&>'\"");
}

TEST(XmlText, AnEntityIsDecodedOnce) {
    EXPECT_EQ(DecodeXmlText(u"&amp;lt;"), u"&lt;");
}

TEST(XmlText, OtherAmpersandsStayAsWritten) {
    EXPECT_EQ(DecodeXmlText(u"a & b &foo; &LT; &amp &;"), u"a & b &foo; &LT; &amp &;");
    EXPECT_EQ(DecodeXmlText(u"&&lt;&"), u"&<&");
}

TEST(XmlText, AnEntityHasToLieInsideTheValue) {
    const CStringView text = u"&lt;";
    EXPECT_EQ(DecodeXmlText(text.substr(0, 3)), u"&lt");
    EXPECT_EQ(DecodeXmlText(CStringView(u"&#65;").substr(0, 4)), u"&#65");
    EXPECT_EQ(DecodeXmlText(u"&"), u"&");
    EXPECT_EQ(DecodeXmlText(u"&#"), u"&#");
}

TEST(XmlText, ReferencesAreDecodedInBothBases) {
    EXPECT_EQ(DecodeXmlText(u"&#65;&#x41;"), u"AA");
    EXPECT_EQ(DecodeXmlText(u"&#x10D;&#269;&#x10d;"), u"ččč");
    EXPECT_EQ(DecodeXmlText(u"&#xFFFD;"), u"\uFFFD");
}

TEST(XmlText, AReferencesSemicolonIsOneOfTheNextSevenCharacters) {
    EXPECT_EQ(DecodeXmlText(u"&#00065;"), u"A");
    EXPECT_EQ(DecodeXmlText(u"&#000065;"), u"&#000065;");
    EXPECT_EQ(DecodeXmlText(u"&#x0041;"), u"A");
    EXPECT_EQ(DecodeXmlText(u"&#x00041;"), u"&#x00041;");
}

TEST(XmlText, AReferenceBeyondSixteenBitsIsOneCharacterOfTwoUnits) {
    EXPECT_EQ(DecodeXmlText(u"&#66376;"), u"\U00010348");
}

TEST(XmlText, WhatIsNoNumberIsNoReference) {
    EXPECT_EQ(DecodeXmlText(u"&#;&#x;&#6a;&#xg;&#X41;&# 65;&#-65;"),
              u"&#;&#x;&#6a;&#xg;&#X41;&# 65;&#-65;");
}

TEST(XmlText, ANameRunsToABlankOrMarkupCharacter) {
    for (const CStringView end :
         {u" ", u"\t", u"\r", u"\n", u"<", u">", u"=", u"\\", u"/", u"?", u"!"})
        EXPECT_EQ(XmlNameAt(u"nci" + CString(end) + u"x", 0), u"nci");
    EXPECT_EQ(XmlNameAt(u"nci", 0), u"nci");
    EXPECT_EQ(XmlNameAt(u"< \tnci>", 1), u"nci");
}

TEST(XmlText, ANameHasAtLeastOneCharacterUnlessTheTextEnds) {
    EXPECT_EQ(XmlNameAt(u">x", 0), u">");
    EXPECT_EQ(XmlNameAt(u"", 0), u"");
    EXPECT_EQ(XmlNameAt(u"  ", 0), u"");
}

TEST(XmlText, LettersTheUnderlineAndTheColonBeginNames) {
    for (const char16_t character : CStringView(u"azAZ_:čŽ水"))
        EXPECT_TRUE(IsXmlNameStart(character));
    for (const char16_t character : CStringView(u"@[`{09-. <>/\x7F"))
        EXPECT_FALSE(IsXmlNameStart(character));
}

TEST(XmlText, ACharacterIsFoundAtEveryPlaceOfEveryLength) {
    for (std::size_t length = 0; length < 20; ++length)
        for (std::size_t place = 0; place <= length; ++place)
            for (const char16_t other : {u'!', u'#', u'\x0122', u'\x2200', u'\xFF22', u'\x0021'}) {
                CString text(length, other);
                if (place < length)
                    text[place] = u'"';
                EXPECT_EQ(FindCharacter(text, u'"', 0), place);
                EXPECT_EQ(FindCharacter(text, u'"', place), place);
                if (place < length) {
                    EXPECT_EQ(FindCharacter(text, u'"', place + 1), length);
                }
            }
}
