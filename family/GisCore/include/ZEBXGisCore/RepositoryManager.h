// SPDX-License-Identifier: MIT
// The local definitions: which tags this installation has, and the factories of their
// repositories and items.
//
// The tags are what Definitions.xml declares, in the installation folder and then in the
// support folder; a tag that is declared twice keeps its first declaration.  The definitions
// of a tag lie in the support folder as Definitions\<tag>.xml.  docs/formats.md describes
// both.  When the folders change, everything is read anew.
#pragma once

#include "ZEBXGisCore/DefinitionRepository.h"

#include <map>

namespace ZEBGis {

// The operations stand in slot order.
class ZEBX_EXPORT CRepositoryFactory {
public:
    // The tag of the repositories that this factory makes.
    virtual CString GetTag() const = 0;
    // Makes a repository from its XML text, an empty one from the empty text.  Null when the
    // text is not one.  The caller gives it back through ReleaseRepository.
    virtual CDefinitionRepository* CreateRepository(const char16_t* xml) = 0;
    // Destroys what CreateRepository made; null is not an error.
    virtual void ReleaseRepository(CDefinitionRepository* repository) = 0;
    // The entity types of the tag's items; empty: any.
    virtual std::vector<enmEntityType> GetEntityTypes() const = 0;
    // The file that holds the local definitions; it need not be there.
    virtual CString GetFilePath() const = 0;
    // The display name of the tag's repository, in the user's language.
    virtual CString GetRepositoryName() const = 0;

protected:
    ~CRepositoryFactory() = default;
};

// The operations stand in slot order.
class ZEBX_EXPORT CRepositoryItemFactory {
public:
    // A new item without id, name and XML, owned by the caller.
    virtual CRepositoryItem* CreateItem() = 0;
    // A new item with all that `item` has, owned by the caller; null on failure.
    virtual CRepositoryItem* CreateItem(const CRepositoryItem& item) = 0;

protected:
    ~CRepositoryItemFactory() = default;
};

// One thread.  Nothing throws.
class ZEBX_EXPORT CRepositoryManager {
public:
    static CRepositoryManager* Instance();

    // The tags that exist locally, with their factories, which this manager owns.  Valid until
    // the folders change.
    const std::map<CString, CRepositoryFactory*>& GetRepositoryFactories();
    // Null when the tag is unknown; exact, case-sensitive.
    CRepositoryFactory* GetRepositoryfactory(const char16_t* tag);
    CRepositoryItemFactory* GetRIF(const char16_t* tag);

    // What was wrong with the declarations: file, place and reason each, in the user's language.
    const std::vector<CString>& GetDeclarationProblems();

    // Reads the local definitions of a tag; a missing file gives an empty repository.  Null
    // when the tag is unknown or the file cannot be read as definitions, and then `problem`
    // says why: file, item and reason, in the user's language.  Given back through the
    // factory's ReleaseRepository.
    CDefinitionRepository* ReadDefinitions(const char16_t* tag, CString& problem);
    // The same for a file that lies elsewhere, which may also hold one <definition> alone.  A
    // missing file is a problem.
    CDefinitionRepository* ReadDefinitionsFile(const char16_t* tag, const char16_t* path,
                                               CString& problem);
    // Replaces the local definitions that have these items' ids in their places and adds the
    // others behind them, in order.  The file is written whole or not at all, and not when
    // nothing changes; what it held before is kept beside it as <tag>.previous.xml.  Returns
    // 0, with the reason in `problem`, when it was not written.
    int WriteDefinitions(const char16_t* tag, const std::vector<const CRepositoryItem*>& items,
                         CString& problem);

private:
    CRepositoryManager();
    struct Content;
    Content& Current();

    std::unique_ptr<Content> m_content;
};

} // namespace ZEBGis
