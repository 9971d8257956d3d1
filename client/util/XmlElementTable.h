// SPDX-License-Identifier: MIT
// What XmlDocument knows of its text: where the elements stand and how they hang
// together. Filled by the XML parser.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace Repository {

// Positions are indexes of UTF-16 code units, links are indexes into the table, 0: none.
struct XmlElement {
    enum Flags : std::uint32_t {
        kNotEnded = 1, // closed by an outer end tag or by the end of the text
        kNoEndTag = 2  // its start tag ends with "/>"
    };

    std::uint32_t offset;              // of the start tag's "<"
    std::uint32_t length;              // to behind its end tag, or to what closed it
    std::uint32_t startTagLength : 22; // both tag lengths saturate
    std::uint32_t endTagLength : 10;
    std::uint32_t flags;
    std::uint32_t parent;
    std::uint32_t firstChild;
    std::uint32_t nextSibling;
    std::uint32_t previousSibling;
};
static_assert(sizeof(XmlElement) == 32);

// Entry 0 is the document: its length is the text's, its first child the first element
// of the top level. Entries stand in segments, so that growing moves none of them.
class XmlElementTable {
public:
    // Drops what the table holds, makes room for `entries` and enters the document.
    void Reset(std::size_t entries) {
        m_segments.clear();
        m_size = 0;
        while (m_segments.size() * kSegmentSize < entries)
            AddSegment();
        Add({});
    }

    // Returns the new entry's index.
    std::uint32_t Add(const XmlElement& element) {
        if (m_size >> 16 == m_segments.size())
            AddSegment();
        (*this)[m_size] = element;
        return m_size++;
    }

    XmlElement& operator[](std::uint32_t index) {
        return m_segments[index >> 16][index & (kSegmentSize - 1)];
    }
    const XmlElement& operator[](std::uint32_t index) const {
        return m_segments[index >> 16][index & (kSegmentSize - 1)];
    }

    // The document counts too.
    std::uint32_t Size() const { return m_size; }

private:
    static constexpr std::uint32_t kSegmentSize = 65536;

    // Not initialised: the pages of entries that never come are never touched.
    void AddSegment() {
        m_segments.push_back(std::make_unique_for_overwrite<XmlElement[]>(kSegmentSize));
    }

    std::vector<std::unique_ptr<XmlElement[]>> m_segments;
    std::uint32_t m_size = 0;
};

} // namespace Repository
