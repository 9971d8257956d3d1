// SPDX-License-Identifier: MIT
#include "storage/content/JobThread.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace Storage {

JobThread::~JobThread() {
    if (!m_thread.joinable())
        return;
    Set([this] { m_isEnding = true; });
    m_changed.notify_all();
    m_thread.join();
}

bool JobThread::Start() {
    try {
        if (!m_thread.joinable())
            m_thread = std::thread([this] { Work(); });
    } catch (const std::system_error&) {
        return false; // no more threads
    }
    return true;
}

void JobThread::Forget() {
    const std::lock_guard lock(m_mutex);
    if (m_entries.empty())
        return;
    const auto mayGo = [](const Entry& entry) { return !entry.isForSure; };
    m_entries.erase(std::remove_if(m_entries.begin() + 1, m_entries.end(), mayGo), m_entries.end());
}

void JobThread::WaitUntilIdle() {
    WaitUntil([this] { return m_entries.empty(); });
}

void JobThread::Add(Entry entry) {
    Set([&] { m_entries.push_back(std::move(entry)); });
    m_changed.notify_all();
}

void JobThread::Work() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_isEnding || !m_entries.empty(); });
        if (m_entries.empty())
            return;
        Job job = std::move(m_entries.front().job);
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
        m_entries.pop_front();
        m_changed.notify_all();
    }
}

} // namespace Storage
