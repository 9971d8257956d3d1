// SPDX-License-Identifier: MIT
// What the page of drawings (NCF) and the page of configuration files (FOC) do: list their kinds
// and load them from the repository.
#pragma once

#include "client/dialog/rules/KindRows.h"

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

namespace Repository {

// `Kind`: CNCFMetadata or CFOCMetadata.  What became of a load is told by the manager.
template<class Kind>
class KindLoading {
public:
    // The manager must outlive it.
    explicit KindLoading(CRepositoryStorageManager& manager) : m_manager(manager) {}

    std::vector<KindRow<Kind>> Rows() const;

    // Loads the kinds of the ticked rows in their order until the repository is no longer
    // accessible.  A row without a kind is passed over.
    void LoadSelected(const std::vector<KindRow<Kind>>& rows) const;

    // Every kind; nothing where the repository is not accessible.
    void LoadAll() const;

private:
    CRepositoryStorageManager& m_manager;
};

extern template class KindLoading<CNCFMetadata>;
extern template class KindLoading<CFOCMetadata>;

} // namespace Repository
