// SPDX-License-Identifier: MIT
#include "storage/store/FilesAhead.h"

namespace Storage {

void FilesAhead::Expect(StoredRecords records) {
    m_records = std::move(records);
    m_places.clear();
    for (std::size_t place = 0; place < m_records.size(); ++place)
        m_places[m_records[place].id] = place;
    m_contents.Expect(ContentsOf(m_records));
}

RepositoryFilePtr FilesAhead::File(SqlConnection& sql, std::int64_t id) {
    const auto found = m_places.find(id);
    if (found == m_places.end())
        return FileNotListed(sql, id);
    return m_records[found->second].WithContent(m_contents.Take(sql, found->second));
}

RepositoryFilePtr FilesAhead::FileNotListed(SqlConnection& sql, std::int64_t id) {
    const StoredRecords records = RecordQuery::ById(sql, id).Read();
    if (records.empty())
        return {};
    ContentsAhead contents(m_cache);
    contents.Expect(ContentsOf(records));
    return records[0].WithContent(contents.Take(sql, 0));
}

} // namespace Storage
