// SPDX-License-Identifier: MIT
#include "storage/sqlite/SqliteLog.h"

#include "storage/sqlite/PageChecksumVfs.h"

#include <array>
#include <cstring>
#include <memory>
#include <sqlite3.h>

namespace Storage {
namespace {

// A header, then frames of a header and a page each; numbers have the highest byte first.
constexpr int kHeaderBytes = 32;
constexpr int kHeaderSaltAt = 16;
constexpr int kHeaderSumAt = 24;
constexpr int kFrameHeaderBytes = 24;
constexpr int kCommitAt = 4; // the size of the file after the call, in its last frame
constexpr int kFrameSaltAt = 8;
constexpr int kFrameSumAt = 16;
constexpr int kSummedOfFrameHeader = 8;
constexpr int kSaltBytes = 8;
constexpr int kFrameBytes = kFrameHeaderBytes + kPageBytes;

using Frame = std::array<unsigned char, kFrameBytes>;

std::uint32_t Number(const unsigned char* bytes) {
    return std::uint32_t(bytes[0]) << 24 | std::uint32_t(bytes[1]) << 16 |
           std::uint32_t(bytes[2]) << 8 | bytes[3];
}

// The sum over everything so far, which is the start of the next one.
class Sum {
public:
    Sum(const unsigned char* stored, bool highestByteFirst)
        : m_first(Number(stored)), m_second(Number(stored + 4)), m_isBig(highestByteFirst) {}
    void Add(const unsigned char* bytes, int size) {
        for (int i = 0; i < size; i += 8) {
            m_first += Word(bytes + i) + m_second;
            m_second += Word(bytes + i + 4) + m_first;
        }
    }
    bool Fits(const unsigned char* stored) const {
        return m_first == Number(stored) && m_second == Number(stored + 4);
    }

private:
    std::uint32_t Word(const unsigned char* bytes) const {
        const std::uint32_t word = Number(bytes);
        return m_isBig ? word : __builtin_bswap32(word);
    }
    std::uint32_t m_first;
    std::uint32_t m_second;
    bool m_isBig;
};

bool Read(sqlite3_file* log, unsigned char* bytes, int size, sqlite3_int64 at) {
    return log->pMethods->xRead(log, bytes, size, at) == SQLITE_OK;
}

LogState ReadOnce(sqlite3_file* log) {
    LogState state;
    std::array<unsigned char, kHeaderBytes> header;
    if (!Read(log, header.data(), kHeaderBytes, 0))
        return state;
    const auto frame = std::make_unique<Frame>();
    const unsigned char* bytes = frame->data();
    Sum sum(&header[kHeaderSumAt], (header[3] & 1) != 0);
    std::uint32_t broken = 0;
    std::uint32_t number = 0;
    // Frames of another salt are left from before the log began anew.
    for (sqlite3_int64 at = kHeaderBytes;
         Read(log, frame->data(), kFrameBytes, at) &&
         std::memcmp(bytes + kFrameSaltAt, &header[kHeaderSaltAt], kSaltBytes) == 0;
         at += kFrameBytes) {
        ++number;
        state.pages.insert(Number(bytes));
        sum.Add(bytes, kSummedOfFrameHeader);
        sum.Add(bytes + kFrameHeaderBytes, kPageBytes);
        if (broken == 0 && !sum.Fits(bytes + kFrameSumAt))
            broken = number;
        else if (broken != 0 && Number(bytes + kCommitAt) != 0)
            state.brokenFrame = broken;
    }
    return state;
}

} // namespace

LogState ReadLog(sqlite3_file* log) {
    if (!log)
        return {};
    LogState state = ReadOnce(log);
    // A frame that was just being written fits a moment later.
    if (state.brokenFrame != 0 && ReadOnce(log).brokenFrame != state.brokenFrame)
        state.brokenFrame = 0;
    return state;
}

} // namespace Storage
