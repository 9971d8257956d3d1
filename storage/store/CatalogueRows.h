// SPDX-License-Identifier: MIT
// The rows of catalogue items.
#pragma once

#include "storage/store/FileRows.h"

namespace Storage {

using CatalogueItemPtr = boost::shared_ptr<Repository::CNetCatalogueItem>;

struct CatalogueRow {
    std::int64_t id = 0;
    std::int64_t position = 0;
    CatalogueItemPtr item; // without its files
};

// Current items, asked for at once and read later.
class CatalogueQuery {
public:
    static CatalogueQuery ById(SqlConnection& sql, CStringView tag, CStringView id);
    // In order of arrival.
    static CatalogueQuery Children(SqlConnection& sql, CStringView tag, CStringView parentId);
    // Of each parent in order of arrival.
    static CatalogueQuery All(SqlConnection& sql, CStringView tag);

    std::vector<CatalogueRow> Read();
    // The first, or nothing.
    std::optional<CatalogueRow> ReadOne();

private:
    explicit CatalogueQuery(std::unique_ptr<SqlRows> rows) : m_rows(std::move(rows)) {}
    std::unique_ptr<SqlRows> m_rows;
};

} // namespace Storage
