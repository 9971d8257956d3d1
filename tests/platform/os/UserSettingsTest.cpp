// SPDX-License-Identifier: MIT
#include "platform/os/UserSettings.h"

#include "platform/os/Path.h"
#include "platform/os/UserFolders.h"
#include "platform/text/Utf8.h"
#include "support/DocumentExample.h"
#include "support/InAChildProcess.h"
#include "support/Workstation.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Platform::Setting;
using Platform::SettingOrigin;
using Platform::SettingProblem;
using Platform::SettingValue;
using Platform::UserSettings;
using testing::ElementsAre;
using testing::IsEmpty;

namespace Platform {

bool operator==(const SettingValue& left, const SettingValue& right) {
    return left.value == right.value && left.origin == right.origin;
}

void PrintTo(const SettingValue& value, std::ostream* stream) {
    *stream << ToUtf8(value.value) << " (" << static_cast<int>(value.origin) << ")";
}

} // namespace Platform

namespace {

constexpr Setting kEverySetting[] = {
    Setting::Config,   Setting::Install,      Setting::Support,
    Setting::Language, Setting::EnabledKinds, Setting::Schema,
    Setting::Trace,    Setting::TraceFile,    Setting::WorkspaceLog};

class Settings : public testing::Test {
protected:
    Settings() {
        for (const char* name : {"ZEBX_CONFIG", "ZEBX_INSTALL", "ZEBX_SUPPORT", "ZEBX_LANGUAGE",
                                 "ZEBX_SCHEMA", "ZEBX_TRACE", "LC_ALL", "LC_MESSAGES", "LANG"})
            m_workstation.Set(name, std::nullopt);
    }

    static SettingValue Get(Setting setting) { return UserSettings::Instance()->Get(setting); }
    static CString Value(Setting setting) { return Get(setting).value; }

    // Every problem as "LINE TEXT".
    static std::vector<std::string> Problems() {
        std::vector<std::string> lines;
        for (const SettingProblem& problem : UserSettings::Instance()->Problems())
            lines.push_back(std::to_string(problem.line) + " " + Platform::ToUtf8(problem.text));
        return lines;
    }

    CString Root() const { return m_workstation.Folder().Path(); }
    CString State() const { return Root() + u"state\\StudioZEB\\"; }

    Workstation m_workstation;
};

SettingValue Default(CString value) {
    return {std::move(value), SettingOrigin::Default};
}
SettingValue InFile(CString value) {
    return {std::move(value), SettingOrigin::File};
}
SettingValue InEnvironment(CString value) {
    return {std::move(value), SettingOrigin::Environment};
}
SettingValue AsOption(CString value) {
    return {std::move(value), SettingOrigin::Option};
}

} // namespace

