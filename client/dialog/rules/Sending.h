// SPDX-License-Identifier: MIT
// What the administration page does: offers what can be sent to the repository, and sends it.
#pragma once

#include "client/dialog/rules/KindRows.h"

#include "ZEBXRepositoryClient/CatalogueTransfer.h"
#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

namespace Repository {

// An entry of a drop-down list.
template<class What>
struct SendEntry {
    const What* what; // null: everything that the list holds
    CString text;
};

template<class What>
using SendEntries = std::vector<SendEntry<What>>;

// Each outcome is a line of the workspace log, behind one for each local file that could not be
// read and so was not sent.
class Sending {
public:
    // The manager must outlive it.
    explicit Sending(CRepositoryStorageManager& manager) : m_manager(manager) {}

    // The entry for everything first, then one for each catalogue that is not hidden or each
    // kind that is not optional or is switched on, in the registry's order.  What the entries
    // of catalogues mean lives until the next call.
    SendEntries<ZEBGis::Data::CCatalogMetadata> Catalogues();
    SendEntries<CNCFMetadata> NCFKinds() const;
    SendEntries<CFOCMetadata> FOCKinds() const;

    // A workstation without general settings sends none: the repository's would be lost to
    // everybody.
    void SendGS() const;
    // An entry's `what`.
    void SendNCF(const CNCFMetadata* kind) const;
    void SendFOC(const CFOCMetadata* kind) const;
    void SendCatalogues(const ZEBGis::Data::CCatalogMetadata* catalogue) const;

private:
    CRepositoryStorageManager& m_manager;
    std::vector<CatalogueRow> m_catalogues; // of the list
};

} // namespace Repository
