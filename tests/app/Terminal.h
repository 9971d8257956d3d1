// SPDX-License-Identifier: MIT
// A terminal with the program at it: what a user would type, and what he would see.
#pragma once

#include "Station.h"

#include <sys/types.h>

namespace AppTest {

class Terminal {
public:
    Terminal(const Station& station, const std::vector<std::string>& arguments);
    // Kills what still runs.
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    // Types the keys; Ctrl-C is "\x03".
    void Type(const std::string& keys) const;

    // Reads until `text` is shown, and forgets what stands up to its end; false when the
    // program ended without.
    bool WaitFor(const std::string& text);

    // Waits for the console's prompt, and until the program takes each key itself: the system
    // would make something else of a Ctrl-D before.
    bool WaitForPrompt();

    void Signal(int signal) const;

    // Reads the rest; the status is negative for the signal that ended the program, `out` what
    // was shown and not waited for.
    Ended Finish();

private:
    bool ReadMore();

    pid_t m_child = -1;
    int m_terminal = -1;
    std::string m_shown;
};

} // namespace AppTest
