// SPDX-License-Identifier: MIT
// What the verbs say, and with which status they end, where something that they need is
// missing: a plug-in, a repository, rights.
#include "Content.h"
#include "Plant.h"

#include <gmock/gmock.h>
#include <sqlite3.h>
#include <unistd.h>

using namespace AppTest;
using testing::AllOf;
using testing::HasSubstr;

namespace {

const std::vector<std::string> kVerbs = {"status", "push", "pull", "diff", "ls", "log"};

void Execute(const fs::path& database, const char* sql) {
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(database.c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(connection);
    sqlite3_close(connection);
}

class MissingThings : public testing::TestWithParam<std::string> {
protected:
    MissingThings() { EXPECT_EQ(station.Zebx({"init"}).status, 0); }

    Station station;
};

TEST_P(MissingThings, WithoutAPluginEachSaysWhatWasLookedForWhereAndWhatToType) {
    const fs::path folder = InstallationWithoutPlugin(station);
    const Ended run = station.Zebx({GetParam(), "--install", folder.string()});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("no storage plug-in"), HasSubstr(folder.string()),
                               HasSubstr("ZEBXRepositoryClientPlugin_*.arx"),
                               HasSubstr("zebx --install DIR")));
}

TEST_P(MissingThings, APluginThatDoesNotLoadIsNamedWithTheSystemsReason) {
    const fs::path folder = InstallationWithoutPlugin(station);
    Write(folder / "ZEBXRepositoryClientPlugin_Broken.arx", "this is no module");
    const Ended run = station.Zebx({GetParam(), "--install", folder.string()});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr("ZEBXRepositoryClientPlugin_Broken.arx: "),
                               HasSubstr("too short")));
}

TEST_P(MissingThings, AModuleThatIsNoPluginIsNamed) {
    const fs::path folder = InstallationWithoutPlugin(station);
    fs::create_symlink(fs::path(ZEBX_BUILD_DIR) / "lib/zebx/ZEBXLogging.arx",
                       folder / "ZEBXRepositoryClientPlugin_Wrong.arx");
    const Ended run = station.Zebx({GetParam(), "--install", folder.string()});
    EXPECT_EQ(run.status, 3) << run;
    EXPECT_THAT(
        run.err,
        HasSubstr("ZEBXRepositoryClientPlugin_Wrong.arx: it does not export GetPluginInfo"));
}

TEST_P(MissingThings, WithoutARepositoryEachSaysWhereAndHowToMakeOne) {
    const Ended run = station.Zebx({GetParam()});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr(station.Repository().string()),
                               HasSubstr("zebx connect --create")));
    EXPECT_EQ(run.err.find("There is no repository"), run.err.rfind("There is no repository"))
        << "told twice: " << run;
    EXPECT_FALSE(fs::exists(station.Repository()));
}

TEST_P(MissingThings, AFileThatIsNoRepositoryIsLeftAloneAndNamed) {
    Write(station.Repository(), "a letter to grandmother");
    const Ended run = station.Zebx({GetParam()});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(run.err,
                AllOf(HasSubstr(station.Repository().string()), HasSubstr("zebx connect")));
    EXPECT_EQ(Bytes(station.Repository()), "a letter to grandmother");
}

TEST_P(MissingThings, AnotherProgramsDatabaseIsLeftAloneAndNamed) {
    fs::create_directories(station.Repository().parent_path());
    Execute(station.Repository(), "CREATE TABLE letters (line TEXT)");
    const std::string before = Bytes(station.Repository());
    const Ended run = station.Zebx({GetParam()});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(run.err, HasSubstr(station.Repository().string()));
    EXPECT_EQ(Bytes(station.Repository()), before);
}

TEST_P(MissingThings, ARepositoryOfANewerVersionIsRefused) {
    ASSERT_EQ(station.Zebx({"connect", "--create"}).status, 0);
    Plant(station, "UPDATE head SET schema_version = 999");
    const Ended run = station.Zebx({GetParam()});
    EXPECT_EQ(run.status, 4) << run;
    EXPECT_THAT(run.err, AllOf(HasSubstr(station.Repository().string()), HasSubstr("newer")));
}

TEST_P(MissingThings, StorageSettingsThatAreNotUnderstoodAreToldOnceWithFileAndLine) {
    const fs::path settings = station.Ini().parent_path() / "RepositoryStorageSettings" /
                              "ZEBXRepositoryClientPlugin_Sql.ini";
    Write(settings, "what is this?\n");
    const Ended run = station.Zebx({GetParam()});
    EXPECT_EQ(run.status, 3) << run;
    const std::string told = settings.string() + " are not understood in line 1";
    EXPECT_THAT(run.err, HasSubstr(told));
    EXPECT_EQ(run.err.find(told), run.err.rfind(told)) << "told twice: " << run;
    EXPECT_EQ(Bytes(settings), "what is this?\n");
}

