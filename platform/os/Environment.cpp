// SPDX-License-Identifier: MIT
#include "platform/os/Environment.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <signal.h>

#include <pwd.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace Platform {

std::optional<CString> EnvironmentValue(const char* name) {
    const char* value = std::getenv(name);
    if (!value || !*value)
        return std::nullopt;
    return FromUtf8(value);
}

CString UserName() {
    const passwd* user = ::getpwuid(::geteuid());
    return user && user->pw_name && *user->pw_name ? FromUtf8(user->pw_name) : ToText(::geteuid());
}

CString HostName() {
    // A longer name is cut without a NUL at its end.
    char name[257] = {};
    ::gethostname(name, sizeof(name) - 1);
    return FromUtf8(name);
}

CString UtcNow() {
    const std::time_t now = std::time(nullptr);
    std::tm utc = {};
    ::gmtime_r(&now, &utc);
    char text[64];
    std::snprintf(text, sizeof(text), "%04d-%02d-%02dT%02d:%02d:%02dZ", utc.tm_year + 1900,
                  utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec);
    return FromUtf8(text);
}

CString LocalTimeOfDay(CStringView utc) {
    std::tm time = {};
    const std::string text = ToUtf8(utc);
    const char* end = ::strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &time);
    if (!end || *end)
        return CString(utc);
    const std::time_t seconds = ::timegm(&time);
    std::tm local = {};
    ::localtime_r(&seconds, &local);
    char shown[16];
    std::strftime(shown, sizeof(shown), "%H:%M:%S", &local);
    return FromUtf8(shown);
}

void IgnoreFileSizeSignal() {
    ::signal(SIGXFSZ, SIG_IGN);
}

bool IsTerminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

std::size_t TerminalColumns(int descriptor) {
    struct winsize size = {};
    return ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

} // namespace Platform
