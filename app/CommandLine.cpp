// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "app/Suggest.h"

#include "platform/text/Utf8.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace App {
namespace {

// `verb`: of which the help tells more; empty: the program's.
[[noreturn]] void Refuse(const CString& text, const std::string& verb) {
    const CString hint = verb.empty() ? Text(Message::SeeHelp)
                                      : Text(Message::SeeVerbHelp, {Platform::FromUtf8(verb)});
    throw AppError(ExitStatus::Usage, text + u"\n" + hint);
}

// The library's parser, filled from the tables, and what it found.
class Parser {
public:
    Parser() {
        m_app.set_help_flag();
        m_app.fallthrough();
        m_app.require_subcommand(0, 1);
        // What is left over is told by this program's own texts.
        m_app.allow_extras();
        for (const Option& option : CommonOptions())
            Add(m_app, option);
        for (const Verb& verb : Verbs())
            Add(verb);
    }

    Invocation Parse(const std::vector<std::string>& arguments);

private:
    // "repo check" is a verb of the group "repo", which is none itself.
    CLI::App& ParentOf(const Verb& verb) {
        const std::string group = GroupOf(verb);
        if (group.empty())
            return m_app;
        CLI::App*& app = m_groups[group];
        if (!app) {
            app = m_app.add_subcommand(group);
            app->set_help_flag();
            app->allow_extras();
            app->require_subcommand(0, 1);
        }
        return *app;
    }

    void Add(const Verb& verb) {
        CLI::App* sub = ParentOf(verb).add_subcommand(LastWordOf(verb));
        m_verbs.emplace_back(&verb, sub);
        sub->set_help_flag();
        sub->allow_extras();
        sub->add_option("WORDS", m_words);
        for (const Option& option : verb.options)
            Add(*sub, option);
    }

    void Add(CLI::App& app, const Option& option) {
        if (option.valueName)
            m_options.emplace_back(&option,
                                   app.add_option(option.name, m_values[&option])->take_last());
        else
            m_options.emplace_back(&option, app.add_flag(option.name)->disable_flag_override());
    }

    const Verb* FoundVerb() const {
        const auto found =
            std::ranges::find_if(m_verbs, [](const auto& each) { return each.second->parsed(); });
        return found == m_verbs.end() ? nullptr : found->first;
    }

    std::string FoundGroup() const {
        const auto found =
            std::ranges::find_if(m_groups, [](const auto& each) { return each.second->parsed(); });
        return found == m_groups.end() ? std::string() : found->first;
    }

