// SPDX-License-Identifier: MIT
#include "Factories.h"

#include "DefinitionItem.h"
#include "TextRepository.h"

#include "platform/os/UserSettings.h"
#include "platform/text/Utf8.h"

namespace ZEBGis {

CDefinitionRepository* TextRepositoryFactory::CreateRepository(const char16_t* xml) try {
    const CStringView text = Platform::TextOf(xml);
    if (text.empty())
        return new TextRepository(m_declaration.tag);
    // Halves of characters would become others on the way to UTF-8 and pass unseen.
    if (!Platform::IsWellFormed(text))
        return nullptr;
    return new TextRepository(m_declaration.tag,
                              DefinitionsText(Platform::ToUtf8(text), m_declaration));
} catch (...) {
    return nullptr;
}

CString TextRepositoryFactory::GetFilePath() const {
    return m_folder + m_declaration.tag + u".xml";
}

CString TextRepositoryFactory::GetRepositoryName() const try {
    return m_declaration.NameIn(
        Platform::UserSettings::Instance()->Get(Platform::Setting::Language).value);
} catch (...) {
    return {};
}

CRepositoryItem* DefinitionItemFactory::CreateItem() try {
    return new CDefinitionItem;
} catch (...) {
    return nullptr;
}

CRepositoryItem* DefinitionItemFactory::CreateItem(const CRepositoryItem& item) try {
    return new CDefinitionItem(item);
} catch (...) {
    return nullptr;
}

} // namespace ZEBGis
