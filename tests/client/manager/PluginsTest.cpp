// SPDX-License-Identifier: MIT
// How the manager finds its backend.  It does so once in a process, so each test builds its
// manager in a child process.
#include "client/manager/ManagerTest.h"
#include "support/InAChildProcess.h"

#include <fstream>
#include <stdexcept>

using namespace Repository;
using testing::Return;
using testing::StrictMock;

namespace {

class Plugins : public testing::Test {
protected:
    // A copy of the scripted plug-in under a file name of its own.
    struct Plugin {
        StrictMock<MockBackend> backend;
        PluginScript script;
    };

    Plugins() { installation.Add(ZEBX_GISCORE_MODULE, "ZEBXGisCore.arx"); }

    void Install(Plugin& plugin, const std::string& fileName, const std::string& name) {
        GivePluginItsScript(installation.Add(ZEBX_SCRIPTED_PLUGIN, fileName), plugin.script);
        plugin.script.onStep = [this, name](const char* step) {
            steps.push_back(name + " " + step);
        };
    }
    // The plug-in yields its backend, which gets the version and the settings folder.
    void LetYield(Plugin& plugin) {
        plugin.script.backend = &plugin.backend;
        EXPECT_CALL(plugin.backend, SetVersion);
        EXPECT_CALL(plugin.backend, SetSettingsPath);
    }
    // The manager keeps this plug-in's backend.
    static void LetWin(Plugin& plugin) {
        EXPECT_CALL(plugin.backend, LoadSettings());
        EXPECT_CALL(plugin.backend, SaveSettings());
    }
    static void Verify(Plugin& plugin) {
        testing::Mock::VerifyAndClearExpectations(&plugin.backend);
    }
    CString SettingsFolder() const {
        return installation.Folder().Path() + u"config\\StudioZEB\\RepositoryStorageSettings\\";
    }

    Installation installation;
    WorkspaceLines log;
    std::vector<std::string> steps;
};

} // namespace

TEST_F(Plugins, AreAskedTwiceThenToldTheVersionAndTheFolderThenLoadAndSaveTheirSettings) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        Plugin plugin;
        Install(plugin, "ZEBXRepositoryClientPlugin_X.arx", "X");
        plugin.script.backend = &plugin.backend;
        const auto note = [&](const char* step) { return [this, step] { steps.push_back(step); }; };
        EXPECT_CALL(plugin.backend, SetVersion(TextIs(u"" ZEBX_VERSION)))
            .WillOnce(note("SetVersion"));
        EXPECT_CALL(plugin.backend, SetSettingsPath(TextIs(SettingsFolder())))
            .WillOnce(note("SetSettingsPath"));
        EXPECT_CALL(plugin.backend, LoadSettings()).WillOnce(note("LoadSettings"));
        EXPECT_CALL(plugin.backend, SaveSettings()).WillOnce(note("SaveSettings"));

        ASSERT_TRUE(CRepositoryStorageManager::Instance());
        Verify(plugin);

        EXPECT_EQ(steps,
                  (std::vector<std::string>{"X GetPluginInfo", "X SetMsgProvider",
                                            "X GetPluginInfo", "X GetStorageBackend", "SetVersion",
                                            "SetSettingsPath", "LoadSettings", "SaveSettings"}));
        EXPECT_NE(CRepositoryStorageManager::Instance()->IsInitialized(), 0);
        EXPECT_TRUE(plugin.script.provider);
        EXPECT_EQ(log.Lines().size(), 0U);
    }));
}

TEST_F(Plugins, AreLoadedOnce) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        Plugin plugin;
        Install(plugin, "ZEBXRepositoryClientPlugin_X.arx", "X");
        LetYield(plugin);
        LetWin(plugin);
        auto* const manager = CRepositoryStorageManager::Instance();
        steps.clear();

        EXPECT_EQ(CRepositoryStorageManager::Instance(), manager);
        EXPECT_EQ(steps, std::vector<std::string>{});
        Verify(plugin);
    }));
}

