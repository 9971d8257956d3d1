// SPDX-License-Identifier: MIT
// The kinds that the dialog shows, in lists with check boxes and in drop-down lists.
#pragma once

#include "client/dialog/rules/Messages.h"

#include "ZEBXRepositoryClient/LocalContent.h"

#include <map>

namespace Repository {

template<class Kind>
struct KindRow {
    const Kind* kind = nullptr; // the registry's
    CString name;
    int checkState = 0; // any other than 0 is a tick
};

// A row, not ticked, for each kind that is not optional or is switched on, in the registry's
// order.
template<class Kind>
std::vector<KindRow<Kind>> RowsOf(const std::map<CString, boost::shared_ptr<Kind>>& kinds) {
    std::vector<KindRow<Kind>> rows;
    for (const auto& [id, kind] : kinds)
        if (kind && IsEnabled(*kind))
            rows.push_back({kind.get(), MsgText(kind->GetMsgNum())});
    return rows;
}

} // namespace Repository
