// SPDX-License-Identifier: MIT
// What this module says about definitions, in the user's language.  The message table holds
// the texts under 12050 to 12099.
#pragma once

#include "platform/text/Text.h"

#include <initializer_list>

namespace ZEBGis {

enum class Message : int {
    // Where something is wrong
    InFile = 12050,
    InLine = 12051,
    InItem = 12052,
    InItemOfFile = 12053,
    NoMemory = 12054,

    // XML texts
    NotXml = 12055,
    TagsDoNotMatch = 12056,
    NoElement = 12057,
    MoreThanOneElement = 12058,
    OtherRoot = 12059,
    NoNumber = 12060,

    // Definitions
    OtherTag = 12065,
    NoId = 12066,
    SameId = 12067,
    EntityTypeNotAllowed = 12068,
    NoXml = 12069,
    UnknownTag = 12070,
    NoSupportFolder = 12071,
    NoFile = 12072,

    // Declarations
    TagEmpty = 12080,
    TagIsFolder = 12081,
    TagSeparator = 12082,
    TagControl = 12083,
    TagTooLong = 12084,
    TagOfThePrevious = 12085,
    TagNoText = 12086,
    TagDiffersByCase = 12087,
    NoEntityTypes = 12088,
    TagReserved = 12089
};

// The text, with its gaps filled by `values` in turn.
CString Text(Message message, std::initializer_list<CStringView> values = {});

struct XmlFault;

// The fault as one sentence: the file, the line, the item, the reason, as far as known.
CString Told(CStringView path, const XmlFault& fault);

} // namespace ZEBGis
