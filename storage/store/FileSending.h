// SPDX-License-Identifier: MIT
// Files of kinds on their way into the repository, many in one call: hashed meanwhile, asked for
// in batches, and those that it does not have sent without waiting.
#pragma once

#include "storage/content/HashAhead.h"
#include "storage/store/FileRows.h"

#include <deque>

namespace Storage {

struct SentFile {
    const Repository::CRepositoryFile* file;
    const FileRow* old; // null: new
};

class FileSending {
public:
    FileSending(WriteCall& call, const std::vector<SentFile>& files)
        : m_call(call), m_files(files) {}

    // Adds the files, or puts them in place of the old ones; what is the same is left alone.
    void Run();

private:
    struct Content {
        const SentFile* sent = nullptr;
        std::string buffer;
        std::string_view bytes;
        FileRecord record;
        std::size_t number = 0; // among those that are asked for
        bool isSame = false;    // as the old one
    };
    struct Batch {
        std::deque<Content> contents; // which stay where they are
        std::unique_ptr<KnownContents> known;
    };

    void Begin();
    void Ask(Batch& batch);
    void Write(Batch& batch);
    void AddOrReplace(Content& content, KnownContents& known);

    WriteCall& m_call;
    const std::vector<SentFile>& m_files;
    std::size_t m_begun = 0;
    std::deque<Batch> m_batches; // the first ones are asked for, the last one is being hashed
    HashAhead m_hashes;          // ends before them
};

} // namespace Storage
