// SPDX-License-Identifier: MIT
// A definition as the shared repository keeps it.  Its record, fields each ended by
// "$", is described in docs/formats.md.
#pragma once

#include "ZEBXRepositoryClient/RepositoryFile.h"

#include <boost/shared_ptr.hpp>
#include <vector>

namespace Repository {

class ZEBX_EXPORT CNetRepositoryItem {
public:
    virtual ~CNetRepositoryItem() = default;
    CNetRepositoryItem() = default;
    // A copy shares the files with its origin.
    CNetRepositoryItem(const CNetRepositoryItem&) = default;
    CNetRepositoryItem& operator=(const CNetRepositoryItem&) = default;

    CString GetId() const { return m_id; }
    void SetId(const char16_t* id) { m_id = Platform::TextOf(id); }
    CString GetName() const { return m_name; }
    void SetName(const char16_t* name) { m_name = Platform::TextOf(name); }
    std::int32_t GetEntityType() const { return m_entityType; }
    void SetEntityType(std::int32_t type) { m_entityType = type; }
    std::int32_t GetTopologyFunction() const { return m_topologyFunction; }
    void SetTopologyFunction(std::int32_t function) { m_topologyFunction = function; }
    std::int32_t GetTopologyType() const { return m_topologyType; }
    void SetTopologyType(std::int32_t type) { m_topologyType = type; }
    CString GetConfigurationXML() const { return m_configurationXml; }
    void SetConfigurationXML(const char16_t* xml) { m_configurationXml = Platform::TextOf(xml); }
    CString GetRepositoryName() const { return m_repositoryName; }
    void SetRepositoryName(const char16_t* name) { m_repositoryName = Platform::TextOf(name); }
    CString GetRepositoryTag() const { return m_repositoryTag; }
    void SetRepositoryTag(const char16_t* tag) { m_repositoryTag = Platform::TextOf(tag); }

    // The item's own list, through which callers add and remove files; never null.
    std::vector<boost::shared_ptr<CRepositoryFile>>* GetFiles() { return &m_files; }

    CString Serialize() const;

    // Reads a record.  The file list is emptied first, whatever follows.  Returns 0 when
    // the text has fewer than eight fields, and then every other field is as it was;
    // else 1.  What Serialize wrote comes back with one more, empty, file at the end of
    // the list: existing repositories and their readers count on it.
    int Deserialize(const char16_t* record);

private:
    CString m_id;
    CString m_name;
    std::int32_t m_entityType = 0;
    std::int32_t m_topologyFunction = -1; // unlike the two other numbers: kept
    std::int32_t m_topologyType = 0;
    CString m_configurationXml;
    CString m_repositoryName;
    CString m_repositoryTag;
    std::vector<boost::shared_ptr<CRepositoryFile>> m_files;
};

} // namespace Repository
