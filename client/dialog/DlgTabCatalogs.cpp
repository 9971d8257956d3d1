// SPDX-License-Identifier: MIT
#include "client/dialog/DlgTabCatalogs.h"

#include "client/dialog/rules/CatalogueLoading.h"
#include "platform/window/WindowSystem.h"

namespace Repository {
namespace {

constexpr int kIdList = 112;
constexpr int kMsgColumn = 350;
constexpr int kMsgGroup = 2424;

constexpr auto kControls = ListPageControls(u"Katalozi", kIdList);
constexpr Platform::DialogTemplate kTemplate105{nullptr, kPageWidth, kPageHeight, kControls};

// Grid lines on this page alone, kept.
constexpr ListPage::Look kLook{kIdList,
                               Platform::ListView::CheckBoxes | Platform::ListView::GridLines,
                               kMsgColumn, kMsgGroup, kMsgColumn};

} // namespace

CDlgTabCatalogs::CDlgTabCatalogs(CRepositoryStorageManager& manager)
    : ListPage(kTemplate105, kLook), m_manager(manager) {}

void CDlgTabCatalogs::AddRows(Platform::ListView list) {
    m_rows = VisibleCatalogues();
    for (const CatalogueRow& row : m_rows)
        list.AddRow({row.metadata->GetCatalogNameUI()}, row.metadata.get());
}

void CDlgTabCatalogs::OnBnClickedBtnLoadSelected() {
    const Platform::WaitCursor wait;
    LoadSelectedCatalogues(m_manager, ShownRows());
}

void CDlgTabCatalogs::OnBnClickedBtnLoadall() {
    const Platform::WaitCursor wait;
    LoadAllCatalogues(m_manager, ShownRows());
}

const std::vector<CatalogueRow>& CDlgTabCatalogs::ShownRows() {
    const Platform::ListView list = Rows();
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        m_rows[row].checkState = list.CheckState(static_cast<int>(row));
    return m_rows;
}

} // namespace Repository