INSTANTIATE_TEST_SUITE_P(EachVerb, MissingThings, testing::ValuesIn(kVerbs),
                         [](const auto& test) { return test.param; });

// A repository with content, looked at by somebody who may do less than its owner.
class Rights : public testing::Test {
protected:
    Rights() {
        EXPECT_EQ(owner.Zebx({"init"}).status, 0);
        EXPECT_EQ(owner.Zebx({"connect", "--create", Url()}).status, 0);
        GenerateContent(owner.Support());
        EXPECT_EQ(owner.Zebx({"push"}).status, 0);
        fs::permissions(owner.Folder(), fs::perms(0755));
    }
    ~Rights() override {
        // So that the folders can be removed.
        fs::permissions(Shared(), fs::perms(0755));
        if (fs::exists(reader.Support()))
            fs::permissions(reader.Support(), fs::perms(0755));
    }

    fs::path Shared() const { return owner.Folder() / "shared"; }
    std::string Url() {
        fs::create_directories(Shared());
        return "sqlite:" + (Shared() / "network.db").string();
    }

    // Root may do everything, so the program then runs as somebody else.
    Ended AsReader(const std::vector<std::string>& arguments) {
        if (geteuid() != 0)
            return reader.Zebx(arguments);
        for (const char* folder : {"config", "data", "state"}) {
            fs::create_directories(reader.Folder() / folder);
            fs::permissions(reader.Folder() / folder, fs::perms(0777));
        }
        return reader.ZebxAsNobody(arguments);
    }

    // Of the repository's file and of those that the engine keeps beside it.
    void SetPermissions(unsigned ofFiles, unsigned ofFolder) {
        fs::permissions(Shared(), fs::perms(0755));
        for (const auto& file : fs::directory_iterator(Shared()))
            fs::permissions(file.path(), fs::perms(ofFiles));
        fs::permissions(Shared(), fs::perms(ofFolder));
    }
    void MakeReadOnly() { SetPermissions(0444, 0555); }

    Station owner;
    Station reader;
};

TEST_F(Rights, WhoMayOnlyReadPullsAndListsAndIsToldSo) {
    MakeReadOnly();
    const Ended connect = AsReader({"connect", Url()});
    ASSERT_EQ(connect.status, 0) << connect;
    EXPECT_THAT(connect.out, HasSubstr("you may read only"));
    const Ended status = AsReader({"status"});
    EXPECT_EQ(status.status, 0) << status;
    EXPECT_THAT(status.out, HasSubstr("you may read only"));
    EXPECT_EQ(AsReader({"ls"}).status, 0);
    const Ended pull = AsReader({"pull", "ncf:002_NODE"});
    EXPECT_EQ(pull.status, 0) << pull;
}

TEST_F(Rights, WhoMayOnlyReadCannotPush) {
    MakeReadOnly();
    ASSERT_EQ(AsReader({"connect", Url()}).status, 0);
    const std::string before = Bytes(Shared() / "network.db");
    const Ended push = AsReader({"push"});
    EXPECT_EQ(push.status, 5) << push;
    EXPECT_THAT(push.err, HasSubstr((Shared() / "network.db").string()));
    EXPECT_EQ(Bytes(Shared() / "network.db"), before);
}

TEST_F(Rights, WhoMayNotReadIsTurnedAwayByEveryVerb) {
    MakeReadOnly();
    ASSERT_EQ(AsReader({"connect", Url()}).status, 0);
    SetPermissions(0000, 0755);
    for (const std::string& verb : kVerbs) {
        const Ended run = AsReader({verb});
        EXPECT_EQ(run.status, 5) << verb << run;
        EXPECT_THAT(run.err, HasSubstr((Shared() / "network.db").string())) << verb;
    }
}

TEST_F(Rights, AFolderThatCannotBeWrittenIsALocalFailureOfEachFile) {
    MakeReadOnly();
    ASSERT_EQ(AsReader({"connect", Url()}).status, 0);
    fs::create_directories(reader.Support() / "nodes");
    fs::permissions(reader.Support() / "nodes", fs::perms(0555));
    const Ended pull = AsReader({"pull", "ncf:002_NODE"});
    EXPECT_EQ(pull.status, 9) << pull;
    EXPECT_THAT(pull.err, HasSubstr("Failure: Could not be written"));
    EXPECT_THAT(pull.err, HasSubstr("plain.dwg"));
    EXPECT_THAT(pull.err, HasSubstr("UPPER.DWG"));
}

} // namespace
