// SPDX-License-Identifier: MIT
#include "ZEBXLogging/LogEngine.h"

#include "platform/os/Path.h"
#include "support/Workstation.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

TEST(LogEngine, TracingIsOffUntilTheSettingsSayOtherwise) {
    Workstation station;
    EXPECT_EQ(CLogEngine::GetLoggingOnOff(), 0);
    station.WriteSettings("[logging]\ntrace = on\n");
    EXPECT_NE(CLogEngine::GetLoggingOnOff(), 0);
}

TEST(LogEngine, TheTraceFileLiesInTheStateFolderWhichIsMade) {
    Workstation station;
    const std::filesystem::path path = CLogEngine::GetLogFileFullPath();
    EXPECT_EQ(path, station.Folder().Native() / "state/StudioZEB/trace.log");
    EXPECT_TRUE(std::filesystem::is_directory(path.parent_path()));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(LogEngine, TheTraceFileCanLieElsewhere) {
    Workstation station;
    station.WriteSettings("[logging]\ntrace_file = /tmp/zebx-other.log\n");
    EXPECT_EQ(CLogEngine::GetLogFileFullPath(), "/tmp/zebx-other.log");
}

// Last: the switch stays for the rest of the process.
TEST(LogEngineSwitch, ChangesTheAnswerAtOnceAndWinsOverTheSettings) {
    Workstation station;
    station.WriteSettings("[logging]\ntrace = on\n");
    CLogEngine::SetLoggingOnOff(0);
    EXPECT_EQ(CLogEngine::GetLoggingOnOff(), 0);
    CLogEngine::SetLoggingOnOff(1);
    EXPECT_NE(CLogEngine::GetLoggingOnOff(), 0);
}

} // namespace
