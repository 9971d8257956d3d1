// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/Storage.h"
#include "app/Verbs.h"

#include "platform/text/Numbers.h"

#include <ostream>
#include <utility>

namespace App {

ExitStatus RunRepoCheck(Session& session, const Invocation&) {
    const OpenStorage storage = RequireStorage();
    auto& administration = RequireAdministration(storage);
    std::vector<Storage::Finding> findings;
    Storage::CheckCounts counts;
    CString problemText;
    const Storage::Problem problem = administration.Check(findings, counts, problemText);
    Json told = Json::array();
    for (const Storage::Finding& finding : findings) {
        PrintWrapped(session.out, u"", finding.where + u": " + finding.what);
        told.push_back({{"where", finding.where}, {"what", finding.what}});
    }
    session.result = {{"contents", counts.contents},
                      {"bytes", counts.bytes},
                      {"files", counts.files},
                      {"revisions", counts.revisions},
                      {"findings", std::move(told)}};
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);
    PrintWrapped(session.out, u"",
                 Text(Message::Checked,
                      {Platform::ToText(counts.contents), Platform::ToText(counts.bytes),
                       Platform::ToText(counts.files), Platform::ToText(counts.revisions)}));
    const auto found = static_cast<std::int64_t>(findings.size());
    PrintWrapped(session.out, u"",
                 found == 0 ? Text(Message::CheckedClean)
                            : Text(Message::CheckedDamaged, {Platform::ToText(found)}));
    return found == 0 ? ExitStatus::Done : ExitStatus::Integrity;
}

} // namespace App
