// SPDX-License-Identifier: MIT
#include "XmlSource.h"

#include "CatalogBranch.h"
#include "XmlNode.h"

#include "ZEBXGisCore/XmlFile.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <new>

namespace ZEBGis::Data {
namespace {

// Items stand at most kMostLevels deep; this much more is for what they hold.
constexpr int kMostDepth = 2 * kMostLevels;

// Everything is kept, also blanks: they count inside the elements of other tools.
constexpr unsigned kParse = pugi::parse_full | pugi::parse_ws_pcdata | pugi::parse_fragment;

CString TextProblemOf(const pugi::xml_node& node) {
    CString problem = TextProblem(Platform::FromUtf8(node.value()));
    for (const pugi::xml_attribute& attribute : node.attributes())
        if (problem.empty())
            problem = TextProblem(Platform::FromUtf8(attribute.value()));
    return problem;
}

bool HasAttributeTwice(const pugi::xml_node& node, std::string& name) {
    std::vector<std::string_view> names;
    for (const pugi::xml_attribute& attribute : node.attributes())
        names.emplace_back(attribute.name());
    std::ranges::sort(names);
    const auto found = std::ranges::adjacent_find(names);
    if (found == names.end())
        return false;
    name = *found;
    return true;
}

} // namespace

struct SourceCheck : pugi::xml_tree_walker {
    explicit SourceCheck(const XmlSource& of) : source(of) {}

    bool for_each(pugi::xml_node& node) override {
        if (depth() > kMostDepth)
            Fail(node, CatalogueText(CatalogueMessage::TooDeep, {Platform::ToText(kMostLevels)}));
        if (node.type() == pugi::node_declaration && node.previous_sibling())
            Fail(node, CatalogueText(CatalogueMessage::NotWellFormed));
        // Characters can come in by references alone: the text itself was read as text.
        if (source.m_hasForeign)
            if (const CString problem = TextProblemOf(node); !problem.empty())
                Fail(node, problem);
        std::string name;
        if (HasAttributeTwice(node, name))
            Fail(node, CatalogueText(CatalogueMessage::AttributeTwice, {Platform::FromUtf8(name)}));
        return true;
    }
    [[noreturn]] void Fail(const pugi::xml_node& node, CStringView reason) const {
        for (pugi::xml_node item = node; item; item = item.parent())
            if (std::string_view(item.name()) == "item")
                throw CatalogueError{source.ProblemAtItem(item, reason)};
        throw CatalogueError{source.ProblemAt(node, reason)};
    }

    const XmlSource& source;
};

XmlSource::XmlSource(CString name, std::string utf8)
    : m_name(std::move(name)), m_utf8(std::move(utf8)) {
    CheckText();
    Parse();
    SourceCheck check(*this);
    m_document.traverse(check);
    CheckTopLevel();
}

void XmlSource::CheckText() {
    const auto fault = FindXmlTextFault(m_utf8);
    if (!fault)
        return;
    if (fault->kind == XmlTextFault::Kind::ForeignCharacter)
        m_hasForeign = true; // told with its item, once these are known
    else
        FailAt(fault->offset, fault->reason);
}

void XmlSource::Parse() {
    const pugi::xml_parse_result result =
        m_document.load_buffer(m_utf8.data(), m_utf8.size(), kParse, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory)
        throw std::bad_alloc();
    if (result)
        return;
    const auto offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0));
    const bool isAtEnd = offset + 1 >= m_utf8.size();
    FailAt(offset,
           CatalogueText(isAtEnd ? CatalogueMessage::EndsEarly : CatalogueMessage::NotWellFormed));
}

void XmlSource::CheckTopLevel() const {
    bool hasRoot = false;
    for (const pugi::xml_node& node : m_document) {
        const bool isElement = node.type() == pugi::node_element;
        const bool isText = node.type() == pugi::node_cdata || node.type() == pugi::node_pcdata;
        if ((isElement && hasRoot) || (isText && !IsBlankText(node)))
            throw CatalogueError{ProblemAt(node, CatalogueText(CatalogueMessage::BesideRoot))};
        hasRoot = hasRoot || isElement;
    }
    if (!hasRoot)
        FailAt(0, CatalogueText(CatalogueMessage::NotWellFormed));
}

pugi::xml_node XmlSource::Root(const char* name) const {
    const pugi::xml_node root = m_document.document_element();
    if (std::string_view(root.name()) != name)
        throw CatalogueError{ProblemAt(
            root, CatalogueText(CatalogueMessage::WrongRoot,
                                {Platform::FromUtf8(root.name()), Platform::FromUtf8(name)}))};
    return root;
}

std::int64_t XmlSource::LineOf(const pugi::xml_node& node) const {
    return XmlLineAt(m_utf8,
                     static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0)));
}

CString XmlSource::ProblemAt(const pugi::xml_node& node, CStringView reason) const {
    return CatalogueText(CatalogueMessage::AtLine,
                         {Name(), Platform::ToText(LineOf(node)), reason});
}

CString XmlSource::ProblemAtItem(const pugi::xml_node& item, CStringView reason) const {
    return CatalogueText(CatalogueMessage::AtItem,
                         {Name(), Platform::ToText(LineOf(item)),
                          Platform::FromUtf8(item.attribute("name").value()),
                          Platform::FromUtf8(item.attribute("guid").value()), reason});
}

CString XmlSource::Name() const {
    return m_name.empty() ? CatalogueText(CatalogueMessage::ItemXmlText) : m_name;
}

void XmlSource::FailAt(std::size_t offset, CStringView reason) const {
    throw CatalogueError{CatalogueText(
        CatalogueMessage::AtLine, {Name(), Platform::ToText(XmlLineAt(m_utf8, offset)), reason})};
}

} // namespace ZEBGis::Data
