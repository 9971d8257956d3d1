// SPDX-License-Identifier: MIT
#include "family/WorkspaceWindow/LogLines.h"

#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/text/Numbers.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace ZEBGis::Workspace;
using testing::ElementsAre;
using testing::IsEmpty;

CWsMessage Message(std::int32_t type, const CString& text) {
    CWsMessage message;
    message.time = u"2026-11-21T08:05:19Z";
    message.type = type;
    message.text = text;
    return message;
}

std::vector<CString> Texts(const std::vector<const CWsMessage*>& lines) {
    std::vector<CString> texts;
    for (const CWsMessage* line : lines)
        texts.push_back(line->text);
    return texts;
}

class LogLines : public testing::Test {
protected:
    void AddOneOfEach() {
        lines.Add(Message(MessageSuccess, u"good"));
        lines.Add(Message(MessageWarning, u"careful"));
        lines.Add(Message(MessageFailure, u"bad"));
        lines.Add(Message(3, u"other"));
    }

    CWsLogLines lines;
    TemporaryFolder folder;
};

TEST_F(LogLines, KeepsThemInOrderAndCountsTheirKinds) {
    AddOneOfEach();
    EXPECT_THAT(Texts(lines.ShownLines()), ElementsAre(u"good", u"careful", u"bad", u"other"));
    EXPECT_EQ(lines.Count(LineKind::Success), 2U);
    EXPECT_EQ(lines.Count(LineKind::Warning), 1U);
    EXPECT_EQ(lines.Count(LineKind::Failure), 1U);
}

TEST_F(LogLines, ShowsTheKindsThatAreWanted) {
    AddOneOfEach();
    lines.SetShown(LineKind::Success, false);
    EXPECT_THAT(Texts(lines.ShownLines()), ElementsAre(u"careful", u"bad"));
    lines.SetShown(LineKind::Warning, false);
    EXPECT_THAT(Texts(lines.ShownLines()), ElementsAre(u"bad"));
    lines.SetShown(LineKind::Failure, false);
    EXPECT_THAT(lines.ShownLines(), IsEmpty());
    lines.SetShown(LineKind::Success, true);
    EXPECT_THAT(Texts(lines.ShownLines()), ElementsAre(u"good", u"other"));
    EXPECT_EQ(lines.Count(LineKind::Failure), 1U);
}

TEST_F(LogLines, TheirTextIsThatOfTheLogFile) {
    const CString path = folder.Path() + u"workspace.log";
    CWsLogFile file(path);
    for (const CWsMessage& message :
         {Message(MessageSuccess, u"čvor.dwg"), Message(MessageWarning, u"two\r\nlines"),
          Message(MessageFailure, u""), Message(7, u"\xDC80 no UTF-8")}) {
        lines.Add(message);
        file.Write(message);
    }
    ASSERT_EQ(SaveText(TextOf(lines.ShownLines()), folder.Path() + u"saved.log"), u"");
    std::string written;
    std::string saved;
    ASSERT_FALSE(Platform::ReadFile(path, written));
    ASSERT_FALSE(Platform::ReadFile(folder.Path() + u"saved.log", saved));
    EXPECT_EQ(saved, written);
}

TEST_F(LogLines, AreSavedOverAFileOfThatName) {
    const CString path = folder.Path() + u"saved.log";
    Platform::WriteFile(path, "what stood here before, which is longer than a line");
    EXPECT_EQ(SaveText(u"a line\n", path), u"");
    std::string saved;
    ASSERT_FALSE(Platform::ReadFile(path, saved));
    EXPECT_EQ(saved, "a line\n");
}

TEST_F(LogLines, WhereTheyCannotBeSavedItSaysWhy) {
    EXPECT_EQ(SaveText(u"a line\n", folder.Path() + u"nowhere\\saved.log"),
              u"No such file or directory");
    Platform::CreateFolderChain(folder.Path() + u"saved.log");
    EXPECT_EQ(SaveText(u"a line\n", folder.Path() + u"saved.log"), u"a folder stands in its place");
}

TEST_F(LogLines, BeyondTheMostThatAreKeptTheOldestTenthGoes) {
    for (std::size_t i = 0; i < CWsLogLines::kMostLines; ++i)
        EXPECT_NE(lines.Add(Message(i % 2 == 0 ? 1 : 4, Platform::ToText(i))), nullptr);
    EXPECT_FALSE(lines.HaveSomeGone());
    EXPECT_EQ(lines.Add(Message(2, u"one more")), nullptr);
    EXPECT_TRUE(lines.HaveSomeGone());
    constexpr std::size_t kGone = CWsLogLines::kMostLines / 10;
    EXPECT_EQ(lines.Lines().size(), CWsLogLines::kMostLines + 1 - kGone);
    EXPECT_EQ(lines.Lines().front().text, Platform::ToText(kGone));
    EXPECT_EQ(lines.Lines().back().text, u"one more");
    EXPECT_EQ(lines.Count(LineKind::Success), (CWsLogLines::kMostLines - kGone) / 2);
    EXPECT_EQ(lines.Count(LineKind::Failure), (CWsLogLines::kMostLines - kGone) / 2);
    EXPECT_EQ(lines.Count(LineKind::Warning), 1U);
}

} // namespace
