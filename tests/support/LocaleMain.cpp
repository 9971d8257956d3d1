// SPDX-License-Identifier: MIT
// The main of tests that also run under a foreign locale (see cmake/ZebxLocales.cmake):
// makes the locale that ZEBX_TEST_LOCALE names the whole process's, and fails when it did
// not become active, since the tests would then say nothing.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale>

#include <gmock/gmock.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace {

bool UseLocaleOfEnvironment(const char* wanted) {
#ifdef __SANITIZE_ADDRESS__
    // The C library keeps what it makes of LOCPATH without a pointer to it.
    const __lsan::ScopedDisabler leaksOfTheLibrary;
#endif
    const char* active = std::setlocale(LC_ALL, "");
    if (!active || std::strcmp(active, wanted) != 0)
        return false;
    std::locale::global(std::locale(""));
    // Both locales that the tests run under write a comma.
    return std::strcmp(std::localeconv()->decimal_point, ",") == 0;
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const char* wanted = std::getenv("ZEBX_TEST_LOCALE");
    if (wanted && !UseLocaleOfEnvironment(wanted)) {
        std::fprintf(stderr, "The locale %s did not become active.\n", wanted);
        return 1;
    }
    return RUN_ALL_TESTS();
}
