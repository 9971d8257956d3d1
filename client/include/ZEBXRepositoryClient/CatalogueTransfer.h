// SPDX-License-Identifier: MIT
// The transfer of whole catalogues between this workstation and the repository, item by item
// through the manager: what the dialog's pages and the command line share.
#pragma once

#include "ZEBXNetworkCore/CatalogManager.h"
#include "ZEBXRepositoryClient/NetCatalogueItem.h"

namespace Repository {

class CRepositoryStorageManager;

// Told of the steps of a transfer, for whoever shows them.  Nothing may throw.
class ZEBX_EXPORT ICatalogueSteps {
public:
    // The row that the load has come to, and the text that a progress bar shows for it.
    virtual void SetPosition(int row);
    virtual void SetText(const CString& text);
    // An item was put into the local catalogue / accepted by the repository.
    virtual void ItemLoaded();
    virtual void ItemSent();
    // An item of the repository has no local form or found no place, and was left out.
    virtual void ItemLeftOut(const CNetCatalogueItem& item);
    // The repository did not accept an item.
    virtual void ItemNotSent(const ZEBGis::Data::CCatalogItem& item);

protected:
    ~ICatalogueSteps() = default;
};

// A row of the list of catalogues.
struct CatalogueRow {
    ZEBGis::Data::CatalogMetadataPtr metadata;
    int checkState = 0; // 1: ticked
};

// The rows of every catalogue that is not hidden, in the registry's order, not ticked.
ZEBX_EXPORT std::vector<CatalogueRow> VisibleCatalogues();

class ZEBX_EXPORT CCatalogueTransfer {
public:
    // Both must outlive the transfer.
    CCatalogueTransfer(CRepositoryStorageManager& manager, ICatalogueSteps& steps)
        : m_manager(manager), m_steps(steps) {}

    // Loads the catalogues of the rows, all of them or those whose check state is exactly 1:
    // puts every item of the repository into the local catalogue in the repository's order,
    // each in place of the local item of the same GUID, and saves each catalogue once.  The
    // outcome of each catalogue is a line of the workspace log; a local catalogue that cannot
    // be read is one of failure, is left as it is, and the next row follows.
    //
    // Returns 0 when the repository became inaccessible: the load stopped there, and the
    // catalogue being loaded is not saved.
    int LoadCatalogs(const std::vector<CatalogueRow>& rows, int all);

    // Sends every item of a local catalogue, parents before children, with its files.  The
    // outcome is a line of the workspace log.  Returns non-zero when every item was accepted
    // and the repository stayed accessible to the end.
    int SendCatalog(const ZEBGis::Data::CCatalogMetadata& metadata);

private:
    CRepositoryStorageManager& m_manager;
    ICatalogueSteps& m_steps;
};

} // namespace Repository
