// SPDX-License-Identifier: MIT
// Files of definitions: the local ones of a tag, and those that somebody hands over.
//
// What fails throws the sentence that tells of it; ProblemInFlight gives it at the border.
#pragma once

#include "Factories.h"

namespace ZEBGis {

struct DefinitionsProblem {
    CString text;
};

// The definitions of the factory's tag; a missing file holds none.
std::unique_ptr<CDefinitionRepository> ReadLocalDefinitions(const TextRepositoryFactory& factory);

// Those of a file that must be there and may hold one definition alone.
std::unique_ptr<CDefinitionRepository> ReadAnyDefinitions(const TextRepositoryFactory& factory,
                                                          CStringView path);

// Puts the items into the file of local definitions, see CRepositoryManager.
void WriteLocalDefinitions(const TextRepositoryFactory& factory,
                           const std::vector<const CRepositoryItem*>& items);

// Inside a catch: what the caught exception has to say.
CString ProblemInFlight() noexcept;

} // namespace ZEBGis
