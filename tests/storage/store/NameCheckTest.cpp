// SPDX-License-Identifier: MIT
#include "storage/store/NameCheck.h"

#include <gtest/gtest.h>

namespace Storage {
namespace {

TEST(NameCheck, SaysWhatIsWrongWithAName) {
    EXPECT_EQ(CheckName(u""), MessageNumber::NameEmpty);
    EXPECT_EQ(CheckName(u".."), MessageNumber::NameIsFolder);
    EXPECT_EQ(CheckName(u"../x"), MessageNumber::NameSeparator);
    EXPECT_EQ(CheckName(u"C:x"), MessageNumber::NameColon);
    EXPECT_EQ(CheckName(u"a\nb"), MessageNumber::NameControl);
    EXPECT_EQ(CheckName(CString(u"a\xD800", 2)), MessageNumber::NameNotText);
    EXPECT_EQ(CheckName(CString(256, u'a')), MessageNumber::NameTooLong);
    EXPECT_EQ(CheckName(u"con.txt"), MessageNumber::NameReserved);
    EXPECT_EQ(CheckName(u"A, b  c.DWG"), std::nullopt);
}

} // namespace
} // namespace Storage
