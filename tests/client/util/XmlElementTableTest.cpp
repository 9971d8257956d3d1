// SPDX-License-Identifier: MIT
#include "client/util/XmlDocument.h"

#include <gtest/gtest.h>

using namespace Repository;

namespace {

XmlElement At(std::uint32_t offset) {
    XmlElement element{};
    element.offset = offset;
    return element;
}

} // namespace

TEST(XmlElementTable, EntryZeroIsTheDocument) {
    XmlElementTable table;
    table.Reset(8);
    EXPECT_EQ(table.Size(), 1u);
    EXPECT_EQ(table[0].firstChild, 0u);
    EXPECT_EQ(table.Add(At(5)), 1u);
}

TEST(XmlElementTable, GrowingMovesNoEntry) {
    XmlElementTable table;
    table.Reset(8);
    table.Add(At(77));
    const XmlElement* first = &table[1];
    while (table.Size() < 3 * 65536)
        table.Add(At(table.Size()));
    EXPECT_EQ(&table[1], first);
    EXPECT_EQ(first->offset, 77u);
    EXPECT_EQ(table[65535].offset, 65535u);
    EXPECT_EQ(table[65536].offset, 65536u);
    EXPECT_EQ(table[2 * 65536 + 1].offset, 2u * 65536 + 1);
}

TEST(XmlElementTable, ResettingDropsWhatWasThere) {
    XmlElementTable table;
    table.Reset(200'000);
    table.Add(At(77));
    table.Reset(8);
    EXPECT_EQ(table.Size(), 1u);
}

TEST(XmlElements, PositionsAndLinksDescribeTheText) {
    //                    0  3  6    11   16    22
    const CString text = u"<r><a x='1'/><b>t</b></r>";
    XmlDocument document;
    document.SetText(text.c_str());
    const XmlElementTable& elements = document.GetElements();
    ASSERT_EQ(elements.Size(), 4u);

    EXPECT_EQ(elements[0].length, text.size());
    EXPECT_EQ(elements[0].firstChild, 1u);
    EXPECT_EQ(elements[1].offset, 0u);
    EXPECT_EQ(elements[1].length, text.size());
    EXPECT_EQ(elements[1].startTagLength, 3u);
    EXPECT_EQ(elements[1].endTagLength, 4u);
    EXPECT_EQ(elements[1].parent, 0u);
    EXPECT_EQ(elements[1].firstChild, 2u);
    EXPECT_EQ(elements[1].nextSibling, 0u);

    EXPECT_EQ(elements[2].offset, text.find(u"<a"));
    EXPECT_EQ(elements[2].length, 10u);
    EXPECT_EQ(elements[2].flags, XmlElement::kNoEndTag);
    EXPECT_EQ(elements[2].parent, 1u);
    EXPECT_EQ(elements[2].nextSibling, 3u);
    EXPECT_EQ(elements[2].previousSibling, 0u);

    EXPECT_EQ(elements[3].offset, text.find(u"<b"));
    EXPECT_EQ(elements[3].length, 8u);
    EXPECT_EQ(elements[3].flags, 0u);
    EXPECT_EQ(elements[3].previousSibling, 2u);
    EXPECT_EQ(elements[3].nextSibling, 0u);
}

TEST(XmlElements, AFirstChildHasNoSiblingBeforeItEvenIfItsParentHas) {
    XmlDocument document;
    document.SetText(u"<r><a/><b><c/><d/></b></r>");
    const XmlElementTable& elements = document.GetElements();
    ASSERT_EQ(elements.Size(), 6u);
    EXPECT_EQ(elements[2].nextSibling, 3u);
    EXPECT_EQ(elements[3].firstChild, 4u);
    EXPECT_EQ(elements[4].parent, 3u);
    EXPECT_EQ(elements[4].previousSibling, 0u);
    EXPECT_EQ(elements[4].nextSibling, 5u);
    EXPECT_EQ(elements[5].previousSibling, 4u);
}

TEST(XmlElements, AnElementThatWasNotEndedIsMarkedAndEndsWhereItWasClosed) {
    XmlDocument document;
    document.SetText(u"<a><b></a><c>");
    const XmlElementTable& elements = document.GetElements();
    ASSERT_EQ(elements.Size(), 4u);
    EXPECT_EQ(elements[1].flags, 0u);
    EXPECT_EQ(elements[2].flags, XmlElement::kNotEnded);
    EXPECT_EQ(elements[2].length, 3u);
    EXPECT_EQ(elements[3].flags, XmlElement::kNotEnded);
    EXPECT_EQ(elements[3].length, 3u);
    EXPECT_EQ(elements[3].previousSibling, 1u);
}

TEST(XmlElements, AnOuterEndTagClosesEveryElementInside) {
    XmlDocument document;
    document.SetText(u"<r><a><b><c></a><d/></r>");
    const XmlElementTable& elements = document.GetElements();
    ASSERT_EQ(elements.Size(), 6u);
    EXPECT_EQ(elements[3].flags, XmlElement::kNotEnded);
    EXPECT_EQ(elements[4].flags, XmlElement::kNotEnded);
    EXPECT_EQ(elements[5].parent, 1u);
    EXPECT_EQ(elements[5].previousSibling, 2u);
    EXPECT_EQ(elements[2].nextSibling, 5u);
}

TEST(XmlElements, TagLengthsSaturate) {
    const CString name(2000, u'n');
    const CString text = u"<" + name + u" x='" + CString(5'000'000, u'x') + u"'></" + name + u">";
    XmlDocument document;
    document.SetText(text.c_str());
    EXPECT_EQ(document.GetElements()[1].startTagLength, (1u << 22) - 1);
    EXPECT_EQ(document.GetElements()[1].endTagLength, (1u << 10) - 1);
    EXPECT_EQ(document.GetElements()[1].length, text.size());
}

TEST(XmlElements, MoreThanOneSegmentOfSiblingsIsWalkedInOrder) {
    constexpr int kCount = 150'000;
    CString text = u"<r>";
    for (int i = 0; i < kCount; ++i)
        text += u"<e/>";
    text += u"</r>";
    XmlDocument document;
    document.SetText(text.c_str());
    ASSERT_EQ(document.GetElements().Size(), kCount + 2u);
    std::uint32_t element = document.GetElements()[1].firstChild;
    int count = 0;
    std::uint32_t offset = 0;
    for (; element != 0; element = document.GetElements()[element].nextSibling, ++count) {
        ASSERT_GT(document.GetElements()[element].offset, offset);
        offset = document.GetElements()[element].offset;
    }
    EXPECT_EQ(count, kCount);
    EXPECT_EQ(document.GetResultText(), u"");
}
