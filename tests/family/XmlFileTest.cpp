// SPDX-License-Identifier: MIT
#include "ZEBXGisCore/XmlFile.h"

#include "support/Bytes.h"
#include "support/FailingCalls.h"
#include "support/InAChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/Workstation.h"

#include "platform/text/Utf8.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

using ZEBGis::ReadXmlFile;
using ZEBGis::WriteXmlFile;
using ZEBGis::XmlFileState;
using namespace std::string_literals;

class XmlFile : public testing::Test {
protected:
    XmlFileState ReadBytes(const std::string& bytes) {
        MakeFile(m_native, bytes);
        return Read();
    }
    XmlFileState Read() { return ReadXmlFile(m_path, m_utf8, m_problem); }

    // Expects that the bytes are refused, with the file's name and each of the words.
    void ExpectRefused(const std::string& bytes, const std::vector<CString>& words) {
        EXPECT_EQ(ReadBytes(bytes), XmlFileState::Unusable);
        ExpectProblem(words);
        EXPECT_EQ(m_utf8, "");
    }
    void ExpectProblem(const std::vector<CString>& words) {
        EXPECT_NE(m_problem.find(Platform::FromUtf8(m_native.string())), CString::npos)
            << Platform::ToUtf8(m_problem);
        for (const CString& word : words)
            EXPECT_NE(m_problem.find(word), CString::npos)
                << Platform::ToUtf8(word) << " in: " << Platform::ToUtf8(m_problem);
    }
    bool Write(std::string_view bytes) {
        return WriteXmlFile(m_path, m_previousPath, bytes, m_problem);
    }

    Workstation m_station;
    std::filesystem::path m_native = m_station.Folder().Native() / "čvor.xml";
    std::filesystem::path m_previous = m_station.Folder().Native() / "čvor.previous.xml";
    CString m_path = m_station.Folder().Path() + u"čvor.xml";
    CString m_previousPath = m_station.Folder().Path() + u"čvor.previous.xml";
    std::string m_utf8;
    CString m_problem;
};

TEST_F(XmlFile, Utf8IsReadByteForByte) {
    const std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<a b=\"č \xF0\x9F\x9A\xB0\"/>";
    EXPECT_EQ(ReadBytes(xml), XmlFileState::Read);
    EXPECT_EQ(m_utf8, xml);
    EXPECT_EQ(m_problem, u"");
}

TEST_F(XmlFile, AByteOrderMarkIsNoPartOfTheText) {
    EXPECT_EQ(ReadBytes("\xEF\xBB\xBF<a>š</a>"), XmlFileState::Read);
    EXPECT_EQ(m_utf8, "<a>š</a>");
}

TEST_F(XmlFile, AByteOrderMarkWinsOverTheDeclaration) {
    const std::string xml = "<?xml version='1.0' encoding='windows-1250'?><a>š</a>";
    EXPECT_EQ(ReadBytes("\xEF\xBB\xBF" + xml), XmlFileState::Read);
    EXPECT_EQ(m_utf8, xml);
}

TEST_F(XmlFile, Utf16IsReadInBothByteOrders) {
    EXPECT_EQ(ReadBytes("\xFF\xFE<\0a\0/\0>\0\x0D\x01"s), XmlFileState::Read);
    EXPECT_EQ(m_utf8, "<a/>č");
    EXPECT_EQ(ReadBytes("\xFE\xFF\0<\0a\0/\0>\x01\x0D\xD8\x3D\xDE\xB0"s), XmlFileState::Read);
    EXPECT_EQ(m_utf8, "<a/>č\xF0\x9F\x9A\xB0");
}

TEST_F(XmlFile, Windows1250IsReadWhenTheDeclarationNamesIt) {
    for (const char* name : {"windows-1250", "Windows-1250", "CP1250"}) {
        const std::string start = "<?xml version=\"1.0\"\tencoding = '" + std::string(name) + "'?>";
        EXPECT_EQ(ReadBytes(start + "<a>\x8A\x9E\xE8\x81</a>"), XmlFileState::Read);
        EXPECT_EQ(m_utf8, start + "<a>Šžč\xC2\x81</a>");
    }
}

TEST_F(XmlFile, OnlyTheDeclarationTellsTheEncoding) {
    const std::string xml = "<a encoding=\"windows-1250\">š</a>";
    EXPECT_EQ(ReadBytes(xml), XmlFileState::Read);
    EXPECT_EQ(m_utf8, xml);
    EXPECT_EQ(ReadBytes("<?xmlish encoding='x'?><a/>"), XmlFileState::Read);
    EXPECT_EQ(ReadBytes("<?xml version='1.0' encoding?><a/>"), XmlFileState::Read);
    EXPECT_EQ(ReadBytes("<?xml version='1.0' encoding=x?><a/>"), XmlFileState::Read);
    EXPECT_EQ(ReadBytes("<?xml"), XmlFileState::Read);
    EXPECT_EQ(ReadBytes("<?xml encoding='"), XmlFileState::Read);
}

