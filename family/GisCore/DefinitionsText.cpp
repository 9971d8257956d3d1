// SPDX-License-Identifier: MIT
#include "DefinitionsText.h"

#include "DefinitionItem.h"
#include "Texts.h"
#include "WholeNumber.h"

#include "platform/text/Utf8.h"

#include <algorithm>

namespace ZEBGis {
namespace {

std::int32_t NumberOf(const pugi::xml_node& element, const char* attribute, std::int32_t missing) {
    if (element.attribute(attribute).empty())
        return missing;
    const CString text = TextOf(element, attribute);
    if (const auto number = WholeNumber(text))
        return *number;
    throw XmlFault{0, {}, Text(Message::NoNumber, {Platform::FromUtf8(attribute), text})};
}

CString Listed(const std::vector<enmEntityType>& types) {
    CString list;
    for (const enmEntityType type : types)
        list += (list.empty() ? u"" : u", ") + Platform::ToText(type);
    return list;
}

// A file of another tag in this one's place would mix the two.
void CheckTag(const XmlSource& source, const CString& tag) {
    const pugi::xml_node root = source.Root();
    if (!root.attribute("tag").empty() && TextOf(root, "tag") != tag)
        throw XmlFault{
            source.LineOf(root), {}, Text(Message::OtherTag, {TextOf(root, "tag"), tag})};
}

} // namespace

DefinitionsText::DefinitionsText(std::string utf8, const Declaration& declaration, Alone alone)
    : m_source(std::move(utf8)) {
    const pugi::xml_node root = m_source.Root();
    const std::string_view name = root.name();
    if (name == "definition" && alone == Alone::Taken) {
        Read(root, declaration);
        return;
    }
    if (name != "definitions")
        throw FaultOf(root, Text(Message::OtherRoot, {Platform::FromUtf8(name)}));
    CheckTag(m_source, declaration.tag);
    for (const pugi::xml_node element : root.children("definition"))
        Read(element, declaration);
}

void DefinitionsText::Read(const pugi::xml_node& element, const Declaration& declaration) try {
    Definition read;
    read.begin = m_source.BeginOf(element);
    read.end = m_source.EndOf(element);
    read.id = TextOf(element, "id");
    read.name = TextOf(element, "name");
    if (read.id.empty())
        throw XmlFault{0, {}, Text(Message::NoId)};
    CheckIdIsNew(read.id, read.begin);
    read.entityType = static_cast<enmEntityType>(NumberOf(element, "entityType", 0));
    read.topologyFunction = NumberOf(element, "topologyFunction", -1);
    read.topologyType = static_cast<enmTopologyType>(NumberOf(element, "topologyType", 0));
    if (!declaration.Allows(read.entityType))
        throw XmlFault{
            0,
            {},
            Text(Message::EntityTypeNotAllowed, {Platform::ToText(read.entityType), declaration.tag,
                                                 Listed(declaration.entityTypes)})};
    m_definitions.push_back(std::move(read));
} catch (const XmlFault& fault) {
    throw FaultOf(element, fault.reason);
}

void DefinitionsText::CheckIdIsNew(const CString& id, std::size_t begin) {
    const auto [same, isNew] = m_begins.emplace(id, begin);
    if (!isNew)
        throw XmlFault{
            0, {}, Text(Message::SameId, {Platform::ToText(m_source.LineAt(same->second))})};
}

XmlFault DefinitionsText::FaultOf(const pugi::xml_node& element, CString reason) const {
    return {m_source.LineOf(element), TextOf(element, "id"), std::move(reason)};
}

std::unique_ptr<CRepositoryItem> DefinitionsText::MakeItem(const Definition& definition) const {
    auto item = std::make_unique<CDefinitionItem>(
        Utf8().substr(definition.begin, definition.end - definition.begin));
    item->SetId(definition.id.c_str());
    item->SetName(definition.name.c_str());
    item->SetEntityType(definition.entityType);
    item->SetTopologyFunction(definition.topologyFunction);
    item->SetTopologyType(definition.topologyType);
    return item;
}

std::string DefinitionsText::With(const std::vector<Element>& elements) const {
    std::map<CStringView, std::string_view> left;
    for (const Element& element : elements)
        left[element.id] = element.xml;
    std::string text;
    std::size_t copied = 0;
    for (const Definition& definition : m_definitions) {
        const auto found = left.extract(definition.id);
        if (!found)
            continue;
        text.append(Utf8(), copied, definition.begin - copied).append(found.mapped());
        copied = definition.end;
    }
    std::vector<std::string_view> more;
    for (const Element& element : elements) {
        if (const auto found = left.extract(element.id))
            more.push_back(found.mapped());
    }
    Add(text, copied, more);
    return text;
}

// Copies the rest of the text, with more elements, each on a line of its own, at the root's end.
void DefinitionsText::Add(std::string& text, std::size_t from,
                          const std::vector<std::string_view>& more) const {
    const std::size_t end = m_source.EndOf(m_source.Root());
    const bool isEmptyTag = Utf8()[end - 2] == '/';
    const std::size_t place = isEmptyTag ? end - 2 : Utf8().rfind("</", end);
    if (more.empty()) {
        text.append(Utf8(), from);
        return;
    }
    text.append(Utf8(), from, place - from).append(isEmptyTag ? ">" : "");
    if (text.back() != '\n')
        text += '\n';
    for (const std::string_view element : more)
        text.append("  ").append(element).append("\n");
    text.append(isEmptyTag ? "</definitions>" : "").append(Utf8(), isEmptyTag ? end : place);
}

std::string EmptyDefinitionsText(CStringView tag) {
    std::string root = "<definitions></definitions>";
    SetAttribute(root, "tag", tag);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + root + "\n";
}

} // namespace ZEBGis
