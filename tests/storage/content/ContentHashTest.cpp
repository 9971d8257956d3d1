// SPDX-License-Identifier: MIT
#include "storage/content/ContentHash.h"

#include "support/InAChildProcess.h"

namespace {

// As long as the process, like the plug-in's backend; ends after what registers itself later.
struct HashesAtTheEnd {
    ~HashesAtTheEnd() {
        if (!expected.empty())
            std::_Exit(Storage::ContentHash("content") == expected ? 0 : 1);
    }
    std::string expected;
} g_hashesAtTheEnd;

} // namespace

TEST(ContentHash, CanBeMadeByObjectsThatOutliveMain) {
    EXPECT_TRUE(PassesInAChildProcess([] {
        g_hashesAtTheEnd.expected = Storage::ContentHash("content");
        std::exit(2);
    }));
}
