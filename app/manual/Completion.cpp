// SPDX-License-Identifier: MIT
#include "app/manual/Completion.h"

#include "app/Selection.h"
#include "app/Verbs.h"

#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>
#include <set>

namespace App {
namespace {

std::string Joined(const std::vector<std::string>& words, const char* between) {
    std::string joined;
    for (const std::string& word : words)
        joined += (joined.empty() ? "" : between) + word;
    return joined;
}

// Common options first, then those of the verbs, each name once.
std::vector<const Option*> AllOptions() {
    std::vector<const Option*> options;
    std::set<std::string> names;
    const auto add = [&](const Option& option) {
        if (names.insert(option.name).second)
            options.push_back(&option);
    };
    std::ranges::for_each(CommonOptions(), add);
    for (const Verb& verb : Verbs())
        std::ranges::for_each(verb.options, add);
    return options;
}

std::vector<std::string> NamesOf(const std::vector<Option>& options) {
    std::vector<std::string> names;
    for (const Option& option : options)
        names.emplace_back(option.name);
    return names;
}

// What completes an option's value: a branch of "case $prev".
std::string ValueBranch(const Option& option) {
    std::string action;
    if (!option.values.empty())
        action = "COMPREPLY=($(compgen -W \"" +
                 Joined({option.values.begin(), option.values.end()}, " ") + "\" -- \"$cur\")); ";
    else if (option.valueName == std::string("FILE"))
        action = "_filedir; ";
    else if (option.valueName == std::string("DIR"))
        action = "_filedir -d; ";
    return std::string("        ") + option.name + ") " + action + "return ;;\n";
}

std::set<std::string> Groups() {
    std::set<std::string> groups;
    for (const Verb& verb : Verbs())
        groups.insert(GroupOf(verb));
    groups.erase("");
    return groups;
}

// The first words that begin a command line, or the second ones of a group.
std::vector<std::string> WordsOf(const std::string& group) {
    std::vector<std::string> words;
    for (const Verb& verb : Verbs()) {
        if (GroupOf(verb) == group)
            words.push_back(LastWordOf(verb));
    }
    return words;
}

std::vector<CString> NamesIn(Group group) {
    return KnownNames(group, *Repository::CRepositoryStorageManager::Instance());
}

// Whole groups first.
std::vector<std::string> Selections() {
    constexpr std::array kGroups = {Group::FOC, Group::NCF, Group::GS, Group::Catalogues,
                                    Group::Items};
    std::vector<std::string> words;
    for (const Group group : kGroups)
        words.push_back(Platform::ToUtf8(WordFor(group, u"")));
    for (const Group group : kGroups) {
        for (const CString& name : NamesIn(group))
            words.push_back(Platform::ToUtf8(WordFor(group, name)));
    }
    return words;
}

std::string VerbsThatSelect() {
    std::vector<std::string> names;
    for (const Verb& verb : Verbs()) {
        if (std::string_view(verb.wordsName).starts_with("[SELECTION"))
            names.emplace_back(verb.name);
    }
    return Joined(names, " | ");
}

std::string GroupBranches() {
    std::string branches;
    for (const std::string& group : Groups())
        branches += "        " + group + ") COMPREPLY=($(compgen -W \"" +
                    Joined(WordsOf(group), " ") + "\" -- \"$cur\")) ;;\n";
    return branches;
}

std::string OptionBranches() {
    std::string branches;
    for (const Verb& verb : Verbs()) {
        if (!verb.options.empty())
            branches += std::string("            \"") + verb.name + "\") options+=\" " +
                        Joined(NamesOf(verb.options), " ") + "\" ;;\n";
    }
    return branches;
}

std::string TagsOf(Group group) {
    std::vector<std::string> tags;
    for (const CString& tag : NamesIn(group))
        tags.push_back(Platform::ToUtf8(tag));
    return Joined(tags, " ");
}

} // namespace

std::string BashCompletion() {
    std::string values;
    std::vector<std::string> withValue;
    for (const Option* option : AllOptions()) {
        if (!option->valueName)
            continue;
        values += ValueBranch(*option);
        withValue.emplace_back(option->name);
    }
    const std::set<std::string> groups = Groups();
    std::vector<std::string> first = WordsOf("");
    first.insert(first.end(), groups.begin(), groups.end());
    return R"(# bash completion for zebx, made from the program's table of verbs.
_zebx() {
    local cur prev words cword split
    _init_completion -s -n : || return
    case $prev in
)" + values +
           R"(    esac
    $split && return

    local i verb=
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
            )" +
           Joined(withValue, " | ") + R"() ((i++)) ;;
            -*) ;;
            *)
                case $verb in
                    "") verb=${words[i]} ;;
                    )" +
           Joined({groups.begin(), groups.end()}, " | ") + R"() verb+=" ${words[i]}" ;;
                esac
                ;;
        esac
    done

    if [[ $cur == -* ]]; then
        local options=")" +
           Joined(NamesOf(CommonOptions()), " ") + R"("
        case $verb in
)" + OptionBranches() +
           R"(        esac
        COMPREPLY=($(compgen -W "$options" -- "$cur"))
        return
    fi

    case $verb in
        "") COMPREPLY=($(compgen -W ")" +
           Joined(first, " ") + R"(" -- "$cur")) ;;
)" + GroupBranches() +
           "        " + VerbsThatSelect() + R"()
            COMPREPLY=($(compgen -W ")" +
           Joined(Selections(), " ") + R"(" -- "$cur"))
            __ltrim_colon_completions "$cur"
            ;;
        catalogue)
            case $prev in
                catalogue) COMPREPLY=($(compgen -W ")" +
           TagsOf(Group::Catalogues) + R"(" -- "$cur")) ;;
                show | delete) ;;
                *)
                    [ "${words[cword - 2]}" = catalogue ] &&
                        COMPREPLY=($(compgen -W "show delete" -- "$cur"))
                    ;;
            esac
            ;;
        items)
            case $prev in
                items) COMPREPLY=($(compgen -W ")" +
           TagsOf(Group::Items) + R"(" -- "$cur")) ;;
                add) _filedir ;;
                list | show | rename | delete) ;;
                *)
                    [ "${words[cword - 2]}" = items ] &&
                        COMPREPLY=($(compgen -W "list show add rename delete" -- "$cur"))
                    ;;
            esac
            ;;
        connect)
            if [[ $cur == sqlite:* ]]; then
                cur=${cur#sqlite:}
                _filedir
            else
                COMPREPLY=($(compgen -W "sqlite:" -- "$cur"))
                compopt -o nospace 2>/dev/null
            fi
            ;;
    esac
} &&
    complete -F _zebx zebx
)";
}

} // namespace App
