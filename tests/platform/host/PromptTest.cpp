// SPDX-License-Identifier: MIT
#include "platform/host/Prompt.h"

#include <limits>

#include <gtest/gtest.h>

namespace {

class Prompt : public testing::Test {
protected:
    Prompt() {
        Platform::SetPromptWriter([this](CStringView text) { m_printed.append(text); });
    }
    ~Prompt() override { Platform::SetPromptWriter(nullptr); }

    CString m_printed;
};

} // namespace

TEST_F(Prompt, GapsTakeTextsAndNumbers) {
    EXPECT_EQ(acutPrintf(u"\n%s: %d (%d)", u"čvor", 7, std::numeric_limits<int>::min()), 22);
    EXPECT_EQ(m_printed, u"\nčvor: 7 (-2147483648)");
}

TEST_F(Prompt, CodeUnitsAreCounted) {
    EXPECT_EQ(acutPrintf(u"\U0001F600"), 2);
}

TEST_F(Prompt, ANullTextIsEmpty) {
    EXPECT_EQ(acutPrintf(u"[%s]", static_cast<const char16_t*>(nullptr)), 2);
    EXPECT_EQ(acutPrintf(nullptr), 0);
    EXPECT_EQ(m_printed, u"[]");
}

TEST_F(Prompt, TwoPercentSignsAreOne) {
    EXPECT_EQ(acutPrintf(u"100 %% %%s %s%%", u"a"), 11);
    EXPECT_EQ(m_printed, u"100 % %s a%");
}

TEST_F(Prompt, AnythingElseIsPrintedAsItStands) {
    acutPrintf(u"%x %5d %", 1);
    EXPECT_EQ(m_printed, u"%x %5d %");
}

TEST_F(Prompt, ATextIsNotSearchedForGaps) {
    acutPrintf(u"%s %d", u"%d%s", 1);
    EXPECT_EQ(m_printed, u"%d%s 1");
}

TEST_F(Prompt, WithoutAWriterTextGoesToTheStandardOutputAsUtf8) {
    Platform::SetPromptWriter(nullptr);
    testing::internal::CaptureStdout();
    EXPECT_EQ(acutPrintf(u"%s\n", u"čvor"), 5);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "čvor\n");
    EXPECT_EQ(m_printed, u"");
}
