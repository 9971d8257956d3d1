// SPDX-License-Identifier: MIT
#include "app/Texts.h"

#include "app/Print.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/os/File.h"
#include "platform/os/UserSettings.h"
#include "platform/text/Fill.h"

namespace App {

CString Text(Message message, std::initializer_list<CStringView> values) {
    const auto* configuration = ZEBGis::CModuleConfiguration::Instance();
    return Platform::Fill(configuration->GetMsg(static_cast<int>(message)), values);
}

CString MissingTexts() {
    auto* settings = Platform::UserSettings::Instance();
    const CString folder = settings->Get(Platform::Setting::Install).value;
    const CString table = folder + u"messages\\" + settings->Get(Platform::Setting::Language).value;
    const CString anyText = Text(Message::Warning);
    if (!anyText.ends_with(u"21000")) // which stands where there is none
        return {};
    if (Platform::PathExists(table))
        return u"The message table " + ShownPath(table) +
               u" is damaged or cannot be read: it holds no text 21000.\n"
               u"Install this version again, or name a whole installation: zebx --install DIR "
               u"VERB.";
    return u"There is no installation in " + ShownPath(folder) + u": the message table " +
           ShownPath(table) +
           u" is missing.\nName the folder that holds the *.arx files: "
           u"zebx --install DIR VERB, or set ZEBX_INSTALL.";
}

} // namespace App
