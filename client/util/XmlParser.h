// SPDX-License-Identifier: MIT
// Finds the elements of an XML text for XmlDocument: one pass, nothing copied, problems
// noted and passed over.
#pragma once

#include "client/util/XmlElementTable.h"
#include "platform/text/Text.h"

#include <cstddef>
#include <optional>
#include <unordered_map>

namespace Repository {

class XmlParser {
public:
    // Enters the text's elements into `table`, which was just reset; both must outlive
    // the parser. `text` is shorter than 4 Gi code units.
    XmlParser(CStringView text, XmlElementTable& table, bool ignoreCase);

    // Parses the text, once. Returns the first problem, or the empty text.
    CString Parse();

private:
    // Each takes the position of a "<" and returns where to go on.
    std::size_t ParseMarkup(std::size_t position);
    std::size_t ParseStartTag(std::size_t position);
    std::size_t ParseEndTag(std::size_t position);
    std::size_t ParseDeclaration(std::size_t position);
    std::size_t SkipBehind(CStringView end, std::size_t from, std::size_t position,
                           CStringView what);

    void Open(std::size_t position, std::size_t end);
    // Closes the innermost open element, whose extent ends at `end`.
    void Close(std::size_t end);
    void CloseNotEnded(std::size_t end);
    CStringView NameOf(std::uint32_t element) const;
    bool IsInnermost(CStringView name) const;
    bool IsOpen(CStringView name);
    CString KeyOf(CStringView name) const;

    void Problem(CStringView pattern, std::initializer_list<CStringView> values);

    CStringView m_text;
    XmlElementTable& m_table;
    bool m_ignoreCase;
    CString m_problem;
    std::uint32_t m_innermost = 0;  // open element; 0: the document
    std::uint32_t m_lastClosed = 0; // sibling before whatever opens next; 0: none
    std::optional<std::unordered_map<CString, std::size_t>> m_openNames;
};

} // namespace Repository
