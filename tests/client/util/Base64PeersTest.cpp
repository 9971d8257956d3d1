// SPDX-License-Identifier: MIT
// The base64 codec against Python's and against the naive one.
#include "client/util/Codec.h"
#include "support/NaiveBase64.h"
#include "support/Python.h"

#include <gtest/gtest.h>

using namespace Repository;

namespace {

constexpr std::size_t kLongest = 4096;

std::string BytesOfLength(std::size_t length) {
    return SomeBytes(length, static_cast<unsigned>(length));
}

} // namespace

TEST(Base64Peers, EveryLengthUpToFourThousandIsWhatTheNaiveWayMakesOfIt) {
    for (std::size_t length = 0; length <= kLongest; ++length) {
        const std::string bytes = BytesOfLength(length);
        const std::string text = EncodeBase64(bytes);
        ASSERT_EQ(text, NaiveBase64::Encode(bytes)) << length;
        ASSERT_EQ(NaiveBase64::Decode(text), bytes) << length;
        ASSERT_EQ(DecodeBase64(text), bytes) << length;
    }
}

TEST(Base64Peers, EveryLengthUpToFourThousandIsEncodedAsPythonDoes) {
    std::string all;
    for (std::size_t length = 0; length <= kLongest; ++length)
        all += BytesOfLength(length);
    std::istringstream lines(PythonSays("import base64, sys\n"
                                        "for length in range(4097):\n"
                                        "    data = sys.stdin.buffer.read(length)\n"
                                        "    assert len(data) == length\n"
                                        "    print(base64.b64encode(data).decode())\n",
                                        all));
    std::string line;
    for (std::size_t length = 0; length <= kLongest; ++length) {
        ASSERT_TRUE(std::getline(lines, line)) << length;
        ASSERT_EQ(EncodeBase64(BytesOfLength(length)), line) << length;
    }
}

// Python refuses what is malformed, so that it reads only what was encoded.
TEST(Base64Peers, PythonDecodesEveryLengthUpToFourThousandToTheSameBytes) {
    std::string lines, all;
    for (std::size_t length = 0; length <= kLongest; ++length) {
        lines += EncodeBase64(BytesOfLength(length)) + '\n';
        all += BytesOfLength(length);
    }
    EXPECT_TRUE(PythonSays("import base64, sys\n"
                           "for line in sys.stdin:\n"
                           "    data = base64.b64decode(line.rstrip('\\n'), validate=True)\n"
                           "    sys.stdout.buffer.write(data)\n",
                           lines) == all);
}
