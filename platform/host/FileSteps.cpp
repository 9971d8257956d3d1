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

std::function<void(FileStep)> SetFileStepListener(std::function<void(FileStep)> listener) {
    return std::exchange(Listener(), std::move(listener));
}

void TellFileStep(FileStep step) {
    if (Listener())
        Listener()(step);
}

} // namespace Platform
