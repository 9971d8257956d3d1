// SPDX-License-Identifier: MIT
// Contents by hash, for a caller who takes them in an order that is known beforehand.
//
// On a server they are asked for in batches, of which several are on their way at once, and come
// from the workstation's cache where that has them.  An embedded repository is asked for one
// at a time.  Hashes are checked on a thread of their own meanwhile.  Memory is bounded: what was
// asked for and what was read, AheadLimits each, and the largest content.
#pragma once

#include "storage/SqlConnection.h"
#include "storage/content/ContentWorker.h"

#include <deque>
#include <unordered_map>

namespace Storage {

struct WantedContent {
    std::string hash;
    std::int64_t sizeBytes = 0; // for the bounds only
};

struct AheadLimits {
    std::int64_t firstBatchBytes = 1 << 20; // of a caller who may want no more than that
    std::int64_t batchBytes = 8 << 20;
    std::int64_t askedBytes = 32 << 20; // in all batches that are on their way
    std::int64_t readBytes = 4 << 20;   // that wait for being taken
    std::size_t batchContents = 2000;
};

struct TakenContent {
    bool isThere = false;
    bool fitsItsHash = false;
    std::string bytes; // also of one that does not fit
};

class ContentsAhead {
public:
    // `cache` may be none.
    explicit ContentsAhead(std::shared_ptr<ContentCache> cache = {},
                           const AheadLimits& limits = {});
    ~ContentsAhead();
    ContentsAhead(const ContentsAhead&) = delete;
    ContentsAhead& operator=(const ContentsAhead&) = delete;

    // What will be taken; nothing is asked for before the first Take.  What was on its way for
    // an earlier list is dropped.
    void Expect(std::vector<WantedContent> wanted);
    void Forget() { Expect({}); }

    // The content of that place in the list.  Places are best taken in order; left out ones
    // cost little, going back asks anew.  Throws what the engine says of this content, and of
    // another only when this one cannot be had because of it.
    TakenContent Take(SqlConnection& sql, std::size_t place);

private:
    // What one query brings.
    struct Batch {
        std::unique_ptr<SqlRows> rows;
        FetchedContents contents;
        std::size_t unread = 0;
        std::int64_t bytes = 0;
        std::size_t end = 0; // the place behind its last
    };

    FetchedContent& Wait(SqlConnection& sql, std::size_t place);
    void PopFirst();
    void DropFrom(std::size_t place);
    void AskAhead(SqlConnection& sql);
    Batch PlanBatch(std::size_t mostContents, std::int64_t mostBytes);
    void Plan(Batch& batch, const WantedContent& wanted);
    void ReadAhead(SqlConnection& sql);
    bool ReadNext();
    void ReadRows(const FetchedContent& content);
    void EndBatch();
    void TakeOn(const std::shared_ptr<FetchedContent>& content);
    void HandOver();
    std::size_t FirstUnread() const;

    std::shared_ptr<ContentCache> m_cache;
    AheadLimits m_limits;
    std::vector<WantedContent> m_wanted;
    std::size_t m_first = 0; // the place of m_places' first
    std::size_t m_asked = 0; // the place behind m_places' last
    std::deque<std::shared_ptr<FetchedContent>> m_places;
    std::deque<std::shared_ptr<FetchedContent>> m_unread; // each once, in order
    std::deque<Batch> m_batches;                          // those with something unread
    std::unordered_map<std::string_view, std::shared_ptr<FetchedContent>> m_planned;
    FetchedContents m_job;
    std::int64_t m_jobBytes = 0;
    std::int64_t m_askedBytes = 0;
    std::int64_t m_readBytes = 0;
    std::size_t m_oneByOneUntil = 0; // a batch was damaged: to find which it is
    std::size_t m_uncachedUntil = 0; // the cache lost one
    bool m_isFirstBatch = true;
    ContentWorker m_worker;
};

// The hashes as one value for a query: hash number i (from 1) is the 32 bytes from i * 32 - 31.
std::string PackHashes(const std::vector<std::string_view>& hashes);

} // namespace Storage
