// SPDX-License-Identifier: MIT
// Who may do what with a repository on a server: granting and listing.
#include "app/Print.h"
#include "app/Storage.h"
#include "app/Verbs.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <utility>

namespace App {
namespace {

using Storage::Right;

// The words are those of the command line, in every language.
struct Named {
    const char16_t* word;
    const char* json;
    Right right;
};

constexpr std::array kRights = {Named{u"reader", "reader", Right::Reader},
                                Named{u"admin", "admin", Right::Admin},
                                Named{u"none", "none", Right::None}};

const Named& NamedBy(Right right) {
    return *std::ranges::find(kRights, right, &Named::right);
}

Right RightNamed(const CString& word) {
    const auto found =
        std::ranges::find_if(kRights, [&](const Named& each) { return word == each.word; });
    if (found == kRights.end())
        throw AppError(ExitStatus::Usage, Text(Message::NotARight, {word}));
    return found->right;
}

void CheckGrantWords(const std::vector<CString>& words) {
    constexpr std::size_t kCount = 2;
    if (words.size() < kCount)
        throw AppError(
            ExitStatus::Usage,
            Text(Message::WordMissing, {u"repo grant", words.empty() ? u"USER" : u"RIGHT"}));
    if (words.size() > kCount)
        throw AppError(ExitStatus::Usage, Text(Message::OneWordTooMany, {words[kCount]}));
}

} // namespace

ExitStatus RunRepoGrant(Session& session, const Invocation& invocation) {
    CheckGrantWords(invocation.words);
    const CString& user = invocation.words[0];
    const Right right = RightNamed(invocation.words[1]);
    const OpenStorage storage = RequireStorage();
    auto& administration = RequireAdministration(storage);
    CString problemText;
    const Storage::Problem problem = administration.Grant(user, right, problemText);
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);
    session.result = {{"user", user}, {"right", NamedBy(right).json}};
    PrintWrapped(session.out, u"", Text(Message::Granted, {user, NamedBy(right).word}));
    return ExitStatus::Done;
}

ExitStatus RunRepoUsers(Session& session, const Invocation&) {
    const OpenStorage storage = RequireStorage();
    auto& administration = RequireAdministration(storage);
    std::vector<Storage::RepositoryUser> users;
    CString problemText;
    const Storage::Problem problem = administration.Users(users, problemText);
    if (problem != Storage::Problem::None)
        throw AppError(StatusOf(problem), problemText);
    // The user comes last, so that no name, however long, breaks the columns.
    Table table({{Text(Message::TitleRight)}, {Text(Message::TitleUser)}});
    Json list = Json::array();
    for (const Storage::RepositoryUser& each : users) {
        table.Add({NamedBy(each.right).word, each.name});
        list.push_back({{"name", each.name}, {"right", NamedBy(each.right).json}});
    }
    table.Print(session.out);
    session.result = {{"users", std::move(list)}};
    return ExitStatus::Done;
}

} // namespace App
