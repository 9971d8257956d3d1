// SPDX-License-Identifier: MIT
// The message provider that the manager lends to storage plug-ins: the texts of the
// family's message table.
#pragma once

#include "ZEBXRepositoryClient/MsgProvider.h"

namespace Repository {

class CMessageProvider final : public IMsgProvider {
public:
    CString GetMsg(CString& buffer, int number) override;
};

} // namespace Repository
