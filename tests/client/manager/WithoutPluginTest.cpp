// SPDX-License-Identifier: MIT
// A manager that found no plug-in: what may be asked of it, and what it answers.
#include "client/manager/Installation.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/ConfigurationDialog.h"
#include "ZEBXRepositoryClient/RepositoryItemLite.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "platform/text/Fill.h"
#include "platform/text/Utf8.h"
#include "support/WorkspaceLines.h"

#include <gmock/gmock.h>

using namespace Repository;

namespace {

class WithoutPlugin : public testing::Test {
protected:
    Installation installation;
    CRepositoryStorageManager& manager = *CRepositoryStorageManager::Instance();
    WorkspaceLines log;
};

} // namespace

TEST_F(WithoutPlugin, TheManagerExistsAndSaysThatItHasNoBackend) {
    EXPECT_EQ(manager.IsInitialized(), 0);
    EXPECT_FALSE(manager.GetStorage());
    EXPECT_EQ(log.Lines().size(), 0U);
}

TEST_F(WithoutPlugin, ThereIsOneManagerAllTheSame) {
    EXPECT_EQ(CRepositoryStorageManager::Instance(), &manager);
}

TEST_F(WithoutPlugin, TheDialogIsNotShownAndThePatternAndThePackageAreNamed) {
    const CString why = Repository::WhyNoConfigurationDialog();
    const CString text = ZEBGis::CModuleConfiguration::Instance()->GetMsg(22006);
    const CString folder = Platform::FromUtf8(installation.Native().string() + "/");
    EXPECT_EQ(why, Platform::Fill(text, {folder}));
    EXPECT_NE(why.find(u"ZEBXRepositoryClientPlugin_*.arx"), CString::npos);
    EXPECT_NE(why.find(u"package zebx"), CString::npos);
    manager.ShowConfigurationDialog();
    EXPECT_EQ(log.Lines(), (std::vector<WorkspaceLines::Line>{{4, why}}));
}

TEST_F(WithoutPlugin, TheStorageHasNoName) {
    EXPECT_EQ(manager.GetRepositroyStorageName(), u"");
}

TEST_F(WithoutPlugin, SeveralGsAreNotSupported) {
    EXPECT_EQ(manager.IsMultipleGSSupported(), 0);
}

TEST_F(WithoutPlugin, NoGsCanBeListedAndTheListStaysAsItIs) {
    std::vector<CString> names{u"before"};
    EXPECT_EQ(manager.GetAvailableGS(names), 0);
    EXPECT_EQ(names, std::vector<CString>{u"before"});
}

TEST_F(WithoutPlugin, NoGsCanBeSent) {
    EXPECT_EQ(manager.SaveGS(u"<gs/>", u"name"), 0);
}

TEST_F(WithoutPlugin, NoGsCanBeLoadedAndTheTextStaysAsItIs) {
    CString xml = u"before";
    EXPECT_EQ(manager.LoadGS(xml, u"name"), 0);
    EXPECT_EQ(xml, u"before");
}

TEST_F(WithoutPlugin, TheLocalGsIsNotReplaced) {
    EXPECT_EQ(manager.SaveGSLocally(), 0);
    EXPECT_FALSE(Platform::PathExists(installation.Support()));
}

TEST_F(WithoutPlugin, NoDefinitionsCanBeMoved) {
    CRepositoryItemLite item;
    item.SetId(u"1");
    EXPECT_EQ(manager.AddRepositoryItem(u"A", &item), 0);
    EXPECT_EQ(manager.DeleteRepositoryItem(u"A", u"1"), 0);
    EXPECT_EQ(manager.RenameRepositoryItem(u"A", u"1", u"x"), 0);
    EXPECT_EQ(manager.GetRepositoryItemById(u"A", u"1", 0), nullptr);
    EXPECT_EQ(manager.RefreshNetRepository(u"A"), 0);
    EXPECT_EQ(manager.RefreshNetRepository(nullptr), 0);
}

TEST_F(WithoutPlugin, TheBuiltInKindsAreRegistered) {
    EXPECT_EQ(manager.GetNCFMetadata().size(), 5U);
    EXPECT_EQ(manager.GetFOCMetadata().size(), 8U);
    EXPECT_TRUE(manager.GetFileManagerById(u"GS"));
}

TEST_F(WithoutPlugin, UnknownKindsAreAnsweredWithoutABackend) {
    EXPECT_EQ(manager.LoadNCF(u"unknown"), 1);
    EXPECT_EQ(manager.SaveNCF(u"unknown"), 0);
    EXPECT_EQ(manager.LoadFOC(u"unknown", 1), 1);
    EXPECT_EQ(manager.SaveFOC(u"unknown", 1), 0);
}

TEST_F(WithoutPlugin, TheSettingsFolderIsNotCreated) {
    EXPECT_FALSE(Platform::PathExists(installation.Config()));
}
