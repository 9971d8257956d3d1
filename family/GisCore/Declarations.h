// SPDX-License-Identifier: MIT
// What Definitions.xml declares: the tags of definition repositories.  docs/formats.md
// describes the file.
#pragma once

#include "ZEBXGisCore/RepositoryItem.h"

#include <map>
#include <vector>

namespace ZEBGis {

struct Declaration {
    CString tag;
    std::vector<enmEntityType> entityTypes; // empty: any
    std::map<CString, CString> names;       // by language

    // In the language; else in English, else in any, else the tag.
    CString NameIn(const CString& language) const;
    bool Allows(enmEntityType type) const;
};

// Adds what the file declares behind what is there; a tag that is there already is passed over.
// A missing file is no problem.  What is wrong is left out and told in `problems`.
void ReadDeclarations(CStringView path, std::vector<Declaration>& declarations,
                      std::vector<CString>& problems);

} // namespace ZEBGis
