// SPDX-License-Identifier: MIT
// A thread that does one job after the other while its owner goes on.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace Storage {

// For one caller.
class JobThread {
public:
    using Job = std::function<void()>; // throws nothing

    JobThread() = default;
    // The jobs that are left are done first.
    ~JobThread();
    JobThread(const JobThread&) = delete;
    JobThread& operator=(const JobThread&) = delete;

    // Whether there is a thread: the system may have no more.
    bool Start();
    bool IsStarted() const { return m_thread.joinable(); }

    // Only when it is started.
    void Add(Job job) { Add({std::move(job), false}); }
    // Forget leaves it in its place.
    void AddForSure(Job job) { Add({std::move(job), true}); }
    // Jobs that were not begun are not done.
    void Forget();
    void WaitUntilIdle();

    // What a job changes and WaitUntil looks at.
    template<typename Change>
    void Set(const Change& change) {
        const std::lock_guard lock(m_mutex);
        change();
    }
    // Looks after each job.
    template<typename Condition>
    void WaitUntil(const Condition& condition) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, condition);
    }

private:
    struct Entry {
        Job job;
        bool isForSure;
    };

    void Add(Entry entry);
    void Work();

    std::mutex m_mutex; // of all below, and of what Set changes
    std::condition_variable m_changed;
    std::deque<Entry> m_entries; // the first is being done
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace Storage
