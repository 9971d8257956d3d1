// SPDX-License-Identifier: MIT
#include "app/Listing.h"
#include "app/Print.h"
#include "app/Verbs.h"

#include "platform/text/Numbers.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace App {
namespace {

CString OrDash(const CString& text) {
    return text.empty() ? CString(u"-") : text;
}

std::vector<CString> RowOf(const StoredEntry& entry) {
    const bool isGs = entry.group == Group::GS;
    return {WordFor(entry.group, entry.kind),
            entry.isFile ? Platform::ToText(entry.sizeBytes) : u"-",
            entry.revision > 0 ? Platform::ToText(entry.revision) : u"-",
            OrDash(ShownTime(entry.time)), isGs ? CString() : OrDash(entry.file)};
}

Json JsonOf(const StoredEntry& entry) {
    return {{"selection", WordFor(entry.group, entry.kind)},
            {"group", WordFor(entry.group, u"")},
            {"name", OrNull(entry.kind)},
            {"file", OrNull(entry.file)},
            {"bytes", entry.isFile ? Json(entry.sizeBytes) : Json()},
            {"revision", entry.revision > 0 ? Json(entry.revision) : Json()},
            {"time", OrNull(entry.time)}};
}

} // namespace

ExitStatus RunLs(Session& session, const Invocation& invocation) {
    const std::vector<Selected> selection = ParseSelection(invocation.words);
    CheckKindsAreKnown(selection, *Repository::CRepositoryStorageManager::Instance());
    const OpenStorage storage = RequireStorage();
    RequireRepository(storage);

    using Align = Table::Align;
    // The file comes last, so that no name, however long, breaks the columns.
    Table table({{Text(Message::TitleKind)},
                 {Text(Message::TitleBytes), Align::Right},
                 {Text(Message::TitleRevision), Align::Right},
                 {Text(Message::TitleTime)},
                 {Text(Message::TitleFile)}});
    Json entries = Json::array();
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    for (const StoredEntry& entry : ListRepository(storage)) {
        const auto covers = [&entry](const Selected& one) { return Covers(one, entry); };
        if (std::ranges::none_of(selection, covers))
            continue;
        table.Add(RowOf(entry));
        entries.push_back(JsonOf(entry));
        files += entry.isFile ? 1 : 0;
        bytes += entry.sizeBytes;
    }
    session.result = {{"entries", std::move(entries)}, {"files", files}, {"bytes", bytes}};
    if (!table.IsEmpty())
        table.Print(session.out);
    PrintLine(session.out,
              Text(Message::FilesInAll, {Platform::ToText(files), Platform::ToText(bytes)}));
    return ExitStatus::Done;
}

} // namespace App
