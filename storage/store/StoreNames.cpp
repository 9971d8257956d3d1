// SPDX-License-Identifier: MIT
// The rules for names and sizes, applied to files that nobody has sent yet.
#include "storage/store/Store.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

namespace Storage {
namespace {

using NamesByFolded = std::map<CString, CString>;

NamesByFolded StoredNames(SqlConnection& sql, CStringView kindId) {
    NamesByFolded names;
    const auto rows =
        sql.Query("SELECT name FROM stored_file WHERE file_type IN ($1, $2) AND origin_id = $3 "
                  "AND holder IS NULL AND until_revision IS NULL",
                  {std::int64_t(Repository::FileTypeNCF), std::int64_t(Repository::FileTypeFOC),
                   Platform::ToUtf8(kindId)});
    while (rows->Next()) {
        CString name = Platform::FromUtf8(rows->Text(0));
        CString folded = Platform::FoldCase(name);
        names.try_emplace(std::move(folded), std::move(name));
    }
    return names;
}

} // namespace

void Store::CheckNames(const std::vector<NamedFile>& files) {
    const ReadTransaction transaction(*m_sql);
    Refusals refusals;
    std::map<CString, NamesByFolded> kinds; // what is stored, then what was looked at
    for (const NamedFile& file : files) {
        CheckNameAndSize(file.name, file.kind, file.sizeBytes, m_options.maxFileBytes, refusals);
        const auto [kind, isNew] = kinds.try_emplace(file.kind);
        if (isNew)
            kind->second = StoredNames(*m_sql, file.kind);
        const auto& [folded, first] =
            *kind->second.try_emplace(Platform::FoldCase(file.name), file.name).first;
        CheckSameCase(file.name, file.kind, first, refusals);
    }
    refusals.ThrowIfAny();
}

} // namespace Storage
