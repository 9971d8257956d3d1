// SPDX-License-Identifier: MIT
// The page of the kinds of drawings (NCF).
#pragma once

#include "client/dialog/KindPage.h"

namespace Repository {

class CDlgTabNCF : public KindPage<CNCFMetadata> {
public:
    explicit CDlgTabNCF(CRepositoryStorageManager& manager);
};

} // namespace Repository
