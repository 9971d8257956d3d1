// SPDX-License-Identifier: MIT
// The program while it runs: what it tells can be waited for, and it can be sent signals.
#pragma once

#include "Station.h"

#include <sys/types.h>

namespace AppTest {

class Running {
public:
    Running(const Station& station, const std::vector<std::string>& arguments);
    // Kills what still runs.
    ~Running();
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    // Reads its errors until `text` is among them; false when it ended without.
    bool WaitFor(const std::string& text);

    void Signal(int signal) const;
    // Waits until it has told so much that nobody read that it can tell no more; false when
    // it ended before.
    bool WaitUntilItStandsStill() const;
    // Waits until the program takes the signal for itself no longer, its first one having
    // been handled.
    void WaitUntilNotCaught(int signal) const;

    // Reads the rest; the status is negative for the signal that ended it.
    Ended Finish();

private:
    bool ReadMore();

    pid_t m_child = -1;
    int m_errors = -1;
    std::string m_out;
    std::string m_err;
};

} // namespace AppTest
