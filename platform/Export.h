// SPDX-License-Identifier: MIT
// Marks what a library or module shows to others; everything else stays hidden.
#pragma once

#define ZEBX_EXPORT __attribute__((visibility("default")))
