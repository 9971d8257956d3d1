// SPDX-License-Identifier: MIT
#include "storage/content/ContentsAhead.h"

#include <algorithm>
#include <utility>

namespace Storage {
namespace {

using State = FetchedContent::State;

// Given to the worker together: fewer would cost more in handing over than in hashing.
constexpr std::int64_t kJobBytes = 256 * 1024;
// Planned at most, in places: those that the cache has need no bytes until they are read.
constexpr std::size_t kMostPlanned = 8000;

// Nothing: there is no such content.  Where its size does not fit, the hash comes, which does
// not fit itself.
#define ZEBX_CONTENT_BYTES                                                                         \
    "CASE WHEN c.size_bytes = LENGTH(c.bytes) THEN c.bytes ELSE c.hash END "                       \
    "FROM content c WHERE c.hash = "

std::unique_ptr<SqlRows> Query(SqlConnection& sql, const FetchedContents& contents) {
    if (contents.size() == 1)
        return sql.Query("SELECT 1, " ZEBX_CONTENT_BYTES "$1", {SqlBytes(contents[0]->hash)});
    std::vector<std::string_view> hashes;
    for (const auto& content : contents)
        hashes.push_back(content->hash);
    const std::string packed = PackHashes(hashes);
    // One look for each, in the order in which they are wanted.
    return sql.Query("WITH RECURSIVE n (i) AS "
                     "(SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < $2) "
                     "SELECT n.i, (SELECT " ZEBX_CONTENT_BYTES "substr($1, n.i * 32 - 31, 32)) "
                     "FROM n",
                     {SqlBytes(packed), static_cast<std::int64_t>(contents.size())});
}

} // namespace

std::string PackHashes(const std::vector<std::string_view>& hashes) {
    std::string packed;
    packed.reserve(hashes.size() * 32);
    for (const std::string_view hash : hashes) {
        packed += hash.substr(0, 32);
        packed.resize((packed.size() + 31) / 32 * 32); // a damaged one must not move the others
    }
    return packed;
}

ContentsAhead::ContentsAhead(std::shared_ptr<ContentCache> cache, const AheadLimits& limits)
    : m_cache(cache && cache->IsOn() ? std::move(cache) : nullptr), m_limits(limits),
      m_worker(m_cache) {}

ContentsAhead::~ContentsAhead() = default;

void ContentsAhead::Expect(std::vector<WantedContent> wanted) {
    DropFrom(0);
    m_worker.Forget();
    m_worker.FinishList();
    m_wanted = std::move(wanted);
    m_oneByOneUntil = 0;
    m_uncachedUntil = 0;
    if (m_cache && !m_wanted.empty())
        m_cache->LookAgain();
}

TakenContent ContentsAhead::Take(SqlConnection& sql, std::size_t place) {
    if (place >= m_wanted.size())
        throw StorageError(Problem::Internal, MessageNumber::Internal, {u"a content's place"});
    if (place < m_first || place > m_asked) {
        DropFrom(0);
        m_worker.Forget();
        m_first = m_asked = place;
    }
    while (m_first < place)
        PopFirst();
    FetchedContent& content = Wait(sql, place);
    const std::optional<StorageError> error = content.error;
    TakenContent taken{content.state != State::Missing, content.state == State::Good, {}};
    taken.bytes = content.uses == 1 ? std::move(content.bytes) : content.bytes;
    PopFirst();
    if (m_first == m_wanted.size())
        m_worker.FinishList();
    if (error)
        throw StorageError(*error);
    return taken;
}

FetchedContent& ContentsAhead::Wait(SqlConnection& sql, std::size_t place) {
    while (true) {
        ReadAhead(sql);
        FetchedContent& content = *m_places.front();
        m_worker.Wait(content);
        if (content.state != State::NotCached)
            return content;
        m_cache->LookAgain();
        m_uncachedUntil = place + 1;
        DropFrom(place);
    }
}

void ContentsAhead::PopFirst() {
    FetchedContent& content = *m_places.front();
    if (--content.uses == 0 && content.isTakenOn)
        m_readBytes -= content.sizeBytes;
    m_places.pop_front();
    ++m_first;
}

// Forgets what was asked for and not read, and the places from `place` on.
void ContentsAhead::DropFrom(std::size_t place) {
    HandOver();
    while (!m_places.empty() && m_asked > place) {
        FetchedContent& content = *m_places.back();
        if (--content.uses == 0 && content.isTakenOn)
            m_readBytes -= content.sizeBytes;
        m_places.pop_back();
        --m_asked;
    }
    if (m_places.empty())
        m_first = m_asked = place;
    m_unread.clear();
    m_batches.clear();
    m_planned.clear();
    m_askedBytes = 0;
    m_isFirstBatch = true;
}

void ContentsAhead::AskAhead(SqlConnection& sql) {
    const bool mayAskAhead = sql.MayAskAhead();
    while (m_asked < m_wanted.size() &&
           (m_unread.empty() || (mayAskAhead && m_askedBytes < m_limits.askedBytes &&
                                 m_unread.size() < kMostPlanned))) {
        const bool single = !mayAskAhead || m_asked < m_oneByOneUntil;
        Batch batch = PlanBatch(single ? 1 : m_limits.batchContents,
                                m_isFirstBatch ? m_limits.firstBatchBytes : m_limits.batchBytes);
        if (batch.contents.empty())
            continue; // the cache has them all
        m_isFirstBatch = false;
        batch.rows = Query(sql, batch.contents);
        m_askedBytes += batch.bytes;
        m_batches.push_back(std::move(batch));
    }
}

ContentsAhead::Batch ContentsAhead::PlanBatch(std::size_t mostContents, std::int64_t mostBytes) {
    Batch batch;
    m_planned.clear();
    const std::size_t end = std::min(m_wanted.size(), m_asked + kMostPlanned / 2);
    while (m_asked < end && batch.contents.size() < mostContents && batch.bytes < mostBytes) {
        const WantedContent& wanted = m_wanted[m_asked];
        if (!batch.contents.empty() && wanted.sizeBytes > mostBytes)
            break; // a large one comes alone
        Plan(batch, wanted);
        ++m_asked;
    }
    batch.unread = batch.contents.size();
    batch.end = m_asked;
    return batch;
}

void ContentsAhead::Plan(Batch& batch, const WantedContent& wanted) {
    auto& content = m_planned[wanted.hash];
    if (!content) {
        content = std::make_shared<FetchedContent>();
        content->hash = wanted.hash;
        content->sizeBytes = wanted.sizeBytes;
        content->isInCache = m_cache && m_asked >= m_uncachedUntil && m_cache->Has(wanted.hash);
        m_unread.push_back(content);
        if (!content->isInCache) {
            batch.contents.push_back(content);
            batch.bytes += wanted.sizeBytes;
        }
    }
    ++content->uses;
    m_places.push_back(content);
}

// Until the first place's content is the worker's, and as much more as may wait.
void ContentsAhead::ReadAhead(SqlConnection& sql) {
    try {
        do {
            AskAhead(sql);
        } while (!m_unread.empty() &&
                 (!m_places.front()->isTakenOn || m_readBytes < m_limits.readBytes) && ReadNext());
    } catch (const StorageError&) {
        // Told when that content is taken.
        if (m_places.empty() || !m_places.front()->isTakenOn)
            throw;
    }
    if (!m_places.front()->isGiven)
        HandOver();
}

// Always true: there may be more.
bool ContentsAhead::ReadNext() {
    const std::shared_ptr<FetchedContent> content = m_unread.front();
    try {
        if (!content->isInCache)
            ReadRows(*content);
    } catch (const StorageError& error) {
        const Batch& batch = m_batches.front();
        if (error.Kind() != Problem::Integrity || batch.contents.size() > 1) {
            if (error.Kind() == Problem::Integrity)
                m_oneByOneUntil = batch.end;
            DropFrom(FirstUnread());
            if (error.Kind() != Problem::Integrity)
                throw;
            return true;
        }
        content->error = error;
        EndBatch();
    }
    m_unread.pop_front();
    TakeOn(content);
    return true;
}

void ContentsAhead::ReadRows(const FetchedContent& content) {
    Batch& batch = m_batches.front();
    while (!content.isAnswered) {
        if (!batch.rows->Next()) {
            for (const auto& unanswered : batch.contents)
                unanswered->isAnswered = true;
            break;
        }
        FetchedContent& answered = *batch.contents.at(batch.rows->Integer(0) - 1);
        answered.isAnswered = true;
        answered.isThere = !batch.rows->IsNull(1);
        if (answered.isThere)
            answered.bytes = batch.rows->Bytes(1);
    }
    if (--batch.unread == 0)
        EndBatch();
}

void ContentsAhead::EndBatch() {
    m_askedBytes -= m_batches.front().bytes;
    m_batches.pop_front();
}

void ContentsAhead::TakeOn(const std::shared_ptr<FetchedContent>& content) {
    if (content->uses == 0) {
        content->bytes = {}; // was left out
        return;
    }
    content->isTakenOn = true;
    m_readBytes += content->sizeBytes;
    m_jobBytes += content->sizeBytes;
    m_job.push_back(content);
    if (m_jobBytes >= kJobBytes)
        HandOver();
}

void ContentsAhead::HandOver() {
    for (const auto& content : m_job)
        content->isGiven = true;
    if (!m_job.empty())
        m_worker.Add(std::exchange(m_job, {}));
    m_jobBytes = 0;
}

std::size_t ContentsAhead::FirstUnread() const {
    const auto found =
        std::ranges::find_if(m_places, [](const auto& content) { return !content->isTakenOn; });
    return m_first + static_cast<std::size_t>(found - m_places.begin());
}

} // namespace Storage
