// SPDX-License-Identifier: MIT
#include "storage/content/HashAhead.h"

#include "storage/content/ContentHash.h"

#include <exception>
#include <system_error>

namespace Storage {
namespace {

// Below, handing over takes longer than hashing.
constexpr std::size_t kWorthAThread = 32 * 1024;

} // namespace

HashAhead::~HashAhead() {
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

void HashAhead::Add(std::string_view bytes) {
    const bool isGiven = MayGive(bytes);
    m_jobs.push_back({bytes, isGiven});
    if (!isGiven)
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_given.push_back(bytes);
    }
    m_changed.notify_all();
}

std::string HashAhead::Take() {
    const Job job = m_jobs.front();
    m_jobs.pop_front();
    std::string hash;
    if (job.isGiven) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_hashes.empty(); });
        hash = std::move(m_hashes.front());
        m_hashes.pop_front();
    }
    return hash.empty() ? ContentHash(job.bytes) : hash;
}

void HashAhead::Forget() {
    m_jobs.clear();
    std::unique_lock lock(m_mutex);
    if (!m_given.empty())
        m_given.erase(m_given.begin() + 1, m_given.end());
    m_changed.wait(lock, [this] { return m_given.empty(); });
    m_hashes.clear();
}

bool HashAhead::MayGive(std::string_view bytes) {
    if (bytes.size() < kWorthAThread)
        return false;
    try {
        if (!m_thread.joinable())
            m_thread = std::thread([this] { Work(); });
    } catch (const std::system_error&) {
        return false; // no more threads
    }
    return true;
}

void HashAhead::Work() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_isEnding || !m_given.empty(); });
        if (m_isEnding)
            return;
        const std::string_view bytes = m_given.front();
        lock.unlock();
        std::string hash;
        try {
            hash = ContentHash(bytes);
        } catch (const std::exception&) {
            // Left empty: the caller tries himself and learns why.
        }
        lock.lock();
        m_given.pop_front();
        m_hashes.push_back(std::move(hash));
        m_changed.notify_all();
    }
}

} // namespace Storage
