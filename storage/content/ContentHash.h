// SPDX-License-Identifier: MIT
// SHA-256, by which contents are addressed.
#pragma once

#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace Storage {

// The 32 bytes of the digest.
std::string ContentHash(std::string_view bytes);

// The digest of bytes that come piece by piece.
class RunningHash {
public:
    RunningHash();
    ~RunningHash();
    RunningHash(const RunningHash&) = delete;
    RunningHash& operator=(const RunningHash&) = delete;

    void Add(std::string_view bytes);
    // The digest of all of it; nothing may be added afterwards.
    std::string Take();

private:
    evp_md_ctx_st* m_context;
};

// Lower-case hexadecimal digits.
std::string ToHexadecimal(std::string_view bytes);
// The bytes of what ToHexadecimal wrote.
std::string FromHexadecimal(std::string_view digits);

// Sixteen hexadecimal digits that nobody else has.
std::string RandomName();

} // namespace Storage
