// SPDX-License-Identifier: MIT
// The definitions of one tag as their file holds them.  docs/formats.md describes it.
#pragma once

#include "Declarations.h"
#include "XmlSource.h"
#include "ZEBXGisCore/DefinitionRepository.h"

namespace ZEBGis {

class DefinitionsText {
public:
    struct Definition {
        std::size_t begin = 0; // in the text
        std::size_t end = 0;
        CString id;
        CString name;
        enmEntityType entityType{};
        std::int32_t topologyFunction = -1;
        enmTopologyType topologyType{};
    };
    // Whether one <definition> without <definitions> around it is taken, too.
    enum class Alone { Refused, Taken };

    // Throws XmlFault when the text does not hold definitions that the declaration allows.
    DefinitionsText(std::string utf8, const Declaration& declaration, Alone alone = Alone::Refused);

    const std::string& Utf8() const { return m_source.Utf8(); }
    // In the order of the text.
    const std::vector<Definition>& Definitions() const { return m_definitions; }

    // A new item with all that the definition has.
    std::unique_ptr<CRepositoryItem> MakeItem(const Definition& definition) const;

    struct Element {
        CString id;
        std::string xml;
    };
    // The text with these elements in the places of those that have their ids, and the others
    // behind all that is there, in order.  Of two with one id the later counts.
    std::string With(const std::vector<Element>& elements) const;

private:
    void Read(const pugi::xml_node& element, const Declaration& declaration);
    void CheckIdIsNew(const CString& id, std::size_t begin);
    XmlFault FaultOf(const pugi::xml_node& element, CString reason) const;
    void Add(std::string& text, std::size_t from, const std::vector<std::string_view>& more) const;

    XmlSource m_source;
    std::vector<Definition> m_definitions;
    std::map<CString, std::size_t> m_begins; // by id
};

// A text without any definition.
std::string EmptyDefinitionsText(CStringView tag);

} // namespace ZEBGis
