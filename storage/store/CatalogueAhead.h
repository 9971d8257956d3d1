// SPDX-License-Identifier: MIT
// A catalogue's whole tree, read with its roots on an engine where each question would be a
// round trip, for a caller who walks down it: each group and each item is given once.
#pragma once

#include "storage/store/CatalogueRows.h"

#include <unordered_map>
#include <unordered_set>

namespace Storage {

class CatalogueAhead {
public:
    explicit CatalogueAhead(std::shared_ptr<ContentCache> cache) : m_contents(std::move(cache)) {}

    // Whether to read the tree with what is asked for now: a catalogue's roots, or the next of
    // many questions about one catalogue that could not be answered from here.
    bool IsWorthReading(CStringView tag, CStringView parentId);
    // Reads the tree of that moment; false when it would take too much memory.  What was read
    // before is forgotten.
    bool Read(SqlConnection& sql, CStringView tag);
    void Forget();

    // The children of a group, without files.  Nothing when that has to be asked: they were given
    // already, are not known, or somebody committed something since they were read.
    std::optional<std::vector<CatalogueItemPtr>> Children(SqlConnection& sql, CStringView tag,
                                                          CStringView parentId);
    // The same for one item.  It has no files yet.
    CatalogueItemPtr Item(SqlConnection& sql, CStringView tag, CStringView id);
    // Gives files to an item that came from here.
    void AttachFiles(SqlConnection& sql, Repository::CNetCatalogueItem& item,
                     const LeftOut& leftOut);

private:
    struct Node {
        CatalogueRow row;
        bool isGiven = false;
        std::size_t firstFile = 0; // of m_records
        std::size_t files = 0;
    };

    bool IsToBeUsed(SqlConnection& sql, CStringView tag);
    void Arrange(StoredRecords records);
    void Walk(const CString& parentId, std::vector<std::size_t>& order) const;

    CString m_tag;
    bool m_isRead = false;
    std::vector<Node> m_nodes;
    std::unordered_map<CString, std::size_t> m_byId;
    std::unordered_map<CString, std::vector<std::size_t>> m_children; // by parent, in order
    std::unordered_set<CString> m_givenGroups;
    StoredRecords m_records; // in the order of a walk from the roots down
    ContentsAhead m_contents;
    CString m_askedTag; // of the questions that were not answered from here
    std::size_t m_asked = 0;
};

} // namespace Storage
