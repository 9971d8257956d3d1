// SPDX-License-Identifier: MIT
// The program's texts in the user's language, by name.  The message table holds them under
// 21000 to 21999.
#pragma once

#include "platform/text/Text.h"

#include <initializer_list>

namespace App {

enum class Message : int {
    // Words
    Warning = 21000,
    Failure = 21001,
    Yes = 21002,
    No = 21003,
    NotThere = 21004,
    InternalError = 21006,
    NoMemory = 21007,
    OutputFailed = 21008,
    SettingsProblem = 21009,

    // Command line not understood
    NoVerb = 21010,
    UnknownVerb = 21011,
    UnknownOption = 21012,
    OneWordTooMany = 21013,
    WordMissing = 21014,
    OptionWithoutValue = 21015,
    NotUnderstood = 21016,
    SeeHelp = 21017,
    SeeVerbHelp = 21018,

    // Local files
    NotRead = 21800,
    FolderNotRead = 21801,

    // Selections
    UnknownSelection = 21020,
    NoCataloguesYet = 21021,
    UnknownKind = 21022,
    KindSwitchedOff = 21023,
    OneGsOnly = 21024,

    // What a verb needs
    NoPluginFile = 21030,
    NoPluginLoads = 21031,
    PluginWithoutEntry = 21032,
    PluginWithoutStorage = 21033,
    PluginHint = 21034,
    NotReachable = 21035,
    MayNotWrite = 21036,
    NothingToConnect = 21037,
    RepositoryWentAway = 21041,
    NotListed = 21042,

    // push, pull
    NoLocalGs = 21050,
    NoGsInRepository = 21051,
    NoGsOfThatName = 21052,
    TitleKind = 21053,
    TitleFiles = 21054,
    TitleChanged = 21055,
    TitleBytes = 21056,
    TitleSelection = 21057,
    TitleFailures = 21058,
    RevisionNow = 21059,
    NothingChanged = 21060,
    TitleStored = 21061,

    // ls
    TitleRevision = 21070,
    TitleTime = 21071,
    TitleFile = 21072,
    FilesInAll = 21073,

    // status
    LabelProgram = 21080,
    LabelInstallation = 21081,
    LabelSupport = 21082,
    LabelSettings = 21083,
    LabelLanguage = 21084,
    LabelPlugin = 21085,
    LabelRepository = 21086,
    LabelEngine = 21087,
    LabelReachable = 21088,
    LabelRights = 21089,
    LabelRevision = 21090,
    LabelFiles = 21091,
    LabelContent = 21092,
    RightsWrite = 21093,
    RightsRead = 21094,
    NoPlugin = 21095,
    ContentBytes = 21096,
    NoRevision = 21097,
    HintInit = 21098,

    // init
    SettingsExist = 21100,
    NotMade = 21101,
    Made = 21102,
    NextIsConnect = 21103,
    NotKept = 21112,
    IniHead = 21104,
    IniInstall = 21105,
    IniSupport = 21106,
    IniLanguage = 21107,
    IniKinds = 21108,
    IniTrace = 21109,
    IniTraceFile = 21110,
    IniWorkspaceLog = 21111,

    // connect
    Connected = 21120,
    NextIsPush = 21121,
    NextIsPull = 21122,

    // run
    NoModule = 21130,
    ModuleRefused = 21131,
    UnknownCommand = 21132,

    // version
    NoVersion = 21140,

    // diff, pull --dry-run, push --dry-run
    TitleState = 21600,
    StateOnlyHere = 21601,
    StateOnlyThere = 21602,
    StateDifferent = 21603,
    StateSame = 21604,
    StateUnusable = 21605,
    StateNew = 21606,
    StateChanged = 21607,
    InAll = 21608,
    NothingDiffers = 21609,
    FilesDiffer = 21610,
    HintFiles = 21611,
    PullWould = 21612,
    PushWould = 21613,
    NothingSent = 21614,
    HelpFiles = 21615,
    HelpDryRunPull = 21616,
    HelpDryRunPush = 21617,
    SummaryDiff = 21618,
    DetailsDiff = 21619,
    ExampleDiff = 21620,
    ExampleDiffFiles = 21621,
    ExamplePullDryRun = 21622,
    ExamplePushDryRun = 21623,
    NotReadHere = 21624,

