// SPDX-License-Identifier: MIT
// What the reader says of texts that are not well formed, and what it still sees of them.
#include "client/util/XmlDocument.h"

#include <gtest/gtest.h>

using namespace Repository;

namespace {

CString ProblemOf(const CString& text) {
    XmlDocument document;
    document.SetText(text.c_str());
    return document.GetResultText();
}

int CountElements(const char16_t* text) {
    XmlDocument document;
    document.SetText(text);
    int count = 0;
    while (document.FindElement(nullptr))
        ++count;
    return count;
}

CString Repeated(CStringView text, int count) {
    CString all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

} // namespace

TEST(XmlProblems, AWellFormedTextHasNone) {
    EXPECT_EQ(ProblemOf(u"<?xml version=\"1.0\"?><!DOCTYPE nci><!-- a -- > b -->\n"
                        u"<nci a=\"1\" b='2>'>t<x/><![CDATA[</y>]]></nci>\n"),
              u"");
}

TEST(XmlProblems, AnEmptyTextIsAnEmptyDocument) {
    EXPECT_EQ(ProblemOf(u""), u"Empty document");
    EXPECT_EQ(XmlDocument().GetResultText(), u"Empty document");
}

TEST(XmlProblems, ATextWithoutAnElementHasNoRoot) {
    EXPECT_EQ(ProblemOf(u"nci"), u"No root element");
    EXPECT_EQ(ProblemOf(u"<!-- nci --><?nci?>"), u"No root element");
    EXPECT_EQ(ProblemOf(u"<![CDATA[<nci>]]>"), u"No root element");
}

TEST(XmlProblems, ARootWithASiblingIsReportedAndBothAreSeen) {
    EXPECT_EQ(ProblemOf(u"<a/><b/>"), u"Root element has sibling");
    EXPECT_EQ(CountElements(u"<a/><b/>"), 2);
}

TEST(XmlProblems, ACharacterThatBeginsNoTagIsNamedByItsOwnOffset) {
    EXPECT_EQ(ProblemOf(u"<a>1 < 2</a>"), u"Incorrect tag name character at offset 6");
    EXPECT_EQ(ProblemOf(u"<1/>"), u"Incorrect tag name character at offset 1");
    EXPECT_EQ(ProblemOf(u"<<a/>"), u"Incorrect tag name character at offset 1");
    EXPECT_EQ(CountElements(u"<<a/>"), 1);
}

TEST(XmlProblems, AnExclamationMarkWithNothingKnownBehindItIsAnIncorrectTag) {
    EXPECT_EQ(ProblemOf(u"<a><!ELEMENT x></a>"), u"Incorrect ! tag at offset 3");
    EXPECT_EQ(ProblemOf(u"<a><![cdata[x]]></a>"), u"Incorrect ! tag at offset 3");
    EXPECT_EQ(ProblemOf(u"<a/><!doctype x>"), u"Incorrect ! tag at offset 4");
    EXPECT_EQ(ProblemOf(u"<a/><!"), u"Incorrect ! tag at offset 4");
}

TEST(XmlProblems, ACommentNeedsItsSecondDash) {
    EXPECT_EQ(ProblemOf(u"<a><!- x --></a>"), u"Incorrect comment tag at offset 3");
    EXPECT_EQ(ProblemOf(u"<a/><!-"), u"Incorrect comment tag at offset 4");
}

TEST(XmlProblems, ANodeThatTheTextCutsIsNamedByItsKindAndStart) {
    EXPECT_EQ(ProblemOf(u"<a/><b"), u"Element tag at offset 4 unterminated");
    EXPECT_EQ(ProblemOf(u"<a/><b c=\"1"), u"Element tag at offset 4 unterminated");
    EXPECT_EQ(ProblemOf(u"<a/><"), u"Element tag at offset 4 unterminated");
    EXPECT_EQ(ProblemOf(u"<a></a"), u"Element end tag at offset 3 unterminated");
    EXPECT_EQ(ProblemOf(u"<a/><!-- -> -"), u"Comment at offset 4 unterminated");
    EXPECT_EQ(ProblemOf(u"<a/><!-->"), u"Comment at offset 4 unterminated");
    EXPECT_EQ(ProblemOf(u"<a><![CDATA[ ]] </a>"), u"CDATA Section at offset 3 unterminated");
    EXPECT_EQ(ProblemOf(u"<?xml >"), u"Processing instruction at offset 0 unterminated");
    EXPECT_EQ(ProblemOf(u"<!DOCTYPE a"), u"Doctype at offset 0 unterminated");
}

TEST(XmlProblems, AnEndTagThatMatchesNoOpenElementIsIgnored) {
    EXPECT_EQ(ProblemOf(u"<a></b></a>"), u"No start tag for end tag 'b' at offset 3");
    EXPECT_EQ(ProblemOf(u"</a><b/>"), u"No start tag for end tag 'a' at offset 0");
    EXPECT_EQ(ProblemOf(u"<a/></a>"), u"No start tag for end tag 'a' at offset 4");
    // "a" was opened but is closed again, so it counts as little as one never opened.
    EXPECT_EQ(CountElements(u"<r></x><a></a></a><b/></r>"), 1);
    EXPECT_EQ(CountElements(u"</x><a></a></a><b/>"), 2);
}

TEST(XmlProblems, AnEndTagOfAnOuterElementNamesBothTags) {
    EXPECT_EQ(ProblemOf(u"<a><b></a>"),
              u"End tag 'a' at offset 6 does not match start tag 'b' at offset 3");
    EXPECT_EQ(ProblemOf(u"<a><b></ab></a>"), u"No start tag for end tag 'ab' at offset 6");
    EXPECT_EQ(ProblemOf(u"<ab><b></a></b></ab>"), u"No start tag for end tag 'a' at offset 7");
}

TEST(XmlProblems, AnElementThatTheTextLeavesOpenIsNotEnded) {
    EXPECT_EQ(ProblemOf(u"<a>text"), u"Element 'a' at offset 0 not ended");
    // The innermost one is closed first.
    EXPECT_EQ(ProblemOf(u"<a><b>"), u"Element 'b' at offset 3 not ended");
}

TEST(XmlProblems, TheFirstProblemIsTheOneReported) {
    EXPECT_EQ(ProblemOf(u"<a></x></y><b>"), u"No start tag for end tag 'x' at offset 3");
    // Also before what is found out at the end.
    EXPECT_EQ(ProblemOf(u"<a></x></a><b/>"), u"No start tag for end tag 'x' at offset 3");
    EXPECT_EQ(ProblemOf(u"<1"), u"Incorrect tag name character at offset 1");
}

TEST(XmlProblems, ACutStartTagIsNoElement) {
    XmlDocument document;
    document.SetText(u"<nci catId=\"1\" content=\"QU");
    EXPECT_EQ(document.FindElement(u"nci"), 0);
}

TEST(XmlProblems, AnElementWithoutItsEndTagIsSeen) {
    XmlDocument document;
    document.SetText(u"<nci catId=\"1\">");
    EXPECT_NE(document.FindElement(u"nci"), 0);
    EXPECT_EQ(document.GetAttribute(u"catId"), u"1");
}

TEST(XmlProblems, AnEndTagWithoutANameMatchesNothing) {
    EXPECT_EQ(ProblemOf(u"<a></></a>"), u"No start tag for end tag '' at offset 3");
}

TEST(XmlProblems, DeepNestingNeitherOverflowsNorTakesLong) {
    constexpr int kDepth = 500'000;
    EXPECT_EQ(ProblemOf(Repeated(u"<a>", kDepth) + Repeated(u"</a>", kDepth)), u"");
    EXPECT_EQ(ProblemOf(Repeated(u"<a>", kDepth)), u"Element 'a' at offset 1499997 not ended");
}

// Each of these would take hours if every end tag were compared with every open element,
// or with the whole of a long name.
TEST(XmlProblems, HostileEndTagsDoNotTakeLong) {
    constexpr int kMany = 300'000;
    EXPECT_EQ(ProblemOf(Repeated(u"<a>", kMany) + Repeated(u"</b>", kMany)),
              u"No start tag for end tag 'b' at offset 900000");
    EXPECT_EQ(ProblemOf(u"<" + CString(kMany, u'a') + u">" + Repeated(u"</b>", kMany)),
              u"No start tag for end tag 'b' at offset 300002");
}

// The name is as long as from the name of one open element to the end of that of another.
TEST(XmlProblems, AHostileNameDoesNotTakeLongWhereCaseIsIgnored) {
    constexpr int kMany = 100'000;
    const CString name(kMany, u'a');
    XmlDocument document;
    document.SetOptions(XmlDocument::kIgnoreCase);
    document.SetText((u"<" + name + u">" + Repeated(u"<b>", kMany) + u"</" + name + u">").c_str());
    EXPECT_TRUE(document.GetResultText().ends_with(u"' at offset 399999"));
}
