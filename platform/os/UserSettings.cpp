// SPDX-License-Identifier: MIT
#include "platform/os/UserSettings.h"

#include "platform/os/Environment.h"
#include "platform/os/File.h"
#include "platform/os/FreeName.h"
#include "platform/os/IniFile.h"
#include "platform/os/Path.h"
#include "platform/os/UserFolders.h"
#include "platform/text/Fill.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>

namespace Platform {
namespace {

enum class Shape { Text, Folder, Path, Language, Switch };

// What is known of a setting; null where it has no such place.
struct Description {
    Setting setting;
    Shape shape;
    const char* variable;
    const char16_t* section;
    const char16_t* key;
};

constexpr Description kDescriptions[] = {
    {Setting::Config, Shape::Path, "ZEBX_CONFIG", nullptr, nullptr},
    {Setting::Install, Shape::Folder, "ZEBX_INSTALL", u"folders", u"install"},
    {Setting::Support, Shape::Folder, "ZEBX_SUPPORT", u"folders", u"support"},
    {Setting::Language, Shape::Language, "ZEBX_LANGUAGE", u"general", u"language"},
    {Setting::EnabledKinds, Shape::Text, nullptr, u"kinds", u"enabled"},
    {Setting::Schema, Shape::Text, "ZEBX_SCHEMA", u"repository", u"schema"},
    {Setting::Trace, Shape::Switch, "ZEBX_TRACE", u"logging", u"trace"},
    {Setting::TraceFile, Shape::Path, nullptr, u"logging", u"trace_file"},
    {Setting::WorkspaceLog, Shape::Path, nullptr, u"logging", u"workspace_log"},
};

const Description& DescriptionOf(Setting setting) {
    return *std::find_if(std::begin(kDescriptions), std::end(kDescriptions),
                         [&](const Description& each) { return each.setting == setting; });
}

CString NameInFile(const Description& description) {
    return CString(TextOf(description.section)) + u"." + CString(TextOf(description.key));
}

// The setting that a line of zebx.ini gives; null when it gives none.
const Description* FindInFile(const IniLine& line) {
    if (line.kind != IniLine::Kind::Value)
        return nullptr;
    const auto found = std::find_if(
        std::begin(kDescriptions), std::end(kDescriptions), [&](const Description& each) {
            return TextOf(each.section) == line.section && TextOf(each.key) == line.key;
        });
    return found == std::end(kDescriptions) ? nullptr : found;
}

bool IsKnownSection(CStringView section) {
    return std::any_of(
        std::begin(kDescriptions), std::end(kDescriptions),
        [&](const Description& each) { return each.section && each.section == section; });
}

// What would be right instead of `value`; empty when it is right.
CStringView ExpectedInstead(Shape shape, CStringView value) {
    if (shape == Shape::Language && value != u"en" && value != u"hr")
        return u"en or hr";
    if (shape == Shape::Switch && value != u"on" && value != u"off")
        return u"on or off";
    return {};
}

// What a message quotes of a line, which may be of any length.
CString Quoted(const CString& text) {
    constexpr std::size_t kLongest = 60;
    return text.size() <= kLongest ? text : text.substr(0, kLongest) + u"...";
}

bool IsUtf16(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

CString ProblemOfValue(const IniLine& line) {
    const Description* description = FindInFile(line);
    if (description) {
        const CStringView expected = ExpectedInstead(description->shape, line.value);
        const bool right = line.value.empty() || expected.empty();
        return right ? CString()
                     : Fill(u"\"%s = %s\" is not %s; ignored",
                            {line.key, Quoted(line.value), expected});
    }
    if (line.section.empty())
        return Fill(u"\"%s\" stands before any section; ignored", {Quoted(line.key)});
    // What an unknown section holds was reported with the section.
    return IsKnownSection(line.section)
               ? Fill(u"unknown key \"%s\" in \"[%s]\"; ignored", {Quoted(line.key), line.section})
               : CString();
}

// What is wrong with a line of zebx.ini and what is done instead; empty when nothing is.
CString ProblemOf(const IniLine& line) {
    switch (line.kind) {
    case IniLine::Kind::NotUtf8:
        return u"not UTF-8; the line is ignored";
    case IniLine::Kind::Unknown:
        return Fill(u"\"%s\" is neither \"[section]\" nor \"key = value\"; ignored",
                    {Quoted(line.value)});
    case IniLine::Kind::Section:
        return IsKnownSection(line.section)
                   ? CString()
                   : Fill(u"unknown section \"[%s]\"; what it holds is ignored",
                          {Quoted(line.section)});
    case IniLine::Kind::Value:
        return ProblemOfValue(line);
    }
    return {};
}

// `rest` below `folder`; empty, not a relative path, when the folder is not known.
CString Below(CString folder, CStringView rest) {
    return folder.empty() ? folder : folder.append(rest);
}

// `path` without ".", ".." and doubled separators.
CString Clean(CStringView path) {
    return PathFromNative(std::filesystem::path(NativePath(path)).lexically_normal().native());
}

CString LanguageOfLocale() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const auto locale = EnvironmentValue(variable))
            return locale->starts_with(u"hr") ? u"hr" : u"en";
    return u"en";
}

CString DefaultOf(Setting setting) {
    switch (setting) {
    case Setting::Config:
        return Below(RoamingFolder(), u"StudioZEB\\zebx.ini");
    case Setting::Install:
        return Clean(Below(ProgramFolder(), u"..\\lib\\zebx\\"));
    case Setting::Support:
        return Below(DataFolder(), u"StudioZEB\\support\\");
    case Setting::Language:
        return LanguageOfLocale();
    case Setting::EnabledKinds:
        return {};
    case Setting::Schema:
        return u"zebx";
    case Setting::Trace:
        return u"off";
    case Setting::TraceFile:
        return Below(StateFolder(), u"StudioZEB\\trace.log");
    case Setting::WorkspaceLog:
        return Below(StateFolder(), u"StudioZEB\\workspace.log");
    }
    return {};
}

// The value as others read it: paths with "\" and from the root.
CString Completed(Shape shape, CString value, const CString& relativeTo) {
    if (shape != Shape::Folder && shape != Shape::Path)
        return value;
    std::replace(value.begin(), value.end(), u'/', u'\\');
    if (!value.starts_with(u'\\'))
        value.insert(0, relativeTo);
    return shape == Shape::Folder ? AsFolder(value) : value;
}

CString FolderOfFile(const CString& path) {
    return path.substr(0, path.rfind(u'\\') + 1);
}

} // namespace

