// SPDX-License-Identifier: MIT
#include "storage/window/PercentEncoding.h"

#include "platform/text/Utf8.h"

namespace Storage {
namespace {

bool IsPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~';
}

// -1: no hexadecimal digit.
int DigitOf(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace

CString PercentEncode(CStringView text, CStringView kept) {
    constexpr CStringView kDigits = u"0123456789ABCDEF";
    CString encoded;
    for (const char c : Platform::ToUtf8(text)) {
        const auto byte = static_cast<unsigned char>(c);
        if (IsPlain(c) || kept.find(byte) != CStringView::npos)
            encoded += static_cast<char16_t>(byte);
        else
            encoded.append({u'%', kDigits[byte >> 4], kDigits[byte & 15]});
    }
    return encoded;
}

std::optional<CString> PercentDecode(CStringView text) {
    const std::string encoded = Platform::ToUtf8(text);
    std::string bytes;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        if (encoded[i] != '%') {
            bytes += encoded[i];
            continue;
        }
        if (encoded.size() - i < 3)
            return std::nullopt;
        const int high = DigitOf(encoded[i + 1]);
        const int low = DigitOf(encoded[i + 2]);
        if (high < 0 || low < 0 || high + low == 0)
            return std::nullopt;
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return Platform::FromUtf8(bytes);
}

} // namespace Storage
