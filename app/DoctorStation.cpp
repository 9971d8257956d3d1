// SPDX-License-Identifier: MIT
#include "app/Doctor.h"
#include "app/Print.h"
#include "app/Versions.h"

#include "platform/os/File.h"
#include "platform/os/FileSearch.h"
#include "platform/os/UserSettings.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <algorithm>
#include <set>

namespace App {
namespace {

using Platform::PathKind;
using Platform::Setting;
using Platform::UserSettings;

CString ValueOf(Setting setting) {
    return UserSettings::Instance()->Get(setting).value;
}

// "1.2" and "1.2.0.0" are one version.
CString FourParts(CString version) {
    for (auto dots = std::ranges::count(version, u'.'); dots < 3; ++dots)
        version += u".0";
    return version;
}

// A storage plug-in may come from elsewhere and then has a version of its own.
bool IsPlugin(const CString& file) {
    return file.starts_with(u"ZEBXRepositoryClientPlugin_");
}

void ExamineVersions(const Tell& tell) {
    const auto parts = InstalledParts();
    const CString wanted = FourParts(parts.front().version);
    CString others;
    for (const InstalledPart& part : parts) {
        const CString version = part.version.empty() ? Text(Message::NoVersion) : part.version;
        if (FourParts(version) != wanted && !IsPlugin(part.name))
            others += (others.empty() ? u"" : u", ") + part.name + u" " + version;
    }
    const auto modules = static_cast<std::int64_t>(parts.size()) - 1;
    if (others.empty())
        tell({"versions", Message::DoctorVersions, Health::Ok,
              Text(Message::VersionsEqual, {Platform::ToText(modules), wanted})});
    else
        tell({"versions", Message::DoctorVersions, Health::Failure,
              Text(Message::VersionsDiffer, {wanted, others}), Text(Message::AdviceInstall),
              ExitStatus::Configuration});
}

void ExamineInstallation(const Tell& tell) {
    const CString folder = ValueOf(Setting::Install);
    const CString module = folder + u"ZEBXRepositoryClient.arx";
    if (Platform::KindOfPath(module) == PathKind::File)
        tell({"installation-folder", Message::LabelInstallation, Health::Ok, ShownPath(folder)});
    else
        tell({"installation-folder", Message::LabelInstallation, Health::Failure,
              Text(Message::FileMissing, {ShownPath(module)}), Text(Message::AdviceInstall),
              ExitStatus::Configuration});
}

void ExamineSupport(const Tell& tell) {
    const CString folder = ValueOf(Setting::Support);
    const CString shown = ShownPath(folder);
    Diagnosis diagnosis{"support-folder", Message::LabelSupport, Health::Ok, shown};
    // Without the separator at its end: a file in its place is there, too.
    const PathKind kind =
        Platform::KindOfPath(CStringView(folder).substr(0, folder.find_last_not_of(u'\\') + 1));
    const auto fail = [&diagnosis, &shown](Message why, Message advice) {
        diagnosis.health = Health::Failure;
        diagnosis.status = ExitStatus::LocalFile;
        diagnosis.found = Text(why, {shown});
        diagnosis.advice = Text(advice);
    };
    if (kind == PathKind::Missing) {
        diagnosis.health = Health::Warning;
        diagnosis.found = shown + u" " + Text(Message::NotThere);
        diagnosis.advice = Text(Message::HintInit);
    } else if (kind != PathKind::Folder) {
        fail(Message::NoFolder, Message::AdviceFolder);
    } else if (!Platform::MayRead(folder)) {
        fail(Message::FolderNotReadable, Message::AdviceFolder);
    } else if (!Platform::MayWrite(folder)) {
        fail(Message::FolderNotWritable, Message::AdviceFolder);
    }
    tell(diagnosis);
}

void ExamineSettings(const Tell& tell) {
    const CString file = ValueOf(Setting::Config);
    const auto problems = UserSettings::Instance()->Problems();
    for (const auto& problem : problems) {
        const CString place =
            ShownPath(problem.file) +
            (problem.line > 0 ? u":" + Platform::ToText(problem.line) : CString());
        tell({"settings", Message::LabelSettings, Health::Warning,
              Text(Message::SettingsProblem, {place, problem.text}),
              Text(Message::AdviceSettings)});
    }
    if (!problems.empty())
        return;
    const bool isThere = Platform::PathExists(file);
    tell({"settings", Message::LabelSettings, Health::Ok,
          isThere ? ShownPath(file) : ShownPath(file) + u" " + Text(Message::DefaultsHold)});
}

// The numbers of a message table's texts.
std::set<std::int32_t> NumbersIn(const CString& path) {
    std::set<std::int32_t> numbers;
    std::string bytes;
    if (Platform::ReadFile(path, bytes))
        return numbers;
    for (std::size_t start = 0; start < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', start), bytes.size());
        const std::int32_t number =
            Platform::ToInteger(Platform::FromUtf8(bytes.substr(start, end - start)));
        if (number > 0)
            numbers.insert(number);
        start = end + 1;
    }
    return numbers;
}

// A table that is cut or older lacks what one of the others has.
void ExamineTexts(const Tell& tell) {
    const CString folder = ValueOf(Setting::Install) + u"messages\\";
    const CString language = ValueOf(Setting::Language);
    const std::set<std::int32_t> own = NumbersIn(folder + language);
    std::int64_t lacking = 0;
    std::int32_t first = 0;
    for (const CString& other : Platform::FindFiles(folder + u"??")) {
        for (const std::int32_t number : NumbersIn(folder + other)) {
            if (!own.contains(number) && lacking++ == 0)
                first = number;
        }
    }
    const CString path = ShownPath(folder + language);
    if (lacking == 0)
        tell({"texts", Message::DoctorTexts, Health::Ok,
              Text(Message::TextsWhole,
                   {path, Platform::ToText(static_cast<std::int64_t>(own.size()))})});
    else
        tell({"texts", Message::DoctorTexts, Health::Failure,
              Text(Message::TextsLacking,
                   {path, Platform::ToText(lacking), Platform::ToText(first)}),
              Text(Message::AdviceInstall), ExitStatus::Configuration});
}

} // namespace

void ExamineStation(const Tell& tell) {
    ExamineVersions(tell);
    ExamineInstallation(tell);
    ExamineSupport(tell);
    ExamineSettings(tell);
    ExamineTexts(tell);
}

} // namespace App
