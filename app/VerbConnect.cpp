// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/Storage.h"
#include "app/Verbs.h"

#include "platform/text/Numbers.h"

#include <ostream>

namespace App {

ExitStatus RunConnect(Session& session, const Invocation& invocation) {
    const OpenStorage storage = RequireStorage();
    auto* administration = storage.plugin.administration;
    if (!administration)
        throw AppError(ExitStatus::Configuration,
                       Text(Message::NothingToConnect, {storage.plugin.file}));
    const CString address = invocation.words.empty() ? CString() : invocation.words.front();
    CString problemText;
    const Storage::Problem problem =
        administration->Connect(address, invocation.Has("--create"), problemText);
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);

    const Storage::RepositoryState state = StateOf(*administration);
    session.result = {{"address", state.address},
                      {"revision", state.revision},
                      {"files", state.files},
                      {"mayWrite", state.mayWrite}};
    PrintLine(session.out,
              Text(Message::Connected,
                   {state.address, Platform::ToText(state.revision), Platform::ToText(state.files),
                    Text(state.mayWrite ? Message::RightsWrite : Message::RightsRead)}));
    PrintLine(session.out,
              Text(state.files == 0 && state.mayWrite ? Message::NextIsPush : Message::NextIsPull));
    return ExitStatus::Done;
}

} // namespace App
