// SPDX-License-Identifier: MIT
#include "ZEBXNetworkCore/CatalogManager.h"

#include "CatalogueDeclarations.h"
#include "CatalogueFile.h"
#include "CatalogueXml.h"

#include "ZEBXGisCore/XmlFile.h"
#include "platform/text/Utf8.h"

#include <unordered_map>

namespace ZEBGis::Data {
namespace {

CatalogueFolders FoldersNow() {
    const auto* configuration = CModuleConfiguration::Instance();
    return {configuration->GetPath(u"install"), configuration->GetPath(u"support")};
}

} // namespace

struct CCatalogManager::Content {
    // Everything that was read belongs to the folders that it was read from.
    void Refresh();
    const CCatalogMetadata& Known(const CString& reference);

    // Runs `operation` and keeps what it throws as the problem.
    template<typename Operation>
    auto Guard(Operation operation) -> decltype(operation());
    void TellNoMemory();

    bool isRead = false;
    CatalogueFolders folders;
    CatalogueDeclarations declarations;
    std::unordered_map<CString, CatalogPtr> catalogues;
    CString problem;
};

void CCatalogManager::Content::Refresh() {
    CatalogueFolders now = FoldersNow();
    if (isRead && now == folders)
        return;
    isRead = false;
    catalogues.clear();
    declarations = ReadDeclarations(now);
    folders = std::move(now);
    isRead = true;
}

const CCatalogMetadata& CCatalogManager::Content::Known(const CString& reference) {
    Refresh();
    for (const CatalogMetadataPtr& metadata : declarations.catalogues)
        if (metadata->GetCatalogReference() == reference)
            return *metadata;
    throw CatalogueError{CatalogueText(CatalogueMessage::UnknownTag, {reference})};
}

template<typename Operation>
auto CCatalogManager::Content::Guard(Operation operation) -> decltype(operation()) {
    try {
        problem.clear();
        return operation();
    } catch (CatalogueError& error) {
        problem.swap(error.text);
    } catch (...) {
        TellNoMemory();
    }
    return {};
}

void CCatalogManager::Content::TellNoMemory() try {
    problem = CatalogueText(CatalogueMessage::NoMemory);
} catch (...) {
}

CCatalogManager::CCatalogManager() : m_content(std::make_unique<Content>()) {}

CCatalogManager* CCatalogManager::Instance() {
    // Never destroyed: catalogues that others hold may outlive it.
    static auto* instance = new CCatalogManager;
    return instance;
}

const std::vector<CatalogMetadataPtr>& CCatalogManager::GetCatalogRegistry() {
    try {
        m_content->Refresh();
    } catch (...) {
        m_content->declarations = {};
    }
    return m_content->declarations.catalogues;
}

CatalogMetadataPtr CCatalogManager::GetCatalogMetadata(const char16_t* reference) try {
    for (const CatalogMetadataPtr& metadata : GetCatalogRegistry())
        if (metadata->GetCatalogReference() == Platform::TextOf(reference))
            return metadata;
    return {};
} catch (...) {
    return {};
}

const std::vector<CString>& CCatalogManager::GetRegistryProblems() {
    GetCatalogRegistry();
    return m_content->declarations.problems;
}

CatalogPtr CCatalogManager::GetCatalog(const char16_t* reference, int load) {
    return m_content->Guard([&]() -> CatalogPtr {
        const CString asked(Platform::TextOf(reference));
        m_content->Known(asked);
        if (const auto found = m_content->catalogues.find(asked);
            found != m_content->catalogues.end())
            return found->second;
        if (!load)
            throw CatalogueError{CatalogueText(CatalogueMessage::NotInMemory, {asked})};
        CatalogPtr catalog = ReadCatalogueFile(m_content->folders.support, asked);
        m_content->catalogues.emplace(asked, catalog);
        return catalog;
    });
}

int CCatalogManager::Save(const char16_t* reference, int keepPrevious, int) {
    return m_content->Guard([&] {
        const CString asked(Platform::TextOf(reference));
        m_content->Known(asked);
        const auto found = m_content->catalogues.find(asked);
        if (found == m_content->catalogues.end())
            throw CatalogueError{CatalogueText(CatalogueMessage::NotInMemory, {asked})};
        WriteCatalogueFile(m_content->folders.support, asked, *found->second, keepPrevious != 0);
        return 1;
    });
}

void CCatalogManager::Forget(const char16_t* reference) try {
    m_content->catalogues.erase(CString(Platform::TextOf(reference)));
} catch (...) {
}

CString CCatalogManager::GetProblem() const try { return m_content->problem; } catch (...) {
    return {};
}

CatalogItemPtr CCatalogManager::ParseCatalogItem(const char16_t* xml, const CatalogPtr&,
                                                 const CatalogItemPtr& parent) {
    return m_content->Guard([&] {
        CStringView text = Platform::TextOf(xml);
        if (text.starts_with(u'\xFEFF'))
            text.remove_prefix(1);
        if (const CString reason = TextProblem(text); !reason.empty())
            throw CatalogueError{
                CatalogueText(CatalogueMessage::AtLine,
                              {CatalogueText(CatalogueMessage::ItemXmlText), u"1", reason})};
        CatalogItemPtr item = CatalogueXml::ReadItem(XmlSource({}, Platform::ToUtf8(text)));
        if (parent)
            item->SetParentItem(parent);
        return item;
    });
}

} // namespace ZEBGis::Data
