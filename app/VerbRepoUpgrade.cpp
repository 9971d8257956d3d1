// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/Storage.h"
#include "app/Verbs.h"

#include "platform/text/Numbers.h"

#include <ostream>

namespace App {

ExitStatus RunRepoUpgrade(Session& session, const Invocation&) {
    const OpenStorage storage = RequireStorage();
    auto& administration = RequireAdministration(storage);
    std::int32_t from = 0;
    std::int32_t to = 0;
    CString problemText;
    const Storage::Problem problem = administration.Upgrade(from, to, problemText);
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);
    session.result = {{"from", from}, {"to", to}};
    PrintWrapped(session.out, u"",
                 from == to
                     ? Text(Message::NothingToUpgrade, {Platform::ToText(to)})
                     : Text(Message::Upgraded, {Platform::ToText(from), Platform::ToText(to)}));
    return ExitStatus::Done;
}

} // namespace App
