// SPDX-License-Identifier: MIT
// What both directions share, and the walk from the repository into the local catalogues.
#include "ZEBXRepositoryClient/CatalogueTransfer.h"

#include "CatalogueSteps.h"
#include "TransferSteps.h"

#include "ZEBXGisCore/CoreProgressBar.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "client/util/Border.h"
#include "client/util/Trace.h"
#include "platform/host/FileSteps.h"
#include "platform/text/Fill.h"

#include <algorithm>

namespace Repository {
namespace {

using ZEBGis::CCoreProgressBar;
using ZEBGis::CModuleConfiguration;
using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CatalogPtr;
using ZEBGis::Data::CCatalogManager;
using ZEBGis::Data::CCatalogMetadata;
using ZEBGis::Workspace::MessageFailure;
using ZEBGis::Workspace::MessageSuccess;
using NetItemPtr = boost::shared_ptr<CNetCatalogueItem>;

constexpr int kMsgCatalogues = 350;
constexpr int kMsgLoading = 8530;
constexpr int kMsgLoaded = 10372;
constexpr int kMsgNotRead = 22002;
constexpr int kMsgNotSaved = 22003;
constexpr int kMsgNotListed = 22004;
constexpr int kMsgLeftOut = 22005;
constexpr const char* kSource = ".\\DlgTabCatalogs";
// So deep a catalogue goes.
constexpr std::size_t kMostLevels = 200;
constexpr int kWithoutFiles = 0;
constexpr int kWithFiles = 1;

enum class Walk {
    Whole,
    NotListed, // the children of a group could not be listed
    Stopped    // the repository became inaccessible
};

// One catalogue on its way from the repository.
class CatalogueLoad {
public:
    CatalogueLoad(CRepositoryStorageManager& manager, CString reference, CatalogPtr catalogue)
        : m_manager(manager), m_reference(std::move(reference)), m_catalogue(std::move(catalogue)) {
    }

    // Places `record` (none: the top level) below `parent`, and then all below it.
    Walk LoadCatalogItems(const CNetCatalogueItem* record, const CatalogItemPtr& parent);

    bool HasLeftOut() const { return m_hasLeftOut; }

private:
    Walk Children(const CNetCatalogueItem* record, const CatalogItemPtr& parent);
    // False when the catalogue does not take it; the local item is then there again.
    bool Place(const CatalogItemPtr& item, const CatalogItemPtr& parent);
    int Add(const CatalogItemPtr& item, const CatalogItemPtr& parent);
    bool MayGoBelow(const CNetCatalogueItem& record) const;
    void TellLeftOut(const CNetCatalogueItem& record);

