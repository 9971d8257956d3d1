// SPDX-License-Identifier: MIT
#include "app/Print.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace App;

namespace {

std::string Wrapped(CStringView lead, CStringView text) {
    std::ostringstream stream;
    PrintWrapped(stream, lead, text);
    return stream.str();
}

TEST(Print, TheWidthIsCountedInCodePoints) {
    EXPECT_EQ(WidthOf(u""), 0u);
    EXPECT_EQ(WidthOf(u"čaj"), 3u);
    EXPECT_EQ(WidthOf(u"\xD83D\xDE00"), 1u);
    EXPECT_EQ(WidthOf(u"\xDE00"), 1u); // a half of a pair is shown as one sign
}

TEST(Print, PaddingLeavesLongerTextAsItIs) {
    EXPECT_EQ(PadRight(u"ab", 4), u"ab  ");
    EXPECT_EQ(PadLeft(u"ab", 4), u"  ab");
    EXPECT_EQ(PadRight(u"abcde", 4), u"abcde");
    EXPECT_EQ(PadLeft(u"abcde", 4), u"abcde");
}

TEST(Print, APathIsShownAsPeopleTypeIt) {
    EXPECT_EQ(ShownPath(u"\\home\\ana\\x.cfg"), u"/home/ana/x.cfg");
}

TEST(Print, NothingSteersTheTerminal) {
    std::ostringstream stream;
    PrintLine(stream, u"a\x1b[31mb");
    EXPECT_EQ(stream.str(), "a?[31mb\n");
}

TEST(Print, ALineThatFitsExactlyIsNotBroken) {
    const CString word(38, u'x');
    EXPECT_EQ(Wrapped(u"12 ", word + u" " + word),
              "12 " + std::string(38, 'x') + " " + std::string(38, 'x') + "\n");
    EXPECT_EQ(Wrapped(u"123 ", word + u" " + word),
              "123 " + std::string(38, 'x') + "\n    " + std::string(38, 'x') + "\n");
}

TEST(Print, AWordThatIsTooLongStaysWhole) {
    const CString word(100, u'x');
    EXPECT_EQ(Wrapped(u"", u"a " + word + u" b"), "a\n" + std::string(100, 'x') + "\nb\n");
}

TEST(Print, TheColumnsOfATableAreAligned) {
    Table table({{u"Kind"}, {u"Bytes", Table::Align::Right}, {u"File"}});
    EXPECT_TRUE(table.IsEmpty());
    table.Add({u"ncf:002_NODE", u"5", u"a.dwg"});
    table.Add({u"gs", u"1234567", u""});
    std::ostringstream stream;
    table.Print(stream);
    EXPECT_EQ(stream.str(), "Kind            Bytes  File\n"
                            "ncf:002_NODE        5  a.dwg\n"
                            "gs            1234567\n");
}

TEST(Print, ANameWithALineBreakDoesNotPassForARow) {
    Table table({{u"File"}});
    table.Add({u"a\nb"});
    std::ostringstream stream;
    table.Print(stream);
    EXPECT_EQ(stream.str(), "File\na?b\n");
}

TEST(BrokenLines, EndAtTheLastBlankBeforeTheWidth) {
    EXPECT_EQ(BrokenLines(u"one two three", 0, 7), u"one two\nthree");
    EXPECT_EQ(BrokenLines(u"one two three", 0, 6), u"one\ntwo\nthree");
    EXPECT_EQ(BrokenLines(u"one two three", 1, 7), u"one\ntwo\nthree");
    EXPECT_EQ(BrokenLines(u"one two three", 0, 13), u"one two three");
    EXPECT_EQ(BrokenLines(u"one two three", 0, 0), u"one two three");
}

TEST(BrokenLines, KeepLongWordsAndLineFeeds) {
    EXPECT_EQ(BrokenLines(u"a /long/path b", 0, 5), u"a\n/long/path\nb");
    EXPECT_EQ(BrokenLines(u"one\n  two three", 0, 6), u"one\n  two\nthree");
    EXPECT_EQ(BrokenLines(u"", 0, 5), u"");
    EXPECT_EQ(BrokenLines(u"čšž ćđ", 0, 6), u"čšž ćđ");
}

} // namespace
