// SPDX-License-Identifier: MIT
// The plug-in as the connection window sees it; see the public header.
#pragma once

#include "ZEBXRepositoryStorage/ConnectionWindow.h"
#include "storage/RepositoryAccess.h"

namespace Storage {

class ConnectionParameters : public IConnectionParameters {
public:
    explicit ConnectionParameters(const RepositoryAccess& access) : m_access(access) {}

    Connection Current() override;
    CString DefaultAddress() override;
    std::vector<ConnectionStep> Test(const Connection& connection) override;

private:
    const RepositoryAccess& m_access;
};

} // namespace Storage