    CRepositoryStorageManager& m_manager;
    const CString m_reference;
    const CatalogPtr m_catalogue;
    std::vector<CString> m_path; // the groups that the walk is in, by id
    bool m_hasLeftOut = false;
};

Walk CatalogueLoad::LoadCatalogItems(const CNetCatalogueItem* record,
                                     const CatalogItemPtr& parent) {
    TraceScope trace(kSource, __LINE__, "CDlgTabCatalogs::LoadCatalogItems");
    CatalogItemPtr ptrItemFromNet;
    if (record) {
        ptrItemFromNet = m_manager.GetCatalogItemById(m_reference.c_str(),
                                                      record->GetCatalogueId().c_str(), kWithFiles);
        if (!m_manager.IsRepositoryAccessible())
            return Walk::Stopped;
        if (trace.Verify(ptrItemFromNet.get() != nullptr, "ptrItemFromNet.get()!=0") &&
            !Place(ptrItemFromNet, parent))
            ptrItemFromNet.reset(); // what is below it has to be in the catalogue
        if (ptrItemFromNet)
            Platform::TellFileStep(Platform::FileStep::ItemLoaded);
        else
            TellLeftOut(*record);
        if (!record->GetIsGroup())
            return Walk::Whole;
        m_path.push_back(record->GetCatalogueId());
    }
    const Walk walk = Children(record, ptrItemFromNet);
    if (record)
        m_path.pop_back();
    return walk;
}

Walk CatalogueLoad::Children(const CNetCatalogueItem* record, const CatalogItemPtr& parent) {
    const CString parentId = record ? record->GetCatalogueId() : CString();
    std::vector<NetItemPtr> children;
    Walk walk = Walk::Whole;
    // The files come with each item: of a whole level they would be in memory at once.
    if (!m_manager.GetChildCatalogItems(m_reference.c_str(), record ? parentId.c_str() : nullptr,
                                        children, kWithoutFiles))
        walk = Walk::NotListed;
    for (NetItemPtr& next : children) {
        if (!m_manager.IsRepositoryAccessible())
            return Walk::Stopped;
        const NetItemPtr child = std::move(next); // gone once it was walked
        if (!child)
            continue;
        if (!MayGoBelow(*child))
            TellLeftOut(*child);
        else
            walk = std::max(walk, LoadCatalogItems(child.get(), parent));
        if (walk == Walk::Stopped)
            return walk;
    }
    return walk;
}

// In place of the local item of the same GUID, which goes with all below it.
bool CatalogueLoad::Place(const CatalogItemPtr& item, const CatalogItemPtr& parent) {
    const CString guid = item->GetGUID();
    const CatalogItemPtr old = m_catalogue->GetItembyGuid(guid.c_str());
    const CString oldParent = old ? old->GetParentItemGuid() : CString();
    if (old)
        m_catalogue->DeleteItem(guid.c_str());
    if (Add(item, parent))
        return true;
    if (old)
        Add(old, m_catalogue->GetItembyGuid(oldParent.c_str()));
    return false;
}

int CatalogueLoad::Add(const CatalogItemPtr& item, const CatalogItemPtr& parent) {
    if (!parent)
        return m_catalogue->AddItem(item);
    item->SetParentItem(parent);
    return parent->AddSubItem(item);
}

// A storage whose groups hold themselves would never come to an end.
bool CatalogueLoad::MayGoBelow(const CNetCatalogueItem& record) const {
    return m_path.size() < kMostLevels &&
           std::ranges::find(m_path, record.GetCatalogueId()) == m_path.end();
}

void CatalogueLoad::TellLeftOut(const CNetCatalogueItem& record) {
    m_hasLeftOut = true;
    LogLine(MessageFailure,
            Platform::Fill(CModuleConfiguration::Instance()->GetMsg(kMsgLeftOut),
                           {record.GetName(), record.GetCatalogueId(), m_reference}));
}

void LogLoaded(const CCatalogMetadata& metadata) {
    LogLine(MessageSuccess,
            Platform::Fill(u"%s: '%s'", {CModuleConfiguration::Instance()->GetMsg(kMsgLoaded),
                                         metadata.GetCatalogNameUI()}));
}

CString ProgressText(const CCatalogMetadata& metadata) {
    return Platform::Fill(u"%s: %s", {CModuleConfiguration::Instance()->GetMsg(kMsgCatalogues),
                                      metadata.GetCatalogNameUI()});
}

} // namespace

void LogCatalogueNotRead(const CCatalogMetadata& metadata) {
    LogCatalogueFailure(kMsgNotRead, metadata, CCatalogManager::Instance()->GetProblem());
}

void LogCatalogueFailure(int msgNum, const CCatalogMetadata& metadata, const CString& reason) {
    const CString text = CModuleConfiguration::Instance()->GetMsg(msgNum);
    LogLine(MessageFailure, Platform::Fill(text, {metadata.GetCatalogNameUI(), reason}));
}

std::vector<CatalogueRow> VisibleCatalogues() {
    return AtBorder(std::vector<CatalogueRow>(), [] {
        std::vector<CatalogueRow> rows;
        for (const auto& metadata : CCatalogManager::Instance()->GetCatalogRegistry())
            if (!metadata->GetHidden())
                rows.push_back({metadata, 0});
        return rows;
    });
}

int CCatalogueTransfer::LoadCatalogs(const std::vector<CatalogueRow>& rows, int all) {
    return AtBorder(0, [&] {
        const TraceScope trace(kSource, __LINE__, "CDlgTabCatalogs::LoadCatalogs");
        CCoreProgressBar progress;
        progress.SetCaption(CModuleConfiguration::Instance()->GetMsg(kMsgLoading).c_str());
        progress.SetRange(0, static_cast<int>(rows.size()));
        progress.Show();
        for (std::size_t row = 0; row < rows.size(); ++row) {
            progress.SetPos(static_cast<int>(row));
            if (!m_manager.IsRepositoryAccessible())
                return 0; // the bar stays, kept: it shows where the load stopped
            if (!all && rows[row].checkState != 1)
                continue;
            if (!rows[row].metadata)
                continue;
            progress.SetText(ProgressText(*rows[row].metadata).c_str());
            if (!LoadCatalogue(*rows[row].metadata))
                return 0;
        }
        progress.Hide();
        return 1;
    });
}

bool CCatalogueTransfer::LoadCatalogue(const CCatalogMetadata& metadata) {
    const CString reference = metadata.GetCatalogReference();
    const auto catalogues = CCatalogManager::Instance();
    const CatalogPtr catalogue = catalogues->GetCatalog(reference.c_str(), 1);
    if (!catalogue) {
        LogCatalogueNotRead(metadata);
        return true;
    }
    CatalogueLoad load(m_manager, reference, catalogue);
    const Walk walk = load.LoadCatalogItems(nullptr, {});
    m_hasLeftOut |= load.HasLeftOut();
    // A list also fails because the repository went away.
    if (walk == Walk::Stopped || (walk == Walk::NotListed && !m_manager.IsRepositoryAccessible()))
        return false;
    if (walk == Walk::NotListed)
        LogCatalogueFailure(kMsgNotListed, metadata, {});
    else if (!catalogues->Save(reference.c_str(), 1, 1))
        LogCatalogueFailure(kMsgNotSaved, metadata, catalogues->GetProblem());
    else
        LogLoaded(metadata);
    return true;
}

} // namespace Repository
