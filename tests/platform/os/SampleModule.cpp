// SPDX-License-Identifier: MIT
// A module for the tests of loading and of versions.
#define ZEBX_EXPORT __attribute__((visibility("default")))

extern "C" ZEBX_EXPORT int SampleAnswer() {
    static int calls = 0;
    return 41 + ++calls;
}

extern "C" int SampleSecret() {
    return 0;
}