    // log
    SummaryLog = 21640,
    DetailsLog = 21641,
    ExampleLog = 21642,
    ExampleLogKind = 21643,
    HelpLimit = 21644,
    BadLimit = 21645,
    NoRevisions = 21646,
    OlderRevisions = 21647,
    LogWho = 21648,
    LogAmount = 21649,
    OperationFiles = 21650,
    OperationKind = 21651,
    OperationGs = 21652,
    OperationItem = 21653,
    OperationItemRenamed = 21654,
    OperationItemDeleted = 21655,
    OperationCatalogue = 21656,
    OperationCatalogueDeleted = 21657,
    NoAdministration = 21658,

    // doctor
    HealthOk = 21670,
    HealthWarning = 21671,
    HealthFailure = 21672,
    AllWell = 21673,
    NotAllWell = 21674,
    DoctorVersions = 21675,
    DoctorTexts = 21676,
    DoctorStorageSettings = 21677,
    DoctorSchema = 21678,
    DoctorSupportRoom = 21679,
    DoctorRepositoryRoom = 21680,
    DoctorClock = 21681,
    VersionsEqual = 21682,
    VersionsDiffer = 21683,
    FileMissing = 21684,
    NoFolder = 21685,
    FolderNotReadable = 21686,
    FolderNotWritable = 21687,
    DefaultsHold = 21688,
    TextsWhole = 21689,
    TextsLacking = 21690,
    Reachable = 21691,
    RepositoryHolds = 21692,
    RoomFree = 21693,
    RoomLittle = 21694,
    RoomUnknown = 21695,
    ClockBehind = 21696,
    AdviceInstall = 21697,
    AdviceFolder = 21698,
    AdviceSettings = 21699,
    AdviceUseless = 21700,
    AdviceRights = 21701,
    AdviceRoom = 21702,
    AdviceClock = 21703,
    SummaryDoctor = 21704,
    DetailsDoctor = 21705,
    ExampleDoctor = 21706,

    // repo check
    Checked = 21720,
    CheckedClean = 21721,
    CheckedDamaged = 21722,
    SummaryRepoCheck = 21723,
    DetailsRepoCheck = 21724,
    ExampleRepoCheck = 21725,

    // Help
    HelpProgram = 21200,
    HelpExamples = 21201,
    HelpVerbs = 21202,
    HelpOptions = 21203,
    HelpMore = 21204,
    HelpConfig = 21205,
    HelpInstall = 21206,
    HelpSupport = 21207,
    HelpHelp = 21208,
    HelpCreate = 21209,
    SummaryInit = 21210,
    SummaryConnect = 21211,
    SummaryStatus = 21212,
    SummaryPush = 21213,
    SummaryPull = 21214,
    SummaryLs = 21215,
    SummaryRun = 21216,
    SummaryVersion = 21217,
    DetailsInit = 21220,
    DetailsConnect = 21221,
    DetailsStatus = 21222,
    DetailsPush = 21223,
    DetailsPull = 21224,
    DetailsLs = 21225,
    DetailsRun = 21226,
    DetailsVersion = 21227,
    ExampleInit = 21230,
    ExampleInitSupport = 21231,
    ExampleConnect = 21232,
    ExampleConnectCreate = 21233,
    ExampleConnectUrl = 21234,
    ExampleStatus = 21235,
    ExamplePush = 21236,
    ExamplePushNodes = 21237,
    ExamplePull = 21238,
    ExamplePullTwo = 21239,
    ExampleLs = 21240,
    ExampleLsKind = 21241,
    ExampleRun = 21242,
    ExampleVersion = 21243,

    // Options of every verb
    HelpJson = 21400,
    HelpLanguage = 21401,
    HelpProgress = 21402,
    HelpQuiet = 21403,
    HelpVerbose = 21404,
    NotAValue = 21405,
    DidYouMean = 21406,
    DidYouMeanEither = 21407,
    EitherOr = 21408,

    // While something is done
    ProgressRead = 21410,
    ProgressStored = 21411,
    ProgressWritten = 21412,
    Interrupted = 21420,
    NoteSetting = 21430,
    OriginDefault = 21431,
    NotePlugin = 21432,
    NoteTook = 21433,

    // config show
    SummaryConfigShow = 21440,
    DetailsConfigShow = 21441,
    ExampleConfigShow = 21442,
    ExampleConfigOrigin = 21443,
    HelpOrigin = 21444
};

// The text, with its gaps filled by `values` in turn.
CString Text(Message message, std::initializer_list<CStringView> values = {});

// Empty when the message table can be read; otherwise a sentence, in English, that says
// which file is missing and what to type.
CString MissingTexts();

} // namespace App
