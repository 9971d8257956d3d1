// SPDX-License-Identifier: MIT
#include "client/dialog/rules/KindLoading.h"

#include "client/util/Trace.h"

namespace Repository {
namespace {

using Manager = CRepositoryStorageManager;

// In what the two pages differ.
template<class Kind>
struct Page;

template<>
struct Page<CNCFMetadata> {
    static constexpr const char* kSource = ".\\DlgTabNCF";
    static constexpr const char* kLoadSelected = "CDlgTabNCF::OnBnClickedBtnLoadSelected";
    static constexpr const char* kLoadAll = "CDlgTabNCF::OnBnClickedBtnLoadall";
    // Kept: the other page asks only after a load.
    static constexpr bool kAsksBeforeEachRow = true;

    static auto& Kinds(Manager& manager) { return manager.GetNCFMetadata(); }
    static void Load(Manager& manager, const CString& id) { manager.LoadNCF(id.c_str()); }
    static void LoadAll(Manager& manager) { manager.LoadAllNCFs(); }
};

template<>
struct Page<CFOCMetadata> {
    static constexpr const char* kSource = ".\\DlgTabFOC";
    static constexpr const char* kLoadSelected = "CDlgTabFOC::OnBnClickedBtnLoadSelected";
    static constexpr const char* kLoadAll = "CDlgTabFOC::OnBnClickedBtnLoadall";
    static constexpr bool kAsksBeforeEachRow = false;

    static auto& Kinds(Manager& manager) { return manager.GetFOCMetadata(); }
    static void Load(Manager& manager, const CString& id) { manager.LoadFOC(id.c_str(), 1); }
    static void LoadAll(Manager& manager) { manager.LoadAllFOC(1); }
};

} // namespace

template<class Kind>
std::vector<KindRow<Kind>> KindLoading<Kind>::Rows() const {
    return RowsOf(Page<Kind>::Kinds(m_manager));
}

template<class Kind>
void KindLoading<Kind>::LoadSelected(const std::vector<KindRow<Kind>>& rows) const {
    const TraceScope trace(Page<Kind>::kSource, __LINE__, Page<Kind>::kLoadSelected);
    for (const KindRow<Kind>& row : rows) {
        if (Page<Kind>::kAsksBeforeEachRow && !m_manager.IsRepositoryAccessible())
            return;
        // Any state but 0 is a tick, kept: the page of catalogues wants exactly 1.
        if (row.checkState == 0 || !row.kind)
            continue;
        Page<Kind>::Load(m_manager, row.kind->GetId());
        if (!m_manager.IsRepositoryAccessible())
            return;
    }
}

template<class Kind>
void KindLoading<Kind>::LoadAll() const {
    const TraceScope trace(Page<Kind>::kSource, __LINE__, Page<Kind>::kLoadAll);
    if (m_manager.IsRepositoryAccessible())
        Page<Kind>::LoadAll(m_manager);
}

template class KindLoading<CNCFMetadata>;
template class KindLoading<CFOCMetadata>;

} // namespace Repository
