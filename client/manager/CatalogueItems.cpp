// SPDX-License-Identifier: MIT
// Catalogue items between the catalogue library's form and the repository's.
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include "ZEBXNetworkCore/CatalogManager.h"
#include "ZEBXRepositoryClient/StorageBackend.h"
#include "client/util/Border.h"
#include "client/util/Trace.h"

#include <boost/make_shared.hpp>

namespace Repository {
namespace {

using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CCatalog;
using ZEBGis::Data::CCatalogItem;
using ZEBGis::Data::CCatalogManager;
using NetItemPtr = boost::shared_ptr<CNetCatalogueItem>;

// The keys first: removing changes the map that would be walked.
void RemoveSubItems(CCatalogItem& item) {
    std::vector<std::int32_t> keys;
    for (const auto& [key, subItem] : item.GetSubItems())
        keys.push_back(key);
    for (const std::int32_t key : keys)
        item.RemoveSubItem(key);
}

boost::shared_ptr<IFileManager> FileManagerOf(CRepositoryStorageManager& manager,
                                              const char16_t* catalogueTag) {
    const auto metadata = CCatalogManager::Instance()->GetCatalogMetadata(catalogueTag);
    if (!metadata)
        return {};
    return manager.GetFileManagerById(metadata->GetFileManager().c_str());
}

// What the item itself is, without its files.
NetItemPtr RecordOf(const char16_t* catalogueTag, const char16_t* catalogueName,
                    const CCatalogItem& item) {
    CCatalogItem alone(item);
    RemoveSubItems(alone);
    WStringStream content;
    alone.GetXML(content);
    const auto record = boost::make_shared<CNetCatalogueItem>();
    record->SetCatalogueId(alone.GetGUID().c_str());
    record->SetCatalogueTag(catalogueTag);
    record->SetIsGroup(alone.IsGroup());
    record->SetParentId(alone.GetParentItemGuid().c_str());
    record->SetName(alone.GetName().c_str());
    record->SetCatalogueName(catalogueName);
    record->SetItemContent(content.str().c_str());
    return record;
}

// Throws, so that half a record is never sent.
NetItemPtr RecordWithFiles(CRepositoryStorageManager& manager, const char16_t* catalogueTag,
                           const char16_t* catalogueName, const CatalogItemPtr& item,
                           int withFiles) {
    const NetItemPtr record = RecordOf(catalogueTag, catalogueName, *item);
    const auto fileManager = withFiles ? FileManagerOf(manager, catalogueTag) : nullptr;
    if (fileManager)
        fileManager->GetFiles(*record->GetFiles(), record->GetCatalogueId().c_str());
    return record;
}

} // namespace

NetItemPtr CRepositoryStorageManager::Transform2NetCatalogItem(const char16_t* catalogueTag,
                                                               const char16_t* catalogueName,
                                                               const CatalogItemPtr& item,
                                                               int withFiles) {
    NetItemPtr record = AtBorder(NetItemPtr(), [&] {
        return item ? RecordWithFiles(*this, catalogueTag, catalogueName, item, withFiles)
                    : NetItemPtr();
    });
    return record ? record : boost::make_shared<CNetCatalogueItem>();
}

CatalogItemPtr CRepositoryStorageManager::Transform2CatalogItem(const NetItemPtr& record,
                                                                int withFiles) {
    return AtBorder(CatalogItemPtr(), [&] {
        if (!record)
            return CatalogItemPtr();
        const auto catalogue = boost::make_shared<CCatalog>();
        const auto item = CCatalogManager::Instance()->ParseCatalogItem(
            record->GetItemContent().c_str(), catalogue, CatalogItemPtr());
        auto& files = *record->GetFiles();
        if (withFiles && !files.empty()) {
            // By the tag and not by the metadata's id as on the way out: kept.
            if (const auto manager = GetFileManagerById(record->GetCatalogueTag().c_str()))
                manager->PutFiles(files, 0);
        }
        if (item)
            item->SetParentItemGuid(record->GetParentId().c_str());
        return item;
    });
}

int CRepositoryStorageManager::GetChildCatalogItems(const char16_t* catalogueTag,
                                                    const char16_t* parentId,
                                                    std::vector<NetItemPtr>& items, int flag) {
    const TraceScope trace(".\\RepositoryStorageManager", __LINE__,
                           "Repository::CRepositoryStorageManager::GetChildCatalogItems");
    return AtBorder(
        0, [&] { return Backend()->GetChildCatalogItems(catalogueTag, parentId, items, flag); });
}

CatalogItemPtr CRepositoryStorageManager::GetCatalogItemById(const char16_t* catalogueTag,
                                                             const char16_t* id, int withFiles) {
    return AtBorder(CatalogItemPtr(), [&] {
        const auto record = Backend()->GetCatalogItemById(catalogueTag, id, withFiles);
        return record ? Transform2CatalogItem(record, withFiles) : CatalogItemPtr();
    });
}

int CRepositoryStorageManager::AddCatalogItem(const char16_t* catalogueTag,
                                              const char16_t* catalogueName,
                                              const CatalogItemPtr& item, int withFiles) {
    return AtBorder(0, [&] {
        if (!item)
            return 0;
        return Backend()->AddCatalogItem(
            RecordWithFiles(*this, catalogueTag, catalogueName, item, withFiles));
    });
}

int CRepositoryStorageManager::DeleteCatalogItem(const char16_t* catalogueTag, const char16_t* id) {
    return AtBorder(0, [&] { return Backend()->DeleteCatalogItem(catalogueTag, id); });
}

} // namespace Repository
