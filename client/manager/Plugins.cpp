// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/StorageBackend.h"
#include "client/util/Border.h"
#include "platform/os/FileSearch.h"
#include "platform/os/Module.h"

namespace Repository {
namespace {

// The backend that the plug-in behind `getPluginInfo` yields; empty when there is none.
boost::shared_ptr<void> AskForBackend(GetPluginInfoFunction getPluginInfo, IMsgProvider* provider) {
    if (IPluginInfo* info = getPluginInfo())
        info->SetMsgProvider(provider);
    boost::shared_ptr<void> backend;
    // Asked a second time, kept: plug-ins rely on being asked once for each of the two.
    if (IPluginInfo* info = getPluginInfo())
        info->GetStorageBackend(backend);
    return backend;
}

} // namespace

void CRepositoryStorageManager::LoadPlugins() {
    const CString folder = ZEBGis::CModuleConfiguration::Instance()->GetPath(u"install");
    for (const CString& name : Platform::FindFiles(folder + u"ZEBXRepositoryClientPlugin_*.arx"))
        // A plug-in that fails must not take those after it along.
        AtBorder([&] { LoadPlugin(folder + name); });
}

// What does not load or is no plug-in is passed over without a word: IsInitialized tells.
void CRepositoryStorageManager::LoadPlugin(const CString& path) {
    const auto getPluginInfo = reinterpret_cast<GetPluginInfoFunction>(
        Platform::FindExport(Platform::LoadModule(path), "GetPluginInfo"));
    if (!getPluginInfo)
        return;
    const auto backend = AskForBackend(getPluginInfo, m_msgProvider.get());
    if (!backend)
        return;
    m_storage = backend; // the last plug-in that yields one wins
    Backend()->SetVersion(m_version.c_str());
    Backend()->SetSettingsPath(GetConfigurationSettingsPath().c_str());
}

StorageBackend* CRepositoryStorageManager::Backend() const {
    return static_cast<StorageBackend*>(m_storage.get());
}

} // namespace Repository
