// SPDX-License-Identifier: MIT
// The border of an exported operation: no exception leaves it. Used by every exported
// operation of the module that allocates or calls what may throw.
#pragma once

#include <utility>

namespace Repository {

// Runs `body` and returns its result, or `onFailure` when an exception ends it. Whatever
// the body changed before that stays changed.
template<class Result, class Body>
Result AtBorder(Result onFailure, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return onFailure;
    }
}

// The same for an operation without a result: it ends where the exception did.
template<class Body>
void AtBorder(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) {
    }
}

} // namespace Repository
