// SPDX-License-Identifier: MIT
// A small XML reader over one text: it knows where the elements stand, moves a cursor
// over them and reads attributes; it copies nothing until asked for a value. Used to read
// the records of catalogue items, whose form is described in docs/formats.md.
#pragma once

#include "client/util/XmlElementTable.h"
#include "platform/text/Text.h"

namespace Repository {

class XmlDocument {
public:
    enum Options : std::uint32_t { kIgnoreCase = 8 };

    // Reads the empty text.
    XmlDocument() { SetText(nullptr); }

    // Replaces the document; the cursor then stands before the first element of the top
    // level. Null reads as the empty text, and so does one of 4 Gi code units or more. No
    // text is an error: what can be recognised of it is there, the first problem is the
    // result text. Throws std::bad_alloc.
    void SetText(const char16_t* text);

    // Moves the cursor to the next element of that name on its level; null and empty name
    // any. Returns non-zero, or 0 when there is none, and then the cursor stays. Elements
    // inside others are not seen.
    int FindElement(const char16_t* name);

    // The decoded value of the current element's first attribute of that name; the empty
    // text when there is none.
    CString GetAttribute(const char16_t* name) const;

    // What was wrong with the text; empty when it is well formed as far as this reader
    // looks. An offset in it is the index of the character that it speaks of, or of the
    // "<" of the tag.
    const CString& GetResultText() const { return m_resultText; }

    // A set of Options, for every comparison of names; none at first. Takes effect with
    // the next SetText.
    void SetOptions(std::uint32_t options) { m_options = options; }

    const XmlElementTable& GetElements() const { return m_elements; }

private:
    bool IgnoresCase() const { return m_options & kIgnoreCase; }

    CString m_text;
    CString m_resultText;
    std::uint32_t m_current = 0; // the cursor; 0: before the first element
    std::uint32_t m_options = 0;
    XmlElementTable m_elements;
};

} // namespace Repository
