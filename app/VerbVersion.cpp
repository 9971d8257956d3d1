// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/Verbs.h"
#include "app/Versions.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace App {

ExitStatus RunVersion(Session& session, const Invocation&) {
    const std::vector<InstalledPart> installed = InstalledParts();
    std::size_t width = 0;
    for (const auto& [name, version] : installed)
        width = std::max(width, WidthOf(name));
    Json parts = Json::array();
    for (const auto& [name, version] : installed) {
        PrintLine(session.out, PadRight(name, width + 2) +
                                   (version.empty() ? Text(Message::NoVersion) : version));
        parts.push_back({{"name", name}, {"version", OrNull(version)}});
    }
    session.result = {{"parts", std::move(parts)}};
    return ExitStatus::Done;
}

} // namespace App
