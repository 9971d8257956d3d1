// SPDX-License-Identifier: MIT
#include "ZEBXGisCore/XmlFile.h"

#include <cstring>
#include <gtest/gtest.h>

namespace ZEBGis {
namespace {

using Kind = XmlTextFault::Kind;

TEST(XmlTextFault, AnOrdinaryTextHasNone) {
    for (const char* text :
         {"", "<a/>", "<a b='\"' c=\"'\">&#65;&#x10FFFF;&lt;&no;&#;&#x;&#abc;</a>",
          "<!-- ' <a b=\" --><a/>", "<a><![CDATA[ ' < ]]></a>", "<?p '\"?><a/>", "<a b='>'/>"})
        EXPECT_FALSE(FindXmlTextFault(text)) << text;
}

TEST(XmlTextFault, AReferenceThatStandsForNothingIsUnreadable) {
    for (const char* reference :
         {"&#0;", "&#x0;", "&#xD800;", "&#xDFFF;", "&#x110000;", "&#99999999999999999999;"}) {
        const auto fault = FindXmlTextFault(std::string("<a>\n") + reference + "</a>");
        ASSERT_TRUE(fault) << reference;
        EXPECT_EQ(fault->kind, Kind::Unreadable);
        EXPECT_EQ(fault->offset, 4U);
        EXPECT_NE(fault->reason.find(CString(reference, reference + std::strlen(reference))),
                  CString::npos);
    }
}

TEST(XmlTextFault, AReferenceToNoCharacterOfXmlIsForeign) {
    for (const char* reference : {"&#1;", "&#x1F;", "&#xFFFE;"}) {
        const auto fault = FindXmlTextFault(reference);
        ASSERT_TRUE(fault) << reference;
        EXPECT_EQ(fault->kind, Kind::ForeignCharacter);
    }
}

TEST(XmlTextFault, AValueThatRunsIntoTheNextElementIsUnreadable) {
    const auto fault = FindXmlTextFault("<a b=\"1>\n<c d=\"2\"/></a>");
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->kind, Kind::Unreadable);
    EXPECT_EQ(fault->offset, 9U);
}

TEST(XmlTextFault, ADocumentTypeIsUnreadable) {
    const auto fault = FindXmlTextFault("<?xml version='1.0'?><!DOCTYPE a><a/>");
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->offset, 21U);
}

TEST(XmlTextFault, TheWorseOneComesBeforeTheEarlier) {
    EXPECT_EQ(FindXmlTextFault("<a>&#1;&#0;</a>")->offset, 7U);
    EXPECT_EQ(FindXmlTextFault("<a>&#1;<b c='</a>")->kind, Kind::Unreadable);
    EXPECT_EQ(FindXmlTextFault("<a>&#1;&#2;</a>")->offset, 3U);
}

TEST(XmlLine, IsCountedFromOne) {
    EXPECT_EQ(XmlLineAt("a\nb\n", 0), 1);
    EXPECT_EQ(XmlLineAt("a\nb\n", 1), 1);
    EXPECT_EQ(XmlLineAt("a\nb\n", 2), 2);
    EXPECT_EQ(XmlLineAt("a\nb\n", 99), 3);
    EXPECT_EQ(XmlLineAt("", 0), 1);
}

} // namespace
} // namespace ZEBGis
