// SPDX-License-Identifier: MIT
#include "storage/window/Texts.h"

#include "ZEBXGisCore/ModuleConfiguration.h"
#include "platform/text/Fill.h"

namespace Storage {

CString Msg(WindowText text, std::initializer_list<CStringView> values) {
    const int number = static_cast<int>(text);
    return Platform::Fill(ZEBGis::CModuleConfiguration::Instance()->GetMsg(number), values);
}

} // namespace Storage
