// SPDX-License-Identifier: MIT
#include "storage/content/HashAhead.h"

#include "storage/content/ContentHash.h"

#include <exception>
#include <utility>

namespace Storage {
namespace {

// Below, handing over takes longer than hashing.
constexpr std::size_t kWorthAThread = 32 * 1024;

std::string HashOrNothing(std::string_view bytes) noexcept {
    try {
        return ContentHash(bytes);
    } catch (const std::exception&) {
        return {}; // the caller tries himself and learns why
    }
}

} // namespace

void HashAhead::Add(std::string_view bytes) {
    Content& content = m_contents.emplace_back();
    content.bytes = bytes;
    if (bytes.size() >= kWorthAThread && m_thread.Start())
        Give(content);
}

void HashAhead::Give(Content& content) {
    content.isDone = false;
    m_thread.Add([this, &content] {
        std::string hash = HashOrNothing(content.bytes);
        m_thread.Set([&] {
            content.hash = std::move(hash);
            content.isDone = true;
        });
    });
}

std::string HashAhead::Take() {
    Content& content = m_contents.front();
    m_thread.WaitUntil([&] { return content.isDone; });
    const std::string_view bytes = content.bytes;
    const std::string hash = std::move(content.hash);
    m_contents.pop_front();
    return hash.empty() ? ContentHash(bytes) : hash;
}

void HashAhead::Forget() {
    m_thread.Forget();
    m_thread.WaitUntilIdle();
    m_contents.clear();
}

} // namespace Storage
