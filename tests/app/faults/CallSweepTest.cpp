// SPDX-License-Identifier: MIT
// Each system call of the program and of SQLite is made to fail once, verb by verb: the
// program says so, nothing is left half done, and the same verb ends right afterwards.
//
// By default a sample of the calls that is the same each time; every call with
// ZEBX_EVERY_FAULT=1 in the environment (some minutes).
#include "FaultyRun.h"
#include "Workplace.h"

#include <gmock/gmock.h>

using namespace AppTest;

namespace {

constexpr std::size_t kSample = 25;

class CallSweep : public testing::Test {
protected:
    CallSweep() {
        Must({"init"});
        Must({"connect", "--create"});
        WriteFiles(station.Support(), Generation(1));
        Must({"push"});
    }

    void Must(const std::vector<std::string>& arguments) {
        const FaultyEnd end = RunFaulty(station, arguments);
        ASSERT_EQ(end.status, 0) << end;
    }

    // Runs the verb from this state once for each call with that call failing, and `check`s
    // what is left; then the verb runs again.
    void Sweep(const std::vector<std::string>& arguments, int error,
               const std::function<void(const FaultyEnd&)>& check) {
        const Snapshot before(station);
        const FaultyEnd whole = RunFaulty(station, arguments);
        ASSERT_EQ(whole.status, 0) << whole;
        const std::size_t step = StepThrough(whole.calls.size(), kSample);
        RecordProperty("calls", int(whole.calls.size()));
        for (std::size_t i = 0; i < whole.calls.size(); i += step) {
            before.PutBack();
            const FaultyEnd end = RunFaulty(
                station, arguments, [&](FailingCalls& calls) { calls.FailNumber(i, error); });
            SCOPED_TRACE(std::to_string(i) + ": " + whole.calls[i]);
            // A text that cannot be looked up stands as its number, and what cannot be looked
            // at, or opened for writing, is not there as far as "status" can tell.
            const bool shownAsItIs =
                whole.calls[i].find("/messages/") != std::string::npos ||
                (arguments.front() == "status" && (whole.calls[i].starts_with("fstatat") ||
                                                   whole.calls[i].starts_with("sqlite open")));
            if (!shownAsItIs)
                ExpectToldOrHarmless(end, whole);
            check(end);
            const FaultyEnd again = RunFaulty(station, arguments);
            EXPECT_EQ(again.status, 0) << end << again;
            if (HasFailure())
                return; // the others would say the same
        }
    }

    // A warning says what was done instead: without zebx.ini the defaults hold, and with them
    // the optional kinds stay away.
    static bool DidOtherwise(const FaultyEnd& end) {
        return end.err.find("Warning: ") != std::string::npos;
    }

    static void ExpectToldOrHarmless(const FaultyEnd& end, const FaultyEnd& whole) {
        EXPECT_GE(end.status, 0) << "crashed";
        EXPECT_NE(end.status, 70) << end;
        if (end.status == 0) {
            EXPECT_TRUE(DidOtherwise(end) || end.out == whole.out) << end << whole;
            return;
        }
        EXPECT_THAT(end.err,
                    testing::AnyOf(testing::HasSubstr("Failure: "), testing::HasSubstr("zebx: ")))
            << end;
    }

    Station station;
};

} // namespace

TEST_F(CallSweep, AFailedPullLeavesEachFileWholeAndOnceMoreEndsRight) {
    WriteFiles(station.Support(), Generation(2));
    Must({"push"});
    WriteFiles(station.Support(), Generation(1));
    for (const int error : {EIO, ENOSPC})
        Sweep({"pull"}, error, [&](const FaultyEnd& end) {
            const Files files = FilesIn(station.Support());
            EXPECT_EQ(WhyNotWhole(files, false), "") << end;
            if (end.status == 0 && !DidOtherwise(end)) {
                EXPECT_EQ(files, Generation(2)) << end;
            }
            EXPECT_EQ(FilesOf(station.Repository()), Generation(2));
        });
}

TEST_F(CallSweep, AFailedPushLeavesEachCallWholeAndOnceMoreEndsRight) {
    WriteFiles(station.Support(), Generation(2));
    for (const int error : {EIO, ENOSPC})
        Sweep({"push"}, error, [&](const FaultyEnd& end) {
            EXPECT_EQ(FilesIn(station.Support()), Generation(2)) << end;
            const Files files = FilesOf(station.Repository());
            EXPECT_EQ(WhyHalfACall(files, false), "") << end;
            if (end.status == 0 && !DidOtherwise(end)) {
                EXPECT_EQ(files, Generation(2)) << end;
            }
        });
}

TEST_F(CallSweep, AFailedListingOrStatusSaysSo) {
    for (const char* verb : {"ls", "status"})
        Sweep({verb}, EIO, [&](const FaultyEnd&) {
            EXPECT_EQ(FilesOf(station.Repository()), Generation(1));
            EXPECT_EQ(FilesIn(station.Support()), Generation(1));
        });
}
