// SPDX-License-Identifier: MIT
// How far a transfer is, for whoever shows it: the libraries tell of each file, a program of
// each item, and the program may listen.
#pragma once

#include "platform/Export.h"

#include <functional>

namespace Platform {

// What was done with a file: read here, kept in the repository, written here; and with an item
// of a catalogue or a definition: kept in the repository, put in its place here.
enum class FileStep { Read, Stored, Written, ItemSent, ItemLoaded };
inline constexpr int kFileSteps = 5;

// Replaces the listener, which must not throw, and returns the former one, for whoever listens
// for a while to pass steps on to and to put back.  Without one, steps are told to nobody.
ZEBX_EXPORT std::function<void(FileStep)>
SetFileStepListener(std::function<void(FileStep)> listener);

ZEBX_EXPORT void TellFileStep(FileStep step);

} // namespace Platform
