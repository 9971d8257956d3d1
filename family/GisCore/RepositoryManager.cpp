// SPDX-License-Identifier: MIT
#include "ZEBXGisCore/RepositoryManager.h"

#include "DefinitionsFile.h"
#include "Factories.h"
#include "Texts.h"
#include "XmlSource.h"
#include "ZEBXGisCore/ModuleConfiguration.h"

#include "platform/text/Text.h"

namespace ZEBGis {

struct CRepositoryManager::Content {
    Content(CString installFolder, CString supportFolder)
        : install(std::move(installFolder)), support(std::move(supportFolder)) {
        std::vector<Declaration> declarations;
        for (const CString& folder : {install, support}) {
            if (!folder.empty())
                ReadDeclarations(folder + u"Definitions.xml", declarations, problems);
        }
        for (Declaration& declaration : declarations) {
            const CString tag = declaration.tag;
            // Without a support folder there are none, and none of the current folder's.
            const CString folder = support.empty() ? CString() : support + u"Definitions\\";
            owned.push_back(
                std::make_unique<TextRepositoryFactory>(std::move(declaration), folder));
            factories.emplace(tag, owned.back().get());
            declared.emplace(tag, owned.back().get());
        }
    }

    // Throws XmlFault, without a place, for a tag that is not declared.
    const TextRepositoryFactory& Declared(CStringView tag) const {
        const auto found = declared.find(CString(tag));
        if (found == declared.end())
            throw XmlFault{0, {}, Text(Message::UnknownTag, {tag})};
        return *found->second;
    }

    CString install;
    CString support;
    std::vector<std::unique_ptr<TextRepositoryFactory>> owned;
    std::map<CString, CRepositoryFactory*> factories;
    std::map<CString, TextRepositoryFactory*> declared;
    DefinitionItemFactory itemFactory;
    std::vector<CString> problems;
};

CRepositoryManager::CRepositoryManager() = default;

CRepositoryManager* CRepositoryManager::Instance() {
    static CRepositoryManager instance;
    return &instance;
}

CRepositoryManager::Content& CRepositoryManager::Current() {
    const auto& configuration = *CModuleConfiguration::Instance();
    const CString install = configuration.GetPath(u"install");
    const CString support = configuration.GetPath(u"support");
    if (!m_content || m_content->install != install || m_content->support != support)
        m_content = std::make_unique<Content>(install, support);
    return *m_content;
}

const std::map<CString, CRepositoryFactory*>& CRepositoryManager::GetRepositoryFactories() try {
    return Current().factories;
} catch (...) {
    static const std::map<CString, CRepositoryFactory*> kNone;
    return kNone;
}

CRepositoryFactory* CRepositoryManager::GetRepositoryfactory(const char16_t* tag) try {
    const auto& factories = Current().factories;
    const auto found = factories.find(CString(Platform::TextOf(tag)));
    return found != factories.end() ? found->second : nullptr;
} catch (...) {
    return nullptr;
}

CRepositoryItemFactory* CRepositoryManager::GetRIF(const char16_t* tag) try {
    Content& content = Current();
    const bool isDeclared = content.declared.contains(CString(Platform::TextOf(tag)));
    return isDeclared ? &content.itemFactory : nullptr;
} catch (...) {
    return nullptr;
}

const std::vector<CString>& CRepositoryManager::GetDeclarationProblems() try {
    return Current().problems;
} catch (...) {
    static const std::vector<CString> kNone;
    return kNone;
}

CDefinitionRepository* CRepositoryManager::ReadDefinitions(const char16_t* tag,
                                                           CString& problem) try {
    return ReadLocalDefinitions(Current().Declared(Platform::TextOf(tag))).release();
} catch (...) {
    problem = ProblemInFlight();
    return nullptr;
}

CDefinitionRepository* CRepositoryManager::ReadDefinitionsFile(const char16_t* tag,
                                                               const char16_t* path,
                                                               CString& problem) try {
    const TextRepositoryFactory& factory = Current().Declared(Platform::TextOf(tag));
    return ReadAnyDefinitions(factory, Platform::TextOf(path)).release();
} catch (...) {
    problem = ProblemInFlight();
    return nullptr;
}

int CRepositoryManager::WriteDefinitions(const char16_t* tag,
                                         const std::vector<const CRepositoryItem*>& items,
                                         CString& problem) try {
    WriteLocalDefinitions(Current().Declared(Platform::TextOf(tag)), items);
    return 1;
} catch (...) {
    problem = ProblemInFlight();
    return 0;
}

} // namespace ZEBGis
