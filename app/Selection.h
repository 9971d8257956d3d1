// SPDX-License-Identifier: MIT
// What a command line selects: whole groups of content or single kinds.
#pragma once

#include "ZEBXRepositoryClient/RepositoryStorageManager.h"

#include <optional>
#include <vector>

namespace App {

enum class Group { FOC, NCF, GS, Catalogues, Items };

// Whether the group's kinds hold items (of a catalogue, or definitions) and not files.
constexpr bool HoldsItems(Group group) {
    return group == Group::Catalogues || group == Group::Items;
}

// "ncf", "foc:005_TOPOLOGY_CONFIG", "gs:NAME", "catalogues", "catalogue:TAG", "items:TAG".
struct Selected {
    Group group = Group::FOC;
    // Of the kind or of the general settings, or the tag; nothing: all.
    std::optional<CString> name;

    bool operator==(const Selected&) const = default;
};

// The selections in the words' order, each once; no words select everything, in the order
// foc, ncf, gs, catalogues, items.  Throws AppError (Usage) for a word that selects nothing.
std::vector<Selected> ParseSelection(const std::vector<CString>& words);

// What of the group can be selected by name: the registered kinds, the declared catalogues and
// tags.  None of general settings, for which every name is good.
std::vector<CString> KnownNames(Group group, Repository::CRepositoryStorageManager& manager);

// The selection as it is typed.
CString WordFor(const Selected& selected);
// A kind or a general-settings text as it is selected; an empty name selects the group.
CString WordFor(Group group, CStringView name);

// Throws AppError (Usage), naming the known ones, when a kind is not registered, or a
// catalogue or a definition repository is not declared on this workstation.
void CheckKindsAreKnown(const std::vector<Selected>& selection,
                        Repository::CRepositoryStorageManager& manager);

// Throws AppError (Configuration) when a selected kind is optional and not switched on:
// such a kind takes no part in transfers.
void CheckKindsAreOn(const std::vector<Selected>& selection,
                     Repository::CRepositoryStorageManager& manager);

// Throws AppError (Usage) when general settings are selected by name and the storage keeps
// one text only.
void CheckGsNames(const std::vector<Selected>& selection,
                  Repository::CRepositoryStorageManager& manager);

} // namespace App
