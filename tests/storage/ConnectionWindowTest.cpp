// SPDX-License-Identifier: MIT
// The backend's side of the connection window: loading it, keeping what it edited, applying it.
#include "storage/scripted/ConnectionWindow.h"
#include "EnglishMessages.h"
#include "TestFiles.h"
#include "WorkspaceLog.h"
#include "platform/os/File.h"
#include "platform/os/Module.h"
#include "storage/Administration.h"
#include "storage/SqlBackend.h"
#include "support/Workstation.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace Storage {
namespace {

using Platform::FromUtf8;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kModule = "ZEBXRepositoryConnectionWindow.arx";

class ConnectionWindow : public testing::Test {
protected:
    ConnectionWindow() {
        fs::create_directory(install);
        workstation.Set("ZEBX_INSTALL", install.string());
        Platform::UserSettings::Instance()->Reset();
        access->SetMsgProvider(&messages);
        backend.SetSettingsPath(settingsFolder.c_str());
        backend.LoadSettings();
    }
    ~ConnectionWindow() override { access->Disconnect(); }

    void Install(const char* module) { fs::copy_file(module, install / kModule); }
    // Installs the window and says what it does when it is shown.
    void Script(const ConnectionWindowScript& script) {
        if (!fs::exists(install / kModule))
            Install(ZEBX_SCRIPTED_CONNECTION_WINDOW);
        const auto module =
            Platform::LoadModule(Platform::PathFromNative((install / kModule).string()));
        const auto set = reinterpret_cast<SetConnectionWindowScriptFunction>(
            Platform::FindExport(module, "SetConnectionWindowScript"));
        ASSERT_TRUE(set);
        set(script);
    }
    void ScriptOk(const Connection& connection) {
        Script({[connection](IConnectionParameters&, Connection& edited) {
                    edited = connection;
                    return 1;
                },
                {}});
    }
    void Connect(const CString& address) {
        CString text;
        ASSERT_EQ(administration.Connect(address, true, text), Problem::None)
            << Platform::ToUtf8(text);
    }
    CString AddressInUse() { return administration.State().address; }
    std::string Settings() {
        std::string text = "(none)";
        if (Platform::ReadFile(settingsFile, text))
            return "(none)";
        return text;
    }
    CString AddressOf(const char* name) {
        return u"sqlite:" + FromUtf8((workstation.Folder().Native() / name).string());
    }

