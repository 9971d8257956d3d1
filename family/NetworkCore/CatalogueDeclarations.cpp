// SPDX-License-Identifier: MIT
#include "CatalogueDeclarations.h"

#include "CatalogueFile.h"
#include "XmlSource.h"
#include "YesNo.h"

#include "ZEBXGisCore/XmlFile.h"
#include "platform/os/FileName.h"
#include "platform/os/Path.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <boost/make_shared.hpp>

namespace ZEBGis::Data {
namespace {

constexpr CStringView kFile = u"Catalogues.xml";

CString Attribute(const pugi::xml_node& node, const char* name) {
    return Platform::FromUtf8(node.attribute(name).value());
}

// The pieces between any of the characters, empty ones left out.
std::vector<CString> Pieces(CStringView text, CStringView separators) {
    std::vector<CString> pieces;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find_first_of(separators, start), text.size());
        if (end > start)
            pieces.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    return pieces;
}

// The folder with "\" at its end; empty when it is none below the folder that it counts from.
CString RelativeFolder(CStringView written) {
    constexpr CStringView kSeparators = u"/\\";
    if (written.empty() || kSeparators.find(written.front()) != CStringView::npos)
        return {};
    CString folder;
    for (const CString& name : Pieces(written, kSeparators)) {
        if (Platform::FaultOfFileName(name))
            return {};
        folder += name + u"\\";
    }
    return folder;
}

// Reads the elements of one file.
class DeclarationReader {
public:
    DeclarationReader(const XmlSource& source, const CatalogueFolders& folders,
                      CatalogueDeclarations& out)
        : m_source(source), m_folders(folders), m_out(out) {}

    void Read();

private:
    using Declaration = CCatalogMetadata::Declaration;

    Declaration ReadCatalogue(const pugi::xml_node& node);
    void CheckReference(const pugi::xml_node& node, const CString& reference) const;
    void ReadName(const pugi::xml_node& node, Declaration& declaration);
    void ReadFiles(const pugi::xml_node& node, Declaration& declaration);
    CString BaseFolder(const pugi::xml_node& files) const;

    // The declaration has no effect.
    [[noreturn]] void Refuse(const pugi::xml_node& node, CStringView reason) const {
        throw CatalogueError{m_source.ProblemAt(node, reason)};
    }
    // The rest of the declaration counts.
    void Tell(const pugi::xml_node& node, CStringView reason) {
        m_out.problems.push_back(m_source.ProblemAt(node, reason));
    }

    const XmlSource& m_source;
    const CatalogueFolders& m_folders;
    CatalogueDeclarations& m_out;
};

void DeclarationReader::Read() {
    for (const pugi::xml_node& node : m_source.Root("catalogues").children("catalogue")) {
        try {
            m_out.catalogues.push_back(boost::make_shared<CCatalogMetadata>(ReadCatalogue(node)));
        } catch (const CatalogueError& error) {
            m_out.problems.push_back(error.text);
        }
    }
}

void DeclarationReader::CheckReference(const pugi::xml_node& node, const CString& reference) const {
    if (!IsFileReference(reference))
        Refuse(node, CatalogueText(CatalogueMessage::NoFileName, {reference}));
    // Names that differ by case alone are one file.
    const CString folded = Platform::FoldCase(reference);
    const bool isDeclared = std::ranges::any_of(m_out.catalogues, [&](const auto& other) {
        return Platform::FoldCase(other->GetCatalogReference()) == folded;
    });
    if (isDeclared)
        Refuse(node, CatalogueText(CatalogueMessage::DeclaredTwice, {reference}));
}

CCatalogMetadata::Declaration DeclarationReader::ReadCatalogue(const pugi::xml_node& node) {
    Declaration declaration;
    declaration.reference = Attribute(node, "reference");
    CheckReference(node, declaration.reference);
    if (const pugi::xml_attribute hidden = node.attribute("hidden")) {
        const CString value = Platform::FromUtf8(hidden.value());
        const std::optional<bool> isHidden = YesOrNo(value);
        if (!isHidden)
            Refuse(node, CatalogueText(CatalogueMessage::NeitherYesNorNo, {u"hidden", value}));
        declaration.hidden = *isHidden;
    }
    for (const pugi::xml_node& name : node.children("name"))
        ReadName(name, declaration);
    const pugi::xml_node files = node.child("files");
    if (files)
        ReadFiles(files, declaration);
    for (pugi::xml_node more = files.next_sibling("files"); more; more = more.next_sibling("files"))
        Tell(more, CatalogueText(CatalogueMessage::SecondElement, {u"files"}));
    if (const pugi::xml_attribute manager = node.attribute("fileManager"))
        declaration.fileManagerId = Platform::FromUtf8(manager.value());
    else if (files)
        declaration.fileManagerId = declaration.reference;
    return declaration;
}

void DeclarationReader::ReadName(const pugi::xml_node& node, Declaration& declaration) {
    const CString language = Attribute(node, "language");
    const CString name = Platform::FromUtf8(node.child_value());
    if (language.empty() || name.empty())
        Tell(node, CatalogueText(CatalogueMessage::NameWithoutLanguage));
    else if (!declaration.names.emplace(language, name).second)
        Tell(node, CatalogueText(CatalogueMessage::SecondElement, {u"name"}));
}

CString DeclarationReader::BaseFolder(const pugi::xml_node& files) const {
    const CString base = Attribute(files, "base");
    if (base == u"install")
        return m_folders.install;
    if (base == u"support")
        return m_folders.support;
    Refuse(files, CatalogueText(CatalogueMessage::UnknownBase, {base}));
}

void DeclarationReader::ReadFiles(const pugi::xml_node& node, Declaration& declaration) {
    const CString written = Attribute(node, "folder");
    const CString folder = RelativeFolder(written);
    if (folder.empty())
        Refuse(node, CatalogueText(CatalogueMessage::FolderOutside, {written}));
    declaration.filesFolder = BaseFolder(node) + folder;
    declaration.fileProperties = Pieces(Attribute(node, "properties"), u" \t\r\n");
    if (declaration.fileProperties.empty())
        Refuse(node, CatalogueText(CatalogueMessage::NoFileProperties));
}

void ReadFile(const CString& path, const CatalogueFolders& folders, CatalogueDeclarations& out) {
    std::string utf8;
    CString problem;
    switch (ReadXmlFile(path, utf8, problem)) {
    case XmlFileState::Missing:
        return;
    case XmlFileState::Unusable:
        throw CatalogueError{problem};
    case XmlFileState::Read:
        const XmlSource source(Platform::FromUtf8(Platform::NativePath(path)), std::move(utf8));
        DeclarationReader(source, folders, out).Read();
    }
}

} // namespace

CatalogueDeclarations ReadDeclarations(const CatalogueFolders& folders) {
    CatalogueDeclarations declarations;
    for (const CString& folder : {folders.install, folders.support}) {
        if (folder.empty())
            continue;
        try {
            ReadFile(CString(folder).append(kFile), folders, declarations);
        } catch (const CatalogueError& error) {
            declarations.problems.push_back(error.text);
        }
    }
    return declarations;
}

} // namespace ZEBGis::Data
