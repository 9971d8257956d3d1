// SPDX-License-Identifier: MIT
// What the page of drawings (NCF) and the page of configuration files (FOC) have in common.
#pragma once

#include "client/dialog/ListPage.h"
#include "client/dialog/rules/KindLoading.h"

namespace Repository {

template<class Kind>
class KindPage : public ListPage {
public:
    KindPage(const Platform::DialogTemplate& controls, int msgName,
             CRepositoryStorageManager& manager)
        : ListPage(controls,
                   {kIdList, Platform::ListView::CheckBoxes, kMsgKinds, kMsgKinds, msgName}),
          m_loading(manager) {}

    void OnBnClickedBtnLoadSelected() override { m_loading.LoadSelected(ShownRows()); }
    void OnBnClickedBtnLoadall() override { m_loading.LoadAll(); }

protected:
    static constexpr int kIdList = 113;

private:
    static constexpr int kMsgKinds = 10368;

    void AddRows(Platform::ListView list) override {
        for (const KindRow<Kind>& row : m_loading.Rows())
            list.AddRow({row.name}, row.kind);
    }

    // With the ticks that they have now.
    std::vector<KindRow<Kind>> ShownRows() const {
        const Platform::ListView list = Rows();
        std::vector<KindRow<Kind>> rows;
        for (int row = 0; row < list.RowCount(); ++row)
            rows.push_back({static_cast<const Kind*>(list.Data(row)), list.Text(row, 0),
                            list.CheckState(row)});
        return rows;
    }

    KindLoading<Kind> m_loading;
};

} // namespace Repository
