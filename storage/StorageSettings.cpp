// SPDX-License-Identifier: MIT
#include "storage/StorageSettings.h"

#include "platform/os/File.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"
#include "storage/Address.h"
#include "storage/StorageError.h"
#include "storage/sqlite/SqliteError.h"

#include <cerrno>
#include <optional>
#include <system_error>

namespace Storage {
namespace {

constexpr std::string_view kHead =
    "# Written by \"zebx connect\" or the connection window. An empty "
    "address means the user's own repository.\n";

const std::error_code kMissing(ENOENT, std::system_category());

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t from = text.find_first_not_of(kBlanks);
    if (from == std::string_view::npos)
        return {};
    return text.substr(from, text.find_last_not_of(kBlanks) - from + 1);
}

// The value of a line "address = value" that is acceptable; else `reasons` tell why the value is
// not, if it came to that.
std::optional<CString> AddressOfLine(std::string_view line, std::vector<Message>& reasons) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || Trimmed(line.substr(0, equals)) != "address")
        return std::nullopt;
    const CString address = Platform::FromUtf8(Trimmed(line.substr(equals + 1)));
    try {
        if (!address.empty())
            ParseAddress(address, {});
    } catch (const StorageError& error) {
        reasons = error.Messages();
        return std::nullopt;
    }
    return address;
}

// The address in a settings file; throws with the number of the line that is not understood.
CString ReadAddress(std::string_view text, const CString& file) {
    std::optional<CString> address;
    int number = 0;
    while (!text.empty()) {
        ++number;
        const std::size_t end = text.find('\n');
        const std::string_view line = Trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == '#')
            continue;
        std::vector<Message> messages;
        const std::optional<CString> value = AddressOfLine(line, messages);
        if (!value || address) {
            messages.insert(messages.begin(),
                            {MessageNumber::SettingsLine, {file, Platform::ToText(number)}});
            throw StorageError(Problem::Configuration, std::move(messages));
        }
        address = value;
    }
    // Always written, so a file without it has lost its end.
    if (!address)
        throw StorageError(Problem::Configuration, MessageNumber::SettingsCut, {file});
    return *address;
}

// Whether a file with that text says what would be written: its comments stay then.
bool HoldsAddress(std::string_view text, const CString& file, const CString& address) {
    try {
        return ReadAddress(text, file) == address;
    } catch (const StorageError&) {
        return false;
    }
}

} // namespace

CString StorageSettings::Path() const {
    return m_folder + u"ZEBXRepositoryClientPlugin_Sql.ini";
}

std::string StorageSettings::FileText() const {
    return std::string(kHead) + "address = " + Platform::ToUtf8(m_address) + "\n";
}

void StorageSettings::Load() {
    m_address.clear();
    if (m_folder.empty())
        return;
    std::string text;
    const std::error_code error = Platform::ReadFile(Path(), text);
    if (error == kMissing)
        return;
    if (error)
        throw StorageError(Problem::Configuration, MessageNumber::SettingsUnreadable,
                           {ShownPath(Path()), Platform::FromUtf8(error.message())});
    m_address = ReadAddress(text, ShownPath(Path()));
}

void StorageSettings::Save() const {
    if (m_folder.empty() && !m_address.empty())
        throw StorageError(Problem::Configuration, MessageNumber::NoSettingsFolder);
    std::string text;
    const std::error_code error = m_folder.empty() ? kMissing : Platform::ReadFile(Path(), text);
    // Without a file the address is empty anyway.
    if (HoldsAddress(text, {}, m_address) || (error == kMissing && m_address.empty()))
        return;
    Platform::CreateFolderChain(m_folder, Platform::Access::Private);
    if (const auto failure = Platform::ReplaceFile(Path(), FileText(), Platform::Access::Private))
        throw StorageError(Problem::Configuration, MessageNumber::SettingsNotWritten,
                           {ShownPath(Path()), Platform::FromUtf8(failure.message())});
}

} // namespace Storage
