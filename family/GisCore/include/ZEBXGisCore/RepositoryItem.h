// SPDX-License-Identifier: MIT
// A definition of one of the family's repositories, as its lists and managers see it.
#pragma once

#include "platform/Export.h"
#include "platform/host/Object.h"
#include "platform/text/Text.h"

#include <cstdint>

namespace ZEBGis {

// The values belong to the modules that define the items; they are carried as numbers.
enum enmEntityType : std::int32_t {};
enum enmTopologyType : std::int32_t {};

class ZEBX_EXPORT CRepositoryItem : public CObject {
public:
    const char* GetRuntimeClass() const override { return "CRepositoryItem"; }

    // Appends the item's whole definition to the stream.
    virtual void GetXML(WStringStream& stream) const = 0;
    virtual CString GetXML() const = 0;
    // What the workspace shows about the item.
    virtual CString GetWsDescription() const = 0;
    // Non-zero when this item needs `item`, which may be null, in the way `what` names.
    virtual std::int32_t DependsOn(const char16_t* what, const CRepositoryItem* item) const = 0;
    virtual void RefreshTemporaryDataReferences() = 0;

    CString GetId() const { return m_id; }
    void SetId(const char16_t* id) { m_id = Platform::TextOf(id); }
    CString GetName() const { return m_name; }
    void SetName(const char16_t* name) { m_name = Platform::TextOf(name); }
    std::int32_t GetTopologyFunction() const { return m_topologyFunction; }
    void SetTopologyFunction(std::int32_t function) { m_topologyFunction = function; }
    enmEntityType GetEntityType() const { return m_entityType; }
    void SetEntityType(enmEntityType type) { m_entityType = type; }
    enmTopologyType GetTopologyType() const { return m_topologyType; }
    void SetTopologyType(enmTopologyType type) { m_topologyType = type; }

protected:
    CRepositoryItem() = default;

private:
    CString m_id;
    CString m_name;
    std::int32_t m_topologyFunction = -1;
    enmEntityType m_entityType{};
    enmTopologyType m_topologyType{};
};

} // namespace ZEBGis
