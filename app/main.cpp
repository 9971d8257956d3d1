// SPDX-License-Identifier: MIT
#include "app/Program.h"

#include <iostream>

int main(int count, char** words) {
    return App::RunProgram({words + 1, words + count}, std::cout, std::cerr);
}
