// SPDX-License-Identifier: MIT
// The icons of platform/window/icons, drawn sharp at any size and scale; what they draw in
// "currentColor" takes the palette's colour of texts.
#pragma once

#include <QIcon>

namespace Platform {

// `resource`: "IDI_SELALL".  Null for a name that there is not.
QIcon IconFor(const char16_t* resource);

} // namespace Platform
