// SPDX-License-Identifier: MIT
#include "Documents.h"
#include "Lines.h"
#include "Plant.h"
#include "app/Print.h"

#include "platform/text/Utf8.h"

#include <gmock/gmock.h>
#include <unistd.h>

using namespace AppTest;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class Doctor : public testing::Test {
protected:
    void SetUpRepository() const {
        ASSERT_EQ(station.Zebx({"init"}).status, 0);
        ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    }
    void PushOne() const {
        Write(station.Support() / "nodes/a.dwg", "12345");
        ASSERT_EQ(station.Zebx({"push", "ncf:002_NODE"}).status, 0);
    }

    Station station;
};

TEST_F(Doctor, FindsNothingWhereEverythingHolds) {
    SetUpRepository();
    PushOne();
    const Ended run = station.Zebx({"doctor"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.err, "");
    std::vector<std::string> checks = Words(run.out);
    ASSERT_GE(checks.size(), 13u) << run;
    EXPECT_EQ(checks.back(), "Nothing stands in the way of push and pull.");
    EXPECT_THAT(run.out, AllOf(Not(HasSubstr("warning")), Not(HasSubstr("FAILURE"))));
    for (const char* part :
         {"Versions", "Installation", "Support folder", "Settings", "Message table",
          "Storage plug-in", "Storage settings", "Repository", "Version of the tables", "Rights",
          "Space for the support folder", "Space for the repository", "Clock"})
        EXPECT_THAT(checks, Contains(StartsWith(std::string("ok ") + part + ": "))) << run;
}

TEST_F(Doctor, OfANewWorkstationSaysWhatToTypeAndGoesOn) {
    const Ended run = station.Zebx({"doctor"});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(Words(run.out), AllOf(Contains(StartsWith("warning Support folder: ")),
                                      Contains(HasSubstr("zebx init")),
                                      Contains(StartsWith("FAILURE Repository: ")),
                                      Contains(StartsWith("ok Space for the support folder: ")),
                                      Contains("Failures: 1, warnings: 1.")));
}

TEST_F(Doctor, TheFirstFailureGivesTheStatus) {
    Write(station.Support(), "a file in the folder's place");
    const Ended run = station.Zebx({"doctor"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.out, AllOf(HasSubstr("is no folder"), HasSubstr("FAILURE  Repository")));
}

TEST_F(Doctor, TellsALineOfTheSettingsThatIsNotUnderstood) {
    SetUpRepository();
    Write(station.Ini(), "[general]\nlanguage = xx\n");
    const Ended run = station.Zebx({"doctor"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("warning  Settings: " + station.Ini().string() + ":2:"));
    EXPECT_THAT(run.out, HasSubstr("Failures: 0, warnings: 1."));
}

TEST_F(Doctor, TellsWhatAMessageTableLacks) {
    const fs::path messages = InstallationWithoutPlugin(station) / "messages";
    const std::string table = Bytes(messages / "en");
    Write(messages / "en", table.substr(0, table.find("\n21704 = ") + 1));
    const Ended run = station.Zebx({"doctor", "--install", messages.parent_path().string()});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(Words(run.out), Contains(StartsWith("FAILURE Message table: "))) << run;
    EXPECT_THAT(run.out, HasSubstr("21704")) << run;
}

TEST_F(Doctor, TellsModulesOfAnotherVersion) {
    const fs::path folder = InstallationWithoutPlugin(station);
    Write(folder / "Older.arx", "no version record in here");
    Write(folder / "ZEBXRepositoryClientPlugin_Other.arx", "has versions of its own");
    const Ended run = station.Zebx({"doctor", "--install", folder.string()});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.out, HasSubstr("but: Older.arx no version\n")) << run;
}

TEST_F(Doctor, WithoutAPluginSaysWhereItLookedAndGoesOn) {
    const fs::path folder = InstallationWithoutPlugin(station);
    const Ended run = station.Zebx({"doctor", "--install", folder.string()});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(Words(run.out), AllOf(Contains(StartsWith("FAILURE Installation: ")),
                                      Contains(StartsWith("FAILURE Storage plug-in: ")),
                                      Contains(StartsWith("ok Space for the support folder: "))));
}

TEST_F(Doctor, TellsStorageSettingsThatAreNotUnderstood) {
    SetUpRepository();
    Write(station.Ini().parent_path() / "RepositoryStorageSettings" /
              "ZEBXRepositoryClientPlugin_Sql.ini",
          "what is this?\n");
    const Ended run = station.Zebx({"doctor"});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.out, HasSubstr("FAILURE  Storage settings: ")) << run;
}

TEST_F(Doctor, TellsARepositoryOfANewerVersion) {
    SetUpRepository();
    Plant(station, "UPDATE head SET schema_version = 99");
    const Ended run = station.Zebx({"doctor"});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(Words(run.out), Contains(StartsWith("FAILURE Repository: "))) << run;
}

TEST_F(Doctor, WarnsWhenTheNewestRevisionIsOfTheFuture) {
    SetUpRepository();
    PushOne();
    Plant(station, "UPDATE revision SET made_at = '2999-12-31T23:59:59Z'");
    const Ended run = station.Zebx({"doctor"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("warning  Clock: "));
    EXPECT_THAT(run.out, HasSubstr("2999-12-31T23:59:59Z"));
}

TEST_F(Doctor, WarnsWhenAPullWouldNotFitOnTheDisk) {
    SetUpRepository();
    PushOne();
    Plant(station, "UPDATE stored_file SET size_bytes = 1000000000000000");
    const Ended run = station.Zebx({"doctor"});
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("warning  Space for the support folder: "));
    EXPECT_THAT(run.out, HasSubstr("953674316 MiB"));
}

TEST_F(Doctor, WarnsWhoMayOnlyReadAndFailsForASupportFolderWithoutRights) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    SetUpRepository();
    PushOne();
    const Ended first = station.ZebxAsNobody({"status"}); // makes the copy that nobody may run
    (void)first;
    for (const auto& entry : fs::recursive_directory_iterator(station.Folder()))
        fs::permissions(entry, entry.is_directory() ? fs::perms(0755) : fs::perms(0644),
                        fs::perm_options::add);
    const Ended run = station.ZebxAsNobody({"doctor"});
    EXPECT_EQ(run.status, 9) << run;
    EXPECT_THAT(run.out, HasSubstr("you may not write to the folder")) << run;
    EXPECT_THAT(Words(run.out), Contains("warning Rights: you may read only")) << run;
    fs::permissions(station.Support(), fs::perms(0));
    EXPECT_THAT(station.ZebxAsNobody({"doctor"}).out, HasSubstr("you may not read the folder"));
}

TEST_F(Doctor, FitsEightyColumnsInBothLanguages) {
    for (const char* language : {"en", "hr"}) {
        station.Set("ZEBX_LANGUAGE", language);
        const Ended run = station.Zebx({"doctor"});
        for (const std::string& line : Lines(run.out))
            EXPECT_LE(App::WidthOf(Platform::FromUtf8(line)), App::kLineWidth) << line;
    }
}

TEST_F(Doctor, AsADocumentNamesEachCheck) {
    const nlohmann::json document = DocumentOf(station.Zebx({"doctor", "--json"}));
    EXPECT_EQ(document["status"], 4);
    EXPECT_EQ(document["result"]["failures"], 1);
    EXPECT_EQ(document["result"]["warnings"], 1);
    const nlohmann::json& checks = document["result"]["checks"];
    EXPECT_EQ(checks[0]["check"], "versions");
    EXPECT_EQ(checks[0]["health"], "ok");
    EXPECT_TRUE(checks[0]["advice"].is_null());
    EXPECT_EQ(checks[2]["check"], "support-folder");
    EXPECT_EQ(checks[2]["health"], "warning");
    EXPECT_THAT(checks[2]["advice"].get<std::string>(), HasSubstr("zebx init"));
}

} // namespace
