// SPDX-License-Identifier: MIT
#include "Documents.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

namespace AppTest {

nlohmann::json DocumentOf(const Ended& run) {
    const TemporaryFolder folder;
    const fs::path document = fs::path(folder.Native()) / "document.json";
    const fs::path problems = fs::path(folder.Native()) / "problems";
    Write(document, run.out);
    const std::string command = "/usr/bin/python3 '" ZEBX_SOURCE_DIR
                                "/tests/app/check_document.py' '" ZEBX_SOURCE_DIR
                                "/docs/schemas' <'" +
                                document.string() + "' >'" + problems.string() + "' 2>&1";
    EXPECT_EQ(system(command.c_str()), 0) << Bytes(problems) << run;
    auto parsed = nlohmann::json::parse(run.out, nullptr, false);
    EXPECT_EQ(parsed.value("status", -1), run.status) << run;
    return parsed;
}

} // namespace AppTest
