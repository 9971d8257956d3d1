// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/ContentKinds.h"

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "platform/os/Path.h"

namespace Repository {

void CGSFileManager::GetFiles(std::vector<boost::shared_ptr<CRepositoryFile>>&, const char16_t*) {}

void CGSFileManager::PutFiles(std::vector<boost::shared_ptr<CRepositoryFile>>&, int, const void*) {}

CString CGSFileManager::GetId() {
    return u"GS";
}

CFOCMetadata::CFOCMetadata(const char16_t* id, int msgNum, enmBaseFolder baseFolder,
                           const char16_t* subfolder, const char16_t* fileManagerId, int optional)
    : m_id(Platform::TextOf(id)), m_msgNum(msgNum),
      m_fileManagerId(Platform::TextOf(fileManagerId)), m_baseFolder(baseFolder),
      m_subfolder(Platform::TextOf(subfolder)), m_optional(optional) {}

boost::shared_ptr<IFileManager> CFOCMetadata::GetFileManager() const {
    return CRepositoryStorageManager::Instance()->GetFileManagerById(m_fileManagerId.c_str());
}

CString CFOCMetadata::GetSubfolder() const {
    return Platform::AsFolder(m_subfolder);
}

CNCFMetadata::CNCFMetadata(const char16_t* id, int msgNum, enmBaseFolder baseFolder,
                           const char16_t* subfolder, enmNCFType type, const char16_t* file,
                           int optional)
    : m_id(Platform::TextOf(id)), m_msgNum(msgNum), m_baseFolder(baseFolder),
      m_subfolder(Platform::TextOf(subfolder)), m_type(type), m_file(Platform::TextOf(file)),
      m_optional(optional) {}

CString CNCFMetadata::GetSubfolder() const {
    return Platform::AsFolder(m_subfolder);
}

} // namespace Repository
