// SPDX-License-Identifier: MIT
// What every fuzz target stands on. A target defines LLVMFuzzerTestOneInput, which libFuzzer
// calls with what it makes up (scripts/fuzz) and ReplayMain.cpp with each file of a corpus.
#pragma once

#include "platform/text/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// Always 0. A fault ends the process: by a sanitizer or by Require.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace Fuzz {

// Ends the process at once when `holds` is false; `what` says what should have held.
inline void Require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "DOES NOT HOLD: %s\n", what);
    std::abort();
}

inline std::string_view BytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Inputs that are text are UTF-8, so that seeds and dictionaries can be read; bytes that are
// no UTF-8 become unpaired surrogates.
inline CString TextOf(const std::uint8_t* data, std::size_t size) {
    return Platform::FromUtf8(BytesOf(data, size));
}

template<class View>
View ToFirstNul(View text) {
    return text.substr(0, text.find(typename View::value_type{}));
}

} // namespace Fuzz
