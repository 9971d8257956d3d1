// SPDX-License-Identifier: MIT
// The program run on a workstation in a child of this process, which may have any of the
// system calls of the program and of SQLite fail, or be killed before it.
#pragma once

#include "app/Station.h"
#include "support/FailingCalls.h"

#include <functional>

namespace AppTest {

struct FaultyEnd : Ended {
    bool killed = false;
    std::vector<std::string> calls; // "name path"; none when killed
};

FaultyEnd RunFaulty(const Station& station, const std::vector<std::string>& arguments,
                    const std::function<void(FailingCalls&)>& prepare = {});

} // namespace AppTest
