// SPDX-License-Identifier: MIT
#include "client/manager/ManagerTest.h"
#include "client/manager/ScriptedDialog.h"
#include "platform/host/DocumentManager.h"
#include "platform/os/Module.h"
#include "platform/text/Fill.h"

#include <stdexcept>

namespace {

constexpr const char* kDialogFile = "ZEBXRepositoryClientDialog.arx";

class ConfigurationDialog : public ManagerTest {
protected:
    // Installs the dialog module and says what happens when it is shown.
    void InstallDialog(const std::function<void()>& onShow) {
        const auto module =
            Platform::LoadModule(workstation.Add(ZEBX_SCRIPTED_DIALOG, kDialogFile));
        const auto set = reinterpret_cast<SetDialogScriptFunction>(
            Platform::FindExport(module, "SetDialogScript"));
        ASSERT_TRUE(set);
        set(onShow);
    }

    // Another module's resources are current when the dialog is asked for.
    ConfigurationDialog() { m_documents.PushResources(&m_documents); }
    ~ConfigurationDialog() override { m_documents.PopResources(); }
    bool AreTheCallersResourcesCurrent() const {
        return m_documents.CurrentResources() == &m_documents;
    }
    const void* CurrentResources() const { return m_documents.CurrentResources(); }

    // One line was written, and it tells of the dialog module `path`.
    void ExpectLineAbout(const CString& path) {
        const Lines lines = log.Lines();
        ASSERT_EQ(lines.size(), 1U);
        const auto& [type, text] = lines.front();
        EXPECT_EQ(type, 4);
        // The reason in the second gap is the system's.
        const CString whole = Platform::Fill(Msg(22000), {path, u"\n"});
        const CString start = whole.substr(0, whole.find(u'\n'));
        EXPECT_EQ(text.substr(0, start.size()), start);
        EXPECT_GT(text.size(), whole.size());
    }

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

TEST_F(ConfigurationDialog, SaysWhatIsMissingWithoutItsModule) {
    manager.ShowConfigurationDialog();

    ExpectLineAbout(workstation.Path() + u"ZEBXRepositoryClientDialog.arx");
    EXPECT_TRUE(AreTheCallersResourcesCurrent());
}

TEST_F(ConfigurationDialog, SaysSoWhenTheModuleDoesNotLoad) {
    Write(workstation.Native() / kDialogFile, "no module");
    manager.ShowConfigurationDialog();

    ExpectLineAbout(workstation.Path() + u"ZEBXRepositoryClientDialog.arx");
    EXPECT_TRUE(AreTheCallersResourcesCurrent());
}

TEST_F(ConfigurationDialog, NamesTheExportThatTheModuleLacks) {
    workstation.Add(ZEBX_MODULE_THAT_IS_NO_PLUGIN, kDialogFile);
    manager.ShowConfigurationDialog();

    const CString path = workstation.Path() + u"ZEBXRepositoryClientDialog.arx";
    EXPECT_EQ(
        log.Lines(),
        (Lines{{4, Platform::Fill(Msg(22000), {path, u"ShowNetworkRepositoryConfiguration"})}}));
    EXPECT_TRUE(AreTheCallersResourcesCurrent());
}

TEST_F(ConfigurationDialog, RestoresTheResourcesWhenTheDialogThrows) {
    InstallDialog([] { throw std::runtime_error("x"); });
    manager.ShowConfigurationDialog();
    EXPECT_TRUE(AreTheCallersResourcesCurrent());
}

TEST_F(ConfigurationDialog, HasItsMessageInBothLanguages) {
    const CString english = Msg(22000);
    workstation.Set("ZEBX_LANGUAGE", "hr");
    EXPECT_NE(Msg(22000), english);
    EXPECT_NE(Msg(22000), u"poruka 22000");
    EXPECT_NE(english, u"message 22000");
}
