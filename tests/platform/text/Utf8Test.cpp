// SPDX-License-Identifier: MIT
#include "platform/text/Utf8.h"

#include <random>

#include <gtest/gtest.h>

using Platform::FromUtf8;
using Platform::IsWellFormed;
using Platform::ToDisplay;
using Platform::ToUtf8;

namespace {

constexpr std::uint32_t kHighestCodePoint = 0x10FFFF;

bool IsSurrogateValue(std::uint32_t codePoint) {
    return codePoint >= 0xD800 && codePoint < 0xE000;
}

// Written out once more from the definition of UTF-8.
std::string Utf8Of(std::uint32_t codePoint) {
    const auto tail = [&](int shift) {
        return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80)
        return {static_cast<char>(codePoint)};
    if (codePoint < 0x800)
        return {static_cast<char>(0xC0 | (codePoint >> 6)), tail(0)};
    if (codePoint < 0x10000)
        return {static_cast<char>(0xE0 | (codePoint >> 12)), tail(6), tail(0)};
    return {static_cast<char>(0xF0 | (codePoint >> 18)), tail(12), tail(6), tail(0)};
}

CString Utf16Of(std::uint32_t codePoint) {
    if (codePoint < 0x10000)
        return CString(1, static_cast<char16_t>(codePoint));
    return {static_cast<char16_t>(0xD7C0 + (codePoint >> 10)),
            static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF))};
}

CString KeptBytes(std::string_view bytes) {
    CString text;
    for (const char byte : bytes)
        text += static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(byte));
    return text;
}

} // namespace

TEST(Utf8, EveryCodePointGoesThereAndBack) {
    constexpr std::uint32_t kBlockSize = 0x100;
    for (std::uint32_t block = 0; block <= kHighestCodePoint; block += kBlockSize) {
        if (IsSurrogateValue(block))
            continue;
        std::string bytes;
        CString text;
        for (std::uint32_t codePoint = block; codePoint < block + kBlockSize; ++codePoint) {
            bytes += Utf8Of(codePoint);
            text += Utf16Of(codePoint);
        }
        ASSERT_EQ(FromUtf8(bytes), text) << block;
        ASSERT_EQ(ToUtf8(text), bytes) << block;
        ASSERT_TRUE(IsWellFormed(text)) << block;
    }
}

TEST(Utf8, RunsOfAsciiAndOtherLettersMixFreely) {
    EXPECT_EQ(FromUtf8("čvor ž, Ø 200 \xF0\x9F\x98\x80!"), u"čvor ž, Ø 200 \U0001F600!");
    EXPECT_EQ(ToUtf8(u"čvor ž, Ø 200 \U0001F600!"), "čvor ž, Ø 200 \xF0\x9F\x98\x80!");
    EXPECT_EQ(FromUtf8(""), u"");
    EXPECT_EQ(ToUtf8(u""), "");
}

TEST(Utf8, BytesThatAreNoUtf8BecomeUnpairedSurrogates) {
    for (const std::string_view bytes :
         {"\x80", "\xBF", "\xFE", "\xFF",         // never begin a character
          "\xC0\x80", "\xC1\xBF",                 // longer than need be
          "\xE0\x80\xAF", "\xF0\x80\x80\xAF",     // the same, of a "/"
          "\xED\xA0\x80", "\xED\xBF\xBF",         // surrogates
          "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", // beyond the last code point
          "\xC4", "\xE2\x82", "\xF0\x9F\x98"}) {  // cut
        EXPECT_EQ(FromUtf8(bytes), KeptBytes(bytes));
        EXPECT_EQ(ToUtf8(FromUtf8(bytes)), bytes);
    }
}

TEST(Utf8, ACutCharacterDoesNotSwallowWhatFollows) {
    EXPECT_EQ(FromUtf8("a\xE2\x82z"), u"a" + KeptBytes("\xE2\x82") + u"z");
    EXPECT_EQ(FromUtf8("\xC4\xC4\x8D"), KeptBytes("\xC4") + u"č");
}

TEST(Utf8, AnyBytesComeBack) {
    std::mt19937 random(1);
    // Bytes that begin or go on with a character are more likely than others.
    const std::string likely = "a/\\\x80\x9F\xA0\xBF\xC4\xE0\xED\xEF\xF0\xF4";
    for (int round = 0; round < 20000; ++round) {
        std::string bytes;
        for (std::size_t size = random() % 12; bytes.size() < size;)
            bytes +=
                random() % 4 ? likely[random() % likely.size()] : static_cast<char>(random() % 256);
        ASSERT_EQ(ToUtf8(FromUtf8(bytes)), bytes);
    }
}

TEST(Utf8, ABackslashOfAFileNameComesBackAsItsByte) {
    EXPECT_EQ(ToUtf8(CString{u'a', 0xDC5C, u'b'}), "a\\b");
}

TEST(Utf8, NoOtherSurrogateBecomesAByteOfAscii) {
    for (unsigned unit = 0xD800; unit <= 0xDFFF; ++unit) {
        if (unit == 0xDC5C)
            continue;
        const bool isKeptByte = unit >= 0xDC80 && unit <= 0xDCFF;
        const std::string expected =
            isKeptByte ? std::string(1, static_cast<char>(unit - 0xDC00)) : "\xEF\xBF\xBD";
        EXPECT_EQ(ToUtf8(CString(1, static_cast<char16_t>(unit))), expected) << unit;
    }
}

TEST(Utf8, AHighSurrogateWithoutItsLowOneDoesNotSwallowWhatFollows) {
    EXPECT_EQ(ToUtf8(CString{0xD83D, u'a'}), "\xEF\xBF\xBD"
                                             "a");
    EXPECT_EQ(ToUtf8(CString{0xD83D, 0xD83D, 0xDE00}), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST(Utf8, TextWithAnUnpairedSurrogateIsNotWellFormed) {
    EXPECT_TRUE(IsWellFormed(u""));
    EXPECT_TRUE(IsWellFormed(u"čvor \U0001F600"));
    EXPECT_FALSE(IsWellFormed(CString{0xD83D}));
    EXPECT_FALSE(IsWellFormed(CString{0xDE00, 0xD83D}));
    EXPECT_FALSE(IsWellFormed(CString{0xD83D, u'a'}));
    EXPECT_FALSE(IsWellFormed(FromUtf8("\xFF")));
}

TEST(Utf8, WhatIsShownHoldsNoControlCharacters) {
    EXPECT_EQ(ToDisplay(u"čvor\t1\nž \U0001F600"), "čvor\t1\nž \xF0\x9F\x98\x80");
    EXPECT_EQ(ToDisplay(u"\x1b[31mred\r\x7f"), "?[31mred??");
    EXPECT_EQ(ToDisplay(CString{u'a', 0, u'b', 0x9B, u'c'}), "a?b?c");
    EXPECT_EQ(ToDisplay(CString{0xDC5C, 0xDCFF, 0xD800}), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}
