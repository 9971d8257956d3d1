// SPDX-License-Identifier: MIT
#include "platform/os/FileName.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>

namespace Platform {
namespace {

constexpr std::size_t kMaxNameBytes = 255;

bool IsReserved(CStringView name) {
    constexpr std::array<CStringView, 4> kDevices = {u"con", u"prn", u"aux", u"nul"};
    CString stem = FoldCase(name.substr(0, name.find(u'.')));
    stem.erase(stem.find_last_not_of(u' ') + 1);
    if (std::find(kDevices.begin(), kDevices.end(), stem) != kDevices.end())
        return true;
    const CStringView port = CStringView(stem).substr(0, 3);
    return stem.size() == 4 && (port == u"com" || port == u"lpt") && stem[3] >= u'1' &&
           stem[3] <= u'9';
}

} // namespace

std::optional<FileNameFault> FaultOfFileName(CStringView name) {
    if (name.empty())
        return FileNameFault::Empty;
    if (name == u"." || name == u"..")
        return FileNameFault::IsFolder;
    if (name.find_first_of(u"/\\") != CStringView::npos)
        return FileNameFault::Separator;
    if (name.find(u':') != CStringView::npos)
        return FileNameFault::Colon;
    if (std::any_of(name.begin(), name.end(), [](char16_t c) { return c < 32 || c == 127; }))
        return FileNameFault::Control;
    if (!IsWellFormed(name))
        return FileNameFault::NotText;
    if (ToUtf8(name).size() > kMaxNameBytes)
        return FileNameFault::TooLong;
    if (IsReserved(name))
        return FileNameFault::Reserved;
    return std::nullopt;
}

} // namespace Platform
