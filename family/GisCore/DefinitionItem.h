// SPDX-License-Identifier: MIT
// A definition as its element in XML: what this module does not know of it is kept as it stands.
#pragma once

#include "ZEBXGisCore/RepositoryItem.h"

#include <string>

namespace ZEBGis {

class CDefinitionItem : public CRepositoryItem {
public:
    // An item without id, name and content.
    CDefinitionItem() = default;
    // The item whose element `xml` is: well-formed UTF-8.  Its values must be set beside it.
    explicit CDefinitionItem(std::string xml) : m_xml(std::move(xml)) {}
    // All that another item has, of whatever class it is.
    explicit CDefinitionItem(const CRepositoryItem& item);
    CDefinitionItem(const CDefinitionItem&) = default;
    CDefinitionItem& operator=(const CDefinitionItem&) = default;

    const char* GetRuntimeClass() const override { return "CDefinitionItem"; }

    // The whole element <definition>.  An attribute is written anew only where its value is
    // another than the element's; everything else keeps every byte.
    void GetXML(WStringStream& stream) const override;
    CString GetXML() const override;

    // The name and, in brackets, the id; what is empty is left out.
    CString GetWsDescription() const override;

    // Non-zero when the configuration refers to the other item: an attribute or an element of
    // that name (`what`; null or empty: any) has the other item's id as its whole value.  The
    // definition's own id and name are no references; an empty id is referred to by nothing.
    std::int32_t DependsOn(const char16_t* what, const CRepositoryItem* item) const override;

    // There are none.
    void RefreshTemporaryDataReferences() override {}

private:
    std::string m_xml; // empty: none yet
};

} // namespace ZEBGis
