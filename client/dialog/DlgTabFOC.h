// SPDX-License-Identifier: MIT
// The page of the kinds of configuration files (FOC).
#pragma once

#include "client/dialog/KindPage.h"

namespace Repository {

class CDlgTabFOC : public KindPage<CFOCMetadata> {
public:
    explicit CDlgTabFOC(CRepositoryStorageManager& manager);

    void OnBnClickedBtnLoadSelected() override;
};

} // namespace Repository
