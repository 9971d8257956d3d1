// SPDX-License-Identifier: MIT
// Base64 written for nothing but to be obviously right, bit by bit: what the codec's fast
// ways are compared with.
#pragma once

#include <string>
#include <string_view>

namespace NaiveBase64 {

inline constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

inline std::string Encode(std::string_view bytes) {
    std::string text;
    unsigned value = 0;
    unsigned bits = 0;
    for (const char byte : bytes)
        for (unsigned i = 8; i-- > 0;) {
            value = value << 1 | (static_cast<unsigned char>(byte) >> i & 1u);
            if (++bits % 6 == 0) {
                text += kAlphabet[value];
                value = 0;
            }
        }
    if (bits % 6 != 0)
        text += kAlphabet[value << (6 - bits % 6)];
    while (text.size() % 4 != 0)
        text += '=';
    return text;
}

// What stands before the first character outside the alphabet; bits that fill no byte are
// dropped.
inline std::string Decode(std::string_view text) {
    std::string bytes;
    unsigned value = 0;
    unsigned bits = 0;
    for (const char character : text) {
        const std::size_t index = kAlphabet.find(character);
        if (index == kAlphabet.npos)
            break;
        value = value << 6 | static_cast<unsigned>(index);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes += static_cast<char>(value >> bits);
            value &= (1u << bits) - 1;
        }
    }
    return bytes;
}

} // namespace NaiveBase64
