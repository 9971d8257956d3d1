// SPDX-License-Identifier: MIT
// XML texts on disk, as the family's libraries read and write them: which encodings are
// understood, which texts can be kept, and files that are written whole or not at all.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <string>

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

} // namespace ZEBGis
