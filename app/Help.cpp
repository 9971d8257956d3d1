// SPDX-License-Identifier: MIT
#include "app/Help.h"

#include "app/Print.h"

#include "platform/text/Utf8.h"

#include <algorithm>
#include <ostream>

namespace App {
namespace {

struct Entry {
    CString term;
    CString help;
};

CString NameOf(const Option& option) {
    const CString name = Platform::FromUtf8(option.name);
    return option.valueName ? name + u" " + Platform::FromUtf8(option.valueName) : name;
}

CString NameOf(const Verb& verb) {
    const CString name = Platform::FromUtf8(verb.name);
    return *verb.wordsName ? name + u" " + Platform::FromUtf8(verb.wordsName) : name;
}

// A term that leaves no room for its help beside it has the help on the next line.
void PrintEntries(std::ostream& out, Message title, const std::vector<Entry>& entries) {
    constexpr std::size_t kWidestTerm = 34;
    std::size_t width = 0;
    for (const Entry& entry : entries) {
        if (WidthOf(entry.term) <= kWidestTerm)
            width = std::max(width, WidthOf(entry.term));
    }
    out << '\n';
    PrintLine(out, Text(title));
    for (const Entry& entry : entries) {
        CString lead = u"  " + PadRight(entry.term, width) + u"  ";
        if (WidthOf(entry.term) > width) {
            PrintLine(out, u"  " + entry.term);
            lead.assign(width + 4, u' ');
        }
        PrintWrapped(out, lead, entry.help);
    }
}

std::vector<Entry> EntriesOf(const std::vector<Example>& examples) {
    std::vector<Entry> entries;
    for (const Example& example : examples)
        entries.push_back({u"zebx " + Platform::FromUtf8(example.line), Text(example.help)});
    return entries;
}

std::vector<Entry> EntriesOf(const std::vector<Option>& options) {
    std::vector<Entry> entries;
    for (const Option& option : options)
        entries.push_back({NameOf(option), Text(option.help)});
    return entries;
}

} // namespace

void PrintHelp(std::ostream& out) {
    PrintWrapped(out, u"", Text(Message::HelpProgram));
    PrintEntries(out, Message::HelpExamples, EntriesOf(FirstExamples()));
    std::vector<Entry> verbs;
    for (const Verb& verb : Verbs())
        verbs.push_back({NameOf(verb), Text(verb.summary)});
    PrintEntries(out, Message::HelpVerbs, verbs);
    PrintEntries(out, Message::HelpOptions, EntriesOf(CommonOptions()));
    out << '\n';
    PrintWrapped(out, u"", Text(Message::HelpMore));
}

void PrintHelp(std::ostream& out, const std::string& group) {
    std::vector<Example> examples;
    std::vector<Entry> verbs;
    for (const Verb& verb : Verbs()) {
        if (GroupOf(verb) != group)
            continue;
        examples.insert(examples.end(), verb.examples.begin(), verb.examples.end());
        verbs.push_back({NameOf(verb), Text(verb.summary)});
    }
    PrintEntries(out, Message::HelpExamples, EntriesOf(examples));
    PrintEntries(out, Message::HelpVerbs, verbs);
    out << '\n';
    PrintWrapped(out, u"", Text(Message::HelpMore));
}

void PrintHelp(std::ostream& out, const Verb& verb) {
    PrintWrapped(out, u"zebx " + NameOf(verb) + u": ", Text(verb.summary));
    PrintEntries(out, Message::HelpExamples, EntriesOf(verb.examples));
    out << '\n';
    PrintWrapped(out, u"", Text(verb.details));
    std::vector<Entry> options = EntriesOf(verb.options);
    for (const Entry& common : EntriesOf(CommonOptions()))
        options.push_back(common);
    PrintEntries(out, Message::HelpOptions, options);
}

} // namespace App
