// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/Selection.h"
#include "app/Storage.h"
#include "app/Verbs.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <utility>

namespace App {
namespace {

using Storage::RevisionEntry;

constexpr std::size_t kDefaultLimit = 20;
// Asked for at once, where only some of them are selected.
constexpr std::size_t kPage = 500;

struct Operation {
    CStringView name; // the backend's
    Message text;
};

constexpr std::array kOperations = {
    Operation{u"AddRepositoryFiles", Message::OperationFiles},
    Operation{u"RegisterContent", Message::OperationKind},
    Operation{u"SaveGS", Message::OperationGs},
    Operation{u"AddRepositoryItem", Message::OperationItem},
    Operation{u"RenameRepositoryItem", Message::OperationItemRenamed},
    Operation{u"DeleteRepositoryItem", Message::OperationItemDeleted},
    Operation{u"AddCatalogItem", Message::OperationCatalogue},
    Operation{u"DeleteCatalogItem", Message::OperationCatalogueDeleted}};

CString WordFor(const CString& operation) {
    const auto* found = std::ranges::find(kOperations, operation, &Operation::name);
    return found != kOperations.end() ? Text(found->text) : operation;
}

std::size_t LimitOf(const Invocation& invocation) {
    const auto given = invocation.options.find("--limit");
    if (given == invocation.options.end())
        return kDefaultLimit;
    const CString& text = given->second;
    const bool isNumber =
        std::ranges::all_of(text, [](char16_t c) { return c >= u'0' && c <= u'9'; });
    const std::int32_t limit = Platform::ToInteger(text);
    if (!isNumber || limit < 1)
        throw AppError(ExitStatus::Usage, Text(Message::BadLimit, {text}));
    return static_cast<std::size_t>(limit);
}

// Whether one of the kinds in "002_NODE, 003_PIPE" is the one.
bool Names(CStringView subject, CStringView kind) {
    for (std::size_t start = 0; start <= subject.size();) {
        const std::size_t end = std::min(subject.find(u", ", start), subject.size());
        if (subject.substr(start, end - start) == kind)
            return true;
        start = end + 2;
    }
    return false;
}

template<typename Kinds>
bool NamesOneOf(CStringView subject, const Kinds& kinds) {
    return std::ranges::any_of(kinds,
                               [subject](const auto& kind) { return Names(subject, kind.first); });
}

// A revision of an item tells it as "TAG/identifier".
bool NamesItem(const Selected& selected, const RevisionEntry& revision) {
    const bool ofCatalogue =
        revision.operation == u"AddCatalogItem" || revision.operation == u"DeleteCatalogItem";
    const bool ofDefinition = revision.operation.ends_with(u"RepositoryItem");
    if (selected.group == Group::Catalogues ? !ofCatalogue : !ofDefinition)
        return false;
    return !selected.name || revision.subject.starts_with(*selected.name + u"/");
}

// A revision tells the kinds by their identifiers alone.
bool Covers(const Selected& selected, const RevisionEntry& revision,
            Repository::CRepositoryStorageManager& manager) {
    if (selected.group == Group::GS)
        return revision.operation == u"SaveGS" &&
               (!selected.name || revision.subject == *selected.name);
    if (HoldsItems(selected.group))
        return NamesItem(selected, revision);
    if (revision.operation != u"AddRepositoryFiles" && revision.operation != u"RegisterContent")
        return false;
    if (selected.name)
        return Names(revision.subject, *selected.name);
    return selected.group == Group::FOC ? NamesOneOf(revision.subject, manager.GetFOCMetadata())
                                        : NamesOneOf(revision.subject, manager.GetNCFMetadata());
}

// Walks from the newest revision to older ones.
class History {
public:
    History(const OpenStorage& storage, const std::vector<Selected>& selection)
        : m_storage(storage), m_selection(selection) {}

    // The newest `count` that are selected; no selection takes in all.
    std::vector<RevisionEntry> Newest(std::size_t count) {
        std::vector<RevisionEntry> found;
        std::vector<RevisionEntry> page;
        std::int64_t before = 0;
        do {
            page = Page(before);
            for (const RevisionEntry& revision : page) {
                if (found.size() < count && IsSelected(revision))
                    found.push_back(revision);
            }
            before = page.empty() ? 0 : page.back().number;
        } while (found.size() < count && page.size() == kPage);
        return found;
    }

private:
    std::vector<RevisionEntry> Page(std::int64_t before) {
        std::vector<RevisionEntry> page;
        CString problemText;
        const auto problem =
            m_storage.plugin.administration->Revisions(before, kPage, page, problemText);
        if (problem != Storage::Problem::None)
            throw AppError(StatusOf(problem), problemText);
        return page;
    }

    bool IsSelected(const RevisionEntry& revision) const {
        return m_selection.empty() ||
               std::ranges::any_of(m_selection, [&](const Selected& selected) {
                   return Covers(selected, revision, m_storage.manager);
               });
    }

    const OpenStorage& m_storage;
    const std::vector<Selected>& m_selection;
};

// Two lines: when and who, and indented below what; both stay within a terminal's width.
void PrintRevision(std::ostream& out, const RevisionEntry& revision, std::size_t width) {
    const CString lead = PadLeft(Platform::ToText(revision.number), width) + u"  ";
    PrintWrapped(
        out, lead,
        Text(Message::LogWho, {ShownTime(revision.time), revision.user, revision.workstation}));
    CString what = WordFor(revision.operation);
    if (!revision.subject.empty())
        what += u": " + revision.subject;
    if (revision.files > 0 || revision.bytes > 0)
        what += u" (" +
                Text(Message::LogAmount,
                     {Platform::ToText(revision.files), Platform::ToText(revision.bytes)}) +
                u")";
    PrintWrapped(out, CString(lead.size(), u' '), what);
}

Json JsonOf(const RevisionEntry& revision) {
    return {{"number", revision.number},
            {"time", revision.time},
            {"user", revision.user},
            {"workstation", revision.workstation},
            {"program", revision.program},
            {"operation", revision.operation},
            {"subject", OrNull(revision.subject)},
            {"files", revision.files},
            {"bytes", revision.bytes}};
}

} // namespace

ExitStatus RunLog(Session& session, const Invocation& invocation) {
    const std::size_t limit = LimitOf(invocation);
    std::vector<Selected> selection;
    if (!invocation.words.empty())
        selection = ParseSelection(invocation.words);
    CheckKindsAreKnown(selection, *Repository::CRepositoryStorageManager::Instance());
    const OpenStorage storage = RequireStorage();
    RequireAdministration(storage);
    RequireRepository(storage);

    // One more than shown tells whether there is more.
    std::vector<RevisionEntry> revisions = History(storage, selection).Newest(limit + 1);
    const bool hasMore = revisions.size() > limit;
    if (hasMore)
        revisions.pop_back();
    if (revisions.empty())
        PrintWrapped(session.out, u"", Text(Message::NoRevisions));
    Json entries = Json::array();
    for (const RevisionEntry& revision : revisions) {
        PrintRevision(session.out, revision, Platform::ToText(revisions.front().number).size());
        entries.push_back(JsonOf(revision));
    }
    session.result = {{"revisions", std::move(entries)}, {"hasMore", hasMore}};
    if (hasMore)
        PrintWrapped(session.out, u"",
                     Text(Message::OlderRevisions,
                          {Platform::ToText(2 * static_cast<std::int64_t>(limit))}));
    return ExitStatus::Done;
}

} // namespace App