TEST_F(Plugins, AreTriedInTheOrderOfTheFileSearchAndTheLastThatYieldsWins) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        Plugin a, b, c;
        Install(c, "ZEBXRepositoryClientPlugin_C.arx", "c");
        Install(a, "ZEBXRepositoryClientPlugin_A.arx", "a");
        Install(b, "zebxrepositoryclientplugin_b.ARX", "b");
        for (Plugin* plugin : {&a, &b, &c})
            LetYield(*plugin);
        LetWin(c);

        auto* const manager = CRepositoryStorageManager::Instance();
        EXPECT_EQ(steps, (std::vector<std::string>{
                             "a GetPluginInfo", "a SetMsgProvider", "a GetPluginInfo",
                             "a GetStorageBackend", "b GetPluginInfo", "b SetMsgProvider",
                             "b GetPluginInfo", "b GetStorageBackend", "c GetPluginInfo",
                             "c SetMsgProvider", "c GetPluginInfo", "c GetStorageBackend"}));
        EXPECT_CALL(c.backend, AmIAdmin()).WillOnce(Return(42));
        EXPECT_EQ(manager->AmIAdmin(), 42);
        EXPECT_EQ(manager->GetStorage().use_count(), 2);
        for (Plugin* plugin : {&a, &b, &c})
            Verify(*plugin);
    }));
}

TEST_F(Plugins, ThatYieldNothingLeaveTheBackendOfAnEarlierOne) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        Plugin a, b;
        Install(a, "ZEBXRepositoryClientPlugin_A.arx", "a");
        Install(b, "ZEBXRepositoryClientPlugin_B.arx", "b");
        LetYield(a);
        LetWin(a);

        auto* const manager = CRepositoryStorageManager::Instance();
        EXPECT_NE(manager->IsInitialized(), 0);
        EXPECT_EQ(steps.back(), "b GetStorageBackend");
        EXPECT_TRUE(b.script.provider);
        Verify(a);
    }));
}

TEST_F(Plugins, ThatAreNoneArePassedOverSilently) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        Plugin last;
        std::ofstream(installation.Native() / "ZEBXRepositoryClientPlugin_A.arx") << "no module";
        std::filesystem::create_directory(installation.Native() /
                                          "ZEBXRepositoryClientPlugin_B.arx");
        installation.Add(ZEBX_MODULE_THAT_IS_NO_PLUGIN, "ZEBXRepositoryClientPlugin_C.arx");
        Install(last, "ZEBXRepositoryClientPlugin_D.arx", "d");
        LetYield(last);
        LetWin(last);

        EXPECT_NE(CRepositoryStorageManager::Instance()->IsInitialized(), 0);
        EXPECT_EQ(log.Lines().size(), 0U);
        Verify(last);
    }));
}

TEST_F(Plugins, OfAnotherNameAreNotTried) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        Plugin a, b;
        Install(a, "ZEBXRepositoryClientPlugin.arx", "a");
        Install(b, "ZEBXRepositoryClientPlugin_B.arx.bak", "b");

        EXPECT_EQ(CRepositoryStorageManager::Instance()->IsInitialized(), 0);
        EXPECT_EQ(steps, std::vector<std::string>{});
    }));
}

TEST_F(Plugins, WithoutAnInformationObjectYieldNothing) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        Plugin plugin;
        Install(plugin, "ZEBXRepositoryClientPlugin_X.arx", "X");
        plugin.script.hasNoInfo = true;

        EXPECT_EQ(CRepositoryStorageManager::Instance()->IsInitialized(), 0);
        EXPECT_EQ(steps, (std::vector<std::string>{"X GetPluginInfo", "X GetPluginInfo"}));
    }));
}

TEST_F(Plugins, ThatThrowDoNotTakeTheOthersAlong) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        Plugin a, b;
        Install(a, "ZEBXRepositoryClientPlugin_A.arx", "a");
        Install(b, "ZEBXRepositoryClientPlugin_B.arx", "b");
        a.script.onStep = [](const char*) { throw std::runtime_error("x"); };
        LetYield(b);
        EXPECT_CALL(b.backend, LoadSettings()).WillOnce(testing::Throw(std::runtime_error("x")));
        EXPECT_CALL(b.backend, SaveSettings());

        auto* const manager = CRepositoryStorageManager::Instance();
        ASSERT_TRUE(manager);
        EXPECT_NE(manager->IsInitialized(), 0);
        EXPECT_EQ(manager->GetFOCMetadata().size(), 8U);
        Verify(b);
    }));
}
