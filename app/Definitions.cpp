// SPDX-License-Identifier: MIT
#include "app/Definitions.h"

#include "app/Suggest.h"
#include "app/Texts.h"

#include "platform/host/FileSteps.h"
#include "platform/text/Numbers.h"
#include "platform/text/Windows1250.h"

#include <algorithm>

namespace App {
namespace {

using namespace ZEBGis::Workspace;
using Platform::FileStep;
using ZEBGis::CRepositoryFactory;
using ZEBGis::CRepositoryItem;
using Manager = Repository::CRepositoryStorageManager;
using Items = std::vector<std::unique_ptr<CRepositoryItem>>;

std::vector<CString> KnownTags() {
    return KnownNames(Group::Items, *Manager::Instance());
}

// Copies: whatever happens on the way, the walk goes on over what was declared at its start.
std::vector<CRepositoryFactory*> FactoriesOf(const std::optional<CString>& tag) {
    if (tag)
        return {&RequireTag(*tag)};
    std::vector<CRepositoryFactory*> all;
    for (const CString& known : KnownTags())
        all.push_back(&RequireTag(known));
    return all;
}

// A repository's refusal weighs more than a file of this workstation.
Outcome Worse(Outcome left, Outcome right) {
    if (left == Outcome::Failed || right == Outcome::Failed)
        return Outcome::Failed;
    return left == Outcome::Done ? right : left;
}

// The text form of a record has windows-1250 for name and configuration.  A storage with an
// administration is known to keep every letter.
void WarnOfLetters(const CRepositoryItem& item) {
    for (const CString& text : {item.GetName(), item.GetXML()}) {
        if (Platform::FromAnsi(Platform::ToAnsi(text)) != text)
            Log(MessageWarning, Text(Message::MayNotBeKept, {item.GetName(), text}));
    }
}

// Moves the definitions of one tag.
class TagTransfer {
public:
    TagTransfer(const OpenStorage& storage, CRepositoryFactory& factory, bool wasAskedFor)
        : m_manager(storage.manager), m_keepsLetters(storage.plugin.administration != nullptr),
          m_tag(factory.GetTag()), m_name(factory.GetRepositoryName()), m_factory(factory),
          m_wasAskedFor(wasAskedFor) {}

    Outcome Push() {
        CString problem;
        const LocalDefinitions local(
            ZEBGis::CRepositoryManager::Instance()->ReadDefinitions(m_tag.c_str(), problem),
            {&m_factory});
        if (!local)
            return FailHere(Message::DefinitionsNotSent, problem);
        const auto& items = local->GetRepositoryItemList();
        if (items.GetCount() == 0)
            return TellNone(Message::NoLocalDefinitions);
        for (std::size_t i = 0; i < items.GetCount(); ++i) {
            if (i > 0 && !m_manager.IsRepositoryAccessible())
                return Fail(Message::DefinitionsNotSent);
            CRepositoryItem* const item = items.GetAt(i);
            if (!m_keepsLetters)
                WarnOfLetters(*item);
            Count(m_manager.AddRepositoryItem(m_tag.c_str(), item) != 0, FileStep::ItemSent,
                  Message::ItemNotSent, *item);
        }
        return Tell(Message::DefinitionsSent, Message::DefinitionsNotSent);
    }

    Outcome Pull() {
        Items fetched;
        if (!m_manager.RefreshNetRepository(m_tag.c_str()))
            return Fail(Message::DefinitionsNotFetched);
        const Items listed = Listed();
        if (listed.empty())
            return TellNone(Message::NoStoredDefinitions);
        for (const auto& item : listed) {
            std::unique_ptr<CRepositoryItem> local(
                m_manager.GetRepositoryItemById(m_tag.c_str(), item->GetId().c_str(), 0));
            // Half of a tag's definitions are not written.
            if (!m_manager.IsRepositoryAccessible())
                return Fail(Message::DefinitionsNotFetched);
            Count(local != nullptr, FileStep::ItemLoaded, Message::ItemNotFetched, *item);
            if (local)
                fetched.push_back(std::move(local));
        }
        if (const CString problem = Write(fetched); !problem.empty())
            return FailHere(Message::DefinitionsNotFetched, problem);
        return Tell(Message::DefinitionsFetched, Message::DefinitionsNotFetched);
    }

private:
    Items Listed() const {
        std::vector<CRepositoryItem*> listed;
        m_manager.GetRepositoryItemsLite(m_tag.c_str(), listed);
        return Items(listed.begin(), listed.end());
    }