TEST_F(Settings, WithoutAnythingTheDefaultsHold) {
    EXPECT_EQ(Get(Setting::Config), Default(m_workstation.Config() + u"zebx.ini"));
    EXPECT_EQ(Get(Setting::Support), Default(m_workstation.Support()));
    EXPECT_EQ(Get(Setting::Language), Default(u"en"));
    EXPECT_EQ(Get(Setting::EnabledKinds), Default(u""));
    EXPECT_EQ(Get(Setting::Trace), Default(u"off"));
    EXPECT_EQ(Get(Setting::TraceFile), Default(State() + u"trace.log"));
    EXPECT_EQ(Get(Setting::WorkspaceLog), Default(State() + u"workspace.log"));
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(Settings, TheInstallationLiesBesideTheProgramsFolder) {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    const std::string expected = (program.parent_path().parent_path() / "lib/zebx/").string();
    EXPECT_EQ(Get(Setting::Install), Default(Platform::PathFromNative(expected)));
}

TEST_F(Settings, WithoutAUsersFolderNoRelativePathIsMade) {
    // Where the user has an entry in the system, that one gives the folder.
    m_workstation.Set("XDG_CONFIG_HOME", "relative");
    m_workstation.Set("HOME", "relative");
    const CString config = Value(Setting::Config);
    EXPECT_TRUE(config.empty() || config.front() == u'\\');
}

TEST_F(Settings, TheFileSaysOtherwiseThanTheDefaults) {
    m_workstation.WriteSettings("[folders]\n"
                                "install = /opt/zebx\n"
                                "support = \\srv\\support\\\n"
                                "[general]\n"
                                "language = hr\n"
                                "[kinds]\n"
                                "enabled = 008_GPE, 005_GPEBLOCKS\n"
                                "[logging]\n"
                                "trace = on\n"
                                "trace_file = /var/log/trace.log\n"
                                "workspace_log = /var/log/čvor.log\n");
    EXPECT_EQ(Get(Setting::Install), InFile(u"\\opt\\zebx\\"));
    EXPECT_EQ(Get(Setting::Support), InFile(u"\\srv\\support\\"));
    EXPECT_EQ(Get(Setting::Language), InFile(u"hr"));
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"008_GPE, 005_GPEBLOCKS"));
    EXPECT_EQ(Get(Setting::Trace), InFile(u"on"));
    EXPECT_EQ(Get(Setting::TraceFile), InFile(u"\\var\\log\\trace.log"));
    EXPECT_EQ(Get(Setting::WorkspaceLog), InFile(u"\\var\\log\\čvor.log"));
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(Settings, TheDocumentsExampleIsReadAsItSays) {
    m_workstation.WriteSettings(DocumentExample("zebx-ini"));
    EXPECT_EQ(Get(Setting::Install), InFile(u"\\opt\\zebx\\lib\\zebx\\"));
    EXPECT_EQ(Get(Setting::Support),
              InFile(m_workstation.Config() + u"..\\..\\Network\\support\\"));
    EXPECT_EQ(Get(Setting::Language), InFile(u"hr"));
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"005_GPEBLOCKS, 008_GPE"));
    EXPECT_EQ(Get(Setting::Trace), InFile(u"on"));
    EXPECT_EQ(Get(Setting::TraceFile), Default(State() + u"trace.log"));
    EXPECT_EQ(Get(Setting::WorkspaceLog), InFile(u"\\var\\log\\čvor.log"));
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(Settings, TheEnvironmentWinsOverTheFile) {
    m_workstation.WriteSettings("[folders]\ninstall = /opt/zebx\nsupport = /srv/support\n"
                                "[general]\nlanguage = en\n[logging]\ntrace = off\n");
    m_workstation.Set("ZEBX_INSTALL", "/usr/lib/zebx");
    m_workstation.Set("ZEBX_SUPPORT", "/usr/share/zebx/");
    m_workstation.Set("ZEBX_LANGUAGE", "hr");
    m_workstation.Set("ZEBX_TRACE", "on");
    EXPECT_EQ(Get(Setting::Install), InEnvironment(u"\\usr\\lib\\zebx\\"));
    EXPECT_EQ(Get(Setting::Support), InEnvironment(u"\\usr\\share\\zebx\\"));
    EXPECT_EQ(Get(Setting::Language), InEnvironment(u"hr"));
    EXPECT_EQ(Get(Setting::Trace), InEnvironment(u"on"));
}

