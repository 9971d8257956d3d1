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
    const bool isItem = !entry.itemId.empty();
    return {{"selection", WordFor(entry.group, entry.kind)},
            {"group", WordFor(entry.group, u"")},
            {"name", OrNull(entry.kind)},
            {"file", isItem ? Json() : OrNull(entry.file)},
            {"item", isItem ? Json{{"id", entry.itemId}, {"name", entry.file}} : Json()},
            {"items", nullptr},
            {"bytes", entry.isFile ? Json(entry.sizeBytes) : Json()},
            {"revision", entry.revision > 0 ? Json(entry.revision) : Json()},
            {"time", OrNull(entry.time)}};
}

// A catalogue or the definitions of a tag as one line: thousands of items would bury the rest.
struct ItemSum {
    StoredEntry entry; // with the newest revision of its items
    std::int64_t items = 0;

    void Add(const StoredEntry& item) {
        if (items++ == 0) {
            entry = item;
            return;
        }
        entry.sizeBytes += item.sizeBytes;
        if (item.revision > entry.revision) {
            entry.revision = item.revision;
            entry.time = item.time;
        }
    }
    void MakeLine() {
        entry.file = Text(Message::ItemsInIt, {Platform::ToText(items)});
        entry.itemId.clear();
    }
    Json AsJson() const {
        Json json = JsonOf(entry);
        json["file"] = nullptr;
        json["items"] = items;
        return json;
    }
};

// The entries that are listed, the items of what was not selected by name as sums.
class Lister {
public:
    explicit Lister(const std::vector<Selected>& selection) : m_selection(selection) {}

    void Take(const StoredEntry& entry) {
        const auto covers = [&entry](const Selected& one) { return Covers(one, entry); };
        if (std::ranges::none_of(m_selection, covers))
            return;
        m_count += entry.isFile ? 1 : 0;
        m_bytes += entry.sizeBytes;
        const auto names = [&](const Selected& one) { return one.name && covers(one); };
        if (!HoldsItems(entry.group) || std::ranges::any_of(m_selection, names)) {
            FinishSum();
            Show(entry, JsonOf(entry));
            return;
        }
        if (m_sum.items > 0 && (m_sum.entry.group != entry.group || m_sum.entry.kind != entry.kind))
            FinishSum();
        m_sum.Add(entry);
    }

    void Give(Session& session) {
        FinishSum();
        session.result = {
            {"entries", std::move(m_entries)}, {"files", m_count}, {"bytes", m_bytes}};
        if (!m_table.IsEmpty())
            m_table.Print(session.out);
        PrintLine(session.out, Text(Message::FilesInAll,
                                    {Platform::ToText(m_count), Platform::ToText(m_bytes)}));
    }

private:
    void Show(const StoredEntry& entry, Json json) {
        m_table.Add(RowOf(entry));
        m_entries.push_back(std::move(json));
    }
    void FinishSum() {
        if (m_sum.items == 0)
            return;
        m_sum.MakeLine();
        Show(m_sum.entry, m_sum.AsJson());
        m_sum = {};
    }

    const std::vector<Selected>& m_selection;
    // The file comes last, so that no name, however long, breaks the columns.
    Table m_table{{{Text(Message::TitleKind)},
                   {Text(Message::TitleBytes), Table::Align::Right},
                   {Text(Message::TitleRevision), Table::Align::Right},
                   {Text(Message::TitleTime)},
                   {Text(Message::TitleFile)}}};
    Json m_entries = Json::array();
    ItemSum m_sum;
    std::int64_t m_count = 0;
    std::int64_t m_bytes = 0;
};

} // namespace

ExitStatus RunLs(Session& session, const Invocation& invocation) {
    const std::vector<Selected> selection = ParseSelection(invocation.words);
    CheckKindsAreKnown(selection, *Repository::CRepositoryStorageManager::Instance());
    const OpenStorage storage = RequireStorage();
    RequireRepository(storage);

    Lister lister(selection);
    for (const StoredEntry& entry : ListRepository(storage))
        lister.Take(entry);
    lister.Give(session);
    return ExitStatus::Done;
}

} // namespace App
