// SPDX-License-Identifier: MIT
// The program's borders: its streams, and what goes wrong inside it.
#include "InProcess.h"

#include <gmock/gmock.h>
#include <new>
#include <streambuf>

using namespace AppTest;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class Program : public InProcess {};

template<typename Error>
class ThrowingBuffer : public std::streambuf {
    int_type overflow(int_type) override { throw Error(); }
};

struct Strange {};

struct Oops : std::exception {
    const char* what() const noexcept override { return "oops"; }
};

// Runs the program with an output that throws.
template<typename Error>
Ended RunThrowing() {
    ThrowingBuffer<Error> buffer;
    std::ostream out(&buffer);
    out.exceptions(std::ios::badbit);
    std::istringstream in;
    std::ostringstream err;
    const int status = App::RunProgram({"--help"}, in, out, err);
    return {status, "", err.str()};
}

TEST_F(Program, NoExceptionLeavesIt) {
    const Ended noMemory = RunThrowing<std::bad_alloc>();
    EXPECT_EQ(noMemory.status, 70);
    EXPECT_EQ(noMemory.err, "zebx: There is not enough memory for this.\n");
    const Ended oops = RunThrowing<Oops>();
    EXPECT_EQ(oops.status, 70);
    EXPECT_THAT(oops.err, HasSubstr("inside the program: oops."));
    EXPECT_EQ(RunThrowing<Strange>().status, 70);
}

TEST_F(Program, AnOutputThatTakesNothingIsALocalFailure) {
    const Ended run = Station().ZebxWritingTo("/dev/full", {"--help"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.err, HasSubstr("could not be written to the standard output"));
}

TEST_F(Program, ColoursAppearOnATerminalOnlyAndNeverWithNoColor) {
    Station station;
    ASSERT_EQ(station.Zebx({"init"}).status, 0);
    ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    EXPECT_THAT(station.ZebxOnATerminal({"push", "gs"}).err,
                StartsWith("\x1b[31mFailure:\x1b[0m "));
    EXPECT_THAT(station.Zebx({"push", "gs"}).err, StartsWith("Failure: "));
    station.Set("NO_COLOR", "1");
    EXPECT_THAT(station.ZebxOnATerminal({"push", "gs"}).err, StartsWith("Failure: "));
}

TEST_F(Program, OnATerminalLinesEndAtBlanks) {
    const Station station;
    const std::string told = station.ZebxOnATerminal({"status", "--install", "/nowhere"}).err;
    std::istringstream lines(told);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_LE(line.size(), 81U) << line; // the terminal adds a carriage return
    EXPECT_GE(count, 3);
    EXPECT_THAT(told, HasSubstr("zebx --install DIR"));
}

TEST_F(Program, RunsAgainInTheSameProcessWithoutTheOptionsOfBefore) {
    EXPECT_EQ(RunHere({"version", "--install", "/nowhere"}).status, 3);
    EXPECT_EQ(RunHere({"version"}).status, 0);
}

TEST_F(Program, ControlCharactersOfWordsDoNotReachTheTerminal) {
    const Ended run = RunHere({"push", "\x1b[2J"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, Not(HasSubstr("\x1b")));
}

} // namespace
