// SPDX-License-Identifier: MIT
#include "app/Transfer.h"

#include <gtest/gtest.h>

using namespace App;
using Storage::Problem;

namespace {

TEST(TransferResult, WithoutAFailureIsDone) {
    EXPECT_EQ(TransferResult().Status(), ExitStatus::Done);
}

TEST(TransferResult, OnlyLocalFailuresAreALocalProblem) {
    TransferResult result;
    result.somethingFailedHere = true;
    EXPECT_EQ(result.Status(), ExitStatus::LocalFile);
    result.somethingFailed = true;
    EXPECT_EQ(result.Status(), ExitStatus::SomeFailed);
}

TEST(TransferResult, AProblemOfTheRepositoryComesFirst) {
    TransferResult result;
    result.somethingFailed = true;
    result.somethingFailedHere = true;
    result.problem = ExitStatus::Integrity;
    EXPECT_EQ(result.Status(), ExitStatus::Integrity);
}

TEST(TransferResult, EveryProblemHasItsExitStatus) {
    EXPECT_EQ(StatusOf(Problem::Configuration), ExitStatus::Configuration);
    EXPECT_EQ(StatusOf(Problem::Missing), ExitStatus::NotReachable);
    EXPECT_EQ(StatusOf(Problem::NotARepository), ExitStatus::NotReachable);
    EXPECT_EQ(StatusOf(Problem::NewerVersion), ExitStatus::NotReachable);
    EXPECT_EQ(StatusOf(Problem::Unreachable), ExitStatus::NotReachable);
    EXPECT_EQ(StatusOf(Problem::Busy), ExitStatus::NotReachable);
    EXPECT_EQ(StatusOf(Problem::ServerFull), ExitStatus::NotReachable);
    EXPECT_EQ(StatusOf(Problem::NotAllowed), ExitStatus::NotAllowed);
    EXPECT_EQ(StatusOf(Problem::Integrity), ExitStatus::Integrity);
    EXPECT_EQ(StatusOf(Problem::Full), ExitStatus::LocalFile);
    EXPECT_EQ(StatusOf(Problem::Refused), ExitStatus::SomeFailed);
    EXPECT_EQ(StatusOf(Problem::Interrupted), ExitStatus::Interrupted);
    EXPECT_EQ(StatusOf(Problem::Internal), ExitStatus::Internal);
}

} // namespace
