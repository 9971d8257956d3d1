// SPDX-License-Identifier: MIT
#include "storage/Address.h"

#include "platform/os/Path.h"
#include "platform/os/UserFolders.h"
#include "platform/text/CaseFold.h"
#include "storage/StorageError.h"
#include "storage/postgres/PostgresLogin.h"
#include "storage/sqlite/SqliteError.h"

#include <algorithm>

namespace Storage {
namespace {

[[noreturn]] void Refuse(MessageNumber number, std::vector<CString> values = {}) {
    throw StorageError(Problem::Configuration, number, std::move(values));
}

bool IsSeparator(char16_t unit) {
    return unit == u'/' || unit == u'\\';
}

// What stands before the first ":", when it can be the name of an engine.
CString SchemeOf(CStringView text) {
    const std::size_t colon = text.find(u':');
    if (colon == CStringView::npos || colon < 2)
        return {};
    const CString scheme = Platform::FoldCase(text.substr(0, colon));
    const bool word = std::all_of(scheme.begin(), scheme.end(), [](char16_t unit) {
        return (unit >= u'a' && unit <= u'z') || (unit >= u'0' && unit <= u'9') || unit == u'+';
    });
    return word ? scheme : CString();
}

CString WithSeparators(CStringView path) {
    CString result(path);
    std::replace(result.begin(), result.end(), u'/', u'\\');
    return result;
}

void CheckPath(CStringView path) {
    const bool control = std::any_of(path.begin(), path.end(),
                                     [](char16_t unit) { return unit < 32 || unit == 127; });
    const bool host =
        path.size() > 2 && IsSeparator(path[0]) && IsSeparator(path[1]) && !IsSeparator(path[2]);
    // A shell leaves "~" alone behind the colon, and nobody wants a folder of that name.
    const bool home = path.substr(0, 2) == u"~/";
    if (path.empty() || IsSeparator(path.back()) || control || host || home)
        Refuse(MessageNumber::NotAnAddress);
}

} // namespace

CString Address::Text() const {
    return IsServer() ? server : u"sqlite:" + ShownPath(path);
}

Address ParseAddress(CStringView text, CStringView currentFolder) {
    const CString scheme = SchemeOf(text);
    if (scheme == u"postgresql" || scheme == u"postgres") {
        CheckServerUri(CString(text));
        return {.server = CString(text)};
    }
    if (scheme.empty())
        Refuse(MessageNumber::NotAnAddress);
    if (scheme != u"sqlite")
        Refuse(MessageNumber::UnknownEngine, {scheme});
    const CStringView path = text.substr(scheme.size() + 1);
    CheckPath(path);
    if (IsSeparator(path.front()))
        return {.path = WithSeparators(path.substr(path.find_first_not_of(u"/\\") - 1))};
    if (currentFolder.empty())
        Refuse(MessageNumber::RelativeAddress, {CString(text)});
    return {.path = CString(currentFolder) + WithSeparators(path)};
}

Address DefaultAddress() {
    const CString folder = Platform::DataFolder();
    if (folder.empty())
        Refuse(MessageNumber::NoDefaultFolder);
    return {.path = folder + u"StudioZEB\\repository.db"};
}

} // namespace Storage
