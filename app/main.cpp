// SPDX-License-Identifier: MIT
#include "app/Program.h"

#include "platform/os/Environment.h"

#include <iostream>

int main(int count, char** words) {
    Platform::IgnoreFileSizeSignal();
    return App::RunProgram({words + 1, words + count}, std::cin, std::cout, std::cerr);
}
