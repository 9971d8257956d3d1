// SPDX-License-Identifier: MIT
// A storage backend that keeps the repository in the memory of this process.
#pragma once

#include <ZEBXRepositoryClient/StorageBackend.h>

#include <map>
#include <utility>

class MemoryBackend : public Repository::StorageBackend {
public:
    void SetSettingsPath(const char16_t*) override {}
    void SaveSettings() override {}
    void LoadSettings() override {}
    int GetNameMsgNum() override;
    int ApplyConnectionParameters() override { return 1; }
    int HasConnectionParameters() override { return 0; }
    void SetVersion(const char16_t*) override {}
    int IsMultipleGSSupported() override { return 1; }
    int GetAvailableGS(std::vector<CString>& names) override;
    int LoadGS(CString& xml, std::vector<CString>& fileIds, const char16_t* name) override;
    int SaveGS(const char16_t* xml, const Repository::RepositoryFiles& files,
               const char16_t* name) override;
    boost::shared_ptr<Repository::CRepositoryFile>
    GetRepositoryFile(const char16_t* fileId) override;
    int RegisterContent(int, const char16_t*, int) override { return 1; }
    int AmIAdmin() override { return 1; }
    int AddRepositoryFiles(const Repository::RepositoryFiles& files) override;
    int GetRepositoryFileIds(int contentCode, const char16_t* kindId,
                             std::vector<CString>& fileIds) override;
    int GetRepositoryItems(
        const char16_t* tag,
        std::vector<boost::shared_ptr<Repository::CNetRepositoryItem>>& items) override;
    int DeleteRepositoryItem(const char16_t* tag, const char16_t* id) override;
    int RenameRepositoryItem(const char16_t* tag, const char16_t* id,
                             const char16_t* newName) override;
    boost::shared_ptr<Repository::CNetRepositoryItem>
    GetRepositoryItemById(const char16_t* tag, const char16_t* id, int flag) override;
    int AddRepositoryItem(const char16_t* tag,
                          const boost::shared_ptr<Repository::CNetRepositoryItem>& item) override;
    int GetChildCatalogItems(const char16_t* catalogueTag, const char16_t* parentId,
                             std::vector<boost::shared_ptr<Repository::CNetCatalogueItem>>& items,
                             int withFiles) override;
    boost::shared_ptr<Repository::CNetCatalogueItem>
    GetCatalogItemById(const char16_t* catalogueTag, const char16_t* id, int withFiles) override;
    int AddCatalogItem(boost::shared_ptr<Repository::CNetCatalogueItem> item) override;
    int DeleteCatalogItem(const char16_t* catalogueTag, const char16_t* id) override;
    int IsRepositoryAccessible() override { return 1; }
    int EditConnectionParameters() override { return 0; }

private:
    struct GeneralSettings {
        CString xml;
        std::vector<CString> fileIds;
    };
    using Catalogue = std::vector<boost::shared_ptr<Repository::CNetCatalogueItem>>;

    static Catalogue::iterator Find(Catalogue& catalogue, const CString& id);
    static void Remove(Catalogue& catalogue, const CString& id);

    std::map<CString, boost::shared_ptr<Repository::CRepositoryFile>> m_files; // by stored id
    std::map<CString, GeneralSettings> m_generalSettings;                      // by name
    std::map<std::pair<CString, CString>, boost::shared_ptr<Repository::CNetRepositoryItem>>
        m_items;                               // by tag and id
    std::map<CString, Catalogue> m_catalogues; // by tag, in order of arrival
};
