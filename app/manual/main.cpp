// SPDX-License-Identifier: MIT
// Run by the build: writes the manual page and the completion from the table of verbs.
// usage: zebx_manual man DATE | completion
#include "app/Texts.h"
#include "app/manual/Completion.h"
#include "app/manual/ManPage.h"

#include <iostream>

int main(int count, char** words) {
    const std::string what = count > 1 ? words[1] : "";
    if (!App::MissingTexts().empty())
        return 3;
    if (what == "man" && count > 2)
        std::cout << App::ManPage(words[2]);
    else if (what == "completion")
        std::cout << App::BashCompletion();
    else
        return 2;
    return std::cout.flush() ? 0 : 9;
}
