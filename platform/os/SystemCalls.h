// SPDX-License-Identifier: MIT
// Lets a test see every call to the operating system's files and have it fail.  For tests
// only: not installed, and nothing in this system sets a watcher.
#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace Platform::System {

class CallWatcher {
public:
    virtual ~CallWatcher() = default;

    // Asked before each call, with its name ("open", "write") and the native path that it
    // concerns.  An error number makes the call fail with it: nothing is done, except that
    // "close" closes.  0 lets it through.
    virtual int ErrorOf(const char* call, const std::string& path) = 0;

    // The type that the file system of `path` shall seem to have.
    virtual std::uint32_t FileSystemTypeOf(const std::string& path, std::uint32_t type) {
        (void)path;
        return type;
    }

    // How many of `size` bytes a "read" or "write" may move; at least 1.
    virtual std::size_t BytesOf(const char* call, std::size_t size) {
        (void)call;
        return size;
    }
};

// From now on asks `watcher`, which must live until another one is set; null asks nobody.
ZEBX_EXPORT void WatchCalls(CallWatcher* watcher);

} // namespace Platform::System
