// SPDX-License-Identifier: MIT
// repo copy, repo export, repo import: one repository with its whole history in another place.
#include "app/Print.h"
#include "app/Storage.h"
#include "app/Verbs.h"

#include "platform/host/Interruption.h"
#include "platform/text/Numbers.h"

#include <chrono>
#include <ostream>

namespace App {
namespace {

using Platform::ToText;
using Storage::CopyCounts;
using Storage::Problem;

// Addresses as the storage takes them, and as people read them.
struct Places {
    CString from;
    CString to;
    CString shownFrom;
    CString shownTo;
};

class CopyRun {
public:
    CopyRun(Session& session, const Places& places) : m_session(session), m_places(places) {}

    ExitStatus operator()(Storage::RepositoryAdministration& administration) {
        CString problemText;
        const Problem problem = Copy(administration, problemText);
        if (m_wasTold)
            GiveResult(problem == Problem::None);
        if (problem == Problem::None)
            return ExitStatus::Done;
        // What is refused here is a place that holds something else.
        throw AppError(problem == Problem::Refused ? ExitStatus::Conflict : StatusOf(problem),
                       problemText);
    }

private:
    Problem Copy(Storage::RepositoryAdministration& administration, CString& problemText) {
        const Platform::InterruptionGuard interruptible;
        const auto tell = [this](const CopyCounts& counts) { Tell(counts); };
        const Problem problem =
            administration.Copy(m_places.from, m_places.to, tell, m_counts, problemText);
        m_session.terminal.ShowProgress({});
        return problem;
    }

    void Tell(const CopyCounts& counts) {
        if (!m_wasTold)
            m_revisionsBefore = counts.revisions;
        m_wasTold = true;
        if (!m_session.terminal.ShowsProgress())
            return;
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(
            std::chrono::steady_clock::now() - m_begun);
        const bool isWhole = counts.revisions == counts.allRevisions;
        m_session.terminal.ShowProgress(
            Text(isWhole ? Message::ProgressCompared : Message::ProgressCopied,
                 {ToText(counts.revisions), ToText(counts.allRevisions), ToText(counts.bytes)}) +
            u"  " + ToText(static_cast<std::int64_t>(seconds.count())) + u" s");
    }

    void GiveResult(bool isWhole) {
        PrintResult(isWhole);
        m_session.result = {{"from", m_places.shownFrom},
                            {"to", m_places.shownTo},
                            {"made", m_counts.isNew},
                            {"revisions", m_counts.revisions},
                            {"allRevisions", m_counts.allRevisions},
                            {"copied",
                             {{"revisions", CopiedRevisions()},
                              {"contents", m_counts.contents},
                              {"bytes", m_counts.bytes}}},
                            {"checked", nullptr}};
        if (isWhole)
            m_session.result["checked"] = {{"contents", m_counts.checkedContents},
                                           {"bytes", m_counts.checkedBytes}};
    }

    void PrintResult(bool isWhole) {
        const auto print = [this](Message message, std::initializer_list<CStringView> values) {
            PrintWrapped(m_session.out, u"", Text(message, values));
        };
        if (m_counts.isNew)
            print(Message::CopyMade, {m_places.shownTo});
        print(Message::Copied,
              {ToText(CopiedRevisions()), ToText(m_counts.contents), ToText(m_counts.bytes)});
        if (isWhole)
            print(Message::CopyIsWhole,
                  {ToText(m_counts.revisions), ToText(m_counts.checkedContents),
                   ToText(m_counts.checkedBytes)});
        else
            print(Message::CopyIsPart, {ToText(m_counts.revisions), ToText(m_counts.allRevisions)});
    }

    std::int64_t CopiedRevisions() const { return m_counts.revisions - m_revisionsBefore; }

    Session& m_session;
    const Places m_places;
    CopyCounts m_counts;
    std::int64_t m_revisionsBefore = 0;
    bool m_wasTold = false;
    const std::chrono::steady_clock::time_point m_begun = std::chrono::steady_clock::now();
};

// The address of a repository's file.
CString AddressOfFile(const CString& file) {
    if (file.starts_with(u"sqlite:") || file.starts_with(u"postgresql:") ||
        file.starts_with(u"postgres:"))
        throw AppError(ExitStatus::Usage, Text(Message::AddressForFile));
    return u"sqlite:" + file;
}

} // namespace

ExitStatus RunRepoCopy(Session& session, const Invocation& invocation) {
    const OpenStorage storage = RequireStorage();
    auto& administration = RequireAdministration(storage);
    const CString& from = invocation.words[0];
    const CString& to = invocation.words[1];
    return CopyRun(session, {from, to, from, to})(administration);
}

ExitStatus RunRepoExport(Session& session, const Invocation& invocation) {
    const CString file = AddressOfFile(invocation.words[0]);
    const OpenStorage storage = RequireStorage();
    auto& administration = RequireAdministration(storage);
    return CopyRun(session, {u"", file, StateOf(administration).address, file})(administration);
}

ExitStatus RunRepoImport(Session& session, const Invocation& invocation) {
    const CString file = AddressOfFile(invocation.words[0]);
    const OpenStorage storage = RequireStorage();
    auto& administration = RequireAdministration(storage);
    return CopyRun(session, {file, u"", file, StateOf(administration).address})(administration);
}

} // namespace App