    // Why nothing was written; empty when all is.
    CString Write(const Items& items) const {
        std::vector<const CRepositoryItem*> borrowed;
        for (const auto& item : items)
            borrowed.push_back(item.get());
        CString problem;
        const bool written = ZEBGis::CRepositoryManager::Instance()->WriteDefinitions(
            m_tag.c_str(), borrowed, problem);
        return written ? CString() : problem;
    }

    void Count(bool moved, FileStep step, Message refusal, const CRepositoryItem& item) {
        ++(moved ? m_moved : m_refused);
        if (moved)
            Platform::TellFileStep(step);
        else
            Log(MessageFailure, Text(refusal, {m_name, item.GetId(), item.GetName()}));
    }

    Outcome Tell(Message success, Message failure) const {
        if (m_refused > 0)
            return Fail(failure);
        Log(MessageSuccess, Text(success, {m_name, Platform::ToText(m_moved)}));
        return Outcome::Done;
    }

    Outcome Fail(Message failure) const {
        Log(MessageFailure, Text(failure, {m_name}));
        return Outcome::Failed;
    }

    Outcome FailHere(Message failure, const CString& problem) const {
        Log(MessageFailure, problem);
        Fail(failure);
        return Outcome::FailedHere;
    }

    // Among all tags those without definitions are no news.
    Outcome TellNone(Message message) const {
        if (m_wasAskedFor)
            Log(MessageWarning, Text(message, {m_name}));
        return Outcome::Done;
    }

    Manager& m_manager;
    bool m_keepsLetters;
    CString m_tag;
    CString m_name;
    CRepositoryFactory& m_factory;
    bool m_wasAskedFor;
    int m_moved = 0;
    int m_refused = 0;
};

Outcome MoveTags(const OpenStorage& storage, const std::optional<CString>& tag,
                 Outcome (TagTransfer::*move)()) {
    // Tags that others forgot would be missed silently.
    if (!tag) {
        for (const CString& problem :
             ZEBGis::CRepositoryManager::Instance()->GetDeclarationProblems())
            Log(MessageWarning, problem);
    }
    Outcome outcome = Outcome::Done;
    bool isFirst = true;
    for (CRepositoryFactory* const factory : FactoriesOf(tag)) {
        if (!isFirst && !storage.manager.IsRepositoryAccessible())
            return Outcome::Failed;
        isFirst = false;
        TagTransfer transfer(storage, *factory, tag.has_value());
        outcome = Worse(outcome, (transfer.*move)());
    }
    return outcome;
}

} // namespace

CRepositoryFactory& RequireTag(const CString& tag) {
    auto& definitions = *ZEBGis::CRepositoryManager::Instance();
    if (auto* factory = definitions.GetRepositoryfactory(tag.c_str()))
        return *factory;
    const std::vector<CString> known = KnownTags();
    CString text = Text(known.empty() ? Message::NoTags : Message::UnknownTag, {tag});
    for (const CString& one : known)
        text += u"\n  " + one;
    for (const CString& problem : definitions.GetDeclarationProblems())
        text += u"\n" + problem;
    throw AppError(ExitStatus::Usage, text + DidYouMean(tag, known));
}

Outcome PushDefinitions(const OpenStorage& storage, const std::optional<CString>& tag) {
    return MoveTags(storage, tag, &TagTransfer::Push);
}

Outcome PullDefinitions(const OpenStorage& storage, const std::optional<CString>& tag) {
    return MoveTags(storage, tag, &TagTransfer::Pull);
}

} // namespace App
