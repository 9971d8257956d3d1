// SPDX-License-Identifier: MIT
#include "ZEBXNetworkCore/DataBox.h"

#include "platform/text/Utf8.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace ZEBGis::Data;

TEST(DataBox, ANewOneIsNull) {
    const CDataBox box;
    EXPECT_NE(box.IsNull(), 0);
    EXPECT_EQ(box.GetType(), DataNull);
    EXPECT_EQ(box.ToText(), u"");
    EXPECT_EQ(box.GetInteger(), 0);
    EXPECT_EQ(box.GetReal(), 0);
    EXPECT_EQ(box.GetBoolean(), 0);
}

TEST(DataBox, ATextIsKeptAsItStands) {
    const CDataBox box = CDataBox::OfText(u" č\t\U0001F6B0 ");
    EXPECT_EQ(box.IsNull(), 0);
    EXPECT_EQ(box.GetType(), DataText);
    EXPECT_EQ(box.ToText(), u" č\t\U0001F6B0 ");
    EXPECT_EQ(CDataBox::OfText(nullptr).ToText(), u"");
    EXPECT_EQ(CDataBox::OfText(nullptr).IsNull(), 0);
    EXPECT_EQ(CDataBox::OfText(u"7").GetInteger(), 0);
}

TEST(DataBox, AWholeNumberIsAlsoANumber) {
    const CDataBox box = CDataBox::OfInteger(-110);
    EXPECT_EQ(box.GetType(), DataInteger);
    EXPECT_EQ(box.ToText(), u"-110");
    EXPECT_EQ(box.GetInteger(), -110);
    EXPECT_EQ(box.GetReal(), -110.0);
    EXPECT_EQ(box.GetBoolean(), 0);
    EXPECT_EQ(CDataBox::OfInteger(std::numeric_limits<std::int64_t>::min()).ToText(),
              u"-9223372036854775808");
}

TEST(DataBox, ANumberIsWrittenInItsShortestForm) {
    EXPECT_EQ(CDataBox::OfReal(0.1).ToText(), u"0.1");
    EXPECT_EQ(CDataBox::OfReal(-2.5).ToText(), u"-2.5");
    EXPECT_EQ(CDataBox::OfReal(110).ToText(), u"110");
    EXPECT_EQ(CDataBox::OfReal(1.0 / 3).ToText(), u"0.3333333333333333");
    EXPECT_EQ(CDataBox::OfReal(1e300).ToText(), u"1e+300");
    EXPECT_EQ(CDataBox::OfReal(2.5).GetReal(), 2.5);
    EXPECT_EQ(CDataBox::OfReal(2.5).GetInteger(), 0);
}

TEST(DataBox, ANumberThatIsNotFiniteIsNull) {
    EXPECT_NE(CDataBox::OfReal(std::nan("")).IsNull(), 0);
    EXPECT_NE(CDataBox::OfReal(INFINITY).IsNull(), 0);
    EXPECT_NE(CDataBox::OfReal(-INFINITY).IsNull(), 0);
}

TEST(DataBox, YesAndNoAreWords) {
    EXPECT_EQ(CDataBox::OfBoolean(7).ToText(), u"yes");
    EXPECT_EQ(CDataBox::OfBoolean(7).GetBoolean(), 1);
    EXPECT_EQ(CDataBox::OfBoolean(0).ToText(), u"no");
    EXPECT_EQ(CDataBox::OfBoolean(0).GetBoolean(), 0);
    EXPECT_EQ(CDataBox::OfBoolean(1).GetInteger(), 0);
}

TEST(DataBox, DatesAreThoseOfTheCalendar) {
    EXPECT_EQ(CDataBox::OfDate(u"2026-11-21").ToText(), u"2026-11-21");
    EXPECT_EQ(CDataBox::OfDate(u"2024-02-29").GetType(), DataDate);
    for (const char16_t* date :
         {u"2023-02-29", u"1900-02-29", u"2026-13-01", u"2026-00-10", u"2026-04-31", u"2026-4-30",
          u"0000-01-01", u"2026-11-21 ", u"2026/11/21", u"20261121", u"+026-11-21", u"", u"today"})
        EXPECT_NE(CDataBox::OfDate(date).IsNull(), 0) << Platform::ToUtf8(date);
    EXPECT_NE(CDataBox::OfDate(nullptr).IsNull(), 0);
}

TEST(DataBox, EqualBoxesHaveOneTypeAndOneValue) {
    EXPECT_EQ(CDataBox::OfText(u"1"), CDataBox::OfText(u"1"));
    EXPECT_FALSE(CDataBox::OfText(u"1") == CDataBox::OfInteger(1));
    EXPECT_FALSE(CDataBox::OfInteger(1) == CDataBox::OfReal(1));
    EXPECT_FALSE(CDataBox::OfInteger(1) == CDataBox::OfInteger(2));
    EXPECT_EQ(CDataBox::OfReal(std::nan("")), CDataBox());
}

} // namespace
