// SPDX-License-Identifier: MIT
// Reading items together with the files that they hold.
#pragma once

#include "storage/store/FileRows.h"

namespace Storage {

// The items that `askItems` asks for, as of one moment, and in them the files that `askFiles` asks
// for, which may be none.  Both ask before the first answer is waited for.
template<typename AskItems>
auto ItemsWithFiles(SqlConnection& sql, ContentsAhead& contents, const LeftOut& leftOut,
                    const AskItems& askItems,
                    const std::function<std::optional<RecordQuery>()>& askFiles) {
    decltype(askItems().Read()) rows;
    StoredRecords records;
    {
        const ReadTransaction transaction(sql);
        auto items = askItems();
        auto files = askFiles();
        rows = items.Read();
        if (files)
            records = files->Read();
    }
    std::vector<decltype(rows.front().item)> items;
    FileLists lists;
    for (const auto& row : rows) {
        items.push_back(row.item);
        lists[row.id] = row.item->GetFiles();
    }
    AttachFiles(sql, contents, records, lists, leftOut);
    return items;
}

} // namespace Storage
