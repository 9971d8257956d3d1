// SPDX-License-Identifier: MIT
#include "app/ComparisonTable.h"
#include "app/Print.h"
#include "app/Verbs.h"

#include "platform/text/Numbers.h"

#include <ostream>

namespace App {

ExitStatus RunDiff(Session& session, const Invocation& invocation) {
    const std::vector<Selected> selection = ParseSelection(invocation.words);
    const OpenStorage storage = RequireStorageFor(selection);

    const Comparison comparison = Compare(storage, selection, Purpose::Diff);
    const std::vector<ComparedKind>& kinds = comparison.kinds;
    session.result = JsonOf(kinds, Purpose::Diff);
    PrintStates(session.out, kinds, Purpose::Diff);
    std::int64_t files = 0;
    for (const ComparedKind& kind : kinds)
        files += static_cast<std::int64_t>(kind.files.size());
    const std::int64_t different = files - Sum(kinds, Difference::Same, Purpose::Diff).files;
    const bool isWhole = comparison.status == ExitStatus::Done;
    if (different == 0 && isWhole)
        PrintWrapped(session.out, u"", Text(Message::NothingDiffers));
    if (different == 0)
        return comparison.status;
    PrintLine(session.out,
              Text(Message::FilesDiffer, {Platform::ToText(different), Platform::ToText(files)}));
    if (invocation.Has("--files"))
        PrintFiles(session.out, kinds, Purpose::Diff);
    else
        PrintWrapped(session.out, u"", Text(Message::HintFiles));
    return isWhole ? ExitStatus::Different : comparison.status;
}

} // namespace App
