// SPDX-License-Identifier: MIT
#include "app/Selection.h"

#include "app/AppError.h"
#include "app/Print.h"
#include "app/Suggest.h"
#include "app/Texts.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXGisCore/RepositoryManager.h"
#include "ZEBXNetworkCore/CatalogManager.h"
#include "platform/os/UserSettings.h"

#include <algorithm>
#include <array>

namespace App {
namespace {

using Manager = Repository::CRepositoryStorageManager;

struct GroupWord {
    Group group;
    const char16_t* word;      // selects all of it
    const char16_t* namedWord; // stands before ":" and a name
};

constexpr std::array kGroups = {
    GroupWord{Group::FOC, u"foc", u"foc"}, GroupWord{Group::NCF, u"ncf", u"ncf"},
    GroupWord{Group::GS, u"gs", u"gs"}, GroupWord{Group::Catalogues, u"catalogues", u"catalogue"},
    GroupWord{Group::Items, u"items", u"items"}};

Selected ParseWord(const CString& word) {
    const auto colon = word.find(u':');
    const bool isNamed = colon != CString::npos;
    const CStringView head = CStringView(word).substr(0, colon);
    const auto* found = std::ranges::find_if(kGroups, [&](const GroupWord& known) {
        return head == known.word || (isNamed && head == known.namedWord);
    });
    // A colon with nothing behind it is a name that was forgotten, not the whole group.
    const std::vector<CString> words{u"foc", u"ncf", u"gs", u"catalogues", u"items"};
    if (found == kGroups.end() || colon + 1 == word.size())
        throw AppError(ExitStatus::Usage,
                       Text(Message::UnknownSelection, {word}) + DidYouMean(head, words));
    if (!isNamed)
        return {found->group, std::nullopt};
    return {found->group, word.substr(colon + 1)};
}

void CheckIsKnown(const Selected& selected, const std::vector<CString>& names) {
    if (std::ranges::find(names, *selected.name) != names.end())
        return;
    CString text = Text(Message::UnknownKind, {WordFor(selected)});
    std::vector<CString> known;
    for (const CString& name : names) {
        known.push_back(WordFor(selected.group, name));
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

template<typename Kinds>
std::vector<CString> KeysOf(const Kinds& kinds) {
    std::vector<CString> keys;
    for (const auto& [key, kind] : kinds)
        keys.push_back(key);
    return keys;
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

std::vector<CString> KnownNames(Group group, Manager& manager) {
    if (group == Group::FOC)
        return KeysOf(manager.GetFOCMetadata());
    if (group == Group::NCF)
        return KeysOf(manager.GetNCFMetadata());
    if (group == Group::GS)
        return {};
    if (group == Group::Items)
        return KeysOf(ZEBGis::CRepositoryManager::Instance()->GetRepositoryFactories());
    std::vector<CString> references;
    for (const auto& metadata : ZEBGis::Data::CCatalogManager::Instance()->GetCatalogRegistry())
        references.push_back(metadata->GetCatalogReference());
    return references;
}

CString WordFor(const Selected& selected) {
    return WordFor(selected.group, selected.name.value_or(u""));
}

CString WordFor(Group group, CStringView name) {
    const GroupWord& words = kGroups[static_cast<std::size_t>(group)];
    return name.empty() ? words.word : CString(words.namedWord).append(u":").append(name);
}

void CheckKindsAreKnown(const std::vector<Selected>& selection, Manager& manager) {
    for (const Selected& selected : selection) {
        // Any name may be that of general settings.
        if (selected.name && selected.group != Group::GS)
            CheckIsKnown(selected, KnownNames(selected.group, manager));
    }
}

void CheckKindsAreOn(const std::vector<Selected>& selection, Manager& manager) {
    for (const Selected& selected : selection) {
        if (selected.name && selected.group == Group::FOC)
            CheckIsOn(selected, manager.GetFOCMetadata());
        if (selected.name && selected.group == Group::NCF)
            CheckIsOn(selected, manager.GetNCFMetadata());
    }
}

void CheckGsNames(const std::vector<Selected>& selection, Manager& manager) {
    const bool named = std::any_of(selection.begin(), selection.end(), [](const Selected& one) {
        return one.group == Group::GS && one.name.has_value();
    });
    if (named && !manager.IsMultipleGSSupported())
        throw AppError(ExitStatus::Usage, Text(Message::OneGsOnly));
}

} // namespace App
