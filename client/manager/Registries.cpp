// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include "client/util/Border.h"

namespace Repository {
namespace {

// The first object of an identifier stays: emplace does not overwrite.
template<class Object>
void Register(std::map<CString, boost::shared_ptr<Object>>& registry,
              const boost::shared_ptr<Object>& object) {
    AtBorder([&] {
        if (object)
            registry.emplace(object->GetId(), object);
    });
}

template<class Object>
boost::shared_ptr<Object> Find(const std::map<CString, boost::shared_ptr<Object>>& registry,
                               const char16_t* id) {
    return AtBorder(boost::shared_ptr<Object>(), [&] {
        const auto found = registry.find(CString(Platform::TextOf(id)));
        return found != registry.end() ? found->second : boost::shared_ptr<Object>();
    });
}

} // namespace

void CRepositoryStorageManager::RegisterNCFMetadata(const boost::shared_ptr<CNCFMetadata>& kind) {
    Register(m_ncfKinds, kind);
}

void CRepositoryStorageManager::RegisterFOCMetadata(const boost::shared_ptr<CFOCMetadata>& kind) {
    Register(m_focKinds, kind);
}

void CRepositoryStorageManager::RegisterFileManager(
    const boost::shared_ptr<IFileManager>& fileManager) {
    Register(m_fileManagers, fileManager);
}

boost::shared_ptr<CNCFMetadata> CRepositoryStorageManager::GetNCFMetadataById(const char16_t* id) {
    return Find(m_ncfKinds, id);
}

boost::shared_ptr<CFOCMetadata> CRepositoryStorageManager::GetFOCMetadataById(const char16_t* id) {
    return Find(m_focKinds, id);
}

boost::shared_ptr<IFileManager> CRepositoryStorageManager::GetFileManagerById(const char16_t* id) {
    return Find(m_fileManagers, id);
}

CRepositoryStorageManager::NCFKinds& CRepositoryStorageManager::GetNCFMetadata() {
    return m_ncfKinds;
}

CRepositoryStorageManager::FOCKinds& CRepositoryStorageManager::GetFOCMetadata() {
    return m_focKinds;
}

} // namespace Repository