    CLI::App m_app;
    std::map<std::string, CLI::App*> m_groups;
    std::vector<std::pair<const Verb*, CLI::App*>> m_verbs;
    std::vector<std::string> m_words;
    std::map<const Option*, std::string> m_values;
    std::vector<std::pair<const Option*, CLI::Option*>> m_options;
};

std::vector<CString> OptionNames(const Verb* verb) {
    std::vector<CString> names;
    for (const Option& option : CommonOptions())
        names.push_back(Platform::FromUtf8(option.name));
    if (verb) {
        for (const Option& option : verb->options)
            names.push_back(Platform::FromUtf8(option.name));
    }
    return names;
}

std::vector<CString> VerbNames() {
    std::vector<CString> names;
    for (const Verb& verb : Verbs()) {
        names.push_back(Platform::FromUtf8(verb.name));
        const CString group = Platform::FromUtf8(GroupOf(verb));
        if (!group.empty() && std::ranges::find(names, group) == names.end())
            names.push_back(group);
    }
    return names;
}

void RefuseLeftOvers(const std::vector<std::string>& leftOver, const Invocation& invocation) {
    if (leftOver.empty())
        return;
    const CString word = Platform::FromUtf8(leftOver.front());
    const CString group = Platform::FromUtf8(invocation.group);
    if (word.starts_with(u'-'))
        Refuse(Text(Message::UnknownOption, {word}) +
                   DidYouMean(word.substr(0, word.find(u'=')), OptionNames(invocation.verb)),
               invocation.verb ? invocation.verb->name : invocation.group);
    const CString verb = group.empty() ? word : group + u" " + word;
    Refuse(Text(Message::UnknownVerb, {verb}) + DidYouMean(verb, VerbNames()), invocation.group);
}

// "auto, always or never".
CString Listed(const std::vector<const char*>& values) {
    CString text = Platform::FromUtf8(values.front());
    for (std::size_t i = 1; i + 1 < values.size(); ++i)
        text += u", " + Platform::FromUtf8(values[i]);
    return Text(Message::EitherOr, {text, Platform::FromUtf8(values.back())});
}

void CheckValue(const Option& option, const CString& value, const Verb* verb) {
    const CString name = Platform::FromUtf8(option.name);
    const std::string hint = verb ? verb->name : "";
    if (option.valueName && value.empty())
        Refuse(Text(Message::OptionWithoutValue, {name}), hint);
    std::vector<CString> values;
    for (const char* each : option.values)
        values.push_back(Platform::FromUtf8(each));
    if (!values.empty() && std::ranges::find(values, value) == values.end())
        Refuse(Text(Message::NotAValue, {name, Listed(option.values), value}) +
                   DidYouMean(value, values),
               hint);
}

[[noreturn]] void RefuseWithoutVerb(const std::string& group) {
    if (group.empty())
        Refuse(Text(Message::NoVerb), {});
    CString verbs;
    for (const Verb& verb : Verbs()) {
        if (GroupOf(verb) == group)
            verbs += (verbs.empty() ? u"" : u", ") + Platform::FromUtf8(LastWordOf(verb));
    }
    Refuse(Text(Message::WordMissing, {Platform::FromUtf8(group), verbs}), group);
}

// What the library alone notices: "--config: 1 required TEXT missing" and, without a colon,
// a flag with a value.
[[noreturn]] void RefuseByLibrary(const CLI::ParseError& error) {
    const CString text = Platform::FromUtf8(error.what());
    const auto colon = text.find(u':');
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) && colon != CString::npos)
        Refuse(Text(Message::OptionWithoutValue, {text.substr(0, colon)}), {});
    Refuse(Text(Message::NotUnderstood, {text}), {});
}

void CheckWords(const std::vector<CString>& words, const Verb& verb) {
    const std::size_t most = verb.words == Words::Any    ? words.size()
                             : verb.words == Words::None ? 0
                             : verb.words == Words::Two  ? 2
                                                         : 1;
    const std::size_t least = verb.words == Words::One || verb.words == Words::Two ? most : 0;
    if (words.size() > most)
        Refuse(Text(Message::OneWordTooMany, {words[most]}), verb.name);
    if (words.size() < least)
        Refuse(Text(Message::WordMissing,
                    {Platform::FromUtf8(verb.name), Platform::FromUtf8(verb.wordsName)}),
               verb.name);
}

Invocation Parser::Parse(const std::vector<std::string>& arguments) {
    const auto dashes = std::find(arguments.begin(), arguments.end(), "--");
    // The library takes the words from the back.
    std::vector<std::string> backwards(arguments.begin(), dashes);
    std::reverse(backwards.begin(), backwards.end());
    m_app.parse(std::move(backwards));
    if (dashes != arguments.end())
        m_words.insert(m_words.end(), dashes + 1, arguments.end());
    Invocation invocation;
    invocation.verb = FoundVerb();
    invocation.group = FoundGroup();
    RefuseLeftOvers(m_app.remaining(true), invocation);
    for (const auto& [option, parsed] : m_options) {
        if (parsed->count() == 0)
            continue;
        const CString value = Platform::FromUtf8(m_values[option]);
        CheckValue(*option, value, invocation.verb);
        invocation.options[option->name] = value;
    }
    for (const std::string& word : m_words)
        invocation.words.push_back(Platform::FromUtf8(word));
    invocation.help = invocation.Has("--help");
    return invocation;
}

} // namespace

Invocation ParseCommandLine(const std::vector<std::string>& arguments) {
    Invocation invocation;
    try {
        invocation = Parser().Parse(arguments);
    } catch (const CLI::ParseError& error) {
        RefuseByLibrary(error);
    }
    if (invocation.help)
        return invocation;
    if (!invocation.verb)
        RefuseWithoutVerb(invocation.group);
    CheckWords(invocation.words, *invocation.verb);
    return invocation;
}

} // namespace App
