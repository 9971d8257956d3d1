// SPDX-License-Identifier: MIT
#include "app/Transfer.h"

#include "app/Print.h"
#include "app/Progress.h"
#include "app/Texts.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "ZEBXGisCore/RepositoryManager.h"
#include "ZEBXNetworkCore/CatalogManager.h"
#include "ZEBXRepositoryClient/LocalContent.h"
#include "platform/host/FileSteps.h"
#include "platform/host/Interruption.h"
#include "platform/text/Numbers.h"

namespace App {
namespace {

using namespace ZEBGis::Workspace;
using Platform::FileStep;

Storage::Problem TakeProblem(const OpenStorage& storage) {
    auto* administration = storage.plugin.administration;
    return administration ? administration->TakeLastProblem() : Storage::Problem::None;
}

void Note(TransferResult& result, Outcome outcome, Storage::Problem problem) {
    if (outcome == Outcome::Done)
        return;
    if (StatusOf(problem) != ExitStatus::SomeFailed)
        result.problem = result.problem.value_or(StatusOf(problem));
    else if (outcome == Outcome::Failed || problem != Storage::Problem::None)
        result.somethingFailed = true;
    else
        result.somethingFailedHere = true;
}

// The manager passes over local files that it cannot read; the user must not.
Outcome TellUnread(Outcome outcome) {
    const auto unread = Repository::TakeUnreadFiles();
    for (const auto& file : unread)
        Log(MessageFailure, Text(Message::NotRead, {ShownPath(file.path), file.reason}));
    return outcome == Outcome::Done && !unread.empty() ? Outcome::FailedHere : outcome;
}

// The rest of the selection cannot be moved: one line for it, and its status.
void NoteThatItWentAway(TransferResult& result, const OpenStorage& storage) {
    Log(MessageFailure, Text(Message::RepositoryWentAway));
    ++result.failures;
    const Storage::Problem problem = TakeProblem(storage);
    const ExitStatus status =
        problem == Storage::Problem::None ? ExitStatus::NotReachable : StatusOf(problem);
    result.problem = result.problem.value_or(status);
}

// The user's wish comes before whatever went wrong.
void NoteThatItWasStopped(TransferResult& result, const Selected& selected) {
    Log(MessageFailure, Text(Message::Interrupted, {WordFor(selected)}));
    ++result.failures;
    result.problem = ExitStatus::Interrupted;
}

// A declaration that was not understood hides what it declares.
void TellDeclarationProblems(const std::vector<Selected>& selection) {
    for (const Selected& selected : selection) {
        if (!HoldsItems(selected.group))
            continue;
        const auto& problems =
            selected.group == Group::Catalogues
                ? ZEBGis::Data::CCatalogManager::Instance()->GetRegistryProblems()
                : ZEBGis::CRepositoryManager::Instance()->GetDeclarationProblems();
        for (const CString& problem : problems)
            Log(MessageWarning, problem);
    }
}

CString ShownSeconds(double seconds) {
    const auto hundredths = static_cast<std::int64_t>(seconds * 100);
    const CString fraction = Platform::ToText(hundredths % 100);
    return Platform::ToText(hundredths / 100) + (fraction.size() < 2 ? u".0" : u".") + fraction;
}

} // namespace

ExitStatus TransferResult::Status() const {
    if (problem)
        return *problem;
    if (somethingFailed)
        return ExitStatus::SomeFailed;
    return somethingFailedHere ? ExitStatus::LocalFile : ExitStatus::Done;
}

TransferResult Transfer(Session& session, const OpenStorage& storage,
                        const std::vector<Selected>& selection,
                        const std::function<Outcome(const Selected&)>& move) {
    TransferResult result;
    TakeProblem(storage); // older ones are none of ours
    Repository::TakeUnreadFiles();
    TellDeclarationProblems(selection);
    session.terminal.Note(Text(Message::NotePlugin, {storage.plugin.file}));
    const Platform::InterruptionGuard interruptible;
    Progress progress(session.terminal);
    for (const Selected& selected : selection) {
        const int successesBefore = session.log.Successes();
        const int failuresBefore = session.log.Failures();
        progress.Begin(WordFor(selected));
        Outcome outcome = TellUnread(move(selected));
        session.terminal.Note(
            Text(Message::NoteTook, {WordFor(selected), ShownSeconds(progress.Seconds())}));
        const int failures = session.log.Failures() - failuresBefore;
        // A stored file that comes back empty is logged and does not change the result.
        if (outcome == Outcome::Done && failures > 0)
            outcome = Outcome::Failed;
        result.selections.push_back(
            {selected,
             HoldsItems(selected.group) ? progress.Files(FileStep::Written)
                                        : session.log.Successes() - successesBefore,
             progress.Files(FileStep::ItemSent) + progress.Files(FileStep::ItemLoaded), failures});
        result.failures += failures;
        if (Platform::IsInterrupted()) {
            if (outcome != Outcome::Done || &selected != &selection.back())
                NoteThatItWasStopped(result, selected);
            break;
        }
        if (!storage.manager.IsRepositoryAccessible()) {
            NoteThatItWentAway(result, storage);
            break;
        }
        Note(result, outcome, TakeProblem(storage));
    }
    return result;
}

void Log(std::int32_t type, const CString& text) {
    CWsManager::Instance()->LogMessage(type, text.c_str());
}

void LogFamilyText(std::int32_t type, int number) {
    Log(type, ZEBGis::CModuleConfiguration::Instance()->GetMsg(number));
}

} // namespace App