TEST_F(Settings, AnEmptyVariableCountsAsNone) {
    m_workstation.WriteSettings("[general]\nlanguage = hr\n");
    for (const char* name :
         {"ZEBX_CONFIG", "ZEBX_INSTALL", "ZEBX_SUPPORT", "ZEBX_LANGUAGE", "ZEBX_TRACE"})
        m_workstation.Set(name, "");
    EXPECT_EQ(Get(Setting::Language), InFile(u"hr"));
    EXPECT_EQ(Get(Setting::Support), Default(m_workstation.Support()));
    EXPECT_EQ(Get(Setting::Trace), Default(u"off"));
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(Settings, AnOptionWinsOverEverything) {
    m_workstation.WriteSettings("[folders]\ninstall = /opt/zebx\n[kinds]\nenabled = A\n");
    m_workstation.Set("ZEBX_INSTALL", "/usr/lib/zebx");
    for (const Setting setting : kEverySetting) {
        UserSettings::Instance()->SetOption(setting, u"\\from\\option\\");
        EXPECT_EQ(Get(setting), AsOption(u"\\from\\option\\"));
    }
}

TEST_F(Settings, AnEmptyOptionCountsAsNone) {
    UserSettings::Instance()->SetOption(Setting::Support, u"/somewhere");
    UserSettings::Instance()->SetOption(Setting::Support, u"");
    EXPECT_EQ(Get(Setting::Support), Default(m_workstation.Support()));
}

TEST_F(Settings, ResetForgetsOptionsAndReadsTheFileAgain) {
    UserSettings::Instance()->SetOption(Setting::Trace, u"on");
    m_workstation.WriteSettings("[general]\nlanguage = hr\n");
    EXPECT_EQ(Get(Setting::Trace), Default(u"off"));
    EXPECT_EQ(Get(Setting::Language), InFile(u"hr"));
    Platform::RemoveFile(m_workstation.Config() + u"zebx.ini");
    EXPECT_EQ(Get(Setting::Language), InFile(u"hr"));
    UserSettings::Instance()->Reset();
    EXPECT_EQ(Get(Setting::Language), Default(u"en"));
}

TEST_F(Settings, AnotherFileIsReadWhenTheOptionOrTheVariableSaysSo) {
    m_workstation.WriteSettings("[kinds]\nenabled = USER\n");
    Platform::WriteFile(Root() + u"a.ini", "[kinds]\nenabled = VARIABLE\n");
    Platform::WriteFile(Root() + u"b.ini", "[kinds]\nenabled = OPTION\n");
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"USER"));
    m_workstation.Set("ZEBX_CONFIG", (m_workstation.Folder().Native() / "a.ini").string());
    EXPECT_EQ(Get(Setting::Config), InEnvironment(Root() + u"a.ini"));
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"VARIABLE"));
    UserSettings::Instance()->SetOption(Setting::Config, Root() + u"b.ini");
    EXPECT_EQ(Get(Setting::Config), AsOption(Root() + u"b.ini"));
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"OPTION"));
}

TEST_F(Settings, AnotherFileIsReadWhenTheUsersFolderChanges) {
    m_workstation.WriteSettings("[kinds]\nenabled = USER\n");
    const std::filesystem::path other = m_workstation.Folder().Native() / "other";
    for (const auto& folder : {other / "StudioZEB", other / ".config/StudioZEB"}) {
        std::filesystem::create_directories(folder);
        Platform::WriteFile(Platform::PathFromNative((folder / "zebx.ini").string()),
                            "[kinds]\nenabled = " + folder.parent_path().filename().string());
    }
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"USER"));
    m_workstation.Set("XDG_CONFIG_HOME", other.string());
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"other"));
    m_workstation.Set("HOME", other.string());
    m_workstation.Set("XDG_CONFIG_HOME", std::nullopt);
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u".config"));
    m_workstation.Set("HOME", "/");
    EXPECT_EQ(Get(Setting::EnabledKinds), Default(u""));
}

TEST_F(Settings, TheUsersFileIsReadAgainWhenTheOptionIsGone) {
    m_workstation.WriteSettings("[kinds]\nenabled = USER\n");
    Platform::WriteFile(Root() + u"b.ini", "[kinds]\nenabled = OPTION\n");
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"USER"));
    UserSettings::Instance()->SetOption(Setting::Config, Root() + u"b.ini");
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"OPTION"));
    UserSettings::Instance()->SetOption(Setting::Config, u"");
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"USER"));
}

TEST_F(Settings, RelativePathsCountFromTheFilesOwnFolder) {
    m_workstation.WriteSettings("[folders]\ninstall = modules\nsupport = ../support\n"
                                "[logging]\ntrace_file = trace.log\n");
    EXPECT_EQ(Value(Setting::Install), m_workstation.Config() + u"modules\\");
    EXPECT_EQ(Value(Setting::Support), m_workstation.Config() + u"..\\support\\");
    EXPECT_EQ(Value(Setting::TraceFile), m_workstation.Config() + u"trace.log");
}

TEST_F(Settings, RelativePathsOfOptionsAndVariablesCountFromTheCurrentFolder) {
    EXPECT_TRUE(PassesInAChildProcess([&] {
        std::filesystem::current_path(m_workstation.Folder().Native());
        m_workstation.Set("ZEBX_SUPPORT", "my support");
        UserSettings::Instance()->SetOption(Setting::Config, u"my.ini");
        UserSettings::Instance()->SetOption(Setting::Install, u"lib/zebx");
        EXPECT_EQ(Value(Setting::Support), Root() + u"my support\\");
        EXPECT_EQ(Value(Setting::Config), Root() + u"my.ini");
        EXPECT_EQ(Value(Setting::Install), Root() + u"lib\\zebx\\");
    }));
}

