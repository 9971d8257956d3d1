// SPDX-License-Identifier: MIT
// JSON as the program writes it with --json: fields in the order in which they are set,
// texts in UTF-8.
#pragma once

#include "platform/text/Utf8.h"

#include <nlohmann/json.hpp>

namespace App {

using Json = nlohmann::ordered_json;

// The text; null where the empty one means that it is not known or not there.
inline Json OrNull(const CString& text) {
    return text.empty() ? Json() : Json(Platform::ToUtf8(text));
}

} // namespace App

// Without this the library takes a text for a list of numbers.
template<>
struct nlohmann::adl_serializer<CString> {
    template<typename Value>
    static void to_json(Value& value, const CString& text) {
        value = Platform::ToUtf8(text);
    }
};
