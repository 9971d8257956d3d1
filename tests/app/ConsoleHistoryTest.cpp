// SPDX-License-Identifier: MIT
#include "app/ConsoleHistory.h"
#include "Station.h"

#include "platform/os/Path.h"

#include <gmock/gmock.h>

using namespace AppTest;
using App::ConsoleHistory;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class History : public testing::Test {
protected:
    CString Path() const { return Platform::PathFromNative(file.string()); }

    TemporaryFolder folder;
    const fs::path file = folder.Native() / "new/console-history";
};

TEST_F(History, KeepsLinesForTheNextConsoleInAPrivateFile) {
    ConsoleHistory(Path()).Add(u"TEST");
    ConsoleHistory second(Path());
    second.Add(u"čvor");
    EXPECT_THAT(second.Lines(), ElementsAre(u"TEST", u"čvor"));
    EXPECT_EQ(Bytes(file), "TEST\nčvor\n");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(file.parent_path()).permissions(), fs::perms(0700));
}

TEST_F(History, KeepsNoBlankLineNoneTwiceInTurnAndNoneOfExcessiveLength) {
    ConsoleHistory history(Path());
    EXPECT_FALSE(history.Add(u""));
    EXPECT_FALSE(history.Add(u" \t"));
    EXPECT_TRUE(history.Add(u"TEST"));
    EXPECT_FALSE(history.Add(u"TEST"));
    EXPECT_FALSE(history.Add(CString(ConsoleHistory::kLongestLine + 1, u'x')));
    EXPECT_EQ(Bytes(file), "TEST\n");
}

TEST_F(History, BytesThatAreNoUtf8StayWhatTheyAre) {
    Write(file, "\xE8vor\n");
    ConsoleHistory history(Path());
    EXPECT_EQ(history.Lines().size(), 1U);
    history.Add(history.Lines().front() + u"!");
    EXPECT_EQ(Bytes(file), "\xE8vor\n\xE8vor!\n");
}

TEST_F(History, TheNextConsoleKeepsTheNewestLinesAlone) {
    std::string bytes;
    for (std::size_t i = 0; i < ConsoleHistory::kMostLines + 5; ++i)
        bytes += "line " + std::to_string(i) + "\n";
    Write(file, bytes);
    const ConsoleHistory history(Path());
    EXPECT_EQ(history.Lines().size(), ConsoleHistory::kMostLines);
    EXPECT_EQ(history.Lines().front(), u"line 5");
    EXPECT_EQ(Bytes(file), bytes.substr(bytes.find("line 5\n")));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600));
}

TEST_F(History, WorksWhereNothingCanBeKept) {
    fs::create_directories(file);
    ConsoleHistory history(Path());
    EXPECT_TRUE(history.Add(u"TEST"));
    EXPECT_THAT(history.Lines(), ElementsAre(u"TEST"));
    ConsoleHistory nowhere({});
    EXPECT_THAT(nowhere.Lines(), IsEmpty());
    EXPECT_TRUE(nowhere.Add(u"TEST"));
}

} // namespace
