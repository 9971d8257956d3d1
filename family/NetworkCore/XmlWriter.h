// SPDX-License-Identifier: MIT
// Writes XML text so that every value comes back exactly: what a reader would change (line
// breaks, tabs) is written as a reference.
#pragma once

#include "XmlNode.h"

namespace ZEBGis::Data {

// Which letters stand as they are.  Those that windows-1250 lacks are references in a text
// that may travel in a record, whose texts are bytes of that code page.
enum class XmlLetters { All, OfCodePage };

class XmlWriter;

// A line for each element, or everything in one line.
struct XmlLayout {
    bool hasLines = false;
    int level = 0;

    void Break(XmlWriter& writer) const;
    // For what stands below an element; text of other tools there keeps its blanks.
    XmlLayout Below(bool hasText) const { return {hasLines && !hasText, level + 1}; }
};

class XmlWriter {
public:
    explicit XmlWriter(XmlLetters letters) : m_letters(letters) {}

    void Markup(CStringView text) { m_text += text; }
    // A line break and that many levels of blanks.
    void Break(int level);
    void Attribute(CStringView name, CStringView value);
    void Attributes(const XmlAttributes& attributes);
    // With all below it, letter by letter.
    void Node(const XmlNode& node);

    CString Take() { return std::move(m_text); }

private:
    void Element(const XmlNode& node);
    void CData(CStringView text);
    // `marks` are the characters that are written as references.
    void Escaped(CStringView text, CStringView marks);
    void Reference(std::int32_t codePoint);

    XmlLetters m_letters;
    CString m_text;
};

} // namespace ZEBGis::Data
