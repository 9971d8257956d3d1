// SPDX-License-Identifier: MIT
// What the storage plug-in offers beside the backend's operations, for programs that set
// up and look at a repository: connecting, state, listings with sizes and hashes, history,
// and the check of everything that it holds.
//
// The plug-in's module exports GetRepositoryAdministration; a plug-in without that export
// is used through the backend's operations alone.  The object lives as long as the module
// and works on the same connection as the backend.  Nothing throws.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace Storage {

// Why a repository cannot be used, or the last operation failed.
enum class Problem : std::int32_t {
    None = 0,
    Configuration, // the address is not one, or the settings cannot be read or written
    Missing,       // there is no repository at the address
    NotARepository,
    NewerVersion, // made by a newer version of this system
    Unreachable,  // cannot be opened, or does not answer
    NotAllowed,   // this user may not do that
    Busy,         // somebody else was writing for too long
    Full,         // no space left for the repository's file
    Integrity,    // content does not fit its hash, or the file is damaged
    Refused,      // what was sent is not acceptable: a name, a size, a text
    Internal,
    Interrupted, // the user stopped it
    ServerFull   // no space left on the server
};

// What a connection to a server has, as the server and libpq say.  All empty: embedded.
struct ServerConnection {
    CString server;   // "db.example.org:5432", or the folder of a Unix socket
    CString database; // "gis"
    CString schema;   // "zebx"
    CString user;     // the server's user
    // "TLSv1.3 TLS_AES_256_GCM_SHA384 (verify-full)", or empty: not encrypted
    CString encryption;
    CString application;    // as the server's administrators see it
    bool isStandby = false; // takes no writes
    bool isPooled = false;  // through a pooler: the server does not tell of changes
};

struct RepositoryState {
    CString address; // "sqlite:/path/repository.db"
    CString engine;  // "SQLite 3.40.1"
    ServerConnection server;
    Problem problem = Problem::None;
    CString problemText; // what, which, why and what to do, in the user's language
    bool mayWrite = false;
    std::int32_t schemaVersion = 0;
    std::int64_t revision = 0; // 0: nothing was ever written
    CString revisionTime;      // UTC; empty at revision 0
    CString revisionUser;
    std::int64_t files = 0;        // current files of all kinds
    std::int64_t contentBytes = 0; // all distinct contents, history included
};

// One stored file, or one kind without files (empty name).
struct StoredFile {
    std::int32_t contentCode = 0; // 4 drawings, 5 configuration files
    CString kind;
    CString id; // for StorageBackend::GetRepositoryFile
    CString name;
    std::int64_t sizeBytes = 0;
    CString sha256;            // hexadecimal, lower case
    std::int64_t revision = 0; // since which it stands
    CString time;              // UTC
};

// One general-settings text.
struct StoredGS {
    CString name;               // empty: the default one
    std::int64_t sizeBytes = 0; // of its UTF-8 form
    CString sha256;             // of its UTF-8 form; hexadecimal, lower case
    std::int64_t revision = 0;
    CString time;
};

// One item of a catalogue, or one definition.
struct StoredItem {
    CString tag; // of the catalogue or of the definition repository
    CString id;
    CString parentId; // empty: the top level, and every definition
    bool isGroup = false;
    CString name;
    std::int64_t sizeBytes = 0; // of its text's UTF-8 form
    std::int64_t files = 0;     // that travel with it
    std::int64_t revision = 0;  // since which it stands
    CString time;               // UTC
};

// One revision: a write that changed something.
struct RevisionEntry {
    std::int64_t number = 0;
    CString time; // UTC; for people only, the order is that of the numbers
    CString user;
    CString workstation;
    CString program;
    CString operation;      // the backend's operation: "AddRepositoryFiles", "SaveGS", ...
    CString subject;        // what it was done to: kinds, a name, tag/identifier
    std::int64_t files = 0; // that came with it, those of kinds and those of items
    std::int64_t bytes = 0; // of these files and of a general-settings text
};

// A file that somebody wants to send.
struct NamedFile {
    CString kind; // its identifier; those of drawings and of configuration files differ
    CString name;
    std::uint64_t sizeBytes = 0;
};

// What a user of a server may do with a repository there.
enum class Right : std::int32_t { None, Reader, Admin };

struct RepositoryUser {
    CString name;
    Right right = Right::None;
};

// What a copy has moved so far, and how much there is.
struct CopyCounts {
    std::int64_t revisions = 0;    // in the copy now
    std::int64_t allRevisions = 0; // in the repository that is copied
    std::int64_t contents = 0;     // moved by this call
    std::int64_t bytes = 0;        // of these
    bool isNew = false;            // the copy's repository was made by this call
    // Of the whole copy, read from it again and found to fit their hashes; 0 before the end.
    std::int64_t checkedContents = 0;
    std::int64_t checkedBytes = 0;
};
using TellCopied = std::function<void(const CopyCounts&)>;

