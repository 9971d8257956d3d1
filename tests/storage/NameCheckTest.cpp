// SPDX-License-Identifier: MIT
#include "storage/NameCheck.h"

#include <gtest/gtest.h>

namespace Storage {
namespace {

struct Case {
    CString name;
    MessageNumber wrong;
};

TEST(NameCheck, RefusesWhatCouldLeaveAFolderOrMeanSomethingElse) {
    const Case cases[] = {
        {u"", MessageNumber::NameEmpty},
        {u".", MessageNumber::NameIsFolder},
        {u"..", MessageNumber::NameIsFolder},
        {u"../x", MessageNumber::NameSeparator},
        {u"..\\x", MessageNumber::NameSeparator},
        {u"a/b", MessageNumber::NameSeparator},
        {u"a\\b", MessageNumber::NameSeparator},
        {u"/etc/passwd", MessageNumber::NameSeparator},
        {u"\\", MessageNumber::NameSeparator},
        {u"C:x", MessageNumber::NameColon},
        {u"x.dwg:stream", MessageNumber::NameColon},
        {CString(u"a\0b", 3), MessageNumber::NameControl},
        {u"a\nb", MessageNumber::NameControl},
        {u"a\tb", MessageNumber::NameControl},
        {u"\x001f", MessageNumber::NameControl},
        {u"a\x007f", MessageNumber::NameControl},
        {CString(u"a\xD800", 2), MessageNumber::NameNotText},
        {CString(u"\xDC2F", 1), MessageNumber::NameNotText},
        {CString(u"\xDC00\xD800", 2), MessageNumber::NameNotText},
    };
    for (const Case& test : cases)
        EXPECT_EQ(CheckName(test.name), test.wrong) << testing::PrintToString(test.name);
}

TEST(NameCheck, RefusesReservedDeviceNamesInAnyCaseAndWithAnyExtension) {
    for (const CString name :
         {u"CON", u"con", u"Con.txt", u"PRN", u"AUX.dwg", u"NUL", u"nul.tar.gz", u"COM1", u"com9.x",
          u"LPT1", u"lpt9", u"CON.", u"con .txt", u"NUL "})
        EXPECT_EQ(CheckName(name), MessageNumber::NameReserved) << testing::PrintToString(name);
}

TEST(NameCheck, RefusesMoreThan255BytesOfUtf8) {
    EXPECT_EQ(CheckName(CString(255, u'a')), std::nullopt);
    EXPECT_EQ(CheckName(CString(256, u'a')), MessageNumber::NameTooLong);
    // Two bytes each.
    EXPECT_EQ(CheckName(CString(127, u'č')), std::nullopt);
    EXPECT_EQ(CheckName(CString(128, u'č')), MessageNumber::NameTooLong);
}

TEST(NameCheck, AcceptsEveryOtherName) {
    for (const CString name : {u"a",           u"čvor š.dwg",
                               u"A, b  c.DWG", u"...",
                               u".hidden",     u"a.",
                               u"a ",          u" a",
                               u"COM",         u"COM0",
                               u"COM10",       u"LPT0.txt",
                               u"CONSOLE",     u"auxiliary.dwg",
                               u"x.con",       u"$a#b@c|d",
                               u"a*b?c",       u"\U0001F600.dwg",
                               u"~",           u"-rf"})
        EXPECT_EQ(CheckName(name), std::nullopt) << testing::PrintToString(name);
}

} // namespace
} // namespace Storage
