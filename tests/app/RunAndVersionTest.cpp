// SPDX-License-Identifier: MIT
#include "Station.h"

#include <algorithm>
#include <fcntl.h>
#include <gmock/gmock.h>

using namespace AppTest;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

TEST(RunVerb, RunsTheModulesCommandWhateverItsCase) {
    const Station station;
    for (const char* name : {"test", "TEST"}) {
        const Ended run = station.Zebx({"run", name});
        EXPECT_EQ(run.status, 0) << run;
        EXPECT_THAT(run.out, AllOf(Not(IsEmpty()), EndsWith("\n")));
        EXPECT_THAT(run.err, IsEmpty());
    }
}

TEST(RunVerb, TheCommandTestTellsOfEachMissingDrawingAndCountsTheOthers) {
    const Station station;
    const fs::path folder = InstallationWithoutPlugin(station);
    fs::create_symlink(fs::path(ZEBX_BUILD_DIR) / "lib/zebx/ZEBXRepositoryClient.arx",
                       folder / "ZEBXRepositoryClient.arx");
    Write(folder / "assemblyElements/a.dwg", "drawing");
    Write(station.Support() / "Catalogues.xml",
          "<catalogues><catalogue reference=\"ASSEMBLYSCHEMES_CATALOG\"/></catalogues>");
    Write(station.Support() / "Catalogues/ASSEMBLYSCHEMES_CATALOG.xml",
          "<catalogue><item guid=\"1\" name=\"Shema\">"
          "<property name=\"AS_BLOCK1\" type=\"text\" value=\"a.dwg\"/>"
          "<property name=\"AS_BLOCK6\" type=\"text\" value=\"čvor.dwg\"/></item></catalogue>");
    const Ended run = station.Zebx({"run", "test", "--install", folder.string()});
    EXPECT_EQ(run.status, 0) << run;
    std::string missing = (folder / "assemblyElements/čvor.dwg").string();
    std::replace(missing.begin(), missing.end(), '/', '\\');
    EXPECT_EQ(run.out, "\nFali " + missing + "\ntotal blocks = 1\n");
}

TEST(RunVerb, TheCommandTestSaysThatItsCatalogueIsNotDeclared) {
    const Station station;
    const fs::path folder = InstallationWithoutPlugin(station);
    fs::create_symlink(fs::path(ZEBX_BUILD_DIR) / "lib/zebx/ZEBXRepositoryClient.arx",
                       folder / "ZEBXRepositoryClient.arx");
    const Ended run = station.Zebx({"run", "test", "--install", folder.string()});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("\"ASSEMBLYSCHEMES_CATALOG\""));
    EXPECT_THAT(run.out, Not(HasSubstr("total blocks")));
}

TEST(RunVerb, AnUnknownCommandIsAUsageErrorThatListsTheKnownOnes) {
    const Ended run = Station().Zebx({"run", "frobnicate"});
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("\"frobnicate\""), HasSubstr("\n  test\n")));
}

TEST(RunVerb, WithoutTheModuleNamesItsFile) {
    const Station station;
    const fs::path folder = InstallationWithoutPlugin(station);
    const Ended run = station.Zebx({"run", "test", "--install", folder.string()});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.err, HasSubstr((folder / "ZEBXRepositoryClient.arx").string()));
}

TEST(RunVerb, AModuleThatIsNoApplicationIsRefused) {
    const Station station;
    const fs::path folder = InstallationWithoutPlugin(station);
    fs::create_symlink(fs::path(ZEBX_BUILD_DIR) / "lib/zebx/ZEBXLogging.arx",
                       folder / "ZEBXRepositoryClient.arx");
    const Ended run = station.Zebx({"run", "test", "--install", folder.string()});
    EXPECT_EQ(run.status, 3) << run;
}

TEST(Version, ListsTheProgramAndEveryModuleAndNeedsNoRepository) {
    const Station station;
    const Ended run = station.Zebx({"version"});
    EXPECT_EQ(run.status, 0) << run;
    for (const char* name :
         {"zebx ", "ZEBXGisCore.arx ", "ZEBXLogging.arx ", "ZEBXRepositoryClient.arx ",
          "ZEBXRepositoryClientPlugin_Sql.arx ", "ZEBXWorkspaceCore.arx "}) {
        const auto line = run.out.find(name);
        ASSERT_NE(line, std::string::npos) << name << run;
        const std::string version = run.out.substr(line, run.out.find('\n', line) - line);
        EXPECT_THAT(version, EndsWith(" " ZEBX_VERSION)) << run;
    }
    EXPECT_FALSE(fs::exists(station.Folder() / "data"));
}

TEST(Version, AModuleWithoutAVersionRecordIsToldSo) {
    const Station station;
    const fs::path folder = InstallationWithoutPlugin(station);
    Write(folder / "Other.arx", "no module");
    const Ended run = station.Zebx({"version", "--install", folder.string()});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("Other.arx  no version record\n"));
}

} // namespace
