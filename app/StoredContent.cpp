// SPDX-License-Identifier: MIT
#include "app/StoredContent.h"

#include "ZEBXRepositoryClient/Base64.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <new>
#include <utility>

namespace App {
namespace {

using Storage::Problem;

// Enough to stay inside a folder; a storage without an administration has rules of its own.
bool StaysInItsFolder(const CString& name) {
    return !name.empty() && name != u"." && name != u".." &&
           name.find_first_of(u"/\\") == CString::npos;
}

std::function<bool(const std::string&)> HasHash(Storage::RepositoryAdministration& administration,
                                                const CString& sha256) {
    return [&administration, &sha256](const std::string& bytes) {
        const CString hash = administration.HashOf(bytes);
        if (hash.empty())
            throw std::bad_alloc();
        return hash == sha256;
    };
}

std::int64_t SizeOf(const std::string& bytes) {
    return static_cast<std::int64_t>(bytes.size());
}

} // namespace

StoredContents::StoredContents(const OpenStorage& storage)
    : m_administration(storage.plugin.administration), m_backend(storage.Backend()) {
    if (!m_administration)
        return;
    CString problemText;
    const Problem problem = m_administration->List(m_files, m_settings, problemText);
    if (problem != Problem::None)
        throw AppError(StatusOf(problem), problemText);
    // A kind without files has an entry without a name.
    std::erase_if(m_files, [](const Storage::StoredFile& file) { return file.id.empty(); });
    FindUnusable(0, m_files.size());
}

// All names are asked for at once, and by halves only where one of them is wrong.
void StoredContents::FindUnusable(std::size_t first, std::size_t last) {
    std::vector<Storage::NamedFile> names;
    for (std::size_t i = first; i < last; ++i)
        names.push_back({m_files[i].kind, m_files[i].name, 0});
    CString problemText;
    if (names.empty() || m_administration->CheckNames(names, problemText) != Problem::Refused)
        return;
    if (names.size() == 1) {
        m_unusableIds.insert(m_files[first].id);
        return;
    }
    const std::size_t middle = first + names.size() / 2;
    FindUnusable(first, middle);
    FindUnusable(middle, last);
}

void StoredContents::LookAtFiles(Group group, const CString& kind, const Look& look) const {
    const int code = group == Group::FOC ? Repository::kContentFOC : Repository::kContentNCF;
    if (m_administration) {
        LookAtListed(code, kind, look);
        return;
    }
    std::vector<CString> fileIds;
    m_backend.GetRepositoryFileIds(code, kind.c_str(), fileIds);
    LookAtFetched(fileIds, look);
}

void StoredContents::LookAtListed(int code, const CString& kind, const Look& look) const {
    for (const Storage::StoredFile& file : m_files) {
        if (file.contentCode == code && file.kind == kind)
            look({file.name, file.sizeBytes, !m_unusableIds.contains(file.id),
                  HasHash(*m_administration, file.sha256)});
    }
}

void StoredContents::LookAtFetched(const std::vector<CString>& fileIds, const Look& look) const {
    for (const CString& id : fileIds) {
        const auto file = m_backend.GetRepositoryFile(id.c_str());
        if (!file)
            continue;
        const std::string stored = Repository::Base64Decode(std::as_const(*file).GetFileContent());
        const CString name = file->GetFileName();
        look({name, SizeOf(stored), StaysInItsFolder(name),
              [&stored](const std::string& bytes) { return bytes == stored; }});
    }
}

bool StoredContents::HasSettings(const CString& name) const {
    if (m_administration)
        return std::ranges::find(m_settings, name, &Storage::StoredGS::name) != m_settings.end();
    std::vector<CString> names;
    m_backend.GetAvailableGS(names);
    return std::ranges::find(names, name) != names.end();
}

void StoredContents::LookAtSettings(const CString& name, const Look& look) const {
    const auto found = std::ranges::find(m_settings, name, &Storage::StoredGS::name);
    if (found != m_settings.end()) {
        look({{}, found->sizeBytes, true, HasHash(*m_administration, found->sha256)});
        return;
    }
    CString xml;
    std::vector<CString> fileIds;
    if (!HasSettings(name) || !m_backend.LoadGS(xml, fileIds, name.c_str()))
        return;
    const std::string stored = Platform::ToUtf8(xml);
    look({{}, SizeOf(stored), true, [&stored](const std::string& bytes) {
              return bytes == stored;
          }});
}

void StoredContents::LookAtSettingsFiles(const CString& name, const Look& look) const {
    CString xml;
    std::vector<CString> fileIds;
    if (HasSettings(name) && m_backend.LoadGS(xml, fileIds, name.c_str()))
        LookAtFetched(fileIds, look);
}

} // namespace App
