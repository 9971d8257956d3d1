// SPDX-License-Identifier: MIT
#include "platform/text/Utf8.h"

#include "platform/text/Surrogates.h"

#include <algorithm>

#include <utf8proc.h>

namespace Platform {
namespace {

constexpr std::int32_t kReplacement = 0xFFFD;

// Where FromUtf8 and PathFromNative put a byte that is no text of its own.
constexpr std::int32_t kByteBase = 0xDC00;

bool IsKeptByte(std::int32_t codePoint) {
    return (codePoint >= kByteBase + 0x80 && codePoint <= kByteBase + 0xFF) ||
           codePoint == kByteBase + '\\';
}

std::size_t AsciiRun(std::string_view bytes) {
    const auto end = std::find_if(bytes.begin(), bytes.end(), [](char byte) {
        return static_cast<unsigned char>(byte) >= 0x80;
    });
    return static_cast<std::size_t>(end - bytes.begin());
}

void AppendUtf8(std::string& bytes, std::int32_t codePoint) {
    utf8proc_uint8_t encoded[4];
    const auto size = utf8proc_encode_char(codePoint, encoded);
    bytes.append(reinterpret_cast<const char*>(encoded), static_cast<std::size_t>(size));
}

bool IsControl(std::int32_t codePoint) {
    return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
}

} // namespace

CString FromUtf8(std::string_view utf8) {
    CString text;
    text.reserve(utf8.size());
    while (!utf8.empty()) {
        const std::size_t run = AsciiRun(utf8);
        text.append(utf8.begin(), utf8.begin() + static_cast<std::ptrdiff_t>(run));
        utf8.remove_prefix(run);
        if (utf8.empty())
            break;
        utf8proc_int32_t codePoint = 0;
        const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(utf8.data());
        auto size = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(utf8.size()), &codePoint);
        if (size <= 0) {
            codePoint = kByteBase + bytes[0];
            size = 1;
        }
        AppendCodePoint(text, codePoint);
        utf8.remove_prefix(static_cast<std::size_t>(size));
    }
    return text;
}

std::string ToUtf8(CStringView text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        const std::int32_t codePoint = NextCodePoint(text, position);
        if (codePoint < 0x80)
            bytes += static_cast<char>(codePoint);
        else if (!IsSurrogate(codePoint))
            AppendUtf8(bytes, codePoint);
        else if (IsKeptByte(codePoint))
            bytes += static_cast<char>(codePoint - kByteBase);
        else
            AppendUtf8(bytes, kReplacement);
    }
    return bytes;
}

std::string ToDisplay(CStringView text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        const std::int32_t codePoint = NextCodePoint(text, position);
        if (IsControl(codePoint) && codePoint != '\n' && codePoint != '\t')
            bytes += '?';
        else
            AppendUtf8(bytes, IsSurrogate(codePoint) ? kReplacement : codePoint);
    }
    return bytes;
}

bool IsWellFormed(CStringView text) {
    for (std::size_t position = 0; position < text.size();)
        if (IsSurrogate(NextCodePoint(text, position)))
            return false;
    return true;
}

} // namespace Platform
