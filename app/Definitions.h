// SPDX-License-Identifier: MIT
// The definitions of the declared tags on their way: this workstation's to the repository and
// the repository's to this workstation.  Each tag's outcome is a line of the workspace log; so is
// each definition that failed.
#pragma once

#include "app/Transfer.h"

#include "ZEBXGisCore/RepositoryManager.h"

namespace App {

// The definitions of a tag, given back to their factory.
struct ReleaseDefinitions {
    ZEBGis::CRepositoryFactory* factory;
    void operator()(ZEBGis::CDefinitionRepository* repository) const {
        factory->ReleaseRepository(repository);
    }
};
using LocalDefinitions = std::unique_ptr<ZEBGis::CDefinitionRepository, ReleaseDefinitions>;

// The factory of a tag.  Throws AppError (Usage), naming the known tags, when it is not declared.
ZEBGis::CRepositoryFactory& RequireTag(const CString& tag);

// Sends every local definition of the tag, of every declared tag without one, in the order of
// their files.  A file that cannot be read and a definition that is refused are told, and the
// others are sent.  Stops when the repository went away, which the caller tells.  A tag that was
// asked for and has no definitions here is a warning.  Throws as RequireTag.
Outcome PushDefinitions(const OpenStorage& storage, const std::optional<CString>& tag);

// Fetches the repository's definitions into the local files: those of known ids in their places,
// the others behind them.  A tag's file is written once, when all of its definitions are here,
// and not at all when the repository went away before.  Otherwise as PushDefinitions.
Outcome PullDefinitions(const OpenStorage& storage, const std::optional<CString>& tag);

} // namespace App
