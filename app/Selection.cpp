// SPDX-License-Identifier: MIT
#include "app/Selection.h"

#include "app/AppError.h"
#include "app/Print.h"
#include "app/Suggest.h"
#include "app/Texts.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/os/UserSettings.h"

#include <algorithm>
#include <array>

namespace App {
namespace {

using Manager = Repository::CRepositoryStorageManager;

struct GroupWord {
    Group group;
    const char16_t* word;
};

constexpr std::array kGroups = {GroupWord{Group::FOC, u"foc"}, GroupWord{Group::NCF, u"ncf"},
                                GroupWord{Group::GS, u"gs"}};

Selected ParseWord(const CString& word) {
    const auto colon = word.find(u':');
    const CStringView head = CStringView(word).substr(0, colon);
    if (head == u"catalogues" || head == u"catalogue")
        throw AppError(ExitStatus::Usage, Text(Message::NoCataloguesYet, {word}));
    const auto* found = std::find_if(kGroups.begin(), kGroups.end(),
                                     [head](const GroupWord& known) { return head == known.word; });
    // A colon with nothing behind it is a name that was forgotten, not the whole group.
    if (found == kGroups.end() || colon + 1 == word.size())
        throw AppError(ExitStatus::Usage, Text(Message::UnknownSelection, {word}) +
                                              DidYouMean(head, {u"foc", u"ncf", u"gs"}));
    if (colon == CString::npos)
        return {found->group, std::nullopt};
    return {found->group, word.substr(colon + 1)};
}

template<typename Kinds>
void CheckIsKnown(const Selected& selected, const Kinds& kinds) {
    if (kinds.contains(*selected.name))
        return;
    CString text = Text(Message::UnknownKind, {WordFor(selected)});
    std::vector<CString> known;
    for (const auto& [id, kind] : kinds) {
        known.push_back(WordFor(selected.group, id));
        text += u"\n  " + known.back();
    }
    text += DidYouMean(WordFor(selected), known);
    throw AppError(ExitStatus::Usage, text);
}

template<typename Kinds>
void CheckIsOn(const Selected& selected, const Kinds& kinds) {
    const auto found = kinds.find(*selected.name);
    if (found == kinds.end() || !found->second->IsOptional() ||
        ZEBGis::CModuleConfiguration::Instance()->IsMetadataIdEnabled(selected.name->c_str()))
        return;
    const auto file = Platform::UserSettings::Instance()->Get(Platform::Setting::Config);
    throw AppError(ExitStatus::Configuration,
                   Text(Message::KindSwitchedOff, {WordFor(selected), ShownPath(file.value)}));
}

// Calls `check` with each selected kind and its registry.
template<typename Check>
void CheckKinds(const std::vector<Selected>& selection, Manager& manager, Check check) {
    for (const Selected& selected : selection) {
        if (!selected.name || selected.group == Group::GS)
            continue;
        if (selected.group == Group::FOC)
            check(selected, manager.GetFOCMetadata());
        else
            check(selected, manager.GetNCFMetadata());
    }
}

} // namespace

std::vector<Selected> ParseSelection(const std::vector<CString>& words) {
    std::vector<Selected> selection;
    for (const CString& word : words) {
        const Selected selected = ParseWord(word);
        if (std::find(selection.begin(), selection.end(), selected) == selection.end())
            selection.push_back(selected);
    }
    if (words.empty()) {
        for (const GroupWord& known : kGroups)
            selection.push_back({known.group, std::nullopt});
    }
    return selection;
}

CString WordFor(const Selected& selected) {
    return WordFor(selected.group, selected.name.value_or(u""));
}

CString WordFor(Group group, CStringView name) {
    CString word = kGroups[static_cast<std::size_t>(group)].word;
    return name.empty() ? word : word.append(u":").append(name);
}

void CheckKindsAreKnown(const std::vector<Selected>& selection, Manager& manager) {
    CheckKinds(selection, manager,
               [](const Selected& selected, const auto& kinds) { CheckIsKnown(selected, kinds); });
}

void CheckKindsAreOn(const std::vector<Selected>& selection, Manager& manager) {
    CheckKinds(selection, manager,
               [](const Selected& selected, const auto& kinds) { CheckIsOn(selected, kinds); });
}

void CheckGsNames(const std::vector<Selected>& selection, Manager& manager) {
    const bool named = std::any_of(selection.begin(), selection.end(), [](const Selected& one) {
        return one.group == Group::GS && one.name.has_value();
    });
    if (named && !manager.IsMultipleGSSupported())
        throw AppError(ExitStatus::Usage, Text(Message::OneGsOnly));
}

} // namespace App
