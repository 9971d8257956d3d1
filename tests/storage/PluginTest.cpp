// SPDX-License-Identifier: MIT
// The plug-in as the manager finds it: a module with its exports.
#include "TestFiles.h"
#include "ZEBXRepositoryStorage/RepositoryAdministration.h"
#include "platform/os/Module.h"
#include "platform/os/Path.h"
#include "platform/os/VersionRecord.h"
#include "support/Workstation.h"

#include <gtest/gtest.h>

namespace Storage {
namespace {

CString ModulePath() {
    return Platform::PathFromNative(ZEBX_BUILD_DIR "/lib/zebx/ZEBXRepositoryClientPlugin_Sql.arx");
}

template<typename Function>
Function Export(const char* name) {
    CString reason;
    const auto module = Platform::LoadModule(ModulePath(), &reason);
    EXPECT_TRUE(module) << testing::PrintToString(reason);
    return reinterpret_cast<Function>(Platform::FindExport(module, name));
}

TEST(Plugin, GivesTheSameInformationObjectAndBackendAtEachCall) {
    const auto getInfo = Export<Repository::GetPluginInfoFunction>("GetPluginInfo");
    ASSERT_TRUE(getInfo);
    ASSERT_TRUE(getInfo());
    EXPECT_EQ(getInfo(), getInfo());
    boost::shared_ptr<void> first;
    boost::shared_ptr<void> second;
    getInfo()->GetStorageBackend(first);
    getInfo()->GetStorageBackend(second);
    ASSERT_TRUE(first);
    EXPECT_EQ(first, second);
    EXPECT_EQ(boost::static_pointer_cast<Repository::StorageBackend>(first)->GetNameMsgNum(),
              20000);
}

TEST(Plugin, TheAdministrationWorksOnTheBackendsConnection) {
    Workstation workstation;
    const auto getInfo = Export<Repository::GetPluginInfoFunction>("GetPluginInfo");
    const auto getAdministration =
        Export<GetRepositoryAdministrationFunction>("GetRepositoryAdministration");
    ASSERT_TRUE(getInfo && getAdministration);
    boost::shared_ptr<void> untyped;
    getInfo()->GetStorageBackend(untyped);
    const auto backend = boost::static_pointer_cast<Repository::StorageBackend>(untyped);
    backend->SetSettingsPath((workstation.Folder().Path() + u"settings\\").c_str());
    backend->LoadSettings();
    EXPECT_EQ(backend->IsRepositoryAccessible(), 0);
    CString text;
    EXPECT_EQ(getAdministration()->Connect(u"", true, text), Problem::None);
    EXPECT_EQ(backend->IsRepositoryAccessible(), 1);
    EXPECT_EQ(backend->AddRepositoryFiles({MakeFile(u"a.dwg", "1")}), 1);
    EXPECT_EQ(getAdministration()->State().files, 1);
    backend->SetSettingsPath(u"");
    backend->LoadSettings(); // lets go of the repository before its folder goes
}

TEST(Plugin, CarriesAVersionRecord) {
    EXPECT_TRUE(Platform::ReadFileVersion(ModulePath()));
}

} // namespace
} // namespace Storage
