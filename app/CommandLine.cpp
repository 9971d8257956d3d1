// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "platform/text/Utf8.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace App {
namespace {

[[noreturn]] void Refuse(const CString& text, const Verb* verb) {
    const CString hint = verb ? Text(Message::SeeVerbHelp, {Platform::FromUtf8(verb->name)})
                              : Text(Message::SeeHelp);
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
    void Add(const Verb& verb) {
        CLI::App* sub = m_app.add_subcommand(verb.name);
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
        for (const Verb& verb : Verbs()) {
            if (m_app.got_subcommand(verb.name))
                return &verb;
        }
        return nullptr;
    }

    CLI::App m_app;
    std::vector<std::string> m_words;
    std::map<const Option*, std::string> m_values;
    std::vector<std::pair<const Option*, CLI::Option*>> m_options;
};

void RefuseLeftOvers(const std::vector<std::string>& leftOver, const Verb* verb) {
    if (leftOver.empty())
        return;
    const CString word = Platform::FromUtf8(leftOver.front());
    Refuse(Text(word.starts_with(u'-') ? Message::UnknownOption : Message::UnknownVerb, {word}),
           verb);
}

// What the library alone notices: "--config: 1 required TEXT missing" and, without a colon,
// a flag with a value.
[[noreturn]] void RefuseByLibrary(const CLI::ParseError& error) {
    const CString text = Platform::FromUtf8(error.what());
    const auto colon = text.find(u':');
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) && colon != CString::npos)
        Refuse(Text(Message::OptionWithoutValue, {text.substr(0, colon)}), nullptr);
    Refuse(Text(Message::NotUnderstood, {text}), nullptr);
}

void CheckWords(const std::vector<CString>& words, const Verb& verb) {
    const std::size_t most = verb.words == Words::Any    ? words.size()
                             : verb.words == Words::None ? 0
                                                         : 1;
    if (words.size() > most)
        Refuse(Text(Message::OneWordTooMany, {words[most]}), &verb);
    if (verb.words == Words::One && words.empty())
        Refuse(Text(Message::WordMissing,
                    {Platform::FromUtf8(verb.name), Platform::FromUtf8(verb.wordsName)}),
               &verb);
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
    RefuseLeftOvers(m_app.remaining(true), invocation.verb);
    for (const auto& [option, parsed] : m_options) {
        if (parsed->count() == 0)
            continue;
        const CString value = Platform::FromUtf8(m_values[option]);
        if (option->valueName && value.empty())
            Refuse(Text(Message::OptionWithoutValue, {Platform::FromUtf8(option->name)}),
                   invocation.verb);
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
        Refuse(Text(Message::NoVerb), nullptr);
    CheckWords(invocation.words, *invocation.verb);
    return invocation;
}

} // namespace App
