// SPDX-License-Identifier: MIT
#include "storage/NameCheck.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>

namespace Storage {
namespace {

constexpr std::size_t kMaxNameBytes = 255;

// Some systems read these as devices, whatever stands behind the first dot.
bool IsReserved(CStringView name) {
    constexpr std::array<CStringView, 4> kDevices = {u"con", u"prn", u"aux", u"nul"};
    CString stem = Platform::FoldCase(name.substr(0, name.find(u'.')));
    stem.erase(stem.find_last_not_of(u' ') + 1);
    if (std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end())
        return true;
    const CStringView port = CStringView(stem).substr(0, 3);
    return stem.size() == 4 && (port == u"com" || port == u"lpt") && stem[3] >= u'1' &&
           stem[3] <= u'9';
}

} // namespace

std::optional<MessageNumber> CheckName(CStringView name) {
    if (name.empty())
        return MessageNumber::NameEmpty;
    if (name == u"." || name == u"..")
        return MessageNumber::NameIsFolder;
    if (name.find_first_of(u"/\\") != CStringView::npos)
        return MessageNumber::NameSeparator;
    if (name.find(u':') != CStringView::npos)
        return MessageNumber::NameColon;
    if (std::any_of(name.begin(), name.end(), [](char16_t c) { return c < 32 || c == 127; }))
        return MessageNumber::NameControl;
    if (!Platform::IsWellFormed(name))
        return MessageNumber::NameNotText;
    if (Platform::ToUtf8(name).size() > kMaxNameBytes)
        return MessageNumber::NameTooLong;
    if (IsReserved(name))
        return MessageNumber::NameReserved;
    return std::nullopt;
}

} // namespace Storage
