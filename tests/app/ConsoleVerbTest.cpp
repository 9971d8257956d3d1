// SPDX-License-Identifier: MIT
// zebx console as a process: fed by a file, and at a real terminal.
#include "Documents.h"
#include "Terminal.h"

#include <gmock/gmock.h>
#include <signal.h>

using namespace AppTest;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

TEST(ConsoleVerb, RunsTheModulesCommandsUpToTheEndOfInputWithoutAPrompt) {
    const Station station;
    const Ended run = station.ZebxReading("test\nTEST\n", {"console"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "\ntotal blocks = 0\n\ntotal blocks = 0\n");
    EXPECT_THAT(run.err, IsEmpty());
}

TEST(ConsoleVerb, AFailedCommandOfAScriptIsStatusEight) {
    const Station station;
    const Ended run = station.ZebxReading("frobnicate\ntest\nquit\n", {"console"});
    EXPECT_EQ(run.status, 8) << run;
    EXPECT_THAT(run.out, HasSubstr("total blocks"));
    EXPECT_THAT(run.err, HasSubstr("\"frobnicate\""));
    EXPECT_FALSE(fs::exists(station.Folder() / "state/StudioZEB/console-history"));
}

TEST(ConsoleVerb, WithJsonIsAUsageErrorInADocument) {
    const Station station;
    const Ended run = station.ZebxReading("test\n", {"console", "--json"});
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_EQ(DocumentOf(run)["schema"], "zebx/console/1");
    EXPECT_EQ(DocumentOf(run)["error"]["status"], 2);
}

TEST(ConsoleVerb, WithoutTheModuleDoesNotBegin) {
    const Station station;
    const fs::path folder = InstallationWithoutPlugin(station);
    const Ended run = station.ZebxReading("help\n", {"console", "--install", folder.string()});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.err, HasSubstr("ZEBXRepositoryClient.arx"));
    EXPECT_THAT(run.out, IsEmpty());
}

class ConsoleOnATerminal : public testing::Test {
protected:
    ConsoleOnATerminal() {
        fs::create_symlink(ZEBX_WAITING_MODULE,
                           InstallationWithoutPlugin(station) / "ZEBXRepositoryClient.arx");
        station.Set("ZEBX_INSTALL", (station.Folder() / "installation").string());
    }

    fs::path HistoryFile() const { return station.Folder() / "state/StudioZEB/console-history"; }

    Station station;
};

TEST_F(ConsoleOnATerminal, PromptsAndEndsAtQuit) {
    Terminal terminal(station, {"console"});
    ASSERT_TRUE(terminal.WaitForPrompt());
    terminal.Type("help\n");
    ASSERT_TRUE(terminal.WaitFor("registered by WAITING"));
    ASSERT_TRUE(terminal.WaitForPrompt());
    terminal.Type("quit\n");
    EXPECT_EQ(terminal.Finish().status, 0);
}

TEST_F(ConsoleOnATerminal, EndsAtCtrlD) {
    Terminal terminal(station, {"console"});
    ASSERT_TRUE(terminal.WaitForPrompt());
    terminal.Type("frobnicate\n");
    ASSERT_TRUE(terminal.WaitForPrompt());
    terminal.Type("\x04");
    const Ended run = terminal.Finish();
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, testing::EndsWith("\n"));
}

TEST_F(ConsoleOnATerminal, CtrlCAtThePromptDropsTheLine) {
    Terminal terminal(station, {"console"});
    ASSERT_TRUE(terminal.WaitForPrompt());
    terminal.Type("frobnicate");
    ASSERT_TRUE(terminal.WaitFor("frobnicate"));
    terminal.Type("\x03");
    ASSERT_TRUE(terminal.WaitFor("^C"));
    ASSERT_TRUE(terminal.WaitForPrompt());
    terminal.Type("quit\n");
    const Ended run = terminal.Finish();
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, Not(HasSubstr("frobnicate")));
    EXPECT_EQ(Bytes(HistoryFile()), "quit\n");
}

TEST_F(ConsoleOnATerminal, CtrlCStopsTheCommandThatRunsAndTheConsoleGoesOn) {
    Terminal terminal(station, {"console"});
    for (int turn = 0; turn < 2; ++turn) {
        ASSERT_TRUE(terminal.WaitForPrompt());
        terminal.Type("wait\n");
        ASSERT_TRUE(terminal.WaitFor("waiting"));
        terminal.Type("\x03");
        ASSERT_TRUE(terminal.WaitFor("stopped"));
        ASSERT_TRUE(terminal.WaitFor("The command WAIT was interrupted."));
    }
    ASSERT_TRUE(terminal.WaitForPrompt());
    terminal.Type("\x04");
    EXPECT_EQ(terminal.Finish().status, 0);
}

TEST_F(ConsoleOnATerminal, WhatWasTypedBeforeComesBackAlsoInTheNextConsole) {
    {
        Terminal terminal(station, {"console"});
        ASSERT_TRUE(terminal.WaitForPrompt());
        terminal.Type("first-one\n");
        ASSERT_TRUE(terminal.WaitForPrompt());
        terminal.Type("\x04");
        EXPECT_EQ(terminal.Finish().status, 0);
    }
    EXPECT_EQ(Bytes(HistoryFile()), "first-one\n");
    EXPECT_EQ(fs::status(HistoryFile()).permissions(), fs::perms(0600));
    Terminal terminal(station, {"console"});
    ASSERT_TRUE(terminal.WaitForPrompt());
    terminal.Type("\x1b[A\n");
    EXPECT_TRUE(terminal.WaitFor("no command \"first-one\""));
}

TEST_F(ConsoleOnATerminal, LettersOfEveryLanguageAndWrongBytesAreTakenAsTheyAre) {
    Terminal terminal(station, {"console"});
    ASSERT_TRUE(terminal.WaitForPrompt());
    // The last letter is corrected as a whole.
    terminal.Type("\xC4\x8Dvor\xE8\xF0\x9F\x98\x80y\xE2\x82\xAC\x7F\n");
    ASSERT_TRUE(terminal.WaitFor("There is no command"));
    ASSERT_TRUE(terminal.WaitForPrompt());
    terminal.Type("\x04");
    EXPECT_EQ(terminal.Finish().status, 0);
    EXPECT_EQ(Bytes(HistoryFile()), "\xC4\x8Dvor\xE8\xF0\x9F\x98\x80y\n");
}

TEST_F(ConsoleOnATerminal, ASignalThatEndsTheProgramEndsItAtThePrompt) {
    for (const int signal : {SIGTERM, SIGHUP}) {
        Terminal terminal(station, {"console"});
        ASSERT_TRUE(terminal.WaitForPrompt());
        terminal.Signal(signal);
        EXPECT_EQ(terminal.Finish().status, -signal);
    }
}

} // namespace
