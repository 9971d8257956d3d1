// SPDX-License-Identifier: MIT
// The small pieces of XML text: names, the attributes of a start tag, entities. Used by
// the parser and by XmlDocument, so that both see the same tags.
#pragma once

#include "platform/text/Text.h"

#include <cstddef>

namespace Repository {

// The position of the first `character` at or behind `position`, or the text's length.
// Four code units at a time: most of a record is one attribute of many megabytes.
std::size_t FindCharacter(CStringView text, char16_t character, std::size_t position);

// A letter, "_" or ":". Every character beyond ASCII counts as a letter.
bool IsXmlNameStart(char16_t character);

// A blank or one of <>=\/?!.
bool EndsXmlName(char16_t character);

// The name at or, behind blanks, after `position`: the characters before the next blank
// or one of <>=\/?! but at least one, unless the text ends there.
CStringView XmlNameAt(CStringView text, std::size_t position);

// Whether `asked` names what `name` is: it begins with the whole name and ends there or
// goes on with one of " =/[]".
bool XmlNameMatches(CStringView name, CStringView asked, bool ignoreCase);

// Whether the two names are the same.
bool SameXmlName(CStringView left, CStringView right, bool ignoreCase);

struct XmlAttribute {
    CStringView name;
    CStringView value; // without its quotes, not decoded
};

// Walks over a start tag.
class XmlTagReader {
public:
    // `position` is behind the tag's "<"; the tag's name is skipped.
    XmlTagReader(CStringView text, std::size_t position);

    // Takes the next attribute; false at a "/", ">" or "?" that is not inside quotes, and
    // at the end of the text.
    bool Next(XmlAttribute& attribute);

    // Skips what Next stops at until the tag's ">". Returns its position, or npos when
    // the text ends before.
    std::size_t FindEnd();

private:
    bool AtEnd() const { return m_position >= m_text.size(); }
    void SkipBlanks();
    CStringView TakeToken(unsigned stops);

    CStringView m_text;
    std::size_t m_position;
};

// `value` with its entities and character references replaced by what they stand for;
// every other "&" stays.
CString DecodeXmlText(CStringView value);

} // namespace Repository