    Workstation workstation;
    EnglishMessages messages;
    WorkspaceLog log;
    fs::path install = workstation.Folder().Native() / "install";
    CString settingsFolder = workstation.Folder().Path() + u"settings\\";
    CString settingsFile = settingsFolder + u"ZEBXRepositoryClientPlugin_Sql.ini";
    boost::shared_ptr<RepositoryAccess> access = boost::make_shared<RepositoryAccess>();
    SqlBackend backend{access};
    Administration administration{access};
};

TEST_F(ConnectionWindow, TheBackendHasOne) {
    EXPECT_EQ(backend.HasConnectionParameters(), 1);
}

TEST_F(ConnectionWindow, WhatItEditedIsAppliedAndKept) {
    Connect(AddressOf("one.db"));
    ScriptOk({AddressOf("two.db"), true});
    EXPECT_EQ(backend.EditConnectionParameters(), 1);
    // Nothing before it is applied.
    EXPECT_EQ(AddressInUse(), AddressOf("one.db"));
    EXPECT_FALSE(fs::exists(workstation.Folder().Native() / "two.db"));
    EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
    EXPECT_EQ(AddressInUse(), AddressOf("two.db"));
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")}), 1);
    EXPECT_THAT(log.Take(), IsEmpty());
    SqlBackend next(boost::make_shared<RepositoryAccess>());
    next.SetSettingsPath(settingsFolder.c_str());
    next.LoadSettings();
    std::vector<CString> ids;
    EXPECT_EQ(next.GetRepositoryFileIds(4, u"001_LABEL", ids), 1);
    EXPECT_EQ(ids.size(), 1u);
}

TEST_F(ConnectionWindow, TheEmptyAddressIsAppliedAsTheUsersOwnRepository) {
    Connect(AddressOf("one.db"));
    ScriptOk({u"", true});
    EXPECT_EQ(backend.EditConnectionParameters(), 1);
    EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
    EXPECT_THAT(Platform::ToUtf8(AddressInUse()), HasSubstr("data/StudioZEB/repository.db"));
    EXPECT_THAT(Settings(), testing::EndsWith("address = \n"));
}

TEST_F(ConnectionWindow, ACancelledOneChangesNoByteAndKeepsTheConnection) {
    Connect(AddressOf("one.db"));
    const std::string settings = Settings();
    Script({[](IConnectionParameters&, Connection& edited) {
                edited = {u"sqlite:/somewhere/else.db", true};
                return 0;
            },
            {}});
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
    EXPECT_EQ(Settings(), settings);
    EXPECT_EQ(AddressInUse(), AddressOf("one.db"));
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ConnectionWindow, ACancelledOneLeavesSettingsThatAreNotUnderstoodAsTheyAre) {
    Platform::CreateFolderChain(settingsFolder);
    Platform::WriteFile(settingsFile, "adress = sqlite:/srv/r.db\n");
    backend.LoadSettings();
    log.Take();
    CString current = u"what was there";
    Script({[&](IConnectionParameters& parameters, Connection&) {
                current = parameters.Current().address;
                return 0;
            },
            {}});
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    EXPECT_EQ(backend.ApplyConnectionParameters(), 0);
    EXPECT_EQ(current, u"");
    EXPECT_EQ(Settings(), "adress = sqlite:/srv/r.db\n");
}

TEST_F(ConnectionWindow, WhatCannotBeAppliedIsToldAndChangesNothing) {
    Connect(AddressOf("one.db"));
    const std::string settings = Settings();
    ScriptOk({AddressOf("missing.db"), false});
    EXPECT_EQ(backend.EditConnectionParameters(), 1);
    EXPECT_EQ(backend.ApplyConnectionParameters(), 0);
    const auto lines = log.Take();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_THAT(Platform::ToUtf8(lines[0]), HasSubstr("missing.db"));
    EXPECT_EQ(Settings(), settings);
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")}), 1);
    EXPECT_EQ(AddressInUse(), AddressOf("one.db"));
    // It waits no longer.
    EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ConnectionWindow, AppliedWithoutAnythingEditedTheBackendConnectsAnew) {
    Connect(AddressOf("one.db"));
    EXPECT_EQ(backend.ApplyConnectionParameters(), 1);
    EXPECT_EQ(AddressInUse(), AddressOf("one.db"));
    fs::remove(workstation.Folder().Native() / "one.db");
    EXPECT_EQ(backend.ApplyConnectionParameters(), 0);
    EXPECT_EQ(log.Take().size(), 1u);
}

TEST_F(ConnectionWindow, ItIsToldWhatIsInUseAndWhatIsTheUsersOwn) {
    Connect(AddressOf("one.db"));
    Connection current;
    CString own;
    Script({[&](IConnectionParameters& parameters, Connection&) {
                current = parameters.Current();
                own = parameters.DefaultAddress();
                return 0;
            },
            {}});
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    EXPECT_EQ(current.address, AddressOf("one.db"));
    EXPECT_FALSE(current.create);
    EXPECT_EQ(
        own,
        u"sqlite:" +
            FromUtf8((workstation.Folder().Native() / "data/StudioZEB/repository.db").string()));
}

TEST_F(ConnectionWindow, ItsTestsLeaveTheConnectionInUseAlone) {
    Connect(AddressOf("one.db"));
    const std::string settings = Settings();
    std::vector<ConnectionStep> steps;
    Script({[&](IConnectionParameters& parameters, Connection&) {
                parameters.Test({AddressOf("two.db"), true});
                steps = parameters.Test(parameters.Current());
                return 0;
            },
            {}});
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    ASSERT_EQ(steps.size(), 5u);
    EXPECT_EQ(steps.back().result, StepResult::Worked);
    EXPECT_EQ(steps.back().text, u"You may read it and write to it.");
    EXPECT_FALSE(fs::exists(workstation.Folder().Native() / "two.db"));
    EXPECT_EQ(Settings(), settings);
    EXPECT_EQ(backend.AddRepositoryFiles({MakeFile(u"a.dwg", "1")}), 1);
    EXPECT_EQ(administration.TakeLastProblem(), Problem::None);
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ConnectionWindow, WithoutItsModuleTheLogSaysWhatToInstall) {
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    const auto lines = log.Take();
    ASSERT_EQ(lines.size(), 1u);
    const std::string line = Platform::ToUtf8(lines[0]);
    EXPECT_THAT(line, HasSubstr("The connection window cannot be shown: " +
                                (install / kModule).string() + " cannot be loaded ("));
    EXPECT_THAT(line, HasSubstr("Install the package zebx-dialog"));
    EXPECT_EQ(administration.TakeLastProblem(), Problem::Configuration);
    // Asked again it says it again: the user pressed the button again.
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    EXPECT_EQ(log.Take().size(), 1u);
}

TEST_F(ConnectionWindow, AModuleThatDoesNotLoadIsToldWithTheReason) {
    Platform::WriteFile(Platform::PathFromNative((install / kModule).string()), "no module");
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    EXPECT_THAT(Platform::ToUtf8(log.Take().at(0)),
                HasSubstr("cannot be loaded (" + install.string()));
}

TEST_F(ConnectionWindow, TheExportThatTheModuleLacksIsNamed) {
    Install(ZEBX_MODULE_WITHOUT_WINDOW);
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    EXPECT_THAT(Platform::ToUtf8(log.Take().at(0)), HasSubstr("cannot be loaded (WhyNoWindows)"));
}

TEST_F(ConnectionWindow, TheRealModuleWithoutTheWindowSystemNamesTheLibraryThatIsMissing) {
    Install(ZEBX_CONNECTION_WINDOW);
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    const std::string line = Platform::ToUtf8(log.Take().at(0));
    EXPECT_THAT(line, HasSubstr("cannot be loaded (libzebxwindow.so: cannot open"));
    EXPECT_THAT(line, HasSubstr("Install the package zebx-dialog"));
}

TEST_F(ConnectionWindow, WithoutADisplayTheLogSaysWhatIsMissing) {
    bool isShown = false;
    Script({[&](IConnectionParameters&, Connection&) {
                isShown = true;
                return 1;
            },
            u"DISPLAY is not set"});
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    EXPECT_FALSE(isShown);
    EXPECT_THAT(log.Take(), ElementsAre(u"The connection window cannot be shown (DISPLAY is not "
                                        u"set). Windows need a screen and the package zebx-dialog; "
                                        u"without them, type: zebx connect ADDRESS."));
}

TEST_F(ConnectionWindow, TheRealWindowWithoutADisplaySaysSo) {
    workstation.Set("ZEBX_INSTALL", ZEBX_BUILD_DIR "/lib/zebx");
    for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        workstation.Set(name, std::nullopt);
    Platform::UserSettings::Instance()->Reset();
    EXPECT_EQ(backend.EditConnectionParameters(), 0);
    EXPECT_THAT(Platform::ToUtf8(log.Take().at(0)),
                HasSubstr("cannot be shown (neither DISPLAY nor WAYLAND_DISPLAY is set). Windows "
                          "need a screen and the package zebx-dialog"));
}

} // namespace
} // namespace Storage