UserSettings* UserSettings::Instance() {
    static UserSettings instance;
    return &instance;
}

SettingValue UserSettings::Get(Setting setting) {
    const Description& description = DescriptionOf(setting);
    const Shape shape = description.shape;
    if (const auto option = m_options.find(setting); option != m_options.end())
        return {Completed(shape, option->second, CurrentFolder()), SettingOrigin::Option};
    if (description.variable)
        if (const auto value = EnvironmentValue(description.variable))
            if (ExpectedInstead(shape, *value).empty())
                return {Completed(shape, *value, CurrentFolder()), SettingOrigin::Environment,
                        FromUtf8(description.variable)};
    if (const auto value = FromFile(setting))
        return {Completed(shape, value->value, FolderOfFile(m_filePath)), SettingOrigin::File,
                m_filePath, value->line};
    return {DefaultOf(setting), SettingOrigin::Default};
}

void UserSettings::SetOption(Setting setting, CStringView value) {
    if (value.empty())
        m_options.erase(setting);
    else
        m_options[setting] = CString(value);
}

std::vector<SettingProblem> UserSettings::Problems() {
    ReadFileOnce();
    std::vector<SettingProblem> problems;
    for (const Description& description : kDescriptions) {
        if (!description.variable)
            continue;
        const CString value = EnvironmentValue(description.variable).value_or(CString());
        const CStringView expected = ExpectedInstead(description.shape, value);
        if (!value.empty() && !expected.empty())
            problems.push_back({FromUtf8(description.variable), 0,
                                Fill(u"\"%s\" is not %s; ignored", {value, expected})});
    }
    problems.insert(problems.end(), m_problems.begin(), m_problems.end());
    return problems;
}

void UserSettings::Reset() {
    m_options.clear();
    m_filePath.clear();
    m_fileRead = false;
    m_file.clear();
    m_problems.clear();
}

std::optional<UserSettings::FileValue> UserSettings::FromFile(Setting setting) {
    const Description& description = DescriptionOf(setting);
    if (!description.section)
        return std::nullopt;
    ReadFileOnce();
    const auto value = m_file.find(NameInFile(description));
    return value == m_file.end() ? std::nullopt : std::optional(value->second);
}

// Of the variables as they are: a path takes a hundred times as long, and every traced call
// asks for a setting.
std::optional<UserSettings::Surroundings> UserSettings::SurroundingsOfDefaultFile() const {
    const auto raw = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value ? value : "");
    };
    if (m_options.contains(Setting::Config) || !raw("ZEBX_CONFIG").empty())
        return std::nullopt;
    return Surroundings{raw("XDG_CONFIG_HOME"), raw("HOME")};
}

void UserSettings::ReadFileOnce() {
    auto surroundings = SurroundingsOfDefaultFile();
    if (m_fileRead && surroundings && surroundings == m_surroundings)
        return;
    m_surroundings = std::move(surroundings);
    const CString path = Get(Setting::Config).value;
    if (m_fileRead && path == m_filePath)
        return;
    m_fileRead = true;
    m_filePath = path;
    m_file.clear();
    m_problems.clear();
    const auto report = [&](int line, CString text) {
        m_problems.push_back({path, line, std::move(text)});
    };

    std::string bytes;
    const std::error_code error = path.empty() ? std::error_code() : ReadFile(path, bytes);
    const bool missing =
        error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
    if (error && !missing)
        report(0, Fill(u"cannot be read (%s); defaults are used", {FromUtf8(error.message())}));

    if (IsUtf16(bytes)) {
        report(0, u"is UTF-16; defaults are used until it is saved as UTF-8");
        return;
    }
    for (const IniLine& line : ReadIniLines(bytes)) {
        CString problem = ProblemOf(line);
        const Description* description = FindInFile(line);
        if (problem.empty() && description && !line.value.empty() &&
            !m_file.emplace(NameInFile(*description), FileValue{line.value, line.number}).second)
            problem = Fill(u"\"%s\" stands a second time; the first is used", {line.key});
        if (!problem.empty())
            report(line.number, std::move(problem));
    }
    // A file that is something else altogether is not worth a screenful.
    constexpr std::size_t kMost = 20;
    if (m_problems.size() > kMost) {
        const std::size_t more = m_problems.size() - kMost;
        m_problems.resize(kMost);
        report(0, Fill(u"%s more lines are not understood; ignored",
                       {ToText(static_cast<std::int64_t>(more))}));
    }
}

} // namespace Platform
