// SPDX-License-Identifier: MIT
// The storage backend over the store: turns exceptions into results, and what went wrong
// into lines of the workspace log.
#pragma once

#include "ZEBXRepositoryStorage/ConnectionWindow.h"
#include "storage/RepositoryAccess.h"

#include <optional>

namespace Storage {

class SqlBackend : public Repository::StorageBackend {
public:
    explicit SqlBackend(boost::shared_ptr<RepositoryAccess> access) : m_access(std::move(access)) {}

    void SetSettingsPath(const char16_t* folder) override;
    void SaveSettings() override;
    void LoadSettings() override;
    int GetNameMsgNum() override { return static_cast<int>(MessageNumber::DisplayName); }
    // Connects to what was edited, or else anew.
    int ApplyConnectionParameters() override;
    int HasConnectionParameters() override { return 1; }
    void SetVersion(const char16_t* version) override;

    int IsMultipleGSSupported() override { return 1; }
    int GetAvailableGS(std::vector<CString>& names) override;
    int LoadGS(CString& xml, std::vector<CString>& fileIds, const char16_t* name) override;
    int SaveGS(const char16_t* xml, const Repository::RepositoryFiles& files,
               const char16_t* name) override;

    RepositoryFilePtr GetRepositoryFile(const char16_t* fileId) override;
    int RegisterContent(int contentCode, const char16_t* kindId, int messageNumber) override;
    int AmIAdmin() override;
    int AddRepositoryFiles(const Repository::RepositoryFiles& files) override;
    int GetRepositoryFileIds(int contentCode, const char16_t* kindId,
                             std::vector<CString>& fileIds) override;

    int GetRepositoryItems(const char16_t* tag, std::vector<RepositoryItemPtr>& items) override;
    int DeleteRepositoryItem(const char16_t* tag, const char16_t* id) override;
    int RenameRepositoryItem(const char16_t* tag, const char16_t* id,
                             const char16_t* newName) override;
    // `flag` has no meaning here; the item's files come along.
    RepositoryItemPtr GetRepositoryItemById(const char16_t* tag, const char16_t* id,
                                            int flag) override;
    int AddRepositoryItem(const char16_t* tag, const RepositoryItemPtr& item) override;

    int GetChildCatalogItems(const char16_t* catalogueTag, const char16_t* parentId,
                             std::vector<CatalogueItemPtr>& items, int withFiles) override;
    CatalogueItemPtr GetCatalogItemById(const char16_t* catalogueTag, const char16_t* id,
                                        int withFiles) override;
    int AddCatalogItem(CatalogueItemPtr item) override;
    int DeleteCatalogItem(const char16_t* catalogueTag, const char16_t* id) override;

    int IsRepositoryAccessible() override;
    // Shows the connection window.  1: something was edited and waits to be applied.
    int EditConnectionParameters() override;

private:
    // Runs `work`; what it throws is told.  Whether it ended.
    template<typename Work>
    bool Try(Work work) noexcept;
    // As Try, with the store; the result of a backend's operation.
    template<typename Work>
    int Do(Work work) noexcept;

    boost::shared_ptr<RepositoryAccess> m_access;
    std::optional<Connection> m_edited; // not applied yet
};

} // namespace Storage
