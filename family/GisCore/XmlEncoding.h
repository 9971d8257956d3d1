// SPDX-License-Identifier: MIT
// The bytes of XML files and the characters that XML has; used by XmlFile alone.
// docs/formats.md says which encodings are understood.
#pragma once

#include "platform/text/Text.h"

#include <string>

namespace ZEBGis {

// Turns the bytes of an XML file into UTF-8 without a byte order mark; its XML declaration
// stays as it stands.  Returns why they are none, in the user's language, and the empty text
// when they are.
CString MakeUtf8(std::string& bytes);

} // namespace ZEBGis
