// SPDX-License-Identifier: MIT
#include "Content.h"

#include <gmock/gmock.h>

using namespace AppTest;
using testing::HasSubstr;

namespace {

TEST(Init, MakesTheFoldersOfEveryKindAndTheSettings) {
    const Station station;
    const Ended run = station.Zebx({"init"});
    EXPECT_EQ(run.status, 0) << run;
    for (const char* folder : {"label", "nodes", "PipeCatalogueBlocks", "symbol", "GPE"})
        EXPECT_TRUE(fs::is_directory(station.Support() / folder)) << folder;
    EXPECT_THAT(run.out, HasSubstr("Made " + station.Ini().string() + "\n"));
    EXPECT_THAT(run.out, HasSubstr("zebx connect"));
    EXPECT_EQ(run.err, "");
}

TEST(Init, TheSettingsArePrivateAndSwitchOnEveryOptionalKind) {
    const Station station;
    ASSERT_EQ(station.Zebx({"init"}).status, 0);
    EXPECT_EQ(fs::status(station.Ini()).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(station.Ini().parent_path()).permissions(), fs::perms(0700));
    EXPECT_THAT(Bytes(station.Ini()),
                HasSubstr("\nenabled = 001_PUMPCURVE, 002_TERRAINTYPE, 003_MANHOLE_RULES, "
                          "004_PIPE_RULES, 006_ALIGNPREVIEW, 007_ALIGNLABEL, 008_GPE, "
                          "005_GPEBLOCKS\n"));
}

TEST(Init, ItsSettingsAreReadWithoutAProblem) {
    for (const char* language : {"en", "hr"}) {
        Station station;
        station.Set("ZEBX_LANGUAGE", language);
        ASSERT_EQ(station.Zebx({"init"}).status, 0);
        EXPECT_EQ(station.Zebx({"version"}).err, "");
    }
}

TEST(Init, NeverOverwritesSettings) {
    const Station station;
    Write(station.Ini(), "[kinds]\nenabled = 008_GPE\n");
    const Ended run = station.Zebx({"init"});
    EXPECT_EQ(run.status, 6) << run;
    EXPECT_THAT(run.err, HasSubstr(station.Ini().string()));
    EXPECT_EQ(Bytes(station.Ini()), "[kinds]\nenabled = 008_GPE\n");
    EXPECT_FALSE(fs::exists(station.Support()));
}

TEST(Init, KeepsTheFolderThatAnOptionNames) {
    const Station station;
    const fs::path support = station.Folder() / "my drawings";
    const Ended run = station.Zebx({"init", "--support", support.string()});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_TRUE(fs::is_directory(support / "nodes"));
    EXPECT_THAT(Bytes(station.Ini()), HasSubstr("\nsupport = " + support.string() + "/\n"));
    EXPECT_THAT(station.Zebx({"status"}).out, HasSubstr(support.string() + "/\n"));
}

TEST(Init, WritesToTheFileThatAnOptionNames) {
    const Station station;
    const fs::path file = station.Folder() / "other/my.ini";
    ASSERT_EQ(station.Zebx({"--config", file.string(), "init"}).status, 0);
    EXPECT_TRUE(fs::exists(file));
    EXPECT_FALSE(fs::exists(station.Ini()));
}

TEST(Init, AFolderThatTheSettingsCannotHoldIsRefusedAndNothingIsMade) {
    const Station station;
    const Ended run = station.Zebx({"init", "--support", (station.Folder() / "a\nb").string()});
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_FALSE(fs::exists(station.Ini()));
    EXPECT_FALSE(fs::exists(station.Folder() / "a\nb"));
}

TEST(Init, AFolderThatCannotBeMadeIsNamed) {
    const Station station;
    Write(station.Folder() / "data/StudioZEB/support", "a file in the way");
    const Ended run = station.Zebx({"init"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.err, HasSubstr(station.Support().string()));
    EXPECT_FALSE(fs::exists(station.Ini()));
}

} // namespace
