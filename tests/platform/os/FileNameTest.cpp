// SPDX-License-Identifier: MIT
#include "platform/os/FileName.h"

#include <gtest/gtest.h>

namespace Platform {
namespace {

struct Case {
    CString name;
    FileNameFault wrong;
};

TEST(FileName, RefusesWhatCouldLeaveAFolderOrMeanSomethingElse) {
    const Case cases[] = {
        {u"", FileNameFault::Empty},
        {u".", FileNameFault::IsFolder},
        {u"..", FileNameFault::IsFolder},
        {u"../x", FileNameFault::Separator},
        {u"..\\x", FileNameFault::Separator},
        {u"a/b", FileNameFault::Separator},
        {u"a\\b", FileNameFault::Separator},
        {u"/etc/passwd", FileNameFault::Separator},
        {u"\\", FileNameFault::Separator},
        {u"C:x", FileNameFault::Colon},
        {u"x.dwg:stream", FileNameFault::Colon},
        {CString(u"a\0b", 3), FileNameFault::Control},
        {u"a\nb", FileNameFault::Control},
        {u"a\tb", FileNameFault::Control},
        {u"\x001f", FileNameFault::Control},
        {u"a\x007f", FileNameFault::Control},
        {CString(u"a\xD800", 2), FileNameFault::NotText},
        {CString(u"\xDC2F", 1), FileNameFault::NotText},
        {CString(u"\xDC00\xD800", 2), FileNameFault::NotText},
    };
    for (const Case& test : cases)
        EXPECT_EQ(FaultOfFileName(test.name), test.wrong) << testing::PrintToString(test.name);
}

TEST(FileName, RefusesReservedDeviceNamesInAnyCaseAndWithAnyExtension) {
    for (const CString name :
         {u"CON", u"con", u"Con.txt", u"PRN", u"AUX.dwg", u"NUL", u"nul.tar.gz", u"COM1", u"com9.x",
          u"LPT1", u"lpt9", u"CON.", u"con .txt", u"NUL "})
        EXPECT_EQ(FaultOfFileName(name), FileNameFault::Reserved) << testing::PrintToString(name);
}

TEST(FileName, RefusesMoreThan255BytesOfUtf8) {
    EXPECT_EQ(FaultOfFileName(CString(255, u'a')), std::nullopt);
    EXPECT_EQ(FaultOfFileName(CString(256, u'a')), FileNameFault::TooLong);
    // Two bytes each.
    EXPECT_EQ(FaultOfFileName(CString(127, u'č')), std::nullopt);
    EXPECT_EQ(FaultOfFileName(CString(128, u'č')), FileNameFault::TooLong);
}

TEST(FileName, AcceptsEveryOtherName) {
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
        EXPECT_EQ(FaultOfFileName(name), std::nullopt) << testing::PrintToString(name);
}

} // namespace
} // namespace Platform
