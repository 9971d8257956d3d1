// SPDX-License-Identifier: MIT
// The names of one folder, found without regard to case; used inside platform/os only.
#pragma once

#include "platform/text/Text.h"

#include <string>
#include <unordered_map>
#include <unordered_set>

namespace Platform {

class FolderNames {
public:
    // Lists the folder (a native path, empty for the current one); one that cannot be
    // listed has no names.  O(names).
    explicit FolderNames(const std::string& folder);

    void Add(const std::string& name);

    // The name exactly as asked for when it is there, else the first one in ascending
    // order that is equal without regard to case; null when there is none.
    const std::string* Find(const std::string& name) const;

private:
    std::unordered_set<std::string> m_names;
    std::unordered_map<CString, std::string> m_firstOf; // by case-folded name
};

} // namespace Platform
