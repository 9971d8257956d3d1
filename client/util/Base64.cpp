// SPDX-License-Identifier: MIT
#include "ZEBXRepositoryClient/Base64.h"

#include "client/util/Border.h"
#include "client/util/Codec.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace Repository {
namespace {

using Byte = unsigned char;

// The two characters of each twelve bits: three bytes take two looks instead of four.
constexpr auto kCharactersOf = [] {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits)
        pairs[bits] = {kBase64Alphabet[bits >> 6], kBase64Alphabet[bits & 63]};
    return pairs;
}();

constexpr std::uint16_t kStop = 0x8000; // above any twelve bits

// The reverse: the twelve bits of each two bytes, or kStop when one of them is outside
// the alphabet. Made from the alphabet alone, so that no locale makes a letter of a byte
// beyond ASCII. Text touches few of its lines, so its size costs nothing.
constexpr auto kBitsOf = [] {
    std::array<std::uint16_t, 65536> bits{};
    bits.fill(kStop);
    for (std::size_t pair = 0; pair < kCharactersOf.size(); ++pair) {
        const auto [first, second] = kCharactersOf[pair];
        bits[static_cast<Byte>(first) << 8 | static_cast<Byte>(second)] =
            static_cast<std::uint16_t>(pair);
    }
    return bits;
}();

const Byte* BytesOf(std::string_view text) {
    return reinterpret_cast<const Byte*>(text.data());
}

// Between a number in memory and one whose highest byte comes first.
inline std::uint64_t HighestFirst(std::uint64_t number) {
    return std::endian::native == std::endian::little ? __builtin_bswap64(number) : number;
}

inline std::uint64_t LoadEight(const Byte* in) {
    std::uint64_t number;
    std::memcpy(&number, in, sizeof number);
    return HighestFirst(number);
}

inline void StoreEight(std::uint64_t number, char* out) {
    number = HighestFirst(number);
    std::memcpy(out, &number, sizeof number);
}

inline void PutTwelveBits(std::uint64_t bits, char* out) {
    std::memcpy(out, kCharactersOf[bits & 4095].data(), 2);
}

// The one or two bytes behind the last full group; the "=" stand there already.
void PutLastCharacters(const Byte* in, std::size_t left, char* out) {
    const unsigned bits = unsigned{in[0]} << 16 | (left > 1 ? unsigned{in[1]} << 8 : 0);
    PutTwelveBits(bits >> 12, out);
    if (left > 1)
        out[2] = kBase64Alphabet[bits >> 6 & 63];
}

inline unsigned PairAt(const Byte* in) {
    return kBitsOf[static_cast<unsigned>(in[0] << 8 | in[1])];
}

// The group in which the text stops or ends. Returns the number of bytes put: one less
// than characters, so a single one left over adds nothing.
std::size_t PutLastBytes(const Byte* in, std::size_t left, char* out) {
    unsigned bits = 0;
    std::size_t count = 0;
    for (; count < left && count < 3; ++count) {
        const std::size_t index = kBase64Alphabet.find(static_cast<char>(in[count]));
        if (index == kBase64Alphabet.npos)
            break;
        bits = bits << 6 | static_cast<unsigned>(index);
    }
    if (count < 2)
        return 0;
    bits <<= 6 * (4 - count);
    out[0] = static_cast<char>(bits >> 16);
    if (count == 3)
        out[1] = static_cast<char>(bits >> 8);
    return count - 1;
}

} // namespace

std::string EncodeBase64(std::string_view bytes) {
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    const Byte* in = BytesOf(bytes);
    char* out = text.data();
    std::size_t left = bytes.size();
    for (; left >= 8; left -= 6, in += 6, out += 8) { // reads eight bytes, takes six
        const std::uint64_t bits = LoadEight(in);
        PutTwelveBits(bits >> 52, out);
        PutTwelveBits(bits >> 40, out + 2);
        PutTwelveBits(bits >> 28, out + 4);
        PutTwelveBits(bits >> 16, out + 6);
    }
    for (; left >= 3; left -= 3, in += 3, out += 4) {
        const unsigned bits = unsigned{in[0]} << 16 | unsigned{in[1]} << 8 | in[2];
        PutTwelveBits(bits >> 12, out);
        PutTwelveBits(bits, out + 2);
    }
    if (left > 0)
        PutLastCharacters(in, left, out);
    return text;
}

std::string DecodeBase64(std::string_view text) {
    std::string bytes((text.size() + 3) / 4 * 3, '\0');
    const Byte* in = BytesOf(text);
    char* out = bytes.data();
    std::size_t left = text.size();
    for (; left > 8; left -= 8, in += 8, out += 6) { // stores eight bytes, keeps six
        const std::uint64_t characters = LoadEight(in);
        const std::uint64_t a = kBitsOf[characters >> 48];
        const std::uint64_t b = kBitsOf[characters >> 32 & 65535];
        const std::uint64_t c = kBitsOf[characters >> 16 & 65535];
        const std::uint64_t d = kBitsOf[characters & 65535];
        if ((a | b | c | d) & kStop)
            break;
        StoreEight(a << 52 | b << 40 | c << 28 | d << 16, out);
    }
    for (; left >= 4; left -= 4, in += 4, out += 3) {
        const unsigned first = PairAt(in), second = PairAt(in + 2);
        if ((first | second) & kStop)
            break;
        out[0] = static_cast<char>(first >> 4);
        out[1] = static_cast<char>(first << 4 | second >> 8);
        out[2] = static_cast<char>(second);
    }
    out += PutLastBytes(in, left, out);
    bytes.resize(static_cast<std::size_t>(out - bytes.data()));
    return bytes;
}

std::string Base64Encode(const void* bytes, std::uint32_t length) {
    return AtBorder(std::string(), [&] {
        return length > 0 ? EncodeBase64({static_cast<const char*>(bytes), length}) : std::string();
    });
}

std::string Base64Decode(std::string_view text) {
    return AtBorder(std::string(), [&] { return DecodeBase64(text); });
}

} // namespace Repository
