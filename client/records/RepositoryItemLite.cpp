// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/RepositoryItemLite.h"

namespace Repository {

void CRepositoryItemLite::GetXML(WStringStream&) const {}

CString CRepositoryItemLite::GetXML() const {
    return {};
}

CString CRepositoryItemLite::GetWsDescription() const {
    return {};
}

std::int32_t CRepositoryItemLite::DependsOn(const char16_t*, const CRepositoryItem*) const {
    return 0;
}

void CRepositoryItemLite::RefreshTemporaryDataReferences() {}

} // namespace Repository
