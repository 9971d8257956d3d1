// SPDX-License-Identifier: MIT
#include "app/manual/ManPage.h"

#include "app/Verbs.h"

#include "platform/text/Utf8.h"

#include <sstream>

namespace App {
namespace {

struct Line {
    const char* term;
    const char* text;
};

constexpr Line kStatuses[] = {
    {"0", "done"},
    {"1", "differences found (diff)"},
    {"2", "the command line was not understood"},
    {"3", "configuration: no installation, no storage plug-in, no address, a kind switched off"},
    {"4", "the repository cannot be used: not there, not reachable, busy, its server's disk full"},
    {"5", "this user may not do that"},
    {"6", "conflict: init found a settings file, the place for a copy holds something else"},
    {"7", "content that does not fit its hash, or a damaged repository"},
    {"8", "some items failed"},
    {"9", "a local file: it could not be written, no space is left, the output is closed"},
    {"70", "an error inside the program"},
    {"130", "interrupted by Ctrl-C, SIGTERM or SIGHUP"},
};

constexpr Line kVariables[] = {
    {"ZEBX_CONFIG, ZEBX_INSTALL, ZEBX_SUPPORT, ZEBX_LANGUAGE",
     "as the options --config, --install, --support and --language, which win over them"},
    {"ZEBX_SCHEMA", "the schema of repositories on a server, where their address names none"},
    {"ZEBX_TRACE", "on or off: whether the modules write a trace for developers"},
    {"NO_COLOR", "when set, no colours are used"},
    {"XDG_CONFIG_HOME, XDG_DATA_HOME, XDG_STATE_HOME",
     "where settings, content and logs lie when nothing else says so"},
};

constexpr Line kFiles[] = {
    {"~/.config/StudioZEB/zebx.ini", "settings"},
    {"~/.local/share/StudioZEB/support/",
     "drawings, configuration files, general settings, catalogues, definitions"},
    {"~/.local/share/StudioZEB/repository.db", "the repository at the default place"},
    {"~/.local/state/StudioZEB/workspace.log", "every message of every transfer"},
};

std::string EscapedWord(const std::string& word) {
    // At the start of a line these would make it a request.
    std::string escaped = word.starts_with('.') || word.starts_with('\'') ? "\\&" : "";
    for (const char c : word) {
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else
            escaped += c;
    }
    return escaped;
}

// Text that troff takes as it stands, in lines that its checker finds short enough.
std::string Escaped(const std::string& text) {
    constexpr std::size_t kWidth = 80;
    std::istringstream words(text);
    std::string escaped;
    std::size_t lineStart = 0;
    for (std::string word; words >> word;) {
        word = EscapedWord(word);
        const bool fits = escaped.size() - lineStart + 1 + word.size() <= kWidth;
        if (!escaped.empty())
            escaped += fits ? ' ' : '\n';
        if (!fits)
            lineStart = escaped.size();
        escaped += word;
    }
    return escaped;
}

std::string Escaped(Message message) {
    return Escaped(Platform::ToUtf8(Text(message)));
}

void Term(std::ostream& page, const std::string& term, const std::string& escapedText) {
    page << ".TP\n\\fB" << Escaped(term) << "\\fR\n" << escapedText << '\n';
}

template<std::size_t Count>
void Section(std::ostream& page, const char* title, const Line (&lines)[Count]) {
    page << ".SH " << title << '\n';
    for (const Line& line : lines)
        Term(page, line.term, Escaped(line.text));
}

void Options(std::ostream& page, const std::vector<Option>& options) {
    for (const Option& option : options)
        Term(page,
             option.valueName ? std::string(option.name) + " " + option.valueName : option.name,
             Escaped(option.help));
}

void OneVerb(std::ostream& page, const Verb& verb) {
    const std::string words = *verb.wordsName ? std::string(" ") + verb.wordsName : "";
    page << ".SS \"zebx " << Escaped(verb.name + words) << "\"\n"
         << Escaped(verb.summary) << ".\n.PP\n"
         << Escaped(verb.details) << '\n';
    Options(page, verb.options);
    for (const Example& example : verb.examples)
        Term(page, std::string("zebx ") + example.line, Escaped(example.help));
}

} // namespace

std::string ManPage(const std::string& date) {
    std::ostringstream page;
    page << ".\\\" Made from the program's table of verbs.\n"
         << ".TH ZEBX 1 " << date << " \"zebx " ZEBX_VERSION "\" \"User Commands\"\n"
         << ".SH NAME\nzebx \\- move drawings, settings and catalogues to and from a shared "
            "repository\n"
         << ".SH SYNOPSIS\n.B zebx\n[OPTIONS] VERB [WORDS] [OPTIONS]\n"
         << ".SH DESCRIPTION\n"
         << Escaped(Message::HelpProgram) << '\n'
         << ".PP\nResults go to the standard output, messages to the standard error.\n"
         << ".SH VERBS\n";
    for (const Verb& verb : Verbs())
        OneVerb(page, verb);
    page << ".SH OPTIONS\nEach may stand before or behind the verb; behind\n.B \\-\\-\n"
            "everything is a word.\n";
    Options(page, CommonOptions());
    Section(page, "EXIT STATUS", kStatuses);
    Section(page, "ENVIRONMENT", kVariables);
    Section(page, "FILES", kFiles);
    page << ".SH EXAMPLES\n";
    for (const Example& example : FirstExamples())
        Term(page, std::string("zebx ") + example.line, Escaped(example.help));
    return page.str();
}

} // namespace App
