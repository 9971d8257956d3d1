// SPDX-License-Identifier: MIT
#include "platform/text/Fill.h"

#include <gtest/gtest.h>

using Platform::Fill;

TEST(Fill, GapsTakeTheValuesInTurn) {
    EXPECT_EQ(Fill(u"%s (%s)", {u"Nothing found", u"*.dwg"}), u"Nothing found (*.dwg)");
    EXPECT_EQ(Fill(u"%s%s%s", {u"a", u"", u"c"}), u"ac");
}

TEST(Fill, ValuesThatAreLeftOverAreDropped) {
    EXPECT_EQ(Fill(u"only %s", {u"one", u"two"}), u"only one");
    EXPECT_EQ(Fill(u"none", {u"one"}), u"none");
    EXPECT_EQ(Fill(u"", {u"one"}), u"");
}

TEST(Fill, GapsThatAreLeftOverStay) {
    EXPECT_EQ(Fill(u"%s and %s", {u"one"}), u"one and %s");
    EXPECT_EQ(Fill(u"%s", {}), u"%s");
}

TEST(Fill, AValueIsNeverSearchedForGaps) {
    EXPECT_EQ(Fill(u"%s-%s", {u"%s", u"b"}), u"%s-b");
    EXPECT_EQ(Fill(u"%%s", {u"s"}), u"%s");
    EXPECT_EQ(Fill(u"%%s-%s", {u"", u"x"}), u"%-x");
}

TEST(Fill, OtherPercentSignsStandForThemselves) {
    EXPECT_EQ(Fill(u"100 % of %d, %", {u"x"}), u"100 % of %d, %");
}
