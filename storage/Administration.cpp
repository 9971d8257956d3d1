// SPDX-License-Identifier: MIT
#include "storage/Administration.h"

#include "platform/os/FreeName.h"
#include "platform/text/Utf8.h"
#include "storage/content/ContentHash.h"
#include "storage/copy/RepositoryCopy.h"
#include "storage/postgres/PostgresRights.h"
#include "storage/store/Schema.h"

namespace Storage {
namespace {

std::unique_ptr<SqlConnection> OpenOrCreate(const Address& address, bool& isNew) {
    try {
        return OpenRepository(address);
    } catch (const StorageError& error) {
        if (error.Kind() != Problem::Missing)
            throw;
    }
    CreateRepository(address);
    isNew = true;
    return OpenRepository(address);
}

} // namespace

// Runs `work`; what it throws becomes the problem and its text.
template<typename Work>
Problem Administration::Try(CString& problemText, Work work) noexcept {
    Problem problem = Problem::Internal;
    try {
        problemText.clear();
        try {
            work();
            problem = Problem::None;
        } catch (const StorageError& error) {
            problem = error.Kind();
            problemText = m_access->Explain(error);
        } catch (const std::exception& error) {
            problemText = m_access->Explain(StorageError(Problem::Internal, MessageNumber::Internal,
                                                         {Platform::FromUtf8(error.what())}));
        }
    } catch (...) {
        // No memory even for saying so: the result alone tells.
    }
    return problem;
}

Problem Administration::Connect(CStringView address, bool create, CString& problemText) {
    return Try(problemText, [&] { m_access->Connect(address, create); });
}

RepositoryState Administration::State() {
    RepositoryState state;
    state.problem = Try(state.problemText, [&] {
        state.address = m_access->ShownAddress();
        Store& store = m_access->Use();
        state.engine = store.Connection().EngineName();
        state.mayWrite = store.Connection().MayWrite();
        state.server = store.Connection().DescribeServer();
        store.ReadState(state);
        m_access->WarnOfOldTables(state.schemaVersion);
    });
    return state;
}

Problem Administration::List(std::vector<StoredFile>& files, std::vector<StoredGS>& settings,
                             CString& problemText) {
    files.clear();
    settings.clear();
    const Problem problem = Try(problemText, [&] { m_access->Use().List(files, settings); });
    if (problem != Problem::None) {
        files.clear();
        settings.clear();
    }
    return problem;
}

Problem Administration::ListItems(std::vector<StoredItem>& catalogueItems,
                                  std::vector<StoredItem>& definitions, CString& problemText) {
    catalogueItems.clear();
    definitions.clear();
    const Problem problem =
        Try(problemText, [&] { m_access->Use().ListItems(catalogueItems, definitions); });
    if (problem != Problem::None) {
        catalogueItems.clear();
        definitions.clear();
    }
    return problem;
}

Problem Administration::Revisions(std::int64_t before, std::size_t count,
                                  std::vector<RevisionEntry>& revisions, CString& problemText) {
    revisions.clear();
    return Try(problemText, [&] { revisions = m_access->Use().Revisions(before, count); });
}

Problem Administration::CheckNames(const std::vector<NamedFile>& files, CString& problemText) {
    return Try(problemText, [&] { m_access->Use().CheckNames(files); });
}

CString Administration::HashOf(std::string_view bytes) {
    CString hash;
    CString nobodyAsks;
    Try(nobodyAsks, [&] { hash = Platform::FromUtf8(ToHexadecimal(ContentHash(bytes))); });
    return hash;
}

Problem Administration::Check(std::vector<Finding>& findings, CheckCounts& counts,
                              CString& problemText) {
    findings.clear();
    counts = {};
    return Try(problemText, [&] {
        m_access->Use().Check(
            [&](const Message& where, const Message& what) {
                findings.push_back({m_access->TextOf(where), m_access->TextOf(what)});
            },
            counts);
    });
}

void Administration::SetApplication(CStringView application) {
    CString nobodyAsks;
    Try(nobodyAsks, [&] { m_access->SetApplication(application); });
}

Problem Administration::Create(CStringView address, CString& problemText) {
    return Try(problemText,
               [&] { CreateRepository(m_access->PlaceOf(address, Platform::CurrentFolder())); });
}

Problem Administration::Upgrade(std::int32_t& from, std::int32_t& to, CString& problemText) {
    from = to = 0;
    return Try(problemText, [&] {
        from = static_cast<std::int32_t>(UpgradeSchema(m_access->Use().Connection()));
        to = static_cast<std::int32_t>(kSchemaVersion);
    });
}

// Not there yet: each of these is being built.

Problem Administration::Grant(CStringView user, Right right, CString& problemText) {
    return Try(problemText, [&] { GrantRight(m_access->Use().Connection(), user, right); });
}

Problem Administration::Users(std::vector<RepositoryUser>& users, CString& problemText) {
    users.clear();
    return Try(problemText, [&] { users = UsersOf(m_access->Use().Connection()); });
}

Problem Administration::Copy(CStringView from, CStringView to, const TellCopied& tell,
                             CopyCounts& counts, CString& problemText) {
    counts = {};
    return Try(problemText, [&] {
        const Address original = m_access->AddressOf(from);
        const Address copy = m_access->AddressOf(to);
        if (original.Text() == copy.Text())
            throw StorageError(Problem::Refused, MessageNumber::CopyOntoItself, {copy.Text()});
        // One connection to a repository is enough; the next call makes its own again.
        m_access->Disconnect();
        const auto source = OpenRepository(original);
        const auto target = to.empty() ? OpenRepository(copy) : OpenOrCreate(copy, counts.isNew);
        CopyRepository(*source, *target, tell, counts);
    });
}

} // namespace Storage
