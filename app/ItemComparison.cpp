// SPDX-License-Identifier: MIT
#include "app/ItemComparison.h"

#include "app/Catalogues.h"
#include "app/StoredCatalogue.h"
#include "app/Texts.h"
#include "app/Transfer.h"

#include "ZEBXWorkspaceCore/WsManager.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <set>

namespace App {
namespace {

using Repository::CNetCatalogueItem;
using Repository::RepositoryFiles;
using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CatalogPtr;
using ZEBGis::Data::CCatalogItem;
using ZEBGis::Data::CCatalogManager;
using ZEBGis::Data::CCatalogMetadata;

// The bytes of a text's UTF-8 form and of the files with it.
std::int64_t SizeOf(const CString& text, const RepositoryFiles& files) {
    auto bytes = static_cast<std::int64_t>(Platform::ToUtf8(text).size());
    std::string buffer;
    for (const auto& file : files)
        bytes += static_cast<std::int64_t>(file->GetFileBytes(buffer).size());
    return bytes;
}

std::int64_t SizeOf(CNetCatalogueItem& item) {
    return SizeOf(item.GetItemContent(), *item.GetFiles());
}

bool IsSame(const RepositoryFiles& left, const RepositoryFiles& right) {
    return std::ranges::equal(left, right, [](const auto& one, const auto& other) {
        std::string oneBuffer;
        std::string otherBuffer;
        return one->GetFileName() == other->GetFileName() &&
               one->GetFileBytes(oneBuffer) == other->GetFileBytes(otherBuffer);
    });
}

bool IsSame(CNetCatalogueItem& left, CNetCatalogueItem& right) {
    return left.GetParentId() == right.GetParentId() && left.GetName() == right.GetName() &&
           (left.GetIsGroup() != 0) == (right.GetIsGroup() != 0) &&
           left.GetItemContent() == right.GetItemContent() &&
           IsSame(*left.GetFiles(), *right.GetFiles());
}

// What cannot be read here counts as not being there, and the user is told.
CatalogPtr ReadHere(const CString& reference, bool& isWhole) {
    auto& catalogues = *CCatalogManager::Instance();
    auto catalogue = catalogues.GetCatalog(reference.c_str(), /*load*/ 1);
    if (catalogue)
        return catalogue;
    Log(ZEBGis::Workspace::MessageFailure, catalogues.GetProblem());
    isWhole = false;
    return boost::make_shared<ZEBGis::Data::CCatalog>();
}

class CatalogueComparison {
public:
    CatalogueComparison(const OpenStorage& storage, const CCatalogMetadata& metadata,
                        const CatalogPtr& here)
        : m_storage(storage), m_reference(metadata.GetCatalogReference()),
          m_name(metadata.GetCatalogNameUI()), m_here(here) {}

    ComparedKind Compare() {
        LookAtStoredCatalogue(m_storage, m_reference, {},
                              [&](const StoredCatalogueItem& item, std::size_t) { Take(*item); });
        LookAtItems(*m_here, [&](const CCatalogItem& item) { AddOnlyHere(item); });
        return std::move(m_result);
    }

private:
    void Take(const CNetCatalogueItem& listed) {
        const CString id = listed.GetCatalogueId();
        // Files come one item at a time, so that they need no more memory than those of one.
        const auto stored =
            m_storage.Backend().GetCatalogItemById(m_reference.c_str(), id.c_str(), 1);
        if (!stored)
            return; // damaged, and told by the storage
        m_seen.insert(id);
        ComparedFile file{stored->GetName(), Difference::OnlyThere, 0, SizeOf(*stored)};
        if (const auto item = m_here->GetItembyGuid(id.c_str())) {
            const auto local = Record(item);
            file.difference = IsSame(*local, *stored) ? Difference::Same : Difference::Changed;
            file.bytesHere = SizeOf(*local);
        }
        m_result.files.push_back(std::move(file));
    }

    void AddOnlyHere(const CCatalogItem& item) {
        const CString id = item.GetGUID();
        if (!m_seen.contains(id))
            m_result.files.push_back({item.GetName(), Difference::OnlyHere,
                                      SizeOf(*Record(m_here->GetItembyGuid(id.c_str()))), 0});
    }

    boost::shared_ptr<CNetCatalogueItem> Record(const CatalogItemPtr& item) const {
        return m_storage.manager.Transform2NetCatalogItem(m_reference.c_str(), m_name.c_str(), item,
                                                          /*withFiles*/ 1);
    }

    const OpenStorage& m_storage;
    CString m_reference;
    CString m_name;
    CatalogPtr m_here;
    std::set<CString> m_seen;
    ComparedKind m_result{Group::Catalogues, m_reference, {}};
};

} // namespace

std::vector<ComparedKind> CompareCatalogues(const OpenStorage& storage,
                                            const std::optional<CString>& reference,
                                            bool& isWhole) {
    std::vector<ComparedKind> kinds;
    for (const auto& metadata : CataloguesOf(reference)) {
        const CatalogPtr here = ReadHere(metadata->GetCatalogReference(), isWhole);
        kinds.push_back(CatalogueComparison(storage, *metadata, here).Compare());
    }
    return kinds;
}

} // namespace App
