// SPDX-License-Identifier: MIT
#include "ZEBXGisCore/ModuleConfiguration.h"

#include "MessageTable.h"

#include "ZEBXGisCore/XmlFile.h"
#include "platform/os/File.h"
#include "platform/os/UserSettings.h"
#include "platform/text/CaseFold.h"
#include "platform/text/Trim.h"
#include "platform/text/Utf8.h"

#include <algorithm>

namespace ZEBGis {
namespace {

using Platform::Setting;
using Platform::UserSettings;

constexpr const char16_t* kGsFile = u"GeneralSettings.xml";
constexpr const char16_t* kPreviousGsFile = u"GeneralSettings.previous.xml";

} // namespace

CModuleConfiguration* CModuleConfiguration::Instance() {
    static CModuleConfiguration instance;
    return &instance;
}

CString CModuleConfiguration::GetPath(const char16_t* key) const try {
    const CString folded = Platform::FoldCase(Platform::TextOf(key));
    if (folded == u"install")
        return UserSettings::Instance()->Get(Setting::Install).value;
    if (folded == u"support")
        return UserSettings::Instance()->Get(Setting::Support).value;
    return {};
} catch (...) {
    return {};
}

CString CModuleConfiguration::GetMsg(int number) const try {
    const CString language = UserSettings::Instance()->Get(Setting::Language).value;
    const CString path = GetPath(u"install") + u"messages\\" + language;
    if (path != m_messagesPath) {
        m_messages = ReadMessageTable(path);
        // What could not be read is tried again.
        m_messagesPath = m_messages.empty() ? CString() : path;
    }
    const auto found = m_messages.find(number);
    return found != m_messages.end() ? found->second : TextForUnknownMessage(language, number);
} catch (...) {
    return {};
}

int CModuleConfiguration::IsMetadataIdEnabled(const char16_t* id) const try {
    const CString enabled = UserSettings::Instance()->Get(Setting::EnabledKinds).value;
    const CStringView asked = Platform::TextOf(id);
    for (std::size_t start = 0; start <= enabled.size();) {
        const std::size_t end = std::min(enabled.find(u',', start), enabled.size());
        const CStringView item = Platform::Trim(CStringView(enabled).substr(start, end - start));
        if (!item.empty() && item == asked)
            return 1;
        start = end + 1;
    }
    return 0;
} catch (...) {
    return 0;
}

CString CModuleConfiguration::GetCurrentGSXML() const try {
    std::string bytes;
    if (Platform::ReadFile(GetPath(u"support") + kGsFile, bytes))
        return {};
    CString xml = Platform::FromUtf8(bytes);
    // A zero byte would end the text where it is handed on NUL-terminated and the rest
    // would be lost silently; as an unpaired surrogate it is refused by the storage.
    std::replace(xml.begin(), xml.end(), u'\0', u'\xDC00');
    return xml;
} catch (...) {
    return {};
}

int CModuleConfiguration::ForceSaveGSLocal(const char16_t* xml, const char16_t*) try {
    const CString folder = GetPath(u"support");
    if (folder.empty())
        return 0;
    CString problem;
    const std::string bytes = Platform::ToUtf8(Platform::TextOf(xml));
    return WriteXmlFile(folder + kGsFile, folder + kPreviousGsFile, bytes, problem) ? 1 : 0;
} catch (...) {
    return 0;
}

} // namespace ZEBGis
