// SPDX-License-Identifier: MIT
// A definition that carries only what a list shows: id, name, topology function and
// entity type.  Made on the heap and deleted by whoever receives it.
#pragma once

#include "ZEBXGisCore/RepositoryItem.h"

namespace Repository {

class ZEBX_EXPORT CRepositoryItemLite : public ZEBGis::CRepositoryItem {
public:
    CRepositoryItemLite() = default;

    // Each answers with nothing: the empty text, 0, no effect.
    void GetXML(WStringStream& stream) const override;
    CString GetXML() const override;
    CString GetWsDescription() const override;
    std::int32_t DependsOn(const char16_t* what, const CRepositoryItem* item) const override;
    void RefreshTemporaryDataReferences() override;
};

} // namespace Repository
