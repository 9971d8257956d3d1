// SPDX-License-Identifier: MIT
// A file of definitions: what is read of it is read again as it was, and a change of one
// definition leaves every other byte where it stands.
#include "Target.h"

#include "family/GisCore/DefinitionItem.h"
#include "family/GisCore/DefinitionsText.h"

using namespace Fuzz;
using ZEBGis::DefinitionsText;

namespace {

// An id that no definition of the text has.
constexpr CStringView kNewId = u"not among them 😀";

const ZEBGis::Declaration& Declared() {
    static const ZEBGis::Declaration kDeclared{u"T", {}, {}};
    return kDeclared;
}

std::string SliceOf(const DefinitionsText& text, const DefinitionsText::Definition& definition) {
    return text.Utf8().substr(definition.begin, definition.end - definition.begin);
}

void RequireSame(const DefinitionsText::Definition& a, const DefinitionsText::Definition& b) {
    Require(a.id == b.id && a.name == b.name && a.entityType == b.entityType &&
                a.topologyFunction == b.topologyFunction && a.topologyType == b.topologyType,
            "a definition is read as it was written");
}

// Each element stands for itself and is kept to the byte.
std::vector<DefinitionsText::Element> ElementsOf(const DefinitionsText& text) {
    std::vector<DefinitionsText::Element> elements;
    std::size_t end = 0;
    for (const auto& definition : text.Definitions()) {
        const std::string slice = SliceOf(text, definition);
        Require(definition.begin >= end && slice.starts_with("<definition") && slice.back() == '>',
                "a definition is an element of the text, behind the one before");
        end = definition.end;
        Require(Platform::ToUtf8(text.MakeItem(definition)->GetXML()) == slice,
                "an unchanged item is its element");
        const DefinitionsText alone(slice, Declared(), DefinitionsText::Alone::Taken);
        Require(alone.Definitions().size() == 1, "an element is one definition");
        RequireSame(alone.Definitions().front(), definition);
        elements.push_back({definition.id, slice});
    }
    return elements;
}

// The definition with another name, number and id, and what else the text holds as it was.
void Change(const DefinitionsText& text, std::size_t index) {
    const auto& definition = text.Definitions()[index];
    const auto item = text.MakeItem(definition);
    const CString name = definition.id + u"<\"'&>\r\n\t]]>";
    item->SetName(name.c_str());
    item->SetTopologyType(static_cast<ZEBGis::enmTopologyType>(definition.topologyType ^ 1));
    const std::string changed = Platform::ToUtf8(item->GetXML());
    item->SetId(CString(kNewId).c_str());
    const std::string added = Platform::ToUtf8(item->GetXML());
    const std::string after = text.With({{CString(kNewId), added}, {definition.id, changed}});
    Require(after.starts_with(text.Utf8().substr(0, definition.begin) + changed),
            "what stands before a changed definition stays");
    const DefinitionsText read(after, Declared());
    const auto count = text.Definitions().size();
    Require(read.Definitions().size() == count + 1, "one more was added");
    for (std::size_t i = 0; i < count; ++i) {
        if (i != index)
            Require(SliceOf(read, read.Definitions()[i]) == SliceOf(text, text.Definitions()[i]),
                    "the others stay");
    }
    const auto& again = read.Definitions()[index];
    Require(again.id == definition.id && again.name == name &&
                again.topologyType == (definition.topologyType ^ 1) &&
                again.topologyFunction == definition.topologyFunction,
            "the changes are read, and nothing else changed");
    Require(read.Definitions().back().id == kNewId, "the new one is the last");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const DefinitionsText text(std::string(BytesOf(data, size)), Declared());
        const auto elements = ElementsOf(text);
        Require(text.With({}) == text.Utf8(), "nothing changed is the same text");
        Require(text.With(elements) == text.Utf8(), "its own definitions change nothing");
        for (std::size_t i = 0; i < elements.size() && i < 3; ++i)
            Change(text, i);
        if (elements.empty()) {
            const DefinitionsText read(text.With({{u"a", "<definition id='a'/>"}}), Declared());
            Require(read.Definitions().size() == 1, "a text without any takes one");
        }
    } catch (const ZEBGis::XmlFault& fault) {
        Require(!fault.reason.empty(), "a refusal has a reason");
    }
    return 0;
}
