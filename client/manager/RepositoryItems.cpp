// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include "ZEBXGisCore/RepositoryManager.h"
#include "ZEBXRepositoryClient/RepositoryItemLite.h"
#include "ZEBXRepositoryClient/StorageBackend.h"
#include "client/util/Border.h"

#include <boost/make_shared.hpp>
#include <memory>

namespace Repository {
namespace {

using ZEBGis::CDefinitionRepository;
using ZEBGis::CRepositoryFactory;
using ZEBGis::CRepositoryItem;
using ZEBGis::CRepositoryItemFactory;
using ZEBGis::CRepositoryManager;

// Gives back to the factory what it made, the null pointer too.
class Made {
public:
    Made(CRepositoryFactory& factory, CDefinitionRepository* repository)
        : m_factory(factory), m_repository(repository) {}
    ~Made() { m_factory.ReleaseRepository(m_repository); }
    Made(const Made&) = delete;
    Made& operator=(const Made&) = delete;

    CDefinitionRepository* operator->() const { return m_repository; }
    explicit operator bool() const { return m_repository != nullptr; }

private:
    CRepositoryFactory& m_factory;
    CDefinitionRepository* m_repository;
};

boost::shared_ptr<CNetRepositoryItem> NetItemOf(const char16_t* tag, const CRepositoryItem& item) {
    const auto net = boost::make_shared<CNetRepositoryItem>();
    net->SetId(item.GetId().c_str());
    net->SetName(item.GetName().c_str());
    net->SetEntityType(item.GetEntityType());
    net->SetTopologyFunction(item.GetTopologyFunction());
    net->SetTopologyType(item.GetTopologyType());
    net->SetConfigurationXML(item.GetXML().c_str());
    net->SetRepositoryTag(tag);
    net->SetRepositoryName(tag);
    if (auto* factory = CRepositoryManager::Instance()->GetRepositoryfactory(tag))
        net->SetRepositoryName(factory->GetRepositoryName().c_str());
    return net;
}

std::unique_ptr<CRepositoryItem> LiteItemOf(const CNetRepositoryItem& net) {
    auto lite = std::make_unique<CRepositoryItemLite>();
    lite->SetId(net.GetId().c_str());
    lite->SetName(net.GetName().c_str());
    lite->SetTopologyFunction(net.GetTopologyFunction());
    lite->SetEntityType(static_cast<ZEBGis::enmEntityType>(net.GetEntityType()));
    return lite;
}

// The XML text of a repository that holds the item alone; nothing when none could be made.
std::unique_ptr<CString> RepositoryXml(CRepositoryFactory& factory, const CString& itemXml) {
    CDefinitionRepository* const made = factory.CreateRepository(u"");
    if (!made)
        return nullptr;
    const Made empty(factory, made);
    return std::make_unique<CString>(empty->CreateRepositoryXML(itemXml.c_str()));
}

// A local item with the record's configuration; null when it cannot be made.
std::unique_ptr<CRepositoryItem> LocalItemOf(const CNetRepositoryItem& net, const char16_t* id,
                                             CRepositoryFactory& factory,
                                             CRepositoryItemFactory& itemFactory) {
    const auto xml = RepositoryXml(factory, net.GetConfigurationXML());
    if (!xml)
        return nullptr;
    // Released also when there is none, with the null pointer: kept.
    const Made repository(factory, factory.CreateRepository(xml->c_str()));
    if (!repository || repository->GetRepositoryItemList().GetCount() == 0)
        return nullptr;
    std::unique_ptr<CRepositoryItem> item(
        itemFactory.CreateItem(*repository->GetRepositoryItemList().GetHead()));
    if (!item)
        return nullptr;
    // Whatever the configuration says.
    item->SetId(id);
    item->SetName(net.GetName().c_str());
    return item;
}

std::vector<CString> TagsToRefresh(const char16_t* tag) {
    if (tag)
        return {tag};
    std::vector<CString> tags;
    for (const auto& [known, factory] : CRepositoryManager::Instance()->GetRepositoryFactories())
        tags.push_back(known);
    return tags;
}

} // namespace

int CRepositoryStorageManager::AddRepositoryItem(const char16_t* tag, CRepositoryItem* item) {
    return AtBorder(0, [&] {
        if (!item)
            return 0;
        const auto net = NetItemOf(tag, *item);
        if (m_netRepository) {
            auto& repository =
                (*m_netRepository->GetRepositories())[CString(Platform::TextOf(tag))];
            if (!repository)
                repository = boost::make_shared<CNetDefinitionRepository>(tag);
            // It stays also when the storage refuses, until the next refresh: kept.
            repository->AddRepositoryItem(net);
        }
        return m_storage ? Backend()->AddRepositoryItem(tag, net) : 0;
    });
}

int CRepositoryStorageManager::DeleteRepositoryItem(const char16_t* tag, const char16_t* id) {
    return AtBorder(0, [&] {
        const int result = m_storage ? Backend()->DeleteRepositoryItem(tag, id) : 0;
        if (!result || !m_netRepository)
            return result;
        if (const auto repository = m_netRepository->GetDefinitionRepositoryByTag(tag))
            repository->RemoveNetRepositoryItemById(id);
        return result;
    });
}

int CRepositoryStorageManager::RenameRepositoryItem(const char16_t* tag, const char16_t* id,
                                                    const char16_t* newName) {
    return AtBorder(0, [&] {
        const int result = m_storage ? Backend()->RenameRepositoryItem(tag, id, newName) : 0;
        if (!result || !m_netRepository)
            return result;
        if (const auto repository = m_netRepository->GetDefinitionRepositoryByTag(tag))
            repository->RenameRepositoryItem(id, newName);
        return result;
    });
}

CRepositoryItem* CRepositoryStorageManager::GetRepositoryItemById(const char16_t* tag,
                                                                  const char16_t* id, int option) {
    return AtBorder<CRepositoryItem*>(nullptr, [&]() -> CRepositoryItem* {
        if (!m_storage)
            return nullptr;
        const auto net = Backend()->GetRepositoryItemById(tag, id, option);
        if (!net)
            return nullptr;
        auto* const factory = CRepositoryManager::Instance()->GetRepositoryfactory(tag);
        auto* const itemFactory = CRepositoryManager::Instance()->GetRIF(tag);
        if (!factory || !itemFactory)
            return nullptr;
        return LocalItemOf(*net, id, *factory, *itemFactory).release();
    });
}

int CRepositoryStorageManager::GetRepositoryItemsLite(const char16_t* tag,
                                                      std::vector<CRepositoryItem*>& out) {
    AtBorder([&] {
        if (!m_netRepository)
            return;
        const auto repository = m_netRepository->GetDefinitionRepositoryByTag(tag);
        if (!repository)
            return;
        std::vector<boost::shared_ptr<CNetRepositoryItem>> items;
        repository->GetRepositoryItems(items);
        out.reserve(out.size() + items.size());
        for (const auto& item : items)
            out.push_back(LiteItemOf(*item).release());
    });
    return 0; // on every path, kept: callers judge by what was appended
}

int CRepositoryStorageManager::RefreshNetRepository(const char16_t* tag) {
    return AtBorder(0, [&] {
        if (!m_netRepository)
            m_netRepository = boost::make_shared<CNetRepository>();
        if (!m_storage)
            return 0;
        int result = 0;
        auto& repositories = *m_netRepository->GetRepositories();
        for (const CString& refreshed : TagsToRefresh(tag)) {
            repositories.erase(refreshed);
            const auto repository = boost::make_shared<CNetDefinitionRepository>(refreshed.c_str());
            std::vector<boost::shared_ptr<CNetRepositoryItem>> items;
            if (Backend()->GetRepositoryItems(refreshed.c_str(), items)) {
                for (const auto& item : items)
                    repository->AddRepositoryItem(item);
                result = 1;
            }
            // What earlier tags earned is dropped: kept.
            if (!IsRepositoryAccessible())
                return 0;
            repositories.emplace(refreshed, repository);
        }
        return result;
    });
}

} // namespace Repository
