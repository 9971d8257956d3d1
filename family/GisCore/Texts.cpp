// SPDX-License-Identifier: MIT
#include "Texts.h"

#include "XmlSource.h"
#include "ZEBXGisCore/ModuleConfiguration.h"

#include "platform/os/Path.h"
#include "platform/text/Fill.h"
#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

namespace ZEBGis {

CString Text(Message message, std::initializer_list<CStringView> values) {
    const CString text = CModuleConfiguration::Instance()->GetMsg(static_cast<int>(message));
    return Platform::Fill(text, values);
}

CString Told(CStringView path, const XmlFault& fault) {
    const CString file = Platform::FromUtf8(Platform::NativePath(path));
    const CString line = Platform::ToText(fault.line);
    if (path.empty())
        return fault.reason;
    if (fault.line == 0 && fault.item.empty())
        return Text(Message::InFile, {file, fault.reason});
    if (fault.line == 0)
        return Text(Message::InItemOfFile, {file, fault.item, fault.reason});
    if (fault.item.empty())
        return Text(Message::InLine, {file, line, fault.reason});
    return Text(Message::InItem, {file, line, fault.item, fault.reason});
}

} // namespace ZEBGis
