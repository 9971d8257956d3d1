// SPDX-License-Identifier: MIT
#include "ZEBXNetworkCore/CatalogMetadata.h"

#include "platform/os/UserSettings.h"

namespace ZEBGis::Data {

CString CCatalogMetadata::GetCatalogNameUI() const try {
    const auto& names = m_declaration.names;
    auto* settings = Platform::UserSettings::Instance();
    for (const CString& language :
         {settings->Get(Platform::Setting::Language).value, CString(u"en")})
        if (const auto found = names.find(language); found != names.end())
            return found->second;
    return names.empty() ? m_declaration.reference : names.begin()->second;
} catch (...) {
    return {};
}

} // namespace ZEBGis::Data
