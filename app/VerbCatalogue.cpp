// SPDX-License-Identifier: MIT
#include "app/Print.h"
#include "app/StoredCatalogue.h"
#include "app/Verbs.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <map>
#include <ostream>

namespace App {
namespace {

struct ItemFile {
    CString name;
    std::int64_t bytes = 0;
};

// The items of a catalogue as they are shown: a table or a tree, and the document.
class Shown {
public:
    Shown(const OpenStorage& storage, CString tag, const Invocation& invocation)
        : m_storage(storage), m_tag(std::move(tag)), m_isTree(invocation.Has("--tree")),
          m_withFiles(invocation.Has("--files")), m_table(ColumnsFor(m_withFiles)) {}

    void Take(const StoredCatalogueItem& item, std::size_t level) {
        const std::vector<ItemFile> files = m_withFiles ? FilesOf(*item) : std::vector<ItemFile>();
        m_names[item->GetCatalogueId()] = item->GetName();
        m_groups += item->GetIsGroup() ? 1 : 0;
        m_items.push_back(JsonOf(*item, level, files));
        if (m_isTree)
            AddBranch(*item, level, files);
        else
            AddRow(*item, files);
    }

    bool IsEmpty() const { return m_items.empty(); }

    void Give(Session& session) {
        for (const CString& line : m_tree)
            PrintLine(session.out, line);
        if (!m_table.IsEmpty())
            m_table.Print(session.out);
        PrintLine(session.out, Text(Message::CatalogueHolds,
                                    {Platform::ToText(static_cast<std::int64_t>(m_items.size())),
                                     Platform::ToText(m_groups)}));
        session.result = {
            {"catalogue", m_tag}, {"items", std::move(m_items)}, {"deleted", nullptr}};
    }

private:
    static std::vector<Table::Column> ColumnsFor(bool withFiles) {
        std::vector<Table::Column> columns{
            {Text(Message::TitleGuid)}, {Text(Message::TitleParent)}, {Text(Message::TitleName)}};
        if (withFiles)
            columns.push_back({Text(Message::TitleFiles)});
        return columns;
    }

    std::vector<ItemFile> FilesOf(const Repository::CNetCatalogueItem& item) const {
        const auto whole = m_storage.Backend().GetCatalogItemById(
            m_tag.c_str(), item.GetCatalogueId().c_str(), /*withFiles*/ 1);
        std::vector<ItemFile> files;
        if (!whole)
            return files;
        for (const auto& file : *whole->GetFiles()) {
            std::string buffer;
            files.push_back({file->GetFileName(),
                             static_cast<std::int64_t>(file->GetFileBytes(buffer).size())});
        }
        return files;
    }

    Json JsonOf(const Repository::CNetCatalogueItem& item, std::size_t level,
                const std::vector<ItemFile>& files) const {
        Json listed = m_withFiles ? Json::array() : Json();
        for (const ItemFile& file : files)
            listed.push_back({{"name", file.name}, {"bytes", file.bytes}});
        return {{"id", item.GetCatalogueId()},
                {"name", item.GetName()},
                {"parent", OrNull(item.GetParentId())},
                {"isGroup", item.GetIsGroup() != 0},
                {"level", level},
                {"content", item.GetItemContent()},
                {"files", std::move(listed)}};
    }

    void AddRow(const Repository::CNetCatalogueItem& item, const std::vector<ItemFile>& files) {
        const auto parent = m_names.find(item.GetParentId());
        std::vector<CString> row{item.GetCatalogueId(),
                                 parent != m_names.end() ? parent->second : CString(u"-"),
                                 item.GetName()};
        if (m_withFiles) {
            CString names;
            for (const ItemFile& file : files)
                names += (names.empty() ? u"" : u", ") + file.name;
            row.push_back(names);
        }
        m_table.Add(std::move(row));
    }

    void AddBranch(const Repository::CNetCatalogueItem& item, std::size_t level,
                   const std::vector<ItemFile>& files) {
        const CString indent(level * 2, u' ');
        m_tree.push_back(indent + item.GetName() + (item.GetIsGroup() ? u"/" : u""));
        for (const ItemFile& file : files)
            m_tree.push_back(indent + u"  - " + file.name);
    }

    const OpenStorage& m_storage;
    CString m_tag;
    bool m_isTree;
    bool m_withFiles;
    Table m_table;
    std::vector<CString> m_tree;
    std::map<CString, CString> m_names; // by id
    Json m_items = Json::array();
    std::int64_t m_groups = 0;
};

void Show(Session& session, const OpenStorage& storage, const CString& tag,
          const Invocation& invocation) {
    Shown shown(storage, tag, invocation);
    LookAtStoredCatalogue(
        storage, tag, {},
        [&](const StoredCatalogueItem& item, std::size_t level) { shown.Take(item, level); });
    // What this workstation does not know and the repository does not hold was mistyped.
    if (shown.IsEmpty())
        CheckKindsAreKnown({{Group::Catalogues, tag}}, storage.manager);
    shown.Give(session);
}

void Delete(Session& session, const OpenStorage& storage, const CString& tag, const CString& id) {
    RequireRights(storage);
    const auto item = storage.Backend().GetCatalogItemById(tag.c_str(), id.c_str(), 0);
    if (!item) {
        CheckKindsAreKnown({{Group::Catalogues, tag}}, storage.manager);
        throw AppError(ExitStatus::SomeFailed, Text(Message::NoSuchCatalogueItem, {tag, id}));
    }
    if (!storage.manager.DeleteCatalogItem(tag.c_str(), id.c_str())) {
        auto* administration = storage.plugin.administration;
        throw AppError(
            StatusOf(administration ? administration->TakeLastProblem() : Storage::Problem::None),
            Text(Message::NotDeleted, {id, tag}));
    }
    PrintLine(session.out, Text(Message::CatalogueItemDeleted, {item->GetName(), id}));
    session.result = {{"catalogue", tag},
                      {"items", nullptr},
                      {"deleted", {{"id", id}, {"name", item->GetName()}}}};
}

// "TAG", "TAG show" or "TAG delete GUID".
void CheckWords(const Invocation& invocation, bool isDelete) {
    const std::vector<CString>& words = invocation.words;
    const std::size_t count = isDelete ? 3 : 2;
    if (words.size() > 1 && !isDelete && words[1] != u"show")
        throw AppError(ExitStatus::Usage, Text(Message::BadCatalogueAction, {words[1]}));
    if (words.empty() || (isDelete && words.size() < count))
        throw AppError(ExitStatus::Usage, Text(Message::WordMissing,
                                               {u"catalogue", words.empty() ? u"TAG" : u"GUID"}));
    if (words.size() > count)
        throw AppError(ExitStatus::Usage, Text(Message::OneWordTooMany, {words[count]}));
    for (const char* option : {"--tree", "--files"}) {
        if (isDelete && invocation.Has(option))
            throw AppError(ExitStatus::Usage,
                           Text(Message::OptionNotForAction, {Platform::FromUtf8(option)}));
    }
}

} // namespace

ExitStatus RunCatalogue(Session& session, const Invocation& invocation) {
    const std::vector<CString>& words = invocation.words;
    const bool isDelete = words.size() > 1 && words[1] == u"delete";
    CheckWords(invocation, isDelete);
    const OpenStorage storage = RequireStorage();
    RequireRepository(storage);
    if (isDelete)
        Delete(session, storage, words[0], words[2]);
    else
        Show(session, storage, words[0], invocation);
    return ExitStatus::Done;
}

} // namespace App
