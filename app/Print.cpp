// SPDX-License-Identifier: MIT
#include "app/Print.h"

#include "platform/os/Path.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace App {
namespace {

bool IsLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::vector<CStringView> WordsOf(CStringView text) {
    std::vector<CStringView> words;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(u' ', start), text.size());
        if (end > start)
            words.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return words;
}

} // namespace

void Print(std::ostream& stream, CStringView text) {
    stream << Platform::ToDisplay(text);
}

void PrintLine(std::ostream& stream, CStringView text) {
    Print(stream, text);
    stream << '\n';
}

CString ShownPath(CStringView path) {
    return Platform::FromUtf8(Platform::NativePath(path));
}

CString ShownTime(const CString& time) {
    if (time.size() != 20 || time[10] != u'T')
        return time;
    return time.substr(0, 10) + u" " + time.substr(11, 5);
}

std::size_t WidthOf(CStringView text) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool second = i > 0 && IsLowSurrogate(text[i]) && (text[i - 1] & 0xFC00) == 0xD800;
        width += second ? 0 : 1;
    }
    return width;
}

CString PadRight(CStringView text, std::size_t width) {
    CString padded(text);
    padded.append(width - std::min(width, WidthOf(text)), u' ');
    return padded;
}

CString PadLeft(CStringView text, std::size_t width) {
    return CString(width - std::min(width, WidthOf(text)), u' ').append(text);
}

void PrintWrapped(std::ostream& stream, CStringView lead, CStringView text) {
    const std::size_t indent = WidthOf(lead);
    CString line(lead);
    bool begun = false;
    for (const CStringView word : WordsOf(text)) {
        if (begun && WidthOf(line) + 1 + WidthOf(word) > kLineWidth) {
            PrintLine(stream, line);
            line.assign(indent, u' ');
            begun = false;
        }
        line.append(begun ? u" " : u"").append(word);
        begun = true;
    }
    PrintLine(stream, line);
}

CString BrokenLines(CStringView text, std::size_t indent, std::size_t width) {
    CString broken(text);
    std::size_t start = 0;             // of the line
    std::size_t blank = CString::npos; // the line's last one behind a word
    const auto beginLine = [&](std::size_t at) {
        start = at;
        blank = CString::npos;
        indent = 0;
    };
    for (std::size_t i = 0; width > 0 && i < broken.size(); ++i) {
        const CStringView line = CStringView(broken).substr(start, i - start);
        if (broken[i] == u'\n') {
            beginLine(i + 1);
        } else if (broken[i] == u' ') {
            if (line.find_first_not_of(u' ') != CStringView::npos)
                blank = i;
        } else if (blank != CString::npos && indent + WidthOf(line) >= width) {
            broken[blank] = u'\n';
            beginLine(blank + 1);
        }
    }
    return broken;
}

Table::Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

void Table::Add(std::vector<CString> row) {
    // A name with a line break in it must not pass for a row.
    for (CString& text : row)
        std::replace_if(
            text.begin(), text.end(), [](char16_t c) { return c < u' '; }, u'?');
    m_rows.push_back(std::move(row));
}

void Table::Print(std::ostream& stream) const {
    std::vector<CString> titles;
    for (const Column& column : m_columns)
        titles.push_back(column.title);
    std::vector<std::size_t> widths(m_columns.size(), 0);
    const auto widen = [&widths](const std::vector<CString>& row) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], WidthOf(row[i]));
    };
    const auto print = [this, &widths, &stream](const std::vector<CString>& row) {
        CString line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += i > 0 ? u"  " : u"";
            if (m_columns[i].align == Align::Right)
                line += PadLeft(row[i], widths[i]);
            else
                line += i + 1 < row.size() ? PadRight(row[i], widths[i]) : row[i];
        }
        line.erase(line.find_last_not_of(u' ') + 1); // an empty last text
        PrintLine(stream, line);
    };
    widen(titles);
    std::for_each(m_rows.begin(), m_rows.end(), widen);
    print(titles);
    std::for_each(m_rows.begin(), m_rows.end(), print);
}

} // namespace App
