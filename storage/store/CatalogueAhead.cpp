// SPDX-License-Identifier: MIT
#include "storage/store/CatalogueAhead.h"

#include "platform/text/Utf8.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace Storage {
namespace {

using Platform::ToUtf8;

// So much a tree may take, counted roughly.
constexpr std::int64_t kMostBytes = 64 << 20;
constexpr std::int64_t kItemBytes = 600;
constexpr std::int64_t kFileBytes = 600;
// After so many single questions a walk is under way whose tree was dropped.
constexpr std::size_t kManyQuestions = 16;

std::int64_t TreeBytes(SqlConnection& sql, CStringView tag) {
    const auto rows = sql.Query(
        "SELECT COUNT(*), COALESCE(SUM(LENGTH(item_content)), 0), "
        "(SELECT COUNT(*) FROM stored_file WHERE holder IN (SELECT id FROM catalogue_item "
        "WHERE catalogue_tag = $1 AND until_revision IS NULL)) "
        "FROM catalogue_item WHERE catalogue_tag = $1 AND until_revision IS NULL",
        {ToUtf8(tag)});
    rows->Next();
    return rows->Integer(0) * kItemBytes + rows->Integer(1) * 2 + rows->Integer(2) * kFileBytes;
}

} // namespace

bool CatalogueAhead::IsWorthReading(CStringView tag, CStringView parentId) {
    if (m_askedTag != tag)
        m_asked = 0;
    m_askedTag = tag;
    return parentId.empty() || ++m_asked > kManyQuestions;
}

bool CatalogueAhead::Read(SqlConnection& sql, CStringView tag) {
    Forget();
    m_asked = 0;
    if (TreeBytes(sql, tag) > kMostBytes)
        return false;
    CatalogueQuery items = CatalogueQuery::All(sql, tag);
    RecordQuery records = RecordQuery::OfCatalogue(sql, tag);
    for (CatalogueRow& row : items.Read()) {
        const std::size_t number = m_nodes.size();
        m_byId.emplace(row.item->GetCatalogueId(), number);
        m_children[row.item->GetParentId()].push_back(number);
        m_nodes.push_back({std::move(row)});
    }
    Arrange(records.Read());
    m_tag = tag;
    m_isRead = true;
    return true;
}

void CatalogueAhead::Forget() {
    m_isRead = false;
    m_nodes.clear();
    m_byId.clear();
    m_children.clear();
    m_givenGroups.clear();
    m_records.clear();
    m_contents.Forget();
}

// The order in which a walk from the roots down will want the contents.
void CatalogueAhead::Arrange(StoredRecords records) {
    std::unordered_map<std::int64_t, StoredRecords> byHolder;
    for (StoredRecord& record : records)
        byHolder[record.holder].push_back(std::move(record));
    std::vector<std::size_t> order;
    Walk({}, order);
    for (const std::size_t number : order) {
        Node& node = m_nodes[number];
        const auto found = byHolder.find(node.row.id);
        node.firstFile = m_records.size();
        if (found == byHolder.end())
            continue;
        node.files = found->second.size();
        std::ranges::move(found->second, std::back_inserter(m_records));
    }
    m_contents.Expect(ContentsOf(m_records));
}

void CatalogueAhead::Walk(const CString& parentId, std::vector<std::size_t>& order) const {
    std::vector<bool> isSeen(m_nodes.size()); // groups may hold each other
    std::vector<std::size_t> waiting;
    const auto add = [&](const CString& parent) {
        const auto found = m_children.find(parent);
        if (found != m_children.end())
            waiting.insert(waiting.end(), found->second.rbegin(), found->second.rend());
    };
    const auto walk = [&] {
        while (!waiting.empty()) {
            const std::size_t number = waiting.back();
            waiting.pop_back();
            if (isSeen[number])
                continue;
            isSeen[number] = true;
            order.push_back(number);
            add(m_nodes[number].row.item->GetCatalogueId());
        }
    };
    add(parentId);
    walk();
    // Those whom no walk reaches.
    for (std::size_t number = 0; number < m_nodes.size(); ++number) {
        waiting.push_back(number);
        walk();
    }
}

bool CatalogueAhead::IsToBeUsed(SqlConnection& sql, CStringView tag) {
    if (!m_isRead || m_tag != tag)
        return false;
    if (sql.WasChanged()) {
        Forget();
        return false;
    }
    return true;
}

std::optional<std::vector<CatalogueItemPtr>>
CatalogueAhead::Children(SqlConnection& sql, CStringView tag, CStringView parentId) {
    if (!IsToBeUsed(sql, tag) || !m_givenGroups.insert(CString(parentId)).second)
        return std::nullopt;
    std::vector<CatalogueItemPtr> items;
    if (const auto found = m_children.find(CString(parentId)); found != m_children.end())
        for (const std::size_t number : found->second)
            items.push_back(
                boost::make_shared<Repository::CNetCatalogueItem>(*m_nodes[number].row.item));
    return items;
}

CatalogueItemPtr CatalogueAhead::Item(SqlConnection& sql, CStringView tag, CStringView id) {
    if (!IsToBeUsed(sql, tag))
        return {};
    const auto found = m_byId.find(CString(id));
    if (found == m_byId.end() || std::exchange(m_nodes[found->second].isGiven, true))
        return {};
    return boost::make_shared<Repository::CNetCatalogueItem>(*m_nodes[found->second].row.item);
}

void CatalogueAhead::AttachFiles(SqlConnection& sql, Repository::CNetCatalogueItem& item,
                                 const LeftOut& leftOut) {
    const Node& node = m_nodes[m_byId.at(item.GetCatalogueId())];
    FileAttacher attacher(leftOut);
    for (std::size_t place = node.firstFile; place < node.firstFile + node.files; ++place)
        attacher.Attach(
            m_records[place], [&] { return m_contents.Take(sql, place); }, *item.GetFiles());
}

} // namespace Storage
