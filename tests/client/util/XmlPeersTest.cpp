// SPDX-License-Identifier: MIT
// The records' XML reader against pugixml, on well-formed documents.
#include "XmlGenerator.h"
#include "client/util/XmlDocument.h"
#include "client/util/XmlText.h"
#include "platform/text/Utf8.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

using namespace Repository;

namespace {

// One element as either reader sees it, in the order of the start tags.
struct Seen {
    CString name;
    std::size_t depth = 0;
    std::vector<std::pair<CString, CString>> attributes;

    bool operator==(const Seen&) const = default;
};

[[maybe_unused]] void PrintTo(const Seen& seen, std::ostream* stream) {
    *stream << seen.depth << " <" << Platform::ToUtf8(seen.name);
    for (const auto& [name, value] : seen.attributes)
        *stream << " [" << Platform::ToUtf8(name) << "]=[" << Platform::ToUtf8(value) << "]";
}

void AppendAsPugixml(const pugi::xml_node& parent, std::size_t depth, std::vector<Seen>& all) {
    for (const pugi::xml_node node : parent.children()) {
        if (node.type() != pugi::node_element)
            continue;
        Seen& seen = all.emplace_back(Seen{Platform::FromUtf8(node.name()), depth, {}});
        for (const pugi::xml_attribute attribute : node.attributes())
            seen.attributes.emplace_back(Platform::FromUtf8(attribute.name()),
                                         Platform::FromUtf8(attribute.value()));
        AppendAsPugixml(node, depth + 1, all);
    }
}

std::vector<Seen> AsPugixml(const CString& text) {
    pugi::xml_document document;
    const auto result = document.load_buffer(text.data(), text.size() * sizeof(char16_t),
                                             pugi::parse_default, pugi::encoding_utf16);
    EXPECT_TRUE(result) << result.description() << " at " << result.offset;
    std::vector<Seen> all;
    AppendAsPugixml(document, 0, all);
    return all;
}

// The reader's cursor moves on the top level alone: an element inside others is read as a
// document of its own.
Seen ElementAt(const CString& text, const XmlElementTable& table, std::uint32_t index) {
    const XmlElement& element = table[index];
    const CString own = text.substr(element.offset, element.length);
    Seen seen{CString(XmlNameAt(own, 1)), 0, {}};
    for (std::uint32_t parent = element.parent; parent != 0; parent = table[parent].parent)
        ++seen.depth;
    XmlDocument document;
    document.SetText(own.c_str());
    EXPECT_EQ(document.GetResultText(), u"");
    EXPECT_NE(document.FindElement(seen.name.c_str()), 0);
    XmlAttribute attribute;
    for (XmlTagReader tag(own, 1); tag.Next(attribute);) {
        const CString name(attribute.name);
        seen.attributes.emplace_back(name, document.GetAttribute(name.c_str()));
    }
    return seen;
}

std::vector<Seen> AsTheReader(const CString& text) {
    XmlDocument document;
    document.SetText(text.c_str());
    EXPECT_EQ(document.GetResultText(), u"");
    std::vector<Seen> all;
    for (std::uint32_t index = 1; index < document.GetElements().Size(); ++index)
        all.push_back(ElementAt(text, document.GetElements(), index));
    return all;
}

} // namespace

TEST(XmlPeers, PugixmlSeesTheSameElementsAndAttributesInWellFormedDocuments) {
    std::size_t elements = 0;
    std::size_t attributes = 0;
    for (unsigned seed = 0; seed < 2000; ++seed) {
        const CString text = XmlGenerator(seed).Document();
        const auto expected = AsPugixml(text);
        ASSERT_EQ(AsTheReader(text), expected) << seed << ": " << Platform::ToUtf8(text);
        elements += expected.size();
        for (const Seen& seen : expected)
            attributes += seen.attributes.size();
    }
    EXPECT_GT(elements, 5000u);
    EXPECT_GT(attributes, 5000u);
}
