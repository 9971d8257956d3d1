// SPDX-License-Identifier: MIT
// XML texts on disk, as the family's libraries read and write them: which encodings are
// understood, which texts can be kept, and files that are written whole or not at all.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ZEBGis {

enum class XmlFileState { Read, Missing, Unusable };

// Reads an XML file into `utf8`, without a byte order mark.  UTF-8, UTF-16 with a byte order
// mark, and what the XML declaration calls windows-1250 are understood; the declaration itself
// stays in `utf8` as it stands.  Unusable: `problem` says why, with the file's path, in the
// user's language, and `utf8` is empty.  The reasons: it cannot be read, is no ordinary file,
// is empty, has more than 256 MiB, has another encoding, bytes that do not fit the encoding or
// characters that XML does not have.
ZEBX_EXPORT XmlFileState ReadXmlFile(CStringView path, std::string& utf8, CString& problem);

// Makes the file hold exactly `utf8`, whole or not at all, also over a crash of the machine;
// the folder is created.  A file that holds it already is not touched.  `previousPath` not
// empty: what the file held before is kept there first.  False, with the path and the reason in
// `problem`, when it was not written; then the file stands as it was.
ZEBX_EXPORT bool WriteXmlFile(CStringView path, CStringView previousPath, std::string_view utf8,
                              CString& problem);

// What keeps `text` from being carried exactly by an XML text: which character, where, in the
// user's language; empty when nothing does.  Such are characters that XML does not have
// (controls but tab and line breaks, U+FFFE, U+FFFF) and halves of characters.
ZEBX_EXPORT CString TextProblem(CStringView text);

// Something in an XML text that a reader would pass over, or take for something else.
struct XmlTextFault {
    enum class Kind {
        Unreadable,      // everything behind it is in doubt
        ForeignCharacter // a reference to a character that XML does not have
    };
    Kind kind = Kind::Unreadable;
    std::size_t offset = 0;
    CString reason; // in the user's language
};

// The first Unreadable in the UTF-8 text, else the first ForeignCharacter; nothing when there is
// none.  Unreadable are a value without its closing quote, a document type declaration, whose
// entities nothing here would keep, and a reference to NUL, to half a character or beyond the
// last one.  Whether the rest is well-formed is the parser's to say.
ZEBX_EXPORT std::optional<XmlTextFault> FindXmlTextFault(std::string_view utf8);

// Counted from 1; an offset behind the end gives the last line.
ZEBX_EXPORT std::int64_t XmlLineAt(std::string_view utf8, std::size_t offset);

} // namespace ZEBGis
