// SPDX-License-Identifier: MIT
// Hashes contents on a thread of its own while the caller reads and writes others: hashes
// would otherwise take a third of a transfer's time.
#pragma once

#include "storage/content/JobThread.h"

#include <string>
#include <string_view>

namespace Storage {

// A queue, for one caller.  The thread starts with the first content that is large enough to
// be worth it, touches nothing but the contents, and ends with the object.
class HashAhead {
public:
    HashAhead() = default;
    ~HashAhead() { Forget(); }
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
    struct Content {
        std::string_view bytes;
        bool isDone = true; // by the thread, or not given to it
        std::string hash;   // empty: was not or could not be made
    };

    void Give(Content& content);

    std::deque<Content> m_contents; // which stay where they are
    JobThread m_thread;             // ends before them
};

} // namespace Storage
