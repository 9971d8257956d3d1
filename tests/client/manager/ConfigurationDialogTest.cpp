// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/ConfigurationDialog.h"
#include "client/manager/ManagerTest.h"
#include "client/manager/ScriptedDialog.h"
#include "platform/host/DocumentManager.h"
#include "platform/os/Module.h"
#include "platform/text/Fill.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <stdexcept>

namespace {

constexpr const char* kDialogFile = "ZEBXRepositoryClientDialog.arx";

class ConfigurationDialog : public ManagerTest {
protected:
    // Installs the dialog module with its script.
    void InstallDialog(const DialogScript& script) {
        const auto module =
            Platform::LoadModule(workstation.Add(ZEBX_SCRIPTED_DIALOG, kDialogFile));
        const auto set = reinterpret_cast<SetDialogScriptFunction>(
            Platform::FindExport(module, "SetDialogScript"));
        ASSERT_TRUE(set);
        set(script);
    }
    void InstallDialog(const std::function<void()>& onShow) { InstallDialog({onShow, {}}); }

    // Another module's resources are current when the dialog is asked for.
    ConfigurationDialog() { m_documents.PushResources(&m_documents); }
    ~ConfigurationDialog() override { m_documents.PopResources(); }
    bool AreTheCallersResourcesCurrent() const {
        return m_documents.CurrentResources() == &m_documents;
    }
    const void* CurrentResources() const { return m_documents.CurrentResources(); }

    // As users write it.
    CString ModulePath() const {
        return Platform::FromUtf8((workstation.Native() / kDialogFile).string());
    }

    // The dialog is asked for, is not shown, and this is why.
    void ExpectNotShownBecause(const CString& why) {
        EXPECT_EQ(Repository::WhyNoConfigurationDialog(), why);
        EXPECT_EQ(log.Lines(), Lines{}); // asking alone tells nobody
        manager.ShowConfigurationDialog();
        EXPECT_EQ(log.Lines(), (Lines{{4, why}}));
        EXPECT_TRUE(AreTheCallersResourcesCurrent());
        EXPECT_FALSE(IsDocumentLocked());
    }
    // The same for a module that does not load; the reason in the second gap is the system's.
    void ExpectModuleUnusable(const CString& reason) {
        const CString why = Repository::WhyNoConfigurationDialog();
        const CString whole = Platform::Fill(Msg(22000), {ModulePath(), u"\n"});
        EXPECT_TRUE(why.starts_with(whole.substr(0, whole.find(u'\n'))));
        EXPECT_TRUE(why.ends_with(whole.substr(whole.find(u'\n') + 1)));
        EXPECT_NE(why.find(reason), CString::npos) << testing::PrintToString(why);
        ExpectNotShownBecause(why);
    }

    bool IsDocumentLocked() const { return m_documents.IsDocumentLocked(); }

private:
    Platform::DocumentManager& m_documents = *Platform::DocumentManager::Instance();
};

} // namespace

TEST_F(ConfigurationDialog, IsShownWithTheModulesOwnResources) {
    const void* resources = nullptr;
    int calls = 0;
    InstallDialog([&] {
        ++calls;
        resources = CurrentResources();
    });

    manager.ShowConfigurationDialog();

    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(resources);
    EXPECT_NE(resources, &*Platform::DocumentManager::Instance());
    EXPECT_TRUE(AreTheCallersResourcesCurrent());
    EXPECT_EQ(log.Lines(), Lines{});
}

TEST_F(ConfigurationDialog, IsShownAgainAtEachCall) {
    int calls = 0;
    InstallDialog([&] { ++calls; });
    manager.ShowConfigurationDialog();
    manager.ShowConfigurationDialog();
    EXPECT_EQ(calls, 2);
    EXPECT_TRUE(AreTheCallersResourcesCurrent());
}

TEST_F(ConfigurationDialog, IsShownWithTheDocumentLockedWhichIsUnlockedAfterwards) {
    bool wasLocked = false;
    InstallDialog([&] { wasLocked = IsDocumentLocked(); });
    manager.ShowConfigurationDialog();
    EXPECT_TRUE(wasLocked);
    EXPECT_FALSE(IsDocumentLocked());
}

TEST_F(ConfigurationDialog, CanBeShownWhereNothingIsMissing) {
    InstallDialog([] { FAIL() << "asking shows nothing"; });
    EXPECT_EQ(Repository::WhyNoConfigurationDialog(), u"");
}

TEST_F(ConfigurationDialog, SaysWhatIsMissingWithoutItsModule) {
    ExpectModuleUnusable(u"No such file or directory");
}

TEST_F(ConfigurationDialog, SaysSoWhenTheModuleDoesNotLoad) {
    Write(workstation.Native() / kDialogFile, "no module");
    ExpectModuleUnusable(u"file too short");
}

TEST_F(ConfigurationDialog, NamesTheLibraryThatItsModuleMisses) {
    workstation.Add(ZEBX_DIALOG_WITHOUT_LIBRARY, kDialogFile);
    ExpectModuleUnusable(u"libzebx_absent.so: cannot open shared object file");
}

TEST_F(ConfigurationDialog, NamesTheExportThatTheModuleLacks) {
    workstation.Add(ZEBX_MODULE_THAT_IS_NO_PLUGIN, kDialogFile);
    ExpectNotShownBecause(
        Platform::Fill(Msg(22000), {ModulePath(), u"ShowNetworkRepositoryConfiguration"}));
}

TEST_F(ConfigurationDialog, SaysSoAndWhatToDoWhereThereIsNoDisplay) {
    InstallDialog({.onShow = [] { FAIL(); }, .whyNoWindows = u"DISPLAY is not set"});
    ExpectNotShownBecause(Platform::Fill(Msg(22007), {u"DISPLAY is not set"}));
}

TEST_F(ConfigurationDialog, RestoresEverythingWhenTheDialogThrows) {
    InstallDialog([] { throw std::runtime_error("x"); });
    manager.ShowConfigurationDialog();
    EXPECT_TRUE(AreTheCallersResourcesCurrent());
    EXPECT_FALSE(IsDocumentLocked());
}

TEST_F(ConfigurationDialog, HasItsMessagesInBothLanguages) {
    for (const int number : {22000, 22006, 22007}) {
        workstation.Set("ZEBX_LANGUAGE", "en");
        const CString english = Msg(number);
        workstation.Set("ZEBX_LANGUAGE", "hr");
        EXPECT_NE(Msg(number), english);
        EXPECT_NE(Msg(number), u"poruka " + Platform::ToText(number));
        EXPECT_NE(english, u"message " + Platform::ToText(number));
    }
}
