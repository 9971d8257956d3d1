// SPDX-License-Identifier: MIT
// The console with commands of the test's own, and lines that nobody types.
#include "app/Console.h"
#include "InProcess.h"
#include "app/HostedModule.h"

#include "platform/host/Interruption.h"
#include "platform/host/Prompt.h"
#include "platform/text/Utf8.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

using namespace App;
using namespace ZEBGis::Workspace;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char16_t* kGroup = u"OF THE TEST";

void Greet() {
    acutPrintf(u"\nhello");
}
void Refuse() {
    throw AppError(ExitStatus::Configuration, u"there is no camel");
}
void Break() {
    throw std::runtime_error("broken");
}
void LogFailure() {
    CWsManager::Instance()->LogMessage(MessageFailure, u"it failed");
}
void Interrupt() {
    Platform::RequestInterruption();
}

class ConsoleOfCommands : public AppTest::InProcess {
protected:
    ConsoleOfCommands() {
        const auto add = [this](const char16_t* name, Platform::CommandHandler handler) {
            registry.AddCommand({kGroup, name, name, 0, handler});
        };
        add(u"GREET", Greet);
        add(u"REFUSE", Refuse);
        add(u"BREAK", Break);
        add(u"FAIL", LogFailure);
        add(u"INTERRUPT", Interrupt);
    }
    ~ConsoleOfCommands() override { registry.RemoveGroup(kGroup); }

    ExitStatus Type(const std::string& lines, Console::Kind kind = Console::Kind::Script) {
        std::istringstream in(lines);
        const auto terminal = boost::make_shared<TerminalSink>(err, TerminalStyle());
        const auto counter = boost::make_shared<CountingSink>();
        const SinkGuard showing(terminal);
        const SinkGuard counting(counter);
        Json result;
        Session session{in, out, *terminal, *counter, result};
        PlainLines source(in);
        Console console(session, registry, kind);
        return console.Run(source);
    }

    Platform::CommandRegistry& registry = RequireCommandRegistry();
    std::ostringstream out;
    std::ostringstream err;
};

TEST_F(ConsoleOfCommands, RunsWhatALineNamesWhateverItsCaseAndTheBlanksAroundIt) {
    EXPECT_EQ(Type("GREET\n  greet\t\r\n"), ExitStatus::Done);
    EXPECT_EQ(out.str(), "\nhello\n\nhello\n");
    EXPECT_THAT(err.str(), IsEmpty());
}

TEST_F(ConsoleOfCommands, TakesALastLineThatHasNoEnd) {
    Type("GREET");
    EXPECT_EQ(out.str(), "\nhello\n");
}

TEST_F(ConsoleOfCommands, PassesOverBlankLines) {
    EXPECT_EQ(Type("\n   \n\r\n"), ExitStatus::Done);
    EXPECT_THAT(out.str() + err.str(), IsEmpty());
}

TEST_F(ConsoleOfCommands, EndsAtQuit) {
    EXPECT_EQ(Type("quit\nGREET\n"), ExitStatus::Done);
    EXPECT_THAT(out.str(), IsEmpty());
}

TEST_F(ConsoleOfCommands, AnUnknownCommandIsToldWithWhatItMayHaveMeantAndTheNextOneRuns) {
    EXPECT_EQ(Type("GRET\nGREET\n"), ExitStatus::SomeFailed);
    EXPECT_EQ(err.str(), "Failure: There is no command \"GRET\".\nDid you mean GREET?\n"
                         "HELP lists the commands.\n");
    EXPECT_EQ(out.str(), "\nhello\n");
}

TEST_F(ConsoleOfCommands, ACommandThatCannotWorkIsToldAndTheNextOneRuns) {
    EXPECT_EQ(Type("REFUSE\nBREAK\nGREET\n"), ExitStatus::SomeFailed);
    EXPECT_THAT(err.str(), AllOf(HasSubstr("Failure: there is no camel\n"), HasSubstr("broken")));
    EXPECT_EQ(out.str(), "\nhello\n");
}

TEST_F(ConsoleOfCommands, AFailureInTheWorkspaceLogIsAFailureOfTheCommandAndToldOnce) {
    EXPECT_EQ(Type("FAIL\n"), ExitStatus::SomeFailed);
    EXPECT_EQ(err.str(), "Failure: it failed\n");
}

TEST_F(ConsoleOfCommands, AnInterruptedCommandEndsAScript) {
    EXPECT_EQ(Type("INTERRUPT\nGREET\n"), ExitStatus::Interrupted);
    EXPECT_EQ(err.str(), "Failure: The command INTERRUPT was interrupted.\n");
    EXPECT_THAT(out.str(), IsEmpty());
}

TEST_F(ConsoleOfCommands, AnInteractiveConsoleGoesOnAfterAnInterruptionAndEndsWithZero) {
    EXPECT_EQ(Type("INTERRUPT\nGREET\nREFUSE\n", Console::Kind::Interactive), ExitStatus::Done);
    EXPECT_EQ(out.str(), "\nhello\n");
}

TEST_F(ConsoleOfCommands, HelpListsTheCommandsOfTheHostAndOfOthers) {
    Type("help\n");
    EXPECT_THAT(out.str(), AllOf(HasSubstr("\nREPOSITORY  open the configuration dialog\n"),
                                 HasSubstr("\nHELP        "), HasSubstr("\nQUIT        "),
                                 HasSubstr("\nGREET       registered by OF THE TEST\n")));
}

TEST_F(ConsoleOfCommands, InCroatianTheHostsCommandsHaveNamesOfTheirOwnBesideTheEnglishOnes) {
    workstation.Set("ZEBX_LANGUAGE", "hr");
    Type("pomoć\nkraj\nGREET\n");
    EXPECT_THAT(out.str(), AllOf(HasSubstr("\nPOMOĆ (HELP) "),
                                 HasSubstr("REPOZITORIJ (REPOSITORY)"), Not(HasSubstr("hello"))));
    Type("QUIT\nGREET\n");
    EXPECT_THAT(out.str(), Not(HasSubstr("hello")));
}

TEST_F(ConsoleOfCommands, ItsCommandsAreGoneWithIt) {
    Type("");
    EXPECT_FALSE(registry.Find(u"HELP"));
    EXPECT_FALSE(registry.Find(u"REPOSITORY"));
}

TEST_F(ConsoleOfCommands, BytesThatAreNoUtf8ReachTheCommandsName) {
    std::istringstream in("\xE8vor \xC4\x8D\n");
    PlainLines lines(in);
    const auto line = lines.Next();
    ASSERT_TRUE(line);
    EXPECT_EQ(Platform::ToUtf8(*line), "\xE8vor \xC4\x8D");
    EXPECT_FALSE(lines.Next());
}

} // namespace
