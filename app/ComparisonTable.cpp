// SPDX-License-Identifier: MIT
#include "app/ComparisonTable.h"

#include "app/Print.h"
#include "app/Texts.h"

#include "platform/text/Numbers.h"

#include <array>
#include <ostream>
#include <utility>

namespace App {
namespace {

// What a transfer would do comes first.
std::array<Difference, 5> OrderFor(Purpose purpose) {
    using enum Difference;
    if (purpose == Purpose::Pull)
        return {OnlyThere, Changed, Same, OnlyHere, Unusable};
    if (purpose == Purpose::Push)
        return {OnlyHere, Changed, Same, OnlyThere, Unusable};
    return {OnlyHere, OnlyThere, Changed, Same, Unusable};
}

bool IsThereOnly(Difference difference) {
    return difference == Difference::OnlyThere || difference == Difference::Unusable;
}

// Without an overflow where somebody planted sizes into a repository.
FilesAndBytes Added(const FilesAndBytes& left, const FilesAndBytes& right) {
    const auto bytes =
        static_cast<std::uint64_t>(left.bytes) + static_cast<std::uint64_t>(right.bytes);
    return {left.files + right.files, static_cast<std::int64_t>(bytes)};
}

// For programs, which look from neither side.
const char* NameOf(Difference difference) {
    switch (difference) {
    case Difference::OnlyHere:
        return "onlyHere";
    case Difference::OnlyThere:
        return "onlyThere";
    case Difference::Changed:
        return "different";
    case Difference::Same:
        return "same";
    case Difference::Unusable:
        break;
    }
    return "unusable";
}

Json HeadOf(const ComparedKind& kind) {
    return {{"selection", WordFor(kind.group, kind.name)},
            {"group", WordFor(kind.group, u"")},
            {"name", OrNull(kind.name)}};
}

Json JsonOf(const ComparedKind& kind, const ComparedFile& file) {
    Json entry = HeadOf(kind);
    const bool isHere = !IsThereOnly(file.difference);
    entry["file"] = OrNull(file.name);
    entry["state"] = NameOf(file.difference);
    entry["bytesHere"] = isHere ? Json(file.bytesHere) : Json();
    entry["bytesThere"] = file.difference == Difference::OnlyHere ? Json() : Json(file.bytesThere);
    return entry;
}

void AddRow(Table& table, const CString& what, Difference difference, Purpose purpose,
            const FilesAndBytes& sum) {
    if (sum.files > 0)
        table.Add({what, WordFor(difference, purpose), Platform::ToText(sum.files),
                   Platform::ToText(sum.bytes)});
}

} // namespace

CString WordFor(Difference difference, Purpose purpose) {
    const Difference fresh =
        purpose == Purpose::Pull ? Difference::OnlyThere : Difference::OnlyHere;
    if (purpose != Purpose::Diff && difference == fresh)
        return Text(Message::StateNew);
    switch (difference) {
    case Difference::OnlyHere:
        return Text(Message::StateOnlyHere);
    case Difference::OnlyThere:
        return Text(Message::StateOnlyThere);
    case Difference::Changed:
        return Text(purpose == Purpose::Diff ? Message::StateDifferent : Message::StateChanged);
    case Difference::Same:
        return Text(Message::StateSame);
    case Difference::Unusable:
        break;
    }
    return Text(Message::StateUnusable);
}

std::int64_t BytesOf(const ComparedFile& file, Purpose purpose) {
    const bool isFetched = purpose == Purpose::Pull && file.difference != Difference::OnlyHere;
    return isFetched || IsThereOnly(file.difference) ? file.bytesThere : file.bytesHere;
}

FilesAndBytes Sum(const ComparedKind& kind, Difference difference, Purpose purpose) {
    FilesAndBytes sum;
    for (const ComparedFile& file : kind.files) {
        if (file.difference == difference)
            sum = Added(sum, {1, BytesOf(file, purpose)});
    }
    return sum;
}

FilesAndBytes Sum(const std::vector<ComparedKind>& kinds, Difference difference, Purpose purpose) {
    FilesAndBytes sum;
    for (const ComparedKind& kind : kinds)
        sum = Added(sum, Sum(kind, difference, purpose));
    return sum;
}

void PrintStates(std::ostream& out, const std::vector<ComparedKind>& kinds, Purpose purpose) {
    using Align = Table::Align;
    Table table({{Text(Message::TitleKind)},
                 {Text(Message::TitleState)},
                 {Text(Message::TitleFiles), Align::Right},
                 {Text(Message::TitleBytes), Align::Right}});
    for (const ComparedKind& kind : kinds) {
        for (const Difference difference : OrderFor(purpose))
            AddRow(table, WordFor(kind.group, kind.name), difference, purpose,
                   Sum(kind, difference, purpose));
    }
    if (table.IsEmpty())
        return;
    for (const Difference difference : OrderFor(purpose)) {
        if (kinds.size() > 1)
            AddRow(table, Text(Message::InAll), difference, purpose,
                   Sum(kinds, difference, purpose));
    }
    table.Print(out);
}

void PrintFiles(std::ostream& out, const std::vector<ComparedKind>& kinds, Purpose purpose) {
    using Align = Table::Align;
    // The file comes last, so that no name, however long, breaks the columns.
    Table table({{Text(Message::TitleKind)},
                 {Text(Message::TitleState)},
                 {Text(Message::TitleBytes), Align::Right},
                 {Text(Message::TitleFile)}});
    for (const ComparedKind& kind : kinds) {
        for (const ComparedFile& file : kind.files) {
            if (file.difference != Difference::Same)
                table.Add({WordFor(kind.group, kind.name), WordFor(file.difference, purpose),
                           Platform::ToText(BytesOf(file, purpose)), file.name});
        }
    }
    if (table.IsEmpty())
        return;
    out << '\n';
    table.Print(out);
}

Json JsonOf(const std::vector<ComparedKind>& kinds, Purpose purpose) {
    Json sums = Json::array();
    Json files = Json::array();
    for (const ComparedKind& kind : kinds) {
        Json entry = HeadOf(kind);
        for (const Difference difference : OrderFor(Purpose::Diff)) {
            const FilesAndBytes sum = Sum(kind, difference, purpose);
            entry[NameOf(difference)] = {{"files", sum.files}, {"bytes", sum.bytes}};
        }
        sums.push_back(std::move(entry));
        for (const ComparedFile& file : kind.files) {
            if (file.difference != Difference::Same)
                files.push_back(JsonOf(kind, file));
        }
    }
    return {{"kinds", std::move(sums)}, {"files", std::move(files)}};
}

ExitStatus GivePlan(Session& session, const Comparison& comparison, Purpose purpose) {
    const std::vector<ComparedKind>& kinds = comparison.kinds;
    const bool isPull = purpose == Purpose::Pull;
    PrintStates(session.out, kinds, purpose);
    const FilesAndBytes moved =
        Added(Sum(kinds, isPull ? Difference::OnlyThere : Difference::OnlyHere, purpose),
              Sum(kinds, Difference::Changed, purpose));
    PrintWrapped(session.out, u"",
                 Text(isPull ? Message::PullWould : Message::PushWould,
                      {Platform::ToText(moved.files), Platform::ToText(moved.bytes)}));
    session.result = JsonOf(kinds, purpose);
    return comparison.status;
}

} // namespace App
