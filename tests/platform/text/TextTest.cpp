// SPDX-License-Identifier: MIT
#include "platform/text/Text.h"

#include <gtest/gtest.h>

TEST(Text, ANullPointerReadsAsTheEmptyText) {
    EXPECT_EQ(Platform::TextOf(nullptr), u"");
    EXPECT_EQ(Platform::TextOf(u""), u"");
    EXPECT_EQ(Platform::TextOf(u"čvor"), u"čvor");
}

TEST(Text, AStreamTakesText) {
    WStringStream stream;
    stream << u"čvor" << u' ' << CString(u"ž") << CStringView(u"\U0001F600");
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.str(), u"čvor ž\U0001F600");
}
