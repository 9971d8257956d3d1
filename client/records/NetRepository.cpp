// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/NetRepository.h"

#include "client/util/Border.h"

namespace Repository {
namespace {

template<class Map>
typename Map::mapped_type Find(const Map& map, const char16_t* key) {
    return AtBorder(typename Map::mapped_type(), [&] {
        const auto found = map.find(CString(Platform::TextOf(key)));
        return found != map.end() ? found->second : typename Map::mapped_type();
    });
}

} // namespace

void CNetDefinitionRepository::AddRepositoryItem(
    const boost::shared_ptr<CNetRepositoryItem>& item) {
    AtBorder([&] {
        if (item)
            m_items.emplace(item->GetId(), item); // an id that is taken keeps its item
    });
}

boost::shared_ptr<CNetRepositoryItem>
CNetDefinitionRepository::GetNetRepositoryItemById(const char16_t* id) const {
    return Find(m_items, id);
}

void CNetDefinitionRepository::RenameRepositoryItem(const char16_t* id, const char16_t* name) {
    AtBorder([&] {
        if (const auto item = Find(m_items, id))
            item->SetName(name);
    });
}

void CNetDefinitionRepository::RemoveNetRepositoryItemById(const char16_t* id) {
    AtBorder([&] { m_items.erase(CString(Platform::TextOf(id))); });
}

void CNetDefinitionRepository::GetRepositoryItems(
    std::vector<boost::shared_ptr<CNetRepositoryItem>>& items) const {
    AtBorder([&] {
        for (const auto& [id, item] : m_items)
            items.push_back(item);
    });
}

boost::shared_ptr<CNetDefinitionRepository>
CNetRepository::GetDefinitionRepositoryByTag(const char16_t* tag) const {
    return Find(m_repositories, tag);
}

} // namespace Repository
