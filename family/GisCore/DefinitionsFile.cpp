// SPDX-License-Identifier: MIT
#include "DefinitionsFile.h"

#include "TextRepository.h"
#include "Texts.h"
#include "ZEBXGisCore/XmlFile.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <optional>

namespace ZEBGis {
namespace {

using Alone = DefinitionsText::Alone;

// What the file holds; nothing when it is missing.
std::optional<DefinitionsText> Read(CStringView path, const Declaration& declaration,
                                    Alone alone) try {
    std::string utf8;
    CString problem;
    switch (ReadXmlFile(path, utf8, problem)) {
    case XmlFileState::Missing:
        return std::nullopt;
    case XmlFileState::Unusable:
        throw DefinitionsProblem{problem};
    case XmlFileState::Read:
        break;
    }
    return DefinitionsText(std::move(utf8), declaration, alone);
} catch (const XmlFault& fault) {
    throw DefinitionsProblem{Told(path, fault)};
}

// Throws XmlFault when the item could not be read again from a file that holds it.
DefinitionsText::Element ElementOf(const CRepositoryItem& item, const Declaration& declaration) {
    for (const CString& text : {item.GetId(), item.GetName()}) {
        if (const CString problem = TextProblem(text); !problem.empty())
            throw XmlFault{0, {}, problem};
    }
    const CString xml = item.GetXML();
    if (xml.empty() || !Platform::IsWellFormed(xml))
        throw XmlFault{0, {}, Text(Message::NoXml)};
    const DefinitionsText text(Platform::ToUtf8(xml), declaration, Alone::Taken);
    if (text.Definitions().size() != 1 || text.Definitions().front().id != item.GetId())
        throw XmlFault{0, {}, Text(Message::NoXml)};
    const auto& only = text.Definitions().front();
    return {only.id, text.Utf8().substr(only.begin, only.end - only.begin)};
}

std::vector<DefinitionsText::Element> ElementsOf(const std::vector<const CRepositoryItem*>& items,
                                                 const TextRepositoryFactory& factory) {
    std::vector<DefinitionsText::Element> elements;
    for (const CRepositoryItem* item : items) {
        if (!item)
            continue;
        try {
            elements.push_back(ElementOf(*item, factory.Declared()));
        } catch (const XmlFault& fault) {
            const CString shown = item->GetId().empty() ? item->GetName() : item->GetId();
            throw DefinitionsProblem{Told(factory.GetFilePath(), {0, shown, fault.reason})};
        }
    }
    return elements;
}

// The file is written in UTF-8, whatever it was in.
void DeclareUtf8(std::string& text) {
    if (!text.starts_with("<?xml"))
        return;
    const std::size_t end = text.find("?>");
    std::string declaration = text.substr(0, end);
    const std::string folded =
        Platform::ToUtf8(Platform::FoldCase(Platform::FromUtf8(declaration)));
    if (folded.find("encoding") == std::string::npos || folded.find("utf-8") != std::string::npos)
        return;
    SetAttribute(declaration, "encoding", u"UTF-8");
    text.replace(0, end, declaration);
}

} // namespace

std::unique_ptr<CDefinitionRepository> ReadLocalDefinitions(const TextRepositoryFactory& factory) {
    std::optional<DefinitionsText> text;
    if (!factory.Folder().empty())
        text = Read(factory.GetFilePath(), factory.Declared(), Alone::Refused);
    return text ? std::make_unique<TextRepository>(factory.GetTag(), *text)
                : std::make_unique<TextRepository>(factory.GetTag());
}

std::unique_ptr<CDefinitionRepository> ReadAnyDefinitions(const TextRepositoryFactory& factory,
                                                          CStringView path) {
    const auto text = Read(path, factory.Declared(), Alone::Taken);
    if (!text)
        throw DefinitionsProblem{Told(path, {0, {}, Text(Message::NoFile)})};
    return std::make_unique<TextRepository>(factory.GetTag(), *text);
}

void WriteLocalDefinitions(const TextRepositoryFactory& factory,
                           const std::vector<const CRepositoryItem*>& items) {
    if (factory.Folder().empty())
        throw DefinitionsProblem{Text(Message::NoSupportFolder)};
    auto before = Read(factory.GetFilePath(), factory.Declared(), Alone::Refused);
    if (!before)
        before.emplace(EmptyDefinitionsText(factory.GetTag()), factory.Declared());
    std::string after = before->With(ElementsOf(items, factory));
    if (after == before->Utf8())
        return;
    DeclareUtf8(after);
    const CString previous = factory.Folder() + factory.GetTag() + u".previous.xml";
    CString problem;
    if (!WriteXmlFile(factory.GetFilePath(), previous, after, problem))
        throw DefinitionsProblem{problem};
}

CString ProblemInFlight() noexcept {
    try {
        throw;
    } catch (const DefinitionsProblem& problem) {
        return problem.text;
    } catch (const XmlFault& fault) {
        return fault.reason;
    } catch (...) {
        return Text(Message::NoMemory);
    }
}

} // namespace ZEBGis