TEST_F(Settings, TheLanguageFollowsTheLocaleThatCounts) {
    m_workstation.Set("LANG", "hr_HR.UTF-8");
    EXPECT_EQ(Get(Setting::Language), Default(u"hr"));
    m_workstation.Set("LC_MESSAGES", "de_DE.UTF-8");
    EXPECT_EQ(Get(Setting::Language), Default(u"en"));
    m_workstation.Set("LC_ALL", "hr");
    EXPECT_EQ(Get(Setting::Language), Default(u"hr"));
    m_workstation.Set("LC_ALL", "");
    m_workstation.Set("LC_MESSAGES", "");
    EXPECT_EQ(Get(Setting::Language), Default(u"hr"));
    m_workstation.Set("LANG", "C");
    EXPECT_EQ(Get(Setting::Language), Default(u"en"));
}

TEST_F(Settings, BlanksCommentsAndLineEndsDoNotMatter) {
    m_workstation.WriteSettings("\xEF\xBB\xBF; a comment = 1\r\n"
                                "\r\n"
                                "  # another [comment]\r\n"
                                "\t[ general ]\t\r\n"
                                "language=hr\r\n"
                                "[kinds]\r\n"
                                "  enabled \t =  A ; B = C  ");
    EXPECT_EQ(Get(Setting::Language), InFile(u"hr"));
    EXPECT_EQ(Get(Setting::EnabledKinds), InFile(u"A ; B = C"));
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(Settings, AnEmptyValueLeavesTheDefault) {
    m_workstation.WriteSettings("[folders]\nsupport =\n[logging]\ntrace = \n");
    EXPECT_EQ(Get(Setting::Support), Default(m_workstation.Support()));
    EXPECT_EQ(Get(Setting::Trace), Default(u"off"));
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(Settings, WhatIsNotUnderstoodIsReportedAndTheRestIsUsed) {
    m_workstation.WriteSettings("language = hr\n"        // 1
                                "[general]\n"            // 2
                                "language = fr\n"        // 3
                                "langauge = hr\n"        // 4
                                "just words\n"           // 5
                                "= value\n"              // 6
                                "language = hr\n"        // 7
                                "language = en\n"        // 8
                                "[colours]\n"            // 9
                                "trace = on\n"           // 10
                                "[logging]\n"            // 11
                                "trace = yes\n"          // 12
                                "workspace_log = \xFF\n" // 13
                                "trace_file = /t.log\n"  // 14
                                "[folders\n"             // 15
                                "trace = on\n");         // 16
    EXPECT_THAT(
        Problems(),
        ElementsAre("1 \"language\" stands before any section; ignored",
                    "3 \"language = fr\" is not en or hr; ignored",
                    "4 unknown key \"langauge\" in \"[general]\"; ignored",
                    "5 \"just words\" is neither \"[section]\" nor \"key = value\"; ignored",
                    "6 \"= value\" is neither \"[section]\" nor \"key = value\"; ignored",
                    "8 \"language\" stands a second time; the first is used",
                    "9 unknown section \"[colours]\"; what it holds is ignored",
                    "12 \"trace = yes\" is not on or off; ignored",
                    "13 not UTF-8; the line is ignored",
                    "15 \"[folders\" is neither \"[section]\" nor \"key = value\"; ignored"));
    EXPECT_EQ(Get(Setting::Language), InFile(u"hr"));
    EXPECT_EQ(Get(Setting::Trace), Default(u"off"));
    EXPECT_EQ(Get(Setting::TraceFile), InFile(u"\\t.log"));
    EXPECT_EQ(Get(Setting::WorkspaceLog), Default(State() + u"workspace.log"));
}

TEST_F(Settings, AProblemNamesItsFile) {
    m_workstation.WriteSettings("\n\nwords\n");
    const std::vector<SettingProblem> problems = UserSettings::Instance()->Problems();
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems.front().file, m_workstation.Config() + u"zebx.ini");
    EXPECT_EQ(problems.front().line, 3);
}

TEST_F(Settings, AVariableThatSaysNothingSensibleIsReportedAndIgnored) {
    m_workstation.WriteSettings("[general]\nlanguage = hr\n");
    m_workstation.Set("ZEBX_LANGUAGE", "fr");
    EXPECT_EQ(Get(Setting::Language), InFile(u"hr"));
    const std::vector<SettingProblem> problems = UserSettings::Instance()->Problems();
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems.front().file, u"ZEBX_LANGUAGE");
    EXPECT_EQ(problems.front().line, 0);
    EXPECT_EQ(problems.front().text, u"\"fr\" is not en or hr; ignored");
}