TEST_F(XmlFile, BytesThatAreNoUtf8AreRefusedWithTheirPlace) {
    ExpectRefused("<a>\n<b>\xE8</b></a>", {u"byte 8 (line 2)", u"UTF-8"});
    ExpectRefused("\xEF\xBB\xBF<a>\xC3", {u"byte 7 (line 1)", u"UTF-8"});
    ExpectRefused("č\n\n\xED\xA0\x80", {u"byte 5 (line 3)"}); // half a pair as UTF-8
    ExpectRefused("\xC0\xAF", {u"byte 1 (line 1)"});          // an overlong "/"
}

TEST_F(XmlFile, Utf16ThatIsCutOrHoldsHalvesIsRefusedWithItsPlace) {
    ExpectRefused("\xFF\xFE<\0a"s, {u"byte 5 (line 1)", u"UTF-16"});
    ExpectRefused("\xFF\xFE\n\0\x3D\xD8<\0"s, {u"byte 5 (line 2)", u"UTF-16"});
}

TEST_F(XmlFile, AnotherEncodingIsRefusedByName) {
    ExpectRefused("<?xml version=\"1.0\" encoding=\"ISO-8859-2\"?><a/>", {u"\"ISO-8859-2\""});
    ExpectRefused("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>", {u"\"UTF-16\""});
    ExpectRefused("\xFF\xFE\0\0<\0\0\0"s, {u"UTF-32"});
    ExpectRefused("\0\0\xFE\xFF\0\0\0<"s, {u"UTF-32"});
    ExpectRefused("<\0a\0/\0>\0"s, {u"UTF-16 without a byte order mark"});
    ExpectRefused("\0<\0a\0/\0>"s, {u"UTF-16 without a byte order mark"});
}

TEST_F(XmlFile, CharactersThatXmlDoesNotHaveAreRefused) {
    ExpectRefused("<a>\0</a>"s, {u"byte 4", u"U+0000"});
    ExpectRefused("<a>\x1B</a>", {u"byte 4", u"U+001B"});
    ExpectRefused("<a>\xEF\xBF\xBF</a>", {u"byte 4", u"U+FFFF"});
    EXPECT_EQ(ReadBytes("<a>\t\r\n\x7F\xEF\xBF\xBD</a>"), XmlFileState::Read);
}

TEST_F(XmlFile, AMissingFileIsNoProblem) {
    m_utf8 = "before";
    m_problem = u"before";
    EXPECT_EQ(Read(), XmlFileState::Missing);
    EXPECT_EQ(m_utf8, "");
    EXPECT_EQ(m_problem, u"");
}

TEST_F(XmlFile, AFolderAPipeAndAnEmptyFileAreUnusable) {
    ExpectRefused("", {u"empty"});
    std::filesystem::remove(m_native);
    std::filesystem::create_directory(m_native);
    EXPECT_EQ(Read(), XmlFileState::Unusable);
    ExpectProblem({u"a folder stands in its place"});
    std::filesystem::remove(m_native);
    ASSERT_EQ(mkfifo(m_native.c_str(), 0600), 0);
    EXPECT_EQ(Read(), XmlFileState::Unusable);
    ExpectProblem({u"no ordinary file"});
}

TEST_F(XmlFile, AFileThatIsTooLargeIsNotRead) {
    MakeFile(m_native, "<a/>");
    std::filesystem::resize_file(m_native, (256u << 20) + 1);
    EXPECT_EQ(Read(), XmlFileState::Unusable);
    ExpectProblem({u"268435457 bytes", u"268435456"});
}

TEST_F(XmlFile, AFileThatMayNotBeReadTellsTheSystemsReason) {
    MakeFile(m_native, "<a/>");
    std::filesystem::permissions(m_native, std::filesystem::perms::none);
    std::filesystem::permissions(m_station.Folder().Native(), std::filesystem::perms(0755));
    EXPECT_TRUE(PassesInAChildProcess([&] {
        BecomeOrdinaryUser();
        EXPECT_EQ(Read(), XmlFileState::Unusable);
        ExpectProblem({u"Permission denied"});
    }));
}

TEST_F(XmlFile, AFileThatIsReadThroughALinkIsRead) {
    MakeFile(m_station.Folder().Native() / "elsewhere.xml", "<a/>");
    std::filesystem::create_symlink("elsewhere.xml", m_native);
    EXPECT_EQ(Read(), XmlFileState::Read);
    EXPECT_EQ(m_utf8, "<a/>");
}

TEST_F(XmlFile, ProblemsComeInTheUsersLanguage) {
    m_station.Set("ZEBX_LANGUAGE", "hr");
    ExpectRefused("\xE8", {u"ne može se pročitati", u"bajt 1 (redak 1)"});
}

