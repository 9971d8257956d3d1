// SPDX-License-Identifier: MIT
// The transfer of whole catalogues between this workstation and the repository, item by item
// through the manager: what the dialog's pages and the command line share.
#pragma once

#include "ZEBXNetworkCore/CatalogManager.h"
#include "ZEBXRepositoryClient/NetCatalogueItem.h"

namespace Repository {

class CRepositoryStorageManager;

// A row of the list of catalogues.
struct CatalogueRow {
    ZEBGis::Data::CatalogMetadataPtr metadata;
    int checkState = 0; // 1: ticked
};

// The rows of every catalogue that is not hidden, in the registry's order, not ticked.
ZEBX_EXPORT std::vector<CatalogueRow> VisibleCatalogues();

// Each item that was put into the local catalogue or accepted by the repository is a file step
// (platform/host/FileSteps.h).
class ZEBX_EXPORT CCatalogueTransfer {
public:
    // The manager must outlive the transfer.
    explicit CCatalogueTransfer(CRepositoryStorageManager& manager) : m_manager(manager) {}

    // Loads the catalogues of the rows, all of them or those whose check state is exactly 1:
    // puts every item of the repository into the local catalogue in the repository's order,
    // each in place of the local item of the same GUID, and saves each catalogue once.  The
    // outcome of each catalogue is a line of the workspace log.  It is one of failure, and the
    // next row follows, for a local catalogue that cannot be read, which is left as it is; for
    // one that cannot be saved; and for one of which the repository did not list a group's
    // items, which is not saved, because the group's local items were replaced with it.  Items
    // without a local form, items that the local catalogue does not take, and items below 200
    // groups, the most that a catalogue takes, or below themselves are left out, with a line of
    // failure each.  The progress bar shows the rows.
    //
    // Returns 0 when the repository became inaccessible: the load stopped there without a
    // line and with the progress bar as it was, and the catalogue being loaded is not saved; its
    // items so far stay in memory.
    int LoadCatalogs(const std::vector<CatalogueRow>& rows, int all);

    // Sends every item of a local catalogue, parents before children, with its files; also
    // below an item that was not accepted.  The outcome is a line of the workspace log, behind
    // one that gives the reason when the local catalogue cannot be read.  Returns non-zero when
    // every item was accepted and the repository stayed accessible to the end.
    int SendCatalog(const ZEBGis::Data::CCatalogMetadata& metadata);

    // Whether a load has left an item out.
    bool HasLeftOut() const { return m_hasLeftOut; }

private:
    // Loads one; false when the repository became inaccessible.
    bool LoadCatalogue(const ZEBGis::Data::CCatalogMetadata& metadata);

    CRepositoryStorageManager& m_manager;
    bool m_hasLeftOut = false;
};

} // namespace Repository
