// SPDX-License-Identifier: MIT
// How far a transfer is, for whoever shows it: the libraries tell of each file, a program
// may listen.
#pragma once

#include "platform/Export.h"

#include <functional>

namespace Platform {

// What was done with a file: read here, kept in the repository, written here.
enum class FileStep { Read, Stored, Written };

// Replaces the listener; it must not throw.  Without one, steps are told to nobody.
ZEBX_EXPORT void SetFileStepListener(std::function<void(FileStep)> listener);

ZEBX_EXPORT void TellFileStep(FileStep step);

} // namespace Platform
