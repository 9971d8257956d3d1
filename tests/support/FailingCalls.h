// SPDX-License-Identifier: MIT
// Sees the calls of the platform's files while it lives, and has chosen ones fail.
#pragma once

#include "platform/os/SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class FailingCalls : public Platform::System::CallWatcher {
public:
    struct Call {
        std::string name;
        std::string path;
    };

    FailingCalls() { Platform::System::WatchCalls(this); }
    ~FailingCalls() override { Platform::System::WatchCalls(nullptr); }
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    static constexpr int kAlways = -1;

    // Every call of that name fails, or only the next `times`.
    void Fail(const std::string& name, int error, int times = kAlways) {
        m_errors[name] = {error, times};
    }
    // The call of that number, counted from 0, fails.
    void FailNumber(std::size_t number, int error) {
        m_number = number;
        m_numberError = error;
    }
    // This process is killed before the call of that number.
    void KillAt(std::size_t number) { m_killAt = number; }
    // No transfer moves more bytes than that at once.
    void Limit(std::size_t bytes) { m_limit = bytes; }

    // Everything seems to lie on a file system of that type.
    void PretendFileSystem(std::uint32_t type) { m_fileSystem = type; }

    const std::vector<Call>& Seen() const { return m_seen; }
    bool HasSeen(std::string_view name) const {
        return std::ranges::find(m_seen, name, &Call::name) != m_seen.end();
    }

    int ErrorOf(const char* call, const std::string& path) override {
        const std::size_t number = m_seen.size();
        m_seen.push_back({call, path});
        if (number == m_killAt)
            std::raise(SIGKILL);
        if (number == m_number)
            return m_numberError;
        const auto found = m_errors.find(call);
        if (found == m_errors.end() || found->second.second == 0)
            return 0;
        if (found->second.second > 0)
            --found->second.second;
        return found->second.first;
    }
    std::uint32_t FileSystemTypeOf(const std::string&, std::uint32_t type) override {
        return m_fileSystem ? m_fileSystem : type;
    }
    std::size_t BytesOf(const char*, std::size_t size) override { return std::min(size, m_limit); }

private:
    static constexpr std::size_t kNever = static_cast<std::size_t>(-1);

    std::vector<Call> m_seen;
    std::map<std::string, std::pair<int, int>> m_errors; // error and how often still
    std::size_t m_number = kNever;
    int m_numberError = 0;
    std::uint32_t m_fileSystem = 0;
    std::size_t m_killAt = kNever;
    std::size_t m_limit = kNever;
};
