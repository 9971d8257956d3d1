// SPDX-License-Identifier: MIT
#include "app/SettingsFile.h"

#include "app/AppError.h"
#include "app/Print.h"
#include "app/Texts.h"

#include "platform/os/UserSettings.h"
#include "platform/text/Utf8.h"

namespace App {
namespace {

using Platform::Setting;
using Platform::SettingOrigin;

CString Comment(Message message) {
    return u"# " + Text(message) + u"\n";
}

// Whether the user said so just now, so that the file has to keep it.
bool WasGiven(const Platform::SettingValue& value) {
    return value.origin == SettingOrigin::Option || value.origin == SettingOrigin::Environment;
}

// A path that the format cannot hold would be lost without a word.
void CheckIsKept(const CString& path) {
    if (!Platform::IsWellFormed(path) || path.find_first_of(u"\r\n") != CString::npos)
        throw AppError(ExitStatus::Usage, Text(Message::NotKept, {ShownPath(path)}));
}

CString Line(CStringView key, Setting setting, bool isFolder) {
    const auto value = Platform::UserSettings::Instance()->Get(setting);
    const bool isKept = isFolder && WasGiven(value);
    if (isKept)
        CheckIsKept(value.value);
    return (isKept ? u"" : u"# ") + CString(key) + u" = " + ShownPath(value.value) + u"\n";
}

CString Joined(const std::vector<CString>& texts) {
    CString joined;
    for (const CString& text : texts)
        joined += (joined.empty() ? u"" : u", ") + text;
    return joined;
}

} // namespace

CString NewSettingsFile(const std::vector<CString>& optionalKinds) {
    return Comment(Message::IniHead) + u"\n[folders]\n" +                                    //
           Comment(Message::IniInstall) + Line(u"install", Setting::Install, true) +         //
           Comment(Message::IniSupport) + Line(u"support", Setting::Support, true) +         //
           u"\n[general]\n" +                                                                //
           Comment(Message::IniLanguage) + Line(u"language", Setting::Language, false) +     //
           u"\n[kinds]\n" +                                                                  //
           Comment(Message::IniKinds) + u"enabled = " + Joined(optionalKinds) + u"\n" +      //
           u"\n[logging]\n" +                                                                //
           Comment(Message::IniTrace) + Line(u"trace", Setting::Trace, false) +              //
           Comment(Message::IniTraceFile) + Line(u"trace_file", Setting::TraceFile, false) + //
           Comment(Message::IniWorkspaceLog) + Line(u"workspace_log", Setting::WorkspaceLog, false);
}

} // namespace App
