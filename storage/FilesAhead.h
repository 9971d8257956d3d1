// SPDX-License-Identifier: MIT
// Reads the files of a kind ahead of a caller who fetches them in the order in which they were
// listed, and has the hashes of their contents made meanwhile.
#pragma once

#include "storage/FileRows.h"
#include "storage/HashAhead.h"

#include <deque>
#include <vector>

namespace Storage {

class FilesAhead {
public:
    // The ids that were listed; what was read ahead of an earlier listing is forgotten.
    void Expect(std::vector<std::int64_t> ids);

    // The file, read ahead or now; empty when there is none.  A row never changes its content,
    // so what was read ahead is what would be read now.  Throws as FileReader::File does.
    boost::shared_ptr<Repository::CRepositoryFile> File(SqlConnection& sql, std::int64_t id);

private:
    struct ReadFile {
        std::int64_t id;
        UncheckedFile file;
    };

    boost::shared_ptr<Repository::CRepositoryFile> TakeFirst();
    void ReadOn(SqlConnection& sql);

    std::vector<std::int64_t> m_ids;
    std::size_t m_next = 0;      // of them, the first that was not read
    std::deque<ReadFile> m_read; // in their order
    std::size_t m_readBytes = 0;
    HashAhead m_hashes; // of m_read; ends before it
};

} // namespace Storage
