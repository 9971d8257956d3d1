// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/Storage.h"
#include "app/Verbs.h"

#include <ostream>

namespace App {

ExitStatus RunRepoCreate(Session& session, const Invocation& invocation) {
    const OpenStorage storage = RequireStorage();
    auto& administration = RequireAdministration(storage);
    const CString& address = invocation.words.front();
    CString problemText;
    const Storage::Problem problem = administration.Create(address, problemText);
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);
    session.result = {{"address", address}};
    PrintWrapped(session.out, u"", Text(Message::RepositoryIsThere, {address}));
    PrintLine(session.out, Text(Message::ConnectToIt, {address})); // whole, to be copied
    return ExitStatus::Done;
}

} // namespace App
