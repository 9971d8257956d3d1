// SPDX-License-Identifier: MIT
#include "MessageProvider.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "client/util/Border.h"

namespace Repository {

CString CMessageProvider::GetMsg(CString& buffer, int number) {
    return AtBorder(CString(), [&] {
        buffer = ZEBGis::CModuleConfiguration::Instance()->GetMsg(number);
        return buffer;
    });
}

} // namespace Repository
