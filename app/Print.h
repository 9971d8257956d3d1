// SPDX-License-Identifier: MIT
// Text on its way to the user: safe for a terminal, in columns, within a line's width.
#pragma once

#include "platform/text/Text.h"

#include <iosfwd>
#include <vector>

namespace App {

// Readable on the narrowest terminal that people use.
inline constexpr std::size_t kLineWidth = 80;

// Writes `text` in UTF-8, with nothing in it that could steer a terminal.
void Print(std::ostream& stream, CStringView text);
// The same and a line feed.
void PrintLine(std::ostream& stream, CStringView text);

// A path as people type it.
CString ShownPath(CStringView path);

// A time like "2026-11-21T08:05:19Z" to the minute, so that a line stays short; another text
// stays as it is.
CString ShownTime(const CString& time);

// The columns that `text` takes: its code points.
std::size_t WidthOf(CStringView text);

// `text` with blanks up to `width`, behind it or before it; longer text stays as it is.
CString PadRight(CStringView text, std::size_t width);
CString PadLeft(CStringView text, std::size_t width);

// Writes `lead` and then `text`, broken at blanks before column kLineWidth; every line
// after the first is led by as many blanks as `lead` takes.  A word that is too long for
// a line stays whole.
void PrintWrapped(std::ostream& stream, CStringView lead, CStringView text);

// `text` with line feeds in place of the blanks at which a line has to end so that no word
// goes beyond column `width`; a longer word stays whole.  The first line begins at column
// `indent`.  Width 0 breaks nothing.
CString BrokenLines(CStringView text, std::size_t indent, std::size_t width);

// Lines in columns.
class Table {
public:
    enum class Align { Left, Right };
    struct Column {
        CString title;
        Align align = Align::Left;
    };

    explicit Table(std::vector<Column> columns);

    // One text for each column.
    void Add(std::vector<CString> row);
    bool IsEmpty() const { return m_rows.empty(); }

    // The titles and the rows, each column as wide as its widest text, without blanks at the
    // ends of lines.
    void Print(std::ostream& stream) const;

private:
    std::vector<Column> m_columns;
    std::vector<std::vector<CString>> m_rows;
};

} // namespace App
