// SPDX-License-Identifier: MIT
#include "storage/content/ContentWorker.h"

#include "storage/content/ContentHash.h"

#include <algorithm>
#include <system_error>

namespace Storage {
namespace {

using State = FetchedContent::State;

// Below, handing over takes longer than hashing.
constexpr std::int64_t kWorthAThread = 32 * 1024;

std::int64_t BytesOf(const FetchedContents& contents) {
    std::int64_t bytes = 0;
    for (const auto& content : contents)
        bytes += content->sizeBytes;
    return bytes;
}

} // namespace

ContentWorker::ContentWorker(std::shared_ptr<ContentCache> cache) : m_cache(std::move(cache)) {
    if (m_cache && m_cache->IsOn())
        m_writer.emplace(*m_cache);
}

ContentWorker::~ContentWorker() {
    if (!m_thread.joinable())
        return;
    Forget();
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void ContentWorker::Add(FetchedContents contents) {
    const bool isWorthIt = m_thread.joinable() || BytesOf(contents) >= kWorthAThread;
    Job job{std::move(contents)};
    if (!isWorthIt || !StartThread()) {
        Do(job);
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_all();
}

void ContentWorker::FinishList() {
    if (!m_writer)
        return;
    Job job{{}, true};
    if (!m_thread.joinable()) {
        Do(job);
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_all();
}

void ContentWorker::Wait(const FetchedContent& content) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return content.state != State::Fetched; });
}

void ContentWorker::Forget() {
    const std::lock_guard lock(m_mutex);
    if (m_jobs.empty())
        return;
    const auto isContents = [](const Job& job) { return !job.endsList; };
    m_jobs.erase(std::remove_if(m_jobs.begin() + 1, m_jobs.end(), isContents), m_jobs.end());
}

bool ContentWorker::StartThread() {
    try {
        if (!m_thread.joinable())
            m_thread = std::thread([this] { Work(); });
    } catch (const std::system_error&) {
        return false; // no more threads
    }
    return true;
}

void ContentWorker::Work() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_isEnding || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const Job job = m_jobs.front();
        lock.unlock();
        Do(job);
        lock.lock();
        m_jobs.pop_front();
    }
}

void ContentWorker::Do(const Job& job) noexcept {
    std::vector<State> states;
    for (const auto& content : job.contents) {
        State state = State::Damaged;
        try {
            state = Look(*content);
        } catch (const std::exception&) {
            // No memory for it: what cannot be checked is not given out.
        }
        const std::lock_guard lock(m_mutex);
        content->state = state;
    }
    m_changed.notify_all();
    try {
        if (m_writer && job.endsList)
            m_writer->FinishList();
    } catch (const std::exception&) {
        m_writer.reset();
    }
}

State ContentWorker::Look(FetchedContent& content) {
    if (content.isInCache)
        return m_cache->Read(content.hash, content.bytes) ? State::Good : State::NotCached;
    if (content.error)
        return State::Damaged;
    if (!content.isThere)
        return State::Missing;
    if (ContentHash(content.bytes) != content.hash)
        return State::Damaged;
    Keep(content);
    return State::Good;
}

void ContentWorker::Keep(const FetchedContent& content) noexcept {
    try {
        if (m_writer)
            m_writer->Add(content.hash, content.bytes);
    } catch (const std::exception&) {
        m_writer.reset(); // no memory: nothing is kept from now on
    }
}

} // namespace Storage
