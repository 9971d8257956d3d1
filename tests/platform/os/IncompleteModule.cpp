// SPDX-License-Identifier: MIT
// A module that needs a function that nobody has, and so cannot be loaded.
extern "C" int NobodyHasThisFunction();

extern "C" __attribute__((visibility("default"))) int SampleAnswer() {
    return NobodyHasThisFunction();
}
