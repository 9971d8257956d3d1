// SPDX-License-Identifier: MIT
// An entry of a catalogue as the shared repository keeps it.  Its text form, one element
// "nci", is described in docs/formats.md.
#pragma once

#include "ZEBXRepositoryClient/RepositoryFile.h"

#include <boost/shared_ptr.hpp>
#include <vector>

namespace Repository {

class ZEBX_EXPORT CNetCatalogueItem {
public:
    virtual ~CNetCatalogueItem() = default;
    CNetCatalogueItem() = default;
    // A copy shares the files with its origin.
    CNetCatalogueItem(const CNetCatalogueItem&) = default;
    CNetCatalogueItem& operator=(const CNetCatalogueItem&) = default;

    CString GetCatalogueId() const { return m_catalogueId; }
    void SetCatalogueId(const char16_t* id) { m_catalogueId = Platform::TextOf(id); }
    CString GetCatalogueTag() const { return m_catalogueTag; }
    void SetCatalogueTag(const char16_t* tag) { m_catalogueTag = Platform::TextOf(tag); }
    // Non-zero when the item holds other items.
    std::int32_t GetIsGroup() const { return m_isGroup; }
    void SetIsGroup(std::int32_t isGroup) { m_isGroup = isGroup; }
    CString GetParentId() const { return m_parentId; }
    void SetParentId(const char16_t* id) { m_parentId = Platform::TextOf(id); }
    CString GetName() const { return m_name; }
    void SetName(const char16_t* name) { m_name = Platform::TextOf(name); }
    CString GetCatalogueName() const { return m_catalogueName; }
    void SetCatalogueName(const char16_t* name) { m_catalogueName = Platform::TextOf(name); }
    CString GetItemContent() const { return m_itemContent; }
    void SetItemContent(const char16_t* content) { m_itemContent = Platform::TextOf(content); }

    // The item's own list; never null.
    std::vector<boost::shared_ptr<CRepositoryFile>>* GetFiles() { return &m_files; }

    // Appends the element to the stream.
    void Serialize(WStringStream& stream) const;
    // The same element with its closing tag written twice: existing records have both.
    CString Serialize() const;

    // Reads the first element "nci" of the text.  Returns 1, or 0 when there is none, and
    // then nothing is changed.  Files that are read go behind those that the item holds.
    int Deserialize(const char16_t* text);

private:
    CString m_catalogueId;
    CString m_catalogueTag;
    std::int32_t m_isGroup = 0;
    CString m_parentId;
    CString m_name;
    CString m_catalogueName;
    CString m_itemContent;
    std::vector<boost::shared_ptr<CRepositoryFile>> m_files;
};

} // namespace Repository
