// SPDX-License-Identifier: MIT
// The XML reader: where it says that elements stand, what it reads of them, and what it makes
// of well-formed documents that hold the input as a value, as a section and as a comment.
// The first byte of the input says whether case is ignored (odd) or not.
#include "Target.h"
#include "XmlTwin.h"
#include "client/util/XmlDocument.h"
#include "client/util/XmlParser.h"
#include "client/util/XmlText.h"

#include <algorithm>
#include <vector>

using namespace Fuzz;
using namespace Repository;

namespace {

constexpr std::uint32_t kSaturatedStartTag = (1u << 22) - 1;
constexpr std::uint32_t kSaturatedEndTag = (1u << 10) - 1;

std::size_t EndOf(const XmlElement& element) {
    return std::size_t{element.offset} + element.length;
}

void CheckTags(CStringView text, const XmlElement& element) {
    Require(EndOf(element) <= text.size(), "an element lies within the text");
    const CStringView all = text.substr(element.offset, element.length);
    Require(all.size() >= 3 && all[0] == u'<' && IsXmlNameStart(all[1]),
            "an element begins with < and a name");
    if (element.startTagLength < kSaturatedStartTag)
        Require(all.substr(0, element.startTagLength).ends_with(u'>'), "a start tag ends with >");
    const std::size_t endTag = element.endTagLength;
    if (endTag > 0 && endTag < kSaturatedEndTag)
        Require(element.startTagLength + endTag <= all.size() &&
                    all.substr(all.size() - endTag).starts_with(u"</") && all.ends_with(u'>'),
                "an end tag is the element's end");
    const bool isEmpty = element.flags & XmlElement::kNoEndTag;
    Require(!isEmpty || (endTag == 0 && element.firstChild == 0 && all.ends_with(u"/>")),
            "an element that ends with its start tag has neither end tag nor children");
    Require(endTag > 0 || isEmpty || (element.flags & XmlElement::kNotEnded),
            "an element has an end tag or says why not");
}

void CheckLinks(const XmlElementTable& table, std::uint32_t index) {
    const XmlElement& element = table[index];
    Require(element.parent < index, "a parent comes before its children");
    const XmlElement& parent = table[element.parent];
    const std::size_t inside = element.parent == 0 ? 0 : parent.offset + parent.startTagLength;
    Require(element.offset >= inside && EndOf(element) <= EndOf(parent),
            "a child lies within its parent");
    if (element.previousSibling == 0) {
        Require(parent.firstChild == index, "the first child is its parent's first");
        return;
    }
    const XmlElement& previous = table[element.previousSibling];
    Require(previous.nextSibling == index && previous.parent == element.parent &&
                EndOf(previous) <= element.offset,
            "siblings follow each other");
}

void CheckTable(CStringView text, const XmlElementTable& table) {
    Require(table[0].length == text.size(), "the document is the whole text");
    for (std::uint32_t index = 1; index < table.Size(); ++index) {
        CheckTags(text, table[index]);
        CheckLinks(table, index);
    }
}

// Each number behind "offset " in a problem.
void CheckProblem(const CString& problem, std::size_t size) {
    constexpr CStringView kBefore = u"offset ";
    for (std::size_t at = problem.find(kBefore); at != problem.npos;
         at = problem.find(kBefore, at + 1)) {
        std::size_t offset = 0;
        for (std::size_t i = at + kBefore.size(); i < problem.size(); ++i)
            if (problem[i] >= u'0' && problem[i] <= u'9')
                offset = offset * 10 + (problem[i] - u'0');
            else
                break;
        Require(offset < size, "a problem's offset lies within the text");
    }
}

// From memory that ends where the text does, so that a sanitizer sees a step beyond.
void CheckParser(CStringView text, bool ignoreCase) {
    const std::vector<char16_t> exact(text.begin(), text.end());
    const CStringView view(exact.data(), exact.size());
    XmlElementTable table;
    table.Reset(1);
    CheckProblem(XmlParser(view, table, ignoreCase).Parse(), text.size());
    CheckTable(view, table);
    XmlAttribute attribute;
    for (std::uint32_t index = 1; index < table.Size(); ++index)
        for (XmlTagReader tag(view, table[index].offset + std::size_t{1}); tag.Next(attribute);)
            Require(DecodeXmlText(attribute.value) == XmlTwin::Decode(attribute.value),
                    "a value is decoded as the plain reading does");
}

// The value of the first attribute that `name` asks for in a start tag, read from its text alone.
CString ValueIn(CStringView tag, CStringView name, bool ignoreCase) {
    XmlAttribute attribute;
    for (XmlTagReader reader(tag, 1); reader.Next(attribute);)
        if (XmlNameMatches(attribute.name, name, ignoreCase))
            return XmlTwin::Decode(attribute.value);
    return {};
}

// The top level's elements are found in their order, and what is read of one depends on its
// start tag alone.
void CheckTopLevel(XmlDocument& document, CStringView text, bool ignoreCase) {
    const XmlElementTable& table = document.GetElements();
    for (std::uint32_t at = table[0].firstChild; at != 0; at = table[at].nextSibling) {
        const XmlElement& element = table[at];
        const CString ownName(XmlNameAt(text, element.offset + std::size_t{1}));
        Require(document.FindElement(ownName.c_str()) != 0, "an element is found by its name");
        if (element.startTagLength == kSaturatedStartTag)
            return;
        const CStringView tag = text.substr(element.offset, element.startTagLength);
        XmlAttribute attribute;
        for (XmlTagReader reader(tag, 1); reader.Next(attribute);) {
            const CString name(attribute.name);
            Require(document.GetAttribute(name.c_str()) == ValueIn(tag, name, ignoreCase),
                    "an attribute is read from its own start tag");
        }
    }
    Require(document.FindElement(nullptr) == 0, "nothing else is found");
}

void CheckDocument(const CString& text, std::uint32_t options) {
    XmlDocument document;
    document.SetOptions(options);
    document.SetText(text.c_str());
    CheckTable(text, document.GetElements());
    CheckTopLevel(document, text, options != 0);
}

void CheckWellFormed(const CString& value, std::uint32_t options) {
    const bool canBeSection = value.find(u"]]>") == value.npos;
    const bool canBeComment = value.find(u"--") == value.npos && !value.ends_with(u'-');
    const CString text = u"<?xml version='1.0'?><nci a=\"" + XmlTwin::Escape(value) + u"\" b='" +
                         XmlTwin::Escape(value) + u"'>" + XmlTwin::Escape(value) + u"<x><y/></x>" +
                         (canBeSection ? u"<![CDATA[" + value + u"]]>" : u"") +
                         (canBeComment ? u"<!--" + value + u"-->" : u"") + u"</nci>";
    XmlDocument document;
    document.SetOptions(options);
    document.SetText(text.c_str());
    Require(document.GetResultText().empty(), "a well-formed document has no problem");
    Require(document.GetElements().Size() == 4, "three elements and the document");
    Require(document.FindElement(u"nci") != 0, "the root is found");
    Require(document.GetAttribute(u"a") == value && document.GetAttribute(u"b") == value,
            "an escaped value comes back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::uint32_t options = data[0] & 1 ? std::uint32_t{XmlDocument::kIgnoreCase} : 0;
    const CString all = TextOf(data + 1, size - 1);
    CheckParser(all, options != 0);
    const CString text(ToFirstNul(CStringView(all)));
    CheckDocument(text, options);
    CheckWellFormed(text, options);
    for (const char16_t character : {u'"', u'<', u'&'})
        Require(FindCharacter(all, character, all.size() / 2) ==
                    std::min(all.find(character, all.size() / 2), all.size()),
                "a character is found where the library finds it");
    return 0;
}
