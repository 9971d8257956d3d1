// SPDX-License-Identifier: MIT
// The files of a listing, whose records came with it, for a caller who fetches them one by one:
// their contents are read ahead, in the listing's order.
#pragma once

#include "storage/store/FileRows.h"

#include <unordered_map>

namespace Storage {

class FilesAhead {
public:
    explicit FilesAhead(std::shared_ptr<ContentCache> cache)
        : m_cache(cache), m_contents(std::move(cache)) {}

    // What was listed; what was read ahead of an earlier listing is forgotten.
    void Expect(StoredRecords records);

    // The file, read ahead or now; empty when there is none.  A row never changes its content,
    // so what was read ahead is what would be read now.  Throws as StoredRecord::WithContent
    // does.
    RepositoryFilePtr File(SqlConnection& sql, std::int64_t id);

private:
    RepositoryFilePtr FileNotListed(SqlConnection& sql, std::int64_t id);

    std::shared_ptr<ContentCache> m_cache;
    StoredRecords m_records;
    std::unordered_map<std::int64_t, std::size_t> m_places; // of the ids
    ContentsAhead m_contents;
};

} // namespace Storage
