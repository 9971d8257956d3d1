// SPDX-License-Identifier: MIT
#include "app/Catalogues.h"

#include "app/Texts.h"

#include "ZEBXRepositoryClient/CatalogueTransfer.h"
#include "ZEBXWorkspaceCore/WsManager.h"

#include <algorithm>

namespace App {
namespace {

using namespace ZEBGis::Workspace;
using Repository::CatalogueRow;
using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CCatalogItem;
using ZEBGis::Data::CCatalogManager;

// The text form of a record has name and GUID as they stand, and whoever keeps that form would
// read these characters as markup.  A storage with an administration is known not to.
void WarnOfMarkup(const CCatalogItem& item) {
    for (const CString& text : {item.GetName(), item.GetGUID()}) {
        if (text.find_first_of(u"\"<&") != CString::npos)
            Log(MessageWarning, Text(Message::MayNotBeKept, {item.GetName(), text}));
    }
}

int Send(Repository::CCatalogueTransfer& transfer, const OpenStorage& storage,
         const ZEBGis::Data::CCatalogMetadata& metadata) {
    const CString reference = metadata.GetCatalogReference();
    if (!storage.plugin.administration)
        LookAtItems(*CCatalogManager::Instance()->GetCatalog(reference.c_str(), /*load*/ 0),
                    WarnOfMarkup);
    return transfer.SendCatalog(metadata);
}

// The repository's failures come first; what else went wrong did so on this workstation.
Outcome OutcomeOf(bool repositoryFailed, int failures) {
    if (repositoryFailed)
        return Outcome::Failed;
    return failures > 0 ? Outcome::FailedHere : Outcome::Done;
}

} // namespace

std::vector<ZEBGis::Data::CatalogMetadataPtr>
CataloguesOf(const std::optional<CString>& reference) {
    if (reference)
        return {CCatalogManager::Instance()->GetCatalogMetadata(reference->c_str())};
    std::vector<ZEBGis::Data::CatalogMetadataPtr> visible;
    for (const CatalogueRow& row : Repository::VisibleCatalogues())
        visible.push_back(row.metadata);
    return visible;
}

void LookAtItems(const ZEBGis::Data::CCatalog& catalogue,
                 const std::function<void(const CCatalogItem&)>& look) {
    std::vector<CatalogItemPtr> left = catalogue.GetSortedRootElements();
    std::ranges::reverse(left);
    while (!left.empty()) {
        const CatalogItemPtr item = left.back();
        left.pop_back();
        look(*item);
        auto subItems = item->GetSortedSubItems();
        left.insert(left.end(), subItems.rbegin(), subItems.rend());
    }
}

Outcome PushCatalogues(Session& session, const OpenStorage& storage,
                       const std::optional<CString>& reference) {
    const int failuresBefore = session.log.Failures();
    Repository::CCatalogueTransfer transfer(storage.manager);
    auto& catalogues = *CCatalogManager::Instance();
    bool allSent = true;
    for (const auto& metadata : CataloguesOf(reference)) {
        // One that cannot be read is told with the reason, and the next follows.
        if (!catalogues.GetCatalog(metadata->GetCatalogReference().c_str(), /*load*/ 1))
            Log(MessageFailure, catalogues.GetProblem());
        else if (!Send(transfer, storage, *metadata))
            allSent = false;
        if (!storage.manager.IsRepositoryAccessible())
            break;
    }
    return OutcomeOf(!allSent, session.log.Failures() - failuresBefore);
}

Outcome PullCatalogues(Session& session, const OpenStorage& storage,
                       const std::optional<CString>& reference) {
    const int failuresBefore = session.log.Failures();
    Repository::CCatalogueTransfer transfer(storage.manager);
    std::vector<CatalogueRow> rows;
    for (const auto& metadata : CataloguesOf(reference))
        rows.push_back({metadata, 0});
    const bool allLoaded = transfer.LoadCatalogs(rows, /*all*/ 1) != 0;
    return OutcomeOf(!allLoaded || transfer.HasLeftOut(), session.log.Failures() - failuresBefore);
}

} // namespace App
