// SPDX-License-Identifier: MIT
// What the repository holds of a kind, file by file, as far as a comparison needs it.
#pragma once

#include "app/Selection.h"
#include "app/Storage.h"

#include <cstdint>
#include <functional>
#include <set>

namespace App {

// Valid while it is looked at.
struct StoredContent {
    CString name;
    std::int64_t bytes = 0;
    bool isUsable = true; // false: its name may not be given to a workstation
    std::function<bool(const std::string&)> equals;
};

// With an administration the repository as of the moment of construction, told by size and
// hash; without one every file is fetched when it is looked at, one at a time.
class StoredContents {
public:
    using Look = std::function<void(const StoredContent&)>;

    // Throws AppError when the repository cannot be listed.
    explicit StoredContents(const OpenStorage& storage);

    // Shows each file of a kind of drawings or configuration files.
    void LookAtFiles(Group group, const CString& kind, const Look& look) const;
    // Shows a general-settings text in its UTF-8 form / the files that are stored with it.
    void LookAtSettings(const CString& name, const Look& look) const;
    void LookAtSettingsFiles(const CString& name, const Look& look) const;

private:
    bool HasSettings(const CString& name) const;
    void FindUnusable(std::size_t first, std::size_t last);
    void LookAtListed(int code, const CString& kind, const Look& look) const;
    void LookAtFetched(const std::vector<CString>& fileIds, const Look& look) const;

    Storage::RepositoryAdministration* m_administration;
    Repository::StorageBackend& m_backend;
    std::vector<Storage::StoredFile> m_files;
    std::vector<Storage::StoredGS> m_settings;
    std::set<CString> m_unusableIds;
};

} // namespace App
