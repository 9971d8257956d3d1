// SPDX-License-Identifier: MIT
// The code page against the C library's own, the input taken as bytes and as UTF-16 units.
#include "Target.h"
#include "platform/text/Windows1250.h"

#include <array>
#include <cstring>
#include <iconv.h>

using namespace Fuzz;

namespace {

// What iconv makes of the byte; a byte that it has no character for stands for the control
// character of the same value.
char16_t UnitOf(iconv_t converter, int byte) {
    char in = static_cast<char>(byte);
    char16_t out = 0;
    char* from = &in;
    char* to = reinterpret_cast<char*>(&out);
    std::size_t inLeft = 1;
    std::size_t outLeft = sizeof out;
    const bool isDefined = iconv(converter, &from, &inLeft, &to, &outLeft) == 0;
    return isDefined ? out : static_cast<char16_t>(byte);
}

std::array<char16_t, 256> SystemsTable() {
    iconv_t converter = iconv_open("UTF-16LE", "CP1250");
    Require(converter != reinterpret_cast<iconv_t>(-1), "the C library knows windows-1250");
    std::array<char16_t, 256> units{};
    for (std::size_t byte = 0; byte < units.size(); ++byte)
        units[byte] = UnitOf(converter, static_cast<int>(byte));
    iconv_close(converter);
    return units;
}

void CheckBytes(std::string_view bytes) {
    static const std::array<char16_t, 256> table = SystemsTable();
    const CString text = Platform::FromAnsi(bytes);
    Require(text.size() == bytes.size(), "every byte is one code unit");
    for (std::size_t i = 0; i < bytes.size(); ++i)
        Require(text[i] == table[static_cast<unsigned char>(bytes[i])],
                "a byte is the character that the C library has for it");
    Require(Platform::ToAnsi(text) == bytes, "every byte comes back");
}

void CheckUnits(const CString& text) {
    const std::string bytes = Platform::ToAnsi(text);
    Require(bytes.size() == text.size(), "every code unit is one byte");
    const CString back = Platform::FromAnsi(bytes);
    for (std::size_t i = 0; i < text.size(); ++i)
        Require(back[i] == text[i] || bytes[i] == '?', "a character is kept or a question mark");
    Require(Platform::ToAnsi(back) == bytes, "what was lost is lost once");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CheckBytes(BytesOf(data, size));
    CString units(size / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), data, units.size() * sizeof(char16_t));
    CheckUnits(units);
    return 0;
}
