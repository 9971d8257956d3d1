// SPDX-License-Identifier: MIT
#include "platform/os/FolderNames.h"

#include "platform/os/Path.h"
#include "platform/os/System.h"
#include "platform/text/CaseFold.h"

namespace Platform {

FolderNames::FolderNames(const std::string& folder) {
    std::vector<std::string> names;
    System::ListNames(folder.empty() ? "." : folder, names);
    for (const std::string& name : names)
        Add(name);
}

void FolderNames::Add(const std::string& name) {
    m_names.insert(name);
    const auto [found, isNew] = m_firstOf.try_emplace(FoldCase(PathFromNative(name)), name);
    if (!isNew && name < found->second)
        found->second = name;
}

const std::string* FolderNames::Find(const std::string& name) const {
    if (const auto exact = m_names.find(name); exact != m_names.end())
        return &*exact;
    const auto found = m_firstOf.find(FoldCase(PathFromNative(name)));
    return found == m_firstOf.end() ? nullptr : &found->second;
}

} // namespace Platform
