// SPDX-License-Identifier: MIT
#include "client/util/AnsiText.h"
#include "platform/text/Utf8.h"
#include "support/DocumentExample.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace Repository;

namespace {

// Every byte but zero, as text.
CString EveryCharacter() {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    return AnsiToWide(bytes);
}

} // namespace

TEST(AnsiText, CentralEuropeanLettersAreOneByteEach) {
    EXPECT_EQ(WideToAnsi(u"Čušpajz đ"), "\xC8u\x9Apajz \xF0");
    EXPECT_EQ(AnsiToWide("\xC8u\x9Apajz \xF0"), u"Čušpajz đ");
}

TEST(AnsiText, WhatTheCodePageLacksBecomesAQuestionMark) {
    EXPECT_EQ(WideToAnsi(u"aΩb"), "a?b");
    EXPECT_EQ(WideToAnsi(u"a\U0001F600b"), "a??b");
}

TEST(AnsiText, NullPointersReadAsTheEmptyText) {
    EXPECT_EQ(WideToAnsi(static_cast<const char16_t*>(nullptr)), "");
    EXPECT_EQ(AnsiToWide(static_cast<const char*>(nullptr)), u"");
    EXPECT_EQ(EncodeBase64Text(static_cast<const char16_t*>(nullptr)), u"");
    EXPECT_EQ(DecodeBase64Text(static_cast<const char16_t*>(nullptr)), u"");
}

TEST(AnsiText, EveryTextEndsAtItsFirstNul) {
    EXPECT_EQ(WideToAnsi(CStringView(u"a\0b", 3)), "a");
    EXPECT_EQ(AnsiToWide(std::string_view("a\0b", 3)), u"a");
    EXPECT_EQ(EncodeBase64Text(CStringView(u"Man\0b", 5)), u"TWFu");
    EXPECT_EQ(DecodeBase64Text(CStringView(u"TWFu\0TWFu", 9)), u"Man");
}

TEST(AnsiText, FreeTextIsTheBase64OfItsAnsiBytes) {
    EXPECT_EQ(EncodeBase64Text(u"Man"), u"TWFu");
    EXPECT_EQ(EncodeBase64Text(u"Šč"), u"iug=");
    EXPECT_EQ(DecodeBase64Text(u"iug="), u"Šč");
    EXPECT_EQ(EncodeBase64Text(u""), u"");
}

TEST(AnsiText, AsManyBytesAreEncodedAsTheTextHasCodeUnits) {
    // Each half of the pair counts: kept.
    EXPECT_EQ(EncodeBase64Text(u"\U0001F600"), u"Pz8=");
    EXPECT_EQ(EncodeBase64Text(u"Ω"), u"Pw==");
    for (std::size_t units = 0; units < 10; ++units)
        EXPECT_EQ(EncodeBase64Text(CString(units, u'ž')).size(), (units + 2) / 3 * 4);
}

TEST(AnsiText, EveryCharacterOfTheCodePageSurvives) {
    const CString text = EveryCharacter();
    ASSERT_EQ(text.size(), 255u);
    EXPECT_EQ(DecodeBase64Text(EncodeBase64Text(text)), text);
}

TEST(AnsiText, OtherCharactersComeBackAsTheDefaultCharacter) {
    EXPECT_EQ(DecodeBase64Text(EncodeBase64Text(u"5 Ω 水")), u"5 ? ?");
}

TEST(AnsiText, AZeroByteAmongTheDecodedOnesEndsTheText) {
    EXPECT_EQ(DecodeBase64Text(u"QQBC"), u"A"); // 41 00 42
}

TEST(AnsiText, AWideCharacterOutsideTheAlphabetEndsTheBase64) {
    EXPECT_EQ(DecodeBase64Text(u"TWFučTWFu"), u"Man");
    EXPECT_EQ(DecodeBase64Text(u"TWFu水TWFu"), u"Man");
    // U+0154 is byte C0 and not "T", as it would be if high bits were dropped.
    EXPECT_EQ(DecodeBase64Text(u"\u0154WFu"), u"");
}

TEST(AnsiText, TheDocumentsTableOfOddBytesIsWhatTheCodePageDoes) {
    std::istringstream lines(DocumentExample("code-page"));
    int count = 0;
    for (std::string hex, code, text; lines >> hex >> code >> text; ++count) {
        const char byte = static_cast<char>(std::stoi(hex, nullptr, 16));
        const CString wide = AnsiToWide(std::string(1, byte));
        EXPECT_EQ(wide, CString(1, static_cast<char16_t>(std::stoi(code.substr(2), nullptr, 16))));
        if (text != "-") {
            EXPECT_EQ(wide, Platform::FromUtf8(text));
        }
        EXPECT_EQ(WideToAnsi(wide), std::string(1, byte));
    }
    EXPECT_GE(count, 10);
}