TEST_F(Settings, AFileThatCannotBeReadIsAProblemAsAWhole) {
    UserSettings::Instance()->SetOption(Setting::Config, Root());
    const std::vector<SettingProblem> problems = UserSettings::Instance()->Problems();
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems.front().file, Root());
    EXPECT_EQ(problems.front().line, 0);
    EXPECT_EQ(Get(Setting::Trace), Default(u"off"));
}

TEST_F(Settings, AFileThatIsMissingIsNoProblem) {
    UserSettings::Instance()->SetOption(Setting::Config, Root() + u"none\\none.ini");
    EXPECT_THAT(Problems(), IsEmpty());
}

TEST_F(Settings, AFileOfAnotherEncodingSetsNothing) {
    m_workstation.WriteSettings(std::string_view("\xFF\xFE[\0l\0o\0g\0]\0\n\0t\0=\0o\0\n\0", 22));
    EXPECT_FALSE(Problems().empty());
    EXPECT_EQ(Get(Setting::Trace), Default(u"off"));
}

namespace {

// What is wrong with files that are none, by defect: how many lines tell of it, and the first.
struct DamagedFile {
    const char* defect;
    std::string bytes;
    std::size_t problems;
    int line;
    const char16_t* text;
};

class DamagedSettings : public Settings, public testing::WithParamInterface<DamagedFile> {};

const DamagedFile kDamagedFiles[] = {
    {"utf16_little_endian", std::string("\xFF\xFE[\0g\0]\0", 8), 1, 0, u"is UTF-16; defaults"},
    {"utf16_big_endian", std::string("\xFE\xFF\0[\0g\0]", 8), 1, 0, u"is UTF-16; defaults"},
    {"windows_1250", "[folders]\nsupport = /srv/\xE8vor\n", 1, 2, u"not UTF-8"},
    {"nuls", std::string("[general]\n\0\0\0\n", 14), 1, 2, u"is neither"},
    {"long_line", "[general]\n" + std::string(1'000'000, 'x'), 1, 2, u"xxx...\" is neither"},
    {"long_value", "[general]\nlanguage=" + std::string(1'000'000, 'x'), 1, 2, u"xxx...\" is not"},
    {"cut", "[general]\nlang", 1, 2, u"\"lang\" is neither"},
    {"noise",
     [] {
         std::string noise;
         for (int line = 0; line < 100; ++line)
             noise += "\xFF\x01" + std::to_string(line) + "\n";
         return noise;
     }(),
     21, 1, u"not UTF-8"},
    {"empty", "", 0, 0, u""}};

} // namespace

INSTANTIATE_TEST_SUITE_P(By, DamagedSettings, testing::ValuesIn(kDamagedFiles),
                         [](const auto& file) { return file.param.defect; });

TEST_P(DamagedSettings, AreToldInFewWordsAndLeaveTheDefaults) {
    m_workstation.WriteSettings(GetParam().bytes);
    const auto problems = UserSettings::Instance()->Problems();
    ASSERT_EQ(problems.size(), GetParam().problems);
    for (const auto& problem : problems)
        EXPECT_LT(problem.text.size(), 200u);
    if (!problems.empty()) {
        EXPECT_EQ(problems.front().line, GetParam().line);
        EXPECT_NE(problems.front().text.find(GetParam().text), CString::npos)
            << Platform::ToUtf8(problems.front().text);
    }
    EXPECT_EQ(UserSettings::Instance()->Get(Setting::Language).value, u"en");
}
