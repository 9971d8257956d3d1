// SPDX-License-Identifier: MIT
// The walk from a local catalogue into the repository.
#include "ZEBXRepositoryClient/CatalogueTransfer.h"

#include "CatalogueSteps.h"
#include "TransferSteps.h"

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"
#include "client/util/Border.h"
#include "client/util/Trace.h"
#include "platform/host/FileSteps.h"
#include "platform/text/Fill.h"

namespace Repository {
namespace {

using ZEBGis::Data::CatalogItemPtr;
using ZEBGis::Data::CCatalogManager;
using ZEBGis::Data::CCatalogMetadata;
using ZEBGis::Workspace::MessageFailure;
using ZEBGis::Workspace::MessageSuccess;

constexpr int kMsgSent = 10714;
constexpr int kMsgNotSent = 10715;
constexpr const char* kSource = ".\\DlgTabAdmin";

class CatalogueSending {
public:
    CatalogueSending(CRepositoryStorageManager& manager, const CCatalogMetadata& metadata)
        : m_manager(manager), m_metadata(metadata), m_reference(metadata.GetCatalogReference()),
          m_name(metadata.GetCatalogNameUI()) {}

    // Whether every item was accepted and the repository stayed accessible.
    bool SendCatalogToNetRepo();

private:
    // The item and all below it; false when the repository became inaccessible.
    bool AddCatalogItemToNetrepo(const CatalogItemPtr& item);

    CRepositoryStorageManager& m_manager;
    const CCatalogMetadata& m_metadata;
    const CString m_reference;
    const CString m_name;
    bool m_isAllAccepted = true;
};

bool CatalogueSending::SendCatalogToNetRepo() {
    TraceScope trace(kSource, __LINE__, "CDlgTabAdmin::SendCatalogToNetRepo");
    trace.WriteValue("strRefCat", m_reference.c_str());
    const auto catalogue = CCatalogManager::Instance()->GetCatalog(m_reference.c_str(), 1);
    if (!catalogue) {
        LogCatalogueNotRead(m_metadata);
        return false;
    }
    for (const auto& [key, item] : catalogue->GetRootElementsMap())
        if (!AddCatalogItemToNetrepo(item))
            return false;
    return m_isAllAccepted;
}

bool CatalogueSending::AddCatalogItemToNetrepo(const CatalogItemPtr& item) {
    TraceScope trace(kSource, __LINE__, "CDlgTabAdmin::AddCatalogItemToNetrepo");
    if (!item)
        return true;
    const int isAdded = m_manager.AddCatalogItem(m_reference.c_str(), m_name.c_str(), item, 1);
    if (isAdded)
        Platform::TellFileStep(Platform::FileStep::ItemSent);
    if (!m_manager.IsRepositoryAccessible())
        return false;
    // For the trace alone, and so in one language: kept.
    const CString text = (isAdded ? u"Dodan item: " : u"Nije dodan item: ") + item->GetName();
    trace.WriteValue("(LPCSTR)_tochar(strMsg)", text.c_str());
    if (!isAdded)
        m_isAllAccepted = false;
    for (const CatalogItemPtr& subItem : item->GetSortedSubItems())
        if (!AddCatalogItemToNetrepo(subItem))
            return false;
    return true;
}

} // namespace

int CCatalogueTransfer::SendCatalog(const CCatalogMetadata& metadata) {
    return AtBorder(0, [&] {
        const bool isSent = CatalogueSending(m_manager, metadata).SendCatalogToNetRepo();
        const CString text =
            ZEBGis::CModuleConfiguration::Instance()->GetMsg(isSent ? kMsgSent : kMsgNotSent);
        LogLine(isSent ? MessageSuccess : MessageFailure,
                Platform::Fill(u"%s %s", {text, metadata.GetCatalogNameUI()}));
        return isSent ? 1 : 0;
    });
}

} // namespace Repository
