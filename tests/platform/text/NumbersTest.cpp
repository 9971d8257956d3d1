// SPDX-License-Identifier: MIT
#include "platform/text/Numbers.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <random>

#include <gtest/gtest.h>

using Platform::ToInteger;
using Platform::ToText;

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

} // namespace

TEST(Numbers, ANumberIsWrittenInPlainDigits) {
    EXPECT_EQ(ToText(0), u"0");
    EXPECT_EQ(ToText(1234567), u"1234567");
    EXPECT_EQ(ToText(-42), u"-42");
    EXPECT_EQ(ToText(std::numeric_limits<std::int64_t>::max()), u"9223372036854775807");
    EXPECT_EQ(ToText(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
}

TEST(Numbers, TextIsReadAsTheCLibraryReadsIt) {
    EXPECT_EQ(ToInteger(u"42"), 42);
    EXPECT_EQ(ToInteger(u"-42"), -42);
    EXPECT_EQ(ToInteger(u"+42"), 42);
    EXPECT_EQ(ToInteger(u"007"), 7);
    EXPECT_EQ(ToInteger(u" \t\n\v\f\r42"), 42);
    EXPECT_EQ(ToInteger(u"42 apples"), 42);
    EXPECT_EQ(ToInteger(u"1.5"), 1);
    EXPECT_EQ(ToInteger(u"1,5"), 1);
    EXPECT_EQ(ToInteger(u"1.234"), 1);
    EXPECT_EQ(ToInteger(u"0x10"), 0);
}

TEST(Numbers, TextWithoutANumberIsZero) {
    for (const CStringView text : {u"", u"   ", u"abc", u"-", u"+", u"--1", u"+-1", u"- 1", u".5"})
        EXPECT_EQ(ToInteger(text), 0);
}

TEST(Numbers, WhatDoesNotFitSaturates) {
    EXPECT_EQ(ToInteger(u"2147483647"), kHighest);
    EXPECT_EQ(ToInteger(u"2147483648"), kHighest);
    EXPECT_EQ(ToInteger(u"-2147483648"), kLowest);
    EXPECT_EQ(ToInteger(u"-2147483649"), kLowest);
    EXPECT_EQ(ToInteger(CString(1000, u'9')), kHighest);
    EXPECT_EQ(ToInteger(u"-" + CString(1000, u'9')), kLowest);
}

TEST(Numbers, OnlyTheBlanksAndDigitsOfTheCLocaleCount) {
    EXPECT_EQ(ToInteger(u"\u00A042"), 0);
    EXPECT_EQ(ToInteger(u"\u200342"), 0);
    EXPECT_EQ(ToInteger(u"\u0664\u0662"), 0);
    EXPECT_EQ(ToInteger(u"4\u06642"), 4);
    EXPECT_EQ(ToInteger(CStringView(u"4\0"
                                    u"2",
                                    3)),
              4);
}

TEST(Numbers, AnyTextIsReadAsStrtolReadsItWithinTheRange) {
    std::mt19937 random(1);
    const std::string likely = "0123456789 \t-+.,x";
    for (int round = 0; round < 50000; ++round) {
        std::string text;
        for (std::size_t size = random() % 14; text.size() < size;)
            text += likely[random() % likely.size()];
        const long expected =
            std::clamp<long>(std::strtol(text.c_str(), nullptr, 10), kLowest, kHighest);
        ASSERT_EQ(ToInteger(CString(text.begin(), text.end())), expected) << text;
    }
}
