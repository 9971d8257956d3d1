// SPDX-License-Identifier: MIT
#include "storage/ConnectionParameters.h"

#include "platform/os/FreeName.h"
#include "storage/ConnectionTrial.h"

namespace Storage {

Connection ConnectionParameters::Current() try {
    return {m_access.ShownAddress(), false};
} catch (...) {
    return {};
}

CString ConnectionParameters::DefaultAddress() try {
    return Storage::DefaultAddress().Text();
} catch (...) {
    return {};
}

std::vector<ConnectionStep> ConnectionParameters::Test(const Connection& connection) try {
    return TestConnection(
        connection,
        [this](CStringView text) { return m_access.PlaceOf(text, Platform::CurrentFolder()); },
        [this](const Message& message) { return m_access.TextOf(message); });
} catch (...) {
    return {};
}

} // namespace Storage
