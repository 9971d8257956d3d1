// SPDX-License-Identifier: MIT
// The factories of one declared tag.
#pragma once

#include "Declarations.h"
#include "ZEBXGisCore/RepositoryManager.h"

namespace ZEBGis {

class TextRepositoryFactory final : public CRepositoryFactory {
public:
    TextRepositoryFactory(Declaration declaration, CString folder)
        : m_declaration(std::move(declaration)), m_folder(std::move(folder)) {}

    CString GetTag() const override { return m_declaration.tag; }
    CDefinitionRepository* CreateRepository(const char16_t* xml) override;
    void ReleaseRepository(CDefinitionRepository* repository) override { delete repository; }
    std::vector<enmEntityType> GetEntityTypes() const override { return m_declaration.entityTypes; }
    CString GetFilePath() const override;
    CString GetRepositoryName() const override;

    const Declaration& Declared() const { return m_declaration; }
    const CString& Folder() const { return m_folder; }

private:
    Declaration m_declaration;
    CString m_folder; // of the local definitions
};

class DefinitionItemFactory final : public CRepositoryItemFactory {
public:
    CRepositoryItem* CreateItem() override;
    CRepositoryItem* CreateItem(const CRepositoryItem& item) override;
};

} // namespace ZEBGis
