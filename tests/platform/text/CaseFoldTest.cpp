// SPDX-License-Identifier: MIT
#include "platform/text/CaseFold.h"

#include <gtest/gtest.h>

using Platform::FoldCase;

TEST(CaseFold, CapitalsBecomeSmallLetters) {
    EXPECT_EQ(FoldCase(u"002_NODE (Copy).DWG"), u"002_node (copy).dwg");
    EXPECT_EQ(FoldCase(u"ČĆŽŠĐ ŁŐŰŘ"), u"čćžšđ łőűř");
    EXPECT_EQ(FoldCase(u"ΑΒΓ АБВ"), u"αβγ абв");
    EXPECT_EQ(FoldCase(u"\U00010400"), u"\U00010428");
    EXPECT_EQ(FoldCase(u""), u"");
}

TEST(CaseFold, WhatHasNoCaseStays) {
    EXPECT_EQ(FoldCase(u"[@`{ 0-9 ß × ÷ 漢"), u"[@`{ 0-9 ß × ÷ 漢");
    EXPECT_EQ(FoldCase(CString{0xD83D, u'A', 0xDC5C}), (CString{0xD83D, u'a', 0xDC5C}));
}

TEST(CaseFold, AnIIsAnIInEveryLocale) {
    EXPECT_EQ(FoldCase(u"I"), u"i");
    EXPECT_EQ(FoldCase(u"İ"), u"i");
    EXPECT_EQ(FoldCase(u"ı"), u"ı");
}

TEST(CaseFold, OneCharacterStaysOneCharacter) {
    EXPECT_EQ(FoldCase(u"ẞ"), u"ß");
    EXPECT_EQ(FoldCase(u"ß"), u"ß");
    EXPECT_EQ(FoldCase(u"ΣΑΣ"), u"σασ");
    for (std::uint32_t codePoint = 1; codePoint <= 0x10FFFF; ++codePoint) {
        const CString text = codePoint < 0x10000
                                 ? CString(1, static_cast<char16_t>(codePoint))
                                 : CString{static_cast<char16_t>(0xD7C0 + (codePoint >> 10)),
                                           static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF))};
        const CString folded = FoldCase(text);
        const bool isStable = folded.size() == text.size() && FoldCase(folded) == folded;
        if (!isStable)
            ADD_FAILURE() << codePoint;
    }
}
