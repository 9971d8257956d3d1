// SPDX-License-Identifier: MIT
// Tests of the program inside the test's own process.  Whatever asks the storage manager,
// which exists once for a process, is tested with Station or in a child process instead.
#pragma once

#include "Station.h"
#include "app/Program.h"
#include "support/Workstation.h"

#include <gtest/gtest.h>
#include <sstream>

namespace AppTest {

class InProcess : public testing::Test {
protected:
    InProcess() {
        workstation.Set("ZEBX_INSTALL", ZEBX_BUILD_DIR "/lib/zebx");
        workstation.Set("ZEBX_LANGUAGE", "en");
    }

    static Ended RunHere(const std::vector<std::string>& arguments, const std::string& typed = {}) {
        std::istringstream in(typed);
        std::ostringstream out;
        std::ostringstream err;
        const int status = App::RunProgram(arguments, in, out, err);
        return {status, out.str(), err.str()};
    }

    Workstation workstation;
};

} // namespace AppTest
