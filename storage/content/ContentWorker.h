// SPDX-License-Identifier: MIT
// The thread that checks contents while the caller reads and writes others: hashes them, reads
// those that the cache has, and keeps there what came from a server.
#pragma once

#include "storage/StorageError.h"
#include "storage/content/ContentCache.h"
#include "storage/content/JobThread.h"

#include <memory>
#include <optional>

namespace Storage {

// One content on its way.
struct FetchedContent {
    enum class State {
        Fetched, // and not looked at yet
        Good,
        Missing,
        Damaged,  // does not fit its hash
        NotCached // the cache had it, and has it no more
    };

    std::string hash;
    std::int64_t sizeBytes = 0; // as its record says
    bool isInCache = false;
    bool isAnswered = false; // by the database
    bool isThere = false;    // in it
    bool isTakenOn = false;  // for the worker
    bool isGiven = false;    // to it
    std::size_t uses = 0;    // places that want it and did not get it yet
    std::string bytes;
    std::optional<StorageError> error; // instead of it
    State state = State::Fetched;      // the worker's until Wait
};
using FetchedContents = std::vector<std::shared_ptr<FetchedContent>>;

// Jobs are done in their order.  The thread starts with the first job that is large enough to be
// worth it, and ends with the object.
class ContentWorker {
public:
    // `cache` may be none.
    explicit ContentWorker(std::shared_ptr<ContentCache> cache);
    ~ContentWorker() { Forget(); }
    ContentWorker(const ContentWorker&) = delete;
    ContentWorker& operator=(const ContentWorker&) = delete;

    void Add(FetchedContents contents);
    // What was added to the cache so far is a list of its own.
    void FinishList();
    // Until the content, which was added, was looked at.
    void Wait(const FetchedContent& content);
    // Jobs that were not begun are not done.
    void Forget() { m_thread.Forget(); }

private:
    void Check(const FetchedContents& contents) noexcept;
    void FinishWriting() noexcept;
    FetchedContent::State Look(FetchedContent& content);
    void Keep(const FetchedContent& content) noexcept;

    std::shared_ptr<ContentCache> m_cache;
    std::optional<CacheWriter> m_writer;
    JobThread m_thread; // ends before them
};

} // namespace Storage
