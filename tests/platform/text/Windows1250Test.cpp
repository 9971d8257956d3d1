// SPDX-License-Identifier: MIT
#include "platform/text/Windows1250.h"

#include "platform/text/Utf8.h"
#include "support/Python.h"

#include <array>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

using Platform::FromAnsi;
using Platform::ToAnsi;

namespace {

// The bytes 80 to FF, sixteen a line, as the characters themselves; written as numbers
// where a character shows nothing.
constexpr CStringView kUpperHalf = u"€\x81‚\x83„…†‡\x88‰Š‹ŚŤŽŹ"
                                   u"\x90‘’“”•–—\x98™š›śťžź"
                                   u"\xA0ˇ˘Ł¤Ą¦§¨©Ş«¬\xAD®Ż"
                                   u"°±˛ł´µ¶·¸ąş»Ľ˝ľż"
                                   u"ŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎ"
                                   u"ĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢß"
                                   u"ŕáâăäĺćçčéęëěíîď"
                                   u"đńňóôőö÷řůúűüýţ˙";

std::string EveryByte() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

// The two columns of a published table: a number and the code point it stands for.
// `add` turns the number into a byte.  Empty when the table is not on this machine.
std::vector<std::pair<int, char16_t>> PublishedTable(const std::string& name, int add) {
    std::ifstream file(std::string(ZEBX_SHARED_DATA "/oracles/cp1250/") + name);
    std::vector<std::pair<int, char16_t>> table;
    for (std::string line; std::getline(file, line);) {
        const std::size_t column = line.find("\t0x");
        if (line.empty() || line.front() == '#' || column == std::string::npos)
            continue;
        const int number = std::stoi(line, nullptr, 0) + add;
        table.emplace_back(number,
                           static_cast<char16_t>(std::stoi(line.substr(column), nullptr, 0)));
    }
    return table;
}

} // namespace

TEST(Windows1250, TheLowerHalfIsAscii) {
    for (int byte = 0; byte < 0x80; ++byte)
        EXPECT_EQ(FromAnsi(std::string(1, static_cast<char>(byte))),
                  CString(1, static_cast<char16_t>(byte)));
}

TEST(Windows1250, TheUpperHalfHoldsCentralEuropeanLetters) {
    ASSERT_EQ(kUpperHalf.size(), 128u);
    EXPECT_EQ(FromAnsi(EveryByte().substr(0x80)), kUpperHalf);
}

TEST(Windows1250, EveryByteComesBack) {
    EXPECT_EQ(ToAnsi(FromAnsi(EveryByte())), EveryByte());
}

TEST(Windows1250, TheTablesOfUnicodeAndWhatwgSayTheSame) {
    std::array<char16_t, 256> expected;
    for (int byte = 0; byte < 256; ++byte)
        expected[static_cast<std::size_t>(byte)] =
            byte < 0x80 ? static_cast<char16_t>(byte)
                        : kUpperHalf[static_cast<std::size_t>(byte) - 0x80];
    const auto unicode = PublishedTable("CP1250.TXT", 0);
    const auto whatwg = PublishedTable("index-windows-1250.txt", 0x80);
    if (!unicode.empty()) {
        EXPECT_EQ(unicode.size(), 251u); // without the five undefined bytes
        EXPECT_EQ(whatwg.size(), 128u);
    }
    for (const auto& table : {unicode, whatwg})
        for (const auto& [byte, unit] : table)
            expected.at(static_cast<std::size_t>(byte)) = unit;
    EXPECT_EQ(FromAnsi(EveryByte()), CString(expected.begin(), expected.end()));
}

// Python has no character for the five bytes that windows-1250 leaves undefined, and no byte
// for the control characters that they stand for here.
TEST(Windows1250, PythonDecodesEveryOtherByteTheSame) {
    const std::string units = PythonSays("import sys\n"
                                         "for byte in range(256):\n"
                                         "    unit = bytes([byte]).decode('cp1250', 'replace')\n"
                                         "    sys.stdout.buffer.write(unit.encode('utf-8'))\n");
    CString expected = Platform::FromUtf8(units);
    ASSERT_EQ(expected.size(), 256u);
    for (const std::size_t undefined : {0x81u, 0x83u, 0x88u, 0x90u, 0x98u}) {
        EXPECT_EQ(expected[undefined], u'\uFFFD');
        expected[undefined] = static_cast<char16_t>(undefined);
    }
    EXPECT_EQ(FromAnsi(EveryByte()), expected);
}

TEST(Windows1250, PythonEncodesEveryOtherCodeUnitTheSame) {
    std::string expected =
        PythonSays("import sys\n"
                   "for unit in range(0x10000):\n"
                   "    sys.stdout.buffer.write(chr(unit).encode('cp1250', 'replace'))\n");
    ASSERT_EQ(expected.size(), 0x10000u);
    CString units;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit)
        units += static_cast<char16_t>(unit);
    for (const std::size_t undefined : {0x81u, 0x83u, 0x88u, 0x90u, 0x98u}) {
        EXPECT_EQ(expected[undefined], '?');
        expected[undefined] = static_cast<char>(undefined);
    }
    EXPECT_TRUE(ToAnsi(units) == expected);
}

TEST(Windows1250, UndefinedBytesAreControlCharactersOfTheSameValue) {
    EXPECT_EQ(FromAnsi("\x81\x83\x88\x90\x98"), u"\x81\x83\x88\x90\x98");
    EXPECT_EQ(ToAnsi(u"\x81\x83\x88\x90\x98"), "\x81\x83\x88\x90\x98");
}

TEST(Windows1250, WhatItDoesNotHoldBecomesAQuestionMark) {
    const CString held = FromAnsi(EveryByte());
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const auto character = static_cast<char16_t>(unit);
        if (held.find(character) == CString::npos) {
            ASSERT_EQ(ToAnsi(CString(1, character)), "?") << unit;
        }
    }
}

TEST(Windows1250, EachHalfOfASurrogatePairIsOneQuestionMark) {
    EXPECT_EQ(ToAnsi(u"a\U0001F600b"), "a??b");
}

TEST(Windows1250, ANulIsAByteAsAnyOther) {
    using namespace std::string_literals;
    EXPECT_EQ(ToAnsi(u"a\0č"s), "a\0\xE8"s);
    EXPECT_EQ(FromAnsi("a\0\xE8"s), u"a\0č"s);
    EXPECT_EQ(ToAnsi(u""), "");
    EXPECT_EQ(FromAnsi(""), u"");
}
