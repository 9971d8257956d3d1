// SPDX-License-Identifier: MIT
#include "platform/host/FileSteps.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

using namespace Platform;

namespace {

TEST(FileSteps, AreToldToTheListenerAlone) {
    std::vector<FileStep> told;
    SetFileStepListener([&told](FileStep step) { told.push_back(step); });
    TellFileStep(FileStep::Read);
    TellFileStep(FileStep::Written);
    SetFileStepListener({});
    TellFileStep(FileStep::Stored);
    EXPECT_EQ(told, (std::vector{FileStep::Read, FileStep::Written}));
}

TEST(FileSteps, WhoeverListensForAWhilePassesThemOnAndPutsTheFormerListenerBack) {
    std::vector<FileStep> first;
    std::vector<FileStep> second;
    SetFileStepListener([&first](FileStep step) { first.push_back(step); });
    auto former = SetFileStepListener([&second](FileStep step) { second.push_back(step); });
    former(FileStep::Read);
    TellFileStep(FileStep::Stored);
    SetFileStepListener(std::move(former));
    TellFileStep(FileStep::Written);
    SetFileStepListener({});
    EXPECT_EQ(first, (std::vector{FileStep::Read, FileStep::Written}));
    EXPECT_EQ(second, std::vector{FileStep::Stored});
}

} // namespace
