// SPDX-License-Identifier: MIT
// The plug-in's messages (20000 to 20449 of the message table) and their texts.
#pragma once

#include "ZEBXRepositoryClient/MsgProvider.h"

#include <vector>

namespace Storage {

enum class MessageNumber : int {
    DisplayName = 20000,

    // Opening a repository. %1 is the address or the path.
    Missing = 20010,
    IsFolder = 20011,
    OtherFile = 20012,
    EmptyFile = 20013,
    OtherDatabase = 20014,
    NewerVersion = 20015, // path, its version, our version
    MayNotOpen = 20016,
    MayNotWrite = 20017,
    Busy = 20018,
    Full = 20019,
    Damaged = 20020,     // path, reason
    Unreachable = 20021, // path, reason
    NotCreated = 20022,  // path, reason
    Internal = 20023,    // reason
    ChangesLeft = 20024, // path, path of the file that is left

    // Addresses and settings.
    UnknownEngine = 20031, // scheme
    NotAnAddress = 20032,
    RelativeAddress = 20033,
    NoDefaultFolder = 20034,
    SettingsUnreadable = 20040, // path, reason
    SettingsLine = 20041,       // path, line
    SettingsNotWritten = 20042, // path, reason
    NoSettingsFolder = 20043,
    SettingsCut = 20044, // path

    // The pages of a repository file.
    DamagedPage = 20050,        // path, page
    NoPageChecksums = 20051,    // path
    ContentPageDamaged = 20052, // name, kind, page
    NeedsWriter = 20053,        // path

    // The user stopped a call. %1 is the file that was next, %2 its kind.
    Interrupted = 20090,

    // File names. %1 is the name, %2 the kind or item that it belongs to.
    NameEmpty = 20100,
    NameIsFolder = 20101,
    NameSeparator = 20102,
    NameColon = 20103,
    NameControl = 20104,
    NameReserved = 20105,
    NameTooLong = 20106,
    NameNotText = 20107,
    NameDiffersByCase = 20108, // name, kind, the other name
    NameTwice = 20109,

    // Files and items otherwise.
    FileTooLarge = 20120, // name, kind, limit in MiB
    FileNotBase64 = 20121,
    FileWithoutKind = 20122,
    NothingGiven = 20123,
    TextNotKept = 20124, // which text, of what
    NoId = 20125,        // tag, name
    NoSuchItem = 20126,  // id, tag
    ContentDamaged = 20130,
    ContentMissing = 20131,
    RecordDamaged = 20132,

    // What a check found: where ...
    InPage = 20133,     // number
    InDatabase = 20134, // (the whole)
    InCounters = 20135,
    InTable = 20136,   // table
    InRow = 20137,     // table, row
    InFile = 20138,    // name, kind, row
    InContent = 20139, // hash
    InLog = 20140,     // path of the repository
    // ... and what.
    PageDamaged = 20145,
    EngineSays = 20146, // its words
    PartUnread = 20147, // reason
    SizeLies = 20148,   // size, the told one
    HashDiffers = 20149,
    NoContent = 20150,    // hash
    NoRevision = 20151,   // number
    NoHolder = 20152,     // row
    EndsTooEarly = 20153, // since, until
    FoldedDiffers = 20154,
    RevisionsMissing = 20155, // first, last
    CounterMissing = 20156,
    LastRevisionDiffers = 20157, // told, real
    AllBytesDiffer = 20158,      // told, real
    LastRowDiffers = 20159,      // told, real
    MoreFindings = 20160,        // how many
    LogBroken = 20161,           // frame

    OnNetwork = 20180, // path, file system

    // The connection window, and the steps of a connection's test.
    NoWindowModule = 20200,    // path, reason
    NoWindows = 20201,         // reason
    AddressUnderstood = 20202, // address
    FileFound = 20203,         // path
    WouldBeMade = 20204,       // path
    NotThere = 20205,          // path
    Opened = 20206,            // version of the tables, engine
    Holds = 20207,             // revision, number of files
    ReadAndWrite = 20208,
    ReadOnly = 20209,

