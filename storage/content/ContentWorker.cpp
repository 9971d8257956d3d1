// SPDX-License-Identifier: MIT
#include "storage/content/ContentWorker.h"

#include "storage/content/ContentHash.h"

#include <exception>
#include <utility>

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

void ContentWorker::Add(FetchedContents contents) {
    const bool isWorthIt = m_thread.IsStarted() || BytesOf(contents) >= kWorthAThread;
    if (isWorthIt && m_thread.Start())
        m_thread.Add([this, contents = std::move(contents)] { Check(contents); });
    else
        Check(contents);
}

void ContentWorker::FinishList() {
    if (!m_cache)
        return;
    if (m_thread.IsStarted())
        m_thread.AddForSure([this] { FinishWriting(); });
    else
        FinishWriting();
}

void ContentWorker::Wait(const FetchedContent& content) {
    m_thread.WaitUntil([&] { return content.state != State::Fetched; });
}

void ContentWorker::Check(const FetchedContents& contents) noexcept {
    for (const auto& content : contents) {
        State state = State::Damaged;
        try {
            state = Look(*content);
        } catch (const std::exception&) {
            // No memory for it: what cannot be checked is not given out.
        }
        m_thread.Set([&] { content->state = state; });
    }
}

void ContentWorker::FinishWriting() noexcept {
    try {
        if (m_writer)
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
