// SPDX-License-Identifier: MIT
#include "storage/FilesAhead.h"

#include <utility>

namespace Storage {
namespace {

// Enough for the thread to have work while this one reads and writes.
constexpr std::size_t kMostFiles = 4;
constexpr std::size_t kMostBytes = 4 * 1024 * 1024;

std::string_view BytesOf(const UncheckedFile& read) {
    std::string unused; // a file of the repository holds bytes
    return read.file->GetFileBytes(unused);
}

} // namespace

void FilesAhead::Expect(std::vector<std::int64_t> ids) {
    m_hashes.Forget();
    m_read.clear();
    m_readBytes = 0;
    m_ids = std::move(ids);
    m_next = 0;
}

boost::shared_ptr<Repository::CRepositoryFile> FilesAhead::File(SqlConnection& sql,
                                                                std::int64_t id) {
    boost::shared_ptr<Repository::CRepositoryFile> file;
    const bool isRead = !m_read.empty() && m_read.front().id == id;
    const bool isNext = m_read.empty() && m_next < m_ids.size() && m_ids[m_next] == id;
    m_next += isNext ? 1 : 0;
    if (isRead)
        file = TakeFirst();
    else if (FileReader reader = FileReader::ById(sql, id); reader.Next())
        file = reader.File();
    if (isRead || isNext)
        ReadOn(sql);
    return file;
}

boost::shared_ptr<Repository::CRepositoryFile> FilesAhead::TakeFirst() {
    const UncheckedFile read = std::move(m_read.front().file);
    m_readBytes -= BytesOf(read).size();
    const std::string hash = m_hashes.Take();
    m_read.pop_front();
    read.CheckHash(hash);
    return read.file;
}

void FilesAhead::ReadOn(SqlConnection& sql) try {
    while (m_next < m_ids.size() && m_read.size() < kMostFiles && m_readBytes < kMostBytes) {
        FileReader reader = FileReader::ById(sql, m_ids[m_next]);
        if (!reader.Next())
            return;
        m_read.push_back({m_ids[m_next], reader.ReadUnchecked()});
        ++m_next;
        const std::string_view bytes = BytesOf(m_read.back().file);
        m_readBytes += bytes.size();
        m_hashes.Add(bytes);
    }
} catch (const StorageError&) {
    // Told when that file is asked for.
}

} // namespace Storage
