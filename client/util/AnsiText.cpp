// SPDX-License-Identifier: MIT
#include "client/util/AnsiText.h"

#include "client/util/Codec.h"
#include "platform/text/Windows1250.h"

namespace Repository {
namespace {

template<class View>
View ToFirstNul(View text) {
    return text.substr(0, text.find(typename View::value_type{}));
}

} // namespace

std::string WideToAnsi(CStringView text) {
    return Platform::ToAnsi(ToFirstNul(text));
}

std::string WideToAnsi(const char16_t* text) {
    return WideToAnsi(Platform::TextOf(text));
}

CString AnsiToWide(std::string_view bytes) {
    return Platform::FromAnsi(ToFirstNul(bytes));
}

CString AnsiToWide(const char* bytes) {
    return AnsiToWide(bytes ? std::string_view(bytes) : std::string_view());
}

CString EncodeBase64Text(CStringView text) {
    const CStringView characters = ToFirstNul(text);
    // As many bytes as UTF-16 code units are encoded, however many the code page made of
    // them: kept, existing records were written so.
    return AnsiToWide(
        EncodeBase64(std::string_view(WideToAnsi(characters)).substr(0, characters.size())));
}

CString EncodeBase64Text(const char16_t* text) {
    return EncodeBase64Text(Platform::TextOf(text));
}

CString DecodeBase64Text(CStringView base64) {
    return AnsiToWide(DecodeBase64(WideToAnsi(base64)));
}

CString DecodeBase64Text(const char16_t* base64) {
    return DecodeBase64Text(Platform::TextOf(base64));
}

} // namespace Repository
