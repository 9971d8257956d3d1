// SPDX-License-Identifier: MIT
// The texts about catalogues, from the message table.
#pragma once

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/text/Fill.h"

#include <initializer_list>

namespace ZEBGis::Data {

enum class CatalogueMessage : int {
    NotWritten = 12001, // path, reason
    NoMemory = 12012,

    AtLine = 12015,      // source, line, reason
    AtItem = 12016,      // source, line, name, GUID, reason
    OfItem = 12017,      // name, GUID, reason
    ItemXmlText = 12018, // in the place of a source
    UnknownTag = 12019,  // reference
    NotInMemory = 12020, // reference
    NoSupportFolder = 12021,

    // Reasons: the XML.
    EndsEarly = 12022,
    NotWellFormed = 12023,
    AttributeTwice = 12025, // attribute
    BesideRoot = 12027,
    WrongRoot = 12028, // element, expected element
    TooDeep = 12029,   // levels

    // Reasons: catalogues.
    OtherCatalogue = 12030, // reference
    NoGuid = 12031,
    GuidTwice = 12032,
    OtherParent = 12033,     // parent
    ParentMissing = 12034,   // parent
    ParentsLoop = 12035,     // parent
    NeitherYesNorNo = 12036, // attribute, value

    // Reasons: declarations.
    NoFileName = 12037,    // reference
    DeclaredTwice = 12038, // reference
    UnknownBase = 12039,   // value
    FolderOutside = 12040, // folder
    NoFileProperties = 12041,
    SecondElement = 12042, // element
    NameWithoutLanguage = 12043
};

inline CString CatalogueText(CatalogueMessage message,
                             std::initializer_list<CStringView> values = {}) {
    return Platform::Fill(CModuleConfiguration::Instance()->GetMsg(static_cast<int>(message)),
                          values);
}

// Thrown within this library, with a text for the user.
struct CatalogueError {
    CString text;
};

} // namespace ZEBGis::Data
