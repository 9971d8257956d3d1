// SPDX-License-Identifier: MIT
#include "storage/store/NameCheck.h"

#include "platform/os/FileName.h"

namespace Storage {

std::optional<MessageNumber> CheckName(CStringView name) {
    using Platform::FileNameFault;
    const auto fault = Platform::FaultOfFileName(name);
    if (!fault)
        return std::nullopt;
    switch (*fault) {
    case FileNameFault::Empty:
        return MessageNumber::NameEmpty;
    case FileNameFault::IsFolder:
        return MessageNumber::NameIsFolder;
    case FileNameFault::Separator:
        return MessageNumber::NameSeparator;
    case FileNameFault::Colon:
        return MessageNumber::NameColon;
    case FileNameFault::Control:
        return MessageNumber::NameControl;
    case FileNameFault::NotText:
        return MessageNumber::NameNotText;
    case FileNameFault::TooLong:
        return MessageNumber::NameTooLong;
    case FileNameFault::Reserved:
        break;
    }
    return MessageNumber::NameReserved;
}

} // namespace Storage