TEST_F(XmlFile, AWrittenFileHoldsExactlyTheBytes) {
    const std::string bytes = "<a>\r\nč\0</a>"s;
    EXPECT_TRUE(Write(bytes));
    EXPECT_EQ(BytesOfFile(m_native), bytes);
    EXPECT_FALSE(std::filesystem::exists(m_previous));
    EXPECT_EQ(m_problem, u"");
}

TEST_F(XmlFile, TheFolderIsCreated) {
    const CString path = m_station.Folder().Path() + u"a\\b\\c.xml";
    EXPECT_TRUE(WriteXmlFile(path, {}, "<c/>", m_problem));
    EXPECT_EQ(BytesOfFile(m_station.Folder().Native() / "a/b/c.xml"), "<c/>");
}

TEST_F(XmlFile, ThePreviousTextIsKeptWhenItIsAskedFor) {
    Write("<first/>");
    EXPECT_TRUE(Write("<second/>"));
    EXPECT_EQ(BytesOfFile(m_native), "<second/>");
    EXPECT_EQ(BytesOfFile(m_previous), "<first/>");
    EXPECT_TRUE(WriteXmlFile(m_path, {}, "<third/>", m_problem));
    EXPECT_EQ(BytesOfFile(m_previous), "<first/>");
}

TEST_F(XmlFile, TheSameTextIsNotWrittenAgain) {
    Write("<first/>");
    Write("<second/>");
    const auto time = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(m_native, time);
    EXPECT_TRUE(Write("<second/>"));
    EXPECT_EQ(std::filesystem::last_write_time(m_native), time);
    EXPECT_EQ(BytesOfFile(m_previous), "<first/>");
}

TEST_F(XmlFile, AFailedWriteLeavesTheFileAndTellsWhy) {
    Write("<first/>");
    FailingCalls calls;
    calls.Fail("write", ENOSPC);
    EXPECT_FALSE(Write("<second/>"));
    EXPECT_EQ(BytesOfFile(m_native), "<first/>");
    ExpectProblem({u"cannot be written", u"No space left on device"});
}

TEST_F(XmlFile, AFileWhosePreviousTextCannotBeKeptIsNotWritten) {
    Write("<first/>");
    std::filesystem::create_directory(m_previous);
    EXPECT_FALSE(Write("<second/>"));
    EXPECT_EQ(BytesOfFile(m_native), "<first/>");
    ExpectProblem({u"čvor.previous.xml", u"a folder stands in its place"});
}

TEST_F(XmlFile, AFileThatCannotBeComparedIsNotWritten) {
    Write("<first/>");
    FailingCalls calls;
    calls.Fail("read", EIO);
    EXPECT_FALSE(Write("<second/>"));
    EXPECT_EQ(BytesOfFile(m_native), "<first/>");
}

TEST_F(XmlFile, NothingIsWrittenThroughALinkOrOverAFolder) {
    MakeFile(m_station.Folder().Native() / "elsewhere.xml", "<a/>");
    std::filesystem::create_symlink("elsewhere.xml", m_native);
    EXPECT_FALSE(Write("<b/>"));
    ExpectProblem({u"a link stands in its place"});
    EXPECT_EQ(BytesOfFile(m_station.Folder().Native() / "elsewhere.xml"), "<a/>");
    std::filesystem::remove(m_native);
    std::filesystem::create_directory(m_native);
    EXPECT_FALSE(Write("<b/>"));
    ExpectProblem({u"a folder stands in its place"});
}

TEST_F(XmlFile, AFolderThatCannotBeCreatedIsNamed) {
    MakeFile(m_native, "<a/>");
    EXPECT_FALSE(WriteXmlFile(m_path + u"\\x.xml", {}, "<b/>", m_problem));
    ExpectProblem({u"cannot be created"});
}

TEST(TextProblem, OrdinaryTextsHaveNone) {
    EXPECT_EQ(ZEBGis::TextProblem(u""), u"");
    EXPECT_EQ(ZEBGis::TextProblem(u"a\t\r\n<&>\"' čšž \u007F \u0085 \uFFFD \U0001F6B0"), u"");
}

TEST(TextProblem, CharactersThatXmlLacksAreNamedWithTheirPlace) {
    Workstation station;
    const auto problem = [](CStringView text) {
        return Platform::ToUtf8(ZEBGis::TextProblem(text));
    };
    EXPECT_EQ(problem(CStringView(u"ab\0", 3)),
              "it holds the character U+0000 (place 3), which XML does not have");
    EXPECT_EQ(problem(u"č\u001F"),
              "it holds the character U+001F (place 2), which XML does not have");
    EXPECT_EQ(problem(u"\uFFFE"),
              "it holds the character U+FFFE (place 1), which XML does not have");
    EXPECT_EQ(problem(u"\xD83D"), "it holds half a character, U+D83D (place 1)");
    EXPECT_EQ(problem(u"x\xDC00y"), "it holds half a character, U+DC00 (place 2)");
}

} // namespace
