// SPDX-License-Identifier: MIT
#include "app/Definitions.h"
#include "app/Print.h"
#include "app/Suggest.h"
#include "app/Verbs.h"

#include "ZEBXGisCore/XmlFile.h"
#include "platform/os/Path.h"
#include "platform/text/Numbers.h"

#include <algorithm>
#include <ostream>
#include <set>

namespace App {
namespace {

using namespace ZEBGis::Workspace;
using ZEBGis::CRepositoryItem;
using NetItem = boost::shared_ptr<Repository::CNetRepositoryItem>;
using Items = std::vector<std::unique_ptr<CRepositoryItem>>;

// What is done, to which tag's definitions, and where its outcome goes.
struct Request {
    Session& session;
    const OpenStorage& storage;
    ZEBGis::CRepositoryFactory& factory;
    CString tag;
    std::vector<CString> words; // behind the action
    Json items = Json::array();
};

struct Action {
    const char16_t* word;
    std::vector<const char16_t*> words; // that it needs
    bool writes;
    ExitStatus (*run)(Request&);
};

[[noreturn]] void Refuse(const CString& text) {
    throw AppError(ExitStatus::Usage, text + u"\n" + Text(Message::SeeVerbHelp, {u"items"}));
}

// The status of what the storage failed in last; SomeFailed when it has none of its own.
ExitStatus StatusOfFailure(const OpenStorage& storage) {
    auto* administration = storage.plugin.administration;
    return administration ? StatusOf(administration->TakeLastProblem()) : ExitStatus::SomeFailed;
}

Items Stored(const Request& request) {
    const char16_t* tag = request.tag.c_str();
    if (!request.storage.manager.RefreshNetRepository(tag))
        throw AppError(StatusOfFailure(request.storage),
                       Text(Message::DefinitionsNotListed, {request.factory.GetRepositoryName()}));
    std::vector<CRepositoryItem*> items;
    request.storage.manager.GetRepositoryItemsLite(tag, items);
    return Items(items.begin(), items.end());
}

// The stored record; throws when there is none, with the ids that were perhaps meant.
NetItem RequireItem(const Request& request, const CString& id) {
    if (const auto item =
            request.storage.Backend().GetRepositoryItemById(request.tag.c_str(), id.c_str(), 0))
        return item;
    const ExitStatus status = StatusOfFailure(request.storage);
    if (status != ExitStatus::SomeFailed)
        throw AppError(status, Text(Message::ItemNotRead, {id}));
    std::vector<CString> ids;
    for (const auto& item : Stored(request))
        ids.push_back(item->GetId());
    throw AppError(status, Text(Message::NoSuchItem, {id, request.factory.GetRepositoryName()}) +
                               DidYouMean(id, ids));
}

// An item in the shape that all actions share; what an action does not tell is null.
Json JsonOf(const CString& id, const CString& name) {
    return {{"id", id},
            {"name", name},
            {"entityType", nullptr},
            {"topologyFunction", nullptr},
            {"topologyType", nullptr},
            {"configuration", nullptr},
            {"outcome", nullptr}};
}

ExitStatus List(Request& request) {
    using Align = Table::Align;
    Table table({{Text(Message::TitleId)},
                 {Text(Message::TitleEntityType), Align::Right},
                 {Text(Message::TitleTopologyFunction), Align::Right},
                 {Text(Message::TitleName)}});
    for (const auto& item : Stored(request)) {
        table.Add({item->GetId(), Platform::ToText(item->GetEntityType()),
                   Platform::ToText(item->GetTopologyFunction()), item->GetName()});
        Json& json = request.items.emplace_back(JsonOf(item->GetId(), item->GetName()));
        json["entityType"] = static_cast<int>(item->GetEntityType());
        json["topologyFunction"] = item->GetTopologyFunction();
    }
    if (!table.IsEmpty())
        table.Print(request.session.out);
    const auto count = static_cast<std::int64_t>(request.items.size());
    PrintLine(request.session.out, Text(Message::ItemsInAll, {Platform::ToText(count)}));
    return ExitStatus::Done;
}

// On one line, whatever is in it.
CString OnOneLine(CString text) {
    std::replace_if(
        text.begin(), text.end(), [](char16_t c) { return c < u' '; }, u'?');
    return text;
}

ExitStatus Show(Request& request) {
    const NetItem item = RequireItem(request, request.words[0]);
    const std::pair<Message, CString> facts[] = {
        {Message::TitleId, item->GetId()},
        {Message::TitleName, item->GetName()},
        {Message::TitleEntityType, Platform::ToText(item->GetEntityType())},
        {Message::TitleTopologyFunction, Platform::ToText(item->GetTopologyFunction())},
        {Message::TitleTopologyType, Platform::ToText(item->GetTopologyType())}};
    std::size_t width = 0;
    for (const auto& [title, value] : facts)
        width = std::max(width, WidthOf(Text(title)));
    for (const auto& [title, value] : facts)
        PrintLine(request.session.out, PadRight(Text(title), width + 2) + OnOneLine(value));
    CString xml = item->GetConfigurationXML();
    Json& json = request.items.emplace_back(JsonOf(item->GetId(), item->GetName()));
    json["entityType"] = item->GetEntityType();
    json["topologyFunction"] = item->GetTopologyFunction();
    json["topologyType"] = item->GetTopologyType();
    json["configuration"] = xml;
    std::erase(xml, u'\r'); // would be shown as a control character
    PrintLine(request.session.out, u"\n" + xml);
    return ExitStatus::Done;
}

LocalDefinitions ReadFile(const Request& request) {
    const CString path = Platform::PathFromNative(Platform::ToUtf8(request.words[0]));
    CString problem;
    LocalDefinitions read(ZEBGis::CRepositoryManager::Instance()->ReadDefinitionsFile(
                              request.tag.c_str(), path.c_str(), problem),
                          {&request.factory});
    if (read && read->GetRepositoryItemList().GetCount() == 0)
        problem = Text(Message::NoDefinitionsInFile, {ShownPath(path)});
    if (!problem.empty() || !read)
        throw AppError(ExitStatus::LocalFile, problem);
    return read;
}

ExitStatus Add(Request& request) {
    const LocalDefinitions file = ReadFile(request);
    std::set<CString> known;
    for (const auto& item : Stored(request))
        known.insert(item->GetId());
    Table table(
        {{Text(Message::TitleId)}, {Text(Message::TitleOutcome)}, {Text(Message::TitleName)}});
    ExitStatus status = ExitStatus::Done;
    const auto& items = file->GetRepositoryItemList();
    for (std::size_t i = 0; i < items.GetCount(); ++i) {
        CRepositoryItem& item = *items.GetAt(i);
        Json json = JsonOf(item.GetId(), item.GetName());
        const bool isKnown = known.contains(item.GetId());
        Message outcome = isKnown ? Message::ItemReplaced : Message::ItemAdded;
        json["outcome"] = isKnown ? "replaced" : "added";
        if (!request.storage.manager.AddRepositoryItem(request.tag.c_str(), &item)) {
            Log(MessageFailure, Text(Message::ItemNotSent, {request.factory.GetRepositoryName(),
                                                            item.GetId(), item.GetName()}));
            outcome = Message::ItemFailed;
            json["outcome"] = "failed";
            status = std::max(status, StatusOfFailure(request.storage));
        }
        table.Add({item.GetId(), Text(outcome), item.GetName()});
        request.items.push_back(std::move(json));
        if (!request.storage.manager.IsRepositoryAccessible()) {
            Log(MessageFailure, Text(Message::RepositoryWentAway));
            status = ExitStatus::NotReachable;
            break;
        }
    }
    table.Print(request.session.out);
    return status;
}

ExitStatus Rename(Request& request) {
    const CString& id = request.words[0];
    const CString& name = request.words[1];
    if (const CString problem = ZEBGis::TextProblem(name); !problem.empty())
        Refuse(Text(Message::ItemNameUnusable, {problem}));
    RequireItem(request, id);
    auto& manager = request.storage.manager;
    if (!manager.RenameRepositoryItem(request.tag.c_str(), id.c_str(), name.c_str()))
        throw AppError(StatusOfFailure(request.storage), Text(Message::ItemNotChanged, {id}));
    request.items.push_back(JsonOf(id, name));
    request.items.back()["outcome"] = "renamed";
    PrintLine(request.session.out, OnOneLine(Text(Message::ItemRenamed, {id, name})));
    return ExitStatus::Done;
}

ExitStatus Delete(Request& request) {
    const CString& id = request.words[0];
    const NetItem item = RequireItem(request, id);
    if (!request.storage.manager.DeleteRepositoryItem(request.tag.c_str(), id.c_str()))
        throw AppError(StatusOfFailure(request.storage), Text(Message::ItemNotChanged, {id}));
    request.items.push_back(JsonOf(id, item->GetName()));
    request.items.back()["outcome"] = "deleted";
    PrintLine(request.session.out, OnOneLine(Text(Message::ItemDeleted, {id})));
    return ExitStatus::Done;
}

const std::vector<Action>& Actions() {
    static const std::vector<Action> kActions = {{u"list", {}, false, List},
                                                 {u"show", {u"ID"}, false, Show},
                                                 {u"add", {u"FILE"}, true, Add},
                                                 {u"rename", {u"ID", u"NAME"}, true, Rename},
                                                 {u"delete", {u"ID"}, true, Delete}};
    return kActions;
}

const Action& RequireAction(const CString& word) {
    std::vector<CString> known;
    CString listed;
    for (const Action& action : Actions()) {
        if (word == action.word)
            return action;
        known.emplace_back(action.word);
        listed += (listed.empty() ? u"" : u", ") + known.back();
    }
    Refuse(Text(Message::UnknownAction, {word, listed}) + DidYouMean(word, known));
}

// The action with as many words as it needs.
const Action& ParseWords(const std::vector<CString>& words) {
    constexpr std::size_t kBehindAction = 2;
    if (words.size() < kBehindAction)
        Refuse(Text(Message::ItemWordMissing, {u"TAG list"}));
    const Action& action = RequireAction(words[1]);
    const std::size_t needed = kBehindAction + action.words.size();
    if (words.size() < needed) {
        CString line = words[0] + u" " + action.word;
        for (const char16_t* word : action.words)
            line += CString(u" ") + word;
        Refuse(Text(Message::ItemWordMissing, {line}));
    }
    if (words.size() > needed)
        Refuse(Text(Message::OneWordTooMany, {words[needed]}));
    return action;
}

} // namespace

ExitStatus RunItems(Session& session, const Invocation& invocation) {
    const std::vector<CString>& words = invocation.words;
    const Action& action = ParseWords(words);
    ZEBGis::CRepositoryFactory& factory = RequireTag(words[0]);
    const OpenStorage storage = RequireStorage();
    RequireRepository(storage);
    if (action.writes)
        RequireRights(storage);
    Request request{session, storage, factory, words[0], {words.begin() + 2, words.end()}};
    StatusOfFailure(storage); // older ones are none of ours
    const ExitStatus status = action.run(request);
    Json revision;
    if (auto* administration = storage.plugin.administration;
        action.writes && administration && storage.manager.IsRepositoryAccessible())
        revision = StateOf(*administration).revision;
    session.result = {{"action", CString(action.word)},
                      {"tag", request.tag},
                      {"name", factory.GetRepositoryName()},
                      {"items", std::move(request.items)},
                      {"revision", std::move(revision)}};
    return status;
}

} // namespace App
