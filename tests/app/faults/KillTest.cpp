// SPDX-License-Identifier: MIT
// The program is killed at many moments of a push and of a pull: the repository opens, is
// whole and holds each call's files whole or not at all; each file of the workstation is
// wholly old or wholly new; and the same verb ends right afterwards.
//
// By default at a few moments, at 200 of each with ZEBX_EVERY_FAULT=1 in the environment.
#include "FaultyRun.h"
#include "Workplace.h"

#include <gtest/gtest.h>
#include <iostream>

using namespace AppTest;
using std::chrono::microseconds;

namespace {

std::size_t Moments(std::size_t byDefault) {
    return std::getenv("ZEBX_EVERY_FAULT") ? 200 : byDefault;
}

// The real program, which cannot be interfered with, or the same inside a child of the test,
// which is killed before a certain system call.
enum class Where { Program, Calls };

class Kills : public testing::TestWithParam<Where> {
protected:
    Kills() {
        Must({"init"});
        Must({"connect", "--create"});
        WriteFiles(station.Support(), Generation(1));
        Must({"push"});
    }

    Ended Run(const std::vector<std::string>& arguments) const {
        return GetParam() == Where::Program ? station.Zebx(arguments)
                                            : RunFaulty(station, arguments);
    }
    void Must(const std::vector<std::string>& arguments) const {
        const Ended end = Run(arguments);
        ASSERT_EQ(end.status, 0) << end;
    }

    // Kills the verb at moments from its start to its end and `check`s what is left of each.
    template<typename Check>
    void KillAll(const std::vector<std::string>& arguments, Check check) {
        const Snapshot before(station);
        const FaultyEnd whole = RunFaulty(station, arguments);
        std::size_t length = whole.calls.size();
        if (GetParam() == Where::Program) {
            before.PutBack();
            const auto start = std::chrono::steady_clock::now();
            Must(arguments);
            const auto took = std::chrono::steady_clock::now() - start;
            length = std::size_t(std::chrono::duration_cast<microseconds>(took).count());
        }
        const std::size_t count = Moments(12);
        std::size_t killed = 0;
        for (std::size_t i = 0; i < count && !HasFailure(); ++i) {
            before.PutBack();
            const std::size_t moment = length * i / count;
            SCOPED_TRACE("moment " + std::to_string(moment) + " of " + std::to_string(length));
            killed += KillAt(arguments, moment) ? 1 : 0;
            check();
            Must(arguments);
            ExpectDone();
        }
        std::cout << "killed " << killed << " of " << count << " runs, " << length
                  << (GetParam() == Where::Program ? " us" : " calls") << " long\n";
        EXPECT_GT(killed, 0u); // a program that is done earlier than it was before lives
    }

    bool KillAt(const std::vector<std::string>& arguments, std::size_t moment) {
        if (GetParam() == Where::Program)
            return station.ZebxKilledAfter(microseconds(moment), arguments).status == -1;
        return RunFaulty(station, arguments, [&](FailingCalls& calls) { calls.KillAt(moment); })
            .killed;
    }

    void ExpectDone() const {
        EXPECT_EQ(FilesOf(station.Repository()), Generation(2));
        EXPECT_EQ(FilesIn(station.Support()), Generation(2));
    }

    Station station;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, Kills, testing::Values(Where::Program, Where::Calls),
                         [](const auto& where) {
                             return where.param == Where::Program ? "TheProgramAtAnyTime"
                                                                  : "AChildAtASystemCall";
                         });

TEST_P(Kills, DuringAPushLeaveEachCallWhole) {
    WriteFiles(station.Support(), Generation(2));
    KillAll({"push"}, [&] {
        EXPECT_EQ(WhyHalfACall(FilesOf(station.Repository()), false), "");
        EXPECT_EQ(FilesIn(station.Support()), Generation(2));
    });
}

TEST_P(Kills, DuringThePushToAnEmptyRepositoryLeaveEachCallWhole) {
    WriteFiles(station.Support(), Generation(2));
    fs::remove(station.Repository());
    for (const char* side : {"-wal", "-shm"})
        fs::remove(station.Repository().string() + side);
    Must({"connect", "--create"});
    KillAll({"push"}, [&] { EXPECT_EQ(WhyHalfACall(FilesOf(station.Repository()), true), ""); });
}

TEST_P(Kills, DuringAPullLeaveEachFileWhole) {
    WriteFiles(station.Support(), Generation(2));
    Must({"push"});
    WriteFiles(station.Support(), Generation(1));
    KillAll({"pull"}, [&] {
        EXPECT_EQ(WhyNotWhole(FilesIn(station.Support()), false), "");
        EXPECT_EQ(FilesOf(station.Repository()), Generation(2));
    });
}

TEST_P(Kills, DuringAPullToAnEmptyWorkstationLeaveEachFileWhole) {
    WriteFiles(station.Support(), Generation(2));
    Must({"push"});
    for (const auto& [path, bytes] : Generation(1))
        fs::remove(station.Support() / path);
    KillAll({"pull"}, [&] { EXPECT_EQ(WhyNotWhole(FilesIn(station.Support()), true), ""); });
}