// Something wrong in a repository, in the user's language.
struct Finding {
    CString where;
    CString what;
};

// What a check has looked at, history included.
struct CheckCounts {
    std::int64_t contents = 0;
    std::int64_t files = 0;
    std::int64_t revisions = 0;
    std::int64_t bytes = 0; // of the contents that fit their hash
};

class ZEBX_EXPORT RepositoryAdministration {
public:
    // Uses the repository at `address` from now on and keeps the address in the plug-in's
    // settings; docs/storage.md says what an address is.  A relative path counts from the
    // current folder and is kept absolute.  An empty address means the default place.
    // `create`: makes an empty repository where there is none.  On failure settings and
    // connection stay as they were.
    virtual Problem Connect(CStringView address, bool create, CString& problemText) = 0;

    // Connects when needed; never fails, the state says what is wrong.
    virtual RepositoryState State() = 0;

    // The repository as of one moment: kinds in order of code and identifier, their files
    // by case-folded name.  On failure the lists are empty.
    virtual Problem List(std::vector<StoredFile>& files, std::vector<StoredGS>& settings,
                         CString& problemText) = 0;

    // The items of every catalogue and every definition, as of one moment: by tag, those of a
    // catalogue by parent, in order of arrival.  On failure the lists are empty.
    virtual Problem ListItems(std::vector<StoredItem>& catalogueItems,
                              std::vector<StoredItem>& definitions, CString& problemText) = 0;

    // The revisions below `before` (0: from the newest), newest first, at most `count`.  On
    // failure the list is empty.
    virtual Problem Revisions(std::int64_t before, std::size_t count,
                              std::vector<RevisionEntry>& revisions, CString& problemText) = 0;

    // Applies the rules for names and sizes that sending applies, against what the repository
    // holds and among the files themselves, and sends nothing.  Refused: a line for each file
    // that sending would refuse.  A name that is given twice is none: their contents decide.
    virtual Problem CheckNames(const std::vector<NamedFile>& files, CString& problemText) = 0;

    // The hash under which a content is stored: SHA-256, lower-case hexadecimal.  Needs no
    // repository; empty when there is no memory.
    virtual CString HashOf(std::string_view bytes) = 0;

    // Reads the whole repository, history included, and says what is wrong with it: the
    // engine's own file, every content against its hash and size, every reference, every name,
    // the order of the revisions and the counters.  A finding does not stop it; after a thousand
    // the rest is told as one.  Writes nothing.  None: it ran to its end, also with findings.
    // Integrity: it is damaged in a way in which it cannot even be opened.  Takes as long as
    // reading everything; holds one content in memory at a time.
    virtual Problem Check(std::vector<Finding>& findings, CheckCounts& counts,
                          CString& problemText) = 0;

    // Program, version and what it is about to do ("zebx 1.2.3 push"), for the server's list of
    // sessions; before the first connection.
    virtual void SetApplication(CStringView application) = 0;

    // Makes an empty repository at `address`, as Connect with `create`, and connects to nothing.
    // On a server: schema, tables and the two group roles, in one transaction; what is there
    // already is left alone, and rights that were taken from the roles are given back.
    virtual Problem Create(CStringView address, CString& problemText) = 0;

    // Brings the repository's tables to the version of this program, in one transaction.
    // `from` and `to` are the versions; the same: there was nothing to do.
    virtual Problem Upgrade(std::int32_t& from, std::int32_t& to, CString& problemText) = 0;

    // Gives a user of the server that right and no other.  Refused for a repository that has
    // no users of its own.
    virtual Problem Grant(CStringView user, Right right, CString& problemText) = 0;
    // By name.  Users of the server who may do nothing here are not among them.
    virtual Problem Users(std::vector<RepositoryUser>& users, CString& problemText) = 0;

    // Copies the repository at `from` as it is now, with its whole history, to the one at `to`,
    // which must be empty, or hold what an earlier copy of the same repository left: that goes on
    // where it ended.  Where there is none at `to`, one is made as by Create.  Empty: the
    // repository in use, which is not made.  Each content is checked against its hash, and at the
    // end the whole copy against what was copied.  Nobody else may write to `to` meanwhile.
    // Refused: `to` holds anything else, is ahead, or was written to.  Integrity: `from` is
    // damaged, or the copy differs.  `tell` is called before the first part and after each; what
    // was told is there to stay, on failure too.
    virtual Problem Copy(CStringView from, CStringView to, const TellCopied& tell,
                         CopyCounts& counts, CString& problemText) = 0;

    // The last problem that the backend met, a file that was left out of an item included,
    // and forgets it; None when there was none since the last call.  What this object's own
    // operations report does not count.
    virtual Problem TakeLastProblem() = 0;

protected:
    ~RepositoryAdministration() = default;
};

// The export "GetRepositoryAdministration".
using GetRepositoryAdministrationFunction = RepositoryAdministration* (*)();

} // namespace Storage
