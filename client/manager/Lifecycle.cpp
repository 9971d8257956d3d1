// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include "MessageProvider.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXRepositoryClient/StorageBackend.h"
#include "client/util/Border.h"
#include "platform/host/Interruption.h"
#include "platform/os/File.h"
#include "platform/os/Path.h"
#include "platform/os/UserFolders.h"
#include "platform/os/VersionRecord.h"

#include <boost/make_shared.hpp>
#include <memory>

namespace Repository {

CRepositoryStorageManager* CRepositoryStorageManager::m_pInstance = nullptr;

CRepositoryStorageManager* CRepositoryStorageManager::Instance() {
    if (m_pInstance)
        return m_pInstance;
    return AtBorder(m_pInstance, [] {
        std::unique_ptr<CRepositoryStorageManager> manager(new CRepositoryStorageManager);
        manager->m_version = ReadVersion();
        manager->m_msgProvider = boost::make_shared<CMessageProvider>();
        manager->m_netRepository = boost::make_shared<CNetRepository>();
        manager->LoadPlugins();
        // Written back at once, kept: what a backend makes of old settings is on disk
        // before anything else happens.
        manager->LoadSettings();
        manager->SaveSettings();
        manager->RegisterFileManager(boost::make_shared<CGSFileManager>());
        manager->RegisterBuiltInNCFKinds();
        manager->RegisterBuiltInFOCKinds();
        m_pInstance = manager.release();
        return m_pInstance;
    });
}

CString CRepositoryStorageManager::GetConfigurationSettingsPath() {
    return AtBorder(CString(), [] {
        const CString base = Platform::AsFolder(Platform::RoamingFolder());
        if (base.empty())
            return base; // a relative path would lie wherever the program was started
        const CString path = base + u"StudioZEB\\RepositoryStorageSettings\\";
        Platform::CreateFolderChain(path, Platform::Access::Private);
        return path;
    });
}

CString CRepositoryStorageManager::GetVersion(const char16_t* path) {
    return Platform::ReadFileVersionText(Platform::TextOf(path));
}

CString CRepositoryStorageManager::ReadVersion() {
    const CString folder = ZEBGis::CModuleConfiguration::Instance()->GetPath(u"INSTALL");
    return GetVersion((folder + u"ZEBXGisCore.arx").c_str());
}

void CRepositoryStorageManager::LoadSettings() {
    if (m_storage)
        AtBorder([&] { Backend()->LoadSettings(); });
}

void CRepositoryStorageManager::SaveSettings() {
    if (m_storage)
        AtBorder([&] { Backend()->SaveSettings(); });
}

int CRepositoryStorageManager::IsInitialized() {
    return m_storage ? 1 : 0;
}

// No check for a backend here and in the next one, kept: callers ask IsInitialized first.
int CRepositoryStorageManager::AmIAdmin() const {
    return AtBorder(0, [&] { return Backend()->AmIAdmin(); });
}

int CRepositoryStorageManager::IsRepositoryAccessible() {
    // Whoever asks between two steps stops the same way when the user wants it to.
    return AtBorder(
        0, [&] { return Platform::IsInterrupted() ? 0 : Backend()->IsRepositoryAccessible(); });
}

CString CRepositoryStorageManager::GetRepositroyStorageName() {
    return AtBorder(CString(), [&] {
        if (!m_storage)
            return CString();
        return ZEBGis::CModuleConfiguration::Instance()->GetMsg(Backend()->GetNameMsgNum());
    });
}

boost::shared_ptr<void> CRepositoryStorageManager::GetStorage() {
    return m_storage;
}

} // namespace Repository
