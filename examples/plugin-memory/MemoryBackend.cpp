// SPDX-License-Identifier: MIT
#include "MemoryBackend.h"

#include <boost/make_shared.hpp>

#include <algorithm>

using Platform::TextOf;
using Repository::CNetCatalogueItem;
using Repository::CNetRepositoryItem;
using Repository::CRepositoryFile;

namespace {

// "4/002_NODE/", in front of the names of a kind's files.
CString IdPrefix(int contentCode, CStringView kindId) {
    CString prefix(1, static_cast<char16_t>(u'0' + contentCode));
    return prefix.append(u"/").append(kindId).append(u"/");
}

CString IdOf(const CRepositoryFile& file) {
    return IdPrefix(file.GetFileType(), file.GetOriginId()) + file.GetFileName();
}

// Stored and handed out as copies, so that nobody changes what is stored.
boost::shared_ptr<CRepositoryFile> StoredCopy(const CRepositoryFile& file, const CString& id) {
    auto copy = boost::make_shared<CRepositoryFile>(file);
    copy->SetFileId(id.c_str());
    return copy;
}

} // namespace

int MemoryBackend::GetNameMsgNum() {
    return 20900;
}

int MemoryBackend::GetAvailableGS(std::vector<CString>& names) {
    for (const auto& [name, settings] : m_generalSettings)
        names.push_back(name);
    return 1;
}

int MemoryBackend::LoadGS(CString& xml, std::vector<CString>& fileIds, const char16_t* name) {
    const auto found = m_generalSettings.find(CString(TextOf(name)));
    if (found == m_generalSettings.end())
        return 0;
    xml = found->second.xml;
    fileIds = found->second.fileIds;
    return 1;
}

int MemoryBackend::SaveGS(const char16_t* xml, const Repository::RepositoryFiles& files,
                          const char16_t* name) {
    GeneralSettings settings{CString(TextOf(xml)), {}};
    for (const auto& file : files) {
        const CString id = u"GS/" + CString(TextOf(name)) + u"/" + file->GetFileName();
        m_files[id] = StoredCopy(*file, id);
        settings.fileIds.push_back(id);
    }
    m_generalSettings[CString(TextOf(name))] = settings;
    return 1;
}

boost::shared_ptr<CRepositoryFile> MemoryBackend::GetRepositoryFile(const char16_t* fileId) {
    const auto found = m_files.find(CString(TextOf(fileId)));
    if (found == m_files.end())
        return {};
    return StoredCopy(*found->second, found->first);
}

int MemoryBackend::AddRepositoryFiles(const Repository::RepositoryFiles& files) {
    for (const auto& file : files) {
        const CString id = IdOf(*file);
        m_files[id] = StoredCopy(*file, id);
    }
    return 1;
}

int MemoryBackend::GetRepositoryFileIds(int contentCode, const char16_t* kindId,
                                        std::vector<CString>& fileIds) {
    const CString prefix = IdPrefix(contentCode, TextOf(kindId));
    for (auto it = m_files.lower_bound(prefix);
         it != m_files.end() && it->first.compare(0, prefix.size(), prefix) == 0; ++it)
        fileIds.push_back(it->first);
    return 1;
}

int MemoryBackend::GetRepositoryItems(const char16_t* tag,
                                      std::vector<boost::shared_ptr<CNetRepositoryItem>>& items) {
    for (const auto& [key, item] : m_items)
        if (key.first == TextOf(tag))
            items.push_back(boost::make_shared<CNetRepositoryItem>(*item));
    return 1;
}

int MemoryBackend::DeleteRepositoryItem(const char16_t* tag, const char16_t* id) {
    return m_items.erase({CString(TextOf(tag)), CString(TextOf(id))}) > 0 ? 1 : 0;
}

int MemoryBackend::RenameRepositoryItem(const char16_t* tag, const char16_t* id,
                                        const char16_t* newName) {
    const auto found = m_items.find({CString(TextOf(tag)), CString(TextOf(id))});
    if (found == m_items.end())
        return 0;
    found->second->SetName(newName);
    return 1;
}

boost::shared_ptr<CNetRepositoryItem>
MemoryBackend::GetRepositoryItemById(const char16_t* tag, const char16_t* id, int) {
    const auto found = m_items.find({CString(TextOf(tag)), CString(TextOf(id))});
    if (found == m_items.end())
        return {};
    return boost::make_shared<CNetRepositoryItem>(*found->second);
}

int MemoryBackend::AddRepositoryItem(const char16_t* tag,
                                     const boost::shared_ptr<CNetRepositoryItem>& item) {
    if (!item)
        return 0;
    m_items[{CString(TextOf(tag)), item->GetId()}] = boost::make_shared<CNetRepositoryItem>(*item);
    return 1;
}

int MemoryBackend::GetChildCatalogItems(const char16_t* catalogueTag, const char16_t* parentId,
                                        std::vector<boost::shared_ptr<CNetCatalogueItem>>& items,
                                        int withFiles) {
    for (const auto& item : m_catalogues[CString(TextOf(catalogueTag))]) {
        if (item->GetParentId() != TextOf(parentId))
            continue;
        items.push_back(boost::make_shared<CNetCatalogueItem>(*item));
        if (!withFiles)
            items.back()->GetFiles()->clear();
    }
    return 1;
}

boost::shared_ptr<CNetCatalogueItem>
MemoryBackend::GetCatalogItemById(const char16_t* catalogueTag, const char16_t* id, int withFiles) {
    Catalogue& catalogue = m_catalogues[CString(TextOf(catalogueTag))];
    const auto found = Find(catalogue, CString(TextOf(id)));
    if (found == catalogue.end())
        return {};
    auto copy = boost::make_shared<CNetCatalogueItem>(**found);
    if (!withFiles)
        copy->GetFiles()->clear();
    return copy;
}

int MemoryBackend::AddCatalogItem(boost::shared_ptr<CNetCatalogueItem> item) {
    if (!item)
        return 0;
    Catalogue& catalogue = m_catalogues[item->GetCatalogueTag()];
    const auto copy = boost::make_shared<CNetCatalogueItem>(*item);
    const auto found = Find(catalogue, item->GetCatalogueId());
    if (found == catalogue.end())
        catalogue.push_back(copy);
    else
        *found = copy;
    return 1;
}

int MemoryBackend::DeleteCatalogItem(const char16_t* catalogueTag, const char16_t* id) {
    Catalogue& catalogue = m_catalogues[CString(TextOf(catalogueTag))];
    if (Find(catalogue, CString(TextOf(id))) == catalogue.end())
        return 0;
    Remove(catalogue, CString(TextOf(id)));
    return 1;
}

MemoryBackend::Catalogue::iterator MemoryBackend::Find(Catalogue& catalogue, const CString& id) {
    return std::find_if(catalogue.begin(), catalogue.end(),
                        [&](const auto& item) { return item->GetCatalogueId() == id; });
}

// The item goes before its children do, so that a loop of parents comes to an end.
void MemoryBackend::Remove(Catalogue& catalogue, const CString& id) {
    std::erase_if(catalogue, [&](const auto& item) { return item->GetCatalogueId() == id; });
    std::vector<CString> children;
    for (const auto& item : catalogue)
        if (item->GetParentId() == id)
            children.push_back(item->GetCatalogueId());
    for (const CString& child : children)
        Remove(catalogue, child);
}
