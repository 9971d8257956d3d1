// SPDX-License-Identifier: MIT
// The texts about XML files, from the message table.
#pragma once

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/text/Fill.h"

#include <initializer_list>

namespace ZEBGis {

enum class XmlMessage : int {
    NotRead = 12000,    // path, reason
    NotWritten = 12001, // path, reason

    // Reasons.
    Folder = 12002,
    Link = 12003,
    NoFile = 12004,
    Empty = 12005,
    TooLarge = 12006,         // bytes, the most that are read
    UnknownEncoding = 12007,  // its name
    Utf16WithoutMark = 12008, // in the place of an encoding's name
    ByteUnfit = 12009,        // byte, line, encoding
    CharacterInFile = 12010,  // byte, line, character
    NoFolder = 12011,         // the folder
    NoMemory = 12012,

    NotWellFormed = 12023,
    HasDoctype = 12024,
    BadReference = 12026, // what stands there

    // A text that XML cannot carry: character, place.
    CharacterInText = 12013,
    HalfCharacter = 12014,
};

inline CString XmlText(XmlMessage message, std::initializer_list<CStringView> values = {}) {
    return Platform::Fill(CModuleConfiguration::Instance()->GetMsg(static_cast<int>(message)),
                          values);
}

} // namespace ZEBGis
