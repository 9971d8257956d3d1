// SPDX-License-Identifier: MIT
// Python as an oracle: its codecs were written by others.
#pragma once

#include "support/Bytes.h"
#include "support/TemporaryFolder.h"

#include <cstdlib>

// What python3 writes when it runs `script` with `input` as its standard input.
inline std::string PythonSays(const std::string& script, std::string_view input = {}) {
    const TemporaryFolder folder;
    MakeFile(folder.Native() / "script.py", script);
    MakeFile(folder.Native() / "input", input);
    const std::string command =
        "cd " + folder.Native().string() + " && python3 script.py <input >output";
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("python3 failed; scripts/install-dependencies test installs it");
    return BytesOfFile(folder.Native() / "output");
}