    // Repositories on a server. %1 of those without a note is the address.
    NotAServerUri = 20300,        // reason, or nothing
    PasswordInUri = 20301,        // (nothing)
    NoRepositoryInSchema = 20302, // schema, address
    NoSchemaName = 20303,         // name, how long it may be
    ServerSilent = 20304,         // address, seconds
    DatabaseNotUtf8 = 20305,      // database, address
    MayNotUseSchema = 20306,      // user, schema, address
    WaitInterrupted = 20307,
    CommitUnanswered = 20308,

    // What a server, or libpq without one, says.
    ConnectionBroke = 20330,        // address, reason
    NoServerThere = 20331,          // address, reason
    UnknownServer = 20332,          // address, reason
    ServerDoesNotAnswer = 20333,    // address, reason
    ServerStarting = 20334,         // address, reason
    NoMoreConnections = 20335,      // address, reason
    NoPassword = 20336,             // address, user
    WrongPassword = 20337,          // address, reason
    NotLetIn = 20338,               // address, reason
    NoServerDatabase = 20339,       // address, reason
    ServerWithoutTls = 20340,       // address, reason
    CertificateOfAnother = 20341,   // address, reason
    CertificateNotTrusted = 20342,  // address, reason
    NoRootCertificate = 20343,      // address, reason
    NoFittingServer = 20344,        // address, reason
    PoolerRefuses = 20345,          // address, reason
    OptionRefused = 20346,          // address, reason
    NoService = 20347,              // address, reason
    ServerStopped = 20348,          // address, reason
    StatementEnded = 20349,         // address, reason
    ServerDiskFull = 20350,         // address, reason
    ServerExhausted = 20351,        // address, reason
    ServerForbids = 20352,          // address, reason
    ServerTakesNoWrites = 20353,    // address, reason
    ServerDamaged = 20354,          // address, reason
    NoTables = 20355,               // address, reason
    ServerRefusedStatement = 20356, // address, reason, SQLSTATE

    // The tables' version, and who may do what on a server.
    OldTables = 20360,        // repository, its version, our version
    MayNotUpgrade = 20361,    // user, repository
    NoUsers = 20362,          // repository
    NoSuchUser = 20363,       // repository, user
    MayNotMakeSchema = 20364, // user, database, statement
    MayNotMakeRoles = 20365,  // user, roles, statement
    SchemaOfAnother = 20366,  // schema, address, owner
    SchemaInUse = 20367,      // schema, address
    MayNotGrant = 20368,      // user, repository
    OtherRight = 20369,       // user, the wanted right, the other
    NoGroupRoles = 20370,     // schema, repository

    // The steps of a connection's test, on a server.
    ServerReached = 20371,    // server, database, user
    Encrypted = 20372,        // how
    NotEncrypted = 20373,     // (nothing)
    WouldBeMadeThere = 20374, // address
    ReadOnlyThere = 20376,    // user
    IsStandby = 20377,        // (nothing)
    IsPooled = 20378,         // (nothing)

    // Copies.
    CopyOntoItself = 20400,       // address
    CopyIsOther = 20401,          // copy, original, revision
    CopyIsAhead = 20402,          // copy, original, the original's revision
    CopyWasChanged = 20403,       // copy, its revision, the expected one
    CopiedContentDamaged = 20404, // name, kind, original
    CopiedContentMissing = 20405, // name, kind, original
    CopyStopsAt = 20406,          // copy, revision
    CopiedTextNotKept = 20407,    // name, table, row
    CopiedRowsNotTaken = 20408,   // original, copy, reason
    CopyDiffers = 20409,          // table, original, copy
    CopyKeptOtherBytes = 20410,   // hash, copy
    CopyInterrupted = 20411,      // copy, revision
    CopiedIsNotWhole = 20412,     // original

    // What a check found on a server, in its own words.
    ServerLacks = 20413,   // what
    ServerHasMore = 20414, // what
};

struct Message {
    MessageNumber number;
    std::vector<CString> values;
};

// The message in the user's language.  Without a provider: its number and values.
CString TextOf(const Message& message, Repository::IMsgProvider* provider);

// Several, one a line.
CString TextOf(const std::vector<Message>& messages, Repository::IMsgProvider* provider);

} // namespace Storage
