// SPDX-License-Identifier: MIT
#include "platform/host/FileSteps.h"

#include <gtest/gtest.h>
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

} // namespace
