// SPDX-License-Identifier: MIT
// The page checksums of a repository file, computed from their description alone: for tests
// that change a repository by other tools and want it to be taken for one nevertheless.
#pragma once

#include <array>
#include <fstream>
#include <stdexcept>
#include <string>
#include <xxhash.h>

inline constexpr std::size_t kSealedPage = 16384;
inline constexpr std::size_t kSeal = 8;

// The last eight bytes that page `number` (from 1) of these bytes has to have.
inline std::array<char, kSeal> SealOf(const char* page, std::uint64_t number) {
    const std::uint64_t hash = XXH3_64bits_withSeed(page, kSealedPage - kSeal, number);
    std::array<char, kSeal> seal;
    for (std::size_t i = 0; i < kSeal; ++i)
        seal[i] = static_cast<char>(hash >> (56 - 8 * i) & 255);
    return seal;
}

// Gives every page of the file, which nobody uses meanwhile, the checksum that it has to have.
inline void SealPages(const std::string& path) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    std::array<char, kSealedPage> page;
    for (std::uint64_t number = 1; file.read(page.data(), kSealedPage); ++number) {
        const auto seal = SealOf(page.data(), number);
        file.seekp(static_cast<std::streamoff>(number * kSealedPage - kSeal));
        file.write(seal.data(), kSeal);
        file.seekg(static_cast<std::streamoff>(number * kSealedPage));
    }
    if (!file.eof())
        throw std::runtime_error("cannot seal " + path);
}
