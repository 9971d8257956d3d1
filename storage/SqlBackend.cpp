// SPDX-License-Identifier: MIT
#include "storage/SqlBackend.h"

#include "platform/text/Utf8.h"
#include "storage/ConnectionParameters.h"
#include "storage/WindowModule.h"

namespace Storage {

using Platform::TextOf;

template<typename Work>
bool SqlBackend::Try(Work work) noexcept {
    try {
        try {
            work();
            return true;
        } catch (const StorageError& error) {
            m_access->Tell(error);
            // A connection that met a failing disk may keep what it saw; a new one looks again.
            if (error.Kind() == Problem::Unreachable)
                m_access->Disconnect();
        } catch (const std::exception& error) {
            m_access->Tell(StorageError(Problem::Internal, MessageNumber::Internal,
                                        {Platform::FromUtf8(error.what())}));
        }
    } catch (...) {
        // No memory even for saying so: the result alone tells.
    }
    return false;
}

template<typename Work>
int SqlBackend::Do(Work work) noexcept {
    return Try([&] { work(m_access->Use()); }) ? 1 : 0;
}

void SqlBackend::SetSettingsPath(const char16_t* folder) {
    Try([&] { m_access->SetSettingsPath(TextOf(folder)); });
}

void SqlBackend::SaveSettings() {
    Try([&] { m_access->SaveSettings(); });
}

void SqlBackend::LoadSettings() {
    Try([&] { m_access->LoadSettings(); });
}

int SqlBackend::ApplyConnectionParameters() {
    if (const auto edited = std::exchange(m_edited, std::nullopt))
        return Try([&] { m_access->Connect(edited->address, edited->create); }) ? 1 : 0;
    m_access->Disconnect();
    return IsRepositoryAccessible();
}

void SqlBackend::SetVersion(const char16_t* version) {
    Try([&] { m_access->SetVersion(TextOf(version)); });
}

int SqlBackend::GetAvailableGS(std::vector<CString>& names) {
    names.clear();
    return Do([&](Store& store) { names = store.GeneralSettingsNames(); });
}

int SqlBackend::LoadGS(CString& xml, std::vector<CString>& fileIds, const char16_t* name) {
    std::optional<GeneralSettings> settings;
    fileIds.clear();
    if (!Do([&](Store& store) { settings = store.LoadGeneralSettings(TextOf(name)); }) || !settings)
        return 0;
    xml = std::move(settings->xml);
    fileIds = std::move(settings->fileIds);
    return 1;
}

int SqlBackend::SaveGS(const char16_t* xml, const Repository::RepositoryFiles& files,
                       const char16_t* name) {
    return Do([&](Store& store) { store.SaveGeneralSettings(TextOf(xml), files, TextOf(name)); });
}

RepositoryFilePtr SqlBackend::GetRepositoryFile(const char16_t* fileId) {
    RepositoryFilePtr file;
    Do([&](Store& store) { file = store.File(TextOf(fileId)); });
    return file;
}

int SqlBackend::RegisterContent(int contentCode, const char16_t* kindId, int messageNumber) {
    return Do(
        [&](Store& store) { store.RegisterContent(contentCode, TextOf(kindId), messageNumber); });
}

int SqlBackend::AmIAdmin() {
    bool mayWrite = false;
    Do([&](Store& store) { mayWrite = store.Connection().MayWrite(); });
    return mayWrite ? 1 : 0;
}

int SqlBackend::AddRepositoryFiles(const Repository::RepositoryFiles& files) {
    return Do([&](Store& store) { store.AddFiles(files); });
}

int SqlBackend::GetRepositoryFileIds(int contentCode, const char16_t* kindId,
                                     std::vector<CString>& fileIds) {
    fileIds.clear();
    return Do([&](Store& store) { fileIds = store.FileIds(contentCode, TextOf(kindId)); });
}

int SqlBackend::GetRepositoryItems(const char16_t* tag, std::vector<RepositoryItemPtr>& items) {
    items.clear();
    return Do([&](Store& store) { items = store.RepositoryItems(TextOf(tag)); });
}

int SqlBackend::DeleteRepositoryItem(const char16_t* tag, const char16_t* id) {
    return Do([&](Store& store) { store.DeleteRepositoryItem(TextOf(tag), TextOf(id)); });
}

int SqlBackend::RenameRepositoryItem(const char16_t* tag, const char16_t* id,
                                     const char16_t* newName) {
    return Do([&](Store& store) {
        store.RenameRepositoryItem(TextOf(tag), TextOf(id), TextOf(newName));
    });
}

RepositoryItemPtr SqlBackend::GetRepositoryItemById(const char16_t* tag, const char16_t* id, int) {
    RepositoryItemPtr item;
    Do([&](Store& store) { item = store.RepositoryItem(TextOf(tag), TextOf(id)); });
    return item;
}

int SqlBackend::AddRepositoryItem(const char16_t* tag, const RepositoryItemPtr& item) {
    return Do([&](Store& store) {
        if (!item)
            throw StorageError(Problem::Refused, MessageNumber::NothingGiven);
        store.AddRepositoryItem(TextOf(tag), *item);
    });
}

int SqlBackend::GetChildCatalogItems(const char16_t* catalogueTag, const char16_t* parentId,
                                     std::vector<CatalogueItemPtr>& items, int withFiles) {
    items.clear();
    return Do([&](Store& store) {
        items = store.CatalogueChildren(TextOf(catalogueTag), TextOf(parentId), withFiles != 0);
    });
}

CatalogueItemPtr SqlBackend::GetCatalogItemById(const char16_t* catalogueTag, const char16_t* id,
                                                int withFiles) {
    CatalogueItemPtr item;
    Do([&](Store& store) {
        item = store.CatalogueItem(TextOf(catalogueTag), TextOf(id), withFiles != 0);
    });
    return item;
}

int SqlBackend::AddCatalogItem(CatalogueItemPtr item) {
    return Do([&](Store& store) {
        if (!item)
            throw StorageError(Problem::Refused, MessageNumber::NothingGiven);
        store.AddCatalogueItem(*item);
    });
}

int SqlBackend::DeleteCatalogItem(const char16_t* catalogueTag, const char16_t* id) {
    return Do([&](Store& store) { store.DeleteCatalogueItem(TextOf(catalogueTag), TextOf(id)); });
}

int SqlBackend::IsRepositoryAccessible() {
    return Do([](Store&) {});
}

int SqlBackend::EditConnectionParameters() {
    bool isEdited = false;
    Try([&] {
        ConnectionParameters parameters(*m_access);
        if (auto edited = EditInWindow(parameters)) {
            m_edited = std::move(edited);
            isEdited = true;
        }
    });
    return isEdited ? 1 : 0;
}

} // namespace Storage
