// SPDX-License-Identifier: MIT
#include "platform/host/FileSteps.h"

#include <utility>

namespace Platform {
namespace {

std::function<void(FileStep)>& Listener() {
    static std::function<void(FileStep)> listener;
    return listener;
}

} // namespace

void SetFileStepListener(std::function<void(FileStep)> listener) {
    Listener() = std::move(listener);
}

void TellFileStep(FileStep step) {
    if (Listener())
        Listener()(step);
}

} // namespace Platform
