// SPDX-License-Identifier: MIT
// Hashes contents on a thread of its own while the caller reads and writes others: hashes
// would otherwise take a third of a transfer's time.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace Storage {

// A queue, for one caller.  The thread starts with the first content that is large enough to
// be worth it, touches nothing but the contents, and ends with the object.
class HashAhead {
public:
    HashAhead() = default;
    ~HashAhead();
    HashAhead(const HashAhead&) = delete;
    HashAhead& operator=(const HashAhead&) = delete;

    // Adds a content, whose bytes must stay where they are until its hash is taken, Forget is
    // called or the object ends.
    void Add(std::string_view bytes);

    // The hash of the first content that was added and not taken; there must be one.  Throws
    // what ContentHash throws.
    std::string Take();

    void Forget();

private:
    struct Job {
        std::string_view bytes;
        bool isGiven; // to the thread
    };

    bool MayGive(std::string_view bytes);
    void Work();

    std::deque<Job> m_jobs;

    std::mutex m_mutex; // of all below
    std::condition_variable m_changed;
    std::deque<std::string_view> m_given; // the first is being hashed
    std::deque<std::string> m_hashes;     // an empty one could not be made
    bool m_isEnding = false;

    std::thread m_thread;
};

} // namespace Storage
