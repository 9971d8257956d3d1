// SPDX-License-Identifier: MIT
// Definition repositories as they are made from XML texts.
#pragma once

#include "DefinitionsText.h"

namespace ZEBGis {

class TextRepository : public CDefinitionRepository {
public:
    // An empty one.
    explicit TextRepository(CString tag) : m_tag(std::move(tag)) {}
    TextRepository(CString tag, const DefinitionsText& text);

    CString CreateRepositoryXML(const char16_t* itemXml) const override;
    const CRepositoryItemList& GetRepositoryItemList() const override { return m_items; }

private:
    CString m_tag;
    CRepositoryItemList m_items;
};

} // namespace ZEBGis
